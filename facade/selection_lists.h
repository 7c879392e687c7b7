// Readers and writers of the script's selection lists: boundary lines
// ("hhh"), normalised lines ("fff") and positions ("ii"). A list is read as
// if the script were hostile: the list and each item are held while parsed,
// the length is checked again at every step (a conversion may shrink the
// list), and an element that does not parse keeps 0 where the parse did not
// reach, with the error cleared.
#pragma once

#include <cstddef>
#include <vector>

#include "binding/py_compat.h"
#include "engine/records/brush_records.h"

namespace pcg {
namespace facade {

// The number of elements of a list, 0 for anything that is not a list.
Py_ssize_t ListLength(PyObject* list);

// Each reader parses as many items as its target holds (sized by the
// caller from ListLength, zero-filled), one tuple per element.
void ReadBoundaryLines(PyObject* list, std::vector<SelectionLine>& lines);
void ReadNormalisedLines(PyObject* list, std::vector<float>& values);  // 3 per line
void ReadPositions(PyObject* list, std::vector<int>& values);         // 2 per position

// A list of "(i,i,i)" tuples; null with the Python error set when memory fails.
PyObject* BoundaryLineList(const SelectionLine* lines, std::size_t count);

}  // namespace facade
}  // namespace pcg
