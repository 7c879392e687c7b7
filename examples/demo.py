"""Makes a facade on the reference render agent, pushes a clarity effect with
three keyframes to clip 7, and prints what the agent received, read back from
the agent's journal."""

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

    pushed = [e for e in journal() if e["op"] == "PushEffect"]
    for entry in pushed:
        video_id, function_id, record = entry["args"]
        print("%s #%d received PushEffect for clip %d, FUNCTION_ID %d (FUNCTION_SET_CLARITY is %d):"
              % (entry["agent"], entry["instance"], video_id, function_id, PyClipGrade.FUNCTION_SET_CLARITY))
        print("  record version %d, header word %d" % (record["version"], record["word"]))
        for index, vector in enumerate(record["vectors"]):
            print("  vector %d (nClarity):" % index)
            for key in vector:
                print("    time %6d  value %4d  interpolation %d" % (key["time"], key["value"], key["interp"]))
    del facade
    return 0 if result == 0 and len(pushed) == 1 else 1


if __name__ == "__main__":
    sys.exit(main())
