#!/usr/bin/env bash
# Builds the tool camcfg in build/, lays out a new device under build/device from the sample factory
# set, and shows what the tool does with it. May be run again: the device is then laid out again.
#
#   scripts/demo.sh            builds first
#   scripts/demo.sh --built    with the tool that is in build/ already
#
# On Debian and Ubuntu, as root or with sudo, what is missing is installed first.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly device=build/device
readonly camcfg="build/camcfg --root $device"

build_tool() {
  scripts/install-packages.sh build tool
  scripts/announce.sh "Building the library and the tool" 2 100
  scripts/build.sh -- --target released |& scripts/show-progress.sh
}

lay_out_device() {
  rm -rf "$device"
  mkdir -p "$device"/{cfg0,cfg1,app/resource}
  cp -R resource/defcfg resource/language "$device/app/resource/"
}

explain() {
  printf '\n'
  printf '# %s\n' "$@"
}

# Shows a command and runs it; it must end with the given exit status.
show() {
  local expected=$1 status=0
  shift
  printf '\n$ %s\n' "$*"
  "$@" || status=$?
  if ((status != 0)); then echo "(exit status $status)"; fi
  if ((status != expected)); then
    echo "demo.sh: exit status $expected was expected" >&2
    exit 1
  fi
}

# shellcheck disable=SC2086  # the command is words
tour() {
  explain "A new device: factory settings and nothing else. The check made at every start fills" \
       "/cfg0, where the settings live; --resync also brings their backups in /cfg1 up to date."
  show 0 $camcfg verify
  show 0 $camcfg verify --resync

  explain "What is set, and what may be set."
  show 0 $camcfg list System
  show 0 $camcfg describe Rtsp

  explain "A change goes to both copies. A value that is not permitted is refused, and changes nothing."
  show 0 $camcfg set System Rtsp 8554
  show 1 $camcfg set System Rtsp 70000
  show 1 $camcfg set System Language Latin

  explain "A power cut leaves half a file. The next start takes it from the backup, port included."
  show 0 truncate --size=1000 $device/cfg0/business_param.xml
  show 3 $camcfg get System Rtsp
  show 0 $camcfg verify
  show 0 $camcfg get System Rtsp
}

check_port() {
  # shellcheck disable=SC2086  # the command is words
  if [[ $($camcfg get System Rtsp) != 8554 ]]; then
    echo "demo.sh: the port did not come back" >&2
    exit 1
  fi
}

suggest() {
  cat <<END

# The device is yours now, in $PWD:

  $camcfg system
  $camcfg list VideoCh1
  $camcfg describe Ch1MainCodec
  $camcfg set VideoCh1 Ch1MainCodec H264
  $camcfg lang German MenuLive
  $camcfg --help

# Next: docs/getting-started.md writes a program of your own and runs it on this device.
END
}

if [[ ${1-} != --built ]]; then build_tool; fi
lay_out_device
tour
check_port
suggest
