// CMagicSelection: the facade's thin adapter over the smart selection
// engine's object, made and released through ZenodorLoader. The engine keeps
// the picture, the strokes and their history; this class keeps only the
// object pointer.
#pragma once

#include <cstdint>

#include "engine/records/image_records.h"
#include "engine/selection_engine.h"
#include "engine/selection_result.h"
#include "selection/zenodor_loader.h"

class CMagicSelection {
public:
    CMagicSelection();

    // Makes the engine object through the loader and hands it the picture:
    // bufferData's pixels, 3 bytes per pixel, which stay valid until
    // Uninitialize. A second Initialize replaces the pointer without a
    // release, as the engine contract has it.
    int32_t Initialize(ZenodorLoader* pZenodorLoader, BufferData bufferData);
    // Uninitializes the object, then releases it through the loader.
    int32_t Uninitialize(ZenodorLoader* pZenodorLoader);
    // One stroke; the engine writes the whole selection into result.mask.
    int32_t MagicSelect(MagicStroke stroke, SelectionResult& result);
    int32_t ClearStrokeHistory();
    int32_t GetCurrentTimeStamp(int64_t& nTimeStamp);
    int32_t Undo(int nStep);
    int32_t Redo(int nStep);

    IMagicSelection* m_pMagicSelection;
};
