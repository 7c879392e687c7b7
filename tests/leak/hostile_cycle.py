"""Hostile uses of the module, many times over: effects that change while
they are read, views that outlive their records, objects stored in pointer
fields, histograms copied and released, flat destructors on views. Nothing
the module allocates may be lost."""

import gc

import PyClipGrade as P
import _PyClipGrade as M


class Value(object):
    def __init__(self, number, action):
        self.number, self.action = number, action

    def __index__(self):
        self.action()
        return self.number

    __int__ = __index__

    def __float__(self):
        self.action()
        return float(self.number)


facade = P.PyClipGrade()
for i in range(50):
    effect = {}
    effect["Tmp"] = [[Value(i, effect.clear), 5], [1, 2]]
    effect["self"] = effect
    facade.PushTask(1, P.PY_SET_WB, effect, False)
    masks = []
    masks.append({"MskID": Value(1, lambda: masks.clear()), "MskHSLH": [[[0, Value(3, lambda: masks.clear())]]]})
    masks.append(masks)
    facade.PushTask(1, P.PY_SET_MASK_HSL, masks, False)

    view = P.Eye().left
    view.x = 1.0
    array = P.CHistogramDist().m_pHisdist.HistogramR
    target = P.CHistogramDist()
    target.m_pHisdist.HistogramR = array
    target.m_pHisdist = P.CHistogramDist().m_pHisdist
    released = P.CHistogramDist()
    released.Release()

    info = P.BrushMaskInfo()
    info.pBrushArray = P.tBrushSetting()
    info.pBrushArray = P.tBrushSetting()
    info.pBrushArray = None
    info.pBrushArray = P.tBrushSetting()

    record = P.FeaturePoints()
    M.delete_Mouth(record.mouth)
    point = P.PointD()
    M.delete_PointD(point)
    M.delete_PointD(point)
del facade, effect, masks, view, array, target, released, info, record, point
gc.collect()
