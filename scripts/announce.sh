#!/usr/bin/env bash
# Says before a long step how long it takes here and how much disk it needs.
#
#   scripts/announce.sh WHAT MINUTES MEGABYTES    MINUTES of one processor, MEGABYTES in build/
#
# Fails when there is less room than that.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly what=$1 minutes=$2 megabytes=$3

processors=$(nproc)
room=$(($(df --output=avail -k . | tail -n 1) / 1024))
echo "$what: about $(((minutes + processors - 1) / processors)) min on $processors processors," \
  "$megabytes MB in build/; what is there already is not built again"
if [[ ! -e build/build.ninja ]] && ((room < megabytes)); then
  echo "announce.sh: there are $room MB left in $PWD, and $megabytes MB are needed" >&2
  exit 1
fi
