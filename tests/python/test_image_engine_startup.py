"""Engine start-up: each constructor form brings the image engine up or leaves
it absent, and a facade leaves nothing of it behind."""

import gc
import os
import threading

import pytest

from conftest import PRODUCT_KEY, RETOUCH_LIBRARY, S_OK, SETTINGS_FILE, write_settings

RETOUCH_CLASS = "{58529D7C-751A-47A9-982D-1560342ECB14}"
ALLOCATOR_CLASS = "{62ECF08B-8B33-4DDB-AF2E-1DA140458C85}"
PREFIX = "[PyClipGrade] "
# An agent text naming no agent: the facade makes its own "DspMain".
NO_AGENT = "@_PtrWrapper_$=0"
PY_SET_CLARITY = 12


def write_classes(classes, values=None):
    """The settings file with the product key's values and a class table."""
    write_settings(values or {})
    with open(SETTINGS_FILE, "a") as f:
        f.write("[Classes]\n")
        for name, path in classes.items():
            f.write("%s=%s\n" % (name, path))


@pytest.fixture
def settings():
    yield
    write_settings({})


def assert_engine_gone(retouch):
    gc.collect()
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    assert retouch.counter("buffersLive") == 0
    assert retouch.counter("imagesHeld") == 0
    assert retouch.counter("recordsHeld") == 0


def test_default_form_brings_the_engine_up_on_the_worker(shadow, retouch, journal):
    modes = retouch.counter("videoModeSet")
    facade = shadow.PyClipGrade()
    assert retouch.counter("instancesLive") == 1
    assert retouch.counter("allocatorsLive") == 1
    assert retouch.counter("videoModeSet") == modes + 1
    worker = retouch.counter("createdOnThread")
    assert worker not in (0, threading.get_native_id())
    assert [e["args"] for e in retouch.ops("SetProperty", "ImageRetouch")] == [[8, 4, 1]]
    told = journal.ops("SetImageRetouchMgr")
    assert [(e["agent"], e["args"]) for e in told] == [("DspMain", [True]), ("DspBuf", [True])]
    del facade
    assert_engine_gone(retouch)
    assert retouch.counter("releasedOnThread") == worker
    assert [e["op"] for e in retouch.entries() if e["object"] == "ImageRetouch"][-1] == "Destroyed"


def test_agent_form_makes_its_own_engine(shadow, retouch):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr())
    assert retouch.counter("instancesLive") == 2
    assert retouch.counter("allocatorsLive") == 2
    del first
    assert retouch.counter("instancesLive") == 1
    del second
    assert_engine_gone(retouch)


def test_agent_form_without_buffer_agent_leaves_the_engine_absent(shadow, retouch, journal):
    first = shadow.PyClipGrade()
    told = len(journal.ops("SetImageRetouchMgr"))
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    assert retouch.counter("instancesLive") == 1
    assert retouch.counter("allocatorsLive") == 1
    # A passed agent keeps the manager of the facade that made it.
    assert len(journal.ops("SetImageRetouchMgr")) == told
    del second, first
    assert_engine_gone(retouch)


def test_default_form_tells_both_agents_one_manager_of_its_own(shadow, journal):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade()
    told = [(e["agent"], e["manager"]) for e in journal.ops("SetImageRetouchMgr")]
    assert [agent for agent, _ in told] == ["DspMain", "DspBuf", "DspMain", "DspBuf"]
    assert told[0][1] == told[1][1] != 0
    assert told[2][1] == told[3][1] != 0
    assert told[0][1] != told[2][1]
    del first, second


def test_deleting_the_facade_that_made_a_shared_agent_leaves_it_a_stale_manager(shadow, retouch, journal):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    main_instance = journal.ops("SetImageRetouchMgr", "DspMain")[0]["instance"]
    agents = journal.counter("agentsLive")
    del first
    # The main agent lives on in the second facade, still holding the manager
    # that went with the first: nothing tells it of another one.
    assert journal.counter("agentsLive") == agents - 1
    told = journal.ops("SetImageRetouchMgr")
    assert [(e["agent"], e["instance"]) for e in told] == [("DspMain", main_instance), ("DspBuf", main_instance + 1)]
    assert second.PushTask(3, PY_SET_CLARITY, {"Clr": [[0, 5]]}, False) == S_OK
    assert journal.ops("PushEffect")[-1]["instance"] == main_instance
    assert retouch.counter("instancesLive") == 0
    del second
    assert journal.counter("agentsLive") == agents - 2
    assert_engine_gone(retouch)


def test_own_agent_without_buffer_agent_leaves_the_engine_absent(shadow, retouch, journal):
    facade = shadow.PyClipGrade(NO_AGENT, 0)
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    assert [e["agent"] for e in journal.ops("SetImageRetouchMgr")] == ["DspMain"]
    del facade
    assert_engine_gone(retouch)


def test_three_argument_form_brings_the_engine_up(shadow, retouch):
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0)
    assert retouch.counter("instancesLive") == 1
    del facade
    assert_engine_gone(retouch)


def test_given_path_serves_even_without_the_registered_class(shadow, retouch, settings):
    write_classes({RETOUCH_CLASS: ""})
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, RETOUCH_LIBRARY)
    assert retouch.counter("instancesLive") == 1
    del facade
    assert_engine_gone(retouch)


def test_five_argument_form_brings_the_engine_up(shadow, retouch):
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, RETOUCH_LIBRARY, PRODUCT_KEY)
    assert retouch.counter("instancesLive") == 1
    del facade
    assert_engine_gone(retouch)


def test_empty_path_behaves_as_null(shadow, retouch, settings, capfd):
    write_classes({RETOUCH_CLASS: ""})
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, "")
    assert retouch.counter("instancesLive") == 0
    assert retouch.counter("allocatorsLive") == 0
    assert "[MessageBox] Huevane: PyClipGrade: cannot create m_pImageRetouch\n" in capfd.readouterr().err
    del facade
    assert_engine_gone(retouch)


def test_a_path_that_does_not_load_falls_back_to_the_registered_class(shadow, retouch):
    facade = shadow.PyClipGrade(NO_AGENT, 1, 0, "/nowhere/ImageRetouch.so")
    assert retouch.counter("instancesLive") == 1
    del facade
    assert_engine_gone(retouch)


def test_registered_class_from_the_class_table(shadow, retouch, settings):
    relative = os.path.join("Kernel", "ImageRetouch", os.path.basename(RETOUCH_LIBRARY))
    write_classes({RETOUCH_CLASS: relative, ALLOCATOR_CLASS: relative})
    facade = shadow.PyClipGrade()
    assert retouch.counter("instancesLive") == 1
    assert retouch.counter("allocatorsLive") == 1
    del facade
    assert_engine_gone(retouch)


def test_failed_engine_writes_the_box_and_construction_goes_on(shadow, retouch, settings, capfd):
    write_classes({RETOUCH_CLASS: ""}, {"DumpMsg": 1})
    facade = shadow.PyClipGrade()
    err = capfd.readouterr().err
    assert (PREFIX + "ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't create CLSID_ImageRetouch, "
            "hr=0x80040154\n") in err
    assert "[MessageBox] Huevane: PyClipGrade: cannot create m_pImageRetouch\n" in err
    assert "IID_IBufferAllocator" not in err
    assert err.rstrip("\n").endswith(PREFIX + "PyClipGrade::PyClipGrade() end")
    assert retouch.counter("allocatorsLive") == 0
    write_settings({})
    del facade


def test_failed_allocator_logs_two_lines_and_keeps_the_engine(shadow, retouch, settings, capfd):
    write_settings({"DumpMsg": 1})
    retouch.set_result("BufferAllocatorFactory", "CreateInstance", 0x80004005)
    facade = shadow.PyClipGrade()
    err = capfd.readouterr().err
    assert (PREFIX + "PyClipGrade::m_fnInitImageRetouch CoCreateInstance IID_IBufferAllocator "
            "(m_pBufferAllocator) failed hr=0x80004005\n\n"
            + PREFIX + "PyClipGrade::m_fnInitImageRetouch [Err] Can't initialize IID_IBufferAllocator!!!\n") in err
    assert retouch.counter("instancesLive") == 1
    assert retouch.counter("allocatorsLive") == 0
    write_settings({})
    del facade
    assert_engine_gone(retouch)


def test_multi_thread_value_is_logged_as_read(shadow, settings, capfd):
    write_settings({"DumpMsg": 1, "EnableKESPlugInMultiThread": 3})
    facade = shadow.PyClipGrade(NO_AGENT, 0, 0)
    err = capfd.readouterr().err
    assert PREFIX + "PyClipGrade::PyClipGrade EnableKESPlugInMultiThread=3\n" in err
    write_settings({})
    del facade


def test_facades_made_and_dropped_on_several_threads_leave_nothing(shadow, retouch):
    errors = []

    def cycle():
        try:
            for _ in range(5):
                f = shadow.PyClipGrade()
                del f
        except Exception as exc:  # reported below
            errors.append(exc)

    threads = [threading.Thread(target=cycle) for _ in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert errors == []
    assert_engine_gone(retouch)
