"""The colour effects: the plain ones, the per-band ones, and colour
replacement and splash with their single whole-setting keyframe."""

import pytest

from conftest import S_OK
from effect_journal import f32, keys, push_record, trace_lines

PY_SET_WB = 2
PY_SET_BLACK_WHITE = 3
PY_SET_SATURATION = 19
PY_SET_HSL_VIB = 20
PY_SET_COLORREPLACEMENT = 25
PY_SET_COLORSPLASH = 32
PY_SET_COLORSHIFT = 33
PY_SET_PETINT = 128


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def bands(offset, count=8):
    """A band list whose band b holds one keyframe (b, offset + b)."""
    return [[[b, offset + b]] for b in range(count)]


def band_keys(offset, count=8):
    return [[(b, offset + b, 2)] for b in range(count)] + [[]] * (8 - count)


# ------------------------------------------------------------ plain records


def test_white_balance_full_dictionary(facade, journal):
    effect = {"Tmp": [[0, 2000], [10, 50000, 1]], "Tnt": [[5, -300], [6, 300, 0]],
              "WPTmp": [[0, 1]], "WPTnt": [[0, 2]], "WBMode": [[0, 3]]}
    result, function, record = push_record(facade, journal, PY_SET_WB, effect)
    assert result == S_OK
    assert function == 33
    assert record["version"] == 9 and record["word"] == 0
    assert [keys(v) for v in record["vectors"]] == [[(0, 2000, 2), (10, 50000, 1)], [(5, -300, 2), (6, 300, 0)]]


def test_white_balance_without_tint_leaves_second_vector_empty(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_WB, {"Tmp": [[0, 99999]]})
    assert [keys(v) for v in record["vectors"]] == [[(0, 99999, 2)], []]


def test_saturation_full_dictionary(facade, journal):
    result, function, record = push_record(facade, journal, PY_SET_SATURATION,
                                           {"Sat": [[1200, 35], [2400, 50, 2], [3600, -100, 4]]})
    assert (result, function) == (S_OK, 257)
    assert [keys(v) for v in record["vectors"]] == [[(1200, 35, 2), (2400, 50, 2), (3600, -100, 4)]]


def test_tint_full_dictionary_has_integer_hue_and_double_amount(facade, journal):
    effect = {"PETintHue": [[0, 210], [5, 30, 1]], "PETintAmo": [[0, 0.375], [5, 2, 3]]}
    result, function, record = push_record(facade, journal, PY_SET_PETINT, effect)
    assert (result, function) == (S_OK, 401)
    assert [keys(v) for v in record["vectors"]] == [[(0, 210, 2), (5, 30, 1)], [(0, 0.375, 2), (5, 2.0, 3)]]
    assert isinstance(record["vectors"][1][1]["value"], float)


# --------------------------------------------------------------- hue shift


def test_hue_shift_full_dictionary_and_its_trace(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    effect = {"CM": [[100, 0.1], [-200, -1, 1], [(1 << 40), 16777217.0]]}
    result, function, record = push_record(facade, journal, PY_SET_COLORSHIFT, effect)
    assert (result, function) == (S_OK, 737)
    assert keys(record["vectors"][0]) == [(100, f32(0.1), 2), (-200, -1.0, 1), ((1 << 40), 16777216.0, 2)]
    assert trace_lines(capfd.readouterr().err)[2:-2] == [
        "List Size: 3",
        "KeyFrame: 100", "HueShift: %f" % f32(0.1),
        "KeyFrame: -200", "HueShift: -1.000000",
        "KeyFrame: 1099511627776", "HueShift: 16777216.000000",
    ]


def test_hue_shift_absent_logs_nothing_and_empty_list_logs_zero(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    _, _, record = push_record(facade, journal, PY_SET_COLORSHIFT, {})
    assert record["vectors"] == [[]]
    assert trace_lines(capfd.readouterr().err)[2:-2] == []
    _, _, record = push_record(facade, journal, PY_SET_COLORSHIFT, {"CM": []})
    assert record["vectors"] == [[]]
    assert trace_lines(capfd.readouterr().err)[2:-2] == ["List Size: 0"]


# --------------------------------------------------------------------- HSL


def test_hsl_full_dictionary(facade, journal):
    effect = {"Vib": [[0, -40], [9, 40, 1]], "HSL_H": bands(100), "HSL_S": bands(200), "HSL_L": bands(300)}
    result, function, record = push_record(facade, journal, PY_SET_HSL_VIB, effect)
    assert (result, function) == (S_OK, 113)
    vectors = [keys(v) for v in record["vectors"]]
    assert len(vectors) == 25
    assert vectors[0] == [(0, -40, 2), (9, 40, 1)]
    assert vectors[1:9] == band_keys(100)
    assert vectors[9:17] == band_keys(200)
    assert vectors[17:25] == band_keys(300)


def test_hsl_without_vibrancy_fills_the_bands(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_HSL_VIB, {"HSL_H": bands(10)})
    vectors = [keys(v) for v in record["vectors"]]
    assert vectors[0] == []
    assert vectors[1:9] == band_keys(10)
    assert vectors[9:] == [[]] * 16


def test_band_list_of_three_fills_red_orange_yellow(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_HSL_VIB, {"HSL_S": bands(50, 3)})
    vectors = [keys(v) for v in record["vectors"]]
    assert vectors[9:17] == band_keys(50, 3)
    assert vectors[:9] == [[]] * 9 and vectors[17:] == [[]] * 8


def test_empty_or_odd_band_leaves_its_vector_empty_and_the_next_goes_on(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_HSL_VIB,
                               {"HSL_L": [[[1, 1]], [], 5, [[4, 4, 0]]]})
    vectors = [keys(v) for v in record["vectors"]]
    assert vectors[17:21] == [[(1, 1, 2)], [], [], [(4, 4, 0)]]


@pytest.mark.parametrize("value", [[], 3, "HSL"])
def test_band_key_that_is_empty_or_no_list_leaves_the_group_empty(facade, journal, value):
    _, _, record = push_record(facade, journal, PY_SET_HSL_VIB, {"HSL_H": value, "HSL_S": bands(0, 1)})
    vectors = [keys(v) for v in record["vectors"]]
    assert vectors[1:9] == [[]] * 8
    assert vectors[9] == [(0, 0, 2)]


def test_ninth_band_is_refused_and_logged(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    effect = {"HSL_H": bands(100, 9), "HSL_L": bands(300, 10)}
    result, _, record = push_record(facade, journal, PY_SET_HSL_VIB, effect)
    assert result == S_OK
    vectors = [keys(v) for v in record["vectors"]]
    assert len(vectors) == 25
    assert vectors[1:9] == band_keys(100)
    assert vectors[9:17] == [[]] * 8
    assert vectors[17:25] == band_keys(300)
    assert trace_lines(capfd.readouterr().err)[2:-2] == [
        'PyClipGrade::m_fnHSLToEffect, Error. 9 band lists under "HSL_H", only 8 bands: the rest is ignored',
        'PyClipGrade::m_fnHSLToEffect, Error. 10 band lists under "HSL_L", only 8 bands: the rest is ignored',
    ]


# ----------------------------------------------------------- black and white


def test_black_and_white_full_dictionary(facade, journal):
    result, function, record = push_record(facade, journal, PY_SET_BLACK_WHITE,
                                           {"BW": 1, "BW_L": bands(-50), "EffVer": 112})
    assert (result, function) == (S_OK, 17)
    assert record["version"] == 7
    assert record["word"] == 1
    assert [keys(v) for v in record["vectors"]] == band_keys(-50)


@pytest.mark.parametrize("effect, word", [({}, 0), ({"BW": 0}, 0), ({"BW": 7}, 7), ({"BW": -1}, 4294967295),
                                          ({"BW": "on"}, 0), ({"BW": [[0, 1]]}, 0)])
def test_black_and_white_switch_is_a_plain_scalar(facade, journal, effect, word):
    result, _, record = push_record(facade, journal, PY_SET_BLACK_WHITE, effect)
    assert result == S_OK
    assert record["word"] == word
    assert record["vectors"] == [[]] * 8


def test_black_and_white_ninth_band_is_refused(trace_on, shadow, journal, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    _, _, record = push_record(facade, journal, PY_SET_BLACK_WHITE, {"BW_L": bands(1, 9)})
    assert [keys(v) for v in record["vectors"]] == band_keys(1)
    assert trace_lines(capfd.readouterr().err)[2:-2] == [
        'PyClipGrade::m_fnBlackWhiteToEffect, Error. 9 band lists under "BW_L", only 8 bands: the rest is ignored']


# ------------------------------------------------------- colour replacement


def replacement(src=(0, 0, 0), dst=(0, 0, 0), tolerance=0.0):
    return {"srcColor": list(src), "dstColor": list(dst), "fSrcTolerance": f32(tolerance),
            "fDstTolerance": 0.0, "eColorSpace": 0}


def test_colour_replacement_full_item(facade, journal):
    effect = {"CR": [[1234, (10, 20, 30, 40, 50, 255, 0.3), 9]], "EffVer": 32}
    result, function, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT, effect)
    assert (result, function) == (S_OK, 545)
    assert record["version"] == 3 and record["word"] == 0
    assert keys(record["vectors"][0]) == [(0, replacement((10, 20, 30), (40, 50, 255), 0.3), 2)]


def test_colour_replacement_takes_only_the_first_well_formed_item(facade, journal):
    effect = {"CR": [[1, (1, 2, 3, 4, 5, 6, 0.5), 2], [2, (7, 8, 9, 10, 11, 12, 0.25), 2]]}
    _, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT, effect)
    assert keys(record["vectors"][0]) == [(0, replacement((1, 2, 3), (4, 5, 6), 0.5), 2)]


@pytest.mark.parametrize("bad", [
    [1, (1, 2, 3, 4, 5, 6), 2],           # six elements
    [1, (1, 2, 3, 4, 5, 6, 0.5, 1), 2],   # eight elements
    [1, [1, 2, 3, 4, 5, 6, 0.5], 2],      # a list, not a tuple
    [1, (1, 2, 3, 4, 5, 6, 0.5)],         # item of two
    [1, (1, 2, 3, 4, 5, 6, 0.5), 2, 3],   # item of four
    (1, (1, 2, 3, 4, 5, 6, 0.5), 2),      # item not a list
])
def test_colour_replacement_skips_items_of_a_wrong_shape(facade, journal, bad):
    effect = {"CR": [bad, [2, (7, 8, 9, 10, 11, 12, 0.25), 5]]}
    _, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT, effect)
    assert keys(record["vectors"][0]) == [(0, replacement((7, 8, 9), (10, 11, 12), 0.25), 2)]


@pytest.mark.parametrize("channels", [(0, 0, 0, 256, 0, 0), (300, 1, 1, 1, 1, 1), (1, 1, 1, 1, 1, -1)])
def test_colour_replacement_channel_above_255_zeroes_the_setting(facade, journal, channels):
    _, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT,
                               {"CR": [[5, channels + (0.75,), 1]]})
    assert keys(record["vectors"][0]) == [(0, replacement(), 2)]


def test_colour_replacement_channel_is_kept_in_sixteen_bits(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT,
                               {"CR": [[5, (65536 + 7, 255, 0, 0, 0, 0, 0.5), 1]]})
    assert keys(record["vectors"][0]) == [(0, replacement((7, 255, 0), (0, 0, 0), 0.5), 2)]


def test_colour_replacement_element_of_wrong_type_stays_zero(facade, journal):
    _, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT,
                               {"CR": [[5, (1, "g", 3, 4.5, 5, 6, "t"), 1]]})
    assert keys(record["vectors"][0]) == [(0, replacement((1, 0, 3), (0, 5, 6), 0.0), 2)]


@pytest.mark.parametrize("effect", [{}, {"CR": []}, {"CR": [[1, (1, 2, 3), 2]]}, {"CR": 5}])
def test_colour_replacement_without_a_good_item_pushes_an_empty_vector(facade, journal, effect):
    result, _, record = push_record(facade, journal, PY_SET_COLORREPLACEMENT, effect)
    assert result == S_OK
    assert record == {"version": 9, "word": 0, "vectors": [[]]}


# ------------------------------------------------------------ colour splash


def splash(r=0, g=0, b=0, tolerance=0.0, hue_shift=0.0, enabled=True):
    if not enabled:
        return {"fTolerance": 0.0, "dropperColor": {"nR": 0, "nG": 0, "nB": 0, "eColorDepth": 0, "eColorSpace": 0},
                "bEnableColorsplash": False, "nMaskType": 0, "nMaskID": 0, "fHueShift": 0.0}
    return {"fTolerance": f32(tolerance),
            "dropperColor": {"nR": r, "nG": g, "nB": b, "eColorDepth": 255, "eColorSpace": 0},
            "bEnableColorsplash": True, "nMaskType": 22, "nMaskID": 0, "fHueShift": f32(hue_shift)}


def test_colour_splash_full_item(facade, journal):
    effect = {"CS": [[777, (12, 34, 255, 0.3, -0.6), 9]]}
    result, function, record = push_record(facade, journal, PY_SET_COLORSPLASH, effect)
    assert (result, function) == (S_OK, 705)
    assert record["version"] == 9 and record["word"] == 0
    assert keys(record["vectors"][0]) == [(0, splash(12, 34, 255, 0.3, -0.6), 2)]


def test_colour_splash_takes_only_the_first_well_formed_item(facade, journal):
    effect = {"CS": [[1, (1, 2, 3, 0.5), 2], [1, (1, 2, 3, 0.5, 0.25), 2], [2, (4, 5, 6, 0.5, 0.5), 2]]}
    _, _, record = push_record(facade, journal, PY_SET_COLORSPLASH, effect)
    assert keys(record["vectors"][0]) == [(0, splash(1, 2, 3, 0.5, 0.25), 2)]


@pytest.mark.parametrize("red, enabled", [(255, True), (256, False), (-1, False)])
def test_colour_splash_channel_above_255_disables_the_splash(facade, journal, red, enabled):
    _, _, record = push_record(facade, journal, PY_SET_COLORSPLASH, {"CS": [[1, (red, 0, 0, 0.5, 0.5), 2]]})
    expected = splash(red, 0, 0, 0.5, 0.5, enabled)
    assert keys(record["vectors"][0]) == [(0, expected, 2)]


@pytest.mark.parametrize("effect", [{}, {"CS": []}, {"CS": [[1, (1, 2, 3, 4, 5, 6), 2]]}, {"CS": [[1, (1, 2, 3, 4, 5)]]}])
def test_colour_splash_without_a_good_item_pushes_an_empty_vector(facade, journal, effect):
    result, _, record = push_record(facade, journal, PY_SET_COLORSPLASH, effect)
    assert result == S_OK
    assert record == {"version": 9, "word": 0, "vectors": [[]]}
