#!/usr/bin/env bash
# Draws docs/architecture.svg from docs/architecture.dot. Needs Graphviz.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
dot -Tsvg docs/architecture.dot -o docs/architecture.svg
