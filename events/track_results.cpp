// Track results: the facade reads what the agent's queue and database hold
// into script lists, steers the flush and the deletes, and carries the track
// history as opaque bytes. Only the two lookups let go of the interpreter
// lock, and only for the agent's call.
#include <new>

#include "engine/track_results.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "runtime/dump_log.h"

namespace {

constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);

// A list item, or the list is left as it was when the value cannot be made.
void PutItem(PyObject* list, Py_ssize_t index, PyObject* item) {
    if (item == nullptr) {
        PyErr_Clear();
        item = Py_None;
        Py_INCREF(item);
    }
    PyList_SET_ITEM(list, index, item);
}

// Items from `first` on: one "(fff)" tuple per point.
void PutPoints(PyObject* list, Py_ssize_t first, const TrackPointList* points) {
    for (uint32_t at = 0; at < points->nCount; ++at) {
        const TrackPoint& point = points->pPoints[at];
        PutItem(list, first + at,
                Py_BuildValue("(fff)", static_cast<double>(point.fValue[0]), static_cast<double>(point.fValue[1]),
                              static_cast<double>(point.fValue[2])));
    }
}

// A list that claims points but has none would be read through null.
bool Readable(const TrackPointList* list) { return list->nCount == 0 || list->pPoints != nullptr; }

}  // namespace

PyObject* PyClipGrade::getTrackResult(int trackingID, int videoID, int maskID, LONGLONG time) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::getTrackResult, Error. m_dspAgent is NULL");
        Py_RETURN_NONE;
    }
    DumpLog("PyClipGrade::getTrackResult, Info. tracking_id=%d, video_id=%d, mask_id=%d, time=%lld", trackingID,
            videoID, maskID, static_cast<long long>(time));
    TrackPointList* list = nullptr;
    float position[2] = {0.0f, 0.0f};

    bool askDatabase = true;
    if (m_dspAgent->GetCurrentTrackingID() == trackingID) {
        int32_t result = 0;
        {
            PyGilUnlockScope unlock;
            TrackQueueEntry* entry = nullptr;
            result = m_dspAgent->QueryTrackResultInQueue(static_cast<uint32_t>(videoID), static_cast<uint32_t>(maskID),
                                                         time, &entry);
            if (result >= 0 && entry != nullptr) {
                list = entry->pList;
                entry->pList = nullptr;
                position[0] = entry->position[0];
                position[1] = entry->position[1];
                delete entry;
                if (list == nullptr) {
                    result = kFail;
                }
            }
        }
        // A success without an entry ends here with no list: the database is not asked.
        askDatabase = result < 0;
    }
    if (askDatabase) {
        int32_t result = 0;
        {
            PyGilUnlockScope unlock;
            list = new TrackPointList{};
            result = m_dspAgent->QueryMotionTrackingMaskInfo(trackingID, videoID, maskID, &list, time, position);
        }
        if (result < 0) {
            FreeTrackPointList(list);
            DumpLog("PyClipGrade::getTrackResult, Error. QueryMotionTrackingMaskInfo fail");
            Py_RETURN_NONE;
        }
    }
    if (list == nullptr || !Readable(list)) {
        FreeTrackPointList(list);
        DumpLog("PyClipGrade::getTrackResult, Error. QueryMotionTrackingMaskInfo fail");
        Py_RETURN_NONE;
    }
    PyObject* items = PyList_New(static_cast<Py_ssize_t>(list->nCount) + 1);
    if (items != nullptr) {
        PutItem(items, 0,
                Py_BuildValue("(ff)", static_cast<double>(position[0]), static_cast<double>(position[1])));
        PutPoints(items, 1, list);
    }
    // The list is this method's, whichever road it came by.
    FreeTrackPointList(list);
    return items;
}

PyObject* PyClipGrade::getLatestTrackResult(int videoID, int maskID, int trackingID) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::getLatestTrackResult, Error. m_dspAgent is NULL");
        Py_RETURN_NONE;
    }
    DumpLog("PyClipGrade::getLatestTrackResult, Info. video_id=%d, mask_id=%d, tracking_id=%d", videoID, maskID,
            trackingID);
    TrackPointList* list = nullptr;
    int64_t time = 0;
    float position[2] = {0.0f, 0.0f};
    int32_t result = 0;
    {
        PyGilUnlockScope unlock;
        result = m_dspAgent->QueryLatestMotionTrackingMaskInfo(videoID, maskID, trackingID, &list, &time, position);
    }
    if (result < 0) {
        DumpLog("PyClipGrade::getLatestTrackResult, Error. QueryMotionTrackingMaskInfo fail");
        Py_RETURN_NONE;
    }
    if (list == nullptr || !Readable(list)) {
        // A success without a list would be read through null.
        DumpLog("PyClipGrade::getLatestTrackResult, Error. QueryMotionTrackingMaskInfo gave no list");
        Py_RETURN_NONE;
    }
    // The list stays the agent's.
    PyObject* items = PyList_New(static_cast<Py_ssize_t>(list->nCount) + 2);
    if (items != nullptr) {
        PutItem(items, 0, Py_BuildValue("L", static_cast<long long>(time)));
        PutItem(items, 1,
                Py_BuildValue("(ff)", static_cast<double>(position[0]), static_cast<double>(position[1])));
        PutPoints(items, 2, list);
    }
    return items;
}

PyObject* PyClipGrade::GetMaxTrackingID() {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::GetMaxTrackingID, Error. m_dspAgent is NULL");
        Py_RETURN_NONE;
    }
    int32_t trackingID = 0;
    if (m_dspAgent->GetMaxTrackingID(&trackingID) < 0) {
        Py_RETURN_NONE;
    }
    return Py_BuildValue("i", static_cast<int>(trackingID));
}

void PyClipGrade::FlushQueue2DBUntilPos(int first, int second, int third, LONGLONG position) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::FlushQueue2DBUntilPos, Error. m_dspAgent is NULL");
        return;
    }
    if (m_dspAgent->FlushQueue2DBUntilPos(first, second, third, position) < 0) {
        DumpLog("PyClipGrade::FlushQueue2DBUntilPos, Error. FlushQueue2DBUntilPos Fail");
    }
}

void PyClipGrade::ClearTrackResultQueue() {
    if (m_dspAgent != nullptr) {
        m_dspAgent->ClearTrackResultQueue();
    }
}

void PyClipGrade::copyTrackResultInDB(int first, int second, int third) {
    DumpLog("PyClipGrade::copyTrackResultInDB start ");
    if (m_dspAgent == nullptr) {
        // The text of getTrackResult, as the trace has always read.
        DumpLog("PyClipGrade::getTrackResult, Error. m_dspAgent is NULL");
        return;
    }
    DumpLog("PyClipGrade::copyTrackResultInDB call m_dspAgent->CopyMTMaskInfoDB");
    m_dspAgent->CopyMTMaskInfoDB(first, second, third);
    DumpLog("PyClipGrade::copyTrackResultInDB end");
}

bool PyClipGrade::DeleteMotionTrackingMaskInfoRange(int first, int second, LONGLONG time) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::DeleteMotionTrackingMaskInfoRange, Error. m_dspAgent is NULL");
        return false;
    }
    return m_dspAgent->DeleteMotionTrackingMaskInfoRange(first, second, time) >= 0;
}

bool PyClipGrade::DeleteMotionTrackingMaskInfoInterval(int first, int second, LONGLONG begin, LONGLONG end) {
    if (m_dspAgent == nullptr) {
        DumpLog("PyClipGrade::DeleteMotionTrackingMaskInfoInterval, Error. m_dspAgent is NULL");
        return false;
    }
    return m_dspAgent->DeleteMotionTrackingMaskInfoInterval(first, second, begin, end) >= 0;
}

void PyClipGrade::DeleteTrackingKeyFrame(LONGLONG time) {
    if (m_dspAgent != nullptr) {
        m_dspAgent->DeleteTrackingKeyFrame(time);
    }
}

PyObject* PyClipGrade::GetTrackHistoryStream() {
    if (m_dspAgent == nullptr) {
        Py_RETURN_NONE;
    }
    char* bytes = nullptr;
    // Preset, unlike the agent's contract asks: an agent that leaves it
    // unwritten would otherwise copy an unknown length.
    uint32_t size = 0;
    if (m_dspAgent->GetTrackHistoryStream(&bytes, &size) < 0) {
        if (bytes != nullptr) {
            // Bytes handed out with a failure would be lost: they go back.
            DumpLog("PyClipGrade::GetTrackHistoryStream, the agent failed and still gave bytes; they go back");
            m_dspAgent->FreeTrackHistoryStream(&bytes);
        }
        Py_RETURN_NONE;
    }
    PyObject* stream = nullptr;
    if (bytes == nullptr) {
        stream = Py_None;
        Py_INCREF(stream);
    } else {
        stream = pcg_BytesFromBuffer(bytes, static_cast<Py_ssize_t>(size));
    }
    m_dspAgent->FreeTrackHistoryStream(&bytes);
    return stream;
}

void PyClipGrade::SetTrackHistoryStream(char* stream, int size) {
    if (m_dspAgent != nullptr) {
        m_dspAgent->SetTrackHistoryStream(stream, static_cast<uint32_t>(size));
    }
}

void PyClipGrade::ClearCurTrackHistoryStream() {
    if (m_dspAgent != nullptr) {
        m_dspAgent->ClearCurTrackHistoryStream();
    }
}
