# Bison 5000, Ambrogeo and PASI LCM-12 records into SU. Sourced by demo.sh
# from the checkout's top with $demo set.

# A Bison 5000 record of 12 channels of 1000 samples: the header's size, the
# channels, samples and rate are read from its text header; the gain words
# double the groups of four samples behind them.
build/make-records bison "$demo/bison" 1 12 1000 >/dev/null
cat >"$demo/bison.tfs" <<SCRIPT
click Utility.Option14
dialog "$PWD/$demo/bison/rec001.dat"
click Bison.Command5
set Bison.Text2 "$PWD/$demo/bison.su"
click Bison.Command1
SCRIPT
build/tracefold-run "$demo/bison.tfs" >"$demo/bison.jsonl"
echo "Bison 5000, 12 channels with gain words: $demo/bison.su"
build/su-info "$demo/bison.su"

# An Ambrogeo record of 24 channels of 500 samples at 250 us, as text rows of
# 24 columns; its date and time go into the time words.
build/make-records ambrogeo "$demo/ambrogeo" 1 24 500 250 >/dev/null
cat >"$demo/ambrogeo.tfs" <<SCRIPT
click Utility.Option19
dialog "$PWD/$demo/ambrogeo/rec001.dta"
click Ambrogeo.Command5
set Ambrogeo.Text2 "$PWD/$demo/ambrogeo.su"
click Ambrogeo.Command1
SCRIPT
build/tracefold-run "$demo/ambrogeo.tfs" >"$demo/ambrogeo.jsonl"
echo "Ambrogeo, 24 channels of text rows: $demo/ambrogeo.su"
build/su-info "$demo/ambrogeo.su"

# A PASI LCM-12 record: bare numbers, 12 channels of 512 samples; the
# geometry is the panel's, and the rate is typed after the selection.
build/make-records pasi "$demo/pasi" 1 12 512 >/dev/null
cat >"$demo/pasi.tfs" <<SCRIPT
click Utility.Option16
dialog "$PWD/$demo/pasi/ rec001.asc"
click pasi.Command5
set pasi.Text5 "500"
set pasi.Text2 "$PWD/$demo/pasi.su"
click pasi.Command1
SCRIPT
build/tracefold-run "$demo/pasi.tfs" >"$demo/pasi.jsonl"
echo "PASI LCM-12, 12 channels of bare numbers: $demo/pasi.su"
build/su-info "$demo/pasi.su"
