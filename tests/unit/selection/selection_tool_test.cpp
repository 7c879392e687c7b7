#include "selection/selection_tool.h"

#include <gtest/gtest.h>

#include <random>

#include "engine/constants.h"
#include "engine/records/mask_records.h"
#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/mask_fixtures.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);
constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);
constexpr int32_t kInvalidArg = static_cast<int32_t>(0x80070057u);

using SelectionToolLog = LogCapture;

// ------------------------------------------------------------ line buffer

TEST(SelectionTool, MaskToPointCountsAndGetCopiesThenEmpties) {
    CSelectionTool tool;
    TestMask mask(6, 2);
    mask.At(1, 0) = mask.At(2, 0) = mask.At(5, 1) = 255;
    int nLength = -1;
    ASSERT_EQ(tool.SelectionMaskToPoint(mask.View(), nLength), 0);
    ASSERT_EQ(nLength, 2);
    std::vector<SelectionLine> out(2);
    ASSERT_EQ(tool.SelectionGetSelectionLinePoint(out.data()), 0);
    EXPECT_EQ(out[0].nX, 1);
    EXPECT_EQ(out[0].nLength, 2);
    EXPECT_EQ(out[1].nX, 5);
    EXPECT_EQ(out[1].nY, 1);
    EXPECT_TRUE(tool.m_lines.empty());
}

TEST(SelectionTool, SecondGetCopiesNothing) {
    CSelectionTool tool;
    TestMask mask(3, 1, -1, 255);
    int nLength = 0;
    tool.SelectionMaskToPoint(mask.View(), nLength);
    std::vector<SelectionLine> out(1);
    ASSERT_EQ(tool.SelectionGetSelectionLinePoint(out.data()), 0);
    SelectionLine untouched{-7, -7, -7};
    ASSERT_EQ(tool.SelectionGetSelectionLinePoint(&untouched), 0);
    EXPECT_EQ(untouched.nX, -7);
    EXPECT_EQ(untouched.nY, -7);
    EXPECT_EQ(untouched.nLength, -7);
}

TEST_F(SelectionToolLog, NullPixelsReportNoRunsAndSuccess) {
    CSelectionTool tool;
    tool.m_lines.push_back({1, 1, 1});
    BufferData mask;
    mask.nWidth = mask.nHeight = 3;
    int nLength = -1;
    EXPECT_EQ(tool.SelectionMaskToPoint(mask, nLength), 0);
    EXPECT_EQ(nLength, 0);
    EXPECT_TRUE(Logged("MaskToPoint Null Pointer : mask.pBuffer\n"));
}

TEST_F(SelectionToolLog, GetWithNullArrayKeepsTheBuffer) {
    CSelectionTool tool;
    tool.m_lines.push_back({1, 2, 3});
    EXPECT_EQ(tool.SelectionGetSelectionLinePoint(nullptr), kPointer);
    EXPECT_EQ(tool.m_lines.size(), 1u);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionGetSelectionLinePoint Null Pointer : pslPath\n"));
}

TEST_F(SelectionToolLog, PointToMaskWithNullArray) {
    CSelectionTool tool;
    TestMask mask(2, 2);
    EXPECT_EQ(tool.SelectionPointToMask(1, nullptr, mask.View(), false), kPointer);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionPointToMask Null Pointer : pslPath\n"));
}

TEST(SelectionTool, PointToMaskUsesTheGivenCount) {
    CSelectionTool tool;
    TestMask mask(4, 1);
    const SelectionLine lines[] = {{0, 0, 1}, {2, 0, 2}};
    ASSERT_EQ(tool.SelectionPointToMask(1, lines, mask.View(), false), 0);
    EXPECT_EQ(mask.bytes, std::vector<uint8_t>({255, 0, 0, 0}));
}

// ------------------------------------------------------------ bounding box

TEST(SelectionGetMaskROI, BoundingBoxOfSelectedBytes) {
    CSelectionTool tool;
    TestMask mask(10, 8, 13);
    mask.At(3, 2) = 1;
    mask.At(7, 5) = 255;
    mask.At(4, 6) = 9;
    ROI roi;
    roi.fAngle = 12.5f;
    ASSERT_EQ(tool.SelectionGetMaskROI(mask.View(), roi), 0);
    EXPECT_EQ(roi.nLeft, 3);
    EXPECT_EQ(roi.nTop, 2);
    EXPECT_EQ(roi.nWidth, 5);
    EXPECT_EQ(roi.nHeight, 5);
    EXPECT_EQ(roi.fAngle, 12.5f);
}

TEST(SelectionGetMaskROI, IgnoresRectROI) {
    CSelectionTool tool;
    TestMask mask(4, 4);
    mask.At(0, 0) = 1;
    BufferData view = mask.View();
    view.rectROI = {2, 2, 4, 4};
    ROI roi;
    ASSERT_EQ(tool.SelectionGetMaskROI(view, roi), 0);
    EXPECT_EQ(roi.nLeft, 0);
    EXPECT_EQ(roi.nWidth, 1);
}

TEST(SelectionGetMaskROI, AllZeroMaskFails) {
    CSelectionTool tool;
    TestMask mask(5, 5);
    ROI roi;
    EXPECT_EQ(tool.SelectionGetMaskROI(mask.View(), roi), kFail);
}

TEST(SelectionGetMaskROI, ZeroByZeroGivesOneByOne) {
    CSelectionTool tool;
    BufferData mask;
    ROI roi;
    ASSERT_EQ(tool.SelectionGetMaskROI(mask, roi), 0);
    EXPECT_EQ(roi.nLeft, 0);
    EXPECT_EQ(roi.nTop, 0);
    EXPECT_EQ(roi.nWidth, 1);
    EXPECT_EQ(roi.nHeight, 1);
}

TEST(SelectionGetMaskROI, WidthWithoutHeightFails) {
    CSelectionTool tool;
    BufferData mask;
    mask.nWidth = 4;
    ROI roi;
    EXPECT_EQ(tool.SelectionGetMaskROI(mask, roi), kFail);
}

TEST_F(SelectionToolLog, MaskROIOfNullPixelsFails) {
    CSelectionTool tool;
    BufferData mask;
    mask.nWidth = mask.nHeight = mask.nStride = 3;
    ROI roi;
    EXPECT_EQ(tool.SelectionGetMaskROI(mask, roi), kFail);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionGetMaskROI Null Pointer : mask.pBuffer\n"));
}

TEST(SelectionGetMaskROI, EqualsPlainFormOnRandomMasks) {
    CSelectionTool tool;
    std::mt19937 rng(99);
    std::uniform_int_distribution<int> side(1, 120);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 300; ++round) {
        const int w = side(rng), h = side(rng);
        // Sparse masks, so that many rows and columns are empty.
        TestMask mask = RandomMask(rng, w, h, w + round % 7, unit(rng) * unit(rng) * 0.05);
        ROI a, b;
        const int32_t ra = tool.SelectionGetMaskROI(mask.View(), a);
        const int32_t rb = oracle::GetMaskROI(mask.View(), b);
        ASSERT_EQ(ra, rb);
        ASSERT_EQ(a.nLeft, b.nLeft);
        ASSERT_EQ(a.nTop, b.nTop);
        if (ra == 0) {
            ASSERT_EQ(a.nWidth, b.nWidth);
            ASSERT_EQ(a.nHeight, b.nHeight);
        }
    }
}

// ------------------------------------------------------------ operations

TEST_F(SelectionToolLog, OperationChecksBuffersInOrder) {
    CSelectionTool tool;
    TestMask a(2, 2), b(2, 2), out(2, 2);
    BufferData none;
    EXPECT_EQ(tool.SelectionMaskOperation(none, none, 99, nullptr, none), kPointer);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation Null Pointer : mask1.pBuffer\n"));
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), none, MASK_UNION, nullptr, none), kPointer);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation Null Pointer : mask2.pBuffer\n"));
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_UNION, nullptr, none), kPointer);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation Null Pointer : output.pBuffer\n"));
}

TEST_F(SelectionToolLog, UnknownOperationIsInvalidWithoutLog) {
    CSelectionTool tool;
    TestMask a(2, 2), b(2, 2), out(2, 2);
    const size_t before = LineCount();
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), 6, nullptr, out.View()), kInvalidArg);
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), -1, nullptr, out.View()), kInvalidArg);
    EXPECT_EQ(LineCount(), before);
}

TEST_F(SelectionToolLog, SettingOperationsNeedASetting) {
    CSelectionTool tool;
    TestMask a(2, 2), b(2, 2), out(2, 2);
    for (int op : {MASK_LENSCORRECT, MASK_CROPROTATE, MASK_FEATHER, MASK_SCALE})
        EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), op, nullptr, out.View()), kPointer);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation Null Pointer : pSetting\n"));
}

TEST(SelectionTool, FeatherAndScaleLeaveOutputAlone) {
    CSelectionTool tool;
    TestMask a(3, 3, -1, 255), b(3, 3, -1, 255), out(3, 3, -1, 17);
    int setting = 5;
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_FEATHER, &setting, out.View()), 0);
    EXPECT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_SCALE, &setting, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>(9, 17));
}

TEST(SelectionTool, UnionAndIntersectAreBytewise) {
    CSelectionTool tool;
    TestMask a(3, 1), b(3, 1, 5), out(3, 1, 4);
    a.bytes = {0x0F, 0, 255};
    b.bytes = {0xF0, 0, 1, 0xEE, 0xEE};
    ASSERT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_UNION, nullptr, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({0xFF, 0, 255, 0xA5}));
    ASSERT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), MASK_INTERSECT, nullptr, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({0, 0, 1, 0xA5}));
}

TEST(SelectionTool, CombineEqualsPlainFormOnRandomMasks) {
    CSelectionTool tool;
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> side(1, 150);
    for (int round = 0; round < 100; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask a = RandomMask(rng, w, h, w + round % 3, 0.5, 0.8);
        TestMask b = RandomMask(rng, w, h, w + round % 11, 0.5, 0.5);
        TestMask out(w, h, w + round % 4), expected(w, h, w + round % 4);
        const int op = round % 2 ? MASK_UNION : MASK_INTERSECT;
        ASSERT_EQ(tool.SelectionMaskOperation(a.View(), b.View(), op, nullptr, out.View()), 0);
        oracle::Combine(a.View(), b.View(), op == MASK_UNION, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes);
    }
}

// ------------------------------------------------------------ crop / rotate

CropRotateSetting Crop(float angle, int left, int top, int width, int height) {
    CropRotateSetting s;
    s.fAngle = angle;
    s.nLeft = left;
    s.nTop = top;
    s.nWidth = width;
    s.nHeight = height;
    return s;
}

TEST(CropRotate, SmallAngleCropsAndClampsTheUpperSide) {
    CSelectionTool tool;
    TestMask src(3, 2);
    src.bytes = {1, 2, 3, 4, 5, 6};
    TestMask out(3, 2);
    CropRotateSetting s = Crop(0.05f, 1, 1, 3, 2);
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({5, 6, 6, 5, 6, 6}));
}

TEST(CropRotate, TopCornerAtTheIntegerLimitRepeatsTheLastRow) {
    CSelectionTool tool;
    TestMask src(3, 2);
    src.bytes = {1, 2, 3, 4, 5, 6};
    TestMask out(2, 3);
    CropRotateSetting s = Crop(0.0f, 1, 2147483647, 2, 3);
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>({5, 6, 5, 6, 5, 6}));
}

TEST(CropRotate, PointZeroSixDegreesRotates) {
    // 0.05 degrees is below the 0.001 radian threshold, 0.06 is above: only
    // the rotation interpolates, so a step edge turns grey there.
    TestMask src(40, 40);
    for (int y = 0; y < 40; ++y)
        for (int x = 20; x < 40; ++x) src.At(x, y) = 255;
    CSelectionTool tool;
    TestMask cropped(30, 30), rotated(30, 30);
    CropRotateSetting small = Crop(0.05f, 5, 5, 30, 30), large = Crop(0.06f, 5, 5, 30, 30);
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &small, cropped.View()), 0);
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &large, rotated.View()), 0);
    int greyCropped = 0, greyRotated = 0;
    for (uint8_t v : cropped.bytes) greyCropped += v != 0 && v != 255;
    for (uint8_t v : rotated.bytes) greyRotated += v != 0 && v != 255;
    EXPECT_EQ(greyCropped, 0);
    EXPECT_GT(greyRotated, 0);
    TestMask expected(30, 30);
    oracle::CropRotate(src.View(), large, expected.View());
    EXPECT_EQ(rotated.bytes, expected.bytes);
}

TEST(CropRotate, NinetyDegreesExactValues) {
    // a = 90 degrees: c is tiny, s about 1. Output (i, j) reads near
    // (sx, sy) = (i, -j) clamped to row 0: the first row, weighted.
    TestMask src(4, 4);
    for (int i = 0; i < 16; ++i) src.bytes[i] = static_cast<uint8_t>(10 * i);
    TestMask out(2, 2), expected(2, 2);
    CropRotateSetting s = Crop(90.0f, 0, 0, 2, 2);
    CSelectionTool tool;
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
    oracle::CropRotate(src.View(), s, expected.View());
    EXPECT_EQ(out.bytes, expected.bytes);
    EXPECT_EQ(out.At(0, 0), 0);
    // Output row 1 starts at sy = cos(a), a hair below 0 and so 0, and at
    // sx = sin(a), which is 1.0 in double: source pixel (1, 0) unweighted.
    EXPECT_EQ(out.At(0, 1), 10);
}

TEST_F(SelectionToolLog, DiagonalPastThePackedEndReadsZero) {
    // A rotation by a hair beyond the threshold keeps row 0 of the output on
    // source row 3 (the second-to-last) and brings column 5 to sx just below
    // 5, so ix is the last column and the diagonal neighbour would be the
    // byte after the packed mask.
    TestMask src(5, 5, -1, 200);
    TestMask out(6, 1), expected(6, 1);
    CropRotateSetting s = Crop(-0.06f, 0, 3, 6, 1);
    CSelectionTool tool;
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
    oracle::CropRotate(src.View(), s, expected.View());
    EXPECT_EQ(out.bytes, expected.bytes);
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation [Err] neighbour past the end of mask1 read as 0\n"));
}

TEST(CropRotate, LastColumnAboveBottomReadsTheNextRowsFirstByte) {
    // With a padded stride the byte after pbl in the last column is padding
    // of the row below; with a packed one it is the next row's first pixel.
    TestMask src(3, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 3; ++x) src.At(x, y) = static_cast<uint8_t>(1 + x + 3 * y);
    TestMask out(5, 1), expected(5, 1);
    CropRotateSetting s = Crop(-0.1f, 0, 1, 5, 1);
    CSelectionTool tool;
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
    oracle::CropRotate(src.View(), s, expected.View());
    EXPECT_EQ(out.bytes, expected.bytes);
}

TEST(CropRotate, EqualsPlainFormOnRandomMasks) {
    CSelectionTool tool;
    std::mt19937 rng(2024);
    std::uniform_int_distribution<int> side(1, 60);
    std::uniform_real_distribution<float> angle(-180.0f, 180.0f);
    for (int round = 0; round < 200; ++round) {
        const int w = side(rng), h = side(rng);
        TestMask src = RandomMask(rng, w, h, w + round % 3, 0.5, 0.7);
        std::uniform_int_distribution<int> corner(0, 2 * std::max(w, h));
        const int cw = side(rng), ch = side(rng);
        CropRotateSetting s = Crop(round % 4 == 0 ? 0.0f : angle(rng), corner(rng) / 2, corner(rng) / 2, cw, ch);
        TestMask out(cw, ch, cw + round % 5), expected(cw, ch, cw + round % 5);
        ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), 0);
        oracle::CropRotate(src.View(), s, expected.View());
        ASSERT_EQ(out.bytes, expected.bytes) << "round " << round;
    }
}

TEST(CropRotate, EmptyRectangleOnAnEmptyMaskDoesNothing) {
    // Nothing is read or written, so there is nothing to refuse.
    CSelectionTool tool;
    TestMask src(1, 3, -1, 7), out(2, 2, -1, 3);
    BufferData empty = src.View();
    empty.nWidth = 0;
    CropRotateSetting crop = Crop(0.0f, 0, 0, 0, 2), rotate = Crop(30.0f, 0, 0, 2, 0);
    EXPECT_EQ(tool.SelectionMaskOperation(empty, empty, MASK_CROPROTATE, &crop, out.View()), 0);
    EXPECT_EQ(tool.SelectionMaskOperation(empty, empty, MASK_CROPROTATE, &rotate, out.View()), 0);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>(4, 3));
}

TEST_F(SelectionToolLog, NegativeCropCornerIsRefused) {
    CSelectionTool tool;
    TestMask src(4, 4), out(2, 2, -1, 3);
    CropRotateSetting s = Crop(0.0f, -1, 0, 2, 2);
    EXPECT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_CROPROTATE, &s, out.View()), kInvalidArg);
    EXPECT_EQ(out.bytes, std::vector<uint8_t>(4, 3));
    EXPECT_TRUE(Logged("CSelectionTool::SelectionMaskOperation [Err] negative crop corner (-1, 0)\n"));
}

// ------------------------------------------------------------ lens correction

TEST(SelectionTool, LensCorrectRunsTheTransformWithTheSettingsCopy) {
    CSelectionTool tool;
    std::mt19937 rng(3);
    TestMask src = RandomMask(rng, 31, 17, 31, 0.5, 0.9);
    TestMask out(31, 17), expected(31, 17);
    MaskCorrectSetting setting;
    setting.lensCorrectSetting.nDistortion = 40;
    setting.nMode = 0;
    ASSERT_EQ(tool.SelectionMaskOperation(src.View(), src.View(), MASK_LENSCORRECT, &setting, out.View()), 0);
    MaskLensCorrect lens;
    oracle::WarpMask(lens, src.View(), setting.lensCorrectSetting, 0, expected.View());
    EXPECT_EQ(out.bytes, expected.bytes);
    EXPECT_NE(out.bytes, src.bytes);
}

}  // namespace
