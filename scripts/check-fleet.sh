#!/usr/bin/env bash
# Checks the Ansible collection with real ansible-core on scratch devices: on directories, through the
# local connection, and on devices without Python, through SSH servers on loopback addresses. Builds
# the tool and installs what it needs.
#
#   scripts/check-fleet.sh             12 directories, 2 devices with SSH
#   scripts/check-fleet.sh --full      200 and 10; single modules, backups and rehearsals still on 12
#   scripts/check-fleet.sh --publish   measures, and puts the figures into docs/fleet.md
#
# Runs as root: the devices with SSH are change roots, and one has a full file system. Everything takes
# place in name spaces of its own, and whatever was started or mounted ends with them.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly collection=integrations/ansible
inside=

usage() {
  echo "usage: scripts/check-fleet.sh [--full | --publish]" >&2
  exit 2
}

# An SSH server takes no root for a session below a directory that others may write to, as /tmp.
prepare() {
  if ((EUID != 0)); then
    echo "check-fleet.sh: run this as root" >&2
    exit 1
  fi
  scripts/install-packages.sh build tool fleet
  scripts/build.sh -- --target released |& scripts/show-progress.sh
  FLEET_WORK=$(mktemp -d /var/lib/camcfg-fleet.XXXXXX)
  chmod 755 "$FLEET_WORK"
  trap clean_up EXIT
  trap 'exit 1' INT TERM
  export FLEET_WORK FLEET_ROOTS FLEET_SERVERS FLEET_FORKS PYTHONDONTWRITEBYTECODE=1
  export ANSIBLE_COLLECTIONS_PATH=$FLEET_WORK/collections ANSIBLE_HOME=$FLEET_WORK/home
}

install_collection() {
  timeout 120 ansible-galaxy collection install --force "$collection" -p "$ANSIBLE_COLLECTIONS_PATH" \
    >"$FLEET_WORK/log" || { cat "$FLEET_WORK/log"; return 1; }
}

# What ansible-core says of the collection without any device.
check_parts() {
  local part name
  for part in "$collection"/plugins/modules/*.py; do
    name=$(basename "$part" .py)
    timeout 60 ansible-doc --type module "camcfg.device.$name" >"$FLEET_WORK/doc"
    grep -q '^EXAMPLES:' "$FLEET_WORK/doc"
    grep -q '^RETURN VALUES:' "$FLEET_WORK/doc"
    [[ -e $collection/plugins/action/$name.py ]]
  done
  for part in "$collection"/playbooks/*.yml; do
    timeout 60 ansible-playbook -i "$collection/examples/inventory.yml" --syntax-check \
      -e rollout_document=site.yml "camcfg.device.$(basename "$part" .yml)" >/dev/null 2>"$FLEET_WORK/log" ||
      { cat "$FLEET_WORK/log" >&2; return 1; }
  done
  (($(timeout 60 ansible -i "$collection/examples/inventory.yml" --list-hosts encoders | tail -n +2 | wc -l) == 200))
  echo "modules, playbooks and inventory: well"
}

# All processes in a name space end with the one that is its first; unshare itself ignores SIGTERM.
apart() {
  timeout --foreground --kill-after=5 "$1" \
    unshare --mount --pid --fork --kill-child --mount-proc "${@:2}" &
  inside=$!
  wait "$inside"
}

# shellcheck disable=SC2317  # called by a trap
clean_up() {
  if [[ -n $inside ]] && kill "$inside" 2>/dev/null; then wait "$inside" || true; fi
  rm -rf "$FLEET_WORK"
}

run_tests() {
  cd tests/fleet
  apart "$1" python3 -m unittest --verbose local_test ssh_test
}

measure() {
  scripts/describe-machine.sh scripts/check-fleet.sh --publish
  ansible --version | sed -n '1s/.*\[core \(.*\)\]/ansible-core \1/p'
  echo
  cd tests/fleet
  apart 2400 python3 measure.py
}

# The figures take the place of all between their heading and the next one.
publish() {
  local document=docs/fleet.md
  grep -qx '### Measured' "$document"
  awk -v figures="$1" '
    /^#+ / { skipped = 0 }
    !skipped { print }
    $0 == "### Measured" { print ""; while ((getline line < figures) > 0) print line; skipped = 1 }
  ' "$document" >"$FLEET_WORK/document"
  cp "$FLEET_WORK/document" "$document"
}

FLEET_ROOTS=12 FLEET_SERVERS=2 FLEET_FORKS=10
limit=480
case ${1-} in
  '') ;;
  --full) FLEET_ROOTS=200 FLEET_SERVERS=10 FLEET_FORKS=20 limit=2400 ;;
  --publish) FLEET_SERVERS=10 ;;
  *) usage ;;
esac

prepare
install_collection
if [[ ${1-} == --publish ]]; then
  measure >"$FLEET_WORK/figures"
  cd ../..
  cat "$FLEET_WORK/figures"
  publish "$FLEET_WORK/figures"
else
  check_parts
  run_tests "$limit"
fi
