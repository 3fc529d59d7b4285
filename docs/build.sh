#!/usr/bin/env bash
# Builds the documentation as an HTML site that works from the disk: build/site/index.html.
# Fails on a broken link, a missing page or a reference to the network.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -d /usr/share/mkdocs/themes/material ] || scripts/setup.sh
exec python3 docs/site/build.py "${1:-build/site}"
