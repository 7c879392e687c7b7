#!/usr/bin/env python3
"""Extracts the script vocabulary tables into test data.

Usage: extract_vocabulary.py DOCUMENT.md [OUTPUT_DIR]

Reads the Markdown document that describes the module surface and writes, into
OUTPUT_DIR (default tests/data/vocabulary beside this script's repository):

  constants.tsv  name, value, script type (int/float), form (dict/cvar)
  keys.tsv       name, key text
  records.tsv    class, base class, field index, field name, declared type,
                 embedded flag, pointer flag, array extent
  sizes.tsv      class, size and alignment in bytes as the 64-bit engines lay
                 the record out

The tests walk these tables against the built module and the C++ records, so
a table row and the code can never drift apart unnoticed.
"""
import os
import re
import sys

CVAR_PREFIXES = ("PY_SET_", "VX_NPK_EFFECT_VERSION_", "DSP_HVN_", "DSP_MT_")


def sections(lines):
    """Yields (title, body lines) for each top-level '# ' heading."""
    title, body = None, []
    for line in lines:
        if line.startswith("# "):
            if title is not None:
                yield title, body
            title, body = line[2:].strip(), []
        else:
            body.append(line)
    if title is not None:
        yield title, body


def find_sections(lines, suffix):
    """The bodies of the top-level sections whose title ends with suffix, or
    has it after the title's colon."""
    found = [body for title, body in sections(lines)
             if title.endswith(suffix) or title.split(": ", 1)[-1].startswith(suffix)]
    if not found:
        raise SystemExit("section not found: " + suffix)
    return found


def find_section(lines, suffix):
    return find_sections(lines, suffix)[0]


def table_rows(body):
    """Yields (header cells, row cells, index of the table's first line)."""
    header, start = None, None
    for i, line in enumerate(body):
        s = line.strip()
        if not s.startswith("|"):
            header = None
            continue
        cells = [c.strip() for c in s.strip("|").split("|")]
        if header is None:
            header, start = cells, i
            continue
        if all(set(c) <= set("-: ") for c in cells):
            continue
        yield header, cells, start


def unquote_name(cell):
    m = re.fullmatch(r"`([^`]+)`", cell)
    return m.group(1) if m else None


def script_value(text):
    text = text.split("(")[0].strip()
    if "." in text:
        return "float", text
    return "int", str(int(text, 0))


def extract_constants(lines):
    body = find_section(lines, "Constant tables")
    out = []
    for header, cells, _ in table_rows(body):
        if header[0] == "Quantity":
            pairs = [(cells[1], cells[2]), (cells[3], cells[4])]
        elif header[0] == "Constant" and len(header) == 4 and header[2] == "Constant":
            pairs = [(cells[0], cells[1]), (cells[2], cells[3])]
        elif header[0] == "Constant":
            pairs = [(cells[0], cells[1])]
        else:
            continue
        for name_cell, value_cell in pairs:
            name = unquote_name(name_cell)
            if not name:
                continue
            kind, value = script_value(value_cell)
            form = "cvar" if name.startswith(CVAR_PREFIXES) else "dict"
            out.append((name, value, kind, form))
    # FUNCTION_ID_UNKNOWN is given in the running text, not in a table.
    text = "\n".join(body)
    m = re.search(r"`FUNCTION_ID_UNKNOWN` is (\d+)", text)
    if m:
        out.append(("FUNCTION_ID_UNKNOWN", m.group(1), "int", "dict"))
    return out


def extract_keys(lines):
    body = find_section(lines, "Effect dictionary keys")
    out = []
    for header, cells, _ in table_rows(body):
        if header[:2] == ["Constant", "Key text"]:
            out.append((unquote_name(cells[0]), cells[1].strip('"')))
        elif header[0] == "Field" and header[1] == "BRUSH":
            field = unquote_name(cells[0])
            for tool, text in zip(header[1:], cells[1:]):
                out.append(("STR_%s_POINT_%s" % (tool, field), text.strip('"')))
        elif header[0] == "Field" and header[1] == "Master":
            field = unquote_name(cells[0])
            for curve, text in zip(header[1:], cells[1:]):
                if curve == "Master":
                    name = "STR_TONE_CURVE_%s" % field
                else:
                    name = "STR_TONE_CURVE_CHANNEL_%s_%s" % (curve, field)
                out.append((name, text.strip('"')))
    return out


def parse_type(cell):
    """Returns (declared type, embedded, pointer, array extents)."""
    t = cell.strip()
    embedded = t.endswith(", embedded")
    t = t.replace(", embedded", "").replace(", read-only to scripts", "")
    m = re.fullmatch(r"pointer to `([^`]+)`", t)
    if m:
        return m.group(1) + " *", False, True, ""
    m = re.fullmatch(r"array of `([^`]+)`", t)
    if m:
        return m.group(1), False, False, "?"
    m = re.fullmatch(r"`([^`\[]+?)\s*((?:\[[^\]]+\])*)`", t)
    if not m:
        raise SystemExit("unparsed type: " + cell)
    extents = re.findall(r"\[([^\]]+)\]", m.group(2))
    return m.group(1).strip(), embedded, False, "x".join(extents)


def extract_records(lines):
    records = []  # (class, [fields])
    bases = {}
    for body in find_sections(lines, "Records: "):
        current = None
        pending = None
        for line in body:
            s = line.strip()
            name = unquote_name(s)
            if name:
                pending = name
                continue
            m = re.fullmatch(r"`(\w+)` has no field of its own\.", s)
            if m:
                records.append((m.group(1), []))
                continue
            if s.startswith("| Field | Type |") and pending:
                current = (pending, [])
                records.append(current)
                pending = None
                continue
            if s.startswith("|") and current is not None:
                cells = [c.strip() for c in s.strip("|").split("|")]
                if all(set(c) <= set("-: ") for c in cells):
                    continue
                current[1].append((unquote_name(cells[0]),) + parse_type(cells[1]))
                continue
            if not s.startswith("|"):
                current = None
        text = "\n".join(body)
        for m in re.finditer(r"`(\w+)` is the base of ([^.]+)\.", text):
            for derived in re.findall(r"`(\w+)`", m.group(2)):
                bases[derived] = m.group(1)
        for m in re.finditer(r"`(\w+)` derives from `(\w+)`", text):
            bases[m.group(1)] = m.group(2)
    return records, bases


SCALARS = {
    "int": 4, "INT": 4, "unsigned int": 4, "UINT32": 4, "float": 4, "BOOL": 4,
    "double": 8, "LONGLONG": 8, "unsigned long long": 8, "cl_mem": 8,
    "short": 2, "WORD": 2, "PIXEL": 2, "BYTE": 1, "bool": 1, "char": 1,
}
# Named extents and the one extent that the tables leave to the engine's own
# declaration (the channel pivots of ToneLevelSetting: master, red, green, blue).
EXTENTS = {"Hue_COLOR_COUNT": 8, "COLOR_CHANNEL_COUNT": 3, "MAX_MASK_COUNT": 23,
           "MAX_MASK_ARRAY_COUNT": 46, "?": 4}


def layouts(records, bases, virtual_roots):
    """Size and alignment of each record as a 64-bit engine lays it out: natural
    alignment, a table pointer first in a class with virtual operations, and a
    derived class's own fields after its whole base (no reuse of the base's tail
    padding). Returns {class: (size, align, offsets)}."""
    fields_of = dict(records)
    memo = {}

    def is_virtual(cls):
        while cls:
            if cls in virtual_roots:
                return True
            cls = bases.get(cls)
        return False

    def layout(cls):
        if cls in memo:
            return memo[cls]
        if cls == "RECT":
            return (16, 4, {})
        base = bases.get(cls)
        if base:
            off, align, _ = layout(base)
        elif is_virtual(cls):
            off, align = 8, 8
        else:
            off, align = 0, 1
        offsets = {}
        for name, typ, emb, ptr, ext in fields_of[cls]:
            if ptr:
                size = a = 8
            elif typ in SCALARS:
                size = a = SCALARS[typ]
            elif typ in fields_of or typ == "RECT":
                size, a, _ = layout(typ)
            else:  # an enumeration
                size = a = 4
            count = 1
            for e in ext.split("x") if ext else []:
                count *= EXTENTS[e] if e in EXTENTS else int(e)
            off = (off + a - 1) // a * a
            offsets[name] = off
            off += size * count
            align = max(align, a)
        size = max((off + align - 1) // align * align, 1)
        memo[cls] = (size, align, offsets)
        return memo[cls]

    return {cls: layout(cls) for cls, _ in records}


def main(argv):
    if len(argv) < 2:
        raise SystemExit(__doc__)
    with open(argv[1], encoding="utf-8") as f:
        lines = f.read().splitlines()
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    outdir = argv[2] if len(argv) > 2 else os.path.join(root, "tests", "data", "vocabulary")
    os.makedirs(outdir, exist_ok=True)

    constants = extract_constants(lines)
    with open(os.path.join(outdir, "constants.tsv"), "w") as f:
        f.write("# name\tvalue\ttype\tform\n")
        for row in constants:
            f.write("\t".join(row) + "\n")

    keys = extract_keys(lines)
    with open(os.path.join(outdir, "keys.tsv"), "w") as f:
        f.write("# name\ttext\n")
        for row in keys:
            f.write("\t".join(row) + "\n")

    records, bases = extract_records(lines)
    with open(os.path.join(outdir, "records.tsv"), "w") as f:
        f.write("# class\tbase\tindex\tfield\ttype\tembedded\tpointer\textent\n")
        for cls, fields in records:
            base = bases.get(cls, "")
            if not fields:
                f.write("\t".join([cls, base, "-1", "", "", "", "", ""]) + "\n")
            for i, (name, typ, emb, ptr, ext) in enumerate(fields):
                f.write("\t".join([cls, base, str(i), name, typ, str(int(emb)),
                                   str(int(ptr)), ext]) + "\n")

    text = "\n".join(lines)
    virtual_roots = {"BaseWarpData", "BaseMaskInfo", "BaseMaskClearInfo"}
    m = re.search(r"((?:`\w+`(?:, | and )?)+) have a virtual destructor", text)
    if m:
        virtual_roots.update(re.findall(r"`(\w+)`", m.group(1)))
    # A field that the record has beyond its table, such as the reference count
    # that precedes CHistogramDist's table field, counts in its size.
    hidden = re.search(r"fields `(\w+)` \(32-bit, first\) and `(\w+)`", text)
    laid_out = records
    if hidden:
        laid_out = [(cls, ([(hidden.group(1), "int", False, False, "")] + fields
                           if fields and fields[0][0] == hidden.group(2) else fields))
                    for cls, fields in records]
    sizes = layouts(laid_out, bases, virtual_roots)
    with open(os.path.join(outdir, "sizes.tsv"), "w") as f:
        f.write("# class\tsize\talign\n")
        for cls, _ in records:
            f.write("%s\t%d\t%d\n" % (cls, sizes[cls][0], sizes[cls][1]))

    print("constants %d (cvar %d), keys %d, records %d, fields %d" % (
        len(constants), sum(1 for c in constants if c[3] == "cvar"), len(keys),
        len(records), sum(len(r[1]) for r in records)))


if __name__ == "__main__":
    main(sys.argv)
