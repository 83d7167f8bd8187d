#!/usr/bin/env bash
# Draws docs/architecture.svg from docs/architecture.dot. Installs what it needs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/install-packages.sh docs
dot -Tsvg docs/architecture.dot -o docs/architecture.svg
