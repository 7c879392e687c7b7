"""Gives the reference render agent an ellipse mask for clip 7, pushes a
local saturation effect through it, and prints what the agent received.

    PYTHONPATH=build/host /usr/bin/python3 examples/masks.py
"""

import ctypes
import json
import os
import sys

import PyClipGrade

HOST = os.path.dirname(os.path.abspath(PyClipGrade.__file__))
SUFFIX = ".dll" if sys.platform == "win32" else ".so"
AGENT = ctypes.CDLL(os.path.join(HOST, "KESdlls", "VXHvnDspAgent" + SUFFIX))
AGENT.RefAgent_Journal.restype = ctypes.c_int32
AGENT.RefAgent_Journal.argtypes = [ctypes.c_char_p, ctypes.c_int32]
AGENT.RefAgent_Counter.restype = ctypes.c_int64
AGENT.RefAgent_Counter.argtypes = [ctypes.c_char_p]


def journal():
    length = AGENT.RefAgent_Journal(None, 0)
    buffer = ctypes.create_string_buffer(length + 1)
    AGENT.RefAgent_Journal(buffer, length + 1)
    return json.loads(buffer.value.decode("utf-8"))


def main():
    facade = PyClipGrade.PyClipGrade()
    ellipse = [{
        PyClipGrade.STR_ELLIPSE_MASK_ID: 3,
        # time, first pair, second pair, angle: passed to the agent unread
        PyClipGrade.STR_ELLIPSE_INFO: [[0, (0.5, 0.5), (0.25, 0.125), 0.0], [2400, (0.6, 0.5), (0.25, 0.125), 30.0]],
        PyClipGrade.STR_ELLIPSE_FEATHER: [[0, 12.9]],
        PyClipGrade.STR_ELLIPSE_INVERSE: False,
    }]
    added = facade.AddMaskInfo(7, PyClipGrade.cvar.PY_SET_ELLIPSE_MASK, ellipse, False)
    print("AddMaskInfo(7, PY_SET_ELLIPSE_MASK, ...) -> %d" % added)
    local = [{PyClipGrade.STR_MASK_ID: 3, PyClipGrade.STR_MASK_TYPE: 3, "MskSat": [[0, 20], [2400, 40]]}]
    pushed = facade.PushTask(7, PyClipGrade.cvar.PY_SET_MASK_SATURATION, local, False)
    print("PushTask(7, PY_SET_MASK_SATURATION, ...) -> %d" % pushed)

    for entry in journal():
        if entry["op"] == "AddMaskInfo":
            video_id, function_id, mask_id, mask = entry["args"]
            print("%s received mask %d for clip %d (mask function %d): %s"
                  % (entry["agent"], mask_id, video_id, function_id, json.dumps(mask)))
        elif entry["op"] == "PushEffect":
            print("%s received FUNCTION_ID %d: %s" % (entry["agent"], entry["args"][1], json.dumps(entry["args"][2])))
    print("masks held by the agent: %d" % AGENT.RefAgent_Counter(b"masksHeld"))
    del facade
    return 0 if added == 0 and pushed == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
