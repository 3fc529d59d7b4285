#!/usr/bin/env bash
# Builds the documentation as an HTML site, to be opened from the disk: build/site/index.html.
# Fails on a broken link, a missing page or anything that would be fetched from the network.
set -euo pipefail
cd "$(dirname "$0")/.."
command -v mkdocs >/dev/null || scripts/setup.sh
exec python3 docs/site.py "${1:-build/site}"
