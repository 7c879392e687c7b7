"""Masks and the effects that act through them: masks go to the agent with
AddMaskInfo, local adjustments and the show mask name them by ID and type,
and the agent holds both."""

import gc

import pytest

from conftest import S_OK

PY_SET_GRADIENT_MASK = 106
PY_SET_ELLIPSE_MASK = 140
PY_SET_MOTIONTRACK_MASK = 160
PY_SET_SELMASK_MASK = 158
PY_SET_MASK_CLARITY, FUNCTION_SET_CLARITY_MASK = 100, 241
PY_SET_MASK_SATURATION, FUNCTION_SET_SATURATION_MASK = 101, 273
PY_SET_SHOW_MASK, FUNCTION_SET_SHOW_MASK = 18, 305


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def push_masks(facade):
    """Four masks on clip 5, one of each kind: gradient 1, ellipse 2,
    motion track 3, selection 4."""
    assert facade.AddMaskInfo(5, PY_SET_GRADIENT_MASK, [{"GMMskID": 1, "GMMskInfo": [[0, 0.1, 0.2, 0.3, 0.4]]}],
                              False) == S_OK
    assert facade.AddMaskInfo(5, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 2, "EllipseMskFeather": [[0, 8.5]]}],
                              False) == S_OK
    assert facade.AddMaskInfo(5, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 3, "MSMskInv": True, "MSMskLns": [[0, 2]]}],
                              False) == S_OK
    assert facade.AddMaskInfo(5, PY_SET_SELMASK_MASK, {"SmMskID": 4, "SmPtInfo": {0: True, 3: [
        {4: 30, 5: [(1.0, 1.0), (2.0, 1.0), (2.0, 2.0)]}]}}, False) == S_OK


def test_local_adjustments_name_the_masks_the_agent_holds(facade, journal):
    gc.collect()
    masks = journal.counter("masksHeld")
    records = journal.counter("recordsHeld")
    push_masks(facade)
    assert facade.PushTask(5, PY_SET_MASK_CLARITY, [{"MskID": 1, "MskTyp": 0, "MskClr": [[0, 20]]},
                                                    {"MskID": 2, "MskTyp": 3, "MskClr": [[0, -20]]}], False) == S_OK
    assert facade.PushTask(5, PY_SET_MASK_SATURATION, [{"MskID": 3, "MskTyp": 1, "MskSat": [[0, 15]]},
                                                       {"MskID": 4, "MskTyp": 2, "MskSat": [[0, 5]]}], False) == S_OK
    assert facade.PushTask(5, PY_SET_SHOW_MASK, {"ShowMaskType": 2, "ShowMaskID": 4}, False) == S_OK
    assert journal.counter("masksHeld") == masks + 4
    assert journal.counter("recordsHeld") == records + 3

    given = {args[3]["nMaskID"]: (args[3]["class"], args[3]["nMaskKind"]) for args in
             (e["args"] for e in journal.ops("AddMaskInfo"))}
    assert given == {1: ("GradientMask", 0), 2: ("EllipseMask", 3), 3: ("MotionTrackMask", 1),
                     4: ("SelectionMask", 2)}
    pushed = {e["args"][1]: e["args"][2] for e in journal.ops("PushEffect")}
    named = [(m["nMaskID"], m["nMaskType"]) for function in (FUNCTION_SET_CLARITY_MASK, FUNCTION_SET_SATURATION_MASK)
             for m in pushed[function]["masks"]]
    # Every mask an effect names is one the agent was given, with that kind.
    assert named == [(1, 0), (2, 3), (3, 1), (4, 2)]
    assert all(given[mask_id][1] == kind for mask_id, kind in named)
    assert (pushed[FUNCTION_SET_SHOW_MASK]["nMaskID"], pushed[FUNCTION_SET_SHOW_MASK]["nMaskType"]) == (4, 2)

    # Clearing the clip's tasks lets go of its effects and its masks together.
    assert facade.ClearTask(5, False) == S_OK
    assert journal.counter("masksHeld") == masks
    assert journal.counter("recordsHeld") == records


def test_a_mask_given_again_replaces_the_one_effects_name(shadow, journal):
    gc.collect()
    masks = journal.counter("masksHeld")
    facade = shadow.PyClipGrade()
    push_masks(facade)
    assert facade.PushTask(5, PY_SET_MASK_CLARITY, [{"MskID": 2, "MskTyp": 3, "MskClr": [[0, 9]]}], False) == S_OK
    assert facade.AddMaskInfo(5, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 2, "EllipseMskInverse": True}], False) == S_OK
    assert journal.counter("masksHeld") == masks + 4
    last = journal.ops("AddMaskInfo")[-1]["args"][3]
    assert (last["nMaskID"], last["bInverse"]) == (2, True)
    del facade
    gc.collect()
    assert journal.counter("masksHeld") == masks
