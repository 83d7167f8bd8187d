#!/usr/bin/env bash
# Draws docs/terminal.svg, the README's picture: commands on a new sample device, as a terminal shows
# what they print. The tool is build/camcfg.
#
#   scripts/draw-terminal.sh            draws it
#   scripts/draw-terminal.sh --check    fails when the picture is not what is printed now
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly commands='camcfg set System Rtsp 8554
camcfg set VideoCh1 Ch1MainCodec H266
truncate --size=1000 /cfg0/business_param.xml
camcfg verify
camcfg get System Rtsp'

if ! command -v python3 >/dev/null; then scripts/install-packages.sh docs; fi
readonly tool=$PWD/build/camcfg
scripts/require-tool.sh "$0"
device=$(mktemp -d)
trap 'rm -rf "$device"' EXIT
mkdir -p "$device"/{cfg0,cfg1,app/resource}
cp -R resource/defcfg resource/language "$device/app/resource/"
"$tool" --root "$device" verify --resync >/dev/null

camcfg() {
  "$tool" --color always --root "$device" "$@"
}

show_all() {
  local command
  while read -r command; do
    echo "\$ $command"
    eval "${command//\/cfg0/$device\/cfg0}" 2>&1 | sed 's/ *$//' || true
  done <<<"$commands"
}

show_all | python3 scripts/draw_terminal.py >"$device/terminal.svg"
if [[ ${1-} == --check ]]; then
  diff docs/terminal.svg "$device/terminal.svg" && echo "docs/terminal.svg is up to date"
else
  cp "$device/terminal.svg" docs/terminal.svg
fi
