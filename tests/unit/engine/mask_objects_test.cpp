// The mask objects as the agent sees them: sizes, where each field sits, the
// heap they come from, and what their destructors free.
#include <gtest/gtest.h>

#include <cstring>

#include "engine/constants.h"
#include "engine/mask_objects.h"

namespace pcg {
namespace engine {
namespace {

template <typename T>
std::size_t OffsetIn(const void* object, const T& field) {
    return static_cast<std::size_t>(reinterpret_cast<const unsigned char*>(&field) -
                                    static_cast<const unsigned char*>(object));
}

TEST(MaskObjects, SizesAreThoseOfTheContract) {
    EXPECT_EQ(sizeof(HVN::MaskInfoBase), 24u);
    EXPECT_EQ(sizeof(HVN::GradientMask), 48u);
    EXPECT_EQ(sizeof(HVN::SelectionMask), 104u);
    EXPECT_EQ(sizeof(HVN::EllipseMask), 128u);
    EXPECT_EQ(sizeof(HVN::MotionTrackMask), 128u);
    EXPECT_EQ(sizeof(MaskValueKey), 16u);
    EXPECT_EQ(sizeof(GradientKey), 40u);
    EXPECT_EQ(sizeof(EllipseKey), 56u);
    EXPECT_EQ(sizeof(SelectionKey), 104u);
    EXPECT_EQ(sizeof(TRExpressEntry), 24u);
}

TEST(MaskObjects, TheVirtualTableComesFirstAndTheHeadFollows) {
    HVN::MotionTrackMask* mask = new HVN::MotionTrackMask;
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(OffsetIn(mask, mask->nMaskID), 8u);
    EXPECT_EQ(OffsetIn(mask, mask->nMaskKind), 12u);
    EXPECT_EQ(OffsetIn(mask, mask->effectInfoID), 16u);
    EXPECT_EQ(OffsetIn(mask, mask->lines), 48u);
    EXPECT_EQ(OffsetIn(mask, mask->nVideoID), 124u);
    void* table = nullptr;
    std::memcpy(&table, mask, sizeof(table));
    EXPECT_NE(table, nullptr);
    delete mask;
}

TEST(MaskObjects, ANewObjectHasEveryListEmptyAndEveryFieldZero) {
    HVN::EllipseMask* mask = new HVN::EllipseMask;
    ASSERT_NE(mask, nullptr);
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(mask);
    for (std::size_t offset = 8; offset < sizeof(HVN::EllipseMask); ++offset) {
        EXPECT_EQ(bytes[offset], 0u) << "byte " << offset;
    }
    delete mask;
}

TEST(MaskObjects, NewKeysAreZeroFilled) {
    SelectionKey* key = new SelectionKey;
    ASSERT_NE(key, nullptr);
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(key);
    for (std::size_t offset = 0; offset < sizeof(SelectionKey); ++offset) {
        EXPECT_EQ(bytes[offset], 0u) << "byte " << offset;
    }
    delete key;
}

// The destructor gives back the list's storage and leaves the keys alone:
// they are still readable afterwards (ASan and valgrind would see a free).
TEST(MaskObjects, DestructorsFreeListStorageButNotTheKeys) {
    auto* gradient = new HVN::GradientMask;
    auto* gradientKey = new GradientKey;
    gradientKey->llTime = 77;
    ASSERT_TRUE(gradient->keyFrames.push_back(gradientKey));
    HVN::MaskInfoBase* base = gradient;
    delete base;
    EXPECT_EQ(gradientKey->llTime, 77);
    delete gradientKey;

    auto* selection = new HVN::SelectionMask;
    auto* selectionKey = new SelectionKey;
    ASSERT_TRUE(selectionKey->points.push_back({1.0f, 2.0f}));
    auto* feather = new MaskValueKey;
    feather->nValue = 5;
    ASSERT_TRUE(selection->keyFrames.push_back(selectionKey));
    ASSERT_TRUE(selection->feathers.push_back(feather));
    ASSERT_TRUE(selection->featherShifts.push_back(feather));
    base = selection;
    delete base;
    EXPECT_EQ(selectionKey->points.size(), 1u);
    EXPECT_EQ(feather->nValue, 5);
    selectionKey->points.Free();
    delete selectionKey;
    delete feather;

    auto* track = new HVN::MotionTrackMask;
    auto* line = new MaskValueKey;
    line->nValue = 9;
    ASSERT_TRUE(track->lines.push_back(line));
    ASSERT_TRUE(track->trExpress.push_back({1, 2, 3}));
    base = track;
    delete base;
    EXPECT_EQ(line->nValue, 9);
    delete line;
}

// The ellipse and the motion track have one shape: with the same four lists
// they differ only in the head.
TEST(MaskObjects, EllipseAndMotionTrackAreAlikePastTheHead) {
    EXPECT_EQ(sizeof(HVN::EllipseMask), sizeof(HVN::MotionTrackMask));
    auto* ellipse = new HVN::EllipseMask;
    auto* track = new HVN::MotionTrackMask;
    auto* key = new MaskValueKey;
    ASSERT_TRUE(ellipse->feathers.push_back(key));
    std::memcpy(static_cast<void*>(&track->feathers), &ellipse->feathers, sizeof(track->feathers));
    ellipse->bInverse = track->bInverse = true;
    EXPECT_EQ(std::memcmp(reinterpret_cast<unsigned char*>(ellipse) + 24, reinterpret_cast<unsigned char*>(track) + 24,
                          128 - 24),
              0);
    // One list storage, two owners in this test: one of them lets go.
    std::memset(static_cast<void*>(&track->feathers), 0, sizeof(track->feathers));
    delete ellipse;
    delete track;
    delete key;
}

}  // namespace
}  // namespace engine
}  // namespace pcg
