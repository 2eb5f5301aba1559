#!/usr/bin/env bash
# What an administrator and another program of the suite get from this build:
#   install_test.sh consumer BUILD SOURCE   installs into a temporary prefix and builds and
#                                           runs examples/consumer against that copy
#   install_test.sh package BUILD SOURCE    makes the Debian packages and checks their files
#                                           and lintian's verdict; runs the commands from an
#                                           extracted copy, formats their manual pages and
#                                           verifies the systemd unit; builds and runs
#                                           examples/consumer against an extracted copy of
#                                           libkz-dev, through find_package and through
#                                           pkg-config
set -euo pipefail
mode=$1 build=$2 source=$3
tmp=$(mktemp -d "${TMPDIR:-/tmp}/kz_install.XXXXXX")
trap 'rm -rf "$tmp"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

mkdir "$tmp/folder" && touch "$tmp/folder/b.txt" "$tmp/folder/A.txt" && mkdir "$tmp/folder/sub"
# Runs a consumer program and checks what it says; HOW tells how it was built.
consumer_runs() {
  local program=$1 how=$2 out
  out=$("$program" "$tmp/folder" kz_consumer)
  [ "$out" = "$(printf 'A.txt\nb.txt\n2 files, 1 processes named kz_consumer')" ] || fail "consumer ($how) said: $out"
  echo "the consumer built $how ran: ${out##*$'\n'}"
}

if [ "$mode" = consumer ]; then
  cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
  cmake -S "$source/examples/consumer" -B "$tmp/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$tmp/prefix" >/dev/null
  cmake --build "$tmp/consumer" >/dev/null
  consumer_runs "$tmp/consumer/kz_consumer" "against the libraries installed into a prefix"
  exit 0
fi

[ "$mode" = package ] || fail "unknown mode $mode"
# Debian's own check of a package is part of this test: without it, the test is skipped
# (status 77), saying why.
command -v lintian >/dev/null || { echo "lintian is not installed (apt-get install lintian)"; exit 77; }
(cd "$build" && cpack -G DEB -B "$tmp/out" >/dev/null) || fail "cpack failed"
deb=$(ls "$tmp"/out/kzstartlocal_*.deb)
dev=$(ls "$tmp"/out/libkz-dev_*.deb)
# Debian's own checks: no error in either package (warnings would stay visible here), and,
# down to its mere hints, no program built without Debian's hardening.
for package in "$deb" "$dev"; do
  verdict=$(TMPDIR="$tmp" lintian --fail-on error --display-info "$package" 2>&1) || fail "lintian: $verdict" # its scratch files go with $tmp
  ! grep ' hardening-' <<<"$verdict" || fail "lintian finds programs built without hardening"
  grep -v -e '^running with root privileges' -e '^I: ' <<<"$verdict" || true
done

dpkg-deb -c "$deb" | awk '{ print $6 }' >"$tmp/files"
cat >"$tmp/expected" <<'LIST'
./usr/
./usr/bin/
./usr/bin/kzLocalCache
./usr/bin/kzStartLocal
./usr/share/
./usr/share/doc/
./usr/share/doc/kzstartlocal/
./usr/share/doc/kzstartlocal/changelog.Debian.gz
./usr/share/doc/kzstartlocal/copyright
./usr/share/doc/kzstartlocal/examples/
./usr/share/doc/kzstartlocal/examples/kzStartLocal.service
./usr/share/man/
./usr/share/man/man1/
./usr/share/man/man1/kzLocalCache.1.gz
./usr/share/man/man1/kzStartLocal.1.gz
LIST
diff "$tmp/expected" <(sort "$tmp/files") || fail "the package's files differ from the list above"
dpkg-deb -f "$deb" Depends | grep -q libc6 || fail "no dependency on the C library"

# The commands, from an extracted copy: the usage lines, and a run that ends at once since
# no server runs in this test's own process namespace.
root="$tmp/root"
dpkg-deb -x "$deb" "$root"
set +e
"$root/usr/bin/kzStartLocal" >"$tmp/usage"; status=$?
"$root/usr/bin/kzLocalCache" 2>"$tmp/cache_usage"; cache_status=$?
out=$(timeout 20 "$root/usr/bin/kzStartLocal" "$tmp/local" "$tmp/net" -log); run_status=$?
set -e
[ "$status" = 255 ] && grep -q 'kzStartLocal \[localfolder\]' "$tmp/usage" || fail "kzStartLocal usage: $status $(cat "$tmp/usage")"
[ "$cache_status" = 2 ] && grep -q '^usage: kzLocalCache' "$tmp/cache_usage" || fail "kzLocalCache usage: $cache_status"
[ "$run_status" = 0 ] && [ "${out##*$'\n'}" = QUIT ] || fail "kzStartLocal run: $run_status $out"

# The manual pages format without a warning, and read as man shows them.
for page in kzStartLocal kzLocalCache; do
  zcat "$root/usr/share/man/man1/$page.1.gz" >"$tmp/$page.1"
  warnings=$(groff -ww -z -man "$tmp/$page.1" 2>&1)
  [ -z "$warnings" ] || fail "$page.1: $warnings"
  MANWIDTH=80 man -l "$root/usr/share/man/man1/$page.1.gz" 2>/dev/null | grep -q 'EXIT STATUS' || fail "man $page shows no EXIT STATUS"
done

# The unit, with its command pointed at the extracted copy and a stand-in for the server's unit.
if command -v systemd-analyze >/dev/null; then
  mkdir "$tmp/units"
  sed "s|/usr/bin/kzStartLocal|$root/usr/bin/kzStartLocal|" \
    "$root/usr/share/doc/kzstartlocal/examples/kzStartLocal.service" >"$tmp/units/kzStartLocal.service"
  printf '[Unit]\nDescription=stand-in server\n[Service]\nExecStart=/bin/sleep 1\n' >"$tmp/units/kzServer.service"
  verdict=$(cd "$tmp/units" && SYSTEMD_LOG_LEVEL=warning systemd-analyze verify --man=no ./kzStartLocal.service ./kzServer.service 2>&1) ||
    fail "systemd-analyze verify: $verdict"
  [ -z "$verdict" ] || fail "systemd-analyze verify: $verdict"
  # Least privilege: an exposure of at most 2.0 on systemd's scale of 10 ("OK" or better).
  exposure=$(systemd-analyze security --offline=true --threshold=20 "$tmp/units/kzStartLocal.service" 2>&1) ||
    fail "the unit's exposure is above 2.0: $(tail -n 1 <<<"$exposure")"
  echo "the unit: $(tail -n 1 <<<"$exposure")"
else
  echo "systemd-analyze is not here: the unit was not verified"
fi
echo "package $(basename "$deb"): $(wc -l <"$tmp/files") entries, $(stat -c %s "$deb") bytes"

# libkz-dev: the libraries of the build's subsystems where the system keeps its own, every header of the source
# tree, the CMake package and kz.pc, and its own copyright and changelog.
multiarch=$(gcc -print-multiarch)
dpkg-deb -c "$dev" | awk '{ print $6 }' >"$tmp/dev_files"
IFS=';' read -r -a subsystems <<<"$KZ_SUBSYSTEMS" # the build's list
[ ${#subsystems[@]} -gt 0 ] || fail "KZ_SUBSYSTEMS names no subsystem"
for subsystem in "${subsystems[@]}"; do
  grep -qx "./usr/lib/$multiarch/libkz_$subsystem.a" "$tmp/dev_files" || fail "libkz-dev lacks libkz_$subsystem.a"
  for header in "$source/$subsystem"/*.h; do
    grep -qx "./usr/include/kz/$subsystem/$(basename "$header")" "$tmp/dev_files" || fail "libkz-dev lacks $subsystem/$(basename "$header")"
  done
done
for file in "lib/$multiarch/cmake/kz/kzConfig.cmake" "lib/$multiarch/pkgconfig/kz.pc" share/doc/libkz-dev/copyright \
  share/doc/libkz-dev/changelog.Debian.gz; do
  grep -qx "./usr/$file" "$tmp/dev_files" || fail "libkz-dev lacks /usr/$file"
done
dev_root="$tmp/dev_root"
dpkg-deb -x "$dev" "$dev_root"
# As from a real installation: find_package(kz) with no prefix given, in a file system whose
# root is the extracted package ...
cmake -S "$source/examples/consumer" -B "$tmp/dev_cmake" -G Ninja -DCMAKE_FIND_ROOT_PATH="$dev_root" \
  -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY >/dev/null || fail "find_package(kz) did not find libkz-dev"
cmake --build "$tmp/dev_cmake" >/dev/null
consumer_runs "$tmp/dev_cmake/kz_consumer" "with find_package(kz) from libkz-dev"
# ... and with plain g++ and what pkg-config says.
flags=$(PKG_CONFIG_SYSROOT_DIR="$dev_root" PKG_CONFIG_LIBDIR="$dev_root/usr/lib/$multiarch/pkgconfig" pkg-config --cflags --libs kz)
mkdir "$tmp/dev_pkgconfig"
g++ -std=c++17 -o "$tmp/dev_pkgconfig/kz_consumer" "$source/examples/consumer/main.cpp" $flags || fail "g++ with pkg-config's flags: $flags"
consumer_runs "$tmp/dev_pkgconfig/kz_consumer" "with g++ and pkg-config --cflags --libs kz from libkz-dev"
echo "package $(basename "$dev"): $(wc -l <"$tmp/dev_files") entries, $(stat -c %s "$dev") bytes"
