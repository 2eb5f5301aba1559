#!/usr/bin/env bash
# Installs, from Debian's packages, whatever this machine lacks to build and test the project.
# Does nothing when everything is there already.
set -euo pipefail

# The network-share tests serve a folder with Samba and sshd on 127.0.0.1 and mount it
# through FUSE (smbnetfs, sshfs). The package test verifies the systemd unit where
# systemd-analyze is present; it does not install systemd for that.
packages=(cmake g++ ninja-build libgtest-dev tzdata valgrind
  samba samba-common-bin smbnetfs sshfs openssh-server openssh-client fuse3
  zlib1g-dev # the reference for CRC-32 in tests and benchmarks only
  dpkg-dev groff-base man-db # the Debian package: its dependencies, its manual pages
  "$@")
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "Missing Debian packages: ${missing[*]}" >&2
    echo "This user is not root and there is no sudo. As root, run:" >&2
    echo "  apt-get update && apt-get install -y --no-install-recommends ${missing[*]}" >&2
    exit 1
  fi
  sudo="sudo"
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
