"""Each example script of examples/ runs to its end in an interpreter of its
own and prints what it promises. (The smart selection example on a
photograph is run by test_selection_operations.py.)"""

import os
import subprocess
import sys

import pytest

from conftest import BUILD, HOST, REPO

# (script, a line its output must hold)
EXAMPLES = [
    ("effects.py", "FUNCTION_SET_CLARITY is 225, FUNCTION_SET_SATURATION is 257"),
    ("masks.py", "PushTask(7, PY_SET_MASK_SATURATION, ...) -> 0"),
    ("events.py", "delivered in order: True"),
    ("queries.py", "tone curve: 0 -> "),
    ("render.py", "source pixel (b, g, r, a) (80, 120, 160, 255) -> rendered "),
]


@pytest.mark.parametrize("script,line", EXAMPLES, ids=[e[0] for e in EXAMPLES])
def test_example_runs(shadow, script, line):
    env = dict(os.environ, PYTHONPATH=os.pathsep.join([HOST, os.path.join(BUILD, "testing")]))
    env.pop("PYCLIPGRADE_HOST_DIR", None)
    done = subprocess.run([sys.executable, os.path.join(REPO, "examples", script)], env=env,
                          capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stdout + done.stderr
    assert line in done.stdout
    assert done.stderr == ""


def test_every_example_is_run():
    run = {e[0] for e in EXAMPLES} | {"smart_selection.py", "grade_photo.py"}
    assert sorted(f for f in os.listdir(os.path.join(REPO, "examples")) if f.endswith(".py")) == sorted(run)


def test_the_photograph_demo_grades_coffee_and_writes_its_pictures(tmp_path):
    env = dict(os.environ, PYTHONPATH=os.pathsep.join([HOST, os.path.join(BUILD, "testing")]))
    env.pop("PYCLIPGRADE_HOST_DIR", None)
    done = subprocess.run([sys.executable, os.path.join(REPO, "examples", "grade_photo.py"), str(tmp_path)],
                          env=env, capture_output=True, text=True, timeout=300)
    assert done.returncode == 0, done.stdout + done.stderr
    assert "SetLUT -> 0" in done.stdout
    assert "ApplyLUTOnBuffer -> True" in done.stdout
    change = [l for l in done.stdout.splitlines() if l.startswith("mean change per channel: ")]
    assert len(change) == 1 and float(change[0].split(": ")[1].split()[0]) > 5.0
    assert "wrote before.png, after.png and histogram.png into " + str(tmp_path) in done.stdout
    for name in ("before.png", "after.png", "histogram.png"):
        assert (tmp_path / name).stat().st_size > 1000
