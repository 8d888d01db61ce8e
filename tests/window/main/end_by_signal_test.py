#!/usr/bin/env python3
"""Ends the program by signals, and as a desktop that logs out does. It must end as when its window is closed: exit
code 0, no work folder left, a recording that was not saved kept whole in the state folder.

Usage: end_by_signal_test.py TRACELET RECORDING_PROGRAM"""

import os
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TRACELET, RECORDING_PROGRAM = (Path(argument) for argument in sys.argv[1:3])
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
PATIENCE = 60  # seconds


def with_default_signals():
    for number in SIGNALS:
        signal.signal(number, signal.SIG_DFL)


class EndBySignal(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.state = Path(temporary.name)

    def start(self, program, *arguments):
        self.before = self.work_folders(program)
        environment = dict(os.environ, XDG_STATE_HOME=str(self.state), QT_QPA_PLATFORM="offscreen")
        process = subprocess.Popen([program, *arguments], env=environment, stdout=subprocess.PIPE, text=True,
                                   preexec_fn=with_default_signals)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.kill)
        return process

    @staticmethod
    def work_folders(program):
        return set(program.parent.glob("tl*.tmp"))

    def wait_for_work_folder(self, program):
        end = time.monotonic() + PATIENCE
        while self.work_folders(program) <= self.before:
            self.assertLess(time.monotonic(), end, "the program made no work folder")
            time.sleep(0.01)

    def expect_end(self, process, program):
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertLessEqual(self.work_folders(program), self.before)
        self.assertEqual(list(self.state.rglob("tl*.tmp")), [])
        self.assertEqual(list(self.state.rglob("Session-*.json")), [])

    def expect_kept_recording(self):
        unsaved = self.state / "tracelet" / "unsaved"
        self.assertEqual({file.name for file in unsaved.iterdir()}, {"Project.tld", "AI.tld", "Session.json"})
        scans, interval = struct.unpack("<id", (unsaved / "Project.tld").read_bytes()[-12:])
        self.assertGreaterEqual(scans, 20)
        self.assertGreater(interval, 0.0)
        self.assertEqual((unsaved / "AI.tld").stat().st_size, 4 * scans)

    def test_idle_program(self):
        for number in SIGNALS:
            with self.subTest(signal=number):
                process = self.start(TRACELET)
                self.wait_for_work_folder(TRACELET)
                process.send_signal(number)
                self.expect_end(process, TRACELET)
                self.assertFalse((self.state / "tracelet" / "unsaved").exists())

    def test_recording_program(self):
        for number in SIGNALS:
            for mode in ("", "box"):
                with self.subTest(signal=number, mode=mode):
                    process = self.start(RECORDING_PROGRAM, mode)
                    self.assertEqual(process.stdout.readline(), "recording\n")
                    process.send_signal(number)
                    self.expect_end(process, RECORDING_PROGRAM)
                    self.expect_kept_recording()

    def test_end_of_the_desktops_session(self):
        process = self.start(RECORDING_PROGRAM, "desktop")
        self.expect_end(process, RECORDING_PROGRAM)
        self.expect_kept_recording()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
