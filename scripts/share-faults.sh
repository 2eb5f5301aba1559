#!/usr/bin/env bash
# The mirror on real network shares while they misbehave: every fault of bench/share_faults
# (the share's server killed and started again, a server that stops answering, a full file
# system, mirror folders without write permission, the mount gone and back) on SMB and on
# SFTP, with `rsync -a` run every seven seconds beside the tool on the same share. Prints a
# line a row; exits with 1 if the tool failed a row. About ten minutes; needs root and
# /dev/fuse.
#
# Usage: scripts/share-faults.sh [FAULT...]   (all five by default)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/install-deps.sh rsync
source scripts/build-quietly.sh
kz_build default share_faults
faults=("$@")
[ ${#faults[@]} -gt 0 ] || faults=(kill pause full rights unmount)
status=0
for fault in "${faults[@]}"; do
  for kind in smb sftp; do
    tests/support/own_processes.sh build/default/bench/share_faults "$kind" "$fault" --rsync || status=1
  done
done
exit $status
