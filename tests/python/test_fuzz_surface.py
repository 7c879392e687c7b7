"""The fuzzer knows the whole surface, and what it found stays fixed."""

import glob
import os
import random
import subprocess
import sys

import pytest

from conftest import HOST, REPO

FUZZ = os.path.join(REPO, "tests", "fuzz")
sys.path.insert(0, FUZZ)

import surface  # noqa: E402


def facade_members(shadow):
    return sorted(name for name, value in vars(shadow.PyClipGrade).items()
                  if callable(value) and (not name.startswith("_") or name == "__init__"))


def test_every_facade_member_has_generators(shadow):
    missing = [name for name in facade_members(shadow) if name not in surface.FACADE_MEMBERS]
    assert missing == []


def test_no_generators_for_members_the_facade_lacks(shadow):
    assert sorted(set(surface.FACADE_MEMBERS) - set(facade_members(shadow))) == []


@pytest.mark.parametrize("member", sorted(surface.FACADE_MEMBERS))
def test_facade_generators_give_source_that_compiles(member, shadow):
    gen = surface.Gen(random.Random(member), surface.constructible_records(shadow))
    for _ in range(50):
        lines = surface.FACADE_MEMBERS[member](gen, member)
        compile("\n".join(lines), member, "exec")
        assert any("f." + member in line or "P.PyClipGrade(" in line for line in lines)


def test_every_record_of_the_tables_is_known(shadow):
    assert len(surface.RECORD_FIELDS) == 140
    assert len(surface.constructible_records(shadow)) > 50


@pytest.mark.parametrize("script", sorted(glob.glob(os.path.join(FUZZ, "regressions", "*.py"))),
                         ids=os.path.basename)
def test_saved_finding_holds(script):
    child = subprocess.run([sys.executable, script], capture_output=True, text=True, timeout=120,
                           env=dict(os.environ, PYCLIPGRADE_HOST=HOST, PYTHONMALLOC="debug"))
    assert child.returncode == 0, child.stderr[-2000:]
