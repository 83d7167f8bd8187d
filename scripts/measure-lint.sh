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
if [[ ! -x build/camcfg ]]; then
  echo "measure-lint.sh: build the tool first: scripts/build.sh" >&2
  exit 2
fi
readonly document=docs/lint.md
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

{
  scripts/describe-machine.sh scripts/measure-lint.sh
  python3 scripts/measure_lint.py build/camcfg "$scratch"
} | tee "$scratch/figures"
if [[ ${1-} == --publish ]]; then
  # The table takes the place of all between its heading and the next one.
  awk -v figures="$scratch/figures" '
    /^#+ / { skipped = 0 }
    !skipped { print }
    $0 == "### Time" { print ""; while ((getline line < figures) > 0) print line; print ""; skipped = 1 }
  ' "$document" >"$scratch/document.md"
  grep -qx '### Time' "$document" || { echo "$document has no heading for the time" >&2; exit 1; }
  cp "$scratch/document.md" "$document"
fi
