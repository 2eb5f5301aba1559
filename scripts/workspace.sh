# Sourced by the demo and the benchmarks: builds the targets named, makes a temporary
# workspace with a stand-in kzServerconsole (a copy of `sleep` under the server's name),
# and removes it, with every process started into `pids`, when the script ends.
# Sets: work (the workspace), bin (the build folder), pids (to add started processes to).
# Usage: source scripts/workspace.sh NAME TARGET...   (from the repository's top folder)
# With KZ_PRESET=tool, only the commands are built, and only what that takes is installed.

kz_workspace_name=$1
shift
kz_preset=${KZ_PRESET:-default}
if [ "$kz_preset" = tool ]; then
  scripts/install-deps.sh --tool ${KZ_EXTRA_PACKAGES:-}
else
  scripts/install-deps.sh ${KZ_EXTRA_PACKAGES:-}
fi
source scripts/build-quietly.sh
kz_build "$kz_preset" "$@"
bin="$PWD/build/$kz_preset"

work=$(mktemp -d "${TMPDIR:-/tmp}/$kz_workspace_name.XXXXXX")
pids=()
kz_cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  for share in "$work"/share.*/; do
    [ -d "$share/mnt" ] && tests/support/network_share.sh stop "$share"
  done
  rm -rf "$work"
}
trap kz_cleanup EXIT
cp "$(command -v sleep)" "$work/kzServerconsole"
