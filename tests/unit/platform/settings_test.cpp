#include <gtest/gtest.h>

#include <cstring>

#include "platform/platform.h"
#include "platform/testing/settings_editor.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

const wchar_t kTestKey[] = L"SoftWare\\PcgPlatformTest";

class SettingsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(DeleteSettingsKey(kTestKey)); }
    void TearDown() override {
        if (m_hKey != nullptr) CloseSettingsKey(m_hKey);
        DeleteSettingsKey(kTestKey);
    }
    long Open(const wchar_t* path) {
        if (m_hKey != nullptr) CloseSettingsKey(m_hKey);
        m_hKey = nullptr;
        return OpenSettingsKey(LocalMachineKey(), path, kKeyRead, &m_hKey);
    }
    SettingsKey m_hKey = nullptr;
};

TEST_F(SettingsTest, MissingKeyIsNotFound) {
    EXPECT_EQ(Open(L"SoftWare\\PcgPlatformTest\\Missing"), kErrorFileNotFound);
}

TEST_F(SettingsTest, DwordReadsBackWithTypeAndSize) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Answer", 0x12345678));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t type = 0, value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Answer", &type, &value, &size), kErrorSuccess);
    EXPECT_EQ(type, kRegDword);
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(value, 0x12345678u);
}

TEST_F(SettingsTest, KeyAndValueNamesMatchWithoutRegardToCase) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"MixedCase", 5));
    ASSERT_EQ(Open(L"SOFTWARE\\pcgplatformtest"), kErrorSuccess);
    uint32_t value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"mixedcase", nullptr, &value, &size), kErrorSuccess);
    EXPECT_EQ(value, 5u);
}

TEST_F(SettingsTest, NullDataGivesSizeOnly) {
    const uint8_t bytes[6] = {1, 2, 3, 4, 5, 6};
    ASSERT_TRUE(SetSettingsValue(kTestKey, L"Blob", kRegBinary, bytes, sizeof(bytes)));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t type = 0, size = 0;
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Blob", &type, nullptr, &size), kErrorSuccess);
    EXPECT_EQ(type, kRegBinary);
    EXPECT_EQ(size, 6u);
}

TEST_F(SettingsTest, TooLittleRoomGivesMoreDataAndNeededSize) {
    const uint64_t big = 0x0102030405060708ull;
    ASSERT_TRUE(SetSettingsValue(kTestKey, L"Big", kRegQword, &big, sizeof(big)));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t type = 0, value = 0xAAAAAAAA, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Big", &type, &value, &size), kErrorMoreData);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(type, kRegQword);
    EXPECT_EQ(value, 0xAAAAAAAAu);
}

TEST_F(SettingsTest, ShorterValueFillsOnlyItsOwnBytes) {
    const uint8_t bytes[2] = {0x34, 0x12};
    ASSERT_TRUE(SetSettingsValue(kTestKey, L"Short", kRegBinary, bytes, sizeof(bytes)));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t type = 0, value = 0xFFFFFFFF, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Short", &type, &value, &size), kErrorSuccess);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(value, 0xFFFF1234u);
}

TEST_F(SettingsTest, StringValueIsUtf16WithTerminator) {
    const uint8_t text[6] = {'a', 0, 'b', 0, 0, 0};
    ASSERT_TRUE(SetSettingsValue(kTestKey, L"Text", kRegSz, text, sizeof(text)));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t type = 0, size = 16;
    uint8_t data[16] = {};
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Text", &type, data, &size), kErrorSuccess);
    EXPECT_EQ(type, kRegSz);
    ASSERT_EQ(size, 6u);
    EXPECT_EQ(std::memcmp(data, text, sizeof(text)), 0);
}

TEST_F(SettingsTest, MissingValueIsNotFound) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Present", 1));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t value = 0x55, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Absent", nullptr, &value, &size), kErrorFileNotFound);
    EXPECT_EQ(value, 0x55u);
}

TEST_F(SettingsTest, DeletedValueIsNotFound) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Gone", 1));
    ASSERT_TRUE(DeleteSettingsValue(kTestKey, L"Gone"));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Gone", nullptr, &value, &size), kErrorFileNotFound);
}

TEST_F(SettingsTest, DeletedKeyIsNotFoundWithKeysBelowIt) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\PcgPlatformTest\\Below", L"Value", 1));
    ASSERT_TRUE(DeleteSettingsKey(kTestKey));
    EXPECT_EQ(Open(kTestKey), kErrorFileNotFound);
    EXPECT_EQ(Open(L"SoftWare\\PcgPlatformTest\\Below"), kErrorFileNotFound);
}

TEST_F(SettingsTest, KeyAboveAValueKeyExists) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\PcgPlatformTest\\Deep\\Deeper", L"Value", 1));
    EXPECT_EQ(Open(L"SoftWare\\PcgPlatformTest\\Deep"), kErrorSuccess);
}

TEST_F(SettingsTest, KeyOpensRelativeToAnOpenKey) {
    ASSERT_TRUE(SetSettingsDword(L"SoftWare\\PcgPlatformTest\\Child", L"Value", 9));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    SettingsKey child = nullptr;
    ASSERT_EQ(OpenSettingsKey(m_hKey, L"Child", kKeyRead, &child), kErrorSuccess);
    uint32_t value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(child, L"Value", nullptr, &value, &size), kErrorSuccess);
    EXPECT_EQ(value, 9u);
    EXPECT_EQ(CloseSettingsKey(child), kErrorSuccess);
}

TEST_F(SettingsTest, ChangeIsSeenByTheNextOpen) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Value", 1));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Value", 2));
    ASSERT_EQ(Open(kTestKey), kErrorSuccess);
    uint32_t value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(m_hKey, L"Value", nullptr, &value, &size), kErrorSuccess);
    EXPECT_EQ(value, 2u);
}

TEST_F(SettingsTest, ClosingTheRootIsHarmless) {
    ASSERT_TRUE(SetSettingsDword(kTestKey, L"Value", 3));
    EXPECT_EQ(CloseSettingsKey(LocalMachineKey()), kErrorSuccess);
    EXPECT_EQ(Open(kTestKey), kErrorSuccess);
}

TEST_F(SettingsTest, NullKeyIsAnInvalidHandle) {
    uint32_t value = 0, size = sizeof(value);
    EXPECT_EQ(QuerySettingsValue(nullptr, L"Value", nullptr, &value, &size), kErrorInvalidHandle);
}

}  // namespace
