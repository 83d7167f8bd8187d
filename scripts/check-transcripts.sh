#!/usr/bin/env bash
# Runs the commands that docs/tool.md shows, in order, on a new sample device, and compares what they
# print with what the document shows.
#
#   scripts/check-transcripts.sh             compares
#   scripts/check-transcripts.sh --update    writes what they print into the document
#
# A command is a line "$ COMMAND" in a block "```console"; what it prints follows. A comment
# "<!-- run: COMMAND -->" is run without being shown. The tool is build/camcfg.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly document=docs/tool.md
tree=$PWD
tool=build/camcfg
if [[ ! -x $tool ]]; then
  echo "check-transcripts.sh: build the tool first: scripts/build.sh" >&2
  exit 2
fi
tool=$PWD/$tool
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

camcfg() {
  "$tool" --root "$device" "$@"
}

# Runs a command as a shell on the device would, and says how it ended unless that is 0.
run() {
  local status=0
  (
    set +e
    cd "$scratch/desk"
    eval "$1"
  ) 2>&1 || status=$?
  if ((status != 0)); then echo "(exit status $status)"; fi
}

# The document, with what its commands print now.
transcribe() {
  local line shown=
  while IFS= read -r line; do
    if [[ -z $shown || $line == '```' || $line == '$ '* ]]; then printf '%s\n' "$line"; fi
    if [[ $line == '```console' ]]; then
      shown=yes
    elif [[ $line == '```' ]]; then
      shown=
    elif [[ -n $shown && $line == '$ '* ]]; then
      run "${line#'$ '}" | sed 's/ *$//'
    elif [[ $line =~ ^'<!-- run: '(.*)' -->'$ ]]; then
      eval "${BASH_REMATCH[1]}" >&2
    fi
  done <"$document"
}

new_device
transcribe >"$scratch/tool.md"
# shellcheck disable=SC2016  # a dollar sign is meant
commands=$(grep -c '^\$ ' "$scratch/tool.md" || true)
if ((commands == 0)); then
  echo "check-transcripts.sh: $document shows no command" >&2
  exit 2
fi
if [[ ${1-} == --update ]]; then
  cp "$scratch/tool.md" "$document"
elif ! diff -u "$document" "$scratch/tool.md"; then
  echo "$document shows what the tool does not print: scripts/check-transcripts.sh --update" >&2
  exit 1
fi
echo "$commands commands run"
