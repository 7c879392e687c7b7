#include "effects/curve_pivots.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/unit/embedded_python.h"

namespace {

// One interpreter for the whole program, as the module lives in one.
const ::testing::Environment* const kPython =
    ::testing::AddGlobalTestEnvironment(new pcg::unittest::PythonEnvironment);

using pcg::unittest::Eval;

// `count` pivots (i / 32, 1 - i / 32), each a tuple.
PyObject* Pivots(int count) {
    PyObject* list = PyList_New(count);
    for (int index = 0; index < count; ++index) {
        PyList_SetItem(list, index, Py_BuildValue("(dd)", index / 32.0, 1.0 - index / 32.0));
    }
    return list;
}

struct Pivot {
    float x;
    float y;
};

// Reads `pivots` and checks the count and every place of both arrays: the
// places past the count stay 0.0.
void ExpectPivots(PyObject* pivots, int count, const std::vector<Pivot>& expected) {
    ToneCurveRGBSetting setting;
    ASSERT_TRUE(pcg::effects::ReadFreePivots(pivots, setting));
    EXPECT_EQ(setting.nPivotCount, count);
    for (std::size_t index = 0; index < FREE_TONECURVE_PIVOT_COUNT; ++index) {
        const Pivot want = index < expected.size() ? expected[index] : Pivot{0.0f, 0.0f};
        EXPECT_EQ(setting.fPivotX[index], want.x) << index;
        EXPECT_EQ(setting.fPivotY[index], want.y) << index;
    }
    EXPECT_EQ(PyErr_Occurred(), nullptr);
    Py_DECREF(pivots);
}

TEST(CurvePivots, EachTuplePivotIsReadIntoItsPlaceInBothArrays) {
    ExpectPivots(Eval("[(0.0, 0.0), (0.25, 0.5), (1.0, 0.75)]"), 3, {{0.0f, 0.0f}, {0.25f, 0.5f}, {1.0f, 0.75f}});
}

TEST(CurvePivots, IntegerCoordinatesAreReadAsFloats) {
    ExpectPivots(Eval("[(1, 0)]"), 1, {{1.0f, 0.0f}});
}

TEST(CurvePivots, MoreThanTwentyKeepTheFirstTwenty) {
    std::vector<Pivot> first;
    for (int index = 0; index < 20; ++index) {
        first.push_back({static_cast<float>(index / 32.0), static_cast<float>(1.0 - index / 32.0)});
    }
    ExpectPivots(Pivots(21), 20, first);
}

// A pivot that is no pair keeps 0.0 where the parse did not reach, and still
// counts: x of (0.125, 'y') is read, its y is not.
TEST(CurvePivots, PivotThatIsNoPairStaysAtZeroAndCounts) {
    ExpectPivots(Eval("[(0.5, 0.5), 'x', (0.125, 'y'), (0.25, 0.75, 1.0), [0.5, 0.5], (0.75, 0.25)]"), 6,
                 {{0.5f, 0.5f}, {0.0f, 0.0f}, {0.125f, 0.0f}, {0.0f, 0.0f}, {0.0f, 0.0f}, {0.75f, 0.25f}});
}

TEST(CurvePivots, EmptyListHasNoPivots) {
    PyObject* pivots = Eval("[]");
    ToneCurveRGBSetting setting;
    ASSERT_TRUE(pcg::effects::ReadFreePivots(pivots, setting));
    EXPECT_EQ(setting.nPivotCount, 0);
    Py_DECREF(pivots);
}

TEST(CurvePivots, ValueThatIsNoListLeavesTheSettingAsItWas) {
    PyObject* pivots = Eval("((0.5, 0.5),)");
    ToneCurveRGBSetting setting;
    EXPECT_FALSE(pcg::effects::ReadFreePivots(pivots, setting));
    EXPECT_FALSE(pcg::effects::ReadFreePivots(nullptr, setting));
    EXPECT_EQ(setting.nPivotCount, 0);
    EXPECT_EQ(setting.fPivotX[0], 0.0f);
    EXPECT_EQ(setting.nMaxValue, 65535);
    Py_DECREF(pivots);
}

}  // namespace
