#!/usr/bin/env bash
# Records the interface of the library as built for x86-64: its functions in libcamcfg.abi, the
# records and enumerations that they take in records.abi. The tests compare later builds with it.
#
#   scripts/record-interface.sh                     renews packaging/interface/
#   scripts/record-interface.sh DIRECTORY [BUILD]   writes the two files there; builds in BUILD
#                                                   (build-interface/ if not given)
#
# Renew it with a release, or when something was added on purpose; what may change is listed in
# docs/compatibility.md. Needs abidw (abigail-tools).
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if (($# > 2)) || [[ ${1-} == -* ]]; then
  echo "usage: $0 [DIRECTORY [BUILD]]" >&2
  exit 2
fi

readonly record=packaging/interface
readonly to=${1:-$record}
readonly build=${2:-build-interface}

# Optimisation leaves the interface as it is; none is quicker. No path of this machine is recorded.
readonly flags="-g -O0 -ffile-prefix-map=$PWD/=./"

build_library() {
  CMAKE_GENERATOR=${CMAKE_GENERATOR:-Ninja} cmake -S . -B "$build" --log-level=NOTICE \
    -D CMAKE_BUILD_TYPE=None -D CMAKE_CXX_FLAGS="$flags" \
    -D CMAKE_PROJECT_TOP_LEVEL_INCLUDES=cmake/Ccache.cmake
  cmake --build "$build" --target libcamcfg.so
}

build_records() {
  # shellcheck disable=SC2086  # the flags are words
  ${CXX:-g++} -std=c++17 $flags -fPIC -shared -fvisibility=hidden -I include \
    tests/interface/records.cpp -o "$build/librecords.so"
}

record() {
  abidw --suppressions "$record/not-ours.ini" --headers-dir include --drop-private-types \
    --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash \
    --out-file "$to/$2" "$1"
}

if ! command -v abidw >/dev/null; then
  echo "record-interface.sh: abidw is not installed: scripts/install-packages.sh test" >&2
  exit 1
fi
mkdir -p "$to"
build_library
build_records
record "$build/libcamcfg.so" libcamcfg.abi
record "$build/librecords.so" records.abi
