#!/bin/bash
# The text exports of a 100 MB SU file (25,000 traces of 1000 samples) take
# at most 5 times what cp takes for the text they write, and the vibrator
# words of 10,000 traces at most twice what cp takes for the file (best of
# three runs each).
# usage: exports_speed_check.sh TRACEFOLD_RUN
set -eu
run=$1
work=$(mktemp -d /tmp/tracefold-exports-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
make_su() { # FILE TRACES: fldr, tracf and cdp set, 1000 samples
  python3 - "$1" "$2" <<'PY'
import random, struct, sys
path, traces, ns = sys.argv[1], int(sys.argv[2]), 1000
random.seed(1)
samples = struct.pack('<%df' % ns, *[random.uniform(-1000, 1000) for _ in range(ns)])
with open(path, 'wb') as f:
    for t in range(traces):
        h = bytearray(240)
        struct.pack_into('<iii', h, 8, t // 48 + 1, t % 48 + 1, 0)
        struct.pack_into('<i', h, 20, t + 1)
        struct.pack_into('<hh', h, 114, ns, 500)
        f.write(bytes(h) + samples)
PY
}
RUNS=3
source "$(dirname "$0")/../bench/speed_support.sh"
failed=0 passed=0
check() { # NAME TIME_NS CP_NS FACTOR
  echo "$1 $(($2 / 1000000)) ms, cp $(($3 / 1000000)) ms"
  if [ "$2" -gt $(($4 * $3)) ]; then echo "$1 slower than $4x cp"; failed=$((failed + 1)); else passed=$((passed + 1)); fi
}
copy() { rm -f "$work/copy"; cp "$1" "$work/copy"; }

make_su "$work/line.su" 25000
for export in Option24 Option33; do
  printf 'reply yes\ndialog "%s"\ninput "1"\ninput "25000"\nclick Utility.%s\n' "$work/line.su" "$export" >"$work/$export.tfs"
  export_ns=$(best "$run" "$work/$export.tfs")
  cp_ns=$(best copy "$work/line.txt")
  check "text export $export of $(wc -c <"$work/line.txt") bytes" "$export_ns" "$cp_ns" 5
  rm -f "$work/line.txt" "$work/copy"
done

make_su "$work/vib.su" 10000
printf 'session current_file "%s"\nshow vibro\nclick vibro.Command1\n' "$work/vib.su" >"$work/vibro.tfs"
vibro_ns=$(best "$run" "$work/vibro.tfs")
"$run" "$work/vibro.tfs" | grep -q '"Header update done done !"' || { echo "the vibrator words were not written: 0 passed, 1 failed"; exit 1; }
cp_ns=$(best copy "$work/vib.su")
check "vibrator words into 10000 traces" "$vibro_ns" "$cp_ns" 2
echo "$passed passed, $failed failed"
[ $failed -eq 0 ]
