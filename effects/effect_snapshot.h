// A private copy of an effect as the script handed it over, read by the
// converters instead of the script's own objects.
//
// Converting a value (its __index__, __int__, __float__) runs script code,
// and that code may clear, shrink or replace any dictionary, list or tuple of
// the effect while a converter is in the middle of it. The snapshot copies
// every container of the effect, down to the depth any converter reads, in
// one step each that runs no script code, and keeps the copies unreachable
// from scripts: not even the collector lists them. The values themselves are
// shared, held by the copies. So a converter sees the effect as it was when
// the push began, whatever the script's code does meanwhile.
#pragma once

#include <unordered_map>

#include "binding/py_compat.h"

namespace pcg {
namespace effects {

class EffectSnapshot {
public:
    // `effect` may be null. Takes no reference from it.
    explicit EffectSnapshot(PyObject* effect);
    ~EffectSnapshot();
    EffectSnapshot(const EffectSnapshot&) = delete;
    EffectSnapshot& operator=(const EffectSnapshot&) = delete;

    // The copy to read; null when the effect was null. Borrowed from the
    // snapshot.
    PyObject* Effect() const { return m_pRoot; }

    // Containers nested deeper than this are not copied: no converter reads
    // that far down, so they are only ever values of the wrong type there.
    static constexpr int kMaxDepth = 16;

private:
    PyObject* Copy(PyObject* original, int depth);
    PyObject* CopyList(PyObject* original, int depth);
    PyObject* CopyTuple(PyObject* original, int depth);
    PyObject* CopyDict(PyObject* original, int depth);
    void Remember(PyObject* original, PyObject* copy);

    PyObject* m_pRoot;
    // Each container copied so far, by its original: a container reached
    // twice (or from inside itself) has one copy. Holds both.
    std::unordered_map<PyObject*, PyObject*> m_copies;
};

}  // namespace effects
}  // namespace pcg
