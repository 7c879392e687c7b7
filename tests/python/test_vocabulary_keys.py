"""Every effect dictionary key against the extracted table."""

import pytest

import vocabulary_tables

KEYS = vocabulary_tables.keys()


@pytest.mark.parametrize("name,text", KEYS, ids=[k[0] for k in KEYS])
def test_key_is_a_script_string_with_its_text(module, name, text):
    got = module.__dict__[name]
    assert type(got) is str
    assert got == text


def test_all_308_text_constants_are_there(module):
    assert len(KEYS) == 308
    names = [n for n in dir(module) if n.startswith("STR_") or n == "REG_ENABLE_KES_MULTITHREAD_KEY"]
    assert sorted(names) == sorted(k[0] for k in KEYS)


def test_no_text_has_two_constants(module):
    texts = [module.__dict__[name] for name, _ in KEYS]
    assert len(set(texts)) == len(texts)


def test_effect_version_key(module):
    assert module.STR_EFFECT_VER == "EffVer"


def test_keys_match_byte_for_byte(module):
    effect = {"MskID": 3}
    assert effect.get(module.STR_MASK_ID) == 3
    assert all(text != "MSKID" and text != "mskid" for _, text in KEYS)
    assert {"mskid": 3}.get(module.STR_MASK_ID) is None


@pytest.mark.parametrize("name,text", [
    ("STR_LNOISE_AMOUNT", "LNsAmnt"), ("STR_CNOISE_AMOUNT", "CNsAmt"),
    ("STR_COLOR_SHIFT", "CM"), ("STR_COLOR_SPLASH", "CS"), ("STR_COLOR_REPLACEMENT", "CR"),
    ("STR_TOOTH_POINT_AUTO_MASK", "TTAutoMsk"), ("STR_SKINSMOOTH_POINT_AUTO_MASK", "SSAutoMsk"),
    ("STR_CROPROTATE_LOCK", "LckRat"), ("STR_CROPROTATE_ANGLE", "RtAgl"),
    ("STR_PEBLUR_MASK_LEVEL", "PEBlurLevel"), ("STR_MASK_PEBLUR_LEVEL", "MskPEBlurLevel"),
    ("STR_VIBRANCY_VIBRANCY", "Vib"), ("STR_WARPPED_POINT_XY", "WarpPtXY"),
])
def test_irregular_texts_stay_as_they_are(module, name, text):
    assert module.__dict__[name] == text
