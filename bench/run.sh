#!/usr/bin/env bash
# Runs the benchmarks of a build configured with -DPCG_WITH_BENCH=ON. Every
# benchmark is repeated and the runs are interleaved at random, so a loop and
# its peers see the same machine; the closing table gives medians and ratios.
set -euo pipefail
build="${1:?usage: bench/run.sh <builddir>}"
bin="$build/bench/selection_bench"
if [[ ! -x "$bin" ]]; then
  echo "no $bin: configure with -DPCG_WITH_BENCH=ON and build selection_bench" >&2
  exit 1
fi
"$bin" --benchmark_min_time=0.1 --benchmark_repetitions=5 \
  --benchmark_enable_random_interleaving=true "${@:2}"
# The run lists through the module, beside numpy and the C++ calls;
# PCG_BENCH_HOST and PCG_BENCH_TESTING name the host folder of a built module
# and its test companion's folder (make bench passes build/host and build/testing).
/usr/bin/python3 "$(dirname "$0")/selection_bench.py" --host "${PCG_BENCH_HOST:-}" \
  --testing "${PCG_BENCH_TESTING:-}"
