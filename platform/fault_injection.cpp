#include "platform/fault_injection.h"

#include <atomic>
#include <cwchar>
#include <mutex>
#include <set>
#include <string>

#include "platform/platform.h"

namespace pcg {
namespace platform {
namespace {

std::atomic<bool> g_bArmed(false);
std::atomic<bool> g_bEnvironmentRead(false);
std::atomic<uint64_t> g_nChecks(0);
std::atomic<uint64_t> g_nFirst(0);
std::atomic<uint64_t> g_nLast(0);  // 0: no end

void Arm(uint64_t first, uint64_t count) {
    g_bArmed = false;
    g_nChecks = 0;
    g_nFirst = first;
    g_nLast = count == 0 ? 0 : first + count - 1;
    g_bArmed = first != 0;
}

void ReadEnvironmentOnce() {
    bool expected = false;
    if (!g_bEnvironmentRead.compare_exchange_strong(expected, true)) {
        return;
    }
    std::wstring text;
    if (!ReadEnvironmentVariable(L"PYCLIPGRADE_FAIL_ALLOCATION", &text) || text.empty()) {
        return;
    }
    wchar_t* end = nullptr;
    const unsigned long long first = std::wcstoull(text.c_str(), &end, 10);
    unsigned long long count = 0;
    if (end != nullptr && *end == L':') {
        count = std::wcstoull(end + 1, nullptr, 10);
    }
    Arm(first, count);
}

// The named sites: a set under its own lock (a leaf lock; nothing is called
// while it is held), and a flag that lets the common case skip the lock.
std::atomic<bool> g_bSitesArmed(false);
std::atomic<bool> g_bSitesEnvironmentRead(false);

std::mutex& SiteLock() {
    static std::mutex* lock = new std::mutex;  // never destroyed: checks may run during exit
    return *lock;
}

std::set<std::string>& Sites() {
    static std::set<std::string>* sites = new std::set<std::string>;
    return *sites;
}

void SetSiteLocked(const std::string& name, bool on) {
    if (on) {
        Sites().insert(name);
    } else {
        Sites().erase(name);
    }
    g_bSitesArmed = !Sites().empty();
}

void ReadSitesOnce() {
    bool expected = false;
    if (!g_bSitesEnvironmentRead.compare_exchange_strong(expected, true)) {
        return;
    }
    std::wstring text;
    if (!ReadEnvironmentVariable(L"PYCLIPGRADE_FAIL_SITES", &text) || text.empty()) {
        return;
    }
    std::lock_guard<std::mutex> guard(SiteLock());
    std::string name;
    for (const wchar_t c : text) {
        if (c == L',') {
            if (!name.empty()) SetSiteLocked(name, true);
            name.clear();
        } else if (c > 0 && c < 128) {
            name.push_back(static_cast<char>(c));
        }
    }
    if (!name.empty()) SetSiteLocked(name, true);
}

}  // namespace

bool SiteFaultDue(const char* site) {
    if (!g_bSitesEnvironmentRead.load(std::memory_order_relaxed)) {
        ReadSitesOnce();
    }
    if (!g_bSitesArmed.load(std::memory_order_relaxed) || site == nullptr) {
        return false;
    }
    std::lock_guard<std::mutex> guard(SiteLock());
    return Sites().count(site) != 0;
}

void FailSite(const char* site, bool on) {
    g_bSitesEnvironmentRead = true;
    std::lock_guard<std::mutex> guard(SiteLock());
    if (site == nullptr) {
        Sites().clear();
        g_bSitesArmed = false;
        return;
    }
    SetSiteLocked(site, on);
}

bool AllocationFaultDue() {
    if (!g_bEnvironmentRead.load(std::memory_order_relaxed)) {
        ReadEnvironmentOnce();
    }
    if (!g_bArmed.load(std::memory_order_relaxed)) {
        return false;
    }
    const uint64_t check = ++g_nChecks;
    const uint64_t last = g_nLast;
    return check >= g_nFirst && (last == 0 || check <= last);
}

void FailAllocations(uint32_t first, uint32_t count) {
    g_bEnvironmentRead = true;
    Arm(first, count);
}

namespace {
std::atomic<uint32_t> g_nThreadStartsToFail(0);
}  // namespace

void FailThreadStarts(uint32_t count) { g_nThreadStartsToFail = count; }

bool ThreadStartFaultDue() {
    uint32_t left = g_nThreadStartsToFail.load();
    while (left != 0) {
        if (g_nThreadStartsToFail.compare_exchange_weak(left, left - 1)) return true;
    }
    return false;
}

}  // namespace platform
}  // namespace pcg

// The module's entry for tests that load it with ctypes (Python tests run on
// POSIX only; on Windows the entry stays internal to each library).
#if defined(_WIN32)
#define PCG_TESTING_ENTRY extern "C"
#else
#define PCG_TESTING_ENTRY extern "C" __attribute__((visibility("default")))
#endif
PCG_TESTING_ENTRY void PcgTesting_FailAllocations(uint32_t first, uint32_t count) {
    pcg::platform::FailAllocations(first, count);
}

PCG_TESTING_ENTRY void PcgTesting_FailSite(const char* site, int32_t on) {
    pcg::platform::FailSite(site, on != 0);
}
