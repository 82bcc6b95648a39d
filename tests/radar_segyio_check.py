#!/usr/bin/env python3
"""segyio, an independent reader, reads what the radar panels write.

usage: radar_segyio_check.py TRACEFOLD_RUN SHARED_DATA

The public GSSI, EKKO and RAMAC samples are converted with the fields their
headers propose; segyio's SU reader must find every trace, the sample count
and interval, and the samples that the record layouts give.
"""
import os, subprocess, sys, tempfile

try:
    import numpy as np
    import segyio
    import segyio.su
except ImportError:
    sys.exit("segyio is not installed: install python3-segyio")


def convert(run, work, name, lines):
    script = os.path.join(work, name + ".tfs")
    with open(script, "w") as f:
        f.write("\n".join(lines) + "\n")
    subprocess.run([run, script], check=True, stdout=subprocess.DEVNULL)
    return segyio.su.open(os.path.join(work, name + ".su"), endian="little", ignore_geometry=True)


def main():
    run, data = sys.argv[1], sys.argv[2]
    if not os.path.isdir(os.path.join(data, "dt1")):
        print("no public radar samples: skipped")
        return 0
    results = []

    def check(what, ok):
        print(("ok   " if ok else "FAIL ") + what)
        results.append(bool(ok))

    with tempfile.TemporaryDirectory() as work:
        # GSSI: 520 scans; "16" reads 4-byte samples, divided by the word at offset 2.
        dzt = os.path.join(data, "dzt", "FILE____032.DZT")
        with convert(run, work, "gssi", ["show DZT", f'dialog "{dzt}"', "click DZT.Command1",
                                         f'set DZT.Text2 "{work}/gssi.su"', "click DZT.Command3"]) as f:
            raw = np.fromfile(dzt, dtype="<i4", offset=1024).reshape(520, 512)
            check("GSSI traces, ns, dt", (f.tracecount, len(f.samples), f.header[0][segyio.su.dt]) == (520, 512, 10))
            check("GSSI samples", np.array_equal(f.trace.raw[:], (raw / 1024.0).astype(np.float32)))

        # EKKO: time zero 3 starts each trace at input sample 3.
        dt1 = os.path.join(data, "dt1", "gprpy_ComOffs", "XLINE00.DT1")
        with convert(run, work, "ekko", ["show DT1", f'dialog "{dt1}"', "click DT1.Command1",
                                         f'set DT1.Text2 "{work}/ekko.su"', "click DT1.Command3"]) as f:
            raw = np.fromfile(dt1, dtype=np.uint8).reshape(531, 128 + 3000)[:, 128:].copy().view("<i2")
            check("EKKO traces, ns, dt", (f.tracecount, len(f.samples), f.header[0][segyio.su.dt]) == (531, 1497, 800))
            check("EKKO samples", np.array_equal(f.trace.raw[:], raw[:, 2:1499].astype(np.float32)))
            check("EKKO sx", [f.header[i][segyio.su.sx] for i in (0, 1, 530)] == [0, 2, 1060])

        # RAMAC: time zero 0, the first sample 0 and the trace one sample late.
        rd3 = os.path.join(data, "rd3", "ten_col.rd3")
        with convert(run, work, "ramac", ["show Radar_F", f'dialog "{rd3}"', "click Radar_F.Command3",
                                          f'set Radar_F.Text5 "{work}/ramac.su"', "click Radar_F.Command1"]) as f:
            raw = np.fromfile(rd3, dtype="<i2").reshape(10, 512).astype(np.float32)
            late = np.concatenate([np.zeros((10, 1), np.float32), raw[:, :511]], axis=1)
            check("RAMAC traces, ns, dt", (f.tracecount, len(f.samples), f.header[0][segyio.su.dt]) == (10, 512, 100))
            check("RAMAC samples", np.array_equal(f.trace.raw[:], late))
    failures = results.count(False)
    print(f"{len(results) - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
