#include "effects/converters.h"

#include "engine/result_codes.h"

namespace pcg {
namespace effects {
namespace {

struct ConverterEntry {
    FUNCTION_ID functionID;
    EffectConverter converter;
};

// FUNCTION_SET_LEVEL and FUNCTION_SET_LEVEL_RGB pass the task map and have
// no converter: level tasks are refused here.
constexpr ConverterEntry kConverters[] = {
    {FUNCTION_SET_CLARITY, m_fnClarityToEffect},
};

}  // namespace

EffectConverter FindEffectConverter(FUNCTION_ID functionID) {
    for (const ConverterEntry& entry : kConverters) {
        if (entry.functionID == functionID) {
            return entry.converter;
        }
    }
    return nullptr;
}

int32_t DispatchEffectConverter(PyClipGrade* facade, FUNCTION_ID functionID, PyObject* effect,
                                engine::EffectRecordHeader*& record) {
    EffectConverter converter = FindEffectConverter(functionID);
    if (converter == nullptr) {
        return kResultInvalidArg;
    }
    converter(facade, functionID, effect, record);
    return kResultOk;
}

}  // namespace effects
}  // namespace pcg
