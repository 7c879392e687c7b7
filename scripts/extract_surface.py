#!/usr/bin/env python3
"""Extracts the module's function table into test data.

Usage: extract_surface.py DOCUMENT.md [OUTPUT_DIR]

Reads the Markdown document that describes the module surface (the same one
extract_vocabulary.py reads) and writes OUTPUT_DIR/entries.tsv (default
tests/data/vocabulary): one line per way each named entry of the function
table refuses a wrong argument; and results.tsv: what each facade method
gives back and whether the script owns it.

  entry      the name in the module's function table
  kind       get, set, new, delete, register, method, operator, function
  owner      the record class the entry belongs to (empty for the module function)
  arguments  the declared type of each argument, ';' between them, the object
             of a method or field entry first; 'object' takes any script object
  position   the argument that gets the wrong value (1 counts the object), or 0
             when the refusal is of an argument too many or too few
  error      the script error raised, or NotImplemented for an operator that
             answers NotImplemented instead of raising
  text       the error's exact text, newlines written as \\n

Field entries come from the record tables, written by extract_vocabulary.py
beside this file's output, so run that first.
"""
import os
import re
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import extract_vocabulary as vocabulary  # noqa: E402


def method_table(body):
    out = []
    for header, cells, _ in vocabulary.table_rows(body):
        if header[:2] != ["Method", "Arguments"]:
            continue
        name = vocabulary.unquote_name(cells[0])
        args = []
        if cells[1] != "none":
            for part in re.findall(r"`([^`]+)`|(object)", cells[1]):
                args.append(part[0] or part[1])
        optional = "optional" in cells[1]
        out.append((name, args, optional))
    return out


def operator_entries(body):
    out = []
    for header, cells, _ in vocabulary.table_rows(body):
        # The table of flat forms names them by a pattern with X and f.
        if header == ["Entry", "Meaning"] and not re.search(r"\bX_|_X\b", cells[0]):
            out.extend(re.findall(r"`(\w+)`", cells[0]))
    return out


def constructible(text):
    m = re.search(r"The classes with a script constructor are: ([^\n]+)", text)
    return re.findall(r"`(\w+)`", m.group(1))


def overload_texts(body):
    """{entry: text} of the overloads whose text is given whole, and of the
    geometry constructors given by their prototypes."""
    texts = {}
    for line in body:
        m = re.match(r'- "(Wrong number of arguments for overloaded function \'(\w+)\'.*)"$', line.strip())
        if m:
            texts[m.group(2)] = m.group(1)
    joined = "\n".join(body)
    m = re.search(r'the first: "(Wrong number of arguments for overloaded function \'(\w+)\'[^"]*)"', joined)
    texts[m.group(2)] = m.group(1)
    for header, cells, _ in vocabulary.table_rows(body):
        if header[0] != "Entry" or not header[1].startswith("Prototypes"):
            continue
        entry = vocabulary.unquote_name(cells[0])
        cls = entry[len("new_"):]
        prototypes = []
        for piece in [p.strip() for p in cells[1].split(", ")]:
            quoted = vocabulary.unquote_name(piece)
            if quoted:
                prototypes.append(quoted)
                continue
            m = re.match(r"the form with (\w+) `([^`]+)`", piece)
            count = {"twelve": 12}[m.group(1)]
            prototypes.append("%s(%s)" % (cls, ",".join([m.group(2)] * count)))
        texts[entry] = ("Wrong number of arguments for overloaded function '%s'.\\n"
                        "  Possible C/C++ prototypes are:\\n" % entry
                        + "".join("    %s\\n" % p for p in prototypes))
    return texts


def facade_overload_text(lines):
    body = vocabulary.find_section(lines, "Facade lifecycle")
    m = re.search(r'"(Wrong number of arguments for overloaded function \'new_PyClipGrade\'[^"]*)"',
                  "\n".join(body))
    return m.group(1)


def wrong_value_kind(declared):
    """What the table test passes as a wrong value of the type: a number
    for text, else text."""
    return "number" if declared == "char *" else "text"


def type_error_text(entry, position, declared):
    return "in method '%s', argument %d of type '%s'" % (entry, position, declared)


def main(argv):
    if len(argv) < 2:
        raise SystemExit(__doc__)
    with open(argv[1], encoding="utf-8") as f:
        lines = f.read().splitlines()
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    outdir = argv[2] if len(argv) > 2 else os.path.join(root, "tests", "data", "vocabulary")
    body = vocabulary.find_section(lines, "Module surface")
    text = "\n".join(body)

    records, _ = vocabulary.extract_records(lines)
    makers = set(constructible(text))
    overloads = overload_texts(body)
    overloads["new_PyClipGrade"] = facade_overload_text(lines)
    rows = []

    def row(entry, kind, owner, args, position, error, message):
        rows.append((entry, kind, owner, ";".join(args), str(position), error, message))

    no_argument = "%s() takes no arguments (1 given)"
    classes = [cls for cls, _ in records] + ["PyClipGrade"]
    for cls, fields in records:
        this = cls + " *"
        for name, typ, embedded, pointer, extent in fields:
            get = "%s_%s_get" % (cls, name)
            row(get, "get", cls, [this], 1, "TypeError", type_error_text(get, 1, this))
            if (cls, name) == ("ToneLevelSetting", "ChannelPivot"):
                continue
            put = "%s_%s_set" % (cls, name)
            row(put, "set", cls, [this, typ], 1, "TypeError", type_error_text(put, 1, this))
            if cls not in makers or embedded or pointer:
                continue
            # A record a script can make is probed at the value too.
            if extent:
                sizes = "".join("[%s]" % e for e in extent.split("x"))
                row(put, "set", cls, [this, typ + " " + sizes], 2, "TypeError",
                    "in variable '%s' of type '%s %s'" % (name, typ, sizes))
            else:
                row(put, "set", cls, [this, typ], 2, "TypeError", type_error_text(put, 2, typ))
    for cls in classes:
        new = "new_" + cls
        if cls in makers:
            if new in overloads:
                row(new, "new", cls, [], 1, "NotImplementedError", overloads[new])
            else:
                row(new, "new", cls, [], 0, "TypeError", no_argument % new)
        delete = "delete_" + cls
        row(delete, "delete", cls, [cls + " *"], 1, "TypeError", type_error_text(delete, 1, cls + " *"))
        register = cls + "_swigregister"
        row(register, "register", cls, ["object"], 0, "TypeError",
            "%s() takes exactly one argument (0 given)" % register)

    facade = "PyClipGrade *"
    for name, args, optional in method_table(body):
        entry = "PyClipGrade_" + name
        declared = [facade] + args
        if entry in overloads:
            # The dispatcher takes the overload by count and type, so a wrong
            # value anywhere is refused with the prototype list.
            row(entry, "method", "PyClipGrade", declared, 1, "NotImplementedError", overloads[entry])
            for position, typ in enumerate(args, start=2):
                if typ != "object":
                    row(entry, "method", "PyClipGrade", declared, position, "NotImplementedError",
                        overloads[entry])
            continue
        row(entry, "method", "PyClipGrade", declared, 1, "TypeError", type_error_text(entry, 1, facade))
        for position, typ in enumerate(args, start=2):
            if typ == "object":
                continue
            row(entry, "method", "PyClipGrade", declared, position, "TypeError",
                type_error_text(entry, position, typ))

    for entry in operator_entries(body):
        if entry == "ProcessCallback":
            row(entry, "function", "", ["void *"], 1, "TypeError", type_error_text(entry, 1, "void *"))
            continue
        cls = max((c for c in classes if entry.startswith(c + "_")), key=len)
        op = entry[len(cls) + 1:]
        if op.startswith("__"):
            # A comparison with something else is Python's to settle.
            row(entry, "operator", cls, [cls + " const *", cls + " const &"], 2, "NotImplemented", "")
        else:
            # Width, Height and bIsZeroParams only read the record; the
            # reference count's operations change it.
            this = cls + (" *" if op in ("AddRef", "Release") else " const *")
            row(entry, "operator", cls, [this], 1, "TypeError", type_error_text(entry, 1, this))

    # What each facade method gives back, and whether the script owns it.
    with open(os.path.join(outdir, "results.tsv"), "w") as f:
        f.write("# method\tresult\towned\n")
        for header, cells, _ in vocabulary.table_rows(body):
            if header[:3] == ["Method", "Arguments", "Result"]:
                # Cross-references between the document's sections mean nothing here.
                result = re.sub(r", the table of [A-Z][a-z]+ [0-9.]+$", ", the tone curve table", cells[2])
                f.write("%s\t%s\t%d\n" % (vocabulary.unquote_name(cells[0]), result.replace("`", ""),
                                          0 if "not owned" in result else 1))

    with open(os.path.join(outdir, "entries.tsv"), "w") as f:
        f.write("# entry\tkind\towner\targuments\tposition\terror\ttext\n")
        for r in rows:
            f.write("\t".join(r) + "\n")
    print("entries %d, refusals %d" % (len({r[0] for r in rows}), len(rows)))


if __name__ == "__main__":
    main(sys.argv)
