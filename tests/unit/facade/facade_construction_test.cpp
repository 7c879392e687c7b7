// The facade as a whole: its base classes, its fields in the order they are
// built, and what a failure while a member is being built leaves behind.
#include "facade/clipgrade.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <type_traits>
#include <vector>

#include "facade/construction_probe.h"
#include "platform/testing/environment.h"

// Every allocation of this test program goes through here, so that a test can
// count them and make the Nth one fail.
namespace {
std::atomic<long> g_allocations{0};
std::atomic<long> g_live{0};
std::atomic<long> g_failAt{0};
std::atomic<long> g_atMembersBuilt{-1};

void* CountedAllocation(std::size_t size) {
    const long index = ++g_allocations;
    if (g_failAt.load() != 0 && index == g_failAt.load()) throw std::bad_alloc();
    void* p = std::malloc(size ? size : 1);
    if (p == nullptr) throw std::bad_alloc();
    ++g_live;
    return p;
}
void CountedFree(void* p) {
    if (p == nullptr) return;
    --g_live;
    std::free(p);
}
}  // namespace

void* operator new(std::size_t size) { return CountedAllocation(size); }
void* operator new[](std::size_t size) { return CountedAllocation(size); }
void operator delete(void* p) noexcept { CountedFree(p); }
void operator delete[](void* p) noexcept { CountedFree(p); }
void operator delete(void* p, std::size_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::size_t) noexcept { CountedFree(p); }

namespace {

static_assert(std::is_base_of<PyCallbackWnd, PyClipGrade>::value, "the facade is a callback window");
static_assert(std::is_base_of<PyCallback, PyCallbackWnd>::value, "the window is a script callback");
static_assert(std::has_virtual_destructor<PyClipGrade>::value, "the destructor is the facade's virtual operation");
static_assert(!std::is_copy_constructible<PyClipGrade>::value, "a facade is never copied");

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
// The facade's own fields, as their offsets: in declaration order each lies
// beyond the one before it.
const std::vector<std::size_t> kFieldOffsets = {
    offsetof(PyClipGrade, m_dspAgent),          offsetof(PyClipGrade, m_dspBufAgent),
    offsetof(PyClipGrade, m_hDspAgentDll),      offsetof(PyClipGrade, m_hIompDll),
    offsetof(PyClipGrade, m_callbackQueue),     offsetof(PyClipGrade, m_hCallbackDoneEvent),
    offsetof(PyClipGrade, m_pImageRetouch),     offsetof(PyClipGrade, m_pBufferAllocator),
    offsetof(PyClipGrade, m_pixelFormat),       offsetof(PyClipGrade, m_pixelBytes),
    offsetof(PyClipGrade, m_highDepth),         offsetof(PyClipGrade, m_hImageRetouchDll),
    offsetof(PyClipGrade, m_imageRetouchDllPath), offsetof(PyClipGrade, m_LatestSelectionResult),
    offsetof(PyClipGrade, m_selectionBufData),  offsetof(PyClipGrade, m_ZenodorLoader),
    offsetof(PyClipGrade, m_SelectionTool),     offsetof(PyClipGrade, m_MagicSelection),
    offsetof(PyClipGrade, m_ManualBrush),       offsetof(PyClipGrade, m_cacheFrameLock),
    offsetof(PyClipGrade, m_pCacheFrame),       offsetof(PyClipGrade, m_pCachePureFrame),
    offsetof(PyClipGrade, m_pCacheFramePlaying), offsetof(PyClipGrade, m_ippFunctions),
    offsetof(PyClipGrade, m_pImageRetouchMgr),
};
const std::size_t kBaseEnd = sizeof(PyCallbackWnd);
#pragma GCC diagnostic pop

TEST(FacadeConstruction, FieldsFollowTheBasesInDeclarationOrder) {
    ASSERT_EQ(kFieldOffsets.size(), 25u);
    EXPECT_GE(kFieldOffsets.front(), kBaseEnd);
    for (std::size_t i = 1; i < kFieldOffsets.size(); ++i) {
        EXPECT_LT(kFieldOffsets[i - 1], kFieldOffsets[i]) << "field " << i;
    }
}

// A host folder with no engine in it: what is built stops at the members.
class FacadeUnwinding : public ::testing::Test {
protected:
    void SetUp() override {
        m_folder = std::filesystem::temp_directory_path() / "pyclipgrade-empty-host-unwinding";
        std::filesystem::create_directories(m_folder);
        m_host = std::make_unique<pcg::platform_testing::ScopedEnvironmentValue>(
            "PYCLIPGRADE_HOST_DIR", m_folder.string().c_str());
        pcg::facade::g_pfnMembersBuilt = [] { g_atMembersBuilt = g_allocations.load(); };
    }
    void TearDown() override {
        pcg::facade::g_pfnMembersBuilt = nullptr;
        g_failAt = 0;
    }
    std::filesystem::path m_folder;
    std::unique_ptr<pcg::platform_testing::ScopedEnvironmentValue> m_host;
};

TEST_F(FacadeUnwinding, EveryAllocationOfTheBaseAndMembersFailingLeavesNothingBehind) {
    // The allocations made before the constructor's own steps begin: the
    // base's and the members'.
    // The first facade of a program makes what lives as long as the program
    // (the window class, the settings read once); the count is the second's.
    delete new PyClipGrade(nullptr, 0, 0);
    const long before = g_allocations.load();
    delete new PyClipGrade(nullptr, 0, 0);
    const long memberAllocations = g_atMembersBuilt.load() - before;
    ASSERT_GT(memberAllocations, 0);

    for (long n = 1; n <= memberAllocations; ++n) {
        g_atMembersBuilt = -1;
        const long live = g_live.load();
        const long start = g_allocations.load();
        g_failAt = start + n;
        bool thrown = false;
        try {
            new PyClipGrade(nullptr, 0, 0);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        g_failAt = 0;
        EXPECT_TRUE(thrown) << "allocation " << n;
        // The constructor's own steps never ran, and the members built so
        // far and the base went again with all they had allocated.
        EXPECT_EQ(g_atMembersBuilt.load(), -1) << "allocation " << n;
        EXPECT_EQ(g_live.load(), live) << "allocation " << n;
    }
}

TEST_F(FacadeUnwinding, AFacadeBuiltAfterAFailureIsWhole) {
    g_failAt = g_allocations.load() + 1;
    EXPECT_THROW(new PyClipGrade(nullptr, 0, 0), std::bad_alloc);
    g_failAt = 0;
    const long live = g_live.load();
    {
        PyClipGrade facade(nullptr, 0, 0);
        EXPECT_EQ(facade.m_dspAgent, nullptr);
        EXPECT_EQ(facade.m_hCallbackDoneEvent, nullptr);
        EXPECT_NE(facade.m_callbackQueue.pItems, nullptr);
    }
    EXPECT_EQ(g_live.load(), live);
}

}  // namespace
