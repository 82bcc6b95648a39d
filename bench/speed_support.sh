# Timing for the speed checks: source it, then call best COMMAND... for the
# best time in ns of $RUNS runs (5 unless set), within_of_cp RATIO OUTPUT
# CONVERT_COMMAND... to compare a conversion with a cp of what it wrote, or
# run_within_of_cp RATIO OUTPUT DONE_TEXT RUNNER SCRIPT for a runner script.
best() {
  local b=0 d t0 i
  for ((i = 0; i < ${RUNS:-5}; i++)); do
    t0=$(date +%s%N); "$@" >/dev/null; d=$(($(date +%s%N) - t0))
    if [ $b -eq 0 ] || [ $d -lt $b ]; then b=$d; fi
  done
  echo $b
}
# Runs the conversion (which writes OUTPUT) and a cp of OUTPUT, best of five
# each; passes when the conversion takes at most RATIO times the cp.
within_of_cp() {
  local ratio=$1 output=$2
  shift 2
  local convert_ns cp_ns
  convert_ns=$(best "$@")
  copy_once() { rm -f "$output.copy"; cp "$output" "$output.copy"; }
  cp_ns=$(best copy_once)
  rm -f "$output.copy"
  echo "conversion $((convert_ns / 1000000)) ms, cp of $(wc -c <"$output") bytes $((cp_ns / 1000000)) ms"
  if [ "$convert_ns" -gt $((ratio * cp_ns)) ]; then echo "conversion slower than ${ratio}x cp: 0 passed, 1 failed"; return 1; fi
  echo "1 passed, 0 failed"
}

# The runner script, OUTPUT removed before each run (as cp writes a new file
# too), must show DONE_TEXT in its transcript; then within_of_cp.
run_within_of_cp() {
  local ratio=$1 output=$2 done_text=$3 runner=$4 script=$5
  convert_anew() { rm -f "$output"; "$runner" "$script"; }
  convert_anew | grep -qF "\"$done_text\"" || { echo "the conversion did not finish: 0 passed, 1 failed"; return 1; }
  within_of_cp "$ratio" "$output" convert_anew
}
