"""Pushes every global effect with every key set, replaces each record by a
newer one, clears a clip and deletes the facades: run under valgrind, no
record, entry, vector storage or curve table may be left behind."""

import sys

import PyClipGrade


def keyed(base, count=3):
    return [[t * 10, base + t, t % 3] for t in range(count)]


def doubles(base, count=3):
    return [[t * 10, base + t / 4.0] for t in range(count)]


def bands(base, count=8):
    return [keyed(base + b, 2) for b in range(count)]


def curve(count):
    return [[t, [(i / 32.0, i / 40.0) for i in range(count + t)], 2] for t in range(3)] + [[99, []]]


EFFECTS = [
    (2, {"Tmp": keyed(5000), "Tnt": keyed(-10)}),
    (3, {"BW": 1, "BW_L": bands(-20)}),
    (3, {"BW_L": bands(0, 9)}),
    (4, {"Xpo": doubles(0.5), "Bks": keyed(1), "Rcv": keyed(2), "Flt": keyed(3), "Brt": keyed(4),
         "Ctr": keyed(5), "Wts": keyed(6)}),
    (9, {"SrpAmt": keyed(1), "SrpRds": doubles(1), "SrpDtl": keyed(2), "SrpMsk": keyed(3), "SrpOut": keyed(4)}),
    (10, {"LNsAmnt": keyed(1), "LNsDtl": keyed(2)}),
    (11, {"CNsAmt": keyed(3), "CNsDtl": keyed(4)}),
    (22, {"LNsAmnt": keyed(1), "LNsDtl": keyed(2), "CNsAmt": keyed(3), "CNsDtl": keyed(4)}),
    (16, {"VgnAmt": keyed(1), "VgnMpt": keyed(2), "VgnRnd": keyed(3), "VgnFtr": keyed(4)}),
    (19, {"Sat": keyed(7)}),
    (20, {"Vib": keyed(1), "HSL_H": bands(10), "HSL_S": bands(20), "HSL_L": bands(30, 10)}),
    (23, {"TCurvPts": curve(21)}),
    (25, {"CR": [[1, (1, 2, 3), 2], [1, (1, 2, 3, 4, 5, 6, 0.5), 2], [2, (7, 8, 9, 10, 11, 12, 0.5), 2]]}),
    (25, {"CR": [[1, (1, 2, 3, 4, 5, 256, 0.5), 2]]}),
    (26, {"HDR_GS": keyed(1), "HDR_GR": keyed(2), "HDR_GB": keyed(3), "HDR_ES": doubles(4), "HDR_ER": keyed(5),
          "HDR_EB": keyed(6)}),
    (27, {28: {"TCurvRPts": curve(1)}, 29: {"TCurvGPts": curve(2)}, 30: {"TCurvBPts": [[1, [(0.5, 0.5)]]]}}),
    (31, {"STLtHue": doubles(1), "STLtSat": doubles(2), "STBalance": doubles(3), "STDkHue": doubles(4),
          "STDkSat": doubles(5)}),
    (32, {"CS": [[1, (1, 2, 3, 0.5, 0.5), 2], [2, (4, 5, 6, 0.5, 0.5), 2]]}),
    (32, {"CS": [[1, (-1, 2, 3, 0.5, 0.5), 2]]}),
    (33, {"CM": doubles(0.25)}),
    (128, {"PETintHue": keyed(30), "PETintAmo": doubles(0.5)}),
    (130, {"PEBlurLevel": keyed(2)}),
]


def cycle():
    first = PyClipGrade.PyClipGrade()
    second = PyClipGrade.PyClipGrade(first.GetDspAgentPtr(), 0)
    for clip in range(2):
        first.AddVideo(clip, 0, 1000, 1.0)
        for step in range(2):
            for task, effect in EFFECTS:
                first.PushTask(clip, task, effect, step % 2 == 0)
                second.PushTask(clip, task, effect, False)
            for task, _ in EFFECTS:
                first.PushTask(clip, task, {}, False)
    first.ClearTask(0, False)
    first.ClearTask(1, True)
    del second
    del first


for _ in range(2):
    cycle()
sys.exit(0)
