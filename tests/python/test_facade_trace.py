"""The facade's trace lines, as they reach standard error with the trace on."""

import threading

from conftest import HOST, S_OK

PREFIX = "[PyClipGrade] "


def send_lines(count):
    """What each blocking send to the image retouch manager writes, from this thread."""
    me = threading.get_native_id()
    return [PREFIX + "ImageRetouchMgr::m_fnSendTask Send Task From Thread %d" % me,
            PREFIX + "ImageRetouchMgr::m_fnSendTask Task Complete For Thread %d" % me] * count


STARTUP = [
    PREFIX + "PyClipGrade::PyClipGrade EnableKESPlugInMultiThread=-1",
    PREFIX + "ImageRetouchMgr::ImageRetouchMgr() enter",
    PREFIX + "ImageRetouchMgr::ImageRetouchMgr() end",
]
MANAGER_GOES = [
    PREFIX + "ImageRetouchMgr::~ImageRetouchMgr() enter",
    PREFIX + "ImageRetouchMgr::~ImageRetouchMgr() end",
]


def lines(text):
    return [l for l in text.split("\n") if l]


def test_construction_and_teardown_lines(trace_on, shadow, capfd):
    facade = shadow.PyClipGrade()
    del facade
    out = lines(capfd.readouterr().err)
    created = send_lines(1)
    created.insert(1, PREFIX + "ImageRetouchMgr::m_fnCreateImageRetouchInst Initial VXImageRetouch success!")
    assert out == [PREFIX + "PyClipGrade::PyClipGrade() enter"] + STARTUP + [
        PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial ImageRetouch"] + created + [
        PREFIX + "PyClipGrade::PyClipGrade path of DspAgent=%s/KESdlls/VXHvnDspAgent.dll, "
                 "libiomp5md=%s/Kernel/ImageRetouch/libiomp5md.dll" % (HOST, HOST),
        PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspMain",
        PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspBuf",
        PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspCallbackThread",
        PREFIX + "PyClipGrade::PyClipGrade() end",
        PREFIX + "PyClipGrade::~PyClipGrade() enter",
        PREFIX + "PyClipGrade::~PyClipGrade Try to terminate CB thread",
        PREFIX + "PyClipGrade::~PyClipGrade Finish terminate CB thread",
    ] + send_lines(2) + MANAGER_GOES + [
        PREFIX + "PyClipGrade::~PyClipGrade() end",
    ]


def test_passed_agent_is_logged_and_no_library_loaded(trace_on, shadow, capfd):
    first = shadow.PyClipGrade()
    capfd.readouterr()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    out = lines(capfd.readouterr().err)
    assert out[0] == PREFIX + "PyClipGrade::PyClipGrade() enter"
    assert out[1].startswith(PREFIX + "[PyClipGrade constructor] Get VXHvnDspAgent addr=0x")
    assert out[2:] == STARTUP + [PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspCallbackThread",
                                 PREFIX + "PyClipGrade::PyClipGrade() end"]


def test_push_task_lines(trace_on, shadow, capfd):
    facade = shadow.PyClipGrade()
    capfd.readouterr()
    assert facade.PushTask(7, 12, {"Clr": [[0, 1]], "EffVer": 48}, False) == S_OK
    err = capfd.readouterr().err
    assert err == (
        PREFIX + "PyClipGrade::PushTask() enter\n\n"
        + PREFIX + "PyClipGrade::PushTask, Info. videoID=7, taskID=12\n"
        + PREFIX + "PyClipGrade::m_fnSetEffectVerToEffect, lEffectID = 12, effectVer = 3\n"
        + PREFIX + "PyClipGrade::PushTask() end\n\n"
    )


def test_push_task_failure_lines(trace_on, shadow, capfd):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    capfd.readouterr()
    second.PushTask(1, 12, {}, True)
    first.PushTask(1, 165, {}, False)
    first.PushTask(1, 8, {}, False)
    err = capfd.readouterr().err
    assert err == (
        PREFIX + "PyClipGrade::PushTask() enter\n\n"
        + PREFIX + "PyClipGrade::PushTask, Info. videoID=1, taskID=12\n"
        + PREFIX + "PyClipGrade::PushTask Null Pointer : agent\n\n"
        + PREFIX + "PyClipGrade::PushTask() enter\n\n"
        + PREFIX + "PyClipGrade::PushTask, Info. videoID=1, taskID=165\n"
        + PREFIX + "PyClipGrade::PushTask, Error. Can't find the mapping of taskID(165)\n"
        + PREFIX + "PyClipGrade::PushTask() enter\n\n"
        + PREFIX + "PyClipGrade::PushTask, Info. videoID=1, taskID=8\n"
    )


def test_trace_off_writes_nothing(shadow, capfd):
    facade = shadow.PyClipGrade()
    facade.PushTask(1, 12, {}, False)
    del facade
    assert capfd.readouterr().err == ""
