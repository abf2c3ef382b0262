# shellcheck shell=bash
# What the scripts share. Sourced, not run.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

say() { printf '==> %s\n' "$*"; }

# A compiler cache is used where the machine has one.
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER="${CMAKE_C_COMPILER_LAUNCHER-ccache}"
  export CMAKE_CXX_COMPILER_LAUNCHER="${CMAKE_CXX_COMPILER_LAUNCHER-ccache}"
fi

# build PRESET [BUILD-ARGUMENT...]: configures and builds; prints the log only when that fails.
build() {
  local preset=$1 log
  shift
  mkdir -p build
  log=build/$preset.log
  say "building $preset (log: $log)"
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "$@"; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    echo "the build of $preset failed; the whole log is $log" >&2
    return 1
  fi
}
