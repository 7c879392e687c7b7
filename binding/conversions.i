// Conversions of script integers, in every entry and every field setter alike.
// A script int or long is accepted; a value that does not fit the declared
// type fails as a wrong type would (TypeError), except that a negative value
// for an unsigned type raises OverflowError. Both with the generator's text
// "in method 'ENTRY', argument N of type 'TYPE'". Floats and other objects are
// refused with TypeError.

%fragment("pcg_ScriptIntegers", "header") {
#include <climits>

// SWIG_OK with the value, or SWIG_TypeError.
static int pcg_AsScriptLongLong(PyObject* o, long long* value) {
    if (!PyInt_Check(o) && !PyLong_Check(o)) return SWIG_TypeError;
    int overflow = 0;
    const long long v = PyLong_AsLongLongAndOverflow(o, &overflow);
    if (overflow != 0 || (v == -1 && PyErr_Occurred())) {
        PyErr_Clear();
        return SWIG_TypeError;
    }
    if (value) *value = v;
    return SWIG_OK;
}

// A signed integer of the given range.
static int pcg_AsScriptSigned(PyObject* o, long long low, long long high, long long* value) {
    long long v = 0;
    const int res = pcg_AsScriptLongLong(o, &v);
    if (!SWIG_IsOK(res)) return res;
    if (v < low || v > high) return SWIG_TypeError;
    if (value) *value = v;
    return SWIG_OK;
}

// An unsigned integer up to the given maximum; a negative one overflows.
static int pcg_AsScriptUnsigned(PyObject* o, unsigned long long high, unsigned long long* value) {
    if (!PyInt_Check(o) && !PyLong_Check(o)) return SWIG_TypeError;
    int overflow = 0;
    const long long v = PyLong_AsLongLongAndOverflow(o, &overflow);
    if (v == -1 && PyErr_Occurred()) {
        PyErr_Clear();
        return SWIG_TypeError;
    }
    if (overflow < 0 || (overflow == 0 && v < 0)) return SWIG_OverflowError;
    unsigned long long u = static_cast<unsigned long long>(v);
    if (overflow > 0) {
        u = PyLong_AsUnsignedLongLong(o);
        if (PyErr_Occurred()) {
            PyErr_Clear();
            return SWIG_TypeError;
        }
    }
    if (u > high) return SWIG_TypeError;
    if (value) *value = u;
    return SWIG_OK;
}
}

%define PCG_SCRIPT_SIGNED(TYPE, LOW, HIGH, PRECEDENCE)
%typemap(in, noblock=1, fragment="pcg_ScriptIntegers") TYPE (long long pcgValue, int pcgRes) {
  pcgRes = pcg_AsScriptSigned($input, LOW, HIGH, &pcgValue);
  if (!SWIG_IsOK(pcgRes)) {
    %argument_fail(pcgRes, "$type", $symname, $argnum);
  }
  $1 = static_cast<$1_ltype>(pcgValue);
}
%typemap(typecheck, noblock=1, precedence=PRECEDENCE, fragment="pcg_ScriptIntegers") TYPE {
  $1 = SWIG_IsOK(pcg_AsScriptSigned($input, LOW, HIGH, 0)) ? 1 : 0;
}
%enddef

%define PCG_SCRIPT_UNSIGNED(TYPE, HIGH, PRECEDENCE)
%typemap(in, noblock=1, fragment="pcg_ScriptIntegers") TYPE (unsigned long long pcgValue, int pcgRes) {
  pcgRes = pcg_AsScriptUnsigned($input, HIGH, &pcgValue);
  if (!SWIG_IsOK(pcgRes)) {
    %argument_fail(pcgRes, "$type", $symname, $argnum);
  }
  $1 = static_cast<$1_ltype>(pcgValue);
}
%typemap(typecheck, noblock=1, precedence=PRECEDENCE, fragment="pcg_ScriptIntegers") TYPE {
  $1 = SWIG_IsOK(pcg_AsScriptUnsigned($input, HIGH, 0)) ? 1 : 0;
}
%enddef

PCG_SCRIPT_SIGNED(signed char, SCHAR_MIN, SCHAR_MAX, SWIG_TYPECHECK_INT8)
PCG_SCRIPT_SIGNED(short, SHRT_MIN, SHRT_MAX, SWIG_TYPECHECK_INT16)
PCG_SCRIPT_SIGNED(int, INT_MIN, INT_MAX, SWIG_TYPECHECK_INT32)
PCG_SCRIPT_SIGNED(long long, LLONG_MIN, LLONG_MAX, SWIG_TYPECHECK_INT64)
PCG_SCRIPT_UNSIGNED(unsigned char, UCHAR_MAX, SWIG_TYPECHECK_UINT8)
PCG_SCRIPT_UNSIGNED(unsigned short, USHRT_MAX, SWIG_TYPECHECK_UINT16)
PCG_SCRIPT_UNSIGNED(unsigned int, UINT_MAX, SWIG_TYPECHECK_UINT32)
PCG_SCRIPT_UNSIGNED(unsigned long long, ULLONG_MAX, SWIG_TYPECHECK_UINT64)
PCG_SCRIPT_SIGNED(enum SWIGTYPE, INT_MIN, INT_MAX, SWIG_TYPECHECK_INT32)
