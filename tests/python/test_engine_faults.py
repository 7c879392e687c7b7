"""Faults injected into the engines and the platform layer: each gives its
defined result, and nothing is lost or leaked."""

import os
import subprocess
import sys
import textwrap

import pytest

from conftest import AGENT_LIBRARY, BUILD, E_FAIL, E_POINTER, HOST, RETOUCH_LIBRARY, S_OK, SUFFIX, write_settings
from selection_support import buffers
from test_facade_order import LIBRARIES
from test_image_engine_startup import NO_AGENT, assert_engine_gone

PY_SET_CLARITY = 12


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


# ------------------------------------------------ engine instances refused

RETOUCH_BOX = "[MessageBox] Huevane: PyClipGrade: cannot create m_pImageRetouch\n"
MGR = "[PyClipGrade] ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] "


@pytest.fixture
def dump_on():
    write_settings({"DumpMsg": 1})
    yield
    write_settings({})


def test_a_class_factory_refused_from_the_given_library(shadow, retouch, journal, dump_on, capfd):
    retouch.set_result("Library", "DllGetClassObject", E_FAIL)
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, RETOUCH_LIBRARY)
    err = capfd.readouterr().err
    assert MGR + "Can't get spFactory hr=80004005\n" in err
    assert RETOUCH_BOX in err
    assert "IID_IBufferAllocator" not in err
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    # Construction went on: the agents are there and take effects.
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False) == S_OK
    del facade
    assert_engine_gone(retouch)
    assert journal.counter("recordsHeld") == 0


def test_an_instance_refused_by_the_given_library_s_factory(shadow, retouch, dump_on, capfd):
    retouch.set_result("ImageRetouchFactory", "CreateInstance", E_FAIL)
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, RETOUCH_LIBRARY)
    err = capfd.readouterr().err
    assert MGR + "Init ImageRetouch Fail! hr=80004005\n" in err
    assert RETOUCH_BOX in err
    assert "Can't get spFactory" not in err
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    del facade
    assert_engine_gone(retouch)


def test_an_instance_refused_through_the_registered_class(shadow, retouch, dump_on, capfd):
    retouch.set_result("ImageRetouchFactory", "CreateInstance", E_FAIL)
    facade = shadow.PyClipGrade()
    err = capfd.readouterr().err
    assert MGR + "Can't create CLSID_ImageRetouch, hr=0x80004005\n" in err
    assert RETOUCH_BOX in err
    assert "Init ImageRetouch Fail!" not in err
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    del facade
    assert_engine_gone(retouch)


def test_the_registered_class_s_library_refusing_its_factory(shadow, retouch, dump_on, capfd):
    retouch.set_result("Library", "DllGetClassObject", E_FAIL)
    facade = shadow.PyClipGrade()
    err = capfd.readouterr().err
    # A class whose library gives no factory is one not registered.
    assert MGR + "Can't create CLSID_ImageRetouch, hr=0x80040154\n" in err
    assert RETOUCH_BOX in err
    assert retouch.counter("instancesLive") == 0
    del facade
    assert_engine_gone(retouch)


def test_without_the_engine_instance_its_questions_answer_none(shadow, retouch):
    retouch.set_result("ImageRetouchFactory", "CreateInstance", E_FAIL)
    facade = shadow.PyClipGrade()
    retouch.reset()
    picture = buffers.NewBuffer(4, 3, 4)
    try:
        assert facade.Query_TATMapInfo(5, picture, 0, 0) is None
        assert facade.Query_WBDropInfo(5, picture, 0, 0, 0, 0) is None
        assert facade.Query_ToneMapInfo({}) is None
        assert retouch.entries() == []
    finally:
        buffers.Release(picture)
    del facade
    assert_engine_gone(retouch)


def test_an_allocator_refused_through_the_registered_class_keeps_the_engine(shadow, retouch, dump_on, capfd):
    retouch.set_result("BufferAllocatorFactory", "CreateInstance", E_FAIL)
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, RETOUCH_LIBRARY)
    err = capfd.readouterr().err
    assert ("[PyClipGrade] PyClipGrade::m_fnInitImageRetouch CoCreateInstance IID_IBufferAllocator "
            "(m_pBufferAllocator) failed hr=0x80004005\n") in err
    assert "[PyClipGrade] PyClipGrade::m_fnInitImageRetouch [Err] Can't initialize IID_IBufferAllocator!!!\n" in err
    assert RETOUCH_BOX not in err
    assert retouch.counter("instancesLive") == 1
    assert retouch.counter("allocatorsLive") == 0
    # No allocator: the members that take masks from it answer None.
    capfd.readouterr()
    assert facade.Selection_ScaleUSSelectionList([(0.25, 0.25, 0.5)], 8, 8, 16, 16) is None
    assert ("[PyClipGrade] PyClipGrade::Selection_ScaleUSSelectionList Null Pointer : m_pBufferAllocator\n"
            in capfd.readouterr().err)
    del facade
    assert_engine_gone(retouch)


# ------------------------------------------------ the agent refusing

def test_an_agent_refusing_the_manager_still_serves_and_ends(shadow, retouch, journal):
    journal.set_result("*", "SetImageRetouchMgr", E_FAIL)
    facade = shadow.PyClipGrade()
    assert [e["agent"] for e in journal.ops("SetImageRetouchMgr")] == ["DspMain", "DspBuf"]
    assert retouch.counter("instancesLive") == 1
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False) == S_OK
    assert journal.counter("recordsHeld") == 1
    del facade
    assert journal.counter("agentsLive") == 0
    assert journal.counter("recordsHeld") == 0
    assert_engine_gone(retouch)


def test_push_task_to_an_agent_failing_everything_hands_the_record_over(shadow, journal):
    facade = shadow.PyClipGrade()
    journal.set_result("*", "*", E_FAIL)
    freed, entries = journal.counter("recordsFreed"), journal.counter("entriesFreed")
    # The agent's answer is not looked at: the record is the agent's either way.
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1], [10, 2]]}, False) == S_OK
    assert journal.counter("recordsHeld") == 1
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 3]]}, True) == S_OK
    assert journal.counter("recordsHeld") == 2
    del facade
    assert journal.counter("recordsHeld") == 0
    assert journal.counter("recordsFreed") == freed + 2
    assert journal.counter("entriesFreed") == entries + 3
    assert journal.counter("agentsLive") == 0


# ------------------------------------------------ libraries missing

@pytest.fixture
def host_without(monkeypatch, tmp_path):
    """Points the facade at a host folder linking every engine library but
    one; the process maps each file once, so the journals read here are the
    ones the facade's engines write."""

    def make(missing):
        for name, relative in LIBRARIES.items():
            source = os.path.join(HOST, relative + SUFFIX)
            if name == missing or not os.path.exists(source):
                continue
            target = os.path.join(str(tmp_path), relative + SUFFIX)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            os.symlink(source, target)
        monkeypatch.setenv("PYCLIPGRADE_HOST_DIR", str(tmp_path))

    return make


def test_without_the_image_engine_library_the_facade_comes_up_bare(shadow, retouch, journal, host_without,
                                                                     dump_on, capfd):
    host_without("retouch")
    facade = shadow.PyClipGrade()
    err = capfd.readouterr().err
    # The class's library is not there: the module was not found.
    assert MGR + "Can't create CLSID_ImageRetouch, hr=0x8007007E\n" in err
    assert RETOUCH_BOX in err
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    picture = buffers.NewBuffer(4, 3, 4)
    try:
        assert facade.Query_TATMapInfo(5, picture, 0, 0) is None
        assert facade.Query_ToneTATMapInfo(5, picture, 0, 0) is None
        assert facade.Query_WBDropInfo(5, picture, 0, 0, 0, 0) is None
        assert facade.Query_ToneMapInfo({}) is None
        assert facade.Selection_ScaleUSSelectionList([(0.25, 0.25, 0.5)], 8, 8, 16, 16) is None
    finally:
        buffers.Release(picture)
    # The agents came up all the same.
    assert [e["agent"] for e in journal.ops("SetImageRetouchMgr")] == ["DspMain", "DspBuf"]
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False) == S_OK
    del facade
    assert journal.counter("recordsHeld") == 0
    assert_engine_gone(retouch)


def test_without_the_resampler_library_a_resize_logs_118_and_gives_its_buffer(shadow, retouch, host_without,
                                                                              dump_on, capfd):
    host_without("resampler")
    facade = shadow.PyClipGrade()
    picture = buffers.NewBuffer(4, 4, 4)
    assert buffers.WriteBytes(picture, bytes([10, 20, 30, 255]) * 16) == 64
    capfd.readouterr()
    half = facade.ResizeImageBuffer(picture, 2, 2)
    err = capfd.readouterr().err
    try:
        assert "[PyClipGrade] PyClipGrade::ResizeImageBuffer [Err] ResizeBuffer_8u() status=-118\n" in err
        assert buffers.Shape(half) == (2, 2, 4)
        # The source is as it was.
        assert buffers.ReadBytes(picture) == bytes([10, 20, 30, 255]) * 16
    finally:
        buffers.Release(half)
        buffers.Release(picture)
    del facade
    assert_engine_gone(retouch)


def test_without_the_resampler_library_scaling_a_selection_logs_118(shadow, retouch, host_without, dump_on, capfd):
    host_without("resampler")
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    assert facade.Selection_ScaleUSSelectionList([(0.25, 0.25, 0.5)], 8, 8, 16, 16) is None
    err = capfd.readouterr().err
    assert "[PyClipGrade] PyClipGrade::Selection_ScaleUSSelectionList [Err] ResizeBuffer_8u() status=-118\n" in err
    del facade
    assert_engine_gone(retouch)


# The selection engine's and the agent's libraries missing are covered by
# test_selection_operations.py (the run keeps its mask without the engine)
# and test_facade_lifecycle.py (no agents: PushTask answers E_POINTER).


@pytest.mark.parametrize("refused, agents", [("DspMain", ["DspBuf"]), ("DspBuf", ["DspMain"]), ("*", [])])
def test_an_agent_factory_answering_null_leaves_that_agent_absent(shadow, retouch, journal, refused, agents):
    journal.set_result(refused, "CreateHvnDspAgent", E_FAIL)
    facade = shadow.PyClipGrade()
    # Only the agents that were made are told of the manager.
    assert [e["agent"] for e in journal.ops("SetImageRetouchMgr")] == agents
    assert journal.counter("agentsLive") == len(agents)
    main = S_OK if "DspMain" in agents else E_POINTER
    buf = S_OK if "DspBuf" in agents else E_POINTER
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False) == main
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, True) == buf
    assert retouch.counter("instancesLive") == 1
    del facade
    assert journal.counter("agentsLive") == 0
    assert journal.counter("recordsHeld") == 0
    assert_engine_gone(retouch)
