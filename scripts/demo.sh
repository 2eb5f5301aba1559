#!/usr/bin/env bash
# Shows kzStartLocal at work on a throw-away setup: a local folder with server logs and a
# job database, an empty network folder, and a stand-in kzServerconsole process that runs
# for a few seconds. Everything it makes is removed at the end.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"

scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target kzStartLocal >/dev/null
tool="$top/build/default/tool/kzStartLocal"

work=$(mktemp -d "${TMPDIR:-/tmp}/kzStartLocal-demo.XXXXXX")
server_pid=""
cleanup() {
  [ -n "$server_pid" ] && kill "$server_pid" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

local_folder="$work/local"
network_root="$work/network"
mkdir -p "$local_folder" "$network_root/sub/log"
echo "render node 12 started"   > "$local_folder/server.txt"
echo "job 4711 queued"          > "$local_folder/queue__local.txt"
echo "not a log"                > "$local_folder/notes.md"
head -c 20000 /dev/urandom      > "$local_folder/jobs.db"

# The stand-in server: a copy of `sleep` under the server's process name.
server_seconds=${KZ_DEMO_SERVER_SECONDS:-4}
cp "$(command -v sleep)" "$work/kzServerconsole"
"$work/kzServerconsole" "$server_seconds" &
server_pid=$!

echo "== stand-in kzServerconsole (pid $server_pid) runs for ${server_seconds}s; kzStartLocal watches it:"
"$tool" "$local_folder/" "$network_root/" -log -jobdb
server_pid=""

echo "== files in the network folder now:"
( cd "$network_root" && find . -type f -printf '%-55p %8s bytes  %TY-%Tm-%Td %TH:%TM:%.2TS\n' | sort )
echo "== (end of list)"
