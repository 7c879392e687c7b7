"""Effects: makes a facade on the reference render agent, pushes a clarity
effect with three keyframes to clip 7 and a saturation effect to the buffer
agent, and prints what the agents received, read back from the agent's
journal.

    PYTHONPATH=build/host /usr/bin/python3 examples/effects.py
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


def journal():
    length = AGENT.RefAgent_Journal(None, 0)
    buffer = ctypes.create_string_buffer(length + 1)
    AGENT.RefAgent_Journal(buffer, length + 1)
    return json.loads(buffer.value.decode("utf-8"))


def main():
    facade = PyClipGrade.PyClipGrade()
    print("agent text:", facade.GetDspAgentPtr())

    clarity = {
        PyClipGrade.STR_CLARITY: [[0, 0], [1200, 35], [2400, 50, 1]],
        PyClipGrade.STR_EFFECT_VER: PyClipGrade.cvar.VX_NPK_EFFECT_VERSION_LATEST,
    }
    result = facade.PushTask(7, PyClipGrade.cvar.PY_SET_CLARITY, clarity, False)
    print("PushTask(7, PY_SET_CLARITY, %r, False) -> %d" % (clarity, result))
    # The same clip on the agent for single buffers: the last argument picks it.
    saturation = {PyClipGrade.STR_SATURATION: [[1200, 35], [2400, 50, 2]]}
    on_buffer = facade.PushTask(7, PyClipGrade.cvar.PY_SET_SATURATION, saturation, True)
    print("PushTask(7, PY_SET_SATURATION, %r, True) -> %d" % (saturation, on_buffer))

    pushed = [e for e in journal() if e["op"] == "PushEffect"]
    for entry in pushed:
        video_id, function_id, record = entry["args"]
        print("%s #%d received PushEffect for clip %d, FUNCTION_ID %d:"
              % (entry["agent"], entry["instance"], video_id, function_id))
        print("  record version %d, header word %d" % (record["version"], record["word"]))
        for index, vector in enumerate(record["vectors"]):
            print("  vector %d:" % index)
            for key in vector:
                print("    time %6d  value %4d  interpolation %d" % (key["time"], key["value"], key["interp"]))
    del facade
    print("FUNCTION_SET_CLARITY is %d, FUNCTION_SET_SATURATION is %d"
          % (PyClipGrade.FUNCTION_SET_CLARITY, PyClipGrade.FUNCTION_SET_SATURATION))
    return 0 if (result, on_buffer, [e["agent"] for e in pushed]) == (0, 0, ["DspMain", "DspBuf"]) else 1


if __name__ == "__main__":
    sys.exit(main())
