#!/usr/bin/env bash
# Installs the dependencies, builds and runs the whole test suite.
# Usage: scripts/run-tests.sh [preset]   (default, asan, tsan, fuzz or qt6; default: default)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
preset=${1:-default}

bash scripts/setup-deps.sh

# A fresh build tree compiles through ccache, so a second clone or a rebuilt
# preset reuses the objects of the last run. Paths are hashed relative to the
# checkout, which lets clones in different folders share the cache; their
# debug information then names the folder of the clone that filled it.
if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
  export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-true}
fi

cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" --parallel "$(nproc)"
