#!/bin/bash
# SU operations at disk speed, best of five runs each against cp: split and
# join of a 200 MB file within 1.5 times two cp of it; subtraction of two
# 100 MB SU files within 3 times cp of the output; compression of a 100 MB
# SU file within 2 times cp of that file (the cp of the half-size output is
# printed beside it). Each run and each cp first removes what it writes.
# usage: operations_ii_speed.sh TRACEFOLD_RUN
set -eu
run=$1
source "$(dirname "$0")/speed_support.sh"
work=$(mktemp -d /tmp/tracefold-speed-ops-XXXXXX)
trap 'rm -rf "$work"' EXIT
# 100 MB of SU traces each: 1000 samples a trace, 24 damped waves in turn.
python3 - "$work/a.su" "$work/b.su" <<'PY'
import array, math, struct, sys
ns, traces = 1000, 100 * 1000 * 1000 // (240 + 4 * 1000)
for name, shift in ((sys.argv[1], 0.0), (sys.argv[2], 0.5)):
    waves = [array.array("f", (1000.0 * math.exp(-i / 300.0) * math.sin(i / 7.0 + c + shift) for i in range(ns))).tobytes()
             for c in range(24)]
    header = bytearray(240)
    with open(name, "wb") as f:
        for t in range(traces):
            struct.pack_into("<iiii", header, 0, t + 1, t + 1, t // 24 + 1, t % 24 + 1)
            struct.pack_into("<hh", header, 114, ns, 500)
            f.write(header)
            f.write(waves[t % 24])
PY
cat "$work/a.su" "$work/b.su" >"$work/big.bin"
failed=0 passed=0
check() { # name, its time, cp time, allowed factor in tenths
  echo "$1 $(($2 / 1000000)) ms, cp $(($3 / 1000000)) ms"
  if [ "$2" -gt $(($3 * $4 / 10)) ]; then
    echo "$1 slower than $(($4 / 10)).$(($4 % 10))x cp"
    failed=$((failed + 1))
  else passed=$((passed + 1)); fi
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
split_and_join() { rm -f "$work"/*.spt "$work/joined.bin"; "$run" "$work/split.tfs"; }
copy_twice() { rm -f "$work/c1" "$work/c2"; cp "$work/big.bin" "$work/c1" && cp "$work/c1" "$work/c2"; }
check "split and join" "$(best split_and_join)" "$(best copy_twice)" 15
cmp -s "$work/big.bin" "$work/joined.bin" || { echo "the joined file differs"; failed=$((failed + 1)); }
rm -f "$work"/*.spt "$work/joined.bin" "$work/c1" "$work/c2" "$work/big.bin"

cat >"$work/sub.tfs" <<SCRIPT
click Utility.Commandp8
set substract.Text1 "$work/a.su"
set substract.Text2 "$work/b.su"
set substract.Text3 "$work/sub.su"
click substract.Command5
SCRIPT
subtract() { rm -f "$work/sub.su"; "$run" "$work/sub.tfs"; }
copy_input() { rm -f "$work/c1"; cp "$work/a.su" "$work/c1"; }
check "subtraction" "$(best subtract)" "$(best copy_input)" 30
rm -f "$work/sub.su"

cat >"$work/su2.tfs" <<SCRIPT
dialog "$work/a.su"
click Utility.Command19
SCRIPT
compress() { rm -f "$work/a.SU2"; "$run" "$work/su2.tfs"; }
compress_ns=$(best compress)
head -c "$(stat -c %s "$work/a.SU2")" "$work/a.su" >"$work/half.su"
copy_half() { rm -f "$work/c1"; cp "$work/half.su" "$work/c1"; }
echo "(cp of the $(stat -c %s "$work/half.su") compressed bytes: $(($(best copy_half) / 1000000)) ms)"
check "compression" "$compress_ns" "$(best copy_input)" 20
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
