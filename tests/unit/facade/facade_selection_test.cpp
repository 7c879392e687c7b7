// The facade's selection members through their C++ entries, with an
// embedded interpreter for the script objects and a buffer allocator of the
// test's own (engine start-up brings the real one).
#include "facade/clipgrade.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "engine/result_codes.h"
#include "imaging/cimage_buffer.h"
#include "tests/unit/reference/ref_select_library.h"
#include "tests/unit/selection/log_capture.h"
#include "tests/unit/selection/reference_loops.h"

namespace {

constexpr int32_t kPointer = static_cast<int32_t>(0x80004003u);
constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);

// Hands out the module's own buffers; can be told to hand out none.
class TestAllocator final : public IBufferAllocator {
public:
    int32_t PCG_WINAPI QueryInterface(const pcg::engine::ComGuid&, void** ppv) override {
        if (ppv) *ppv = nullptr;
        return pcg::engine::kResultNoInterface;
    }
    uint32_t PCG_WINAPI AddRef() override { return 1; }
    uint32_t PCG_WINAPI Release() override { return 1; }
    int32_t PCG_WINAPI allocateImageBuffer(IImageBuffer** pp, uint32_t w, uint32_t h, int bytes) override {
        ++calls;
        lastBytes = bytes;
        if (refuse) return pcg::kResultOk;  // a null buffer counts as failure whatever the code
        *pp = CreateImageBuffer(w, h, static_cast<uint32_t>(bytes));
        return *pp ? pcg::kResultOk : pcg::kResultFail;
    }
    bool refuse = false;
    int calls = 0;
    int lastBytes = 0;
};

class PythonEnvironment : public ::testing::Environment {
public:
    void SetUp() override { Py_Initialize(); }
};
const auto* const kPython = ::testing::AddGlobalTestEnvironment(new PythonEnvironment);

// A new reference to the value of a Python expression.
PyObject* Eval(const std::string& expression) {
    PyObject* globals = PyDict_New();
    PyDict_SetItemString(globals, "__builtins__", PyEval_GetBuiltins());
    PyObject* value = PyRun_String(expression.c_str(), Py_eval_input, globals, globals);
    Py_DECREF(globals);
    if (!value) PyErr_Print();
    return value;
}

std::string Repr(PyObject* object) {
    PyObject* text = PyObject_Repr(object);
    std::string result = PyUnicode_AsUTF8(text);
    Py_DECREF(text);
    return result;
}

IImageBuffer* MakeBuffer(int width, int height, int bytes, const std::vector<uint8_t>& pixels) {
    IImageBuffer* buffer = CreateImageBuffer(width, height, bytes);
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    if (!pixels.empty()) std::memcpy(p, pixels.data(), pixels.size());
    buffer->UnlockBuffer();
    return buffer;
}

std::vector<uint8_t> Pixels(IImageBuffer* buffer) {
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    std::vector<uint8_t> out(p, p + static_cast<size_t>(w) * h * buffer->GetPixelBytes());
    buffer->UnlockBuffer();
    return out;
}

int RefCount(IImageBuffer* buffer) {
    buffer->AddRef();
    return buffer->Release();
}

std::vector<uint8_t> RandomMask(std::mt19937& random, int width, int height) {
    std::vector<uint8_t> mask(static_cast<size_t>(width) * height);
    // Blobs rather than noise: runs of varied length.
    uint8_t value = 0;
    for (auto& byte : mask) {
        if (random() % 5 == 0) value = value ? 0 : static_cast<uint8_t>(1 + random() % 255);
        byte = value;
    }
    return mask;
}

std::string LinesRepr(const std::vector<SelectionLine>& lines) {
    std::string text = "[";
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i) text += ", ";
        text += "(" + std::to_string(lines[i].nX) + ", " + std::to_string(lines[i].nY) + ", " +
                std::to_string(lines[i].nLength) + ")";
    }
    return text + "]";
}

class FacadeSelectionTest : public LogCapture {
protected:
    void SetUp() override {
        LogCapture::SetUp();
        MakeFacade();
    }
    void TearDown() override {
        DropFacade();
        LogCapture::TearDown();
    }
    // The engine's own allocator is set aside for the test's, whose failures
    // the test controls, and put back before the facade goes.
    void MakeFacade() {
        m_facade.reset(new PyClipGrade());
        m_pEngineAllocator = m_facade->m_pBufferAllocator;
        m_facade->m_pBufferAllocator = &m_allocator;
    }
    void DropFacade() {
        m_facade->m_pBufferAllocator = m_pEngineAllocator;
        m_facade.reset();
    }
    IBufferAllocator* m_pEngineAllocator = nullptr;
    PyClipGrade& Facade() { return *m_facade; }
    TestAllocator m_allocator;
    std::unique_ptr<PyClipGrade> m_facade;
};

// ------------------------------------------------------------ mask to runs

TEST_F(FacadeSelectionTest, MaskToPointGivesLinesAndRoi) {
    IImageBuffer* mask = MakeBuffer(6, 3, 1, {0, 0, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0, 9, 9, 9, 0, 0, 0});
    PyObject* none = Eval("None");
    PyObject* result = Facade().Selection_MaskToPoint(mask, none);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(Repr(result), "{'lstLine': [(2, 0, 2), (0, 2, 3)], 'roiSrc': (0, 0, 4, 3, 0.0)}");
    Py_DECREF(result);
    Py_DECREF(none);
    mask->Release();
}

TEST_F(FacadeSelectionTest, MaskToPointRoundTripsRandomMasksThroughPointToMask) {
    std::mt19937 random(5);
    for (int round = 0; round < 20; ++round) {
        const int width = 1 + static_cast<int>(random() % 70);
        const int height = 1 + static_cast<int>(random() % 40);
        const std::vector<uint8_t> bytes = RandomMask(random, width, height);
        IImageBuffer* mask = MakeBuffer(width, height, 1, bytes);
        BufferData view;
        view.pBuffer = const_cast<uint8_t*>(bytes.data());
        view.nWidth = view.nStride = width;
        view.nHeight = height;
        const std::vector<SelectionLine> expected = oracle::MaskToPoint(view);
        PyObject* none = Eval("None");
        PyObject* result = Facade().Selection_MaskToPoint(mask, none);
        Py_DECREF(none);
        if (expected.empty()) {
            EXPECT_EQ(result, Py_None);
            Py_XDECREF(result);
            mask->Release();
            continue;
        }
        ASSERT_TRUE(result && PyDict_Check(result));
        PyObject* lines = PyDict_GetItemString(result, "lstLine");
        EXPECT_EQ(Repr(lines), LinesRepr(expected)) << round;
        IImageBuffer* back = Facade().Selection_PointToMask(lines, width, height, false);
        ASSERT_NE(back, nullptr);
        std::vector<uint8_t> normalised(bytes.size());
        for (size_t i = 0; i < bytes.size(); ++i) normalised[i] = bytes[i] ? 255 : 0;
        EXPECT_EQ(Pixels(back), normalised) << round;
        back->Release();
        Py_DECREF(result);
        mask->Release();
    }
}

TEST_F(FacadeSelectionTest, MaskToPointClearsOutsideTheRectangleKeepingTheBottomRow) {
    std::vector<uint8_t> all(5 * 5, 255);
    IImageBuffer* mask = MakeBuffer(5, 5, 1, all);
    PyObject* rect = Eval("(1, 1, 2, 2)");
    PyObject* result = Facade().Selection_MaskToPoint(mask, rect);
    // Rows 1 to 3 (bottom = 3 is inside), columns 1 and 2.
    EXPECT_EQ(Repr(result), "{'lstLine': [(1, 1, 2), (1, 2, 2), (1, 3, 2)], 'roiSrc': (1, 1, 2, 3, 0.0)}");
    const std::vector<uint8_t> cleared = Pixels(mask);
    EXPECT_EQ(cleared[1 * 5 + 1], 255);
    EXPECT_EQ(cleared[3 * 5 + 2], 255);
    EXPECT_EQ(cleared[1 * 5 + 3], 0);
    EXPECT_EQ(cleared[4 * 5 + 1], 0);
    Py_XDECREF(result);
    Py_DECREF(rect);
    mask->Release();
}

TEST_F(FacadeSelectionTest, MaskToPointRectangleOfZerosClearsNothingAndZeroWidthClearsAll) {
    IImageBuffer* mask = MakeBuffer(3, 2, 1, {255, 255, 255, 255, 255, 255});
    PyObject* zeros = Eval("(0, 0, 0, 0)");
    PyObject* result = Facade().Selection_MaskToPoint(mask, zeros);
    EXPECT_EQ(Repr(result), "{'lstLine': [(0, 0, 3), (0, 1, 3)], 'roiSrc': (0, 0, 3, 2, 0.0)}");
    Py_XDECREF(result);
    PyObject* tall = Eval("(0, 0, 0, 5)");
    result = Facade().Selection_MaskToPoint(mask, tall);
    EXPECT_EQ(result, Py_None);
    EXPECT_EQ(Pixels(mask), std::vector<uint8_t>(6, 0));
    Py_XDECREF(result);
    Py_DECREF(zeros);
    Py_DECREF(tall);
    mask->Release();
}

TEST_F(FacadeSelectionTest, MaskToPointNoneForNullsAndEmptyMasks) {
    PyObject* none = Eval("None");
    PyObject* result = Facade().Selection_MaskToPoint(nullptr, none);
    EXPECT_EQ(result, Py_None);
    Py_XDECREF(result);
    IImageBuffer* mask = MakeBuffer(4, 4, 1, std::vector<uint8_t>(16, 0));
    result = Facade().Selection_MaskToPoint(mask, nullptr);
    EXPECT_EQ(result, Py_None);
    Py_XDECREF(result);
    result = Facade().Selection_MaskToPoint(mask, none);
    EXPECT_EQ(result, Py_None);
    Py_XDECREF(result);
    // A short tuple is not a rectangle.
    PyObject* shortTuple = Eval("(1, 1, 1)");
    mask->Release();
    mask = MakeBuffer(2, 1, 1, {0, 255});
    result = Facade().Selection_MaskToPoint(mask, shortTuple);
    EXPECT_EQ(Repr(result), "{'lstLine': [(1, 0, 1)], 'roiSrc': (1, 0, 1, 1, 0.0)}");
    Py_XDECREF(result);
    Py_DECREF(shortTuple);
    Py_DECREF(none);
    mask->Release();
}

// ------------------------------------------------------------ runs to mask

TEST_F(FacadeSelectionTest, PointToMaskRefusals) {
    PyObject* empty = Eval("[]");
    PyObject* notList = Eval("((0, 0, 1),)");
    EXPECT_EQ(Facade().Selection_PointToMask(nullptr, 4, 4, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_PointToMask Null Pointer : pPyoMaskList\n"));
    const size_t before = LineCount();
    EXPECT_EQ(Facade().Selection_PointToMask(empty, 4, 4, false), nullptr);
    EXPECT_EQ(Facade().Selection_PointToMask(notList, 4, 4, false), nullptr);
    // Only the enter lines: the empty list and the tuple log nothing else.
    EXPECT_EQ(LineCount(), before + 2);
    EXPECT_EQ(Facade().Selection_PointToMask(Eval("[(0, 0, 1)]"), -3, 4, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_PointToMask can't get the memory for the maskData\n"));
    Facade().m_pBufferAllocator = nullptr;
    EXPECT_EQ(Facade().Selection_PointToMask(empty, 4, 4, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_PointToMask Null Pointer : m_pBufferAllocator\n"));
    Facade().m_pBufferAllocator = &m_allocator;
    m_allocator.refuse = true;
    EXPECT_EQ(Facade().Selection_PointToMask(Eval("[(0, 0, 1)]"), 4, 4, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_PointToMask can't get the memory for the pOutBuffer\n"));
    Py_DECREF(empty);
    Py_DECREF(notList);
}

TEST_F(FacadeSelectionTest, PointToMaskInvertsAndAsksForOneBytePixels) {
    PyObject* lines = Eval("[(1, 0, 2)]");
    IImageBuffer* mask = Facade().Selection_PointToMask(lines, 4, 2, true);
    ASSERT_NE(mask, nullptr);
    EXPECT_EQ(m_allocator.lastBytes, 1);
    EXPECT_EQ(mask->GetWidth(), 4);
    EXPECT_EQ(mask->GetHeight(), 2);
    EXPECT_EQ(RefCount(mask), 1);
    EXPECT_EQ(Pixels(mask), std::vector<uint8_t>({255, 0, 0, 255, 255, 255, 255, 255}));
    mask->Release();
    Py_DECREF(lines);
}

TEST_F(FacadeSelectionTest, BadElementsKeepZeroAndNeverRaise) {
    // A string, a short tuple and a number out of the 16-bit range: each
    // element keeps 0 where its parse did not reach.
    PyObject* lines = Eval("[(2, 0, 1), 'x', (1,), (1, 1, 70000), (0, 1, 1)]");
    IImageBuffer* mask = Facade().Selection_PointToMask(lines, 3, 2, false);
    ASSERT_NE(mask, nullptr);
    EXPECT_FALSE(PyErr_Occurred());
    EXPECT_EQ(Pixels(mask), std::vector<uint8_t>({0, 0, 255, 255, 0, 0}));
    mask->Release();
    Py_DECREF(lines);
}

// ------------------------------------------------------------ correction

TEST_F(FacadeSelectionTest, MaskCorrectionWithNoneIsTheSameObjectWithOneMoreReference) {
    IImageBuffer* mask = MakeBuffer(2, 2, 1, {1, 2, 3, 4});
    PyObject* none = Eval("None");
    EXPECT_EQ(Facade().Selection_MaskCorrection(mask, none), mask);
    EXPECT_EQ(RefCount(mask), 2);
    mask->Release();
    mask->Release();
    Py_DECREF(none);
    EXPECT_EQ(Facade().Selection_MaskCorrection(nullptr, nullptr), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MaskCorrection Null Pointer : pInputBuffer\n"));
}

TEST_F(FacadeSelectionTest, MaskCorrectionWithoutSettingsIsAPlainCopy) {
    IImageBuffer* mask = MakeBuffer(3, 2, 1, {0, 255, 0, 255, 255, 0});
    IImageBuffer* copy = Facade().Selection_MaskCorrection(mask);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, mask);
    EXPECT_EQ(Pixels(copy), Pixels(mask));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Mask does not correct\n"));
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MaskCorrection outputDate.nWidth 3\n"));
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MaskCorrection outputDate.nHeight 2\n"));
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MaskCorrection outputDate.nStride 3\n"));
    copy->Release();
    PyObject* empty = Eval("{}");
    copy = Facade().Selection_MaskCorrection(mask, empty);
    EXPECT_EQ(Pixels(copy), Pixels(mask));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection no lens correction effect\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection no crop effect\n"));
    copy->Release();
    Py_DECREF(empty);
    mask->Release();
}

TEST_F(FacadeSelectionTest, CropOfZeroByZeroGivesAnEmptyBuffer) {
    IImageBuffer* mask = MakeBuffer(3, 2, 1, {0, 255, 0, 255, 255, 0});
    PyObject* settings = Eval("{'CrpRte': {'RtAgl': 0.0, 'CrpRct': (0, 0, 0, 0)}}");
    IImageBuffer* out = Facade().Selection_MaskCorrection(mask, settings);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->GetWidth(), 0);
    EXPECT_EQ(out->GetHeight(), 0);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Crop Setting nWidth : 0\n"));
    out->Release();
    Py_DECREF(settings);
    mask->Release();
}

TEST_F(FacadeSelectionTest, CropTakesTheRectangle) {
    std::vector<uint8_t> bytes(6 * 4, 0);
    bytes[1 * 6 + 2] = 255;
    IImageBuffer* mask = MakeBuffer(6, 4, 1, bytes);
    PyObject* settings = Eval("{'CrpRte': {'CrpRct': (2, 1, 3, 2)}}");
    IImageBuffer* out = Facade().Selection_MaskCorrection(mask, settings);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->GetWidth(), 3);
    EXPECT_EQ(out->GetHeight(), 2);
    BufferData in;
    in.pBuffer = bytes.data();
    in.nWidth = in.nStride = 6;
    in.nHeight = 4;
    std::vector<uint8_t> expected(6, 0);
    BufferData want;
    want.pBuffer = expected.data();
    want.nWidth = want.nStride = 3;
    want.nHeight = 2;
    CropRotateSetting crop;
    crop.nLeft = 2;
    crop.nTop = 1;
    crop.nWidth = 3;
    crop.nHeight = 2;
    oracle::CropRotate(in, crop, want);
    EXPECT_EQ(Pixels(out), expected);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection no lens correction effect\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Crop Setting nLeft : 2\n"));
    out->Release();
    Py_DECREF(settings);
    mask->Release();
}

TEST_F(FacadeSelectionTest, LensThenCropWithRotation) {
    std::vector<uint8_t> bytes(48 * 32, 0);
    for (int y = 6; y < 26; ++y) std::memset(&bytes[y * 48 + 8], 255, 30);
    IImageBuffer* mask = MakeBuffer(48, 32, 1, bytes);
    PyObject* settings =
        Eval("{'LensCrt': {'LCDist': -30, 'LCHor': 15}, 'CrpRte': {'RtAgl': 7.5, 'CrpRct': (4, 3, 36, 24)}}");
    IImageBuffer* out = Facade().Selection_MaskCorrection(mask, settings);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->GetWidth(), 36);
    EXPECT_EQ(out->GetHeight(), 24);
    // Lens first, into a mask of the input's size; then crop and rotation.
    CSelectionTool tool;
    MaskCorrectSetting correct;
    correct.lensCorrectSetting.nDistortion = -30;
    correct.lensCorrectSetting.nHorizontal = 15;
    BufferData in;
    in.pBuffer = bytes.data();
    in.nWidth = in.nStride = 48;
    in.nHeight = 32;
    std::vector<uint8_t> lensed(bytes.size(), 0);
    BufferData middle = in;
    middle.pBuffer = lensed.data();
    ASSERT_EQ(tool.SelectionMaskOperation(in, in, MASK_LENSCORRECT, &correct, middle), 0);
    std::vector<uint8_t> expected(36 * 24, 0);
    BufferData want;
    want.pBuffer = expected.data();
    want.nWidth = want.nStride = 36;
    want.nHeight = 24;
    CropRotateSetting crop;
    crop.fAngle = 7.5f;
    crop.nLeft = 4;
    crop.nTop = 3;
    crop.nWidth = 36;
    crop.nHeight = 24;
    oracle::CropRotate(middle, crop, want);
    EXPECT_EQ(Pixels(out), expected);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Crop Setting fAngle : 7.500000\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Crop Setting nHeight : 24\n"));
    out->Release();
    Py_DECREF(settings);
    mask->Release();
}

TEST_F(FacadeSelectionTest, LensSettingsReachTheToolAndAreLogged) {
    std::vector<uint8_t> bytes(40 * 30, 0);
    for (int y = 5; y < 25; ++y) std::memset(&bytes[y * 40 + 5], 255, 30);
    IImageBuffer* mask = MakeBuffer(40, 30, 1, bytes);
    PyObject* settings = Eval("{'LensCrt': {'LCDist': 40, 'LCVer': -20, 'LCHor': 10, 'LCCARed': 3, 'LCCABlue': 'x'}}");
    IImageBuffer* out = Facade().Selection_MaskCorrection(mask, settings);
    ASSERT_NE(out, nullptr);
    EXPECT_FALSE(PyErr_Occurred());
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Lens Setting nDistortion : 40\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Lens Setting nVertical : -20\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Lens Setting nHorizontal : 10\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Lens Setting nCARed : 3\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Lens Setting nCABlue : 0\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection no crop effect\n"));
    // The same warp straight through the tool.
    CSelectionTool tool;
    MaskCorrectSetting correct;  // direction 0: the direct warp
    LensCorrectSetting& lens = correct.lensCorrectSetting;
    lens.nDistortion = 40;
    lens.nVertical = -20;
    lens.nHorizontal = 10;
    lens.nCARed = 3;
    BufferData in;
    in.pBuffer = bytes.data();
    in.nWidth = in.nStride = 40;
    in.nHeight = 30;
    std::vector<uint8_t> expected(bytes.size(), 0);
    BufferData want = in;
    want.pBuffer = expected.data();
    ASSERT_EQ(tool.SelectionMaskOperation(in, in, MASK_LENSCORRECT, &correct, want), 0);
    EXPECT_EQ(Pixels(out), expected);
    EXPECT_NE(expected, bytes);
    out->Release();
    Py_DECREF(settings);
    mask->Release();
}

TEST_F(FacadeSelectionTest, FailedAllocationReturnsTheInputWithoutAReference) {
    IImageBuffer* mask = MakeBuffer(2, 1, 1, {0, 255});
    m_allocator.refuse = true;
    PyObject* empty = Eval("{}");
    EXPECT_EQ(Facade().Selection_MaskCorrection(mask, empty), mask);
    EXPECT_EQ(RefCount(mask), 1);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MaskCorrection can't get the memory for the pOutBuffer\n"));
    Py_DECREF(empty);
    mask->Release();
}

TEST_F(FacadeSelectionTest, MaskCorrectionNeedsPixels) {
    BufferData none;
    BufferData out;
    EXPECT_EQ(Facade().m_fnMaskCorrection(nullptr, none, out), kPointer);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMaskCorrection Null Pointer : input.pBuffer\n"));
}

// ------------------------------------------------------------ live mask

TEST_F(FacadeSelectionTest, SetSelectionResultMaskData) {
    PyObject* lines = Eval("[(1, 0, 2)]");
    EXPECT_EQ(Facade().m_fnSetSelectionResultMaskData(nullptr, false), kPointer);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnSetSelectionResultMaskData Null Pointer : pPyoMaskLine\n"));
    EXPECT_EQ(Facade().m_fnSetSelectionResultMaskData(lines, false), 0);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnSetSelectionResultMaskData w or h == 0\n"));
    EXPECT_EQ(Facade().m_LatestSelectionResult.mask.pBuffer, nullptr);
    Facade().m_nSelectionWidth = 3;
    Facade().m_nSelectionHeight = 2;
    EXPECT_EQ(Facade().m_fnSetSelectionResultMaskData(lines, true), 0);
    const BufferData& mask = Facade().m_LatestSelectionResult.mask;
    ASSERT_NE(mask.pBuffer, nullptr);
    EXPECT_EQ(mask.nStride, 3);
    EXPECT_EQ(std::vector<uint8_t>(mask.pBuffer, mask.pBuffer + 6), std::vector<uint8_t>({255, 0, 0, 255, 255, 255}));
    // An empty list: all 0 whatever the invert flag.
    PyObject* empty = Eval("[]");
    EXPECT_EQ(Facade().m_fnSetSelectionResultMaskData(empty, true), 0);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnSetSelectionResultMaskData nLineSize < 0\n"));
    EXPECT_TRUE(Logged("PyClipGrade::m_fnSetSelectionResultMaskData pslLines == NULL\n"));
    EXPECT_EQ(std::vector<uint8_t>(mask.pBuffer, mask.pBuffer + 6), std::vector<uint8_t>(6, 0));
    Facade().m_nSelectionWidth = -1;
    EXPECT_EQ(Facade().m_fnSetSelectionResultMaskData(empty, false), kFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnSetSelectionResultMaskData can't get the memory for the mask\n"));
    Py_DECREF(empty);
    Py_DECREF(lines);
}

// ------------------------------------------------------------ rescaling

TEST_F(FacadeSelectionTest, ScaleAtOneToOneGivesTheListNormalised) {
    // The run on row 1 ends on the last column.
    PyObject* list = Eval("[(0.25, 0.0, 0.5), (0.5, 0.25, 0.5)]");
    PyObject* result = Facade().Selection_ScaleUSSelectionList(list, 8, 4, 8, 4);
    if (Facade().m_ippFunctions.m_hLibrary) {
        EXPECT_EQ(Repr(result), "[(0.25, 0.0, 0.5), (0.5, 0.25, 0.5)]");
    } else {
        // Without the resampler the destination stays empty.
        EXPECT_EQ(result, Py_None);
        EXPECT_TRUE(Logged("PyClipGrade::Selection_ScaleUSSelectionList [Err] ResizeBuffer_8u() status=-118"));
    }
    Py_XDECREF(result);
    Py_DECREF(list);
}

TEST_F(FacadeSelectionTest, ScaleRefusals) {
    PyObject* empty = Eval("[]");
    PyObject* result = Facade().Selection_ScaleUSSelectionList(empty, 8, 4, 8, 4);
    EXPECT_EQ(result, Py_None);
    Py_XDECREF(result);
    result = Facade().Selection_ScaleUSSelectionList(nullptr, 8, 4, 8, 4);
    EXPECT_EQ(result, Py_None);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_ScaleUSSelectionList Null Pointer : pPyoMaskList\n"));
    Py_XDECREF(result);
    Facade().m_pBufferAllocator = nullptr;
    result = Facade().Selection_ScaleUSSelectionList(empty, 8, 4, 8, 4);
    EXPECT_EQ(result, Py_None);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_ScaleUSSelectionList Null Pointer : m_pBufferAllocator\n"));
    Py_XDECREF(result);
    Py_DECREF(empty);
}

// ------------------------------------------------------------ brush

TEST_F(FacadeSelectionTest, ManualStrokeWithTwoPositionsPaintsTheSecondAsAContinuation) {
    PyObject* none = Eval("[]");
    EXPECT_EQ(Facade().Manual_Initialize(none, 20, 5), 0);
    EXPECT_EQ(Facade().m_ManualBrush.m_bufferData.pBuffer, Facade().m_LatestSelectionResult.mask.pBuffer);
    PyObject* positions = Eval("[(2, 2), (12, 2)]");
    IImageBuffer* out = Facade().Manual_UpdateStroke(positions, 2, true, true);
    ASSERT_NE(out, nullptr);
    // A continuation from (2, 2) to (12, 2) with radius 2 interpolates
    // stamps in between, so row 2 is painted without a gap.
    std::vector<uint8_t> expected(100, 0);
    int lastX = -1, lastY = -1;
    BufferData want;
    want.pBuffer = expected.data();
    want.nWidth = want.nStride = 20;
    want.nHeight = 5;
    oracle::BrushStep(lastX, lastY, 2, 2, 2, true, true, want);
    oracle::BrushStep(lastX, lastY, 12, 2, 2, false, true, want);
    EXPECT_EQ(Pixels(out), expected);
    for (int x = 1; x <= 13; ++x) EXPECT_EQ(expected[2 * 20 + x], 255) << x;
    EXPECT_EQ(Facade().m_ManualBrush.m_nLastX, 12);
    out->Release();
    EXPECT_EQ(Facade().Manual_Uninitialize(), 0);
    EXPECT_EQ(Facade().m_LatestSelectionResult.mask.pBuffer, nullptr);
    EXPECT_EQ(Facade().m_nSelectionWidth, 0);
    Py_DECREF(positions);
    Py_DECREF(none);
}

TEST_F(FacadeSelectionTest, ManualStrokeRefusals) {
    PyObject* empty = Eval("[]");
    EXPECT_EQ(Facade().Manual_UpdateStroke(nullptr, 2, true, true), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Manual_UpdateStroke Null Pointer : pPyoLstPos\n"));
    EXPECT_EQ(Facade().Manual_UpdateStroke(empty, 2, true, true), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Manual_UpdateStroke Size of Position <= 0\n"));
    // Outside a run the brush has no mask: the failure is logged and an
    // empty copy comes back.
    PyObject* positions = Eval("[(1, 1)]");
    IImageBuffer* out = Facade().Manual_UpdateStroke(positions, 2, true, true);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->GetWidth(), 0);
    EXPECT_TRUE(Logged("CManualBrush::UpdateStroke Null Pointer : m_bufferData.pBuffer\n"));
    out->Release();
    m_allocator.refuse = true;
    EXPECT_EQ(Facade().Manual_UpdateStroke(positions, 2, true, true), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Manual_UpdateStroke Null Pointer : pOutBuffer\n"));
    Facade().m_pBufferAllocator = nullptr;
    EXPECT_EQ(Facade().Manual_UpdateStroke(positions, 2, true, true), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Manual_UpdateStroke Null Pointer : m_pBufferAllocator\n"));
    Py_DECREF(positions);
    Py_DECREF(empty);
}

TEST_F(FacadeSelectionTest, TheBrushFollowsARebuiltMask) {
    PyObject* empty = Eval("[]");
    ASSERT_EQ(Facade().Manual_Initialize(empty, 10, 4), 0);
    // A new mask from a line list, at a new size, while the brush is on.
    Facade().m_nSelectionWidth = 6;
    Facade().m_nSelectionHeight = 3;
    PyObject* lines = Eval("[(0, 0, 6)]");
    ASSERT_EQ(Facade().m_fnSetSelectionResultMaskData(lines, false), 0);
    EXPECT_EQ(Facade().m_ManualBrush.m_bufferData.pBuffer, Facade().m_LatestSelectionResult.mask.pBuffer);
    EXPECT_EQ(Facade().m_ManualBrush.m_bufferData.nWidth, 6);
    PyObject* positions = Eval("[(0, 2)]");
    IImageBuffer* out = Facade().Manual_UpdateStroke(positions, 1, true, true);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(Pixels(out), std::vector<uint8_t>({255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0}));
    out->Release();
    Py_DECREF(positions);
    Py_DECREF(lines);
    Py_DECREF(empty);
}

// ------------------------------------------------------------ smart selection

// Left half one colour, right half another; 4 bytes per pixel (BGRA).
IImageBuffer* TwoColourPicture(int width, int height) {
    std::vector<uint8_t> pixels(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            uint8_t* p = &pixels[(static_cast<size_t>(y) * width + x) * 4];
            p[0] = x < width / 2 ? 200 : 20;
            p[1] = x < width / 2 ? 40 : 180;
            p[2] = 60;
            p[3] = 255;
        }
    }
    return MakeBuffer(width, height, 4, pixels);
}

TEST_F(FacadeSelectionTest, SmartSelectionRunWithUndoAndRedo) {
    ZenodorLoader& loader = Facade().m_ZenodorLoader;
    ASSERT_NE(loader.m_hZenodorLibrary, nullptr);
    pcg::reftest::RefSelectEntries entries(loader);
    const int64_t live = entries.Counter("objectsLive");
    IImageBuffer* picture = TwoColourPicture(8, 4);
    PyObject* initial = Eval("[(0, 3, 1)]");
    ASSERT_EQ(Facade().Selection_Initialize(picture, initial), 0);
    EXPECT_EQ(entries.Counter("objectsLive"), live + 1);
    EXPECT_EQ(Facade().m_selectionBufData.nStride, 24);
    EXPECT_EQ(Facade().m_selectionBufData.nColorDepth, 8);
    EXPECT_EQ(Facade().m_selectionBufData.nChannelBoundary, 255);
    EXPECT_EQ(Facade().m_selectionBufData.pBuffer[3], 200);  // the second pixel's blue byte

    PyObject* right = Eval("[(6, 1)]");
    IImageBuffer* first = Facade().Selection_MagicSelect(right, 1, false, false, false);
    ASSERT_NE(first, nullptr);
    std::vector<uint8_t> expected(32, 0);
    for (int y = 0; y < 4; ++y) std::memset(&expected[y * 8 + 4], 255, 4);
    expected[3 * 8] = 255;  // the initial line
    EXPECT_EQ(Pixels(first), expected);
    first->Release();

    EXPECT_EQ(Facade().Selection_Undo(1), 0);
    PyObject* outside = Eval("[(-50, -50)]");
    IImageBuffer* undone = Facade().Selection_MagicSelect(outside, 1, false, false, false);
    std::vector<uint8_t> initialOnly(32, 0);
    initialOnly[3 * 8] = 255;
    EXPECT_EQ(Pixels(undone), initialOnly);
    undone->Release();
    EXPECT_EQ(Facade().Selection_Redo(1), 0);
    IImageBuffer* redone = Facade().Selection_MagicSelect(outside, 1, false, false, false);
    EXPECT_EQ(Pixels(redone), expected);
    redone->Release();
    // Removing with the first flag, over two positions.
    PyObject* both = Eval("[(6, 1), (1, 3)]");
    IImageBuffer* removed = Facade().Selection_MagicSelect(both, 1, true, false, false);
    EXPECT_EQ(Pixels(removed), std::vector<uint8_t>(32, 0));
    removed->Release();
    EXPECT_EQ(Facade().Selection_ClearStrokeHistory(), 0);
    EXPECT_EQ(entries.Counter("strokesHeld"), 0);
    EXPECT_EQ(Facade().Selection_Uninitialize(), 0);
    EXPECT_EQ(entries.Counter("objectsLive"), live);
    EXPECT_EQ(Facade().m_nSelectionWidth, 0);
    EXPECT_EQ(Facade().m_LatestSelectionResult.mask.pBuffer, nullptr);
    EXPECT_NE(Facade().m_selectionBufData.pBuffer, nullptr);  // survives until the next run
    // Without an object every call is logged and answers 0.
    EXPECT_EQ(Facade().Selection_Undo(1), 0);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Undo m_MagicSelection.Undo(nStep) failed hr=0x80004003\n"));
    EXPECT_EQ(Facade().Selection_Redo(1), 0);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Redo m_MagicSelection.Redo(nStep) failed hr=0x80004003\n"));
    EXPECT_EQ(Facade().Selection_ClearStrokeHistory(), 0);
    EXPECT_EQ(Facade().Selection_Uninitialize(), 0);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Uninitialize m_MagicSelection.Uninitialize(&m_ZenodorLoader) failed "
                       "hr=0x80004003\n"));
    Py_DECREF(both);
    Py_DECREF(outside);
    Py_DECREF(right);
    Py_DECREF(initial);
    picture->Release();
}

TEST_F(FacadeSelectionTest, SelectionInitializeRefusals) {
    EXPECT_EQ(Facade().Selection_Initialize(nullptr, nullptr), kPointer);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Initialize Null Pointer : pBufferData\n"));
    IImageBuffer* mask = MakeBuffer(2, 2, 1, {0, 0, 0, 0});
    EXPECT_EQ(Facade().Selection_Initialize(mask, nullptr), kFail);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Initialize [Err] not support buffer pixel depth=1"));
    mask->Release();
}

TEST_F(FacadeSelectionTest, MagicSelectRefusals) {
    PyObject* empty = Eval("[]");
    EXPECT_EQ(Facade().Selection_MagicSelect(nullptr, 1, false, false, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MagicSelect Null Pointer : pPyoLstPos\n"));
    EXPECT_EQ(Facade().Selection_MagicSelect(empty, 1, false, false, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MagicSelect Size of Position <= 0\n"));
    Facade().m_pBufferAllocator = nullptr;
    EXPECT_EQ(Facade().Selection_MagicSelect(empty, 1, false, false, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MagicSelect Null Pointer : m_pBufferAllocator\n"));
    Py_DECREF(empty);
}

// A 4-byte picture that has no pixels to lend: its lock hands out null.
class PixellessPicture final : public IImageBuffer {
public:
    int AddRef() override { return 1; }
    int Release() override { return 1; }
    bool LockBuffer(uint8_t** ppBuffer, int* pnWidth, int* pnHeight) override {
        *ppBuffer = nullptr;
        *pnWidth = 4;
        *pnHeight = 2;
        return false;
    }
    bool UnlockBuffer() override { return true; }
    int GetWidth() override { return 4; }
    int GetHeight() override { return 2; }
    int GetPixelBytes() override { return 4; }
};

TEST_F(FacadeSelectionTest, APictureWithoutPixelsIsLoggedAsAFailedConversionAndTheRunGoesOn) {
    PixellessPicture picture;
    PyObject* lines = Eval("[(1, 0, 2)]");
    EXPECT_EQ(Facade().Selection_Initialize(&picture, lines), 0);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_Initialize convert fail!"));
    EXPECT_EQ(Facade().m_selectionBufData.pBuffer, nullptr);
    EXPECT_EQ(Facade().m_selectionBufData.nStride, 12);
    // The run is open on the script's lines all the same.
    const BufferData& mask = Facade().m_LatestSelectionResult.mask;
    ASSERT_NE(mask.pBuffer, nullptr);
    EXPECT_EQ(std::vector<uint8_t>(mask.pBuffer, mask.pBuffer + 8), std::vector<uint8_t>({0, 255, 255, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Facade().Selection_Uninitialize(), 0);
    Py_DECREF(lines);
}

TEST_F(FacadeSelectionTest, AStrokeWhoseCopyGetsNoBufferAnswersNull) {
    IImageBuffer* picture = TwoColourPicture(4, 2);
    PyObject* empty = Eval("[]");
    PyObject* positions = Eval("[(0, 0)]");
    ASSERT_EQ(Facade().Selection_Initialize(picture, empty), 0);
    m_allocator.refuse = true;
    EXPECT_EQ(Facade().Selection_MagicSelect(positions, 1, false, false, false), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::Selection_MagicSelect Null Pointer : pOutBuffer\n"));
    EXPECT_FALSE(Logged("PyClipGrade::Selection_MagicSelect() end\n"));
    // The stroke itself reached the live selection.
    const BufferData& mask = Facade().m_LatestSelectionResult.mask;
    EXPECT_EQ(std::vector<uint8_t>(mask.pBuffer, mask.pBuffer + 8), std::vector<uint8_t>({255, 255, 0, 0, 255, 255, 0, 0}));
    EXPECT_EQ(Facade().Selection_Uninitialize(), 0);
    Py_DECREF(positions);
    Py_DECREF(empty);
    picture->Release();
}

TEST_F(FacadeSelectionTest, EveryMemberWritesItsEnterAndEndLines) {
    IImageBuffer* picture = TwoColourPicture(4, 2);
    IImageBuffer* mask = MakeBuffer(4, 2, 1, {0, 255, 255, 0, 0, 0, 0, 0});
    PyObject* none = Eval("None");
    PyObject* empty = Eval("[]");
    PyObject* positions = Eval("[(0, 0), (3, 1)]");
    PyObject* lines = Eval("[(1, 0, 2)]");
    PyObject* normalised = Eval("[(0.25, 0.0, 0.5)]");
    PyObject* correction = Eval("{}");
    std::vector<IImageBuffer*> made;
    std::vector<PyObject*> answers;
    ASSERT_EQ(Facade().Selection_Initialize(picture, empty), 0);
    made.push_back(Facade().Selection_MagicSelect(positions, 1, false, false, false));
    EXPECT_EQ(Facade().Selection_ClearStrokeHistory(), 0);
    EXPECT_EQ(Facade().Selection_Undo(1), 0);
    EXPECT_EQ(Facade().Selection_Redo(1), 0);
    EXPECT_EQ(Facade().Selection_Uninitialize(), 0);
    EXPECT_EQ(Facade().Manual_Initialize(lines, 4, 2), 0);
    made.push_back(Facade().Manual_UpdateStroke(positions, 1, true, true));
    EXPECT_EQ(Facade().Manual_Uninitialize(), 0);
    answers.push_back(Facade().Selection_MaskToPoint(mask, none));
    made.push_back(Facade().Selection_PointToMask(lines, 4, 2, false));
    made.push_back(Facade().Selection_MaskCorrection(mask, correction));
    answers.push_back(Facade().Selection_ScaleUSSelectionList(normalised, 4, 2, 8, 4));
    made.push_back(Facade().ResizeImageBuffer(picture, 2, 1));
    for (IImageBuffer* buffer : made) {
        ASSERT_NE(buffer, nullptr);
        buffer->Release();
    }
    for (PyObject* answer : answers) {
        ASSERT_NE(answer, nullptr);
        Py_DECREF(answer);
    }
    const char* const members[] = {"Selection_Initialize", "Selection_MagicSelect", "Selection_ClearStrokeHistory",
                                   "Selection_Undo", "Selection_Redo", "Selection_Uninitialize",
                                   "Manual_Initialize", "Manual_UpdateStroke", "Manual_Uninitialize",
                                   "Selection_MaskToPoint", "Selection_PointToMask", "Selection_MaskCorrection",
                                   "Selection_ScaleUSSelectionList", "ResizeImageBuffer"};
    for (const char* member : members) {
        EXPECT_TRUE(Logged(std::string("PyClipGrade::") + member + "() enter\n")) << member;
        EXPECT_TRUE(Logged(std::string("PyClipGrade::") + member + "() end\n")) << member;
    }
    for (PyObject* object : {none, empty, positions, lines, normalised, correction}) Py_DECREF(object);
    mask->Release();
    picture->Release();
}

TEST_F(FacadeSelectionTest, AnOpenRunIsClosedAtTeardownAndOnANewInitialize) {
    pcg::reftest::RefSelectEntries entries(Facade().m_ZenodorLoader);
    const int64_t live = entries.Counter("objectsLive");
    IImageBuffer* picture = TwoColourPicture(4, 2);
    PyObject* empty = Eval("[]");
    ASSERT_EQ(Facade().Selection_Initialize(picture, empty), 0);
    ASSERT_EQ(Facade().Selection_Initialize(picture, empty), 0);
    EXPECT_EQ(entries.Counter("objectsLive"), live + 1);
    DropFacade();
    MakeFacade();
    EXPECT_EQ(entries.Counter("objectsLive"), live);
    Py_DECREF(empty);
    picture->Release();
}

// ------------------------------------------------------------ dump, resize

TEST_F(FacadeSelectionTest, DumpOfAnEmptyMaskHasRowsAndNoLineSection) {
    IImageBuffer* mask = MakeBuffer(3, 2, 1, std::vector<uint8_t>(6, 0));
    Facade().DumpIImageBuffer(mask);
    EXPECT_TRUE(Logged("========================== RawBuffer ================================="));
    EXPECT_TRUE(Logged("[0] ..."));
    EXPECT_TRUE(Logged("[1] ..."));
    EXPECT_FALSE(Logged("================== DumpIImageBuffer SelectionLine ====================="));
    mask->Release();
    Facade().DumpIImageBuffer(nullptr);
}

TEST_F(FacadeSelectionTest, DumpShowsRowsAndLines) {
    IImageBuffer* mask = MakeBuffer(3, 2, 1, {0, 7, 7, 255, 0, 0});
    Facade().DumpIImageBuffer(mask);
    char head[128];
    std::snprintf(head, sizeof(head), "@DumpIImageBuffer() Width=3, Height=2, pBuffer=%X",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(mask)));
    EXPECT_TRUE(Logged(head));
    EXPECT_TRUE(Logged("[0] .xx"));
    EXPECT_TRUE(Logged("[1] x.."));
    EXPECT_TRUE(Logged("================== DumpIImageBuffer SelectionLine ====================="));
    EXPECT_TRUE(Logged("(1,0,2)"));
    EXPECT_TRUE(Logged("(0,1,1)"));
    EXPECT_TRUE(Logged("======================================================================="));
    mask->Release();
}

TEST_F(FacadeSelectionTest, ResizeRefusesOtherDepthsAndResizesFourBytes) {
    IImageBuffer* three = MakeBuffer(2, 2, 3, std::vector<uint8_t>(12, 1));
    EXPECT_EQ(Facade().ResizeImageBuffer(three, 4, 4), nullptr);
    EXPECT_TRUE(Logged("PyClipGrade::ResizeImageBuffer [Err] Not support PixelFormat=3!"));
    three->Release();
    EXPECT_EQ(Facade().ResizeImageBuffer(nullptr, 4, 4), nullptr);
    std::vector<uint8_t> pixels(4 * 4 * 4);
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<uint8_t>(i % 4 == 3 ? 255 : 100);
    IImageBuffer* four = MakeBuffer(4, 4, 4, pixels);
    IImageBuffer* half = Facade().ResizeImageBuffer(four, 2, 2);
    ASSERT_NE(half, nullptr);
    EXPECT_EQ(half->GetWidth(), 2);
    EXPECT_EQ(half->GetPixelBytes(), 4);
    EXPECT_EQ(RefCount(half), 1);
    if (Facade().m_ippFunctions.m_hLibrary) {
        // Area reduction of a flat picture keeps it flat, alpha included.
        std::vector<uint8_t> expected(16);
        for (size_t i = 0; i < expected.size(); ++i) expected[i] = static_cast<uint8_t>(i % 4 == 3 ? 255 : 100);
        EXPECT_EQ(Pixels(half), expected);
    } else {
        EXPECT_TRUE(Logged("PyClipGrade::ResizeImageBuffer [Err] ResizeBuffer_8u() status=-118"));
    }
    half->Release();
    four->Release();
}

}  // namespace
