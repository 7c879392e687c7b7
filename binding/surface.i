// Surface-wide rules shared by every entry: the overload failure that
// scripts expect, the type words of the declarations, and the conversions
// that differ from the generator's own.

%header %{
#include <string>

// When no overload fits, scripts expect NotImplementedError and the text
// "Wrong number of arguments for overloaded function 'NAME'." followed by the
// prototypes without their class qualifier.
static void pcg_RaiseOverloadError(const char* message) {
    std::string text(message);
    const std::string generated = "Wrong number or type of arguments";
    if (text.compare(0, generated.size(), generated) == 0)
        text.replace(0, generated.size(), "Wrong number of arguments");
    std::string out;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size() - 1;
        std::string line = text.substr(start, end - start + 1);
        const std::size_t paren = line.find('(');
        const std::size_t scope = line.rfind("::", paren);
        if (line.compare(0, 4, "    ") == 0 && paren != std::string::npos && scope != std::string::npos)
            line = "    " + line.substr(scope + 2);
        out += line;
        start = end + 1;
    }
    PyErr_SetString(PyExc_NotImplementedError, out.c_str());
}
#define SWIG_Python_RaiseOrModifyTypeError pcg_RaiseOverloadError

// A script's bool: True, False or an integer, non-zero being true. -1 for
// anything else.
static int pcg_AsScriptBool(PyObject* o) {
    if (PyBool_Check(o) || pcg_IsScriptInteger(o))
        return PyObject_IsTrue(o);
    return -1;
}
%}

// Type words of the facade's declarations beyond those of the records;
// widths as on 64-bit Windows.
typedef unsigned int UINT;
typedef wchar_t WCHAR;
typedef int HRESULT;

// "long" is 32 bits wide on the host: a value that does not fit fails as a
// wrong type would.
%apply int { long };

%typemap(in) bool (int pcgTruth) {
    pcgTruth = pcg_AsScriptBool($input);
    if (pcgTruth < 0) {
        %argument_fail(SWIG_TypeError, "$type", $symname, $argnum);
    }
    $1 = pcgTruth != 0;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_BOOL) bool {
    $1 = pcg_AsScriptBool($input) >= 0 ? 1 : 0;
}

// The object of a method, field accessor or operator: None would make it null
// and the entry would read or write through it, so a null one is refused
// with the null reference error. A destructor takes None as deleting nothing.
// A destructor deletes only what its wrapper owns: a view into a record or
// an object the wrapper does not own is another's memory and is left alone.
// The wrapper of a deleted object points at nothing afterwards, so later
// calls through it are refused as on None.
%typemap(in, noblock=1) SWIGTYPE *self (void *argp = 0, int res = 0) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, %convertptr_flags);
  if (SWIG_IsOK(res) && argp && (($disown) & SWIG_POINTER_DISOWN)) {
    SwigPyObject* pcgThis = SWIG_Python_GetSwigThis($input);
    if (pcgThis == 0 || pcgThis->own != SWIG_POINTER_OWN) {
      argp = 0;
    } else {
      res = SWIG_ConvertPtr($input, &argp, $descriptor, $disown | %convertptr_flags);
      pcgThis->ptr = 0;
    }
  }
  if (!SWIG_IsOK(res)) {
    %argument_fail(res, "$type", $symname, $argnum);
  }
  if (!argp && !(($disown) & SWIG_POINTER_DISOWN)) {
    %argument_nullref("$type", $symname, $argnum);
  }
  $1 = %reinterpret_cast(argp, $ltype);
}
