"""Track results read from the agent's queue and database into script lists,
the flush and delete members, and the track history bytes."""

import os

import pytest

from conftest import E_FAIL
from event_agent import EventAgent

PREFIX = "[PyClipGrade] "
QUEUE, DATABASE = 0, 1


@pytest.fixture
def agent(journal):
    return EventAgent()


@pytest.fixture
def facade(shadow, journal):
    made = shadow.PyClipGrade()
    journal.reset()
    return made


def ops(journal, since=0):
    return [(e["op"], e["args"]) for e in journal.entries()[since:]]


def mark(journal):
    """Where the journal stands; RefAgent_Reset would forget seeded results too."""
    return len(journal.entries())


def test_another_tracking_id_goes_straight_to_the_database(facade, agent, journal):
    agent.seed(QUEUE, 5, 1, 2, 100, 9.0, 9.0)
    agent.seed(DATABASE, 4, 1, 2, 100, 1.5, -2.25, [(0.5, 1.0, 2.0), (3.0, 4.0, 5.0)])
    since = mark(journal)
    assert facade.getTrackResult(4, 1, 2, 100) == [(1.5, -2.25), (0.5, 1.0, 2.0), (3.0, 4.0, 5.0)]
    assert ops(journal, since) == [("GetCurrentTrackingID", []), ("QueryMotionTrackingMaskInfo", [4, 1, 2, 100])]


def test_the_current_tracking_id_found_in_the_queue_asks_no_database(facade, agent, journal):
    agent.seed(QUEUE, 5, 1, 2, 100, 0.25, 0.75, [(1.0, 2.0, 3.0)])
    agent.seed(DATABASE, 5, 1, 2, 100, 8.0, 8.0)
    since = mark(journal)
    assert facade.getTrackResult(5, 1, 2, 100) == [(0.25, 0.75), (1.0, 2.0, 3.0)]
    assert ops(journal, since) == [("GetCurrentTrackingID", []), ("QueryTrackResultInQueue", [1, 2, 100])]


def test_a_queue_miss_tries_the_database(facade, agent, journal):
    agent.seed(QUEUE, 5, 1, 2, 100, 0.0, 0.0)
    agent.seed(DATABASE, 5, 1, 2, 200, 6.0, 7.0, [(1.0, 1.0, 1.0)])
    since = mark(journal)
    assert facade.getTrackResult(5, 1, 2, 200) == [(6.0, 7.0), (1.0, 1.0, 1.0)]
    assert ops(journal, since) == [("GetCurrentTrackingID", []), ("QueryTrackResultInQueue", [1, 2, 200]),
                            ("QueryMotionTrackingMaskInfo", [5, 1, 2, 200])]


def test_a_queue_success_without_an_entry_gives_none_and_asks_no_database(facade, agent, journal, trace_on,
                                                                          capfd, shadow):
    traced = shadow.PyClipGrade()
    agent.seed(QUEUE, 5, 1, 2, 100, 0.0, 0.0)
    journal.set_result("DspMain", "QueryTrackResultInQueue", 0)
    journal.set_result("DspMain", "GetCurrentTrackingID", 5)
    agent.seed(DATABASE, 5, 1, 2, 300, 6.0, 7.0)
    capfd.readouterr()
    since = mark(journal)
    assert traced.getTrackResult(5, 1, 2, 300) is None
    assert [op for op, _ in ops(journal, since)] == ["GetCurrentTrackingID", "QueryTrackResultInQueue"]
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::getTrackResult, Info. tracking_id=5, video_id=1, mask_id=2, time=300\n"
        + PREFIX + "PyClipGrade::getTrackResult, Error. QueryMotionTrackingMaskInfo fail\n")


def test_an_entry_without_a_list_tries_the_database(facade, agent, journal):
    agent.seed(QUEUE, 5, 1, 2, 100, 1.0, 1.0, count=-1)
    agent.seed(DATABASE, 5, 1, 2, 100, 2.0, 3.0, [(4.0, 5.0, 6.0)])
    since = mark(journal)
    assert facade.getTrackResult(5, 1, 2, 100) == [(2.0, 3.0), (4.0, 5.0, 6.0)]
    assert [op for op, _ in ops(journal, since)] == ["GetCurrentTrackingID", "QueryTrackResultInQueue",
                                              "QueryMotionTrackingMaskInfo"]


def test_a_database_miss_gives_none_with_the_log(facade, agent, trace_on, capfd, shadow):
    traced = shadow.PyClipGrade()
    capfd.readouterr()
    assert traced.getTrackResult(1, 2, 3, -(1 << 40)) is None
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::getTrackResult, Info. tracking_id=1, video_id=2, mask_id=3, time=%d\n" % -(1 << 40)
        + PREFIX + "PyClipGrade::getTrackResult, Error. QueryMotionTrackingMaskInfo fail\n")


def test_results_without_points(facade, agent):
    agent.seed(DATABASE, 3, 1, 2, 50, 0.5, 0.5)
    assert facade.getTrackResult(3, 1, 2, 50) == [(0.5, 0.5)]
    assert facade.getLatestTrackResult(1, 2, 3) == [50, (0.5, 0.5)]


def test_the_latest_result_is_the_one_of_the_highest_time(facade, agent, journal):
    agent.seed(DATABASE, 3, 1, 2, 50, 0.5, 0.5, [(1.0, 1.0, 1.0)])
    agent.seed(DATABASE, 3, 1, 2, 1 << 33, 1.5, 2.5, [(7.0, 8.0, 9.0), (0.0, -1.0, -2.0)])
    since = mark(journal)
    assert facade.getLatestTrackResult(1, 2, 3) == [1 << 33, (1.5, 2.5), (7.0, 8.0, 9.0), (0.0, -1.0, -2.0)]
    assert ops(journal, since) == [("QueryLatestMotionTrackingMaskInfo", [1, 2, 3])]


def test_the_latest_result_missing_gives_none_with_the_log(facade, trace_on, capfd, shadow):
    traced = shadow.PyClipGrade()
    capfd.readouterr()
    assert traced.getLatestTrackResult(1, 2, 3) is None
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::getLatestTrackResult, Info. video_id=1, mask_id=2, tracking_id=3\n"
        + PREFIX + "PyClipGrade::getLatestTrackResult, Error. QueryMotionTrackingMaskInfo fail\n")


def test_max_tracking_id(facade, agent, journal):
    assert facade.GetMaxTrackingID() == 0
    agent.seed(QUEUE, 12, 1, 1, 1, 0.0, 0.0)
    agent.seed(DATABASE, 30, 1, 1, 1, 0.0, 0.0)
    assert facade.GetMaxTrackingID() == 30


def test_max_tracking_id_failing_gives_none_without_a_log(facade, journal, trace_on, capfd, shadow):
    traced = shadow.PyClipGrade()
    journal.set_result("DspMain", "GetMaxTrackingID", E_FAIL)
    capfd.readouterr()
    assert traced.GetMaxTrackingID() is None
    assert capfd.readouterr().err == ""


def test_flush_moves_the_queue_into_the_database(facade, agent, journal):
    agent.seed(QUEUE, 2, 1, 1, 10, 1.0, 1.0)
    agent.seed(QUEUE, 2, 1, 1, 20, 2.0, 2.0)
    since = mark(journal)
    assert facade.FlushQueue2DBUntilPos(2, 1, 1, 15) is None
    assert facade.getTrackResult(9, 1, 1, 10) is None
    assert facade.getTrackResult(2, 1, 1, 10) == [(1.0, 1.0)]
    facade.ClearTrackResultQueue()
    assert ("ClearTrackResultQueue", []) in ops(journal, since)
    assert facade.getLatestTrackResult(1, 1, 2) == [10, (1.0, 1.0)]


def test_a_failing_flush_is_logged_and_answers_none(facade, journal, trace_on, capfd, shadow):
    traced = shadow.PyClipGrade()
    journal.set_result("DspMain", "FlushQueue2DBUntilPos", E_FAIL)
    capfd.readouterr()
    assert traced.FlushQueue2DBUntilPos(1, 2, 3, 4) is None
    assert capfd.readouterr().err == PREFIX + "PyClipGrade::FlushQueue2DBUntilPos, Error. FlushQueue2DBUntilPos Fail\n"


def test_copy_in_database_lines(facade, journal, trace_on, capfd, shadow):
    traced = shadow.PyClipGrade()
    capfd.readouterr()
    journal.reset()
    assert traced.copyTrackResultInDB(1, 2, 3) is None
    assert ops(journal) == [("CopyMTMaskInfoDB", [1, 2, 3])]
    assert capfd.readouterr().err == (
        PREFIX + "PyClipGrade::copyTrackResultInDB start \n"
        + PREFIX + "PyClipGrade::copyTrackResultInDB call m_dspAgent->CopyMTMaskInfoDB\n"
        + PREFIX + "PyClipGrade::copyTrackResultInDB end\n")


def test_deletes_answer_true_unless_the_agent_fails(facade, agent, journal):
    agent.seed(DATABASE, 1, 4, 5, 10, 0.0, 0.0)
    agent.seed(DATABASE, 1, 4, 5, 20, 0.0, 0.0)
    agent.seed(DATABASE, 1, 4, 5, 30, 0.0, 0.0)
    assert facade.DeleteMotionTrackingMaskInfoInterval(4, 5, 15, 25) is True
    assert facade.getTrackResult(1, 4, 5, 20) is None
    assert facade.DeleteMotionTrackingMaskInfoRange(4, 5, 30) is True
    assert facade.getTrackResult(1, 4, 5, 30) is None
    assert facade.getTrackResult(1, 4, 5, 10) == [(0.0, 0.0)]
    journal.set_result("DspMain", "DeleteMotionTrackingMaskInfoRange", E_FAIL)
    journal.set_result("DspMain", "DeleteMotionTrackingMaskInfoInterval", -1)
    assert facade.DeleteMotionTrackingMaskInfoRange(4, 5, 0) is False
    assert facade.DeleteMotionTrackingMaskInfoInterval(4, 5, 0, 1) is False


def test_plain_forwards(facade, journal):
    assert facade.DeleteTrackingKeyFrame(-7) is None
    assert facade.ClearCurTrackHistoryStream() is None
    assert ops(journal) == [("DeleteTrackingKeyFrame", [-7]), ("ClearCurTrackHistoryStream", [])]


def test_history_stream_round_trip_with_embedded_zeros(facade, journal):
    stream = b"\x00ab\x00\xff\x00"
    assert facade.SetTrackHistoryStream(stream, len(stream)) is None
    assert facade.GetTrackHistoryStream() == stream
    assert journal.ops("SetTrackHistoryStream")[0]["args"] == ["00616200ff00", 6]
    assert [e["op"] for e in journal.entries()][-2:] == ["GetTrackHistoryStream", "FreeTrackHistoryStream"]


def test_a_shorter_size_passes_only_that_many_bytes(facade, journal):
    facade.SetTrackHistoryStream(b"abcdef", 2)
    assert journal.ops("SetTrackHistoryStream")[0]["args"] == ["6162", 2]
    assert facade.GetTrackHistoryStream() == b"ab"


def test_a_size_past_the_string_is_held_to_it(facade, journal):
    facade.SetTrackHistoryStream(b"abc", 1000)
    facade.SetTrackHistoryStream(b"abc", -1)
    assert [e["args"] for e in journal.ops("SetTrackHistoryStream")] == [["616263", 3], ["", 0]]


def test_an_empty_history_reads_as_none(facade, journal):
    facade.ClearCurTrackHistoryStream()
    assert facade.GetTrackHistoryStream() is None
    journal.set_result("DspMain", "GetTrackHistoryStream", E_FAIL)
    facade.SetTrackHistoryStream(b"x", 1)
    streams = EventAgent().counter("streamsOut")
    assert facade.GetTrackHistoryStream() is None
    # Bytes the failing agent still handed out went back.
    assert EventAgent().counter("streamsOut") == streams


def test_history_stream_wrong_types_raise(facade):
    with pytest.raises(TypeError) as raised:
        facade.SetTrackHistoryStream(5, 1)
    assert str(raised.value) == "in method 'PyClipGrade_SetTrackHistoryStream', argument 2 of type 'char *'"


def test_without_an_agent(shadow, journal, trace_on, capfd, tmp_path):
    os.environ["PYCLIPGRADE_HOST_DIR"] = str(tmp_path)
    try:
        facade = shadow.PyClipGrade()
    finally:
        del os.environ["PYCLIPGRADE_HOST_DIR"]
    capfd.readouterr()
    assert facade.getTrackResult(1, 2, 3, 4) is None
    assert facade.getLatestTrackResult(1, 2, 3) is None
    assert facade.GetMaxTrackingID() is None
    assert facade.FlushQueue2DBUntilPos(1, 2, 3, 4) is None
    assert facade.copyTrackResultInDB(1, 2, 3) is None
    assert facade.DeleteMotionTrackingMaskInfoRange(1, 2, 3) is False
    assert facade.DeleteMotionTrackingMaskInfoInterval(1, 2, 3, 4) is False
    assert capfd.readouterr().err == "".join(PREFIX + line + "\n" for line in [
        "PyClipGrade::getTrackResult, Error. m_dspAgent is NULL",
        "PyClipGrade::getLatestTrackResult, Error. m_dspAgent is NULL",
        "PyClipGrade::GetMaxTrackingID, Error. m_dspAgent is NULL",
        "PyClipGrade::FlushQueue2DBUntilPos, Error. m_dspAgent is NULL",
        "PyClipGrade::copyTrackResultInDB start ",
        "PyClipGrade::getTrackResult, Error. m_dspAgent is NULL",
        "PyClipGrade::DeleteMotionTrackingMaskInfoRange, Error. m_dspAgent is NULL",
        "PyClipGrade::DeleteMotionTrackingMaskInfoInterval, Error. m_dspAgent is NULL",
    ])
    # The silent ones.
    facade.ClearTrackResultQueue()
    facade.DeleteTrackingKeyFrame(1)
    facade.SetTrackHistoryStream(b"a", 1)
    facade.ClearCurTrackHistoryStream()
    assert facade.GetTrackHistoryStream() is None
    assert capfd.readouterr().err == ""
    assert journal.entries() == []
