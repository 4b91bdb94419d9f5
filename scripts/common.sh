# shellcheck shell=bash
# Sourced by every verb, from the checkout's root (where ./dev has gone): strict mode and plain messages.
set -euo pipefail

# A linker path of the person's environment must not reach our links.
unset LIBRARY_PATH
export CCACHE_DIR="${CCACHE_DIR:-$PWD/build/ccache}"
# The compiler's own list of headers decides, instead of a run of the preprocessor before each compilation.
export CCACHE_DEPEND=1
export CCACHE_SLOPPINESS=pch_defines,time_macros

say() { printf '\n== %s\n' "$*"; }
fail() {
  printf 'dev: %s\n' "$*" >&2
  exit 1
}

# Runs a command as root where that is needed.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "installing packages needs root: run this as root, or install sudo"
  fi
}

# configure_and_build PRESET [TARGET...]
configure_and_build() {
  local preset=$1
  shift
  cmake --preset "$preset" >"build/$preset.configure.log" 2>&1 || {
    cat "build/$preset.configure.log" >&2
    fail "configuring '$preset' failed; the lines above say why"
  }
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# quiet_build NAME COMMAND...: runs the command, which builds that. Its report goes to build/NAME.build.log; printed is the
# last line of it, or what went wrong.
quiet_build() {
  "${@:2}" >"build/$1.build.log" 2>&1 || {
    grep -E 'error|FAILED' "build/$1.build.log" | head -n 40 >&2
    fail "building '$1' failed; the whole report is build/$1.build.log"
  }
  tail -n 1 "build/$1.build.log"
}

mkdir -p build
