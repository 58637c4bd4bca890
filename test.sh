#!/usr/bin/env bash
# Builds everything and runs every test. See --help.
set -uo pipefail
. "$(dirname "$0")/tools/common.sh"
. "$kivra_root/tools/packages.sh"
. "$kivra_root/tools/wine.sh"
. "$kivra_root/tools/checks.sh"

usage() {
  cat <<'HELP'
Usage: ./test.sh [--quick]

Checks format and wording, builds for Linux (AddressSanitizer with UBSan, ThreadSanitizer, optimised) and
for Windows, runs the unit tests of each build, those for Windows under Wine, and at the end the
end-to-end tests on a virtual display. What is needed is installed first where it is missing.
Each step's output is left in build/logs.

  --quick   only format, wording and the native tests under AddressSanitizer
  --help    show this text
HELP
}

passed=0 failed=0 skipped=0
step_number=0
summary=()
logs=$kivra_build/logs
results= # folder of the reports of the step that runs

# step <title> <function> [argument]...: runs the function with its output in a log, which is shown if it
# fails. A step counts as one test, unless it runs test programs, whose cases count instead.
step() {
  local title=$1 start=$SECONDS log result counts='' step_passed=1 step_failed=0 step_skipped=0 step_again=0
  shift
  step_number=$((step_number + 1))
  log=$logs/step$step_number.log
  results=$logs/step$step_number
  mkdir -p "$results"
  printf '== %s\n' "$title"
  if "$@" >"$log" 2>&1; then
    result=ok
  else
    result=FAILED step_passed=0 step_failed=1
  fi
  if [ -e "$results/counts" ]; then
    read -r step_passed step_failed step_skipped step_again <"$results/counts"
    # A program may pass its cases and still end badly: a leak found at the end, a crash.
    [ "$result" = ok ] || [ "$step_failed" -gt 0 ] || step_failed=1
    [ "$step_failed" -eq 0 ] || result=FAILED
    counts=", $step_passed passed, $step_failed failed, $step_skipped skipped"
    [ "${step_again:-0}" -eq 0 ] || counts+=", $step_again only at the second attempt (see $log)"
  fi
  [ ! -s "$results/note" ] || counts+=", $(cat "$results/note")"
  [ "$result" = ok ] || tail -n 400 "$log"
  passed=$((passed + step_passed)) failed=$((failed + step_failed)) skipped=$((skipped + step_skipped))
  summary+=("$(printf '%-6s %4d s  %s%s' "$result" $((SECONDS - start)) "$title" "$counts")")
  printf '   %s, %d s%s\n' "$result" $((SECONDS - start)) "$counts"
  [ "$result" = ok ]
}

# What ctest is started with. Sanitizers want fixed addresses, which newer kernels may have given away
# when they shuffle them.
launcher=()
if setarch -R true 2>/dev/null; then launcher=(setarch -R); fi
# The drive on which the test programs see the files of this system.
root_drive=

# run_tests <build folder> <seconds per program> <ctest option>...: runs test programs and counts their
# cases from the reports that they write. A program without a report crashed: one failed case.
run_tests() {
  local folder=$1 seconds=$2 name report result=0 total=(0 0 0) cases
  shift 2
  GTEST_OUTPUT=xml:$root_drive$results/ GTEST_BRIEF=1 "${launcher[@]}" \
    ctest --test-dir "$folder" --timeout "$seconds" --output-on-failure --no-tests=error "$@" || result=1
  for name in $(ctest --test-dir "$folder" -N "$@" | sed -n 's/^ *Test *#[0-9]*: //p'); do
    report=$results/kivra_${name}_tests.xml
    cases=(0 1 0)
    if [ -s "$report" ]; then
      read -r -a cases < <(count_cases "$report")
      grep -E 'result="(skipped|suppressed)"' "$report" | sed 's/.*<testcase name="\([^"]*\)".*/Left out: \1/'
    else
      say "$name: the program left no report of its cases"
    fi
    total=($((total[0] + cases[0])) $((total[1] + cases[1])) $((total[2] + cases[2])))
  done
  printf '%d %d %d\n' "${total[@]}" >"$results/counts"
  return "$result"
}

# count_cases <report>: prints how many cases passed, failed and were skipped.
count_cases() {
  awk '
    function field(name) {
      return match($0, " " name "=\"[0-9]+\"") \
        ? substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : 0
    }
    /<testsuites / { tests = field("tests"); failed = field("failures") + field("errors") }
    /<testsuite / { skipped += field("skipped") + field("disabled") }
    END { print tests - failed - skipped, failed, skipped }' "$1"
}

# build_and_test <preset> <target> <ctest option>...: an empty target stands for everything.
build_and_test() {
  local preset=$1 target=$2
  shift 2
  build_preset "$preset" "$target" && run_tests "$kivra_build/$preset" 300 -j "$kivra_jobs" "$@"
}

# run_windows_tests <ctest option>...: one program at a time, since only one window has the focus.
run_windows_tests() {
  local root_drive=Z:
  run_tests "$kivra_build/windows-cmake" 600 "$@"
}

# What the end-to-end tests use of the program, in both attempts.
exercised=$logs/exercised-records.txt

# run_end_to_end_tests: with a full disk and a read-only folder at hand where the system allows them.
run_end_to_end_tests() {
  local odd=$wine_run_dir/odd launcher=("$kivra_root/tools/with_odd_folders.sh" "$wine_run_dir/odd")
  mkdir -p "$odd/read-only" && head -c 4096 /dev/zero >"$odd/read-only/data.bin"
  rm -f "$exercised"
  export KIVRA_EXERCISED=Z:$exercised
  # Wine's server opens the files, so it has to start where the mounts are seen.
  wine_stop_server
  if "${launcher[@]}" true; then
    export KIVRA_FULL_DISK=$odd/small KIVRA_READ_ONLY_FOLDER=$odd/read-only
  else
    say "No mounts here: the tests of a full disk and of a read-only folder are left out"
    export GTEST_FILTER='-*AFullDisk*:*AFolderThatCannotBeWritten*'
    launcher=()
  fi
  run_windows_tests -R '^end_to_end$' || run_failed_windows_tests_again
}

# A machine that does other things at the time makes windows slower than the tests' patience now and then.
# What failed gets a second attempt by itself, which is told in the summary.
run_failed_windows_tests_again() {
  local report=$results/kivra_end_to_end_tests.xml names first again
  names=$(failed_cases "$report") && [ -n "$names" ] || return 1
  read -r -a first <"$results/counts"
  mv "$report" "$results/first-attempt.xml"
  say "Second attempt at $names"
  GTEST_FILTER=$names run_windows_tests -R '^end_to_end$'
  read -r -a again <"$results/counts"
  printf '%d %d %d %d\n' $((first[0] + again[0])) "${again[1]}" "${first[2]}" "${again[0]}" >"$results/counts"
  [ "${again[1]}" -eq 0 ]
}

# check_everything_exercised: lists what the end-to-end tests have used of the program, and names what not.
check_everything_exercised() {
  local list=$logs/exercised.txt result=0
  awk -f "$kivra_root/tools/exercised.awk" "$exercised" >"$list" || result=1
  tail -n 1 "$list" | tee "$results/note"
  grep '^MISSING' "$list"
  return "$result"
}

# failed_cases <report>: prints the cases that failed, with colons between them.
failed_cases() {
  [ -s "$1" ] && awk '
    /<testcase / { split($0, name, "\""); match($0, /classname="[^"]*"/)
                   case_name = substr($0, RSTART + 11, RLENGTH - 12) "." name[2] }
    /<failure / && !seen[case_name]++ { printf "%s%s", separator, case_name; separator = ":" }' "$1"
}

quick=
case ${1:-} in
  --help | -h) usage && exit 0 ;;
  --quick) quick=yes ;;
  '') ;;
  *) fail "unknown argument $1 (see --help)" ;;
esac

if [ -n "$quick" ]; then need build test; else need build test wine display; fi
use_utf8
use_ccache
# Some tests make file systems, by programs that Debian keeps out of the path of ordinary users.
export PATH=$PATH:/usr/sbin:/sbin
rm -rf "$logs"/step*

step 'Format' check_format
step 'Scripts parse' check_scripts
step 'Wording' check_wording
step 'Linux, AddressSanitizer and UBSan' build_and_test debug ''
if [ -z "$quick" ]; then
  # Only what runs on several threads: the rest would show nothing new.
  step 'Linux, ThreadSanitizer' build_and_test tsan kivra_threaded_tests -L threads
  step 'Linux, optimised, with benchmarks' build_preset release
  if step 'Windows build' build_preset windows; then
    step 'Windows product folder' check_product "$kivra_build/windows"
    trap wine_end EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
    if step 'Wine and its display' wine_begin --display; then
      step 'Windows unit tests under Wine' run_windows_tests -E '^end_to_end$'
      step 'End-to-end tests under Wine' run_end_to_end_tests
      step 'Every command, key, dialog and box used by them' check_everything_exercised
    fi
  fi
  step 'clang-tidy' check_tidy "$kivra_build/tsan" "$kivra_build/windows-cmake"
fi

printf '\n'
printf '%s\n' "${summary[@]}"
printf '%d s in all, %d skipped\n' "$SECONDS" "$skipped"
printf '%d passed, %d failed\n' "$passed" "$failed"
[ "$failed" -eq 0 ]
