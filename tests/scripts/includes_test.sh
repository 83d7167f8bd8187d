#!/usr/bin/env bash
# Tests of scripts/check-includes.sh, on small trees of their own.
#
#   tests/scripts/includes_test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

# A tree with a header in each folder, and no include but one.
lay_out() {
  rm -rf "${tree:?}"/*
  local header
  for header in include/camcfg/{store,params,stream}.h src/{base,store,params,media}/own.h \
    testkit/{enter_root.h,include/camcfg/testkit/device_root.h} \
    tool/{base/own.h,lint/made.h.in,{base,device,parameters,network,lint,commands,cli}/piece.h} \
    tests/{media,support,tool}/helper.h proof/torture/device.h examples/number.h; do
    mkdir -p "$tree/${header%/*}"
    : >"$tree/$header"
  done
  cp src/folders.txt "$tree/src/"
}

# What is said of a tree in which one file has one include; the last line is the count.
verdict_of() {
  lay_out
  mkdir -p "$tree/${1%/*}"
  printf '#include "%s"\n' "$2" >"$tree/$1"
  scripts/check-includes.sh "$tree" || true
}

expect() {
  local expected=$1 got
  got=$(verdict_of "$2" "$3")
  if [[ $got != "$expected${expected:+$'\n'}1 includes checked" ]]; then
    printf '%s includes %s: got:\n%s\n' "$2" "$3" "$got" >&2
    failed=1
  fi
}

allowed() {
  expect "" "$@"
}

refused() {
  expect "$1:1: $3" "$1" "$2"
}

allowed src/params/a.cpp store/own.h
allowed src/params/a.cpp camcfg/store.h
allowed src/media/a.cpp camcfg/stream.h
refused src/base/a.cpp camcfg/store.h "src/base may not include include/camcfg/store.h"
refused src/params/a.cpp camcfg/stream.h "src/params may not include include/camcfg/stream.h"
refused src/store/a.cpp params/own.h "src/store may not include src/params/own.h"
refused src/params/a.cpp media/own.h "src/params may not include src/media/own.h"
refused src/params/a.cpp ../media/own.h "../media/own.h uses ../"
refused include/camcfg/a.h camcfg/testkit/device_root.h \
  "include may not include testkit/include/camcfg/testkit/device_root.h"

allowed tool/parameters/a.cpp device/piece.h
allowed tool/base/a.cpp testkit/enter_root.h
allowed tool/commands/a.cpp cli/piece.h
allowed tool/main.cpp commands/piece.h
allowed tool/lint/a.cpp lint/made.h
refused tool/device/a.cpp parameters/piece.h "tool/device may not include tool/parameters/piece.h"
refused tool/network/a.cpp parameters/piece.h "tool/network may not include tool/parameters/piece.h"
refused tool/cli/a.cpp device/piece.h "tool/cli may not include tool/device/piece.h"
refused tool/device/a.cpp lint/made.h "tool/device may not include tool/lint/made.h"
refused tool/lint/a.cpp cli/piece.h "tool/lint may not include tool/cli/piece.h"
refused tool/lint/a.cpp src/store/own.h "tool/lint may not include src/store/own.h"

allowed tests/media/a_test.cpp media/helper.h
allowed tests/tool/lint/a_test.cpp lint/piece.h
refused tests/store/a_test.cpp params/own.h "tests/store may not include src/params/own.h"
refused tests/tool/device/a_test.cpp lint/piece.h "tests/tool/device may not include tool/lint/piece.h"
refused tests/tool/lint/a_test.cpp store/own.h "tests/tool/lint may not include src/store/own.h"
refused proof/torture/a.cpp store/own.h \
  "proof/torture may not include src/store/own.h"

# A name that is found in two places, and a folder that nobody thought of.
refused tests/tool/lint/a_test.cpp base/own.h "base/own.h is ambiguous: src/base/own.h tool/base/own.h"
expect "tool/new/a.cpp: has no rule in check-includes.sh" tool/new/a.cpp base/own.h

exit $failed
