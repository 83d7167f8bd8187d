#!/usr/bin/env bash
# Counts the instructions of `camcfg get` from its start to its end, against those of the smallest
# program that links the library and reads the same parameter.
#
#   scripts/measure-start.sh      fails when it needs more than 1.3 times as many
#
# The tool is build/camcfg. As root, for chroot(2).
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly most=1.3

if ! command -v valgrind >/dev/null; then scripts/install-packages.sh bench; fi
if ((EUID != 0)); then
  echo "measure-start.sh: only root may use chroot(2)" >&2
  exit 2
fi
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

g++ -std=c++17 -O2 -I include -o "$scratch/smallest" proof/bench/smallest.cpp -L build -lcamcfg \
  -Wl,-rpath,"$PWD/build"
mkdir -p "$scratch"/device/{cfg0,cfg1,app}
cp -r resource "$scratch/device/app"
cp resource/defcfg/*.xml "$scratch/device/cfg0"
cp resource/defcfg/*.xml "$scratch/device/cfg1"

# Both end in the device's root, so that is where the count is written.
count() {
  valgrind --quiet --vgdb=no --tool=callgrind --callgrind-out-file=/instructions "$@" >"$scratch/value"
  awk '/^summary:/ { print $2 }' "$scratch/device/instructions"
}

least=$(count "$scratch/smallest" "$scratch/device" System Rtsp)
expected=$(<"$scratch/value")
all=$(count build/camcfg --root "$scratch/device" get System Rtsp)
if [[ $(<"$scratch/value") != "$expected" ]]; then
  echo "measure-start.sh: camcfg printed $(<"$scratch/value") instead of $expected" >&2
  exit 1
fi
awk -v all="$all" -v least="$least" -v most=$most 'BEGIN {
  printf "camcfg get: %d instructions, the smallest program: %d, ratio %.2f of %s\n", all, least, all / least, most
  exit all / least > most
}'
