#!/usr/bin/env bash
# Builds ColorLab with the default preset and starts it. Without a display it
# renders every page into build/screenshots instead.
# Usage: scripts/run-demo.sh [ColorLab arguments...]
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

bash scripts/setup-deps.sh
cmake --preset default
cmake --build --preset default --target ColorLab

app="$root/build/default/bin/ColorLab"
if [[ -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ]]; then
  exec "$app" "$@"
fi

screenshots="$root/build/screenshots"
echo "No display found (DISPLAY and WAYLAND_DISPLAY are unset); rendering the pages off-screen:"
QT_QPA_PLATFORM=offscreen "$app" --screenshot "$screenshots"
echo "ColorLab's pages are in $screenshots"
