#!/usr/bin/python3
"""Goes to every screen of the real window by the keyboard, looks at each as a screen reader does, and walks it with Tab.

usage: every-screen.py PROGRAM
"""
import json
import os
import pathlib
import subprocess
import sys
import time
import uuid
import wave

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import accessibility  # noqa: E402
import driver  # noqa: E402
import window  # noqa: E402
from accessibility import State  # noqa: E402

# How to get there from the screen before, and what must be seen there. A step is a key, text in quotes to be typed, the
# name of a control in angle brackets to go to with Tab and press, or something to do.
SCREENS = [
    ("the library", [], "list item", "Weekly planning"),
    ("the menu of a meeting", ["Menu"], "menu item", "Version history"),
    ("several selected", ["Escape", "shift+Down"], "label", "2 selected"),
    ("the menu of several", ["Menu"], "menu item", "Delete 2 meetings"),
    ("a title in its row", ["Escape", "Home", "F2"], "text", "Title"),
    ("a search with hits", ["ctrl+f", '"ship"'], "label", "2 matches"),
    ("a search without hits", ["ctrl+f", '"zzz"'], "push button", "Clear search"),
    ("a transcript", ["ctrl+f", "Escape", "Home", "Return"], "list item", "Ana Ruiz, 00:00: We ship the onboarding."),
    ("the menu of a turn", ["Menu"], "menu item", "Edit words"),
    ("the find bar", ["Escape", "ctrl+shift+f", '"ship"'], "label", "1 of 2"),
    ("the words of a turn", ["ctrl+shift+f", "Escape", "Return"], "text", "Words of this turn"),
    ("the name of a speaker", ["ctrl+shift+f", "Escape", "F2"], "dialog", "Name of Speaker 1"),
    ("the recognised words", ["Escape", "Down", "<Edited>"], "dialog", "Recognised words"),
    ("the speeds", ["Escape", "<Speed, 1×>"], "menu item", "1.25×"),
    ("the notes and the draft", ["Escape", "ctrl+Tab"], "list item", "Send the deck, Owner: Ana · Due: by Friday"),
    ("the version history", ["ctrl+shift+h"], "list item", "Personal notes differ"),
    ("the notes of a version", ["<Personal notes>"], "page tab", "Personal notes", State.SELECTED),
    ("what to restore", ["<Personal notes>"], "check box", "Personal notes", State.CHECKED),
    ("a question", ["Escape", "<Transcribe again>"], "dialog", "Transcribe saved audio again?"),
    ("the actions where there is no room", ["Escape", lambda: resize(900, 600), "<More actions>"], "menu item", "Export…"),
    ("an error", ["Escape", lambda: application.open(driver.data_home()), "ctrl+1"], "alert", "is a folder. Choose the audio files in it."),
    ("no deleted meetings", ["<Dismiss>", "ctrl+2"], "label", "No deleted meetings"),
    ("a deleted meeting", ["ctrl+1", "End", "Delete", lambda: window.point("alert")], "alert", "Deleted “Budget talk”"),
    ("no meetings", ["ctrl+a", "Delete", lambda: window.point("alert")], "label", "No meetings yet"),
    ("the deleted meetings", ["ctrl+2"], "list item", "Budget talk. Deleted today"),
    ("the menu of a deleted meeting", ["Home", "Menu"], "menu item", "Restore"),
    ("the question before erasing", ["Escape", "Delete"], "dialog", "Erase “"),
    ("the settings", ["Escape", "ctrl+comma"], "page tab", "General", State.SELECTED),
    ("the settings of the recording", ["ctrl+Tab"], "page tab", "Recording", State.SELECTED),
    ("the settings of the engines", ["ctrl+Tab"], "page tab", "Engines", State.SELECTED),
    ("the settings of the storage", ["ctrl+Tab"], "page tab", "Storage", State.SELECTED),
    ("the main menu", ["Escape", "F10"], "menu item", "Keyboard Shortcuts"),
    ("the keys", ["<Keyboard Shortcuts>"], "list item", "Ctrl+N"),
    ("what is said before the window closes", ["Escape", "ctrl+w"], "dialog", "keeps running without its window"),
    ("a recording", ["Escape", "ctrl+n"], "label", "Recording for"),
    ("its transcript, which comes first", [], "label", "There is no live transcript"),
]
WELCOME = [
    ("the welcome", [], "heading", "Welcome to"),
    ("the microphone", ["Return"], "heading", "Your microphone"),
    ("the meeting audio", ["Return"], "heading", "Meeting audio"),
    ("the engines", ["Return"], "heading", "Engines"),
    ("an empty library at first", ["Return"], "label", "No meetings yet"),
]


def seed(number, title, **more):
    """A meeting in the library, with `turns`, audio and versions as asked for; the first is the newest."""
    name = str(uuid.uuid4()).upper()
    folder = driver.default_root() / name
    (folder / "history").mkdir(parents=True)
    meeting = {"id": name, "title": title, "createdAt": time.time() - 978307200 - 600 - 90000 * number, "notes": "Ask Sam.",
               "turns": [], "status": "Audio saved · live transcript", "speakerNames": {"Speaker 1": "Ana Ruiz"}, **more}
    (folder / "meeting.json").write_text(json.dumps(meeting), encoding="utf-8")
    if "audioFilename" in meeting:
        with wave.open(str(folder / meeting["audioFilename"]), "wb") as audio:
            audio.setparams((1, 2, 16000, 0, "NONE", ""))
            audio.writeframes(bytes(320000))
        version = {**meeting, "notes": "Before", "turns": meeting["turns"][:1]}
        (folder / "history" / f"{uuid.uuid4()}.json".upper().replace("JSON", "json")).write_text(json.dumps(version))


def turns():
    words = ["We ship the onboarding.", "Then Ana sends the deck.", "We ship on Friday."]
    said = [{"id": str(uuid.uuid4()).upper(), "start": 3 * i, "end": 3 * i + 2, "speaker": f"Speaker {i % 2 + 1}",
             "originalText": text} for i, text in enumerate(words)]
    said[1]["editedText"] = "Ana sends the deck."
    return said


def draft(said):
    sources = [{"id": f"S{i + 1}", "turnID": turn["id"], "start": turn["start"], "end": turn["end"], "speaker": "Ana Ruiz",
                "text": turn.get("editedText", turn["originalText"])} for i, turn in enumerate(said)]
    items = [{"kind": "summary", "text": "The team ships.", "evidence": [{"source": "S1", "quote": "We ship"}]},
             {"kind": "action", "text": "Send the deck", "owner": "Ana", "due": "by Friday",
              "evidence": [{"source": "S2", "quote": "sends the deck"}]}]
    return {"items": items, "sources": sources, "transcriptHash": "0" * 64, "model": "A model", "createdAt": 800000000,
            "chunks": 1, "promptVersion": "1", "droppedItems": 2}


def resize(width, height):
    subprocess.run(["xdotool", "getwindowfocus", "windowsize", "--sync", str(width), str(height)], check=True)


def take(step):
    if callable(step):
        step()
    elif step.startswith('"'):
        window.write(step.strip('"'))
    elif step.startswith("<"):
        accessibility.go_to(step.strip("<>"))
        window.keys("space")
    else:
        window.keys(step)


def visit(screens):
    for name, steps, role, words, *states in screens:
        try:
            for step in steps:
                take(step)
            driver.wait_for(f"{role} “{words}”", lambda: accessibility.seen(role, words, *states))
            accessibility.check()
        except AssertionError as error:
            raise AssertionError(f"{name}: {error}") from error
        print(name, flush=True)


def start(*arguments):
    global application
    application = driver.Application(sys.argv[1], *arguments, log=driver.data_home() / "application.log",
                                     environment={**window.ENVIRONMENT, "VARNET_NO_ENGINES": "1"})
    window.take_focus(application.process.pid)


def main():
    said = turns()
    seed(0, "Weekly planning", turns=said, generatedNotes=draft(said), audioFilename="imported.wav")
    seed(1, "Design review", turns=turns())
    seed(2, "Budget talk")
    start()
    visit(SCREENS)
    window.keys("ctrl+n")
    assert application.quit() == 0

    settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "Varnet" / "Varnet.conf"
    settings.write_text("[General]\nOnboardingDone=false\n", encoding="utf-8")
    start("--storage-root", driver.data_home() / "empty")
    visit(WELCOME)
    assert application.quit() == 0


main()
