#!/usr/bin/env bash
# Measures how much of the library its tests reach, and fails below 98 % of its lines or 90 % of its
# branches. What is not reached is listed; docs/reliability.md says why. Branches that only an
# exception takes are left out.
#
#   scripts/coverage.sh         four or five minutes; the sources with what was reached in
#                               build-coverage/report/index.html
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mapfile -t folders < <(grep '^[a-z]' src/folders.txt)
readonly folders
# Only these tests count: what only the tool's tests reach is not covered.
readonly tests=("${folders[@]}" system)
readonly build=build-coverage

scripts/install-packages.sh build tool test cover
cmake --preset coverage
mapfile -t targets < <(printf 'tests/%s/all\n' "${tests[@]}" && echo without_logger_test)
cmake --build --preset coverage --target "${targets[@]}"

# Counts of an earlier build do not fit the programs of this one.
find "$build" -name '*.gcda' -delete
programs=$(IFS='|' && echo "${tests[*]}|footprint|without_logger")
ctest --preset coverage --tests-regex "^($programs)(_[a-z]+)?_test\\." \
  --parallel $((2 * $(nproc))) >"$build/ctest.log" || {
  tail -n 50 "$build/ctest.log"
  exit 1
}
grep 'tests passed' "$build/ctest.log"

mkdir -p "$build/report"
counted=0
gcovr --root . --filter=src/ \
  --exclude-throw-branches --exclude-unreachable-branches --object-directory "$build" \
  --json "$build/report/counts.json" --html-details "$build/report/index.html" \
  --print-summary --fail-under-line 98 --fail-under-branch 90 2>"$build/gcovr.log" || counted=$?
if ((counted != 0)); then tail -n 5 "$build/gcovr.log"; fi
scripts/describe-machine.sh "scripts/coverage.sh"
scripts/coverage_table.py "$build/report/counts.json"
exit "$counted"
