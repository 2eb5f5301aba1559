#!/usr/bin/env bash
# Serves a folder as a real network share on 127.0.0.1 and mounts it through FUSE, the way a
# render farm's network folder reaches the server's machine.
#
#   network_share.sh start smb|sftp STATE PORT   serves STATE/served, mounts it at STATE/mnt,
#                                                and prints the folder to use (below the mount)
#   network_share.sh stop STATE                  unmounts and stops every server it started
#
# And the faults a farm's share has in an ordinary week, for STATE as started above:
#   network_share.sh kill STATE      kills the share's server with its sessions (SIGKILL)
#   network_share.sh serve STATE     starts the server again, on the same port
#   network_share.sh pause STATE     the server stops answering (SIGSTOP to it and its sessions)
#   network_share.sh resume STATE    and goes on (SIGCONT)
#   network_share.sh unmount STATE   the mount goes away (lazily, as with open files)
#   network_share.sh mount STATE     and comes back, also over what was written below it
#
# The servers reach the served folder as the unprivileged user daemon (nobody is Samba's
# guest), as a file server reaches a share as the user who logged in, so that the folder's
# rights apply to them. Everything the
# servers keep (configuration, keys, logs, pid files) stays below STATE. Needs root and
# /dev/fuse; `start` exits 77 with the reason on standard error where they or a program are
# missing, so that tests can say why they were skipped.
set -u

skip() { echo "$*" >&2; exit 77; }

serve_smb() {
  local state=$1 port=$2
  mkdir -p "$state"/{smb/private,smb/lock,smb/state,smb/cache,smb/pid,smb/ncalrpc,home/.smb}
  cat >"$state/smb/smb.conf" <<EOF
[global]
  interfaces = 127.0.0.1
  bind interfaces only = yes
  smb ports = $port
  disable netbios = yes
  server role = standalone server
  passdb backend = tdbsam
  private dir = $state/smb/private
  lock directory = $state/smb/lock
  state directory = $state/smb/state
  cache directory = $state/smb/cache
  pid directory = $state/smb/pid
  ncalrpc dir = $state/smb/ncalrpc
  log file = $state/smb/log
  load printers = no
  printcap name = /dev/null
  disable spoolss = yes
  smbd profiling level = count
[kz]
  path = $state/served
  read only = no
  force user = daemon
EOF
  printf 'kz\nkz\n' | smbpasswd -c "$state/smb/smb.conf" -s -a root >/dev/null || return 1
  smbd -s "$state/smb/smb.conf" -D || return 1
  wait_for_port "$port"
}

mount_smb() {
  local state=$1 port=$2
  # smbnetfs reads its settings and the share's password from $HOME/.smb.
  cat >"$state/home/.smb/smbnetfs.conf" <<EOF
smb_query_browsers "false"
log_file "$state/smbnetfs.log"
auth "127.0.0.1" "root" "kz"
EOF
  chmod 600 "$state/home/.smb/smbnetfs.conf"
  HOME="$state/home" smbnetfs "$state/mnt" -o nonempty || return 1
  echo "$state/mnt/127.0.0.1:$port/kz"
}

serve_sftp() {
  local state=$1 port=$2
  mkdir -p "$state/ssh" /run/sshd
  if [ ! -f "$state/ssh/host_key" ]; then
    ssh-keygen -q -t ed25519 -N '' -f "$state/ssh/host_key" || return 1
    ssh-keygen -q -t ed25519 -N '' -f "$state/ssh/user_key" || return 1
    cp "$state/ssh/user_key.pub" "$state/ssh/authorized_keys"
  fi
  chmod 755 "$state/ssh"
  chmod 644 "$state/ssh/authorized_keys"
  cat >"$state/ssh/sshd_config" <<EOF
ListenAddress 127.0.0.1
Port $port
HostKey $state/ssh/host_key
PidFile $state/ssh/sshd.pid
AuthorizedKeysFile $state/ssh/authorized_keys
StrictModes no
PasswordAuthentication no
KbdInteractiveAuthentication no
UsePAM no
AllowUsers daemon
ForceCommand internal-sftp
Subsystem sftp internal-sftp
EOF
  "$(command -v sshd || echo /usr/sbin/sshd)" -f "$state/ssh/sshd_config" -E "$state/ssh/log" || return 1
  wait_for_port "$port"
}

mount_sftp() {
  local state=$1 port=$2
  # As an administrator mounts a share that must outlive a restart of its server: sshfs
  # connects again when the connection is lost, and notices a server that stopped answering.
  sshfs -p "$port" -o "reconnect,ServerAliveInterval=5,ServerAliveCountMax=3" \
    -o "IdentityFile=$state/ssh/user_key,StrictHostKeyChecking=no,UserKnownHostsFile=/dev/null,BatchMode=yes" \
    "daemon@127.0.0.1:$state/served" "$state/mnt" || return 1
  echo "$state/mnt"
}

wait_for_port() {
  for _ in $(seq 100); do
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null && return 0
    sleep 0.1
  done
  echo "nothing listens on 127.0.0.1:$1" >&2
  return 1
}

# A process and all its descendants, parents first.
process_tree() {
  local root=$1 file line pid rest
  echo "$root"
  for file in /proc/[0-9]*/stat; do
    read -r line 2>/dev/null <"$file" || continue
    pid=${line%% *}
    rest=${line##*) } # behind the name: the state, then the parent
    rest=${rest#* }
    [ "${rest%% *}" = "$root" ] && process_tree "$pid"
  done
}

# The share's server and its sessions.
server_processes() {
  local state=$1 pidfile
  for pidfile in "$state/smb/pid/smbd.pid" "$state/ssh/sshd.pid"; do
    [ -f "$pidfile" ] && kill -0 "$(cat "$pidfile")" 2>/dev/null && process_tree "$(cat "$pidfile")"
  done
}

unmount() {
  local state=$1
  if mountpoint -q "$state/mnt" 2>/dev/null; then
    fusermount -u "$state/mnt" 2>/dev/null || fusermount -u -z "$state/mnt" 2>/dev/null || umount -l "$state/mnt"
  fi
}

stop() {
  local state=$1 pids
  unmount "$state"
  pids=$(server_processes "$state")
  # A paused server would not end on SIGTERM.
  [ -z "$pids" ] || { kill -CONT $pids; kill $pids; } 2>/dev/null
  return 0
}

case "${1:-}" in
  start)
    kind=$2 state=$3 port=$4
    [ "$(id -u)" -eq 0 ] || skip "network shares need root (to serve and to mount through FUSE)"
    [ -c /dev/fuse ] && [ -r /dev/fuse ] || skip "no usable /dev/fuse on this machine"
    case $kind in
      smb) needs="smbd smbpasswd smbnetfs fusermount" ;;
      sftp) needs="ssh-keygen sshfs fusermount" ;;
      *) echo "unknown share kind: $kind" >&2; exit 2 ;;
    esac
    for program in $needs; do
      command -v "$program" >/dev/null || [ -x "/usr/sbin/$program" ] || skip "$program is not installed (scripts/install-deps.sh installs it)"
    done
    [ "$kind" = sftp ] && { command -v sshd >/dev/null || [ -x /usr/sbin/sshd ] || skip "sshd is not installed"; }
    # The user daemon reaches the served folder through STATE.
    mkdir -p "$state/served" "$state/mnt"
    chmod 755 "$state"
    chown daemon: "$state/served"
    echo "$kind" >"$state/kind"
    echo "$port" >"$state/port"
    if ! "serve_$kind" "$state" "$port" || ! "mount_$kind" "$state" "$port"; then
      stop "$state"
      exit 1
    fi
    ;;
  stop) stop "$2" ;;
  kill) pids=$(server_processes "$2"); [ -z "$pids" ] || kill -KILL $pids ;;
  serve) "serve_$(cat "$2/kind")" "$2" "$(cat "$2/port")" ;;
  pause) pids=$(server_processes "$2"); [ -z "$pids" ] || kill -STOP $pids ;;
  resume) pids=$(server_processes "$2"); [ -z "$pids" ] || kill -CONT $pids ;;
  unmount) unmount "$2" ;;
  mount) "mount_$(cat "$2/kind")" "$2" "$(cat "$2/port")" >/dev/null ;;
  *) echo "usage: $0 start smb|sftp STATE PORT | stop|kill|serve|pause|resume|unmount|mount STATE" >&2; exit 2 ;;
esac
