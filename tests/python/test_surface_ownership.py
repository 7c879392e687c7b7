"""Who owns what crosses the surface: a record a script makes is owned by its
wrapper; every facade result that is not owned leaves the object alone when
its wrapper goes, and the script lets go of it by the object's own means."""

import gc

import pytest

import selection_support
import vocabulary_tables
from event_agent import Frame

RESULTS = {r[0]: (r[1], r[2] == "1") for r in vocabulary_tables._rows("results.tsv")}
MAKERS = sorted({r[2] for r in vocabulary_tables._rows("entries.tsv") if r[1] == "new"})
buffers = selection_support.buffers


# Inputs made for a call, let go of after the test.
_INPUTS = []


def _picture():
    picture = selection_support.picture_buffer(8, 8, bytes([100, 120, 140, 255]) * 64)
    _INPUTS.append(picture)
    return picture


def _mask(facade):
    mask = facade.Selection_PointToMask([[1, 1, 3]], 8, 8, False)
    _INPUTS.append(mask)
    return mask


# How to get a result of each method that hands out what it does not own.
def _get_cache_frame(facade, slot):
    getattr(facade, "Set" + slot)(_picture())
    return getattr(facade, "Get" + slot)()


def _magic(facade):
    assert facade.Selection_Initialize(_picture(), []) == 0
    return facade.Selection_MagicSelect([[2, 2]], 2, True, True, True)


def _manual(facade):
    assert facade.Manual_Initialize([], 8, 8) == 0
    return facade.Manual_UpdateStroke([[2, 2]], 2, True, True)


MAKE_RESULT = {
    "ApplyEffectOnBuffer": lambda f: f.ApplyEffectOnBuffer(7, 19, _picture(), 0, 0),
    "GetCacheFrame": lambda f: _get_cache_frame(f, "CacheFrame"),
    "GetCachePureFrame": lambda f: _get_cache_frame(f, "CachePureFrame"),
    "GetCacheFramePlaying": lambda f: _get_cache_frame(f, "CacheFramePlaying"),
    "ResizeImageBuffer": lambda f: f.ResizeImageBuffer(_picture(), 4, 4),
    "Selection_PointToMask": lambda f: f.Selection_PointToMask([[1, 1, 3]], 8, 8, False),
    "Selection_MaskCorrection": lambda f: f.Selection_MaskCorrection(_mask(f)),
    "Selection_MagicSelect": _magic,
    "Manual_UpdateStroke": _manual,
    "GetHistogramInfo": lambda f: f.GetHistogramInfo(),
    "GetToneCurveHistogramInfo": lambda f: f.GetToneCurveHistogramInfo(),
}


def test_the_results_not_owned_are_the_ones_probed_here():
    assert sorted(n for n, (_, owned) in RESULTS.items() if not owned) == sorted(MAKE_RESULT)
    assert len(RESULTS) == 65


@pytest.mark.parametrize("name", sorted(MAKE_RESULT))
def test_a_result_not_owned_outlives_its_wrapper(shadow, name):
    facade = shadow.PyClipGrade()
    result = MAKE_RESULT[name](facade)
    assert result is not None
    if RESULTS[name][0].startswith("CHistogramDist"):
        assert result.thisown is False
        # The script's own means: one more reference, then both let go;
        # the wrapper itself never touches the count.
        assert result.AddRef() == 2
        assert result.Release() == 1
        assert result.Release() == 0
        del result
        gc.collect()
    else:
        assert result.own() is False
        count = buffers.RefCount(result)
        # The buffer read through its own table, with no wrapper.
        frame = Frame(result)
        del result
        gc.collect()
        # The wrapper went and the buffer is untouched; the caller's
        # reference is let go by the buffer's own Release.
        assert frame.references() == count
        assert frame.release() == count - 1
    while _INPUTS:
        buffers.Release(_INPUTS.pop())
    del facade


@pytest.mark.parametrize("name", MAKERS)
def test_a_record_made_by_a_script_is_owned_by_its_wrapper(shadow, name):
    if name == "PyClipGrade":
        made = shadow.PyClipGrade(u"@_PtrWrapper_$=0x0", 0, 0)
    else:
        made = getattr(shadow, name)()
    assert made.thisown is True
