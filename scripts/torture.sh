#!/usr/bin/env bash
# Tortures the library: damages its files, cuts its power, makes its system calls fail, uses it from
# many threads and programs. Does the like to the tool while it changes settings. Prints what was
# found as tables; docs/reliability.md has those of one run each.
#
#   scripts/torture.sh          five minutes
#   scripts/torture.sh --long   three quarters of an hour to an hour: the published figures
#   scripts/torture.sh --arm64  half a minute: programs side by side, built for 64-bit ARM, in qemu
#
# Fails if any program found something wrong. The programs that trace system calls run only on
# x86-64; elsewhere they are left out and named.
set -uo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

torture_arm64() {
  scripts/install-packages.sh build tool cross || exit 1
  cmake --preset arm64 -DCAMCFG_TORTURE=ON -DCAMCFG_WERROR="${CI:-OFF}" &&
    cmake --build --preset arm64 --target camcfg-programs || exit 1
  # No -L: proof/torture/README.md says why.
  exec qemu-aarch64 build-arm64/proof/torture/camcfg-programs
}

case "${1-}" in
  '' | --long) readonly length=("$@") ;;
  --arm64) torture_arm64 ;;
  *)
    echo "Usage: $0 [--long | --arm64]" >&2
    exit 2
    ;;
esac

# The first takes as long as all others together, and is run side by side with them.
readonly programs=(power-cuts damage salvage kills exhaustion threads programs tool-and-programs lock-steps changes)

build_with_thread_sanitizer() {
  cmake --preset tsan -DCAMCFG_TORTURE=ON -DCAMCFG_WERROR="${CI:-OFF}" &&
    cmake --build --preset tsan --target "$@"
}

failed=()

run() {
  local start=$SECONDS status=0
  "$@" "${length[@]}" || status=$?
  printf '(%s: %d s)\n\n' "$(basename "$1")" $((SECONDS - start))
  return "$status"
}

chosen=()
for program in "${programs[@]}"; do chosen+=("camcfg-$program"); done

scripts/install-packages.sh build tool test torture || exit 1
if [[ $(uname -m) != x86_64 ]]; then
  echo "Left out on $(uname -m): power-cuts exhaustion lock-steps changes"
  chosen=(camcfg-damage camcfg-salvage camcfg-kills camcfg-threads camcfg-programs camcfg-tool-and-programs)
fi
scripts/build.sh -D CAMCFG_TORTURE=ON -- --target "${chosen[@]}" || exit 1
build_with_thread_sanitizer camcfg-threads || exit 1

scripts/describe-machine.sh "scripts/torture.sh" "${length[@]}"
readonly first=${chosen[0]} log=build/proof/torture/first.log
# In a process group of its own, which ends when this script is interrupted.
set -m
run "build/proof/torture/$first" >"$log" 2>&1 &
set +m
trap 'kill -- -$! 2>/dev/null' EXIT
for program in "${chosen[@]:1}"; do run "build/proof/torture/$program" || failed+=("$program"); done
run build-tsan/proof/torture/camcfg-threads || failed+=("camcfg-threads in build-tsan")
wait $! || failed+=("$first")
trap - EXIT
cat "$log"

if ((${#failed[@]} > 0)); then
  echo "torture.sh: failed: ${failed[*]}"
  exit 1
fi
echo "torture.sh: all passed, $SECONDS s"
