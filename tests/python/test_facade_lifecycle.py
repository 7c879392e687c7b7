"""How a facade gets its render agents, shares them and lets them go."""

import os
import re
import subprocess
import sys
import tempfile

import pytest

from conftest import E_POINTER, HOST, S_OK

PROTOTYPES = (
    "Wrong number of arguments for overloaded function 'new_PyClipGrade'.\n"
    "  Possible C/C++ prototypes are:\n"
    "    PyClipGrade(IVXHvnDspAgent *,BOOL,BOOL,WCHAR *,WCHAR *)\n"
    "    PyClipGrade(IVXHvnDspAgent *,BOOL,BOOL,WCHAR *)\n"
    "    PyClipGrade(IVXHvnDspAgent *,BOOL,BOOL)\n"
    "    PyClipGrade(IVXHvnDspAgent *,BOOL)\n"
    "    PyClipGrade(IVXHvnDspAgent *)\n"
    "    PyClipGrade()\n"
)
MARKER = "@_PtrWrapper_$="
CLARITY = 12


def releases(journal, agent):
    return [e["refs"] for e in journal.ops("Release", agent)]


def test_default_facade_makes_main_and_buffer_agents(shadow, journal):
    facade = shadow.PyClipGrade()
    assert facade.PushTask(1, CLARITY, {}, False) == S_OK
    assert facade.PushTask(1, CLARITY, {}, True) == S_OK
    assert [e["agent"] for e in journal.ops("PushEffect")] == ["DspMain", "DspBuf"]


def test_agent_text_is_marker_and_pointer(shadow):
    facade = shadow.PyClipGrade()
    text = facade.GetDspAgentPtr()
    assert re.fullmatch(r"@_PtrWrapper_\$=0x[0-9a-f]+", text)
    assert int(text[len(MARKER):], 0) != 0


def test_facade_without_buffer_agent_refuses_buffer_tasks(shadow, journal):
    first = shadow.PyClipGrade()
    facade = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    assert facade.PushTask(1, CLARITY, {}, True) == E_POINTER
    assert facade.PushTask(1, CLARITY, {}, False) == S_OK


def test_second_facade_shares_agent_and_keeps_it_alive(shadow, journal):
    first = shadow.PyClipGrade()
    text = first.GetDspAgentPtr()
    second = shadow.PyClipGrade(text, 0)
    assert second.GetDspAgentPtr() == text
    del first
    assert [e for e in journal.entries() if e["op"] == "Destroyed" and e["agent"] == "DspMain"] == []
    assert second.PushTask(3, CLARITY, {"Clr": [[5, 6]]}, False) == S_OK
    pushes = journal.ops("PushEffect", "DspMain")
    assert [p["args"][0] for p in pushes] == [3]
    del second
    destroyed = [e for e in journal.entries() if e["op"] == "Destroyed" and e["agent"] == "DspMain"]
    assert len(destroyed) == 1


def test_shared_facade_takes_exactly_one_reference(shadow, journal):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    addrefs = journal.ops("AddRef", "DspMain")
    assert [e["refs"] for e in addrefs] == [2]
    del second
    assert releases(journal, "DspMain") == [1]
    del first


def test_second_facade_with_buffer_agent_makes_its_own_dspbuf(shadow, journal):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 1)
    assert second.PushTask(2, CLARITY, {}, True) == S_OK
    assert second.PushTask(2, CLARITY, {}, False) == S_OK
    pushes = journal.ops("PushEffect")
    assert [p["agent"] for p in pushes] == ["DspBuf", "DspMain"]
    # Each facade made its own "DspBuf"; the push went to the second one's.
    made = [e["instance"] for e in journal.ops("SetImageRetouchMgr", "DspBuf")]
    assert len(made) == 2
    assert pushes[0]["instance"] == made[1]


@pytest.mark.parametrize("text", ["abc", MARKER, "@_PtrWrapper_#=0x1", 5, None])
def test_text_that_is_not_an_agent_matches_no_overload(shadow, text):
    with pytest.raises(NotImplementedError) as caught:
        shadow.PyClipGrade(text)
    assert str(caught.value) == PROTOTYPES


def test_marker_and_one_more_character_passes_the_dispatcher(shadow):
    # "0" is a null agent: the facade builds its own engine.
    facade = shadow.PyClipGrade(MARKER + "0")
    assert facade.PushTask(1, CLARITY, {}, False) == S_OK


def test_too_many_arguments_list_the_prototypes(shadow):
    with pytest.raises(NotImplementedError) as caught:
        shadow.PyClipGrade(None, 1, 1, None, None, None)
    assert str(caught.value) == PROTOTYPES


@pytest.mark.parametrize("bad", [b"narrow", None])
def test_wide_argument_must_be_unicode(shadow, bad):
    first = shadow.PyClipGrade()
    with pytest.raises(TypeError) as caught:
        shadow.PyClipGrade(first.GetDspAgentPtr(), 0, 0, bad)
    assert str(caught.value) == "Unicode string expected"


def test_wide_arguments_accept_unicode(shadow):
    first = shadow.PyClipGrade()
    facade = shadow.PyClipGrade(first.GetDspAgentPtr(), 0, 0, u"C:\\ImageRetouch.dll", u"SoftWare\\Other")
    assert facade.PushTask(1, CLARITY, {}, False) == S_OK


def test_agent_text_of_no_live_facade_is_refused(shadow):
    first = shadow.PyClipGrade()
    text = first.GetDspAgentPtr()
    del first
    with pytest.raises(ValueError):
        shadow.PyClipGrade(text, 0)


def test_missing_agent_library_leaves_facade_without_agents(shadow, journal, monkeypatch):
    empty_host = tempfile.mkdtemp(prefix="pyclipgrade-empty-host-")
    monkeypatch.setenv("PYCLIPGRADE_HOST_DIR", empty_host)
    facade = shadow.PyClipGrade()
    assert facade.GetDspAgentPtr() == MARKER + "0x0"
    assert facade.PushTask(1, CLARITY, {}, False) == E_POINTER
    assert facade.PushTask(1, CLARITY, {}, True) == E_POINTER
    del facade
    assert journal.entries() == []


def test_shared_agent_outlives_the_facade_that_loaded_its_library():
    # A fresh interpreter, so that nothing else keeps the agent's library
    # loaded: the facade that loaded it goes first, the sharing one after.
    script = (
        "import PyClipGrade\n"
        "first = PyClipGrade.PyClipGrade()\n"
        "second = PyClipGrade.PyClipGrade(first.GetDspAgentPtr(), 0)\n"
        "del first\n"
        "assert second.PushTask(1, 12, {'Clr': [[0, 1]]}, False) == 0\n"
        "assert second.AddVideo(1, 0, 10, 1.0) == 0\n"
        "del second\n"
        "print('done')\n"
    )
    env = dict(os.environ, PYTHONPATH=HOST)
    done = subprocess.run([sys.executable, "-c", script], env=env, capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stdout) == (0, "done\n")
