#!/usr/bin/env python3
"""segyio, an independent reader, reads what the ES-1225 panel writes.

usage: segyio_check.py TRACEFOLD_RUN MAKE_RECORDS

Two generated records of 12 channels x 1000 int16 samples, converted with the
panel's defaults. The file ends with the extra float of the last trace, which
segyio does not take: it reads a copy cut to the 24 records.
"""
import os, shutil, struct, subprocess, sys, tempfile

try:
    import numpy as np
    import segyio
except ImportError:
    sys.exit("segyio is not installed: install python3-segyio")

CHANNELS, SAMPLES = 12, 1000
RECORD = 240 + 4 * SAMPLES


def expected_channel(record_bytes, channel):
    """The channel's samples: int16 from two bytes ahead of its block."""
    block = 2 * SAMPLES + 48
    start = len(record_bytes) - block * CHANNELS + (channel - 1) * block - 2
    return np.frombuffer(record_bytes[start:start + 2 * SAMPLES], dtype="<i2").astype(np.float32)


def main():
    run, make = sys.argv[1], sys.argv[2]
    work = tempfile.mkdtemp(prefix="tracefold-segyio-")
    try:
        folder, out, script = (os.path.join(work, n) for n in ("in", "line.su", "convert.tfs"))
        names = subprocess.run([make, "es1225", folder, "2"], check=True, capture_output=True, text=True).stdout.split()
        with open(script, "w") as f:
            f.write('click Utility.Option4\ndialog "%s/ %s"\nclick es1225.Command3\n'
                    'set es1225.Text2 "%s"\nclick es1225.Command1\n' % (folder, " ".join(map(os.path.basename, names)), out))
        transcript = subprocess.run([run, script], check=True, capture_output=True, text=True).stdout
        assert '"text":"Conversion done"' in transcript, transcript
        data = open(out, "rb").read()
        assert len(data) == 24 * RECORD + 4 and struct.unpack_from("<f", data, 24 * RECORD)[0] == 0.0, len(data)
        whole = os.path.join(work, "whole.su")
        open(whole, "wb").write(data[:24 * RECORD])
        records = [open(n, "rb").read() for n in names]
        with segyio.su.open(whole, endian="little", ignore_geometry=True) as f:
            assert f.tracecount == 24 and len(f.samples) == SAMPLES, f.tracecount
            for t in range(24):
                h = f.header[t]
                assert h[segyio.su.fldr] == 0 and h[segyio.su.tracf] == t % CHANNELS + 1, t
                assert h[segyio.su.trid] == 1 and h[segyio.su.nvs] == 1 and h[segyio.su.nhs] == 1, t
                assert h[segyio.su.ns] == SAMPLES and h[segyio.su.dt] == 500, t
                assert np.array_equal(f.trace[t], expected_channel(records[t // CHANNELS], t % CHANNELS + 1)), t
        print("segyio read 24 traces of %d samples: 1 passed, 0 failed" % SAMPLES)
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
