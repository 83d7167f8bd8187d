#!/usr/bin/env bash
# Keeps docs/oddities.md and the sources in sync: every comment "Deliberate:" ends with an id that
# the document lists, once, and every row of the document names a test that exists.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly document=docs/oddities.md
readonly folders=(include src)

complain() {
  echo "check-oddities.sh: $1" >&2
  status=1
}

# Each comment "Deliberate:", one a line, as FILE:LINE:TEXT. A comment ends where the next begins.
comments() {
  find "${folders[@]}" -name '*.h' -o -name '*.cpp' | sort | while read -r file; do
    awk -v file="$file" '
      function flush() { if (text != "") print file ":" start ":" text; text = "" }
      /\/\/ Deliberate:/ { flush(); start = FNR; text = $0; next }
      text != "" && /^[ \t]*\/\// { text = text " " $0; next }
      { flush() }
      END { flush() }' "$file"
  done
}

# Ids of the document's rows, and each row's test.
rows() {
  awk -F ' *\\| *' '/^\| [a-z0-9-]+ \|/ && $2 != "id" { print $2, $6 }' "$document"
}

has_test() {
  local suite=${1%%.*} name=${1#*.}
  grep -rqzP --include='*.cpp' "TEST(_F|_P)?\(\s*$suite,\s*$name\)" tests ||
    grep -rqzP --include='*.cpp' "TYPED_TEST\(\s*$suite,\s*$name\)" tests
}

status=0
declare -A listed
while read -r id test; do
  if [[ -n ${listed[$id]:-} ]]; then complain "$document lists $id twice"; fi
  listed[$id]=yes
  test=${test//\`/}
  if [[ $test != *.* ]]; then
    complain "$id names no test"
  elif ! has_test "$test"; then
    complain "$id: the test $test does not exist"
  fi
done < <(rows)

count=0
while IFS= read -r comment; do
  count=$((count + 1))
  if [[ ! $comment =~ \[([a-z0-9-]+)\]$ ]]; then
    complain "no id at the end of: $comment"
  elif [[ -z ${listed[${BASH_REMATCH[1]}]:-} ]]; then
    complain "$document does not list ${BASH_REMATCH[1]}: $comment"
  fi
done < <(comments)

if ((count == 0 || ${#listed[@]} == 0)); then
  echo "check-oddities.sh: no comment or no row was found" >&2
  exit 2
fi
echo "${#listed[@]} oddities listed, $count comments checked"
exit $status
