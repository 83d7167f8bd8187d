#!/usr/bin/env bash
# Test of scripts/show-progress.sh, where there is no terminal.
#
#   tests/scripts/progress_test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# What Ninja and CTest print of a unit that does not compile, of tests of which one fails, and of one
# that is skipped.
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
    elif ((i == 8)); then
      printf ' 8/40 Test   #8: a_test.A.Does8 ...***Skipped    0.10 sec\n'
    else
      printf '%2d/40 Test %3d: a_test.A.Does%d ......   Passed    0.01 sec\n' $i $i $i
    fi
  done
  printf '\n98%% tests passed, 1 tests failed out of 40\n\n'
  printf 'The following tests did not run:\n\t  8 - a_test.A.Does8 (Skipped)\n'
  printf '\t  9 - a_test.A.Does9 (Not Run)\n'
}

expected() {
  printf 'FAILED: a/3.cpp.o\na/3.cpp:1:1: error: what\n'
  echo "Built 20 of 20, 0 min"
  printf ' 7/40 Test   #7: a_test.A.Does7 ...***Failed    0.10 sec\na_test.cpp:7: Failure\n\n'
  echo "Tested 40 of 40, 0 min"
  printf '\n98%% tests passed, 1 tests failed out of 40\n\n'
  printf '\t  9 - a_test.A.Does9 (Not Run)\n'
}

diff <(expected) <(printed | scripts/show-progress.sh)

# A line each time that the time between two is over, though nothing was printed.
slow() {
  echo "[1/3] a"
  sleep 2.5
  echo "[2/3] b"
  echo "[3/3] c"
}
diff <(printf 'Built 1 of 3, 0 min\nBuilt 3 of 3, 0 min\n') \
  <(slow | PROGRESS_SECONDS=1 scripts/show-progress.sh | uniq | grep -v '2 of 3')

# Of apt-get's report only how far it is, and its errors.
packages() {
  printf 'Reading package lists...\n1 upgraded, 2 newly installed, 0 to remove and 0 not upgraded.\n'
  printf 'Get:1 http://example.com a 1 [4 kB]\nW: slow\n'
  printf 'Unpacking %s (1) ...\n' a b c
  printf 'Setting up %s (1) ...\n' a b c
  printf 'E: out of space\n'
}
diff <(printf 'W: slow\nUnpacked 3 of 3, 0 min\nInstalled 3 of 3, 0 min\nE: out of space\n') \
  <(packages | scripts/show-progress.sh --packages)

# On a terminal one line counts up.
if command -v script >/dev/null; then
  diff <(printf '\rBuilt 1 of 2\rBuilt 2 of 2\r\n') \
    <(script -qec 'printf "[1/2] a\n[2/2] b\n" | scripts/show-progress.sh' /dev/null </dev/null)
fi
