#!/usr/bin/python3
"""Records the dialogue on both tracks into a scheduled meeting, and has it transcribed again from its page in the window
with the built-in engine: who speaks is named both times, and the earlier transcript stays as a version.

usage: transcribe-again.py PROGRAM DIALOGUE
"""
import collections
import json
import pathlib
import sys
import uuid

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path[:0] = [str(SUPPORT), str(SUPPORT / "dialogue")]
import driver  # noqa: E402
import score  # noqa: E402
import window  # noqa: E402

NAMES = {"slt": "You", "rms": "Guest"}  # by the voice: the one at the microphone, and the one other attendee


def schedule():
    """A meeting of a calendar without a recording, and the file of its record."""
    name = str(uuid.uuid4()).upper()
    source = {"provider": "eventkit", "accountID": "Home", "containerID": "1", "recordID": "1", "importedAt": 0,
              "cancelled": False}
    meeting = {"id": name, "title": "Weekly call", "createdAt": 800000000, "turns": [], "notes": "",
               "status": "Scheduled · ready to record", "source": source, "attendees": ["Guest"]}
    file = driver.default_root() / name / "meeting.json"
    file.parent.mkdir(parents=True)
    file.write_text(json.dumps(meeting), encoding="utf-8")
    return file


def check_names(file, dialogue):
    """Each name must be that of the voice to which most of the words of its label belong."""
    said, heard = score.labelled_words(dialogue / "reference.json"), score.labelled_words(file)
    counts = collections.defaultdict(collections.Counter)
    for i, j in score.align(said, heard)[1]:
        counts[heard[j][1]][said[i][1]] += 1
    names = driver.read(file)["speakerNames"]
    print(names, dict(counts), flush=True)
    for label, name in names.items():
        assert NAMES[counts[label].most_common(1)[0][0]] == name, f"{label} is called {name}"
    assert "You" in names.values() and (len(counts) != 2 or sorted(names.values()) == ["Guest", "You"]), names


def main():
    program, dialogue = sys.argv[1], pathlib.Path(sys.argv[2])
    record = schedule()
    application = driver.Application(program, log=driver.data_home() / "application.log", environment=window.ENVIRONMENT)
    assert driver.record_dialogue(application, dialogue) == record
    check_names(record, dialogue)

    before = driver.read(record)
    window.click("Transcribe again")
    driver.wait_for("the question", lambda: window.find("push button", "Cancel"))
    window.click("Transcribe again")
    driver.wait_for("the new transcript", lambda: driver.read(record)["status"] == "Transcribed", 200)
    versions = list((record.parent / "history").glob("*.json"))
    assert [driver.read(version) for version in versions] == [before], "the earlier transcript is not the one version"
    assert not {turn["id"] for turn in before["turns"]} & {turn["id"] for turn in driver.read(record)["turns"]}
    driver.wait_for("names", lambda: driver.read(record).get("speakerNames"))
    check_names(record, dialogue)
    driver.wait_for("the names in the window", lambda: any(name.startswith("You") for name in window.names("list item")))
    assert application.quit() == 0


main()
