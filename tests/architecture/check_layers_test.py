"""Tests of check_layers.py: each rule is broken once."""

import tempfile
import unittest
from pathlib import Path

import check_layers


def faults_of(path, text):
    return check_layers.faults_of(path, text)


class Includes(unittest.TestCase):
    def test_go_down_or_stay_in_the_room(self):
        self.assertEqual(faults_of("core/files/Paths.cpp", '#include "core/files/Paths.h"\n'), [])
        self.assertEqual(faults_of("core/files/Paths.cpp", '#include "core/base/Table.h"\n'), [])
        self.assertEqual(faults_of("window/main/Session.cpp", '#include "core/input/PollPlan.h"\n'), [])

    def test_neither_up_nor_sideways(self):
        for path, name in [
            ("core/base/Table.h", "core/files/Paths.h"),
            ("core/files/Paths.cpp", "core/boards/Board.h"),
            ("core/export/TextFile.cpp", "core/playback/PlayScans.h"),
            ("core/input/PollPlan.h", "window/main/frmMain.h"),
            ("window/main/Session.cpp", "window/settings/frmSetting.h"),
            ("window/graph/Plots.cpp", "window/history/Recording.h"),
        ]:
            with self.subTest(path):
                self.assertEqual(len(faults_of(path, f'  # include "{name}"\n')), 1)

    def test_of_qt_only_in_the_window(self):
        for header in ["QString", "QtGlobal", "QtCore/QString", "qglobal.h"]:
            with self.subTest(header):
                self.assertEqual(len(faults_of("core/chart/Envelope.h", f"#include <{header}>\n")), 1)
                self.assertEqual(faults_of("window/chart/ZelGraph.h", f"#include <{header}>\n"), [])

    def test_name_the_room(self):
        self.assertEqual(len(faults_of("core/files/Paths.cpp", '#include "Paths.h"\n')), 1)
        self.assertEqual(len(faults_of("core/attic/Old.cpp", "")), 1)


class Rooms(unittest.TestCase):
    def test_hold_so_many_files_and_lines(self):
        with tempfile.TemporaryDirectory() as folder:
            room = Path(folder) / "core" / "base"
            room.mkdir(parents=True)
            for number in range(check_layers.MOST_FILES):
                (room / f"{number}.h").write_text("\n")
            self.assertEqual(check_layers.check(Path(folder)), [])
            (room / "more.h").write_text("\n")
            self.assertEqual(len(check_layers.check(Path(folder))), 1)
            (room / "more.h").unlink()
            (room / "0.h").write_text("\n" * check_layers.MOST_LINES)
            self.assertEqual(len(check_layers.check(Path(folder))), 1)


if __name__ == "__main__":
    unittest.main()
