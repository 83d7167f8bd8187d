#!/usr/bin/env bash
# Tests of scripts/install-packages.sh and scripts/name-skipped.sh, without installing anything.
#
#   tests/scripts/packages_test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
chmod 755 "$scratch"

expect() {
  if ! grep -qF -- "$1" <<<"$output"; then
    printf 'not said: %s\n%s\n' "$1" "$output" >&2
    exit 1
  fi
}

# A system on which nothing is installed that a build needs.
for program in bash env dirname awk grep sed paste tail head cut sort cat; do
  ln -s "$(command -v $program)" "$scratch/"
done

as_user() {
  local user=()
  if ((EUID == 0)); then user=(setpriv --reuid 65534 --regid 65534 --clear-groups); fi
  output=$("${user[@]}" env PATH="$scratch" bash "$scratch/scripts/install-packages.sh" build 2>&1 </dev/null) ||
    status=$?
}
mkdir "$scratch/scripts"
cp scripts/install-packages.sh "$scratch/scripts/"

status=0
as_user
((status == 1))
expect "Missing: g++ cmake ninja-build libtinyxml2-dev"
expect "install what your system has for them"

# Debian, and a user who may not become root.
for program in apt-get apt-cache dpkg; do
  printf '#!/bin/sh\nexit 1\n' >"$scratch/$program"
  chmod 755 "$scratch/$program"
done
status=0
as_user
((status == 1))
expect "Ask an administrator to run, as root:"
expect "apt-get install -y --no-install-recommends g++ cmake ninja-build libtinyxml2-dev"

# So it is with a sudo that refuses.
cp "$scratch/dpkg" "$scratch/sudo"
status=0
as_user
((status == 1))
expect "Ask an administrator to run, as root:"

# Skipped tests are named by their reasons.
mkdir -p "$scratch/build/Testing/Temporary"
cat >"$scratch/build/Testing/Temporary/LastTest.log" <<'END'
1/2 Test: a_test.A
[ RUN      ] A.Passes
[ RUN      ] A.NeedsMore
/src/a_test.cpp:7: Skipped
needs root
[  SKIPPED ] A.NeedsMore
Tests: 2, failed: 0
2/2 Test: install.Sound
Skipped: needs systemd
END
output=$(scripts/name-skipped.sh "$scratch/build")
expect "Skipped: 2 of 3 tests"
expect $'  needs root:\n    A.NeedsMore'
expect $'  needs systemd:\n    install.Sound'
sed -i '/: Skipped/,+1d; /SKIPPED/d; /^Skipped/d' "$scratch/build/Testing/Temporary/LastTest.log"
output=$(scripts/name-skipped.sh "$scratch/build")
expect "3 tests ran, none was skipped."
