#!/usr/bin/env bash
# Draws the media wiring of the sample factory set into docs/sample-wiring.svg, by the tool in
# build/ (or the one given). The tool's tests fail when the picture is out of date.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly camcfg=${1:-build/camcfg}

device=$(mktemp -d)
trap 'rm -rf "$device"' EXIT
mkdir -p "$device"/cfg0 docs
cp resource/defcfg/mpp_cfg.xml "$device/cfg0/"
"$camcfg" --root "$device" graph --format svg >"$device/wiring.svg"
mv "$device/wiring.svg" docs/sample-wiring.svg
chmod 644 docs/sample-wiring.svg
