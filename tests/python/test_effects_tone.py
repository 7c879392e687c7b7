"""The tone sliders: seven keyed vectors in the agent's order, exposure the one
double among them."""

import pytest

from conftest import S_OK
from effect_journal import keys, push_record

PY_SET_TONE = 4
FUNCTION_SET_TONE = 65

# Record order, which is also the reading order.
TONE_KEYS = ["Xpo", "Bks", "Rcv", "Flt", "Brt", "Ctr", "Wts"]


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def test_full_dictionary_fills_every_vector_in_record_order(facade, journal):
    effect = {
        "Xpo": [[0, -4.75], [100, 2.125, 1]],
        "Bks": [[10, -100], [110, 7]],
        "Rcv": [[20, 33, 0]],
        "Flt": [[30, 44], [130, -44, 3]],
        "Brt": [[40, 55]],
        "Ctr": [[50, -66], [150, 66]],
        "Wts": [[60, 100, 5]],
        "EffVer": 64,
    }
    result, function, record = push_record(facade, journal, PY_SET_TONE, effect)
    assert result == S_OK
    assert function == FUNCTION_SET_TONE
    assert record["version"] == 4
    assert record["word"] == 0
    assert [keys(v) for v in record["vectors"]] == [
        [(0, -4.75, 2), (100, 2.125, 1)],
        [(10, -100, 2), (110, 7, 2)],
        [(20, 33, 0)],
        [(30, 44, 2), (130, -44, 3)],
        [(40, 55, 2)],
        [(50, -66, 2), (150, 66, 2)],
        [(60, 100, 5)],
    ]


def test_exposure_keeps_its_fraction_unscaled_and_unclamped(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE, {"Xpo": [[0, 0.1], [1, -12345.678]]})
    assert [e["value"] for e in record["vectors"][0]] == [0.1, -12345.678]


@pytest.mark.parametrize("index, key", list(enumerate(TONE_KEYS)))
def test_each_key_fills_only_its_own_vector(facade, journal, index, key):
    _, _, record = push_record(facade, journal, PY_SET_TONE, {key: [[7, 3]]})
    expected = [[] for _ in TONE_KEYS]
    expected[index] = [(7, 3, 2)]
    assert [keys(v) for v in record["vectors"]] == expected


def test_only_exposure_leaves_six_empty_vectors(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE, {"Xpo": [[0, 1.5]]})
    assert keys(record["vectors"][0]) == [(0, 1.5, 2)]
    assert record["vectors"][1:] == [[]] * 6


def test_exposure_given_as_integer_is_read_as_double(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_TONE, {"Xpo": [[0, 3]]})
    (entry,) = record["vectors"][0]
    assert entry["value"] == 3.0
    assert isinstance(entry["value"], float)


def test_integer_slider_given_as_float_stays_zero(facade, journal):
    result, _, record = push_record(facade, journal, PY_SET_TONE, {"Bks": [[5, 12.5], [6, 12]]})
    assert result == S_OK
    assert keys(record["vectors"][1]) == [(5, 0, 2), (6, 12, 2)]


def test_no_tone_key_gives_seven_empty_vectors(facade, journal):
    result, _, record = push_record(facade, journal, PY_SET_TONE, {"Tmp": [[0, 5000]]})
    assert result == S_OK
    assert record == {"version": 9, "word": 0, "vectors": [[]] * 7}
