"""Type stub of the script surface of the colour-grading engines (module PyClipGrade)."""
from typing import Any, Callable, Dict, List, Optional

MAX_CHAR_SIZE: int
MAX_8BITS_VALUE: int
MAX_16BITS_VALUE: int
HISTOGRAM_SIZE: int
MAX_HISTOGRAM_VALUE: int
TONE_PIVOT_COUNT: int
TONE_CONTROL_POINT_COUNT: int
TONE_MAX_TABLE_SIZE: int
TONE_LEVEL_MAX_PIVOT: int
TONE_CURVE_MAX: float
FREE_TONECURVE_PIVOT_COUNT: int
MAX_MASK_COUNT: int
MAX_MASK_ARRAY_COUNT: int
TONE_MAX_MASK_WEIGHTING: int
MASK_SHARPNESS_RADIUS: int
MID_SHARPRADIUS: int
DEFAULT_TEMPERATURE: int
DEFAULT_TINT: int
pi: float
cmpthreashold: float
ALPHA_MATTING_CONFIRM_COMPLETE: int
OCL_NAME_MAX: int
ERR_FACILITY_IMAGERETOUCH: int
TONE_MAX_EXPOSURE: float
TONE_MIN_EXPOSURE: float
TONE_MAX_RECOVERY: float
TONE_MIN_RECOVERY: float
TONE_MAX_FILLLIGHT: float
TONE_MIN_FILLLIGHT: float
TONE_MAX_WHITEPOINT: float
TONE_MIN_WHITEPOINT: float
TONE_MAX_BLACKPOINT: float
TONE_MIN_BLACKPOINT: float
TONE_MAX_BRIGHTNESS: float
TONE_MIN_BRIGHTNESS: float
TONE_MAX_CONTRAST: float
TONE_MIN_CONTRAST: float
TONE_MAX_CLARITY: float
TONE_MIN_CLARITY: float
TONE_MAX_SATURATION: float
TONE_MIN_SATURATION: float
TONE_MAX_VIBRANCY: float
TONE_MIN_VIBRANCY: float
TONE_MAX_VIBRANCE: float
TONE_MIN_VIBRANCE: float
TONE_MAX_DODGEBURN: int
TONE_MIN_DODGEBURN: int
MAX_TEMPERATURE: int
MIN_TEMPERATURE: int
MAX_TINT: int
MIN_TINT: int
MAX_REDEYEDARKENLEVEL: float
MIN_REDEYEDARKENLEVEL: float
MAX_SHARPAMOUNT: int
MIN_SHARPAMOUNT: int
MAX_SHARPRADIUS: int
MIN_SHARPRADIUS: int
MAX_SHARPTHRESHOLD: int
MIN_SHARPTHRESHOLD: int
MAX_SHARPMASKING: int
MIN_SHARPMASKING: int
MAX_OVUDEXPOSUREPARAMRANGE: int
MIN_OVUDEXPOSUREPARAMRANGE: int
MAX_SPOTOPACITY: int
MIN_SPOTOPACITY: int
MAX_SPOTFEATHER: int
MIN_SPOTFEATHER: int
MAX_SPOTSIZE: int
MIN_SPOTSIZE: int
MAX_HSL_EFFECT: float
MIN_HSL_EFFECT: float
MAX_VIGNETTE_AMOUNT: float
MIN_VIGNETTE_AMOUNT: float
MAX_VIGNETTE_MIDPOINT: float
MIN_VIGNETTE_MIDPOINT: int
MAX_VIGNETTE_FEATHER: float
MIN_VIGNETTE_FEATHER: int
MAX_VIGNETTE_ROUNDNESS: float
MIN_VIGNETTE_ROUNDNESS: float
MAX_MASK_SHARPNESS: float
MIN_MASK_SHARPNESS: float
MAX_BRUSH_FLOW: float
MIN_BRUSH_FLOW: int
MAX_ELLIPSE_FEATHER: float
MIN_ELLIPSE_FEATHER: int
MAX_MASKFEATHER: int
MIN_MASKFEATHER: int
MAX_MASKSCALE: int
MIN_MASKSCALE: int
MAX_GRAIN_AMOUNT: int
MIN_GRAIN_AMOUNT: int
MAX_GRAIN_RADIUS: int
MIN_GRAIN_RADIUS: int
MAX_GRAIN_STRENGTH: int
MIN_GRAIN_STRENGTH: int
MAX_HUE_SHIFT: float
MIN_HUE_SHIFT: float
MAX_EYEENLARGE_AMOUNT: int
MIN_EYEENLARGE_AMOUNT: int
MAX_FACETHINNING_AMOUNT: int
MIN_FACETHINNING_AMOUNT: int
MAX_EYEBAGREV_AMOUNT: int
MIN_EYEBAGREV_AMOUNT: int
RETOUCH_PROPERTY_SET_INTERNAL_INPLACE: int
RETOUCH_PROPERTY_SET_ENABLE_CACHEIMAGE: int
RETOUCH_PROPERTY_SET_ENABLE_BLOCK: int
RETOUCH_PROPERTY_SET_ENABLE_MULTITHREAD: int
RETOUCH_PROPERTY_SET_ENABLE_CACHEDATA: int
RETOUCH_PROPERTY_SET_ENABLE_FASTMASK: int
RETOUCH_PROPERTY_SET_PREVIEW_MODE: int
RETOUCH_PROPERTY_SET_VIDEO_MODE: int
RETOUCH_PROPERTY_SET_ENABLE_SBMT: int
RETOUCH_PROPERTY_SET_ENABLE_OCL: int
RETOUCH_PROPERTY_SET_ENABLE_PERF: int
RETOUCH_PROPERTY_SET_FGE_EFFECT_DATA: int
RETOUCH_PROPERTY_SET_PERFORMANCE_MODE: int
RETOUCH_PROPERTY_SET_ENABLE_AVX2: int
RETOUCH_PROPERTY_SET_THREAD_AFFINITYMASK: int
RETOUCH_PROPERTY_SET_MAX_EFFECTTHREAD: int
RETOUCH_PROPERTY_SET_OCL_DEVICE_VERION: int
EFFECT_VERSION_UNKNOWN: int
EFFECT_VERSION_3: int
EFFECT_VERSION_4: int
EFFECT_VERSION_5: int
EFFECT_VERSION_6: int
EFFECT_VERSION_7: int
EFFECT_VERSION_8: int
EFFECT_VERSION_LATEST: int
EFFECT_MODE_NORMAL: int
EFFECT_MODE_OCL: int
PERFORMANCE_FIRST: int
MEMORY_FIRST: int
COLOR_DEPTH_8BIT: int
COLOR_DEPTH_16BIT: int
PIXEL_RGB24: int
PIXEL_RGB48: int
PIXEL_ARGB32: int
PIXEL_ARGB64: int
PIXEL_GRAY8: int
PIXEL_GRAY16: int
VX_PIXEL_1BYTES: int
VX_PIXEL_3BYTES: int
VX_PIXEL_4BYTES: int
VX_PIXEL_6BYTES: int
VX_PIXEL_8BYTES: int
Hue_None: int
Hue_Red: int
Hue_Orange: int
Hue_Yellow: int
Hue_Green: int
Hue_Aqua: int
Hue_Blue: int
Hue_Purple: int
Hue_Magenta: int
Hue_COLOR_COUNT: int
COLOR_CHANNEL_START: int
CHANNEL_R: int
CHANNEL_G: int
CHANNEL_B: int
COLOR_CHANNEL_COUNT: int
Ref_Backward: int
Ref_Forward: int
sRGB_SPACE: int
ROMMRGB_SPACE: int
YUV_SPACE: int
HSV_SPACE: int
HSL_SPACE: int
XYZ_SPACE: int
LAB_SPACE: int
MASK_SPACE: int
sRGB64_SPACE: int
RAWDATA_SRC_JPEG: int
RAWDATA_SRC_DCRAW: int
RAWDATA_SRC_SDK: int
STROKE_ADD: int
STROKE_SUBTRACT: int
STROKE_FOREGROUND: int
STROKE_BACKGROUND: int
CONFIRM: int
RESTORE: int
BLUR_TYPE_NORMAL: int
BLUR_TYPE_BOKEH: int
BLUR_TYPE_CIRCULAR: int
BLUR_TYPE_ZOOM: int
BLUR_TYPE_MOTION: int
BOKEH_PROCESS_PREVIEW: int
BOKEH_PROCESS_PRODUCTION: int
BOKEH_SHAPE_TYPE_CIRCLE: int
BOKEH_SHAPE_TYPE_HEART: int
BOKEH_SHAPE_TYPE_CROSS: int
BOKEH_SHAPE_TYPE_STAR: int
SHARP_DEFAULT_OUTPUT: int
SHARP_DIFF_AMOUNT_OUTPUT: int
SHARP_DIFF_RADIUS_OUTPUT: int
SHARP_DIFF_THRESHOLD_OUTPUT: int
SHARP_DIFF_MASK_OUTPUT: int
SHARP_MODE_DEFAULT: int
SHARP_MODE_DIFF_AMOUNT: int
SHARP_MODE_DIFF_RADIUS: int
SHARP_MODE_DIFF_THRESHOLD: int
SHARP_MODE_DIFF_MASK: int
NONE: int
WEINER: int
VXWAVELET: int
SIMILARITY: int
VXDENOISE: int
VIGNETTE_NO_CROP: int
VIGNETTE_POST_CROP: int
LIQUIFY_NONE: int
LIQUIFY_WARP: int
LIQUIFY_BLOAT: int
LIQUIFY_PUCKER: int
LIQUIFY_RECOVER: int
LIQUIFY_PROTECTED: int
LIQUIFY_CW: int
LIQUIFY_CCW: int
MESH_REGULAR: int
MESH_SMART: int
MESHMODE_REGULAR_UPDATE: int
MESHMODE_REGULAR_RESET: int
MESHMODE_SMART_ADD: int
MESHMODE_SMART_DELETE: int
MESHMODE_SMART_UPDATE: int
SPOT_CLONE: int
SPOT_HEAL: int
SPOT_REMOVAL_CLONE: int
SPOT_REMOVAL_HEAL: int
OBJECT_CLONE: int
OBJECT_REMOVAL: int
OBJECT_OP_MODE_CLONE: int
OBJECT_OP_MODE_REMOVAL: int
OBJECT_BLENDSTYLE_PRODUCTION: int
OBJECT_BLENDSTYLE_PREVIEW: int
OBJECT_BLENDSTYLE_COPY_PASTE: int
PRODUCTION: int
PREVIEW: int
NO_BLENDING: int
EYE_BAG_PREVIEW: int
EYE_BAG_PRODUCTION: int
MASK_UNION: int
MASK_INTERSECT: int
MASK_LENSCORRECT: int
MASK_CROPROTATE: int
MASK_FEATHER: int
MASK_SCALE: int
SELECTION_TYPE_LINES: int
SELECTION_TYPE_BUFFER: int
INFO_OUTPUT_BUFFER: int
INFO_HISTOGRAM: int
INFO_LEVEL_HISTOGRAM: int
INFO_LEVEL_RGB_HISTOGRAM: int
INFO_HSL_TAT_MAP: int
INFO_DETECT_AUTO_TONE: int
INFO_DETECT_AUTO_WB: int
INFO_DETECT_RED_EYE: int
INFO_DETECT_SPOT_REMOVAL: int
INFO_TONECURVE_MAP: int
INFO_SELECT_OUTPUT_BUFFER: int
INFO_DETECT_AUTO_CROP: int
INFO_TONE_CURVE_HISTOGRAM: int
INFO_TONE_CURVE_TAT_MAP: int
INFO_HISTOGRAM_PRESENTER: int
INFO_MASK: int
EDIT_ENGINE_SETTING_CACHE_IMAGE: int
EDIT_ENGINE_SETTING_CACHE_DATA: int
EDIT_ENGINE_SETTING_PREVIEW_MODE: int
ESM_IS_MASK: int
ESM_IS_INVERSE: int
ESM_NONMASK_POINTS: int
ESM_MASK_KEYFRAME_LIST: int
ESM_MASK_KEYFRAME_DURATION: int
ESM_MASK_KEYFRAME_POINTS: int
ESM_MASK_KEYFRAME_FEATHERS: int
ESM_MASK_KEYFRAME_CENTROID: int
ESM_MASK_KEYFRAME_FEATHER_SHIFTS: int
LINESTYLE_RAISE_NOW: int
LINESTYLE_LINEAR: int
LINESTYLE_RAISE_ON_NEXT: int
TRACKSTATE_STOP: int
TRACKSTATE_TRACKING: int
TRACKSTATE_PAUSE_WAIT_CONTINUE: int
TRACKSTATE_PAUSE_MASK_DIRTY: int
PERF_LEVEL_RUN_ALL_TASK_BLOCK: int
PERF_LEVEL_TASK_PREPARE: int
PERF_LEVEL_TASK_GENERAT_EEFFECT_DATA: int
PERF_LEVEL_TASK_SETUP: int
PERF_LEVEL_TASK_APPLY: int
PERF_LEVEL_TASK_SETUP_TO_APPLY: int
PERF_LEVEL_TASK_DETECTION: int
PERF_LEVEL_CUSTOMIZE: int
OCL_DEVICE_TYPE_DEFAULT: int
OCL_DEVICE_TYPE_CPU: int
OCL_DEVICE_TYPE_GPU: int
OCL_DEVICE_TYPE_ACCELERATOR: int
OCL_DEVICE_TYPE_ALL: int
OCL_1_0: int
OCL_1_1: int
OCL_1_2: int
OCL_2_0: int
OCL_2_1: int
FUNCTION_SET_GLOBAL: int
FUNCTION_SET_LOCAL: int
FUNCTION_GET: int
FUNCTION_DETECT: int
FUNCTION_INTERNAL: int
FUNCTION_EFFECTINFO: int
FUNCTION_SET_STATE: int
FUNCTION_FACEBEAUTIFY: int
VIDEOSPEC_SEQUENCED: int
FUNCTION_SET_BLACKWHITE: int
FUNCTION_SET_WB: int
FUNCTION_SET_WB_MASK: int
FUNCTION_SET_TONE: int
FUNCTION_SET_TONE_MASK: int
FUNCTION_SET_LEVEL: int
FUNCTION_SET_HSLCOLOR: int
FUNCTION_SET_SHARP: int
FUNCTION_SET_SHARP_MASK: int
FUNCTION_SET_NOISE: int
FUNCTION_SET_VIGNETTE: int
FUNCTION_SET_LENSCORRECT: int
FUNCTION_SET_CROPROTATE: int
FUNCTION_SET_CLARITY: int
FUNCTION_SET_CLARITY_MASK: int
FUNCTION_SET_SATURATION: int
FUNCTION_SET_SATURATION_MASK: int
FUNCTION_SET_POST_VIGNETTE: int
FUNCTION_SET_SHOW_MASK: int
FUNCTION_SET_LEVEL_RGB: int
FUNCTION_SET_WHITENTOOTH_MASK: int
FUNCTION_SET_DODGEBURN_MASK: int
FUNCTION_SET_TONECURVE: int
FUNCTION_SET_TONECURVE_RGB: int
FUNCTION_SET_BWTINT: int
FUNCTION_SET_BLACKWHITE_MASK: int
FUNCTION_SET_BLUR_MASK: int
FUNCTION_SET_SKINSMOOTH: int
FUNCTION_SET_LIGHT: int
FUNCTION_SET_HSLCOLOR_MASK: int
FUNCTION_SET_NOISE_MASK: int
FUNCTION_SET_EXPOSURE_MASK: int
FUNCTION_SET_LIQUIFY: int
FUNCTION_SET_COLORREPLACE: int
FUNCTION_SET_COLORREPLACE_MASK: int
FUNCTION_SET_HDR: int
FUNCTION_SET_SPLITTONE: int
FUNCTION_SET_CAMERACORRECT: int
FUNCTION_SET_SKINTONE: int
FUNCTION_SET_GRAIN: int
FUNCTION_SET_LENS_BLUR_MASK: int
FUNCTION_SET_BWTINT_MASK: int
FUNCTION_SET_MEAN_BLUR_MASK: int
FUNCTION_SET_COLORSPLASH: int
FUNCTION_SET_COLORSPLASH_MASK: int
FUNCTION_SET_HUESHIFT: int
FUNCTION_SET_CAMERACORRECT_EXPOSURE: int
FUNCTION_SET_SPOT: int
FUNCTION_SET_REDEYERECOVERY: int
FUNCTION_SET_GRADIENT: int
FUNCTION_SET_BRUSH: int
FUNCTION_SET_BRUSH_POINTS: int
FUNCTION_SET_ADD_BRUSH_POINT: int
FUNCTION_SET_APPLY_SPOT: int
FUNCTION_SET_OBJECTCLONE: int
FUNCTION_SET_APPLY_OBJECT: int
FUNCTION_SET_SELECTION_LINE: int
FUNCTION_SET_WRINKLEREMOVAL: int
FUNCTION_SET_MESHWARP: int
FUNCTION_SET_GENERATE_WARP: int
FUNCTION_SET_APPLY_WARP: int
FUNCTION_GET_BUFFER: int
FUNCTION_GET_HISTOGRAM: int
FUNCTION_GET_LEVEL_HISTOGRAM: int
FUNCTION_GET_HSL_TAT_MAP: int
FUNCTION_GET_DROP_TEMPERATURE: int
FUNCTION_GET_LEVEL_RGB_HISTOGRAM: int
FUNCTION_GET_TONECURVE_HISTOGRAM: int
FUNCTION_GET_TONECURVE_RGB_HISTOGRAM: int
FUNCTION_GET_LIGHTING_INFO: int
FUNCTION_GET_HDR_INFO: int
FUNCTION_GET_TONECURVE_TAT_MAP: int
FUNCTION_GET_OVUDEXPOSURE_IMAGE: int
FUNCTION_GET_SKINTONE_INFO: int
FUNCTION_GET_EYEBAGREMOVAL_INFO: int
FUNCTION_GET_COLORSPLASH_INFO: int
FUNCTION_GET_COLORSPLASH_INFO_MASK: int
FUNCTION_DETECT_AUTO_TONE: int
FUNCTION_DETECT_AUTO_WB: int
FUNCTION_DETECT_RED_EYE: int
FUNCTION_DETECT_SPOT_REMOVE: int
FUNCTION_DETECT_AUTO_DENOISE: int
FUNCTION_DETECT_AUTO_SATURATION: int
FUNCTION_INTERNAL_CACHE_BUFFER: int
FUNCTION_INTERNAL_NOISE_INFO: int
FUNCTION_INTERNAL_SHARPNESS_INFO: int
FUNCTION_INTERNAL_VIGNETTE_MASK: int
FUNCTION_INTERNAL_CREATE_BRUSH: int
FUNCTION_INTERNAL_LENSCORRECT: int
FUNCTION_INTERNAL_RELEASE_DENOISE: int
FUNCTION_INTERNAL_BLUR_INFO: int
FUNCTION_INTERNAL_GENERATE_OBJECT: int
FUNCTION_INTERNAL_GENERATE_SPOT: int
FUNCTION_EFFECTINFO_BMASK: int
FUNCTION_EFFECTINFO_GMASK: int
FUNCTION_EFFECTINFO_COMPMASK: int
FUNCTION_EFFECTINFO_RAWMASK: int
FUNCTION_EFFECTINFO_WARPMASK: int
FUNCTION_EFFECTINFO_MESHDATA: int
FUNCTION_EFFECTINFO_EMASK: int
FUNCTION_EFFECTINFO_FEATUREPOINTS: int
FUNCTION_EFFECTINFO_CIRCLEMASK: int
FUNCTION_EFFECTINFO_LINEARMASK: int
FUNCTION_SET_NEW_SEGMENT: int
FUNCTION_SET_LUMIAR_PROPERTY: int
FUNCTION_INTERNAL_CREATE_NOISE: int
FUNCTION_INTERNAL_CREATE_HDR: int
FUNCTION_SET_EYEENLARGE: int
FUNCTION_SET_FACETHINNING: int
FUNCTION_SET_EYEBAGREMOVAL: int
PY_SET_GLOBAL: int
PY_SET_GRADIENT_MASK: int
PY_SET_WB_AUTO: int
PY_SET_BRUSH_POINT: int
PY_SET_WB: int
PY_SET_MAGIC_SELECTION: int
PY_SET_BLACK_WHITE: int
PY_SET_SPOT_REMOVAL: int
PY_SET_TONE: int
PY_SET_REDEYERECOVERY: int
PY_SET_TONEMAPPING: int
PY_SET_OBJECT_CLONE: int
PY_SET_CLARITYLEVEL: int
PY_SET_OBJECT_CLONE_SELECTION: int
PY_SET_CROPROTATE: int
PY_SET_DODGE: int
PY_SET_LEVEL: int
PY_SET_DODGE_POINT: int
PY_SET_SHARPNESS: int
PY_SET_BURN: int
PY_SET_LUMA_NOISE: int
PY_SET_BURN_POINT: int
PY_SET_CHROMA_NOISE: int
PY_SET_TOOTH: int
PY_SET_CLARITY: int
PY_SET_TOOTH_POINT: int
PY_SET_VIBRANCY: int
PY_SET_SKIN_SMOOTH: int
PY_SET_HSL: int
PY_SET_SKIN_SMOOTH_POINT: int
PY_SET_VIGNETTE: int
PY_SET_WRINKLE_REMOVAL: int
PY_SET_POSTCROP_VIGNETTE: int
PY_SET_WRINKLE_SELECTION: int
PY_SET_BW_LUMINANCE: int
PY_SET_DODGEBURN: int
PY_SET_SHOW_MASK: int
PY_SET_PEBW: int
PY_SET_SATURATION: int
PY_SET_PEBW_POINT: int
PY_SET_HSL_VIB: int
PY_SET_PESEPIA: int
PY_SET_LEVEL_RGB: int
PY_SET_PESEPIA_POINT: int
PY_SET_NOISE: int
PY_SET_PETINT: int
PY_SET_TONE_CURVE: int
PY_SET_PETINT_POINT: int
PY_SET_LENS_CORRECTION: int
PY_SET_PEBLUR: int
PY_SET_COLORREPLACEMENT: int
PY_SET_PEBLUR_POINT: int
PY_SET_HDR: int
PY_SET_GRADIENT: int
PY_SET_TONE_CURVE_CHANNEL: int
PY_SET_BRUSH: int
PY_SET_TONE_CURVE_R: int
PY_SET_MAGIC: int
PY_SET_TONE_CURVE_G: int
PY_SET_ELLIPSE: int
PY_SET_TONE_CURVE_B: int
PY_SET_ELLIPSE_MASK: int
PY_SET_SPLITTONE: int
PY_SET_SELMASK: int
PY_SET_COLORSPLASH: int
PY_SET_SELMASK_POINT: int
PY_SET_COLORSHIFT: int
PY_SET_SELMASK_MASK: int
PY_SET_LOCAL: int
PY_SET_MOTIONTRACK_MASK: int
PY_SET_MASK_INFO: int
PY_SET_MASK_COLORREPLACEMENT: int
PY_SET_MASK_WB: int
PY_SET_MASK_PETINT: int
PY_SET_MASK_TONE: int
PY_SET_MASK_PEBLUR: int
PY_SET_MASK_CLARITY: int
PY_SET_MASK_COLORSPLASH: int
PY_SET_MASK_SATURATION: int
PY_SET_EFFECT_LOCAL_VERSION: int
PY_SET_MASK_HSL: int
PY_SET_EFFECT_VERSION: int
PY_SET_MASK_HSL_VIBRANCY: int
PY_SET_AUTO_SETTING: int
PY_SET_MASK_DENOISE: int
PY_SET_OPERATION: int
PY_SET_MASK_SHARP: int
VX_NPK_EFFECT_VERSION_LATEST: int
VX_NPK_EFFECT_VERSION_2: int
VX_NPK_EFFECT_VERSION_3: int
VX_NPK_EFFECT_VERSION_4: int
VX_NPK_EFFECT_VERSION_5: int
VX_NPK_EFFECT_VERSION_6: int
VX_NPK_EFFECT_VERSION_7: int
DSP_HVN_PARAM_COUNT: int
DSP_HVN_PARA_IDX_DSPINFO_PATH: int
DSP_HVN_PARA_IDX_TEMPPROJ_PATH: int
DSP_HVN_PARA_IDX_EFFECT_HASH_ID: int
DSP_HVN_PARA_IDX_LUT_HASH_ID: int
DSP_MT_PARAM_COUNT: int
DSP_MT_PARA_IDX_TEMPFILE_PATH: int
DSP_MT_PARA_IDX_VIDEO_ID: int
DSP_MT_PARA_IDX_MASK_ID: int
FUNCTION_ID_UNKNOWN: int
STR_EFFECT_VER: str
STR_ENABLE: str
STR_ENABLE_H: str
STR_ENABLE_S: str
STR_ENABLE_L: str
STR_BLACK_WHITE: str
STR_AUTO_TONE: str
STR_AUTO_WB: str
STR_ASPECT_RATIO: str
STR_WB_MODE: str
STR_WB_TEMPERATURE: str
STR_WB_TINT: str
STR_WB_WPTEMPERATURE: str
STR_WB_WPTINT: str
STR_TONE_EXPOSURE: str
STR_TONE_WHITES: str
STR_TONE_RECOVERY: str
STR_TONE_FILLLIGHT: str
STR_TONE_BLACKS: str
STR_TONE_BRIGHTNESS: str
STR_TONE_CONTRAST: str
STR_CLARITY: str
STR_SATURATION: str
STR_VIBRANCY_VIBRANCY: str
STR_LEVEL_PRESET: str
STR_LEVEL_RGB: str
STR_LEVEL_R: str
STR_LEVEL_G: str
STR_LEVEL_B: str
STR_HSL_HUE: str
STR_HSL_SATURATION: str
STR_HSL_LUMINANCE: str
STR_BW_LUMINANCE: str
STR_SHARP_AMOUNT: str
STR_SHARP_RADIUS: str
STR_SHARP_DETAIL: str
STR_SHARP_MASK: str
STR_SHARP_OUTPUT: str
STR_NOISE_AMOUNT: str
STR_LNOISE_AMOUNT: str
STR_LNOISE_DETAIL: str
STR_LNOISE_MASK: str
STR_LNOISE_RADIUS: str
STR_CNOISE_AMOUNT: str
STR_CNOISE_DETAIL: str
STR_CNOISE_MASK: str
STR_CNOISE_RADIUS: str
STR_REDEYE_DARKEN: str
STR_REDEYE_CENTER: str
STR_REDEYE_ANGLE: str
STR_REDEYE_INNER_SEMIXY: str
STR_REDEYE_OUTER_SEMIXY: str
STR_CROPROTATE: str
STR_CROPROTATE_RECT: str
STR_CROPROTATE_MANUAL_RECT: str
STR_CROPROTATE_ANGLE: str
STR_VIGNETTE_AMOUNT: str
STR_VIGNETTE_MIDPOINT: str
STR_VIGNETTE_FEATHER: str
STR_VIGNETTE_ROUNDNESS: str
STR_CROPROTATE_LOCK: str
STR_SPOT_SRC_XY: str
STR_SPOT_DST_XY: str
STR_SPOT_RADIUS: str
STR_SPOT_OPACITY: str
STR_SPOT_STYLE: str
STR_SPOT_FEATHER: str
STR_COLOR_REPLACEMENT: str
STR_COLOR_SPLASH: str
STR_COLOR_SHIFT: str
STR_HDR_GLOW_STRENGTH: str
STR_HDR_GLOW_RADIUS: str
STR_HDR_GLOW_BALANCE: str
STR_HDR_EDGE_STRENGTH: str
STR_HDR_EDGE_RADIUS: str
STR_HDR_EDGE_BALANCE: str
STR_SPLITTONE_LIGHT_HUE: str
STR_SPLITTONE_LIGHTS_SATURATION: str
STR_SPLITTONE_BALANCE: str
STR_SPLITTONE_DARK_HUE: str
STR_SPLITTONE_DARK_SATURATION: str
STR_PETINT_MASK_ID: str
STR_PETINT_MASK_HUE: str
STR_PETINT_MASK_AMOUNT: str
STR_PESEPIA_MASK_ID: str
STR_PESEPIA_MASK_RGB: str
STR_PESEPIA_MASK_AMOUNT: str
STR_MASK_ID: str
STR_MASK_INFO_INVERSE: str
STR_MASK_TYPE: str
STR_MASK_WB_WPTEMPERATURE: str
STR_MASK_WB_WPTINT: str
STR_MASK_WB_TEMPERATURE: str
STR_MASK_WB_TINT: str
STR_MASK_TONE_EXPOSURE: str
STR_MASK_TONE_BRIGHTNESS: str
STR_MASK_TONE_CONTRAST: str
STR_MASK_CLARITY_VALUE: str
STR_MASK_SATURATION_VALUE: str
STR_MASK_HSL_HUE: str
STR_MASK_HSL_SATURATION: str
STR_MASK_HSL_LUMINANCE: str
STR_MASK_COLORREPLACEMENT: str
STR_MASK_COLORSPLASH: str
STR_MASK_PETINT_HUE: str
STR_MASK_PETINT_AMOUNT: str
STR_MASK_PEBLUR_LEVEL: str
STR_MASK_VIBRANCY: str
STR_MASK_DENOISE_LN_AMOUNT: str
STR_MASK_DENOISE_LN_DETAIL: str
STR_MASK_DENOISE_CN_AMOUNT: str
STR_MASK_DENOISE_CN_DETAIL: str
STR_MASK_SHARP_AMOUNT: str
STR_GRADIENT_MASK_ID: str
STR_GRADIENT_MASK_MASKINFO: str
STR_MAGIC_SELECTION_MASK_ID: str
STR_MAGIC_SELECTION_POSXY: str
STR_MAGIC_SELECTION_FEATHER: str
STR_MAGIC_SELECTION_INVERSE: str
STR_MAGIC_SELECTION_LINES: str
STR_MAGIC_SELECTION_BUFFER: str
STR_MAGIC_SELECTION_TREXPRESS: str
STR_SHOW_MASK_TYPE: str
STR_SHOW_MASK_ID: str
STR_SHOW_MASK_COLOR: str
STR_SELMASK_ADD: str
STR_SELMASK_MASK_ID: str
STR_SELMASK_POINT_ID: str
STR_SELMASK_POINT_INFO: str
STR_ELLIPSE_MASK_ID: str
STR_ELLIPSE_INFO: str
STR_ELLIPSE_FEATHER: str
STR_ELLIPSE_INVERSE: str
STR_DODGE_MASK_ID: str
STR_DODGE_MASK_EXPOSURE: str
STR_DODGE_MASK_SATURATION: str
STR_BURN_MASK_ID: str
STR_BURN_MASK_EXPOSURE: str
STR_BURN_MASK_SATURATION: str
STR_TOOTH_BRIGHTNESS: str
STR_TOOTH_THRESHOLD: str
STR_TOOTH_MASK_ID: str
STR_SKINSMOOTH_AMOUNT: str
STR_SKINSMOOTH_DETAIL: str
STR_SKINSMOOTH_MASK_ID: str
STR_PEBW_MASK_ID: str
STR_PEBLUR_MASK_ID: str
STR_PEBLUR_MASK_LEVEL: str
STR_BRUSH_POINT_MASK_ID: str
STR_DODGE_POINT_MASK_ID: str
STR_BURN_POINT_MASK_ID: str
STR_TOOTH_POINT_MASK_ID: str
STR_SKINSMOOTH_POINT_MASK_ID: str
STR_PEBW_POINT_MASK_ID: str
STR_PESEPIA_POINT_MASK_ID: str
STR_PETINT_POINT_MASK_ID: str
STR_PEBLUR_POINT_MASK_ID: str
STR_BRUSH_POINT_XY: str
STR_DODGE_POINT_XY: str
STR_BURN_POINT_XY: str
STR_TOOTH_POINT_XY: str
STR_SKINSMOOTH_POINT_XY: str
STR_PEBW_POINT_XY: str
STR_PESEPIA_POINT_XY: str
STR_PETINT_POINT_XY: str
STR_PEBLUR_POINT_XY: str
STR_BRUSH_POINT_INNER_RADIUS: str
STR_DODGE_POINT_INNER_RADIUS: str
STR_BURN_POINT_INNER_RADIUS: str
STR_TOOTH_POINT_INNER_RADIUS: str
STR_SKINSMOOTH_POINT_INNER_RADIUS: str
STR_PEBW_POINT_INNER_RADIUS: str
STR_PESEPIA_POINT_INNER_RADIUS: str
STR_PETINT_POINT_INNER_RADIUS: str
STR_PEBLUR_POINT_INNER_RADIUS: str
STR_BRUSH_POINT_OUTER_RADIUS: str
STR_DODGE_POINT_OUTER_RADIUS: str
STR_BURN_POINT_OUTER_RADIUS: str
STR_TOOTH_POINT_OUTER_RADIUS: str
STR_SKINSMOOTH_POINT_OUTER_RADIUS: str
STR_PEBW_POINT_OUTER_RADIUS: str
STR_PESEPIA_POINT_OUTER_RADIUS: str
STR_PETINT_POINT_OUTER_RADIUS: str
STR_PEBLUR_POINT_OUTER_RADIUS: str
STR_BRUSH_POINT_FLOW: str
STR_DODGE_POINT_FLOW: str
STR_BURN_POINT_FLOW: str
STR_TOOTH_POINT_FLOW: str
STR_SKINSMOOTH_POINT_FLOW: str
STR_PEBW_POINT_FLOW: str
STR_PESEPIA_POINT_FLOW: str
STR_PETINT_POINT_FLOW: str
STR_PEBLUR_POINT_FLOW: str
STR_BRUSH_POINT_AUTO_MASK: str
STR_DODGE_POINT_AUTO_MASK: str
STR_BURN_POINT_AUTO_MASK: str
STR_TOOTH_POINT_AUTO_MASK: str
STR_SKINSMOOTH_POINT_AUTO_MASK: str
STR_PEBW_POINT_AUTO_MASK: str
STR_PESEPIA_POINT_AUTO_MASK: str
STR_PETINT_POINT_AUTO_MASK: str
STR_PEBLUR_POINT_AUTO_MASK: str
STR_BRUSH_POINT_ERASE: str
STR_DODGE_POINT_ERASE: str
STR_BURN_POINT_ERASE: str
STR_TOOTH_POINT_ERASE: str
STR_SKINSMOOTH_POINT_ERASE: str
STR_PEBW_POINT_ERASE: str
STR_PESEPIA_POINT_ERASE: str
STR_PETINT_POINT_ERASE: str
STR_PEBLUR_POINT_ERASE: str
STR_BRUSH_POINT_NEWSTROKE: str
STR_DODGE_POINT_NEWSTROKE: str
STR_BURN_POINT_NEWSTROKE: str
STR_TOOTH_POINT_NEWSTROKE: str
STR_SKINSMOOTH_POINT_NEWSTROKE: str
STR_PEBW_POINT_NEWSTROKE: str
STR_PESEPIA_POINT_NEWSTROKE: str
STR_PETINT_POINT_NEWSTROKE: str
STR_PEBLUR_POINT_NEWSTROKE: str
STR_BRUSH_POINT_STROKE_ID: str
STR_DODGE_POINT_STROKE_ID: str
STR_BURN_POINT_STROKE_ID: str
STR_TOOTH_POINT_STROKE_ID: str
STR_SKINSMOOTH_POINT_STROKE_ID: str
STR_PEBW_POINT_STROKE_ID: str
STR_PESEPIA_POINT_STROKE_ID: str
STR_PETINT_POINT_STROKE_ID: str
STR_PEBLUR_POINT_STROKE_ID: str
STR_BRUSH_POINT_LIST: str
STR_DODGE_POINT_LIST: str
STR_BURN_POINT_LIST: str
STR_TOOTH_POINT_LIST: str
STR_SKINSMOOTH_POINT_LIST: str
STR_PEBW_POINT_LIST: str
STR_PESEPIA_POINT_LIST: str
STR_PETINT_POINT_LIST: str
STR_PEBLUR_POINT_LIST: str
STR_TONE_CURVE_HIGHLIGHTS: str
STR_TONE_CURVE_CHANNEL_R_HIGHLIGHTS: str
STR_TONE_CURVE_CHANNEL_G_HIGHLIGHTS: str
STR_TONE_CURVE_CHANNEL_B_HIGHLIGHTS: str
STR_TONE_CURVE_LIGHTS: str
STR_TONE_CURVE_CHANNEL_R_LIGHTS: str
STR_TONE_CURVE_CHANNEL_G_LIGHTS: str
STR_TONE_CURVE_CHANNEL_B_LIGHTS: str
STR_TONE_CURVE_DARKS: str
STR_TONE_CURVE_CHANNEL_R_DARKS: str
STR_TONE_CURVE_CHANNEL_G_DARKS: str
STR_TONE_CURVE_CHANNEL_B_DARKS: str
STR_TONE_CURVE_SHADOWS: str
STR_TONE_CURVE_CHANNEL_R_SHADOWS: str
STR_TONE_CURVE_CHANNEL_G_SHADOWS: str
STR_TONE_CURVE_CHANNEL_B_SHADOWS: str
STR_TONE_CURVE_PQ1: str
STR_TONE_CURVE_CHANNEL_R_PQ1: str
STR_TONE_CURVE_CHANNEL_G_PQ1: str
STR_TONE_CURVE_CHANNEL_B_PQ1: str
STR_TONE_CURVE_PQ2: str
STR_TONE_CURVE_CHANNEL_R_PQ2: str
STR_TONE_CURVE_CHANNEL_G_PQ2: str
STR_TONE_CURVE_CHANNEL_B_PQ2: str
STR_TONE_CURVE_PQ3: str
STR_TONE_CURVE_CHANNEL_R_PQ3: str
STR_TONE_CURVE_CHANNEL_G_PQ3: str
STR_TONE_CURVE_CHANNEL_B_PQ3: str
STR_TONE_CURVE_PIVOTS: str
STR_TONE_CURVE_CHANNEL_R_PIVOTS: str
STR_TONE_CURVE_CHANNEL_G_PIVOTS: str
STR_TONE_CURVE_CHANNEL_B_PIVOTS: str
STR_LENS_CORRECTION: str
STR_LENS_CORRECTION_DISTORTION: str
STR_LENS_CORRECTION_VERTICAL: str
STR_LENS_CORRECTION_HORIZONTAL: str
STR_LENS_CORRECTION_CA_RED: str
STR_LENS_CORRECTION_CA_BLUE: str
STR_LENS_CORRECTION_AUTO_CROP: str
STR_LENS_CORRECTION_CROP_RECT: str
STR_OBJ_CLONE_MASK_TYPE: str
STR_OBJ_CLONE_MASK_ID: str
STR_OBJ_CLONE_SRC_ROI: str
STR_OBJ_CLONE_DST_ROI: str
STR_OBJ_CLONE_MODE: str
STR_OBJ_CLONE_SCALE: str
STR_OBJ_CLONE_BLEND_STYLE: str
STR_OBJ_CLONE_SELECTION_ID: str
STR_OBJ_CLONE_SELECTION_POINTS: str
STR_WRINKLE_REMOVAL_MASK_TYPE: str
STR_WRINKLE_REMOVAL_MASK_ID: str
STR_WRINKLE_REMOVAL_SRC_ROI: str
STR_WRINKLE_REMOVAL_DST_ROI: str
STR_WRINKLE_REMOVAL_MODE: str
STR_WRINKLE_REMOVAL_SCALE: str
STR_WRINKLE_REMOVAL_BLEND_STYLE: str
STR_WRINKLE_SELECTION_ID: str
STR_WRINKLE_SELECTION_POINTS: str
STR_TAT_MAP_WEIGHT_1: str
STR_TAT_MAP_WEIGHT_2: str
STR_TAT_MAP_HUE_COLOR_1: str
STR_TAT_MAP_HUE_COLOR_2: str
STR_ENABLE_CACHE_DATA: str
STR_ENABLE_CACHE_IMAGE: str
STR_IMAGE_SCALE: str
STR_WARPPED_POINT_XY: str
STR_WARPPED_POINT_RADIUS: str
STR_WARPPED_POINT_DISTANCE: str
STR_WARPPED_POINT_ANGLE: str
REG_ENABLE_KES_MULTITHREAD_KEY: str

class _ReadOnlyValues:
    """The read-only values: reading gives an int, assigning raises AttributeError."""
    PY_SET_GLOBAL: int
    PY_SET_GRADIENT_MASK: int
    PY_SET_WB_AUTO: int
    PY_SET_BRUSH_POINT: int
    PY_SET_WB: int
    PY_SET_MAGIC_SELECTION: int
    PY_SET_BLACK_WHITE: int
    PY_SET_SPOT_REMOVAL: int
    PY_SET_TONE: int
    PY_SET_REDEYERECOVERY: int
    PY_SET_TONEMAPPING: int
    PY_SET_OBJECT_CLONE: int
    PY_SET_CLARITYLEVEL: int
    PY_SET_OBJECT_CLONE_SELECTION: int
    PY_SET_CROPROTATE: int
    PY_SET_DODGE: int
    PY_SET_LEVEL: int
    PY_SET_DODGE_POINT: int
    PY_SET_SHARPNESS: int
    PY_SET_BURN: int
    PY_SET_LUMA_NOISE: int
    PY_SET_BURN_POINT: int
    PY_SET_CHROMA_NOISE: int
    PY_SET_TOOTH: int
    PY_SET_CLARITY: int
    PY_SET_TOOTH_POINT: int
    PY_SET_VIBRANCY: int
    PY_SET_SKIN_SMOOTH: int
    PY_SET_HSL: int
    PY_SET_SKIN_SMOOTH_POINT: int
    PY_SET_VIGNETTE: int
    PY_SET_WRINKLE_REMOVAL: int
    PY_SET_POSTCROP_VIGNETTE: int
    PY_SET_WRINKLE_SELECTION: int
    PY_SET_BW_LUMINANCE: int
    PY_SET_DODGEBURN: int
    PY_SET_SHOW_MASK: int
    PY_SET_PEBW: int
    PY_SET_SATURATION: int
    PY_SET_PEBW_POINT: int
    PY_SET_HSL_VIB: int
    PY_SET_PESEPIA: int
    PY_SET_LEVEL_RGB: int
    PY_SET_PESEPIA_POINT: int
    PY_SET_NOISE: int
    PY_SET_PETINT: int
    PY_SET_TONE_CURVE: int
    PY_SET_PETINT_POINT: int
    PY_SET_LENS_CORRECTION: int
    PY_SET_PEBLUR: int
    PY_SET_COLORREPLACEMENT: int
    PY_SET_PEBLUR_POINT: int
    PY_SET_HDR: int
    PY_SET_GRADIENT: int
    PY_SET_TONE_CURVE_CHANNEL: int
    PY_SET_BRUSH: int
    PY_SET_TONE_CURVE_R: int
    PY_SET_MAGIC: int
    PY_SET_TONE_CURVE_G: int
    PY_SET_ELLIPSE: int
    PY_SET_TONE_CURVE_B: int
    PY_SET_ELLIPSE_MASK: int
    PY_SET_SPLITTONE: int
    PY_SET_SELMASK: int
    PY_SET_COLORSPLASH: int
    PY_SET_SELMASK_POINT: int
    PY_SET_COLORSHIFT: int
    PY_SET_SELMASK_MASK: int
    PY_SET_LOCAL: int
    PY_SET_MOTIONTRACK_MASK: int
    PY_SET_MASK_INFO: int
    PY_SET_MASK_COLORREPLACEMENT: int
    PY_SET_MASK_WB: int
    PY_SET_MASK_PETINT: int
    PY_SET_MASK_TONE: int
    PY_SET_MASK_PEBLUR: int
    PY_SET_MASK_CLARITY: int
    PY_SET_MASK_COLORSPLASH: int
    PY_SET_MASK_SATURATION: int
    PY_SET_EFFECT_LOCAL_VERSION: int
    PY_SET_MASK_HSL: int
    PY_SET_EFFECT_VERSION: int
    PY_SET_MASK_HSL_VIBRANCY: int
    PY_SET_AUTO_SETTING: int
    PY_SET_MASK_DENOISE: int
    PY_SET_OPERATION: int
    PY_SET_MASK_SHARP: int
    VX_NPK_EFFECT_VERSION_LATEST: int
    VX_NPK_EFFECT_VERSION_2: int
    VX_NPK_EFFECT_VERSION_3: int
    VX_NPK_EFFECT_VERSION_4: int
    VX_NPK_EFFECT_VERSION_5: int
    VX_NPK_EFFECT_VERSION_6: int
    VX_NPK_EFFECT_VERSION_7: int
    DSP_HVN_PARAM_COUNT: int
    DSP_HVN_PARA_IDX_DSPINFO_PATH: int
    DSP_HVN_PARA_IDX_TEMPPROJ_PATH: int
    DSP_HVN_PARA_IDX_EFFECT_HASH_ID: int
    DSP_HVN_PARA_IDX_LUT_HASH_ID: int
    DSP_MT_PARAM_COUNT: int
    DSP_MT_PARA_IDX_TEMPFILE_PATH: int
    DSP_MT_PARA_IDX_VIDEO_ID: int
    DSP_MT_PARA_IDX_MASK_ID: int

cvar: _ReadOnlyValues

def ProcessCallback(facade: Optional[PyClipGrade]) -> None:
    """Runs the event loop of a facade on this thread until it is told to end; None returns at once."""
    ...

class RectD(object):
    thisown: bool
    left: float
    top: float
    right: float
    bottom: float
    def __init__(self, *args: Any) -> None: ...
    def Height(self) -> float: ...
    def Width(self) -> float: ...

class PointD(object):
    thisown: bool
    x: float
    y: float
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class ROI(object):
    thisown: bool
    nLeft: int
    nTop: int
    nWidth: int
    nHeight: int
    fAngle: float
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Brow(object):
    thisown: bool
    left: PointD
    top: PointD
    right: PointD
    bottom: PointD
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Eye(object):
    thisown: bool
    left: PointD
    top: PointD
    right: PointD
    bottom: PointD
    center: PointD
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Nose(object):
    thisown: bool
    left: PointD
    top: PointD
    right: PointD
    bottom: PointD
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Mouth(object):
    thisown: bool
    left: PointD
    right: PointD
    toplip1: PointD
    toplip2: PointD
    bottomlip1: PointD
    bottomlip2: PointD
    interptopleft: PointD
    interptopright: PointD
    interpbottomleft: PointD
    interpbottomright: PointD
    interpupperleft: PointD
    interpupperright: PointD
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Ear(object):
    thisown: bool
    top: PointD
    bottom: PointD
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class FaceOutline(object):
    thisown: bool
    chin: PointD
    left1: PointD
    left2: PointD
    right1: PointD
    right2: PointD
    lEar: Ear
    rEar: Ear
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class FeaturePoints(object):
    thisown: bool
    nMaskID: int
    lBrow: Brow
    rBrow: Brow
    lEye: Eye
    rEye: Eye
    nose: Nose
    mouth: Mouth
    faceOutline: FaceOutline
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class SingleFaceEyeEnlargeSetting(object):
    thisown: bool
    nAmount: int
    nMaskID: int

class EyeEnlargeSetting(object):
    thisown: bool
    pSettingArray: Optional[SingleFaceEyeEnlargeSetting]
    nArraySize: int
    def __init__(self, *args: Any) -> None: ...

class SingleFaceThinningSetting(object):
    thisown: bool
    nAmount: int
    nMaskID: int

class FaceThinningSetting(object):
    thisown: bool
    pSettingArray: Optional[SingleFaceThinningSetting]
    nArraySize: int
    def __init__(self, *args: Any) -> None: ...

class SingleFaceEyeBagRemovalSetting(object):
    thisown: bool
    nAmount: int
    nMaskID: int

class EyeBagRemovalSetting(object):
    thisown: bool
    pSettingArray: Optional[SingleFaceEyeBagRemovalSetting]
    nArraySize: int
    def __init__(self, *args: Any) -> None: ...

class QueryOriFeaturePointSetting(object):
    thisown: bool
    pEyeEnlargeSetting: Optional[EyeEnlargeSetting]
    pFaceThinningSetting: Optional[FaceThinningSetting]
    pFeaturePointsInfo: Optional[FeaturePointsInfo]
    pPt_InOut: Optional[PointD]
    def __init__(self, *args: Any) -> None: ...

class RawInfo(object):
    thisown: bool
    eRawDataSrcType: Any
    nBlackPoint: int
    nWhitePoint: int
    fCameraXYZMatrix: Any
    fDaylightMultiplyMatrix: Any
    fCameraMultiplyMatrix: Any
    fScaleMultiplyMatrix: Any
    bReserved: Any

class BufferData(object):
    thisown: bool
    pBuffer: Any
    nWidth: int
    nHeight: int
    nStride: int
    nColorDepth: int
    nChannelBoundary: int
    ePixelFormat: Any
    eColorSpace: Any
    rawInfo: RawInfo
    rectROI: Any
    bReserved: Any

class BufferDataChunk(object):
    thisown: bool
    ppBuffer: Any
    nWidth: int
    nHeight: int
    nStride: int
    nColorDepth: int
    nChannelBoundary: int
    ePixelFormat: Any
    eColorSpace: Any
    rawInfo: RawInfo
    rectROI: Any
    bReserved: Any

class PixelBuffer(object):
    thisown: bool
    pBuffer: Any
    pSrcBuffer: Any
    pOclBuffer: Any
    pSrcOclMem: int
    pOclMem: int
    nWidth: int
    nHeight: int
    nStride: int
    nColorDepth: int
    nChannelBoundary: int
    nChannelNumber: int
    rectROI: Any
    eColorSpace: Any
    rawInfo: RawInfo
    bReserved: Any

class IntPixelBuffer(object):
    thisown: bool
    pBuffer: Any
    pOclBuffer: Any
    nWidth: int
    nHeight: int
    nStride: int
    nColorDepth: int
    nChannelBoundary: int
    rectROI: Any
    bReserved: Any

class ColorSpace(object):
    thisown: bool
    nR: int
    nG: int
    nB: int
    eColorDepth: Any
    eColorSpace: Any

class PixelInfo(object):
    thisown: bool
    hueColor1: Any
    hueColor2: Any
    dWeight1: float
    dWeight2: float
    RGB: Any
    HSV: Any
    bGetROMMRGB: int
    bGetHSV: int
    ROMMRGB: Any
    dToneWeight: Any
    bReserved: Any

class OutputBufferSetting(object):
    thisown: bool
    pBuffer: Any
    ppBuffer: Any
    bBufferChunk: int
    nWidth: int
    nHeight: int
    nStride: int
    ePixelFormat: Any
    eColorSpace: Any
    bReserved: Any

class HistogramDist(object):
    thisown: bool
    HistogramR: Any
    HistogramG: Any
    HistogramB: Any
    HistogramL: Any
    nTotalCount: int
    nMaxHistogramR: int
    nMaxHistogramG: int
    nMaxHistogramB: int
    nMaxHistogramL: int
    nUnderExposureNumber: int
    nOverExposureNumber: int
    nOverThreshold: int
    nUnderThreshold: int
    bGammaEncode: bool
    bReserved: Any

class CHistogramDist(object):
    thisown: bool
    m_pHisdist: Optional[HistogramDist]
    def __init__(self, *args: Any) -> None: ...
    def AddRef(self) -> int: ...
    def Release(self) -> int: ...

class OutputHistogramSetting(object):
    thisown: bool
    pHistogram: Optional[HistogramDist]
    cropRotate: CropRotateSetting
    bReserved: Any

class PerformanceResult(object):
    thisown: bool
    pPerfName: Any
    dPerfTime: float
    ePerfLavel: Any

class oclDevInfo(object):
    thisown: bool
    nDeviceIdx: int
    llDeviceType: int
    nDeviceVer: int
    szDeviceName: Any

class VXHSLInfo(object):
    thisown: bool
    nHueColor1: int
    nHueColor2: int
    dWeight1: float
    dWeight2: float
    def __init__(self, *args: Any) -> None: ...

class VXPixelInfo(object):
    thisown: bool
    nAlpha: int
    nRed: int
    nGreen: int
    nBlue: int
    def __init__(self, *args: Any) -> None: ...

class VXWhiteBalanceInfo(object):
    thisown: bool
    nTemp: int
    nTint: int
    def __init__(self, *args: Any) -> None: ...

class WBSetting(object):
    thisown: bool
    nWhitePointTemperature: int
    nWhitePointTint: int
    nTemperature: int
    nTint: int
    bSimd: bool
    rawInfo: RawInfo
    bReserved: Any

class ToneSetting(object):
    thisown: bool
    dExposure: float
    nRecovery: int
    nFillLight: int
    nWhites: int
    nBlacks: int
    nBrightness: int
    nContrast: int
    bUsePivotPoint: bool
    nPivotPointX: Any
    nPivotPointY: Any
    bReserved: Any

class HDRSetting(object):
    thisown: bool
    nGlow_strength: int
    nGlow_radius: int
    nGlow_balance: int
    fEdge_strength: float
    nEdge_radius: int
    nEdge_balance: int
    bReserved: Any

class ToneMappingInfo(object):
    thisown: bool
    MappingTable: Any
    nMappingTableSize: int
    bReserved: Any

class ToneLevelSetting(object):
    thisown: bool
    nPivotCount: int
    bReserved: Any
    ChannelPivot: Any

class ToneLevelSetting_ChannelPivot(object):
    thisown: bool
    nPivotX: Any
    nPivotY: Any
    def __init__(self, *args: Any) -> None: ...

class ToneLevelRGBSetting(object):
    thisown: bool
    nPivotCount: int
    nPivotX: Any
    nPivotY: Any
    bReserved: Any

class ToneCurveRGBSetting(object):
    thisown: bool
    nHighlights: int
    nLights: int
    nDarks: int
    nShadows: int
    fQ1Pivot: float
    fQ2Pivot: float
    fQ3Pivot: float
    nMaxValue: int
    nPivotCount: int
    fPivotX: Any
    fPivotY: Any
    bManualMode: bool
    nTableBoundary: int
    nTableSize: int
    pnMappingTable: Any
    bReserved: Any

class ToneCurveSetting(object):
    thisown: bool
    ChannelSetting: Any
    def __init__(self, *args: Any) -> None: ...

class ClaritySetting(object):
    thisown: bool
    nClarity: int
    bReserved: Any

class SaturationSetting(object):
    thisown: bool
    nSaturation: int
    bReserved: Any

class VibranceSetting(object):
    thisown: bool
    nVibrance: int
    nSaturation: int
    bReserved: Any

class SharpenSetting(object):
    thisown: bool
    nAmount: int
    fRadius: float
    fMidRadius: float
    nDetail: int
    nMask: int
    nOutputMode: int
    nOutputDiffGrayLevel: int
    bReserved: Any

class DeNoiseSetting(object):
    thisown: bool
    nLAmount: int
    nLRadius: int
    nLDetail: int
    nLMask: int
    nLContrast: int
    eLMode: Any
    nCAmount: int
    nCRadius: int
    nCDetail: int
    nCMask: int
    eCMode: Any
    fResizeRatio: float
    nISO: int
    bReserved: Any

class GrainSetting(object):
    thisown: bool
    dAmount: float
    dRadius: float
    dStrength: float
    bReserved: Any

class HSLColorSetting(object):
    thisown: bool
    nColorHue: Any
    nColorSaturation: Any
    nColorLuminance: Any
    nVibrancy: int
    bReserved: Any

class BWLuminanceSetting(object):
    thisown: bool
    nBWLuminance: Any
    bReserved: Any

class ColorReplaceSetting(object):
    thisown: bool
    srcColor: Any
    dstColor: Any
    fSrcTolerance: float
    fDstTolerance: float
    eColorSpace: Any
    bReserved: Any

class ColorsplashSetting(object):
    thisown: bool
    fTolerance: float
    dropperColor: ColorSpace
    bEnableColorsplash: bool
    nMaskType: int
    nMaskID: int
    fHueShift: float
    bReserved: Any

class HueShiftSetting(object):
    thisown: bool
    fHueShift: float
    bReserved: Any

class SplitToneEffectSetting(object):
    thisown: bool
    fLightHue: float
    fLightSaturation: float
    fBalance: float
    fDarkHue: float
    fDarkSaturation: float
    def __eq__(self, other: object) -> bool: ...

class SkinToneSetting(object):
    thisown: bool
    srcRGB: Any
    dstRGB: Any
    fThreshold: float
    fAmount: float
    fWarnth: float
    fTint: float
    fWhiten: float
    nMaskType: int
    nMaskID: int
    nDropperX: int
    nDropperY: int
    bShowMask: int
    bReserved: Any

class OvUdExposureSetting(object):
    thisown: bool
    nOverThreshold: int
    nUnderThreshold: int
    overColor: ColorSpace
    underColor: ColorSpace
    bReserved: Any

class VignetteSetting(object):
    thisown: bool
    nAmount: int
    nMidPoint: int
    nFeather: int
    nRoundness: int
    nMode: Any
    nCropWidth: int
    nCropHeight: int
    nROILeft: int
    nROITop: int
    nROIRight: int
    nROIBottom: int
    bReserved: Any

class LensCorrectParams(object):
    thisown: bool
    dParam1: float
    dParam2: float
    dParam3: float
    dScale: float
    dWeight: float
    def __eq__(self, other: object) -> bool: ...
    def bIsZeroParams(self) -> bool: ...

class AutoLensCorrectSetting(object):
    thisown: bool
    dSrcSensorFactor: float
    dDstSensorFactor: float
    DistortParams: LensCorrectParams
    CARedParams: LensCorrectParams
    CABlueParams: LensCorrectParams
    VignetteParams: LensCorrectParams

class LensCorrectSetting(object):
    thisown: bool
    nDistortion: int
    nVertical: int
    nHorizontal: int
    nCARed: int
    nCABlue: int
    autoSetting1: AutoLensCorrectSetting
    autoSetting2: AutoLensCorrectSetting

class WarppedPointSetting(object):
    thisown: bool
    nX: int
    nY: int
    nRadius: int
    fDistance: float
    fAngle: float

class CameraCorrectSetting(object):
    thisown: bool
    nHueDiv: int
    nSatDiv: int
    nValDiv: int
    nHueShift: int
    dSatScale: float
    dValScale: float

class CameraCorrectTable(object):
    thisown: bool
    nHueDivisions: int
    nSatDivisions: int
    nValDivisions: int
    dExposure: float
    nBlacks: int
    nBrightness: int
    nContrast: int
    pTable: Optional[CameraCorrectSetting]

class CropRotateSetting(object):
    thisown: bool
    fAngle: float
    nLeft: int
    nTop: int
    nWidth: int
    nHeight: int
    bReserved: Any

class RedEyeRecoverySetting(object):
    thisown: bool
    nCx: int
    nCy: int
    nSemiMajor: int
    nSemiMinor: int
    fAngle: float
    dThreshold: float
    dStepunit: float
    nOuterSemiMajor: int
    nOuterSemiMinor: int
    nDarkenLevel: int
    dAveLumi: float
    nConfidenceLevel: int
    bReserved: Any

class RedEyeDetectionSetting(object):
    thisown: bool
    cropRotateSetting: CropRotateSetting
    bReserved: Any

class MaskToneSetting(object):
    thisown: bool
    dExposure: float
    nBrightness: int
    nContrast: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskToothSetting(object):
    thisown: bool
    nToothBrightness: int
    nToothThreshold: int
    nMaskType: int
    nMaskID: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskDodgeBurnSetting(object):
    thisown: bool
    dDodgeExposure: float
    dDodgeSaturation: float
    nDodgeMaskType: int
    nDodgeMaskID: int
    dBurnExposure: float
    dBurnSaturation: float
    nBurnMaskType: int
    nBurnMaskID: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskSaturationSetting(object):
    thisown: bool
    nSaturation: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskClaritySetting(object):
    thisown: bool
    nClarity: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskSharpnessSetting(object):
    thisown: bool
    nSharpness: int
    fSharpnessRadius: float
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskWBSetting(object):
    thisown: bool
    nWhitePointTemperature: int
    nWhitePointTint: int
    nTemperature: int
    nTint: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskTintSetting(object):
    thisown: bool
    RGB: Any
    dAmount: float
    nMaskType: int
    nMaskID: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskGrainSetting(GrainSetting):
    thisown: bool
    nMaskType: int
    nMaskID: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskBWSetting(object):
    thisown: bool
    bwSetting: BWLuminanceSetting
    nMaskType: int
    nMaskID: int
    bReserved: Any

class MaskColorsplashSetting(object):
    thisown: bool
    fTolerance: float
    dropperColor: ColorSpace
    bEnableColorsplash: bool
    nMaskType: int
    nMaskID: int
    fHueShift: float
    bReserved: Any

class MaskAdjustmentSetting(object):
    thisown: bool
    dExposure: float
    nBrightness: int
    nContrast: int
    nSaturation: int
    nVibrance: int
    nClarity: int
    nSharpness: int
    fSharpnessRadius: float
    nTemperature: int
    nTint: int
    nWhitePointTemperature: int
    nWhitePointTint: int
    bReserved: Any

class MaskToneSettingArray(object):
    thisown: bool
    toneSetting_g: ToneSetting
    toneSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class MaskSaturationSettingArray(object):
    thisown: bool
    saturationSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class MaskClaritySettingArray(object):
    thisown: bool
    claritySettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class MaskSharpnessSettingArray(object):
    thisown: bool
    sharpnessSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class MaskWBSettingArray(object):
    thisown: bool
    wbSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class MaskHSLSettingArray(object):
    thisown: bool
    hslSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int

class MaskColorRepSettingArray(object):
    thisown: bool
    colorReplaceSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int

class MaskDeNoiseSettingArray(object):
    thisown: bool
    noiseSettingArray: Any
    nMaskType: Any
    nMaskID: Any
    nCount: int

class MaskBWTintSettingArray(object):
    thisown: bool
    tintSettingArray: Any
    nCount: int
    bReserved: Any

class MaskBlurSetting(object):
    thisown: bool
    dBlurLevel: float
    nMaskType: int
    nMaskID: int
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class MaskBlurSettingArray(object):
    thisown: bool
    maskBlurSetting: Any
    nCount: int
    bReserved: Any

class BlurSettingNormal(object):
    thisown: bool
    dBlurLevel: float
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class BlurSettingBokeh(object):
    thisown: bool
    nStrength: int
    mode: Any
    shape: Any
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class BlurSettingCircular(object):
    thisown: bool
    fCenterX: float
    fCenterY: float
    fStrength: float
    fBlurDirection: float
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class BlurSettingZoom(object):
    thisown: bool
    fCenterX: float
    fCenterY: float
    fStrength: float
    fBlurDirection: float
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class BlurSettingMotion(object):
    thisown: bool
    Strength: int
    Direction: float
    def __init__(self, *args: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class MaskLensBlurSetting(object):
    thisown: bool
    nMaskType: int
    nMaskID: int
    eBlurType: Any
    settingNormal: BlurSettingNormal
    settingBokeh: BlurSettingBokeh
    settingCircular: BlurSettingCircular
    settingZoom: BlurSettingZoom
    settingMotion: BlurSettingMotion
    bReserved: Any
    def __init__(self, *args: Any) -> None: ...

class GradientMaskSetting(object):
    thisown: bool
    nCenterX: int
    nCenterY: int
    fDistance: float
    fAngle: float
    bShowMask: int
    maskColor: ColorSpace
    bReserved: Any

class GradientSetting(object):
    thisown: bool
    adjustSettingArray: Any
    maskSettingArray: Any
    nMaskID: Any
    nCount: int
    bReserved: Any

class EllipseMaskSetting(object):
    thisown: bool
    nCx: int
    nCy: int
    nSemiMajor: int
    nSemiMinor: int
    dFeather: float
    dAngle: float
    bInverse: bool
    bShowMask: bool
    maskColor: ColorSpace
    bReserved: Any

class ShowMaskSetting(object):
    thisown: bool
    nMaskType: int
    nMaskID: int
    maskColor: ColorSpace
    bReserved: Any

class SkinSmoothSetting(object):
    thisown: bool
    nAmount: int
    nDetail: int
    nMaskType: int
    nMaskID: int
    bReserved: Any

class MaskCorrectSetting(object):
    thisown: bool
    lensCorrectSetting: LensCorrectSetting
    nMode: Any

class SpotRemoveSetting(object):
    thisown: bool
    nSrcX: int
    nSrcY: int
    nDstX: int
    nDstY: int
    nRadius: int
    nStyle: int
    nOpacity: int
    nFeather: int
    bReserved: Any

class ObjectCloneSetting(object):
    thisown: bool
    nMaskType: int
    nMaskID: int
    rectSrc: ROI
    rectDst: ROI
    nMode: int
    fScale: float
    nBlendType: Any
    bReserved: Any

class WrinkleRemovalSetting(object):
    thisown: bool
    nMaskType: int
    nMaskID: int
    rectSrc: ROI
    rectDst: ROI
    nMode: int
    fScale: float
    nBlendType: Any
    bReserved: Any

class BrushPointSetting(object):
    thisown: bool
    nMaskID: int
    nPosX: int
    nPosY: int
    nInnerRadius: int
    nOuterRadius: int
    nFlow: int
    bAutoMask: bool
    bErase: bool
    bNewStroke: bool
    nColorType: int
    CenterColor: Any
    bReserved: Any

class LiquifyPointSetting(object):
    thisown: bool
    nMaskID: int
    nPosX: int
    nPosY: int
    nRadius: int
    nFlow: int
    bAutoMask: bool
    bNewStroke: bool
    bErase: bool
    nWarpType: Any
    bReserved: Any

class BrushPointArray(object):
    thisown: bool
    pBrushPointSetting: Optional[BrushPointSetting]
    nCount: int
    bReserved: Any

class BrushSetting(object):
    thisown: bool
    adjustSettingArray: Any
    nMaskID: Any
    nCount: int
    bShowMask: Any
    maskColor: Any
    bInverseMask: Any
    bReserved: Any

class SelectionLine(object):
    thisown: bool
    nX: int
    nY: int
    nLength: int

class SelectionLineSet(object):
    thisown: bool
    nMaskID: int
    bChanged: bool
    nLength: int
    nFeather: int
    nScale: int
    bInverse: bool
    selectionLine: Optional[SelectionLine]

class LumiarProertySetting(object):
    thisown: bool
    llTimeStamp: int
    def __init__(self, *args: Any) -> None: ...

class tBrushSetting(object):
    thisown: bool
    nMaskID: int
    bInverseMask: int
    bUseInfoMask: int
    def __init__(self, *args: Any) -> None: ...

class tGradientSetting(object):
    thisown: bool
    nMaskID: int
    nCenterX: int
    nCenterY: int
    fDistance: float
    fAngle: float
    def __init__(self, *args: Any) -> None: ...

class tEllipseSetting(object):
    thisown: bool
    nMaskID: int
    nCx: int
    nCy: int
    nSemiMajor: int
    nSemiMinor: int
    dFeather: float
    dAngle: float
    bInverse: bool
    def __init__(self, *args: Any) -> None: ...

class tRawMaskSetting(object):
    thisown: bool
    nMaskID: int
    mask: BufferData
    rectROI: ROI
    nFeather: int
    nScale: int
    bInverse: bool
    def __init__(self, *args: Any) -> None: ...

class CircleFocusMaskSetting(object):
    thisown: bool
    nMaskID: int
    fCenterX: float
    fCenterY: float
    fInnerRadius: float
    fOuterRadius: float
    fAspectRatio: float
    def __init__(self, *args: Any) -> None: ...

class LinearFocusMaskSetting(object):
    thisown: bool
    nMaskID: int
    fCenterX: float
    fCenterY: float
    fAngle: float
    fInnerDistance: float
    fOuterDistance: float
    def __init__(self, *args: Any) -> None: ...

class LiquifySetting(object):
    thisown: bool
    nAmount: int
    nWarpMaskID: int
    nProtectMaskID: int

class MeshPoint(object):
    thisown: bool
    nSrcX: int
    nSrcY: int
    nDstX: int
    nDstY: int

class MeshWarpSetting(object):
    thisown: bool
    nMeshID: Any
    nCount: int

class BaseWarpData(object):
    thisown: bool
    def __init__(self, *args: Any) -> None: ...

class LiquifyData(BaseWarpData):
    thisown: bool
    pLiquifyPointArray: Optional[LiquifyPointSetting]
    nPointCount: int
    def __init__(self, *args: Any) -> None: ...

class MeshData(BaseWarpData):
    thisown: bool
    eMeshMode: Any
    nWarpMaskID: int
    nRows: int
    nColumns: int
    nCount: int
    pMeshPoints: Optional[MeshPoint]
    nRadius: int
    def __init__(self, *args: Any) -> None: ...

class MeshTable(object):
    thisown: bool
    nWarpMaskID: int
    nRows: int
    nColumns: int
    pMeshPoints: Optional[MeshPoint]
    def __init__(self, *args: Any) -> None: ...

class BaseMaskInfo(object):
    thisown: bool
    InfoType: Any
    def __init__(self, *args: Any) -> None: ...

class MeshDataInfo(BaseMaskInfo):
    thisown: bool
    meshData: MeshData
    def __init__(self, *args: Any) -> None: ...

class LiquifyMaskInfo(BaseMaskInfo):
    thisown: bool
    liquifyData: LiquifyData
    def __init__(self, *args: Any) -> None: ...

class BrushMaskInfo(BaseMaskInfo):
    thisown: bool
    pBrushArray: Optional[tBrushSetting]
    nMaskCount: int
    pBrushPointArray: Optional[BrushPointSetting]
    nPointCount: int
    def __init__(self, *args: Any) -> None: ...

class GradientMaskInfo(BaseMaskInfo):
    thisown: bool
    pGradientArray: Optional[tGradientSetting]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class EllipseMaskInfo(BaseMaskInfo):
    thisown: bool
    pEllipseArray: Optional[tEllipseSetting]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class CompressMaskInfo(BaseMaskInfo):
    thisown: bool
    pCompArray: Optional[SelectionLineSet]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class RawMaskInfo(BaseMaskInfo):
    thisown: bool
    pMaskArray: Optional[tRawMaskSetting]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class FeaturePointsInfo(BaseMaskInfo):
    thisown: bool
    pFeaturePointsArray: Optional[FeaturePoints]
    nArraySize: int
    def __init__(self, *args: Any) -> None: ...

class CircleFocusMaskInfo(BaseMaskInfo):
    thisown: bool
    pCircleMaskArray: Optional[CircleFocusMaskSetting]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class LinearFocusMaskInfo(BaseMaskInfo):
    thisown: bool
    pLinearMaskArray: Optional[LinearFocusMaskSetting]
    nMaskCount: int
    def __init__(self, *args: Any) -> None: ...

class BaseMaskClearInfo(object):
    thisown: bool
    effectID: Any
    def __init__(self, *args: Any) -> None: ...

class MeshMaskClearInfo(BaseMaskClearInfo):
    thisown: bool
    nMaskID: int
    def __init__(self, *args: Any) -> None: ...

class LiquifyMaskClearInfo(BaseMaskClearInfo):
    thisown: bool
    pLiquifyPointSetting: Optional[LiquifyPointSetting]
    def __init__(self, *args: Any) -> None: ...

class BrushMaskClearInfo(BaseMaskClearInfo):
    thisown: bool
    nMaskID: int
    bUseInfoMask: int
    def __init__(self, *args: Any) -> None: ...

class MaskClearInfo(BaseMaskClearInfo):
    thisown: bool
    nMaskID: int
    def __init__(self, *args: Any) -> None: ...

class PyClipGrade(object):
    """The facade through which scripts drive the render agent, the image engine and the selection tools."""
    thisown: bool
    def __init__(self, agentText: Optional[str] = ..., createBufferAgent: int = ..., startCallbackThread: int = ..., imageRetouchPath: Optional[str] = ..., logRootKey: Optional[str] = ...) -> None: ...
    def LockEffectDataWriter(self, useBufferAgent: bool = ...) -> None:
        """LockEffectDataWriter(useBufferAgent=False) -> None: takes the agent's effect writer lock, waiting without the interpreter lock."""
        ...
    def UnlockEffectDataWriter(self, useBufferAgent: bool = ...) -> None:
        """UnlockEffectDataWriter(useBufferAgent=False) -> None: gives the agent's effect writer lock back."""
        ...
    def PushTask(self, videoID: int, taskID: int, effect: Any, useBufferAgent: bool) -> int:
        """PushTask(videoID, taskID, effect, useBufferAgent) -> int: turns an effect dictionary of keyframe lists into the record of task taskID (a PY_SET_* value) for the clip; a code."""
        ...
    def AddMaskInfo(self, videoID: int, taskID: int, masks: Any, useBufferAgent: bool) -> int:
        """AddMaskInfo(videoID, taskID, masks, useBufferAgent) -> int: builds the masks of a list of mask dictionaries and hands each to the agent; a code."""
        ...
    def ClearTask(self, videoID: int, useBufferAgent: bool) -> int:
        """ClearTask(videoID, useBufferAgent) -> int: removes every effect of the clip from the agent; a code."""
        ...
    def ApplyEffectOnBuffer(self, videoID: int, taskID: int, buffer: Any, time: int, flags: int) -> Any:
        """ApplyEffectOnBuffer(videoID, taskID, buffer, time, flags) -> IImageBuffer or None: renders the clip's effects onto a buffer; the result is not owned."""
        ...
    def SetLUT(self, videoID: Any, size: Any, minimum: Any, maximum: Any, table: Any, useBufferAgent: bool) -> int:
        """SetLUT(videoID, size, minimum, maximum, table, useBufferAgent) -> int: hands a 3-D look-up table to the agent; a code."""
        ...
    def ClearLUT(self, videoID: Any, useBufferAgent: bool) -> int:
        """ClearLUT(videoID, useBufferAgent) -> int: removes the clip's look-up table; a code."""
        ...
    def ApplyLUTOnBuffer(self, videoID: int, buffer: Any) -> bool:
        """ApplyLUTOnBuffer(videoID, buffer) -> bool: applies the clip's look-up table to a buffer in place."""
        ...
    def GetDspAgentPtr(self) -> str:
        """GetDspAgentPtr() -> str: the text '@_PtrWrapper_$=' and the main agent's address, which another facade's constructor takes to share the agent."""
        ...
    def AddVideo(self, videoID: int, first: int, second: int, value: float) -> int:
        """AddVideo(videoID, first, second, value) -> int: adds a clip to both agents; the main agent's code."""
        ...
    def UpdateVideo(self, videoID: int, first: int, second: int, value: float) -> int:
        """UpdateVideo(videoID, first, second, value) -> int: updates a clip on both agents; the main agent's code."""
        ...
    def RemoveVideo(self, videoID: int) -> int:
        """RemoveVideo(videoID) -> int: removes a clip and its effects and masks from both agents; the main agent's code."""
        ...
    def RemoveAllVideo(self) -> int:
        """RemoveAllVideo() -> int: removes every clip from both agents; the main agent's code."""
        ...
    def DumpTask(self, useBufferAgent: bool = ...) -> None:
        """DumpTask(useBufferAgent=False) -> None: has the agent write its effects to the diagnostic log."""
        ...
    def SetFrameRate(self, framesPerSecond: float) -> bool:
        """SetFrameRate(framesPerSecond) -> bool: sets the main agent's frame rate."""
        ...
    def SetPyCallback(self, callback: Any) -> bool:
        """SetPyCallback(callback) -> bool: the one callable, or None to clear it, that engine events such as 'TRACKING_STATE' and 'CACHE_FRAME_UPDATED' are delivered to."""
        ...
    def SetDBMgr(self, threadManager: Any, tinyDB: Any) -> bool:
        """SetDBMgr(threadManager, tinyDB) -> bool: hands the host's database objects to the main agent."""
        ...
    def SetCacheFrame(self, buffer: Any) -> None:
        """SetCacheFrame(buffer) -> None: keeps a reference on the latest cache frame; None changes nothing."""
        ...
    def GetCacheFrame(self) -> Any:
        """GetCacheFrame() -> IImageBuffer or None: the latest cache frame, not owned."""
        ...
    def SetCachePureFrame(self, buffer: Any) -> None:
        """SetCachePureFrame(buffer) -> None: keeps a reference on the latest frame without effects."""
        ...
    def GetCachePureFrame(self) -> Any:
        """GetCachePureFrame() -> IImageBuffer or None: the latest frame without effects, not owned."""
        ...
    def SetCacheFrameOnDspAgent(self, videoID: int, time: int, enable: int) -> None:
        """SetCacheFrameOnDspAgent(videoID, time, enable) -> None: asks the main agent for cache frames of the clip at a time."""
        ...
    def SetCacheFramePlaying(self, buffer: Any) -> None:
        """SetCacheFramePlaying(buffer) -> None: keeps a reference on the latest frame of playback."""
        ...
    def GetCacheFramePlaying(self) -> Any:
        """GetCacheFramePlaying() -> IImageBuffer or None: the latest frame of playback, not owned."""
        ...
    def SetCacheFramePlayingOnDspAgent(self, enable: int, frameInterval: int) -> None:
        """SetCacheFramePlayingOnDspAgent(enable, frameInterval) -> None: asks the main agent for frames during playback."""
        ...
    def SetOverUnderExposureImage(self, enable: bool) -> None:
        """SetOverUnderExposureImage(enable) -> None: shows or hides the over- and under-exposure marks."""
        ...
    def ResizeImageBuffer(self, buffer: Any, width: int, height: int) -> Any:
        """ResizeImageBuffer(buffer, width, height) -> IImageBuffer or None: a new 4-byte buffer resampled to the size, not owned."""
        ...
    def FlushQueue2DBUntilPos(self, trackingID: int, videoID: int, maskID: int, position: int) -> None:
        """FlushQueue2DBUntilPos(trackingID, videoID, maskID, position) -> None: moves the track results queued up to a position into the database."""
        ...
    def ClearTrackResultQueue(self) -> None:
        """ClearTrackResultQueue() -> None: drops the queued track results."""
        ...
    def GetMaxTrackingID(self) -> Optional[int]:
        """GetMaxTrackingID() -> int or None: the highest tracking ID the agent holds."""
        ...
    def getTrackResult(self, trackingID: int, videoID: int, maskID: int, time: int) -> Optional[List[Any]]:
        """getTrackResult(trackingID, videoID, maskID, time) -> list or None: the track result at a time."""
        ...
    def getLatestTrackResult(self, videoID: int, maskID: int, trackingID: int) -> Optional[List[Any]]:
        """getLatestTrackResult(videoID, maskID, trackingID) -> list or None: the latest track result."""
        ...
    def GetTrackHistoryStream(self) -> Optional[bytes]:
        """GetTrackHistoryStream() -> bytes or None: the track history as opaque bytes."""
        ...
    def SetTrackHistoryStream(self, stream: bytes, size: int) -> None:
        """SetTrackHistoryStream(stream, size) -> None: hands size bytes of a track history back to the agent."""
        ...
    def DeleteTrackingKeyFrame(self, time: int) -> None:
        """DeleteTrackingKeyFrame(time) -> None: deletes the tracking key frame at a time."""
        ...
    def ClearCurTrackHistoryStream(self) -> None:
        """ClearCurTrackHistoryStream() -> None: clears the current track history."""
        ...
    def copyTrackResultInDB(self, trackingID: int, videoID: int, maskID: int) -> None:
        """copyTrackResultInDB(trackingID, videoID, maskID) -> None: copies a track result within the database."""
        ...
    def DeleteMotionTrackingMaskInfoRange(self, videoID: int, maskID: int, time: int) -> bool:
        """DeleteMotionTrackingMaskInfoRange(videoID, maskID, time) -> bool: deletes a motion track mask's keys from a time on."""
        ...
    def DeleteMotionTrackingMaskInfoInterval(self, videoID: int, maskID: int, begin: int, end: int) -> bool:
        """DeleteMotionTrackingMaskInfoInterval(videoID, maskID, begin, end) -> bool: deletes a motion track mask's keys in an interval."""
        ...
    def Selection_MaskToPoint(self, mask: Any, rect: Any) -> Optional[List[Any]]:
        """Selection_MaskToPoint(mask, rect) -> list or None: the boundary runs of a 1-byte mask."""
        ...
    def Selection_PointToMask(self, runs: Any, width: int, height: int, invert: bool) -> Any:
        """Selection_PointToMask(runs, width, height, invert) -> IImageBuffer or None: a new 1-byte mask from boundary runs, not owned."""
        ...
    def Selection_MaskCorrection(self, mask: Any, correction: Any = ...) -> Any:
        """Selection_MaskCorrection(mask, correction=None) -> IImageBuffer or None: a new mask corrected for lens, keystone, crop and rotation, not owned."""
        ...
    def Selection_ScaleUSSelectionList(self, runs: Any, srcWidth: int, srcHeight: int, dstWidth: int, dstHeight: int) -> Optional[List[Any]]:
        """Selection_ScaleUSSelectionList(runs, srcWidth, srcHeight, dstWidth, dstHeight) -> list or None: the runs scaled to another size."""
        ...
    def Selection_Initialize(self, picture: Any, runs: Any) -> int:
        """Selection_Initialize(picture, runs) -> int: begins a smart selection on a picture with a starting selection; a code."""
        ...
    def Selection_Uninitialize(self) -> int:
        """Selection_Uninitialize() -> int: ends the smart selection; a code."""
        ...
    def Selection_MagicSelect(self, points: Any, radius: int, newStroke: bool, add: bool, last: bool) -> Any:
        """Selection_MagicSelect(points, radius, newStroke, add, last) -> IImageBuffer or None: one smart selection stroke; the new mask, not owned."""
        ...
    def Selection_ClearStrokeHistory(self) -> int:
        """Selection_ClearStrokeHistory() -> int: forgets the strokes' undo history; a code."""
        ...
    def Selection_Undo(self, steps: int) -> int:
        """Selection_Undo(steps) -> int: undoes strokes; a code."""
        ...
    def Selection_Redo(self, steps: int) -> int:
        """Selection_Redo(steps) -> int: redoes strokes; a code."""
        ...
    def Manual_Initialize(self, runs: Any, width: int, height: int) -> int:
        """Manual_Initialize(runs, width, height) -> int: begins brushing on a selection of that size; a code."""
        ...
    def Manual_Uninitialize(self) -> int:
        """Manual_Uninitialize() -> int: ends brushing; a code."""
        ...
    def Manual_UpdateStroke(self, points: Any, radius: int, newStroke: bool, foreground: bool) -> Any:
        """Manual_UpdateStroke(points, radius, newStroke, foreground) -> IImageBuffer or None: one brush stroke; the new mask, not owned."""
        ...
    def Query_WBDropInfo(self, imageID: int, picture: Any, x: int, y: int, width: int, height: int) -> Optional[Dict[str, Any]]:
        """Query_WBDropInfo(imageID, picture, x, y, width, height) -> dict or None: the white balance that makes the clicked area neutral."""
        ...
    def Run_Query_TATMapInfoTask(self, taskID: int, imageID: int, picture: Any, x: int, y: int, pixelInfo: PixelInfo) -> int:
        """Run_Query_TATMapInfoTask(taskID, imageID, picture, x, y, pixelInfo) -> int: one staged query of the picture into pixelInfo; a code."""
        ...
    def Query_TATMapInfo(self, imageID: int, picture: Any, x: int, y: int) -> Optional[Dict[str, Any]]:
        """Query_TATMapInfo(imageID, picture, x, y) -> dict or None: the hue weights at a point."""
        ...
    def Query_ToneTATMapInfo(self, imageID: int, picture: Any, x: int, y: int) -> Optional[Dict[str, Any]]:
        """Query_ToneTATMapInfo(imageID, picture, x, y) -> dict or None: the tone weight at a point."""
        ...
    def Query_ToneMapInfo(self, curve: Any) -> Optional[List[Any]]:
        """Query_ToneMapInfo(curve) -> list or None: the mapping table of a tone curve."""
        ...
    def Query_ToneMapInfoForEngine(self, curve: ToneCurveRGBSetting) -> List[Any]:
        """Query_ToneMapInfoForEngine(curve) -> list: the 16-bit mapping table of a tone curve for the engine."""
        ...
    def Query_InterpolatedToneMapInfo(self, videoID: int, time: int) -> Optional[List[Any]]:
        """Query_InterpolatedToneMapInfo(videoID, time) -> list or None: the clip's tone curve table at a time."""
        ...
    def GetHistogramInfo(self) -> Optional[CHistogramDist]:
        """GetHistogramInfo() -> CHistogramDist or None: the picture's histogram, not owned."""
        ...
    def GetToneCurveHistogramInfo(self) -> Optional[CHistogramDist]:
        """GetToneCurveHistogramInfo() -> CHistogramDist or None: the tone curve's histogram, not owned."""
        ...
    def SetDspVideoID(self, videoID: int) -> None:
        """SetDspVideoID(videoID) -> None: the clip the main agent works on."""
        ...
    def GetDspVideoID(self) -> int:
        """GetDspVideoID() -> int: the clip the main agent works on."""
        ...
    def DumpIImageBuffer(self, mask: Any) -> None:
        """DumpIImageBuffer(mask) -> None: writes a mask's rows and runs to the diagnostic log."""
        ...
