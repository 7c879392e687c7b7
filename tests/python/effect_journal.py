"""Helpers of the effect converter tests: push one effect and read back the
record the reference agent decoded from it."""

import struct

PREFIX = "[PyClipGrade] "


def f32(value):
    """The double a 32-bit float widens to: how the journal writes floats."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def push_record(facade, journal, task, effect, video=1):
    """Pushes `effect` as `task` and returns (result, FUNCTION_ID, RECORD)
    of the one PushEffect that reached the agent."""
    journal.reset()
    result = facade.PushTask(video, task, effect, False)
    pushed = journal.ops("PushEffect")
    assert len(pushed) == 1, pushed
    args = pushed[0]["args"]
    assert args[0] == video
    return result, args[1], args[2]


def keys(vector):
    """A vector's entries as (time, value, interp) triples."""
    return [(e["time"], e["value"], e["interp"]) for e in vector]


def trace_lines(err):
    """The trace's lines without their prefix, empty lines dropped."""
    out = []
    for line in err.split("\n"):
        if not line:
            continue
        assert line.startswith(PREFIX), line
        out.append(line[len(PREFIX):])
    return out
