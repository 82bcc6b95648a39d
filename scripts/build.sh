#!/bin/bash
# Configures and builds everything into build/.
set -eu
cd "$(dirname "$0")/.."
bash scripts/deps.sh
# The desktop tests are listed at build time; without a display or a
# runtime folder the toolkit would only warn about it.
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
  export XDG_RUNTIME_DIR="$(mktemp -d)"
fi
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C build
