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

# A test of GoogleTest gives its reason after the line "FILE:LINE: Skipped"; others in a line
# "Skipped: REASON".
awk '
  /^[0-9]+\/[0-9]+ Test: / { name = $3; tests++; is_reason = 0 }
  is_reason { reasons[$0] = reasons[$0] "\n    " name; skipped++; is_reason = 0 }
  /^Skipped: / { reasons[substr($0, 10)] = reasons[substr($0, 10)] "\n    " name; skipped++ }
  /^[^ ]+:[0-9]+: Skipped$/ { is_reason = 1 }
  END {
    if (!skipped) { print "No test was skipped."; exit }
    print "Skipped: " skipped " of " tests " tests"
    for (reason in reasons) print "  " reason ":" reasons[reason]
  }' "$log"
