// The script surface of the module: the facade class, the records, the
// constants and the dictionary keys.
%module(docstring="Script extension of the colour-grading editor's native engines.") PyClipGrade

%{
#include "binding/py_compat.h"
%}

%include "binding/conversions.i"
%include "binding/surface.i"
%include "binding/constants.i"
%include "binding/keys.i"
%include "binding/views.i"
%include "binding/records.i"
%include "binding/events.i"
%include "binding/docstrings.i"
%include "binding/facade.i"
