#!/usr/bin/env bash
# Draws the pictures of docs/report.md, by the tool in build/. Installs what it needs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT
scripts/check-report.sh --draw "$pictures"
for width in desktop phone print; do
  mv "$pictures/sample-$width.png" "docs/report-$width.png"
  chmod 644 "docs/report-$width.png"
done
