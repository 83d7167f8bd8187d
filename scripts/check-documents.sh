#!/usr/bin/env bash
# Checks that what the documents name exists: relative links and their headings, and paths of this
# tree in `code`.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Paths that are examples of something to be written, or that a build makes.
readonly not_there='^(src/record/|tests/record/|include/camcfg/record\.h|src/media/rtp\.cpp|tests/media/rtp_test\.cpp|build)'

status=0
checked=0

complain() {
  echo "$1" >&2
  status=1
}

# The anchors of a document's headings, as they are made on the web.
anchors() {
  sed -n 's/^##* //p' "$1" | tr '[:upper:]' '[:lower:]' | sed 's/[^a-z0-9 _-]//g; s/ /-/g'
}

check_link() {
  local document=$1 link=$2 path
  [[ $link == *://* || $link == mailto:* ]] && return
  checked=$((checked + 1))
  path=${link%%#*}
  if [[ -n $path ]]; then path=$(dirname "$document")/$path; else path=$document; fi
  if [[ ! -e $path ]]; then
    complain "$document: link to $link leads nowhere"
  elif [[ $link == *#* ]] && ! anchors "$path" | grep -qxF -- "${link#*#}"; then
    complain "$document: $link: no such heading"
  fi
}

# A path is what begins with the name of a folder of this tree, or names a file at its top.
check_path() {
  local document=$1 path=${2%/}
  [[ $path =~ $not_there || $path == *[*\{]* ]] && return
  [[ $path == */* && -d ${path%%/*} || $path == *.sh || $path == *.md ]] || return 0
  checked=$((checked + 1))
  if [[ ! -e $path && ! -e $(dirname "$document")/$path ]]; then
    complain "$document: $path does not exist"
  fi
}

# Without git, or outside of a repository: what is there and was not built.
documents() {
  if [[ -e .git ]] && command -v git >/dev/null; then
    git ls-files -co --exclude-standard '*.md'
  else
    find . -name 'build*' -prune -o -name '*.md' -printf '%P\n'
  fi
}

while read -r document; do
  while read -r link; do
    check_link "$document" "$link"
  done < <(grep -oP '\]\(\K[^) ]+' "$document")
  # shellcheck disable=SC2016  # a backquote is meant
  while read -r path; do
    check_path "$document" "$path"
  done < <(grep -oP '`\K[A-Za-z0-9._*{/-]+(?=[` ])' "$document")
done < <(documents)

# A picture shows each name of what it is drawn from.
for drawn in docs/*.dot; do
  while read -r name; do
    checked=$((checked + 1))
    if ! grep -qF -- "$name<" "${drawn%.dot}.svg"; then
      complain "${drawn%.dot}.svg lacks \"$name\": run scripts/draw-architecture.sh"
    fi
  done < <(grep -oP '[[ ]label="\K[^"\\]+' "$drawn")
done

# The table of folders names each.
while read -r folder; do
  checked=$((checked + 1))
  if ! grep -qF -- "\`$folder/" docs/architecture.md; then
    complain "docs/architecture.md does not name $folder/"
  fi
done < <(
  find . -mindepth 1 -maxdepth 1 -type d ! -name .git ! -name 'build*' -printf '%P\n'
  find {src,tool,proof} -mindepth 1 -maxdepth 1 -type d ! -name __pycache__
)

if ((checked == 0)); then
  echo "check-documents.sh: nothing was found to check" >&2
  exit 2
fi
echo "$checked links and paths checked"
exit $status
