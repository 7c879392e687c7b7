"""The show-mask effect: one dictionary telling the engine to draw a mask as
an overlay, in a 32-byte record with no keyframes."""

import gc

import pytest

from conftest import S_OK
from effect_journal import push_record

PY_SET_SHOW_MASK = 18
FUNCTION_SET_SHOW_MASK = 305
COLOR_DEPTH_8BIT = 255
COLOR_DEPTH_16BIT = 65535
sRGB_SPACE = 0
ROMMRGB_SPACE = 1


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def push(facade, journal, effect):
    """(FUNCTION_ID, RECORD) of the one record the agent received."""
    gc.collect()  # no facade of an earlier test may go during a journal read
    result, function, record = push_record(facade, journal, PY_SET_SHOW_MASK, effect)
    assert result == S_OK
    return function, record


def test_full_dictionary_every_key_set(facade, journal):
    assert push(facade, journal, {"ShowMaskType": 3, "ShowMaskID": 11, "ShowMaskColor": (10, 200, 255)}) == (
        FUNCTION_SET_SHOW_MASK,
        {"version": 9, "nMaskType": 3, "nMaskID": 11, "maskColor": [10, 200, 255, COLOR_DEPTH_8BIT, sRGB_SPACE]})


def test_colour_absent_keeps_sixteen_bit_romm_rgb(facade, journal):
    record = push(facade, journal, {"ShowMaskType": 1, "ShowMaskID": 2})[1]
    assert record["maskColor"] == [0, 0, 0, COLOR_DEPTH_16BIT, ROMMRGB_SPACE]


def test_colour_present_switches_to_eight_bit_srgb(facade, journal):
    record = push(facade, journal, {"ShowMaskColor": (0, 0, 0)})[1]
    assert record["maskColor"] == [0, 0, 0, COLOR_DEPTH_8BIT, sRGB_SPACE]


def test_colour_values_are_not_range_checked(facade, journal):
    record = push(facade, journal, {"ShowMaskColor": (-5, 70000, 256)})[1]
    assert record["maskColor"] == [-5, 70000, 256, COLOR_DEPTH_8BIT, sRGB_SPACE]


@pytest.mark.parametrize("color, rgb", [([1, 2, 3], [0, 0, 0]), ((1, 2), [0, 0, 0]), ((1, "x", 3), [1, 0, 0]),
                                        (7, [0, 0, 0])])
def test_colour_that_does_not_parse_still_switches_depth_and_space(facade, journal, color, rgb):
    record = push(facade, journal, {"ShowMaskColor": color})[1]
    assert record["maskColor"] == rgb + [COLOR_DEPTH_8BIT, sRGB_SPACE]


def test_empty_dictionary_gives_zero_mask_and_default_colour(facade, journal):
    assert push(facade, journal, {})[1] == {
        "version": 9, "nMaskType": 0, "nMaskID": 0, "maskColor": [0, 0, 0, COLOR_DEPTH_16BIT, ROMMRGB_SPACE]}


def test_mask_type_that_does_not_parse_is_zero(facade, journal):
    record = push(facade, journal, {"ShowMaskType": "3", "ShowMaskID": 4})[1]
    assert (record["nMaskType"], record["nMaskID"]) == (0, 4)


def test_negative_mask_id_and_type_pass_unchanged(facade, journal):
    record = push(facade, journal, {"ShowMaskType": -1, "ShowMaskID": -2147483648})[1]
    assert (record["nMaskType"], record["nMaskID"]) == (-1, -2147483648)


@pytest.mark.parametrize("code, version", [(80, 5), (32, 3), (48, 3), (16, 9), (112, 7), (8, 9)])
def test_effect_version_is_stamped_as_for_a_global_effect(facade, journal, code, version):
    assert push(facade, journal, {"ShowMaskID": 1, "EffVer": code})[1]["version"] == version


def test_list_given_keeps_version_nine_and_reads_nothing(facade, journal):
    assert push(facade, journal, [{"ShowMaskID": 1, "EffVer": 80}])[1] == {
        "version": 9, "nMaskType": 0, "nMaskID": 0, "maskColor": [0, 0, 0, COLOR_DEPTH_16BIT, ROMMRGB_SPACE]}


def test_buffer_agent_takes_it_when_asked(facade, journal):
    assert facade.PushTask(1, PY_SET_SHOW_MASK, {"ShowMaskID": 1}, True) == S_OK
    assert [e["agent"] for e in journal.ops("PushEffect")] == ["DspBuf"]


def test_stamp_line_is_logged(trace_on, facade, journal, capfd):
    capfd.readouterr()
    facade.PushTask(1, PY_SET_SHOW_MASK, {"ShowMaskID": 1, "EffVer": 64}, False)
    assert "PyClipGrade::m_fnSetEffectVerToEffect, lEffectID = 18, effectVer = 4\n" in capfd.readouterr().err
