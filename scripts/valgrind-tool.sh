#!/usr/bin/env bash
# Runs kzStartLocal under valgrind's memcheck through a whole run with one pass of each
# kind, and fails on any leak or invalid access, showing memcheck's report and the tool's
# output. Usage: scripts/valgrind-tool.sh TOOL
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
fail() {
  echo "FAIL: $*" >&2
  echo "--- memcheck's report:" >&2
  cat "$work/valgrind.log" >&2 || true
  echo "--- the tool's output:" >&2
  cat "$work/output.txt" >&2 || true
  exit 1
}

mkdir -p "$work/local" "$work/network/sub/log"
echo "log" >"$work/local/server.txt"
echo "db" >"$work/local/jobs.db"
cp "$(command -v sleep)" "$work/kzServerconsole"
"$work/kzServerconsole" 10 &
server=$!

status=0
valgrind --tool=memcheck --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
  --error-exitcode=99 --log-file="$work/valgrind.log" \
  "$tool" "$work/local/" "$work/network/" -log -jobdb >"$work/output.txt" || status=$?
server=""
[ "$status" -eq 0 ] || fail "the run under memcheck ended with status $status (99: memcheck found errors)"
grep -q "^QUIT$" "$work/output.txt" || fail "the tool did not print QUIT"
[ "$(cat "$work/network/sub/log/server__copyFromLocal.txt")" = "log" ] || fail "the log was not mirrored"
[ "$(cat "$work/network/sub/cfg_global/__copyFromLocal/jobs.db")" = "db" ] || fail "the job database was not mirrored"
grep -q "ERROR SUMMARY: 0 errors" "$work/valgrind.log" || fail "memcheck counted errors"
grep -E "ERROR SUMMARY|definitely lost|indirectly lost|possibly lost" "$work/valgrind.log"
