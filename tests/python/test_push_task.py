"""From an effect dictionary through the task map, the converter and the
version stamp to the agent's PushEffect."""

import pytest

from conftest import E_FAIL, E_INVALIDARG, E_POINTER, S_OK

PY_SET_CLARITY = 12
FUNCTION_SET_CLARITY = 225


@pytest.fixture
def facade(shadow):
    return shadow.PyClipGrade()


def pushed(journal):
    return [e["args"] for e in journal.ops("PushEffect")]


def keys(entries):
    return [(k["time"], k["value"], k["interp"]) for k in entries]


def test_clarity_keyframes_reach_the_agent(facade, journal):
    effect = {"Clr": [[0, 0], [1200, 35], [2400, -50, 1]]}
    assert facade.PushTask(7, PY_SET_CLARITY, effect, False) == S_OK
    (args,) = pushed(journal)
    assert args[0] == 7
    assert args[1] == FUNCTION_SET_CLARITY
    record = args[2]
    assert record["version"] == 9
    assert record["word"] == 0
    assert len(record["vectors"]) == 1
    assert keys(record["vectors"][0]) == [(0, 0, 2), (1200, 35, 2), (2400, -50, 1)]


def test_effect_without_keys_pushes_empty_vectors(facade, journal):
    assert facade.PushTask(1, PY_SET_CLARITY, {}, False) == S_OK
    assert pushed(journal)[0][2] == {"version": 9, "word": 0, "vectors": [[]]}


@pytest.mark.parametrize("value", [[], "Clr", 35, {"a": 1}, None])
def test_value_that_is_no_list_or_empty_is_an_empty_vector(facade, journal, value):
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": value}, False) == S_OK
    assert pushed(journal)[0][2]["vectors"] == [[]]


def test_interpolation_defaults_to_two_and_is_read_from_third_element(facade, journal):
    effect = {"Clr": [[10, 1], [20, 2, 2], [30, 3, 9, 9], [40, 4, 0], [50, 5, 7]]}
    assert facade.PushTask(1, PY_SET_CLARITY, effect, False) == S_OK
    assert keys(pushed(journal)[0][2]["vectors"][0]) == [(10, 1, 2), (20, 2, 2), (30, 3, 2), (40, 4, 0), (50, 5, 7)]


def test_list_order_is_kept_even_when_descending(facade, journal):
    effect = {"Clr": [[3000, 3], [2000, 2], [1000, 1], [2000, 9]]}
    facade.PushTask(1, PY_SET_CLARITY, effect, False)
    assert keys(pushed(journal)[0][2]["vectors"][0]) == [(3000, 3, 2), (2000, 2, 2), (1000, 1, 2), (2000, 9, 2)]


def test_sixty_four_bit_times_pass_unchanged(facade, journal):
    effect = {"Clr": [[-(1 << 63), 1], [(1 << 63) - 1, 2]]}
    facade.PushTask(1, PY_SET_CLARITY, effect, False)
    assert keys(pushed(journal)[0][2]["vectors"][0]) == [(-(1 << 63), 1, 2), ((1 << 63) - 1, 2, 2)]


def test_values_are_not_clamped_or_scaled(facade, journal):
    effect = {"Clr": [[0, 100000], [1, -(1 << 31)], [2, (1 << 31) - 1]]}
    facade.PushTask(1, PY_SET_CLARITY, effect, False)
    assert [k["value"] for k in pushed(journal)[0][2]["vectors"][0]] == [100000, -(1 << 31), (1 << 31) - 1]


def test_element_of_wrong_type_leaves_field_zero_and_keeps_keyframe(facade, journal):
    effect = {"Clr": [["late", 5], [100, 2.5], [200, "x", "y"], [300], [400, 4, 1.5]]}
    assert facade.PushTask(1, PY_SET_CLARITY, effect, False) == S_OK
    assert keys(pushed(journal)[0][2]["vectors"][0]) == [(0, 5, 2), (100, 0, 2), (200, 0, 2), (300, 0, 2), (400, 4, 2)]


def test_item_that_is_not_a_list_is_skipped(facade, journal):
    effect = {"Clr": [(5, 6), [10, 1], 7]}
    assert facade.PushTask(1, PY_SET_CLARITY, effect, False) == S_OK
    assert keys(pushed(journal)[0][2]["vectors"][0]) == [(10, 1, 2)]


@pytest.mark.parametrize("code, version", [
    (None, 9), (16, 9), (9, 9), (8, 9), (0, 9), (-1, 9),
    (32, 3), (48, 3), (64, 4), (80, 5), (96, 6), (112, 7), (128, 9),
])
def test_effect_version_stamp(facade, journal, code, version):
    effect = {"Clr": [[0, 1]]}
    if code is not None:
        effect["EffVer"] = code
    facade.PushTask(1, PY_SET_CLARITY, effect, False)
    assert pushed(journal)[0][2]["version"] == version


def test_effect_version_that_does_not_parse_stays_latest(facade, journal):
    facade.PushTask(1, PY_SET_CLARITY, {"EffVer": "48"}, False)
    assert pushed(journal)[0][2]["version"] == 9


def test_dict_subclass_is_stamped(facade, journal):
    class Effect(dict):
        pass
    facade.PushTask(1, PY_SET_CLARITY, Effect(EffVer=64, Clr=[[1, 2]]), False)
    record = pushed(journal)[0][2]
    assert record["version"] == 4
    assert keys(record["vectors"][0]) == [(1, 2, 2)]


# Every task ID that has a mapping, with its FUNCTION_ID.
TASK_MAP = {
    2: 33, 3: 17, 4: 65, 8: 97, 9: 129, 10: 1048737, 11: 1048737, 12: 225, 16: 289, 18: 305, 19: 257,
    20: 113, 21: 321, 22: 1048737, 23: 385, 25: 545, 26: 1049153, 27: 369, 31: 593, 32: 705, 33: 737,
    98: 49, 99: 81, 100: 241, 101: 273, 102: 481, 128: 401, 130: 433, 161: 561, 162: 673, 163: 689,
    164: 721,
}
LEVEL_TASKS = (8, 21)


def test_task_map_over_the_whole_range(facade, journal):
    """Each mapped task reaches the agent under its FUNCTION_ID, the level
    tasks are refused at the dispatch, every other ID has no mapping."""
    seen = {}
    for task in range(-2, 170):
        journal.reset()
        result = facade.PushTask(1, task, {}, False)
        functions = [e["args"][1] for e in journal.ops("PushEffect")]
        seen[task] = (result, functions)
    expected = {}
    for task in range(-2, 170):
        if task in LEVEL_TASKS:
            expected[task] = (E_INVALIDARG, [])
        elif task in TASK_MAP:
            expected[task] = (S_OK, [TASK_MAP[task]])
        else:
            expected[task] = (E_FAIL, [])
    assert seen == expected


@pytest.mark.parametrize("task", [1, 5, 0, -1, 165, 1000, 13, 14, 15, 17, 24, 97, 129, 160])
def test_unmapped_task_is_a_general_failure(facade, journal, task):
    assert facade.PushTask(1, task, {"Clr": [[0, 1]]}, False) == E_FAIL
    assert pushed(journal) == []


@pytest.mark.parametrize("task", [8, 21])
def test_level_tasks_pass_the_map_and_have_no_converter(facade, journal, task):
    assert facade.PushTask(1, task, {}, False) == E_INVALIDARG
    assert pushed(journal) == []


def test_buffer_agent_chosen_by_the_bool(facade, journal):
    assert facade.PushTask(4, PY_SET_CLARITY, {"Clr": [[0, 1]]}, True) == S_OK
    assert [e["agent"] for e in journal.ops("PushEffect")] == ["DspBuf"]


def test_missing_buffer_agent_is_null_pointer_even_with_main_agent(shadow, journal):
    first = shadow.PyClipGrade()
    second = shadow.PyClipGrade(first.GetDspAgentPtr(), 0)
    assert second.PushTask(1, PY_SET_CLARITY, {}, True) == E_POINTER
    assert pushed(journal) == []


def test_agent_refusal_is_not_reported(facade, journal):
    journal.set_result("*", "PushEffect", -2147467259)
    assert facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False) == S_OK
    assert len(pushed(journal)) == 1


def test_pushing_twice_pushes_two_records(facade, journal):
    facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1]]}, False)
    facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 2]]}, False)
    assert [keys(a[2]["vectors"][0]) for a in pushed(journal)] == [[(0, 1, 2)], [(0, 2, 2)]]


def test_task_id_argument_conversion(facade):
    with pytest.raises(TypeError) as caught:
        facade.PushTask(1, "12", {}, False)
    assert str(caught.value) == "in method 'PyClipGrade_PushTask', argument 3 of type 'long'"


def test_negative_video_id_is_an_overflow(facade):
    with pytest.raises(OverflowError) as caught:
        facade.PushTask(-1, PY_SET_CLARITY, {}, False)
    assert str(caught.value) == "in method 'PyClipGrade_PushTask', argument 2 of type 'UINT'"


@pytest.mark.parametrize("flag, agent", [(0, "DspMain"), (1, "DspBuf"), (2, "DspBuf"), (False, "DspMain")])
def test_bool_argument_takes_integers(facade, journal, flag, agent):
    assert facade.PushTask(1, PY_SET_CLARITY, {}, flag) == S_OK
    assert [e["agent"] for e in journal.ops("PushEffect")] == [agent]


def test_bool_argument_refuses_other_types(facade):
    with pytest.raises(TypeError) as caught:
        facade.PushTask(1, PY_SET_CLARITY, {}, "yes")
    assert str(caught.value) == "in method 'PyClipGrade_PushTask', argument 5 of type 'bool'"


def test_replaced_record_is_freed_with_its_entries(shadow, journal):
    facade = shadow.PyClipGrade()
    held, freed, entries = (journal.counter(n) for n in ("recordsHeld", "recordsFreed", "entriesFreed"))
    facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 1], [10, 2], [20, 3]]}, False)
    assert journal.counter("recordsHeld") == held + 1
    facade.PushTask(1, PY_SET_CLARITY, {"Clr": [[0, 4]]}, False)
    assert journal.counter("recordsHeld") == held + 1
    assert journal.counter("recordsFreed") == freed + 1
    assert journal.counter("entriesFreed") == entries + 3


def test_deleted_facade_leaves_no_record_or_agent(shadow, journal):
    agents, held = journal.counter("agentsLive"), journal.counter("recordsHeld")
    facade = shadow.PyClipGrade()
    for clip in range(4):
        facade.PushTask(clip, PY_SET_CLARITY, {"Clr": [[0, clip]]}, clip % 2 == 1)
    assert journal.counter("agentsLive") == agents + 2
    assert journal.counter("recordsHeld") == held + 4
    del facade
    assert journal.counter("agentsLive") == agents
    assert journal.counter("recordsHeld") == held
