// The exports of the reference image engine library,
// Kernel/ImageRetouch/ImageRetouch below the host folder (.so / .dll). The
// facade loads it by path, the registered-class lookup finds it (on POSIX the
// settings file's class table falls back to it; under Wine the classes are
// registered for real). Tests load the same file and share its state. Every
// entry is safe on any thread.
//
// int32_t DllGetClassObject(const GUID& clsid, const GUID& iid, void** ppv)
//   The class factory of CLSID_ImageRetouch or of CLSID_BufferAllocator
//   (CLASS_E_CLASSNOTAVAILABLE for any other class). Each factory makes a new
//   object per CreateInstance (CLASS_E_NOAGGREGATION with an outer object).
//
// int32_t RefRetouch_Journal(char* buffer, int32_t capacity)
//   The journal as UTF-8 JSON, NUL-terminated when it fits; returns the
//   length without the NUL. A null buffer or too small a capacity writes
//   nothing and still returns the length.
//
// void RefRetouch_Reset(void)
//   Empties the journal and removes every injected result.
//
// void RefRetouch_SetResult(const char* object, const char* op, double value)
//   From now on `op` of every object named `object` ("*": any) answers
//   `value`, converted as the render agent converts it (low 32 bits of the
//   truncated value; NaN and infinities read as 0x80004005). Objects:
//   "ImageRetouch", "BufferAllocator", and, for the creation paths,
//   "Library" (op "DllGetClassObject"), "ImageRetouchFactory" and
//   "BufferAllocatorFactory" (op "CreateInstance"): a negative answer there
//   makes nothing and hands out nothing. The operation still does its work
//   otherwise; only its answer changes.
//
// int64_t RefRetouch_Counter(const char* name)
//   -1 for an unknown name:
//     "instancesLive"     engine instances made and not yet destroyed
//     "buffersLive"       allocator buffers still alive
//     "imagesHeld"        pictures the live instances keep
//     "recordsHeld"       effect records the live instances keep
//     "allocatorsLive"    buffer allocators made and not yet destroyed
//     "videoModeSet"      SetProperty(RETOUCH_PROPERTY_SET_VIDEO_MODE, 4, 1) calls
//     "createdOnThread"   thread id that made the last engine instance
//     "releasedOnThread"  thread id on which an engine instance last died
//
// The journal: a JSON array, oldest call first, {"object": "ImageRetouch" or
// "BufferAllocator", "instance": n, "op", "args": [...]}, numbers and
// records written as the render agent writes them. AddRef and Release have
// no arguments; the last Release is followed by "Destroyed". Pixels given by
// pointer (BufferData) are {"width", "height", "stride", "sha256"} with the
// hash of the visible bytes row by row; a task record is {"function",
// "version", "param": [8 integers], "effect": RECORD or null}.
//
// What the engine does: SetImage keeps a copy of the picture per image ID;
// RegisterImageRatio keeps the buffer to render into; Image_PushTask keeps
// the task and takes its effect record (freeing it when the buffer or image
// is let go or the instance dies); Image_RunAllTask draws the picture into
// the registered buffer, sampled to its size, and renders the buffer's tone,
// white balance and saturation records (at time 0) onto it with the shared
// reference renderer (reference/renderer) when it is PIXEL_ARGB32 or
// PIXEL_ARGB64. The questions answer from the picture kept under the image
// ID (formulas in reference/retouch/retouch_questions.h): Query_WBDropInfo
// writes temperature and tint into param[2] and param[3] of the task record
// (param[0] is the half-size of the square read); Query_TATMapInfo the two
// nearest hue bands and weights, Query_ToneTATMapInfo the four tone weights,
// each with RGB, HSV and ROMMRGB; a point outside the picture or an unknown
// image answers E_INVALIDARG. GetToneCurveInfo writes nMaxValue + 1 entries
// of a monotone cubic through the pivots into MappingTable (E_POINTER without
// one, E_INVALIDARG for nMaxValue outside 1..65535) and sets
// nMappingTableSize; its journal entry is [{"maxValue", "pivotCount",
// "pivots": [[x, y], ...]}, table given].
#pragma once

#include <cstdint>

#include "engine/com_contract.h"

extern "C" {
int32_t PCG_WINAPI DllGetClassObject(const pcg::engine::ComGuid& clsid, const pcg::engine::ComGuid& iid, void** ppv);
int32_t RefRetouch_Journal(char* buffer, int32_t capacity);
void RefRetouch_Reset(void);
void RefRetouch_SetResult(const char* object, const char* op, double value);
int64_t RefRetouch_Counter(const char* name);
}

// Function types of the entries, for callers that look them up by name.
using RefRetouchJournalFn = int32_t (*)(char* buffer, int32_t capacity);
using RefRetouchResetFn = void (*)();
using RefRetouchSetResultFn = void (*)(const char* object, const char* op, double value);
using RefRetouchCounterFn = int64_t (*)(const char* name);
