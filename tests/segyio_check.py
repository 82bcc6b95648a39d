#!/usr/bin/env python3
"""An independent reader, segyio, reads what the ES-1225 panel writes.

usage: segyio_check.py TRACEFOLD_RUN MAKE_RECORDS

Two generated records of 12 channels x 1000 int16 samples are converted with
the panel's defaults. The file ends 4 bytes past its last record (the extra
float of the last trace); segyio wants whole records, so it reads a copy cut
to the 24 records, and the tail is checked here on its own.
"""
import os
import shutil
import struct
import subprocess
import sys
import tempfile

try:
    import numpy as np
    import segyio
except ImportError:
    print("segyio is not installed: install python3-segyio")
    sys.exit(1)

CHANNELS, SAMPLES, HEADER = 12, 1000, 512


def expected_channel(record_bytes, channel):
    block = 2 * SAMPLES + 48
    start = len(record_bytes) - block * CHANNELS + (channel - 1) * block - 2
    return np.frombuffer(record_bytes[start:start + 2 * SAMPLES], dtype="<i2").astype(np.float32)


def main():
    run, make = sys.argv[1], sys.argv[2]
    work = tempfile.mkdtemp(prefix="tracefold-segyio-")
    try:
        folder = os.path.join(work, "in")
        names = subprocess.run([make, "es1225", folder, "2"], check=True, capture_output=True,
                               text=True).stdout.split()
        out = os.path.join(work, "line.su")
        script = os.path.join(work, "convert.tfs")
        with open(script, "w") as f:
            f.write("click Utility.Option4\n")
            f.write('dialog "%s/ %s"\n' % (folder, " ".join(os.path.basename(n) for n in names)))
            f.write("click es1225.Command3\n")
            f.write('set es1225.Text2 "%s"\n' % out)
            f.write("click es1225.Command1\n")
        transcript = subprocess.run([run, script], check=True, capture_output=True, text=True).stdout
        assert '"text":"Conversion done"' in transcript, transcript

        data = open(out, "rb").read()
        record = 240 + 4 * SAMPLES
        assert len(data) == 24 * record + 4, len(data)
        assert struct.unpack_from("<f", data, 24 * record)[0] == 0.0
        whole = os.path.join(work, "whole.su")
        with open(whole, "wb") as f:
            f.write(data[:24 * record])

        records = [open(n, "rb").read() for n in names]
        with segyio.su.open(whole, endian="little", ignore_geometry=True) as f:
            assert f.tracecount == 24, f.tracecount
            assert len(f.samples) == SAMPLES
            for t in range(24):
                h = f.header[t]
                assert h[segyio.su.fldr] == 0
                assert h[segyio.su.tracf] == t % CHANNELS + 1
                assert h[segyio.su.trid] == 1 and h[segyio.su.nvs] == 1 and h[segyio.su.nhs] == 1
                assert h[segyio.su.ns] == SAMPLES and h[segyio.su.dt] == 500
                want = expected_channel(records[t // CHANNELS], t % CHANNELS + 1)
                assert np.array_equal(f.trace[t], want), t
        print("segyio read 24 traces of %d samples: 1 passed, 0 failed" % SAMPLES)
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
