#!/usr/bin/env bash
# Fuzzes with libFuzzer under Address- and UndefinedBehaviorSanitizer: the string family,
# the path and name logic of the mirror passes, and the buffers (file buffer search, text
# envelope, radix-85 groups, CRC-32 against zlib).
# Usage: scripts/fuzz.sh [seconds per target] [target...]   (default 300, every target).
# New inputs go to build/fuzz/corpus/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-300}

scripts/install-deps.sh clang libclang-rt-dev zlib1g-dev
targets=("${@:2}")
[ ${#targets[@]} -eq 0 ] && targets=(string_fuzz path_fuzz buffers_fuzz process_fuzz)
source scripts/build-quietly.sh
kz_build fuzz "${targets[@]}"

for target in "${targets[@]}"; do
  case $target in
  string_fuzz) corpus_name=strings ;;
  path_fuzz) corpus_name=paths ;;
  buffers_fuzz) corpus_name=buffers ;;
  process_fuzz) corpus_name=processes ;;
  esac
  corpus=build/fuzz/corpus/$corpus_name
  mkdir -p "$corpus"
  cp -n fuzz/corpus/"$corpus_name"/* "$corpus"/
  echo "== $target for ${seconds}s"
  build/fuzz/fuzz/"$target" -max_total_time="$seconds" -print_final_stats=1 "$corpus" 2>&1 |
    grep -E '^(stat::number_of_executed_units|stat::new_units_added|Done)|ERROR|SUMMARY'
done
