// Test helper for the units that read script objects: one interpreter for
// the whole test program, as the module lives in one, and script values made
// from source text.
#pragma once

#include <gtest/gtest.h>

#include "binding/py_compat.h"

namespace pcg {
namespace unittest {

// Registered once per test program:
//   ::testing::AddGlobalTestEnvironment(new pcg::unittest::PythonEnvironment)
class PythonEnvironment : public ::testing::Environment {
public:
    void SetUp() override { Py_Initialize(); }
    void TearDown() override { Py_FinalizeEx(); }
};

// A new reference to the value of the expression `source`; null with the
// error set when it does not evaluate.
inline PyObject* Eval(const char* source) {
    PyObject* globals = PyDict_New();
    PyObject* value = PyRun_String(source, Py_eval_input, globals, globals);
    Py_DECREF(globals);
    return value;
}

}  // namespace unittest
}  // namespace pcg
