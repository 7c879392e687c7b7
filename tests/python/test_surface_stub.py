"""The type stub PyClipGrade.pyi against the module: every name in the stub is
in the module and every public name of the module is in the stub, class by
class, and the facade's methods take the arguments the stub says."""

import ast
import inspect
import os

import pytest

from conftest import HOST, REPO
import vocabulary_tables

STUB = os.path.join(REPO, "binding", "PyClipGrade.pyi")


def _stub():
    with open(STUB) as f:
        return ast.parse(f.read())


def _members(body):
    names = {}
    for node in body:
        if isinstance(node, ast.AnnAssign):
            names[node.target.id] = node
        elif isinstance(node, (ast.FunctionDef, ast.ClassDef)):
            names[node.name] = node
    return names


TOP = _members(_stub().body)
CLASSES = {n: node for n, node in TOP.items() if isinstance(node, ast.ClassDef) and not n.startswith("_")}


def _public(names):
    return {n for n in names if not n.startswith("_")}


def test_the_stub_is_installed_beside_the_shadow_module():
    with open(os.path.join(HOST, "PyClipGrade.pyi")) as installed, open(STUB) as source:
        assert installed.read() == source.read()


def test_stub_and_module_have_the_same_public_names(shadow):
    stub = _public(TOP)
    module = _public(dir(shadow))
    assert sorted(stub - module) == []
    assert sorted(module - stub) == []


def test_stub_describes_141_classes_and_the_module_function(shadow):
    assert len(CLASSES) == 141
    assert isinstance(TOP["ProcessCallback"], ast.FunctionDef)
    assert inspect.isclass(shadow.PyClipGrade)


@pytest.mark.parametrize("name", sorted(CLASSES))
def test_class_members_match(shadow, name):
    cls = getattr(shadow, name)
    stub = {n for n in _members(CLASSES[name].body) if n != "__init__"}
    module = {n for n in vars(cls) if not n.startswith("__") or n in ("__eq__", "__ne__")}
    assert sorted(stub - module) == []
    assert sorted(module - stub) == []


@pytest.mark.parametrize("name", sorted(CLASSES))
def test_a_class_has_a_constructor_in_the_stub_exactly_when_scripts_can_make_it(module, name):
    assert ("__init__" in _members(CLASSES[name].body)) == hasattr(module, "new_" + name)


def test_read_only_values_match_cvar(shadow):
    stub = set(_members(TOP["_ReadOnlyValues"].body))
    listed = set(str(shadow.cvar).strip("()").split(", "))
    assert len(stub) == 103
    assert stub == listed
    for name in stub:
        assert isinstance(getattr(shadow.cvar, name), int)


FACADE = {n: node for n, node in _members(CLASSES["PyClipGrade"].body).items() if isinstance(node, ast.FunctionDef)}


@pytest.mark.parametrize("name", sorted(n for n in FACADE if n != "__init__"))
def test_facade_method_takes_the_arguments_of_the_stub(shadow, name):
    method = getattr(shadow.PyClipGrade, name)
    node = FACADE[name]
    required = len(node.args.args) - len(node.args.defaults)
    parameters = list(inspect.signature(method).parameters.values())
    if any(p.kind == p.VAR_POSITIONAL for p in parameters):
        # Overloads by count: the stub's optional arguments are the overloads.
        assert len(node.args.defaults) == 1
    else:
        assert len(parameters) == len(node.args.args) == required
    # The one-line docstring of help() names the same arguments.
    doc = method.__doc__
    assert "\n" not in doc
    assert doc.startswith("%s(%s) -> " % (name, ", ".join(
        a.arg + ("=False" if i >= required - 1 and node.args.defaults and a.annotation.id == "bool" else
                 "=None" if i >= required - 1 and node.args.defaults else "")
        for i, a in enumerate(node.args.args[1:]))))


def test_help_shows_every_method_with_its_line(shadow):
    import pydoc
    text = pydoc.plain(pydoc.render_doc(shadow.PyClipGrade))
    for name in FACADE:
        method = getattr(shadow.PyClipGrade, name, None)
        if method is None or name == "__init__":
            continue
        assert method.__doc__ in text, name


def test_the_stub_is_what_its_script_writes_from_the_tables(tmp_path):
    import subprocess
    import sys
    written = tmp_path / "PyClipGrade.pyi"
    done = subprocess.run([sys.executable, os.path.join(REPO, "scripts", "make_stub.py"), str(written)],
                          capture_output=True, text=True, timeout=60)
    assert done.returncode == 0, done.stderr
    with open(STUB) as f:
        assert written.read_text() == f.read()
