"""A whole smart selection on a photograph: the coffee cup picture that
Debian's python3-skimage bundles. The script paints strokes on the cup,
undoes and redoes one, reads the selection back as a mask, turns it into
run lists and back, corrects it for lens distortion, and writes the
selection as a red overlay picture.

Run from the repository after `make build`:
    PYTHONPATH=build/host:build/testing /usr/bin/python3 examples/smart_selection.py [out.png]

Image buffers are made and read with the test companion module
PcgBufferTesting, which also lends the facade a buffer allocator while the
image engine does not provide one."""

import sys

import numpy as np
from PIL import Image
from skimage import data

import PcgBufferTesting as buffers
import PyClipGrade


def to_array(handle):
    width, height, depth = buffers.Shape(handle)
    return np.frombuffer(buffers.ReadBytes(handle), np.uint8).reshape(height, width, depth)


def main():
    out_path = sys.argv[1] if len(sys.argv) > 1 else "smart_selection_overlay.png"
    rgb = data.coffee()
    height, width = rgb.shape[:2]
    # The host's 32-bit pixels: blue, green, red, alpha.
    bgra = np.dstack([rgb[:, :, 2], rgb[:, :, 1], rgb[:, :, 0], np.full((height, width), 255, np.uint8)])
    picture = buffers.NewBuffer(width, height, 4)
    buffers.WriteBytes(picture, bgra.tobytes())

    facade = PyClipGrade.PyClipGrade()
    # False, and nothing changed, when the facade already has an allocator.
    buffers.UseTestingAllocator(facade)

    print("Selection_Initialize:", facade.Selection_Initialize(picture, []))
    # Strokes on the coffee in the cup, then one on the table, then take
    # the table back out with Undo.
    strokes = [[(290, 140)], [(260, 150), (320, 160)], [(100, 100)]]
    masks = []
    for positions in strokes:
        mask = facade.Selection_MagicSelect(positions, 6, False, False, False)
        masks.append(mask)
        print("stroke %s: %d pixels selected" % (positions, int((to_array(mask) != 0).sum())))
    print("Selection_Undo:", facade.Selection_Undo(1))
    print("Selection_Redo:", facade.Selection_Redo(1))
    print("Selection_Undo:", facade.Selection_Undo(1))
    # The mask changes at the next stroke: one off the picture shows it.
    current = facade.Selection_MagicSelect([(-100, -100)], 1, False, False, False)
    selected = to_array(current)[:, :, 0] != 0
    print("after undo: %d pixels selected" % int(selected.sum()))

    runs = facade.Selection_MaskToPoint(current, None)
    print("run list: %d lines, bounding box %s" % (len(runs["lstLine"]), runs["roiSrc"]))
    back = facade.Selection_PointToMask(runs["lstLine"], width, height, False)
    same = np.array_equal(to_array(back)[:, :, 0] != 0, selected)
    print("run list back to a mask gives the same selection:", same)

    corrected = facade.Selection_MaskCorrection(current, {"LensCrt": {"LCDist": 40}})
    moved = int(((to_array(corrected)[:, :, 0] != 0) != selected).sum())
    print("lens-corrected mask: %d pixels moved" % moved)

    overlay = rgb.astype(np.float32)
    overlay[selected] = 0.45 * overlay[selected] + 0.55 * np.array([255, 0, 0], np.float32)
    Image.fromarray(overlay.astype(np.uint8)).save(out_path)
    print("overlay written to", out_path)

    facade.Selection_Uninitialize()
    for handle in masks + [current, back, corrected, picture]:
        buffers.Release(handle)
    buffers.DropTestingAllocator(facade)
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
