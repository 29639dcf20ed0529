#!/usr/bin/python3
"""Records the dialogue on both tracks and has its notes written from its page in the window, with the strict server in
the place of the model: what stands of its proposals, a quote that jumps and plays, another draft, and runs that are
cancelled or lose their engine.

usage: write-notes.py PROGRAM DIALOGUE
"""
import json
import os
import pathlib
import signal
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402
import window  # noqa: E402

HOME = pathlib.Path(os.environ["HOME"])
BEHAVIOUR, LOG, REQUESTS = HOME / "behaviour", HOME / "log", HOME / "requests"
RECIPES = ["true", "altered", "misattributed", "straddling", "invented"]


def engines():
    """A folder with the built-in speech engine, and the strict server in the place of the notes engine."""
    folder, built_in = HOME / "engines", pathlib.Path(os.environ["VARNET_RUNTIME"])
    program = folder / ".runtime/notes/runtime/llama-b11146/llama-server"
    program.parent.mkdir(parents=True)
    program.symlink_to(SUPPORT / "notes_server.py")
    (folder / ".runtime/notes/Qwen3.5-4B-Q4_K_M.gguf").write_text("never read")
    (folder / ".runtime/source").symlink_to(built_in / ".runtime/source")
    (folder / "config").symlink_to(built_in / "config")
    return folder


def behave(mode, **more):
    fresh = BEHAVIOUR.with_suffix(".new")
    fresh.write_text(json.dumps({"mode": mode, "recipes": RECIPES, **more}))
    fresh.replace(BEHAVIOUR)


def lines(file):
    return file.read_text(encoding="utf-8").splitlines() if file.exists() else []


def sources_of(request):
    return json.loads(request["body"]["messages"][1]["content"].partition("\n")[2])


def expected(request):
    """What must stand of the answer to a request: each recipe uses its first source, with the second as a neighbour."""
    (here, first), (there, second) = ((source["id"], source["text"].split()) for source in sources_of(request)[:2])
    said, over = " ".join(first[:8]), [" ".join(first[-4:]), " ".join(second[:4])]
    actions = "ACTIONS ONLY" in request["body"]["messages"][0]["content"]
    return [{"kind": "action" if actions else kind, "text": text,
             "evidence": [{"source": source, "quote": quote} for source, quote in evidence]} for kind, text, evidence in [
                 ("decision", said, [(here, said)]),
                 ("decision", f"{said} (misattributed)", [(here, said)]),
                 ("summary", f"{over[0]} {over[1]} (straddling)", [(here, over[0]), (there, over[1])])]]


class Page:
    """The page of the meeting in the window."""

    def __init__(self, record):
        self.record = record

    def draft(self):
        return driver.read(self.record).get("generatedNotes")

    def versions(self):
        return [driver.read(version) for version in (self.record.parent / "history").glob("*.json")]

    def write(self):
        """Has notes written, until the model has been asked. Gives how many requests there were before."""
        before = len(lines(REQUESTS))
        window.click("Write notes again" if self.draft() else "Write notes")
        driver.wait_for("a request", lambda: len(lines(REQUESTS)) > before)
        return before

    def write_to_the_end(self):
        """Gives the meeting with the draft, whose requests must have carried the transcript as it stands."""
        old = self.draft()
        before = self.write()
        driver.wait_for("a draft", lambda: self.draft() != old)
        meeting, asked = driver.read(self.record), [json.loads(line) for line in lines(REQUESTS)[before:]]
        draft, names = meeting["generatedNotes"], meeting.get("speakerNames", {})
        said = [(names.get(turn["speaker"], turn["speaker"]), turn["originalText"]) for turn in meeting["turns"]]
        assert [(source["speaker"], source["text"]) for request in asked[::2] for source in sources_of(request)] == said
        assert draft["items"] == [point for request in asked for point in expected(request)], draft["items"]
        assert draft["droppedItems"] == 2 * len(asked) and draft["chunks"] == len(asked) / 2, draft
        return meeting

    def told(self, message):
        """Waits for that message in a window that is free again, and dismisses it."""
        free = lambda: "Write notes again" in window.names("push button", window.Atspi.StateType.SENSITIVE)
        driver.wait_for(message, lambda: message in "".join(window.names("alert")) and free(), 40)
        window.click("Dismiss")
        driver.wait_for("no message", lambda: not window.names("alert"))


def notes_server(application):
    return int(subprocess.check_output(["pgrep", "-P", str(application.process.pid), "-f", "llama-server"]))


def follow_quote(meeting):
    """Goes from the first quote of the second turn to that turn, and plays it from the draft."""
    turn, selected = meeting["turns"][1], window.Atspi.StateType.SELECTED
    quote = " ".join(turn["originalText"].split()[:4])
    window.click(next(name for name in window.names("push button") if name.startswith("Quote") and quote in name))
    driver.wait_for("its turn", lambda: turn["originalText"] in " ".join(window.names("list item", selected)))
    window.click("Notes", "page tab")
    window.click("Play from {:02}:{:02}".format(*divmod(int(turn["start"]), 60)))
    driver.wait_for("the sound", lambda: window.find("push button", "Pause"))
    position = lambda: window.description("slider", "Position").split()[0].split(":")
    driver.wait_for("its place", lambda: int(turn["start"]) <= 60 * int(position()[0]) + int(position()[1]) <= turn["end"])
    window.click("Pause")


def main():
    program, dialogue = sys.argv[1], pathlib.Path(sys.argv[2])
    environment = {"VARNET_RUNTIME": engines(), "NOTES_SERVER_FOLDER": HOME, **window.ENVIRONMENT}
    application = driver.Application(program, log=driver.data_home() / "application.log", environment=environment)
    page = Page(driver.record_dialogue(application, dialogue))
    window.take_focus(application.process.pid)

    behave("slow", seconds=1)
    first = page.write_to_the_end()
    assert not page.versions(), "a first draft left a version"
    window.click("Notes", "page tab")
    for point in first["generatedNotes"]["items"]:
        driver.wait_for(point["text"], lambda: point["text"] in " ".join(window.names("list item")))
    window.picture(dialogue / "notes-written.png")
    follow_quote(first)

    behave("recipe")
    page.write_to_the_end()
    assert page.versions() == [first], "the draft before is not the one version"

    kept = page.draft()
    behave("hang")
    page.write()
    window.picture(dialogue / "notes-being-written.png")
    window.click("Cancel")
    page.told("Notes generation cancelled. The previous draft was kept.")
    driver.wait_for("the end of the request", lambda: "the client left" in "".join(lines(LOG)))

    page.write()
    lost = notes_server(application)
    os.kill(lost, signal.SIGKILL)
    page.told("it closed the connection.")
    assert page.draft() == kept and len(page.versions()) == 1, "a run that failed changed the meeting"
    behave("recipe")
    page.write_to_the_end()
    assert notes_server(application) != lost
    assert "complaint" not in "".join(lines(LOG)), lines(LOG)
    assert application.quit() == 0


main()
