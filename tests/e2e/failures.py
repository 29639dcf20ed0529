#!/usr/bin/python3
"""What a recording keeps when the disk or its folder fails. Needs a mount namespace of its own.

usage: failures.py PROGRAM SPEECH.wav
"""
import pathlib
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402

TRACKS = ("meeting.wav", "microphone.wav", "system.wav")
INTERRUPTED = "Interrupted · check saved audio and retry"


def run(*command):
    subprocess.run(command, check=True)


class Recording:
    """One start of the program with one recording in it."""

    def __init__(self, program, name):
        self.log = driver.data_home() / f"{name}.log"
        self.program = driver.Application(program, log=self.log, environment={"VARNET_NO_ENGINES": "1"})
        known = set(driver.meetings(driver.default_root()))
        self.program.action("toggle-recording")
        driver.wait_for("a recording", lambda: self.started(known))

    def started(self, known):
        running = [name for name, record in driver.meetings(driver.default_root()).items()
                   if name not in known and record["status"].startswith("Recording ·")]
        self.folder = running and driver.default_root() / running[0]
        return running

    def record(self):
        return driver.meetings(driver.default_root())[self.folder.name]

    def status_is(self, status, seconds=20):
        driver.wait_for(f"the status '{status}'", lambda: self.record()["status"] == status, seconds)

    def bytes(self):
        return (self.folder / "meeting.wav").stat().st_size

    def grows(self, seconds=2):
        goal = self.bytes() + int(seconds * 32000)
        driver.wait_for("more audio", lambda: self.bytes() >= goal, seconds + 10)

    def logged(self, text):
        return text in self.log.read_text(encoding="utf-8", errors="replace")

    def stop(self):
        self.program.action("toggle-recording")

    def tracks_are_whole(self):
        lengths = {driver.wav_samples(self.folder / track) for track in TRACKS}
        assert len(lengths) == 1, f"the tracks differ: {lengths}"
        return lengths.pop()


def disk_full(program):
    print("a full disk", flush=True)
    root = driver.data_home() / "Varnet"
    root.mkdir(parents=True)
    run("mount", "-t", "tmpfs", "-o", "size=1m", "tmpfs", str(root))
    recording = Recording(program, "disk-full")
    driver.wait_for("the message", lambda: recording.logged("Recording error: "), 60)
    assert recording.logged("No space left on device"), "the message does not tell the reason"
    kept = recording.bytes()
    assert kept > 150_000, f"only {kept} bytes of audio fitted"
    recording.program.kill()

    run("mount", "-o", "remount,size=8m", str(root))
    again = driver.Application(program, log=recording.log, environment={"VARNET_NO_ENGINES": "1"})
    recording.status_is(INTERRUPTED)
    for track in TRACKS:
        driver.wav_samples(recording.folder / track)
    assert recording.bytes() >= kept - 1, "audio was lost by the repair"
    assert again.quit() == 0
    run("umount", str(root))


def folder_read_only(program):
    print("a folder that cannot be written", flush=True)
    recording = Recording(program, "read-only")
    folder = str(recording.folder)
    run("mount", "--bind", folder, folder)
    run("mount", "-o", "remount,bind,ro", folder)
    recording.grows()
    recording.stop()
    driver.wait_for("the failed save", lambda: recording.logged("A meeting was not saved"), 20)
    assert recording.logged("Capture stopped with an error. Saved audio remains available: "), "the diagnostics failed"
    run("umount", folder)
    assert recording.program.quit() == 0, "the edits could be saved again, so the program must quit"
    assert recording.record()["status"] == "Capture incomplete · check saved audio", recording.record()["status"]
    assert recording.tracks_are_whole() > 32000


def main():
    program, speech = sys.argv[1], sys.argv[2]
    player = driver.play(speech, "speakers")
    disk_full(program)
    folder_read_only(program)
    player.kill()


main()
