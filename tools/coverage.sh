#!/usr/bin/env bash
# Usage: tools/coverage.sh
#
# Runs the native tests on a build that counts, prints how much of each folder's portable lines and branches
# they reach, and writes the lines that none reaches to build/coverage/unreached.txt.
set -uo pipefail
. "$(dirname "$0")/common.sh"
. "$kivra_root/tools/packages.sh"

folder=$kivra_build/coverage

# run_counting_tests: every test program; a failing one spoils the figures.
run_counting_tests() {
  rm -f "$folder"/*.profraw
  LLVM_PROFILE_FILE=$folder/%p.profraw GTEST_BRIEF=1 \
    ctest --test-dir "$folder" --output-on-failure -j "$kivra_jobs" >"$kivra_build/logs/coverage-tests.log" 2>&1 || {
    tail -n 60 "$kivra_build/logs/coverage-tests.log"
    fail 'tests fail'
  }
  llvm-profdata merge -sparse "$folder"/*.profraw -o "$folder/all.profdata"
}

# export_counts: what was counted in the product's own files, in the form of lcov.
export_counts() {
  local programs=() program
  for program in "$folder"/tests/kivra_*_tests; do programs+=(-object "$program"); done
  llvm-cov export -format=lcov -instr-profile="$folder/all.profdata" "${programs[@]:1}" \
    -ignore-filename-regex="^(/usr|$kivra_root/(tests|fuzz|bench|build))/" | sed "s|^SF:$kivra_root/|SF:|"
}

# print_figures: a line for each folder and one for all.
print_figures() {
  awk -F '[:,]' '
    /^SF:/ { folder = $2; sub("/.*", "", folder) }
    /^LF:/ { lines[folder] += $2; lines["total"] += $2 }
    /^LH:/ { hit[folder] += $2; hit["total"] += $2 }
    /^BRF:/ { branches[folder] += $2; branches["total"] += $2 }
    /^BRH:/ { taken[folder] += $2; taken["total"] += $2 }
    function share(part, whole) { return whole == 0 ? 100 : 100 * part / whole }
    function row(name) {
      printf "%-10s %6d lines %6.2f %%  %6d branches %6.2f %%\n", name, lines[name],
        share(hit[name], lines[name]), branches[name], share(taken[name], branches[name])
    }
    END { for (name in lines) row(name) }' | sort
}

# print_unreached: file:line of each line that no test reaches, with its text.
print_unreached() {
  awk -F '[:,]' '/^SF:/ { file = $2 } /^DA:/ && $3 == 0 { print file ":" $2 }' | sort -t : -k 1,1 -k 2,2n |
    while IFS=: read -r file line; do
      printf '%s:%s: %s\n' "$file" "$line" "$(sed -n "${line}p" "$kivra_root/$file")"
    done
}

need build test
use_utf8
use_ccache
say 'Building the tests'
build_preset coverage >"$kivra_build/logs/coverage.log" 2>&1 || {
  tail -n 60 "$kivra_build/logs/coverage.log"
  fail 'the tests do not build'
}
say 'Running them'
run_counting_tests
export_counts >"$folder/counts.lcov"
print_unreached <"$folder/counts.lcov" >"$folder/unreached.txt"
print_figures <"$folder/counts.lcov"
say "Lines that no test reaches: $(wc -l <"$folder/unreached.txt"), see build/coverage/unreached.txt"
