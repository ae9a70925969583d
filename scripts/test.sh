#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what is missing, builds, and runs every test.
# Usage: scripts/test.sh [build-dir] [extra cmake options...]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
dir="${1:-build}"
bash scripts/build.sh "$@"
cd "$dir"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --timeout 600 -j 2
