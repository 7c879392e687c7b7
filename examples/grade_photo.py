"""Grades a real photograph through the module: the coffee cup that Debian's
python3-skimage bundles goes through a small grade on the reference render
agent (white balance, exposure, a tone curve, saturation, a vignette and a
look-up table), rendered with ApplyEffectOnBuffer; the image engine is asked
for the white balance under a dropper on the cup's saucer and the render
agent for the histogram of what it drew. Writes before.png, after.png and
histogram.png into the folder given (default: a fresh temporary folder) and
prints where."""

import os
import sys
import tempfile

import numpy as np
from PIL import Image, ImageDraw
from skimage import data

import PyClipGrade as P
import PcgBufferTesting as buffers

CLIP = 7


def to_buffer(rgb):
    """A 4-byte image buffer (blue, green, red, alpha) holding the picture:
    the pixels are copied once, straight from the numpy array."""
    height, width, _ = rgb.shape
    bgra = np.empty((height, width, 4), np.uint8)
    bgra[..., 0], bgra[..., 1], bgra[..., 2], bgra[..., 3] = rgb[..., 2], rgb[..., 1], rgb[..., 0], 255
    handle = buffers.NewBuffer(width, height, 4)
    assert buffers.WriteBytes(handle, bgra) == bgra.nbytes
    return handle


def to_rgb(handle):
    """The buffer's pixels as an RGB array, read once into numpy's memory."""
    width, height, _ = buffers.Shape(handle)
    bgra = np.empty((height, width, 4), np.uint8)
    assert buffers.ReadInto(handle, bgra) == bgra.nbytes
    return bgra[..., [2, 1, 0]].copy()


def warm_lut(size=17):
    """A 3-D table that warms the picture a little: red up, blue down, red fastest."""
    axis = np.linspace(0.0, 1.0, size)
    b, g, r = np.meshgrid(axis, axis, axis, indexing="ij")
    table = np.stack([np.clip(r * 1.04 + 0.01, 0, 1), g, np.clip(b * 0.94, 0, 1)], axis=-1)
    return [float(v) for v in table.reshape(-1)]


def histogram_plot(path, histogram_before, histogram_after):
    """Luminance histograms before and after; matplotlib when it is there, else Pillow."""
    try:
        import matplotlib
        matplotlib.use("Agg")
        import matplotlib.pyplot as plt
        fig, axes = plt.subplots(1, 2, figsize=(10, 3.5), sharey=True)
        for ax, (title, hist) in zip(axes, (("before", histogram_before), ("after", histogram_after))):
            for channel, colour in zip(range(3), "rgb"):
                ax.plot(hist[channel], color=colour, linewidth=1)
            ax.set_title(title)
            ax.set_xlim(0, 255)
        fig.tight_layout()
        fig.savefig(path)
        return
    except ImportError:
        pass
    image = Image.new("RGB", (532, 160), "white")
    draw = ImageDraw.Draw(image)
    for offset, hist in ((0, histogram_before), (276, histogram_after)):
        peak = max(max(h) for h in hist) or 1
        for channel, colour in zip(range(3), ((200, 0, 0), (0, 150, 0), (0, 0, 200))):
            points = [(offset + x, 155 - int(150 * hist[channel][x] / peak)) for x in range(256)]
            draw.line(points, fill=colour)
    image.save(path)


def channel_histograms(rgb):
    return [np.bincount(rgb[..., c].reshape(-1), minlength=256) for c in range(3)]


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else tempfile.mkdtemp(prefix="pyclipgrade-demo-")
    os.makedirs(out, exist_ok=True)
    photo = data.coffee()  # 400 x 600 RGB
    height, width, _ = photo.shape
    source = to_buffer(photo)

    facade = P.PyClipGrade()
    facade.AddVideo(CLIP, 0, 10000, width / float(height))
    grade = [
        (P.cvar.PY_SET_WB, {"Tmp": [[0, 5400]], "Tnt": [[0, 4]]}),
        (P.cvar.PY_SET_TONE, {"Xpo": [[0, 0.1]], "Ctr": [[0, 8]]}),
        (P.cvar.PY_SET_TONE_CURVE, {"TCurvPts": [[0, [(0.0, 0.02), (0.25, 0.2), (0.75, 0.82), (1.0, 1.0)], 2]]}),
        (P.cvar.PY_SET_SATURATION, {"Sat": [[0, 8]]}),
        (P.cvar.PY_SET_POSTCROP_VIGNETTE, {"VgnAmt": [[0, -40]], "VgnMpt": [[0, 40]], "VgnRnd": [[0, 0]],
                                           "VgnFtr": [[0, 60]]}),
    ]
    for task, effect in grade:
        result = facade.PushTask(CLIP, task, effect, True)
        print("PushTask(%d, %d, %r) -> %d" % (CLIP, task, effect, result))
    print("SetLUT -> %d" % facade.SetLUT([CLIP], 17, [0.0, 0.0, 0.0], [1.0, 1.0, 1.0], warm_lut(), False))

    graded = facade.ApplyEffectOnBuffer(CLIP, 0, source, 0, 0)
    print("ApplyLUTOnBuffer ->", facade.ApplyLUTOnBuffer(CLIP, graded))
    histogram = facade.GetHistogramInfo()
    print("histogram of the render: %d pixels, highest luminance bin %d"
          % (histogram.m_pHisdist.nTotalCount, histogram.m_pHisdist.nMaxHistogramL))
    histogram.Release()
    # The rim of the cup is near white: what would make it neutral?
    drop = facade.Query_WBDropInfo(1, source, 300, 60, 3, 0)
    print("white balance dropper at (300, 60):", drop)
    tone = facade.Query_ToneMapInfo({"TCurvPts": [(0.25, 0.2), (0.75, 0.82)]})
    print("display curve: 64 -> %d, 128 -> %d, 192 -> %d" % (tone[64], tone[128], tone[192]))

    before, after = photo, to_rgb(graded)
    Image.fromarray(before).save(os.path.join(out, "before.png"))
    Image.fromarray(after).save(os.path.join(out, "after.png"))
    histogram_plot(os.path.join(out, "histogram.png"), channel_histograms(before), channel_histograms(after))
    change = np.abs(after.astype(int) - before.astype(int)).mean()
    print("mean change per channel: %.1f codes" % change)
    buffers.Release(graded)
    buffers.Release(source)
    del facade
    print("wrote before.png, after.png and histogram.png into", out)
    return 0 if change > 1.0 and drop is not None else 1


if __name__ == "__main__":
    sys.exit(main())
