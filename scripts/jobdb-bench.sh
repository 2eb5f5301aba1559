#!/usr/bin/env bash
# The job database mirror while a real database engine writes it: a SQLite writer (Debian's
# Python and its sqlite3 module, default settings) works in the local folder on a 1.4 MB
# jobs.db with an index, about six small transactions a second for 30 s, and closes. Beside
# it, fed from the same folder, run kzStartLocal (-log -jobdb), a loop of `rsync -a` every
# 7 s, and a loop of `rsync -a --modify-window=-1 --delete`. 22 s (three passes) after the
# writer closed, each mirror is compared with the local folder, and a reader opens a copy
# of it with the sqlite3 program. Per journal mode (rollback and WAL, side by side), it
# counts the trials whose mirror of jobs.db is not identical, that leave a side file whose
# source is gone, and whose reader sees anything but what the writer left.
#
# Usage: scripts/jobdb-bench.sh [trials]   (8 by default; about a minute a trial)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"

trials=${1:-8}
KZ_EXTRA_PACKAGES="rsync python3 sqlite3" source scripts/workspace.sh kzjobdb kzStartLocal
tool="$bin/tool/kzStartLocal"
python=/usr/bin/python3 # Debian's, with the sqlite3 module of Debian's SQLite
mirrors=(tool rsync rsync-delete)
write_seconds=30
settle_seconds=22

# A database of 10,000 jobs with an index, and a counter of the transactions to come.
create_db() {
  "$python" - "$1" "$2" <<'PY'
import sqlite3, sys
db = sqlite3.connect(sys.argv[1] + "/jobs.db")
db.execute("PRAGMA journal_mode=" + sys.argv[2])
db.executescript("""
CREATE TABLE jobs(id INTEGER PRIMARY KEY, state INTEGER, payload TEXT);
CREATE INDEX jobs_by_state ON jobs(state);
CREATE TABLE events(job INTEGER, at REAL);
CREATE TABLE counter(n INTEGER);
INSERT INTO counter VALUES(0);
""")
db.executemany("INSERT INTO jobs VALUES(?, 0, ?)", [(i, "%0100d" % i) for i in range(10000)])
db.commit()
db.close()
PY
}

# About six small transactions a second for SECONDS: a job's state and payload rewritten in
# place, an event added, the counter raised; then the writer closes.
write_db() {
  "$python" - "$1" "$2" <<'PY'
import random, sqlite3, sys, time
db = sqlite3.connect(sys.argv[1] + "/jobs.db")
end = time.time() + float(sys.argv[2])
while time.time() < end:
    job = random.randrange(10000)
    db.execute("UPDATE jobs SET state = ?, payload = ? WHERE id = ?", (random.randrange(50), "%0100d" % random.randrange(10**9), job))
    db.execute("INSERT INTO events VALUES(?, ?)", (job, time.time()))
    db.execute("UPDATE counter SET n = n + 1")
    db.commit()
    time.sleep(random.uniform(0.1, 0.23))
db.close()
PY
}

# What a reader of a copy of FOLDER sees: the integrity check and the writer's invariants.
reader_view() {
  local copy
  copy=$(mktemp -d "$work/read.XXXXXX")
  cp -a "$1/." "$copy/"
  sqlite3 "$copy/jobs.db" 'PRAGMA integrity_check;
    SELECT n, (SELECT count(*) FROM events) FROM counter;
    SELECT count(*), total(state) FROM jobs INDEXED BY jobs_by_state WHERE state >= 0;
    SELECT count(*), total(length(payload)) FROM jobs;' 2>&1 || true
  rm -rf "$copy"
}

job_names() { (cd "$1" && find . -maxdepth 1 -type f -name '*jobs.db*' -printf '%f\n' | sort); }

# One trial in MODE: prints "DIFFERS SIDE READER" (each 0 or 1) for each mirror in turn.
trial() {
  local mode=$1 t
  t=$(mktemp -d "$work/$mode.XXXXXX")
  local local_folder="$t/local" tool_root="$t/tool"
  mkdir -p "$local_folder" "$tool_root/sub/log" "$t/rsync" "$t/rsync-delete"
  create_db "$local_folder" "$mode"
  echo "server log" >"$local_folder/server.txt"
  # Each loop is a process group of its own, so that stopping it stops an rsync under way.
  "$tool" "$local_folder/" "$tool_root/" -log -jobdb >"$t/tool.out" &
  local tool_pid=$! groups=()
  setsid bash -c 'while :; do rsync -a --include="*jobs.db*" --exclude="*" "$0/" "$1/"; sleep 7; done' \
    "$local_folder" "$t/rsync" &
  groups+=($!)
  setsid bash -c 'while :; do rsync -a --modify-window=-1 --delete --include="*jobs.db*" --exclude="*" "$0/" "$1/"; sleep 7; done' \
    "$local_folder" "$t/rsync-delete" &
  groups+=($!)
  write_db "$local_folder" "$write_seconds"
  sleep "$settle_seconds"
  kill "$tool_pid"
  for group in "${groups[@]}"; do kill -- "-$group"; done
  wait "$tool_pid" "${groups[@]}" 2>/dev/null || true

  local source_view
  source_view=$(reader_view "$local_folder")
  for mirror in "$tool_root/sub/cfg_global/__copyFromLocal" "$t/rsync" "$t/rsync-delete"; do
    local differs=0 side=0 reader=0
    cmp -s "$local_folder/jobs.db" "$mirror/jobs.db" || differs=1
    [ -z "$(comm -13 <(job_names "$local_folder") <(job_names "$mirror"))" ] || side=1
    [ "$(reader_view "$mirror")" = "$source_view" ] || reader=1
    printf '%s %s %s  ' "$differs" "$side" "$reader"
  done
  echo
  rm -rf "$t"
}

"$work/kzServerconsole" infinity &
pids+=($!)
echo "$trials trials per journal mode, the two modes side by side; each: $write_seconds s of writing, $settle_seconds s to settle"
echo "columns per mirror: jobs.db differs, a side file left, the reader sees other than the source"
declare -A totals
for i in $(seq "$trials"); do
  trial DELETE >"$work/DELETE.$i" &
  delete_pid=$!
  trial WAL >"$work/WAL.$i"
  wait "$delete_pid"
  for mode in DELETE WAL; do
    read -r -a row <"$work/$mode.$i"
    printf '%-7s trial %2d:' "$mode" "$i"
    for m in 0 1 2; do
      printf '  %-12s %s %s %s' "${mirrors[$m]}" "${row[$((3 * m))]}" "${row[$((3 * m + 1))]}" "${row[$((3 * m + 2))]}"
      for c in 0 1 2; do
        key="$mode.$m.$c"
        totals[$key]=$((${totals[$key]:-0} + row[3 * m + c]))
      done
    done
    echo
  done
done

echo
printf '%-40s %-16s %-16s %-16s\n' "Trials of $trials" "${mirrors[@]}"
for mode in DELETE WAL; do
  label=$([ "$mode" = WAL ] && echo "WAL" || echo "rollback journal")
  c=0
  for what in "jobs.db differs" "side file left" "reader not the source"; do
    printf '%-40s' "$label: $what"
    for m in 0 1 2; do printf ' %-16s' "${totals[$mode.$m.$c]} of $trials"; done
    echo
    c=$((c + 1))
  done
done
status=0
for mode in DELETE WAL; do
  for c in 0 1 2; do [ "${totals[$mode.0.$c]}" -eq 0 ] || status=1; done
done
[ $status -eq 0 ] && echo "kzStartLocal: 0 in every column, goal met" || echo "kzStartLocal: goal MISSED"
exit $status
