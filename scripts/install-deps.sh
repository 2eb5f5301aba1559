#!/usr/bin/env bash
# Installs, from Debian's packages, whatever this machine lacks to build and test the project
# and to make its Debian packages; a minimal Debian 12 gets everything it needs. Does nothing
# when everything is there already. Extra package names may be given as arguments.
#
# Usage: scripts/install-deps.sh [--tool] [package...]
#   --tool   only what building the commands takes (the compiler, CMake, Ninja): the demo
#            needs no more
#
# The network-share tests start their own Samba and sshd on 127.0.0.1 and stop them again:
# they need the programs, not the services. Debian starts a server's service when its
# package is installed and enables it at every boot, so the installation runs under a
# policy-rc.d that refuses every start (unless the machine has a policy of its own), and
# every service that the installation enabled is disabled again afterwards. Services that
# the machine had before stay as they were.
set -euo pipefail

# The shares are mounted through FUSE (smbnetfs, sshfs). The package test verifies the
# example systemd unit where systemd-analyze is present; it does not install systemd for it.
tool_packages=(cmake g++ ninja-build)
if [ "${1:-}" = --tool ]; then
  shift
  packages=("${tool_packages[@]}" "$@")
else
  packages=("${tool_packages[@]}" libgtest-dev tzdata valgrind
    samba samba-common-bin smbnetfs sshfs openssh-server openssh-client fuse3
    zlib1g-dev # the reference for CRC-32 in tests and benchmarks only
    libsqlite3-dev # a real database engine writes the job database in the tests
    dpkg-dev file lintian groff-base man-db # the Debian packages: dependencies, checks, manual pages
    pkgconf # a program built against libkz-dev through pkg-config
    clang-format # the test share is counted over formatted code
    "$@")
fi
# The policy that refuses every service start while this script installs carries a marker
# line with the installing process's id. A run killed outright (SIGKILL, which no trap sees)
# leaves it behind, and it would refuse every later start on this machine: the next run
# removes such a policy once its process has gone. A policy of the machine's own, without
# the marker, is never touched.
policy=/usr/sbin/policy-rc.d
marker="# Left by kzStartLocal's scripts/install-deps.sh while it installs: no service starts. pid"
sudo=""
[ "$(id -u)" -eq 0 ] || ! command -v sudo >/dev/null || sudo="sudo"
owner=$(grep -F -s "$marker " "$policy" | head -n 1) || true
owner=${owner#"$marker "}
if [[ $owner =~ ^[0-9]+$ ]] && [ ! -d "/proc/$owner" ]; then
  echo "Removing $policy, left by a run of this script that was killed (process $owner)"
  $sudo rm -f "$policy"
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ] && [ -z "$sudo" ]; then
  echo "Missing Debian packages: ${missing[*]}" >&2
  echo "This user is not root and there is no sudo. As root, run: $0 ${*}" >&2
  exit 1
fi

# The links that make a service start at boot: systemd's in /etc/systemd/system, and the
# start links of the init scripts in the multi-user runlevels (those of rcS.d set the
# machine up at boot, such as procps applying sysctl.conf, and start no service).
service_links() { find /etc/systemd/system /etc/rc[2-5].d -type l 2>/dev/null | sort; }
before=$(service_links)

if [ ! -e "$policy" ]; then
  printf '#!/bin/sh\n%s %s\nexit 101\n' "$marker" "$$" | $sudo tee "$policy" >/dev/null
  $sudo chmod 755 "$policy"
  trap '$sudo rm -f "$policy"' EXIT
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"

# What the installation enabled, disabled again the way Debian records it, so that a later
# upgrade of the package does not enable it either: systemd's units first (with all their
# links, aliases included), then the init scripts.
comm -13 <(printf '%s\n' "$before") <(service_links) | sort -r | while read -r link; do
  # A link may be gone already, with an earlier link of the same unit (an alias).
  [ -L "$link" ] || continue
  case $link in
  /etc/systemd/system/*)
    target=$(readlink "$link")
    [ "$target" != /dev/null ] || continue # a mask enables nothing
    unit=$(basename "$target")
    owner=$(dpkg-query -S "/lib/systemd/system/$unit" 2>/dev/null || dpkg-query -S "/usr/lib/systemd/system/$unit" 2>/dev/null || true)
    echo "Disabling $unit, which the installation enabled"
    $sudo env DPKG_MAINTSCRIPT_PACKAGE="${owner%%:*}" deb-systemd-helper disable "$unit" ||
      echo "Could not disable $unit; disable it with: systemctl disable $unit" >&2
    ;;
  /etc/rc?.d/S*)
    script=${link##*/S[0-9][0-9]}
    echo "Disabling the init script $script, which the installation enabled"
    $sudo update-rc.d "$script" disable >/dev/null 2>&1 ||
      echo "Could not disable $script; disable it with: update-rc.d $script disable" >&2
    ;;
  esac
done
