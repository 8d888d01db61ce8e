"""Checks what the tour recorded and converted, apart from the program.

The saved folders are decoded by read_saved_folder.py and compared, sample by
sample, with what the simulated boards measure (simulated_signals.py); the text
files are compared with the decoded samples.

usage: check_recordings.py FOLDER, the tour's folder of recordings
"""

import struct
import sys
from pathlib import Path

TESTS = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "core/recordings"), str(TESTS / "core/drivers/simulated")]

import read_saved_folder  # noqa: E402
import simulated_signals as signals  # noqa: E402

TEN_VOLTS = (-10.0, 10.0)
BLOCK_BYTES = 400000


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def check(condition, what):
    if not condition:
        sys.exit(f"wrong: {what}")


def check_paths(recording, folder):
    project = recording["project"]
    saved = f"{folder.parent}\\{folder.name}"
    check(project["analogPath"] == f"{saved}\\AI.tld", "path of the analog data")
    check(project["digitalPath"] == f"{saved}\\DI.tld", "path of the digital data")


def check_polled(folder):
    recording = read_saved_folder.read_folder(folder)
    project = recording["project"]
    check_paths(recording, folder)
    check(project["polled"] and project["floats"], "flags of the polled recording")
    check(project["thermocouples"][:4] == [False, True, True, False], "thermocouple channels")
    scans = recording["analog"]
    check(len(scans) == project["scanCount"] > 50, "number of polled scans")
    for ordinal, (volts, *temperatures) in enumerate(scans):
        check(volts == single(signals.polled_value(3, 0, TEN_VOLTS, 12, ordinal)), f"volts of scan {ordinal}")
        for channel, temperature in enumerate(temperatures, 1):
            error = abs(temperature - signals.celsius(channel, 0, ordinal))
            check(error < 1e-4, f"temperature {channel} of scan {ordinal}")
    digital = recording["digital"]
    check((digital["firstPort"], digital["portCount"]) == (0, 2), "polled ports")
    check(len(digital["samples"]) == project["scanCount"], "number of digital samples")
    for ordinal, states in enumerate(digital["samples"]):
        check(states == [signals.port(port, ordinal) for port in (0, 1)], f"ports of sample {ordinal}")
    check(project["lineMasks"][:2] == [0x87, 0x11], "selected lines")
    return recording


def stream_tables(rate):
    """One period of each of 16 channels: the values that repeat."""
    tables = []
    for channel in range(16):
        period = {3: 16384, 4: 100000}.get(channel % 5, max(20, round(rate / (10.0 + 5.0 * (channel % 7)))))
        tables.append([signals.stream_value(0, channel, TEN_VOLTS, 16, rate, scan) for scan in range(period)])
    return tables


def check_fast(folder):
    recording = read_saved_folder.read_folder(folder)
    project = recording["project"]
    check_paths(recording, folder)
    check(not project["polled"] and project["floats"], "flags of the fast recording")
    check(project["scanInterval"] == 1.0 / (1000000.0 / 16), "interval of the fast recording")
    scans = recording["analog"]
    check(len(scans) == project["scanCount"] > 50000, "number of fast scans")
    tables = stream_tables(1000000.0 / 16)
    for index, scan in enumerate(scans):
        expected = [table[index % len(table)] for table in tables]
        check(scan == expected, f"fast scan {index}")
    return recording


def exported(scans, channels):
    """The scans that a conversion writes: blocks of 400,000 bytes, each without its last scan."""
    values = [value for scan in scans for value in scan]
    per_block = BLOCK_BYTES // 4
    for start in range(0, len(values), per_block):
        block = values[start:start + per_block]
        for scan in range(round(len(block) / channels - 2) + 1):
            yield block[scan * channels:(scan + 1) * channels]


def check_text(path, header, rows, interval):
    lines = path.read_bytes().decode("ascii").split("\r\n")
    check(lines[0] == "\t".join(["Time"] + header), f"header of {path.name}")
    time = 0.0
    count = 0
    for count, row in enumerate(rows, 1):
        time += interval
        check(lines[count] == "\t".join([f"{time:.15g}"] + row), f"line {count} of {path.name}")
    check(len(lines) == count + 1, f"number of lines of {path.name}")


def check_analog_text(folder, recording):
    project = recording["project"]
    scans = exported(recording["analog"], project["analogChannels"])
    check_text(folder / "AI.xlt", [plot["name"] for plot in project["analogPlots"]],
               ([f"{value:.7g}" for value in scan] for scan in scans), project["scanInterval"])


def check_digital_text(folder, recording):
    project, digital = recording["project"], recording["digital"]
    lines = [(port, bit) for port in (0, 1) for bit in range(8) if project["lineMasks"][port] >> bit & 1]
    rows = ([str(states[port] >> bit & 1) for port, bit in lines] for states in digital["samples"])
    check_text(folder / "DI.xlt", [f"{port}:{bit}" for port, bit in lines], rows, project["scanInterval"])


def main():
    folder = Path(sys.argv[1]).resolve()
    polled = check_polled(folder / "Polled")
    check_analog_text(folder / "PolledText", polled)
    check_digital_text(folder / "PolledText", polled)
    fast = check_fast(folder / "Fast")
    check_analog_text(folder / "FastText", fast)
    print(f"{polled['project']['scanCount']} polled and {fast['project']['scanCount']} fast scans are as measured")


if __name__ == "__main__":
    main()
