"""The record constructors as scripts call them: the overloads of the geometry
records, their failure texts, and the defaults of new records."""

import pytest

PROTOTYPES = {
    "RectD": ["RectD()", "RectD(RectD &)", "RectD(double,double,double,double)"],
    "PointD": ["PointD()", "PointD(PointD &)", "PointD(double,double)"],
    "Brow": ["Brow()", "Brow(PointD &,PointD &,PointD &,PointD &)", "Brow(Brow const &)"],
    "Eye": ["Eye()", "Eye(PointD &,PointD &,PointD &,PointD &,PointD &)", "Eye(Eye const &)"],
    "Nose": ["Nose()", "Nose(PointD &,PointD &,PointD &,PointD &)", "Nose(Nose const &)"],
    "Mouth": ["Mouth()", "Mouth(" + ",".join(["PointD &"] * 12) + ")", "Mouth(Mouth const &)"],
    "Ear": ["Ear()", "Ear(PointD &,PointD &)", "Ear(Ear const &)"],
    "FaceOutline": ["FaceOutline()",
                    "FaceOutline(PointD &,PointD &,PointD &,PointD &,PointD &,Ear &,Ear &)",
                    "FaceOutline(FaceOutline const &)"],
}
FULL_COUNT = {"RectD": 4, "PointD": 2, "Brow": 4, "Eye": 5, "Nose": 4, "Mouth": 12, "Ear": 2,
              "FaceOutline": 7}


def overload_text(cls):
    return ("Wrong number of arguments for overloaded function 'new_%s'.\n"
            "  Possible C/C++ prototypes are:\n" % cls +
            "".join("    %s\n" % p for p in PROTOTYPES[cls]))


@pytest.mark.parametrize("cls", list(PROTOTYPES))
def test_no_fitting_overload_raises_not_implemented(shadow, cls):
    with pytest.raises(NotImplementedError) as error:
        getattr(shadow, cls)(*([1.0] * (FULL_COUNT[cls] + 1)))
    assert str(error.value) == overload_text(cls)


def test_rectd_text_lists_its_three_forms(shadow):
    with pytest.raises(NotImplementedError) as error:
        shadow.RectD("abc")
    assert str(error.value) == (
        "Wrong number of arguments for overloaded function 'new_RectD'.\n"
        "  Possible C/C++ prototypes are:\n    RectD()\n    RectD(RectD &)\n"
        "    RectD(double,double,double,double)\n")


@pytest.mark.parametrize("cls", ["Brow", "Eye", "Nose", "Mouth", "Ear"])
def test_null_point_reference_raises_value_error(shadow, cls):
    points = [shadow.PointD()] * FULL_COUNT[cls]
    points[1] = None
    with pytest.raises(ValueError) as error:
        getattr(shadow, cls)(*points)
    assert str(error.value) == \
        "invalid null reference in method 'new_%s', argument 2 of type 'PointD &'" % cls


def test_null_first_point_of_a_brow(shadow):
    p = shadow.PointD()
    with pytest.raises(ValueError) as error:
        shadow.Brow(None, p, p, p)
    assert str(error.value) == "invalid null reference in method 'new_Brow', argument 1 of type 'PointD &'"


def test_null_ear_of_a_face_outline(shadow):
    p = shadow.PointD()
    with pytest.raises(ValueError) as error:
        shadow.FaceOutline(p, p, p, p, p, shadow.Ear(), None)
    assert str(error.value) == \
        "invalid null reference in method 'new_FaceOutline', argument 7 of type 'Ear &'"


@pytest.mark.parametrize("cls,ref", [("RectD", "RectD &"), ("PointD", "PointD &"),
                                     ("Brow", "Brow const &"), ("Ear", "Ear const &")])
def test_null_copy_source_raises_value_error(shadow, cls, ref):
    with pytest.raises(ValueError) as error:
        getattr(shadow, cls)(None)
    assert str(error.value) == \
        "invalid null reference in method 'new_%s', argument 1 of type '%s'" % (cls, ref)


def test_rectd_forms(shadow):
    empty = shadow.RectD()
    assert (empty.left, empty.top, empty.right, empty.bottom) == (0.0, 0.0, 0.0, 0.0)
    r = shadow.RectD(1, 2.5, 4, 8)
    copy = shadow.RectD(r)
    r.left = 100.0
    assert (copy.left, copy.top, copy.right, copy.bottom) == (1.0, 2.5, 4.0, 8.0)
    assert copy.Width() == 3.0
    assert copy.Height() == 5.5


def test_pointd_forms(shadow):
    assert (shadow.PointD().x, shadow.PointD().y) == (0.0, 0.0)
    p = shadow.PointD(1.5, -2.0)
    q = shadow.PointD(p)
    p.x = 0.0
    assert (q.x, q.y) == (1.5, -2.0)


def test_face_part_value_form_copies_the_points(shadow):
    top, bottom = shadow.PointD(1, 2), shadow.PointD(3, 4)
    ear = shadow.Ear(top, bottom)
    top.x = 50.0
    assert (ear.top.x, ear.bottom.y) == (1.0, 4.0)
    copy = shadow.Ear(ear)
    ear.top.x = 9.0
    assert copy.top.x == 1.0


def test_wrong_type_in_a_value_form_finds_no_overload(shadow):
    with pytest.raises(NotImplementedError):
        shadow.Ear(shadow.PointD(), 3)


def test_points_equal_within_the_tolerance(shadow):
    assert shadow.PointD(1.0, 2.0) == shadow.PointD(1.0009, 2.0)
    assert not (shadow.PointD(1.0, 2.0) == shadow.PointD(1.0011, 2.0))
    assert shadow.PointD(1.0, 2.0) != shadow.PointD(1.0011, 2.0)


def test_feature_points_equality_leaves_out_the_mask(shadow):
    a, b = shadow.FeaturePoints(), shadow.FeaturePoints()
    b.nMaskID = 7
    assert a == b
    b.mouth.toplip1.y = 1.0
    assert a != b


def test_roi_equality_leaves_out_the_angle(shadow):
    # ROI has no script constructor; the one embedded in a raw mask serves.
    a = shadow.tRawMaskSetting()
    b = shadow.tRawMaskSetting()
    b.rectROI.fAngle = 30.0
    assert a.rectROI == b.rectROI
    b.rectROI.nHeight = 2
    assert a.rectROI != b.rectROI


def test_blur_circular_differing_in_direction_is_not_equal(shadow):
    a, b = shadow.BlurSettingCircular(), shadow.BlurSettingCircular()
    assert a == b
    b.fBlurDirection = 0.5
    assert not (a == b)
    assert a != b


def test_histogram_reference_count(shadow):
    h = shadow.CHistogramDist()
    assert h.m_pHisdist.bGammaEncode is True
    assert h.m_pHisdist.nTotalCount == 0
    assert h.AddRef() == 2
    assert h.Release() == 1


def test_histogram_made_and_released_once_returns_zero(module):
    h = module.new_CHistogramDist()
    assert module.CHistogramDist_Release(h) == 0


def test_new_records_have_their_defaults(module, shadow):
    wb = shadow.MaskWBSetting()
    assert (wb.nTemperature, wb.nWhitePointTemperature) == (0, 5000)
    assert shadow.MaskToothSetting().nToothThreshold == -1
    assert shadow.MaskSharpnessSetting().fSharpnessRadius == 12.0
    grain = shadow.MaskGrainSetting()
    assert (grain.dAmount, grain.dRadius, grain.dStrength, grain.nMaskID) == (0.0, 25.0, 50.0, -1)
    assert shadow.LinearFocusMaskSetting().fAngle == 1.0
    assert shadow.CircleFocusMaskSetting().fAspectRatio == 1.0
    assert shadow.MeshDataInfo().meshData.eMeshMode == module.MESHMODE_REGULAR_UPDATE
    assert shadow.tRawMaskSetting().mask.ePixelFormat == module.PIXEL_ARGB32
    curve = shadow.ToneCurveSetting().ChannelSetting
    assert (curve.fQ1Pivot, curve.fQ2Pivot, curve.fQ3Pivot, curve.nMaxValue) == \
        (0.25, 0.5, 0.75, 65535)


def test_mask_info_reports_its_type_unset(shadow):
    assert shadow.LiquifyMaskInfo().InfoType == 86
    assert shadow.BaseMaskInfo().InfoType == 0


def test_records_a_script_only_receives_have_no_constructor(shadow):
    with pytest.raises(AttributeError):
        shadow.ROI()
    with pytest.raises(AttributeError):
        shadow.HistogramDist()
