// Tone questions: a curve through free pivots as a table (for display and
// for the engine), the render agent's interpolated tone maps of a clip, and
// the histograms of the last render.
#include <cstring>

#include "engine/effect_record.h"
#include "engine/result_codes.h"
#include "engine/keyed_records/tone_records.h"
#include "engine/records/effect_records.h"
#include "events/py_gil_unlock_scope.h"
#include "facade/clipgrade.h"
#include "masks/script_reading.h"
#include "runtime/dump_log.h"

namespace {

constexpr int kDisplayMaxValue = 255;

// The default setting of a curve question: zero regions, quarter pivots,
// 16-bit range, no pivots.
ToneCurveRGBSetting DefaultCurveSetting() { return ToneCurveRGBSetting(); }

// "TCurvPts" of the dictionary, if there, into the pivots: the first 20 pairs.
void ReadDisplayPivots(PyObject* pPyoSetting, ToneCurveRGBSetting& setting) {
    using pcg::masks::ScriptRef;
    ScriptRef pivots = pcg::masks::DictValue(pPyoSetting, "TCurvPts");
    if (pivots) {
        int32_t count = pcg::masks::ScriptListSize(pivots.get());
        if (count > FREE_TONECURVE_PIVOT_COUNT) {
            DumpLog("[Query_ToneMapInfo]free pivot count(%d) exceed the limit, reduce to max", count);
            count = FREE_TONECURVE_PIVOT_COUNT;
        }
        // Not a list: no pivots.
        setting.nPivotCount = count > 0 ? count : 0;
        for (int32_t i = 0; i < setting.nPivotCount; ++i) {
            ScriptRef pair = pcg::masks::ListItem(pivots.get(), i);
            if (!pair) continue;  // the list grew shorter under a conversion
            if (!PyArg_ParseTuple(pair.get(), "ff", &setting.fPivotX[i], &setting.fPivotY[i])) {
                // A pair that does not parse keeps what it reached; the
                // operation answers with its own result.
                PyErr_Clear();
            }
        }
    }
    DumpLog("[Query_ToneMapInfo]nPivotCount = %d", setting.nPivotCount);
    for (int i = 0; i < setting.nPivotCount; ++i) {
        DumpLog("[Query_ToneMapInfo]Pivot Points[%d] (%f, %f)", i, setting.fPivotX[i], setting.fPivotY[i]);
    }
}

}  // namespace

PyObject* PyClipGrade::Query_ToneMapInfo(PyObject* pPyoSetting) {
    DumpLog("PyClipGrade::Query_ToneMapInfo() enter\n");
    if (m_pImageRetouch == nullptr || pPyoSetting == nullptr) Py_RETURN_NONE;
    ToneCurveRGBSetting setToneCurve = DefaultCurveSetting();
    ReadDisplayPivots(pPyoSetting, setToneCurve);

    ToneMappingInfo mappingInfo;
    mappingInfo.MappingTable = new (std::nothrow) int[TONE_MAX_TABLE_SIZE]();
    mappingInfo.nMappingTableSize = 0;
    if (mappingInfo.MappingTable == nullptr) {
        DumpLog("PyClipGrade::Query_ToneMapInfo [Err] no table of %d entries\n", TONE_MAX_TABLE_SIZE);
        Py_RETURN_NONE;
    }
    setToneCurve.nMaxValue = kDisplayMaxValue;
    {
        PyGilUnlockScope unlocked;
        const HRESULT hr = m_pImageRetouch->GetToneCurveInfo(setToneCurve, &mappingInfo);
        if (hr < 0) {
            DumpLog("PyClipGrade::Query_ToneMapInfo m_pImageRetouch->GetToneCurveInfo(setToneCurve, &mappingInfo) "
                    "failed hr=0x%08X\n",
                    static_cast<unsigned>(hr));
        }
    }
    DumpLog("PyClipGrade::Query_ToneMapInfo() end\n");
    const PyGILState_STATE state = PyGILState_Ensure();
    PyObject* table = PyDict_New();
    for (int i = 0; table != nullptr && i <= setToneCurve.nMaxValue; ++i) {
        PyObject* key = PyInt_FromLong(i);
        PyObject* value = PyInt_FromLong(mappingInfo.MappingTable[i]);
        if (key == nullptr || value == nullptr || PyDict_SetItem(table, key, value) != 0) {
            Py_CLEAR(table);
        }
        Py_XDECREF(key);
        Py_XDECREF(value);
    }
    PyGILState_Release(state);
    delete[] mappingInfo.MappingTable;
    return table;
}

int* PyClipGrade::Query_ToneMapInfoForEngine(ToneCurveRGBSetting setToneCurve) {
    // The table travels inside a record that the agent frees, so it comes
    // from the effect heap, allocated before anything else. Without an image
    // engine it is handed on as it stands: zero-filled on this heap.
    auto* result = static_cast<int*>(pcg::engine::AllocEffectMemory(pcg::engine::kCurveTableBytes));
    if (m_pImageRetouch == nullptr || result == nullptr) return result;
    if (setToneCurve.nPivotCount > FREE_TONECURVE_PIVOT_COUNT) {
        DumpLog("[Query_ToneMapInfoForEngine]free pivot count(%d) exceed the limit, reduce to max",
                setToneCurve.nPivotCount);
        setToneCurve.nPivotCount = FREE_TONECURVE_PIVOT_COUNT;
    }
    DumpLog("[Query_ToneMapInfoForEngine]nPivotCount = %d", setToneCurve.nPivotCount);
    setToneCurve.nMaxValue = MAX_16BITS_VALUE;
    ToneMappingInfo mappingInfo;
    mappingInfo.MappingTable = new (std::nothrow) int[TONE_MAX_TABLE_SIZE]();
    if (mappingInfo.MappingTable == nullptr) {
        DumpLog("PyClipGrade::Query_ToneMapInfoForEngine [Err] no scratch table; the curve stays unfilled\n");
        return result;
    }
    const HRESULT hr = m_pImageRetouch->GetToneCurveInfo(setToneCurve, &mappingInfo);
    if (hr < 0) {
        DumpLog("PyClipGrade::Query_ToneMapInfoForEngine m_pImageRetouch->GetToneCurveInfo(setToneCurve, "
                "&mappingInfo) failed hr=0x%08X\n",
                static_cast<unsigned>(hr));
    }
    std::memcpy(result, mappingInfo.MappingTable, pcg::engine::kCurveTableBytes);
    delete[] mappingInfo.MappingTable;
    return result;
}

PyObject* PyClipGrade::Query_InterpolatedToneMapInfo(UINT nVideoID, LONGLONG llTime) {
    constexpr int kMapCount = 4;
    PyObject* maps[kMapCount] = {PyDict_New(), PyDict_New(), PyDict_New(), PyDict_New()};
    PyObject* outer = PyDict_New();
    pcg::engine::ContractVector<int32_t*> tables;
    HRESULT hr = pcg::kResultPointer;
    if (m_dspAgent != nullptr) {
        PyGilUnlockScope unlocked;
        hr = m_dspAgent->GetInterpolatedToneMapInfo(nVideoID, llTime, tables);
    }
    bool complete = outer != nullptr;
    for (PyObject* map : maps) complete = complete && map != nullptr;
    if (hr == 0 && tables.size() == kMapCount && complete) {
        for (int index = 0; index < kMapCount; ++index) {
            const int32_t* table = tables[index];
            for (int32_t i = 0; table != nullptr && i < TONE_MAX_TABLE_SIZE; ++i) {
                PyObject* key = PyInt_FromLong(i);
                PyObject* value = PyInt_FromLong(table[i]);
                if (key != nullptr && value != nullptr) PyDict_SetItem(maps[index], key, value);
                Py_XDECREF(key);
                Py_XDECREF(value);
            }
            PyObject* key = PyInt_FromLong(index);
            if (key != nullptr) PyDict_SetItem(outer, key, maps[index]);
            Py_XDECREF(key);
        }
        // Memory running out half-way leaves what was filled; the result
        // is never an error.
        PyErr_Clear();
    }
    for (int32_t* table : tables) pcg::engine::FreeEffectMemory(table);
    tables.Free();
    for (PyObject* map : maps) Py_XDECREF(map);
    return outer;
}

CHistogramDist* PyClipGrade::GetHistogramInfo() {
    CHistogramDist* histogram = new (std::nothrow) CHistogramDist;
    if (histogram != nullptr && histogram->m_pHisdist != nullptr && m_dspBufAgent != nullptr) {
        *histogram->m_pHisdist = m_dspBufAgent->GetHistogramInfo();
    }
    return histogram;
}

CHistogramDist* PyClipGrade::GetToneCurveHistogramInfo() {
    CHistogramDist* histogram = new (std::nothrow) CHistogramDist;
    if (histogram != nullptr && histogram->m_pHisdist != nullptr && m_dspBufAgent != nullptr) {
        *histogram->m_pHisdist = m_dspBufAgent->GetToneCurveHistogramInfo();
    }
    return histogram;
}
