#!/usr/bin/env bash
# Test of scripts/show-progress.sh, where there is no terminal.
#
#   tests/scripts/progress_test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# What Ninja and CTest print of a unit that does not compile and of tests of which one fails.
printed() {
  local i
  for ((i = 1; i <= 20; ++i)); do
    echo "[$i/20] Building CXX object a/$i.cpp.o"
    if ((i == 3)); then printf 'FAILED: a/3.cpp.o\na/3.cpp:1:1: error: what\n'; fi
  done
  for ((i = 1; i <= 40; ++i)); do
    printf '        Start %3d: a_test.A.Does%d\n' $i $i
    if ((i == 7)); then
      printf ' 7/40 Test   #7: a_test.A.Does7 ...***Failed    0.10 sec\na_test.cpp:7: Failure\n\n'
    else
      printf '%2d/40 Test %3d: a_test.A.Does%d ......   Passed    0.01 sec\n' $i $i $i
    fi
  done
  printf '\n98%% tests passed, 1 tests failed out of 40\n'
}

counts() {
  local i
  for ((i = $2; i <= $3; i += $2)); do echo "$1 $i of $3"; done
}

expected() {
  echo "Built 2 of 20"
  printf 'FAILED: a/3.cpp.o\na/3.cpp:1:1: error: what\n'
  counts Built 2 20 | tail -n +2
  echo "Tested 4 of 40"
  printf ' 7/40 Test   #7: a_test.A.Does7 ...***Failed    0.10 sec\na_test.cpp:7: Failure\n\n'
  counts Tested 4 40 | tail -n +2
  printf '\n98%% tests passed, 1 tests failed out of 40\n'
}

diff <(expected) <(printed | scripts/show-progress.sh)
