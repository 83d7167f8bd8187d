#!/usr/bin/env bash
# Shortens what Ninja, CTest and apt-get print to how far they are, and everything that is not well.
#
#   COMMAND |& scripts/show-progress.sh               Ninja or CTest
#   COMMAND |& scripts/show-progress.sh --packages    apt-get
#
# On a terminal the progress is one line that counts up, elsewhere a line a minute, and one when all is
# done. PROGRESS_SECONDS is another time between two lines. Skipped tests only count:
# scripts/name-skipped.sh names them.
set -uo pipefail

readonly seconds=${PROGRESS_SECONDS:-60}
readonly from=${1:-}
state=
shown=
last=$SECONDS
declare -A done_so_far=([Unpacked]=0 [Installed]=0)
total=0

# How far it is. Elsewhere than on a terminal that is printed later, or never.
show() {
  state="$1 $2 of $3"
  if [[ -t 1 ]]; then
    printf '\r%s' "$state"
    shown=$state
  elif (($2 == $3)); then
    say_state
  fi
}

say_state() {
  if [[ -n $state ]]; then echo "$state, $((SECONDS / 60)) min"; fi
  last=$SECONDS
}

end_line() {
  if [[ -n $shown ]]; then printf '\n'; fi
  shown=
}

say() {
  end_line
  printf '%s\n' "$1"
}

count() {
  done_so_far[$1]=$((done_so_far[$1] + 1))
  show "$1" "${done_so_far[$1]}" "$total"
}

take_packages_line() {
  case $1 in
    *' newly installed, '*) [[ $1 =~ ^([0-9]+)\ upgraded,\ ([0-9]+) ]] &&
      total=$((BASH_REMATCH[1] + BASH_REMATCH[2])) ;;
    'Unpacking '*) count Unpacked ;;
    'Setting up '*) count Installed ;;
    'E: '* | 'W: '* | 'dpkg: '* | *'error'*) say "$1" ;;
  esac
}

take_line() {
  local line=$1
  if [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]]; then
    show Built "${BASH_REMATCH[@]:1}"
  elif [[ $line =~ ^\ *([0-9]+)/([0-9]+)\ Test\ .*(Passed|\*\*\*Skipped)\ .*sec$ ]]; then
    show Tested "${BASH_REMATCH[@]:1:2}"
  elif [[ ! $line =~ ^\ +Start\ +[0-9]+: && $line != $'\t'*'(Skipped)' &&
    $line != 'The following tests did not run:' && $line != '-- '* ]]; then
    say "$line"
  fi
}

while true; do
  wait=$((last + seconds - SECONDS))
  status=0
  IFS= read -r -t $((wait > 0 ? wait : 1)) part || status=$?
  line=${line-}$part
  # Time ran out in the middle of a line, or before one.
  if ((status <= 128)); then
    if ((status != 0)) && [[ -z $line ]]; then break; fi
    if [[ $from == --packages ]]; then take_packages_line "$line"; else take_line "$line"; fi
    line=
    if ((status != 0)); then break; fi
  fi
  if [[ ! -t 1 ]] && ((SECONDS - last >= seconds)); then say_state; fi
done
end_line
