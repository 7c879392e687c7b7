// Gives up the interpreter lock for the life of the scope around a call that
// may block in an engine, and takes it back on the way out, also when an
// exception unwinds. On a thread that does not hold the lock it does nothing,
// so it is safe on any thread.
#pragma once

#include "binding/py_compat.h"

class PyGilUnlockScope {
public:
    PyGilUnlockScope() : m_pSavedState(nullptr) {
        PyThreadState* mine = PyGILState_GetThisThreadState();
        if (mine != nullptr && mine == pcg_CurrentThreadState())
            m_pSavedState = PyEval_SaveThread();
    }
    ~PyGilUnlockScope() {
        if (m_pSavedState != nullptr)
            PyEval_RestoreThread(m_pSavedState);
    }
    PyGilUnlockScope(const PyGilUnlockScope&) = delete;
    PyGilUnlockScope& operator=(const PyGilUnlockScope&) = delete;

    bool ReleasedLock() const { return m_pSavedState != nullptr; }

private:
    PyThreadState* m_pSavedState;
};
