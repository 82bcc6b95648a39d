# Exchange formats: a public SEG-Y sample to SU through the Convert panel's
# batch line, SU to KGS floating and a generated KGS integer file to SU
# directly. Sourced by demo.sh from the checkout's top with $demo set.
exchange="$PWD/$demo/exchange"
mkdir -p "$exchange"
segy_sample="$(cd ../shared/data/segy 2>/dev/null && pwd)/small-lsb.sgy"
su_sample="$(cd ../shared/data/su 2>/dev/null && pwd)/small-lsb.su"

# SEG-Y to SU: the batch file beside the data names SEGYREAD and SEGYCLEAN;
# it runs where Seismic Unix is installed, else it is only shown.
if [ -f "$segy_sample" ]; then
  shell=record
  command -v segyread >/dev/null && command -v segyclean >/dev/null && shell=run
  cat >"$exchange/segy2su.tfs" <<SCRIPT
session data_folder "$exchange/"
session conversion_mode "SEGY2SU"
show Convert
set Convert.Text1 "$segy_sample"
set Convert.Text2 "$exchange/small-lsb.su"
click Convert.Option1
click Convert.Command2
SCRIPT
  build/tracefold-run --shell "$shell" --app-dir "$PWD/build" "$exchange/segy2su.tfs" >"$demo/exchange_segy2su.jsonl"
  echo "SEG-Y to SU, the batch line of the Convert panel ($shell): $exchange/convert.bat"
  cat "$exchange/convert.bat"
  if [ "$shell" = run ]; then sleep 2; build/su-info "$exchange/small-lsb.su"; fi
fi

# SU to KGS floating, word by word, from the public SU sample, answering
# the questions with their defaults.
if [ -f "$su_sample" ]; then
  cat >"$exchange/su2kgs.tfs" <<SCRIPT
click Utility.Option11
set Convert.Text1 "$su_sample"
set Convert.Text2 "$exchange/small-lsb.DAT"
click Convert.Command2
SCRIPT
  build/tracefold-run "$exchange/su2kgs.tfs" >"$demo/exchange_su2kgs.jsonl"
  echo "SU to KGS floating: $exchange/small-lsb.DAT ($(wc -c <"$exchange/small-lsb.DAT") bytes), $(grep -o '"text":"Conversion OK"' "$demo/exchange_su2kgs.jsonl" || echo 'not converted')"
fi

# KGS integer to SU: a generated line of 48 traces of 1000 samples.
build/make-records kgs "$exchange/line.EVD" 48 24 1000 >/dev/null
cat >"$exchange/kgsi2su.tfs" <<SCRIPT
click Utility.Option3
set Convert.Text1 "$exchange/line.EVD"
set Convert.Text2 "$exchange/line.SU"
input "2"
click Convert.Command2
SCRIPT
build/tracefold-run "$exchange/kgsi2su.tfs" >"$demo/exchange_kgsi2su.jsonl"
echo "KGS integer to SU, 48 traces: $exchange/line.SU"
build/su-info "$exchange/line.SU"
