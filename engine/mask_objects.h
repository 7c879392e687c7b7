// The mask objects that the render agent keeps: one object per mask, each
// holding the whole animation of that mask as lists of keys over time. They
// are a binary contract with the agent, which deletes them through their
// virtual destructor, so every size and offset is fixed below.
//
// Objects, key records and list storage all come from the heap that records
// use (AllocEffectMemory / FreeEffectMemory), zero-filled, so the agent and
// this module free each other's blocks on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "engine/effect_record.h"

namespace pcg {
namespace engine {

// Class-level allocation through the shared heap. `new` answers null instead
// of throwing when the heap refuses, and the block is zero-filled.
struct MaskHeapObject {
    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* block) noexcept;
    static void* operator new[](std::size_t size) noexcept = delete;
    static void operator delete[](void* block) noexcept = delete;
};

// The kinds a mask object names in nMaskKind.
enum MaskKind : int32_t {
    MASK_KIND_GRADIENT = 0,
    MASK_KIND_MOTION_TRACK = 1,
    MASK_KIND_SELECTION = 2,
    MASK_KIND_ELLIPSE = 3,
};

// ------------------------------------------------------------ key records

// One animated integer (a feather, a line width).
struct MaskValueKey : MaskHeapObject {
    int64_t llTime;
    int32_t nValue;
    int32_t nLineStyle;
};

// One key of a gradient: its time twice and four geometry values.
struct GradientKey : MaskHeapObject {
    int64_t llTime;
    int64_t llTime2;
    float fGeometry[4];
    int32_t nLineStyle;
};

// One key of an ellipse. The two 4-byte gaps are never written.
struct EllipseKey : MaskHeapObject {
    int64_t llTime;
    int64_t llTime2;
    float fFirstPair[2];
    double dAngle;
    uint32_t m_reserved32;
    float fSecondPair[2];
    uint32_t m_reserved44;
    int32_t nLineStyle;
};

// One outline point of a selection key.
struct SelectionPoint {
    float fX;
    float fY;
};

// One key of a selection outline. Only the duration and the points are
// written here; the rest is the agent's to fill or read.
struct SelectionKey : MaskHeapObject {
    int64_t llDuration;
    unsigned char m_agentHead[24];
    ContractVector<SelectionPoint> points;
    unsigned char m_agentTail[48];
};

// One entry of a motion track's expression list, held by value.
struct TRExpressEntry {
    int64_t llFirst;
    int64_t llSecond;
    int32_t nThird;
};

static_assert(sizeof(MaskValueKey) == 16, "MaskValueKey");
static_assert(offsetof(MaskValueKey, llTime) == 0, "MaskValueKey::llTime");
static_assert(offsetof(MaskValueKey, nValue) == 8, "MaskValueKey::nValue");
static_assert(offsetof(MaskValueKey, nLineStyle) == 12, "MaskValueKey::nLineStyle");

static_assert(sizeof(GradientKey) == 40, "GradientKey");
static_assert(offsetof(GradientKey, llTime) == 0, "GradientKey::llTime");
static_assert(offsetof(GradientKey, llTime2) == 8, "GradientKey::llTime2");
static_assert(offsetof(GradientKey, fGeometry) == 16, "GradientKey::fGeometry");
static_assert(offsetof(GradientKey, nLineStyle) == 32, "GradientKey::nLineStyle");

static_assert(sizeof(EllipseKey) == 56, "EllipseKey");
static_assert(offsetof(EllipseKey, llTime) == 0, "EllipseKey::llTime");
static_assert(offsetof(EllipseKey, llTime2) == 8, "EllipseKey::llTime2");
static_assert(offsetof(EllipseKey, fFirstPair) == 16, "EllipseKey::fFirstPair");
static_assert(offsetof(EllipseKey, dAngle) == 24, "EllipseKey::dAngle");
static_assert(offsetof(EllipseKey, m_reserved32) == 32, "EllipseKey gap");
static_assert(offsetof(EllipseKey, fSecondPair) == 36, "EllipseKey::fSecondPair");
static_assert(offsetof(EllipseKey, m_reserved44) == 44, "EllipseKey gap");
static_assert(offsetof(EllipseKey, nLineStyle) == 48, "EllipseKey::nLineStyle");

static_assert(sizeof(SelectionPoint) == 8, "SelectionPoint");
static_assert(offsetof(SelectionPoint, fY) == 4, "SelectionPoint::fY");
static_assert(sizeof(SelectionKey) == 104, "SelectionKey");
static_assert(offsetof(SelectionKey, llDuration) == 0, "SelectionKey::llDuration");
static_assert(offsetof(SelectionKey, points) == 32, "SelectionKey::points");

static_assert(sizeof(TRExpressEntry) == 24, "TRExpressEntry");
static_assert(offsetof(TRExpressEntry, llFirst) == 0, "TRExpressEntry::llFirst");
static_assert(offsetof(TRExpressEntry, llSecond) == 8, "TRExpressEntry::llSecond");
static_assert(offsetof(TRExpressEntry, nThird) == 16, "TRExpressEntry::nThird");

}  // namespace engine
}  // namespace pcg

namespace HVN {

// The head of every mask object. Its only virtual operation is the
// destructor, through which the agent deletes the object.
class MaskInfoBase : public pcg::engine::MaskHeapObject {
public:
    MaskInfoBase() = default;
    virtual ~MaskInfoBase();
    MaskInfoBase(const MaskInfoBase&) = delete;
    MaskInfoBase& operator=(const MaskInfoBase&) = delete;

    int32_t nMaskID = 0;
    int32_t nMaskKind = 0;
    uint32_t effectInfoID = 0;
};

// A destructor frees the storage of its lists only, never the key records
// they point to: those belong to whoever deletes the object.
class GradientMask : public MaskInfoBase {
public:
    ~GradientMask() override;
    pcg::engine::ContractVector<pcg::engine::GradientKey*> keyFrames;
};

class SelectionMask : public MaskInfoBase {
public:
    ~SelectionMask() override;
    pcg::engine::ContractVector<pcg::engine::SelectionKey*> keyFrames;
    pcg::engine::ContractVector<pcg::engine::MaskValueKey*> feathers;
    pcg::engine::ContractVector<pcg::engine::MaskValueKey*> featherShifts;
    bool bInverse = false;
};

// The ellipse's second and fourth lists stay empty; they make its shape that
// of the motion track mask, with which it shares its destructor.
class EllipseMask : public MaskInfoBase {
public:
    ~EllipseMask() override;
    pcg::engine::ContractVector<pcg::engine::EllipseKey*> keyFrames;
    pcg::engine::ContractVector<void*> m_secondList;
    pcg::engine::ContractVector<pcg::engine::MaskValueKey*> feathers;
    pcg::engine::ContractVector<void*> m_fourthList;
    bool bInverse = false;
};

// The first list stays empty.
class MotionTrackMask : public MaskInfoBase {
public:
    ~MotionTrackMask() override;
    pcg::engine::ContractVector<void*> m_firstList;
    pcg::engine::ContractVector<pcg::engine::MaskValueKey*> lines;
    pcg::engine::ContractVector<pcg::engine::MaskValueKey*> feathers;
    pcg::engine::ContractVector<pcg::engine::TRExpressEntry> trExpress;
    bool bInverse = false;
    int32_t nVideoID = 0;
};

}  // namespace HVN

// The classes carry a virtual table, so they are not standard layout; GCC
// still gives their offsets as constants (the Itanium layout, which mingw-w64
// uses too), and these asserts pin them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(HVN::MaskInfoBase) == 24, "MaskInfoBase");
static_assert(offsetof(HVN::MaskInfoBase, nMaskID) == 8, "MaskInfoBase::nMaskID");
static_assert(offsetof(HVN::MaskInfoBase, nMaskKind) == 12, "MaskInfoBase::nMaskKind");
static_assert(offsetof(HVN::MaskInfoBase, effectInfoID) == 16, "MaskInfoBase::effectInfoID");

static_assert(sizeof(HVN::GradientMask) == 48, "GradientMask");
static_assert(offsetof(HVN::GradientMask, keyFrames) == 24, "GradientMask::keyFrames");

static_assert(sizeof(HVN::SelectionMask) == 104, "SelectionMask");
static_assert(offsetof(HVN::SelectionMask, keyFrames) == 24, "SelectionMask::keyFrames");
static_assert(offsetof(HVN::SelectionMask, feathers) == 48, "SelectionMask::feathers");
static_assert(offsetof(HVN::SelectionMask, featherShifts) == 72, "SelectionMask::featherShifts");
static_assert(offsetof(HVN::SelectionMask, bInverse) == 96, "SelectionMask::bInverse");

static_assert(sizeof(HVN::EllipseMask) == 128, "EllipseMask");
static_assert(offsetof(HVN::EllipseMask, keyFrames) == 24, "EllipseMask::keyFrames");
static_assert(offsetof(HVN::EllipseMask, m_secondList) == 48, "EllipseMask second list");
static_assert(offsetof(HVN::EllipseMask, feathers) == 72, "EllipseMask::feathers");
static_assert(offsetof(HVN::EllipseMask, m_fourthList) == 96, "EllipseMask fourth list");
static_assert(offsetof(HVN::EllipseMask, bInverse) == 120, "EllipseMask::bInverse");

static_assert(sizeof(HVN::MotionTrackMask) == 128, "MotionTrackMask");
static_assert(offsetof(HVN::MotionTrackMask, m_firstList) == 24, "MotionTrackMask first list");
static_assert(offsetof(HVN::MotionTrackMask, lines) == 48, "MotionTrackMask::lines");
static_assert(offsetof(HVN::MotionTrackMask, feathers) == 72, "MotionTrackMask::feathers");
static_assert(offsetof(HVN::MotionTrackMask, trExpress) == 96, "MotionTrackMask::trExpress");
static_assert(offsetof(HVN::MotionTrackMask, bInverse) == 120, "MotionTrackMask::bInverse");
static_assert(offsetof(HVN::MotionTrackMask, nVideoID) == 124, "MotionTrackMask::nVideoID");
#pragma GCC diagnostic pop
