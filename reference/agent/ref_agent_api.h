// The exports of the reference render agent library, KESdlls/VXHvnDspAgent
// below the host folder (.so / .dll). Tests load the same file (ctypes from
// Python, the platform layer from C++) and so share its state with the
// module. Every entry is safe on any thread.
//
// CreateHvnDspAgent(name, reserved, context)
//   A new agent named `name` (null reads as ""), holding one reference. The
//   last two arguments are not used. Instances are numbered 1, 2, ... in the
//   order the library makes them.
//
// int32_t RefAgent_Journal(char* buffer, int32_t capacity)
//   The journal as UTF-8 JSON, NUL-terminated when it fits; returns the
//   length without the NUL. A null buffer or too small a capacity writes
//   nothing and still returns the length.
//
// void RefAgent_Reset(void)
//   Empties the journal and removes every injected result. Agents, what they
//   hold and the counters stay.
//
// void RefAgent_SetResult(const char* agentName, const char* op, double value)
//   From now on operation `op` of every live and future agent named
//   `agentName` ("*": every agent) answers `value`; `op` "*" is every
//   operation that takes an injected result (an agent that fails everything).
//   The most specific entry wins: own name and op, "*" and op, own name and
//   "*", "*" and "*". The operation still does its
//   work; only its answer changes. The value is converted to the operation's
//   result type: an HRESULT or other 32-bit integer takes the low 32 bits of
//   the value truncated to an integer (so 2147500037 and -2147467259 are both
//   0x80004005; NaN and infinities read as 0x80004005); a bool is true for
//   non-zero; GetVideoAspectRatio writes the value as its double.
//   Op "CreateHvnDspAgent" (never reached by "*") with a negative value or
//   NaN makes the factory answer null for that name.
//   AddRef, Release, the void operations and the two histogram queries take
//   no injected result.
//
// int64_t RefAgent_Counter(const char* name)
//   Ownership counters, to prove ownership without a leak checker; -1 for an
//   unknown name:
//     "agentsLive"    agents made and not yet destroyed
//     "recordsHeld"   effect records the live agents hold
//     "recordsFreed"  effect records freed since the library was loaded
//     "entriesFreed"  keyframe entries freed with them
//     "masksHeld"     mask objects the live agents hold
//     "streamsOut"    track history streams handed out and not yet given back
//     "framesLive"    image buffers the agent made (posted frames) still alive
//     "trackEntriesOut" track queue entries handed out since the last Reset
//                   (the module frees them with operator delete, out of the
//                   agent's sight; leak checks prove that side)
//
// int32_t RefAgent_PostEvent(int32_t instance, int32_t command, int32_t value,
//                            int64_t llValue, int32_t frameWidth, int32_t frameHeight)
//   Queues one item {command, value, llValue, frame} for the agent numbered
//   `instance` (0: the agent that last received a non-null SetCallbackQueue).
//   Each agent's own producer thread writes its items into the ring it holds,
//   in post order, by the ring protocol (wait free slots, lock, write, count,
//   unlock, release filled slots). frameWidth > 0 gives the item a new
//   frameWidth x frameHeight image buffer of 4-byte pixels, blue = llValue &
//   0xFF, green = (llValue >> 8) & 0xFF, red = (llValue >> 16) & 0xFF, alpha
//   255, with one reference for the consumer; otherwise the frame is null.
//   0 when queued; -1 when there is no such agent or it holds no ring. Items
//   not yet written when the ring is taken away (SetCallbackQueue(null)) or
//   the agent ends are dropped and their frames released: nothing reaches a
//   ring after the call that took it away has returned.
//
// int32_t RefAgent_WaitPosted(int32_t instance, int32_t timeoutMs)
//   0 once every item posted to that agent is written into the ring (or
//   dropped as above); -1 on timeout or for no such agent.
//
// int32_t RefAgent_SeedTrack(int32_t where, int32_t trackingID, int32_t videoID,
//                            int32_t maskID, int64_t time, float x, float y,
//                            const float* points, int32_t pointCount)
//   Stores one track result, library wide: `where` 0 in the running track's
//   queue, 1 in the database (-1 for another value). `points` holds
//   3 * pointCount floats; pointCount -1 stores a queue result whose entry
//   comes without a list. A result with the same four keys is replaced.
//   RefAgent_Reset forgets every result.
//
// The journal: a JSON array, oldest call first, one object per call of the
// agent interface: {"agent": name, "instance": n, "op": operation, "args":
// [...]} with the arguments in contract order and out-parameters left out.
// AddRef and Release add "refs", the count after the call; the last Release
// is followed by {"agent", "instance", "op": "Destroyed"}. SetImageRetouchMgr
// adds "manager": the manager's address as an integer (0 for null). DumpTask adds
// "tasks": [[videoID, FUNCTION_ID], ...], the records held. Integers are
// exact; doubles (floats widened) have 17 significant digits and always a
// fraction or exponent; NaN, Infinity and -Infinity are bare tokens; C++
// bool is true/false, the 32-bit BOOL an integer; opaque pointers (the
// ImageRetouch, manager, database, ring, mask and image buffer pointers) are
// true or null. Data given by pointer is decoded: a plain effect record as
// {"version", "word", "vectors": [[{"time", "value", "interp"} or null, ...],
// ...]} (only "version" and "word" for a FUNCTION_ID without a known layout),
// the LUT block as {"size", "min", "max", "table"}, the ApplyBufferSetting
// block by its field names, a rectangle as {"left", "top", "right",
// "bottom"}, track history bytes as a lower-case hex string; a null pointer
// as null.
//
// What the reference agent does:
//   Clips. AddVideo registers (or overwrites) a clip: start, duration, aspect
//   ratio (width over height); S_OK. UpdateVideo changes a registered clip,
//   E_INVALIDARG for an unknown one. RemoveVideo forgets the clip and frees
//   everything held under its ID (records, masks, LUT); S_OK, or
//   E_INVALIDARG when the clip was never registered (what was held under the
//   ID is freed all the same). RemoveAllVideo forgets and frees everything.
//   GetVideoAspectRatio writes the clip's ratio, 16/9 for an unknown clip.
//   Effects. PushEffect takes the record (S_OK) and nulls the caller's
//   pointer; the agent keeps the latest record per clip and FUNCTION_ID and
//   frees a replaced one with all its entries. A null record: E_POINTER,
//   nothing taken. ClearTask frees the clip's records. The last Release frees
//   everything. Effect data changes take the agent's writer lock, so they
//   wait while another thread holds LockEffectDataWriter; an unlock from a
//   thread that does not hold it is refused and logged. A record whose
//   FUNCTION_ID has no known layout is kept all the same and freed as a bare
//   block (what hangs on it cannot be found); a log line says so.
//   Masks. AddMaskInfo takes the object per clip and mask ID and nulls the
//   slot (a null object: E_POINTER, nothing taken); an object held under the
//   same clip and mask ID is deleted. ClearMaskInfo, RemoveVideo and the last
//   Release delete the clip's objects: first the key records their lists
//   point to (and a selection key's points), then the object through its
//   virtual destructor, which frees the lists. masksHeld counts the objects
//   held. The journal decodes each object (class, IDs, every list with its
//   key records' fields, bInverse, nVideoID).
//   Frames. NeedsSourceCopy answers false. AdjustBufferRect leaves the
//   rectangle as it is (E_POINTER without one). ApplyEffectOnBuffer copies
//   the overlap of source and destination row by row, then renders the
//   clip's tone, white balance and saturation records at the block's time
//   onto the destination with the shared reference renderer
//   (reference/renderer; E_POINTER for a null block or pixel pointer) and measures
//   the result's histogram (pixels in memory order blue, green, red, alpha;
//   luminance 0.299 R + 0.587 G + 0.114 B rounded; exposure fields 0), which
//   GetHistogramInfo and GetToneCurveHistogramInfo return (all zero,
//   bGammaEncode true, before the first render). SetLUT copies the
//   block; ApplyLUTOnBuffer applies the clip's table (a 3-D table of
//   3 * size^3 values or three curves of 3 * size values) and answers false
//   without a table, for another table shape, or for a null buffer.
//   GetInterpolatedToneMapInfo appends four identity tables (65536 int32
//   each, from the effect heap) for a registered clip, E_FAIL otherwise.
//   Tracking. Lookups answer from the seeded results (a miss is E_FAIL):
//   QueryTrackResultInQueue by video, mask and time hands out a new entry
//   (operator new) with a new list; QueryMotionTrackingMaskInfo fills the
//   caller's list from the database by all four keys;
//   QueryLatestMotionTrackingMaskInfo answers the database result of the
//   three keys with the highest time, in a list that stays the agent's until
//   its next such lookup. GetMaxTrackingID writes the highest tracking ID
//   held (0 when none); GetCurrentTrackingID answers the one last seeded in
//   the queue. FlushQueue2DBUntilPos(tracking, video, mask, pos) moves the
//   queue results of those keys up to pos into the database;
//   ClearTrackResultQueue empties the queue;
//   DeleteMotionTrackingMaskInfoRange(video, mask, t) deletes database
//   results from t on, ...Interval(video, mask, t0, t1) those within [t0, t1].
//   CopyMTMaskInfoDB and DeleteTrackingKeyFrame only answer S_OK. The track history stream is
//   kept as given; GetTrackHistoryStream hands out a malloc'd copy (null and
//   size 0 when empty), FreeTrackHistoryStream frees it and nulls the pointer.
//   Switches. SetFrameRate keeps a finite positive rate (S_OK), else
//   E_INVALIDARG. SetDBMgr keeps both pointers and answers true. The other
//   setters keep their values and answer S_OK; GetDspVideoID answers what
//   SetDspVideoID set, 0 at first.
#pragma once

#include <cstdint>

#include "engine/engine_contract.h"

extern "C" {
IVXHvnDspAgent* CreateHvnDspAgent(const char* name, int32_t reserved, void* context);
int32_t RefAgent_Journal(char* buffer, int32_t capacity);
void RefAgent_Reset(void);
void RefAgent_SetResult(const char* agentName, const char* op, double value);
int64_t RefAgent_Counter(const char* name);
int32_t RefAgent_PostEvent(int32_t instance, int32_t command, int32_t value, int64_t llValue, int32_t frameWidth,
                           int32_t frameHeight);
int32_t RefAgent_WaitPosted(int32_t instance, int32_t timeoutMs);
int32_t RefAgent_SeedTrack(int32_t where, int32_t trackingID, int32_t videoID, int32_t maskID, int64_t time,
                           float x, float y, const float* points, int32_t pointCount);
}

// Function types of the entries, for callers that look them up by name.
using RefAgentJournalFn = int32_t (*)(char* buffer, int32_t capacity);
using RefAgentResetFn = void (*)();
using RefAgentSetResultFn = void (*)(const char* agentName, const char* op, double value);
using RefAgentCounterFn = int64_t (*)(const char* name);
using RefAgentPostEventFn = int32_t (*)(int32_t, int32_t, int32_t, int64_t, int32_t, int32_t);
using RefAgentWaitPostedFn = int32_t (*)(int32_t, int32_t);
using RefAgentSeedTrackFn = int32_t (*)(int32_t, int32_t, int32_t, int32_t, int64_t, float, float, const float*,
                                        int32_t);
