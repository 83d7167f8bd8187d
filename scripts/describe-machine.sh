#!/usr/bin/env bash
# Prints when and where figures were measured, in one line.
#
#   scripts/describe-machine.sh COMMAND...    COMMAND is what measured them
set -euo pipefail

processor=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1)
memory=$(awk '/^MemTotal/ { printf "%.0f", $2 / 1048576 }' /proc/meminfo)
printf '%s; %s, %s processors, %s GiB, Linux %s; %s\n\n' "$(date -u +%Y-%m-%d)" \
  "${processor:-$(uname -m)}" "$(nproc)" "$memory" "$(uname -r)" "$*"
