#include <cstdint>

#include <gtest/gtest.h>

#include "platform/platform.h"

namespace {

TEST(IompPlaceholder, LoadsFromItsPlaceInTheHostFolder) {
    const std::wstring path =
        pcg::platform::JoinHostPath(pcg::platform::HostDirectory(), L"Kernel\\ImageRetouch\\libiomp5md.dll");
    pcg::platform::ModuleHandle module = pcg::platform::LoadModule(path.c_str());
    ASSERT_NE(module, nullptr);
    auto loaded = reinterpret_cast<int32_t (*)()>(pcg::platform::FindSymbol(module, "RefIomp_Loaded"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded(), 1);
    EXPECT_EQ(pcg::platform::UnloadModule(module), 1);
}

}  // namespace
