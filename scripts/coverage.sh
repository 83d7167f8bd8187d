#!/usr/bin/env bash
# Tells how much of the library its tests reach, and fails below 98 % of its lines or 90 % of its
# branches. What is not reached is listed; docs/reliability.md says why. Branches that only an
# exception takes are left out.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly folders=(support store params stream livemedia preset network)

scripts/install-packages.sh build tool test cover
cmake --preset coverage
cmake --build --preset coverage --target tests/{support,store,params,stream,livemedia,preset,network,system}/all
find build-coverage -name '*.gcda' -delete
# The tests of the tool are its own affair: what only they reach is not covered here.
ctest --preset coverage --exclude-regex '^(tools_test|interface|without_logger_test|testkit_test|linkage_test)' \
  --parallel $((2 * $(nproc))) --output-on-failure >build-coverage/ctest.log || {
  tail -n 50 build-coverage/ctest.log
  exit 1
}
gcovr --root . "${folders[@]/#/--filter=}" --exclude='support/enter_root' \
  --exclude-throw-branches --exclude-unreachable-branches --object-directory build-coverage \
  --txt build-coverage/coverage.txt --html-details build-coverage/coverage.html \
  --print-summary --fail-under-line 98 --fail-under-branch 90
cat build-coverage/coverage.txt
