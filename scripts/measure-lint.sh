#!/usr/bin/env bash
# Measures how long lint takes for media files of 10 to 10,000 sessions.
#
#   scripts/measure-lint.sh              prints the table
#   scripts/measure-lint.sh --publish    puts it into docs/lint.md
#
# Fails when the time grows faster than the file. The tool is build/camcfg.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case ${1-} in
  '' | --publish) ;;
  *)
    echo "usage: scripts/measure-lint.sh [--publish]" >&2
    exit 2
    ;;
esac
if ! command -v python3 >/dev/null; then scripts/install-packages.sh docs; fi
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

{
  scripts/describe-machine.sh scripts/measure-lint.sh
  python3 scripts/measure_lint.py build/camcfg "$scratch"
} | tee "$scratch/figures"
if [[ ${1-} == --publish ]]; then
  scripts/put-figures.sh docs/lint.md '### Time' "$scratch/figures"
fi
