"""Faults injected into the engines and the platform layer: each gives its
defined result, and nothing is lost or leaked."""

import os
import subprocess
import sys
import textwrap

from conftest import AGENT_LIBRARY, BUILD, E_FAIL, HOST


def run_child(code, **env):
    child = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True, text=True,
                           timeout=60, env=dict(os.environ, PYCLIPGRADE_BUILD=BUILD, PYTHONMALLOC="debug", **env))
    assert child.returncode == 0, child.stderr
    return child.stdout.splitlines()


def test_an_agent_that_fails_everything_answers_its_code_and_frees_all_at_the_end(shadow, journal):
    journal.set_result("*", "*", E_FAIL)
    try:
        facade = shadow.PyClipGrade()
        assert facade.AddVideo(1, 0, 0, 1.0) == E_FAIL
        assert facade.UpdateVideo(1, 0, 10, 1.0) == E_FAIL
        facade.PushTask(1, shadow.PY_SET_WB, {"Tmp": [[0, 1]]}, False)
        assert facade.RemoveVideo(1) == E_FAIL
        assert facade.RemoveAllVideo() == E_FAIL
        del facade
    finally:
        journal.reset()
    assert journal.counter("agentsLive") == 0
    assert journal.counter("recordsHeld") == 0
    assert journal.counter("masksHeld") == 0


def test_a_ring_without_its_array_drops_events_and_the_facade_still_ends():
    """The ring's array allocation failed: construction goes on, the pump
    thread and the agent's producer refuse the ring instead of writing
    through null, the frame posted is released and teardown does not wait
    for ever on a stop command that cannot be written."""
    lines = run_child("""
        import ctypes, sys, time
        sys.path.insert(0, %r)
        import PyClipGrade as P
        agent = ctypes.CDLL(%r)
        agent.RefAgent_PostEvent.argtypes = [ctypes.c_int32] * 3 + [ctypes.c_int64] + [ctypes.c_int32] * 2
        agent.RefAgent_Counter.restype = ctypes.c_int64
        agent.RefAgent_Counter.argtypes = [ctypes.c_char_p]
        calls = []
        f = P.PyClipGrade()
        print(f.SetPyCallback(lambda *a: calls.append(a)))
        print(agent.RefAgent_PostEvent(0, 4, 0, 0x102030, 4, 2))
        print(agent.RefAgent_WaitPosted(0, 10000))
        time.sleep(0.2)
        print(calls)
        del f
        print(agent.RefAgent_Counter(b"framesLive"), agent.RefAgent_Counter(b"agentsLive"))
    """ % (HOST, AGENT_LIBRARY), PYCLIPGRADE_FAIL_SITES="ring-array")
    assert lines == ["True", "0", "0", "[]", "0 0"]


def test_the_ring_switch_off_delivers_the_same_event():
    lines = run_child("""
        import ctypes, sys, time
        sys.path.insert(0, %r)
        import PyClipGrade as P
        agent = ctypes.CDLL(%r)
        agent.RefAgent_PostEvent.argtypes = [ctypes.c_int32] * 3 + [ctypes.c_int64] + [ctypes.c_int32] * 2
        calls = []
        f = P.PyClipGrade()
        f.SetPyCallback(lambda *a: calls.append(a))
        print(agent.RefAgent_PostEvent(0, 1, 3, 0, 0, 0))
        print(agent.RefAgent_WaitPosted(0, 10000))
        for _ in range(100):
            if calls:
                break
            time.sleep(0.05)
        print(len(calls))
        del f
    """ % (HOST, AGENT_LIBRARY))
    assert lines == ["0", "0", "1"]


def test_an_image_buffer_that_cannot_be_made_gives_none_and_keeps_the_source():
    lines = run_child("""
        import ctypes, sys
        sys.path.insert(0, %r)
        sys.path.insert(0, %r)
        import PyClipGrade as P
        from selection_support import buffers, picture_buffer
        module = ctypes.CDLL(P._PyClipGrade.__file__)
        module.PcgTesting_FailSite.argtypes = [ctypes.c_char_p, ctypes.c_int32]
        f = P.PyClipGrade()
        four = picture_buffer(4, 4, bytes([10, 20, 30, 255]) * 16)
        module.PcgTesting_FailSite(b"image-buffer", 1)
        print(f.ResizeImageBuffer(four, 2, 2))
        module.PcgTesting_FailSite(b"image-buffer", 0)
        print(buffers.RefCount(four))
        half = f.ResizeImageBuffer(four, 2, 2)
        print(buffers.Shape(half))
        print(buffers.Release(half), buffers.Release(four))
        del f
    """ % (HOST, os.path.dirname(os.path.abspath(__file__))))
    assert lines == ["None", "1", "(2, 2, 4)", "0 0"]
