"""Local adjustment effects: a list with one dictionary per mask becomes a
record whose ordered map takes each mask ID to a per-mask record, as the
reference agent decodes it."""

import gc

import pytest

from conftest import S_OK
from effect_journal import push_record

# task ID, FUNCTION_ID and the per-mask keys in record order, with the value
# format of each, for the converters whose keys are all keyframe lists.
KEYFRAME_CONVERTERS = {
    "wb": (98, 49, [("MskWBTmp", "i"), ("MskWBTnt", "i")]),
    "tone": (99, 81, [("MskTnXpo", "d"), ("MskTnBrt", "i"), ("MskTnCtr", "i")]),
    "clarity": (100, 241, [("MskClr", "i")]),
    "saturation": (101, 273, [("MskSat", "i")]),
    "tint": (162, 673, [("MskPETintHue", "i"), ("MskPETintAmo", "d")]),
    "blur": (163, 689, [("MskPEBlurLevel", "i")]),
}
PY_SET_MASK_HSL, FUNCTION_SET_HSLCOLOR_MASK = 102, 481
PY_SET_MASK_COLORREPLACEMENT, FUNCTION_SET_COLORREPLACE_MASK = 161, 561
PY_SET_MASK_COLORSPLASH, FUNCTION_SET_COLORSPLASH_MASK = 164, 721
PY_SET_MASK_CLARITY = 100
PY_SET_CLARITY = 12

COLOR_DEPTH_8BIT = 255
sRGB_SPACE = 0
BAND_KEYS = ["MskHSLH", "MskHSLS", "MskHSLL"]

# Every task ID of a local adjustment with the vector count of its per-mask record.
ALL_LOCAL = [(98, 49, 2), (99, 81, 3), (100, 241, 1), (101, 273, 1), (102, 481, 25),
             (161, 561, 1), (162, 673, 2), (163, 689, 1), (164, 721, 1)]


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def push(facade, journal, task, effect):
    """(FUNCTION_ID, RECORD) of the one record the agent received."""
    # Facades that earlier tests left in reference cycles go now, not in the
    # middle of a journal read.
    gc.collect()
    result, function, record = push_record(facade, journal, task, effect)
    assert result == S_OK
    return function, record


def record_of(facade, journal, task, effect):
    return push(facade, journal, task, effect)[1]


def keyframes(seed, fmt):
    """A keyframe list of three items (the second with an explicit
    interpolation, the third with the default) and the entries the agent must
    show for it."""
    if fmt == "d":
        values = [seed + 0.25, -seed - 0.5, seed * 2 + 0.125]
    else:
        values = [seed * 10 + 1, -(seed * 10 + 2), seed * 10 + 3]
    script = [[seed * 100, values[0]], [seed * 100 + 40, values[1], 5], [seed * 100 + 80, values[2], 2]]
    entries = [{"time": seed * 100, "value": values[0], "interp": 2},
               {"time": seed * 100 + 40, "value": values[1], "interp": 5},
               {"time": seed * 100 + 80, "value": values[2], "interp": 2}]
    return script, entries


def mask_json(key, mask_id, mask_type, vectors, version=9):
    return {"key": key, "nEffectVersion": version, "nMaskID": mask_id, "nMaskType": mask_type,
            "vectors": vectors}


# ---------------------------------------------------------------- full effects

@pytest.mark.parametrize("name", sorted(KEYFRAME_CONVERTERS))
def test_full_effect_every_key_set(facade, journal, name):
    task, function, keys = KEYFRAME_CONVERTERS[name]
    effect = []
    expected = []
    for mask_id, mask_type, version in [(12, 3, 64), (4, 1, None)]:
        item = {"MskID": mask_id, "MskTyp": mask_type}
        if version is not None:
            item["EffVer"] = version
        vectors = []
        for index, (key, fmt) in enumerate(keys):
            script, entries = keyframes(mask_id + index, fmt)
            item[key] = script
            vectors.append(entries)
        effect.append(item)
        expected.append(mask_json(mask_id, mask_id, mask_type, vectors, version or 9))
    assert push(facade, journal, task, effect) == (function, {"version": 9, "masks": [expected[1], expected[0]]})  # ascending mask ID: 4 before 12


def test_full_hsl_effect_every_key_set(facade, journal):
    effect = []
    expected = []
    for mask_id, mask_type in [(2, 7), (1, 8)]:
        vib_script, vib_entries = keyframes(mask_id, "i")
        item = {"MskID": mask_id, "MskTyp": mask_type, "MskVib": vib_script}
        vectors = [vib_entries]
        for block, key in enumerate(BAND_KEYS):
            bands = []
            for band in range(8):
                script, entries = keyframes(mask_id * 100 + block * 10 + band, "i")
                bands.append(script)
                vectors.append(entries)
            item[key] = bands
        effect.append(item)
        expected.append(mask_json(mask_id, mask_id, mask_type, vectors))
    assert push(facade, journal, PY_SET_MASK_HSL, effect) == (
        FUNCTION_SET_HSLCOLOR_MASK, {"version": 9, "masks": [expected[1], expected[0]]})


def replace_json(src, dst, tolerance):
    return {"time": 0, "interp": 2, "value": {"srcColor": list(src), "dstColor": list(dst),
                                              "fSrcTolerance": tolerance, "fDstTolerance": 0.0,
                                              "eColorSpace": 0}}


def splash_json(rgb, tolerance, hue_shift, mask_type, mask_id):
    return {"time": 0, "interp": 2, "value": {
        "fTolerance": tolerance,
        "dropperColor": {"nR": rgb[0], "nG": rgb[1], "nB": rgb[2], "eColorDepth": COLOR_DEPTH_8BIT,
                         "eColorSpace": sRGB_SPACE},
        "bEnableColorsplash": True, "nMaskType": mask_type, "nMaskID": mask_id, "fHueShift": hue_shift}}


ZERO_REPLACE = replace_json([0, 0, 0], [0, 0, 0], 0.0)
ZERO_SPLASH = {"time": 0, "interp": 2, "value": {
    "fTolerance": 0.0,
    "dropperColor": {"nR": 0, "nG": 0, "nB": 0, "eColorDepth": 0, "eColorSpace": 0},
    "bEnableColorsplash": False, "nMaskType": 0, "nMaskID": 0, "fHueShift": 0.0}}


def test_full_color_replacement_effect_every_key_set(facade, journal):
    effect = [{"MskID": 9, "MskTyp": 2, "EffVer": 48,
               "MskCR": [(10, 20, 30, 40, 50, 60, 0.5), (255, 0, 1, 2, 3, 254, 12.25)]},
              {"MskID": -1, "MskTyp": 5, "MskCR": [(1, 2, 3, 4, 5, 6, 0.75)]}]
    assert push(facade, journal, PY_SET_MASK_COLORREPLACEMENT, effect) == (FUNCTION_SET_COLORREPLACE_MASK, {
        "version": 9, "masks": [
        mask_json(-1, -1, 5, [[replace_json([1, 2, 3], [4, 5, 6], 0.75)]]),
        mask_json(9, 9, 2, [[replace_json([10, 20, 30], [40, 50, 60], 0.5),
                             replace_json([255, 0, 1], [2, 3, 254], 12.25)]], 48),
        ]})


def test_full_color_splash_effect_every_key_set(facade, journal):
    effect = [{"MskID": 30, "MskTyp": 4, "EffVer": 112,
               "MskCS": [(10, 20, 30, 0.5, 0.25), (0, 255, 128, 1.5, -0.75)]},
              {"MskID": 6, "MskTyp": 1, "MskCS": [(1, 2, 3, 4.0, 5.0)]}]
    assert push(facade, journal, PY_SET_MASK_COLORSPLASH, effect) == (FUNCTION_SET_COLORSPLASH_MASK, {
        "version": 9, "masks": [
        mask_json(6, 6, 1, [[splash_json([1, 2, 3], 4.0, 5.0, 1, 6)]]),
        mask_json(30, 30, 4, [[splash_json([10, 20, 30], 0.5, 0.25, 4, 30),
                               splash_json([0, 255, 128], 1.5, -0.75, 4, 30)]], 112),
        ]})


# ------------------------------------------------------------ the map itself

@pytest.mark.parametrize("task, function, vectors", ALL_LOCAL)
def test_empty_list_is_pushed_with_an_empty_map(facade, journal, task, function, vectors):
    assert push(facade, journal, task, []) == (function, {"version": 9, "masks": []})


@pytest.mark.parametrize("task, function, vectors", ALL_LOCAL)
def test_dictionary_without_keys_gives_empty_vectors(facade, journal, task, function, vectors):
    record = record_of(facade, journal, task, [{"MskID": 1, "MskTyp": 2}])
    assert record["masks"] == [mask_json(1, 1, 2, [[]] * vectors)]


def test_masks_come_in_ascending_mask_id_not_list_order(facade, journal):
    ids = [7, -2, 3, 0, 100, -50]
    record = record_of(facade, journal, PY_SET_MASK_CLARITY,
                       [{"MskID": i, "MskClr": [[0, i]]} for i in ids])
    assert [m["key"] for m in record["masks"]] == sorted(ids)
    assert [m["nMaskID"] for m in record["masks"]] == sorted(ids)
    assert [m["vectors"][0][0]["value"] for m in record["masks"]] == sorted(ids)


def test_second_dictionary_with_the_same_mask_id_wins_whatever_its_type(facade, journal):
    effect = [{"MskID": 4, "MskTyp": 1, "MskClr": [[0, 10]], "EffVer": 80},
              {"MskID": 5, "MskTyp": 1, "MskClr": [[0, 50]]},
              {"MskID": 4, "MskTyp": 2, "MskClr": [[7, 20], [8, 21]]}]
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, effect)
    assert record["masks"] == [
        mask_json(4, 4, 2, [[{"time": 7, "value": 20, "interp": 2}, {"time": 8, "value": 21, "interp": 2}]]),
        mask_json(5, 5, 1, [[{"time": 0, "value": 50, "interp": 2}]]),
    ]


def test_dictionary_without_mask_id_is_keyed_by_mask_id_zero(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, [{"MskClr": [[0, 1]]}, {"MskID": 3}])
    assert record["masks"] == [mask_json(0, 0, 0, [[{"time": 0, "value": 1, "interp": 2}]]),
                               mask_json(3, 3, 0, [[]])]


def test_mask_id_that_does_not_parse_is_keyed_by_zero(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, [{"MskID": "4", "MskTyp": 1.5}])
    assert record["masks"] == [mask_json(0, 0, 0, [[]])]


def test_per_mask_effect_version_is_stored_raw(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_CLARITY,
                       [{"MskID": 1, "EffVer": 80}, {"MskID": 2, "EffVer": 16}, {"MskID": 3, "EffVer": "x"}])
    assert record["version"] == 9
    assert [m["nEffectVersion"] for m in record["masks"]] == [80, 16, 9]


def test_same_version_on_a_global_dictionary_is_translated(facade, journal):
    assert record_of(facade, journal, PY_SET_CLARITY, {"EffVer": 80})["version"] == 5


def test_dictionary_given_for_a_local_effect_has_an_empty_map_and_is_stamped(facade, journal):
    # Not a list: no masks. Being a dictionary, the version stamp applies.
    assert record_of(facade, journal, PY_SET_MASK_CLARITY, {"MskID": 1, "EffVer": 80}) == {
        "version": 5, "masks": []}


@pytest.mark.parametrize("effect", [None, 5, "MskClr", (1, 2)])
def test_effect_that_is_no_list_has_an_empty_map(facade, journal, effect):
    assert record_of(facade, journal, PY_SET_MASK_CLARITY, effect) == {"version": 9, "masks": []}


def test_list_item_that_is_no_dictionary_reads_as_one_without_keys(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, [["MskID", 4], {"MskID": 2, "MskClr": [[0, 3]]}])
    assert record["masks"] == [mask_json(0, 0, 0, [[]]),
                               mask_json(2, 2, 0, [[{"time": 0, "value": 3, "interp": 2}]])]


def test_list_subclass_is_a_local_effect_and_keeps_version_nine(facade, journal):
    class Masks(list):
        pass
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, Masks([{"MskID": 1, "EffVer": 48}]))
    assert record["version"] == 9
    assert record["masks"][0]["nEffectVersion"] == 48


def test_no_limit_on_the_number_of_masks(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_CLARITY, [{"MskID": i} for i in range(100, 0, -1)])
    assert [m["key"] for m in record["masks"]] == list(range(1, 101))


def test_per_mask_keyframes_follow_the_shared_reading(facade, journal):
    effect = [{"MskID": 1, "MskTnXpo": [[10, 1.5], [20, 2.5, 2], [30, 3.5, 9, 9], [40, "x"]],
               "MskTnBrt": "no list", "MskTnCtr": []}]
    record = record_of(facade, journal, 99, effect)
    assert record["masks"][0]["vectors"] == [
        [{"time": 10, "value": 1.5, "interp": 2}, {"time": 20, "value": 2.5, "interp": 2},
         {"time": 30, "value": 3.5, "interp": 2}, {"time": 40, "value": 0.0, "interp": 2}],
        [], []]


def test_keys_read_by_no_converter_change_nothing(facade, journal):
    unread = {"MskWBWPTmp": [[0, 1]], "MskWBWPTnt": [[0, 2]], "MskNsLAmt": [[0, 3]], "MskNsLDtl": [[0, 4]],
              "MskNsCAmt": [[0, 5]], "MskNsCDtl": [[0, 6]], "MskSrpAmt": [[0, 7]]}
    effect = dict(unread, MskID=1, MskWBTmp=[[0, 5000]])
    record = record_of(facade, journal, 98, [effect])
    assert record["masks"] == [mask_json(1, 1, 0, [[{"time": 0, "value": 5000, "interp": 2}], []])]


def test_buffer_agent_takes_the_local_effect_when_asked(facade, journal):
    assert facade.PushTask(2, PY_SET_MASK_CLARITY, [{"MskID": 1}], True) == S_OK
    assert [e["agent"] for e in journal.ops("PushEffect")] == ["DspBuf"]


def test_local_effect_is_not_version_stamped(trace_on, facade, journal, capfd):
    capfd.readouterr()
    facade.PushTask(1, PY_SET_MASK_CLARITY, [{"MskID": 1}], False)
    assert "m_fnSetEffectVerToEffect" not in capfd.readouterr().err


# ------------------------------------------------------------------ HSL bands

def test_band_list_of_three_fills_red_orange_and_yellow(facade, journal):
    bands = [[[0, 1]], [[0, 2]], [[0, 3]]]
    record = record_of(facade, journal, PY_SET_MASK_HSL, [{"MskID": 1, "MskHSLS": bands}])
    vectors = record["masks"][0]["vectors"]
    assert vectors[:9] == [[]] * 9
    assert vectors[9:12] == [[{"time": 0, "value": v, "interp": 2}] for v in (1, 2, 3)]
    assert vectors[12:] == [[]] * 13


def test_vibrancy_absent_with_hue_present(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_HSL, [{"MskID": 1, "MskHSLH": [[[5, 6]]] * 8}])
    vectors = record["masks"][0]["vectors"]
    assert vectors[0] == []
    assert vectors[1:9] == [[{"time": 5, "value": 6, "interp": 2}]] * 8
    assert vectors[9:] == [[]] * 16


def test_empty_band_and_band_that_is_no_list_stay_empty(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_HSL, [{"MskID": 1, "MskHSLL": [[], 7, [[1, 2]]]}])
    vectors = record["masks"][0]["vectors"]
    assert vectors[17:20] == [[], [], [{"time": 1, "value": 2, "interp": 2}]]


def test_ninth_band_is_refused_and_logged(trace_on, facade, journal, capfd):
    capfd.readouterr()
    bands = [[[0, band]] for band in range(9)]
    record = record_of(facade, journal, PY_SET_MASK_HSL,
                       [{"MskID": 1, "MskHSLL": bands}, {"MskID": 2, "MskHSLH": bands}])
    first, second = record["masks"]
    assert first["vectors"][17:] == [[{"time": 0, "value": band, "interp": 2}] for band in range(8)]
    assert first["vectors"][:17] == [[]] * 17
    assert second["vectors"][1:9] == [[{"time": 0, "value": band, "interp": 2}] for band in range(8)]
    assert second["vectors"][9:] == [[]] * 16
    err = capfd.readouterr().err
    assert ('PyClipGrade::m_fnMaskHSLToEffect, Error. 9 band lists under "MskHSLL", only 8 bands: '
            'the rest is ignored') in err
    assert '9 band lists under "MskHSLH"' in err


# ---------------------------------------------------------- colour replacement

def replace_effect(*items):
    return [{"MskID": 1, "MskCR": list(items)}]


def replace_entries(facade, journal, *items):
    return record_of(facade, journal, PY_SET_MASK_COLORREPLACEMENT, replace_effect(*items))["masks"][0]["vectors"][0]


@pytest.mark.parametrize("channel", range(6))
def test_replacement_channel_of_256_zeroes_the_entry_and_keeps_it(facade, journal, channel):
    values = [1, 2, 3, 4, 5, 6]
    values[channel] = 256
    entries = replace_entries(facade, journal, tuple(values) + (0.5,), (7, 8, 9, 10, 11, 12, 1.0))
    assert entries == [ZERO_REPLACE, replace_json([7, 8, 9], [10, 11, 12], 1.0)]


def test_replacement_negative_channel_zeroes_the_entry(facade, journal):
    assert replace_entries(facade, journal, (1, 2, 3, 4, -1, 6, 0.5)) == [ZERO_REPLACE]


def test_replacement_channel_keeps_its_low_sixteen_bits(facade, journal):
    # 65536 + 200 is 200 in a 16-bit channel: within range, so kept.
    assert replace_entries(facade, journal, (65536 + 200, 65536, 3, 4, 5, 6, 0.5)) == [
        replace_json([200, 0, 3], [4, 5, 6], 0.5)]


def test_replacement_channel_of_255_is_kept(facade, journal):
    assert replace_entries(facade, journal, (255, 255, 255, 255, 255, 255, 2.0)) == [
        replace_json([255] * 3, [255] * 3, 2.0)]


@pytest.mark.parametrize("item", [[1, 2, 3, 4, 5, 6, 0.5], (1, 2, 3, 4, 5, 6), (1, 2, 3, 4, 5, 6, 0.5, 1), 7, None])
def test_replacement_item_that_is_no_seven_tuple_is_skipped(facade, journal, item):
    assert replace_entries(facade, journal, item, (1, 1, 1, 2, 2, 2, 0.25)) == [
        replace_json([1, 1, 1], [2, 2, 2], 0.25)]


def test_replacement_element_of_wrong_type_stays_zero(facade, journal):
    assert replace_entries(facade, journal, ("a", 2, 3, 4, 5, 6, "b")) == [replace_json([0, 2, 3], [4, 5, 6], 0.0)]


@pytest.mark.parametrize("value", [[], "MskCR", 5, None])
def test_replacement_list_empty_or_absent_gives_an_empty_vector(facade, journal, value):
    record = record_of(facade, journal, PY_SET_MASK_COLORREPLACEMENT, [{"MskID": 1, "MskCR": value}])
    assert record["masks"][0]["vectors"] == [[]]


# --------------------------------------------------------------- colour splash

def splash_entries(facade, journal, *items, mask_id=8, mask_type=3):
    effect = [{"MskID": mask_id, "MskTyp": mask_type, "MskCS": list(items)}]
    return record_of(facade, journal, PY_SET_MASK_COLORSPLASH, effect)["masks"][0]["vectors"][0]


def test_splash_channel_of_255_is_kept_enabled_and_eight_bit(facade, journal):
    assert splash_entries(facade, journal, (255, 0, 255, 0.5, 0.25)) == [splash_json([255, 0, 255], 0.5, 0.25, 3, 8)]


@pytest.mark.parametrize("rgb", [(256, 0, 0), (0, 256, 0), (0, 0, 256), (-1, 0, 0), (0, -2147483648, 0)])
def test_splash_channel_above_255_or_negative_zeroes_the_entry(facade, journal, rgb):
    assert splash_entries(facade, journal, rgb + (0.5, 0.25), (1, 2, 3, 0.0, 0.0)) == [
        ZERO_SPLASH, splash_json([1, 2, 3], 0.0, 0.0, 3, 8)]


@pytest.mark.parametrize("item", [[1, 2, 3, 0.5, 0.25], (1, 2, 3, 0.5), (1, 2, 3, 0.5, 0.25, 6), "rgb"])
def test_splash_item_that_is_no_five_tuple_is_skipped(facade, journal, item):
    assert splash_entries(facade, journal, item) == []


def test_splash_takes_mask_type_and_id_of_its_dictionary(facade, journal):
    entries = splash_entries(facade, journal, (1, 2, 3, 0.5, 0.25), mask_id=-7, mask_type=22)
    assert entries[0]["value"]["nMaskID"] == -7
    assert entries[0]["value"]["nMaskType"] == 22


def test_splash_without_mask_keys_names_mask_zero(facade, journal):
    record = record_of(facade, journal, PY_SET_MASK_COLORSPLASH, [{"MskCS": [(1, 2, 3, 0.5, 0.25)]}])
    assert record["masks"] == [mask_json(0, 0, 0, [[splash_json([1, 2, 3], 0.5, 0.25, 0, 0)]])]
