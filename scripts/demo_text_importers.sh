# Demo fragment of the text and OYO importers, run by demo.sh from the top
# of the checkout with $demo set: an OYO McSEIS 170 line, a comma-separated
# ASCII matrix, and a line of one-trace text files, each made by
# make-records and converted through the main panel's options.

build/make-records oyo "$demo/oyo" 3 24 1024 >/dev/null
cat >"$demo/oyo.tfs" <<SCRIPT
click Utility.Option10
dialog "$PWD/$demo/oyo/ $(cd "$demo/oyo" && echo *)"
click oyo.Command3
set oyo.Text2 "$PWD/$demo/oyo.su"
click oyo.Command1
SCRIPT
build/tracefold-run "$demo/oyo.tfs" >"$demo/oyo.jsonl"
echo "OYO McSEIS 170, 3 records of 24 channels: $demo/oyo.su"
build/su-info "$demo/oyo.su"

matrix=$(build/make-records ascii "$demo/ascii" 1 48 512)
cat >"$demo/ascii.tfs" <<SCRIPT
input "12"
click Utility.Option23
dialog "$PWD/$matrix"
input "250"
click ASCII2SU.Command1
set ASCII2SU.Text2 "$PWD/$demo/ascii.su"
click ASCII2SU.Command3
SCRIPT
build/tracefold-run "$demo/ascii.tfs" >"$demo/ascii.jsonl"
echo "ASCII matrix of 48 traces x 512 samples: $demo/ascii.su"
build/su-info "$demo/ascii.su"

build/make-records ascii-traces "$demo/xascii" 12 400 >/dev/null
cat >"$demo/xascii.tfs" <<SCRIPT
input "1"
click Utility.Option23
dialog "$PWD/$demo/xascii/ $(cd "$demo/xascii" && echo *)"
input "400"
input "12"
input "500"
click XASCII2SU.Command1
set XASCII2SU.Text2 "$PWD/$demo/xascii.su"
click XASCII2SU.Command3
SCRIPT
build/tracefold-run "$demo/xascii.tfs" >"$demo/xascii.jsonl"
echo "ASCII, 12 files of one trace: $demo/xascii.su"
build/su-info "$demo/xascii.su"
