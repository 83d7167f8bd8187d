#!/usr/bin/env bash
# Checks the direction of includes: a folder may use what lies below it and nothing else. Public
# headers use public headers only, the library's families do not use one another, the tool works
# only through the exported interface, and tests see what they test and what lies below that.
#
#   scripts/check-includes.sh [TREE]      this tree if none is given
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

# What the files of a folder may include, as folders and files of the tree. The row of the innermost
# folder holds; a row without a folder does nothing.
declare -A may_include=()

add_row() {
  may_include[$1]="$1 ${*:2}"
}

readonly interface=include
readonly testkit="$interface testkit/include"
readonly enter_root=testkit/enter_root.h
readonly support="$testkit tests/support"

add_row include
add_row testkit/include include
add_row testkit include
add_row examples "$testkit"
add_row tests/support "$testkit"

# The library: base and store below the families, which do not use one another. What is below a
# folder counts with its exported headers, named after it unless they are listed here.
declare -rA exported=([media]="stream livemedia")
below=include/camcfg/types.h
while read -r folder; do
  own=$below
  for name in ${exported[$folder]:-$folder}; do own+=" include/camcfg/$name.h"; done
  add_row "src/$folder" "$own"
  add_row "tests/$folder" "$support $own src/$folder"
  if [[ $folder == base || $folder == store ]]; then below="$own src/$folder"; fi
done < <(grep '^[a-z]' src/folders.txt)

# The tool, lowest first; folders of one line do not use one another.
readonly tool_layers='base
settings
device
parameters network presets media
document
lint
upgrade
report
commands'

readonly tool_support="$support tests/tool tests/system/sample_set.h"
below="$interface $enter_root"
while read -r layer; do
  for folder in $layer; do
    add_row "tool/$folder" "$below"
    add_row "tests/tool/$folder" "$tool_support $below tool/$folder"
  done
  below+=${layer:+ tool/${layer// / tool/}}
done <<<"$tool_layers"

# The command line knows commands by the records that they hand to it.
add_row tool/cli "$interface $enter_root tool/base"
add_row tests/tool/cli "$tool_support $enter_root tool/base tool/cli"
add_row tool/topics tool/cli/command.h
add_row tool/commands "$below tool/cli tool/topics"
add_row tests/tool/commands "$tool_support $below tool/cli tool/topics"
add_row tool/main.cpp "tool/base tool/cli tool/commands"
add_row tool/flush.cpp tool/device
add_row tests/tool "$tool_support $enter_root tool"

# What is tested as a whole.
add_row tests/system "$support tests/media"
add_row tests/hostile "$support tests/tool"
add_row tests/interface include
add_row tests/install "$testkit"
add_row tests/testkit testkit
add_row tests/proof "$support proof/fuzz"
add_row tests/media/loaders_by_hand_test.cpp "$support tests/media proof/bench"

add_row proof/bench "$testkit"
add_row proof/fuzz "$support testkit tool src/base/integer.h"
add_row proof/torture "$support $enter_root"
add_row proof/torture/salvage "$support proof/torture tests/tool tool"

# Where the compiler looks for headers.
declare -rA roots=(
  [include]="include testkit/include"
  [src]="include src"
  [testkit]="include testkit/include ."
  [tool]="include . tool"
  [tests]="include testkit/include . src proof tests tool"
  [proof]="include testkit/include . src proof tests tool"
  [examples]="include testkit/include"
)

# Whether a file of a row may include a header of the tree.
is_allowed() {
  local row=$1 header=$2 allowed
  for allowed in ${may_include[$row]}; do
    if [[ $header == "$allowed" || $header == "$allowed"/* ]]; then return 0; fi
  done
  return 1
}

status=0
checked=0

complain() {
  echo "$1"
  status=1
}

# The innermost row that a file belongs to.
row_of() {
  local path=$1
  while [[ -z ${may_include[$path]:-} ]]; do
    if [[ $path != */* ]]; then return 1; fi
    path=${path%/*}
  done
  echo "$path"
}

# Headers of other projects are nobody's business. A header may be made from a file of its name and .in.
check_include() {
  local file=$1 line=$2 quote=$3 header=$4 root found=()
  for root in ${roots[${file%%/*}]}; do
    if [[ -e $root/$header || -e $root/$header.in ]]; then
      found+=("${root#.}/$header")
    fi
  done
  if ((${#found[@]} == 0)) && [[ -e ${file%/*}/$header ]]; then found=("${file%/*}/$header"); fi
  if [[ $header == *../* ]]; then
    complain "$file:$line: $header uses ../"
  elif ((${#found[@]} == 0)) && [[ $quote == \" ]]; then
    complain "$file:$line: $header cannot be included from $row"
  elif ((${#found[@]} > 1)); then
    complain "$file:$line: $header is ambiguous: ${found[*]#/}"
  elif ((${#found[@]} == 1)) && ! is_allowed "$row" "${found[0]#/}"; then
    complain "$file:$line: $row may not include ${found[0]#/}"
  fi
}

last=
row=
while IFS=: read -r file line text; do
  checked=$((checked + 1))
  if [[ $file != "$last" ]]; then
    row=$(row_of "$file") || complain "$file: has no rule in check-includes.sh"
    last=$file
  fi
  if [[ -n $row && $text =~ ([\<\"])([^\>\"]+) ]]; then
    check_include "$file" "$line" "${BASH_REMATCH[@]:1}"
  fi
done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include' \
  "${!roots[@]}")

if ((checked == 0)); then
  echo "check-includes.sh: no include was found" >&2
  exit 2
fi
echo "$checked includes checked"
exit $status
