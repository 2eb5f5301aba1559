# Sourced by the scripts that build before they run something: kz_build PRESET [TARGET...]
# configures the preset and builds the targets (everything without any), quietly when all
# goes well. When not, it shows the whole output, compiler errors included, and fails.
# Further configure options may stand in the array kz_configure_options.
kz_configure_options=("${kz_configure_options[@]}")
kz_build() {
  local preset=$1 log
  shift
  local targets=()
  [ $# -eq 0 ] || targets=(--target "$@")
  if ! log=$(cmake --preset "$preset" "${kz_configure_options[@]}" 2>&1 &&
    cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}" 2>&1); then
    printf '%s\n' "$log" >&2
    echo "The build of the $preset preset failed: its output stands above." >&2
    return 1
  fi
}
