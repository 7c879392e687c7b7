#include "engine/records/image_records.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

TEST(PointD, NewPointIsOrigin) {
    PointD p;
    EXPECT_EQ(0.0, p.x);
    EXPECT_EQ(0.0, p.y);
}

TEST(PointD, ValueConstructorTakesXThenY) {
    PointD p(1.5, -2.5);
    EXPECT_EQ(1.5, p.x);
    EXPECT_EQ(-2.5, p.y);
}

TEST(PointD, CopyingConstructorCopies) {
    PointD source(3.0, 4.0);
    PointD copy(source);
    source.x = 9.0;
    EXPECT_EQ(3.0, copy.x);
    EXPECT_EQ(4.0, copy.y);
}

TEST(PointD, EqualWithinTolerance) {
    EXPECT_TRUE(PointD(1.0, 2.0) == PointD(1.0009, 2.0));
    EXPECT_TRUE(PointD(1.0, 2.0) == PointD(1.0, 1.9991));
}

TEST(PointD, DifferenceOfElevenTenThousandthsIsNotEqual) {
    EXPECT_FALSE(PointD(1.0, 2.0) == PointD(1.0011, 2.0));
    EXPECT_FALSE(PointD(1.0, 2.0) == PointD(1.0, 2.0011));
}

TEST(PointD, ToleranceIsStrictAndSinglePrecision) {
    const double tolerance = static_cast<double>(0.001f);
    EXPECT_FALSE(PointD(0.0, 0.0) == PointD(tolerance, 0.0));
    EXPECT_TRUE(PointD(0.0, 0.0) == PointD(std::nextafter(tolerance, 0.0), 0.0));
    // 0.001 in double is below the single-precision tolerance.
    EXPECT_TRUE(PointD(0.0, 0.0) == PointD(0.001, 0.0));
}

TEST(PointD, NotEqualIsTheNegation) {
    EXPECT_FALSE(PointD(1.0, 2.0) != PointD(1.0009, 2.0));
    EXPECT_TRUE(PointD(1.0, 2.0) != PointD(1.0011, 2.0));
}

TEST(RectD, NewRectIsZero) {
    RectD r;
    EXPECT_EQ(0.0, r.left);
    EXPECT_EQ(0.0, r.top);
    EXPECT_EQ(0.0, r.right);
    EXPECT_EQ(0.0, r.bottom);
}

TEST(RectD, ValueConstructorTakesLeftTopRightBottom) {
    RectD r(1.0, 2.0, 3.0, 4.0);
    EXPECT_EQ(1.0, r.left);
    EXPECT_EQ(2.0, r.top);
    EXPECT_EQ(3.0, r.right);
    EXPECT_EQ(4.0, r.bottom);
}

TEST(RectD, CopyingConstructorCopies) {
    RectD source(1.0, 2.0, 3.0, 4.0);
    RectD copy(source);
    source.left = 7.0;
    EXPECT_EQ(1.0, copy.left);
    EXPECT_EQ(4.0, copy.bottom);
}

TEST(RectD, WidthIsRightLessLeft) {
    EXPECT_EQ(7.25, RectD(-2.0, 0.0, 5.25, 0.0).Width());
    EXPECT_EQ(-3.0, RectD(4.0, 0.0, 1.0, 0.0).Width());
}

TEST(RectD, HeightIsBottomLessTop) {
    EXPECT_EQ(10.5, RectD(0.0, -0.5, 0.0, 10.0).Height());
    EXPECT_EQ(-2.0, RectD(0.0, 3.0, 0.0, 1.0).Height());
}

TEST(ROI, EqualityIgnoresTheAngle) {
    ROI a{1, 2, 3, 4, 0.0f};
    ROI b{1, 2, 3, 4, 45.0f};
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
}

TEST(ROI, EachIntegerFieldCountsExactly) {
    const ROI base{1, 2, 3, 4, 0.0f};
    for (int field = 0; field < 4; ++field) {
        ROI other = base;
        int* values[] = {&other.nLeft, &other.nTop, &other.nWidth, &other.nHeight};
        *values[field] += 1;
        EXPECT_FALSE(base == other) << "field " << field;
        EXPECT_TRUE(base != other) << "field " << field;
    }
}

// Every point of a face part counts in its equality, with the point tolerance.
template <typename Part>
void ExpectEachPointCounts(PointD Part::*const* members, int count) {
    for (int i = 0; i < count; ++i) {
        Part a;
        Part b;
        (b.*members[i]).x = 0.0009;
        EXPECT_TRUE(a == b) << "point " << i << " within tolerance";
        (b.*members[i]).y = 0.002;
        EXPECT_FALSE(a == b) << "point " << i;
        EXPECT_TRUE(a != b) << "point " << i;
    }
}

TEST(Brow, ComparesEveryPoint) {
    PointD Brow::*const members[] = {&Brow::left, &Brow::top, &Brow::right, &Brow::bottom};
    ExpectEachPointCounts<Brow>(members, 4);
}

TEST(Eye, ComparesEveryPoint) {
    PointD Eye::*const members[] = {&Eye::left, &Eye::top, &Eye::right, &Eye::bottom,
                                    &Eye::center};
    ExpectEachPointCounts<Eye>(members, 5);
}

TEST(Nose, ComparesEveryPoint) {
    PointD Nose::*const members[] = {&Nose::left, &Nose::top, &Nose::right, &Nose::bottom};
    ExpectEachPointCounts<Nose>(members, 4);
}

TEST(Mouth, ComparesEveryPoint) {
    PointD Mouth::*const members[] = {
        &Mouth::left,           &Mouth::right,           &Mouth::toplip1,
        &Mouth::toplip2,        &Mouth::bottomlip1,      &Mouth::bottomlip2,
        &Mouth::interptopleft,  &Mouth::interptopright,  &Mouth::interpbottomleft,
        &Mouth::interpbottomright, &Mouth::interpupperleft, &Mouth::interpupperright};
    ExpectEachPointCounts<Mouth>(members, 12);
}

TEST(Ear, ComparesEveryPoint) {
    PointD Ear::*const members[] = {&Ear::top, &Ear::bottom};
    ExpectEachPointCounts<Ear>(members, 2);
}

TEST(FaceOutline, ComparesEveryPointAndBothEars) {
    PointD FaceOutline::*const members[] = {&FaceOutline::chin, &FaceOutline::left1,
                                            &FaceOutline::left2, &FaceOutline::right1,
                                            &FaceOutline::right2};
    ExpectEachPointCounts<FaceOutline>(members, 5);
    FaceOutline a;
    FaceOutline b;
    b.lEar.top.x = 1.0;
    EXPECT_FALSE(a == b);
    b = a;
    b.rEar.bottom.y = 1.0;
    EXPECT_FALSE(a == b);
}

TEST(Brow, ValueConstructorCopiesThePointsInOrder) {
    PointD l(1, 1), t(2, 2), r(3, 3), b(4, 4);
    Brow brow(l, t, r, b);
    l.x = 100.0;
    EXPECT_EQ(1.0, brow.left.x);
    EXPECT_EQ(2.0, brow.top.x);
    EXPECT_EQ(3.0, brow.right.x);
    EXPECT_EQ(4.0, brow.bottom.x);
}

TEST(Mouth, ValueConstructorTakesTheTwelvePointsInDeclaredOrder) {
    PointD p[12];
    for (int i = 0; i < 12; ++i) p[i] = PointD(i, -i);
    Mouth m(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], p[8], p[9], p[10], p[11]);
    const PointD* fields[] = {&m.left,           &m.right,           &m.toplip1,
                              &m.toplip2,        &m.bottomlip1,      &m.bottomlip2,
                              &m.interptopleft,  &m.interptopright,  &m.interpbottomleft,
                              &m.interpbottomright, &m.interpupperleft, &m.interpupperright};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(static_cast<double>(i), fields[i]->x) << i;
        EXPECT_EQ(static_cast<double>(-i), fields[i]->y) << i;
    }
}

TEST(FaceOutline, ValueConstructorTakesPointsThenEars) {
    PointD c(1, 0), l1(2, 0), l2(3, 0), r1(4, 0), r2(5, 0);
    PointD top(6, 0), bottom(7, 0);
    Ear left(top, bottom);
    Ear right(bottom, top);
    FaceOutline f(c, l1, l2, r1, r2, left, right);
    EXPECT_EQ(1.0, f.chin.x);
    EXPECT_EQ(5.0, f.right2.x);
    EXPECT_EQ(6.0, f.lEar.top.x);
    EXPECT_EQ(6.0, f.rEar.bottom.x);
}

TEST(FeaturePoints, NewFaceIsAllZeroWithMaskZero) {
    FeaturePoints f;
    EXPECT_EQ(0, f.nMaskID);
    EXPECT_TRUE(f == FeaturePoints());
    EXPECT_EQ(0.0, f.faceOutline.rEar.bottom.y);
}

TEST(FeaturePoints, EqualityLeavesOutTheMaskId) {
    FeaturePoints a;
    FeaturePoints b;
    b.nMaskID = 42;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
}

TEST(FeaturePoints, EqualityComparesEverySevenParts) {
    const FeaturePoints base;
    for (int part = 0; part < 7; ++part) {
        FeaturePoints other;
        PointD* points[] = {&other.lBrow.top,  &other.rBrow.bottom,      &other.lEye.center,
                            &other.rEye.left,  &other.nose.right,        &other.mouth.toplip2,
                            &other.faceOutline.lEar.top};
        points[part]->y = 0.5;
        EXPECT_FALSE(base == other) << "part " << part;
        EXPECT_TRUE(base != other) << "part " << part;
    }
}

TEST(FaceSettings, StartWithNoArray) {
    EyeEnlargeSetting eye;
    FaceThinningSetting thin;
    EyeBagRemovalSetting bag;
    EXPECT_EQ(nullptr, eye.pSettingArray);
    EXPECT_EQ(0, eye.nArraySize);
    EXPECT_EQ(nullptr, thin.pSettingArray);
    EXPECT_EQ(0, thin.nArraySize);
    EXPECT_EQ(nullptr, bag.pSettingArray);
    EXPECT_EQ(0, bag.nArraySize);
}

TEST(FaceSettings, DestroyingASettingLeavesItsArrayToTheCaller) {
    SingleFaceEyeEnlargeSetting* faces = new SingleFaceEyeEnlargeSetting[2];
    faces[1].nAmount = 55;
    EyeEnlargeSetting* setting = new EyeEnlargeSetting;
    setting->pSettingArray = faces;
    setting->nArraySize = 2;
    delete setting;
    EXPECT_EQ(55, faces[1].nAmount);
    delete[] faces;
}

TEST(QueryOriFeaturePointSetting, StartsWithFourNullPointers) {
    QueryOriFeaturePointSetting q;
    EXPECT_EQ(nullptr, q.pEyeEnlargeSetting);
    EXPECT_EQ(nullptr, q.pFaceThinningSetting);
    EXPECT_EQ(nullptr, q.pFeaturePointsInfo);
    EXPECT_EQ(nullptr, q.pPt_InOut);
}

TEST(QueryOriFeaturePointSetting, DestroyingItFreesNothingItPointsTo) {
    PointD* point = new PointD(3.0, 4.0);
    EyeEnlargeSetting* eye = new EyeEnlargeSetting;
    QueryOriFeaturePointSetting* q = new QueryOriFeaturePointSetting;
    q->pPt_InOut = point;
    q->pEyeEnlargeSetting = eye;
    delete q;
    EXPECT_EQ(3.0, point->x);
    delete point;
    delete eye;
}

TEST(BufferData, NewViewIsArgb32AndOtherwiseZero) {
    const BufferData b;
    EXPECT_EQ(PIXEL_ARGB32, b.ePixelFormat);
    // Every other byte is zero.
    unsigned char bytes[sizeof(BufferData)];
    std::memcpy(bytes, &b, sizeof bytes);
    const PIXEL_FORMAT argb = PIXEL_ARGB32;
    unsigned char expected[sizeof(BufferData)] = {};
    std::memcpy(expected + offsetof(BufferData, ePixelFormat), &argb, sizeof argb);
    EXPECT_EQ(0, std::memcmp(bytes, expected, sizeof bytes));
}

TEST(HistogramDist, NewHistogramIsZeroAndGammaEncoded) {
    HistogramDist h;
    EXPECT_TRUE(h.bGammaEncode);
    EXPECT_EQ(0, h.HistogramR[0]);
    EXPECT_EQ(0, h.HistogramL[HISTOGRAM_SIZE - 1]);
    EXPECT_EQ(0, h.nTotalCount);
    EXPECT_EQ(0, h.nUnderThreshold);
    EXPECT_EQ(0, h.bReserved[31]);
}

TEST(CHistogramDist, StartsWithOneReferenceAndAHistogram) {
    CHistogramDist* h = new CHistogramDist;
    ASSERT_NE(nullptr, h->m_pHisdist);
    EXPECT_TRUE(h->m_pHisdist->bGammaEncode);
    EXPECT_EQ(2, h->AddRef());
    EXPECT_EQ(1, h->Release());
    EXPECT_EQ(0, h->Release());
}

TEST(CHistogramDist, AddRefReturnsTheNewCount) {
    CHistogramDist* h = new CHistogramDist;
    EXPECT_EQ(2, h->AddRef());
    EXPECT_EQ(3, h->AddRef());
    EXPECT_EQ(2, h->Release());
    EXPECT_EQ(1, h->Release());
    EXPECT_EQ(0, h->Release());
}

TEST(CHistogramDist, MadeAndReleasedOnceIsGone) {
    CHistogramDist* h = new CHistogramDist;
    // The last release deletes the object and its histogram; a leak or a
    // double free here shows under the memory checkers.
    EXPECT_EQ(0, h->Release());
}

TEST(CHistogramDist, CountComesFirst) {
    // The count is the first 32 bits, the histogram pointer follows.
    CHistogramDist* h = new CHistogramDist;
    std::int32_t count = 0;
    std::memcpy(&count, reinterpret_cast<const unsigned char*>(h), sizeof count);
    EXPECT_EQ(1, count);
    HistogramDist* histogram = nullptr;
    std::memcpy(&histogram, reinterpret_cast<const unsigned char*>(h) + 8, sizeof histogram);
    EXPECT_EQ(h->m_pHisdist, histogram);
    h->Release();
}

}  // namespace
