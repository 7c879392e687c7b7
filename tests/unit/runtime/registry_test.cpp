#include <gtest/gtest.h>

#include <cstdint>

#include "platform/platform.h"
#include "platform/testing/settings_editor.h"
#include "runtime/registry.h"

using namespace pcg::platform;
using namespace pcg::platform_testing;

namespace {

const wchar_t kProductKey[] = L"SoftWare\\Verimont\\Huevane5";

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(DeleteSettingsKey(kProductKey)); }
    void TearDown() override { DeleteSettingsKey(kProductKey); }
};

TEST_F(RegistryTest, ConstructorKeepsRootAndZeroesTheRest) {
    CRegistry registry(LocalMachineKey());
    EXPECT_EQ(registry.m_hKey, LocalMachineKey());
    EXPECT_EQ(registry.m_lLastResult, 0);
    EXPECT_EQ(registry.m_dwLastType, 0u);
    EXPECT_EQ(registry.m_dwLastSize, 0u);
    EXPECT_TRUE(registry.m_strKeyPath.empty());
}

TEST_F(RegistryTest, OpenStoresPathAndResult) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"EnableKESPlugInMultiThread", 1));
    CRegistry registry(LocalMachineKey());
    EXPECT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    EXPECT_EQ(registry.m_strKeyPath, kProductKey);
    EXPECT_EQ(registry.m_lLastResult, 0);
    EXPECT_NE(registry.m_hKey, nullptr);
    EXPECT_NE(registry.m_hKey, LocalMachineKey());
}

TEST_F(RegistryTest, OpenOfMissingKeyFailsAndLeavesNoKey) {
    CRegistry registry(LocalMachineKey());
    EXPECT_FALSE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    EXPECT_EQ(registry.m_lLastResult, kErrorFileNotFound);
    EXPECT_EQ(registry.m_hKey, nullptr);
    EXPECT_EQ(registry.m_strKeyPath, kProductKey);
}

TEST_F(RegistryTest, OpenZeroesTypeAndSizeOfTheLastRead) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Value", 5));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0;
    ASSERT_TRUE(registry.m_fnQueryDWORD(L"Value", &value));
    ASSERT_EQ(registry.m_dwLastType, kRegDword);
    EXPECT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    EXPECT_EQ(registry.m_dwLastType, 0u);
    EXPECT_EQ(registry.m_dwLastSize, 0u);
}

TEST_F(RegistryTest, OpenForWritingAlsoOpens) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Value", 5));
    CRegistry registry(LocalMachineKey());
    EXPECT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 0));
    uint32_t value = 0;
    EXPECT_TRUE(registry.m_fnQueryDWORD(L"Value", &value));
    EXPECT_EQ(value, 5u);
}

TEST_F(RegistryTest, QueryReadsDwordWithTypeAndSize) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"EnableKESPlugInMultiThread", 0x01020304));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0xFFFFFFFF;
    EXPECT_TRUE(registry.m_fnQueryDWORD(L"EnableKESPlugInMultiThread", &value));
    EXPECT_EQ(value, 0x01020304u);
    EXPECT_EQ(registry.m_lLastResult, 0);
    EXPECT_EQ(registry.m_dwLastType, kRegDword);
    EXPECT_EQ(registry.m_dwLastSize, 4u);
}

TEST_F(RegistryTest, MissingValueLeavesCallersValue) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Other", 1));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0xFFFFFFFF;
    EXPECT_FALSE(registry.m_fnQueryDWORD(L"EnableKESPlugInMultiThread", &value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_EQ(static_cast<int32_t>(value), -1);
    EXPECT_EQ(registry.m_lLastResult, kErrorFileNotFound);
}

TEST_F(RegistryTest, QueryAfterFailedOpenFailsAndLeavesCallersValue) {
    CRegistry registry(LocalMachineKey());
    ASSERT_FALSE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0xFFFFFFFF;
    EXPECT_FALSE(registry.m_fnQueryDWORD(L"EnableKESPlugInMultiThread", &value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_EQ(registry.m_lLastResult, kErrorInvalidHandle);
}

TEST_F(RegistryTest, ShorterValueOfAnotherTypeOverlaysItsOwnBytes) {
    const uint8_t two[2] = {0x02, 0x00};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"Short", kRegBinary, two, sizeof(two)));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0xFFFFFFFF;
    EXPECT_TRUE(registry.m_fnQueryDWORD(L"Short", &value));
    EXPECT_EQ(value, 0xFFFF0002u);
    EXPECT_EQ(registry.m_dwLastType, kRegBinary);
    EXPECT_EQ(registry.m_dwLastSize, 2u);
}

TEST_F(RegistryTest, LongerValueOfAnotherTypeFailsWithMoreData) {
    const uint64_t big = 1;
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"Big", kRegQword, &big, sizeof(big)));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    uint32_t value = 0xFFFFFFFF;
    EXPECT_FALSE(registry.m_fnQueryDWORD(L"Big", &value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_EQ(registry.m_lLastResult, kErrorMoreData);
    EXPECT_EQ(registry.m_dwLastType, kRegQword);
    EXPECT_EQ(registry.m_dwLastSize, 8u);
}

TEST_F(RegistryTest, NullValuePointerIsNotWrittenThrough) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Value", 5));
    CRegistry registry(LocalMachineKey());
    ASSERT_TRUE(registry.m_fnOpen(LocalMachineKey(), kProductKey, 1));
    EXPECT_TRUE(registry.m_fnQueryDWORD(L"Value", nullptr));
    EXPECT_EQ(registry.m_lLastResult, 0);
}

// ------------------------------------------------------------ Use16bitsColorDepth

TEST_F(RegistryTest, DepthWithoutKeyIsOne) { EXPECT_EQ(Use16bitsColorDepth(), 1u); }

TEST_F(RegistryTest, DepthWithoutValueIsOne) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"EnableKESPlugInMultiThread", 0));
    EXPECT_EQ(Use16bitsColorDepth(), 1u);
}

TEST_F(RegistryTest, DepthValueZeroIsZero) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 0));
    EXPECT_EQ(Use16bitsColorDepth(), 0u);
}

TEST_F(RegistryTest, DepthValueOneIsOne) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 1));
    EXPECT_EQ(Use16bitsColorDepth(), 1u);
}

TEST_F(RegistryTest, DepthValueTwoIsTwo) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 2));
    EXPECT_EQ(Use16bitsColorDepth(), 2u);
}

TEST_F(RegistryTest, DepthIsReadAfreshEachTime) {
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 0));
    EXPECT_EQ(Use16bitsColorDepth(), 0u);
    ASSERT_TRUE(SetSettingsDword(kProductKey, L"Use16bitsColorDepth", 2));
    EXPECT_EQ(Use16bitsColorDepth(), 2u);
}

TEST_F(RegistryTest, DepthOfShortBinaryValueIsItsBytesOverZero) {
    const uint8_t two[2] = {0x02, 0x00};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"Use16bitsColorDepth", kRegBinary, two, sizeof(two)));
    EXPECT_EQ(Use16bitsColorDepth(), 2u);
}

TEST_F(RegistryTest, DepthOfStringValueIsItsFirstFourBytes) {
    // "1" in UTF-16 with its terminator: 31 00 00 00.
    const uint8_t text[4] = {'1', 0, 0, 0};
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"Use16bitsColorDepth", kRegSz, text, sizeof(text)));
    EXPECT_EQ(Use16bitsColorDepth(), 0x31u);
}

TEST_F(RegistryTest, DepthOfLongerValueIsOne) {
    const uint64_t zero = 0;
    ASSERT_TRUE(SetSettingsValue(kProductKey, L"Use16bitsColorDepth", kRegQword, &zero, sizeof(zero)));
    EXPECT_EQ(Use16bitsColorDepth(), 1u);
}

TEST_F(RegistryTest, KeyNameMatchesWithoutRegardToCase) {
    ASSERT_TRUE(SetSettingsDword(L"SOFTWARE\\VERIMONT\\HUEVANE5", L"Use16bitsColorDepth", 0));
    EXPECT_EQ(Use16bitsColorDepth(), 0u);
}

}  // namespace
