#!/usr/bin/env python3
"""Checks the reader of saved folders on the example in docs/file-formats.md."""

import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

import read_saved_folder as reader  # noqa: E402

DOCUMENT = (HERE.parents[2] / "docs" / "file-formats.md").read_text(encoding="utf-8")


def example(name):
    """The bytes of the dump that follows the file's name in the example."""
    dump = re.search(rf"^`{re.escape(name)}`[^`]*```\n(.*?)```", DOCUMENT, re.MULTILINE | re.DOTALL).group(1)
    return bytes.fromhex("".join(line[6:53] for line in dump.splitlines()))


class ReadSavedFolder(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        for name in ("Project.tlp", "AI.tld", "DI.tld"):
            (self.folder / name).write_bytes(example(name))

    def read(self, *options):
        command = [sys.executable, str(HERE / "read_saved_folder.py"), str(self.folder), *options]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def test_reads_the_example(self):
        found = json.loads(self.read().stdout)
        self.assertEqual(found["project"], {
            "hasAnalog": True,
            "hasDigital": True,
            "polled": True,
            "floats": True,
            "analogChannels": 2,
            "digitalLines": 1,
            "analogPlots": [
                {"color": 0x0000FF, "lineStyle": 0, "name": "AI 0"},
                {"color": 0x00FF00, "lineStyle": 0, "name": "AI 1"},
            ],
            "thermocouples": [False, True, False, False],
            "digitalPlots": [{"color": 0xFFFFFF, "lineStyle": 0, "name": "DI 0:2"}],
            "lineMasks": [4, 0],
            "scanCount": 3,
            "scanInterval": 0.1,
            "analogPath": "/home/ann/run 1\\AI.tld",
            "digitalPath": "/home/ann/run 1\\DI.tld",
            "bytesLeft": 0,
        })
        self.assertEqual(found["analog"], [[1.5, 21.25], [-0.5, 21.5], [2.0, 21.5]])
        self.assertEqual(found["digital"], {"firstPort": 0, "portCount": 1, "samples": [[0], [4], [0x85]]})

    def test_reads_the_project_alone(self):
        self.assertEqual(list(json.loads(self.read("--no-samples").stdout)), ["project"])

    def test_leaves_an_incomplete_scan_out(self):
        (self.folder / "AI.tld").write_bytes(example("AI.tld")[:-1])
        self.assertEqual(reader.read_folder(self.folder)["analog"], [[1.5, 21.25], [-0.5, 21.5]])

    def test_reads_codes(self):
        codes = reader.read_analog(b"\xff\x0f\0\0\0\0\1\0", 1, False)
        self.assertEqual(codes, [[4095], [65536]])

    def test_says_where_a_project_ends_early(self):
        (self.folder / "Project.tlp").write_bytes(example("Project.tlp")[:40])
        result = self.read()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("the file ends at byte 40", result.stderr)


if __name__ == "__main__":
    unittest.main()
