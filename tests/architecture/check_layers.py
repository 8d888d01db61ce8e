#!/usr/bin/env python3
"""Checks that the rooms of the house keep their order: an include goes down, nothing in core/ knows Qt, no room
overflows. Prints what does not hold, a line each, and ends with 1.

Usage: check_layers.py [FOLDER]    (the repository's root unless told)"""

import re
import sys
from pathlib import Path

# From the ground up. Rooms of one line stand side by side: none of them includes another.
ROOMS = """
core/base
core/boards    core/files    core/layout    core/samples    core/plots
core/drivers/simulated    core/drivers/comedi    core/drivers/serial    core/disk    core/settings    core/chart
core/drivers    core/recordings
core/input    core/playback    core/export
window/ground
window/aids    window/labels
window/widgets    window/chart    window/controls    window/folders
window/main
window/settings    window/graph    window/files    window/history    window/export    window/help
"""

MOST_FILES = 16
MOST_LINES = 3000

LEVEL = {room: level for level, line in enumerate(ROOMS.strip().splitlines()) for room in line.split()}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
QT = re.compile(r"^(Q[A-Z]|Qt[A-Z]|q[a-z]+\.h$)")


def room_of(path):
    return path.rsplit("/", 1)[0]


def faults_of(path, text):
    """What is wrong with the includes of the file at `path`, relative to the root."""
    room = room_of(path)
    if room not in LEVEL:
        return [f"{path}: lies in no room"]
    faults = []
    for kind, name in INCLUDE.findall(text):
        if kind == "<":
            if room.startswith("core/") and QT.match(name):
                faults.append(f"{path}: core knows no Qt, includes <{name}>")
            continue
        below = room_of(name)
        if below == room:
            continue
        if below not in LEVEL:
            faults.append(f'{path}: "{name}" lies in no room')
        elif LEVEL[below] >= LEVEL[room]:
            faults.append(f'{path}: includes "{name}", which does not lie below')
    return faults


def check(root):
    faults = []
    files = {}
    for path in sorted(p for top in ("core", "window") for p in (root / top).rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        name = path.relative_to(root).as_posix()
        text = path.read_text(encoding="utf-8")
        faults += faults_of(name, text)
        count, lines = files.get(room_of(name), (0, 0))
        files[room_of(name)] = (count + 1, lines + text.count("\n"))
    for room, (count, lines) in files.items():
        if count > MOST_FILES or lines > MOST_LINES:
            faults.append(f"{room}: {count} files, {lines} lines: a room holds {MOST_FILES} and {MOST_LINES}")
    return faults


if __name__ == "__main__":
    found = check(Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]))
    print("\n".join(found) or "every include goes down")
    sys.exit(1 if found else 0)
