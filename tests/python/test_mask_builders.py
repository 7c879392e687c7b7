"""AddMaskInfo and its four builders: a script's mask list becomes
mask objects, one agent call per mask, each decoded by the reference agent."""

import gc
import math
import random
import threading
import time

import pytest

from conftest import E_INVALIDARG, E_POINTER, S_OK
from effect_journal import f32, trace_lines

PY_SET_GRADIENT_MASK = 106
PY_SET_MAGIC_SELECTION = 108
PY_SET_ELLIPSE_MASK = 140
PY_SET_SELMASK_MASK = 158
PY_SET_MOTIONTRACK_MASK = 160
MASK_GRADIENT, MASK_SELECTION, MASK_MOTION_TRACK, MASK_ELLIPSE = 16, 32, 48, 64
INT32_MIN = -(1 << 31)

# ESM_* keys of a selection's point information.
ESM_IS_MASK, ESM_IS_INVERSE, ESM_NONMASK_POINTS, ESM_MASK_KEYFRAME_LIST = 0, 1, 2, 3
ESM_MASK_KEYFRAME_DURATION, ESM_MASK_KEYFRAME_POINTS, ESM_MASK_KEYFRAME_FEATHERS = 4, 5, 6
ESM_MASK_KEYFRAME_CENTROID, ESM_MASK_KEYFRAME_FEATHER_SHIFTS = 7, 8


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def add(facade, journal, task, masks, video=1, buffer=False, collect=True):
    """(result, [(agent, args)]) of one AddMaskInfo."""
    if collect:
        gc.collect()  # no facade of an earlier test may go during a journal read
    journal.reset()
    result = facade.AddMaskInfo(video, task, masks, buffer)
    return result, [(e["agent"], e["args"]) for e in journal.ops("AddMaskInfo")]


def masks_of(facade, journal, task, masks, video=1, collect=True):
    """The MASK objects the main agent received, in call order."""
    result, calls = add(facade, journal, task, masks, video, collect=collect)
    assert result == S_OK
    for agent, args in calls:
        assert agent == "DspMain"
        assert args[0] == video
        # The agent takes the mask ID unsigned.
        assert args[2] == args[3]["nMaskID"] & 0xFFFFFFFF
    return [args[3] for _, args in calls]


def quiet(capfd):
    """Lets facades of earlier tests go, then forgets what was written so far."""
    gc.collect()
    capfd.readouterr()


def lines_of(capfd):
    return trace_lines(capfd.readouterr().err)


def value_key(time, value, style=2):
    return {"llTime": time, "nValue": value, "nLineStyle": style}


def same(a, b):
    """Field-by-field equality where NaN equals NaN."""
    if isinstance(a, float) and isinstance(b, float) and math.isnan(a) and math.isnan(b):
        return True
    if isinstance(a, dict) and isinstance(b, dict):
        return a.keys() == b.keys() and all(same(a[k], b[k]) for k in a)
    if isinstance(a, list) and isinstance(b, list):
        return len(a) == len(b) and all(same(x, y) for x, y in zip(a, b))
    return type(a) == type(b) and a == b


# ---------------------------------------------------------------- AddMaskInfo

def test_missing_agent_is_a_null_pointer(shadow, journal, trace_on, capfd):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    quiet(capfd)
    assert second.AddMaskInfo(3, PY_SET_GRADIENT_MASK, [{"GMMskID": 1}], True) == E_POINTER
    assert lines_of(capfd) == ["PyClipGrade::AddMaskInfo() enter",
                               "PyClipGrade::AddMaskInfo, Info. videoID=3, taskID=106",
                               "PyClipGrade::AddMaskInfo Null Pointer : agent"]
    assert journal.ops("AddMaskInfo") == []


@pytest.mark.parametrize("task", [0, 19, 105, 107, 109, 141, 157, 159, 161, -1, (1 << 31) - 1])
def test_a_task_without_a_mask_function_is_an_invalid_argument(trace_on, facade, journal, capfd, task):
    quiet(capfd)
    assert facade.AddMaskInfo(2, task, [{"GMMskID": 1}], False) == E_INVALIDARG
    assert lines_of(capfd) == ["PyClipGrade::AddMaskInfo() enter",
                               "PyClipGrade::AddMaskInfo, Info. videoID=2, taskID=%d" % task]
    assert journal.ops("AddMaskInfo") == []


@pytest.mark.parametrize("task,builder", [
    (PY_SET_GRADIENT_MASK, "::m_fnGradientToMaskInfoArray, Info. nMaskCount=0"),
    (PY_SET_MOTIONTRACK_MASK, "::m_fnMotionTrackMaskToMaskInfoArray, Info. nMaskCount=0"),
    (PY_SET_ELLIPSE_MASK, ":m_fnEllipseToMaskInfoArray, Info. nMaskCount=0")])
def test_an_empty_list_calls_no_agent_and_answers_ok(trace_on, facade, journal, capfd, task, builder):
    quiet(capfd)
    assert add(facade, journal, task, []) == (S_OK, [])
    lines = lines_of(capfd)
    assert "PyClipGrade" + builder in lines
    assert lines[-1] == "PyClipGrade::AddMaskInfo() end"


def test_each_mask_is_one_call_in_list_order(facade, journal):
    result, calls = add(facade, journal, PY_SET_GRADIENT_MASK,
                        [{"GMMskID": 5, "GMMskInfo": []}, {"GMMskID": 2, "GMMskInfo": []},
                         {"GMMskID": 9, "GMMskInfo": []}], video=4)
    assert result == S_OK
    assert [(agent, args[:3]) for agent, args in calls] == [
        ("DspMain", [4, MASK_GRADIENT, 5]), ("DspMain", [4, MASK_GRADIENT, 2]), ("DspMain", [4, MASK_GRADIENT, 9])]


def test_the_buffer_agent_is_chosen_by_the_bool(facade, journal):
    result, calls = add(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1}], buffer=True)
    assert result == S_OK
    assert [agent for agent, _ in calls] == ["DspBuf"]


def test_magic_selection_and_motion_track_are_one_mask_function(facade, journal):
    masks = [{"MSMskID": 3, "MSMskInv": True, "MSMskFtr": [[1, 2]]}]
    first = add(facade, journal, PY_SET_MAGIC_SELECTION, masks)
    second = add(facade, journal, PY_SET_MOTIONTRACK_MASK, masks)
    assert first == second
    assert first[1][0][1][1] == MASK_MOTION_TRACK


def test_the_same_mask_id_twice_is_two_calls_and_one_held_mask(facade, journal):
    held = journal.counter("masksHeld")
    result, calls = add(facade, journal, PY_SET_GRADIENT_MASK, [{"GMMskID": 7}, {"GMMskID": 7}])
    assert result == S_OK and len(calls) == 2
    assert journal.counter("masksHeld") == held + 1


def test_the_agent_is_called_with_the_interpreter_let_go(facade, journal):
    # This thread holds the agent's writer lock, so the other thread's mask
    # waits in the agent; this thread can only run on (and unlock) if that
    # wait let the interpreter go.
    facade.LockEffectDataWriter(False)
    done = threading.Event()

    def other():
        facade.AddMaskInfo(1, PY_SET_GRADIENT_MASK, [{"GMMskID": 1}], False)
        done.set()

    worker = threading.Thread(target=other)
    worker.start()
    time.sleep(0.2)
    assert not done.is_set()
    facade.UnlockEffectDataWriter(False)
    worker.join(10)
    assert done.is_set()
    assert [e["args"][2] for e in journal.ops("AddMaskInfo")] == [1]


def test_selection_and_motion_track_share_their_effect_info_and_differ_in_kind(facade, journal):
    track, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 1, "MSMskInv": False}])
    selection, = masks_of(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 1, "SmPtInfo": {ESM_IS_MASK: True}})
    assert (track["effectInfoID"], track["nMaskKind"]) == (54, 1)
    assert (selection["effectInfoID"], selection["nMaskKind"]) == (54, 2)


def test_masks_are_freed_by_clear_task_and_by_the_facade_going(shadow, journal):
    held = journal.counter("masksHeld")
    facade = shadow.PyClipGrade()
    facade.AddMaskInfo(1, PY_SET_GRADIENT_MASK, [{"GMMskID": 1, "GMMskInfo": [[0, 1.0, 2.0, 3.0, 4.0]]}], False)
    facade.AddMaskInfo(1, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 2, "EllipseMskFeather": [[0, 3]]}], True)
    facade.AddMaskInfo(2, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 3, "MSMskInv": False, "MSMskLns": [[0, 1]]}],
                       False)
    assert journal.counter("masksHeld") == held + 3
    assert facade.ClearTask(1, False) == S_OK
    assert journal.counter("masksHeld") == held + 2
    del facade
    gc.collect()
    assert journal.counter("masksHeld") == held


def test_a_non_list_for_a_list_builder_has_no_array_and_answers_ok(trace_on, facade, journal, capfd):
    for masks in (None, 5, "GMMskID", {"GMMskID": 1}, ({"GMMskID": 1},)):
        quiet(capfd)
        assert add(facade, journal, PY_SET_GRADIENT_MASK, masks) == (S_OK, [])
        assert lines_of(capfd) == [
            "PyClipGrade::AddMaskInfo() enter", "PyClipGrade::AddMaskInfo, Info. videoID=1, taskID=106",
            "PyClipGrade::m_fnGradientToMaskInfoArray, Info. nMaskCount=-1",
            "PyClipGrade::m_fnGradientToMaskInfoArray, Error. Can't allocate GradientMask array",
            "PyClipGrade::AddMaskInfo() end"]


def test_a_list_builder_failure_text_keeps_its_words(trace_on, facade, journal, capfd):
    quiet(capfd)
    assert add(facade, journal, PY_SET_MOTIONTRACK_MASK, 3) == (S_OK, [])
    assert "PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. Can't allocate GradientMask array" in \
        lines_of(capfd)
    assert add(facade, journal, PY_SET_ELLIPSE_MASK, 3) == (S_OK, [])
    assert lines_of(capfd)[2:] == ["PyClipGrade::m_fnEllipseToMaskInfoArray() enter",
                                   "PyClipGrade:m_fnEllipseToMaskInfoArray, Info. nMaskCount=-1",
                                   "PyClipGrade::m_fnEllipseToMaskInfoArray, Error. Can't allocate EllipseMask array",
                                   "PyClipGrade::AddMaskInfo() end"]


@pytest.mark.parametrize("task,key,builder", [
    (PY_SET_GRADIENT_MASK, "GMMskID", "m_fnGradientToMaskInfoArray"),
    (PY_SET_ELLIPSE_MASK, "EllipseMskID", "m_fnEllipseToMaskInfoArray"),
    (PY_SET_MOTIONTRACK_MASK, "MSMskID", "m_fnMotionTrackMaskToMaskInfoArray")])
def test_an_item_without_id_or_null_is_skipped_and_the_rest_delivered(trace_on, facade, journal, capfd, task, key,
                                                                     builder):
    quiet(capfd)
    result, calls = add(facade, journal, task, [{key: 1, "MSMskInv": True}, {"other": 2}, None, 4,
                                                {key: 3, "MSMskInv": True}])
    assert result == S_OK
    assert [args[2] for _, args in calls] == [1, 3]
    lines = lines_of(capfd)
    # The dictionary without the key, None and the integer: none of them has the key.
    assert lines.count("PyClipGrade::%s, Error. No mask id!" % builder) == 3
    assert lines[-1] == "PyClipGrade::AddMaskInfo() end"


# ------------------------------------------------------------------ gradient

def random_gradient(rng, mask_id):
    keys = [[rng.randrange(-1 << 40, 1 << 40)] + [rng.uniform(-1e4, 1e4) for _ in range(4)]
            for _ in range(rng.randrange(0, 6))]
    return {"GMMskID": mask_id, "GMMskInfo": keys}


def expected_gradient(item):
    return {"class": "GradientMask", "nMaskID": item["GMMskID"], "nMaskKind": 0, "effectInfoID": 38,
            "keyFrames": [{"llTime": k[0], "llTime2": k[0], "fGeometry": [f32(v) for v in k[1:5]],
                           "nLineStyle": 2} for k in item.get("GMMskInfo", [])]}


def test_random_gradients_arrive_field_by_field(facade, journal):
    gc.collect()
    rng = random.Random(106)
    for _ in range(20):
        items = [random_gradient(rng, rng.randrange(-1 << 31, 1 << 31)) for _ in range(rng.randrange(1, 5))]
        assert masks_of(facade, journal, PY_SET_GRADIENT_MASK, items, collect=False) == [expected_gradient(i) for i in items]


def test_gradient_without_key_list_has_no_keys(facade, journal):
    assert masks_of(facade, journal, PY_SET_GRADIENT_MASK, [{"GMMskID": 4}]) == [
        {"class": "GradientMask", "nMaskID": 4, "nMaskKind": 0, "effectInfoID": 38, "keyFrames": []}]


def test_gradient_key_elements_missing_or_of_other_types_read_as_minus_one(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_GRADIENT_MASK,
                     [{"GMMskID": 1, "GMMskInfo": [[5, 1.5], ["t", "x", None, 2, 2.5]]}])
    assert [k["llTime"] for k in mask["keyFrames"]] == [5, -1]
    assert [k["fGeometry"] for k in mask["keyFrames"]] == [[1.5, -1.0, -1.0, -1.0], [-1.0, -1.0, 2.0, 2.5]]


def test_gradient_floats_keep_nan_and_infinity(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_GRADIENT_MASK,
                     [{"GMMskID": 1, "GMMskInfo": [[0, float("nan"), float("inf"), -float("inf"), 1e300]]}])
    geometry = mask["keyFrames"][0]["fGeometry"]
    assert math.isnan(geometry[0])
    assert geometry[1:] == [float("inf"), -float("inf"), float("inf")]


def test_gradient_key_item_that_is_no_list_is_skipped(trace_on, facade, journal, capfd):
    quiet(capfd)
    mask, = masks_of(facade, journal, PY_SET_GRADIENT_MASK,
                     [{"GMMskID": 1, "GMMskInfo": [(0, 1.0, 2.0, 3.0, 4.0), [1, 1.0, 2.0, 3.0, 4.0]]}])
    assert [k["llTime"] for k in mask["keyFrames"]] == [1]
    assert ("PyClipGrade::m_fnGradientToMaskInfoArray, Error. item 0 of \"GMMskInfo\" is not a list; skipped"
            in lines_of(capfd))


def test_gradient_id_that_does_not_parse_stays_zero(facade, journal):
    masks = masks_of(facade, journal, PY_SET_GRADIENT_MASK, [{"GMMskID": "seven"}, {"GMMskID": 1 << 40}])
    assert [m["nMaskID"] for m in masks] == [0, 0]


# ------------------------------------------------------------------- ellipse

def random_ellipse(rng, mask_id):
    item = {"EllipseMskID": mask_id}
    if rng.random() < 0.8:
        item["EllipseMskInfo"] = [
            [rng.randrange(-1 << 40, 1 << 40), (rng.uniform(-2, 2), rng.uniform(-2, 2)),
             (rng.uniform(0, 1), rng.uniform(0, 1)), rng.uniform(-360, 360)] for _ in range(rng.randrange(0, 5))]
    if rng.random() < 0.8:
        item["EllipseMskFeather"] = [
            [rng.randrange(-1 << 40, 1 << 40), rng.uniform(-1000, 1000)] + ([rng.randrange(1, 4)] if rng.random() < 0.5
                                                                            else [])
            for _ in range(rng.randrange(0, 5))]
    if rng.random() < 0.7:
        item["EllipseMskInverse"] = rng.random() < 0.5
    return item


def expected_ellipse(item):
    return {"class": "EllipseMask", "nMaskID": item["EllipseMskID"], "nMaskKind": 3, "effectInfoID": 118,
            "keyFrames": [{"llTime": k[0], "llTime2": k[0], "fFirstPair": [f32(v) for v in k[1]],
                           "dAngle": f32(k[3]), "fSecondPair": [f32(v) for v in k[2]], "nLineStyle": 2}
                          for k in item.get("EllipseMskInfo", [])],
            "feathers": [value_key(f[0], int(f32(f[1])), f[2] if len(f) == 3 else 2)
                         for f in item.get("EllipseMskFeather", [])],
            "bInverse": item.get("EllipseMskInverse") is True}


def test_random_ellipses_arrive_field_by_field(facade, journal):
    gc.collect()
    rng = random.Random(140)
    for _ in range(20):
        items = [random_ellipse(rng, rng.randrange(-1 << 31, 1 << 31)) for _ in range(rng.randrange(1, 5))]
        assert masks_of(facade, journal, PY_SET_ELLIPSE_MASK, items, collect=False) == [expected_ellipse(i) for i in items]


def test_ellipse_feather_is_truncated_toward_zero(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1, "EllipseMskFeather": [
        [0, 12.9], [1, -12.9], [2, 7], [3, 2147483520.0]]}])
    assert [f["nValue"] for f in mask["feathers"]] == [12, -12, 7, 2147483520]


def test_ellipse_feather_without_an_integer_reads_as_int32_min(trace_on, facade, journal, capfd):
    quiet(capfd)
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1, "EllipseMskFeather": [
        [0, float("nan")], [1, float("inf")], [2, -1e10], [3, 2147483648.0]]}])
    assert [f["nValue"] for f in mask["feathers"]] == [INT32_MIN] * 4
    lines = lines_of(capfd)
    assert "PyClipGrade::m_fnEllipseToMaskInfoArray, Error. feather nan has no 32-bit integer; it reads as %d" % (
        INT32_MIN) in lines
    assert "PyClipGrade::m_fnEllipseToMaskInfoArray, Error. feather inf has no 32-bit integer; it reads as %d" % (
        INT32_MIN) in lines


@pytest.mark.parametrize("item,style", [([0, 5], 2), ([0, 5, 3], 3), ([0, 5, 1, 3], 2), ([0, 5, "x"], 2)])
def test_ellipse_feather_style_only_from_exactly_three_entries(facade, journal, item, style):
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1, "EllipseMskFeather": [item]}])
    assert mask["feathers"] == [value_key(0, 5, style)]


@pytest.mark.parametrize("value,inverse", [(True, True), (False, False), (1, False), ("yes", False), (None, False)])
def test_ellipse_inverse_is_a_bool_typed_test(facade, journal, value, inverse):
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1, "EllipseMskInverse": value}])
    assert mask["bInverse"] is inverse


def test_ellipse_angle_is_narrowed_before_it_is_widened(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK,
                     [{"EllipseMskID": 1, "EllipseMskInfo": [[9, (0.1, 0.2), (0.3, 0.4), 0.1]]}])
    assert mask["keyFrames"][0]["dAngle"] == f32(0.1) != 0.1


def test_ellipse_pairs_that_are_no_tuples_read_as_minus_one(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_ELLIPSE_MASK,
                     [{"EllipseMskID": 1, "EllipseMskInfo": [[9, [0.5, 0.5], (0.25,), 2.0]]}])
    key = mask["keyFrames"][0]
    assert (key["fFirstPair"], key["fSecondPair"], key["dAngle"]) == ([-1.0, -1.0], [0.25, -1.0], 2.0)


def test_ellipse_logs_enter_count_and_end(trace_on, facade, journal, capfd):
    quiet(capfd)
    masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": 1}, {"EllipseMskID": 2}])
    assert lines_of(capfd) == ["PyClipGrade::AddMaskInfo() enter",
                               "PyClipGrade::AddMaskInfo, Info. videoID=1, taskID=140",
                               "PyClipGrade::m_fnEllipseToMaskInfoArray() enter",
                               "PyClipGrade:m_fnEllipseToMaskInfoArray, Info. nMaskCount=2",
                               "PyClipGrade::m_fnEllipseToMaskInfoArray() end",
                               "PyClipGrade::AddMaskInfo() end"]


# --------------------------------------------------------------- motion track

def random_track(rng, mask_id):
    item = {"MSMskID": mask_id, "MSMskInv": rng.random() < 0.5}
    if rng.random() < 0.8:
        item["MSMskFtr"] = [[rng.randrange(-1 << 40, 1 << 40), rng.randrange(-1 << 31, 1 << 31)] +
                            ([rng.randrange(1, 4)] if rng.random() < 0.5 else []) for _ in range(rng.randrange(0, 5))]
    if rng.random() < 0.8:
        item["MSMskLns"] = [[rng.randrange(-1 << 40, 1 << 40), rng.randrange(-1 << 31, 1 << 31)] +
                            [rng.randrange(1, 4)] * rng.randrange(0, 2) for _ in range(rng.randrange(0, 5))]
    if rng.random() < 0.8:
        item["MSMskTRExp"] = [(rng.randrange(-1 << 62, 1 << 62), rng.randrange(-1 << 62, 1 << 62),
                               rng.randrange(-1 << 31, 1 << 31)) for _ in range(rng.randrange(0, 5))]
    return item


def expected_track(item, video):
    return {"class": "MotionTrackMask", "nMaskID": item["MSMskID"], "nMaskKind": 1, "effectInfoID": 54,
            "lines": [value_key(k[0], k[1]) for k in item.get("MSMskLns", [])],
            "feathers": [value_key(k[0], k[1], k[2] if len(k) == 3 else 2) for k in item.get("MSMskFtr", [])],
            "trExpress": [list(e) for e in item.get("MSMskTRExp", [])],
            "bInverse": item["MSMskInv"], "nVideoID": video}


def test_random_motion_tracks_arrive_field_by_field(facade, journal):
    gc.collect()
    rng = random.Random(160)
    for _ in range(20):
        video = rng.randrange(0, 1 << 31)
        items = [random_track(rng, rng.randrange(-1 << 31, 1 << 31)) for _ in range(rng.randrange(1, 5))]
        assert masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, items, video, collect=False) == [
            expected_track(i, video) for i in items]


def test_track_lines_always_have_style_two_and_short_items_are_skipped(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 1, "MSMskInv": False, "MSMskLns": [
        [1, 10, 3], [2], [], (3, 30), [4, 40, 1, 1], 7, [5, 50]]}])
    assert mask["lines"] == [value_key(1, 10), value_key(4, 40), value_key(5, 50)]


@pytest.mark.parametrize("item,style", [([0, 5], 2), ([0, 5, 3], 3), ([0, 5, 1, 3], 2)])
def test_track_feather_style_only_from_exactly_three_entries(facade, journal, item, style):
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK,
                     [{"MSMskID": 1, "MSMskInv": False, "MSMskFtr": [item]}])
    assert mask["feathers"] == [value_key(0, 5, style)]


def test_track_without_inverse_key_is_not_inverted_and_says_so(trace_on, facade, journal, capfd):
    quiet(capfd)
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 8}])
    assert mask["bInverse"] is False
    assert ("PyClipGrade::m_fnMotionTrackMaskToMaskInfoArray, Error. No \"MSMskInv\" in mask 8; not inverted"
            in lines_of(capfd))


@pytest.mark.parametrize("value,inverse", [(True, True), (False, False), (1, False), ([1], False)])
def test_track_inverse_is_a_bool_typed_test(facade, journal, value, inverse):
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 1, "MSMskInv": value}])
    assert mask["bInverse"] is inverse


def test_track_expressions_keep_what_parsed_before_a_failure(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 1, "MSMskInv": False, "MSMskTRExp": [
        (1, 2, 3), [1, 2, 3], (5, 6, "x"), (7, "y", 8), (1, 2), (1, 2, 3, 4), None, (1 << 63, 2, 3)]}])
    assert mask["trExpress"] == [[1, 2, 3], [-1, -1, -1], [5, 6, -1], [7, -1, -1], [-1, -1, -1], [-1, -1, -1],
                                 [-1, -1, -1], [-1, -1, -1]]


# ------------------------------------------------------------------ selection

def random_selection(rng, mask_id):
    info = {ESM_IS_MASK: True, ESM_IS_INVERSE: rng.random() < 0.5, ESM_NONMASK_POINTS: [(1.0, 2.0)],
            ESM_MASK_KEYFRAME_CENTROID: (0.5, 0.5)}
    info[ESM_MASK_KEYFRAME_LIST] = [
        {ESM_MASK_KEYFRAME_DURATION: rng.randrange(-1 << 40, 1 << 40),
         ESM_MASK_KEYFRAME_POINTS: [(rng.uniform(0, 1920), rng.uniform(0, 1080)) for _ in range(rng.randrange(0, 9))]}
        for _ in range(rng.randrange(0, 4))]
    for key in (ESM_MASK_KEYFRAME_FEATHERS, ESM_MASK_KEYFRAME_FEATHER_SHIFTS):
        if rng.random() < 0.8:
            info[key] = [[rng.randrange(-1 << 40, 1 << 40), rng.randrange(-1 << 31, 1 << 31)] +
                         ([rng.randrange(1, 4)] if rng.random() < 0.5 else []) for _ in range(rng.randrange(0, 5))]
    return {"SmMskID": mask_id, "SmPtInfo": info}


def expected_selection(item):
    info = item["SmPtInfo"]

    def values(key):
        return [value_key(k[0], k[1], k[2] if len(k) == 3 else 2) for k in info.get(key, [])]

    return {"class": "SelectionMask", "nMaskID": item["SmMskID"], "nMaskKind": 2, "effectInfoID": 54,
            "keyFrames": [{"llDuration": k[ESM_MASK_KEYFRAME_DURATION],
                           "points": [[f32(x), f32(y)] for x, y in k[ESM_MASK_KEYFRAME_POINTS]]}
                          for k in info[ESM_MASK_KEYFRAME_LIST]],
            "feathers": values(ESM_MASK_KEYFRAME_FEATHERS), "featherShifts": values(ESM_MASK_KEYFRAME_FEATHER_SHIFTS),
            "bInverse": info[ESM_IS_INVERSE]}


def test_random_selections_arrive_field_by_field(facade, journal):
    gc.collect()
    rng = random.Random(158)
    for _ in range(30):
        item = random_selection(rng, rng.randrange(-1 << 31, 1 << 31))
        assert masks_of(facade, journal, PY_SET_SELMASK_MASK, item, collect=False) == [expected_selection(item)]


@pytest.mark.parametrize("is_mask", [False, 1, None, "True"])
def test_a_selection_that_is_not_a_mask_is_quietly_nothing(trace_on, facade, journal, capfd, is_mask):
    quiet(capfd)
    item = {"SmMskID": 1, "SmPtInfo": {ESM_IS_MASK: is_mask, ESM_MASK_KEYFRAME_LIST: []}}
    assert add(facade, journal, PY_SET_SELMASK_MASK, item) == (S_OK, [])
    assert lines_of(capfd) == ["PyClipGrade::AddMaskInfo() enter",
                               "PyClipGrade::AddMaskInfo, Info. videoID=1, taskID=158",
                               "PyClipGrade::AddMaskInfo() end"]


@pytest.mark.parametrize("masks", [None, [], [{"SmMskID": 1, "SmPtInfo": {ESM_IS_MASK: True}}], 4,
                                   {"SmMskID": 1}, {"SmMskID": 1, "SmPtInfo": [True]}])
def test_a_selection_that_is_no_dictionary_of_a_mask_builds_nothing(facade, journal, masks):
    assert add(facade, journal, PY_SET_SELMASK_MASK, masks) == (S_OK, [])


def test_selection_builder_logs_nothing(trace_on, facade, journal, capfd):
    quiet(capfd)
    masks_of(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 3, "SmPtInfo": {
        ESM_IS_MASK: True, ESM_MASK_KEYFRAME_LIST: [{ESM_MASK_KEYFRAME_DURATION: 1,
                                                      ESM_MASK_KEYFRAME_POINTS: [[1, 2], (1.0, 2.0, 3.0)]}],
        ESM_MASK_KEYFRAME_FEATHERS: [5]}})
    assert lines_of(capfd) == ["PyClipGrade::AddMaskInfo() enter",
                               "PyClipGrade::AddMaskInfo, Info. videoID=1, taskID=158",
                               "PyClipGrade::m_fnSelMaskToMaskInfoArray, Error. item 0 of "
                               "\"ESM_MASK_KEYFRAME_FEATHERS\" is not a list; skipped",
                               "PyClipGrade::AddMaskInfo() end"]


@pytest.mark.parametrize("value,inverse", [(True, True), (False, False), (1, False), (None, False)])
def test_selection_inverse_is_compared_with_true(facade, journal, value, inverse):
    mask, = masks_of(facade, journal, PY_SET_SELMASK_MASK,
                     {"SmMskID": 1, "SmPtInfo": {ESM_IS_MASK: True, ESM_IS_INVERSE: value}})
    assert mask["bInverse"] is inverse


def test_selection_points_are_tuples_of_exactly_two(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 1, "SmPtInfo": {
        ESM_IS_MASK: True, ESM_MASK_KEYFRAME_LIST: [{ESM_MASK_KEYFRAME_DURATION: 5, ESM_MASK_KEYFRAME_POINTS: [
            (1.5, 2.5), [3.0, 4.0], (5.0,), (6.0, 7.0, 8.0), None, (9, "z"), (float("nan"), 1e300)]}]}})
    points = mask["keyFrames"][0]["points"]
    assert points[:2] == [[1.5, 2.5], [9.0, -1.0]]
    assert math.isnan(points[2][0]) and points[2][1] == float("inf")


def test_selection_key_frames_need_duration_points_list_and_a_dictionary(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 1, "SmPtInfo": {
        ESM_IS_MASK: True, ESM_MASK_KEYFRAME_LIST: [
            {ESM_MASK_KEYFRAME_POINTS: []}, {ESM_MASK_KEYFRAME_DURATION: 1},
            {ESM_MASK_KEYFRAME_DURATION: 2, ESM_MASK_KEYFRAME_POINTS: ((1.0, 1.0),)},
            [2, []], {ESM_MASK_KEYFRAME_DURATION: "long", ESM_MASK_KEYFRAME_POINTS: []},
            {ESM_MASK_KEYFRAME_DURATION: 3, ESM_MASK_KEYFRAME_POINTS: []}]}})
    assert mask["keyFrames"] == [{"llDuration": -1, "points": []}, {"llDuration": 3, "points": []}]


def test_selection_without_id_or_key_frame_list(facade, journal):
    mask, = masks_of(facade, journal, PY_SET_SELMASK_MASK,
                     {"SmPtInfo": {ESM_IS_MASK: True, ESM_MASK_KEYFRAME_LIST: "frames"}})
    assert (mask["nMaskID"], mask["keyFrames"]) == (-1, [])
    mask, = masks_of(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 1 << 40, "SmPtInfo": {ESM_IS_MASK: True}})
    assert mask["nMaskID"] == -1


# ------------------------------------------------------------ hostile scripts

class Clearing:
    """An integer whose conversion empties the list it sits in."""

    def __init__(self, target, value):
        self.target = target
        self.value = value

    def __index__(self):
        del self.target[:]
        return self.value

    __int__ = __index__


def test_a_mask_list_emptied_while_read_keeps_what_was_built(facade, journal):
    masks = [{"GMMskID": 1}, {"GMMskID": 2}, {"GMMskID": 3}]
    masks[0]["GMMskID"] = Clearing(masks, 11)
    result, calls = add(facade, journal, PY_SET_GRADIENT_MASK, masks)
    assert result == S_OK
    assert [args[2] for _, args in calls] == [11]
    assert masks == []


def test_a_key_list_emptied_while_read_stops_short(facade, journal):
    feathers = [[0, 1], [1, 2], [2, 3]]
    feathers[0][1] = Clearing(feathers, 7)
    lines = [[0, 5], [1, 6]]
    lines[0][0] = Clearing(lines, 4)
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK,
                     [{"MSMskID": 1, "MSMskInv": True, "MSMskFtr": feathers, "MSMskLns": lines}])
    assert mask["feathers"] == [value_key(0, 7)]
    assert mask["lines"] == [value_key(4, 5)]


def test_an_item_emptied_while_read_has_its_later_fields_missing(facade, journal):
    key = [0, 0.5, 0.5, 0.5, 0.5]
    key[0] = Clearing(key, 3)
    mask, = masks_of(facade, journal, PY_SET_GRADIENT_MASK, [{"GMMskID": 1, "GMMskInfo": [key]}])
    assert mask["keyFrames"][0]["llTime"] == 3
    assert mask["keyFrames"][0]["fGeometry"] == [-1.0] * 4


class Stranger:
    """A key equal to an ESM integer whose comparison empties the dictionary."""

    def __init__(self, value, target):
        self.value = value
        self.target = target

    def __hash__(self):
        return hash(self.value)

    def __eq__(self, other):
        self.target.clear()
        return other == self.value


def test_a_point_info_dictionary_emptied_by_its_keys_comparison(facade, journal):
    info = {}
    info[Stranger(ESM_IS_MASK, info)] = True
    info[ESM_IS_INVERSE] = True
    # The comparison runs while ESM_IS_MASK is looked up and empties the
    # dictionary: the lookup finds nothing, so there is no mask.
    assert add(facade, journal, PY_SET_SELMASK_MASK, {"SmMskID": 1, "SmPtInfo": info}) == (S_OK, [])
    assert info == {}


def test_a_huge_key_list_arrives_whole(facade, journal):
    count = 20000
    mask, = masks_of(facade, journal, PY_SET_MOTIONTRACK_MASK, [{"MSMskID": 1, "MSMskInv": False, "MSMskFtr": [
        [t, t * 3] for t in range(count)]}])
    assert len(mask["feathers"]) == count
    assert mask["feathers"][-1] == value_key(count - 1, (count - 1) * 3)


def test_many_masks_are_as_many_calls(facade, journal):
    count = 3000
    masks = masks_of(facade, journal, PY_SET_ELLIPSE_MASK, [{"EllipseMskID": i} for i in range(count)])
    assert [m["nMaskID"] for m in masks] == list(range(count))


@pytest.mark.parametrize("task", [PY_SET_GRADIENT_MASK, PY_SET_ELLIPSE_MASK, PY_SET_MOTIONTRACK_MASK,
                                  PY_SET_SELMASK_MASK])
def test_wrongly_typed_values_never_raise(facade, journal, task):
    gc.collect()
    for value in (None, 1, 2.5, "text", b"bytes", (1, 2), {1: 2}, [None], [[None]], object()):
        item = {"GMMskID": 1, "GMMskInfo": value, "EllipseMskID": 1, "EllipseMskInfo": value,
                "EllipseMskFeather": value, "EllipseMskInverse": value, "MSMskID": 1, "MSMskFtr": value,
                "MSMskLns": value, "MSMskInv": value, "MSMskTRExp": value}
        selection = {"SmMskID": value, "SmPtInfo": {ESM_IS_MASK: True, ESM_IS_INVERSE: value,
                                                    ESM_MASK_KEYFRAME_LIST: value, ESM_MASK_KEYFRAME_FEATHERS: value,
                                                    ESM_MASK_KEYFRAME_FEATHER_SHIFTS: value}}
        masks = selection if task == PY_SET_SELMASK_MASK else [item, value]
        result, calls = add(facade, journal, task, masks, collect=False)
        assert result == S_OK
        assert len(calls) == 1
