#!/usr/bin/env bash
# Changes the library in one small way at a time, in copies of the project under build-mutation/,
# and reports whether its tests notice. Fails when they notice less than 95 % of the changes.
#
#   scripts/mutate.sh [--count N] [--seed S] [FILE...]   300 changes take a quarter of an hour
#   scripts/mutate.sh --again                            only what survived the last time
#   scripts/mutate.sh --check                            seconds: tests of the script itself
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build tool test mutate
if [[ ${1-} == --check ]]; then
  exec python3 -B proof/mutation/mutate_test.py
fi
scripts/describe-machine.sh "scripts/mutate.sh" "$@"
exec python3 -B proof/mutation/mutate.py "$@"
