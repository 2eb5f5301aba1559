#!/usr/bin/env bash
# What a newcomer meets: the README's demo command on a fresh minimal Debian 12
# (debootstrap --variant=minbase bookworm), with this checkout cloned into /root and run as
# root, twice. Prints how long each run took, the installation of what the demo needs
# included in the first. Needs root and Debian's mirror; takes about five minutes and 1 GB
# in a temporary folder, which is removed at the end with everything mounted in it.
#
# Usage: scripts/fresh-debian-demo.sh [mirror]   (http://deb.debian.org/debian by default)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
mirror=${1:-http://deb.debian.org/debian}
[ "$(id -u)" -eq 0 ] || { echo "This needs root (debootstrap and chroot)." >&2; exit 1; }
scripts/install-deps.sh --tool debootstrap git

# The mounts live in a mount namespace of their own, so they go with this script.
if [ "${KZ_FRESH_NAMESPACE:-}" != 1 ]; then
  exec env KZ_FRESH_NAMESPACE=1 unshare --mount --propagation private "$0" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/kz_fresh_debian.XXXXXX")
root="$work/root"
cleanup() {
  for mounted in proc dev sys; do umount -R "$root/$mounted" 2>/dev/null || true; done
  rm -rf --one-file-system "$work"
}
trap cleanup EXIT
echo "Making a minimal Debian 12 in $root"
debootstrap --variant=minbase bookworm "$root" "$mirror" >"$work/debootstrap.log" 2>&1 ||
  { tail -20 "$work/debootstrap.log" >&2; exit 1; }
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount --rbind /sys "$root/sys"
cp /etc/resolv.conf "$root/etc/resolv.conf"
git clone -q "$top" "$root/root/kzStartLocal"

for run in first second; do
  started=$(date +%s.%N)
  chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
    bash -c 'cd /root/kzStartLocal && scripts/demo.sh' >"$work/$run.log" 2>&1 ||
    { echo "The demo's $run run failed:" >&2; tail -30 "$work/$run.log" >&2; exit 1; }
  seconds=$(awk -v a="$started" -v b="$(date +%s.%N)" 'BEGIN { printf "%.0f", b - a }')
  echo "The demo's $run run on a fresh minimal Debian 12: ${seconds} s"
  grep -m 1 '^Installing: ' "$work/$run.log" || echo "  (nothing to install)"
  grep -m 1 'newly installed' "$work/$run.log" || true
  echo "  it ends with: $(tail -n 1 "$work/$run.log" | tr -s ' ')"
done
