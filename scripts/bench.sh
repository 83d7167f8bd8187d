#!/usr/bin/env bash
# Measures what the library costs compared with the same done by hand, and with its peers.
#
#   scripts/bench.sh            prints the tables, draws the growth curves into build-bench/
#   scripts/bench.sh --publish  puts both into docs/performance.md and its folder
#   scripts/bench.sh --check    counts the instructions of the calls that have a limit, and no more
#
# Fails when a call costs more instructions than it may, or grows faster than its file. Times are
# those of this machine and vary with its load; ratios and instruction counts vary little.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly limited='parameter_read 10
parameter_read 128
parameter_read 1000
parameter_write 10
parameter_write 128
parameter_write 1000
stream_sources_load 100
stream_sources_load_over_parsing 100
stream_sources_load 1000
stream_sources_load_over_parsing 1000
stream_sources_dump 100
stream_sources_dump 1000
stream_sources_moved_dump 1000
stream_caches_load 100
stream_caches_load_over_parsing 100
stream_caches_load 1000
stream_caches_load_over_parsing 1000
stream_caches_dump 100
stream_caches_dump 1000
stream_caches_moved_dump 1000
websocket_load 100
websocket_load_over_parsing 100
websocket_load 1000
websocket_load_over_parsing 1000
websocket_dump 100
websocket_dump 1000
websocket_moved_dump 1000
rtsp_load 100
rtsp_load_over_parsing 100
rtsp_load 1000
rtsp_load_over_parsing 1000
rtsp_dump 100
rtsp_dump 1000
rtsp_moved_dump 1000
rtmp_load 100
rtmp_load_over_parsing 100
rtmp_load 1000
rtmp_load_over_parsing 1000
ndi_load 100
ndi_load_over_parsing 100
ndi_load 1000
ndi_load_over_parsing 1000
ndi_dump 100
ndi_dump 1000
ndi_moved_dump 1000
srt_load 100
srt_load_over_parsing 100
srt_load 1000
srt_load_over_parsing 1000
srt_dump 100
srt_dump 1000
srt_moved_dump 1000'

# The sizes that their growth is judged by.
readonly growing='parameter_by_name 100
parameter_by_name 1000
verification 100
verification 1000
preset_query 32
preset_query 128
preset_unused_id 32
preset_unused_id 128
preset_set 32
preset_set 128'

# The instructions of one call, as callgrind counts them.
count() {
  valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=/dev/null \
    build-bench/proof/bench/camcfg-instructions "$@" 2>&1 |
    awk '/Collected/ {count = $NF} END {if (count == "") exit 1; print count}'
}

count_all() {
  local name size
  while read -r name size; do
    echo "$name $size $(count "$name" "$size" library) $(count "$name" "$size" floor)"
  done <<<"$1" >build-bench/instructions
  python3 proof/bench/report.py instructions build-bench/instructions
}

case ${1:-} in
  '' | --publish | --check) ;;
  *)
    echo "usage: scripts/bench.sh [--publish | --check]" >&2
    exit 2
    ;;
esac

scripts/install-packages.sh build tool bench
cmake --preset bench
if [[ ${1:-} == --check ]]; then
  cmake --build --preset bench --target camcfg-instructions
  count_all "$limited"
  exit
fi

measure() {
  local curves=$1
  scripts/describe-machine.sh scripts/bench.sh
  python3 proof/bench/report.py tables build-bench/timings.json build-bench/peers.json "$curves"
  build-bench/proof/bench/camcfg-locks
  rm -rf build-bench/device
  mkdir -p build-bench/device/{cfg0,cfg1,app/resource}
  cp -r resource/. build-bench/device/app/resource
  build-bench/camcfg --root build-bench/device verify >build-bench/verify.log
  python3 proof/bench/report.py start build-bench/camcfg build-bench/device
  python3 proof/bench/report.py changes build-bench/camcfg build-bench/device
  count_all "$limited"$'\n'"$growing"
}

# The figures take the place of all that follows their heading.
publish() {
  local document=docs/performance.md
  measure docs | tee build-bench/figures.md
  {
    sed '/^## Figures$/q' $document
    printf '\n'
    cat build-bench/figures.md
  } >build-bench/performance.md
  cp build-bench/performance.md $document
}

cmake --build --preset bench \
  --target camcfg-tool camcfg-instructions camcfg-timings camcfg-locks camcfg-peers
build-bench/proof/bench/camcfg-timings build-bench/timings.json --benchmark_min_time=0.02
build-bench/proof/bench/camcfg-peers >build-bench/peers.json
if [[ ${1:-} == --publish ]]; then publish; else measure build-bench; fi
