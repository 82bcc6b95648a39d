#!/bin/bash
# KGS integer to SU, and SU to KGS, of 10,000 traces x 1000 samples each
# take at most twice what cp takes for the bytes they write (best of five
# runs each).
# usage: kgs_speed_check.sh TRACEFOLD_RUN MAKE_RECORDS
set -eu
run=$1 make=$2
work=$(mktemp -d /tmp/tracefold-kgs-speed-XXXXXX)
trap 'rm -rf "$work"' EXIT
"$make" kgs "$work/line.EVD" 10000 24 1000 >/dev/null
script() { # mode option, input, output
  printf 'click Utility.%s\nset Convert.Text1 "%s"\nset Convert.Text2 "%s"\nclick Convert.Command2\n' "$1" "$2" "$3"
}
script Option3 "$work/line.EVD" "$work/line.SU" >"$work/to_su.tfs"
script Option11 "$work/line.SU" "$work/line.DAT" >"$work/to_kgs.tfs"
best() { # the best time in ns of five runs of "$@"
  b=0
  for i in 1 2 3 4 5; do
    t0=$(date +%s%N); "$@" >/dev/null; d=$(($(date +%s%N) - t0))
    if [ $b -eq 0 ] || [ $d -lt $b ]; then b=$d; fi
  done
  echo $b
}
to_su() { rm -f "$work/line.SU"; "$run" "$work/to_su.tfs"; }
to_kgs() { rm -f "$work/line.DAT"; "$run" "$work/to_kgs.tfs"; }
copy() { rm -f "$work/copy"; cp "$1" "$work/copy"; }
failed=0
check() { # name, conversion, its output
  local convert_ns cp_ns
  convert_ns=$(best "$2")
  "$2" | grep -q '"Conversion OK"' || { echo "$1 did not finish"; failed=$((failed + 1)); return; }
  cp_ns=$(best copy "$3")
  echo "$1 $((convert_ns / 1000000)) ms, cp of $(wc -c <"$3") bytes $((cp_ns / 1000000)) ms"
  if [ "$convert_ns" -gt $((2 * cp_ns)) ]; then echo "$1 slower than 2x cp"; failed=$((failed + 1)); fi
}
check "KGS integer to SU" to_su "$work/line.SU"
check "SU to KGS" to_kgs "$work/line.DAT"
echo "$((2 - failed)) passed, $failed failed"
[ $failed -eq 0 ]
