"""Engine events from the agent's threads to the script's callable."""

import gc
import os
import sys
import traceback
import threading
import time

import pytest

from conftest import write_settings
from event_agent import (CACHE_FRAME_PLAYING_UPDATED, CACHE_FRAME_UPDATED, CACHE_PURE_FRAME_UPDATED, STOP,
                         TRACKING_MEET_KEYFRAME, TRACKING_MISS_TIME, TRACKING_STATE, EventAgent, Frame, wait_for)

PREFIX = "[PyClipGrade] "


@pytest.fixture
def agent(journal):
    return EventAgent()


class Recorder:
    def __init__(self):
        self.calls = []

    def __call__(self, *args):
        self.calls.append(args)


class Holder:
    """A list watched by deliver()."""

    def __init__(self, calls):
        self.calls = calls


@pytest.fixture
def script_stderr(monkeypatch):
    """What the callback thread prints of a script error, as the interpreter
    hands it to sys.excepthook. Polling capfd instead would truncate its file
    while that thread may be writing into it, and lose lines."""
    printed = []

    def excepthook(kind, value, tb):
        printed.append("".join(traceback.format_exception_only(kind, value)))

    monkeypatch.setattr(sys, "excepthook", excepthook)
    return lambda: "".join(printed)


def deliver(agent, recorder, count, timeout=10.0):
    assert agent.wait_posted() == 0
    assert wait_for(lambda: len(recorder.calls) >= count, timeout)


def test_set_py_callback_answers_true_for_any_object(shadow):
    facade = shadow.PyClipGrade()
    assert facade.SetPyCallback(print) is True
    assert facade.SetPyCallback(None) is True
    assert facade.SetPyCallback(5) is True


def test_tracking_events_reach_the_callable_in_order(shadow, agent):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    assert agent.post(TRACKING_STATE, 1, 7) == 0
    assert agent.post(TRACKING_MEET_KEYFRAME, -2, 1 << 40) == 0
    assert agent.post(TRACKING_MISS_TIME, 2147483647, -(1 << 62)) == 0
    deliver(agent, recorder, 3)
    assert recorder.calls == [
        ("TRACKING_STATE", 1, 7),
        ("TRACKING_MEET_KEYFRAME", -2, 1 << 40),
        ("TRACKING_MISS_TIME", 2147483647, -(1 << 62)),
    ]


def test_cache_events_store_the_frame_before_the_call(shadow, agent):
    facade = shadow.PyClipGrade()
    seen = []

    def callback(*args):
        frame = Frame(getattr(facade, names[args[0]])())
        seen.append((args, frame.width(), frame.height(), frame.pixel_bytes(), frame.pixels()[:8]))
        frame.release()   # the getter's reference

    names = {"CACHE_FRAME_UPDATED": "GetCacheFrame", "CACHE_PURE_FRAME_UPDATED": "GetCachePureFrame",
             "CACHE_FRAME_PLAYING_UPDATED": "GetCacheFramePlaying"}
    facade.SetPyCallback(callback)
    agent.post(CACHE_FRAME_UPDATED, 9, 0x123456, 3, 2)
    agent.post(CACHE_PURE_FRAME_UPDATED, 0, 0xABCDEF, 1, 1)
    agent.post(CACHE_FRAME_PLAYING_UPDATED, 0, 0x010203, 2, 5)
    deliver(agent, Holder(seen), 3)
    assert seen == [
        (("CACHE_FRAME_UPDATED", 0x123456), 3, 2, 4, bytes([0x56, 0x34, 0x12, 255] * 2)),
        (("CACHE_PURE_FRAME_UPDATED", 0xABCDEF), 1, 1, 4, bytes([0xEF, 0xCD, 0xAB, 255])),
        (("CACHE_FRAME_PLAYING_UPDATED", 0x010203), 2, 5, 4, bytes([0x03, 0x02, 0x01, 255] * 2)),
    ]
    # The callable refers to the facade, which holds the callable: the cycle
    # goes through the facade's own reference, which the collector cannot see.
    facade.SetPyCallback(None)


def test_each_slot_keeps_one_reference_and_the_agents_goes_after_the_call(shadow, agent):
    facade = shadow.PyClipGrade()
    counts = []

    def callback(name, value):
        frame = Frame(facade.GetCacheFrame())
        counts.append(frame.references())   # agent's, slot's, getter's
        frame.release()

    facade.SetPyCallback(callback)
    live = agent.counter("framesLive")
    agent.post(CACHE_FRAME_UPDATED, 0, 1, 2, 2)
    deliver(agent, Holder(counts), 1)
    assert counts == [3]
    assert wait_for(lambda: Frame(facade_frame(facade)).references() == 1)
    assert agent.counter("framesLive") == live + 1
    del facade
    gc.collect()
    assert agent.counter("framesLive") == live


def facade_frame(facade):
    handle = facade.GetCacheFrame()
    Frame(handle).release()
    return handle


def first_byte(facade):
    """The first byte of the cache frame, or None before there is one."""
    handle = facade.GetCacheFrame()
    if handle is None:
        return None
    frame = Frame(handle)
    frame.release()
    return frame.pixels()[0]


def test_a_callback_that_raises_is_printed_and_the_next_event_arrives(shadow, agent, capfd):
    facade = shadow.PyClipGrade()
    calls = []

    def callback(name, first, second):
        calls.append(first)
        if first == 1:
            raise ZeroDivisionError("first event refused")

    facade.SetPyCallback(callback)
    agent.post(TRACKING_STATE, 1, 0)
    agent.post(TRACKING_STATE, 2, 0)
    deliver(agent, Holder(calls), 2)
    assert calls == [1, 2]
    err = capfd.readouterr().err
    assert "Traceback (most recent call last):" in err
    assert "ZeroDivisionError: first event refused" in err


def one_argument(name):
    pass


def test_a_callable_of_the_wrong_arity_prints_a_type_error_per_event(shadow, agent, script_stderr):
    facade = shadow.PyClipGrade()
    done = []
    facade.SetPyCallback(one_argument)
    for value in range(3):
        agent.post(TRACKING_STATE, value, 0)
    agent.post(CACHE_FRAME_UPDATED, 0, 5, 1, 1)
    assert agent.wait_posted() == 0
    tracking = "TypeError: one_argument() takes 1 positional argument but 3 were given"
    cache = "TypeError: one_argument() takes 1 positional argument but 2 were given"
    assert wait_for(lambda: script_stderr().count(cache) == 1)
    assert script_stderr().count(tracking) == 3
    # Nothing else changed: the frame is stored, the next callable is called.
    assert wait_for(lambda: first_byte(facade) == 5)
    facade.SetPyCallback(lambda *a: done.append(a))
    agent.post(TRACKING_STATE, 5, 5)
    assert wait_for(lambda: done)
    assert done == [("TRACKING_STATE", 5, 5)]


def test_a_non_callable_fails_only_when_an_event_fires(shadow, agent, script_stderr):
    facade = shadow.PyClipGrade()
    done = []
    assert facade.SetPyCallback(42) is True
    agent.post(TRACKING_STATE, 1, 1)
    assert agent.wait_posted() == 0
    assert wait_for(lambda: "TypeError: 'int' object is not callable" in script_stderr())
    facade.SetPyCallback(lambda *a: done.append(a))
    agent.post(TRACKING_STATE, 2, 2)
    assert wait_for(lambda: done)
    assert done == [("TRACKING_STATE", 2, 2)]


def test_clearing_the_callable_drops_tracking_events_but_frames_still_arrive(shadow, agent):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    agent.post(TRACKING_STATE, 1, 1)
    deliver(agent, recorder, 1)
    assert facade.SetPyCallback(None) is True
    live = agent.counter("framesLive")
    for colour in (0x10, 0x20, 0x30):
        agent.post(TRACKING_STATE, 2, colour)
        agent.post(CACHE_FRAME_UPDATED, 0, colour, 1, 1)
        assert agent.wait_posted() == 0
        assert wait_for(lambda: first_byte(facade) == colour)
    assert recorder.calls == [("TRACKING_STATE", 1, 1)]
    # One frame held by the slot; those it replaced are gone.
    assert wait_for(lambda: agent.counter("framesLive") == live + 1)


def test_a_null_frame_is_dropped_without_a_call(shadow, agent, trace_on, capfd):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    capfd.readouterr()
    for command in (CACHE_FRAME_UPDATED, CACHE_PURE_FRAME_UPDATED, CACHE_FRAME_PLAYING_UPDATED):
        agent.post(command, 0, 77)
    agent.post(TRACKING_STATE, 0, 1)
    deliver(agent, recorder, 1)
    assert recorder.calls == [("TRACKING_STATE", 0, 1)]
    assert facade.GetCacheFrame() is None
    assert capfd.readouterr().err == ""


@pytest.mark.parametrize("command", [0, 8, -1])
def test_an_unknown_command_is_logged_and_dropped(shadow, agent, trace_on, capfd, command):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    capfd.readouterr()
    agent.post(command, 5, 6)
    agent.post(TRACKING_STATE, 1, 2)
    deliver(agent, recorder, 1)
    assert recorder.calls == [("TRACKING_STATE", 1, 2)]
    assert capfd.readouterr().err == (
        PREFIX + "[PyClipGrade] ProcessCallback() Doesn't recognize the command id = %d\n" % command)


def test_an_unknown_command_keeps_its_frame(shadow, agent):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    live = agent.counter("framesLive")
    agent.post(8, 0, 1, 1, 1)
    agent.post(TRACKING_STATE, 1, 2)
    deliver(agent, recorder, 1)
    # The item's frame is not released: that reference is never given back.
    assert agent.counter("framesLive") == live + 1


def test_events_queued_before_the_destructor_are_delivered_first(shadow, agent):
    facade = shadow.PyClipGrade()
    recorder = Recorder()

    def slow(*args):
        time.sleep(0.002)
        recorder(*args)

    facade.SetPyCallback(slow)
    for value in range(20):
        agent.post(TRACKING_STATE, value, 0)
    assert agent.wait_posted() == 0
    # The callable goes first thing in the destructor: what is delivered after
    # that is consumed without a call, so only count what arrived before.
    delivered_before = len(recorder.calls)
    del facade
    assert [c[1] for c in recorder.calls] == list(range(len(recorder.calls)))
    assert len(recorder.calls) >= delivered_before


def test_destroying_a_facade_waits_for_the_running_script_function(shadow, agent):
    holder = [shadow.PyClipGrade()]
    entered = threading.Event()
    go = threading.Event()
    order = []

    def callback(*args):
        entered.set()
        go.wait(10)
        order.append("callback returned")

    holder[0].SetPyCallback(callback)
    agent.post(TRACKING_STATE, 1, 1)
    assert entered.wait(10)

    def destroy():
        holder.pop()
        order.append("destructor returned")

    destroyer = threading.Thread(target=destroy)
    destroyer.start()
    destroyer.join(0.3)
    assert destroyer.is_alive()
    go.set()
    destroyer.join(10)
    assert not destroyer.is_alive()
    assert order == ["callback returned", "destructor returned"]


def test_a_facade_deleted_from_its_own_script_function_does_not_hang(shadow, agent):
    holder = [shadow.PyClipGrade()]
    done = threading.Event()

    def callback(*args):
        holder.clear()
        done.set()

    holder[0].SetPyCallback(callback)
    agent.post(TRACKING_STATE, 1, 1)
    assert done.wait(10)
    assert holder == []


def test_without_the_callback_flag_there_is_no_thread_and_no_stop(shadow, journal, trace_on, capfd):
    first = shadow.PyClipGrade()
    capfd.readouterr()
    journal.reset()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0, 0)
    del second
    lines = [l for l in capfd.readouterr().err.split("\n") if l]
    assert PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspCallbackThread" not in lines
    assert PREFIX + "PyClipGrade::~PyClipGrade Try to terminate CB thread" not in lines
    # Between enter and end only the image engine's side goes (its manager,
    # and the engine where one came up): no callback thread is stopped.
    teardown = lines[lines.index(PREFIX + "PyClipGrade::~PyClipGrade() enter"):]
    assert teardown[-1] == PREFIX + "PyClipGrade::~PyClipGrade() end"
    assert all("ImageRetouch" in line for line in teardown[1:-1])
    assert PREFIX + "PyClipGrade::~PyClipGrade Finish terminate CB thread" not in lines
    # The agent is told no ring at construction, and null at the end.
    assert [e["args"] for e in journal.ops("SetCallbackQueue")] == [[None]]


def test_the_ring_is_handed_to_the_main_agent_only(shadow, journal):
    facade = shadow.PyClipGrade()
    assert [(e["agent"], e["args"]) for e in journal.ops("SetCallbackQueue")] == [("DspMain", [True])]
    del facade
    assert [(e["agent"], e["args"]) for e in journal.ops("SetCallbackQueue")] == [
        ("DspMain", [True]), ("DspMain", [None])]


def test_without_an_agent_the_thread_still_starts_and_stops(shadow, trace_on, capfd, tmp_path):
    os.environ["PYCLIPGRADE_HOST_DIR"] = str(tmp_path)
    try:
        facade = shadow.PyClipGrade()
    finally:
        del os.environ["PYCLIPGRADE_HOST_DIR"]
    del facade
    lines = [l for l in capfd.readouterr().err.split("\n") if l]
    # The callback thread stops first; the image engine's manager goes after it.
    teardown = lines[lines.index(PREFIX + "PyClipGrade::~PyClipGrade() enter"):]
    assert teardown[:3] == [
        PREFIX + "PyClipGrade::~PyClipGrade() enter",
        PREFIX + "PyClipGrade::~PyClipGrade Try to terminate CB thread",
        PREFIX + "PyClipGrade::~PyClipGrade Finish terminate CB thread",
    ]
    assert teardown[-1] == PREFIX + "PyClipGrade::~PyClipGrade() end"


def test_two_facades_share_the_named_event(shadow, agent, trace_on, capfd):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade()
    recorder = Recorder()
    second.SetPyCallback(recorder)
    del first
    # The second facade's thread still runs and delivers.
    agent.post(TRACKING_STATE, 4, 4)
    deliver(agent, recorder, 1)
    capfd.readouterr()
    started = time.monotonic()
    del second
    assert time.monotonic() - started < 5
    lines = [l for l in capfd.readouterr().err.split("\n") if l]
    assert PREFIX + "PyClipGrade::~PyClipGrade Finish terminate CB thread" in lines
    assert recorder.calls == [("TRACKING_STATE", 4, 4)]


def test_a_stop_command_from_the_agent_ends_the_thread_and_the_destructor_still_returns(shadow, agent):
    facade = shadow.PyClipGrade()
    recorder = Recorder()
    facade.SetPyCallback(recorder)
    agent.post(STOP)
    agent.post(TRACKING_STATE, 1, 1)
    agent.post(CACHE_FRAME_UPDATED, 0, 1, 1, 1)
    agent.post(TRACKING_STATE, 2, 2)
    live = agent.counter("framesLive")
    time.sleep(0.1)
    del facade
    assert recorder.calls == []
    # The frame never delivered was let go, dropped by the agent or taken from the ring.
    assert agent.counter("framesLive") == live - 1


def test_process_callback_with_none_returns_at_once(module):
    assert module.ProcessCallback(None) is None


def test_process_callback_refuses_what_is_not_a_pointer(module):
    with pytest.raises(TypeError) as raised:
        module.ProcessCallback(5)
    assert str(raised.value) == "in method 'ProcessCallback', argument 1 of type 'void *'"


def test_process_callback_on_a_pointer_that_is_no_facade_returns(module, shadow, trace_on, capfd):
    record = shadow.PointD()
    shadow.PyClipGrade()   # the trace is read when a facade is made
    capfd.readouterr()
    assert module.ProcessCallback(record) is None
    assert capfd.readouterr().err == (
        PREFIX + "[PyClipGrade] ProcessCallback() the pointer is not a live facade, nothing to do\n")


def test_process_callback_runs_on_the_callers_thread_until_the_facade_goes(module, shadow, agent):
    facade = shadow.PyClipGrade()
    seen = []
    script_loop_called = threading.Event()

    def callback(name, first, second):
        seen.append((threading.get_ident(), first))
        if first == 0:
            # Keeps the facade's own thread here until the script's loop has
            # delivered an event.
            script_loop_called.wait(10)
        else:
            script_loop_called.set()

    facade.SetPyCallback(callback)
    agent.post(TRACKING_STATE, 0, 0)
    assert wait_for(lambda: len(seen) == 1)
    loop = threading.Thread(target=module.ProcessCallback, args=(facade,))
    loop.start()
    agent.post(TRACKING_STATE, 1, 0)
    assert script_loop_called.wait(10)
    assert (loop.ident, 1) in seen
    assert seen[0][0] != loop.ident
    assert loop.is_alive()
    # The loop's thread holds a reference of its own: delete the object itself.
    module.delete_PyClipGrade(facade)
    loop.join(10)
    assert not loop.is_alive()
    assert sorted(first for _, first in seen) == [0, 1]


def test_process_callback_from_script_on_a_facade_without_its_own_thread(module, shadow):
    first = shadow.PyClipGrade()
    holder = [shadow.PyClipGrade(first.GetDspAgentPtr(), 0, 0)]
    loop = threading.Thread(target=module.ProcessCallback, args=(holder[0],))
    loop.start()
    time.sleep(0.05)
    assert loop.is_alive()
    module.delete_PyClipGrade(holder[0])
    loop.join(10)
    assert not loop.is_alive()
