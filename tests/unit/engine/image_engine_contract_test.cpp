#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "engine/buffer_allocator.h"
#include "engine/image_retouch.h"

namespace {

// See engine_contract_test.cpp: GCC stores a pointer to a virtual member as
// 1 + the slot's byte offset in the table, on both builds.
template <typename TMember>
std::size_t Slot(TMember member) {
    static_assert(sizeof(TMember) == 2 * sizeof(void*), "pointer to member: address word and adjustment");
    std::uintptr_t words[2];
    std::memcpy(words, &member, sizeof(words));
    EXPECT_EQ(words[0] % sizeof(void*), 1u) << "not a virtual operation";
    return static_cast<std::size_t>((words[0] - 1) / sizeof(void*));
}

TEST(ImageEngineContract, UnknownOperationsComeFirst) {
    EXPECT_EQ(Slot(&IComUnknown::QueryInterface), 0u);
    EXPECT_EQ(Slot(&IComUnknown::AddRef), 1u);
    EXPECT_EQ(Slot(&IComUnknown::Release), 2u);
    EXPECT_EQ(Slot(&IComClassFactory::CreateInstance), 3u);
    EXPECT_EQ(Slot(&IComClassFactory::LockServer), 4u);
}

TEST(ImageEngineContract, ImageRetouchOperationsStandInContractOrder) {
    std::size_t slot = 3;
    EXPECT_EQ(Slot(&IImageRetouch::GetToneCurveInfo), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::SetImage), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::RegisterImageRatio), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::UnregisterImageRatio), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::ReleaseImage), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Query_WBDropInfo), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Query_TATMapInfo), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Query_ToneTATMapInfo), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Image_StartRunAllTask), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Image_RunAllTask), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::Image_PushTask), slot++);
    EXPECT_EQ(Slot(&IImageRetouch::SetProperty), slot++);
    EXPECT_EQ(slot, 15u);
}

TEST(ImageEngineContract, BufferAllocatorHasOneOperationAfterTheUnknownThree) {
    EXPECT_EQ(Slot(&IBufferAllocator::allocateImageBuffer), 3u);
}

TEST(ImageEngineContract, IdentitiesAreTheFixedOnes) {
    using namespace pcg::engine;
    EXPECT_EQ(CLSID_ImageRetouch.Data1, 0x58529D7Cu);
    EXPECT_EQ(CLSID_ImageRetouch.Data2, 0x751A);
    EXPECT_EQ(CLSID_ImageRetouch.Data3, 0x47A9);
    const uint8_t retouchTail[8] = {0x98, 0x2D, 0x15, 0x60, 0x34, 0x2E, 0xCB, 0x14};
    EXPECT_EQ(std::memcmp(CLSID_ImageRetouch.Data4, retouchTail, 8), 0);
    EXPECT_EQ(IID_IImageRetouch.Data1, 0x332BF684u);
    EXPECT_EQ(CLSID_BufferAllocator.Data1, 0x62ECF08Bu);
    EXPECT_EQ(IID_IBufferAllocator.Data1, 0x3D770EB3u);
    const uint8_t allocatorTail[8] = {0x9B, 0x6B, 0x06, 0x22, 0x9C, 0xA2, 0x56, 0x33};
    EXPECT_EQ(std::memcmp(IID_IBufferAllocator.Data4, allocatorTail, 8), 0);
    EXPECT_TRUE(SameGuid(IID_IClassFactory, IID_IClassFactory));
    EXPECT_FALSE(SameGuid(IID_IClassFactory, IID_IUnknown));
    EXPECT_FALSE(SameGuid(CLSID_ImageRetouch, CLSID_BufferAllocator));
}

TEST(ImageEngineContract, RecordsStartAsDescribed) {
    ImageRetouchSetting setting;
    EXPECT_EQ(setting.fScale, 1.0f);
    for (int word : setting.nReserved) EXPECT_EQ(word, 0);
    ImageRunAllTaskSetting runAll;
    for (int word : runAll.nWord) EXPECT_EQ(word, 0);
    ImageTaskRecord task;
    EXPECT_EQ(task.pEffect, nullptr);
    EXPECT_EQ(task.nEffectVersion, 0);
}

}  // namespace
