#!/usr/bin/env bash
# Checks the direction of includes: a folder may use what lies below it and nothing else. Public
# headers use public headers only, the library's families do not use one another, and the tool works
# only through the exported interface.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What the files of a folder may include; "camcfg" is include/camcfg, "camcfg/testkit" the test
# kit's own headers.
declare -A may_include=(
  [include]="camcfg"
  [tool]="camcfg testkit/enter_root.h tool"
  [testkit]="camcfg camcfg/testkit testkit"
  [proof/bench]="camcfg camcfg/testkit bench"
  [proof/torture]="camcfg camcfg/testkit testkit/enter_root.h tests/support torture"
  [examples]="camcfg camcfg/testkit"
)

# The library: every folder may use itself and those below it, families only base and store.
below="camcfg base"
while read -r folder; do
  may_include[src/$folder]="$below $folder"
  if [[ $folder == store ]]; then below+=" store"; fi
done < <(grep '^[a-z]' src/folders.txt)

# Include paths begin below one of these.
readonly roots=(. src proof tests)

# Whether a file of a folder may include a header. Headers of other projects are nobody's business.
is_allowed() {
  local allowed=" ${may_include[$1]} " header=$2 root
  case $header in
    *../*) return 1 ;;
    camcfg/testkit/*) [[ $allowed == *" camcfg/testkit "* ]]; return ;;
    camcfg/*) [[ $allowed == *" camcfg "* ]]; return ;;
  esac
  for root in "${roots[@]}"; do
    if [[ -e $root/$header ]]; then
      [[ $allowed == *" ${header%%/*} "* || $allowed == *" $header "* ||
         ($root == tests && $allowed == *" tests/${header%%/*} "*) ]]
      return
    fi
  done
}

status=0
checked=0
for folder in "${!may_include[@]}"; do
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
