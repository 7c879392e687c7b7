"""The order of a facade's construction and teardown, read from the trace and
from the journals of the render agent, the image engine and the selection
engine, for every constructor form, with every engine library present and
with each one missing in turn."""

import gc
import os
import shutil
import tempfile

import pytest

from conftest import AGENT_LIBRARY, HOST, PRODUCT_KEY, RETOUCH_LIBRARY, SUFFIX, S_OK, Journal, RetouchJournal
import selection_support

PREFIX = "[PyClipGrade] "
NO_AGENT = "@_PtrWrapper_$=0x0"

LIBRARIES = {
    "agent": "KESdlls/VXHvnDspAgent",
    "runtime": "Kernel/ImageRetouch/libiomp5md",
    "retouch": "Kernel/ImageRetouch/ImageRetouch",
    "selection": "Kernel/ImageRetouch/Zenodor",
    "resampler": "Kernel/Photo/IPPDLL",
}

# (name, arguments with "agent" for the first facade's text and "path" for
# the image engine's library in the host folder of the test).
FORMS = [
    ("none", ()),
    ("null-agent", (NO_AGENT,)),
    ("agent", ("agent",)),
    ("agent-0", ("agent", 0)),
    ("agent-1", ("agent", 1)),
    ("null-agent-0", (NO_AGENT, 0)),
    ("agent-1-0", ("agent", 1, 0)),
    ("agent-0-1", ("agent", 0, 1)),
    ("null-agent-0-0", (NO_AGENT, 0, 0)),
    ("agent-1-1-path", ("agent", 1, 1, "path")),
    ("null-agent-1-0-path", (NO_AGENT, 1, 0, "path")),
    ("agent-1-1-path-key", ("agent", 1, 1, "path", PRODUCT_KEY)),
    ("null-agent-0-1-path-key", (NO_AGENT, 0, 1, "path", PRODUCT_KEY)),
]
MISSING = [None, "agent", "runtime", "retouch", "selection", "resampler"]


@pytest.fixture
def host(monkeypatch):
    """Makes a host folder holding links to the engine libraries but one."""
    folders = []

    def make(missing):
        folder = tempfile.mkdtemp(prefix="pyclipgrade-order-host-")
        folders.append(folder)
        for name, relative in LIBRARIES.items():
            if name == missing:
                continue
            target = os.path.join(folder, relative + SUFFIX)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            # A link to the same file: the process maps it once, so the
            # journals read here are the ones the facade's engines write.
            os.symlink(os.path.join(HOST, relative + SUFFIX), target)
        monkeypatch.setenv("PYCLIPGRADE_HOST_DIR", folder)
        return folder

    yield make
    for folder in folders:
        shutil.rmtree(folder, ignore_errors=True)


def trace(text):
    # The manager's hand-offs are numbered by thread and counted elsewhere.
    return [l for l in text.split("\n") if l and "m_fnSendTask" not in l]


def expected_trace(agent_address, create_buffer, start_thread, missing, folder):
    passed = agent_address is not None
    lines = [PREFIX + "PyClipGrade::PyClipGrade() enter"]
    if passed:
        lines.append(PREFIX + "[PyClipGrade constructor] Get VXHvnDspAgent addr=0x%X" % (agent_address & 0xFFFFFFFF))
    lines += [PREFIX + "PyClipGrade::PyClipGrade EnableKESPlugInMultiThread=-1",
              PREFIX + "ImageRetouchMgr::ImageRetouchMgr() enter",
              PREFIX + "ImageRetouchMgr::ImageRetouchMgr() end"]
    engine = create_buffer and missing != "retouch"
    if create_buffer:
        lines.append(PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial ImageRetouch")
        if engine:
            lines.append(PREFIX + "ImageRetouchMgr::m_fnCreateImageRetouchInst Initial VXImageRetouch success!")
        else:
            lines += [PREFIX + "ImageRetouchMgr::m_fnCreateImageRetouchInst [Err] Can't create CLSID_ImageRetouch, "
                               "hr=0x8007007E",
                      "[MessageBox] Huevane: PyClipGrade: cannot create m_pImageRetouch"]
    if not passed or create_buffer:
        lines.append(PREFIX + "PyClipGrade::PyClipGrade path of DspAgent=%s/KESdlls/VXHvnDspAgent.dll, "
                              "libiomp5md=%s/Kernel/ImageRetouch/libiomp5md.dll" % (folder, folder))
        if missing != "agent":
            if not passed:
                lines.append(PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspMain")
            if create_buffer:
                lines.append(PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspBuf")
    if missing == "selection":
        lines += [PREFIX + "ZenodorLoader::m_fnLoadZenodor Null Pointer : m_hZenodorLibrary",
                  PREFIX + "ZenodorLoader::LoadZenodor m_fnLoadZenodor() , failed hr=0x80004003"]
    if start_thread:
        lines.append(PREFIX + "PyClipGrade::PyClipGrade PyClipGrade Initial DspCallbackThread")
    lines.append(PREFIX + "PyClipGrade::PyClipGrade() end")
    built = len(lines)
    lines.append(PREFIX + "PyClipGrade::~PyClipGrade() enter")
    if start_thread:
        lines += [PREFIX + "PyClipGrade::~PyClipGrade Try to terminate CB thread",
                  PREFIX + "PyClipGrade::~PyClipGrade Finish terminate CB thread"]
    if not engine:
        lines.append(PREFIX + "ReleaseImageRetouchInstTask::m_fnTaskExecute Null Pointer : m_pRetouch")
    lines += [PREFIX + "ImageRetouchMgr::~ImageRetouchMgr() enter",
              PREFIX + "ImageRetouchMgr::~ImageRetouchMgr() end",
              PREFIX + "PyClipGrade::~PyClipGrade() end"]
    return lines[:built], lines[built:]


def expected_agent_journal(passed, create_buffer, start_thread, missing):
    """(agent, op, args) of the facade's calls, made before its teardown
    and during it."""
    made = []
    gone = []
    own_main = not passed and missing != "agent"
    has_main = passed or own_main
    has_buffer = create_buffer and missing != "agent"
    if passed:
        made.append(("DspMain", "AddRef", []))
    if own_main:
        made.append(("DspMain", "SetImageRetouchMgr", [True]))
    if has_buffer:
        made.append(("DspBuf", "SetImageRetouchMgr", [True]))
    if start_thread and has_main:
        made.append(("DspMain", "SetCallbackQueue", [True]))
    if has_main:
        gone += [("DspMain", "SetCallbackQueue", [None]), ("DspMain", "Release", [])]
        if own_main:
            gone.append(("DspMain", "Destroyed", None))
    if has_buffer:
        gone += [("DspBuf", "Release", []), ("DspBuf", "Destroyed", None)]
    return made, gone


def expected_engine_journal(create_buffer, missing):
    if not create_buffer or missing == "retouch":
        return [], []
    made = [("ImageRetouch", "AddRef"), ("ImageRetouch", "Release"), ("ImageRetouch", "SetProperty"),
            ("BufferAllocator", "AddRef"), ("BufferAllocator", "Release")]
    # The allocator goes first, then the engine on the manager's worker.
    gone = [("BufferAllocator", "Release"), ("BufferAllocator", "Destroyed"),
            ("ImageRetouch", "Release"), ("ImageRetouch", "Destroyed")]
    return made, gone


@pytest.mark.parametrize("missing", MISSING, ids=lambda m: "without-" + m if m else "all-present")
@pytest.mark.parametrize("form,arguments", FORMS, ids=[f[0] for f in FORMS])
def test_construction_and_teardown_order(trace_on, shadow, host, capfd, form, arguments, missing):
    folder = host(missing)
    first = None
    if "agent" in arguments:
        # The agent to share comes from a facade of the full host.
        os.environ["PYCLIPGRADE_HOST_DIR"] = HOST
        first = shadow.PyClipGrade(NO_AGENT, 0, 0)
        os.environ["PYCLIPGRADE_HOST_DIR"] = folder
    gc.collect()
    agents, engine, selection = Journal(AGENT_LIBRARY), RetouchJournal(RETOUCH_LIBRARY), \
        selection_support.SelectJournal()
    for journal in (agents, engine, selection):
        journal.reset()
    capfd.readouterr()

    text = first.GetDspAgentPtr() if first is not None else None
    args = tuple(text if a == "agent" else
                 folder + "/" + LIBRARIES["retouch"] + SUFFIX if a == "path" else a for a in arguments)
    full = args + (NO_AGENT, 1, 1, None, None)[len(args):]
    passed = full[0] != NO_AGENT
    create_buffer, start_thread = bool(full[1]), bool(full[2])

    facade = shadow.PyClipGrade(*args)
    built_agents = [(e.get("agent"), e["op"], e.get("args")) for e in agents.entries()]
    built_engine = [(e["object"], e["op"]) for e in engine.entries()]
    # The selection engine is loaded in construction and asked for its object
    # when a selection begins.
    picture = selection_support.picture_buffer(4, 4, bytes(64))
    began = facade.Selection_Initialize(picture, [])
    selection_support.buffers.Release(picture)
    built_trace = trace(capfd.readouterr().err)
    agents.reset()
    engine.reset()
    del facade
    gone_trace = trace(capfd.readouterr().err)

    address = int(text[len("@_PtrWrapper_$="):], 0) if passed else None
    want_built, want_gone = expected_trace(address, create_buffer, start_thread, missing, folder)
    assert built_trace[:len(want_built)] == want_built
    assert gone_trace == want_gone

    made, gone = expected_agent_journal(passed, create_buffer, start_thread, missing)
    assert built_agents == made
    assert [(e.get("agent"), e["op"], e.get("args")) for e in agents.entries()] == gone
    made, gone = expected_engine_journal(create_buffer, missing)
    assert built_engine == made
    assert [(e["object"], e["op"]) for e in engine.entries()] == gone

    ops = [e["op"] for e in selection.entries()]
    # The run's own part begins without the smart selection too.
    assert began == S_OK
    if missing == "selection":
        assert ops == []
    else:
        # The open selection goes back before the loader lets its library go.
        assert ops == ["Create", "Initialize", "Uninitialize", "Release"]
    del first
