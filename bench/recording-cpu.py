#!/usr/bin/python3
"""Processor time of the application while it records two tracks with its window hidden, against two pw-record processes
that write the same tracks at the same time. Engine and sound server are not counted.

usage: recording-cpu.py PROGRAM RUNTIME [SECONDS]
"""
import os
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "support"))
import driver  # noqa: E402

LIMIT = 2.0


def processor_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def main():
    program, runtime = sys.argv[1], os.path.abspath(sys.argv[2])
    seconds = float(sys.argv[3]) if len(sys.argv) > 3 else 60
    session = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
    tone = session / "tone.wav"
    subprocess.run(["sox", "-q", "-n", "-r", "48000", "-b", "16", str(tone), "synth", str(seconds + 30), "sine", "300",
                    "gain", "-12"], check=True)
    players = [driver.play(tone, "mic_feed"), driver.play(tone, "speakers")]
    application = driver.Application(program, environment={"VARNET_RUNTIME": runtime, "QT_QUICK_BACKEND": "software"})
    driver.wait_for("the speech engine", driver.engine_ready)
    application.action("toggle-recording")
    driver.wait_for("a live recording", lambda: any(
        record["status"] == "Recording · live transcript" for record in driver.meetings(driver.default_root()).values()))
    window = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Zelvik"], check=True, capture_output=True,
                            text=True).stdout.split()[0]
    subprocess.run(["xdotool", "windowunmap", "--sync", window], check=True)

    common = ["pw-record", "--rate", "16000", "--channels", "1", "--format", "s16"]
    recorders = [
        subprocess.Popen([*common, "--target", "mic", str(session / "mic.wav")]),
        subprocess.Popen([*common, "-P", "{ stream.capture.sink = true }", "--target", "speakers",
                          str(session / "call.wav")]),
    ]
    time.sleep(3)  # let start-up pass
    pids = [application.process.pid] + [recorder.pid for recorder in recorders]
    before = [processor_seconds(pid) for pid in pids]
    time.sleep(seconds)
    used = [after - start for after, start in zip((processor_seconds(pid) for pid in pids), before)]
    for process in recorders + players:
        process.terminate()
    application.action("toggle-recording")
    application.quit()

    mine, theirs = used[0], used[1] + used[2]
    ratio = mine / theirs
    print(f"recording two tracks for {seconds:.0f} s, window hidden: application {mine:.2f} s of processor time, "
          f"two pw-record {theirs:.2f} s: {ratio:.2f}x (at most {LIMIT}x)")
    return 0 if ratio <= LIMIT else 1


sys.exit(main())
