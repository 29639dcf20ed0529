#!/usr/bin/python3
"""Time from the start of the program to the first frame of its window, which has the meetings on it, and to the one
that has all that stands around them: with 500 small meetings against an empty window with the same modules, and with
5,000 meetings against none; all in turns, with a warm page cache. The limits are on the time on the wall; that of the
process on all processors is printed beside it. Run it in a private session.

usage: start.py PROGRAM EMPTY_WINDOW [RUNS]
"""
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time
import uuid

# The moment, the meetings, what they are compared with (None: the empty window), the most that it may take, and what is
# aimed at.
ROWS = [("first frame", 500, None, 1.4, 1.3), ("whole window", 500, None, 2, 1.6), ("first frame", 5000, 0, 1.7, 1.3),
        ("whole window", 5000, 0, 1.7, 1.3)]

MOMENT = re.compile(r"(first frame|whole window) after ([0-9.]+) ms of processor time")


def identity(number):
    return str(uuid.uuid5(uuid.NAMESPACE_URL, str(number))).upper()


def write_library(root, count):
    """Meetings of a few turns each, five a day; ids and words are the same in every run."""
    root.mkdir(parents=True, mode=0o700)
    for number in range(count):
        turns = [{"id": str(uuid.uuid5(uuid.NAMESPACE_URL, f"{number}/{turn}")).upper(), "start": turn * 10.5,
                  "end": turn * 10.5 + 9.25, "speaker": f"Speaker {turn % 2}",
                  "originalText": "We agreed to look at the numbers again before the end of the week."}
                 for turn in range(6)]
        record = {"id": identity(number), "title": f"Planning {number}", "createdAt": 790000000.5 - number * 17280,
                  "turns": turns, "notes": "", "status": "Audio saved · live transcript"}
        folder = root / identity(number)
        folder.mkdir(mode=0o700)
        (folder / "meeting.json").write_text(json.dumps(record), encoding="utf-8")


def run(command, last):
    """Wall and processor time, in seconds, at each moment."""
    environment = {**os.environ, "QT_QUICK_BACKEND": "software", "QT_LOGGING_RULES": "varnet.start.info=true"}
    begin = time.monotonic()
    process = subprocess.Popen(command, stderr=subprocess.PIPE, text=True, env=environment)
    times = {}
    for line in process.stderr:
        told = MOMENT.search(line)
        if told:
            times[told[1]] = {"wall": time.monotonic() - begin, "processor": float(told[2]) / 1000}
        if last in times:
            break
    else:
        sys.exit(f"the program ended with {process.wait()} before its {last}")
    process.terminate()
    process.stderr.read()
    process.wait(30)
    return times


def main():
    program, empty_window = sys.argv[1:3]
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 15
    session = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    commands = {None: [empty_window]}
    for count in (0, 500, 5000):
        root = session / str(count) / "meetings"
        write_library(root, count)
        commands[count] = [program, "--storage-root", str(root)]
    runs = {count: [] for count in commands}
    for _ in range(rounds + 1):
        for count, command in commands.items():
            runs[count].append(run(command, "first frame" if count is None else "whole window"))

    def median(count, moment, clock):
        return statistics.median(times[moment][clock] for times in runs[count][1:])

    met = True
    for moment, count, base, limit, aim in ROWS:
        what = f"{count:,} meetings against {'an empty window' if base is None else base or 'none'}"
        for clock in ("wall", "processor"):
            mine, other = median(count, moment, clock), median(base, moment if base is not None else "first frame", clock)
            print(f"{moment}, {what}, {clock} time: {mine * 1000:.0f} ms to {other * 1000:.0f} ms, {mine / other:.2f}x", end="")
            if clock == "wall":
                met &= mine / other <= limit
                print(f" (at most {limit}x, aim {aim}x){'' if mine / other <= limit else ' MISSED'}", end="")
            print()
    return 0 if met else 1


if __name__ == "__main__":
    sys.exit(main())
