#!/usr/bin/env bash
# Writes the rules of lint, from tool/lint/rules.txt, into docs/lint.md: a section for each, and
# their number; and how many hazards of the corpus are found.
#
#   scripts/list-lint-rules.sh            writes them
#   scripts/list-lint-rules.sh --check    fails when the document is not what is written now
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case ${1-} in
  '' | --check) ;;
  *)
    echo "usage: scripts/list-lint-rules.sh [--check]" >&2
    exit 2
    ;;
esac
if ! command -v python3 >/dev/null; then scripts/install-packages.sh docs; fi
readonly document=docs/lint.md
written=$(mktemp)
trap 'rm -f "$written"' EXIT

python3 scripts/list_lint_rules.py tool/lint/rules.txt tests/tool/lint/corpus "$document" >"$written"
if [[ ${1-} != --check ]]; then
  cp "$written" "$document"
elif diff -u "$document" "$written"; then
  echo "$document has the rules of lint"
else
  echo "$document is not up to date: scripts/list-lint-rules.sh" >&2
  exit 1
fi
