// The reference smart selection object: keeps the picture (as L*a*b*), the
// live selection and its stroke history. Each accepted stroke is one step of
// undo and redo; the selection after every step is kept as runs of selected
// pixels, so a long session holds little memory.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/selection_engine.h"
#include "reference/agent/journal_json.h"
#include "reference/select/region_grow.h"

namespace pcg {
namespace refselect {

// Stroke flags as this engine reads them: the first removes the region from
// the selection instead of adding it; the second selects every similar pixel
// of the picture, connected or not; the third is recorded and has no effect.
class CRefMagicSelection final : public IMagicSelection {
public:
    explicit CRefMagicSelection(int64_t nInstance);
    ~CRefMagicSelection();

    int32_t Reserved1() override;
    int32_t Reserved2() override;
    int32_t Reserved3() override;
    int32_t Initialize(const MagicImage* pImage, void* pReserved) override;
    int32_t Uninitialize() override;
    int32_t MagicSelect(const MagicStroke* pStroke, const MagicMask* pMask, SelectionResult* pResult) override;
    int32_t ClearStrokeHistory() override;
    int32_t GetCurrentTimeStamp(int64_t* pllTimeStamp) override;
    int32_t Undo(int nStep) override;
    int32_t Redo(int nStep) override;

    // Journals the release; the library's release entry calls it before delete.
    void JournalRelease();

private:
    using Runs = std::vector<uint32_t>;  // start, length, start, length, ... of linear indices

    pcg::refagent::Json m_fnEntry(const char* op, pcg::refagent::Json args) const;
    int32_t m_fnAnswer(const char* op, int32_t own) const;
    void m_fnDropHistory();
    void m_fnTruncateRedo();
    static Runs m_fnEncode(const std::vector<uint8_t>& state);
    static void m_fnDecode(const Runs& runs, std::vector<uint8_t>& state);
    // Decodes the state at the cursor into m_current.
    void m_fnLoadCursor();

    int64_t m_nInstance;
    bool m_bHasPicture;
    LabPicture m_picture;
    bool m_bHasBase;              // the selection before the first step is known
    Runs m_base;
    std::vector<Runs> m_steps;    // the selection after each step
    size_t m_nCursor;             // steps in effect
    std::vector<uint8_t> m_current;
    int64_t m_llNextStamp;
};

}  // namespace refselect
}  // namespace pcg
