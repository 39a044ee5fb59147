#!/usr/bin/env bash
# Installs the dependencies, builds and runs the whole test suite.
# Usage: scripts/run-tests.sh [preset]   (default, asan or tsan; default: default)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
preset=${1:-default}

bash scripts/setup-deps.sh
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" --parallel "$(nproc)"
