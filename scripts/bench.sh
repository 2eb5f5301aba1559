#!/usr/bin/env bash
# Measures kzStartLocal against what an administrator would otherwise run: a shell loop
# around pgrep, rsync and cp. Every figure is taken side by side with its standard tool in
# this one run, on this machine's real process table and files, and printed as a ratio
# with its goal. Takes a few minutes and about 2.5 GB of disk in a temporary folder (on
# the file system of $TMPDIR, /tmp by default, at the shallow depth of a real setup).
#
# Usage: scripts/bench.sh [watch|shares|shared]   (only the watching cost, the network shares,
#        or the shared code)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"

KZ_EXTRA_PACKAGES="rsync libbenchmark-dev python3 python3-psutil zlib1g-dev procps" source scripts/workspace.sh kzbench \
  kzStartLocal copy_files make_tree log_pass_driver run_measured process_snapshot_bench buffer_speed \
  process_load_bench child_output_bench kzLocalCache cache_refresh_driver lock_stress
measure="$bin/bench/run_measured"

# field N of a result file written by run_measured: 1 wall s, 2 cpu s, 3 peak KiB
field() { awk -v n="$2" '{print $n}' "$1"; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.3f", a / b }'; }
verdict() { awk -v r="$1" -v g="$2" -v op="$3" 'BEGIN { ok = (op == "<=") ? r <= g : r >= g; print ok ? "met" : "MISSED" }'; }
line() { printf '%-36s %s\n' "$1" "$2"; }
# seconds as milliseconds, two decimals
in_ms() { awk -v s="$1" 'BEGIN { printf "%.2f", s * 1000 }'; }
# the median of the numbers given
median() { printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
# The median of the ratios OTHER / TOOL, turn by turn, of two lists of times taken in the same
# turns (TOOL's list first), to three decimals: a throughput ratio that holds while the
# machine's speed drifts from one turn to the next, as it does on a shared host.
turn_ratio() {
  ratio "$(median $(paste -d' ' <(printf '%s\n' $1) <(printf '%s\n' $2) | awk '{ printf "%.6f\n", $2 / $1 }'))" 1
}
# "STEAL TOTAL" CPU ticks of the whole machine so far; stolen_since prints how much of the CPU
# the host took from this machine (steal) since such a reading, in percent.
cpu_ticks() { awk '/^cpu / { t = 0; for (i = 2; i <= 9; i++) t += $i; print $9, t }' /proc/stat; }
stolen_since() {
  local s0 t0 s1 t1
  read -r s0 t0 <<<"$1"
  read -r s1 t1 < <(cpu_ticks)
  awk -v s="$((s1 - s0))" -v t="$((t1 - t0))" 'BEGIN { printf "%.0f", (t > 0) ? 100 * s / t : 0 }'
}
# the median wall time of several runs of a command, in seconds
timed() {
  local runs=$1 times=()
  shift
  for _ in $(seq "$runs"); do
    "$measure" "$work/t" "$@" >/dev/null
    times+=("$(field "$work/t" 1)")
  done
  median "${times[@]}"
}
# rsync as it copies to a share: without owners and groups, which the share maps to the
# user it serves as (as the tool's copies do).
rsync_to_share=(rsync -a --no-owner --no-group)
# Up-to-date log passes of LOCAL into ROOT against rsync's quick check of LOCAL into MIRROR,
# both already up to date; prints the medians of five and their ratio under LABEL. Further
# arguments go to rsync.
pass_against_rsync() {
  local label=$1 local_folder=$2 root=$3 mirror=$4 pass_ms rsync_ms r
  shift 4
  pass_ms=$("$bin/bench/log_pass_driver" "$local_folder" "$root" 5)
  rsync_ms=$(in_ms "$(timed 5 rsync -a --dry-run "$@" "$local_folder" "$mirror")")
  r=$(ratio "$pass_ms" "$rsync_ms")
  line "$label" "tool ${pass_ms} ms, rsync -a --dry-run ${rsync_ms} ms -> ratio $r (goal <= 0.5: $(verdict "$r" 0.5 "<="))"
}
# Reads a file or a folder's files into the page cache. This machine pages out what has not
# been read for a few seconds, so each copy warms its source just before it starts.
warm() { find "$1" -type f -exec cat {} + >/dev/null; }
# Copies with the tool and with cp in turns, each into a fresh destination after the
# previous copy's data has been written out; prints "tool_median cp_median ratio steal": the
# medians in seconds, the throughput ratio turn by turn, and the host's steal in percent.
copy_rounds() {
  local src=$1 dst=$2 prepare=$3 kz=() cps=() ticks
  shift 3
  ticks=$(cpu_ticks)
  for _ in 1 2 3 4 5; do
    eval "$prepare"; sync; warm "$src"
    "$measure" "$work/t" "$bin/bench/copy_files" "$@" "$src" "$dst"; kz+=("$(field "$work/t" 1)")
    eval "$prepare"; sync; warm "$src"
    if [ "${1:-}" = --folder ]; then
      "$measure" "$work/t" cp --preserve=timestamps -r "$src/." "$dst/"
    else
      "$measure" "$work/t" cp --preserve=timestamps "$src" "$dst"
    fi
    cps+=("$(field "$work/t" 1)")
  done
  echo "$(median "${kz[@]}") $(median "${cps[@]}") $(turn_ratio "${kz[*]}" "${cps[*]}") $(stolen_since "$ticks")"
}

only=${1:-all}
echo "== kzStartLocal benchmarks, $(date -u '+%Y-%m-%d %H:%M UTC'), $(nproc) cores, $(awk -F': ' '/model name/ {print $2; exit}' /proc/cpuinfo)"

# 1. Standing cost of watching: the tool (no pass asked for) and a shell loop around pgrep,
#    side by side over the same 30 seconds of one live stand-in server, once at the
#    machine's own process count and once with 2,000 sleeping processes beside them. The
#    tool's CPU time is read from its schedstat at the window's start and end (after its
#    start-up and first look); the loop's is its whole run's, children included.
processes_now() { find /proc -maxdepth 1 -name '[0-9]*' | wc -l; }
watch_cost() {
  local label=$1 goal=$2 span=30 tool_pid server_pid t0 t1 tool_ms loop_ms r
  "$work/kzServerconsole" $((span + 10)) &
  server_pid=$!
  "$bin/tool/kzStartLocal" "$work/none/" "$work/none/" idle >/dev/null &
  tool_pid=$!
  sleep 2
  t0=$(awk '{print $1}' "/proc/$tool_pid/schedstat")
  "$measure" "$work/loop.cost" bash -c "end=\$((SECONDS + $span)); while [ \$SECONDS -lt \$end ] && pgrep -x kzServerconsole >/dev/null; do sleep 1; done"
  t1=$(awk '{print $1}' "/proc/$tool_pid/schedstat")
  kill "$server_pid"
  wait "$tool_pid" "$server_pid" 2>/dev/null || true
  tool_ms=$(awk -v a="$t0" -v b="$t1" -v s="$span" 'BEGIN { printf "%.3f", (b - a) / 1e6 / s }')
  loop_ms=$(awk -v c="$(field "$work/loop.cost" 2)" -v s="$span" 'BEGIN { printf "%.2f", c * 1000 / s }')
  r=$(ratio "$tool_ms" "$loop_ms")
  line "watching, $label:" "tool $tool_ms ms CPU a second, pgrep loop $loop_ms ms -> ratio $r (goal <= $goal: $(verdict "$r" "$goal" "<="))"
}
if [ "$only" = all ] || [ "$only" = watch ]; then
# The whole run of each, the tool's start and first look included (CPU of the process and
# its children, from wait4), as this figure has always been taken.
span=30
"$work/kzServerconsole" "$span" &
pids+=($!)
"$measure" "$work/tool.cost" "$bin/tool/kzStartLocal" "$work/none/" "$work/none/" idle >/dev/null &
tool_pid=$!
"$measure" "$work/loop.cost" bash -c 'while pgrep -x kzServerconsole >/dev/null; do sleep 1; done' &
loop_pid=$!
wait "$tool_pid" "$loop_pid"
tool_cpu=$(field "$work/tool.cost" 2)
loop_cpu=$(field "$work/loop.cost" 2)
r=$(ratio "$tool_cpu" "$loop_cpu")
line "watching, whole runs:" "tool $(awk -v c="$tool_cpu" -v s="$span" 'BEGIN{printf "%.2f ms", c*1000/s}') a second, pgrep loop $(awk -v c="$loop_cpu" -v s="$span" 'BEGIN{printf "%.2f ms", c*1000/s}') -> ratio $r (goal <= 0.2: $(verdict "$r" 0.2 "<="))"
watch_cost "$(processes_now) processes" 0.05
sleepers=()
for _ in $(seq 2000); do
  sleep 600 &
  sleepers+=($!)
done
pids+=("${sleepers[@]}")
watch_cost "$(processes_now) processes" 0.01
kill "${sleepers[@]}" 2>/dev/null || true
wait "${sleepers[@]}" 2>/dev/null || true
fi

if [ "$only" = all ]; then
snapshot=$("$bin/bench/process_snapshot_bench" --benchmark_min_time=1 2>/dev/null | grep processSnapshot)
line "one process snapshot:" "$(echo "$snapshot" | awk '{print $2, $3}') for $(echo "$snapshot" | grep -o 'processes=[0-9]*' | cut -d= -f2) processes, $(echo "$snapshot" | grep -o 'us_per_process=[0-9.]*' | cut -d= -f2) us per process"

# 2. An up-to-date log pass over 10,000 files against rsync's quick check of the same folder.
mkdir -p "$work/logs/local" "$work/logs/network/sub/log" "$work/logs/mirror"
"$bin/bench/make_tree" "$work/logs/local" 10000 100 2000 .txt
rsync -a "$work/logs/local/" "$work/logs/mirror/"
pass_against_rsync "up-to-date log pass, 10,000 files:" "$work/logs/local/" "$work/logs/network/" "$work/logs/mirror/"

# 3. Copying, page cache warm, same file system: one 1 GiB file, and 10,000 files of 1 to
#    100 KiB. Throughput ratio = cp's time / the tool's time in the same turn, the median of
#    five turns; the times shown are each tool's median.
head -c 1073741824 /dev/urandom >"$work/big"
cat "$work/big" >/dev/null
read -r kz_s cp_s r stolen < <(copy_rounds "$work/big" "$work/big.copy" 'rm -f "$work/big.copy"')
cmp -s "$work/big" "$work/big.copy" || echo "copy of the big file differs!"
rm -f "$work/big" "$work/big.copy"
line "copy of 1 GiB:" "tool ${kz_s} s, cp ${cp_s} s -> throughput ratio $r (goal >= 0.95: $(verdict "$r" 0.95 ">=")), host steal ${stolen} %"

mkdir -p "$work/small"
"$bin/bench/make_tree" "$work/small" 10000 1024 102400 .dat
cat "$work"/small/* >/dev/null
read -r kz_s cp_s r stolen < <(copy_rounds "$work/small" "$work/small.copy" \
  'rm -rf "$work/small.copy"; mkdir "$work/small.copy"' --folder)
rm -rf "$work/small" "$work/small.copy"
line "copy of 10,000 files of 1-100 KiB:" "tool ${kz_s} s, cp ${cp_s} s -> throughput ratio $r (goal >= 1.0: $(verdict "$r" 1.0 ">=")), host steal ${stolen} %"

# 4. Peak resident memory of the tool over a run with two passes of both kinds over the
#    10,000 files of the log folder.
"$work/kzServerconsole" 16 &
pids+=($!)
rm -rf "$work/logs/network/sub/log"/*
"$measure" "$work/tool.mem" "$bin/tool/kzStartLocal" "$work/logs/local/" "$work/logs/network/" -log -jobdb >/dev/null
kib=$(field "$work/tool.mem" 3)
r=$(ratio "$kib" 1024)
line "peak resident memory, 2 passes:" "${kib} KiB = ${r} MiB (goal <= 4 MiB: $(verdict "$r" 4 "<="))"
copies=$(find "$work/logs/network/sub/log" -type f | wc -l)
line "files mirrored in that run:" "$copies"
fi

if [ "$only" = all ] || [ "$only" = shared ]; then
# 5. CRC-32 against zlib, and the file buffer's search against memmem, in one process.
"$bin/bench/buffer_speed"

# 6. The process table with load measured, per process, as CPU time: against ps and psutil
#    reading the same things (pid, resident memory, CPU time) of the same machine.
read -r full snapshot processes < <("$bin/bench/process_load_bench")
cpu_of() { local total=0; for _ in 1 2 3 4 5; do "$measure" "$work/t" "$@" >/dev/null; total=$(awk -v a="$total" -v b="$(field "$work/t" 2)" 'BEGIN{print a+b}'); done; awk -v t="$total" -v n="$processes" 'BEGIN{printf "%.2f", t / 5 * 1e6 / n}'; }
ps_us=$(cpu_of ps -eo pid,rss,time)
psutil_us=$(cpu_of /usr/bin/python3 -c 'import psutil; [p.info for p in psutil.process_iter(["cpu_times", "memory_info"])]')
r=$(ratio "$full" "$ps_us")
line "measured update, per process:" "tool ${full} us, ps ${ps_us} us, psutil ${psutil_us} us ($processes processes) -> ratio to ps $r (goal <= 0.5: $(verdict "$r" 0.5 "<="))"
line "snapshot without load, per process:" "${snapshot} us"

# 7. Starting a program with its output captured, and draining a child that writes fast.
read -r start_ms drain < <("$bin/bench/child_output_bench")
line "start with output captured:" "median ${start_ms} ms (the five reads of its first output included)"
line "takeOutput from a fast writer:" "${drain} MiB/s"

# 8. An up-to-date refresh of the local executable cache (an application with 2,000 library
#    files, its GUI resources and platform plug-ins), against rsync's quick check of the same
#    folders, primed by one real run each. The refresh is what an application of the suite
#    calls once at its start: its figure is the first call in a fresh process (the process's
#    own start left out, median of seven processes); the later calls of those processes, and
#    the kzLocalCache command as a whole process, are shown beside it.
app="$work/cache.net/apps/bin"
mkdir -p "$app/lib/Resources/qt_menu.nib" "$app/platforms" "$work/cache.rsync"
"$bin/bench/make_tree" "$app/lib" 2000 1024 65536 .so
"$bin/bench/make_tree" "$app/lib/Resources/qt_menu.nib" 4 1024 4096 .nib
"$bin/bench/make_tree" "$app/platforms" 4 1024 65536 .so
cp "$bin/exe_cache/kzLocalCache" "$app/kzOther"
"$bin/exe_cache/kzLocalCache" "$app/kzOther" "$work/cache.local/" -fast >/dev/null
rsync -a "$app/" "$work/cache.rsync/"
firsts=() laters=()
for _ in 1 2 3 4 5 6 7; do
  read -r first later < <("$bin/bench/cache_refresh_driver" "$app/kzOther" "$work/cache.local/" 5)
  firsts+=("$first"); laters+=("$later")
done
first_ms=$(median "${firsts[@]}"); later_ms=$(median "${laters[@]}")
command_s=$(timed 7 "$bin/exe_cache/kzLocalCache" "$app/kzOther" "$work/cache.local/" -fast)
rsync_s=$(timed 7 rsync -a --dry-run "$app/" "$work/cache.rsync/")
rsync_ms=$(in_ms "$rsync_s")
command_ms=$(in_ms "$command_s")
r=$(ratio "$first_ms" "$rsync_ms")
line "up-to-date cache refresh, 2,008 files:" "tool ${first_ms} ms, rsync -a --dry-run ${rsync_ms} ms -> ratio $r (goal <= 0.5: $(verdict "$r" 0.5 "<="))"
line "  later calls, the whole command:" "${later_ms} ms (ratio $(ratio "$later_ms" "$rsync_ms")), kzLocalCache ${command_ms} ms (ratio $(ratio "$command_ms" "$rsync_ms"))"

# 9. The locked file under contention: sixteen processes, twelve of them impatient, until
#    100,000 turns have been taken; then twelve that find an abandoned lock together, fifty
#    times over. No two may ever hold the lock at once.
for run in "turns 16 12 1 100000" "stale 12 50"; do
  read -r _ turns _ overlaps _ failures _ seconds _ rate < <("$bin/bench/lock_stress" $run || true)
  line "locked file, lock_stress ${run%% *}:" "$turns turns in $seconds s ($rate a second), $overlaps overlaps, $failures failures (goal: 0 overlaps: $([ "$overlaps" = 0 ] && echo met || echo MISSED))"
done
fi

# 10. On real network shares (SMB and SFTP on 127.0.0.1, mounted through FUSE), against the
#    same tools to the same mount: an up-to-date log pass over 1,000 files, and first copies
#    of 200 files of 1-64 KiB and of one file of 100 MiB in eight turns: each tool's median, and
#    the median of the turn-by-turn throughput ratios against the faster of rsync and cp.
share_bench() {
  local kind=$1 state="$work/share.$1" at
  chmod 755 "$work" # the share's server reaches its folder as another user
  if ! at=$(tests/support/network_share.sh start "$kind" "$state" "$(free_port)" 2>"$work/share.err"); then
    line "$kind share:" "not measured: $(cat "$work/share.err")"
    return
  fi
  mkdir -p "$at/farm/sub/log"
  # The first pass copies. A FUSE file system finishes a close after close has returned, and
  # passes run back to back here rather than seven seconds apart, so the mirror is given two
  # more passes with a pause to settle before the up-to-date passes are timed.
  for _ in 1 2 3; do "$bin/bench/log_pass_driver" "$work/share.logs/" "$at/farm/" 1 >/dev/null; sleep 2; done
  # rsync renames each file from a temporary name after its close; through smbnetfs that close
  # may not have reached the server yet, and the rename then fails with EBUSY. Again, then.
  for try in 1 2 3; do
    "${rsync_to_share[@]}" "$work/share.logs/" "$at/rsync/" && break
    [ "$try" -lt 3 ] || exit 1
    sleep 2
  done
  pass_against_rsync "$kind, up-to-date pass, 1,000 files:" "$work/share.logs/" "$at/farm/" "$at/rsync/" --no-owner --no-group
  if [ "$kind" = smb ]; then
    # What an up-to-date pass costs the file server, from Samba's own counters: the SMB2
    # requests of one pass, and of rsync's quick check, each after the same quiet time (the
    # FUSE caches have expired). smbd writes its counters out every second or so.
    smb_requests() { sleep 2; smbstatus -P -s "$state/smb/smb.conf" 2>/dev/null | awk -F: '/^smb2_.*_count/ { n += $2 } END { print n + 0 }'; }
    local before tool_requests rsync_requests
    sleep 10; before=$(smb_requests)
    "$bin/bench/log_pass_driver" "$work/share.logs/" "$at/farm/" 0
    tool_requests=$(($(smb_requests) - before))
    sleep 10; before=$(smb_requests)
    rsync -a --dry-run --no-owner --no-group "$work/share.logs/" "$at/rsync/"
    rsync_requests=$(($(smb_requests) - before))
    line "smb, requests of an up-to-date pass:" "tool $tool_requests, rsync -a --dry-run $rsync_requests -> ratio $(ratio "$tool_requests" "$rsync_requests") (goal <= 1.05, parity: $(verdict "$(ratio "$tool_requests" "$rsync_requests")" 1.05 "<="))"
    # And what a first copy of the 200 small files costs it, the tool's against cp's: the
    # work the file server does, which no noise on this machine changes.
    local cp_requests
    mkdir -p "$at/kz" "$at/cp"
    sleep 5; before=$(smb_requests)
    "$bin/bench/copy_files" --folder "$work/share.small" "$at/kz"
    tool_requests=$(($(smb_requests) - before))
    sleep 5; before=$(smb_requests)
    cp --preserve=timestamps -r "$work/share.small/." "$at/cp/"
    cp_requests=$(($(smb_requests) - before))
    line "smb, requests of a first copy:" "200 files of 1-64 KiB: tool $tool_requests, cp $cp_requests -> ratio $(ratio "$tool_requests" "$cp_requests") (goal <= 1.05, parity: $(verdict "$(ratio "$tool_requests" "$cp_requests")" 1.05 "<="))"
  fi

  for what in small big; do
    local src="$work/share.$what" order=(rs kz cp) cmd ticks
    local -A times=([kz]="" [rs]="" [cp]="")
    ticks=$(cpu_ticks)
    for turn in 1 2 3 4 5 6 7 8; do
      # Each copy starts from the same state: its destination fresh, what the copies before it
      # wrote out on the disk (sync) and a second for the share to finish what they left it
      # (a FUSE mount closes files after close has returned), so that none pays for another's
      # work, and its source in the page cache. The tool's copy stands between the two others
      # in each turn, right beside the one it is compared with, and rsync and cp take turns at
      # going first. Copies to a share vary by 10 % or more from one to the next, and by more
      # when the host takes CPU from this machine for seconds at a time.
      for who in "${order[@]}"; do
        rm -rf "${at:?}/$who"; mkdir -p "$at/$who"; sync; sleep 1; warm "$src"
        case $who/$what in
          kz/small) cmd=("$bin/bench/copy_files" --folder "$src" "$at/kz") ;;
          kz/big) cmd=("$bin/bench/copy_files" "$src" "$at/kz/big") ;;
          rs/small) cmd=("${rsync_to_share[@]}" "$src/" "$at/rs/") ;;
          rs/big) cmd=("${rsync_to_share[@]}" "$src" "$at/rs/big") ;;
          cp/small) cmd=(cp --preserve=timestamps -r "$src/." "$at/cp/") ;;
          cp/big) cmd=(cp --preserve=timestamps "$src" "$at/cp/big") ;;
        esac
        if ! "$measure" "$work/t" "${cmd[@]}"; then
          [ "$who" = rs ] || exit 1 # only rsync's refused rename (above) is expected here
          echo "($kind, $what: rsync failed in turn $turn, as above)"
        fi
        times[$who]+=" $(field "$work/t" 1)"
      done
      order=("${order[2]}" "${order[1]}" "${order[0]}")
    done
    # The faster of rsync and cp by its median is the one to match; the ratio is taken turn by
    # turn against it.
    local kz_s rs_s cp_s faster
    kz_s=$(median ${times[kz]}); rs_s=$(median ${times[rs]}); cp_s=$(median ${times[cp]})
    faster=$(awk -v a="$rs_s" -v b="$cp_s" 'BEGIN { print (a < b) ? "rs" : "cp" }')
    r=$(turn_ratio "${times[kz]}" "${times[$faster]}")
    line "$kind, first copy, $what:" "tool ${kz_s} s, rsync -a ${rs_s} s, cp ${cp_s} s -> throughput ratio against the faster $r (goal >= 0.95: $(verdict "$r" 0.95 ">=")), host steal $(stolen_since "$ticks") %"
    line "  turn by turn, s:" "tool$(printf ' %.2f' ${times[kz]}); rsync$(printf ' %.2f' ${times[rs]}); cp$(printf ' %.2f' ${times[cp]})"
  done
  tests/support/network_share.sh stop "$state"
}
free_port() { python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'; }
if [ "$only" = all ] || [ "$only" = shares ]; then
  mkdir -p "$work/share.logs" "$work/share.small"
  "$bin/bench/make_tree" "$work/share.logs" 1000 100 2000 .txt
  "$bin/bench/make_tree" "$work/share.small" 200 1024 65536 .dat
  head -c 104857600 /dev/urandom >"$work/share.big"
  for kind in smb sftp; do share_bench "$kind"; done
fi
