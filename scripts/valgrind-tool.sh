#!/usr/bin/env bash
# Runs kzStartLocal under valgrind's memcheck through a whole run with one pass of each
# kind, and fails on any leak or invalid access. Usage: scripts/valgrind-tool.sh TOOL
set -euo pipefail
tool=$1
work=$(mktemp -d "${TMPDIR:-/tmp}/kz_valgrind.XXXXXX")
server=""
cleanup() {
  [ -n "$server" ] && kill "$server" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

mkdir -p "$work/local" "$work/network/sub/log"
echo "log" >"$work/local/server.txt"
echo "db" >"$work/local/jobs.db"
cp "$(command -v sleep)" "$work/kzServerconsole"
"$work/kzServerconsole" 10 &
server=$!

valgrind --tool=memcheck --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
  --error-exitcode=99 --log-file="$work/valgrind.log" \
  "$tool" "$work/local/" "$work/network/" -log -jobdb >"$work/output.txt"
server=""
grep -q "^QUIT$" "$work/output.txt"
test "$(cat "$work/network/sub/log/server__copyFromLocal.txt")" = "log"
test "$(cat "$work/network/sub/cfg_global/__copyFromLocal/jobs.db")" = "db"
grep -E "ERROR SUMMARY|definitely lost|indirectly lost|possibly lost" "$work/valgrind.log"
grep -q "ERROR SUMMARY: 0 errors" "$work/valgrind.log"
