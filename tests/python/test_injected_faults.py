"""Allocations of the effect heap made to fail, one at a time, at every
point of a push: the push still answers S_OK, the host does not crash, and
what reaches the agent is the record without what could not be allocated."""

import ctypes
import os
import subprocess
import sys
import textwrap

import pytest

from conftest import HOST, S_OK

EFFECTS = {
    "white balance": ("PY_SET_WB", {"Tmp": [[0, 2000], [10, 5000, 1], [20, 7]], "Tnt": [[5, -3]]}),
    "hsl bands": ("PY_SET_HSL_VIB", {"HSL_H": [[[0, 1], [1, 2]], [[2, 3]], [[4, 5]]]}),
    "tone curve": ("PY_SET_TONE_CURVE", {"TCurvPts": [[0, [(0.25, 0.5)], 2], [5, [(0.5, 0.5)], 1]]}),
    "mask white balance": ("PY_SET_MASK_WB", [{"MskID": 1, "MskWBTmp": [[0, 1], [1, 2]]},
                                              {"MskID": 2, "MskWBTmp": [[3, 4]]}]),
    "mask colour replacement": ("PY_SET_MASK_COLORREPLACEMENT",
                                [{"MskID": 4, "MskCR": [(1, 2, 3, 4, 5, 6, 0.5), (7, 8, 9, 10, 11, 12, 0.25)]}]),
}


@pytest.fixture
def fail_allocations(module):
    library = ctypes.CDLL(module.__file__)
    library.PcgTesting_FailAllocations.argtypes = [ctypes.c_uint32, ctypes.c_uint32]
    yield library.PcgTesting_FailAllocations
    library.PcgTesting_FailAllocations(0, 0)


def consistent(part, full):
    """`part` is `full` with some of what is allocated missing: entries or
    masks left out (order kept), a curve table None; nothing else differs."""
    if isinstance(part, dict) and isinstance(full, dict):
        if part == {"table": None} and "table" in full:
            return True
        return set(part) <= set(full) and all(consistent(part[k], full[k]) for k in part)
    if isinstance(part, list) and isinstance(full, list):
        if len(part) == len(full):
            return all(consistent(a, b) for a, b in zip(part, full))
        rest = iter(full)
        return all(any(consistent(item, candidate) for candidate in rest) for item in part)
    return part == full


@pytest.mark.parametrize("case", sorted(EFFECTS))
def test_every_single_allocation_failure_leaves_a_consistent_push(case, shadow, journal, fail_allocations):
    task, effect = EFFECTS[case]
    facade = shadow.PyClipGrade()
    journal.reset()
    assert facade.PushTask(1, getattr(shadow, task), effect, False) == S_OK
    full = journal.ops("PushEffect")[0]["args"][2]
    failed_pushes = 0
    for first in range(1, 40):
        journal.reset()
        fail_allocations(first, 1)
        assert facade.PushTask(1, getattr(shadow, task), effect, False) == S_OK
        fail_allocations(0, 0)
        pushed = journal.ops("PushEffect")
        if not pushed:
            failed_pushes += 1
            continue
        assert consistent(pushed[0]["args"][2], full), (first, pushed[0]["args"][2])
    # The record itself is the first allocation: that push reaches nobody.
    assert failed_pushes >= 1


def test_first_allocation_failing_pushes_nothing(shadow, journal, fail_allocations):
    facade = shadow.PyClipGrade()
    journal.reset()
    fail_allocations(1, 1)
    assert facade.PushTask(1, shadow.PY_SET_WB, {"Tmp": [[0, 1]]}, False) == S_OK
    fail_allocations(0, 0)
    assert journal.ops("PushEffect") == []


def test_every_allocation_failing_does_not_crash():
    """With the heap exhausted for good, pushes of every kind still return."""
    code = textwrap.dedent("""
        import sys
        sys.path.insert(0, %r)
        import PyClipGrade as P
        f = P.PyClipGrade()
        results = []
        for task, effect in %r:
            results.append(f.PushTask(1, getattr(P, task), effect, False))
        print(results)
    """) % (HOST, list(EFFECTS.values()))
    child = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, timeout=60,
                           env=dict(os.environ, PYCLIPGRADE_FAIL_ALLOCATION="1", PYTHONMALLOC="debug"))
    assert child.returncode == 0, child.stderr
    assert child.stdout.split("\n")[0] == str([S_OK] * len(EFFECTS))
