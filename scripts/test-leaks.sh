#!/usr/bin/env bash
# Runs the facade cycle under valgrind: no block that the module or the
# reference engines allocated may be lost, and no invalid access may happen.
set -euo pipefail
build=${1:-build}
host=$(cd "$build/host" && pwd)
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! PYTHONPATH="$host" PYCLIPGRADE_REGISTRY=/nonexistent valgrind --quiet --leak-check=full \
      --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite,indirect \
      --error-exitcode=3 /usr/bin/python3 tests/leak/facade_cycle.py >"$log" 2>&1; then
  cat "$log"
  echo "leak check: FAILED"
  exit 1
fi
cat "$log"
echo "leak check: no block lost"
