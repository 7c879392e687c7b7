"""Tone questions: display and engine curves computed by the image engine,
the agent's interpolated tone maps, histograms as scripts hold them, and
the real curve tables that tone curve keyframes carry to the agent."""

import hashlib
import struct

import pytest

from conftest import E_FAIL
from effect_journal import push_record, trace_lines
from selection_support import buffers


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def curve_calls(retouch):
    return [e["args"] for e in retouch.ops("GetToneCurveInfo")]


def test_display_curve_has_256_entries_through_the_pivots(facade, retouch):
    table = facade.Query_ToneMapInfo({"TCurvPts": [(0.25, 0.1), (0.75, 0.9)]})
    assert sorted(table) == list(range(256))
    assert table[0] == 0 and table[255] == 255
    assert abs(table[64] - 26) <= 1 and abs(table[191] - 229) <= 1
    assert all(table[i] <= table[i + 1] for i in range(255))
    assert curve_calls(retouch) == [[{"maxValue": 255, "pivotCount": 2,
                                      "pivots": [[0.25, pytest.approx(0.1)], [0.75, pytest.approx(0.9)]]}, True]]


def test_display_curve_without_pivots_is_the_identity(trace_on, facade, retouch, capfd):
    capfd.readouterr()
    assert facade.Query_ToneMapInfo({}) == {i: i for i in range(256)}
    assert curve_calls(retouch)[0][0]["pivotCount"] == 0
    assert trace_lines(capfd.readouterr().err) == ["PyClipGrade::Query_ToneMapInfo() enter",
                                                   "[Query_ToneMapInfo]nPivotCount = 0",
                                                   "PyClipGrade::Query_ToneMapInfo() end"]


def test_display_curve_with_25_pivots_uses_the_first_20(trace_on, facade, retouch, capfd):
    pivots = [(i / 25.0, i / 25.0) for i in range(25)]
    capfd.readouterr()
    facade.Query_ToneMapInfo({"TCurvPts": pivots})
    lines = trace_lines(capfd.readouterr().err)
    assert lines[1] == "[Query_ToneMapInfo]free pivot count(25) exceed the limit, reduce to max"
    assert lines[2] == "[Query_ToneMapInfo]nPivotCount = 20"
    assert lines[3] == "[Query_ToneMapInfo]Pivot Points[0] (0.000000, 0.000000)"
    assert lines[22] == "[Query_ToneMapInfo]Pivot Points[19] (0.760000, 0.760000)"
    assert curve_calls(retouch)[0][0]["pivotCount"] == 20


def test_failed_engine_gives_the_zero_table(trace_on, facade, retouch, capfd):
    retouch.set_result("ImageRetouch", "GetToneCurveInfo", E_FAIL)
    capfd.readouterr()
    assert facade.Query_ToneMapInfo({"TCurvPts": [(0.5, 0.7)]}) == {i: 0 for i in range(256)}
    assert ("PyClipGrade::Query_ToneMapInfo m_pImageRetouch->GetToneCurveInfo(setToneCurve, &mappingInfo) failed "
            "hr=0x80004005" in trace_lines(capfd.readouterr().err))


def test_display_curve_bad_pivots_and_settings(facade, retouch):
    assert facade.Query_ToneMapInfo("not a dictionary") == {i: i for i in range(256)}
    table = facade.Query_ToneMapInfo({"TCurvPts": [(0.5, "x"), (0.5, 0.7)]})
    # The unparsed pair keeps what it reached; the later pivot at the same x wins.
    assert abs(table[128] - 179) <= 1


def test_engine_curve_is_the_full_16_bit_table(facade, retouch):
    setting = buffers.NewToneCurveSetting([(0.5, 0.7)], 1)
    table = facade.Query_ToneMapInfoForEngine(setting)
    assert len(table) == 65536
    assert table[0] == 0 and table[65535] == 65535
    assert abs(table[32768] - round(0.7 * 65535)) <= 2
    assert curve_calls(retouch)[0][0]["maxValue"] == 65535
    buffers.DeleteToneCurveSetting(setting)


def test_engine_curve_cuts_pivot_count_and_logs(trace_on, facade, retouch, capfd):
    setting = buffers.NewToneCurveSetting([(0.5, 0.5)], 23)
    capfd.readouterr()
    facade.Query_ToneMapInfoForEngine(setting)
    assert trace_lines(capfd.readouterr().err) == [
        "[Query_ToneMapInfoForEngine]free pivot count(23) exceed the limit, reduce to max",
        "[Query_ToneMapInfoForEngine]nPivotCount = 20"]
    assert curve_calls(retouch)[0][0]["pivotCount"] == 20
    buffers.DeleteToneCurveSetting(setting)


def test_tone_curve_keyframe_carries_the_engines_table(facade, journal, retouch):
    _, _, record = push_record(facade, journal, 23, {"TCurvPts": [[0, [(0.25, 0.1), (0.75, 0.9)], 2]]})
    setting = buffers.NewToneCurveSetting([(0.25, 0.1), (0.75, 0.9)], 2)
    expected = facade.Query_ToneMapInfoForEngine(setting)
    digest = hashlib.sha256(struct.pack("<65536i", *expected)).hexdigest()
    assert record["vectors"][0][0]["value"]["table"]["sha256"] == digest
    assert expected != list(range(65536))
    buffers.DeleteToneCurveSetting(setting)


def test_interpolated_tone_maps_of_a_clip(facade, journal):
    facade.AddVideo(7, 0, 1000, 1.5)
    maps = facade.Query_InterpolatedToneMapInfo(7, 500)
    assert sorted(maps) == [0, 1, 2, 3]
    assert all(maps[i] == {v: v for v in range(65536)} for i in range(4))
    assert journal.ops("GetInterpolatedToneMapInfo", "DspMain")[0]["args"] == [7, 500]


def test_interpolated_tone_maps_failure_is_an_empty_dictionary(shadow, facade, journal):
    assert facade.Query_InterpolatedToneMapInfo(99, 0) == {}
    facade.AddVideo(7, 0, 1000, 1.5)
    journal.set_result("DspMain", "GetInterpolatedToneMapInfo", 1)
    assert facade.Query_InterpolatedToneMapInfo(7, 0) == {}


def test_histogram_of_the_last_render(facade, journal):
    source = buffers.NewBuffer(4, 2, 4)
    buffers.WriteBytes(source, bytes([10, 20, 200, 255]) * 8)
    buffers.Release(facade.ApplyEffectOnBuffer(7, 0, source, 0, 0))
    histogram = facade.GetHistogramInfo()
    h = histogram.m_pHisdist
    assert h.nTotalCount == 8
    # One colour: every channel's highest bin holds all eight pixels.
    assert (h.nMaxHistogramR, h.nMaxHistogramG, h.nMaxHistogramB, h.nMaxHistogramL) == (8, 8, 8, 8)
    assert journal.ops("GetHistogramInfo", "DspBuf") != []
    tone = facade.GetToneCurveHistogramInfo()
    assert tone.m_pHisdist.nTotalCount == 8
    assert journal.ops("GetToneCurveHistogramInfo", "DspBuf") != []
    # Not owned by its wrapper: the script's own count decides.
    assert histogram.AddRef() == 2
    assert histogram.Release() == 1
    assert histogram.Release() == 0
    assert tone.Release() == 0
    buffers.Release(source)


def test_histogram_without_buffer_agent_is_zeroed(shadow, journal):
    main_only = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    histogram = main_only.GetHistogramInfo()
    assert histogram.m_pHisdist.nTotalCount == 0
    assert histogram.m_pHisdist.bGammaEncode is True
    assert journal.ops("GetHistogramInfo") == []
    assert histogram.Release() == 0
