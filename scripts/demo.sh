#!/usr/bin/env bash
# Shows kzStartLocal at work on a throw-away setup: a local folder with server logs and a
# job database, a network folder with its log folder, and a stand-in kzServerconsole
# process that runs long enough for two mirror passes. Between the passes the "server"
# writes to one of its logs. Everything it makes is removed at the end, and no process is
# left behind.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"

KZ_PRESET=tool source scripts/workspace.sh kzStartLocal-demo kzStartLocal
tool="$bin/tool/kzStartLocal"

local_folder="$work/local"
network_root="$work/network"
mkdir -p "$local_folder" "$network_root/sub/log"
echo "render node 12 started"          > "$local_folder/server.txt"
echo "job 4711 queued"                 > "$local_folder/queue__local.txt"
echo "not a log, not mirrored"         > "$local_folder/notes.md"
head -c 20000 /dev/urandom             > "$local_folder/jobs.db"

list() {
  ( cd "$1" && find . -type f -printf '  %-52p %6s bytes  %TY-%Tm-%Td %TH:%TM:%.2TS\n' | sort )
}
echo "== the local folder (each copy will carry its original's modification time, to the"
echo "   second: that is how the next pass knows that a file has not changed):"
list "$local_folder"

# The stand-in server lives 16 s. The tool looks for it once a second and mirrors every
# seventh second: at about 7 s and 14 s.
server_seconds=16
"$work/kzServerconsole" "$server_seconds" &
pids+=($!)
echo "== stand-in kzServerconsole runs for ${server_seconds}s; kzStartLocal watches it:"
"$tool" "$local_folder/" "$network_root/" -log -jobdb &
tool_pid=$!
pids+=($tool_pid)

sleep 9
echo "== network folder after the first pass (the same times as the originals):"
list "$network_root"
echo "== the server writes another line to server.txt"
echo "render node 12 finished job 4711" >> "$local_folder/server.txt"

wait "$tool_pid"
echo "== network folder after the second pass (server.txt arrived again, longer and with"
echo "   its new time; the unchanged files were skipped):"
list "$network_root"
