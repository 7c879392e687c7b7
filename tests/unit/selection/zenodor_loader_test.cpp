#include "selection/zenodor_loader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/testing/environment.h"
#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/zenodor_fixture.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);


// Host folders with a fixture library at Kernel\ImageRetouch\Zenodor.dll.
class ZenodorLoaderTest : public LogCapture {
protected:
    void UseHost(const char* variant) {
        const std::string dir = std::string(ZENODOR_FIXTURE_DIR) + "/" + variant;
        ASSERT_TRUE(pcg::platform_testing::SetEnvironmentValue("PYCLIPGRADE_HOST_DIR", dir.c_str()));
    }
    void TearDown() override {
        pcg::platform_testing::UnsetEnvironmentValue("PYCLIPGRADE_HOST_DIR");
        LogCapture::TearDown();
    }
    // The fixture's own record of the calls, through the handle the loader holds.
    static ZenodorFixtureState* State(const ZenodorLoader& loader) {
        auto fn = reinterpret_cast<ZenodorFixtureGetStateFn>(
            pcg::platform::FindSymbol(loader.m_hZenodorLibrary, "ZenodorFixtureGetState"));
        return fn ? fn() : nullptr;
    }
};

TEST_F(ZenodorLoaderTest, StartsEmpty) {
    ZenodorLoader loader;
    EXPECT_EQ(loader.m_hZenodorLibrary, nullptr);
    EXPECT_EQ(loader.m_pZenodorCreateZenodorObject, nullptr);
    EXPECT_EQ(loader.m_pZenodorReleaseZenodorObject, nullptr);
}

TEST_F(ZenodorLoaderTest, LoadsBelowTheHostAndBindsBothExports) {
    UseHost("complete");
    ZenodorLoader loader;
    ASSERT_EQ(loader.LoadZenodor(), 0);
    EXPECT_NE(loader.m_hZenodorLibrary, nullptr);
    EXPECT_NE(loader.m_pZenodorCreateZenodorObject, nullptr);
    EXPECT_NE(loader.m_pZenodorReleaseZenodorObject, nullptr);
}

TEST_F(ZenodorLoaderTest, SecondLoadLogsAndKeepsTheLibrary) {
    UseHost("complete");
    ZenodorLoader loader;
    ASSERT_EQ(loader.m_fnLoadZenodor(), 0);
    const pcg::platform::ModuleHandle first = loader.m_hZenodorLibrary;
    // Even with the host moved elsewhere, nothing is loaded again.
    UseHost("missing");
    EXPECT_EQ(loader.m_fnLoadZenodor(), 0);
    EXPECT_EQ(loader.m_hZenodorLibrary, first);
    EXPECT_TRUE(Logged("[m_fnLoadZenodor] zenodor has existed"));
}

TEST_F(ZenodorLoaderTest, MissingLibrary) {
    UseHost("missing");
    ZenodorLoader loader;
    EXPECT_EQ(loader.LoadZenodor(), kPointer);
    EXPECT_EQ(loader.m_hZenodorLibrary, nullptr);
    EXPECT_TRUE(Logged("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_hZenodorLibrary\n"));
    EXPECT_TRUE(Logged("ZenodorLoader::LoadZenodor m_fnLoadZenodor() , failed hr=0x80004003\n"));
}

TEST_F(ZenodorLoaderTest, MissingFactory) {
    UseHost("no_create");
    ZenodorLoader loader;
    EXPECT_EQ(loader.m_fnLoadZenodor(), kPointer);
    EXPECT_TRUE(Logged("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_pZenodorCreateZenodorObject\n"));
}

TEST_F(ZenodorLoaderTest, MissingReleaseEntry) {
    UseHost("no_release");
    ZenodorLoader loader;
    EXPECT_EQ(loader.m_fnLoadZenodor(), kPointer);
    EXPECT_NE(loader.m_pZenodorCreateZenodorObject, nullptr);
    EXPECT_TRUE(Logged("ZenodorLoader::m_fnLoadZenodor Null Pointer : m_pZenodorReleaseZenodorObject\n"));
    void* pObject = nullptr;
    EXPECT_EQ(loader.ReleaseMagicSelection(&pObject), kPointer);
    EXPECT_TRUE(Logged("ZenodorLoader::ReleaseMagicSelection Null Pointer : m_pZenodorReleaseZenodorObject\n"));
}

TEST_F(ZenodorLoaderTest, CreatePassesTheInterfaceIdAndReleaseTakesTheAddress) {
    UseHost("complete");
    ZenodorLoader loader;
    void* pObject = nullptr;
    ASSERT_EQ(loader.CreateMagicSelection(&pObject), 0);
    ASSERT_NE(pObject, nullptr);
    ZenodorFixtureState* state = State(loader);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->nCreates, 1);
    const ZenodorGuid expected = {0x2b3357f9u, 0x601eu, 0x474du, {0x80, 0xbf, 0x60, 0xd2, 0xa3, 0x7e, 0xcd, 0x6f}};
    EXPECT_EQ(std::memcmp(&state->lastIid, &expected, sizeof(expected)), 0);
    int64_t stamp = 0;
    EXPECT_EQ(static_cast<IMagicSelection*>(pObject)->GetCurrentTimeStamp(&stamp), 0);
    EXPECT_EQ(stamp, 42);
    ASSERT_EQ(loader.ReleaseMagicSelection(&pObject), 0);
    EXPECT_EQ(state->nReleases, 1);
    EXPECT_EQ(state->ppLastReleased, &pObject);
    EXPECT_EQ(pObject, nullptr);
}

TEST_F(ZenodorLoaderTest, CreateWithFailedLoad) {
    UseHost("missing");
    ZenodorLoader loader;
    void* pObject = nullptr;
    EXPECT_EQ(loader.CreateMagicSelection(&pObject), kPointer);
    EXPECT_TRUE(Logged("ZenodorLoader::CreateMagicSelection m_fnLoadZenodor() , failed hr=0x80004003\n"));
}

TEST_F(ZenodorLoaderTest, CreateWithoutAnObject) {
    UseHost("null_object");
    ZenodorLoader loader;
    void* pObject = nullptr;
    EXPECT_EQ(loader.CreateMagicSelection(&pObject), kPointer);
    EXPECT_TRUE(Logged("ZenodorLoader::CreateMagicSelection Null Pointer : pMagicSelection\n"));
}

}  // namespace
