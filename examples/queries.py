"""Queries: colour and tone questions about one picture, answered by the
image engine. A warm gradient picture is asked for the white balance under
the dropper, the hue bands and tone weights at a point, and the display table
of a tone curve.

    PYTHONPATH=build/host:build/testing /usr/bin/python3 examples/queries.py

Pictures are made with the test companion module PcgBufferTesting."""

import sys

import PcgBufferTesting as buffers
import PyClipGrade

WIDTH, HEIGHT = 16, 8


def warm_picture():
    # Blue, green, red, alpha: red rising across, a little blue.
    pixels = bytearray()
    for y in range(HEIGHT):
        for x in range(WIDTH):
            pixels += bytes([40, 90 + 4 * y, 120 + 8 * x, 255])
    picture = buffers.NewBuffer(WIDTH, HEIGHT, 4)
    buffers.WriteBytes(picture, bytes(pixels))
    return picture


def main():
    facade = PyClipGrade.PyClipGrade()
    picture = warm_picture()
    image_id = 1

    balance = facade.Query_WBDropInfo(image_id, picture, WIDTH // 2, HEIGHT // 2, 0, 0)
    print("white balance that makes (8, 4) neutral: %s" % balance)
    bands = facade.Query_TATMapInfo(image_id, picture, 3, 3)
    print("hue bands at (3, 3): %s" % bands)
    tones = facade.Query_ToneTATMapInfo(image_id, picture, 3, 3)
    print("tone weights at (3, 3): %s" % (tones,))
    curve = facade.Query_ToneMapInfo({"TCurvPts": [[0.0, 0.0], [0.5, 0.625], [1.0, 1.0]]})
    if curve:
        print("tone curve: 0 -> %d, 128 -> %d, 255 -> %d (%d points)" % (curve[0], curve[128], curve[255], len(curve)))

    buffers.Release(picture)
    del facade
    return 0 if balance is not None and bands is not None and curve is not None and len(curve) == 256 else 1


if __name__ == "__main__":
    sys.exit(main())
