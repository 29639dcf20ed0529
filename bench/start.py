#!/usr/bin/python3
"""Time from the start of the program to the first frame of its window: with 500 small meetings in the library against
an empty window with the same modules, and with 5,000 meetings against none; all in turns, with a warm page cache. The
ratios are of the process's time on all processors, which a busy machine changes little; the wall is printed beside it.
Run it in a private session.

usage: start.py PROGRAM EMPTY_WINDOW [RUNS]
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import time
import uuid

LIMITS = {"500 meetings against an empty window": (500, None, 1.4), "5,000 meetings against none": (5000, 0, 1.5)}


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


def seconds_to_first_frame(command):
    """Wall and processor time."""
    environment = {**os.environ, "QT_QUICK_BACKEND": "software", "QT_LOGGING_RULES": "varnet.start.info=true"}
    begin = time.monotonic()
    process = subprocess.Popen(command, stderr=subprocess.PIPE, text=True, env=environment)
    for line in process.stderr:
        if "first frame" in line:
            wall = time.monotonic() - begin
            break
    else:
        sys.exit(f"the program ended with {process.wait()} before its first frame")
    ran = time.clock_gettime((~process.pid << 3) | 2)  # the clock of that process: all threads
    process.terminate()
    process.stderr.read()
    process.wait(30)
    return wall, ran


def main():
    program, empty_window = sys.argv[1:3]
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 15
    session = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    commands = {None: [empty_window]}
    for count in (0, 500, 5000):
        root = session / str(count) / "meetings"
        write_library(root, count)
        commands[count] = [program, "--storage-root", str(root)]
    times = {count: [] for count in commands}
    for _ in range(runs + 1):
        for count, command in commands.items():
            times[count].append(seconds_to_first_frame(command))
    walls, used = ({count: statistics.median(each[kind] for each in rounds[1:]) for count, rounds in times.items()}
                   for kind in (0, 1))
    met = True
    for what, (count, base, limit) in LIMITS.items():
        ratio = used[count] / used[base]
        met &= ratio <= limit
        print(f"start to the first frame, {what}: {used[count] * 1000:.0f} ms of processor time to "
              f"{used[base] * 1000:.0f} ms: {ratio:.2f}x (at most {limit}x{'' if ratio <= limit else ', MISSED'}); on the "
              f"wall {walls[count] * 1000:.0f} ms to {walls[base] * 1000:.0f} ms: {walls[count] / walls[base]:.2f}x")
    return 0 if met else 1


if __name__ == "__main__":
    sys.exit(main())
