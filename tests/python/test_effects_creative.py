"""HDR and split toning: plain keyed vectors, doubles where the engine's
setting holds a float."""

import pytest

from conftest import S_OK
from effect_journal import keys, push_record

PY_SET_HDR = 26
PY_SET_SPLITTONE = 31

HDR_KEYS = ["HDR_GS", "HDR_GR", "HDR_GB", "HDR_ES", "HDR_ER", "HDR_EB"]
SPLIT_KEYS = ["STLtHue", "STLtSat", "STBalance", "STDkHue", "STDkSat"]


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def test_hdr_full_dictionary(facade, journal):
    effect = {"HDR_GS": [[0, 10]], "HDR_GR": [[1, 20], [2, 21, 1]], "HDR_GB": [[3, -30]],
              "HDR_ES": [[4, 0.625], [5, 40, 0]], "HDR_ER": [[6, 50]], "HDR_EB": [[7, -60, 3]]}
    result, function, record = push_record(facade, journal, PY_SET_HDR, effect)
    assert (result, function) == (S_OK, 1049153)
    assert record["version"] == 9 and record["word"] == 0
    assert [keys(v) for v in record["vectors"]] == [
        [(0, 10, 2)], [(1, 20, 2), (2, 21, 1)], [(3, -30, 2)], [(4, 0.625, 2), (5, 40.0, 0)], [(6, 50, 2)],
        [(7, -60, 3)]]


def test_hdr_with_only_edge_strength_fills_the_fourth_vector_with_doubles(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_HDR, {"HDR_ES": [[9, 7]]})
    assert [keys(v) for v in record["vectors"]] == [[], [], [], [(9, 7.0, 2)], [], []]
    assert isinstance(record["vectors"][3][0]["value"], float)


def test_hdr_integer_key_given_as_float_stays_zero(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_HDR, {"HDR_GS": [[9, 7.5]]})
    assert keys(record["vectors"][0]) == [(9, 0, 2)]


def test_split_tone_full_dictionary(facade, journal):
    effect = {"STLtHue": [[0, 359.5]], "STLtSat": [[1, 0.25], [2, 100, 1]], "STBalance": [[3, -100]],
              "STDkHue": [[4, 12.75, 0]], "STDkSat": [[5, 1e-9]], "EffVer": 48}
    result, function, record = push_record(facade, journal, PY_SET_SPLITTONE, effect)
    assert (result, function) == (S_OK, 593)
    assert record["version"] == 3
    assert [keys(v) for v in record["vectors"]] == [
        [(0, 359.5, 2)], [(1, 0.25, 2), (2, 100.0, 1)], [(3, -100.0, 2)], [(4, 12.75, 0)], [(5, 1e-9, 2)]]


def test_split_tone_balance_alone(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_SPLITTONE, {"STBalance": [[3, 20]]})
    assert [keys(v) for v in record["vectors"]] == [[], [], [(3, 20.0, 2)], [], []]


@pytest.mark.parametrize("task, key_list", [(PY_SET_HDR, HDR_KEYS), (PY_SET_SPLITTONE, SPLIT_KEYS)])
def test_item_of_two_gets_interpolation_two(facade, journal, task, key_list):
    effect = {key: [[index, index + 1]] for index, key in enumerate(key_list)}
    _, _, record = push_record(facade, journal, task, effect)
    assert [[e["interp"] for e in v] for v in record["vectors"]] == [[2]] * len(key_list)
    assert [[e["time"] for e in v] for v in record["vectors"]] == [[i] for i in range(len(key_list))]
