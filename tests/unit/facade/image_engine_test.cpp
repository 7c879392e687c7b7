#include "facade/clipgrade.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/platform.h"
#include "platform/testing/settings_editor.h"
#include "imaging/image_buffer.h"
#include "runtime/image_retouch_mgr.h"
#include "tests/unit/reference/ref_agent_library.h"
#include "tests/unit/runtime/retouch_library.h"

namespace {

using pcg::reftest::Json;

const wchar_t kProductKey[] = L"SoftWare\\Verimont\\Huevane5";
const wchar_t kClassName[] = L"{58529D7C-751A-47A9-982D-1560342ECB14}";

class FacadeImageEngineTest : public pcg::reftest::RefAgentTest {
protected:
    void SetUp() override {
        pcg::reftest::RefAgentTest::SetUp();
        ASSERT_TRUE(m_retouch.Loaded());
        pcg::platform_testing::DeleteSettingsKey(kProductKey);
        pcg::platform_testing::DeleteSettingsKey(L"Classes");
    }
    void TearDown() override {
        pcg::platform_testing::DeleteSettingsKey(kProductKey);
        pcg::platform_testing::DeleteSettingsKey(L"Classes");
    }
    std::wstring EnginePath() const {
        return pcg::platform::JoinHostPath(pcg::platform::HostDirectory(), pcg::reftest::kEngineRelativePath);
    }
    pcg::reftest::RetouchLibrary m_retouch;
};

TEST_F(FacadeImageEngineTest, WithoutTheDepthValueTheFacadeWorksAtEightBytesPerPixel) {
    PyClipGrade facade;
    EXPECT_EQ(facade.m_pixelBytes, 8);
    EXPECT_EQ(facade.m_pixelFormat, 3);
    EXPECT_EQ(facade.m_highDepth, 1);
}

TEST_F(FacadeImageEngineTest, ADepthValueOfZeroGivesFourBytesPerPixel) {
    ASSERT_TRUE(pcg::platform_testing::SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 0));
    PyClipGrade facade;
    EXPECT_EQ(facade.m_pixelBytes, 4);
    EXPECT_EQ(facade.m_pixelFormat, 2);
    EXPECT_EQ(facade.m_highDepth, 0);
}

TEST_F(FacadeImageEngineTest, ADepthValueOfTwoGivesFourBytesPerPixel) {
    ASSERT_TRUE(pcg::platform_testing::SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 2));
    PyClipGrade facade;
    EXPECT_EQ(facade.m_pixelBytes, 4);
    EXPECT_EQ(facade.m_pixelFormat, 2);
    EXPECT_EQ(facade.m_highDepth, 0);
}

TEST_F(FacadeImageEngineTest, ADepthValueOfOneGivesEightBytesPerPixel) {
    ASSERT_TRUE(pcg::platform_testing::SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 1));
    PyClipGrade facade(nullptr, 0);
    EXPECT_EQ(facade.m_pixelBytes, 8);
    EXPECT_EQ(facade.m_pixelFormat, 3);
    EXPECT_EQ(facade.m_highDepth, 1);
}

TEST_F(FacadeImageEngineTest, TheDefaultFacadeOwnsInstanceAllocatorAndManager) {
    {
        PyClipGrade facade;
        ASSERT_NE(facade.m_pImageRetouchMgr, nullptr);
        EXPECT_TRUE(facade.m_pImageRetouchMgr->m_bFlag);
        EXPECT_FALSE(facade.m_pImageRetouchMgr->m_bUseGdiplus);
        EXPECT_NE(facade.m_pImageRetouch, nullptr);
        EXPECT_NE(facade.m_pBufferAllocator, nullptr);
        EXPECT_EQ(facade.m_hImageRetouchDll, nullptr);
        EXPECT_TRUE(facade.m_imageRetouchDllPath.empty());
        EXPECT_EQ(m_retouch.Counter("instancesLive"), 1);
        EXPECT_EQ(m_retouch.Counter("allocatorsLive"), 1);
        EXPECT_EQ(m_retouch.Counter("createdOnThread"), facade.m_pImageRetouchMgr->m_pThread->m_dwThreadId.load());
        // The allocator hands out real buffers.
        IImageBuffer* buffer = nullptr;
        ASSERT_EQ(facade.m_pBufferAllocator->allocateImageBuffer(&buffer, 5, 3, VX_PIXEL_1BYTES), 0);
        ASSERT_NE(buffer, nullptr);
        EXPECT_EQ(buffer->GetWidth(), 5);
        EXPECT_EQ(buffer->GetHeight(), 3);
        EXPECT_EQ(buffer->GetPixelBytes(), 1);
        EXPECT_EQ(m_retouch.Counter("buffersLive"), 1);
        buffer->Release();
        EXPECT_EQ(m_retouch.Counter("buffersLive"), 0);
    }
    EXPECT_EQ(m_retouch.Counter("instancesLive"), 0);
    EXPECT_EQ(m_retouch.Counter("allocatorsLive"), 0);
    EXPECT_NE(m_retouch.Counter("releasedOnThread"), static_cast<int64_t>(pcg::platform::CurrentThreadId()));
    EXPECT_EQ(m_retouch.Counter("releasedOnThread"), m_retouch.Counter("createdOnThread"));
}

TEST_F(FacadeImageEngineTest, AGivenPathLoadsThatLibraryAndKeepsItUntilTheEnd) {
    // The registered class is refused, so only the given path can serve.
    ASSERT_TRUE(pcg::platform_testing::SetSettingsValue(L"Classes", kClassName, pcg::platform::kRegSz, L"\0", 2));
    std::wstring path = EnginePath();
    PyClipGrade facade(nullptr, 1, 0, &path[0]);
    EXPECT_EQ(facade.m_imageRetouchDllPath, path);
    EXPECT_NE(facade.m_hImageRetouchDll, nullptr);
    EXPECT_NE(facade.m_pImageRetouch, nullptr);
    EXPECT_EQ(m_retouch.Counter("instancesLive"), 1);
}

TEST_F(FacadeImageEngineTest, AnEmptyPathBehavesAsNullAndUsesTheRegisteredClass) {
    wchar_t empty[] = L"";
    PyClipGrade facade(nullptr, 1, 0, empty);
    EXPECT_EQ(facade.m_hImageRetouchDll, nullptr);
    EXPECT_NE(facade.m_pImageRetouch, nullptr);
}

TEST_F(FacadeImageEngineTest, WithoutAnEngineTheAllocatorIsNotAttempted) {
    ASSERT_TRUE(pcg::platform_testing::SetSettingsValue(L"Classes", kClassName, pcg::platform::kRegSz, L"\0", 2));
    PyClipGrade facade;
    EXPECT_EQ(facade.m_pImageRetouch, nullptr);
    EXPECT_EQ(facade.m_pBufferAllocator, nullptr);
    EXPECT_EQ(m_retouch.Counter("allocatorsLive"), 0);
    EXPECT_NE(facade.m_pImageRetouchMgr, nullptr);
}

TEST_F(FacadeImageEngineTest, AFailingAllocatorLeavesTheEngineInPlace) {
    m_retouch.SetResult("BufferAllocatorFactory", "CreateInstance", static_cast<double>(0x80004005u));
    PyClipGrade facade;
    EXPECT_NE(facade.m_pImageRetouch, nullptr);
    EXPECT_EQ(facade.m_pBufferAllocator, nullptr);
}

TEST_F(FacadeImageEngineTest, ASharedFacadeWithoutBufferAgentMakesAManagerButNoEngine) {
    PyClipGrade first;
    PyClipGrade second(first.m_dspAgent, 0);
    EXPECT_NE(second.m_pImageRetouchMgr, nullptr);
    EXPECT_NE(second.m_pImageRetouchMgr, first.m_pImageRetouchMgr);
    EXPECT_EQ(second.m_pImageRetouch, nullptr);
    EXPECT_EQ(second.m_pBufferAllocator, nullptr);
    EXPECT_EQ(m_retouch.Counter("instancesLive"), 1);
}

TEST_F(FacadeImageEngineTest, EachAgentMadeHereIsToldTheManagerAsItsFirstCall) {
    PyClipGrade facade;
    const auto told = Entries("SetImageRetouchMgr");
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0]["agent"], "DspMain");
    EXPECT_EQ(told[1]["agent"], "DspBuf");
    EXPECT_EQ(told[0]["args"], Json::parse("[true]"));
    EXPECT_EQ(told[1]["args"], Json::parse("[true]"));
    PyClipGrade shared(facade.m_dspAgent, 0);
    EXPECT_EQ(Entries("SetImageRetouchMgr").size(), 2u);
}

TEST_F(FacadeImageEngineTest, TheDefaultFacadeTellsBothAgentsTheSameManagerItsOwn) {
    PyClipGrade facade;
    PyClipGrade other;
    const auto told = Entries("SetImageRetouchMgr");
    ASSERT_EQ(told.size(), 4u);
    const auto own = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(facade.m_pImageRetouchMgr));
    const auto others = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(other.m_pImageRetouchMgr));
    EXPECT_NE(own, others);
    EXPECT_EQ(told[0]["manager"].get<uint64_t>(), own);
    EXPECT_EQ(told[1]["manager"].get<uint64_t>(), own);
    EXPECT_EQ(told[2]["manager"].get<uint64_t>(), others);
    EXPECT_EQ(told[3]["manager"].get<uint64_t>(), others);
}

TEST_F(FacadeImageEngineTest, AnAgentOutlivingTheFacadeThatMadeItKeepsAStaleManagerUnguarded) {
    auto first = std::make_unique<PyClipGrade>();
    const auto firstManager = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(first->m_pImageRetouchMgr));
    const int64_t agents = Library().Counter("agentsLive");
    {
        PyClipGrade second(first->m_dspAgent, 0);
        first.reset();
        // The main agent lives on in the second facade; its buffer agent went
        // with the first one.
        EXPECT_EQ(Library().Counter("agentsLive"), agents - 1);
        const auto told = Entries("SetImageRetouchMgr");
        ASSERT_EQ(told.size(), 2u);
        EXPECT_EQ(told[0]["agent"], "DspMain");
        // Nobody tells the agent of another manager: it holds the freed one.
        EXPECT_EQ(told[0]["manager"].get<uint64_t>(), firstManager);
        EXPECT_NE(second.m_pImageRetouchMgr, nullptr);
        EXPECT_NE(static_cast<uint64_t>(reinterpret_cast<uintptr_t>(second.m_pImageRetouchMgr)), firstManager);
        EXPECT_EQ(m_retouch.Counter("instancesLive"), 0);
    }
    EXPECT_EQ(Library().Counter("agentsLive"), agents - 2);
}

}  // namespace
