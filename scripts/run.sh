#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what is missing, builds, makes the demo data file if there is none, and starts Tessorin on it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh build
demo="${TESSORIN_DEMO:-$HOME/Documents/tessorin/Demo_Rabbits.cav}"
mkdir -p "$(dirname "$demo")"
if [ ! -f "$demo" ]; then
  build/src/cli/tessorin-cli demo "$demo"
fi
build/src/cli/tessorin-cli info "$demo"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo
  echo "Tessorin is a window program and needs a desktop session: neither DISPLAY nor WAYLAND_DISPLAY is set."
  echo "Run this command again from a terminal inside your desktop, or start it there with:"
  echo "  $(pwd)/build/src/app/tessorin \"$demo\""
  exit 0
fi
exec build/src/app/tessorin "$demo"
