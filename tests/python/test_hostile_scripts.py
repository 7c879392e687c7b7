"""What a hostile script does to the module must not crash, corrupt or hang
the host: effects that change while they are read, None and short arrays
given to record fields, views that outlive their records, histograms
released twice or shared, objects stored in pointer fields, and two script
threads that hold the agent's writer lock in turn. Each case that once
crashed the interpreter runs in a child process."""

import gc
import os
import subprocess
import sys
import textwrap

import pytest

from conftest import HOST, S_OK

CHILD_TIMEOUT = 60


def run_child(body):
    """Runs `body` in a fresh interpreter with the module importable and
    returns (exit code, stdout, stderr). The interpreter's debug allocator
    overwrites what is freed, so a read of a freed object fails at once."""
    code = "import sys\nsys.path.insert(0, %r)\nimport PyClipGrade as P\n" % HOST + textwrap.dedent(body)
    child = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True,
                           timeout=CHILD_TIMEOUT, env=dict(os.environ, PYTHONMALLOC="debug"))
    return child.returncode, child.stdout, child.stderr


MUTATOR = """
class Value(object):
    # A number whose conversion runs the script's code first.
    def __init__(self, number, action=None):
        self.number, self.action = number, action
    def _run(self):
        # A later call finds the containers already emptied; its failure
        # must not become the value's.
        if self.action is not None:
            try:
                self.action()
            except (KeyError, IndexError, TypeError):
                pass
    def __index__(self):
        self._run(); return int(self.number)
    def __int__(self):
        self._run(); return int(self.number)
    def __float__(self):
        self._run(); return float(self.number)
"""

# (task, effect builder): each builder takes a factory v(number) whose
# values, when converted, clear or replace the containers being read.
CHANGING_EFFECTS = {
    "keyframes": ("PY_SET_WB", "E = {'Clr': [[v(0), 5], [1, 2]], 'Tmp': [[v(3), v(4000)], [1, 2]]}",
                  "E.clear()"),
    "keyframe item shrinks": ("PY_SET_WB", "E = {'Tmp': [[v(3), v(4000), v(1)], [7, 8]]}",
                              "del E['Tmp'][0][:]; del E['Tmp'][:]"),
    "colour bands": ("PY_SET_HSL_VIB", "E = {'HSL_H': [[[v(1), v(5)], [2, 3]], [[4, v(6)]]]}",
                     "E['HSL_H'][:] = []; E.clear()"),
    "colour setting tuple": ("PY_SET_COLORREPLACEMENT", "E = {'CR': [[v(0), (v(1), 2, 3, 4, 5, 6, 0.5), 2]]}",
                             "E['CR'][0][:] = []; E.clear()"),
    "colour splash tuple": ("PY_SET_COLORSPLASH", "E = {'CS': [[v(0), (v(10), 20, 30, 0.5, 0.25), 2]]}",
                            "E['CS'][:] = []"),
    "curve pivots": ("PY_SET_TONE_CURVE", "E = {'TCurvPts': [[v(0), [(v(0.25), 0.5), (0.75, 1.0)], v(2)]]}",
                     "E['TCurvPts'][0][1][:] = []; E.clear()"),
    "tone curve channels": ("PY_SET_TONE_CURVE_CHANNEL",
                            "E = {P.PY_SET_TONE_CURVE_R: {'TCurvRPts': [[v(0), [(v(0.5), 0.5)], 2]]}}",
                            "E[P.PY_SET_TONE_CURVE_R].clear(); E.clear()"),
    "show mask": ("PY_SET_SHOW_MASK", "E = {'ShowMaskColor': (v(1), v(2), 3), 'ShowMaskID': v(4)}", "E.clear()"),
    "local adjustment frame": ("PY_SET_MASK_WB", "E = [{'MskID': v(1), 'MskWBTmp': [[v(0), v(3000)]]}, {'MskID': 2}]",
                               "E[:] = []"),
    "local adjustment settings": ("PY_SET_MASK_COLORREPLACEMENT",
                                  "E = [{'MskID': 1, 'MskCR': [(v(1), 2, 3, 4, 5, 6, v(0.5)), (7, 8, 9, 10, 11, 12, 0.25)]}, {'MskID': 2}]",
                                  "E[0].clear(); E[:] = []"),
    "local colour bands": ("PY_SET_MASK_HSL", "E = [{'MskID': 1, 'MskHSLH': [[[v(1), v(5)], [2, 3]], [[4, 6]]]}, {'MskID': 2}]",
                           "E[0]['MskHSLH'][:] = []; E[:] = []"),
}


@pytest.mark.parametrize("case", sorted(CHANGING_EFFECTS))
def test_effect_changed_while_read_does_not_crash(case):
    task, build, action = CHANGING_EFFECTS[case]
    body = MUTATOR + """
f = P.PyClipGrade()
def v(number):
    return Value(number, lambda: mutate())
def mutate():
    %s
%s
print(f.PushTask(1, P.%s, E, False))
print(sys.exc_info()[0])
""" % (action, build, task)
    code, out, err = run_child(body)
    assert code == 0, err
    assert out.split() == ["0", "None"]


@pytest.mark.parametrize("case", sorted(CHANGING_EFFECTS))
def test_effect_changed_while_read_gives_what_it_held(case, shadow, journal):
    """The record is the one the untouched effect gives."""
    task, build, action = CHANGING_EFFECTS[case]
    scope = {"P": shadow}
    exec(MUTATOR, scope)
    Value = scope["Value"]
    facade = shadow.PyClipGrade()
    records = []
    for hostile in (False, True):
        def v(number):
            return Value(number, (lambda: exec(action, scope)) if hostile else None)
        scope["v"] = v
        exec(build, scope)
        journal.reset()
        assert facade.PushTask(1, getattr(shadow, task), scope["E"], False) == S_OK
        pushed = journal.ops("PushEffect")
        assert len(pushed) == 1
        records.append(pushed[0]["args"][1:])
    assert records[1] == records[0]


def test_effect_replaced_under_the_reader_leaves_no_error_pending():
    body = MUTATOR + """
f = P.PyClipGrade()
E = {}
def shrink():
    E['Tmp'] = []
    E['Clr'] = 0
E['Tmp'] = [[Value(0, shrink), 1], [1, 2], [2, 3]]
E['Clr'] = [[0, 1], [1, 2]]
print(f.PushTask(1, P.PY_SET_WB, E, False))
"""
    code, out, err = run_child(body)
    assert code == 0, err
    assert out.split() == ["0"]
    assert "SystemError" not in err


def test_self_referencing_effect_is_read_once(shadow, journal):
    facade = shadow.PyClipGrade()
    items = [[0, 5]]
    items.append(items)
    effect = {"Tmp": items}
    effect["self"] = effect
    assert facade.PushTask(1, shadow.PY_SET_WB, effect, False) == S_OK
    record = journal.ops("PushEffect")[0]["args"][2]
    # The second item is the list itself: its elements are no numbers.
    assert [(e["time"], e["value"]) for e in record["vectors"][0]] == [(0, 5), (0, 0)]


# ------------------------------------------------------------ record fields


EMBEDDED_FIELDS = [("Brow", "left", "PointD"), ("Eye", "left", "PointD"), ("Nose", "top", "PointD"),
                   ("Mouth", "right", "PointD"), ("Ear", "bottom", "PointD")]


@pytest.mark.parametrize("record, field, kind", EMBEDDED_FIELDS)
def test_none_into_embedded_field_is_refused(record, field, kind):
    code, out, err = run_child("""
r = P.%s()
try:
    r.%s = None
except ValueError as e:
    print(e)
""" % (record, field))
    assert code == 0, err
    assert out.strip() == "invalid null reference in variable '%s' of type '%s'" % (field, kind)


def test_none_into_every_embedded_field_is_refused(shadow):
    """Every field whose getter is a record view refuses None by name."""
    refused = 0
    for name in dir(shadow):
        cls = getattr(shadow, name)
        if not isinstance(cls, type) or name.startswith("_") or name == "PyClipGrade":
            continue
        try:
            record = cls()
        except Exception:
            continue
        if not hasattr(record, "this"):
            continue
        for field, prop in vars(cls).items():
            if not isinstance(prop, property) or prop.fset is None:
                continue
            value = getattr(record, field)
            if not hasattr(value, "this") or field.startswith("p") or field.startswith("m_p"):
                continue
            with pytest.raises(ValueError) as caught:
                setattr(record, field, None)
            assert str(caught.value).startswith("invalid null reference in variable '%s' of type '" % field)
            refused += 1
    assert refused > 50


def test_array_of_another_length_is_refused(shadow):
    h = shadow.CHistogramDist()
    with pytest.raises(TypeError) as caught:
        h.m_pHisdist.HistogramR = shadow.ToneLevelSetting_ChannelPivot().nPivotY
    assert str(caught.value) == "in variable 'HistogramR' of type 'int [256]'"


def test_array_of_the_same_length_is_accepted(shadow):
    a, b = shadow.CHistogramDist(), shadow.CHistogramDist()
    a.m_pHisdist.HistogramR = b.m_pHisdist.HistogramG
    a.m_pHisdist.HistogramG = a.m_pHisdist.HistogramG


def test_short_array_into_long_field_does_not_read_past_it():
    code, out, err = run_child("""
h = P.CHistogramDist()
for i in range(200):
    try:
        h.m_pHisdist.HistogramR = P.ToneLevelSetting_ChannelPivot().nPivotY
    except TypeError as e:
        last = str(e)
print(last)
""")
    assert code == 0, err
    assert out.strip() == "in variable 'HistogramR' of type 'int [256]'"


def test_view_keeps_its_record_alive():
    code, out, err = run_child("""
import gc
views = [P.Eye().left for i in range(100)]
gc.collect()
filler = [P.Eye() for i in range(100)]
for v in views:
    v.x = 1.5
print(sum(v.x for v in views), sum(e.left.x for e in filler))
""")
    assert code == 0, err
    assert out.split() == ["150.0", "0.0"]


def test_array_view_keeps_its_record_alive(shadow):
    view = shadow.CHistogramDist().m_pHisdist.HistogramR
    gc.collect()
    target = shadow.CHistogramDist()
    target.m_pHisdist.HistogramR = view
    assert target.m_pHisdist.HistogramR is not None


# ------------------------------------------------------------ histograms


def test_histogram_released_twice_answers_with_an_error():
    code, out, err = run_child("""
h = P.CHistogramDist()
print(h.Release())
for call in (h.Release, h.AddRef, lambda: h.m_pHisdist):
    try:
        call()
    except ValueError as e:
        print(e)
""")
    assert code == 0, err
    assert out.split("\n")[:4] == [
        "0",
        "invalid null reference in method 'CHistogramDist_Release', argument 1 of type 'CHistogramDist *'",
        "invalid null reference in method 'CHistogramDist_AddRef', argument 1 of type 'CHistogramDist *'",
        "invalid null reference in method 'CHistogramDist_m_pHisdist_get', argument 1 of type 'CHistogramDist *'"]


def test_histogram_assigned_from_another_copies_its_values():
    code, out, err = run_child("""
a, b = P.CHistogramDist(), P.CHistogramDist()
b.m_pHisdist.nTotalCount = 7
a.m_pHisdist = b.m_pHisdist
b.m_pHisdist.nTotalCount = 8
print(a.m_pHisdist.nTotalCount, b.m_pHisdist.nTotalCount)
del a, b
print("done")
""")
    assert code == 0, err
    assert out.split() == ["7", "8", "done"]


def test_histogram_none_is_refused(shadow):
    h = shadow.CHistogramDist()
    with pytest.raises(ValueError) as caught:
        h.m_pHisdist = None
    assert str(caught.value) == "invalid null reference in variable 'm_pHisdist' of type 'HistogramDist *'"
    assert h.m_pHisdist.nTotalCount == 0


# ------------------------------------------------------------ pointer fields


def test_pointer_field_keeps_the_script_object(shadow):
    info = shadow.BrushMaskInfo()
    brush = shadow.tBrushSetting()
    info.pBrushArray = brush
    assert brush.thisown
    assert int(info.pBrushArray.this) == int(brush.this)


def test_pointer_field_object_lives_while_stored():
    code, out, err = run_child("""
import gc
info = P.BrushMaskInfo()
info.pBrushArray = P.tBrushSetting()
gc.collect()
filler = [P.tBrushSetting() for i in range(50)]
print(info.pBrushArray.nMaskID == -1)
info.pBrushArray = None
print(info.pBrushArray)
""")
    assert code == 0, err
    assert out.split() == ["True", "None"]


# ------------------------------------------------------------ two threads


def test_two_threads_pairing_lock_push_unlock_finish():
    code, out, err = run_child("""
import threading
f = P.PyClipGrade()
f.AddVideo(1, 0, 100, 1.0)
errors = []
def work():
    try:
        for i in range(200):
            f.LockEffectDataWriter(False)
            f.PushTask(1, P.PY_SET_WB, {'Tmp': [[i, 5000]]}, False)
            f.UnlockEffectDataWriter(False)
            f.RemoveVideo(7)
            f.RemoveAllVideo()
    except Exception as e:
        errors.append(e)
threads = [threading.Thread(target=work) for i in range(2)]
for t in threads: t.start()
for t in threads: t.join(30)
print(sum(t.is_alive() for t in threads), errors)
""")
    assert code == 0, err
    assert out.split() == ["0", "[]"]
