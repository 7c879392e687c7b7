#!/usr/bin/env bash
# Runs the benchmarks of a build configured with -DPCG_WITH_BENCH=ON and
# prints their figures, each with its ratio to memcpy measured in the run.
set -euo pipefail
build="${1:?usage: bench/run.sh <builddir>}"
bin="$build/bench/selection_bench"
if [[ ! -x "$bin" ]]; then
  echo "no $bin: configure with -DPCG_WITH_BENCH=ON and build selection_bench" >&2
  exit 1
fi
"$bin" --benchmark_min_time=0.3 "${@:2}"
