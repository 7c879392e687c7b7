"""Python-level selection members beside their C++ peers, in one run.

On a 3840x2160 mask (blobs, then noise): Selection_MaskToPoint and
Selection_PointToMask through Python, the same CSelectionTool calls in C++
(PcgBufferTesting.TimeSelectionTool, same process, same mask), and a numpy
run-length encoder of the same mask. Then one smart selection stroke on a
1920x1080 photograph. Prints medians and ratios; a benchmark, not a test.

    make bench-python        (or PYTHONPATH=build/host:build/testing /usr/bin/python3 bench/selection_python_bench.py)
"""

import sys
import time

import numpy as np

import PcgBufferTesting as buffers
import PyClipGrade

WIDTH, HEIGHT = 3840, 2160


def median_ms(function, repetitions):
    samples = []
    for _ in range(repetitions):
        start = time.perf_counter()
        result = function()
        samples.append((time.perf_counter() - start) * 1000.0)
        if hasattr(result, "this") or type(result).__name__ == "SwigPyObject":
            buffers.Release(result)
    samples.sort()
    return samples[len(samples) // 2]


def blobs_mask(rng):
    mask = np.zeros((HEIGHT, WIDTH), np.uint8)
    yy, xx = np.mgrid[0:HEIGHT, 0:WIDTH]
    for _ in range(12):
        cx, cy = rng.integers(0, WIDTH), rng.integers(0, HEIGHT)
        rx, ry = rng.integers(100, 700), rng.integers(100, 500)
        mask[((xx - cx) / rx) ** 2 + ((yy - cy) / ry) ** 2 <= 1.0] = 255
    return mask


def noise_mask(rng):
    return np.where(rng.random((HEIGHT, WIDTH)) < 0.5, 255, 0).astype(np.uint8)


def numpy_runs(mask):
    """(x, y, length) of every run, by row then column, as an array."""
    height, width = mask.shape
    padded = np.zeros((height, width + 2), np.int8)
    padded[:, 1:-1] = mask != 0
    edges = np.diff(padded, axis=1)
    ys, starts = np.nonzero(edges == 1)
    _, ends = np.nonzero(edges == -1)
    return np.stack([starts, ys, ends - starts], axis=1)


def mask_case(facade, name, mask, repetitions):
    handle = buffers.NewBuffer(WIDTH, HEIGHT, 1)
    buffers.WriteBytes(handle, mask.tobytes())
    cpp_to_point, cpp_to_mask, lines = buffers.TimeSelectionTool(handle, repetitions)
    py_to_point = median_ms(lambda: facade.Selection_MaskToPoint(handle, None), repetitions)
    run_list = facade.Selection_MaskToPoint(handle, None)["lstLine"]
    py_to_mask = median_ms(lambda: facade.Selection_PointToMask(run_list, WIDTH, HEIGHT, False), repetitions)
    np_runs = median_ms(lambda: numpy_runs(mask), repetitions)
    np_runs_list = median_ms(lambda: list(map(tuple, numpy_runs(mask).tolist())), repetitions)
    assert numpy_runs(mask).tolist() == [list(l) for l in run_list]
    buffers.Release(handle)
    print("%s mask, %d runs:" % (name, lines))
    print("  MaskToPoint   Python %8.2f ms   C++ %8.2f ms   ratio %.2f" % (py_to_point, cpp_to_point,
                                                                          py_to_point / cpp_to_point))
    print("  PointToMask   Python %8.2f ms   C++ %8.2f ms   ratio %.2f" % (py_to_mask, cpp_to_mask,
                                                                          py_to_mask / cpp_to_mask))
    print("  numpy run encoder %8.2f ms (as a list of tuples %8.2f ms); Python MaskToPoint / numpy-list %.2f"
          % (np_runs, np_runs_list, py_to_point / np_runs_list))


def stroke_case(facade):
    from PIL import Image
    from skimage import data

    rgb = np.asarray(Image.fromarray(data.coffee()).resize((1920, 1080), Image.BILINEAR))
    height, width = rgb.shape[:2]
    bgra = np.dstack([rgb[:, :, 2], rgb[:, :, 1], rgb[:, :, 0], np.full((height, width), 255, np.uint8)])
    picture = buffers.NewBuffer(width, height, 4)
    buffers.WriteBytes(picture, bgra.tobytes())
    start = time.perf_counter()
    facade.Selection_Initialize(picture, [])
    init_ms = (time.perf_counter() - start) * 1000.0
    samples = []
    for _ in range(5):
        start = time.perf_counter()
        mask = facade.Selection_MagicSelect([(930, 450)], 20, False, False, False)
        samples.append((time.perf_counter() - start) * 1000.0)
        buffers.Release(mask)
        facade.Selection_Undo(1)
    samples.sort()
    facade.Selection_Uninitialize()
    buffers.Release(picture)
    print("smart selection on 1920x1080: Selection_Initialize %.1f ms, one stroke %.1f ms (median of 5)"
          % (init_ms, samples[2]))


def main():
    facade = PyClipGrade.PyClipGrade()
    buffers.UseTestingAllocator(facade)
    rng = np.random.default_rng(7)
    mask_case(facade, "blobs", blobs_mask(rng), 15)
    mask_case(facade, "noise", noise_mask(rng), 3)
    stroke_case(facade)
    buffers.DropTestingAllocator(facade)
    return 0


if __name__ == "__main__":
    sys.exit(main())
