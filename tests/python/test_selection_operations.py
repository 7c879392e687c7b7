"""The facade's selection members as scripts call them: run lists and masks,
correction, rescaling, the brush, the smart selection with its history, and
what bad input gets."""

import os
import random

import numpy as np
import pytest

from conftest import E_FAIL, E_POINTER, HOST, S_OK
from selection_support import buffers, mask_buffer, picture_buffer, select_journal, selection  # noqa: F401

PREFIX = "[PyClipGrade] "
HAVE_RESAMPLER = os.path.exists(os.path.join(HOST, "Kernel", "Photo", "IPPDLL.so"))


def runs_of(mask):
    """Boundary lines of a 2-D array: (x, y, length) of every run of
    non-zero bytes, by row, then column."""
    lines = []
    for y, row in enumerate(mask):
        padded = np.concatenate(([0], (row != 0).astype(np.int8), [0]))
        edges = np.flatnonzero(np.diff(padded))
        for start, end in zip(edges[::2], edges[1::2]):
            lines.append((int(start), y, int(end - start)))
    return lines


def random_mask(rng, width, height):
    mask = np.zeros((height, width), np.uint8)
    for _ in range(rng.randint(0, 6)):
        x, y = rng.randrange(width), rng.randrange(height)
        w, h = rng.randint(1, width), rng.randint(1, height)
        mask[y:y + h, x:x + w] = rng.choice([1, 128, 255])
    return mask


def pixels(handle, width, height):
    return np.frombuffer(buffers.ReadBytes(handle), np.uint8).reshape(height, width)


# ------------------------------------------------------------ run lists

@pytest.mark.parametrize("seed", range(12))
def test_random_masks_round_trip(selection, seed):
    rng = random.Random(seed)
    width, height = rng.randint(1, 90), rng.randint(1, 50)
    mask = random_mask(rng, width, height)
    handle = selection.keep(mask_buffer(width, height, mask.tobytes()))
    result = selection.facade.Selection_MaskToPoint(handle, None)
    expected = runs_of(mask)
    if not expected:
        assert result is None
        return
    assert result["lstLine"] == expected
    ys, xs = np.nonzero(mask)
    assert result["roiSrc"] == (int(xs.min()), int(ys.min()), int(xs.max() - xs.min() + 1),
                                int(ys.max() - ys.min() + 1), 0.0)
    back = selection.keep(selection.facade.Selection_PointToMask(result["lstLine"], width, height, False))
    assert buffers.Shape(back) == (width, height, 1)
    assert np.array_equal(pixels(back, width, height), np.where(mask != 0, 255, 0))
    inverted = selection.keep(selection.facade.Selection_PointToMask(result["lstLine"], width, height, True))
    assert np.array_equal(pixels(inverted, width, height), np.where(mask != 0, 0, 255))


@pytest.mark.parametrize("seed", range(12))
def test_random_masks_round_trip_with_a_rectangle(selection, seed):
    rng = random.Random(100 + seed)
    width, height = rng.randint(2, 80), rng.randint(2, 40)
    mask = random_mask(rng, width, height)
    left, top = rng.randrange(width), rng.randrange(height)
    w, h = rng.randint(0, width), rng.randint(0, height)
    handle = selection.keep(mask_buffer(width, height, mask.tobytes()))
    result = selection.facade.Selection_MaskToPoint(handle, (left, top, w, h))
    kept = np.zeros_like(mask)
    if (left, top, left + w, top + h) == (0, 0, 0, 0):
        kept = mask.copy()
    else:
        # Rows top..top+h inclusive: one row more than the height survives.
        kept[top:top + h + 1, left:left + w] = mask[top:top + h + 1, left:left + w]
    # The buffer itself is cleared in place.
    assert np.array_equal(pixels(handle, width, height), kept)
    expected = runs_of(kept)
    if not expected:
        assert result is None
        return
    assert result["lstLine"] == expected
    back = selection.keep(selection.facade.Selection_PointToMask(result["lstLine"], width, height, False))
    assert np.array_equal(pixels(back, width, height), np.where(kept != 0, 255, 0))


def test_mask_to_point_answers_none_for_an_empty_mask_and_a_zero_width_rectangle(selection):
    empty = selection.keep(mask_buffer(4, 3, bytes(12)))
    assert selection.facade.Selection_MaskToPoint(empty, None) is None
    full = selection.keep(mask_buffer(4, 3, b"\xff" * 12))
    assert selection.facade.Selection_MaskToPoint(full, (0, 0, 0, 0))["lstLine"] == [(0, 0, 4), (0, 1, 4), (0, 2, 4)]
    assert selection.facade.Selection_MaskToPoint(full, (0, 0, 0, 5)) is None
    assert buffers.ReadBytes(full) == bytes(12)
    assert selection.facade.Selection_MaskToPoint(None, None) is None


def test_point_to_mask_refusals(selection):
    facade = selection.facade
    assert facade.Selection_PointToMask([], 4, 4, False) is None
    assert facade.Selection_PointToMask("not a list", 4, 4, False) is None
    assert facade.Selection_PointToMask(((0, 0, 1),), 4, 4, False) is None
    assert facade.Selection_PointToMask([(0, 0, 1)], -1, 4, False) is None
    # Elements that do not parse keep 0; the script sees no error.
    handle = selection.keep(facade.Selection_PointToMask([(2, 0, 1), "x", (1,), (0, 1, 1)], 3, 2, False))
    assert buffers.ReadBytes(handle) == bytes([0, 0, 255, 255, 0, 0])


def test_without_an_allocator_the_buffer_members_answer_none(shadow):
    # Its own agent and no buffer agent: no image engine, no allocator.
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    assert facade.Selection_PointToMask([(0, 0, 1)], 4, 4, False) is None
    assert facade.Selection_MagicSelect([(0, 0)], 3, False, False, False) is None
    assert facade.Manual_UpdateStroke([(0, 0)], 3, True, True) is None
    assert facade.Selection_ScaleUSSelectionList([(0.0, 0.0, 0.5)], 4, 4, 4, 4) is None


def test_argument_errors_are_the_binding_s(selection):
    facade = selection.facade
    with pytest.raises(TypeError) as error:
        facade.Selection_Undo("one")
    assert str(error.value) == "in method 'PyClipGrade_Selection_Undo', argument 2 of type 'int'"
    with pytest.raises(TypeError) as error:
        facade.Selection_PointToMask([], 4, 4, "no")
    assert str(error.value) == "in method 'PyClipGrade_Selection_PointToMask', argument 5 of type 'bool'"
    with pytest.raises(TypeError):
        facade.Selection_MaskToPoint("not a buffer", None)


# ------------------------------------------------------------ correction

def test_mask_correction_with_none_is_the_same_buffer_with_one_more_reference(selection):
    handle = selection.keep(mask_buffer(2, 2, b"\x00\xff\xff\x00"))
    same = selection.facade.Selection_MaskCorrection(handle, None)
    assert buffers.SameBuffer(same, handle)
    assert buffers.RefCount(handle) == 2
    buffers.Release(same)


def test_mask_correction_forms(selection):
    handle = selection.keep(mask_buffer(3, 2, b"\x00\xff\x00\xff\xff\x00"))
    copy = selection.keep(selection.facade.Selection_MaskCorrection(handle))
    assert not buffers.SameBuffer(copy, handle)
    assert buffers.ReadBytes(copy) == buffers.ReadBytes(handle)
    plain = selection.keep(selection.facade.Selection_MaskCorrection(handle, {}))
    assert buffers.ReadBytes(plain) == buffers.ReadBytes(handle)
    empty = selection.keep(selection.facade.Selection_MaskCorrection(
        handle, {"CrpRte": {"RtAgl": 0.0, "CrpRct": (0, 0, 0, 0)}}))
    assert buffers.Shape(empty) == (0, 0, 1)
    crop = selection.keep(selection.facade.Selection_MaskCorrection(handle, {"CrpRte": {"CrpRct": (1, 0, 2, 2)}}))
    assert buffers.Shape(crop) == (2, 2, 1)
    assert buffers.ReadBytes(crop) == b"\xff\x00\xff\x00"
    with pytest.raises(NotImplementedError) as error:
        selection.facade.Selection_MaskCorrection()
    assert str(error.value) == (
        "Wrong number of arguments for overloaded function 'PyClipGrade_Selection_MaskCorrection'.\n"
        "  Possible C/C++ prototypes are:\n"
        "    Selection_MaskCorrection(IImageBuffer *,PyObject *)\n"
        "    Selection_MaskCorrection(IImageBuffer *)\n")


def test_lens_correction_moves_the_mask(selection):
    mask = np.zeros((60, 80), np.uint8)
    mask[10:50, 10:70] = 255
    handle = selection.keep(mask_buffer(80, 60, mask.tobytes()))
    corrected = selection.keep(selection.facade.Selection_MaskCorrection(
        handle, {"LensCrt": {"LCDist": 60, "LCVer": 0, "LCHor": 0}}))
    assert buffers.Shape(corrected) == (80, 60, 1)
    out = pixels(corrected, 80, 60)
    assert set(np.unique(out)) <= {0, 255}
    assert not np.array_equal(out, mask)
    # The centre stays selected.
    assert out[30, 40] == 255


def test_mask_correction_lines(selection, trace_on, shadow, capfd):
    facade = shadow.PyClipGrade()
    buffers.UseTestingAllocator(facade)
    handle = mask_buffer(3, 2, bytes(6))
    capfd.readouterr()
    out = facade.Selection_MaskCorrection(handle, {})
    lines = [l for l in capfd.readouterr().err.split("\n") if l]
    assert lines == [PREFIX + "PyClipGrade::Selection_MaskCorrection() enter",
                     PREFIX + "PyClipGrade::m_fnMaskCorrection no lens correction effect",
                     PREFIX + "PyClipGrade::m_fnMaskCorrection no crop effect",
                     PREFIX + "PyClipGrade::Selection_MaskCorrection outputDate.nWidth 3",
                     PREFIX + "PyClipGrade::Selection_MaskCorrection outputDate.nHeight 2",
                     PREFIX + "PyClipGrade::Selection_MaskCorrection outputDate.nStride 3",
                     PREFIX + "PyClipGrade::Selection_MaskCorrection() end"]
    buffers.Release(out)
    buffers.Release(handle)
    buffers.DropTestingAllocator(facade)


# ------------------------------------------------------------ rescaling

@pytest.mark.skipif(not HAVE_RESAMPLER, reason="no resampler in this build")
def test_scale_at_one_to_one_gives_the_list_normalised(selection):
    assert selection.facade.Selection_ScaleUSSelectionList(
        [(0.25, 0.0, 0.5), (0.5, 0.25, 0.5)], 8, 4, 8, 4) == [(0.25, 0.0, 0.5), (0.5, 0.25, 0.5)]


@pytest.mark.skipif(not HAVE_RESAMPLER, reason="no resampler in this build")
def test_scale_up_grows_by_the_fringe(selection):
    result = selection.facade.Selection_ScaleUSSelectionList([(0.25, 0.25, 0.5)], 8, 8, 16, 16)
    assert result and all(len(line) == 3 for line in result)
    # The run covered half the width; upscaled with its fringe it covers at least that.
    assert max(line[2] for line in result) >= 0.5


def test_scale_refusals(selection):
    assert selection.facade.Selection_ScaleUSSelectionList([], 8, 4, 8, 4) is None
    assert selection.facade.Selection_ScaleUSSelectionList("x", 8, 4, 8, 4) is None


# ------------------------------------------------------------ brush

def test_manual_run(selection):
    facade = selection.facade
    assert facade.Manual_Initialize([(0, 0, 3)], 10, 4) == S_OK
    first = selection.keep(facade.Manual_UpdateStroke([(5, 2)], 1, True, True))
    expected = np.zeros((4, 10), np.uint8)
    expected[0, 0:3] = 255
    expected[2, 5] = 255
    assert np.array_equal(pixels(first, 10, 4), expected)
    # Erasing with the same geometry.
    erased = selection.keep(facade.Manual_UpdateStroke([(1, 0)], 1, True, False))
    expected[0, 1] = 0
    assert np.array_equal(pixels(erased, 10, 4), expected)
    assert facade.Manual_UpdateStroke([], 1, True, True) is None
    assert facade.Manual_UpdateStroke(None, 1, True, True) is None
    assert facade.Manual_Uninitialize() == S_OK


# ------------------------------------------------------------ smart selection

BLOCK = 6
COLOURS = [(0, 0, 0), (0, 0, 255), (0, 255, 0), (255, 0, 0), (0, 255, 255), (255, 0, 255),
           (255, 255, 0), (255, 255, 255), (0, 0, 128)]


def block_picture():
    """3 x 3 blocks of distinct colours, BGRA."""
    side = 3 * BLOCK
    data = bytearray()
    for y in range(side):
        for x in range(side):
            data += bytes(COLOURS[(y // BLOCK) * 3 + x // BLOCK]) + b"\xff"
    return side, bytes(data)


def blocks_mask(blocks):
    side = 3 * BLOCK
    mask = np.zeros((side, side), np.uint8)
    for b in blocks:
        mask[(b // 3) * BLOCK:(b // 3 + 1) * BLOCK, (b % 3) * BLOCK:(b % 3 + 1) * BLOCK] = 255
    return mask


def centre(block):
    return ((block % 3) * BLOCK + BLOCK // 2, (block // 3) * BLOCK + BLOCK // 2)


def test_smart_selection_history_follows_a_model(selection, select_journal):
    side, data = block_picture()
    facade = selection.facade
    picture = selection.keep(picture_buffer(side, side, data))
    assert facade.Selection_Initialize(picture, []) == S_OK
    states, cursor = [set()], 0
    rng = random.Random(3)

    def current():
        handle = facade.Selection_MagicSelect([(-100, -100)], 1, False, False, False)
        out = pixels(handle, side, side).copy()
        buffers.Release(handle)
        return out

    for round_ in range(60):
        action = rng.randrange(4)
        if action < 2:
            block = rng.randrange(9)
            remove = action == 1
            handle = facade.Selection_MagicSelect([centre(block)], 2, remove, False, False)
            nxt = set(states[cursor])
            (nxt.discard if remove else nxt.add)(block)
            del states[cursor + 1:]
            states.append(nxt)
            cursor += 1
            assert np.array_equal(pixels(handle, side, side), blocks_mask(nxt)), round_
            buffers.Release(handle)
        elif action == 2:
            steps = rng.randrange(3)
            assert facade.Selection_Undo(steps) == S_OK
            cursor -= min(steps, cursor)
        else:
            steps = rng.randrange(3)
            assert facade.Selection_Redo(steps) == S_OK
            cursor += min(steps, len(states) - 1 - cursor)
        assert select_journal.counter("strokesHeld") == len(states) - 1
        if round_ % 5 == 0:
            assert np.array_equal(current(), blocks_mask(states[cursor])), round_
    assert facade.Selection_Uninitialize() == S_OK
    assert select_journal.counter("strokesHeld") == 0


def test_smart_selection_calls_reach_the_engine_in_order(selection, select_journal):
    side, data = block_picture()
    facade = selection.facade
    picture = selection.keep(picture_buffer(side, side, data))
    live = select_journal.counter("objectsLive")
    assert facade.Selection_Initialize(picture, [(0, 0, 2)]) == S_OK
    assert select_journal.counter("objectsLive") == live + 1
    out = selection.keep(facade.Selection_MagicSelect([centre(4), centre(8)], 2, False, True, True))
    expected = blocks_mask({4, 8})
    expected[0, 0:2] = 255
    assert np.array_equal(pixels(out, side, side), expected)
    assert facade.Selection_Undo(1) == S_OK
    assert facade.Selection_Redo(1) == S_OK
    assert facade.Selection_ClearStrokeHistory() == S_OK
    assert facade.Selection_Uninitialize() == S_OK
    entries = select_journal.entries()
    assert [e["op"] for e in entries] == [
        "Create", "Initialize", "GetCurrentTimeStamp", "MagicSelect", "GetCurrentTimeStamp", "MagicSelect",
        "Undo", "Redo", "ClearStrokeHistory", "Uninitialize", "Release"]
    assert entries[1]["args"][0]["width"] == side
    assert entries[1]["args"][0]["channels"] == 3
    assert entries[1]["args"][0]["stride"] == side * 3
    assert entries[3]["args"][0] == {"nX": centre(4)[0], "nY": centre(4)[1], "nRadius": 2, "bFirstFlag": False,
                                     "bSecondFlag": True, "bThirdFlag": True, "llTimeStamp": 1}
    assert entries[5]["args"][0]["llTimeStamp"] == 2
    assert select_journal.counter("objectsLive") == live


def test_smart_selection_refusals(selection, select_journal):
    facade = selection.facade
    assert facade.Selection_Initialize(None, []) == E_POINTER
    mask = selection.keep(mask_buffer(2, 2, bytes(4)))
    assert facade.Selection_Initialize(mask, []) == E_FAIL
    assert facade.Selection_MagicSelect([], 2, False, False, False) is None
    assert facade.Selection_MagicSelect(None, 2, False, False, False) is None
    # Without a run every member still answers 0 and nothing reaches an engine.
    assert facade.Selection_Undo(1) == S_OK
    assert facade.Selection_Redo(1) == S_OK
    assert facade.Selection_ClearStrokeHistory() == S_OK
    assert facade.Selection_Uninitialize() == S_OK
    out = selection.keep(facade.Selection_MagicSelect([(1, 1)], 2, False, False, False))
    assert buffers.Shape(out) == (0, 0, 1)
    assert select_journal.entries() == []


def test_an_open_run_goes_back_to_the_engine_with_the_facade(shadow, select_journal):
    side, data = block_picture()
    facade = shadow.PyClipGrade()
    buffers.UseTestingAllocator(facade)
    live = select_journal.counter("objectsLive")
    picture = picture_buffer(side, side, data)
    assert facade.Selection_Initialize(picture, []) == S_OK
    out = facade.Selection_MagicSelect([centre(0)], 2, False, False, False)
    buffers.Release(out)
    assert select_journal.counter("objectsLive") == live + 1
    buffers.DropTestingAllocator(facade)
    del facade
    assert select_journal.counter("objectsLive") == live
    assert select_journal.counter("strokesHeld") == 0
    buffers.Release(picture)


# ------------------------------------------------------------ dump, resize

def test_dump_lines(trace_on, shadow, capfd):
    facade = shadow.PyClipGrade()
    handle = mask_buffer(3, 2, bytes([0, 9, 9, 0, 0, 0]))
    capfd.readouterr()
    facade.DumpIImageBuffer(handle)
    facade.DumpIImageBuffer(None)
    lines = [l for l in capfd.readouterr().err.split("\n") if l]
    assert lines[0].startswith(PREFIX + "@DumpIImageBuffer() Width=3, Height=2, pBuffer=")
    assert lines[1:] == [PREFIX + "========================== RawBuffer =================================",
                         PREFIX + "[0] .xx", PREFIX + "[1] ...",
                         PREFIX + "======================================================================",
                         PREFIX + "================== DumpIImageBuffer SelectionLine =====================",
                         PREFIX + "(1,0,2)",
                         PREFIX + "======================================================================="]
    buffers.Release(handle)


def test_resize(selection):
    facade = selection.facade
    three = selection.keep(buffers.NewBuffer(2, 2, 3))
    assert facade.ResizeImageBuffer(three, 4, 4) is None
    assert facade.ResizeImageBuffer(None, 4, 4) is None
    four = selection.keep(picture_buffer(4, 4, bytes([10, 20, 30, 255]) * 16))
    half = selection.keep(facade.ResizeImageBuffer(four, 2, 2))
    assert buffers.Shape(half) == (2, 2, 4)
    assert buffers.RefCount(half) == 1
    if HAVE_RESAMPLER:
        assert buffers.ReadBytes(half) == bytes([10, 20, 30, 255]) * 4


def test_the_photograph_example_writes_its_overlay(tmp_path):
    import subprocess
    import sys

    from conftest import BUILD, REPO
    from PIL import Image

    out = tmp_path / "overlay.png"
    env = dict(os.environ, PYTHONPATH=os.pathsep.join([HOST, os.path.join(BUILD, "testing")]))
    done = subprocess.run([sys.executable, os.path.join(REPO, "examples", "smart_selection.py"), str(out)],
                          env=env, capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stderr
    assert "run list back to a mask gives the same selection: True" in done.stdout
    assert Image.open(out).size == (600, 400)


def test_a_list_that_empties_itself_while_read_is_no_crash(selection):
    lines = []

    class Shrinking:
        def __index__(self):
            del lines[:]
            return 1

    lines.extend([(0, 0, Shrinking()), (1, 1, 1), (2, 1, 1)])
    handle = selection.keep(selection.facade.Selection_PointToMask(lines, 3, 2, False))
    # The first element was read whole; the ones that went away keep 0.
    assert buffers.ReadBytes(handle) == bytes([255, 0, 0, 0, 0, 0])
    assert lines == []


def test_without_the_selection_engine_the_run_keeps_its_mask(shadow, tmp_path, monkeypatch):
    monkeypatch.setenv("PYCLIPGRADE_HOST_DIR", str(tmp_path))
    facade = shadow.PyClipGrade()
    buffers.UseTestingAllocator(facade)
    picture = picture_buffer(4, 2, bytes([50, 60, 70, 255]) * 8)
    assert facade.Selection_Initialize(picture, [(1, 0, 2)]) == S_OK
    out = facade.Selection_MagicSelect([(0, 0)], 3, False, False, False)
    assert buffers.ReadBytes(out) == bytes([0, 255, 255, 0, 0, 0, 0, 0])
    assert facade.Selection_Undo(1) == S_OK
    assert facade.Selection_Uninitialize() == S_OK
    buffers.Release(out)
    buffers.Release(picture)
    buffers.DropTestingAllocator(facade)


def test_masks_come_from_the_image_engine_s_allocator_and_go_back(shadow):
    import ctypes

    from conftest import RETOUCH_LIBRARY

    retouch = ctypes.CDLL(RETOUCH_LIBRARY)
    retouch.RefRetouch_Counter.restype = ctypes.c_int64
    retouch.RefRetouch_Counter.argtypes = [ctypes.c_char_p]
    facade = shadow.PyClipGrade()
    assert not buffers.UseTestingAllocator(facade)  # the engine's allocator is there
    before = retouch.RefRetouch_Counter(b"buffersLive")
    mask = facade.Selection_PointToMask([(0, 0, 2)], 4, 2, False)
    assert retouch.RefRetouch_Counter(b"buffersLive") == before + 1
    assert buffers.ReadBytes(mask) == bytes([255, 255, 0, 0, 0, 0, 0, 0])
    corrected = facade.Selection_MaskCorrection(mask, {})
    assert retouch.RefRetouch_Counter(b"buffersLive") == before + 2
    buffers.Release(corrected)
    assert buffers.Release(mask) == 0
    assert retouch.RefRetouch_Counter(b"buffersLive") == before
