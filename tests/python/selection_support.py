"""What the selection tests share: the testing module that makes and reads
image buffers, facades with a buffer allocator, and the reference selection
engine's journal and counters."""

import ctypes
import json
import os
import sys

import pytest

from conftest import BUILD, HOST, SUFFIX

sys.path.insert(0, os.path.join(BUILD, "testing"))
import PcgBufferTesting as buffers  # noqa: E402

SELECT_LIBRARY = os.path.join(HOST, "Kernel", "ImageRetouch", "Zenodor" + SUFFIX)


class SelectJournal:
    """The reference selection engine's record of calls and its counters."""

    def __init__(self):
        self.lib = ctypes.CDLL(SELECT_LIBRARY)
        self.lib.RefSelect_Journal.restype = ctypes.c_int32
        self.lib.RefSelect_Journal.argtypes = [ctypes.c_char_p, ctypes.c_int32]
        self.lib.RefSelect_Reset.restype = None
        self.lib.RefSelect_SetResult.restype = None
        self.lib.RefSelect_SetResult.argtypes = [ctypes.c_char_p, ctypes.c_char_p, ctypes.c_double]
        self.lib.RefSelect_Counter.restype = ctypes.c_int64
        self.lib.RefSelect_Counter.argtypes = [ctypes.c_char_p]

    def entries(self):
        length = self.lib.RefSelect_Journal(None, 0)
        buffer = ctypes.create_string_buffer(length + 1)
        assert self.lib.RefSelect_Journal(buffer, length + 1) == length
        return json.loads(buffer.value.decode("utf-8"))

    def ops(self):
        return [e["op"] for e in self.entries()]

    def counter(self, name):
        return self.lib.RefSelect_Counter(name.encode())

    def reset(self):
        self.lib.RefSelect_Reset()

    def set_result(self, op, value):
        self.lib.RefSelect_SetResult(b"Selection", op.encode(), float(value))


def mask_buffer(width, height, data):
    """A 1-byte buffer holding `data` (bytes, row by row)."""
    handle = buffers.NewBuffer(width, height, 1)
    assert buffers.WriteBytes(handle, bytes(data)) == len(data)
    return handle


def picture_buffer(width, height, data):
    """A 4-byte buffer (blue, green, red, alpha) holding `data`."""
    handle = buffers.NewBuffer(width, height, 4)
    assert buffers.WriteBytes(handle, bytes(data)) == len(data)
    return handle


class Facade:
    """A facade with a buffer allocator: the image engine's, or else the
    testing module's, given back before the facade goes."""

    def __init__(self, shadow):
        self.facade = shadow.PyClipGrade()
        buffers.UseTestingAllocator(self.facade)
        self.handles = []

    def keep(self, handle):
        """Releases the handle's one reference when the test ends."""
        if handle is not None:
            self.handles.append(handle)
        return handle

    def close(self):
        for handle in self.handles:
            buffers.Release(handle)
        buffers.DropTestingAllocator(self.facade)
        self.facade = None


@pytest.fixture
def selection(shadow):
    wrapped = Facade(shadow)
    yield wrapped
    wrapped.close()


@pytest.fixture
def select_journal():
    j = SelectJournal()
    j.reset()
    yield j
    j.reset()
