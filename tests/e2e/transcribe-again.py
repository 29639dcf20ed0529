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


def voices(file, dialogue):
    """Which voice most of the words of each label are, by label."""
    said, heard = score.labelled_words(dialogue / "reference.json"), score.labelled_words(file)
    errors, pairs = score.align(said, heard)
    counts = collections.defaultdict(collections.Counter)
    for i, j in pairs:
        counts[heard[j][1]][said[i][1]] += 1
    print(f"{file.parent.name}: {100 * errors / len(said):.1f} % of the words are wrong, {dict(counts)}", flush=True)
    return {label: count.most_common(1)[0][0] for label, count in counts.items()}


def check_names(file, dialogue):
    names = driver.read(file)["speakerNames"]
    by_label = voices(file, dialogue)
    for label, name in names.items():
        assert NAMES[by_label[label]] == name, f"{label}, the voice {by_label[label]}, is called {name}"
    assert "You" in names.values(), names
    if len(by_label) == 2:
        assert sorted(names.values()) == ["Guest", "You"], names
    return names


def main():
    program, dialogue = sys.argv[1], pathlib.Path(sys.argv[2])
    record = schedule()
    application = driver.Application(program, log=driver.data_home() / "application.log", environment=window.ENVIRONMENT)
    assert driver.record_dialogue(application, dialogue) == record
    print("live:", check_names(record, dialogue))

    before = driver.read(record)
    window.click("Transcribe again")
    driver.wait_for("the question", lambda: window.find("push button", "Cancel"))
    window.click("Transcribe again")
    driver.wait_for("the new transcript", lambda: driver.read(record)["status"] == "Transcribed", 200)
    versions = list((record.parent / "history").glob("*.json"))
    assert [driver.read(version) for version in versions] == [before], "the earlier transcript is not the one version"
    assert not {turn["id"] for turn in before["turns"]} & {turn["id"] for turn in driver.read(record)["turns"]}
    driver.wait_for("names", lambda: driver.read(record).get("speakerNames"))
    print("again:", check_names(record, dialogue))
    driver.wait_for("the names in the window",
                    lambda: any(name.startswith("You") for name in window.names("list item")))
    window.picture(dialogue / "transcribed-again.png")
    assert application.quit() == 0


main()
