#!/usr/bin/python3
"""Imports an m4a file through the window's picker with the built-in engine, and checks the record, the score and what
the window shows; then kills the program during another import.

usage: import-audio.py PROGRAM DIALOGUE
"""
import os
import pathlib
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402
import window  # noqa: E402

WORKING = ("Preparing audio", "Transcribing and assigning speakers")


def records():
    return sorted(driver.meetings(driver.default_root()).values(), key=lambda meeting: meeting["createdAt"])


def statuses():
    return [meeting["status"] for meeting in records()]


def pick(file):
    """Chooses a file in the picker by typing where it is."""
    window.keys("ctrl+o")
    driver.wait_for("the picker", lambda: window.find("dialog", "Import Audio"))
    before = len(window.find("text"))
    window.keys("ctrl+l")
    driver.wait_for("the field for a path", lambda: len(window.find("text")) > before)
    window.write(str(file))
    window.keys("Return")


def check(meeting, dialogue):
    """What a finished import must have left: a scored transcript, and its own copy of the audio."""
    assert (meeting["status"], meeting["audioFilename"]) == ("Transcribed", "imported.wav"), meeting
    assert "speakerNames" not in meeting, "a single track names nobody"
    folder = driver.default_root() / meeting["id"]
    assert abs(driver.wav_samples(folder / "imported.wav") / 16000 - 62.6) < 0.3, "the audio has another length"
    subprocess.run([sys.executable, str(SUPPORT / "dialogue" / "score.py"), "--max-wer", "15", "--min-speaker-accuracy",
                    "90", str(dialogue / "reference.json"), str(folder / "meeting.json")], check=True)


def main():
    program, dialogue = sys.argv[1], pathlib.Path(sys.argv[2])
    file = pathlib.Path(os.environ["HOME"]) / "Budget talk.final.m4a"
    subprocess.run(["ffmpeg", "-loglevel", "error", "-i", str(dialogue / "mixed.wav"), "-c:a", "aac", "-b:a", "64k", "-ar",
                    "44100", "-ac", "2", str(file)], check=True)
    original = file.read_bytes()
    log = driver.data_home() / "application.log"
    application = driver.Application(program, log=log, environment=window.ENVIRONMENT)
    driver.wait_for("the speech engine", driver.engine_ready, 60)
    window.take_focus(application.process.pid)
    pick(file)
    driver.wait_for("the transcript", lambda: statuses() and statuses()[0] not in ("Ready", *WORKING), 200)
    meeting, = records()
    check(meeting, dialogue)
    first = meeting["turns"][0]["originalText"]
    driver.wait_for("it in the window", lambda: window.written("Title") == ["Budget talk.final"]
                    and any(first in name for name in window.names("list item")))

    application.open(file)
    driver.wait_for("another import", lambda: statuses()[1:] and statuses()[1] in WORKING)
    application.kill()
    application = driver.Application(program, log=log, environment=window.ENVIRONMENT)
    assert statuses() == ["Transcribed", "Interrupted · check saved audio and retry"], statuses()
    assert file.read_bytes() == original, "the original was changed"
    assert application.quit() == 0


main()
