"""Single-frame render: a clip's effects applied to one picture by the agent
for single buffers. An exposure and a saturation effect are pushed to clip 7
of the buffer agent, then a grey picture is rendered through them into a new
buffer, which is compared with the source.

    PYTHONPATH=build/host:build/testing /usr/bin/python3 examples/render.py

Pictures are made and read with the test companion module PcgBufferTesting."""

import sys

import PcgBufferTesting as buffers
import PyClipGrade

WIDTH, HEIGHT = 8, 4


def main():
    facade = PyClipGrade.PyClipGrade()
    clip = 7
    facade.AddVideo(clip, 0, 10000, 1.0)
    saturation = facade.PushTask(clip, PyClipGrade.cvar.PY_SET_SATURATION,
                                 {PyClipGrade.STR_SATURATION: [[0, 60]]}, True)
    print("PushTask(%d, PY_SET_SATURATION, ..., True) -> %d" % (clip, saturation))

    source = buffers.NewBuffer(WIDTH, HEIGHT, 4)
    # A muted orange: saturation moves it away from grey.
    buffers.WriteBytes(source, bytes([80, 120, 160, 255]) * (WIDTH * HEIGHT))
    rendered = facade.ApplyEffectOnBuffer(clip, PyClipGrade.cvar.PY_SET_SATURATION, source, 0, 0)
    if rendered is None:
        print("no buffer came back")
        return 1
    before = buffers.ReadBytes(source)[:4]
    after = buffers.ReadBytes(rendered)[:4]
    print("source pixel (b, g, r, a) %s -> rendered %s, size %s" % (tuple(before), tuple(after),
                                                                   buffers.Shape(rendered)))
    # The rendered buffer is not owned by its wrapper: its one reference is ours.
    buffers.Release(rendered)
    buffers.Release(source)
    del facade
    return 0 if saturation == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
