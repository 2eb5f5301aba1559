#!/usr/bin/env bash
# Fuzzes the string family with libFuzzer under Address- and UndefinedBehaviorSanitizer.
# Usage: scripts/fuzz.sh [seconds]   (default 300). New inputs go to build/fuzz/corpus/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-300}

scripts/install-deps.sh clang libclang-rt-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target string_fuzz

corpus=build/fuzz/corpus/strings
mkdir -p "$corpus"
cp -n fuzz/corpus/strings/* "$corpus"/
build/fuzz/fuzz/string_fuzz -max_total_time="$seconds" -print_final_stats=1 "$corpus"
