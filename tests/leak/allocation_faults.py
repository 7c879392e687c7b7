"""Pushes with one allocation of the effect heap failing at every point in
turn: what was allocated before the failure is freed or delivered, never
lost."""

import ctypes
import gc

import PyClipGrade as P
import _PyClipGrade as M

fail = ctypes.CDLL(M.__file__).PcgTesting_FailAllocations
fail.argtypes = [ctypes.c_uint32, ctypes.c_uint32]

EFFECTS = [
    (P.PY_SET_WB, {"Tmp": [[0, 2000], [10, 5000, 1], [20, 7]], "Tnt": [[5, -3]]}),
    (P.PY_SET_HSL_VIB, {"HSL_H": [[[0, 1], [1, 2]], [[2, 3]]]}),
    (P.PY_SET_TONE_CURVE, {"TCurvPts": [[0, [(0.25, 0.5)], 2], [5, [(0.5, 0.5)], 1]]}),
    (P.PY_SET_MASK_WB, [{"MskID": 1, "MskWBTmp": [[0, 1], [1, 2]]}, {"MskID": 2}, {"MskID": 1}]),
    (P.PY_SET_MASK_COLORREPLACEMENT, [{"MskID": 4, "MskCR": [(1, 2, 3, 4, 5, 6, 0.5)]}]),
]

facade = P.PyClipGrade()
for task, effect in EFFECTS:
    for first in range(1, 30):
        fail(first, 1)
        facade.PushTask(1, task, effect, False)
        fail(0, 0)
    facade.ClearTask(1, False)
del facade
gc.collect()
