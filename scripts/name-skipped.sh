#!/usr/bin/env bash
# Names the tests that the last run skipped, and why: what would make them run.
#
#   scripts/name-skipped.sh [BUILD]     build/ if not given
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly log=${1:-build}/Testing/Temporary/LastTest.log
if [[ ! -e $log ]]; then
  echo "name-skipped.sh: no test was run yet: $log" >&2
  exit 2
fi

# A test of GoogleTest gives its reason after the line "FILE:LINE: Skipped", and its name after that;
# other tests have a line "Skipped: REASON". A program says how many tests it ran.
awk '
  function skip(reason, name) { reasons[reason] = reasons[reason] "\n    " name; skipped++ }
  /^[0-9]+\/[0-9]+ Test: / { entry = $3; tests++; is_reason = 0 }
  is_reason { reason = $0; is_reason = 0 }
  /^\[  SKIPPED \] / && NF == 4 { skip(reason, $4) }
  /^Skipped: / { skip(substr($0, 10), entry) }
  /^[^ ]+:[0-9]+: Skipped$/ { is_reason = 1 }
  /^Tests: [0-9]+, failed: / { tests += $2 - 1 }
  END {
    if (!skipped) { print tests " tests ran, none was skipped."; exit }
    print "Skipped: " skipped " of " tests " tests"
    for (reason in reasons) print "  " reason ":" reasons[reason]
  }' "$log"
