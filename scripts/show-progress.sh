#!/usr/bin/env bash
# Shortens what Ninja and CTest print to how far they are, and everything that is not well.
#
#   COMMAND |& scripts/show-progress.sh
#
# On a terminal the progress is one line that counts up, elsewhere a line for every tenth of the way.
set -euo pipefail

shown=

show() {
  local what=$1 count=$2 total=$3 line
  line="$what $count of $total"
  if [[ -t 1 ]]; then
    printf '\r%s' "$line"
    shown=$line
  elif ((count > 0 && count * 10 / total > (count - 1) * 10 / total)); then
    printf '%s\n' "$line"
  fi
}

end_line() {
  if [[ -n $shown ]]; then printf '\n'; fi
  shown=
}

while IFS= read -r line || [[ -n $line ]]; do
  if [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]]; then
    show Built "${BASH_REMATCH[@]:1}"
  elif [[ $line =~ ^\ *([0-9]+)/([0-9]+)\ Test\ .*\ Passed\ .*sec$ ]]; then
    show Tested "${BASH_REMATCH[@]:1}"
  elif [[ ! $line =~ ^\ +Start\ +[0-9]+: ]]; then
    end_line
    printf '%s\n' "$line"
  fi
done
end_line
