# shellcheck shell=bash
# Ground shared by run.sh and test.sh: the tree's root, messages, building a preset. Sourced, never run.

kivra_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
kivra_build=$kivra_root/build
kivra_jobs=$(nproc)

say() { printf '%s\n' "$*"; }

# Ends the calling script with a message.
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# use_utf8: without a UTF-8 locale file names that are not ASCII reach no Windows program intact.
use_utf8() {
  case $(locale charmap 2>/dev/null) in
    UTF-8) ;;
    *) export LC_ALL=C.UTF-8 ;;
  esac
}

# use_ccache: the compiler cache is a convenience of those who have it, never a need.
use_ccache() {
  if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ] && command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  fi
}

# build_preset <preset> [target]: configures and builds the target, or everything.
build_preset() {
  (
    cd "$kivra_root" || exit 1
    cmake --preset "$1" >"$kivra_build/logs/configure-$1.log" 2>&1 || {
      cat "$kivra_build/logs/configure-$1.log"
      exit 1
    }
    cmake --build --preset "$1" -j "$kivra_jobs" ${2:+--target "$2"}
  )
}
