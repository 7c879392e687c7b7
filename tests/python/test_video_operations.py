"""Clips, task clearing and switches: which agent each operation reaches, in
which order, and what it answers."""

import pytest

from conftest import E_FAIL, E_INVALIDARG, E_POINTER, S_OK

PREFIX = "[PyClipGrade] "


@pytest.fixture
def both(shadow):
    """A facade with the main and the buffer agent."""
    return shadow.PyClipGrade()


@pytest.fixture
def main_only(shadow):
    """A facade with only the main agent, shared from another facade."""
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    second._owner = first
    return second


@pytest.fixture
def no_agent(shadow, monkeypatch, tmp_path):
    """A facade whose agent library could not be found."""
    monkeypatch.setenv("PYCLIPGRADE_HOST_DIR", str(tmp_path))
    return shadow.PyClipGrade()


def calls(journal, op):
    return [(e["agent"], e["args"]) for e in journal.ops(op)]


def with_clip(facade, journal):
    """Registers clip 5 on the facade's agents, then forgets those calls."""
    assert facade.AddVideo(5, 0, 0, 1.0) == S_OK
    journal.reset()
    return facade


MIRRORED = [
    ("AddVideo", (5, 100, -200, 1.5), [5, 100, -200, 1.5]),
    ("UpdateVideo", (5, (1 << 63) - 1, -(1 << 63), 0.25), [5, (1 << 63) - 1, -(1 << 63), 0.25]),
    ("RemoveVideo", (5,), [5]),
    ("RemoveAllVideo", (), []),
]


@pytest.mark.parametrize("op, args, journaled", MIRRORED)
def test_mirrored_reaches_buffer_agent_first(both, journal, op, args, journaled):
    with_clip(both, journal)
    assert getattr(both, op)(*args) == S_OK
    assert calls(journal, op) == [("DspBuf", journaled), ("DspMain", journaled)]


@pytest.mark.parametrize("op, args, journaled", MIRRORED)
def test_mirrored_with_main_agent_only(main_only, journal, op, args, journaled):
    with_clip(main_only, journal)
    assert getattr(main_only, op)(*args) == S_OK
    assert calls(journal, op) == [("DspMain", journaled)]


@pytest.mark.parametrize("op, args, journaled", MIRRORED)
def test_mirrored_result_is_the_main_agents(both, journal, op, args, journaled):
    with_clip(both, journal)
    journal.set_result("DspBuf", op, E_FAIL)
    assert getattr(both, op)(*args) == S_OK
    with_clip(both, journal)
    journal.set_result("DspMain", op, E_FAIL)
    assert getattr(both, op)(*args) == E_FAIL
    assert len(calls(journal, op)) == 2


@pytest.mark.parametrize("op, args, journaled", MIRRORED)
def test_mirrored_without_main_agent(trace_on, no_agent, capfd, op, args, journaled):
    assert getattr(no_agent, op)(*args) == E_POINTER
    assert capfd.readouterr().err == PREFIX + "PyClipGrade::%s Null Pointer : m_dspAgent\n\n" % op


def test_mirrored_main_agent_result_goes_through_as_it_is(both, journal):
    journal.set_result("DspMain", "AddVideo", 1)
    assert both.AddVideo(1, 0, 0, 0.0) == 1
    journal.set_result("DspMain", "AddVideo", -5)
    assert both.AddVideo(1, 0, 0, 0.0) == -5


def test_unknown_clip_answer_of_the_agent_reaches_the_script(both, journal):
    assert both.RemoveVideo(77) == E_INVALIDARG
    assert both.UpdateVideo(77, 0, 0, 1.0) == E_INVALIDARG


def test_set_db_mgr_with_null_arguments_tells_no_agent(trace_on, both, journal, capfd):
    assert both.SetDBMgr(None, None) is False
    assert calls(journal, "SetDBMgr") == []
    assert capfd.readouterr().err == PREFIX + "PyClipGrade::SetDBMgr, Error. threadMgr or pIVXTinyDB is NULL\n"


def test_set_db_mgr_without_agent(trace_on, no_agent, capfd):
    assert no_agent.SetDBMgr(None, None) is False
    assert capfd.readouterr().err == PREFIX + "PyClipGrade::SetDBMgr, Error. m_dspAgent is NULL\n"


@pytest.mark.parametrize("flag, agent", [(False, "DspMain"), (True, "DspBuf"), (0, "DspMain"), (3, "DspBuf")])
def test_clear_task_clears_tasks_then_masks_on_the_chosen_agent(both, journal, flag, agent):
    assert both.ClearTask(9, flag) == S_OK
    entries = [(e["agent"], e["op"], e["args"]) for e in journal.entries() if e["op"] in ("ClearTask", "ClearMaskInfo")]
    assert entries == [(agent, "ClearTask", [9]), (agent, "ClearMaskInfo", [9])]


def test_clear_task_ignores_agent_results(both, journal):
    journal.set_result("*", "ClearTask", E_FAIL)
    journal.set_result("*", "ClearMaskInfo", E_FAIL)
    assert both.ClearTask(1, False) == S_OK


def test_clear_task_on_missing_buffer_agent(trace_on, main_only, journal, capfd):
    assert main_only.ClearTask(1, True) == E_POINTER
    assert calls(journal, "ClearTask") == []
    assert capfd.readouterr().err == PREFIX + "PyClipGrade::ClearTask Null Pointer : agent\n\n"


def test_clear_task_needs_its_bool(both):
    with pytest.raises(TypeError):
        both.ClearTask(1)


def test_clear_task_drops_the_clips_records(both, journal):
    both.PushTask(3, 12, {"Clr": [[0, 1]]}, False)
    assert both.ClearTask(3, False) == S_OK
    assert [e["op"] for e in journal.entries() if e["op"] in ("PushEffect", "ClearTask")] == ["PushEffect", "ClearTask"]


@pytest.mark.parametrize("op", ["DumpTask", "LockEffectDataWriter", "UnlockEffectDataWriter"])
def test_selected_switches(both, journal, op):
    getattr(both, op)()
    getattr(both, op)(False)
    getattr(both, op)(True)
    assert calls(journal, op) == [("DspMain", []), ("DspMain", []), ("DspBuf", [])]


@pytest.mark.parametrize("op", ["DumpTask", "LockEffectDataWriter", "UnlockEffectDataWriter"])
def test_selected_switches_without_agent_do_nothing(main_only, no_agent, journal, op):
    assert getattr(main_only, op)(True) is None
    assert getattr(no_agent, op)() is None
    assert calls(journal, op) == []


@pytest.mark.parametrize("op", ["DumpTask", "LockEffectDataWriter", "UnlockEffectDataWriter"])
def test_selected_switch_with_too_many_arguments(both, op):
    with pytest.raises(NotImplementedError) as caught:
        getattr(both, op)(True, True)
    assert str(caught.value) == (
        "Wrong number of arguments for overloaded function 'PyClipGrade_%s'.\n"
        "  Possible C/C++ prototypes are:\n"
        "    %s(bool)\n"
        "    %s()\n" % (op, op, op))


def test_set_frame_rate(both, journal):
    assert both.SetFrameRate(29.97) is True
    assert calls(journal, "SetFrameRate") == [("DspMain", [29.97])]
    journal.set_result("DspMain", "SetFrameRate", E_FAIL)
    assert both.SetFrameRate(25) is False
    journal.set_result("DspMain", "SetFrameRate", 1)
    assert both.SetFrameRate(25) is True


def test_set_frame_rate_without_agent(no_agent):
    assert no_agent.SetFrameRate(25.0) is False


def test_dsp_video_id_forwards_to_main_agent(both, journal):
    both.SetDspVideoID(4000000000)
    assert both.GetDspVideoID() == 4000000000
    assert calls(journal, "SetDspVideoID") == [("DspMain", [4000000000])]


def test_dsp_video_id_without_agent(no_agent):
    no_agent.SetDspVideoID(5)
    assert no_agent.GetDspVideoID() == 0


def test_over_under_exposure_switch(trace_on, both, journal, capfd):
    both.SetOverUnderExposureImage(True)
    both.SetOverUnderExposureImage(0)
    assert calls(journal, "SetOverUnderExposureImage") == [("DspMain", [True]), ("DspMain", [False])]
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::SetOverUnderExposureImage() enter\n\n"
        + PREFIX + "PyClipGrade::SetOverUnderExposureImage() end\n\n") * 2


def test_over_under_exposure_switch_without_agent(trace_on, no_agent, capfd):
    no_agent.SetOverUnderExposureImage(True)
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::SetOverUnderExposureImage() enter\n\n"
        + PREFIX + "PyClipGrade::SetOverUnderExposureImage() end\n\n")


def test_clip_arguments_of_wrong_type_raise(both):
    with pytest.raises(TypeError) as caught:
        both.AddVideo(1, "0", 0, 1.0)
    assert str(caught.value) == "in method 'PyClipGrade_AddVideo', argument 3 of type 'LONGLONG'"
    with pytest.raises(OverflowError) as caught:
        both.RemoveVideo(-1)
    assert str(caught.value) == "in method 'PyClipGrade_RemoveVideo', argument 2 of type 'UINT'"
