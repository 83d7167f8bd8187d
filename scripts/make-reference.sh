#!/usr/bin/env bash
# Makes the reference of the public headers, with the documents, in build-docs/html. A warning is an
# error. Installs what it needs.
set -euo pipefail
exec </dev/null
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-packages.sh docs
doxygen docs/Doxyfile
echo "The reference begins at build-docs/html/index.html"
