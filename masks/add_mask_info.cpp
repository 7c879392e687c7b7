#include "engine/result_codes.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "masks/mask_builders.h"
#include "runtime/dump_log.h"

HRESULT PyClipGrade::AddMaskInfo(UINT videoID, long taskID, PyObject* masks, bool useBufferAgent) {
    DumpLog("PyClipGrade::AddMaskInfo() enter\n");
    DumpLog("PyClipGrade::AddMaskInfo, Info. videoID=%d, taskID=%d", static_cast<int>(videoID), static_cast<int>(taskID));

    IVXHvnDspAgent* agent = m_fnSelectAgent(useBufferAgent);
    if (agent == nullptr) {
        DumpLog("PyClipGrade::AddMaskInfo Null Pointer : agent\n");
        return pcg::kResultPointer;
    }

    int32_t maskFunctionID = 0;
    if (!pcg::masks::MapTaskToMaskFunction(static_cast<int32_t>(taskID), maskFunctionID)) {
        return pcg::kResultInvalidArg;
    }

    HVN::MaskInfoBase** array = nullptr;
    int32_t count = 0;
    // The builder's result is only logged by the builder: what counts is
    // whether an array came back.
    if (!pcg::masks::BuildMaskArray(maskFunctionID, masks, videoID, &array, &count)) {
        DumpLog("PyClipGrade::AddMaskInfo, Error. un-support MASK_FUNC_ID(%d)", maskFunctionID);
        return pcg::kResultInvalidArg;
    }
    if (array == nullptr) {
        DumpLog("PyClipGrade::AddMaskInfo() end\n");
        return pcg::kResultOk;
    }

    {
        // The agent may wait on its own locks; other script threads go on.
        PyGilUnlockScope unlocked;
        for (int32_t index = 0; index < count; ++index) {
            HVN::MaskInfoBase** slot = &array[index];
            if (*slot != nullptr) {
                agent->AddMaskInfo(videoID, static_cast<FUNCTION_ID>(maskFunctionID),
                                   static_cast<uint32_t>((*slot)->nMaskID), slot);
            }
        }
        // The objects are the agent's now; only the array is ours.
        pcg::masks::FreeMaskArray(array);
    }

    DumpLog("PyClipGrade::AddMaskInfo() end\n");
    return pcg::kResultOk;
}
