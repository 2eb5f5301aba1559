#!/usr/bin/env bash
# Builds everything and runs every test, from a clean checkout on a fresh Debian machine.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --workflow --preset default
