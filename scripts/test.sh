#!/usr/bin/env bash
# Builds the library, the tool and the tests in build-test/, and runs the whole suite.
#
# On Debian, as root or with sudo, what is missing is installed first. In CI a compiler's warning
# stops the build; elsewhere a newer compiler's need not.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build tool test
cmake --preset test -DCAMCFG_WERROR="${CI:-OFF}"
cmake --build --preset test
ctest --preset test --parallel $((2 * $(nproc)))
