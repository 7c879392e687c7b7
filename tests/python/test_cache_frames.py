"""The facade's three cache frame slots and the two members that steer the
agent's producer of them."""

import os
import re

import pytest

from event_agent import CACHE_FRAME_UPDATED, EventAgent, Frame, wait_for

PREFIX = "[PyClipGrade] "
SLOTS = [("SetCacheFrame", "GetCacheFrame", CACHE_FRAME_UPDATED),
         ("SetCachePureFrame", "GetCachePureFrame", 5),
         ("SetCacheFramePlaying", "GetCacheFramePlaying", 6)]


@pytest.fixture
def agent(journal):
    return EventAgent()


def agent_frame(shadow, agent, colour, width=2, height=1):
    """A frame the agent made, as a script handle: delivered to a scratch
    facade's slot and fetched from there (the fetch's reference is ours)."""
    scratch = shadow.PyClipGrade()
    agent.post(CACHE_FRAME_UPDATED, 0, colour, width, height)
    assert agent.wait_posted() == 0

    def arrived():
        handle = scratch.GetCacheFrame()
        if handle is None:
            return False
        Frame(handle).release()   # each fetch takes a reference
        return True

    assert wait_for(arrived)
    handle = scratch.GetCacheFrame()
    assert Frame(handle).pixels()[0] == colour & 0xFF
    del scratch   # its slot's reference goes; the handle keeps the fetch's
    return handle


@pytest.mark.parametrize("setter,getter,command", SLOTS)
def test_a_slot_is_empty_at_first(shadow, setter, getter, command):
    assert getattr(shadow.PyClipGrade(), getter)() is None


@pytest.mark.parametrize("setter,getter,command", SLOTS)
def test_setting_none_changes_nothing_and_logs_nothing(shadow, trace_on, capfd, setter, getter, command):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    assert getattr(facade, setter)(None) is None
    assert getattr(facade, getter)() is None
    assert capfd.readouterr().err == ""


@pytest.mark.parametrize("setter,getter,command", SLOTS)
def test_a_set_frame_is_held_with_a_reference_of_its_own(shadow, agent, trace_on, capfd, setter, getter, command):
    handle = agent_frame(shadow, agent, 0x445566)
    frame = Frame(handle)
    before = frame.references()
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    getattr(facade, setter)(handle)
    assert frame.references() == before + 1
    assert capfd.readouterr().err == "%s%s cache frame=0x%x, bytes per pixel=4\n" % (
        PREFIX, "PyClipGrade::" + setter, frame.address)
    fetched = getattr(facade, getter)()
    assert int(fetched) == frame.address
    # The getter's reference goes to the caller.
    assert frame.references() == before + 2
    frame.release()
    del facade
    assert frame.references() == before
    frame.release()


def test_setters_fill_only_their_own_slot(shadow, agent):
    handles = [agent_frame(shadow, agent, colour) for colour in (1, 2, 3)]
    facade = shadow.PyClipGrade()
    for (setter, getter, _), handle in zip(SLOTS, handles):
        getattr(facade, setter)(handle)
    for (setter, getter, _), handle in zip(SLOTS, handles):
        fetched = getattr(facade, getter)()
        assert int(fetched) == int(handle)
        Frame(fetched).release()
    del facade
    for handle in handles:
        Frame(handle).release()


def test_a_replaced_frame_stays_alive_through_a_fetched_handle(shadow, agent):
    live = agent.counter("framesLive")
    first = agent_frame(shadow, agent, 0x11)
    second = agent_frame(shadow, agent, 0x22)
    facade = shadow.PyClipGrade()
    facade.SetCacheFrame(first)
    fetched = facade.GetCacheFrame()
    Frame(first).release()        # the handle made by agent_frame
    facade.SetCacheFrame(second)  # the slot lets the first go
    frame = Frame(fetched)
    assert frame.references() == 1
    assert frame.pixels()[:4] == bytes([0x11, 0, 0, 255])
    frame.release()
    assert agent.counter("framesLive") == live + 1
    del facade
    Frame(second).release()
    assert agent.counter("framesLive") == live


def test_the_same_frame_set_twice_is_kept(shadow, agent):
    handle = agent_frame(shadow, agent, 0x33)
    facade = shadow.PyClipGrade()
    facade.SetCacheFrame(handle)
    facade.SetCacheFrame(handle)
    frame = Frame(handle)
    assert frame.references() == 2
    del facade
    assert frame.references() == 1
    frame.release()


def test_after_an_update_reaches_the_script_the_slot_is_never_older(shadow, agent):
    facade = shadow.PyClipGrade()
    seen = []

    def callback(name, value):
        handle = facade.GetCacheFrame()
        frame = Frame(handle)
        seen.append((value, frame.pixels()[0]))
        frame.release()

    facade.SetPyCallback(callback)
    for colour in range(1, 40):
        agent.post(CACHE_FRAME_UPDATED, 0, colour, 1, 1)
    assert agent.wait_posted() == 0
    assert wait_for(lambda: len(seen) == 39)
    for value, current in seen:
        assert current >= value
    # The callable refers to the facade: break the cycle the collector cannot see.
    facade.SetPyCallback(None)


def test_cache_frame_on_agent_is_forwarded_without_a_log(shadow, journal, trace_on, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    journal.reset()
    assert facade.SetCacheFrameOnDspAgent(7, -5, 1) is None
    assert [(e["agent"], e["args"]) for e in journal.ops("SetCacheFrameOnDspAgent")] == [("DspMain", [7, -5, 1])]
    assert capfd.readouterr().err == ""


@pytest.mark.parametrize("enable", [0, 1])
def test_playing_on_agent_resets_then_enables(shadow, journal, trace_on, capfd, enable):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    journal.reset()
    assert facade.SetCacheFramePlayingOnDspAgent(enable, 1 << 40) is None
    ops = [(e["op"], e["agent"], e["args"]) for e in journal.entries()]
    assert ops == [("ResetCacheFramePlaying", "DspMain", []),
                   ("EnableCacheFramePlaying", "DspMain", [enable, 1 << 40])]
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::SetCacheFramePlayingOnDspAgent enable = %d, frame_interval = %d\n" % (enable, 1 << 40))


def test_without_an_agent_the_agent_members_do_nothing(shadow, journal, trace_on, capfd, tmp_path):
    os.environ["PYCLIPGRADE_HOST_DIR"] = str(tmp_path)
    try:
        facade = shadow.PyClipGrade()
    finally:
        del os.environ["PYCLIPGRADE_HOST_DIR"]
    capfd.readouterr()
    journal.reset()
    facade.SetCacheFrameOnDspAgent(1, 2, 1)
    facade.SetCacheFramePlayingOnDspAgent(1, 2)
    assert journal.entries() == []
    assert capfd.readouterr().err == ""


def test_a_wrong_frame_argument_raises(shadow):
    facade = shadow.PyClipGrade()
    with pytest.raises(TypeError) as raised:
        facade.SetCacheFrame(5)
    assert str(raised.value) == "in method 'PyClipGrade_SetCacheFrame', argument 2 of type 'IImageBuffer *'"
