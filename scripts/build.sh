#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Configures and builds Tessorin with Ninja (and ccache when present).
# Usage: scripts/build.sh [build-dir] [extra cmake options...]
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${1:-build}"
shift || true
if [ ! -f "$dir/build.ninja" ]; then
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
fi
cmake --build "$dir" -j "$(nproc)"
