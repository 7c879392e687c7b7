"""The vocabulary tables that scripts/extract_vocabulary.py extracted, as the
tests of the script surface read them."""

import os
from collections import OrderedDict

DATA = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))),
                    "data", "vocabulary")


def _rows(name):
    with open(os.path.join(DATA, name)) as f:
        for line in f:
            if line.startswith("#") or not line.strip():
                continue
            yield line.rstrip("\n").split("\t")


def constants():
    """[(name, value, 'int' or 'float', 'dict' or 'cvar')], value as written."""
    return [tuple(r) for r in _rows("constants.tsv")]


def keys():
    """[(name, text)]."""
    return [tuple(r) for r in _rows("keys.tsv")]


def records():
    """OrderedDict class -> (base, [field names in order])."""
    out = OrderedDict()
    for cls, base, index, field, *_ in _rows("records.tsv"):
        entry = out.setdefault(cls, (base, []))
        if index != "-1":
            entry[1].append(field)
    return out


def sizes():
    """{class: size in bytes}."""
    return {cls: int(size) for cls, size, _ in _rows("sizes.tsv")}

