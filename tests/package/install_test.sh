#!/usr/bin/env bash
# What an administrator and another program of the suite get from this build:
#   install_test.sh consumer BUILD SOURCE   installs into a temporary prefix and builds and
#                                           runs examples/consumer against that copy
#   install_test.sh package BUILD SOURCE    makes the Debian package and checks its files and
#                                           lintian's verdict, runs its commands from an
#                                           extracted copy, formats its manual pages and
#                                           verifies its systemd unit
set -euo pipefail
mode=$1 build=$2 source=$3
tmp=$(mktemp -d "${TMPDIR:-/tmp}/kz_install.XXXXXX")
trap 'rm -rf "$tmp"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

if [ "$mode" = consumer ]; then
  cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
  cmake -S "$source/examples/consumer" -B "$tmp/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$tmp/prefix" >/dev/null
  cmake --build "$tmp/consumer" >/dev/null
  mkdir "$tmp/folder" && touch "$tmp/folder/b.txt" "$tmp/folder/A.txt" && mkdir "$tmp/folder/sub"
  out=$("$tmp/consumer/kz_consumer" "$tmp/folder" kz_consumer)
  [ "$out" = "$(printf 'A.txt\nb.txt\n2 files, 1 processes named kz_consumer')" ] || fail "consumer said: $out"
  echo "the consumer built against the installed libraries ran: $out"
  exit 0
fi

[ "$mode" = package ] || fail "unknown mode $mode"
(cd "$build" && cpack -G DEB -B "$tmp/out" >/dev/null) || fail "cpack failed"
deb=$(ls "$tmp"/out/kzstartlocal_*.deb)
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
# Debian's own checks: no error (warnings are reported, and stay visible in the output).
verdict=$(lintian --fail-on error "$deb" 2>&1) || fail "lintian: $verdict"
grep -v '^running with root privileges' <<<"$verdict" || true

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
else
  echo "systemd-analyze is not here: the unit was not verified"
fi
echo "package $(basename "$deb"): $(wc -l <"$tmp/files") entries, $(stat -c %s "$deb") bytes"
