"""ApplyEffectOnBuffer with a full grade on a 3840 x 2160 frame, against
OpenCV doing the nearest equivalent work on the same frame in the same run
(convertScaleAbs for the gains, LUT for the curves, GaussianBlur for the
local contrast), and the render agent's 3-D look-up table against a plain
numpy trilinear application. Runs are interleaved; medians and ratios are
printed. Not a test.

usage: apply_effect_bench.py --host build/host [--testing build/testing] [--repeat 5]"""

import argparse
import os
import statistics
import sys
import time


def parse():
    parser = argparse.ArgumentParser()
    parser.add_argument("--host", required=True)
    parser.add_argument("--testing", default=None)
    parser.add_argument("--repeat", type=int, default=5)
    return parser.parse_args()


ARGS = parse()
sys.path.insert(0, ARGS.host)
sys.path.insert(0, ARGS.testing or os.path.join(os.path.dirname(ARGS.host), "testing"))

import cv2  # noqa: E402
import numpy as np  # noqa: E402
from skimage import data  # noqa: E402

import PcgBufferTesting as buffers  # noqa: E402
import PyClipGrade as P  # noqa: E402

WIDTH, HEIGHT = 3840, 2160
CLIP = 7
LUT_SIZE = 33


def frame():
    rgb = cv2.resize(data.coffee(), (WIDTH, HEIGHT), interpolation=cv2.INTER_CUBIC)
    bgra = cv2.cvtColor(rgb, cv2.COLOR_RGB2BGRA)
    return np.ascontiguousarray(bgra)


def lut_table():
    axis = np.linspace(0.0, 1.0, LUT_SIZE, dtype=np.float32)
    b, g, r = np.meshgrid(axis, axis, axis, indexing="ij")
    table = np.stack([np.sqrt(r), g * g, 1.0 - b * 0.5], axis=-1).astype(np.float32)
    return table  # [b][g][r][channel], red fastest when flattened


def numpy_trilinear(bgra, table):
    """The straightforward trilinear application: eight gathers and blends."""
    n = table.shape[0] - 1
    rgb = bgra[..., 2::-1].astype(np.float32) * (n / 255.0)
    low = np.minimum(rgb.astype(np.int32), n - 1)
    f = rgb - low
    r0, g0, b0 = low[..., 0], low[..., 1], low[..., 2]
    fr, fg, fb = f[..., 0:1], f[..., 1:2], f[..., 2:3]
    out = 0.0
    for db, wb in ((0, 1 - fb), (1, fb)):
        for dg, wg in ((0, 1 - fg), (1, fg)):
            for dr, wr in ((0, 1 - fr), (1, fr)):
                out = out + table[b0 + db, g0 + dg, r0 + dr] * (wr * wg * wb)
    result = bgra.copy()
    result[..., 2::-1] = np.clip(out * 255.0 + 0.5, 0, 255).astype(np.uint8)
    return result


def opencv_peer(bgra, curve):
    gained = cv2.convertScaleAbs(bgra, alpha=1.08, beta=4)
    curved = cv2.LUT(gained, curve)
    blurred = cv2.GaussianBlur(curved, (0, 0), 8.0)
    return blurred


def timed(function):
    start = time.perf_counter()
    result = function()
    return time.perf_counter() - start, result


def main():
    bgra = frame()
    source = buffers.NewBuffer(WIDTH, HEIGHT, 4)
    buffers.WriteBytes(source, bgra)
    facade = P.PyClipGrade()
    facade.AddVideo(CLIP, 0, 10000, WIDTH / float(HEIGHT))
    grade = [
        (P.cvar.PY_SET_WB, {"Tmp": [[0, 5600]], "Tnt": [[0, 5]]}),
        (P.cvar.PY_SET_TONE, {"Xpo": [[0, 0.2]], "Ctr": [[0, 10]], "Bks": [[0, -5]]}),
        (P.cvar.PY_SET_TONE_CURVE, {"TCurvPts": [[0, [(0.25, 0.2), (0.75, 0.82)], 2]]}),
        (P.cvar.PY_SET_SATURATION, {"Sat": [[0, 15]]}),
        (P.cvar.PY_SET_CLARITY, {"Clr": [[0, 30]]}),
        (P.cvar.PY_SET_POSTCROP_VIGNETTE, {"VgnAmt": [[0, -30]], "VgnMpt": [[0, 50]], "VgnRnd": [[0, 0]],
                                           "VgnFtr": [[0, 50]]}),
    ]
    for task, effect in grade:
        assert facade.PushTask(CLIP, task, effect, True) == 0
    table = lut_table()
    assert facade.SetLUT([CLIP], LUT_SIZE, [0.0] * 3, [1.0] * 3, table.reshape(-1).tolist(), False) == 0
    curve = np.clip(np.arange(256) * 1.1, 0, 255).astype(np.uint8)
    lut_target = buffers.NewBuffer(WIDTH, HEIGHT, 4)

    times = {"ApplyEffectOnBuffer (8-bit, full grade)": [], "OpenCV convertScaleAbs+LUT+GaussianBlur": [],
             "ApplyLUTOnBuffer (3-D, %d^3)" % LUT_SIZE: [], "numpy trilinear": []}
    names = list(times)
    for _ in range(ARGS.repeat):
        spent, result = timed(lambda: facade.ApplyEffectOnBuffer(CLIP, 0, source, 0, 0))
        times[names[0]].append(spent)
        buffers.Release(result)
        times[names[1]].append(timed(lambda: opencv_peer(bgra, curve))[0])
        buffers.WriteBytes(lut_target, bgra)
        times[names[2]].append(timed(lambda: facade.ApplyLUTOnBuffer(CLIP, lut_target))[0])
        times[names[3]].append(timed(lambda: numpy_trilinear(bgra, table))[0])

    # The two LUT paths must agree, or the ratio compares different work.
    ours = np.empty_like(bgra)
    buffers.ReadInto(lut_target, ours)
    difference = np.abs(ours.astype(int) - numpy_trilinear(bgra, table).astype(int)).max()

    medians = {name: statistics.median(values) * 1000.0 for name, values in times.items()}
    print("%dx%d, %d runs interleaved, medians in ms" % (WIDTH, HEIGHT, ARGS.repeat))
    for name, value in medians.items():
        print("  %-45s %9.1f" % (name, value))
    print("ratio ApplyEffectOnBuffer / OpenCV peer: %.2f" % (medians[names[0]] / medians[names[1]]))
    print("ratio ApplyLUTOnBuffer / numpy trilinear: %.2f  (largest difference %d codes)"
          % (medians[names[2]] / medians[names[3]], difference))
    buffers.Release(lut_target)
    buffers.Release(source)
    del facade
    return 0


if __name__ == "__main__":
    sys.exit(main())
