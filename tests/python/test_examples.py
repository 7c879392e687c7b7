"""Each example script of examples/ runs to its end in an interpreter of its
own and prints what it promises. (The smart selection example on a
photograph is run by test_selection_operations.py.)"""

import os
import subprocess
import sys

import pytest

from conftest import BUILD, HOST, REPO

# (script, the facade member it needs, a line its output must hold)
EXAMPLES = [
    ("effects.py", None, "FUNCTION_SET_CLARITY is 225, FUNCTION_SET_SATURATION is 257"),
    ("masks.py", None, "PushTask(7, PY_SET_MASK_SATURATION, ...) -> 0"),
    ("events.py", None, "delivered in order: True"),
    ("queries.py", "Query_WBDropInfo", "tone curve: 0 -> "),
    ("render.py", "ApplyEffectOnBuffer", "source pixel (b, g, r, a) (80, 120, 160, 255) -> rendered "),
]


@pytest.mark.parametrize("script,needs,line", EXAMPLES, ids=[e[0] for e in EXAMPLES])
def test_example_runs(shadow, script, needs, line):
    if needs is not None and not hasattr(shadow.PyClipGrade, needs):
        pytest.skip("%s waits for PyClipGrade.%s, which arrives with the query and buffer members"
                    % (script, needs))
    env = dict(os.environ, PYTHONPATH=os.pathsep.join([HOST, os.path.join(BUILD, "testing")]))
    env.pop("PYCLIPGRADE_HOST_DIR", None)
    done = subprocess.run([sys.executable, os.path.join(REPO, "examples", script)], env=env,
                          capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stdout + done.stderr
    assert line in done.stdout
    assert done.stderr == ""


def test_every_example_is_run():
    run = {e[0] for e in EXAMPLES} | {"smart_selection.py"}
    assert sorted(f for f in os.listdir(os.path.join(REPO, "examples")) if f.endswith(".py")) == sorted(run)
