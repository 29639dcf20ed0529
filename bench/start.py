#!/usr/bin/python3
"""Time from the start of the program to the first frame of its window, with 5,000 small meetings in the library against
the same with none, in turns. The page cache is warm. Run it in a private session.

usage: start.py PROGRAM [RUNS]
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import time
import uuid

LIMIT = 1.5
MEETINGS = 5000


def write_library(root):
    """Meetings of a few turns each, five a day; ids and words are the same in every run."""
    for number in range(MEETINGS):
        identity = str(uuid.uuid5(uuid.NAMESPACE_URL, str(number))).upper()
        turns = [{"id": str(uuid.uuid5(uuid.NAMESPACE_URL, f"{number}/{turn}")).upper(), "start": turn * 10.5,
                  "end": turn * 10.5 + 9.25, "speaker": f"Speaker {turn % 2}",
                  "originalText": "We agreed to look at the numbers again before the end of the week."}
                 for turn in range(6)]
        record = {"id": identity, "title": f"Planning {number}", "createdAt": 790000000.5 - number * 17280,
                  "turns": turns, "notes": "", "status": "Audio saved · live transcript"}
        folder = root / identity
        folder.mkdir(parents=True, mode=0o700)
        (folder / "meeting.json").write_text(json.dumps(record), encoding="utf-8")


def seconds_to_first_frame(program, root):
    environment = {**os.environ, "QT_QUICK_BACKEND": "software", "QT_LOGGING_RULES": "varnet.start.info=true"}
    begin = time.monotonic()
    process = subprocess.Popen([program, "--storage-root", str(root)], stderr=subprocess.PIPE, text=True,
                               env=environment)
    for line in process.stderr:
        if "first frame" in line:
            seconds = time.monotonic() - begin
            break
    else:
        sys.exit(f"the program ended with {process.wait()} before its first frame")
    process.terminate()
    process.stderr.read()
    process.wait(30)
    return seconds


def main():
    program = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    session = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    full, empty = session / "full" / "meetings", session / "empty" / "meetings"
    write_library(full)
    empty.mkdir(parents=True, mode=0o700)
    times = {full: [], empty: []}
    for _ in range(runs + 1):
        for root, seconds in times.items():
            seconds.append(seconds_to_first_frame(program, root))
    with_all, with_none = (statistics.median(times[root][1:]) for root in (full, empty))
    ratio = with_all / with_none
    print(f"start to the first frame: {with_all * 1000:.0f} ms with {MEETINGS} meetings, {with_none * 1000:.0f} ms with "
          f"none: {ratio:.2f}x (at most {LIMIT}x)")
    return 0 if ratio <= LIMIT else 1


sys.exit(main())
