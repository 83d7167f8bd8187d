#!/usr/bin/env bash
# Holds the direction of includes: a folder knows of what lies below it and of nothing else. Public
# headers know of public headers only, families of settings nothing of one another, and the tool
# works through the interface alone.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What the files of a folder may include; "camcfg" is include/camcfg, "camcfg/testkit" the test
# kit's own headers.
declare -rA may_include=(
  [include]="camcfg"
  [support]="camcfg support"
  [store]="camcfg support store"
  [params]="camcfg support store params"
  [stream]="camcfg support store stream"
  [livemedia]="camcfg support store livemedia"
  [preset]="camcfg support store preset"
  [network]="camcfg support store network"
  [tools]="camcfg support/enter_root.h tools"
  [testkit]="camcfg camcfg/testkit support/enter_root.h"
  [bench]="camcfg camcfg/testkit bench"
  [torture]="camcfg camcfg/testkit support/enter_root.h tests/support/quick_saves.h torture"
  [examples]="camcfg camcfg/testkit"
)

# Whether a file of a folder may include a header. Headers of other projects are nobody's business.
is_allowed() {
  local allowed=" ${may_include[$1]} " header=$2
  case $header in
    *../*) false ;;
    camcfg/testkit/*) [[ $allowed == *" camcfg/testkit "* ]] ;;
    camcfg/*) [[ $allowed == *" camcfg "* ]] ;;
    *) [[ ! -e $header || $allowed == *" ${header%%/*} "* || $allowed == *" $header "* ]] ;;
  esac
}

status=0
checked=0
for folder in "${!may_include[@]}"; do
  [[ -d $folder ]] || continue
  while IFS=: read -r file line text; do
    checked=$((checked + 1))
    [[ $text =~ [\<\"]([^\>\"]+) ]]
    header=${BASH_REMATCH[1]}
    if ! is_allowed "$folder" "$header"; then
      echo "$file:$line: $folder may not include $header"
      status=1
    fi
  done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include' "$folder")
done

if ((checked == 0)); then
  echo "check-includes.sh: no include was found" >&2
  exit 2
fi
echo "$checked includes checked"
exit $status
