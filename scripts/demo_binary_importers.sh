# Generic binary and Dolang records into SU. Sourced by demo.sh from the
# checkout's top with $demo set.

# A line of 2 records, each a 512-byte file header and 3 traces, each behind
# a 64-byte trace header, of 1000 int32 samples: described in the panel,
# the header size checked against the file's length, then converted.
build/make-records binary "$demo/binary" 2 3 1000 512 64 i32 >/dev/null
cat >"$demo/sisforme.tfs" <<SCRIPT
click Utility.Option7
dialog "$PWD/$demo/binary/ rec001.bin rec002.bin"
click sisforme.Command5
set sisforme.Text3 "3"
set sisforme.Text4 "1000"
set sisforme.Text8 "64"
dialog "$PWD/$demo/binary/rec001.bin"
click sisforme.Command3
click sisforme.Command6
dialog "$PWD/$demo/binary/ rec001.bin rec002.bin"
click sisforme.Command5
set sisforme.Text2 "$PWD/$demo/binary.su"
click sisforme.Command1
SCRIPT
build/tracefold-run "$demo/sisforme.tfs" >"$demo/sisforme.jsonl"
echo "Generic binary, 2 records of 3 int32 traces behind 512- and 64-byte headers: $demo/binary.su"
build/su-info "$demo/binary.su"

# A Dolang shot: 24 channel files of 1000 samples as text and the ADT file
# that gives the geometry; the reading starts at the second channel file.
build/make-records dolang "$demo/dolang" 1 24 1000 500 >/dev/null
cat >"$demo/dolang.tfs" <<SCRIPT
click Utility.Option6
dialog "$PWD/$demo/dolang/ $(cd "$demo/dolang" && echo *)"
dialog "$PWD/$demo/dolang/shot001.ADT"
click DOLANG.Command6
set DOLANG.Text5 "$PWD/$demo/dolang.su"
click DOLANG.Command1
SCRIPT
build/tracefold-run "$demo/dolang.tfs" >"$demo/dolang.jsonl"
echo "Dolang, 24 channel files and the ADT file: $demo/dolang.su"
build/su-info "$demo/dolang.su"
