#!/usr/bin/env bash
# Fails where build/camcfg is missing, and says how to make it.
#
#   scripts/require-tool.sh SCRIPT     the name of the script that needs it
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [[ ! -x build/camcfg ]]; then
  echo "$(basename "$1"): build the tool first: scripts/build.sh" >&2
  exit 2
fi
