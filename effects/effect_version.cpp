#include "effects/effect_version.h"

#include "effects/effect_keys.h"
#include "engine/constants.h"
#include "runtime/dump_log.h"

namespace pcg {
namespace effects {

uint32_t EffectVersionForCode(int32_t versionCode) {
    switch (versionCode) {
    // Both package versions 2 and 3 land on record version 3; 8 is never written.
    case VX_NPK_EFFECT_VERSION_2:
    case VX_NPK_EFFECT_VERSION_3:
        return EFFECT_VERSION_3;
    case VX_NPK_EFFECT_VERSION_4:
        return EFFECT_VERSION_4;
    case VX_NPK_EFFECT_VERSION_5:
        return EFFECT_VERSION_5;
    case VX_NPK_EFFECT_VERSION_6:
        return EFFECT_VERSION_6;
    case VX_NPK_EFFECT_VERSION_7:
        return EFFECT_VERSION_7;
    default:
        return EFFECT_VERSION_LATEST;
    }
}

int32_t m_fnSetEffectVerToEffect(int32_t taskID, engine::EffectRecordHeader* record, PyObject* effect) {
    int versionCode = EFFECT_VERSION_LATEST;
    if (PyDict_Check(effect)) {
        PyObject* code = PyDict_GetItemString(effect, STR_EFFECT_VER);
        if (code != nullptr && !PyArg_Parse(code, "i", &versionCode)) {
            versionCode = EFFECT_VERSION_LATEST;
            PyErr_Clear();
        }
    } else if (PyList_Check(effect)) {
        // Local adjustment effects stamp their own version.
        return 0;
    }
    const uint32_t written = EffectVersionForCode(versionCode);
    if (record != nullptr) {
        record->nEffectVersion = written;
    }
    DumpLog("PyClipGrade::m_fnSetEffectVerToEffect, lEffectID = %ld, effectVer = %d", static_cast<long>(taskID),
            static_cast<int>(written));
    return 0;
}

}  // namespace effects
}  // namespace pcg
