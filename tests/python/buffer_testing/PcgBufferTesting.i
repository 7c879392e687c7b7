// Test-only companion module: makes, fills and reads image buffers for the
// Python tests and examples, and gives a facade a buffer allocator until the
// image engine provides one. It shares SWIG's type table with _PyClipGrade,
// so its IImageBuffer handles are the module's own kind.
%module PcgBufferTesting

%{
#include <cstring>

#include "bench/selection_tool_timing.h"
#include "facade/clipgrade.h"
#include "imaging/cimage_buffer.h"

namespace {

// Hands out the module's own buffers, one reference for the caller.
class TestingAllocator final : public IBufferAllocator {
public:
    int32_t PCG_WINAPI QueryInterface(const pcg::engine::ComGuid&, void** ppv) override {
        if (ppv) *ppv = nullptr;
        return pcg::engine::kResultNoInterface;
    }
    uint32_t PCG_WINAPI AddRef() override { return 1; }
    uint32_t PCG_WINAPI Release() override { return 1; }
    int32_t PCG_WINAPI allocateImageBuffer(IImageBuffer** pp, uint32_t w, uint32_t h, int bytes) override {
        if (!pp) return static_cast<int32_t>(0x80004003u);
        *pp = bytes > 0 ? CreateImageBuffer(w, h, static_cast<uint32_t>(bytes)) : nullptr;
        return *pp ? 0 : static_cast<int32_t>(0x80004005u);
    }
};
TestingAllocator g_allocator;

}  // namespace

// A zero-filled buffer with one reference, or None.
IImageBuffer* NewBuffer(unsigned int width, unsigned int height, unsigned int pixelBytes) {
    IImageBuffer* buffer = CreateImageBuffer(width, height, pixelBytes);
    if (!buffer) return nullptr;
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    std::memset(p, 0, static_cast<size_t>(width) * height * pixelBytes);
    buffer->UnlockBuffer();
    return buffer;
}

// Copies bytes into the pixels, at most as many as there are; the count
// copied. Any object with contiguous bytes (bytes, bytearray, memoryview, a
// numpy array) is copied straight from its own memory: one copy in all.
long WriteBytes(IImageBuffer* buffer, PyObject* data) {
    if (!buffer || !data || !PyObject_CheckBuffer(data)) return -1;
    Py_buffer view;
    if (PyObject_GetBuffer(data, &view, PyBUF_C_CONTIGUOUS) != 0) {
        PyErr_Clear();
        return -1;
    }
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    const size_t capacity = static_cast<size_t>(w) * h * buffer->GetPixelBytes();
    size_t count = static_cast<size_t>(view.len);
    if (count > capacity) count = capacity;
    if (count) std::memcpy(p, view.buf, count);
    buffer->UnlockBuffer();
    PyBuffer_Release(&view);
    return static_cast<long>(count);
}

// Copies the pixels into a writable object with contiguous bytes (bytearray,
// a numpy array), at most as many as fit; the count copied, -1 when the
// object cannot be written.
long ReadInto(IImageBuffer* buffer, PyObject* target) {
    if (!buffer || !target || !PyObject_CheckBuffer(target)) return -1;
    Py_buffer view;
    if (PyObject_GetBuffer(target, &view, PyBUF_C_CONTIGUOUS | PyBUF_WRITABLE) != 0) {
        PyErr_Clear();
        return -1;
    }
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    size_t count = static_cast<size_t>(w) * h * buffer->GetPixelBytes();
    if (count > static_cast<size_t>(view.len)) count = static_cast<size_t>(view.len);
    if (count) std::memcpy(view.buf, p, count);
    buffer->UnlockBuffer();
    PyBuffer_Release(&view);
    return static_cast<long>(count);
}

// Records scripts receive but cannot make, for the tests of the members
// that take them: a TAT map record prepared as the facade prepares its own,
// and a curve setting with free pivots [(x, y), ...] (the first 20 read).
PixelInfo* NewPixelInfo() {
    PixelInfo* info = new PixelInfo;
    info->hueColor1 = Hue_None;
    info->hueColor2 = Hue_None;
    info->bGetROMMRGB = 1;
    return info;
}
void DeletePixelInfo(PixelInfo* info) { delete info; }
ToneCurveRGBSetting* NewToneCurveSetting(PyObject* pivots, int pivotCount) {
    ToneCurveRGBSetting* setting = new ToneCurveRGBSetting;
    const Py_ssize_t size = PyList_Check(pivots) ? PyList_Size(pivots) : 0;
    for (Py_ssize_t i = 0; i < size && i < 20; ++i) {
        if (!PyArg_ParseTuple(PyList_GetItem(pivots, i), "ff", &setting->fPivotX[i], &setting->fPivotY[i])) {
            PyErr_Clear();
        }
    }
    setting->nPivotCount = pivotCount;
    return setting;
}
void DeleteToneCurveSetting(ToneCurveRGBSetting* setting) { delete setting; }

// The pixels as bytes.
PyObject* ReadBytes(IImageBuffer* buffer) {
    if (!buffer) Py_RETURN_NONE;
    uint8_t* p = nullptr;
    int w = 0, h = 0;
    buffer->LockBuffer(&p, &w, &h);
    PyObject* data = PyBytes_FromStringAndSize(reinterpret_cast<const char*>(p),
                                               static_cast<Py_ssize_t>(w) * h * buffer->GetPixelBytes());
    buffer->UnlockBuffer();
    return data;
}

// (width, height, pixel bytes).
PyObject* Shape(IImageBuffer* buffer) {
    if (!buffer) Py_RETURN_NONE;
    return Py_BuildValue("(i,i,i)", buffer->GetWidth(), buffer->GetHeight(), buffer->GetPixelBytes());
}

int AddRef(IImageBuffer* buffer) { return buffer ? buffer->AddRef() : -1; }
int Release(IImageBuffer* buffer) { return buffer ? buffer->Release() : -1; }
// The count without changing it.
int RefCount(IImageBuffer* buffer) {
    if (!buffer) return -1;
    buffer->AddRef();
    return buffer->Release();
}
bool SameBuffer(IImageBuffer* a, IImageBuffer* b) { return a == b; }

// Medians in milliseconds of the C++ selection tool on this mask:
// (mask to lines, lines to mask, line count). The Python benchmark's peer.
PyObject* TimeSelectionTool(IImageBuffer* mask, int repetitions) {
    const pcg::bench::ToolTimes times = pcg::bench::TimeSelectionTool(mask, repetitions);
    return Py_BuildValue("(d,d,i)", times.dMaskToPointMs, times.dPointToMaskMs, times.nLines);
}

// Gives the facade this module's allocator when it has none.
bool UseTestingAllocator(PyClipGrade* facade) {
    if (!facade || facade->m_pBufferAllocator) return false;
    facade->m_pBufferAllocator = &g_allocator;
    return true;
}
// Takes it back, before the facade goes.
void DropTestingAllocator(PyClipGrade* facade) {
    if (facade && facade->m_pBufferAllocator == &g_allocator) facade->m_pBufferAllocator = nullptr;
}
%}

class IImageBuffer;
class PyClipGrade;

IImageBuffer* NewBuffer(unsigned int width, unsigned int height, unsigned int pixelBytes);
long WriteBytes(IImageBuffer* buffer, PyObject* data);
long ReadInto(IImageBuffer* buffer, PyObject* target);
struct PixelInfo;
struct ToneCurveRGBSetting;
PixelInfo* NewPixelInfo();
void DeletePixelInfo(PixelInfo* info);
ToneCurveRGBSetting* NewToneCurveSetting(PyObject* pivots, int pivotCount);
void DeleteToneCurveSetting(ToneCurveRGBSetting* setting);
PyObject* ReadBytes(IImageBuffer* buffer);
PyObject* Shape(IImageBuffer* buffer);
int AddRef(IImageBuffer* buffer);
int Release(IImageBuffer* buffer);
int RefCount(IImageBuffer* buffer);
bool SameBuffer(IImageBuffer* a, IImageBuffer* b);
PyObject* TimeSelectionTool(IImageBuffer* mask, int repetitions);
bool UseTestingAllocator(PyClipGrade* facade);
void DropTestingAllocator(PyClipGrade* facade);
