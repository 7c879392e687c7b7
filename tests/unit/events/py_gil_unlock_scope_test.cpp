#include "events/py_gil_unlock_scope.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

// One interpreter for the whole test program, initialised with the lock held
// by the main thread, as in a host.
class InterpreterEnvironment : public ::testing::Environment {
public:
    void SetUp() override { Py_InitializeEx(0); }
    void TearDown() override { Py_FinalizeEx(); }
};
const auto* const kInterpreter = ::testing::AddGlobalTestEnvironment(new InterpreterEnvironment);

TEST(PyGilUnlockScope, GivesUpTheLockAndTakesItBack) {
    ASSERT_EQ(PyGILState_Check(), 1);
    {
        PyGilUnlockScope unlocked;
        EXPECT_TRUE(unlocked.ReleasedLock());
        EXPECT_EQ(PyGILState_Check(), 0);
    }
    EXPECT_EQ(PyGILState_Check(), 1);
}

TEST(PyGilUnlockScope, AnotherThreadRunsScriptWhileTheLockIsGivenUp) {
    int observed = 0;
    {
        PyGilUnlockScope unlocked;
        std::thread other([&observed] {
            PyGILState_STATE state = PyGILState_Ensure();
            PyObject* value = PyLong_FromLong(41);
            observed = static_cast<int>(PyLong_AsLong(value)) + 1;
            Py_DECREF(value);
            PyGILState_Release(state);
        });
        other.join();
    }
    EXPECT_EQ(observed, 42);
    EXPECT_EQ(PyGILState_Check(), 1);
}

TEST(PyGilUnlockScope, TakesTheLockBackWhenAnExceptionUnwinds) {
    try {
        PyGilUnlockScope unlocked;
        EXPECT_EQ(PyGILState_Check(), 0);
        throw std::runtime_error("engine failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(PyGILState_Check(), 1);
}

TEST(PyGilUnlockScope, DoesNothingOnAThreadWithoutTheLock) {
    bool released = true;
    {
        PyGilUnlockScope unlocked;  // the main thread gives the lock up first
        std::thread other([&released] {
            PyGilUnlockScope nested;
            released = nested.ReleasedLock();
        });
        other.join();
    }
    EXPECT_FALSE(released);
    EXPECT_EQ(PyGILState_Check(), 1);
}

TEST(PyGilUnlockScope, NestedScopeDoesNothing) {
    PyGilUnlockScope outer;
    PyGilUnlockScope inner;
    EXPECT_TRUE(outer.ReleasedLock());
    EXPECT_FALSE(inner.ReleasedLock());
}

}  // namespace
