#!/usr/bin/env bash
# Lists the tests that ctest skipped in the builds given, each with its reason, from the
# JUnit results the test presets write (build/<preset>/Testing/results.xml). A skipped
# GoogleTest prints its reason in the lines under "...: Skipped"; a script that skips (with
# status 77) prints it as the first line of its output.
# Usage: scripts/skipped-tests.sh BUILD_FOLDER...
set -euo pipefail
skipped=$(for build in "$@"; do
  [ -f "$build/Testing/results.xml" ] || continue
  awk -v build="$(basename "$build")" '
    function unescape(s) {
      gsub(/&lt;/, "<", s); gsub(/&gt;/, ">", s); gsub(/&quot;/, "\"", s); gsub(/&apos;/, "'"'"'", s)
      gsub(/&amp;/, "\\&", s); return s
    }
    function reason(  i, r) {
      for (i = 1; i <= n; i++)
        if (out[i] ~ /: Skipped$/) {
          for (i++; i <= n && out[i] != ""; i++) r = r (r == "" ? "" : " ") out[i]
          return r
        }
      for (i = 1; i <= n; i++) if (out[i] != "") return out[i]
      return "no reason given"
    }
    /<testcase / { match($0, /name="[^"]*"/); name = substr($0, RSTART + 6, RLENGTH - 7); skipped = 0; n = 0 }
    /<skipped / { skipped = 1 }
    /<system-out>/ { reading = 1; sub(/.*<system-out>/, "") }
    reading {
      if (/<\/system-out>/) { reading = 0; sub(/<\/system-out>.*/, ""); if ($0 == "") next }
      out[++n] = $0
    }
    /<\/testcase>/ && skipped { printf "  %s (%s build): %s\n", unescape(name), build, unescape(reason()) }
  ' "$build/Testing/results.xml"
done)
echo
if [ -z "$skipped" ]; then
  echo "No test was skipped."
else
  echo "Skipped tests, and why:"
  printf '%s\n' "$skipped"
fi
