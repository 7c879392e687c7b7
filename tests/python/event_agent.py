"""The reference agent's event and track entries, and frames read through
their own table of operations, for the tests of engine events."""

import ctypes
import time

from conftest import AGENT_LIBRARY

# Commands of the event ring.
TRACKING_STATE = 1
TRACKING_MEET_KEYFRAME = 2
TRACKING_MISS_TIME = 3
CACHE_FRAME_UPDATED = 4
CACHE_PURE_FRAME_UPDATED = 5
CACHE_FRAME_PLAYING_UPDATED = 6
STOP = 7


class EventAgent:
    def __init__(self, path=AGENT_LIBRARY):
        lib = ctypes.CDLL(path)
        lib.RefAgent_PostEvent.restype = ctypes.c_int32
        lib.RefAgent_PostEvent.argtypes = [ctypes.c_int32, ctypes.c_int32, ctypes.c_int32, ctypes.c_int64,
                                           ctypes.c_int32, ctypes.c_int32]
        lib.RefAgent_WaitPosted.restype = ctypes.c_int32
        lib.RefAgent_WaitPosted.argtypes = [ctypes.c_int32, ctypes.c_int32]
        lib.RefAgent_SeedTrack.restype = ctypes.c_int32
        lib.RefAgent_SeedTrack.argtypes = [ctypes.c_int32, ctypes.c_int32, ctypes.c_int32, ctypes.c_int32,
                                           ctypes.c_int64, ctypes.c_float, ctypes.c_float,
                                           ctypes.POINTER(ctypes.c_float), ctypes.c_int32]
        lib.RefAgent_Counter.restype = ctypes.c_int64
        lib.RefAgent_Counter.argtypes = [ctypes.c_char_p]
        self.lib = lib

    def post(self, command, value=0, ll_value=0, width=0, height=0, instance=0):
        return self.lib.RefAgent_PostEvent(instance, command, value, ll_value, width, height)

    def wait_posted(self, instance=0, timeout_ms=10000):
        return self.lib.RefAgent_WaitPosted(instance, timeout_ms)

    def seed(self, where, tracking_id, video_id, mask_id, t, x, y, points=(), count=None):
        flat = [v for p in points for v in p]
        array = (ctypes.c_float * max(1, len(flat)))(*flat)
        n = len(points) if count is None else count
        return self.lib.RefAgent_SeedTrack(where, tracking_id, video_id, mask_id, t, x, y, array, n)

    def counter(self, name):
        return self.lib.RefAgent_Counter(name.encode())


def wait_for(predicate, timeout=10.0):
    """Polls until predicate() is true; the interpreter lock is free meanwhile."""
    end = time.monotonic() + timeout
    while time.monotonic() < end:
        if predicate():
            return True
        time.sleep(0.002)
    return predicate()


_FN_INT = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p)
_FN_LOCK = ctypes.CFUNCTYPE(ctypes.c_bool, ctypes.c_void_p, ctypes.POINTER(ctypes.POINTER(ctypes.c_uint8)),
                            ctypes.POINTER(ctypes.c_int), ctypes.POINTER(ctypes.c_int))
_FN_BOOL = ctypes.CFUNCTYPE(ctypes.c_bool, ctypes.c_void_p)


class Frame:
    """An IImageBuffer handle read through its table: AddRef, Release,
    LockBuffer, UnlockBuffer, GetWidth, GetHeight, GetPixelBytes."""

    def __init__(self, handle):
        self.address = int(handle)
        table = ctypes.cast(ctypes.c_void_p(self.address), ctypes.POINTER(ctypes.POINTER(ctypes.c_void_p)))[0]
        self._table = [table[i] for i in range(7)]

    def _int(self, slot):
        return _FN_INT(self._table[slot])(self.address)

    def add_ref(self):
        return self._int(0)

    def release(self):
        return self._int(1)

    def references(self):
        """The count as it stands, by one AddRef and one Release."""
        count = self.add_ref()
        self.release()
        return count - 1

    def width(self):
        return self._int(4)

    def height(self):
        return self._int(5)

    def pixel_bytes(self):
        return self._int(6)

    def pixels(self):
        data = ctypes.POINTER(ctypes.c_uint8)()
        width = ctypes.c_int()
        height = ctypes.c_int()
        assert _FN_LOCK(self._table[2])(self.address, ctypes.byref(data), ctypes.byref(width), ctypes.byref(height))
        try:
            return bytes(data[: width.value * height.value * 4])
        finally:
            _FN_BOOL(self._table[3])(self.address)
