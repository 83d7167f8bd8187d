#!/usr/bin/env bash
# Counts the instructions of the tool's commands on devices with up to 100,000 parameters or 10,000
# sessions.
#
#   scripts/measure-growth.sh              prints the table, in millions; 20 minutes
#   scripts/measure-growth.sh --publish    puts it into docs/performance.md
#   scripts/measure-growth.sh --check      a twentieth of everything; half a minute
#
# Fails when they grow faster than the files. The tool is build/camcfg.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

sizes=(100000 10000)
case ${1-} in
  '' | --publish) ;;
  --check) sizes=(5000 500) ;;
  *)
    echo "usage: scripts/measure-growth.sh [--publish | --check]" >&2
    exit 2
    ;;
esac
if ! command -v python3 valgrind >/dev/null; then scripts/install-packages.sh bench; fi
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

{
  scripts/describe-machine.sh scripts/measure-growth.sh
  python3 -B scripts/measure_growth.py build/camcfg "$scratch" "${sizes[@]}"
} | tee "$scratch/figures"
if [[ ${1-} == --publish ]]; then
  scripts/put-figures.sh docs/performance.md '### The tool' "$scratch/figures"
fi
