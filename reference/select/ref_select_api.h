// The exports of the reference selection engine library,
// Kernel/ImageRetouch/Zenodor below the host folder (.so / .dll). Tests load
// the same file (ctypes from Python, the platform layer from C++) and so
// share its state with the module. The inspection entries are safe on any
// thread; one selection object is used by one thread at a time.
//
// int32_t CreateZenodorObject(const ZenodorGuid* iid, void** object)
//   A new magic selection object into *object for the interface
//   2b3357f9-601e-474d-80bf-60d2a37ecd6f: S_OK. Another interface:
//   E_NOINTERFACE (0x80004002) and null; a null `object` or `iid`: E_POINTER.
//   Objects are numbered 1, 2, ... in the order the library makes them.
// int32_t ReleaseZenodorObject(void** object)
//   Destroys *object and nulls it: S_OK; S_FALSE when *object is null,
//   E_POINTER for a null `object`.
//
// int32_t RefSelect_Journal(char* buffer, int32_t capacity)
//   The journal as UTF-8 JSON, NUL-terminated when it fits; returns the
//   length without the NUL. A null buffer or too small a capacity writes
//   nothing and still returns the length.
// void RefSelect_Reset(void)
//   Empties the journal and removes every injected result.
// void RefSelect_SetResult(const char* objectName, const char* op, double value)
//   From now on operation `op` of every selection object ("Selection" or
//   "*") answers `value` as its 32-bit result code (the low 32 bits of the
//   value truncated to an integer; NaN and infinities read as E_FAIL). The
//   operation still does its work; only its answer changes.
// int64_t RefSelect_Counter(const char* name)
//   "objectsLive": objects made and not yet released; "strokesHeld": strokes
//   the live objects hold for undo and redo. -1 for another name.
//
// The journal: a JSON array, oldest call first, one object per call:
// {"object": "Selection", "instance": n, "op": operation, "args": [...]},
// arguments in contract order, out-parameters left out. Create carries the
// interface identity as text, Release has no arguments. The picture is
// {"width", "height", "channels", "stride", "sha256"} and the mask
// {"width", "height", "stride", "sha256"} as they arrive (the digest of the
// visible bytes row by row, null when they cannot be read), the stroke its
// fields by name ("nX", "nY", "nRadius", "bFirstFlag", "bSecondFlag",
// "bThirdFlag", "llTimeStamp"); the reserved and result pointers are true or
// null.
//
// What the engine does:
//   Initialize converts the picture (3 bytes per pixel: blue, green, red) to
//   CIE L*a*b* and keeps only that; a new picture drops the history. E_POINTER
//   without a picture or pixels, E_INVALIDARG for channels other than 3, an
//   empty size or a stride below width * 3.
//   MagicSelect: a stroke's disc of pixels (dx^2 + dy^2 <= radius^2) seeds a
//   region that grows over 4-connected neighbours of similar colour (see
//   region_grow.h for the distance and the tolerance). The first flag removes
//   the region from the selection, else it is added; the second flag takes
//   every similar pixel of the picture, connected or not; the third has no
//   effect. The whole selection is written into the mask as 0 / 255, and the
//   result's stamp and counts are set. The first stroke after Initialize or
//   ClearStrokeHistory starts from the mask it is given. Each stroke that
//   seeds at least one pixel is one step of history and answers S_OK; one
//   wholly outside the picture writes the selection unchanged, is no step
//   and answers S_FALSE. E_POINTER without stroke or mask bytes, E_FAIL
//   before Initialize, E_INVALIDARG for a mask of another size than the
//   picture or a stride below its width.
//   Undo(n) / Redo(n) move through the steps by up to n (S_OK), S_FALSE when
//   there is nothing to move or n is 0, E_INVALIDARG for a negative n. The
//   mask changes at the next MagicSelect, which also forgets the steps that
//   could have been redone.
//   GetCurrentTimeStamp writes 1 at first and one more after each step.
//   ClearStrokeHistory forgets the steps and keeps the selection.
//   Uninitialize drops the picture, the selection and the history.
#pragma once

#include <cstdint>

#include "engine/selection_engine.h"

extern "C" {
int32_t PCG_WINAPI CreateZenodorObject(const ZenodorGuid* pIid, void** ppObject);
int32_t PCG_WINAPI ReleaseZenodorObject(void** ppObject);
int32_t RefSelect_Journal(char* buffer, int32_t capacity);
void RefSelect_Reset(void);
void RefSelect_SetResult(const char* objectName, const char* op, double value);
int64_t RefSelect_Counter(const char* name);
}

using RefSelectJournalFn = int32_t (*)(char* buffer, int32_t capacity);
using RefSelectResetFn = void (*)();
using RefSelectSetResultFn = void (*)(const char* objectName, const char* op, double value);
using RefSelectCounterFn = int64_t (*)(const char* name);
