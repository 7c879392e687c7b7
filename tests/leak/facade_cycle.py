"""Makes facades, pushes, replaces and clears records, and deletes the
facades again: run under valgrind, nothing the module or the agent allocated
may be left behind."""

import sys

import PyClipGrade

PY_SET_CLARITY = PyClipGrade.cvar.PY_SET_CLARITY


def cycle():
    first = PyClipGrade.PyClipGrade()
    second = PyClipGrade.PyClipGrade(first.GetDspAgentPtr(), 0)
    for clip in range(3):
        first.AddVideo(clip, 0, 1000, 1.0)
        for step in range(4):
            effect = {"Clr": [[t, t * step] for t in range(0, 50, 10)], "EffVer": 48}
            first.PushTask(clip, PY_SET_CLARITY, effect, step % 2 == 0)
            second.PushTask(clip, PY_SET_CLARITY, effect, False)
    first.ClearTask(0, False)
    first.PushTask(0, 8, {}, False)
    del second
    del first


for _ in range(5):
    cycle()
sys.exit(0)
