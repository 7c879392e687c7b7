// The builders' refusals: a missing count, and the shared heap refusing a
// mask object, a key record or the array, each with its result and log line.
#include "masks/mask_builders.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "engine/result_codes.h"
#include "facade/clipgrade.h"
#include "tests/unit/embedded_python.h"
#include "tests/unit/reference/ref_agent_library.h"
#include "tests/unit/selection/log_capture.h"

// The shared heap is calloc: this program's own calloc refuses the chosen
// call and hands every other to glibc.
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);

namespace {

std::size_t g_refusedSize = 0;  // 0: refuse nothing
int g_callsToSkip = 0;

// Refuses the `skip`+1-th block of `size` bytes from now on.
void RefuseBlock(std::size_t size, int skip) {
    g_callsToSkip = skip;
    g_refusedSize = size;
}

}  // namespace

extern "C" void* calloc(std::size_t count, std::size_t size) {
    if (g_refusedSize != 0 && count * size == g_refusedSize) {
        if (g_callsToSkip-- == 0) {
            g_refusedSize = 0;
            return nullptr;
        }
    }
    return __libc_calloc(count, size);
}

namespace {

// One interpreter for the whole program, as the module lives in one.
const ::testing::Environment* const kPython =
    ::testing::AddGlobalTestEnvironment(new pcg::unittest::PythonEnvironment);

using pcg::unittest::Eval;

// What the agent would do with what it holds: keys first, then the object.
void Release(HVN::MaskInfoBase** array, int32_t count) {
    for (int32_t index = 0; array != nullptr && index < count; ++index) {
        HVN::MaskInfoBase* mask = array[index];
        if (mask == nullptr) {
            continue;
        }
        if (mask->nMaskKind == pcg::engine::MASK_KIND_GRADIENT) {
            for (auto* key : static_cast<HVN::GradientMask*>(mask)->keyFrames) delete key;
        } else if (mask->nMaskKind == pcg::engine::MASK_KIND_ELLIPSE) {
            for (auto* key : static_cast<HVN::EllipseMask*>(mask)->keyFrames) delete key;
            for (auto* key : static_cast<HVN::EllipseMask*>(mask)->feathers) delete key;
        } else if (mask->nMaskKind == pcg::engine::MASK_KIND_MOTION_TRACK) {
            for (auto* key : static_cast<HVN::MotionTrackMask*>(mask)->lines) delete key;
            for (auto* key : static_cast<HVN::MotionTrackMask*>(mask)->feathers) delete key;
        } else if (mask->nMaskKind == pcg::engine::MASK_KIND_SELECTION) {
            for (auto* key : static_cast<HVN::SelectionMask*>(mask)->keyFrames) {
                if (key) key->points.Free();
                delete key;
            }
            for (auto* key : static_cast<HVN::SelectionMask*>(mask)->feathers) delete key;
        }
        delete mask;
    }
    pcg::masks::FreeMaskArray(array);
}

class MaskBuilders : public LogCapture {
protected:
    void TearDown() override {
        g_refusedSize = 0;
        Release(m_array, m_count);
        Py_XDECREF(m_masks);
        EXPECT_EQ(PyErr_Occurred(), nullptr);
        LogCapture::TearDown();
    }
    PyObject* Masks(const char* source) {
        m_masks = Eval(source);
        return m_masks;
    }

    PyObject* m_masks = nullptr;
    HVN::MaskInfoBase** m_array = nullptr;
    int32_t m_count = 0;
};

TEST_F(MaskBuilders, ANullCountIsAFailureOfEveryBuilder) {
    PyObject* list = Masks("[{'GMMskID': 1}]");
    EXPECT_EQ(pcg::masks::m_fnGradientToMaskInfoArray(list, &m_array, nullptr), pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnGradientToMaskInfoArray, Error. count is NULL"));
    EXPECT_EQ(pcg::masks::m_fnEllipseToMaskInfoArray(list, &m_array, nullptr), pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnEllipseToMaskInfoArray, Error. count is NULL"));
    EXPECT_EQ(pcg::masks::m_fnMotionTrackMaskToMaskInfoArray(list, 1, &m_array, nullptr), pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. count is NULL"));
    PyObject* selection = Eval("{'SmMskID': 1, 'SmPtInfo': {0: True}}");
    EXPECT_EQ(pcg::masks::m_fnSelMaskToMaskInfoArray(selection, &m_array, nullptr), pcg::kResultFail);
    Py_DECREF(selection);
    EXPECT_EQ(m_array, nullptr);
}

TEST_F(MaskBuilders, ANonListHasNoArrayAndFails) {
    EXPECT_EQ(pcg::masks::m_fnGradientToMaskInfoArray(Masks("{'GMMskID': 1}"), &m_array, &m_count),
              pcg::kResultFail);
    EXPECT_EQ(m_array, nullptr);
    EXPECT_EQ(m_count, -1);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask array"));
}

TEST_F(MaskBuilders, AnEmptyListIsNoArrayAndSuccess) {
    EXPECT_EQ(pcg::masks::m_fnMotionTrackMaskToMaskInfoArray(Masks("[]"), 1, &m_array, &m_count), pcg::kResultOk);
    EXPECT_EQ(m_array, nullptr);
    EXPECT_EQ(m_count, 0);
}

TEST_F(MaskBuilders, AGradientRefusedMidwayKeepsTheMasksMadeBefore) {
    RefuseBlock(sizeof(HVN::GradientMask), 1);
    EXPECT_EQ(pcg::masks::m_fnGradientToMaskInfoArray(Masks("[{'GMMskID': 1}, {'GMMskID': 2}, {'GMMskID': 3}]"),
                                                       &m_array, &m_count),
              pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask"));
    ASSERT_NE(m_array, nullptr);
    EXPECT_EQ(m_count, 3);
    ASSERT_NE(m_array[0], nullptr);
    EXPECT_EQ(m_array[0]->nMaskID, 1);
    EXPECT_EQ(m_array[1], nullptr);
    EXPECT_EQ(m_array[2], nullptr);
}

// The agent gets every mask made before the refusal, one call each; the
// slots after it are empty and skipped.
TEST_F(MaskBuilders, AddMaskInfoDeliversTheMasksMadeBeforeARefusal) {
    pcg::reftest::RefAgentLibrary& agent = pcg::reftest::RefAgentLibrary::Get();
    ASSERT_TRUE(agent.Loaded());
    PyClipGrade facade(nullptr, 0);
    agent.Reset();
    const int64_t held = agent.Counter("masksHeld");
    RefuseBlock(sizeof(HVN::GradientMask), 2);
    EXPECT_EQ(facade.AddMaskInfo(4, PY_SET_GRADIENT_MASK,
                                 Masks("[{'GMMskID': 1}, {'GMMskID': 2}, {'GMMskID': 3}, {'GMMskID': 5}]"), false),
              pcg::kResultOk);
    std::vector<pcg::reftest::Json> calls;
    for (const pcg::reftest::Json& entry : agent.JournalJson()) {
        if (entry.at("op") == "AddMaskInfo") {
            calls.push_back(entry.at("args"));
        }
    }
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].dump(),
              R"([4,16,1,{"class":"GradientMask","nMaskID":1,"nMaskKind":0,"effectInfoID":38,"keyFrames":[]}])");
    EXPECT_EQ(calls[1].dump(),
              R"([4,16,2,{"class":"GradientMask","nMaskID":2,"nMaskKind":0,"effectInfoID":38,"keyFrames":[]}])");
    EXPECT_EQ(agent.Counter("masksHeld"), held + 2);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask"));
    EXPECT_TRUE(Logged("PyClipGrade::AddMaskInfo() end\n"));
}

TEST_F(MaskBuilders, AnEllipseRefusedIsLoggedAsTheMotionTrackText) {
    RefuseBlock(sizeof(HVN::EllipseMask), 0);
    EXPECT_EQ(pcg::masks::m_fnEllipseToMaskInfoArray(Masks("[{'EllipseMskID': 1}]"), &m_array, &m_count),
              pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnEllipseToMaskInfoArray, Error. Can't allocate MortionTrackMask"));
    EXPECT_FALSE(Logged("PyClipGrade::m_fnEllipseToMaskInfoArray() end\n"));
    EXPECT_EQ(m_array[0], nullptr);
}

TEST_F(MaskBuilders, AMotionTrackRefusedIsLogged) {
    RefuseBlock(sizeof(HVN::MotionTrackMask), 0);
    EXPECT_EQ(pcg::masks::m_fnMotionTrackMaskToMaskInfoArray(Masks("[{'MSMskID': 1, 'MSMskInv': True}]"), 7,
                                                              &m_array, &m_count),
              pcg::kResultFail);
    EXPECT_TRUE(Logged("PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. Can't allocate MortionTrackMask"));
    EXPECT_EQ(m_array[0], nullptr);
}

TEST_F(MaskBuilders, ARefusedSelectionMaskLeavesTheSlotEmpty) {
    RefuseBlock(sizeof(HVN::SelectionMask), 0);
    EXPECT_EQ(pcg::masks::m_fnSelMaskToMaskInfoArray(Masks("{'SmMskID': 4, 'SmPtInfo': {0: True}}"), &m_array,
                                                      &m_count),
              pcg::kResultFail);
    EXPECT_TRUE(
        Logged("PyClipGrade::m_fnSelMaskToMaskInfoArray, Error. no memory for the SelectionMask; no mask\n"));
    EXPECT_EQ(m_count, 1);
    ASSERT_NE(m_array, nullptr);
    EXPECT_EQ(m_array[0], nullptr);
}

TEST_F(MaskBuilders, ARefusedKeyIsANullInItsList) {
    RefuseBlock(sizeof(pcg::engine::GradientKey), 1);
    EXPECT_EQ(pcg::masks::m_fnGradientToMaskInfoArray(
                  Masks("[{'GMMskID': 1, 'GMMskInfo': [[1, 0.0, 0.0, 0.0, 0.0], [2, 0.0, 0.0, 0.0, 0.0], "
                        "[3, 0.0, 0.0, 0.0, 0.0]]}]"),
                  &m_array, &m_count),
              pcg::kResultOk);
    const auto& keys = static_cast<HVN::GradientMask*>(m_array[0])->keyFrames;
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0]->llTime, 1);
    EXPECT_EQ(keys[1], nullptr);
    EXPECT_EQ(keys[2]->llTime, 3);
}

TEST_F(MaskBuilders, ARefusedFeatherIsANullInItsList) {
    RefuseBlock(sizeof(pcg::engine::MaskValueKey), 0);
    EXPECT_EQ(pcg::masks::m_fnEllipseToMaskInfoArray(
                  Masks("[{'EllipseMskID': 1, 'EllipseMskFeather': [[1, 2.5], [2, 3.5]]}]"), &m_array, &m_count),
              pcg::kResultOk);
    const auto& feathers = static_cast<HVN::EllipseMask*>(m_array[0])->feathers;
    ASSERT_EQ(feathers.size(), 2u);
    EXPECT_EQ(feathers[0], nullptr);
    EXPECT_EQ(feathers[1]->nValue, 3);
}

TEST_F(MaskBuilders, TheArraySizeSaturatesSoAHugeCountIsRefused) {
    EXPECT_EQ(pcg::masks::NewMaskArray(-1), nullptr);
    EXPECT_EQ(pcg::masks::NewMaskArray(INT32_MIN), nullptr);
    HVN::MaskInfoBase** array = pcg::masks::NewMaskArray(3);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array[0], nullptr);
    EXPECT_EQ(array[2], nullptr);
    pcg::masks::FreeMaskArray(array);
}

}  // namespace
