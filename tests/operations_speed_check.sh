#!/bin/bash
# SU file operations run near disk speed (best of three runs each): merging
# three 100 MB SU files within 1.3 times cat of the same files; extracting
# all traces of a 100 MB file, and reversing all its channels, within 2
# times cp of it.
# usage: operations_speed_check.sh TRACEFOLD_RUN
set -eu
run=$1
work=$(mktemp -d /tmp/tracefold-opspeed-XXXXXX)
trap 'rm -rf "$work"' EXIT
# 983 records of 24 channels x 1000 samples: 100 MB.
python3 - "$work" <<'PY'
import struct, sys
header = bytearray(240)
for name, seed in (("a", 1), ("b", 2), ("c", 3)):
    with open(f"{sys.argv[1]}/{name}.su", "wb") as f:
        samples = struct.pack("<1000f", *[float(seed * 1000 + s) for s in range(1000)])
        for k in range(23592):
            struct.pack_into("<iiii", header, 0, k + 1, 0, k // 24 + 1, k % 24 + 1)
            struct.pack_into("<hh", header, 114, 1000, 500)
            f.write(header + samples)
PY
RUNS=3
source "$(dirname "$0")/../bench/speed_support.sh"
cat >"$work/merge.tfs" <<SCRIPT
click Utility.Commandp4
dialog "$work/ a.su b.su c.su"
click Add_SU_files.Command1
set Add_SU_files.Text2 "$work/merged.su"
click Add_SU_files.Command2
SCRIPT
# A first trace of 1 and a step of 1 mark every row.
cat >"$work/extract.tfs" <<SCRIPT
session current_file "$work/a.su"
click Utility.Command13
set Extract.Text3 "1"
set Extract.Text2 "$work/extracted.su"
click Extract.Command3
SCRIPT
cat >"$work/reverse.tfs" <<SCRIPT
session current_file "$work/a.su"
click Utility.Commandp12
click reversex.Command3
SCRIPT
merge() { rm -f "$work/merged.su"; "$run" "$work/merge.tfs"; }
joined() { cat "$work/a.su" "$work/b.su" "$work/c.su" >"$work/joined.su"; rm -f "$work/joined.su"; }
extract() { rm -f "$work/extracted.su"; "$run" "$work/extract.tfs"; }
reverse() { "$run" "$work/reverse.tfs"; }
copy() { cp "$work/a.su" "$work/copy.su"; rm -f "$work/copy.su"; }
passed=0 failed=0
check() { # name, ns, reference ns, factor in tenths
  if [ "$2" -gt $(($3 * $4 / 10)) ]; then echo "$1 slower than $(($4 / 10)).$(($4 % 10))x: $(($2 / 1000000)) ms against $(($3 / 1000000)) ms"; failed=$((failed + 1));
  else echo "$1 $(($2 / 1000000)) ms against $(($3 / 1000000)) ms"; passed=$((passed + 1)); fi
}
cat_ns=$(best joined)
merge_ns=$(best merge)
cmp -s "$work/merged.su" <(cat "$work/a.su" "$work/b.su" "$work/c.su") || { echo "merge differs from cat: 0 passed, 1 failed"; exit 1; }
cp_ns=$(best copy)
extract_ns=$(best extract)
cmp -s "$work/extracted.su" "$work/a.su" || { echo "extraction differs: 0 passed, 1 failed"; exit 1; }
reverse_ns=$(best reverse)
check merge "$merge_ns" "$cat_ns" 13
check extraction "$extract_ns" "$cp_ns" 20
check reversal "$reverse_ns" "$cp_ns" 20
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
