"""Single-frame render and look-up tables: the block handed to the buffer
agent, the order of its calls, ownership of the result, and every script
form and failure path of SetLUT, ClearLUT and ApplyLUTOnBuffer."""

import pytest

from conftest import E_FAIL, E_POINTER
from effect_journal import trace_lines
from selection_support import buffers

FRAME_OPS = ["NeedsSourceCopy", "GetVideoAspectRatio", "AdjustBufferRect", "ApplyEffectOnBuffer"]


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def picture(width, height, pixel=(10, 20, 200, 255)):
    handle = buffers.NewBuffer(width, height, 4)
    buffers.WriteBytes(handle, bytes(pixel) * (width * height))
    return handle


def frame_calls(journal):
    return [(e["op"], e["args"]) for e in journal.entries()
            if e["op"] in FRAME_OPS and e.get("agent") == "DspBuf"]


def test_apply_effect_calls_the_buffer_agent_in_order_with_the_block(facade, journal):
    source = picture(64, 48)
    result = facade.ApplyEffectOnBuffer(7, -3, source, 1200, 0xFFFFFFFF)
    calls = frame_calls(journal)
    assert [op for op, _ in calls] == FRAME_OPS
    assert calls[0][1] == [7]
    assert calls[1][1] == [7, 0, 0]
    assert calls[2][1][:4] == [7, 64, 48, pytest.approx(64 / 48)]
    block = calls[3][1][1]
    assert block == {"nVideoID": 7, "nParam": -3, "llTime": 1200, "pSrcBuffer": True, "pDstBuffer": True,
                     "nSrcWidth": 64, "nSrcHeight": 48, "nSrcStride": 256, "nDstWidth": 64, "nDstHeight": 48,
                     "nDstStride": 256, "nAspectNumerator": 16, "nAspectDenominator": 9,
                     "roi": {"nLeft": 0, "nTop": 0, "nWidth": 64, "nHeight": 48, "fAngle": 0.0},
                     "nReserved84": 0, "nFlags": 0xFFFFFFFF, "nReserved92": [0, 0], "nReserved100": 1}
    # Nothing pushed for the clip: the render is the identity.
    assert buffers.Shape(result) == (64, 48, 4)
    assert buffers.ReadBytes(result) == buffers.ReadBytes(source)
    assert not buffers.SameBuffer(result, source)
    assert journal.ops("ApplyEffectOnBuffer", "DspMain") == []
    buffers.Release(result)
    buffers.Release(source)


def test_result_carries_one_reference_for_the_script(facade, journal):
    source = picture(3, 2)
    result = facade.ApplyEffectOnBuffer(7, 0, source, 0, 0)
    assert buffers.RefCount(result) == 1
    del_handle = result
    # The wrapper does not own it: only the script's Release frees it.
    assert buffers.Release(del_handle) == 0
    assert buffers.RefCount(source) == 1
    buffers.Release(source)


@pytest.mark.parametrize("ratio, aspect", [(1.28, [4, 3]), (1.38, [4, 3]), (1.27, [16, 9]), (1.39, [16, 9]),
                                           (1.3333, [4, 3]), (1.7777, [16, 9])])
def test_aspect_bounds(facade, journal, ratio, aspect):
    journal.set_result("DspBuf", "GetVideoAspectRatio", ratio)
    source = picture(2, 2)
    buffers.Release(facade.ApplyEffectOnBuffer(7, 0, source, 0, 0))
    block = frame_calls(journal)[-1][1][1]
    assert [block["nAspectNumerator"], block["nAspectDenominator"]] == aspect
    buffers.Release(source)


def test_result_size_is_the_sources_whatever_the_clip(facade, journal):
    facade.AddVideo(7, 0, 1000, 1920 / 1080.0)
    source = picture(5, 9)
    result = facade.ApplyEffectOnBuffer(7, 0, source, 0, 0)
    assert buffers.Shape(result) == (5, 9, 4)
    buffers.Release(result)
    buffers.Release(source)


@pytest.mark.parametrize("copy", [False, True])
def test_source_copy_or_not_the_result_is_a_separate_rendered_buffer(facade, journal, copy):
    journal.set_result("DspBuf", "NeedsSourceCopy", 1.0 if copy else 0.0)
    facade.AddVideo(7, 0, 1000, 1.5)
    facade.PushTask(7, 19, {"Sat": [[0, -100]]}, True)
    source = picture(4, 4, (40, 120, 200, 255))
    before = buffers.ReadBytes(source)
    result = facade.ApplyEffectOnBuffer(7, 0, source, 0, 0)
    after = buffers.ReadBytes(result)
    assert buffers.ReadBytes(source) == before
    # Saturation -100: every pixel grey.
    assert after[0] == after[1] == after[2] and after[0] != 40
    buffers.Release(result)
    buffers.Release(source)


def test_without_buffer_agent_none_and_no_log(shadow, journal, trace_on, capfd):
    main_only = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    source = picture(2, 2)
    capfd.readouterr()
    assert main_only.ApplyEffectOnBuffer(7, 0, source, 0, 0) is None
    assert trace_lines(capfd.readouterr().err) == []
    assert journal.ops("NeedsSourceCopy") == []
    buffers.Release(source)


def test_null_source_gives_none(facade, journal):
    assert facade.ApplyEffectOnBuffer(7, 0, None, 0, 0) is None
    assert frame_calls(journal) == []


def test_source_not_four_bytes_is_refused(facade, journal):
    mask = buffers.NewBuffer(4, 4, 1)
    assert facade.ApplyEffectOnBuffer(7, 0, mask, 0, 0) is None
    assert frame_calls(journal) == []
    buffers.Release(mask)


def test_wrong_argument_types_raise(facade):
    with pytest.raises(OverflowError):
        facade.ApplyEffectOnBuffer(-1, 0, None, 0, 0)
    with pytest.raises(TypeError, match="in method 'PyClipGrade_ApplyEffectOnBuffer', argument 4 of type "
                                        "'IImageBuffer \\*'"):
        facade.ApplyEffectOnBuffer(7, 0, "pixels", 0, 0)


# ------------------------------------------------------------------ LUTs


def identity_table(size):
    table = []
    for b in range(size):
        for g in range(size):
            for r in range(size):
                table += [r / (size - 1.0), g / (size - 1.0), b / (size - 1.0)]
    return table


def test_set_lut_tells_each_clip_in_order(trace_on, facade, journal, capfd):
    capfd.readouterr()
    assert facade.SetLUT([7, 9, 8], 2, [0.0, 0.1, 0.2], [1.0, 0.9, 0.8], [0.5, 0.25], False) == 0
    calls = [e["args"] for e in journal.ops("SetLUT", "DspMain")]
    block = {"size": 2, "min": [0.0, pytest.approx(0.1), pytest.approx(0.2)],
             "max": [1.0, pytest.approx(0.9), pytest.approx(0.8)], "table": [0.5, 0.25]}
    assert [c[0] for c in calls] == [7, 9, 8]
    assert all(c[1] == block for c in calls)
    assert journal.ops("SetLUT", "DspBuf") == []
    assert trace_lines(capfd.readouterr().err) == ["PyClipGrade::SetLUT() enter", "PyClipGrade::SetLUT() end"]


def test_set_lut_bool_selects_the_buffer_agent(facade, journal):
    assert facade.SetLUT([7], 2, [0, 0, 0], [1, 1, 1], [], True) == 0
    assert [e["args"][0] for e in journal.ops("SetLUT", "DspBuf")] == [7]
    assert journal.ops("SetLUT", "DspMain") == []


def test_domain_lists_of_wrong_length_keep_the_defaults(facade, journal):
    facade.SetLUT([7], 2, [0.5, 0.5], [0.5, 0.5, 0.5, 0.5], [1.0], False)
    block = journal.ops("SetLUT", "DspMain")[0]["args"][1]
    assert block["min"] == [0.0, 0.0, 0.0]
    assert block["max"] == [1.0, 1.0, 1.0]


def test_size_not_an_integer_stays_zero_and_any_table_length_is_taken(facade, journal):
    facade.SetLUT([7], 2.0, (0, 0, 0), [1, 1, 1], list(range(7)), False)
    block = journal.ops("SetLUT", "DspMain")[0]["args"][1]
    assert block["size"] == 0
    assert block["min"] == [0.0, 0.0, 0.0]  # a tuple is not a list
    assert block["table"] == [float(i) for i in range(7)]


def test_empty_or_non_list_ids_tell_no_clip(facade, journal):
    assert facade.SetLUT([], 2, [0, 0, 0], [1, 1, 1], [0.0], False) == 0
    assert facade.SetLUT((7,), 2, [0, 0, 0], [1, 1, 1], [0.0], False) == 0
    assert facade.SetLUT(None, 2, [0, 0, 0], [1, 1, 1], [0.0], False) == 0
    assert journal.ops("SetLUT") == []


def test_ids_and_values_that_do_not_convert_reach_the_agent_as_the_conversions_answer(facade, journal):
    assert facade.SetLUT(["x", 3], 2, [0, "y", 0], [1, 1, 1], [0.5, None], False) == 0
    calls = [e["args"] for e in journal.ops("SetLUT", "DspMain")]
    assert [c[0] for c in calls] == [0xFFFFFFFF, 3]
    assert calls[0][1]["min"] == [0.0, -1.0, 0.0]
    assert calls[0][1]["table"] == [0.5, -1.0]


def test_set_lut_without_agent_fails(shadow, journal, trace_on, capfd):
    main_only = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    assert main_only.SetLUT([7], 2, [0, 0, 0], [1, 1, 1], [], True) == E_FAIL
    assert main_only.ClearLUT([7], True) == E_POINTER
    assert trace_lines(capfd.readouterr().err) == [
        "PyClipGrade::SetLUT() enter", "PyClipGrade::SetLUT Null Pointer : agent",
        "PyClipGrade::ClearLUT() enter", "PyClipGrade::ClearLUT Null Pointer : agent"]


def test_clear_lut_tells_each_clip(trace_on, facade, journal, capfd):
    capfd.readouterr()
    assert facade.ClearLUT([4, 2], False) == 0
    assert facade.ClearLUT("not a list", False) == 0
    assert [e["args"] for e in journal.ops("ClearLUT", "DspMain")] == [[4], [2]]
    assert trace_lines(capfd.readouterr().err) == ["PyClipGrade::ClearLUT() enter", "PyClipGrade::ClearLUT() end"] * 2


def test_identity_lut_changes_nothing_and_a_real_one_does(facade, journal):
    source = picture(8, 8, (17, 99, 230, 255))
    before = buffers.ReadBytes(source)
    facade.SetLUT([7], 5, [0, 0, 0], [1, 1, 1], identity_table(5), False)
    assert facade.ApplyLUTOnBuffer(7, source) is True
    assert buffers.ReadBytes(source) == before
    # An inverting table: every channel c becomes 255 - c.
    inverted = [1.0 - v for v in identity_table(2)]
    facade.SetLUT([7], 2, [0, 0, 0], [1, 1, 1], inverted, False)
    assert facade.ApplyLUTOnBuffer(7, source) is True
    assert buffers.ReadBytes(source)[:4] == bytes([238, 156, 25, 255])
    facade.ClearLUT([7], False)
    assert facade.ApplyLUTOnBuffer(7, source) is False
    buffers.Release(source)


def test_apply_lut_uses_the_main_agent_only(shadow, facade, journal):
    source = picture(1, 1)
    facade.ApplyLUTOnBuffer(3, source)
    assert [e["agent"] for e in journal.ops("ApplyLUTOnBuffer")] == ["DspMain"]
    buffers.Release(source)


def test_lut_copy_is_the_agents(facade, journal):
    table = identity_table(2)
    facade.SetLUT([7], 2, [0, 0, 0], [1, 1, 1], table, False)
    table[:] = [0.0] * len(table)
    source = picture(2, 2, (1, 2, 3, 255))
    assert facade.ApplyLUTOnBuffer(7, source)
    assert buffers.ReadBytes(source)[:4] == bytes([1, 2, 3, 255])
    buffers.Release(source)


def test_hostile_table_element_that_empties_the_list(facade, journal):
    table = [0.25, 0.5, 0.75]

    class Shrinking:
        def __float__(self):
            del table[:]
            return 0.125

    table.insert(1, Shrinking())
    assert facade.SetLUT([7], 2, [0, 0, 0], [1, 1, 1], table, False) == 0
    assert journal.ops("SetLUT")[0]["args"][1]["table"] == [0.25, 0.125]


def test_frames_and_questions_on_one_picture_from_several_threads(facade, journal, retouch):
    """Each call waits for the picture's lock without the interpreter lock,
    so threads that share a picture all finish, with the same answers."""
    import threading

    source = picture(64, 64, (90, 90, 90, 255))
    answers = []
    failures = []

    def work():
        try:
            for _ in range(20):
                frame = facade.ApplyEffectOnBuffer(7, 0, source, 0, 0)
                answers.append((buffers.ReadBytes(frame)[:4], facade.Query_WBDropInfo(11, source, 5, 5, 0, 0)))
                buffers.Release(frame)
        except Exception as error:  # pragma: no cover - reported below
            failures.append(error)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(60)
    assert not any(thread.is_alive() for thread in threads)
    assert failures == []
    assert answers == [(bytes([90, 90, 90, 255]), {"Tmp": 5000, "Tnt": 0})] * 80
    assert buffers.RefCount(source) == 1
    buffers.Release(source)
