#!/usr/bin/env bash
# Validates what `camcfg lint --format sarif` prints against the schema of SARIF 2.1.0, of which a package of
# npm has a copy. The tool is build/camcfg. Installs what it needs.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build forms
readonly tool=$PWD/build/camcfg
scripts/require-tool.sh "$0"
readonly package=@microsoft/jest-sarif@1.0.0-beta.0
readonly schema=package/lib/schemas/sarif-2.1.0-rtm.5.json
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

(
  cd "$scratch"
  npm pack --silent "$package" >/dev/null
  tar -xzf ./*.tgz "$schema"
  mkdir 'a folder'
  printf '<PresetCfg>\n<preset Id="x\xff"/>\n<preset/>\n</PresetCfg>\n' >'a folder/presets.xml'
  printf '<Texts>\n<A/>\n<A Val="a"/>\n</Texts>\n' >'ü:%.xml'
  printf '<PresetCfg' >damaged.xml
)

# With findings of several files, with none, and with one of a file that cannot be read.
logs() {
  local log=0
  while read -r -d '' files; do
    log=$((log + 1))
    # Findings are what is wanted: their exit status is 1.
    (cd "$scratch" && eval "$tool lint --format sarif $files") >"$scratch/$log.sarif" || true
  done
}
printf '%s\0' "'a folder/presets.xml' ü:%.xml damaged.xml" \
  "'$PWD/resource/defcfg/business_param.xml'" "none.xml" | logs

python3 - "$scratch/$schema" "$scratch"/*.sarif <<'END'
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
validator = jsonschema.validators.validator_for(schema)(schema)
results = 0
for path in sys.argv[2:]:
    with open(path, encoding="utf-8") as file:
        log = json.load(file)
    validator.validate(log)
    results += len(log["runs"][0]["results"])
broken = dict(log, version="2.0.0")
if validator.is_valid(broken) or results < 5:
    sys.exit("the check itself is broken: it takes a log of another version, or nothing was found")
print(f"{len(sys.argv) - 2} logs with {results} results are valid")
END
