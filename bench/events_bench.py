"""Event delivery, render agent thread to the script's callable, beside a
queue.Queue hand-off between two Python threads measured in the same run.

Usage: events_bench.py <host folder>. Prints events per second for a burst
and the p50/p99 latency of single events (post to call), for both."""

import ctypes
import os
import queue
import statistics
import sys
import threading
import time

BURST = 20000
SINGLE = 2000


def percentile(values, fraction):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(fraction * len(ordered)))]


def agent_library(host):
    suffix = ".dll" if sys.platform == "win32" else ".so"
    lib = ctypes.CDLL(os.path.join(host, "KESdlls", "VXHvnDspAgent" + suffix))
    lib.RefAgent_PostEvent.restype = ctypes.c_int32
    lib.RefAgent_PostEvent.argtypes = [ctypes.c_int32, ctypes.c_int32, ctypes.c_int32, ctypes.c_int64,
                                       ctypes.c_int32, ctypes.c_int32]
    return lib


def measure_pump(host):
    import PyClipGrade
    lib = agent_library(host)
    facade = PyClipGrade.PyClipGrade()
    now = time.perf_counter_ns
    latencies = []
    done = threading.Event()
    count = [0]
    target = [0]

    def callback(name, first, posted):
        latencies.append(now() - posted)
        count[0] += 1
        if count[0] == target[0]:
            done.set()

    facade.SetPyCallback(callback)
    # Burst: post everything, time until the last call.
    target[0] = BURST
    started = now()
    for _ in range(BURST):
        lib.RefAgent_PostEvent(0, 1, 0, now(), 0, 0)
    done.wait(120)
    burst_seconds = (now() - started) / 1e9
    # Single events: one in flight at a time.
    latencies.clear()
    for _ in range(SINGLE):
        done.clear()
        count[0] = 0
        target[0] = 1
        lib.RefAgent_PostEvent(0, 1, 0, now(), 0, 0)
        done.wait(10)
    del facade
    return BURST / burst_seconds, latencies[:]


def measure_queue():
    now = time.perf_counter_ns
    handoff = queue.Queue(maxsize=2)   # the ring's bound
    latencies = []
    done = threading.Event()

    def consumer(total):
        for _ in range(total):
            posted = handoff.get()
            latencies.append(now() - posted)
        done.set()

    thread = threading.Thread(target=consumer, args=(BURST,))
    thread.start()
    started = now()
    for _ in range(BURST):
        handoff.put(now())
    done.wait(120)
    burst_seconds = (now() - started) / 1e9
    thread.join()
    return BURST / burst_seconds


def measure_queue_single_consumer():
    """Single-event latency with one long-lived consumer thread, as the pump has."""
    now = time.perf_counter_ns
    handoff = queue.Queue(maxsize=2)
    back = queue.Queue()
    latencies = []

    def consumer():
        while True:
            posted = handoff.get()
            if posted is None:
                return
            latencies.append(now() - posted)
            back.put(True)

    thread = threading.Thread(target=consumer)
    thread.start()
    for _ in range(SINGLE):
        handoff.put(now())
        back.get()
    handoff.put(None)
    thread.join()
    return latencies


def main():
    host = os.path.abspath(sys.argv[1])
    sys.path.insert(0, host)
    pump_rate, pump_single = measure_pump(host)
    queue_rate = measure_queue()
    queue_single = measure_queue_single_consumer()
    print("event delivery, agent thread -> Python callable, beside queue.Queue(maxsize=2) between two threads")
    print("  burst of %d: pump %.0f events/s, queue.Queue %.0f events/s, ratio pump/queue %.2f"
          % (BURST, pump_rate, queue_rate, pump_rate / queue_rate))
    for label, fraction in (("p50", 0.50), ("p99", 0.99)):
        pump = percentile(pump_single, fraction) / 1000.0
        peer = percentile(queue_single, fraction) / 1000.0
        print("  single events, %s latency: pump %.1f us, queue.Queue %.1f us, ratio pump/queue %.2f"
              % (label, pump, peer, pump / peer))
    print("  single events, mean latency: pump %.1f us, queue.Queue %.1f us"
          % (statistics.mean(pump_single) / 1000.0, statistics.mean(queue_single) / 1000.0))


if __name__ == "__main__":
    main()
