#!/usr/bin/env bash
# Builds the fuzzers and runs each of them for a while. See --help.
set -uo pipefail
. "$(dirname "$0")/tools/common.sh"
. "$kivra_root/tools/packages.sh"

usage() {
  cat <<'HELP'
Usage: ./fuzz.sh [seconds [fuzzer]...]

Builds the fuzzers (clang++, AddressSanitizer and UBSan) and runs all of them, or those named, for so many
seconds each (60), two at a time. What is needed is installed first where it is missing.

Their corpora are in fuzz/corpus. New inputs go to build/found/<fuzzer>, where the next run starts from them,
one that fails to build/found/<fuzzer>-crash-..., each fuzzer's output to build/logs/fuzz-<fuzzer>.log.
HELP
}

# run_fuzzer <name>: prints one line of what came of it, or its output where it found something.
run_fuzzer() {
  local name=$1 log=$kivra_build/logs/fuzz-$1.log found=$kivra_build/found/$1 runs
  mkdir -p "$found"
  if "$kivra_build/fuzz/fuzz/kivra_fuzz_$name" -max_total_time="$seconds" -timeout=20 -print_final_stats=1 \
    -artifact_prefix="$found-" "$found" "$kivra_root/fuzz/corpus/$name" >"$log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    say "ok      $name: $runs runs"
  else
    tail -n 60 "$log"
    say "FAILED  $name"
    return 1
  fi
}

case ${1:-} in
  --help | -h) usage && exit 0 ;;
  '' | [1-9]*) seconds=${1:-60} ;;
  *) fail "no number of seconds: $1 (see --help)" ;;
esac
[ $# -eq 0 ] || shift

need build test
use_ccache
say 'Building the fuzzers'
build_preset fuzz >"$kivra_build/logs/fuzz.log" 2>&1 || {
  tail -n 60 "$kivra_build/logs/fuzz.log"
  fail 'the fuzzers do not build'
}
[ $# -gt 0 ] || set -- $(ls "$kivra_root/fuzz/corpus")
export -f run_fuzzer say
export kivra_root kivra_build seconds
# AddressSanitizer wants fixed addresses, which newer kernels may have given away when they shuffle them.
launcher=()
if setarch -R true 2>/dev/null; then launcher=(setarch -R); fi
printf '%s\n' "$@" | "${launcher[@]}" xargs -P 2 -n 1 bash -c 'run_fuzzer "$0"'
