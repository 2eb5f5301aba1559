#!/usr/bin/env bash
# Builds everything and runs every test, from a clean checkout on a fresh Debian machine:
# once in the normal build, once under Address- and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --workflow --preset default
cmake --workflow --preset asan
