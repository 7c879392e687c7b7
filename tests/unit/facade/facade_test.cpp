#include "facade/clipgrade.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/testing/environment.h"

namespace {

// The reference agent's inspection entries, from the same library file the
// facade loads, so both see one state.
class AgentJournal {
public:
    AgentJournal() {
        const std::wstring path =
            pcg::platform::JoinHostPath(pcg::platform::HostDirectory(), L"KESdlls\\VXHvnDspAgent.dll");
        m_hLibrary = pcg::platform::LoadModule(path.c_str());
        m_fnJournal = reinterpret_cast<int32_t (*)(char*, int32_t)>(
            pcg::platform::FindSymbol(m_hLibrary, "RefAgent_Journal"));
        m_fnReset = reinterpret_cast<void (*)()>(pcg::platform::FindSymbol(m_hLibrary, "RefAgent_Reset"));
    }
    ~AgentJournal() { pcg::platform::UnloadModule(m_hLibrary); }
    bool Loaded() const { return m_fnJournal != nullptr && m_fnReset != nullptr; }
    void Reset() { m_fnReset(); }
    std::string Text() {
        std::vector<char> buffer(static_cast<std::size_t>(m_fnJournal(nullptr, 0)) + 1);
        m_fnJournal(buffer.data(), static_cast<int32_t>(buffer.size()));
        return buffer.data();
    }

private:
    pcg::platform::ModuleHandle m_hLibrary = nullptr;
    int32_t (*m_fnJournal)(char*, int32_t) = nullptr;
    void (*m_fnReset)() = nullptr;
};

class FacadeTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_journal.Loaded());
        m_journal.Reset();
    }
    AgentJournal m_journal;
};

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

// The journal's entries in order, as "agent op args" lines, so tests compare
// whole sequences without a JSON reader.
std::string Calls(const std::string& journal, const char* op) {
    std::string out;
    const std::string opField = std::string("\"op\":\"") + op + "\"";
    std::size_t at = 0;
    while ((at = journal.find(opField, at)) != std::string::npos) {
        const std::size_t begin = journal.rfind("{\"agent\":\"", at);
        const std::size_t nameEnd = journal.find('"', begin + 10);
        const std::size_t argsBegin = journal.find("\"args\":", at);
        const std::size_t argsEnd = journal.find('}', argsBegin);
        out += journal.substr(begin + 10, nameEnd - begin - 10) + " " + journal.substr(argsBegin + 7, argsEnd - argsBegin - 7) + "\n";
        at += opField.size();
    }
    return out;
}

TEST_F(FacadeTest, SetDBMgrTellsBufferAgentThenMainAgent) {
    PyClipGrade facade;
    EXPECT_TRUE(facade.SetDBMgr(kThreadMgr, kTinyDB));
    EXPECT_EQ(Calls(m_journal.Text(), "SetDBMgr"), "DspBuf [true,true]\nDspMain [true,true]\n");
}

TEST_F(FacadeTest, SetDBMgrWithMainAgentOnly) {
    PyClipGrade first;
    PyClipGrade second(first.m_dspAgent, 0);
    EXPECT_TRUE(second.SetDBMgr(kThreadMgr, kTinyDB));
    EXPECT_EQ(Calls(m_journal.Text(), "SetDBMgr"), "DspMain [true,true]\n");
}

TEST_F(FacadeTest, SetDBMgrWithOneNullArgumentTellsNeitherAgent) {
    PyClipGrade facade;
    EXPECT_FALSE(facade.SetDBMgr(kThreadMgr, nullptr));
    EXPECT_FALSE(facade.SetDBMgr(nullptr, kTinyDB));
    EXPECT_EQ(Calls(m_journal.Text(), "SetDBMgr"), "");
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
