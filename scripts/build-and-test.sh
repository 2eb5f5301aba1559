#!/usr/bin/env bash
# Builds everything and runs every test, from a clean checkout on a fresh Debian machine:
# once in the normal build, once under Address- and UndefinedBehaviorSanitizer. Ends with
# the tests that were skipped, each with its reason; exits with 1 if a build or a test failed.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
# The build folder is closed to other users (mode 700, as a root user's home is), so every
# test that runs something as another user proves that it does not depend on where the
# checkout and the build lie.
mkdir -p build
chmod 700 build
status=0
for preset in default asan; do
  rm -f "build/$preset/Testing/results.xml"
  cmake --workflow --preset "$preset" || status=1
done

scripts/skipped-tests.sh build/default build/asan
exit $status
