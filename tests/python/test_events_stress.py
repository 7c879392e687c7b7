"""Many events from the agent's thread to a script callable that is slow,
raises, is replaced and cleared, while other facades come and go: nothing is
lost or delivered twice while a callable is set, order holds, no frame is
left behind, nothing deadlocks."""

import os
import threading
import time

from event_agent import CACHE_FRAME_UPDATED, TRACKING_STATE, EventAgent, wait_for

# A shorter run where every instruction is slow (valgrind).
EVENTS = int(os.environ.get("PYCLIPGRADE_STRESS_EVENTS", "100000"))
CHUNK = 2000


class Recorder:
    def __init__(self, received):
        self.received = received

    def __call__(self, name, *values):
        sequence = values[-1]
        self.received.append(sequence)
        if sequence % 997 == 0:
            time.sleep(0.001)
        if sequence % 1999 == 0:
            raise RuntimeError("refused %d" % sequence)


def main_instance(journal):
    rings = [e for e in journal.ops("SetCallbackQueue", "DspMain") if e["args"] == [True]]
    return rings[-1]["instance"]


def post_range(agent, instance, first, last):
    for sequence in range(first, last):
        if sequence % 4 == 0:
            assert agent.post(CACHE_FRAME_UPDATED, 0, sequence, 1, 1, instance) == 0
        else:
            assert agent.post(TRACKING_STATE, sequence & 0x7FFF, sequence, 0, 0, instance) == 0


def test_a_hundred_thousand_events(shadow, journal, capfd):
    agent = EventAgent()
    live = agent.counter("framesLive")
    facade = shadow.PyClipGrade()
    instance = main_instance(journal)
    received = []
    first, second = Recorder(received), Recorder(received)
    facade.SetPyCallback(first)

    stop = threading.Event()
    churned = [0]

    def churn():
        # Other facades, each with its own agents and callback thread.
        while not stop.is_set():
            other = shadow.PyClipGrade()
            other.SetPyCallback(print)
            del other
            churned[0] += 1

    churner = threading.Thread(target=churn)
    churner.start()

    # First half: the callable is replaced now and then but always set.
    half = EVENTS // 2
    for start in range(0, half, CHUNK):
        post_range(agent, instance, start, min(start + CHUNK, half))
        facade.SetPyCallback(second if (start // CHUNK) % 2 else first)
        assert agent.wait_posted(instance, 60000) == 0
    assert wait_for(lambda: len(received) == half, 60)
    assert received == list(range(half))

    # Second half: the callable is also cleared for a while.
    cleared = []
    for start in range(half, EVENTS, CHUNK):
        post_range(agent, instance, start, min(start + CHUNK, EVENTS))
        if (start // CHUNK) % 5 == 0:
            facade.SetPyCallback(None)
            cleared.append(start)
            time.sleep(0.001)
            facade.SetPyCallback(first)
        assert agent.wait_posted(instance, 60000) == 0
    # The last event marks the end of delivery.
    facade.SetPyCallback(first)
    agent.post(TRACKING_STATE, 0, EVENTS, 0, 0, instance)
    assert wait_for(lambda: received and received[-1] == EVENTS, 60)
    stop.set()
    churner.join(60)
    assert not churner.is_alive()

    later = received[half:]
    assert later == sorted(set(later))   # order kept, nothing twice
    assert len(later) <= EVENTS - half + 1
    assert churned[0] > 0
    del facade
    assert wait_for(lambda: agent.counter("framesLive") == live, 10)
    assert capfd.readouterr().err.count("RuntimeError: refused") == len(
        [s for s in received if s % 1999 == 0])
