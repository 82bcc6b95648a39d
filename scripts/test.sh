#!/bin/bash
# Builds and runs every test, the desktop front end's headless.
set -eu
cd "$(dirname "$0")/.."
bash scripts/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j2
