#!/usr/bin/env bash
# Tries the project as somebody does who has just installed a system: in a bare root of each suite,
# made by debootstrap, with a clone of this tree's last commit. Runs the README's two commands word for
# word, and every further step that the documents name. Prints one line for each.
#
#   scripts/check-fresh.sh SUITE...              bookworm trixie noble; 15 to 30 minutes each
#   scripts/check-fresh.sh --publish SUITE...    puts the lines into docs/systems.md
#
# As root, and with a network. Each step is stopped when it takes too long. What a step printed is in
# build-fresh/SUITE/. The roots are in TMPDIR (/var/tmp if not set) and need 3 GB; they are removed at
# the end, and their mounts are seen by nobody else and end with the step, on Ctrl-C as well. Packages
# come from where this machine gets its own, or from the suite's public server.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly tree=/home/dev/camcfg
readonly longest=3600  # seconds of one step
publish=
if [[ ${1-} == --publish ]]; then
  publish=yes
  shift
fi
if (($# == 0)) || [[ $1 == -* ]]; then
  echo "usage: scripts/check-fresh.sh [--publish] SUITE..." >&2
  exit 2
elif ((EUID != 0)); then
  echo "check-fresh.sh: a root of its own is made by root only: sudo $0 $*" >&2
  exit 1
fi
scripts/install-packages.sh fresh

work=$(mktemp -d -p "${TMPDIR:-/var/tmp}" camcfg-fresh-XXXXXX)
failed=0
running=

# The processes of a root end with the one that made its namespaces.
clean_up() {
  if [[ -n $running ]]; then
    kill -KILL "$running" 2>/dev/null || true
    wait "$running" 2>/dev/null || true
  fi
  rm -rf --one-file-system "$work"
}
trap clean_up EXIT
trap 'exit 130' INT TERM HUP

# Debian's packages as this machine gets them.
debian_server() {
  local server
  # shellcheck disable=SC2016  # apt-get's own variable
  server=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Label: Debian' 2>/dev/null |
    head -n 1)
  echo "${server:-http://deb.debian.org/debian}"
}

# What Ubuntu signs with: this machine's, or the one that Debian ships, and signs.
ubuntu_keyring() {
  local keyring=usr/share/keyrings/ubuntu-archive-keyring.gpg
  if [[ -e /$keyring ]]; then
    echo "/$keyring"
    return
  fi
  mkdir -p "$work"/apt/{lists,cache}/partial "$work/apt/cache/archives/partial"
  echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(debian_server) trixie main" \
    >"$work/apt/sources.list"
  local apt=(apt-get -qq -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt/cache"
    -o "Dir::Etc::SourceList=$work/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o APT::Sandbox::User=root)
  (cd "$work/apt" && "${apt[@]}" update && "${apt[@]}" download ubuntu-keyring &&
    dpkg-deb -x ubuntu-keyring_*.deb .) >&2
  echo "$work/apt/$keyring"
}

make_root() {
  local suite=$1 root=$work/$1 server components=main family=sid keyring
  case $suite in
    bookworm | trixie | forky | sid)
      server=$(debian_server)
      keyring=/usr/share/keyrings/debian-archive-keyring.gpg
      ;;
    *)
      server=${UBUNTU_SERVER:-http://archive.ubuntu.com/ubuntu}
      components=main,universe
      family=gutsy
      keyring=$(ubuntu_keyring)
      ;;
  esac
  # A debootstrap that is older than the suite knows its family.
  if [[ -e /usr/share/debootstrap/scripts/$suite ]]; then family=$suite; fi
  unshare --mount debootstrap --variant=minbase --components="$components" --keyring="$keyring" \
    "$suite" "$root" "$server" "$family" || return
  {
    echo "deb $server $suite ${components/,/ }"
    echo "deb $server $suite-updates ${components/,/ }"
  } >"$root/etc/apt/sources.list"
  cp /etc/resolv.conf "$root/etc/resolv.conf"
  mkdir -p "$root${tree%/*}"
  git clone -q --no-hardlinks . "$root$tree" || return
  # Somebody may have no git: the tree is then what an archive of it holds.
  rm -rf "$root$tree/.git"
}

# Runs a command in a root as if it were a machine's: a root that was entered by chroot has no user
# namespaces. With the namespaces everything ends that was mounted or started in them.
# shellcheck disable=SC2016  # expanded in the namespaces
inside() {
  unshare --mount --pid --fork --kill-child bash -c '
    set -e
    mount --make-rprivate /
    mount --bind "$1" "$1"
    mount --rbind /dev "$1/dev"
    mount --rbind /sys "$1/sys"
    mount -t proc proc "$1/proc"
    mount -t tmpfs tmpfs "$1/tmp"
    cd "$1"
    pivot_root . .
    umount -l .
    cd /
    exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
      HOME=/root LANG=C.UTF-8 TERM=dumb timeout --kill-after=10 "$4" bash -c "cd $2; $3"
  ' - "$1" "$tree" "$2" "$longest" &
  running=$!
  wait "$running"
}

# Runs one step, and says in one line how it went.
step() {
  local name=$1 status=0 outcome=works times log
  shift
  log=${name#./}
  log=build-fresh/$suite/${log//[^a-z0-9.-]/_}.log
  local TIMEFORMAT='%0R %0U %0S'
  { time "$@" >"$log" 2>&1; } 2>"$work/times" || status=$?
  read -r -a times < <(tail -n 1 "$work/times")
  if ((status != 0)); then
    outcome="FAILS ($status)"
    failed=$((failed + 1))
  fi
  printf '| %-8s | %-58s | %-11s | %6d | %6d |\n' "$suite" "$name" "$outcome" \
    "${times[0]}" $((times[1] + times[2])) | tee -a build-fresh/figures.md
  if ((status != 0)); then
    echo "  $log:"
    tail -n 5 "$log" | sed 's/^/    /'
  fi
  return "$status"
}

try() {
  local command=$1
  step "${2-$command}" inside "$work/$suite" "$command" || true
}

# As an ordinary user, to whom the tree belongs.
try_as_user() {
  try "su dev -c 'cd $tree; $1'" "$2"
}

size() {
  du -sm --one-file-system "$1" | cut -f1
}

try_suite() {
  local root=$work/$suite command bare
  mkdir -p "build-fresh/$suite"
  step debootstrap make_root "$suite" || return 0
  bare=$(size "$root")
  mapfile -t commands < <(grep -oP '^\$ \K\./scripts/[a-z]+\.sh$' README.md)
  try "${commands[0]}"
  try 'cmake --install build && camcfg --version && ldconfig' 'cmake --install build'
  try scripts/check-transcripts.sh
  try "${commands[1]}"
  sed -n '/^none was skipped/p; /^Skipped: /,/^$/s/^/  /p' "build-fresh/$suite/scripts_test.sh.log"
  try scripts/make-packages.sh
  try 'apt-get install -y ./build-package-amd64/*.deb && /usr/bin/camcfg --version' \
    'apt-get install ./build-package-amd64/*.deb'
  try scripts/make-reference.sh
  try scripts/check-documents.sh
  try 'scripts/install-packages.sh fuzz'
  try 'useradd --create-home --shell /bin/bash dev; chown -R dev: /home/dev; apt-get install -qy sudo;
    echo "dev ALL=(ALL) NOPASSWD: ALL" >/etc/sudoers.d/dev;
    apt-get remove -qy ninja-build' 'a user, and one package fewer'
  try_as_user "${commands[0]}" "${commands[0]}, by a user with sudo"
  try 'rm /etc/sudoers.d/dev'
  try_as_user "${commands[0]}" "${commands[0]}, by a user, packages present"
  try 'apt-get remove -qy ninja-build' 'one package fewer again'
  try_as_user "! scripts/install-packages.sh build 2>why && grep \"ask an admin\" -i why" \
    "a user without sudo gets the administrator's line"
  echo "  disk: $bare MB bare, $(size "$root") MB at the end, of that $(size "$root$tree") MB the tree"
  rm -rf --one-file-system "$root"
}

mkdir -p build-fresh
: >build-fresh/figures.md
if [[ -n $(git status --porcelain) ]]; then
  echo "check-fresh.sh: what is not committed is not tried" >&2
fi
for suite; do try_suite; done
if [[ -n $publish ]]; then
  scripts/describe-machine.sh scripts/check-fresh.sh "$@" >build-fresh/machine
  sed -i '/^## Figures$/q' docs/systems.md
  {
    echo
    cat build-fresh/machine
    echo '| suite | step | outcome | seconds | of a processor |'
    echo '|---|---|---|---:|---:|'
    cat build-fresh/figures.md
  } >>docs/systems.md
fi
echo "check-fresh.sh: $failed steps failed"
((failed == 0))
