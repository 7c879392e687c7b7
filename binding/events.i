// Engine events as scripts see them: the module function that runs the
// callback loop, the image buffer handles of the cache frames, and the track
// history's bytes.

%{
#include "events/process_callback.h"
#include "imaging/image_buffer.h"
#include "runtime/dump_log.h"
%}

// Handles of engine frames: scripts pass them on and never own them.
class IImageBuffer;

// The track history's bytes: a byte string (or text, as UTF-8) with its
// length, which bounds the explicit size that comes with it.
%typemap(in) char* pcgStream (Py_ssize_t pcgStreamLength = 0) {
    const char* pcgView = pcg_ByteStringView($input, &pcgStreamLength);
    if (pcgView == 0) {
        PyErr_Clear();
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type '" "char *" "'");
    }
    $1 = const_cast<char*>(pcgView);
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_STRING) char* pcgStream {
    Py_ssize_t pcgLength = 0;
    $1 = pcg_ByteStringView($input, &pcgLength) != 0 ? 1 : 0;
    PyErr_Clear();
}
// A size past the string's end would have the agent read beyond it, and a
// negative one reads as some four billion bytes: both are held to the string.
%typemap(check) int pcgStreamSize {
    if ($1 < 0 || $1 > pcgStreamLength2) {
        DumpLog("PyClipGrade::SetTrackHistoryStream size %d is outside the string of %d bytes, held to it",
                $1, static_cast<int>(pcgStreamLength2));
        $1 = $1 < 0 ? 0 : static_cast<int>(pcgStreamLength2);
    }
}

void ProcessCallback(void* parameter);
