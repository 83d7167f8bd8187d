#!/usr/bin/env bash
# Looks for inputs that the library and the tool do not withstand.
#
#   scripts/fuzz.sh [SECONDS [TARGET...]]   runs each target for so long (60); one line for each
#   scripts/fuzz.sh minimise [TARGET...]    takes what such runs found into proof/fuzz/corpus, minimised
#
# Installs what it needs. Inputs found are kept in build-fuzz/corpus and used again by the next run;
# logs are in build-fuzz/logs. Fails on a crash, a broken promise, a leak, and an input that takes
# too long or too much memory, and prints where that input is. proof/fuzz/README.md says how to go on.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly found=build-fuzz/corpus
readonly crashers=build-fuzz/crashers
readonly logs=build-fuzz/logs

# The artifact's prefix is relative on purpose: absolute paths lead into the scratch device.
readonly options=(-timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -print_funcs=0)
readonly longest=16384
readonly longest_kept=4096

export ASAN_OPTIONS=${ASAN_OPTIONS-strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS-print_stacktrace=1}

usage() {
  echo "usage: scripts/fuzz.sh [SECONDS | minimise] [TARGET...]" >&2
  exit 2
}

build() {
  scripts/install-packages.sh build tool fuzz
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz
  mkdir -p "$logs"
}

# The number after a word in the last line of a log that has it.
number_behind() {
  sed -n "s/.*$1 *\([0-9]*\).*/\1/p" "$2" | tail -n 1
}

verdict() {
  local status=$1 target=$2 log=$3 crasher
  if ((status == 0)); then
    echo "no fault"
    return
  fi
  crasher=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
  echo "FAULT: ${crasher:-none kept}, see $log"
}

fuzz_target() {
  local target=$1 dictionary=$2 log=$logs/$1.log status=0
  mkdir -p "$found/$target" "$crashers/$target"
  "build-fuzz/proof/fuzz/fuzz_$target" "${options[@]}" -max_len=$longest -max_total_time="$seconds" \
    -dict="proof/fuzz/$dictionary" -artifact_prefix="$crashers/$target/" \
    "$found/$target" "proof/fuzz/corpus/$target" >"$log" 2>&1 || status=$?
  printf '%-16s %9s runs  %6s edges  %5s inputs  %s\n' "$target" \
    "$(number_behind 'stat::number_of_executed_units:' "$log")" "$(number_behind 'cov:' "$log")" \
    "$(number_behind 'corp:' "$log")" "$(verdict $status "$target" "$log")"
  return $status
}

# Files with names of their own stay; those that libFuzzer named are chosen again, by the code that
# they reach.
minimise_target() {
  local target=$1 log=$logs/$1-minimised.log kept=proof/fuzz/corpus/$1 chosen
  chosen=$(mktemp -d -p build-fuzz)
  mkdir -p "$found/$target"
  find "$kept" -type f ! -regex '.*/[0-9a-f]*' -exec cp -t "$chosen" {} +
  "build-fuzz/proof/fuzz/fuzz_$target" "${options[@]}" -merge=1 -set_cover_merge=1 -use_counters=0 \
    -max_len=$longest_kept "$chosen" "$kept" "$found/$target" >"$log" 2>&1
  find "$kept" -type f -regex '.*/[0-9a-f]*' -delete
  cp -n -t "$kept" "$chosen"/*
  rm -rf "$chosen"
  printf '%-16s %4d files  %7d bytes\n' "$target" "$(find "$kept" -type f | wc -l)" \
    "$(find "$kept" -type f -printf '%s\n' | awk '{ sum += $1 } END { print sum }')"
}

# Runs a function on each target wanted, as many at a time as there are processors.
each_target() {
  local run=$1 target dictionary job jobs=() failed=0
  while read -r target dictionary <&3; do
    if ((${#wanted[@]} > 0)) && [[ " ${wanted[*]} " != *" $target "* ]]; then continue; fi
    while (($(jobs -rp | wc -l) >= $(nproc))); do sleep 0.2; done
    "$run" "$target" "$dictionary" </dev/null &
    jobs+=($!)
  done 3<build-fuzz/proof/fuzz/targets.txt
  for job in "${jobs[@]}"; do wait "$job" || failed=$((failed + 1)); done
  echo "targets: $((${#jobs[@]} - failed)) passed, $failed failed"
  ((${#jobs[@]} > 0 && failed == 0))
}

readonly what=${1-60}
readonly wanted=("${@:2}")
[[ $what =~ ^([0-9]+|minimise)$ ]] || usage

build
# A device of a target that is stopped is left over.
TMPDIR=$(mktemp -d -p "$([[ -w /dev/shm ]] && echo /dev/shm || echo /tmp)")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT

if [[ $what == minimise ]]; then
  each_target minimise_target
else
  readonly seconds=$what
  each_target fuzz_target
fi
