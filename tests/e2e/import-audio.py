#!/usr/bin/python3
"""Imports an m4a file through the window's picker and an opus file over the bus with the built-in engine, and checks the
records, the scores and what the window shows; then kills the program during an import.

usage: import-audio.py PROGRAM DIALOGUE
"""
import hashlib
import os
import pathlib
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402
import window  # noqa: E402

CODECS = {"Budget talk.final.m4a": ["-c:a", "aac", "-b:a", "64k", "-ar", "44100", "-ac", "2"],
          "Call with Ana.opus": ["-c:a", "libopus", "-b:a", "32k"]}
WORKING = ("Preparing audio", "Transcribing and assigning speakers")
INTERRUPTED = "Interrupted · check saved audio and retry"


def record(title):
    found = [(name, record) for name, record in driver.meetings(driver.default_root()).items()
             if record["title"] == title]
    return found[0] if found else (None, {"status": None})


def status(title):
    return record(title)[1]["status"]


def ended(title):
    return status(title) not in (None, "Ready", *WORKING)


def check(title, dialogue):
    """What a finished import must have left: a scored transcript, and its own copy of the audio."""
    name, meeting = record(title)
    assert meeting["status"] == "Transcribed", f"{title}: {meeting['status']}"
    assert meeting["audioFilename"] == "imported.wav", meeting["audioFilename"]
    assert "speakerNames" not in meeting, f"{title}: a single track names nobody"
    folder = driver.default_root() / name
    assert abs(driver.wav_samples(folder / "imported.wav") / 16000 - 62.6) < 0.3, "the audio has another length"
    print(f"{title}: ", end="", flush=True)
    subprocess.run([sys.executable, str(SUPPORT / "dialogue" / "score.py"), "--max-wer", "15",
                    "--min-speaker-accuracy", "90", str(dialogue / "reference.json"), str(folder / "meeting.json")],
                   check=True)


def shows_turns_of(title):
    """Whether the page of that meeting is shown with its first turn."""
    first = record(title)[1]["turns"][0]
    return window.written("Title") == [title] and any(
        name.startswith(first["speaker"]) and first["originalText"] in name for name in window.names("list item"))


def pick(file):
    """Chooses a file in the picker by typing where it is."""
    window.keys("ctrl+o")
    driver.wait_for("the picker", lambda: window.find("dialog", "Import Audio"))
    before = len(window.find("text"))
    window.keys("ctrl+l")
    driver.wait_for("the field for a path", lambda: len(window.find("text")) > before)
    window.write(str(file))
    window.keys("Return")


def main():
    program, dialogue = sys.argv[1], pathlib.Path(sys.argv[2])
    files = [pathlib.Path(os.environ["HOME"]) / name for name in CODECS]
    for file in files:
        subprocess.run(["ffmpeg", "-loglevel", "error", "-i", str(dialogue / "mixed.wav"), *CODECS[file.name], str(file)],
                       check=True)
    originals = [hashlib.sha256(file.read_bytes()).digest() for file in files]

    log = driver.data_home() / "application.log"
    application = driver.Application(program, log=log, environment=window.ENVIRONMENT)
    driver.wait_for("the speech engine", driver.engine_ready, 60)
    window.take_focus(application.process.pid)
    for file, hand_over in zip(files, (pick, application.open)):
        hand_over(file)
        driver.wait_for(f"the transcript of '{file.stem}'", lambda: ended(file.stem), 200)
        check(file.stem, dialogue)
        driver.wait_for("its turns in the window", lambda: shows_turns_of(file.stem))
    window.picture(dialogue / "imported.png")
    assert [hashlib.sha256(file.read_bytes()).digest() for file in files] == originals, "an original was changed"

    known = set(driver.meetings(driver.default_root()))
    application.open(files[1])
    fresh = lambda: [meeting for name, meeting in driver.meetings(driver.default_root()).items() if name not in known]
    driver.wait_for("another import", lambda: [meeting for meeting in fresh() if meeting["status"] in WORKING])
    application.kill()
    application = driver.Application(program, log=log, environment=window.ENVIRONMENT)
    assert [meeting["status"] for meeting in fresh()] == [INTERRUPTED], fresh()
    assert application.quit() == 0


main()
