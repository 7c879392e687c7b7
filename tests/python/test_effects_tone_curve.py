"""The tone curves: each keyframe carries a mapping table of 65536 values,
computed at the push; the master and channel forms differ on malformed
items. Here the facade has no image engine, so every table is the
zero-filled block; the engine's own curves are in test_query_tone_map.py."""

import hashlib

import pytest

from conftest import S_OK
from effect_journal import keys, push_record, trace_lines

PY_SET_TONE_CURVE = 23
PY_SET_TONE_CURVE_CHANNEL = 27
FUNCTION_SET_TONECURVE_RGB = 385
FUNCTION_SET_TONECURVE = 369

# What the agent's digest of an engine-less table must be: 65536 zero words.
ZERO_TABLE = {"sha256": hashlib.sha256(b"\0" * (65536 * 4)).hexdigest()}
NO_TABLE = {"table": None}
TABLE = {"table": ZERO_TABLE}

LIMIT_LINE = "free pivot count(%d) exceed the limit, reduce to max"


@pytest.fixture
def facade(shadow):
    # Its own "DspMain" and no buffer agent, hence no image engine.
    return shadow.PyClipGrade("@_PtrWrapper_$=0", 0)


def pivots(count):
    return [(i / 32.0, 1.0 - i / 32.0) for i in range(count)]


def channels(red=None, green=None, blue=None):
    effect = {28: {}, 29: {}, 30: {}}
    for task, key, items in ((28, "TCurvRPts", red), (29, "TCurvGPts", green), (30, "TCurvBPts", blue)):
        if items is not None:
            effect[task][key] = items
    return effect


# ------------------------------------------------------------------ master


def test_master_full_dictionary(facade, journal):
    effect = {"TCurvPts": [[100, [(0.0, 0.0), (0.5, 0.75), (1.0, 1.0)], 1], [200, [], 2], [300, pivots(3), 7]],
              "EffVer": 80}
    result, function, record = push_record(facade, journal, PY_SET_TONE_CURVE, effect)
    assert result == S_OK
    assert function == FUNCTION_SET_TONECURVE_RGB
    assert record["version"] == 5
    assert record["word"] == 0
    assert keys(record["vectors"][0]) == [(100, TABLE, 1), (200, TABLE, 2), (300, TABLE, 7)]


def test_zero_table_digest_is_that_of_hashlib(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[0, pivots(2), 2]]})
    digest = record["vectors"][0][0]["value"]["table"]["sha256"]
    assert digest == hashlib.sha256(bytes(262144)).hexdigest()


def test_master_item_of_length_two_gives_time_zero_and_no_table(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE,
                               {"TCurvPts": [[1000, [(0.0, 0.0), (1.0, 1.0)]]]})
    assert keys(record["vectors"][0]) == [(0, NO_TABLE, 2)]


@pytest.mark.parametrize("item", [[1000], [1000, [], 3, 4], "curve", (1000, [], 3)])
def test_master_item_of_other_shape_gives_an_empty_entry(facade, journal, item):
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [item, [5, [], 6]]})
    assert keys(record["vectors"][0]) == [(0, NO_TABLE, 2), (5, TABLE, 6)]


@pytest.mark.parametrize("points", [None, 7, (0.5, 0.5)])
def test_master_item_without_a_pivot_list_computes_a_table(facade, journal, points):
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[40, points, 3]]})
    assert keys(record["vectors"][0]) == [(40, TABLE, 3)]


def test_empty_pivot_list_still_computes_a_table(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[40, [], 3]]})
    assert keys(record["vectors"][0]) == [(40, TABLE, 3)]


def test_pivot_that_is_no_pair_keeps_the_keyframe(facade, journal):
    effect = {"TCurvPts": [[40, [(0.1, 0.2), "x", [0.3, 0.4], (1.0,)], 3]]}
    result, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, effect)
    assert result == S_OK
    assert keys(record["vectors"][0]) == [(40, TABLE, 3)]


def test_master_absent_key_or_empty_list_gives_an_empty_vector(facade, journal):
    for effect in ({}, {"TCurvPts": []}, {"TCurvPts": 5}):
        result, _, record = push_record(facade, journal, PY_SET_TONE_CURVE, effect)
        assert result == S_OK
        assert record["vectors"] == [[]]


def test_master_logs_the_pivot_limit_with_the_full_count(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[0, pivots(21), 2], [1, pivots(20), 2]]})
    lines = trace_lines(capfd.readouterr().err)
    assert [l for l in lines if "pivot" in l] == [LIMIT_LINE % 21]


def test_master_item_with_twenty_pivots_logs_no_limit(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[0, pivots(20), 2]]})
    lines = trace_lines(capfd.readouterr().err)
    assert lines == ["PyClipGrade::PushTask() enter",
                     "PyClipGrade::PushTask, Info. videoID=1, taskID=23",
                     "PyClipGrade::m_fnSetEffectVerToEffect, lEffectID = 23, effectVer = 9",
                     "PyClipGrade::PushTask() end"]


# ----------------------------------------------------------------- channel


def test_channel_full_dictionary(facade, journal):
    effect = channels(red=[[10, [(0.0, 0.1)], 1], [20, pivots(4), 2]],
                      green=[[30, [], 3]],
                      blue=[[40, pivots(2), 4], [50, pivots(5), 5], [60, [(0.5, 0.5)], 6]])
    effect["EffVer"] = 96
    result, function, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    assert result == S_OK
    assert function == FUNCTION_SET_TONECURVE
    assert record["version"] == 6
    assert record["word"] == 0
    assert [keys(v) for v in record["vectors"]] == [
        [(10, TABLE, 1), (20, TABLE, 2)],
        [(30, TABLE, 3)],
        [(40, TABLE, 4), (50, TABLE, 5), (60, TABLE, 6)],
    ]


def test_channel_item_of_length_two_is_skipped(facade, journal):
    effect = channels(red=[[1000, [(0.0, 0.0), (1.0, 1.0)]], [2000, [], 1]])
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    assert keys(record["vectors"][0]) == [(2000, TABLE, 1)]


def test_channel_item_without_a_pivot_list_is_skipped(facade, journal):
    effect = channels(green=[[1000, None, 1], [2000, 3, 1], [3000, [], 4]])
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    assert [keys(v) for v in record["vectors"]] == [[], [(3000, TABLE, 4)], []]


def test_channel_dictionaries_that_are_empty_give_three_empty_vectors(facade, journal):
    result, _, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, channels())
    assert result == S_OK
    assert record == {"version": 9, "word": 0, "vectors": [[], [], []]}


def test_channel_keys_are_read_only_in_their_own_dictionary(facade, journal):
    effect = {28: {"TCurvGPts": [[1, [], 2]]}, 29: {"TCurvRPts": [[1, [], 2]]}, 30: {"TCurvBPts": [[3, [], 2]]},
              "TCurvRPts": [[1, [], 2]]}
    _, _, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    assert [keys(v) for v in record["vectors"]] == [[], [], [(3, TABLE, 2)]]


def test_channel_missing_outer_dictionary_leaves_that_channel_empty(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    effect = {28: {"TCurvRPts": [[1, [], 2]]}, 30: {"TCurvBPts": [[3, [], 2]]}}
    result, _, record = push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    assert result == S_OK
    assert [keys(v) for v in record["vectors"]] == [[(1, TABLE, 2)], [], [(3, TABLE, 2)]]
    assert ("[Err] tone curve channel 1: no dictionary under 29; the channel stays empty"
            in trace_lines(capfd.readouterr().err))


def test_channel_logs_count_per_item_and_the_limit(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    effect = channels(red=[[0, pivots(21), 2], [1, pivots(3), 2]], green=[[0, [], 2]], blue=[[0, pivots(20), 2]])
    push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, effect)
    lines = trace_lines(capfd.readouterr().err)
    assert lines[2:-2] == [
        LIMIT_LINE % 21,
        "[ToneCurveChannel][0]nPivotCount = 20",
        "[ToneCurveChannel][0]nPivotCount = 3",
        "[ToneCurveChannel][1]nPivotCount = 0",
        "[ToneCurveChannel][2]nPivotCount = 20",
    ]


def test_pivots_that_are_no_list_are_logged(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade("@_PtrWrapper_$=0", 0)
    capfd.readouterr()
    push_record(facade, journal, PY_SET_TONE_CURVE, {"TCurvPts": [[40, None, 3]]})
    push_record(facade, journal, PY_SET_TONE_CURVE_CHANNEL, channels(blue=[[50, ((0.5, 0.5),), 1]]))
    lines = trace_lines(capfd.readouterr().err)
    assert [l for l in lines if l.startswith("[Err]")] == [
        "[Err] tone curve keyframe 40: the pivots are not a list; the curve has none",
        "[Err] tone curve channel 2, keyframe 50: the pivots are not a list; the keyframe is skipped",
    ]
