#!/usr/bin/python3
"""Hostile-script fuzzer of the module.

Each batch of calls runs in a child interpreter. The child writes every call
(Python source) to the batch log before it makes it, so when the child dies
by a signal, hangs, or a call returns with an error left pending
(SystemError), the calls of the batch are cut down to the fewest that still
do it and saved as a reproducer script.

    fuzz.py --seconds 60 [--build DIR] [--seed N] [--findings DIR]

prints the calls made per target and exits 1 when anything was found.
"""

import argparse
import collections
import json
import os
import random
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
REPO = os.path.dirname(os.path.dirname(HERE))
SEPARATOR = "# ----\n"
SYSTEM_ERROR_EXIT = 3
TARGETS = ("facade", "record field", "constructor", "module function", "threads")


def prelude(host):
    return ("import gc, os, sys\nsys.path[:0] = [os.environ.get('PYCLIPGRADE_HOST', %r), %r]\n"
            "import PyClipGrade as P\nimport _PyClipGrade as M\nfrom hostile import *\n"
            "f = P.PyClipGrade()\n" % (host, HERE))


def generate_calls(seed, count, module, shadow):
    """`count` calls of the batch `seed` as (target, member, source)."""
    import surface
    rng = random.Random(seed)
    records = surface.constructible_records(shadow)
    gen = surface.Gen(rng, records)
    functions = surface.module_functions(module)
    facade_members = sorted(surface.FACADE_MEMBERS)
    calls = []
    for _ in range(count):
        target = rng.choice(TARGETS)
        if target == "facade":
            member = rng.choice(facade_members)
            lines = surface.FACADE_MEMBERS[member](gen, member)
        elif target == "record field":
            member, lines = "fields", surface.record_field_call(gen, shadow)
        elif target == "constructor":
            member, lines = "constructors", surface.constructor_call(gen, shadow)
        elif target == "threads":
            member, lines = "threads", (surface.threads_call(gen) if rng.random() < 0.2 else None)
            if lines is None:
                # Threads are slow to start: fewer of them than other calls.
                target, member, lines = "module function", "functions", surface.module_function_call(gen, functions)
        else:
            member, lines = "functions", surface.module_function_call(gen, functions)
        calls.append((target, member, "\n".join(lines) + "\n"))
    return calls


def run_calls(sources, namespace, log=None):
    """Runs each source; returns the index of one that left an error
    pending (SystemError), or None."""
    for index, source in enumerate(sources):
        if log is not None:
            log.write(source + SEPARATOR)
            log.flush()
        try:
            exec(compile(source, "<call %d>" % index, "exec"), namespace)
        except SystemError:
            return index
        except (Exception, RecursionError):
            pass
    return None


def child_main(args):
    """One batch: generate, log and make the calls."""
    namespace = {}
    exec(prelude(args.host), namespace)
    sys.setrecursionlimit(600)
    calls = generate_calls(args.seed, args.count, namespace["M"], namespace["P"])
    with open(args.log, "w") as log:
        found = run_calls([source for _, _, source in calls], namespace, log)
    counts = collections.Counter(target if target != "facade" else "facade." + member
                                 for target, member, _ in calls[:len(calls) if found is None else found + 1])
    with open(args.log + ".counts", "w") as f:
        json.dump(counts, f)
    namespace.clear()
    sys.exit(SYSTEM_ERROR_EXIT if found is not None else 0)


def replay_main(args):
    namespace = {}
    with open(args.replay) as f:
        exec(compile(f.read(), args.replay, "exec"), namespace)


def reproducer(host, sources):
    """A script of `sources` that exits 0 when the module holds."""
    body = "".join("try:\n%s    pass\nexcept SystemError:\n    raise\nexcept Exception:\n    pass\n" %
                   "".join("    " + line + "\n" for line in source.splitlines())
                   for source in sources)
    return prelude(host) + body


def outcome(returncode, timed_out):
    if timed_out:
        return "hang"
    if returncode < 0:
        return "signal %d" % -returncode
    if returncode != 0:
        return "exit %d" % returncode
    return None


def run_script(text, timeout, env):
    with tempfile.NamedTemporaryFile("w", suffix=".py", delete=False) as f:
        f.write(text)
        path = f.name
    try:
        child = subprocess.run([sys.executable, path], capture_output=True, timeout=timeout, env=env)
        return outcome(child.returncode, False)
    except subprocess.TimeoutExpired:
        return "hang"
    finally:
        os.unlink(path)


def minimise(host, sources, kind, timeout, env, budget):
    """The fewest of `sources` (kept in order) that still end in `kind`."""
    def fails(candidate):
        return run_script(reproducer(host, candidate), timeout, env) == kind

    if fails(sources[-1:]):
        return sources[-1:]
    chunk = len(sources) // 2
    attempts = 0
    while chunk >= 1 and attempts < budget:
        start = 0
        while start < len(sources) and attempts < budget:
            candidate = sources[:start] + sources[start + chunk:]
            attempts += 1
            if candidate and fails(candidate):
                sources = candidate
            else:
                start += chunk
        chunk //= 2
    return sources


def parent_main(args):
    env = dict(os.environ, PYTHONMALLOC="debug") if args.debug_malloc else dict(os.environ)
    started = time.time()
    deadline = started + args.seconds
    totals = collections.Counter()
    findings = []
    seed = args.seed
    batches = 0
    workdir = tempfile.mkdtemp(prefix="pcg-fuzz-")
    while time.time() < deadline and len(findings) < args.max_findings:
        log = os.path.join(workdir, "batch-%d.log" % seed)
        command = [sys.executable, os.path.abspath(__file__), "--child", "--host", args.host,
                   "--seed", str(seed), "--count", str(args.batch), "--log", log]
        try:
            child = subprocess.run(command, capture_output=True, timeout=args.batch_timeout, env=env)
            kind = outcome(child.returncode, False)
            if kind == "exit %d" % SYSTEM_ERROR_EXIT:
                kind = "error pending"
            if child.returncode not in (0, SYSTEM_ERROR_EXIT) and child.returncode > 0:
                kind = "exit %d: %s" % (child.returncode, child.stderr.decode(errors="replace")[-400:])
        except subprocess.TimeoutExpired:
            kind = "hang"
        if os.path.exists(log + ".counts"):
            with open(log + ".counts") as f:
                totals.update(json.load(f))
        batches += 1
        if kind is not None and not os.path.exists(log):
            # The child died before its first call: nothing to cut down.
            findings.append((kind, "(no calls made)", 0))
            print("FOUND %s before any call (seed %d)" % (kind, seed), flush=True)
        elif kind is not None:
            with open(log) as f:
                sources = [s for s in f.read().split(SEPARATOR) if s.strip()]
            totals.update({"(batch that failed)": len(sources)})
            if kind == "error pending":
                kind = "exit 1"  # the reproducer re-raises the SystemError
            small = minimise(args.host, sources, kind, args.call_timeout, env, args.shrink_budget)
            os.makedirs(args.findings, exist_ok=True)
            path = os.path.join(args.findings, "finding-%d.py" % seed)
            with open(path, "w") as f:
                f.write("# %s (seed %d)\n" % (kind, seed) + reproducer(args.host, small))
            findings.append((kind, path, len(small)))
            print("FOUND %s: %s (%d calls)" % (kind, path, len(small)), flush=True)
        seed += 1
    elapsed = time.time() - started
    print("%d batches, %d calls in %.0f s" % (batches, sum(totals.values()), elapsed))
    for name, count in sorted(totals.items()):
        print("  %-40s %8d" % (name, count))
    for kind, path, size in findings:
        print("finding: %s %s (%d calls)" % (kind, path, size))
    return 1 if findings else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=os.environ.get("PYCLIPGRADE_BUILD", os.path.join(REPO, "build")))
    parser.add_argument("--host", default=None)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--seed", type=int, default=int(os.environ.get("PCG_FUZZ_SEED", "1")))
    parser.add_argument("--batch", type=int, default=400)
    parser.add_argument("--batch-timeout", type=float, default=120)
    parser.add_argument("--call-timeout", type=float, default=30)
    parser.add_argument("--shrink-budget", type=int, default=60)
    parser.add_argument("--max-findings", type=int, default=5)
    parser.add_argument("--findings", default=None)
    parser.add_argument("--debug-malloc", action="store_true", default=True)
    parser.add_argument("--child", action="store_true")
    parser.add_argument("--count", type=int, default=0)
    parser.add_argument("--log")
    parser.add_argument("--replay")
    args = parser.parse_args()
    args.host = args.host or os.path.join(os.path.abspath(args.build), "host")
    args.findings = args.findings or os.path.join(os.path.abspath(args.build), "fuzz-findings")
    sys.path.insert(0, HERE)
    if args.child:
        child_main(args)
    elif args.replay:
        replay_main(args)
    else:
        sys.exit(parent_main(args))


if __name__ == "__main__":
    main()
