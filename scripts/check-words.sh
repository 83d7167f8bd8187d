#!/usr/bin/env bash
# Keeps words out that make people read a sentence twice: the list "Words" in CONTRIBUTING.md. In
# C++ it looks at comments, texts and the names of tests, elsewhere at everything.
#
#   scripts/check-words.sh            the files of this tree
#   scripts/check-words.sh FILE...    only these
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Fixed texts: inputs of the fuzzers, the record of the interface, drawn pictures.
readonly fixed='^(proof/fuzz/corpus/|packaging/interface/)|\.svg$'

if (($# > 0)); then
  printf '%s\n' "$@"
else
  git ls-files -co --exclude-standard | grep -vE "$fixed"
fi | python3 scripts/check_words.py
