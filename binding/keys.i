// The effect dictionary keys as module constants. Scripts use them as keys of
// their dictionaries, which the converters read with narrow text lookups, so
// each must be the interpreter's native text type (str), not bytes.

%{
#include "effects/effect_keys.h"
%}

%typemap(constcode, noblock=1) const char *, char * {
  SWIG_Python_SetConstant(d, "$symname", PyString_FromString($value));
}

%include "effects/effect_keys.h"

%typemap(constcode) const char *, char *;
