"""Sharpen, noise reduction, the post-crop vignette and the blur."""

import pytest

from conftest import E_FAIL, S_OK
from effect_journal import keys, push_record, trace_lines

PY_SET_SHARPNESS = 9
PY_SET_LUMA_NOISE = 10
PY_SET_CHROMA_NOISE = 11
PY_SET_VIGNETTE = 15
PY_SET_POSTCROP_VIGNETTE = 16
PY_SET_NOISE = 22
PY_SET_PEBLUR = 130


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def test_sharpen_full_dictionary(facade, journal):
    effect = {"SrpAmt": [[0, 150], [9, 0, 1]], "SrpRds": [[1, 1.5], [2, 15.25, 3]], "SrpDtl": [[3, 25]],
              "SrpMsk": [[4, 100, 0]], "SrpOut": [[5, 2], [6, 1]]}
    result, function, record = push_record(facade, journal, PY_SET_SHARPNESS, effect)
    assert (result, function) == (S_OK, 129)
    assert record["version"] == 9 and record["word"] == 0
    assert [keys(v) for v in record["vectors"]] == [
        [(0, 150, 2), (9, 0, 1)], [(1, 1.5, 2), (2, 15.25, 3)], [(3, 25, 2)], [(4, 100, 0)], [(5, 2, 2), (6, 1, 2)]]


def test_sharpen_radius_given_as_integer_is_read_as_double(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_SHARPNESS, {"SrpRds": [[0, 3]]})
    (entry,) = record["vectors"][1]
    assert entry["value"] == 3.0 and isinstance(entry["value"], float)
    assert [record["vectors"][i] for i in (0, 2, 3, 4)] == [[]] * 4


@pytest.mark.parametrize("task", [PY_SET_LUMA_NOISE, PY_SET_CHROMA_NOISE, PY_SET_NOISE])
def test_noise_full_dictionary_under_each_task(facade, journal, task):
    effect = {"LNsAmnt": [[0, 10]], "LNsDtl": [[1, 20], [2, 21, 1]], "CNsAmt": [[3, 30, 0]], "CNsDtl": [[4, 40]],
              "NsAmt": [[0, 1]], "LNsAmt": [[0, 2]]}
    result, function, record = push_record(facade, journal, task, effect)
    assert (result, function) == (S_OK, 1048737)
    assert [keys(v) for v in record["vectors"]] == [
        [(0, 10, 2)], [(1, 20, 2), (2, 21, 1)], [(3, 30, 0)], [(4, 40, 2)]]


def test_noise_with_only_chroma_detail_fills_the_fourth_vector(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_NOISE, {"CNsDtl": [[8, 50]]})
    assert [keys(v) for v in record["vectors"]] == [[], [], [], [(8, 50, 2)]]


def test_chroma_keys_under_the_luminance_task_fill_the_chroma_vectors(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_LUMA_NOISE, {"CNsAmt": [[1, 5]], "CNsDtl": [[2, 6]]})
    assert [keys(v) for v in record["vectors"]] == [[], [], [(1, 5, 2)], [(2, 6, 2)]]


def test_vignette_full_dictionary_keeps_roundness_before_feather(facade, journal):
    effect = {"VgnAmt": [[0, -100]], "VgnMpt": [[1, 50]], "VgnRnd": [[2, -25], [3, 25, 1]], "VgnFtr": [[4, 75]]}
    result, function, record = push_record(facade, journal, PY_SET_POSTCROP_VIGNETTE, effect)
    assert (result, function) == (S_OK, 289)
    assert [keys(v) for v in record["vectors"]] == [
        [(0, -100, 2)], [(1, 50, 2)], [(2, -25, 2), (3, 25, 1)], [(4, 75, 2)]]


@pytest.mark.parametrize("key, index", [("VgnAmt", 0), ("VgnMpt", 1), ("VgnRnd", 2), ("VgnFtr", 3)])
def test_vignette_key_alone_fills_its_vector(facade, journal, key, index):
    _, _, record = push_record(facade, journal, PY_SET_POSTCROP_VIGNETTE, {key: [[6, 60]]})
    expected = [[], [], [], []]
    expected[index] = [(6, 60, 2)]
    assert [keys(v) for v in record["vectors"]] == expected


def test_plain_vignette_task_has_no_mapping(facade, journal):
    assert facade.PushTask(1, PY_SET_VIGNETTE, {"VgnAmt": [[0, 1]]}, False) == E_FAIL
    assert journal.ops("PushEffect") == []


def test_blur_full_dictionary_and_its_trace(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    effect = {"PEBlurLevel": [[0, 3], [-5, 100, 1], [(1 << 62), -7]]}
    result, function, record = push_record(facade, journal, PY_SET_PEBLUR, effect)
    assert (result, function) == (S_OK, 433)
    assert keys(record["vectors"][0]) == [(0, 3, 2), (-5, 100, 1), ((1 << 62), -7, 2)]
    assert trace_lines(capfd.readouterr().err)[2:-2] == [
        "List Size: 3", "KeyFrame: 0", "Level: 3", "KeyFrame: -5", "Level: 100",
        "KeyFrame: 4611686018427387904", "Level: -7"]


def test_blur_absent_logs_nothing_and_pushes_an_empty_vector(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    result, _, record = push_record(facade, journal, PY_SET_PEBLUR, {})
    assert result == S_OK
    assert record == {"version": 9, "word": 0, "vectors": [[]]}
    assert trace_lines(capfd.readouterr().err)[2:-2] == []


@pytest.mark.parametrize("value, size", [([], 0), (5, -1)])
def test_blur_empty_or_odd_list_logs_its_size(trace_on, shadow, journal, capfd, value, size):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    _, _, record = push_record(facade, journal, PY_SET_PEBLUR, {"PEBlurLevel": value})
    assert record["vectors"] == [[]]
    assert trace_lines(capfd.readouterr().err)[2:-2] == ["List Size: %d" % size]
