#!/usr/bin/env bash
# Puts figures into a document, in place of all between a heading and the next one.
#
#   scripts/put-figures.sh DOCUMENT HEADING FIGURES
set -euo pipefail

readonly document=$1 heading=$2 figures=$3
if ! grep -qxF "$heading" "$document"; then
  echo "put-figures.sh: $document has no heading '$heading'" >&2
  exit 1
fi
scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT
awk -v heading="$heading" -v figures="$figures" '
  /^#+ / { skipped = 0 }
  !skipped { print }
  $0 == heading { print ""; while ((getline line < figures) > 0) print line; print ""; skipped = 1 }
' "$document" >"$scratch"
cat "$scratch" >"$document"
