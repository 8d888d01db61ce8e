#!/usr/bin/env python3
"""Starts the program where there is no display: it must say so in one line and end with exit code 1.

Usage: no_display_test.py TRACELET"""

import os
import subprocess
import sys
import unittest

TRACELET = sys.argv[1]
OF_DISPLAYS = ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE")


class NoDisplay(unittest.TestCase):
    def expect_one_line(self, **settings):
        environment = {name: value for name, value in os.environ.items() if name not in OF_DISPLAYS}
        end = subprocess.run([TRACELET], env=dict(environment, **settings), capture_output=True, text=True,
                             timeout=30)
        self.assertEqual(end.returncode, 1, end.stderr)
        self.assertEqual(end.stdout, "")
        self.assertEqual(end.stderr, "tracelet: there is no display to open a window on\n")

    def test_nothing_is_set(self):
        self.expect_one_line()

    def test_nobody_answers(self):
        self.expect_one_line(DISPLAY=":4711")

    def test_no_such_platform(self):
        self.expect_one_line(QT_QPA_PLATFORM="none")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
