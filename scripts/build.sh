#!/bin/bash
# Configures and builds everything into build/.
set -eu
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C build
