"""Shared set-up of the Python tests: the built module from the host folder,
a settings file of the tests' own, and the reference agent's journal."""

import ctypes
import gc
import json
import os
import sys
import tempfile

import pytest

REPO = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.environ.get("PYCLIPGRADE_BUILD", os.path.join(REPO, "build"))
HOST = os.path.join(BUILD, "host")
SUFFIX = ".dll" if sys.platform == "win32" else ".so"
AGENT_LIBRARY = os.path.join(HOST, "KESdlls", "VXHvnDspAgent" + SUFFIX)
RETOUCH_LIBRARY = os.path.join(HOST, "Kernel", "ImageRetouch", "ImageRetouch" + SUFFIX)
PRODUCT_KEY = "SoftWare\\Verimont\\Huevane5"

# The settings file is read afresh at every open, so tests may rewrite it at
# any time. It must be in place before the first facade is made.
_settings_dir = tempfile.mkdtemp(prefix="pyclipgrade-settings-")
SETTINGS_FILE = os.path.join(_settings_dir, "registry.ini")
os.environ["PYCLIPGRADE_REGISTRY"] = SETTINGS_FILE
os.environ.pop("PYCLIPGRADE_HOST_DIR", None)

sys.path.insert(0, HOST)


def write_settings(values, key=PRODUCT_KEY):
    """Writes one section of the settings file: {name: number}."""
    with open(SETTINGS_FILE, "w") as f:
        f.write("[%s]\n" % key)
        for name, value in values.items():
            f.write("%s=%d\n" % (name, value))


write_settings({})


class Journal:
    """The reference agent's record of every call it received."""

    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        self.lib.RefAgent_Journal.restype = ctypes.c_int32
        self.lib.RefAgent_Journal.argtypes = [ctypes.c_char_p, ctypes.c_int32]
        self.lib.RefAgent_Reset.restype = None
        self.lib.RefAgent_Reset.argtypes = []
        self.lib.RefAgent_SetResult.restype = None
        self.lib.RefAgent_SetResult.argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_double]
        self.lib.RefAgent_Counter.restype = ctypes.c_int64
        self.lib.RefAgent_Counter.argtypes = [ctypes.c_char_p]

    def entries(self):
        length = self.lib.RefAgent_Journal(None, 0)
        buffer = ctypes.create_string_buffer(length + 1)
        written = self.lib.RefAgent_Journal(buffer, length + 1)
        assert written == length
        return json.loads(buffer.value.decode("utf-8"))

    def ops(self, op, agent=None):
        return [e for e in self.entries()
                if e["op"] == op and (agent is None or e.get("agent") == agent)]

    def counter(self, name):
        """An ownership counter of the agent library: "agentsLive",
        "recordsHeld", "recordsFreed", "entriesFreed", ..."""
        return self.lib.RefAgent_Counter(name.encode())

    def reset(self):
        self.lib.RefAgent_Reset()

    def set_result(self, agent, op, value):
        self.lib.RefAgent_SetResult(agent.encode(), op.encode(), float(value))


class RetouchJournal:
    """The reference image engine's journal, injected results and counters."""

    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        self.lib.RefRetouch_Journal.restype = ctypes.c_int32
        self.lib.RefRetouch_Journal.argtypes = [ctypes.c_char_p, ctypes.c_int32]
        self.lib.RefRetouch_Reset.restype = None
        self.lib.RefRetouch_Reset.argtypes = []
        self.lib.RefRetouch_SetResult.restype = None
        self.lib.RefRetouch_SetResult.argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_double]
        self.lib.RefRetouch_Counter.restype = ctypes.c_int64
        self.lib.RefRetouch_Counter.argtypes = [ctypes.c_char_p]

    def entries(self):
        length = self.lib.RefRetouch_Journal(None, 0)
        buffer = ctypes.create_string_buffer(length + 1)
        assert self.lib.RefRetouch_Journal(buffer, length + 1) == length
        return json.loads(buffer.value.decode("utf-8"))

    def ops(self, op, obj=None):
        return [e for e in self.entries() if e["op"] == op and (obj is None or e["object"] == obj)]

    def counter(self, name):
        """"instancesLive", "buffersLive", "imagesHeld", "recordsHeld", ..."""
        return self.lib.RefRetouch_Counter(name.encode())

    def reset(self):
        self.lib.RefRetouch_Reset()

    def set_result(self, obj, op, value):
        self.lib.RefRetouch_SetResult(obj.encode(), op.encode(), float(value))


@pytest.fixture
def retouch():
    gc.collect()
    r = RetouchJournal(RETOUCH_LIBRARY)
    r.reset()
    yield r
    r.reset()


@pytest.fixture(scope="session")
def module():
    import _PyClipGrade
    return _PyClipGrade


@pytest.fixture(scope="session")
def shadow():
    import PyClipGrade
    return PyClipGrade


@pytest.fixture
def journal():
    # Facades left in reference cycles by earlier tests (tracebacks kept by
    # pytest.raises) would otherwise be collected, and write to the journal,
    # in the middle of this test.
    gc.collect()
    j = Journal(AGENT_LIBRARY)
    j.reset()
    yield j
    j.reset()


@pytest.fixture
def trace_on(shadow):
    """Switches the trace on for facades made in the test; lines go to
    standard error."""
    write_settings({"DumpMsg": 1})
    yield
    write_settings({})
    # The switches change only when a facade is made: make one that loads no
    # engine, so that facades going later are silent again.
    host = os.environ.get("PYCLIPGRADE_HOST_DIR")
    os.environ["PYCLIPGRADE_HOST_DIR"] = _settings_dir
    try:
        shadow.PyClipGrade()
    finally:
        if host is None:
            del os.environ["PYCLIPGRADE_HOST_DIR"]
        else:
            os.environ["PYCLIPGRADE_HOST_DIR"] = host


def hresult(code):
    """An HRESULT as the signed 32-bit integer scripts receive."""
    return code - (1 << 32) if code & 0x80000000 else code


S_OK = 0
E_POINTER = hresult(0x80004003)
E_FAIL = hresult(0x80004005)
E_INVALIDARG = hresult(0x80070057)
