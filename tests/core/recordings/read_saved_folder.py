#!/usr/bin/env python3
"""Reads a saved folder by docs/file-formats.md and prints it as JSON.

    read_saved_folder.py FOLDER [--no-samples]

Shares no code with the program, so that what it finds is a check on what the program wrote. The data files are those
beside the project file. "analog" is a list of scans, each a list of values; "digital" a list of samples, each a list
of one byte a port; both are absent when the project says so.
"""

import argparse
import json
import struct
import sys
from pathlib import Path


class Fields:
    """Takes one field after the other from bytes."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def number(self, layout):
        size = struct.calcsize("<" + layout)
        if self.at + size > len(self.data):
            raise ValueError(f"the file ends at byte {len(self.data)}, inside a field at {self.at}")
        (value,) = struct.unpack_from("<" + layout, self.data, self.at)
        self.at += size
        return value

    def flag(self):
        return self.number("h") != 0

    def numbers(self, layout, count):
        return [self.number(layout) for _ in range(count)]

    def text(self):
        end = self.data.find(b"\0", self.at)
        if end < 0:
            end = len(self.data)
        text = self.data[self.at:end].decode("utf-8", "surrogateescape")
        self.at = min(end + 1, len(self.data))
        return text


def read_plot(fields):
    return {
        "color": fields.number("I"),
        "lineStyle": fields.number("i"),
        "name": fields.text(),
    }


def read_project(data):
    fields = Fields(data)
    project = {
        "hasAnalog": fields.flag(),
        "hasDigital": fields.flag(),
        "polled": fields.flag(),
        "floats": fields.flag(),
        "analogChannels": fields.number("i"),
        "digitalLines": fields.number("i"),
    }
    if project["hasAnalog"]:
        project["analogPlots"] = [read_plot(fields) for _ in range(project["analogChannels"])]
        project["thermocouples"] = [flag != 0 for flag in fields.numbers("B", fields.number("i"))]
    if project["hasDigital"]:
        project["digitalPlots"] = [read_plot(fields) for _ in range(project["digitalLines"])]
        project["lineMasks"] = fields.numbers("B", fields.number("i"))
    project["scanCount"] = fields.number("i")
    project["scanInterval"] = fields.number("d")
    project["analogPath"] = fields.text()
    project["digitalPath"] = fields.text()
    project["bytesLeft"] = len(data) - fields.at
    return project


def rows(values, width):
    """Whole rows of `width` values; an incomplete last one is left out."""
    count = len(values) // width
    return [list(values[row * width:(row + 1) * width]) for row in range(count)]


def read_analog(data, channels, floats):
    count = len(data) // 4
    values = struct.unpack(f"<{count}{'f' if floats else 'i'}", data[:4 * count])
    return rows(values, channels)


def read_digital(data):
    fields = Fields(data)
    first, ports = fields.number("i"), fields.number("i")
    return {"firstPort": first, "portCount": ports, "samples": rows(data[fields.at:], ports)}


def read_folder(folder, with_samples=True):
    folder = Path(folder)
    project = read_project((folder / "Project.tlp").read_bytes())
    recording = {"project": project}
    if with_samples and project["hasAnalog"] and (folder / "AI.tld").exists():
        data = (folder / "AI.tld").read_bytes()
        recording["analog"] = read_analog(data, project["analogChannels"], project["floats"])
    if with_samples and project["hasDigital"] and (folder / "DI.tld").exists():
        recording["digital"] = read_digital((folder / "DI.tld").read_bytes())
    return recording


def main():
    parser = argparse.ArgumentParser(description="Prints a saved folder as JSON.")
    parser.add_argument("folder")
    parser.add_argument("--no-samples", action="store_true", help="the project only")
    arguments = parser.parse_args()
    try:
        recording = read_folder(arguments.folder, not arguments.no_samples)
    except (OSError, ValueError) as error:
        sys.exit(f"{arguments.folder}: {error}")
    json.dump(recording, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
