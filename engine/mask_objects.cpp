#include "engine/mask_objects.h"

namespace pcg {
namespace engine {

void* MaskHeapObject::operator new(std::size_t size) noexcept {
    return AllocEffectMemory(size);
}

void MaskHeapObject::operator delete(void* block) noexcept {
    FreeEffectMemory(block);
}

}  // namespace engine
}  // namespace pcg

namespace HVN {

MaskInfoBase::~MaskInfoBase() = default;

GradientMask::~GradientMask() {
    keyFrames.Free();
}

// Lists are freed last list first.
SelectionMask::~SelectionMask() {
    featherShifts.Free();
    feathers.Free();
    keyFrames.Free();
}

EllipseMask::~EllipseMask() {
    m_fourthList.Free();
    feathers.Free();
    m_secondList.Free();
    keyFrames.Free();
}

MotionTrackMask::~MotionTrackMask() {
    trExpress.Free();
    feathers.Free();
    lines.Free();
    m_firstList.Free();
}

}  // namespace HVN
