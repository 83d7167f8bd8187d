#!/usr/bin/env bash
# Builds what is released in build/, which the demo, the tests and the torture programs share: what
# one has compiled, the others do not compile again.
#
#   scripts/build.sh [-D NAME=VALUE]... [-- --target NAME...]     everything if no target is given
#
# The target "released" is what is installed: `cmake --install build` needs no other. On Debian and
# Ubuntu, as root or with sudo, what is missing is installed first.
# Only in CI does a compiler's warning stop the build: a newer compiler may have new ones.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

options=()
while (($# > 0)) && [[ $1 != -- ]]; do
  options+=("$1")
  shift
done

scripts/install-packages.sh build tool
CMAKE_GENERATOR=${CMAKE_GENERATOR:-Ninja} cmake -S . -B build --log-level=NOTICE \
  -D CMAKE_BUILD_TYPE=Release -D CAMCFG_WERROR="${CI:-OFF}" -D CAMCFG_UNITY=ON \
  -D CMAKE_PROJECT_TOP_LEVEL_INCLUDES="$PWD/cmake/Ccache.cmake" "${options[@]}"
cmake --build build --parallel "$(nproc)" "${@:2}"
