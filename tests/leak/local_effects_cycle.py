"""Pushes every local adjustment and the show-mask effect, with masks given
twice (the earlier per-mask record is dropped), replaces and clears them and
deletes the facade: run under valgrind, no map node, per-mask record, entry
or vector storage may be left behind."""

import sys

import PyClipGrade

LOCAL_TASKS = [98, 99, 100, 101, 102, 161, 162, 163, 164]
PY_SET_SHOW_MASK = 18


def mask(mask_id, step):
    frames = [[t, t * step] for t in range(0, 40, 10)]
    doubles = [[t, t * 0.5] for t in range(0, 40, 10)]
    return {
        "MskID": mask_id, "MskTyp": step, "EffVer": 80,
        "MskWBTmp": frames, "MskWBTnt": frames,
        "MskTnXpo": doubles, "MskTnBrt": frames, "MskTnCtr": frames,
        "MskClr": frames, "MskSat": frames, "MskVib": frames,
        # Nine bands: the ninth is refused.
        "MskHSLH": [frames] * 9, "MskHSLS": [frames] * 8, "MskHSLL": [frames] * 3,
        "MskCR": [(1, 2, 3, 4, 5, 6, 0.5), (256, 0, 0, 0, 0, 0, 1.0), [1, 2]],
        "MskPETintHue": frames, "MskPETintAmo": doubles, "MskPEBlurLevel": frames,
        "MskCS": [(1, 2, 3, 0.5, 0.25), (-1, 0, 0, 0.0, 0.0)],
    }


def cycle():
    facade = PyClipGrade.PyClipGrade()
    for clip in range(2):
        facade.AddVideo(clip, 0, 1000, 1.0)
        for step in range(3):
            for task in LOCAL_TASKS:
                # Mask 2 twice, a mask without an ID, an item that is no dictionary.
                effect = [mask(2, step), mask(1, step), mask(2, step + 1), {"MskClr": [[0, 1]]}, 5]
                facade.PushTask(clip, task, effect, step % 2 == 0)
                facade.PushTask(clip, task, [], False)
            facade.PushTask(clip, PY_SET_SHOW_MASK, {"ShowMaskID": step, "ShowMaskColor": (1, 2, 3)}, False)
    facade.ClearTask(0, False)
    del facade


for _ in range(3):
    cycle()
sys.exit(0)
