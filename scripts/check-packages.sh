#!/usr/bin/env bash
# Checks the packages that scripts/make-packages.sh made: lintian, then an installation by dpkg into
# a scratch root, where they are used and removed again. Installs what it needs.
#
#   scripts/check-packages.sh [amd64|arm64]...     amd64 if none is given
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# In a user namespace where this is not run as root: files are installed as root's.
if ((EUID != 0)); then exec unshare --map-root-user "$0" "$@"; fi

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

fail() {
  echo "check-packages.sh: $1" >&2
  exit 1
}

# What the packages may ask for, and, of this machine's architecture, what their scripts are run by;
# with what those need in turn: the names of some have a version in them.
readonly below='libc6 libstdc++6 libtinyxml2-dev'
readonly for_scripts='libc6 libc-bin dash'

# What a package of this machine needs and is there in its architecture; the first of alternatives.
needs() {
  # shellcheck disable=SC2016  # dpkg-query's own variables
  dpkg-query --show --showformat '${Pre-Depends},${Depends}\n' "$1" | tr ',' '\n' |
    sed 's/^ *//; s/[ :(|].*//' | sort -u | while read -r name; do
    if dpkg-query --status "$name:${1#*:}" >/dev/null 2>&1; then echo "$name"; fi
  done
}

# Puts one of this machine's own packages into the scratch root, files and dpkg's knowledge of it.
adopt() {
  local package=$1
  if grep -qxF "Adopted: $package" "$root/adopted"; then return; fi
  echo "Adopted: $package" >>"$root/adopted"
  dpkg-query --listfiles "$package" | while read -r file; do
    if [[ -f $file ]]; then echo "${file#/}"; fi
  done | tar -C / -cf - -T - | tar -C "$root" -xf - --keep-directory-symlink --no-same-owner
  { dpkg-query --status "$package" && echo; } >>"$root/var/lib/dpkg/status"
  # The architecture is part of the name where a package can be there for several.
  local kind
  for kind in list md5sums; do
    find /var/lib/dpkg/info '(' -name "$package.$kind" -o -name "${package%:*}.$kind" ')' \
      -exec cp '{}' "$root/var/lib/dpkg/info/" ';'
  done
}

adopt_with_needs() {
  local needed
  if grep -qxF "Adopted: $1" "$root/adopted"; then return; fi
  adopt "$1"
  for needed in $(needs "$1"); do adopt_with_needs "$needed:${1#*:}"; done
}

lay_out_root() {
  rm -rf "${root:?}"/*
  mkdir -p "$root"/{etc,tmp} "$root"/var/cache/ldconfig "$root"/var/lib/dpkg/{info,updates,triggers}
  # Debian keeps programs and libraries in one place under two names.
  local directory package
  for directory in bin sbin lib lib64; do
    mkdir -p "$root/usr/$directory"
    ln -s "usr/$directory" "$root/$directory"
  done
  : >"$root/adopted"
  : >"$root/var/lib/dpkg/status"
  printf 'amd64\narm64\n' >"$root/var/lib/dpkg/arch"
  for package in $for_scripts; do adopt "$package:$(dpkg --print-architecture)"; done
  for package in $below; do adopt_with_needs "$package:$architecture"; done
  ln -sf dash "$root/bin/sh"
  mkdir "$root/dev"
  : >"$root/dev/null"
}

dpkg_there() {
  dpkg --root="$root" --log="$root/dpkg.log" "$@"
}

# The tool in the scratch root, with the libraries that are there and no others.
camcfg_there() {
  local loader=ld-linux-x86-64.so.2 libraries=$root/usr/lib/$triplet emulator=()
  if [[ $architecture == arm64 ]]; then
    loader=ld-linux-aarch64.so.1
    emulator=(qemu-aarch64)
  fi
  "${emulator[@]}" "$libraries/$loader" --inhibit-cache --library-path "$libraries" \
    "$root/usr/bin/camcfg" "$@"
}

expect() {
  local expected=$1 got
  shift
  got=$("$@") || fail "$*: exit status $?"
  [[ $got == "$expected" ]] || fail "$*: '$got' instead of '$expected'"
}

use_tool() {
  local device=$root/device
  mkdir -p "$device"/{cfg0,cfg1,app/resource}
  cp -R "$root"/usr/share/camcfg/* "$device/app/resource/"
  expect "camcfg 1.0.0" camcfg_there --version
  camcfg_there --root "$device" verify --resync >/dev/null
  expect 554 camcfg_there --root "$device" get System Rtsp
  expect "System/Rtsp: 554 -> 8554" camcfg_there --root "$device" set System Rtsp 8554
  expect 8554 camcfg_there --root "$device" get System Rtsp
  cmp "$device"/cfg{0,1}/business_param.xml
}

# A program built against the installed headers and library.
use_library() {
  local compiler=g++
  if [[ $architecture == arm64 ]]; then compiler=aarch64-linux-gnu-g++; fi
  local flags
  flags=$(PKG_CONFIG_LIBDIR=$root/usr/lib/$triplet/pkgconfig pkg-config --cflags --libs camcfg)
  # shellcheck disable=SC2086  # the flags are words
  "$compiler" -std=c++11 examples/ports.cpp -o "$root/ports" $flags
}

expect_gone() {
  local left
  left=$(find "$root/usr" "$root/etc" -path '*camcfg*')
  [[ -z $left ]] || fail "left behind: $left"
}

check() {
  local packages=("build-package-$architecture"/*.deb)
  ((${#packages[@]} == 3)) || fail "not three packages in build-package-$architecture"
  lintian --allow-root --fail-on error,warning "${packages[@]}"
  lay_out_root
  dpkg_there --install "${packages[@]}" >"$root/output" || fail "$(cat "$root/output")"
  expect "" dpkg_there --audit
  use_tool
  use_library
  dpkg_there --purge camcfg-tools:"$architecture" libcamcfg-dev:"$architecture" \
    libcamcfg1:"$architecture" >"$root/output" || fail "$(cat "$root/output")"
  expect_gone
  echo "$architecture: lintian found nothing; installed, used and removed"
}

scripts/install-packages.sh build deb
for architecture in "${@:-amd64}"; do
  case $architecture in
    amd64) triplet=x86_64-linux-gnu ;;
    arm64) triplet=aarch64-linux-gnu ;;
    *) fail "no such architecture: $architecture" ;;
  esac
  check
done
