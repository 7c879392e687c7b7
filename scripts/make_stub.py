#!/usr/bin/env python3
"""Writes binding/PyClipGrade.pyi, the type stub of the script surface.

Usage: make_stub.py [OUTPUT]

Built from what the surface is made of, not from the built module, so that a
test comparing the stub with the module finds any drift between them:
  tests/data/vocabulary/records.tsv    record classes and their fields
  tests/data/vocabulary/entries.tsv    constructors, operators, the facade's
                                       methods and their argument types
  tests/data/vocabulary/constants.tsv  constants and the read-only cvar values
  tests/data/vocabulary/keys.tsv       dictionary key texts
  binding/docstrings.i                 the facade's argument names and results
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DATA = os.path.join(ROOT, "tests", "data", "vocabulary")

INTEGER_TYPES = {"int", "INT", "unsigned int", "UINT32", "UINT", "BOOL", "LONGLONG", "long", "unsigned long long",
                 "short", "WORD", "PIXEL", "BYTE", "char", "cl_mem"}
FLOAT_TYPES = {"float", "double"}


def rows(name):
    with open(os.path.join(DATA, name)) as f:
        for line in f:
            if line.startswith("#") or not line.strip():
                continue
            yield line.rstrip("\n").split("\t")


def script_type(declared, classes):
    declared = declared.replace(" const", "").replace("&", "").strip()
    if declared in INTEGER_TYPES:
        return "int"
    if declared in FLOAT_TYPES:
        return "float"
    if declared == "bool":
        return "bool"
    if declared == "char *":
        return "bytes"
    if declared in classes:
        return declared
    if declared.endswith("*"):
        base = declared[:-1].strip()
        return "Optional[%s]" % base if base in classes else "Any"
    return "Any"


def result_type(text, classes):
    text = text.strip()
    optional = text.endswith(" or None")
    base = text[:-len(" or None")] if optional else text
    named = {"int": "int", "bool": "bool", "None": "None", "str": "str", "bytes": "bytes", "list": "List[Any]",
             "dict": "Dict[str, Any]"}.get(base, base if base in classes else "Any")
    return "Optional[%s]" % named if optional and named != "Any" else named


def docstrings():
    """{method: (argument names with defaults, result, the whole line)}."""
    out = {}
    with open(os.path.join(ROOT, "binding", "docstrings.i")) as f:
        for line in f:
            m = re.match(r'%feature\("docstring"\) PyClipGrade::(\w+) "((\w+)\(([^)]*)\) -> ([^:]+):.*)";$', line)
            if m and m.group(1) != "PyClipGrade":
                names = [a.strip() for a in m.group(4).split(",") if a.strip()]
                out[m.group(1)] = (names, m.group(5), m.group(2).replace('\\"', "'"))
    return out


def main(argv):
    out_path = argv[1] if len(argv) > 1 else os.path.join(ROOT, "binding", "PyClipGrade.pyi")
    records = {}
    bases = {}
    for cls, base, index, field, typ, embedded, pointer, extent in rows("records.tsv"):
        records.setdefault(cls, [])
        if base:
            bases[cls] = base
        if index != "-1":
            records[cls].append((field, typ, pointer == "1", extent))
    records.setdefault("PyClipGrade", [])
    classes = set(records)
    entries = list(rows("entries.tsv"))
    makers = {r[2] for r in entries if r[1] == "new"}
    operators = {}
    methods = {}
    for entry, kind, owner, arguments, *_ in entries:
        if kind == "operator":
            operators.setdefault(owner, {})[entry[len(owner) + 1:]] = arguments.split(";")
        elif kind == "method":
            methods.setdefault(entry[len("PyClipGrade_"):], arguments.split(";")[1:])
    docs = docstrings()

    lines = ['"""Type stub of the script surface of the colour-grading engines (module PyClipGrade)."""',
             "from typing import Any, Callable, Dict, List, Optional", ""]
    # The read-only values are also plain module values, read once at import.
    for name, value, kind, form in rows("constants.tsv"):
        lines.append("%s: %s" % (name, kind))
    for name, _ in rows("keys.tsv"):
        lines.append("%s: str" % name)
    lines += ["", "class _ReadOnlyValues:",
              '    """The read-only values: reading gives an int, assigning raises AttributeError."""']
    for name, value, kind, form in rows("constants.tsv"):
        if form == "cvar":
            lines.append("    %s: int" % name)
    lines += ["", "cvar: _ReadOnlyValues", "",
              "def ProcessCallback(facade: Optional[PyClipGrade]) -> None:",
              '    """Runs the event loop of a facade on this thread until it is told to end; None returns at once."""',
              "    ...", ""]

    for cls in records:
        if cls == "PyClipGrade":
            continue
        lines.append("class %s(%s):" % (cls, bases.get(cls, "object")))
        lines.append("    thisown: bool")
        for field, typ, pointer, extent in records[cls]:
            if extent:
                kind = "Any"
            elif pointer:
                kind = script_type(typ, classes)
            else:
                kind = script_type(typ, classes)
            lines.append("    %s: %s" % (field, kind))
        if cls in makers:
            lines.append("    def __init__(self, *args: Any) -> None: ...")
        for op, arguments in sorted(operators.get(cls, {}).items()):
            if op.startswith("__"):
                lines.append("    def %s(self, other: object) -> bool: ..." % op)
            elif op in ("AddRef", "Release"):
                lines.append("    def %s(self) -> int: ..." % op)
            elif op == "bIsZeroParams":
                lines.append("    def %s(self) -> bool: ..." % op)
            else:
                lines.append("    def %s(self) -> float: ..." % op)
        lines.append("")

    lines += ["class PyClipGrade(object):",
              '    """The facade through which scripts drive the render agent, the image engine and the selection tools."""',
              "    thisown: bool",
              "    def __init__(self, agentText: Optional[str] = ..., createBufferAgent: int = ...,"
              " startCallbackThread: int = ..., imageRetouchPath: Optional[str] = ..., logRootKey: Optional[str] = ...)"
              " -> None: ..."]
    for name, arguments in methods.items():
        names, result, doc = docs[name]
        params = ["self"]
        for argument_name, declared in zip(names, arguments):
            bare = argument_name.split("=")[0]
            typed = "Any" if declared == "object" else script_type(declared, classes)
            params.append("%s: %s%s" % (bare, typed, " = ..." if "=" in argument_name else ""))
        lines.append("    def %s(%s) -> %s:" % (name, ", ".join(params), result_type(result, classes)))
        lines.append('        """%s"""' % doc)
        lines.append("        ...")
    lines.append("")
    with open(out_path, "w") as f:
        f.write("\n".join(lines))
    print("stub: %d classes, %d methods" % (len(records), len(methods)))


if __name__ == "__main__":
    main(sys.argv)
