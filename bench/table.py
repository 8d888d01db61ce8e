"""Prints the results of all measurements as one table.

    table.py FOLDER    the .json files that Google Benchmark left there
"""

import json
import pathlib
import sys


class Results:
    """Medians by program and benchmark; benchmarks that ran a single round stand for themselves."""

    def __init__(self, folder):
        self.rows = {}
        for path in sorted(pathlib.Path(folder).glob("*.json")):
            for row in json.loads(path.read_text())["benchmarks"]:
                if row["run_type"] == "aggregate" and row["aggregate_name"] != "median":
                    continue
                if row.get("error_occurred"):
                    sys.exit(f"{path.name}: {row['name']}: {row['error_message']}")
                parts = [part for part in row["run_name"].split("/") if ":" not in part and not part.endswith("_time")]
                self.rows[path.stem, "/".join(parts)] = row

    def cpu(self, program, name):
        """Processor time of a round, in the benchmark's unit."""
        return self.rows[program, name]["cpu_time"]

    def wall(self, program, name):
        return self.rows[program, name]["real_time"]

    def counter(self, program, name, counter):
        return self.rows[program, name][counter]


def rows(of):
    """(what, against, figure, must, aim, unit): a figure must be at least `must`, or at most where both have "<"."""
    chart = lambda name: of.cpu("chart_bench", name)
    qwt = lambda name: of.cpu("qwt_bench", name)
    for points in (100000, 1000000):
        must, aim = (50, 100) if points == 100000 else (200, 500)
        scroll = chart(f"GraphScroll/{points}")
        yield (f"scrolled frame, 16 × {points:,} points", "QCustomPlot",
               chart(f"PeerScroll/{points}") / scroll, must, aim, "×")
        yield (f"scrolled frame, 16 × {points:,} points", "Qwt", qwt(f"QwtScroll/{points}") / scroll, 150, None, "×")
    for points, must, aim in ((100000, 10, 20), (1000000, 14, 60)):
        yield (f"full redraw (zoom), 16 × {points:,} points", "QCustomPlot",
               chart(f"PeerRedraw/{points}") / chart(f"GraphRedraw/{points}"), must, aim, "×")
    yield ("full redraw (resize), 16 × 100,000 points", "QCustomPlot",
           chart("PeerResize/100000") / chart("GraphResize/100000"), 10, 20, "×")
    yield ("scrolled frame, 16 × 100,000 points", "area cleared, grid and labels",
           chart("GraphScroll/100000") / chart("BareFrame"), "<2", "<1", "×")
    quicker = min(chart("PeerScroll/1000"), qwt("QwtScroll/1000"))
    yield ("all new frame, 16 × 1,000 points", "QCustomPlot, Qwt: the quicker",
           quicker / chart("GraphScroll/1000"), 2, 4, "×")
    for name, program in (("Graph", "chart_bench"), ("Peer", "chart_bench"), ("Qwt", "qwt_bench")):
        title = {"Graph": "", "Peer": ": QCustomPlot", "Qwt": ": Qwt"}[name]
        yield ("trace pixels changed when a frame is shifted back" + title, "",
               of.counter(program, f"{name}Shift/100000", "changed_percent"), "<0" if name == "Graph" else None, None, "%")
    yield ("polled, 64 plots at 1 ms, recording and painting", "one core",
           of.counter("polled_bench", "PolledSession", "cpu_percent"), "<8", "<5", "%")
    yield ("memory a held sample, uniform x", "",
           of.counter("chart_bench", "GraphMemory/100000", "bytes_a_sample"), "<4.5", None, "bytes")
    for block in (4096, 65536):
        plain = of.cpu("recording_bench", f"PlainWrite/{block}")
        yield (f"notification of {block:,} samples to file", "plain write",
               plain / of.cpu("recording_bench", f"Notification/{block}"), 0.75, 0.9, "×")
        yield ("the same with the chart's share", "plain write",
               plain / of.cpu("recording_bench", f"NotificationAndChart/{block}"), None, None, "×")
    yield ("conversion to text", "fprintf loop",
           of.cpu("text_bench", "Write/fprintf") / of.cpu("text_bench", "Write/tracelet"), 6, 8, "×")
    for other, against, must, aim in (("empty", "empty window", "<1.5", "<1.2"), ("text", "window with a line of text", None, None)):
        yield ("start to first painted window", against,
               of.wall("start_display", "Painted/tracelet") / of.wall("start_display", f"Painted/{other}"), must, aim, "×")
    yield ("resident memory, idle after start", "empty window",
           of.counter("start_display", "Idle/tracelet", "resident_MiB")
           - of.counter("start_display", "Idle/empty", "resident_MiB"), "<25", None, "MiB more")
    yield ("timer, 1 ms ticks kept over 30 s, painting", "clock_nanosleep thread",
           of.counter("timer_bench", "Timer/1", "ticks_kept"), 0.97, None, "×")
    yield ("timer, 10 ms: drift over 30 s", "", abs(of.counter("timer_bench", "Timer/10", "drift_us")), None, None, "µs")
    yield ("frame of an hour's fast input: last minute", "first minute",
           of.counter("chart_bench", "GraphHour/100000", "last_to_first"), "<1.1", None, "×")
    yield ("tick and frames of an hour's polling: last minute", "second minute",
           of.counter("polled_bench", "PolledHour", "last_to_second_minute"), "<1.1", None, "×")
    yield ("memory gained in an hour's polling", "", of.counter("polled_bench", "PolledHour", "grown_MiB"), "<1", None, "MiB")
    yield ("allocations a tick", "", of.counter("polled_bench", "PolledTick/64", "allocations"), None, "<0.01", "")
    yield ("allocations a notification", "",
           of.counter("recording_bench", "NotificationAndChart/65536", "allocations"), None, "<0.01", "")
    for name in ("Open", "Seek"):
        yield (f"{name.lower()} a recording of 4 GiB", "one of 4 MiB",
               of.cpu("playback_bench", f"{name}/4096") / of.cpu("playback_bench", f"{name}/4"), "<1.5", None, "×")
    yield ("replay, 16 channels at 1 MS/s each", "100 ms of one core",
           of.counter("playback_bench", "Replay", "cpu_ms_a_100ms"), None, None, "ms")


def holds(figure, bound):
    return figure <= float(bound[1:]) if isinstance(bound, str) else figure >= bound


def verdict(figure, must, aim):
    if must is not None and not holds(figure, must):
        return "MISSED"
    if aim is not None:
        return "aim" if holds(figure, aim) else "must" if must is not None else "above aim"
    return "must" if must is not None else ""


def text(number):
    return f"{number:.0f}" if abs(number) >= 100 else f"{number:.1g}" if abs(number) < 0.01 else f"{number:.3g}"


def bound(value):
    return "" if value is None else f"≤ {value[1:]}" if isinstance(value, str) else f"≥ {value:g}"


def main():
    lines = [("what", "against", "figure", "must", "aim", "reached")]
    missed = False
    for what, against, figure, must, aim, unit in rows(Results(sys.argv[1])):
        reached = verdict(figure, must, aim)
        missed = missed or reached == "MISSED"
        lines.append((what, against, f"{text(figure)} {unit}".strip(), bound(must), bound(aim), reached))
    widths = [max(len(line[i]) for line in lines) for i in range(6)]
    lines.insert(1, tuple("-" * width for width in widths))
    for line in lines:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |")
    sys.exit(1 if missed else 0)


main()
