"""Mask <-> run list through the module, beside numpy and the C++ calls.

Selection_MaskToPoint and Selection_PointToMask hand a script its selection
as a list of (x, y, length) tuples. On the same 3840x2160 masks as the C++
benchmark (five blobs, then salt-and-pepper noise), in the same run and
interleaved round by round, this measures:

  - the two members through Python;
  - their peers: a numpy run-length coder doing the same work (encode a mask
    to the same list of tuples; paint such a list back into a mask);
  - the same CSelectionTool calls made from C++ in this process
    (PcgBufferTesting.TimeSelectionTool), the part the binding adds nothing to;
  - a copy of the mask bytes (numpy copyto), the memory floor.

Every figure is the median of the rounds, printed as a ratio to the copy,
to its numpy peer and to its C++ call. Then one smart selection stroke on a
1920x1080 photograph, when scikit-image and Pillow are there.

Usage: selection_bench.py [--host DIR] [--testing DIR] [--rounds N]
DIR: the host folder of a build (_PyClipGrade.so) and the folder of its test
companion module (PcgBufferTesting); make bench passes both.
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


def load_modules(host, testing):
    """(module, companion, why not) with the members reachable, or Nones."""
    for folder in (host, testing):
        if folder:
            sys.path.insert(0, folder)
    try:
        import PyClipGrade
        import PcgBufferTesting
    except ImportError as error:
        return None, None, "the module or its test companion could not be imported (%s)" % error
    missing = [name for name in ("Selection_MaskToPoint", "Selection_PointToMask")
               if not hasattr(PyClipGrade.PyClipGrade, name)]
    if missing:
        return None, None, "%s not reachable in this build of the module" % " and ".join(missing)
    return PyClipGrade, PcgBufferTesting, None


def timed_ms(fn, release):
    start = time.perf_counter()
    result = fn()
    elapsed = (time.perf_counter() - start) * 1000.0
    if release is not None and type(result).__name__ == "SwigPyObject":
        release(result)
    return elapsed


def mask_table(label, mask, facade, buffers, rounds):
    copy = np.empty_like(mask)
    lines = numpy_encode(mask)
    assert np.array_equal(numpy_decode(lines, WIDTH, HEIGHT), np.where(mask != 0, 255, 0))
    work = {
        "copy": lambda: np.copyto(copy, mask),
        "numpy encode": lambda: numpy_encode(mask),
        "numpy decode": lambda: numpy_decode(lines, WIDTH, HEIGHT),
    }
    handle = None
    if facade is not None:
        handle = buffers.NewBuffer(WIDTH, HEIGHT, 1)
        buffers.WriteBytes(handle, mask.tobytes())
        answer = facade.Selection_MaskToPoint(handle, None)
        if answer is None or [tuple(t) for t in answer["lstLine"]] != lines:
            print("  %s: the module's runs differ from numpy's" % label)
        painted = facade.Selection_PointToMask(lines, WIDTH, HEIGHT, False)
        if not np.array_equal(np.frombuffer(buffers.ReadBytes(painted), np.uint8).reshape(HEIGHT, WIDTH),
                              np.where(mask != 0, 255, 0)):
            print("  %s: the module's painted mask differs from numpy's" % label)
        buffers.Release(painted)
        work["Selection_MaskToPoint"] = lambda: facade.Selection_MaskToPoint(handle, None)
        work["Selection_PointToMask"] = lambda: facade.Selection_PointToMask(lines, WIDTH, HEIGHT, False)
    times = {name: [] for name in work}
    cpp_to_point, cpp_to_mask = [], []
    for _ in range(rounds):
        for name, fn in work.items():
            times[name].append(timed_ms(fn, buffers.Release if buffers else None))
        if handle is not None:
            to_point, to_mask, _ = buffers.TimeSelectionTool(handle, 1)
            cpp_to_point.append(to_point)
            cpp_to_mask.append(to_mask)
    if handle is not None:
        buffers.Release(handle)
    ms = {name: statistics.median(t) for name, t in times.items()}
    print("\n%s mask, %d runs: copy %.2f ms" % (label, len(lines), ms["copy"]))
    print("  %-22s %8s %7s   %-13s %8s %7s   %8s %7s" % ("", "ms", "/copy", "numpy peer", "peer ms", "/peer",
                                                         "C++ ms", "/C++"))
    rows = []
    if facade is not None:
        rows += [("Selection_MaskToPoint", "numpy encode", statistics.median(cpp_to_point)),
                 ("Selection_PointToMask", "numpy decode", statistics.median(cpp_to_mask))]
    rows += [("numpy encode", None, None), ("numpy decode", None, None)]
    for name, peer, cpp in rows:
        line = "  %-22s %8.2f %7.2f" % (name, ms[name], ms[name] / ms["copy"])
        if peer:
            line += "   %-13s %8.2f %7.2f" % (peer, ms[peer], ms[name] / ms[peer])
            line += "   %8.2f %7.2f" % (cpp, ms[name] / cpp if cpp > 0 else float("nan"))
        print(line)


def stroke_line(facade, buffers):
    try:
        from PIL import Image
        from skimage import data
    except ImportError:
        print("\nsmart selection stroke: not measured (scikit-image and Pillow are needed)")
        return
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
        samples.append(timed_ms(lambda: facade.Selection_MagicSelect([(930, 450)], 20, False, False, False),
                                buffers.Release))
        facade.Selection_Undo(1)
    facade.Selection_Uninitialize()
    buffers.Release(picture)
    print("\nsmart selection on 1920x1080: Selection_Initialize %.1f ms, one stroke %.1f ms (median of 5)"
          % (init_ms, statistics.median(samples)))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--host", default=os.environ.get("PCG_BENCH_HOST", ""))
    parser.add_argument("--testing", default=os.environ.get("PCG_BENCH_TESTING", ""))
    parser.add_argument("--rounds", type=int, default=7)
    args = parser.parse_args()

    module, buffers, why_not = load_modules(args.host, args.testing)
    print("\nPython: mask <-> run list, %dx%d, medians of %d interleaved rounds" % (WIDTH, HEIGHT, args.rounds))
    facade = None
    if why_not:
        print("  module: %s; only the numpy coder is measured" % why_not)
    else:
        facade = module.PyClipGrade()
        buffers.UseTestingAllocator(facade)
    for label, mask in (("blobs", blobs()), ("noisy", noisy())):
        mask_table(label, mask, facade, buffers, args.rounds)
    if facade is not None:
        stroke_line(facade, buffers)
        buffers.DropTestingAllocator(facade)
    return 0


if __name__ == "__main__":
    sys.exit(main())
