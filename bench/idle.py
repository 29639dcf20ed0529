#!/usr/bin/python3
"""What the program costs while nobody touches it: wake-ups (voluntary context switches of all its threads) and processor
time, with 500 meetings and the real speech engine, on the library page and on a meeting's page with the player paused.
Then the main thread while a recording runs and the meters move. Run it in a private session with PipeWire and a display.

usage: idle.py PROGRAM RUNTIME [SECONDS]
"""
import json
import os
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "support"))
import driver  # noqa: E402
from start import identity, write_library  # noqa: E402

WAKE_UPS, PERCENT, RECORDING_PERCENT = 5, 0.5, 3
TICKS = os.sysconf("SC_CLK_TCK")


def wake_ups(pid):
    count = 0
    for status in pathlib.Path(f"/proc/{pid}/task").glob("*/status"):
        count += int(status.read_text().split("\nvoluntary_ctxt_switches:")[1].split()[0])
    return count


def run_seconds(path):
    """Processor time of a process's or a thread's folder in /proc, in nanosecond steps."""
    return sum(int(each.read_text().split()[0]) for each in path.glob("schedstat")) * 1e-9


def whole(pid):
    return sum(run_seconds(task) for task in pathlib.Path(f"/proc/{pid}/task").iterdir())


def watch(pid, seconds):
    """Wake-ups a second and the shares of a core, of the process and of its main thread, in percent."""
    main_thread = pathlib.Path(f"/proc/{pid}/task/{pid}")
    before = wake_ups(pid), whole(pid), run_seconds(main_thread)
    time.sleep(seconds)
    after = wake_ups(pid), whole(pid), run_seconds(main_thread)
    wakes, share, main = ((last - first) / seconds for first, last in zip(before, after))
    return wakes, 100 * share, 100 * main


def judge(scenario, figures, met, limit):
    wakes, share, main = figures
    print(f"{scenario}: {wakes:.1f} wake-ups/s, {share:.2f} % of a core, main thread {main:.2f} % ({limit})"
          f"{'' if met else ' MISSED'}")
    return met


def main():
    program, runtime = sys.argv[1], os.path.abspath(sys.argv[2])
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 20
    session = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    write_library(session / "library", 500)
    tone = session / "tone.wav"
    subprocess.run(["sox", "-q", "-n", "-r", "48000", "-b", "16", str(tone), "synth", "20", "brownnoise", "tremolo", "2",
                    "90", "gain", "-12"], check=True)
    folder = session / "library" / identity(0)
    subprocess.run(["sox", "-q", str(tone), "-r", "16000", "-c", "1", "-b", "16", str(folder / "imported.wav")], check=True)
    record = folder / "meeting.json"
    record.write_text(json.dumps({**json.loads(record.read_text()), "audioFilename": "imported.wav"}))
    application = driver.Application(program, "--storage-root", session / "library",
                                     environment={"VARNET_RUNTIME": runtime, "QT_QUICK_BACKEND": "software"})
    pid = application.process.pid
    driver.wait_for("the speech engine", driver.engine_ready)
    limit = f"below {WAKE_UPS} and {PERCENT} %"
    met = True
    for scenario, keys in (("idle, library page", []), ("idle, meeting page", ["Down", "Return", "space", "space"])):
        for key in keys:
            subprocess.run(["xdotool", "key", key], check=True)
            time.sleep(0.7)
        time.sleep(5)
        figures = watch(pid, seconds)
        met &= judge(scenario, figures, figures[0] < WAKE_UPS and figures[1] < PERCENT, limit)

    players = [driver.play(tone, "mic_feed"), driver.play(tone, "speakers")]
    application.action("toggle-recording")
    driver.wait_for("a recording", lambda: any(
        record["status"].startswith("Recording") for record in driver.meetings(session / "library").values()))
    time.sleep(2)
    figures = watch(pid, 10)
    met &= judge("recording, meters moving", figures, figures[2] < RECORDING_PERCENT,
                 f"main thread below {RECORDING_PERCENT} %")
    for player in players:
        player.terminate()
    application.action("toggle-recording")
    application.quit()
    return 0 if met else 1


sys.exit(main())
