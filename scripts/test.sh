#!/usr/bin/env bash
# Builds the library, the tool and the tests in build/, and runs the whole suite. Prints how far it
# is and what fails; build/Testing/Temporary/LastTest.log has what every test printed.
#
# On Debian, as root or with sudo, what is missing is installed first.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build tool test
scripts/build.sh -D CAMCFG_TESTS=ON |& scripts/show-progress.sh
ctest --preset test --parallel $((2 * $(nproc))) |& scripts/show-progress.sh
