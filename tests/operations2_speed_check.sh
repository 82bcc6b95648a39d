#!/bin/bash
# SU operations at disk speed (best of five runs each, against cp of the
# bytes written): split and join of a 200 MB file within 1.5x, subtraction
# of two 100 MB SU files within 3x, compression to 16 bits within 2x.
# Times are wall-clock times of the runs alone (the removal of earlier
# outputs is not timed); the files are in the page cache.
# Run by hand on a quiet machine (it is not part of ctest: on a shared one
# the wall-clock ratios swing widely).
# usage: operations2_speed_check.sh TRACEFOLD_RUN
set -eu
run=$1
work=$(mktemp -d /tmp/tracefold-speed-ops-XXXXXX)
trap 'rm -rf "$work"' EXIT
# 100 MB of SU traces: 1000 samples a trace, a damped wave that changes
# from trace to trace.
python3 - "$work/a.su" "$work/b.su" <<'PY'
import array, math, struct, sys
ns, traces = 1000, 100 * 1000 * 1000 // (240 + 4 * 1000)
for name, shift in ((sys.argv[1], 0.0), (sys.argv[2], 0.5)):
    with open(name, "wb") as f:
        for t in range(traces):
            header = bytearray(240)
            struct.pack_into("<iiii", header, 0, t + 1, t + 1, t // 24 + 1, t % 24 + 1)
            struct.pack_into("<hh", header, 114, ns, 500)
            w = array.array("f", (1000.0 * math.exp(-i / 300.0) * math.sin(i / 7.0 + t + shift) for i in range(ns)))
            f.write(header)
            f.write(w.tobytes())
PY
cat "$work/a.su" "$work/b.su" >"$work/big.bin"
best() { # the best time in microseconds of five runs of "$@", each after "prepare"
  b=0
  for i in 1 2 3 4 5; do
    prepare
    t=$( { TIMEFORMAT='%3R'; time "$@" >/dev/null 2>&1; } 2>&1 | tail -n 1)
    d=$(echo "$t" | awk '{printf "%d", $1 * 1000000}')
    if [ $b -eq 0 ] || [ $d -lt $b ]; then b=$d; fi
  done
  echo $b
}
failed=0 passed=0
check() { # name, its time, cp time, allowed factor in tenths
  echo "$1 $(($2 / 1000)) ms, cp $(($3 / 1000)) ms"
  if [ "$2" -gt $(($3 * $4 / 10)) ]; then echo "$1 slower than $(($4 / 10)).$(($4 % 10))x cp"; failed=$((failed + 1)); else passed=$((passed + 1)); fi
}

parts=$(python3 -c "import os; print(' '.join('big_%02d_bin.spt' % i for i in range(1, os.path.getsize('$work/big.bin') // 10000000 + 2)))")
cat >"$work/split.tfs" <<SCRIPT
dialog "$work/big.bin"
click Utility.Commandp5
click spliter.Command1
set spliter.Combo1 "10000000"
reply yes
click spliter.Command5
dialog "$work/ $parts"
click spliter.Command2
set spliter.Text3 "$work/joined.bin"
click spliter.Command4
SCRIPT
prepare() { rm -f "$work"/*.spt "$work/joined.bin" "$work/c1" "$work/c2"; }
split_join=$(best "$run" "$work/split.tfs")
cmp -s "$work/big.bin" "$work/joined.bin" || { echo "the joined file differs"; failed=$((failed + 1)); }
check "split and join" "$split_join" "$(best bash -c "cp '$work/big.bin' '$work/c1' && cp '$work/c1' '$work/c2'")" 15
rm -f "$work"/*.spt "$work/joined.bin" "$work/c1" "$work/c2" "$work/big.bin"

cat >"$work/sub.tfs" <<SCRIPT
click Utility.Commandp8
set substract.Text1 "$work/a.su"
set substract.Text2 "$work/b.su"
set substract.Text3 "$work/sub.su"
click substract.Command5
SCRIPT
prepare() { rm -f "$work/sub.su" "$work/c1"; }
check "subtraction" "$(best "$run" "$work/sub.tfs")" "$(best cp "$work/a.su" "$work/c1")" 30
rm -f "$work/sub.su" "$work/c1"

cat >"$work/su2.tfs" <<SCRIPT
dialog "$work/a.su"
click Utility.Command19
SCRIPT
"$run" "$work/su2.tfs" >/dev/null
head -c "$(stat -c %s "$work/a.SU2")" "$work/a.su" >"$work/half.su"
prepare() { rm -f "$work/a.SU2" "$work/c1"; }
check "compression" "$(best "$run" "$work/su2.tfs")" "$(best cp "$work/half.su" "$work/c1")" 20
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
