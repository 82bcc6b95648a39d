#!/usr/bin/env python3
"""segyio, an independent reader, agrees with the seismic file explorer.

usage: segyio_explorer_check.py TRACEFOLD_RUN SEGY_FOLDER

For each SEG-Y sample that segyio opens, the explorer reads rows 1 to 71 of
its word list in the SEG-Y mode. The expected values are built from the
header fields as segyio reads them: the 240 bytes of the first trace header
are laid out again from the fields, in the file's byte order, and read the
way the explorer reads them: 2-byte words with "Swap bytes" ticked for a
big-endian file, 4-byte words unswapped (rows 31 to 37 take the next word
in as well).
"""
import json, os, struct, subprocess, sys, tempfile

try:
    import segyio
except ImportError:
    sys.exit("segyio is not installed: install python3-segyio")

# 1-based byte positions of the 4-byte words below byte 181; all others are
# 2 bytes wide.
FOUR_BYTE = {1, 5, 9, 13, 17, 21, 25, 37, 41, 45, 49, 53, 57, 61, 65, 73, 77, 81, 85}
# Explorer rows 1 to 71: the 1-based position of each word.
ROW_POSITIONS = [1, 5, 9, 13, 17, 21, 25, 29, 31, 33, 35, 37, 41, 45, 49, 53, 57, 61, 65, 69, 71, 73, 77,
                 81, 85] + list(range(89, 180, 2))


def header_bytes(fields, big):
    raw = bytearray(240)
    order = ">" if big else "<"
    for position in ROW_POSITIONS:
        value = fields[position]
        if position in FOUR_BYTE:
            struct.pack_into(order + "i", raw, position - 1, value)
        else:
            struct.pack_into(order + "h", raw, position - 1, ((value + 32768) % 65536) - 32768)
    return raw


def expected_values(raw, big):
    values = []
    for row, position in enumerate(ROW_POSITIONS, start=1):
        offset = position - 1
        width = 4 if (position in FOUR_BYTE or 31 <= row <= 37) else 2
        if width == 4:
            values.append(struct.unpack_from("<i", raw, offset)[0])
        else:
            values.append(struct.unpack_from(">h" if big else "<h", raw, offset)[0])
    return values


def explorer_values(run, path, big):
    script = [f'session current_file "{path}"', "show pick", "click pick.Option2"]
    if big:
        script.append("check pick.Check1 on")
    for row in range(1, 72):
        script += [f"select pick.Combo1 {row - 1}", "click pick.Command2", "dump pick"]
    with tempfile.TemporaryDirectory() as folder:
        name = os.path.join(folder, "explore.tfs")
        with open(name, "w") as f:
            f.write("\n".join(script) + "\n")
        out = subprocess.run([run, "--max-boxes", "100000", name], capture_output=True, text=True, check=True).stdout
    values = []
    for line in out.splitlines():
        event = json.loads(line)
        if event["event"] == "dump":
            values.append(int(event["controls"]["Text3"]["text"]))
    return values


def segyio_fields(path, big):
    """The first trace header as segyio reads it, or None. In a child
    process: segyio stops the process on some files it cannot take."""
    code = ("import json, sys, segyio\n"
            "with segyio.open(sys.argv[1], ignore_geometry=True, endian=sys.argv[2]) as f:\n"
            "    print(json.dumps({int(k): v for k, v in f.header[0].items()}))\n")
    child = subprocess.run([sys.executable, "-c", code, path, "big" if big else "little"],
                           capture_output=True, text=True)
    if child.returncode != 0:
        return None
    return {int(k): v for k, v in json.loads(child.stdout).items()}


def main():
    run, folder = sys.argv[1], sys.argv[2]
    checked = 0
    for name in sorted(os.listdir(folder)):
        path = os.path.join(folder, name)
        big = "lsb" not in name
        fields = segyio_fields(path, big)
        if fields is None:  # a byte order that the name does not tell
            big = not big
            fields = segyio_fields(path, big)
        if fields is None:
            print(f"{name}: segyio does not open it")
            continue
        want = expected_values(header_bytes(fields, big), big)
        got = explorer_values(run, path, big)
        if got != want:
            rows = [i + 1 for i, (g, w) in enumerate(zip(got, want)) if g != w]
            sys.exit(f"{name}: rows {rows} differ: explorer {[got[r - 1] for r in rows]} segyio {[want[r - 1] for r in rows]}")
        print(f"{name}: 71 words agree")
        checked += 1
    if checked == 0:
        sys.exit("no SEG-Y sample was opened")


if __name__ == "__main__":
    main()
