"""The module's whole function table, entry by entry: each named entry is
there under its name and refuses a wrong argument with its exact error.

The table is tests/data/vocabulary/entries.tsv, written by
scripts/extract_surface.py; one line per refusal."""

import sys
from collections import OrderedDict

import pytest

import vocabulary_tables

ROWS = [tuple(r) for r in vocabulary_tables._rows("entries.tsv")]
ENTRIES = OrderedDict((r[0], r[1]) for r in ROWS)


# The records a script can make, which the probes of a later argument need.
MAKERS = {r[2] for r in ROWS if r[1] == "new"}

ERRORS = {"TypeError": TypeError, "ValueError": ValueError, "OverflowError": OverflowError,
          "NotImplementedError": NotImplementedError}


def _filler(declared):
    """A value the declared type accepts, for the arguments before the probed one."""
    if declared in ("bool",):
        return False
    if declared in ("double",):
        return 0.0
    if declared in ("UINT", "int", "long", "BOOL", "LONGLONG"):
        return 0
    if declared == "char *":
        return b""
    return None


@pytest.fixture(scope="module")
def facade(shadow):
    made = shadow.PyClipGrade()
    yield made
    del made


def _object_of(module, facade, owner):
    if owner == "PyClipGrade":
        return facade
    return getattr(module, "new_" + owner)()


def test_the_table_counts_1851_entries():
    kinds = {}
    for name, kind in ENTRIES.items():
        kinds[kind] = kinds.get(kind, 0) + 1
    assert len(ENTRIES) == 1851
    assert kinds == {"get": 703, "set": 702, "new": 63, "delete": 141, "register": 141,
                     "method": 65, "operator": 35, "function": 1}


def test_every_entry_of_the_table_is_in_the_module(module):
    missing = [n for n in ENTRIES if not callable(getattr(module, n, None))]
    assert sorted(missing) == []


def test_the_module_has_no_facade_method_beyond_the_table(module):
    extra = [n for n in dir(module) if n.startswith("PyClipGrade_") and n not in ENTRIES
             and n != "PyClipGrade_swiginit"]
    assert extra == []


def _ids():
    return ["%s@%s" % (r[0], r[4]) for r in ROWS]


@pytest.mark.parametrize("row", ROWS, ids=_ids())
def test_entry_refuses_a_wrong_argument(module, facade, row):
    entry, kind, owner, arguments, position, error, text = row
    function = getattr(module, entry, None)
    assert callable(function), entry
    declared = arguments.split(";") if arguments else []
    position = int(position)
    text = text.replace("\\n", "\n")
    if position == 0:
        # An argument too many for an entry without any, or one too few: the
        # interpreter's own text, which names the module since Python 3.10.
        args = ("x",) if kind == "new" else ()
        if sys.version_info >= (3, 10):
            text = module.__name__ + "." + text
    else:
        args = []
        for index, typ in enumerate(declared, start=1):
            if index == position:
                args.append(5 if typ == "char *" else "x")
            elif index == 1 and kind in ("set", "method", "operator") and owner in MAKERS:
                args.append(_object_of(module, facade, owner))
            else:
                args.append(_filler(typ))
        if not declared:
            args = ["x"]
    if error == "NotImplemented":
        assert function(*args) is NotImplemented
        return
    with pytest.raises(ERRORS[error]) as raised:
        function(*args)
    assert type(raised.value) is ERRORS[error]
    assert str(raised.value) == text


# Values each declared type refuses beyond a text, and the error each raises:
# a value that does not fit fails as a wrong type would, a negative one for
# an unsigned type overflows, and floats are not integers.
OUT_OF_RANGE = {
    "int": [(2 ** 31, TypeError), (-2 ** 31 - 1, TypeError), (1.5, TypeError)],
    "INT": [(2 ** 31, TypeError), (1.5, TypeError)],
    "long": [(2 ** 31, TypeError), (-2 ** 31 - 1, TypeError), (1.5, TypeError)],
    "BOOL": [(2 ** 31, TypeError), (1.5, TypeError)],
    "UINT": [(-1, OverflowError), (2 ** 32, TypeError), (1.5, TypeError)],
    "unsigned int": [(-1, OverflowError), (2 ** 32, TypeError)],
    "LONGLONG": [(2 ** 63, TypeError), (-2 ** 63 - 1, TypeError), (1.5, TypeError)],
    "BYTE": [(-1, OverflowError), (256, TypeError)],
    "short": [(2 ** 15, TypeError), (-2 ** 15 - 1, TypeError)],
    "WORD": [(-1, OverflowError), (2 ** 16, TypeError)],
    "double": [(None, TypeError), ("1.5", TypeError)],
    "bool": [(1.5, TypeError), (None, TypeError)],
    "IImageBuffer *": [("PointD", TypeError)],
    "CDBAccessThreadMgr *": [("PointD", TypeError)],
    "IVXTinyDB *": [("PointD", TypeError)],
    # A record taken by value or by reference has no null: None is refused
    # as a null reference.
    "ToneCurveRGBSetting": [("PointD", TypeError), (None, ValueError)],
    "PixelInfo &": [("PointD", TypeError), (None, ValueError)],
}


def _range_rows():
    out = []
    for row in ROWS:
        entry, kind, owner, arguments, position, error, text = row
        if error != "TypeError" or position in ("0", "1") or kind not in ("method", "set"):
            continue
        declared = arguments.split(";")[int(position) - 1]
        for value, raised in OUT_OF_RANGE.get(declared, []):
            out.append((row, value, raised))
    return out


RANGE_ROWS = _range_rows()


@pytest.mark.parametrize("row,value,raised", RANGE_ROWS,
                         ids=["%s@%s=%r" % (r[0][0], r[0][4], r[1]) for r in RANGE_ROWS])
def test_entry_refuses_a_value_out_of_its_range(module, facade, row, value, raised):
    entry, kind, owner, arguments, position, error, text = row
    function = getattr(module, entry, None)
    if value == "PointD":
        # A wrapped pointer of another class.
        value = module.new_PointD()
    declared = arguments.split(";")
    args = [_object_of(module, facade, owner)]
    for index, typ in enumerate(declared[1:], start=2):
        args.append(value if index == int(position) else _filler(typ))
    with pytest.raises(raised) as caught:
        function(*args)
    assert type(caught.value) is raised
    assert str(caught.value) == ("invalid null reference " + text if raised is ValueError else text)


def test_every_declared_type_of_an_argument_has_its_range_probed():
    probed = {r[0][3].split(";")[int(r[0][4]) - 1] for r in RANGE_ROWS if r[0][1] == "method"}
    declared = {r[3].split(";")[int(r[4]) - 1] for r in ROWS if r[1] == "method" and r[5] == "TypeError"
                and r[4] not in ("0", "1")}
    assert sorted(declared - probed) == ["char *"]
