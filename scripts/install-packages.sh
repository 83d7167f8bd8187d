#!/usr/bin/env bash
# Makes sure that what a task needs is on this machine.
#
#   scripts/install-packages.sh NEED...
#
# NEED is one of: build tool test bench browser cover cross deb docs fleet forms lint fuzz mutate speed fresh
# torture. On Debian and Ubuntu, as root or with sudo, what is missing is installed, after a line that
# says how much that is; elsewhere it is listed, and the exit status is 1. Asks no questions but sudo's password.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Need, package, and how it shows that the package (or another system's equivalent) is there: a
# command, a file, or a header or a library that a compiler finds. CLANG is the version of clang.
readonly packages='build  g++                    command  g++
build  cmake                  command  cmake
build  ninja-build            command  ninja
build  libtinyxml2-dev        header   tinyxml2.h
tool   libmd-dev              library  g++ libmd.a
tool   nlohmann-json3-dev     header   nlohmann/json.hpp
test   libgtest-dev           header   gtest/gtest.h
test   libgmock-dev           header   gmock/gmock.h
test   abigail-tools          command  abidiff
test   git                    command  git
test   groff-base             command  groff
test   make                   command  make
test   mandoc                 command  mandoc
test   pkg-config             command  pkg-config
test   python3-jsonschema     file     /usr/lib/python3/dist-packages/jsonschema/__init__.py
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
browser chromium              command  chromium
browser fonts-dejavu-core     file     /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
browser npm                   command  npm
browser python3               command  python3
cross  g++-aarch64-linux-gnu  command  aarch64-linux-gnu-g++
cross  qemu-user              command  qemu-aarch64
cross  libmd-dev:arm64        library  aarch64-linux-gnu-g++ libmd.a
cross  libtinyxml2-dev:arm64  library  aarch64-linux-gnu-g++ libtinyxml2.so
cross  libgtest-dev:arm64     library  aarch64-linux-gnu-g++ libgtest.a
cross  libgmock-dev:arm64     library  aarch64-linux-gnu-g++ libgmock.a
deb    dpkg-dev               command  dpkg-shlibdeps
deb    file                   command  file
deb    lintian                command  lintian
deb    pkg-config             command  pkg-config
docs   doxygen                command  doxygen
docs   graphviz               command  dot
docs   python3                command  python3
fleet  ansible-core           command  ansible-playbook
fleet  busybox-static         command  busybox
fleet  openssh-client         command  ssh
fleet  openssh-server         file     /usr/sbin/sshd
fleet  python3                command  python3
fleet  strace                 command  strace
forms  npm                    command  npm
forms  python3-jsonschema     file     /usr/lib/python3/dist-packages/jsonschema/__init__.py
lint   clang-format           command  clang-format
lint   clang-tidy             command  run-clang-tidy
lint   python3                command  python3
lint   shellcheck             command  shellcheck
fuzz   clang                  command  clang++
fuzz   libclang-rt-CLANG-dev  library  clang++ libclang_rt.fuzzer-x86_64.a
mutate git                    command  git
mutate python3                command  python3
mutate util-linux             command  prlimit
speed  ccache                 command  ccache
fresh  debootstrap            command  debootstrap
fresh  git                    command  git
torture  libxml2-utils        command  xmllint'

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
  done <<<"$packages" | awk '!seen[$0]++'
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
  printf '%s\n' "$@" >&2
  exit 1
}

# A password is asked for only where somebody sits at a terminal.
sudo_here() {
  if [[ -t 2 ]]; then sudo "$@"; else sudo -n "$@"; fi </dev/null
}

as_root() {
  if ((EUID == 0)); then "$@"; else sudo_here "$@"; fi
}

# A user who may not become root gets the lines for somebody who may.
ask_administrator() {
  local lines=("  apt-get install -y --no-install-recommends ${missing[*]}")
  if [[ " ${missing[*]} " == *:arm64\ * ]]; then
    lines=("  dpkg --add-architecture arm64 && apt-get update" "${lines[@]}")
  fi
  stop_for "You may not install packages here. Ask an administrator to run, as root:" \
    "${lines[@]}" "Then run this again: it needs no privileges once they are there."
}

become_root() {
  if ((EUID == 0)); then return; fi
  if ! has_command sudo || ! sudo_here true; then ask_administrator; fi
}

# Which version `clang` is, or would be: its run-time library is packed by version.
clang_version() {
  if has_command clang++; then
    clang++ -dumpversion | cut -d. -f1
  elif [[ " ${missing[*]} " == *-CLANG-* ]]; then
    apt-cache depends clang | sed -n 's/.*Depends: clang-\([0-9]*\)$/\1/p' | head -n 1
  fi
}

name_versions() {
  local version
  version=$(clang_version)
  missing=("${missing[@]/-CLANG-/-${version:-CLANG}-}")
}

# Only what counts of a long report: how much is going to be installed.
announce() {
  local plan
  plan=$(as_root env LC_ALL=C apt-get install --assume-no --no-install-recommends "${missing[@]}" 2>&1) || true
  if grep -q '^E: ' <<<"$plan"; then
    grep '^E: ' <<<"$plan" >&2
    if grep -qs '^ID=ubuntu' /etc/os-release; then
      echo "On Ubuntu most of them are in \"universe\": add-apt-repository universe" >&2
    fi
    stop_for "They cannot be installed from the package sources of this machine."
  fi
  sed -nE 's/.* ([0-9]+) newly installed.*/\1 packages/p
    s/^Need to get ([^/]*\/)?(.*) of archives.*/\2 to fetch/p
    s/^After this operation, (.*) of additional.*/\1 of disk/p' <<<"$plan" |
    paste -sd, - | sed 's/,/, /g; s/$/, one to three minutes/'
}

install_missing() {
  local apt=(env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -q -o DPkg::Lock::Timeout=300)
  if [[ " ${missing[*]} " == *:arm64\ * ]]; then
    as_root dpkg --add-architecture arm64
  fi
  as_root "${apt[@]}" update >/dev/null
  name_versions
  echo "Installing: ${missing[*]}"
  announce
  as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}" |&
    scripts/show-progress.sh --packages
}

check_needs "$@"
mapfile -t missing < <(missing_packages "$@")
if ((${#missing[@]} == 0)); then exit 0; fi

if ! has_command apt-get || ! has_command dpkg; then
  stop_for "These are Debian's names: install what your system has for them, then run this again."
fi
name_versions
become_root
install_missing

mapfile -t missing < <(missing_packages "$@")
if ((${#missing[@]} > 0)); then
  stop_for "They were installed, yet are not found."
fi
