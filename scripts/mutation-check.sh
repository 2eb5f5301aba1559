#!/usr/bin/env bash
# Measures the test suite's bite: applies each deliberate fault of scripts/mutations.txt (or
# of another list in its format, such as one that ../shared/tools/random-faults draws), one
# at a time, to a copy of this checkout, rebuilds incrementally, runs the suite, and says
# which faults the suite caught and which survived, with a closing count. A fault that does
# not build says nothing about the suite: it is counted apart, with its first error.
#
# Takes one to two hours on 2 cores for some hundred faults: one full build, then for each
# fault a rebuild of what it touches and a run of the suite (which stops at its first failing
# test). A fault in a string header rebuilds almost everything; ccache, in a cache of the
# check's own, makes the rebuild that takes the fault out again cost next to nothing. A
# fault the normal build survives is tried again under the sanitizers, as the test command
# runs the suite both ways. The whole tool under valgrind is left out of these runs for
# time; everything else runs.
#
# Usage: scripts/mutation-check.sh [--quick] [--from N] [mutations file]
#   (from anywhere; the checkout is untouched; --from N starts at the N-th fault; --quick
#   leaves out the slow rows, the network shares' faults and the packages, for a first look
#   in a fraction of the time: what survives it is then run again in full)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
from=1 quick=""
[ "${1:-}" = --quick ] && { quick=--quick; shift; }
if [ "${1:-}" = --from ]; then
  from=$2
  shift 2
fi
list=$(realpath "${1:-$top/scripts/mutations.txt}")
"$top/scripts/install-deps.sh" ccache

# The whole check runs where it sees only its own processes, so that neither a server on
# this machine nor a second check beside it changes what the suite says.
if [ "$$" != 1 ] && unshare --pid --fork --mount-proc true 2>/dev/null; then
  exec unshare --pid --fork --mount-proc --kill-child "$0" $quick --from "$from" "$list"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/kz_mutation.XXXXXX")
trap 'rm -rf "$work"' EXIT
# The checkout as it stands, uncommitted changes included, without its build folders.
(cd "$top" && git ls-files -z --cached --others --exclude-standard | tar --null -T - -cf -) | tar -xf - -C "$work"
cd "$work"
export CCACHE_DIR="$work/ccache" CCACHE_MAXSIZE=2G
kz_configure_options=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
source scripts/build-quietly.sh
kz_build default
kz_build asan

left_out='^tool_under_valgrind$'
[ -z "$quick" ] || left_out='^(tool_under_valgrind|share_fault_.*|debian_package|installed_libraries_consumer)$'
suite() { ctest --preset "${1:-default}" -j 6 --stop-on-failure -E "$left_out" >"$work/ctest.log" 2>&1; }
failed_test() { grep -m1 -o -E '[0-9]+ - [^ ]+' "$work/ctest.log" | sed 's/^[0-9]* - //' || echo '?'; }
for preset in default asan; do
  echo "Baseline: the suite without faults ($preset)"
  if ! suite $preset; then
    echo "The suite fails without any fault; see below." >&2
    tail -30 "$work/ctest.log" >&2
    exit 1
  fi
done

total=0 caught=0 survivors=() invalid=() unbuilt=()
# The list comes in on its own descriptor: a test that reads its standard input must not
# eat the next fault.
while IFS= read -r entry <&3; do
  case "$entry" in '#'* | '') continue ;; esac
  file=${entry%% ||| *}; rest=${entry#* ||| }
  original=${rest%% ||| *}; rest=${rest#* ||| }
  faulty=${rest%% ||| *}; what=${rest#* ||| }
  total=$((total + 1))
  label="$file: $what"
  [ "$total" -lt "$from" ] && continue
  found=$(A="$original" perl -0ne 'BEGIN { ($a = $ENV{A}) =~ s/\\n/\n/g } $c = () = /\Q$a\E/g; print $c' "$file" 2>/dev/null || echo 0)
  if [ "$found" != 1 ]; then
    invalid+=("$label (the text stands $found times)")
    printf '%-8s %s\n' "INVALID" "$label"
    continue
  fi
  cp "$file" "$work/original"
  A="$original" B="$faulty" perl -0pi -e 'BEGIN { ($a = $ENV{A}) =~ s/\\n/\n/g; ($b = $ENV{B}) =~ s/\\n/\n/g } s/\Q$a\E/$b/' "$file"
  if ! cmake --build --preset default --parallel "$(nproc)" >"$work/build.log" 2>&1; then
    verdict="DOES NOT BUILD: $(grep -m1 'error:' "$work/build.log" | sed 's/^.*error: //' || echo '?')"
    unbuilt+=("$label")
  elif ! suite; then
    verdict="caught by $(failed_test)"
    caught=$((caught + 1))
  # The test command runs the suite under the sanitizers too, where a read or write outside
  # a block fails a test that the normal build passes: a fault that survives the normal
  # build is tried there before it counts as a survivor.
  elif cmake --build --preset asan --parallel "$(nproc)" >"$work/build.log" 2>&1 && ! suite asan; then
    verdict="caught under the sanitizers by $(failed_test)"
    caught=$((caught + 1))
  else
    verdict="SURVIVED"
    survivors+=("$label")
  fi
  printf '%-8s %s -> %s\n' "$total" "$label" "$verdict"
  cp "$work/original" "$file"
  touch "$file"
done 3<"$list"

echo
[ "$from" -gt 1 ] && echo "(Faults 1 to $((from - 1)) were left out of this run.)"
built=$((total - from + 1 - ${#unbuilt[@]} - ${#invalid[@]}))
echo "Caught $caught of the $built faults that build ($(awk -v c="$caught" -v b="$built" 'BEGIN { printf "%.1f", b ? 100 * c / b : 0 }') %)."
[ ${#survivors[@]} -eq 0 ] || { echo "Survived:"; printf '  %s\n' "${survivors[@]}"; }
[ ${#unbuilt[@]} -eq 0 ] || { echo "Did not build (not counted):"; printf '  %s\n' "${unbuilt[@]}"; }
[ ${#invalid[@]} -eq 0 ] || { echo "Not applied (the list no longer matches the code):"; printf '  %s\n' "${invalid[@]}"; }
