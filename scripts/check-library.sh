#!/usr/bin/env bash
# Builds the library without the tool, by what the README says, and uses it from where it is
# installed. Fails when CMake looks for, or the compiler reads, anything of other packages than
# tinyxml2 and the compiler's own. Installs what it needs.
#
#   scripts/check-library.sh
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly build=build-library
readonly prefix=$PWD/$build/installed

fail() {
  printf 'check-library.sh: %s\n' "$@" >&2
  exit 1
}

configure() {
  cmake -S . -B "$1" -G Ninja --log-level=NOTICE -D CAMCFG_TOOL=OFF \
    -D CAMCFG_WERROR="${CI:-OFF}" -D CMAKE_INSTALL_PREFIX="$prefix" "${@:2}"
}

# What CMake looked for is in its cache, found or not.
check_what_is_looked_for() {
  local sought
  sought=$(sed -nE 's/^([^#/:]+):(PATH|FILEPATH)=.*/\1/p' "$build/CMakeCache.txt" |
    grep -vE '^CMAKE_|^tinyxml2_|^TINYXML2_' || true)
  [[ -z $sought ]] || fail "CMake looked for more than tinyxml2:" "$sought"
}

# The headers of other packages, by the packages that they belong to.
check_what_is_read() {
  local packages
  packages=$(ninja -C "$build" -t deps | sed -n 's|^ *\(/[^ ]*\)$|\1|p' | sort -u |
    xargs realpath | grep -v "^$PWD/" | sort -u | xargs dpkg -S | cut -d: -f1 |
    tr -d ' ' | tr ',' '\n' | sort -u)
  [[ $packages == *libtinyxml2-dev* ]] || fail "the headers of tinyxml2 are not among: $packages"
  packages=$(grep -vE '^lib(c6|gcc(-[0-9]+)?|stdc\+\+-[0-9]+|tinyxml2)-dev$|^linux-libc-dev$' \
    <<<"$packages" || true)
  [[ -z $packages ]] || fail "headers of more packages are read:" "$packages"
}

# Options that need the tool are refused, by their names.
check_refusals() {
  local option output
  for option in CAMCFG_PACKAGES CAMCFG_FUZZ CAMCFG_TORTURE; do
    if output=$(configure "$build/refused/$option" -D "$option=ON" 2>&1); then
      fail "$option was accepted"
    fi
    [[ $output == *"$option needs the tool"* ]] || fail "$option:" "$output"
  done
}

# Both ways of finding the library; the second one's program is run.
use_library() {
  local flags got
  cmake -S examples -B "$build/examples" -G Ninja --log-level=NOTICE \
    -D CMAKE_PREFIX_PATH="$prefix" -D CMAKE_DISABLE_FIND_PACKAGE_GTest=ON -D CMAKE_CXX_FLAGS=-O0
  cmake --build "$build/examples"
  flags=$(PKG_CONFIG_PATH=$(find "$prefix" -name pkgconfig) pkg-config --cflags --libs camcfg-testkit)
  # shellcheck disable=SC2086  # the flags are words
  g++ -std=c++11 -Dmain=portsMain -c examples/ports.cpp -o "$build/ports.o" $flags
  # shellcheck disable=SC2086
  g++ -std=c++11 tests/install/ports_on_device.cpp "$build/ports.o" -o "$build/ports" $flags \
    -Wl,-rpath,"$(dirname "$(find "$prefix" -name libcamcfg.so)")"
  got=$("$build/ports" "$prefix/share/camcfg" rtsp 7554 2>/dev/null | tail -n 3)
  [[ $got == $'web 80 443\nrtsp 7554\nrtsp-over-http 8080' ]] || fail "the example printed:" "$got"
}

scripts/install-packages.sh build deb
rm -rf "$build"
configure "$build"
check_what_is_looked_for
cmake --build "$build"
check_what_is_read
cmake --install "$build" >/dev/null
left=$(find "$prefix" -path '*/bin/*' -o -path '*/man/*' -o -name '*json*' -o -name '*.service')
[[ -z $left ]] || fail "installed of the tool:" "$left"
use_library
check_refusals
echo "built, installed and used with tinyxml2 and a compiler only"
