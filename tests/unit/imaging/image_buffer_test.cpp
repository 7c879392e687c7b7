#include "imaging/cimage_buffer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace {

TEST(CImageBuffer, FactoryGivesOneReferenceAndTheSize) {
    IImageBuffer* buffer = CreateImageBuffer(7, 5, 4);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->GetWidth(), 7);
    EXPECT_EQ(buffer->GetHeight(), 5);
    EXPECT_EQ(buffer->GetPixelBytes(), 4);
    EXPECT_EQ(buffer->Release(), 0);
}

TEST(CImageBuffer, PixelsAreAlignedWithEightPixelsOfSlack) {
    for (uint32_t pixelBytes : {1u, 3u, 4u, 6u, 8u}) {
        IImageBuffer* buffer = CreateImageBuffer(13, 3, pixelBytes);
        ASSERT_NE(buffer, nullptr);
        uint8_t* pixels = nullptr;
        int width = -1, height = -1;
        ASSERT_TRUE(buffer->LockBuffer(&pixels, &width, &height));
        EXPECT_EQ(reinterpret_cast<uintptr_t>(pixels) % 16, 0u);
        EXPECT_EQ(width, 13);
        EXPECT_EQ(height, 3);
        // The whole block, slack included, is the buffer's (AddressSanitizer
        // would flag a shorter one).
        std::memset(pixels, 0x5C, (13 * 3 + 8) * pixelBytes);
        EXPECT_TRUE(buffer->UnlockBuffer());
        buffer->Release();
    }
}

TEST(CImageBuffer, AllocationSizeCountsTheSlack) {
    size_t bytes = 0;
    ASSERT_TRUE(CImageBuffer::AllocationSize(10, 4, 3, &bytes));
    EXPECT_EQ(bytes, (10u * 4u + 8u) * 3u);
    ASSERT_TRUE(CImageBuffer::AllocationSize(0, 9, 4, &bytes));
    EXPECT_EQ(bytes, 32u);
}

TEST(CImageBuffer, ZeroWidthAllocatesJustTheSlack) {
    IImageBuffer* buffer = CreateImageBuffer(0, 100, 4);
    ASSERT_NE(buffer, nullptr);
    uint8_t* pixels = nullptr;
    int width = -1, height = -1;
    buffer->LockBuffer(&pixels, &width, &height);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 100);
    std::memset(pixels, 0, 8 * 4);
    buffer->UnlockBuffer();
    buffer->Release();
}

TEST(CImageBuffer, ReleaseOfTheLastReferenceReturnsZero) {
    IImageBuffer* buffer = CreateImageBuffer(2, 2, 1);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->AddRef(), 2);
    EXPECT_EQ(buffer->Release(), 1);
    EXPECT_EQ(buffer->Release(), 0);
}

TEST(CImageBuffer, AddRefReleasePairKeepsTheCount) {
    IImageBuffer* buffer = CreateImageBuffer(2, 2, 1);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->AddRef(), 2);
    EXPECT_EQ(buffer->AddRef(), 3);
    EXPECT_EQ(buffer->Release(), 2);
    EXPECT_EQ(buffer->AddRef(), 3);
    EXPECT_EQ(buffer->Release(), 2);
    EXPECT_EQ(buffer->Release(), 1);
    EXPECT_EQ(buffer->Release(), 0);
}

TEST(CImageBuffer, CountsAreAtomicAcrossThreads) {
    IImageBuffer* buffer = CreateImageBuffer(1, 1, 1);
    ASSERT_NE(buffer, nullptr);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([buffer] {
            for (int i = 0; i < 20000; ++i) {
                buffer->AddRef();
                buffer->Release();
            }
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(buffer->AddRef(), 2);
    buffer->Release();
    EXPECT_EQ(buffer->Release(), 0);
}

TEST(CImageBuffer, LockTwiceNeedsTwoUnlocks) {
    IImageBuffer* buffer = CreateImageBuffer(4, 4, 1);
    ASSERT_NE(buffer, nullptr);
    uint8_t* pixels = nullptr;
    int width = 0, height = 0;
    ASSERT_TRUE(buffer->LockBuffer(&pixels, &width, &height));
    ASSERT_TRUE(buffer->LockBuffer(&pixels, &width, &height));  // recursive on this thread
    std::atomic<bool> entered{false};
    std::thread other([&] {
        uint8_t* p = nullptr;
        int w = 0, h = 0;
        buffer->LockBuffer(&p, &w, &h);
        entered = true;
        buffer->UnlockBuffer();
    });
    ASSERT_TRUE(buffer->UnlockBuffer());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(entered.load());
    ASSERT_TRUE(buffer->UnlockBuffer());
    other.join();
    EXPECT_TRUE(entered.load());
    buffer->Release();
}

TEST(CImageBuffer, SizeAccessorsTakeNoLock) {
    IImageBuffer* buffer = CreateImageBuffer(6, 2, 3);
    ASSERT_NE(buffer, nullptr);
    uint8_t* pixels = nullptr;
    int width = 0, height = 0;
    buffer->LockBuffer(&pixels, &width, &height);
    int seen = 0;
    std::thread other([&] { seen = buffer->GetWidth() * buffer->GetHeight() * buffer->GetPixelBytes(); });
    other.join();
    EXPECT_EQ(seen, 36);
    buffer->UnlockBuffer();
    buffer->Release();
}

TEST(CImageBuffer, LockWithNullOutPointersStillLocks) {
    IImageBuffer* buffer = CreateImageBuffer(3, 3, 1);
    ASSERT_NE(buffer, nullptr);
    int width = 0;
    EXPECT_TRUE(buffer->LockBuffer(nullptr, &width, nullptr));
    EXPECT_EQ(width, 3);
    EXPECT_TRUE(buffer->UnlockBuffer());
    buffer->Release();
}

TEST(CImageBuffer, FactoryFailsWhenThePixelsCannotBeHad) {
    // A product that size_t cannot hold, and one that no heap can serve.
    EXPECT_EQ(CreateImageBuffer(0xFFFFFFFFu, 0xFFFFFFFFu, 8), nullptr);
    EXPECT_EQ(CreateImageBuffer(0x7FFFFFFFu, 0x7FFFFFFFu, 1), nullptr);
}

TEST(CImageBuffer, FailedReallocationLeavesNoPixels) {
    IImageBuffer* buffer = CreateImageBuffer(5, 5, 4);
    ASSERT_NE(buffer, nullptr);
    CImageBuffer* image = static_cast<CImageBuffer*>(buffer);
    EXPECT_FALSE(image->Allocate(0x7FFFFFFFu, 0x7FFFFFFFu, 4));
    uint8_t* pixels = reinterpret_cast<uint8_t*>(1);
    int width = -1, height = -1;
    image->LockBuffer(&pixels, &width, &height);
    EXPECT_EQ(pixels, nullptr);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 0);
    EXPECT_EQ(image->GetPixelBytes(), 0);
    image->UnlockBuffer();
    EXPECT_TRUE(image->Allocate(2, 2, 1));
    EXPECT_EQ(image->GetWidth(), 2);
    buffer->Release();
}

}  // namespace
