"""The record classes against the extracted tables: the flat entries the
module has, the sizes the C++ records assert, and the entry counts."""

import os
import re

import pytest

import vocabulary_tables

RECORDS = vocabulary_tables.records()
REPO = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# The classes a script may make; all other records it only receives.
CONSTRUCTIBLE = (
    "RectD PointD Brow Eye Nose Mouth Ear FaceOutline FeaturePoints EyeEnlargeSetting "
    "FaceThinningSetting EyeBagRemovalSetting QueryOriFeaturePointSetting MaskToneSetting "
    "MaskToothSetting MaskDodgeBurnSetting MaskSaturationSetting MaskBlurSetting "
    "BlurSettingNormal BlurSettingBokeh BlurSettingCircular BlurSettingZoom BlurSettingMotion "
    "MaskLensBlurSetting MaskClaritySetting MaskSharpnessSetting MaskWBSetting MaskTintSetting "
    "ToneLevelSetting_ChannelPivot ToneCurveSetting MaskGrainSetting LumiarProertySetting "
    "tBrushSetting tGradientSetting tEllipseSetting tRawMaskSetting CircleFocusMaskSetting "
    "LinearFocusMaskSetting BaseWarpData LiquifyData MeshData MeshTable BaseMaskInfo "
    "MeshDataInfo LiquifyMaskInfo BrushMaskInfo GradientMaskInfo EllipseMaskInfo "
    "CompressMaskInfo RawMaskInfo FeaturePointsInfo CircleFocusMaskInfo LinearFocusMaskInfo "
    "BaseMaskClearInfo MeshMaskClearInfo LiquifyMaskClearInfo BrushMaskClearInfo MaskClearInfo "
    "VXHSLInfo VXPixelInfo VXWhiteBalanceInfo PyClipGrade CHistogramDist").split()

OPERATOR_ENTRIES = (
    "RectD_Width RectD_Height PointD___eq__ PointD___ne__ Brow___eq__ Brow___ne__ Eye___eq__ "
    "Eye___ne__ Nose___eq__ Nose___ne__ Mouth___eq__ Mouth___ne__ Ear___eq__ Ear___ne__ "
    "FaceOutline___eq__ FaceOutline___ne__ FeaturePoints___eq__ FeaturePoints___ne__ ROI___eq__ "
    "ROI___ne__ BlurSettingNormal___eq__ BlurSettingNormal___ne__ BlurSettingBokeh___eq__ "
    "BlurSettingBokeh___ne__ BlurSettingCircular___eq__ BlurSettingCircular___ne__ "
    "BlurSettingZoom___eq__ BlurSettingZoom___ne__ BlurSettingMotion___eq__ "
    "BlurSettingMotion___ne__ LensCorrectParams___eq__ LensCorrectParams_bIsZeroParams "
    "SplitToneEffectSetting___eq__ CHistogramDist_AddRef CHistogramDist_Release").split()

FIELDS = [(cls, f) for cls, (_, fields) in RECORDS.items() for f in fields]


@pytest.mark.parametrize("cls,field", FIELDS, ids=["%s.%s" % f for f in FIELDS])
def test_every_field_has_a_getter_and_a_setter(module, cls, field):
    assert hasattr(module, "%s_%s_get" % (cls, field))
    has_setter = hasattr(module, "%s_%s_set" % (cls, field))
    assert has_setter == ((cls, field) != ("ToneLevelSetting", "ChannelPivot"))


@pytest.mark.parametrize("cls", list(RECORDS), ids=list(RECORDS))
def test_every_record_has_a_destructor_and_a_registration(module, cls):
    assert hasattr(module, "delete_" + cls)
    assert hasattr(module, cls + "_swigregister")


@pytest.mark.parametrize("cls", list(RECORDS), ids=list(RECORDS))
def test_only_the_listed_records_have_a_constructor(module, cls):
    assert hasattr(module, "new_" + cls) == (cls in CONSTRUCTIBLE)


@pytest.mark.parametrize("name", OPERATOR_ENTRIES)
def test_operator_entries_exist(module, name):
    assert callable(getattr(module, name))


def test_no_record_entry_beyond_the_tables(module):
    known = set(OPERATOR_ENTRIES)
    for cls, (_, fields) in RECORDS.items():
        known.update("%s_%s_%s" % (cls, f, op) for f in fields for op in ("get", "set"))
        known.update(["new_" + cls, "delete_" + cls, cls + "_swigregister", cls + "_swiginit"])
    record_names = set(RECORDS)
    for name in dir(module):
        owner = next((c for c in record_names if name.startswith(c + "_")
                      or name in ("new_" + c, "delete_" + c)), None)
        if owner is not None and not name.startswith("PyClipGrade_"):
            assert name in known, name


def test_entry_counts(module):
    names = dir(module)
    assert sum(n.endswith("_get") for n in names) == 703
    assert sum(n.endswith("_set") for n in names) == 702
    assert sum(n.startswith("new_") for n in names) == 63
    assert sum(n.startswith("delete_") for n in names) == 141
    assert sum(n.endswith("_swigregister") for n in names) == 141


def test_tables_hold_140_records_and_703_fields():
    assert len(RECORDS) == 140
    assert len(FIELDS) == 703


def _asserted_sizes():
    sizes = {}
    folder = os.path.join(REPO, "engine", "records")
    for name in os.listdir(folder):
        with open(os.path.join(folder, name)) as f:
            for cls, size in re.findall(r"static_assert\(sizeof\((\w+)\) == (\d+),", f.read()):
                sizes[cls] = int(size)
    return sizes


def test_every_record_asserts_the_size_of_its_fields_laid_out():
    asserted = {c: s for c, s in _asserted_sizes().items() if c in RECORDS}
    assert asserted == vocabulary_tables.sizes()


def _header_fields():
    """{class: [(field, type, extent)]} as the C++ records declare their public
    fields, in order."""
    declared = {}
    folder = os.path.join(REPO, "engine", "records")
    field = re.compile(r"^    ([A-Za-z_][\w *]*?[\w*])\s*\b(\w+)((?:\[\w+\])*)(?: = [^;]+)?;")
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name)) as f:
            current, public = None, True
            for line in f:
                start = re.match(r"^(struct|class) (\w+)(?: : \w+)? \{", line)
                if start:
                    current, public = declared.setdefault(start.group(2), []), start.group(1) == "struct"
                    continue
                if line.startswith("};"):
                    current = None
                elif current is not None and line.strip() in ("public:", "private:"):
                    public = line.strip() == "public:"
                elif current is not None and public and "(" not in line:
                    m = field.match(line)
                    if m:
                        extent = "x".join(re.findall(r"\[(\w+)\]", m.group(3)))
                        current.append((m.group(2), m.group(1).replace(" ", ""), extent))
    return declared


def _table_fields():
    out = {}
    for cls, _, index, name, typ, _, _, extent in vocabulary_tables._rows("records.tsv"):
        fields = out.setdefault(cls, [])
        if index != "-1":
            fields.append((name, typ.replace(" ", ""),
                           "TONE_LEVEL_CHANNEL_COUNT" if extent == "?" else extent))
    return out


@pytest.mark.parametrize("cls", list(RECORDS), ids=list(RECORDS))
def test_header_declares_the_fields_in_table_order_with_their_types(cls):
    assert _header_fields()[cls] == _table_fields()[cls]
