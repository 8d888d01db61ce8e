#!/usr/bin/env python3
"""Kills a program that records at random instants, or lets its disk hang, and checks what is recovered then, apart
from the program: every sample is what the simulated board measures, scans are whole and begin with the first one.

    crash_campaign.py kills SUBJECT [--count N] [--seed N] [--jobs N]
    crash_campaign.py stalls SUBJECT LIBRARY [--most-gap MS]

SUBJECT is recording_subject, LIBRARY the disk that hangs.
"""

import argparse
import array
import concurrent.futures
import os
import random
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

TESTS = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "core/recordings"), str(TESTS / "core/drivers/simulated")]

import read_saved_folder  # noqa: E402
import simulated_signals as signals  # noqa: E402

TEN_VOLTS = (-10.0, 10.0)
FAST_RATE = 1000000.0 / 16
LONGEST = 3.0  # seconds from the program's start to the kill
MOST_LOSS = 1.0  # seconds


class Wrong(Exception):
    pass


def check(condition, what):
    if not condition:
        raise Wrong(what)


def table(polled, channel):
    """One period of a channel, which then repeats."""
    if polled:
        period = {3: 16384, 4: 100}.get(channel % 5, 40 + 10 * (channel % 7))
        values = [signals.polled_value(0, channel, TEN_VOLTS, 16, scan) for scan in range(period)]
    else:
        period = {3: 16384, 4: 100000}.get(channel % 5, max(20, round(FAST_RATE / (10.0 + 5.0 * (channel % 7)))))
        values = [signals.stream_value(0, channel, TEN_VOLTS, 16, FAST_RATE, scan) for scan in range(period)]
    return array.array("f", values)


TABLES = {}


def make_tables():
    TABLES[True] = [table(True, channel) for channel in range(3)]
    TABLES[False] = [table(False, channel) for channel in range(16)]


def check_recording(folder, polled):
    """Scans of the recovered recording and their interval."""
    project = read_saved_folder.read_folder(folder, with_samples=False)["project"]
    channels = len(TABLES[polled])
    check((project["polled"], project["floats"], project["hasDigital"]) == (polled, True, False), "flags")
    check(project["analogChannels"] == channels and len(project["analogPlots"]) == channels, "channels")
    check(project["thermocouples"][:64] == [False] * 64, "thermocouples")
    check(project["bytesLeft"] == 0, "bytes behind the project")
    samples = array.array("f", (folder / "AI.tld").read_bytes())
    scans = project["scanCount"]
    check(len(samples) == scans * channels, f"{len(samples)} samples of {scans} scans")
    for channel, period in enumerate(TABLES[polled]):
        expected = period * (scans // len(period) + 1)
        check(samples[channel::channels] == expected[:scans], f"samples of channel {channel}")
    return scans, project["scanInterval"]


class Subject:
    """The program while it records."""

    def __init__(self, program, folder, polled, interval=1, **environment):
        for name in ("home", "state"):
            (folder / name).mkdir()
        self.scans = self.milliseconds = 0
        self.stopped = None
        self.process = subprocess.Popen(
            [program, "record", folder, "polled" if polled else "paced", str(interval)], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env=dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_LOGGING_RULES="qt.qpa.*=false", **environment))
        self.listener = threading.Thread(target=self.listen)
        self.listener.start()

    def listen(self):
        for line in self.process.stdout:
            words = line.split()
            if not line.endswith("\n"):
                return
            if words[0] == "stopped":
                self.stopped = [int(word) for word in words[1:]]
            else:
                self.scans, self.milliseconds = int(words[0]), int(words[1])

    def wait(self):
        self.process.wait()
        self.listener.join()
        self.errors = self.process.stderr.read()
        for pipe in (self.process.stdin, self.process.stdout, self.process.stderr):
            pipe.close()


def recover(program, folder, polled):
    subprocess.run([program, "recover", folder], check=True)
    found = sorted((folder / "saved").iterdir())
    check(len(found) <= 1, f"{len(found)} recordings found")
    return check_recording(found[0], polled) if found else (0, 0.0)


def kill_once(program, seed):
    """Seconds that were lost, and scans that were recovered."""
    dice = random.Random(seed)
    polled = dice.random() < 0.5
    with tempfile.TemporaryDirectory(prefix="tracelet-kill-") as name:
        folder = Path(name)
        subject = Subject(program, folder, polled)
        time.sleep(dice.uniform(0.0, LONGEST))
        subject.process.kill()
        subject.wait()
        scans, interval = recover(program, folder, polled)
        taken = subject.milliseconds / 1000.0 / max(1, subject.scans)
        if scans and not polled:
            check(interval == 1.0 / FAST_RATE, f"interval {interval}")
        elif scans > 500:
            check(0.75 * taken < interval < 1.25 * taken, f"interval {interval}, not {taken}")
        elif scans:
            check(interval > 0.0, "interval")
        loss = max(0, subject.scans - scans) * (taken if polled else 1.0 / FAST_RATE)
        check(loss < MOST_LOSS, f"{loss} s are lost: {scans} of {subject.scans} scans")
        return loss, scans


def kills(arguments):
    make_tables()
    losses, scans, failures = [], 0, 0
    with concurrent.futures.ProcessPoolExecutor(arguments.jobs) as pool:
        runs = {pool.submit(kill_once, arguments.subject, seed): seed
                for seed in range(arguments.seed, arguments.seed + arguments.count)}
        for run in concurrent.futures.as_completed(runs):
            try:
                loss, recovered = run.result()
                losses.append(loss)
                scans += recovered
            except (Wrong, OSError, ValueError, subprocess.SubprocessError) as error:
                failures += 1
                print(f"seed {runs[run]}: {error}", flush=True)
    print(f"{arguments.count} kills, {scans} scans recovered, {failures} failures, "
          f"at most {max(losses, default=0.0):.3f} s lost")
    check(scans > 0, "nothing was recovered")
    return failures == 0


def stall(program, library, polled, interval, seconds, most_gap):
    with tempfile.TemporaryDirectory(prefix="tracelet-stall-") as name:
        folder = Path(name)
        subject = Subject(program, folder, polled, interval, LD_PRELOAD=str(library), STALL_AFTER="1500",
                          STALL_FOR="5000")
        time.sleep(seconds)
        during = subject.scans
        subject.process.stdin.close()
        subject.wait()
        check(subject.stopped is not None, "the program did not stop")
        taken, lost, overruns, gap = subject.stopped
        scans, _ = recover(program, folder, polled)
        print(f"{'polled' if polled else 'paced'}: {taken} scans taken, {scans} kept, {lost} lost, {overruns} overruns, "
              f"longest gap {gap} ms")
        check("stalled" in subject.errors, "the disk did not hang")
        check(not polled or taken > 0.7 * subject.milliseconds / interval, "ticks were left out")
        check(during > 0 and (lost, overruns) == (0, 0) and scans == taken, "samples are lost")
        check(gap < most_gap, f"the window did not answer for {gap} ms")


def stalls(arguments):
    make_tables()
    for polled, interval in ((False, 1), (True, 10)):
        stall(arguments.subject, arguments.library, polled, interval, 9.0, arguments.most_gap)
    return True


def main():
    parser = argparse.ArgumentParser()
    modes = parser.add_subparsers(dest="mode", required=True)
    mode = modes.add_parser("kills")
    mode.add_argument("subject")
    mode.add_argument("--count", type=int, default=50)
    mode.add_argument("--seed", type=int, default=1)
    mode.add_argument("--jobs", type=int, default=4)
    mode = modes.add_parser("stalls")
    mode.add_argument("subject")
    mode.add_argument("library")
    mode.add_argument("--most-gap", type=int, default=1000)
    arguments = parser.parse_args()
    try:
        sys.exit(0 if (kills if arguments.mode == "kills" else stalls)(arguments) else 1)
    except Wrong as error:
        sys.exit(f"wrong: {error}")


if __name__ == "__main__":
    main()
