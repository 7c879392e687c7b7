#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <cstring>
#include <string>
#include <unistd.h>

#include "platform/platform.h"
#include "platform/posix/settings_file.h"
#include "platform/testing/environment.h"

using namespace pcg::platform;
using namespace pcg::platform::posix;
using namespace pcg::platform_testing;

namespace {

// Each case writes its own file and points the variable at it.
class SettingsFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/pcg-settings-test-XXXXXX";
        const int fd = mkstemp(pattern);
        ASSERT_GE(fd, 0);
        close(fd);
        m_strPath = pattern;
        m_pRegistryVariable = std::make_unique<ScopedEnvironmentValue>("PYCLIPGRADE_REGISTRY", m_strPath.c_str());
        ASSERT_TRUE(m_pRegistryVariable->Applied());
    }
    void TearDown() override {
        if (m_hKey != nullptr) CloseSettingsKey(m_hKey);
        unlink(m_strPath.c_str());
        m_pRegistryVariable.reset();
    }
    void Write(const std::string& text) {
        FILE* file = std::fopen(m_strPath.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    long Open(const wchar_t* path) {
        if (m_hKey != nullptr) CloseSettingsKey(m_hKey);
        m_hKey = nullptr;
        return OpenSettingsKey(LocalMachineKey(), path, kKeyRead, &m_hKey);
    }
    // Type and bytes of one value of the open key; type 0 when it cannot be read.
    std::pair<uint32_t, std::string> Read(const wchar_t* name) {
        uint32_t type = 0, size = 256;
        char data[256] = {};
        if (QuerySettingsValue(m_hKey, name, &type, data, &size) != kErrorSuccess) return {0, std::string()};
        return {type, std::string(data, size)};
    }
    uint32_t ReadDword(const wchar_t* name) {
        const auto value = Read(name);
        EXPECT_EQ(value.first, kRegDword);
        EXPECT_EQ(value.second.size(), 4u);
        uint32_t dword = 0;
        std::memcpy(&dword, value.second.data(), std::min<size_t>(4, value.second.size()));
        return dword;
    }

    std::unique_ptr<ScopedEnvironmentValue> m_pRegistryVariable;
    std::string m_strPath;
    SettingsKey m_hKey = nullptr;
};

TEST_F(SettingsFileTest, DefaultFileIsUnderEtc) {
    ASSERT_TRUE(UnsetEnvironmentValue("PYCLIPGRADE_REGISTRY"));
    EXPECT_EQ(SettingsFilePath(), "/etc/PyClipGrade/registry.ini");
}

TEST_F(SettingsFileTest, VariableNamesTheFile) { EXPECT_EQ(SettingsFilePath(), m_strPath); }

TEST_F(SettingsFileTest, MissingFileMeansMissingKey) {
    ASSERT_TRUE(SetEnvironmentValue("PYCLIPGRADE_REGISTRY", "/nonexistent/pcg/registry.ini"));
    EXPECT_EQ(Open(L"SoftWare\\Verimont\\Huevane5"), kErrorFileNotFound);
}

TEST_F(SettingsFileTest, DecimalNumbersAreDwords) {
    Write("[SoftWare\\Verimont\\Huevane5]\nA=10\nB=4294967295\nC=-1\n");
    ASSERT_EQ(Open(L"SoftWare\\Verimont\\Huevane5"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 10u);
    EXPECT_EQ(ReadDword(L"B"), 0xFFFFFFFFu);
    EXPECT_EQ(ReadDword(L"C"), 0xFFFFFFFFu);
}

TEST_F(SettingsFileTest, HexadecimalNumbersAreDwords) {
    Write("[K]\nA=0x1F\nB=dword:0000002a\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 31u);
    EXPECT_EQ(ReadDword(L"B"), 42u);
}

TEST_F(SettingsFileTest, QwordFormIsEightBytes) {
    Write("[K]\nQ=qword:0x0102030405060708\nD=qword:5\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    const auto q = Read(L"Q");
    EXPECT_EQ(q.first, kRegQword);
    EXPECT_EQ(q.second, std::string("\x08\x07\x06\x05\x04\x03\x02\x01", 8));
    const auto d = Read(L"D");
    EXPECT_EQ(d.first, kRegQword);
    EXPECT_EQ(d.second, std::string("\x05\0\0\0\0\0\0\0", 8));
}

TEST_F(SettingsFileTest, HexFormIsBinary) {
    Write("[K]\nH=hex:01, 02,ff\nE=hex:\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    const auto h = Read(L"H");
    EXPECT_EQ(h.first, kRegBinary);
    EXPECT_EQ(h.second, std::string("\x01\x02\xff", 3));
    const auto e = Read(L"E");
    EXPECT_EQ(e.first, kRegBinary);
    EXPECT_EQ(e.second, std::string());
}

TEST_F(SettingsFileTest, TypedHexFormCarriesAnyType) {
    Write("[K]\nT=hex(7):61,00,00,00\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    const auto t = Read(L"T");
    EXPECT_EQ(t.first, 7u);
    EXPECT_EQ(t.second, std::string("a\0\0\0", 4));
}

TEST_F(SettingsFileTest, QuotedTextIsUtf16StringWithTerminator) {
    Write("[K]\nS=\"a\\\"b\"\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    const auto s = Read(L"S");
    EXPECT_EQ(s.first, kRegSz);
    EXPECT_EQ(s.second, std::string("a\0\"\0b\0\0\0", 8));
}

TEST_F(SettingsFileTest, OtherTextIsStringAsWritten) {
    Write("[Classes]\n{0A1B}=Kernel/ImageRetouch/ImageRetouch.so\n");
    ASSERT_EQ(Open(L"Classes"), kErrorSuccess);
    const auto s = Read(L"{0A1B}");
    EXPECT_EQ(s.first, kRegSz);
    const std::string text = "Kernel/ImageRetouch/ImageRetouch.so";
    std::string expected;
    for (char c : text) expected += std::string{c, '\0'};
    expected += std::string(2, '\0');
    EXPECT_EQ(s.second, expected);
}

TEST_F(SettingsFileTest, SectionMatchesWithoutRegardToCaseOrOuterBackslashes) {
    Write("[ \\software\\VERIMONT\\huevane5\\ ]\nDumpMsg=1\n");
    ASSERT_EQ(Open(L"SoftWare\\Verimont\\Huevane5"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"dumpmsg"), 1u);
}

TEST_F(SettingsFileTest, CommentsBlankLinesAndLinesOutsideSectionsAreIgnored) {
    Write("Outside=5\n; comment\n# another\n\n[K]\nNoEquals\nA = 3 \n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 3u);
    EXPECT_EQ(Read(L"Outside").first, 0u);
    EXPECT_EQ(Read(L"NoEquals").first, 0u);
}

TEST_F(SettingsFileTest, CrLfLinesAndByteOrderMarkAreRead) {
    Write("\xEF\xBB\xBF[K]\r\nA=7\r\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 7u);
}

TEST_F(SettingsFileTest, RepeatedSectionsMergeAndTheLaterLineWins) {
    Write("[K]\nA=1\nB=1\n[Other]\nA=9\n[k]\nA=2\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 2u);
    EXPECT_EQ(ReadDword(L"B"), 1u);
}

TEST_F(SettingsFileTest, QuotedNameAndDefaultValue) {
    Write("[K]\n\"Spaced Name\"=4\n@=6\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"Spaced Name"), 4u);
    EXPECT_EQ(ReadDword(L""), 6u);
    EXPECT_EQ(ReadDword(nullptr), 6u);
}

TEST_F(SettingsFileTest, FileIsReadAgainAtEachOpen) {
    Write("[K]\nA=1\n");
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 1u);
    Write("[K]\nA=2\n");
    // The open key keeps what it read; the next open reads the file again.
    EXPECT_EQ(ReadDword(L"A"), 1u);
    ASSERT_EQ(Open(L"K"), kErrorSuccess);
    EXPECT_EQ(ReadDword(L"A"), 2u);
}

TEST_F(SettingsFileTest, FormattedValuesReadBackAsTheSameTypeAndBytes) {
    const SettingsValue values[] = {
        {kRegDword, {1, 2, 3, 4}},
        {kRegBinary, {0xff, 0}},
        {kRegQword, {1, 2, 3, 4, 5, 6, 7, 8}},
        {kRegSz, {'x', 0, 0, 0}},
        {kRegDword, {1, 2}},
        {0x2A, {}},
    };
    for (const SettingsValue& value : values) {
        const SettingsValue back = ParseSettingsValue(FormatSettingsValue(value));
        EXPECT_EQ(back.m_dwType, value.m_dwType);
        EXPECT_EQ(back.m_data, value.m_data);
    }
}

}  // namespace
