#!/usr/bin/env bash
# Builds the library, the tool and the tests in build/, and runs the whole suite. Prints how far it
# is, what fails, and which tests were skipped for which reason;
# build/Testing/Temporary/LastTest.log has what every test printed.
#
# On Debian and Ubuntu, as root or with sudo, what is missing is installed first.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

suggest() {
  cat <<END

What every test printed:      build/Testing/Temporary/LastTest.log
Only some of them again:      ctest --preset test -R NAME
To change the code, read:     CONTRIBUTING.md
END
}

scripts/install-packages.sh build tool test
scripts/announce.sh "Building and running all tests" 10 350
scripts/build.sh -D CAMCFG_TESTS=ON |& scripts/show-progress.sh
status=0
# Many tests wait for a lock's time-out most of their time.
ctest --preset test --parallel $((5 * $(nproc))) |& scripts/show-progress.sh || status=$?
scripts/name-skipped.sh
if ((status == 0)); then suggest; fi
exit "$status"
