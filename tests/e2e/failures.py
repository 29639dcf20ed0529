#!/usr/bin/python3
"""What a recording keeps when the disk or its folder fails. Needs a mount namespace of its own.

usage: failures.py PROGRAM SPEECH.wav
"""
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driver  # noqa: E402

TRACKS = ("meeting.wav", "microphone.wav", "system.wav")
LOG = driver.data_home() / "application.log"


def run(*command):
    subprocess.run(command, check=True)


def start(program):
    return driver.Application(program, log=LOG, environment={"VARNET_NO_ENGINES": "1"})


def status():
    return [meeting["status"] for meeting in driver.meetings(driver.default_root()).values()]


def record(program):
    """The program with the only recording of its library running, and the folder of that."""
    LOG.unlink(missing_ok=True)
    application = start(program)
    application.action("new-recording")
    driver.wait_for("a recording", lambda: any(text.startswith("Recording ·") for text in status()))
    application.action("new-recording")  # the one that runs goes on
    return application, next(driver.default_root().glob("*/meeting.json")).parent


def audio_bytes(folder):
    return (folder / "meeting.wav").stat().st_size


def logged(text):
    return text in LOG.read_text(encoding="utf-8", errors="replace")


def disk_full(program):
    root = driver.data_home() / "Varnet"
    root.mkdir(parents=True)
    run("mount", "-t", "tmpfs", "-o", "size=1m", "tmpfs", str(root))
    application, folder = record(program)
    driver.wait_for("the message", lambda: logged("Recording error: "), 60)
    assert logged("No space left on device"), "the message does not tell the reason"
    kept = audio_bytes(folder)
    assert kept > 150_000, f"only {kept} bytes of audio fitted"
    application.kill()

    run("mount", "-o", "remount,size=8m", str(root))
    application = start(program)
    driver.wait_for("the repair", lambda: status() == ["Interrupted · check saved audio and retry"])
    for track in TRACKS:
        driver.wav_samples(folder / track)
    assert audio_bytes(folder) >= kept - 1, "audio was lost by the repair"
    assert application.quit() == 0
    run("umount", str(root))


def folder_read_only(program):
    application, folder = record(program)
    run("mount", "--bind", str(folder), str(folder))
    run("mount", "-o", "remount,bind,ro", str(folder))
    goal = audio_bytes(folder) + 64_000
    driver.wait_for("more audio", lambda: audio_bytes(folder) >= goal)
    application.action("toggle-recording")
    driver.wait_for("the failed save", lambda: logged("A meeting was not saved"))
    assert logged("Capture stopped with an error. Saved audio remains available: "), "the diagnostics failed"
    unmount = ["umount", str(folder)]  # busy for as long as the program reads the audio that was kept
    driver.wait_for("the folder to be left", lambda: subprocess.run(unmount).returncode == 0)
    assert application.quit() == 0, "the edits could be saved again, so the program must quit"
    assert status() == ["Capture incomplete · check saved audio"], status()
    lengths = {driver.wav_samples(folder / track) for track in TRACKS}
    assert len(lengths) == 1 and lengths.pop() > 32000, "the tracks differ, or are too short"


player = driver.play(sys.argv[2], "speakers")
disk_full(sys.argv[1])
folder_read_only(sys.argv[1])
player.kill()
