#!/usr/bin/env bash
# Runs the commands that the documents show, in order, and compares what they print with what the
# documents show: README.md, docs/getting-started.md, docs/tool.md and docs/lint.md.
#
#   scripts/check-transcripts.sh             compares
#   scripts/check-transcripts.sh --update    writes what they print into the documents
#
# A command is a line "$ COMMAND" in a block "```console"; what it prints follows, or "..." for what
# differs from machine to machine. A comment "<!-- run: COMMAND -->" is run without being shown. The
# tool is build/camcfg. docs/tool.md is about a new device, the others are about the one that
# scripts/demo.sh leaves; the build that it begins with is left out. Installs what the commands need.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build docs
readonly tree=$PWD
readonly tool=$PWD/build/camcfg
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# As scripts/demo.sh lays it out, after its first start. All files get the date that the document shows.
new_device() {
  device=$scratch/device
  rm -rf "$device"
  mkdir -p "$device"/{cfg0,cfg1,app/resource} "$scratch/desk"
  cp -R "$tree"/resource/{defcfg,language} "$device/app/resource/"
  camcfg verify --resync >/dev/null
  find "$device" -type f -exec touch -d 2026-02-03T04:05:06Z {} +
}

# A tree with what has been built in it, and a device of its own.
new_tree() {
  local name
  rm -rf "$scratch/desk"
  mkdir -p "$scratch/desk/build"
  for name in "$tree"/*; do
    if [[ $name != */build* ]]; then ln -s "$name" "$scratch/desk/"; fi
  done
  ln -s "$tool" "$tree"/build/libcamcfg.so* "$scratch/desk/build/"
}

camcfg() {
  "$tool" --root "$device" "$@"
}

# The program that a document shows.
# shellcheck disable=SC2016,SC2317  # backquotes are meant; documents call it
save_program() {
  sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$tree/$1" >"$scratch/desk/$2"
}

# Runs a command as a person would, and says how it ended unless that is 0.
run() {
  local status=0
  (
    set +e
    cd "$scratch/desk"
    eval "$1"
  ) 2>&1 || status=$?
  if ((status != 0)); then echo "(exit status $status)"; fi
}

# A start checks the files in the order of their directory, which differs from system to system.
in_order() {
  grep '^file /cfg0/' "$1" | LC_ALL=C sort || true
  grep -v '^file /cfg0/' "$1" || true
}

# What a command prints, or that this is left out.
transcript() {
  local command=${1/scripts\/demo.sh/scripts/demo.sh --built}
  run "$command" >"$scratch/printed"
  if [[ $2 == ... && $(tail -n 1 "$scratch/printed") != '(exit status'* ]]; then
    echo ...
  else
    in_order "$scratch/printed" | sed 's/ *$//'
  fi
}

# A document, with what its commands print now.
transcribe() {
  local lines line i shown=""
  mapfile -t lines <"$1"
  for ((i = 0; i < ${#lines[@]}; ++i)); do
    line=${lines[i]}
    if [[ -z $shown || $line == '```' || $line == '$ '* ]]; then printf '%s\n' "$line"; fi
    if [[ $line == '```console' ]]; then
      shown=yes
    elif [[ $line == '```' ]]; then
      shown=
    elif [[ -n $shown && $line == '$ '* ]]; then
      commands=$((commands + 1))
      transcript "${line#'$ '}" "${lines[i + 1]-}"
    elif [[ $line =~ ^'<!-- run: '(.*)' -->'$ ]]; then
      eval "${BASH_REMATCH[1]}" >&2
    fi
  done
}

check() {
  local document=$1
  commands=0
  transcribe "$document" >"$scratch/document.md"
  if ((commands == 0)); then
    echo "check-transcripts.sh: $document shows no command" >&2
    exit 2
  fi
  if [[ $update == --update ]]; then
    cp "$scratch/document.md" "$document"
  elif ! diff -u "$document" "$scratch/document.md"; then
    echo "$document shows what is not printed: scripts/check-transcripts.sh --update" >&2
    status=1
  fi
  echo "$document: $commands commands run"
}

readonly update=${1-}
status=0
for document in README.md docs/getting-started.md; do
  new_tree
  check "$document"
done
new_device
check docs/tool.md
check docs/lint.md
exit "$status"
