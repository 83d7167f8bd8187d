#!/usr/bin/env bash
# Makes sure that what a task needs is on this machine.
#
#   scripts/install-packages.sh NEED...
#
# NEED is one of: build tool test bench cover cross deb docs lint fuzz mutate speed. On Debian, as
# root or with sudo, what is missing is installed; elsewhere it is listed, and the exit status is
# 1. Asks no questions.
set -euo pipefail

# Need, Debian package, and how it shows that the package (or another system's equivalent) is there:
# a command, a file, or a header or a library that a compiler finds.
readonly packages='build  g++                    command  g++
build  cmake                  command  cmake
build  ninja-build            command  ninja
build  libtinyxml2-dev        header   tinyxml2.h
tool   libcli11-dev           header   CLI/CLI.hpp
tool   nlohmann-json3-dev     header   nlohmann/json.hpp
test   libgtest-dev           header   gtest/gtest.h
test   libgmock-dev           header   gmock/gmock.h
test   abigail-tools          command  abidiff
test   graphviz               command  dot
test   make                   command  make
test   mandoc                 command  mandoc
test   pkg-config             command  pkg-config
test   zsh                    command  zsh
bench  augeas-lenses          file     /usr/share/augeas/lenses/dist/xml.aug
bench  gnuplot-nox            command  gnuplot
bench  libaugeas-dev          file     /usr/include/augeas.h
bench  libbenchmark-dev       header   benchmark/benchmark.h
bench  libconfig++-dev        header   libconfig.h++
bench  libubootenv-dev        header   libuboot.h
bench  pkg-config             command  pkg-config
bench  python3                command  python3
bench  valgrind               command  valgrind
cover  gcovr                  command  gcovr
cover  python3                command  python3
cross  g++-aarch64-linux-gnu  command  aarch64-linux-gnu-g++
cross  qemu-user              command  qemu-aarch64
cross  libtinyxml2-dev:arm64  library  aarch64-linux-gnu-g++ libtinyxml2.so
cross  libgtest-dev:arm64     library  aarch64-linux-gnu-g++ libgtest.a
cross  libgmock-dev:arm64     library  aarch64-linux-gnu-g++ libgmock.a
deb    dpkg-dev               command  dpkg-shlibdeps
deb    lintian                command  lintian
docs   doxygen                command  doxygen
docs   graphviz               command  dot
lint   clang-format           command  clang-format
lint   clang-tidy             command  run-clang-tidy
lint   python3                command  python3
lint   shellcheck             command  shellcheck
fuzz   clang                  command  clang++
fuzz   libclang-rt-14-dev     library  clang++ libclang_rt.fuzzer-x86_64.a
mutate git                    command  git
mutate python3                command  python3
mutate util-linux             command  prlimit
speed  ccache                 command  ccache'

has_command() {
  command -v "$1" >/dev/null
}

has_file() {
  [[ -e $1 ]]
}

has_header() {
  has_command g++ && g++ -E -x c++ -include "$1" /dev/null >/dev/null 2>&1
}

has_library() {
  has_command "$1" && [[ $("$1" -print-file-name="$2") == */* ]]
}

# The packages of the given needs whose sign is not there, one a line.
missing_packages() {
  local need package sign arguments
  while read -r need package sign arguments; do
    [[ " $* " == *" $need "* ]] || continue
    # shellcheck disable=SC2086  # the arguments are words
    "has_$sign" $arguments || echo "$package"
  done <<<"$packages"
}

check_needs() {
  local need
  for need; do
    if ! grep -q "^$need " <<<"$packages"; then
      echo "install-packages.sh: no such need: $need" >&2
      exit 2
    fi
  done
}

stop_for() {
  echo "Missing: ${missing[*]}" >&2
  echo "$1" >&2
  exit 1
}

# A password is asked for only where somebody sits at a terminal.
as_root() {
  if ((EUID == 0)); then
    "$@"
  elif [[ -t 2 ]]; then
    sudo "$@"
  else
    sudo -n "$@"
  fi
}

install_missing() {
  if [[ " ${missing[*]} " == *:arm64\ * ]]; then
    as_root dpkg --add-architecture arm64
  fi
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
  as_root "${apt[@]}" update
  as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

check_needs "$@"
mapfile -t missing < <(missing_packages "$@")
if ((${#missing[@]} == 0)); then exit 0; fi

if ! has_command apt-get || ! has_command dpkg; then
  stop_for "These are Debian's names: install what your system has for them, then run this again."
elif ((EUID != 0)) && ! has_command sudo; then
  stop_for "Run this as root or with sudo installed, or: apt-get install ${missing[*]}"
fi

echo "Installing: ${missing[*]}"
install_missing </dev/null

mapfile -t missing < <(missing_packages "$@")
if ((${#missing[@]} > 0)); then
  stop_for "They were installed, yet are not found."
fi
