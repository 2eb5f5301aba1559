#!/usr/bin/env bash
# Runs the whole test suite again and again while a CPU load keeps every core busy beside it,
# and lists each test that failed and how often. A test that fails here even once waits for
# the wrong thing or sets up its world in a way that depends on timing.
#
# Usage: scripts/flake-check.sh [runs] [preset]   (30 runs of the "default" build by default)
# The log of every failed run stays in build/flake-check/.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
runs=${1:-30}
preset=${2:-default}

scripts/install-deps.sh
source scripts/build-quietly.sh
kz_build "$preset"
logs="$top/build/flake-check"
rm -rf "$logs"
mkdir -p "$logs"

load=()
stop_load() {
  [ ${#load[@]} -eq 0 ] || kill "${load[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
}
trap stop_load EXIT
for _ in $(seq "$(nproc)"); do
  (while :; do :; done) &
  load+=($!)
done
echo "$runs runs of the $preset suite beside $(nproc) busy loops, from $(date '+%H:%M')"

failed_runs=0
for run in $(seq "$runs"); do
  started=$SECONDS
  if ctest --preset "$preset" >"$logs/run.log" 2>&1; then
    echo "run $run: passed ($((SECONDS - started)) s)"
    continue
  fi
  failed_runs=$((failed_runs + 1))
  mv "$logs/run.log" "$logs/run-$run.log"
  # ctest's closing list: "	 12 - Suite.Name (Failed)"
  failed=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (\(.*\))$/\1 (\2)/p' "$logs/run-$run.log")
  printf '%s\n' "$failed" >>"$logs/failures"
  echo "run $run: FAILED ($((SECONDS - started)) s): $(printf '%s' "$failed" | paste -sd ';' -)"
done
rm -f "$logs/run.log"

echo
echo "$failed_runs of $runs runs failed."
if [ -s "$logs/failures" ]; then
  echo "Failures by test (count, test):"
  sort "$logs/failures" | uniq -c | sort -rn
  echo "Logs: $logs/run-*.log"
  exit 1
fi
