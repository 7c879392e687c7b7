#include "effects/converters.h"
#include "effects/effect_snapshot.h"
#include "effects/effect_version.h"
#include "effects/task_map.h"
#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "runtime/dump_log.h"

HRESULT PyClipGrade::PushTask(UINT videoID, long taskID, PyObject* effect, bool useBufferAgent) {
    DumpLog("PyClipGrade::PushTask() enter\n");
    DumpLog("PyClipGrade::PushTask, Info. videoID=%d, taskID=%d", static_cast<int>(videoID), static_cast<int>(taskID));

    IVXHvnDspAgent* agent = useBufferAgent ? m_dspBufAgent : m_dspAgent;
    if (agent == nullptr) {
        DumpLog("PyClipGrade::PushTask Null Pointer : agent\n");
        return pcg::kResultPointer;
    }

    FUNCTION_ID functionID = FUNCTION_ID_UNKNOWN;
    if (pcg::effects::MapTaskToFunction(static_cast<int32_t>(taskID), functionID) < 0) {
        DumpLog("PyClipGrade::PushTask, Error. Can't find the mapping of taskID(%d)", static_cast<int>(taskID));
        return pcg::kResultFail;
    }

    // The converters read a copy: the values they convert run script code,
    // which may change the script's own dictionaries and lists meanwhile.
    pcg::effects::EffectSnapshot snapshot(effect);
    pcg::engine::EffectRecordHeader* record = nullptr;
    const HRESULT dispatched = pcg::effects::DispatchEffectConverter(this, functionID, snapshot.Effect(), record);
    if (dispatched < 0) {
        return dispatched;
    }

    if (record != nullptr) {
        pcg::effects::m_fnSetEffectVerToEffect(static_cast<int32_t>(taskID), record, snapshot.Effect());
        // The agent may take its time; other script threads go on meanwhile.
        PyGilUnlockScope unlocked;
        agent->PushEffect(videoID, functionID, &record);
    }

    DumpLog("PyClipGrade::PushTask() end\n");
    return pcg::kResultOk;
}
