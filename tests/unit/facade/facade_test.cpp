#include "facade/clipgrade.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/testing/environment.h"
#include "tests/unit/reference/ref_agent_library.h"

namespace {

// The facade loads the same agent library file the tests read the journal
// from, so both see one state.
using FacadeTest = pcg::reftest::RefAgentTest;

// Stand-ins for the host's database objects, which the agents only keep.
CDBAccessThreadMgr* const kThreadMgr = reinterpret_cast<CDBAccessThreadMgr*>(0x1000);
IVXTinyDB* const kTinyDB = reinterpret_cast<IVXTinyDB*>(0x2000);

TEST_F(FacadeTest, DefaultFacadeHoldsBothAgentsAndBothLibraries) {
    PyClipGrade facade;
    EXPECT_NE(facade.m_dspAgent, nullptr);
    EXPECT_NE(facade.m_dspBufAgent, nullptr);
    EXPECT_NE(facade.m_hDspAgentDll, nullptr);
    EXPECT_NE(facade.m_hIompDll, nullptr);
}

TEST_F(FacadeTest, SharedFacadeWithoutBufferAgentLoadsNothing) {
    PyClipGrade first;
    PyClipGrade second(first.m_dspAgent, 0);
    EXPECT_EQ(second.m_dspAgent, first.m_dspAgent);
    EXPECT_EQ(second.m_dspBufAgent, nullptr);
    EXPECT_EQ(second.m_hDspAgentDll, nullptr);
    EXPECT_EQ(second.m_hIompDll, nullptr);
}

TEST_F(FacadeTest, SharedFacadeWithBufferAgentLoadsBothAndMakesItsOwnDspBuf) {
    PyClipGrade first;
    PyClipGrade second(first.m_dspAgent, 1);
    EXPECT_EQ(second.m_dspAgent, first.m_dspAgent);
    EXPECT_NE(second.m_dspBufAgent, nullptr);
    EXPECT_NE(second.m_dspBufAgent, first.m_dspBufAgent);
    EXPECT_NE(second.m_hDspAgentDll, nullptr);
    EXPECT_NE(second.m_hIompDll, nullptr);
}

TEST_F(FacadeTest, OwnFacadeWithoutBufferAgentLoadsBothLibraries) {
    PyClipGrade facade(nullptr, 0);
    EXPECT_NE(facade.m_dspAgent, nullptr);
    EXPECT_EQ(facade.m_dspBufAgent, nullptr);
    EXPECT_NE(facade.m_hDspAgentDll, nullptr);
    EXPECT_NE(facade.m_hIompDll, nullptr);
}

// "agent args" of each journal entry with this op, in order.
std::vector<std::string> Calls(const char* op) {
    std::vector<std::string> calls;
    for (const pcg::reftest::Json& entry : pcg::reftest::RefAgentLibrary::Get().JournalJson()) {
        if (entry.at("op") == op) {
            calls.push_back(entry.at("agent").get<std::string>() + " " + entry.at("args").dump());
        }
    }
    return calls;
}

TEST_F(FacadeTest, SetDBMgrTellsBufferAgentThenMainAgent) {
    PyClipGrade facade;
    EXPECT_TRUE(facade.SetDBMgr(kThreadMgr, kTinyDB));
    EXPECT_EQ(Calls("SetDBMgr"), (std::vector<std::string>{"DspBuf [true,true]", "DspMain [true,true]"}));
}

TEST_F(FacadeTest, SetDBMgrWithMainAgentOnly) {
    PyClipGrade first;
    PyClipGrade second(first.m_dspAgent, 0);
    EXPECT_TRUE(second.SetDBMgr(kThreadMgr, kTinyDB));
    EXPECT_EQ(Calls("SetDBMgr"), std::vector<std::string>{"DspMain [true,true]"});
}

TEST_F(FacadeTest, SetDBMgrWithOneNullArgumentTellsNeitherAgent) {
    PyClipGrade facade;
    EXPECT_FALSE(facade.SetDBMgr(kThreadMgr, nullptr));
    EXPECT_FALSE(facade.SetDBMgr(nullptr, kTinyDB));
    EXPECT_TRUE(Calls("SetDBMgr").empty());
}

// A host folder that holds the runtime library and no agent library.
class RuntimeOnlyHost {
public:
    RuntimeOnlyHost() {
        namespace fs = std::filesystem;
        m_folder = fs::path(PCG_RUNTIME_ONLY_HOST);
        const fs::path runtimeFolder = m_folder / "Kernel" / "ImageRetouch";
        fs::create_directories(runtimeFolder);
        fs::copy_file(PCG_IOMP_FILE, runtimeFolder / PCG_IOMP_FILE_NAME, fs::copy_options::overwrite_existing);
        m_pHost = std::make_unique<pcg::platform_testing::ScopedEnvironmentValue>("PYCLIPGRADE_HOST_DIR",
                                                                                  m_folder.string().c_str());
    }
    ~RuntimeOnlyHost() {
        m_pHost.reset();
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    bool Applied() const { return m_pHost->Applied(); }

private:
    std::filesystem::path m_folder;
    std::unique_ptr<pcg::platform_testing::ScopedEnvironmentValue> m_pHost;
};

TEST_F(FacadeTest, WithoutTheAgentLibraryTheRuntimeIsStillFreed) {
    RuntimeOnlyHost host;
    ASSERT_TRUE(host.Applied());
    auto facade = std::make_unique<PyClipGrade>(nullptr, 0);
    EXPECT_EQ(facade->m_hDspAgentDll, nullptr);
    EXPECT_EQ(facade->m_dspAgent, nullptr);
    EXPECT_EQ(facade->m_dspBufAgent, nullptr);
    ASSERT_NE(facade->m_hIompDll, nullptr);
    const void* runtimeEntry = pcg::platform::FindSymbol(facade->m_hIompDll, "RefIomp_Loaded");
    ASSERT_NE(runtimeEntry, nullptr);

    // The agent library's handle is null, so its unload fails; the runtime's
    // unload after it still runs, and the runtime leaves the process.
    facade.reset();
    pcg::platform::ModuleHandle stillLoaded = pcg::platform::AcquireModuleOfAddress(runtimeEntry);
    EXPECT_EQ(stillLoaded, nullptr);
    pcg::platform::UnloadModule(stillLoaded);
}

}  // namespace
