"""Every number constant against the extracted tables: value, script type and
the form it takes (module dictionary or read-only variable under cvar)."""

import struct

import pytest

import vocabulary_tables

CONSTANTS = vocabulary_tables.constants()
PLAIN = [c for c in CONSTANTS if c[3] == "dict"]
READ_ONLY = [c for c in CONSTANTS if c[3] == "cvar"]


def expected(value, kind):
    return float(value) if kind == "float" else int(value)


@pytest.mark.parametrize("name,value,kind,form", PLAIN, ids=[c[0] for c in PLAIN])
def test_plain_constant_is_in_the_module_dictionary(module, name, value, kind, form):
    got = module.__dict__[name]
    assert type(got) is (float if kind == "float" else int)
    if name == "cmpthreashold":
        # Single precision, widened: the float nearest 0.001.
        assert got == struct.unpack("f", struct.pack("f", 0.001))[0]
    else:
        assert got == expected(value, kind)


@pytest.mark.parametrize("name,value,kind,form", READ_ONLY, ids=[c[0] for c in READ_ONLY])
def test_read_only_variable_reads_as_a_new_integer(module, name, value, kind, form):
    got = getattr(module.cvar, name)
    assert type(got) is int
    assert got == int(value)
    assert name not in module.__dict__


@pytest.mark.parametrize("name,value,kind,form", READ_ONLY, ids=[c[0] for c in READ_ONLY])
def test_read_only_variable_refuses_assignment(module, name, value, kind, form):
    with pytest.raises(AttributeError) as error:
        setattr(module.cvar, name, 1)
    assert str(error.value) == "Variable %s is read-only." % name
    assert getattr(module.cvar, name) == int(value)


def test_there_are_103_read_only_variables_and_no_others(module):
    assert len(READ_ONLY) == 103
    listed = str(module.cvar).strip("()").split(", ")
    assert sorted(listed) == sorted(c[0] for c in READ_ONLY)


def test_more_than_eight_hundred_constants_in_all(module):
    count = len(CONSTANTS) + len(vocabulary_tables.keys())
    assert count > 800
    assert sum(1 for c in CONSTANTS if c[0] in module.__dict__) == len(PLAIN)


def test_py_set_wb_reads_2_and_refuses_assignment(module):
    assert module.cvar.PY_SET_WB == 2
    with pytest.raises(AttributeError) as error:
        module.cvar.PY_SET_WB = 1
    assert str(error.value) == "Variable PY_SET_WB is read-only."


@pytest.mark.parametrize("name", ["FUNCTION_SET_NOISE", "FUNCTION_SET_NOISE_MASK",
                                  "FUNCTION_SET_HDR", "FUNCTION_SET_NEW_SEGMENT"])
def test_sequenced_functions_have_bit_20(module, name):
    value = module.__dict__[name]
    assert value & (1 << 20) == module.VIDEOSPEC_SEQUENCED


@pytest.mark.parametrize("name,index,scope", [
    ("FUNCTION_SET_NOISE", 10, "FUNCTION_SET_GLOBAL"),
    ("FUNCTION_SET_NOISE_MASK", 31, "FUNCTION_SET_GLOBAL"),
    ("FUNCTION_SET_HDR", 36, "FUNCTION_SET_GLOBAL"),
    ("FUNCTION_SET_NEW_SEGMENT", 1, "FUNCTION_SET_STATE"),
])
def test_masking_the_sequencing_bit_leaves_index_and_scope(module, name, index, scope):
    value = module.__dict__[name] & ~module.VIDEOSPEC_SEQUENCED
    assert value == (index << 4) | module.__dict__[scope]


@pytest.mark.parametrize("name", ["Hue_None", "LIQUIFY_NONE", "OCL_DEVICE_TYPE_ALL"])
def test_none_markers_are_negative_integers(module, name):
    assert module.__dict__[name] == -1
    assert type(module.__dict__[name]) is int


def test_mixed_pair_stays_mixed(module):
    assert type(module.MAX_VIGNETTE_MIDPOINT) is float
    assert type(module.MIN_VIGNETTE_MIDPOINT) is int
    assert type(module.MIN_REDEYEDARKENLEVEL) is float
