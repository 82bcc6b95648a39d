#!/bin/bash
# The unit tests and the malformed-input test again, built with the address
# and undefined-behaviour sanitizers (no desktop front end, no benchmarks).
set -eu
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTRACEFOLD_GUI=OFF -DTRACEFOLD_BENCHMARKS=OFF \
  -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer" \
  -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
ninja -C build-sanitize tracefold_tests tracefold-run tracefold-batch make-records
export ASAN_OPTIONS="abort_on_error=0:detect_leaks=0:allocator_may_return_null=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
# The speed check and the segyio reader check do not concern the sanitizers.
ctest --test-dir build-sanitize --output-on-failure -j2 -E '_within_|segyio'
