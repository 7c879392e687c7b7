// Views into records and objects stored in records: what keeps memory alive
// while a script can still reach it.
//
// A field getter of an embedded record or an array returns a view into the
// outer record. The view carries an anchor (a SWIG object chained behind it,
// of a type no entry accepts) that holds the outer record, so the record
// lives as long as any view into it; the anchor also records how many
// elements the view spans, which the array setters check.
//
// A pointer field stores the script object's pointer as it is; the script
// object keeps its ownership and the record holds a reference to it, so it
// stays alive while it is stored and is freed once when its last holder goes.

%header %{
#include <cstdio>
#include <cstring>
#include <new>

struct pcg_ViewAnchor {
    PyObject* owner;    // the outermost record the view reaches into
    std::size_t count;  // elements the view spans
};

// Entries without arguments have no local swig_obj; the typemaps below only
// read it in field accessors, which always have one.
static PyObject* swig_obj[1] = {0};

static bool pcg_IsFieldAccessor(const char* symname, const char* suffix) {
    const std::size_t length = std::strlen(symname);
    return length > 4 && std::strcmp(symname + length - 4, suffix) == 0;
}

static pcg_ViewAnchor* pcg_AnchorOf(PyObject* object) {
    if (object == 0) return 0;
    SwigPyObject* sobj = SWIG_Python_GetSwigThis(object);
    if (sobj == 0 || sobj->next == 0 || !SwigPyObject_Check(sobj->next)) return 0;
    SwigPyObject* anchor = reinterpret_cast<SwigPyObject*>(sobj->next);
    if (anchor->ty != SWIGTYPE_p_pcg_ViewAnchor) return 0;
    return static_cast<pcg_ViewAnchor*>(anchor->ptr);
}

// Chains an anchor holding `record` (or what `record` itself is a view
// into) behind `view`. A view that cannot get its anchor is refused: handing
// it out would let it outlive its memory.
static PyObject* pcg_AnchorView(PyObject* view, PyObject* record, std::size_t count) {
    SwigPyObject* sobj = view ? SWIG_Python_GetSwigThis(view) : 0;
    if (sobj == 0 || record == 0 || sobj->next != 0) return view;
    pcg_ViewAnchor* outer = pcg_AnchorOf(record);
    pcg_ViewAnchor* anchor = new (std::nothrow) pcg_ViewAnchor;
    if (anchor == 0) {
        Py_DECREF(view);
        return PyErr_NoMemory();
    }
    anchor->owner = outer ? outer->owner : record;
    anchor->count = count;
    PyObject* holder = SwigPyObject_New(anchor, SWIGTYPE_p_pcg_ViewAnchor, SWIG_POINTER_OWN);
    if (holder == 0) {
        delete anchor;
        Py_DECREF(view);
        return 0;
    }
    Py_INCREF(anchor->owner);
    sobj->next = holder;
    return view;
}

// The destructor SWIG calls when an anchor goes.
static PyObject* pcg_ReleaseViewAnchor(PyObject*, PyObject* holder) {
    SwigPyObject* sobj = reinterpret_cast<SwigPyObject*>(holder);
    pcg_ViewAnchor* anchor = static_cast<pcg_ViewAnchor*>(sobj->ptr);
    sobj->ptr = 0;
    if (anchor != 0) {
        PyObject* owner = anchor->owner;
        delete anchor;
        Py_XDECREF(owner);
    }
    Py_RETURN_NONE;
}

static PyMethodDef pcg_ReleaseViewAnchorDef = {"pcg_ReleaseViewAnchor", pcg_ReleaseViewAnchor, METH_O, 0};

// True when `source` is a view spanning exactly `count` elements. Any other
// pointer has no known extent and cannot be copied from.
static bool pcg_ViewSpans(PyObject* source, std::size_t count) {
    const pcg_ViewAnchor* anchor = pcg_AnchorOf(source);
    return anchor != 0 && anchor->count == count;
}

// A field set from a value of its own type, or (an embedded record) from a
// pointer to one; false for a null pointer, which leaves the field as it was.
template <typename TField>
static bool pcg_AssignField(TField& field, const TField& value) {
    field = value;
    return true;
}
template <typename TField>
static bool pcg_AssignField(TField& field, TField* source) {
    if (source == 0) return false;
    field = *source;
    return true;
}

// Keeps `value` alive while its pointer is stored in the field at
// `fieldName` of `record` (a reference held by the record's outermost
// owner, one slot per record and field). None empties the slot.
static int pcg_HoldStoredObject(PyObject* record, const char* fieldName, PyObject* value) {
    SwigPyObject* sobj = record ? SWIG_Python_GetSwigThis(record) : 0;
    if (sobj == 0) return 0;
    pcg_ViewAnchor* anchor = pcg_AnchorOf(record);
    PyObject* owner = anchor ? anchor->owner : record;
    char slot[96];
    std::snprintf(slot, sizeof(slot), "_pcg_held_%p_%s", sobj->ptr, fieldName);
    PyObject* name = PyUnicode_FromString(slot);
    if (name == 0) return -1;
    const int result = PyObject_GenericSetAttr(owner, name, value == Py_None ? 0 : value);
    Py_DECREF(name);
    if (result < 0 && value == Py_None && PyErr_ExceptionMatches(PyExc_AttributeError)) {
        PyErr_Clear();  // nothing was held
        return 0;
    }
    return result;
}
%}

%types(pcg_ViewAnchor *);

%init %{
  {
    SwigPyClientData* data = static_cast<SwigPyClientData*>(calloc(1, sizeof(SwigPyClientData)));
    if (data != 0) {
      data->destroy = PyCFunction_New(&pcg_ReleaseViewAnchorDef, 0);
      SWIGTYPE_p_pcg_ViewAnchor->clientdata = data;
    }
  }
%}

// A getter's view into its record holds the record.
%typemap(out, noblock=1) SWIGTYPE * {
  $result = SWIG_NewPointerObj(%as_voidptr($1), $descriptor, $owner | %newpointer_flags);
  if ($result && $1 && !($owner) && pcg_IsFieldAccessor("$symname", "_get")) {
    $result = pcg_AnchorView($result, swig_obj[0], 1);
    if (!$result) SWIG_fail;
  }
}
%typemap(out, noblock=1) SWIGTYPE [ANY] {
  $result = SWIG_NewPointerObj(%as_voidptr($1), $descriptor, %newpointer_flags);
  if ($result && $1 && pcg_IsFieldAccessor("$symname", "_get")) {
    $result = pcg_AnchorView($result, swig_obj[0], $1_dim0);
    if (!$result) SWIG_fail;
  }
}
%typemap(out, noblock=1) SWIGTYPE [ANY][ANY] {
  $result = SWIG_NewPointerObj(%as_voidptr($1), $descriptor, %newpointer_flags);
  if ($result && $1 && pcg_IsFieldAccessor("$symname", "_get")) {
    $result = pcg_AnchorView($result, swig_obj[0], $1_dim0);
    if (!$result) SWIG_fail;
  }
}

// A pointer argument is never disowned; a pointer field's setter holds the
// object it stores.
%typemap(in, noblock=1) SWIGTYPE * (void *argp = 0, int res = 0) {
  res = SWIG_ConvertPtr($input, &argp, $descriptor, %convertptr_flags);
  if (!SWIG_IsOK(res)) {
    %argument_fail(res, "$type", $symname, $argnum);
  }
  $1 = %reinterpret_cast(argp, $ltype);
  if (pcg_IsFieldAccessor("$symname", "_set") && pcg_HoldStoredObject(swig_obj[0], "$1_name", $input) < 0) SWIG_fail;
}

// An embedded record is copied from a record; None has nothing to copy.
%typemap(memberin, noblock=1) SWIGTYPE {
  if (!pcg_AssignField($1, $input)) {
    %variable_nullref("$type", "$1_name");
  }
}
