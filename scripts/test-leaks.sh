#!/usr/bin/env bash
# Runs every script in tests/leak under valgrind: no block that the module or
# the reference engines allocated may be lost, and no invalid access may happen.
set -euo pipefail
build=${1:-build}
host=$(cd "$build/host" && pwd)
log=$(mktemp)
trap 'rm -f "$log"' EXIT
status=0
for script in tests/leak/*.py; do
  if PYTHONPATH="$host" PYCLIPGRADE_REGISTRY=/nonexistent valgrind --quiet --leak-check=full \
        --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite,indirect \
        --error-exitcode=3 /usr/bin/python3 "$script" >"$log" 2>&1; then
    echo "leak check $(basename "$script"): no block lost"
  else
    cat "$log"
    echo "leak check $(basename "$script"): FAILED"
    status=1
  fi
done
exit $status
