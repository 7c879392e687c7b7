// The record classes as scripts see them: one getter and one setter for each
// field, a constructor for the records a script may make, a destructor and a
// registration for all. A getter of an embedded record or an array returns a
// view into the outer record; a setter copies.

%{
#include "engine/records/brush_records.h"
%}

// Records that a script can only receive or read, never make.
%nodefaultctor ROI;
%nodefaultctor SingleFaceEyeEnlargeSetting;
%nodefaultctor SingleFaceThinningSetting;
%nodefaultctor SingleFaceEyeBagRemovalSetting;
%nodefaultctor RawInfo;
%nodefaultctor BufferData;
%nodefaultctor BufferDataChunk;
%nodefaultctor PixelBuffer;
%nodefaultctor IntPixelBuffer;
%nodefaultctor ColorSpace;
%nodefaultctor PixelInfo;
%nodefaultctor OutputBufferSetting;
%nodefaultctor HistogramDist;
%nodefaultctor OutputHistogramSetting;
%nodefaultctor PerformanceResult;
%nodefaultctor oclDevInfo;
%nodefaultctor WBSetting;
%nodefaultctor ToneSetting;
%nodefaultctor HDRSetting;
%nodefaultctor ToneMappingInfo;
%nodefaultctor ToneLevelSetting;
%nodefaultctor ToneLevelRGBSetting;
%nodefaultctor ToneCurveRGBSetting;
%nodefaultctor ClaritySetting;
%nodefaultctor SaturationSetting;
%nodefaultctor VibranceSetting;
%nodefaultctor SharpenSetting;
%nodefaultctor DeNoiseSetting;
%nodefaultctor GrainSetting;
%nodefaultctor HSLColorSetting;
%nodefaultctor BWLuminanceSetting;
%nodefaultctor ColorReplaceSetting;
%nodefaultctor ColorsplashSetting;
%nodefaultctor HueShiftSetting;
%nodefaultctor SplitToneEffectSetting;
%nodefaultctor SkinToneSetting;
%nodefaultctor OvUdExposureSetting;
%nodefaultctor VignetteSetting;
%nodefaultctor LensCorrectParams;
%nodefaultctor AutoLensCorrectSetting;
%nodefaultctor LensCorrectSetting;
%nodefaultctor WarppedPointSetting;
%nodefaultctor CameraCorrectSetting;
%nodefaultctor CameraCorrectTable;
%nodefaultctor CropRotateSetting;
%nodefaultctor RedEyeRecoverySetting;
%nodefaultctor RedEyeDetectionSetting;
%nodefaultctor MaskBWSetting;
%nodefaultctor MaskColorsplashSetting;
%nodefaultctor MaskAdjustmentSetting;
%nodefaultctor MaskToneSettingArray;
%nodefaultctor MaskSaturationSettingArray;
%nodefaultctor MaskClaritySettingArray;
%nodefaultctor MaskSharpnessSettingArray;
%nodefaultctor MaskWBSettingArray;
%nodefaultctor MaskHSLSettingArray;
%nodefaultctor MaskColorRepSettingArray;
%nodefaultctor MaskDeNoiseSettingArray;
%nodefaultctor MaskBWTintSettingArray;
%nodefaultctor MaskBlurSettingArray;
%nodefaultctor GradientMaskSetting;
%nodefaultctor GradientSetting;
%nodefaultctor EllipseMaskSetting;
%nodefaultctor ShowMaskSetting;
%nodefaultctor SkinSmoothSetting;
%nodefaultctor MaskCorrectSetting;
%nodefaultctor SpotRemoveSetting;
%nodefaultctor ObjectCloneSetting;
%nodefaultctor WrinkleRemovalSetting;
%nodefaultctor BrushPointSetting;
%nodefaultctor LiquifyPointSetting;
%nodefaultctor BrushPointArray;
%nodefaultctor BrushSetting;
%nodefaultctor SelectionLine;
%nodefaultctor SelectionLineSet;
%nodefaultctor LiquifySetting;
%nodefaultctor MeshPoint;
%nodefaultctor MeshWarpSetting;

// The geometry records take their copying form by plain reference.
%ignore RectD::RectD(RectD const &);
%ignore PointD::PointD(PointD const &);
%ignore *::operator=;

// Scripts read the level pivots in place and never assign the array.
%immutable ToneLevelSetting::ChannelPivot;

// The constructors of the geometry records are told apart by argument count.
// A None where a point or a record is expected still selects its overload, and
// the conversion then refuses the null reference with ValueError
// "invalid null reference in method 'new_Brow', argument 1 of type 'PointD &'".
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER, noblock=1)
    RectD &, PointD &, Ear &, Brow const &, Eye const &, Nose const &, Mouth const &,
    Ear const &, FaceOutline const & {
  $1 = ($input == Py_None) ||
       SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor, SWIG_POINTER_NO_NULL));
}

// An array field is set from a wrapped array of its element type, all of its
// elements copied; a source of another type or length is refused with the field's own
// name and type, as a null source is.
%typemap(in, noblock=1) SWIGTYPE [ANY] (void *argp = 0, int res = 0),
                        SWIGTYPE [ANY][ANY] (void *argp = 0, int res = 0) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, %convertptr_flags);
  if (!SWIG_IsOK(res)) {
    %variable_fail(res, "$type", "$1_name");
  }
  // An array of another length is another type, and a pointer of unknown
  // extent cannot be copied from.
  if (argp && !pcg_ViewSpans($input, $1_dim0)) {
    %variable_fail(SWIG_TypeError, "$type", "$1_name");
  }
  $1 = %reinterpret_cast(argp, $ltype);
}

// A script-made histogram holds the one reference its constructor took: the
// wrapper gives it back when it goes, rather than deleting an object others
// may still hold. A Release() through the wrapper that frees the object
// leaves the wrapper owning nothing and pointing at nothing, so that it is
// not given back twice and later calls are refused as on a null object.
%warnfilter(302) CHistogramDist::~CHistogramDist;
%extend CHistogramDist {
  ~CHistogramDist() {
    if ($self) $self->Release();
  }
}
%exception CHistogramDist::Release {
  $action
  if (result == 0) {
    SwigPyObject* pcgThis = SWIG_Python_GetSwigThis(swig_obj[0]);
    if (pcgThis) {
      pcgThis->own = 0;
      pcgThis->ptr = 0;
    }
  }
}

// The histogram owns its block: assigning copies another histogram's values
// into it, so no block is shared between two owners or lost, and None, which
// has no values, is refused as for an embedded record.
%typemap(memberin, noblock=1) HistogramDist *m_pHisdist {
  if (!$input) {
    %variable_nullref("$type", "$1_name");
  }
  if ($1 == 0) {
    $1 = new (std::nothrow) HistogramDist(*$input);
    if ($1 == 0) {
      PyErr_NoMemory();
      SWIG_fail;
    }
  } else if ($1 != $input) {
    *$1 = *$input;
  }
}

// The type words and the one helper count are the code's, not the script's.
%ignore RECT;
%ignore TONE_LEVEL_CHANNEL_COUNT;

%include "engine/records/record_types.h"
%include "engine/records/image_records.h"
%include "engine/records/effect_records.h"
%include "engine/records/mask_records.h"
%include "engine/records/brush_records.h"

%typemap(in) SWIGTYPE [ANY], SWIGTYPE [ANY][ANY];
