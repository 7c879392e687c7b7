"""Mask <-> run list through the module, beside a numpy run-length coder.

The module's Selection_MaskToPoint and Selection_PointToMask hand a script
its selection as a list of (x, y, length) tuples. The peer does the same
work in numpy on the same 3840x2160 masks, in the same run, interleaved:
encode a mask to the same list, and paint a list back into a mask. Every
figure is the median of the repetitions and is printed as a ratio to its
peer and to copying the mask bytes (numpy copyto).

Usage: selection_bench.py [--host DIR] [--repeat N]
DIR is the host folder of a build (where _PyClipGrade.so lies).
"""
import argparse
import os
import statistics
import sys
import time

import numpy as np

WIDTH, HEIGHT = 3840, 2160


def blobs():
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    mask = np.zeros((HEIGHT, WIDTH), np.uint8)
    for cx, cy, rx, ry in ((900, 700, 600, 420), (1500, 1100, 500, 700), (2900, 800, 450, 380),
                           (2600, 1600, 700, 300), (600, 1700, 300, 260)):
        mask[((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2 < 1] = 255
    return mask


def noisy():
    rng = np.random.default_rng(7)
    return np.where(rng.integers(0, 2, (HEIGHT, WIDTH), dtype=np.uint8) != 0, 255, 0).astype(np.uint8)


def numpy_encode(mask):
    """Runs of non-zero bytes, row by row, as the module's list of tuples."""
    on = np.zeros((mask.shape[0], mask.shape[1] + 2), np.int8)
    on[:, 1:-1] = mask != 0
    edges = np.diff(on, axis=1)
    rows, starts = np.nonzero(edges == 1)
    _, ends = np.nonzero(edges == -1)
    return list(zip(starts.tolist(), rows.tolist(), (ends - starts).tolist()))


def numpy_decode(lines, width, height):
    """Paints a list of (x, y, length) runs on a zero mask."""
    runs = np.array(lines, dtype=np.int64).reshape(-1, 3)
    begin = runs[:, 1] * width + runs[:, 0]
    # A run ending at a row's end ends where the next row's first run may
    # begin, so the two steps are kept apart.
    up = np.zeros(height * width + 1, np.int8)
    down = np.zeros(height * width + 1, np.int8)
    up[begin] = 1
    down[begin + runs[:, 2]] = 1
    on = np.cumsum(up[:-1] - down[:-1], dtype=np.int8)
    return (on.reshape(height, width) != 0).astype(np.uint8) * np.uint8(255)


def load_module(host):
    if host:
        sys.path.insert(0, host)
    try:
        import PyClipGrade  # noqa: F401
    except ImportError as error:
        return None, "the module could not be imported (%s)" % error
    facade_class = PyClipGrade.PyClipGrade
    missing = [name for name in ("Selection_MaskToPoint", "Selection_PointToMask")
               if not hasattr(facade_class, name)]
    if missing:
        return None, "%s %s not reachable in this build of the module" % (
            " and ".join(missing), "is" if len(missing) == 1 else "are")
    return PyClipGrade.PyClipGrade(), None


def median_ms(fn, repeat):
    times = []
    for _ in range(repeat):
        start = time.perf_counter()
        fn()
        times.append((time.perf_counter() - start) * 1000.0)
    return statistics.median(times)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--host", default=os.environ.get("PCG_BENCH_HOST", ""))
    parser.add_argument("--repeat", type=int, default=3)
    args = parser.parse_args()

    facade, why_not = load_module(args.host)
    print("\nPython: mask <-> run list, %dx%d, medians of %d runs" % (WIDTH, HEIGHT, args.repeat))
    if why_not:
        print("  module: %s; only the numpy coder is measured" % why_not)

    for label, mask in (("blobs", blobs()), ("noisy", noisy())):
        copy = np.empty_like(mask)
        lines = numpy_encode(mask)
        assert np.array_equal(numpy_decode(lines, WIDTH, HEIGHT), np.where(mask != 0, 255, 0))
        work = {
            "copy": lambda: np.copyto(copy, mask),
            "numpy encode": lambda: numpy_encode(mask),
            "numpy decode": lambda: numpy_decode(lines, WIDTH, HEIGHT),
        }
        if facade is not None:
            buffer = facade.Selection_PointToMask(lines, WIDTH, HEIGHT, False)
            answer = facade.Selection_MaskToPoint(buffer, (0, 0, 0, 0))
            if answer is None or [tuple(t) for t in answer["lstLine"]] != lines:
                print("  %s: the module's runs differ from numpy's" % label)
            work["Selection_MaskToPoint"] = lambda: facade.Selection_MaskToPoint(buffer, (0, 0, 0, 0))
            work["Selection_PointToMask"] = lambda: facade.Selection_PointToMask(lines, WIDTH, HEIGHT, False)
        # Interleaved: each round runs every piece once.
        times = {name: [] for name in work}
        for _ in range(args.repeat):
            for name, fn in work.items():
                times[name].append(median_ms(fn, 1))
        ms = {name: statistics.median(t) for name, t in times.items()}
        print("  %s mask, %d runs: copy %.2f ms" % (label, len(lines), ms["copy"]))
        print("    %-24s %9s %9s   %-14s %7s" % ("", "ms", "/copy", "peer", "/peer"))
        rows = [("numpy encode", None), ("numpy decode", None)]
        if facade is not None:
            rows = [("Selection_MaskToPoint", "numpy encode"), ("Selection_PointToMask", "numpy decode")] + rows
        for name, peer in rows:
            line = "    %-24s %9.2f %9.2f" % (name, ms[name], ms[name] / ms["copy"])
            if peer:
                line += "   %-14s %7.2f" % (peer, ms[name] / ms[peer])
            print(line)


if __name__ == "__main__":
    main()
