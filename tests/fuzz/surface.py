"""What the fuzzer knows of the module's surface: for every facade member a
generator of argument lists, and generators for record fields, record
constructors and the module's flat functions, taken from the vocabulary
tables. Every generator returns Python source, so that a call that crashes
can be saved as a script as it stands."""

import csv
import os
import re

HERE = os.path.dirname(os.path.abspath(__file__))
VOCABULARY = os.path.join(os.path.dirname(HERE), "data", "vocabulary")


def _table(name):
    with open(os.path.join(VOCABULARY, name)) as f:
        rows = [line.rstrip("\n").split("\t") for line in f if line.strip()]
    header = rows[0]
    header[0] = header[0].lstrip("# ")
    return [dict(zip(header, row + [""] * (len(header) - len(row)))) for row in rows[1:]]


RECORD_FIELDS = {}
for _row in _table("records.tsv"):
    RECORD_FIELDS.setdefault(_row["class"], []).append(_row)
EFFECT_KEYS = [row["text"] for row in _table("keys.tsv")]
TASK_NAMES = [row["name"] for row in _table("constants.tsv") if row["name"].startswith("PY_SET_")]


class Gen(object):
    """Source of valid and hostile values, drawn from one random stream."""

    INTEGERS = ["0", "1", "-1", "7", "255", "256", "65535", "2**31-1", "2**31", "-2**31", "-2**31-1",
                "2**32", "2**32-1", "2**63", "-2**63-1", "2**64", "10**30", "-10**30", "True", "False"]
    FLOATS = ["0.0", "-0.0", "0.5", "-1.5", "1e308", "-1e308", "5e-324", "float('nan')", "float('inf')",
              "float('-inf')", "3.4e38", "3.5e38"]
    TEXTS = ["''", "'abc'", "'a\\x00b'", "'\\udcff'", "'\\U0001F600' * 3", "'x' * 5000", "b''", "b'a\\x00b'",
             "'0x0'", "'0xdeadbeef'", "'PyClipGrade:0x1'", "bytearray(b'ab')"]
    OTHERS = ["None", "object()", "[]", "[[]]", "{}", "()", "deep(300)", "self_holding_list()",
              "self_holding_dict()", "{None: 1, (1, 2): [], 3.5: 'x', b'k': 1}", "{OddKey(): 1}",
              "EvilSequence('len')", "EvilSequence('getitem')", "EvilSequence('iter')",
              "EvilSequence('grow')", "EvilSequence('shrink')", "ShiftyList([1, 2])", "ShiftyDict(a=1)",
              "Raising()", "Value(3)", "Value(2.5)", "lambda: 0", "P", "f", "pooled(%d)", "pooled(-1)",
              "P.PointD()", "P.RectD()", "P.CHistogramDist()", "P.Eye().left", "P.CHistogramDist().m_pHisdist",
              "P.CHistogramDist().m_pHisdist.HistogramR", "P.ToneLevelSetting_ChannelPivot().nPivotY",
              "P.BrushMaskInfo()", "P.tBrushSetting()"]

    def __init__(self, rng, records):
        self.rng = rng
        self.records = records

    def choice(self, items):
        return self.rng.choice(items)

    def integer(self):
        if self.rng.random() < 0.3:
            return str(self.rng.randint(-5, 300))
        return self.choice(self.INTEGERS)

    def number(self):
        return self.choice([self.integer, lambda: self.choice(self.FLOATS)])()

    def record(self):
        return "P.%s()" % self.choice(self.records)

    def any(self):
        roll = self.rng.random()
        if roll < 0.25:
            return self.integer()
        if roll < 0.4:
            return self.choice(self.FLOATS)
        if roll < 0.5:
            return self.choice(self.TEXTS)
        if roll < 0.6:
            return self.record()
        value = self.choice(self.OTHERS)
        return value % self.rng.randint(0, 99) if "%d" in value else value

    def video(self):
        return self.choice([self.integer, self.any])() if self.rng.random() < 0.3 else str(self.rng.randint(0, 4))

    def boolish(self):
        return self.choice(["False", "True", "0", "1", "2", "-1"]) if self.rng.random() < 0.8 else self.any()

    def buffer(self):
        """An image buffer: a mask the facade makes, a cache slot, or anything."""
        if self.rng.random() < 0.6:
            return self.choice(["keep(f.Selection_PointToMask([(0, 0, 3), (1, 2, 4), (-1, -1, -1)], 8, 8, False))",
                                "keep(f.Selection_PointToMask([(0, 0, 1)], 1, 1, True))",
                                "f.GetCacheFrame()", "None"])
        return self.any()

    def runs(self):
        """A run list: well formed, badly formed, or anything."""
        if self.rng.random() < 0.6:
            items = ["(%s, %s, %s)" % (self.integer(), self.integer(), self.integer())
                     for _ in range(self.rng.randint(0, 5))]
            if self.rng.random() < 0.5:
                items.append("(-1, -1, -1)")
            return "[%s]" % ", ".join(items)
        return self.any()

    def positions(self):
        """Stroke positions: a list of (x, y) pairs, or anything."""
        if self.rng.random() < 0.7:
            return "[%s]" % ", ".join("(%s, %s)" % (self.integer(), self.integer())
                                      for _ in range(self.rng.randint(0, 6)))
        return self.any()

    def task(self):
        if self.rng.random() < 0.85:
            return "P." + self.choice(TASK_NAMES)
        return self.choice([self.integer, self.any])()

    def leaf(self, holder):
        """A value inside an effect: a number, or one whose conversion
        changes the effect `holder` under the reader."""
        roll = self.rng.random()
        if roll < 0.55:
            return self.number()
        if roll < 0.8:
            action = self.choice(["%s.clear()" % holder if holder == "E" else "wipe(%s)" % holder,
                                  "wipe(%s)" % holder, "E.update({k: 0 for k in list(E)})"
                                  if holder == "E" else "wipe(E)", "keep(%s)" % holder])
            return "Value(%s, lambda: %s)" % (self.number(), action)
        return self.any()

    def keyframes(self, holder):
        items = []
        for _ in range(self.rng.randint(0, 4)):
            shape = self.rng.random()
            if shape < 0.6:
                item = [self.leaf(holder) for _ in range(self.rng.randint(1, 3))]
                items.append("[%s]" % ", ".join(item))
            elif shape < 0.75:
                pivots = ", ".join("(%s, %s)" % (self.leaf(holder), self.leaf(holder))
                                   for _ in range(self.rng.randint(0, 3)))
                items.append("[%s, [%s], %s]" % (self.leaf(holder), pivots, self.leaf(holder)))
            elif shape < 0.9:
                tup = ", ".join(self.leaf(holder) for _ in range(self.choice([3, 5, 7, 2])))
                items.append("[%s, (%s,), 2]" % (self.leaf(holder), tup) if tup else "[0, (), 2]")
                items.append("(%s,)" % tup)
            else:
                items.append(self.any())
        if self.rng.random() < 0.2:
            # bands: a list of keyframe lists
            return "[%s]" % ", ".join("[%s]" % ", ".join(items) for _ in range(self.rng.randint(1, 9)))
        return "[%s]" % ", ".join(items)

    def effect_dict(self, holder):
        lines = []
        for _ in range(self.rng.randint(0, 5)):
            if self.rng.random() < 0.9:
                key = repr(self.choice(EFFECT_KEYS))
            else:
                key = self.choice([self.integer, lambda: self.choice(self.FLOATS + self.TEXTS[:-1] + ["None"])])()
            roll = self.rng.random()
            if roll < 0.75:
                value = self.keyframes(holder)
            elif roll < 0.85:
                value = "(%s, %s, %s)" % (self.leaf(holder), self.leaf(holder), self.leaf(holder))
            elif roll < 0.9:
                value = "{'TCurvRPts': %s, 'TCurvGPts': %s}" % (self.keyframes(holder), self.keyframes(holder))
            else:
                value = self.leaf(holder)
            lines.append("%s[%s] = %s" % (holder, key, value))
        return lines

    def effect(self):
        """Statements that build E, the effect to push."""
        roll = self.rng.random()
        if roll < 0.55:
            return ["E = {}"] + self.effect_dict("E")
        if roll < 0.8:
            lines = ["E = []"]
            for index in range(self.rng.randint(0, 3)):
                lines.append("D%d = {'MskID': %s}" % (index, self.leaf("E")))
                lines += self.effect_dict("D%d" % index)
                lines.append("E.append(D%d)" % index)
            return lines
        if roll < 0.9:
            lines = ["E = {}", "E[P.%s] = {}" % self.choice(["PY_SET_TONE_CURVE_R", "PY_SET_TONE_CURVE_G",
                                                             "PY_SET_TONE_CURVE_B"])]
            lines.append("E[list(E)[0]]['TCurvRPts'] = %s" % self.keyframes("E"))
            return lines
        return ["E = %s" % self.any()]


def _call(method, *args):
    return "f.%s(%s)" % (method, ", ".join(args))


def _push(gen):
    return gen.effect() + ["keep(f.PushTask(%s, %s, E, %s))" % (gen.video(), gen.task(), gen.boolish())]


def _args(gen, makers):
    """One argument list: mostly of the right kinds, sometimes any value,
    sometimes one too few or too many."""
    args = [maker() if gen.rng.random() < 0.85 else gen.any() for maker in makers]
    roll = gen.rng.random()
    if roll < 0.05 and args:
        args.pop()
    elif roll < 0.1:
        args.append(gen.any())
    return args


def _facade_args(*kinds):
    def generate(gen, name):
        makers = [getattr(gen, kind) for kind in kinds]
        return [_call(name, *_args(gen, makers))]
    return generate


def _new_facade(gen, name):
    makers = [lambda: gen.choice(["f.GetDspAgentPtr()", "keep(f).GetDspAgentPtr()", "None", "'0x0'",
                                  "'x'", gen.any()]),
              gen.boolish, gen.boolish,
              lambda: gen.choice(["u'lib'", "u''", "None", gen.any()]),
              lambda: gen.choice(["u'Software\\\\Key'", "u''", gen.any()])]
    count = gen.rng.randint(0, 5)
    return ["keep(P.PyClipGrade(%s))" % ", ".join(_args(gen, makers[:count]))]


# Every facade member and the generator of its calls. A member the module
# has and this table lacks fails test_fuzz_surface.
FACADE_MEMBERS = {
    "__init__": _new_facade,
    "GetDspAgentPtr": _facade_args(),
    "PushTask": lambda gen, name: _push(gen),
    "ClearTask": _facade_args("video", "boolish"),
    "AddVideo": _facade_args("video", "integer", "integer", "number"),
    "UpdateVideo": _facade_args("video", "integer", "integer", "number"),
    "RemoveVideo": _facade_args("video"),
    "RemoveAllVideo": _facade_args(),
    "SetDBMgr": _facade_args("any", "any"),
    "LockEffectDataWriter": _facade_args("boolish"),
    "UnlockEffectDataWriter": _facade_args("boolish"),
    "DumpTask": _facade_args("boolish"),
    "SetFrameRate": _facade_args("number"),
    "SetDspVideoID": _facade_args("video"),
    "GetDspVideoID": _facade_args(),
    "SetOverUnderExposureImage": _facade_args("boolish"),
    "AddMaskInfo": lambda gen, name: gen.effect() + ["keep(f.AddMaskInfo(%s, %s, E, %s))" % (
        gen.video(), gen.task(), gen.boolish())],
    "SetPyCallback": lambda gen, name: [_call(name, gen.choice(["lambda *a: None", "None", "print", "keep",
                                                                "lambda *a: 1 / 0", gen.any()]))],
    "SetCacheFrame": _facade_args("any"),
    "GetCacheFrame": _facade_args(),
    "SetCachePureFrame": _facade_args("any"),
    "GetCachePureFrame": _facade_args(),
    "SetCacheFrameOnDspAgent": _facade_args("video", "integer", "boolish"),
    "SetCacheFramePlaying": _facade_args("any"),
    "GetCacheFramePlaying": _facade_args(),
    "SetCacheFramePlayingOnDspAgent": _facade_args("boolish", "integer"),
    "FlushQueue2DBUntilPos": _facade_args("integer", "integer", "integer", "integer"),
    "ClearTrackResultQueue": _facade_args(),
    "GetMaxTrackingID": _facade_args(),
    "getTrackResult": _facade_args("integer", "video", "integer", "integer"),
    "getLatestTrackResult": _facade_args("video", "integer", "integer"),
    "GetTrackHistoryStream": _facade_args(),
    "SetTrackHistoryStream": _facade_args("any", "integer"),
    "DeleteTrackingKeyFrame": _facade_args("integer"),
    "ClearCurTrackHistoryStream": _facade_args(),
    "copyTrackResultInDB": _facade_args("integer", "integer", "integer"),
    "DeleteMotionTrackingMaskInfoRange": _facade_args("integer", "integer", "integer"),
    "DeleteMotionTrackingMaskInfoInterval": _facade_args("integer", "integer", "integer", "integer"),
    "ResizeImageBuffer": _facade_args("buffer", "integer", "integer"),
    "DumpIImageBuffer": _facade_args("buffer"),
    "Selection_MaskToPoint": _facade_args("buffer", "any"),
    "Selection_PointToMask": _facade_args("runs", "integer", "integer", "boolish"),
    "Selection_MaskCorrection": lambda gen, name: [_call(name, *_args(gen, [gen.buffer, gen.any][
        :gen.rng.randint(1, 2)]))],
    "Selection_ScaleUSSelectionList": _facade_args("runs", "integer", "integer", "integer", "integer"),
    "Selection_Initialize": _facade_args("buffer", "runs"),
    "Selection_Uninitialize": _facade_args(),
    "Selection_MagicSelect": _facade_args("positions", "integer", "boolish", "boolish", "boolish"),
    "Selection_ClearStrokeHistory": _facade_args(),
    "Selection_Undo": _facade_args("integer"),
    "Selection_Redo": _facade_args("integer"),
    "Manual_Initialize": _facade_args("runs", "integer", "integer"),
    "Manual_Uninitialize": _facade_args(),
    "Manual_UpdateStroke": _facade_args("positions", "integer", "boolish", "boolish"),
    "ApplyEffectOnBuffer": _facade_args("video", "integer", "buffer", "integer", "video"),
    "SetLUT": lambda gen, name: [_call(name, *_args(gen, [
        lambda: gen.choice(["[%s]" % gen.video(), "[]", "[%s, %s]" % (gen.video(), gen.any()), gen.any()]),
        lambda: gen.choice(["2", "17", "-1", gen.any()]),
        lambda: gen.choice(["[0.0, 0.0, 0.0]", "[0.0, 0.0]", "[%s, %s, %s]" % (gen.any(), gen.any(), gen.any()),
                            gen.any()]),
        lambda: gen.choice(["[1.0, 1.0, 1.0]", "[1.0, 1.0, 1.0, 1.0]", gen.any()]),
        lambda: gen.choice(["[0.5] * 24", "[]", "[%s] * 81" % gen.any(), "list(range(%d))" % gen.rng.randint(0, 200),
                            gen.any()]),
        gen.boolish]))],
    "ClearLUT": _facade_args("any", "boolish"),
    "ApplyLUTOnBuffer": _facade_args("video", "buffer"),
    "Query_WBDropInfo": _facade_args("integer", "buffer", "integer", "integer", "integer", "integer"),
    "Run_Query_TATMapInfoTask": _facade_args("integer", "integer", "buffer", "integer", "integer", "any"),
    "Query_TATMapInfo": _facade_args("integer", "buffer", "integer", "integer"),
    "Query_ToneTATMapInfo": _facade_args("integer", "buffer", "integer", "integer"),
    "Query_ToneMapInfo": lambda gen, name: [_call(name, gen.choice([
        "{'TCurvPts': [(0.25, 0.5), (0.75, 0.5)]}", "{'TCurvPts': [(0.1, 0.2)] * 25}",
        "{'TCurvPts': %s}" % gen.any(), "{}", gen.any()]))],
    "Query_ToneMapInfoForEngine": _facade_args("any"),
    "Query_InterpolatedToneMapInfo": _facade_args("video", "integer"),
    "GetHistogramInfo": lambda gen, name: ["H = keep(f.GetHistogramInfo())",
                                           gen.choice(["H.Release()", "H.AddRef()", "H.m_pHisdist.nTotalCount"])],
    "GetToneCurveHistogramInfo": lambda gen, name: ["H = keep(f.GetToneCurveHistogramInfo())",
                                                    gen.choice(["H.Release()", "H.m_pHisdist"])],
}


def constructible_records(shadow):
    """The record classes a script can make with no arguments."""
    names = []
    for name in sorted(RECORD_FIELDS):
        try:
            getattr(shadow, name)()
        except Exception:
            continue
        names.append(name)
    return names


def record_field_call(gen, shadow):
    """Sets or reads one field of a record made here or kept earlier."""
    name = gen.choice(gen.records)
    field = gen.choice(RECORD_FIELDS[name])["field"]
    target = "P.%s()" % name if gen.rng.random() < 0.7 else "pooled(%d)" % gen.rng.randint(0, 99)
    roll = gen.rng.random()
    if roll < 0.3:
        return ["R = keep(%s)" % target, "keep(R.%s)" % field]
    if roll < 0.45:
        # a view taken, its record dropped, the view used
        return ["V = keep(%s.%s)" % (target, field), "gc.collect()", "R2 = P.%s()" % name,
                "R2.%s = V" % field]
    if roll < 0.6:
        source = gen.choice(gen.records)
        return ["R = %s" % target, "R.%s = P.%s().%s" % (field, source, gen.choice(RECORD_FIELDS[source])["field"])]
    return ["R = keep(%s)" % target, "R.%s = %s" % (field, gen.any())]


def constructor_call(gen, shadow):
    name = gen.choice(gen.records + ["CHistogramDist"])
    args = [gen.any() for _ in range(gen.rng.choice([0, 0, 0, 1, 1, 2, 3, 4, 5]))]
    lines = ["keep(P.%s(%s))" % (name, ", ".join(args))]
    if name == "CHistogramDist" and gen.rng.random() < 0.5:
        lines = ["H = keep(P.CHistogramDist())"] + [gen.choice(["H.Release()", "H.AddRef()", "H.m_pHisdist",
                                                                "H.m_pHisdist = pooled(%d)" % gen.rng.randint(0, 9),
                                                                "H.m_pHisdist = None", "del H", "gc.collect()"])
                                                    for _ in range(gen.rng.randint(1, 4))]
    return lines


# Flat entries that rebind the module's own class table: not script surface.
INTERNAL_FUNCTIONS = ("_swigregister", "_swiginit")


def module_functions(module):
    return sorted(name for name in dir(module)
                  if not name.startswith("_") and callable(getattr(module, name)) and
                  not isinstance(getattr(module, name), type) and not name.endswith(INTERNAL_FUNCTIONS))


# For each record type, the (record, field) pairs that embed one: where a
# view of that type comes from.
EMBEDDED_IN = {}
for _name, _rows in RECORD_FIELDS.items():
    for _row in _rows:
        if _row["embedded"] == "1":
            EMBEDDED_IN.setdefault(_row["type"], []).append((_name, _row["field"]))


def record_of(gen, name):
    """Source of an object of record class `name`: made, a view into
    another record, or kept from earlier."""
    sources = ["pooled(%d)" % gen.rng.randint(0, 99)]
    if name in gen.records:
        sources += ["P.%s()" % name] * 2
    sources += ["P.%s().%s" % pair for pair in EMBEDDED_IN.get(name, []) if pair[0] in gen.records][:3]
    return gen.choice(sources)


def module_function_call(gen, functions):
    """A flat entry, its object often of the class it belongs to (a view or a
    made record), the object used again afterwards."""
    name = gen.choice(functions)
    args = [gen.any() for _ in range(gen.rng.choice([0, 1, 1, 2, 2, 3]))]
    owner = name[len("delete_"):] if name.startswith("delete_") else name.split("_")[0]
    if owner in RECORD_FIELDS and gen.rng.random() < 0.7:
        lines = ["O = keep(%s)" % record_of(gen, owner)]
        lines.append("keep(M.%s(%s))" % (name, ", ".join(["O"] + args[1:])))
        lines.append("keep(O.%s)" % gen.choice(RECORD_FIELDS[owner])["field"])
        return lines
    return ["keep(M.%s(%s))" % (name, ", ".join(args))]


# Members that wait on the agent or change what other threads read.
# The writer lock itself is only taken in balanced pairs below: a script
# thread that keeps it blocks the others by design.
THREADED_MEMBERS = ("PushTask", "ClearTask", "RemoveVideo", "RemoveAllVideo", "AddVideo", "DumpTask",
                    "SetDspVideoID")


def threads_call(gen):
    """Two to four script threads, each running a few facade calls in a
    loop, the writer lock taken and given back around some of them."""
    lines = []
    names = []
    for index in range(gen.rng.randint(2, 4)):
        body = []
        for _ in range(gen.rng.randint(1, 3)):
            member = gen.choice(THREADED_MEMBERS)
            calls = FACADE_MEMBERS[member](gen, member)
            if gen.rng.random() < 0.5:
                calls = ["f.LockEffectDataWriter(False)", "try:"] + ["    " + c for c in calls] + \
                        ["finally:", "    f.UnlockEffectDataWriter(False)"]
            body += calls
        lines.append("def work%d():" % index)
        lines += ["    " + line for line in body]
        names.append("work%d" % index)
    lines.append("run_threads([%s], %d)" % (", ".join(names), gen.rng.randint(1, 20)))
    # A facade of their own: the shared one's writer lock may be kept by an
    # earlier call of the main thread, which would block them by design.
    return ["g = P.PyClipGrade()"] + [re.sub(r"\bf\.", "g.", line) for line in lines]
