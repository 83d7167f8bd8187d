#!/usr/bin/env bash
# Validates the schema of the sample device against the metaschemas of both dialects, by two validators, and
# compares what it says with what `camcfg import` takes; tests/schema/check_schema.py says how. The tool is
# build/camcfg. Installs what it needs.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh build forms
readonly tool=$PWD/build/camcfg
scripts/require-tool.sh "$0"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

mkdir -p "$scratch/device/app" "$scratch/schemas"
cp -r resource "$scratch/device/app/"
cp -r resource/defcfg "$scratch/device/cfg0"
cp -r resource/defcfg "$scratch/device/cfg1"
for dialect in 2020-12 draft-07; do
  "$tool" --root "$scratch/device" schema --dialect "$dialect" >"$scratch/schemas/$dialect.json"
  "$tool" schema --sample --dialect "$dialect" | cmp - "$scratch/schemas/$dialect.json"
done
npm install --silent --no-audit --no-fund --prefix "$scratch/npm" ajv@8.17.1 >/dev/null
PYTHONDONTWRITEBYTECODE=1 python3 tests/schema/check_schema.py "$tool" "$scratch/device" "$scratch/cases"
node tests/schema/check.mjs "$scratch/npm" "$scratch/cases" "$scratch"/schemas/*.json
