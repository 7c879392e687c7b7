"""Events: one callable receives what the engine sends on its own time. The
reference render agent posts tracking events and a fresh cache frame from
its own thread; the facade's callback thread hands each to the callable, in
order, and keeps the frame for GetCacheFrame.

    PYTHONPATH=build/host /usr/bin/python3 examples/events.py
"""

import ctypes
import os
import sys
import threading

import PyClipGrade

HOST = os.path.dirname(os.path.abspath(PyClipGrade.__file__))
SUFFIX = ".dll" if sys.platform == "win32" else ".so"
AGENT = ctypes.CDLL(os.path.join(HOST, "KESdlls", "VXHvnDspAgent" + SUFFIX))
# Test entry of the reference agent: (agent, command, value, llValue, frame width, height).
AGENT.RefAgent_PostEvent.restype = ctypes.c_int32
AGENT.RefAgent_PostEvent.argtypes = [ctypes.c_int32, ctypes.c_int32, ctypes.c_int32, ctypes.c_int64,
                                     ctypes.c_int32, ctypes.c_int32]

TRACKING_STATE, TRACKING_MEET_KEYFRAME, CACHE_FRAME_UPDATED = 1, 2, 4


def main():
    facade = PyClipGrade.PyClipGrade()
    received = []
    all_in = threading.Event()

    def on_event(name, *values):
        # Runs on the facade's callback thread, with the interpreter lock.
        received.append((name,) + values)
        print("event %s %s" % (name, values))
        if len(received) == 3:
            all_in.set()

    facade.SetPyCallback(on_event)
    AGENT.RefAgent_PostEvent(0, TRACKING_STATE, 1, 7, 0, 0)
    AGENT.RefAgent_PostEvent(0, TRACKING_MEET_KEYFRAME, 3, 2400, 0, 0)
    # A 4 x 2 frame whose pixels are the colour 0x336699.
    AGENT.RefAgent_PostEvent(0, CACHE_FRAME_UPDATED, 0, 0x336699, 4, 2)
    delivered = all_in.wait(10)
    facade.SetPyCallback(None)
    print("delivered in order: %s" % (delivered and [r[0] for r in received] ==
                                      ["TRACKING_STATE", "TRACKING_MEET_KEYFRAME", "CACHE_FRAME_UPDATED"]))
    # Deleting the facade delivers anything still queued, then ends the thread.
    del facade
    return 0 if delivered else 1


if __name__ == "__main__":
    sys.exit(main())
