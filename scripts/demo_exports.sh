# Vibroseis and text exports: the demo's ES-1225 line gets vibrator words
# in its headers, then goes to a text of columns, to a CDP / time /
# amplitude list, to first-break files and to a Rayfract file.
mkdir -p "$demo/exports"
cp "$demo/es1225.su" "$demo/exports/line.su"
line="$PWD/$demo/exports/line.su"
# Both text exports name their file line.txt: each run's text is moved aside.
cat >"$demo/exports_columns.tfs" <<SCRIPT
session current_file "$line"
click Utility.Commandp10
set vibro.Text5 "8000"
click vibro.Command1
reply yes
dialog "$line"
input "1"
input "3"
click Utility.Option24
SCRIPT
build/tracefold-run "$demo/exports_columns.tfs" >"$demo/exports_columns.jsonl"
mv "$demo/exports/line.txt" "$demo/exports/line_columns.txt"
cat >"$demo/exports_xyz.tfs" <<SCRIPT
reply yes
dialog "$line"
input "1"
input "2"
click Utility.Option33
SCRIPT
build/tracefold-run "$demo/exports_xyz.tfs" >"$demo/exports_xyz.jsonl"
mv "$demo/exports/line.txt" "$demo/exports/line_xyz.txt"
cat >"$demo/exports_first_breaks.tfs" <<SCRIPT
dialog "$line"
input "2"
click Utility.Commandp2
dialog "$line"
input "1"
input "0"
reply yes
input "12"
click Utility.Commandp3
SCRIPT
build/tracefold-run "$demo/exports_first_breaks.tfs" >"$demo/exports_first_breaks.jsonl"
echo "Exports of $demo/exports/line.su (vibrator words, text, first breaks, Rayfract):"
ls "$demo/exports" | tr '\n' ' '; echo
head -1 "$demo/exports/line_columns.txt"
head -1 "$demo/exports/line_xyz.txt"
grep -o '"text":"Check your file[^"]*"' "$demo/exports_first_breaks.jsonl"
