#!/usr/bin/python3
"""Pictures of the window by --export-ui: their sizes, what a run says and how it ends, and that it leaves alone what it
shows. `export-window.py BINARY`."""
import json
import os
import pathlib
import struct
import subprocess
import sys
import tempfile

BINARY = sys.argv[1]
FOLDER = pathlib.Path(tempfile.mkdtemp(dir=os.environ["VARNET_TEST_SESSION"]))
MEETING = "00000000-0000-4000-8000-000000000001"


def start(*arguments):
    return subprocess.Popen([BINARY, "--storage-root", str(FOLDER / "meetings"), *map(str, arguments)],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def size(picture):
    kind, width, height = struct.unpack("!8s8xII", picture.read_bytes()[:24])
    assert kind == b"\x89PNG\r\n\x1a\n", picture
    return width, height


def contents():
    places = [FOLDER / "meetings", pathlib.Path(os.environ["XDG_CONFIG_HOME"])]
    return {str(path): path.is_file() and path.read_bytes() for place in places for path in [place, *place.rglob("*")]}


# A status that only a crash leaves: every other run mends it.
record = FOLDER / "meetings" / MEETING / "meeting.json"
record.parent.mkdir(parents=True)
record.write_text(json.dumps({"id": MEETING, "title": "Planning", "createdAt": 0, "turns": [], "notes": "",
                              "status": "Recording · live transcript"}), encoding="utf-8")
before = contents()

stays = start("--export-ui")
pictures = {name: FOLDER / f"{name}.png" for name in ["plain", "double", "history", "unwritable"]}
pictures["unwritable"] = FOLDER / "nowhere" / "unwritable.png"
runs = {"plain": start("--export-ui", pictures["plain"], "--select-meeting", "nonsense", "--export-scale", "0.5",
                        "--show-meeting"),
        "double": start("--export-scale", "2", "--export-ui", pictures["double"], "--show-onboarding"),
        "history": start("--export-ui", pictures["history"], "--show-history", "--select-meeting", MEETING),
        "unwritable": start("--export-ui", pictures["unwritable"])}
ends = {name: (*run.communicate(timeout=60), run.returncode) for name, run in runs.items()}

for name in ["plain", "double", "history"]:
    assert ends[name] == (f"Exported app content: {pictures[name]}\n", "", 0), (name, ends[name])  # the screens complain there
assert size(pictures["plain"]) == (1280, 820), size(pictures["plain"])
assert size(pictures["double"]) == (2560, 1640), size(pictures["double"])
assert size(pictures["history"]) == (1000, 680), size(pictures["history"])  # the dialog alone

said, complained, status = ends["unwritable"]
expected = "Window export failed: “unwritable.png” could not be written: No such file or directory.\n"
assert (said, status) == ("", 1) and expected in complained, ends["unwritable"]

assert stays.poll() is None, f"a run without a picture to write ended with {stays.returncode}"
stays.terminate()
assert stays.wait(20) == 0
assert contents() == before, "an export changed the library or the settings"
