"""Colour questions: the one-picture run on the image engine, its exact
order of engine calls, every failure path and the shapes scripts receive."""

import pytest

from conftest import E_FAIL, E_INVALIDARG, hresult
from effect_journal import trace_lines
from selection_support import buffers

FAIL_TEXT = "failed hr=0x%08X" % (E_FAIL & 0xFFFFFFFF)
RUN_OPS = ["SetImage", "RegisterImageRatio", "Image_PushTask", "Image_StartRunAllTask", "Image_RunAllTask"]
QUERY_OPS = {"SetImage", "RegisterImageRatio", "Image_PushTask", "Image_StartRunAllTask", "Image_RunAllTask",
             "Query_TATMapInfo", "Query_ToneTATMapInfo", "Query_WBDropInfo", "UnregisterImageRatio",
             "ReleaseImage", "GetToneCurveInfo"}


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


@pytest.fixture
def picture():
    """4 x 3, every pixel red 200, green 20, blue 10 (hue 3 degrees), but
    pixel (1, 1) grey 128."""
    data = bytearray(bytes([10, 20, 200, 255]) * 12)
    data[(1 * 4 + 1) * 4:(1 * 4 + 1) * 4 + 4] = bytes([128, 128, 128, 255])
    handle = buffers.NewBuffer(4, 3, 4)
    assert buffers.WriteBytes(handle, bytes(data)) == 48
    yield handle
    buffers.Release(handle)


def run(retouch):
    """(op, args) of the engine's calls of a run, in order."""
    return [(e["op"], e["args"]) for e in retouch.entries() if e["op"] in QUERY_OPS]


def ops(retouch):
    return [op for op, _ in run(retouch)]


# ------------------------------------------------------------- TAT maps


def test_tat_map_run_calls_the_engine_in_order(facade, picture, retouch):
    answer = facade.Query_TATMapInfo(5, picture, 2, 0)
    assert ops(retouch) == RUN_OPS + ["Query_TATMapInfo", "UnregisterImageRatio", "ReleaseImage"]
    calls = run(retouch)
    described = {"width": 4, "height": 3, "stride": 16, "sha256": calls[0][1][1]["sha256"]}
    assert calls[0][1] == [5, described, 1.0]
    assert calls[1][1] == [5, 1, 1.0, described]
    assert calls[2][1] == [5, 1, {"function": 67, "version": 0, "param": [0] * 8, "effect": None}]
    assert calls[3][1] == [5, 1]
    assert calls[4][1] == [5, 1, [0, 0, 0, 0, 0]]
    assert calls[5][1] == [5, 1, 2, 0]
    assert calls[6][1] == [5, 1]
    assert calls[7][1] == [5]
    # Hue 3 degrees: red, a tenth of the way to orange (30).
    assert answer == {"TATMapWeight1": pytest.approx(0.9, abs=0.01), "TATMapWeight2": pytest.approx(0.1, abs=0.01),
                      "TATMapHueColor1": 0, "TATMapHueColor2": 1}
    assert answer["TATMapWeight1"] + answer["TATMapWeight2"] == pytest.approx(1.0)
    assert retouch.counter("imagesHeld") == 0


def test_tone_tat_map_pushes_the_tone_curve_task_and_gives_four_weights(facade, picture, retouch):
    answer = facade.Query_ToneTATMapInfo(6, picture, 1, 1)
    assert ops(retouch) == RUN_OPS + ["Query_ToneTATMapInfo", "UnregisterImageRatio", "ReleaseImage"]
    assert run(retouch)[2][1][2]["function"] == 291
    # Grey 128: luminance 0.502, between darks and lights.
    assert isinstance(answer, tuple) and len(answer) == 4
    assert answer[0] == 0.0 and answer[3] == 0.0
    assert answer[1] == pytest.approx(0.492, abs=0.01)
    assert sum(answer) == pytest.approx(1.0)


def test_grey_pixel_belongs_to_no_band(facade, picture):
    assert facade.Query_TATMapInfo(5, picture, 1, 1) == {"TATMapWeight1": 0.0, "TATMapWeight2": 0.0,
                                                         "TATMapHueColor1": -1, "TATMapHueColor2": -1}


def test_three_byte_buffer_gives_none_for_tat_maps(trace_on, facade, retouch, capfd):
    handle = buffers.NewBuffer(2, 2, 3)
    capfd.readouterr()
    assert facade.Query_TATMapInfo(5, handle, 0, 0) is None
    assert facade.Query_ToneTATMapInfo(5, handle, 0, 0) is None
    assert ops(retouch) == []
    lines = trace_lines(capfd.readouterr().err)
    assert lines.count("PyClipGrade::Run_Query_TATMapInfoTask not support image format!") == 2
    buffers.Release(handle)


def test_failed_engine_query_still_gives_the_prepared_values(trace_on, facade, picture, retouch, capfd):
    retouch.set_result("ImageRetouch", "Query_TATMapInfo", E_FAIL)
    capfd.readouterr()
    assert facade.Query_TATMapInfo(5, picture, 2, 0) == {"TATMapWeight1": 0.0, "TATMapWeight2": 0.0,
                                                         "TATMapHueColor1": -1, "TATMapHueColor2": -1}
    assert ops(retouch)[-2:] == ["UnregisterImageRatio", "ReleaseImage"]
    assert ("PyClipGrade::Run_Query_TATMapInfoTask Query_TATMapInfo " + FAIL_TEXT
            in trace_lines(capfd.readouterr().err))


def test_failed_tone_query_gives_zero_weights(facade, picture, retouch):
    retouch.set_result("ImageRetouch", "Query_ToneTATMapInfo", E_FAIL)
    assert facade.Query_ToneTATMapInfo(5, picture, 2, 0) == (0.0, 0.0, 0.0, 0.0)


def test_point_outside_the_picture_keeps_the_prepared_values(facade, picture):
    assert facade.Query_TATMapInfo(5, picture, 4, 0) == {"TATMapWeight1": 0.0, "TATMapWeight2": 0.0,
                                                         "TATMapHueColor1": -1, "TATMapHueColor2": -1}


@pytest.mark.parametrize("failing, text, made", [
    ("SetImage", "PyClipGrade::SetImage m_pImageRetouch->SetImage(lImageID, &pBufferData, imageSetting) " + FAIL_TEXT,
     ["SetImage"]),
    ("RegisterImageRatio", "PyClipGrade::RegisterImageRatio m_pImageRetouch->RegisterImageRatio(lImageID, lBufferID, "
     "fRatio, ratioBuffer) " + FAIL_TEXT, ["SetImage", "RegisterImageRatio"]),
    ("Image_PushTask", "PyClipGrade::Run_Query_TATMapInfoTask Image_PushTask " + FAIL_TEXT, RUN_OPS[:3]),
    ("Image_StartRunAllTask", "PyClipGrade::Run_Query_TATMapInfoTask Image_StartRunAllTask " + FAIL_TEXT,
     RUN_OPS[:4]),
    ("Image_RunAllTask", "PyClipGrade::Run_Query_TATMapInfoTask Image_RunAllTask " + FAIL_TEXT, RUN_OPS),
])
def test_failure_before_the_query_stops_without_teardown(trace_on, facade, picture, retouch, capfd, failing, text,
                                                         made):
    retouch.set_result("ImageRetouch", failing, E_FAIL)
    capfd.readouterr()
    assert facade.Query_TATMapInfo(5, picture, 0, 0) is None
    assert ops(retouch) == made
    assert text in trace_lines(capfd.readouterr().err)
    # The picture can still be locked: the run let go of it.
    assert buffers.WriteBytes(picture, b"\0") == 1
    retouch.reset()
    facade.Query_TATMapInfo(5, picture, 0, 0)  # a later run on the same ID clears the stale registration


def test_run_result_is_that_of_release_image(facade, picture, retouch, shadow):
    info = buffers.NewPixelInfo()
    assert facade.Run_Query_TATMapInfoTask(5, 0x10, picture, 0, 0, info) is True
    assert info.hueColor1 == 0 and info.hueColor2 == 1
    retouch.set_result("ImageRetouch", "ReleaseImage", E_FAIL)
    assert facade.Run_Query_TATMapInfoTask(5, 0x10, picture, 0, 0, info) is False
    assert ops(retouch)[-1] == "ReleaseImage"
    buffers.DeletePixelInfo(info)


def test_both_bits_act_as_the_hue_bit_alone(facade, picture, retouch):
    info = buffers.NewPixelInfo()
    assert facade.Run_Query_TATMapInfoTask(5, 0x2010, picture, 0, 0, info)
    assert ops(retouch) == RUN_OPS + ["Query_TATMapInfo", "UnregisterImageRatio", "ReleaseImage"]
    assert run(retouch)[2][1][2]["function"] == 67
    buffers.DeletePixelInfo(info)


def test_neither_bit_pushes_no_task_and_asks_nothing(facade, picture, retouch):
    info = buffers.NewPixelInfo()
    assert facade.Run_Query_TATMapInfoTask(5, 0x1, picture, 0, 0, info)
    assert ops(retouch) == ["SetImage", "RegisterImageRatio", "Image_StartRunAllTask", "Image_RunAllTask",
                            "UnregisterImageRatio", "ReleaseImage"]
    assert info.hueColor1 == -1
    buffers.DeletePixelInfo(info)


def test_run_refuses_null_buffer_and_null_reference(facade, shadow, retouch):
    info = buffers.NewPixelInfo()
    assert facade.Run_Query_TATMapInfoTask(5, 0x10, None, 0, 0, info) is False
    with pytest.raises(ValueError, match="invalid null reference in method 'PyClipGrade_Run_Query_TATMapInfoTask', "
                                         "argument 7 of type 'PixelInfo &'"):
        facade.Run_Query_TATMapInfoTask(5, 0x10, None, 0, 0, None)
    assert ops(retouch) == []
    buffers.DeletePixelInfo(info)


def test_without_image_engine_every_question_is_none(shadow, picture, retouch):
    bare = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    assert bare.Query_TATMapInfo(5, picture, 0, 0) is None
    assert bare.Query_ToneTATMapInfo(5, picture, 0, 0) is None
    assert bare.Query_WBDropInfo(5, picture, 0, 0, 0, 0) is None
    assert bare.Query_ToneMapInfo({}) is None
    assert retouch.entries() == []


# ----------------------------------------------------- white balance drop


def test_wb_drop_runs_without_a_task_run(facade, picture, retouch):
    answer = facade.Query_WBDropInfo(9, picture, 3, 2, 1, 77)
    assert ops(retouch) == ["SetImage", "RegisterImageRatio", "Query_WBDropInfo", "UnregisterImageRatio",
                            "ReleaseImage"]
    record = run(retouch)[2][1]
    assert record[:4] == [9, 1, 3, 2]
    assert record[4] == {"function": 83, "version": 9, "param": [1, 77, 0, 0, 0, 0, 0, 0], "effect": None}
    # Red-heavy: the temperature goes to its floor, the tint to more green.
    assert answer == {"Tmp": 2000, "Tnt": -150}


def test_wb_drop_of_grey_is_neutral(facade, shadow, retouch):
    handle = buffers.NewBuffer(3, 3, 4)
    buffers.WriteBytes(handle, bytes([90, 90, 90, 255]) * 9)
    assert facade.Query_WBDropInfo(1, handle, 1, 1, 0, 0) == {"Tmp": 5000, "Tnt": 0}
    buffers.Release(handle)


def test_wb_drop_accepts_three_bytes_per_pixel(facade, retouch):
    handle = buffers.NewBuffer(2, 1, 3)
    buffers.WriteBytes(handle, bytes([140, 150, 160, 140, 150, 160]))
    assert facade.Query_WBDropInfo(1, handle, 0, 0, 0, 0) == {"Tmp": 3828, "Tnt": 2}
    described = run(retouch)[0][1][1]
    assert described["width"] == 2 and described["stride"] == 8
    import hashlib
    assert described["sha256"] == hashlib.sha256(bytes([140, 150, 160, 255] * 2)).hexdigest()
    buffers.Release(handle)


def test_wb_drop_refuses_other_depths(trace_on, facade, retouch, capfd):
    handle = buffers.NewBuffer(2, 2, 1)
    capfd.readouterr()
    assert facade.Query_WBDropInfo(1, handle, 0, 0, 0, 0) is None
    assert ("PyClipGrade::Query_WBDropInfo image buffer get un-support format bytes per pixel = 1"
            in trace_lines(capfd.readouterr().err))
    assert ops(retouch) == []
    buffers.Release(handle)


def test_failed_wb_query_still_tears_down_and_answers_the_record(trace_on, facade, picture, retouch, capfd):
    retouch.set_result("ImageRetouch", "Query_WBDropInfo", E_FAIL)
    capfd.readouterr()
    # The record as it stands: the failing engine wrote nothing behind the parameters.
    assert facade.Query_WBDropInfo(1, picture, 0, 0, 0, 0) == {"Tmp": 0, "Tnt": 0}
    assert ops(retouch)[-2:] == ["UnregisterImageRatio", "ReleaseImage"]
    assert "PyClipGrade::Query_WBDropInfo Query_WBDropInfo " + FAIL_TEXT in trace_lines(capfd.readouterr().err)


def test_wb_point_outside_answers_zeros(facade, picture):
    assert facade.Query_WBDropInfo(1, picture, -1, 0, 0, 0) == {"Tmp": 0, "Tnt": 0}


@pytest.mark.parametrize("failing", ["SetImage", "RegisterImageRatio"])
def test_wb_failed_set_up_gives_none(facade, picture, retouch, failing):
    retouch.set_result("ImageRetouch", failing, E_INVALIDARG)
    assert facade.Query_WBDropInfo(1, picture, 0, 0, 0, 0) is None
    assert "UnregisterImageRatio" not in ops(retouch)


def test_wb_null_buffer_gives_none(facade, retouch):
    assert facade.Query_WBDropInfo(1, None, 0, 0, 0, 0) is None
    assert ops(retouch) == []
