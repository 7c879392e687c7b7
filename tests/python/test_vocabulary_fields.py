"""Field access of the records as scripts see it: views, copies, pointers,
and the errors of the setters."""

import ctypes

import pytest


def address(wrapped):
    return int(wrapped.this) if hasattr(wrapped, "this") else int(wrapped)


def test_embedded_record_reads_as_a_view_into_the_outer_record(shadow):
    face = shadow.FeaturePoints()
    brow = face.lBrow
    assert address(brow) == address(face) + 8
    brow.left.x = 5.0
    assert face.lBrow.left.x == 5.0


def test_embedded_record_setter_copies(shadow):
    face = shadow.FeaturePoints()
    brow = shadow.Brow(shadow.PointD(1, 2), shadow.PointD(3, 4), shadow.PointD(5, 6),
                       shadow.PointD(7, 8))
    face.rBrow = brow
    brow.top.x = 99.0
    assert face.rBrow.top.x == 3.0
    assert face.rBrow.bottom.y == 8.0
    assert address(face.rBrow) == address(face) + 8 + 64


def test_array_reads_as_a_view_into_the_outer_record(shadow):
    pivot = shadow.ToneLevelSetting_ChannelPivot()
    assert address(pivot.nPivotX) == address(pivot)
    assert address(pivot.nPivotY) == address(pivot) + 20


def test_array_setter_copies_every_element(shadow):
    source = shadow.ToneLevelSetting_ChannelPivot()
    target = shadow.ToneLevelSetting_ChannelPivot()
    values = (ctypes.c_int * 5).from_address(address(source.nPivotY))
    for i in range(5):
        values[i] = 10 * (i + 1)
    target.nPivotX = source.nPivotY
    copied = (ctypes.c_int * 5).from_address(address(target.nPivotX))
    assert list(copied) == [10, 20, 30, 40, 50]
    assert address(target.nPivotX) == address(target)


def test_array_of_records_setter_copies_every_record(shadow):
    source = shadow.ToneCurveSetting()
    target = shadow.ToneCurveSetting()
    size = 232
    raw = (ctypes.c_int * 3).from_address(address(source.ChannelSetting))
    raw[0] = 7
    ctypes.c_int.from_address(address(source.ChannelSetting) + 2 * size).value = 9
    target.ChannelSetting = source.ChannelSetting
    assert target.ChannelSetting.nHighlights == 7
    assert ctypes.c_int.from_address(address(target.ChannelSetting) + 2 * size).value == 9


def test_array_setter_refuses_a_null_source(module, shadow):
    histogram = shadow.CHistogramDist()
    with pytest.raises(ValueError) as error:
        module.HistogramDist_HistogramR_set(histogram.m_pHisdist, None)
    assert str(error.value) == "invalid null reference in variable 'HistogramR' of type 'int [256]'"


def test_array_setter_refuses_a_source_of_another_type(module, shadow):
    histogram = shadow.CHistogramDist()
    with pytest.raises(TypeError) as error:
        module.HistogramDist_HistogramR_set(histogram.m_pHisdist, shadow.PointD())
    assert str(error.value) == "in variable 'HistogramR' of type 'int [256]'"


def test_array_errors_name_the_field_and_its_type(module, shadow):
    pivot = shadow.ToneLevelSetting_ChannelPivot()
    with pytest.raises(ValueError) as error:
        pivot.nPivotY = None
    assert str(error.value) == "invalid null reference in variable 'nPivotY' of type 'int [5]'"
    with pytest.raises(TypeError) as error:
        pivot.nPivotY = 3
    assert str(error.value) == "in variable 'nPivotY' of type 'int [5]'"


def test_channel_pivot_has_no_setter(module):
    assert hasattr(module, "ToneLevelSetting_ChannelPivot_get")
    assert not hasattr(module, "ToneLevelSetting_ChannelPivot_set")


def test_pointer_field_setter_stores_the_pointer(shadow):
    query = shadow.QueryOriFeaturePointSetting()
    point = shadow.PointD(1.0, 2.0)
    query.pPt_InOut = point
    assert address(query.pPt_InOut) == address(point)
    query.pPt_InOut = None
    assert query.pPt_InOut is None


def test_script_made_record_owns_its_record(shadow):
    assert shadow.PointD().thisown
    assert not shadow.FeaturePoints().lBrow.thisown


def test_integer_field_refuses_a_float(shadow):
    wb = shadow.MaskWBSetting()
    with pytest.raises(TypeError) as error:
        wb.nTemperature = 1.5
    assert str(error.value) == "in method 'MaskWBSetting_nTemperature_set', argument 2 of type 'int'"


def test_integer_that_does_not_fit_fails_as_a_wrong_type(shadow):
    wb = shadow.MaskWBSetting()
    with pytest.raises(TypeError) as error:
        wb.nTint = 2 ** 31
    assert str(error.value) == "in method 'MaskWBSetting_nTint_set', argument 2 of type 'int'"
    wb.nTint = -2 ** 31
    assert wb.nTint == -2 ** 31


def test_negative_for_an_unsigned_field_overflows(shadow):
    motion = shadow.BlurSettingMotion()
    with pytest.raises(OverflowError) as error:
        motion.Strength = -1
    assert str(error.value) == "in method 'BlurSettingMotion_Strength_set', argument 2 of type 'UINT32'"
    motion.Strength = 2 ** 32 - 1
    assert motion.Strength == 2 ** 32 - 1
    with pytest.raises(TypeError):
        motion.Strength = 2 ** 32


def test_long_long_field_takes_any_64_bit_integer(shadow):
    stamp = shadow.LumiarProertySetting()
    stamp.llTimeStamp = -2 ** 63
    assert stamp.llTimeStamp == -2 ** 63
    with pytest.raises(TypeError) as error:
        stamp.llTimeStamp = 2 ** 63
    assert str(error.value) == \
        "in method 'LumiarProertySetting_llTimeStamp_set', argument 2 of type 'LONGLONG'"


def test_double_field_takes_integers(shadow):
    point = shadow.PointD()
    point.x = 3
    assert point.x == 3.0 and type(point.x) is float
    with pytest.raises(TypeError) as error:
        point.y = "1"
    assert str(error.value) == "in method 'PointD_y_set', argument 2 of type 'double'"


def test_bool_field_takes_an_integer_non_zero_being_true(shadow):
    ellipse = shadow.tEllipseSetting()
    ellipse.bInverse = 5
    assert ellipse.bInverse is True
    ellipse.bInverse = 0
    assert ellipse.bInverse is False
    with pytest.raises(TypeError) as error:
        ellipse.bInverse = "yes"
    assert str(error.value) == "in method 'tEllipseSetting_bInverse_set', argument 2 of type 'bool'"


def test_enumerated_field_takes_its_values(module, shadow):
    blur = shadow.MaskLensBlurSetting()
    blur.eBlurType = module.BLUR_TYPE_MOTION
    assert blur.eBlurType == 4
    with pytest.raises(TypeError):
        blur.eBlurType = 2 ** 40


@pytest.mark.parametrize("entry,args,type_text", [
    ("PointD_x_get", (), "PointD *"),
    ("PointD_x_set", (1.0,), "PointD *"),
    ("FeaturePoints_lBrow_get", (), "FeaturePoints *"),
    ("HistogramDist_HistogramR_set", (None,), "HistogramDist *"),
    ("PerformanceResult_pPerfName_set", ("name",), "PerformanceResult *"),
    ("RectD_Width", (), "RectD const *"),
    ("LensCorrectParams_bIsZeroParams", (), "LensCorrectParams const *"),
    ("CHistogramDist_AddRef", (), "CHistogramDist *"),
    ("CHistogramDist_Release", (), "CHistogramDist *"),
    ("PyClipGrade_GetDspAgentPtr", (), "PyClipGrade *"),
    ("PyClipGrade_DumpTask", (), "PyClipGrade *"),
    ("PyClipGrade_DumpTask", (True,), "PyClipGrade *"),
])
def test_none_as_the_object_is_a_null_reference(module, entry, args, type_text):
    with pytest.raises(ValueError) as error:
        getattr(module, entry)(None, *args)
    assert str(error.value) == \
        "invalid null reference in method '%s', argument 1 of type '%s'" % (entry, type_text)


@pytest.mark.parametrize("entry", ["delete_PointD", "delete_CHistogramDist", "delete_PyClipGrade"])
def test_deleting_none_deletes_nothing(module, entry):
    assert getattr(module, entry)(None) is None
