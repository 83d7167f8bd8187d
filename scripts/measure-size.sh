#!/usr/bin/env bash
# Prints what the tool's bytes are: by section, then code by the namespace that it was written in.
#
#   scripts/measure-size.sh TOOL        a tool that is not stripped, for any architecture
#   scripts/measure-size.sh --publish   builds it for a 64-bit ARM device, as packages have it, and puts
#                                       the tables into docs/performance.md
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if (($# != 1)) || [[ $1 == -* && $1 != --publish ]]; then
  echo "usage: scripts/measure-size.sh TOOL | --publish" >&2
  exit 2
fi

build() {
  scripts/install-packages.sh build tool cross
  cmake -S . -B build-size -G Ninja -D CMAKE_BUILD_TYPE=Release \
    -D CMAKE_TOOLCHAIN_FILE="$PWD/cmake/aarch64-linux-gnu.cmake"
  cmake --build build-size --target camcfg-tool
}

sections() {
  printf '| section | bytes | what is in it |\n|---|---|---|\n'
  readelf -S -W "$1" | sed 's/^ *\[ *[0-9]*\] *//' | while read -r name _ _ _ size _; do
    case $name in
      .text) what='code' ;;
      .rodata) what='texts and constant tables' ;;
      .gcc_except_table) what='which objects an exception takes down' ;;
      .eh_frame | .eh_frame_hdr) what='how an exception finds its way' ;;
      .rela.dyn) what='addresses in tables, set when it is loaded' ;;
      .data.rel.ro) what='tables of addresses' ;;
      .dynsym | .dynstr | .plt | .rela.plt) what='names of other libraries that it calls' ;;
      *) continue ;;
    esac
    printf '| %s | %d | %s |\n' "$name" "0x$size" "$what"
  done
}

namespaces() {
  printf '| namespace | bytes of code |\n|---|---|\n'
  nm -S -C --defined-only "$1" | awk '
    function hex(digits,    i, value) {
      value = 0
      for (i = 1; i <= length(digits); i++)
        value = value * 16 + index("0123456789abcdef", substr(digits, i, 1)) - 1
      return value
    }
    $3 ~ /^[tTwW]$/ && !seen[$1]++ {
      name = "other"
      if (match($0, /camcfg::tool::[a-z]+::/)) name = substr($0, RSTART + 8, RLENGTH - 10)
      else if ($0 ~ /camcfg::tool::/) name = "tool"
      else if ($0 ~ / std::/) name = "std"
      sizes[name] += hex($2)
    }
    END { for (name in sizes) printf "%d %s\n", sizes[name], name }' | sort -rn |
    awk '{ printf "| %s | %d |\n", $2, $1 }'
}

tables() {
  sections "$1"
  echo
  namespaces "$1"
}

if [[ $1 == --publish ]]; then
  build
  aarch64-linux-gnu-strip -o build-size/stripped build-size/camcfg
  {
    printf '%s; %d bytes are installed on aarch64\n\n' "$(date +%F)" "$(stat -c %s build-size/stripped)"
    tables build-size/camcfg
  } >build-size/figures
  scripts/put-figures.sh docs/performance.md '### What the tool is made of' build-size/figures
else
  tables "$1"
fi
