#!/usr/bin/env bash
# Runs each libFuzzer target for a number of seconds from its seed corpus;
# new inputs go to a scratch corpus, a crash input under <build>/crashes.
# Usage: fuzz-native.sh BUILD SECONDS TARGET...
set -euo pipefail
build=$(cd "$1" && pwd)
seconds=$2
shift 2
corpus=tests/fuzz/native/corpus
mkdir -p "$build/crashes"
status=0
for target in "$@"; do
  scratch=$(mktemp -d)
  if UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ASAN_OPTIONS=detect_leaks=1 \
      "$build/tests/fuzz/native/fuzz_$target" -max_total_time="$seconds" -print_final_stats=1 \
      -artifact_prefix="$build/crashes/$target-" "$scratch" "$corpus/$target" >"$scratch.log" 2>&1; then
    echo "fuzz_$target: $(grep -E '^stat::number_of_executed_units' "$scratch.log" | awk '{print $2}') runs in ${seconds} s, no fault"
  else
    tail -60 "$scratch.log"
    echo "fuzz_$target: FAILED"
    status=1
  fi
  rm -rf "$scratch" "$scratch.log"
done
exit $status
