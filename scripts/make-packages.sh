#!/usr/bin/env bash
# Makes the Debian packages libcamcfg1, libcamcfg-dev and camcfg-tools in build-package-ARCH/.
#
#   scripts/make-packages.sh [amd64|arm64]...     amd64 if none is given
#
# Installs what it needs. Packages for arm64 are made on Debian: Ubuntu keeps that architecture's
# packages on servers of their own.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

check_version() {
  local packaged built
  packaged=$(dpkg-parsechangelog --file packaging/debian/changelog --show-field Version)
  built=$(sed -n 's/^project(camcfg VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
  if [[ $packaged != "$built" ]]; then
    echo "make-packages.sh: packaging/debian/changelog is for $packaged, not for $built" >&2
    exit 1
  fi
}

make_packages() {
  local build=build-package-$1
  if [[ $1 == arm64 ]]; then scripts/install-packages.sh cross; fi
  cmake --preset "package-$1" --log-level=NOTICE
  cmake --build --preset "package-$1" |& scripts/show-progress.sh
  rm -f "$build"/*.deb
  # What a library depends on is looked up among the packages of the architecture built for.
  (cd "$build" && DEB_HOST_ARCH=$1 cpack -G DEB)
  printf '\nInstall them: apt-get install %s\n' "$(printf './%s ' "$build"/*.deb)"
}

scripts/install-packages.sh build tool deb
check_version
for architecture in "${@:-amd64}"; do
  make_packages "$architecture"
done
