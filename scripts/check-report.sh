#!/usr/bin/env bash
# Opens reports of `camcfg report` in a browser and checks them there; tests/report/check.mjs says for what.
# The tool is build/camcfg. Installs what it needs.
#
#   scripts/check-report.sh              only checks
#   scripts/check-report.sh --draw DIR   also saves pictures of each report in DIR: on a phone, on a screen, on paper
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build browser
readonly tool=$PWD/build/camcfg
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
pictures=$scratch
if [[ ${1:-} == --draw ]]; then
  pictures=$2
  mkdir -p "$pictures"
fi

npm install --silent --no-audit --no-fund --prefix "$scratch/npm" \
  puppeteer-core@22.15.0 axe-core@4.10.2 >/dev/null

device() {
  mkdir -p "$scratch/$1"/{app,cfg0,cfg1}
  cp -r resource "$scratch/$1/app/"
  cp resource/defcfg/* "$scratch/$1/cfg0"
  cp resource/defcfg/* "$scratch/$1/cfg1"
}
on() {
  local device=$1
  shift
  "$tool" --root "$scratch/$device" "$@" >/dev/null 2>&1
}
report() {
  "$tool" --root "$scratch/$1" report >"$scratch/$1.html"
}

device sample
on sample live rtsp add ch9 channels=0:video,8:audio
on sample set System/Rtsp=8554

device damaged
head -c 1000 resource/defcfg/preset_cfg.xml >"$scratch/damaged/cfg1/preset_cfg.xml"
sed -i 's/Port="9001"/Port="x"/' "$scratch"/damaged/cfg?/mpp_cfg.xml

mkdir -p "$scratch/empty/cfg0"

device hostile
long=$(head -c 10000 /dev/zero | tr '\0' x)
sed -i "s|Name=\"ch1/main\"|Name=\"\&lt;script\&gt;alert(1)\&lt;/script\&gt;\xe2\x80\xae$long\"|" \
  "$scratch"/hostile/cfg?/mpp_cfg.xml
sed -i "s|Lectern|\&lt;/td\&gt;\&lt;img src=x\&gt;\&amp;\xd7\x90\xd7\x91$long|" "$scratch"/hostile/cfg?/preset_cfg.xml
sed -i "s|\"Four-Channel Encoder|\"\&lt;b\&gt;\&#8238;${long:0:60}|" "$scratch"/hostile/cfg?/business_param.xml

device large
python3 - >"$scratch/large.json" <<'END'
import json

channels = [{"id": 0, "name": "video"}, {"id": 8, "name": "audio"}]
json.dump({"version": 1,
           "live": {"rtsp": [{"name": f"session {i}", "channels": channels} for i in range(1000)]},
           "presets": [{"id": i, "description": f"Preset {i}", "pan": i * 30 - 2000, "tilt": i * i % 900,
                        "zoom": i * 20, "focus": 0, "focusMode": 0} for i in range(128)]},
          __import__("sys").stdout)
END
on large import "$scratch/large.json"

for each in sample damaged empty hostile large; do report "$each"; done
"$tool" --root "$scratch/sample" report --compare "$scratch/large" >"$scratch/comparison.html"
mkdir "$scratch/documents"
for each in 1 2 3 5; do "$tool" --root "$scratch/sample" export >"$scratch/documents/hall-$each.json" 2>/dev/null; done
sed -i 's/"Rtsp": 8554/"Rtsp": 8555/' "$scratch/documents/hall-2.json"
"$tool" --root "$scratch/damaged" report --json >"$scratch/documents/hall-4.json"
cp "$scratch/damaged.html" "$scratch/documents/hall-4.html"
"$tool" report --fleet "$scratch/documents" >"$scratch/fleet.html"
timeout 300 node tests/report/check.mjs "$scratch/npm" "$pictures" "$scratch"/{sample,damaged,empty,hostile,large,comparison,fleet}.html
