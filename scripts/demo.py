#!/usr/bin/python3
"""The demonstration: a dialogue is played into the microphone and the call of a private session, recorded through the
real window, and scored against what was said.

usage: demo.py BUILD OUT [DIALOGUE]
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "support"))
import driver  # noqa: E402

DIALOGUE_TOOLS = ROOT / "tests" / "support" / "dialogue"
LIMITS = {"slt-rms": (15, 90), "rms-awb": (15, 90)}  # percent: word errors, words with the right speaker


def picture(path):
    subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-draw_mouse", "0", "-video_size", "1280x820", "-i",
                    os.environ["DISPLAY"], "-frames:v", "1", str(path)], check=True)
    print(f"picture: {path}")


def the_meeting(root):
    records = driver.meetings(root)
    assert len(records) <= 1, f"{len(records)} meetings instead of one"
    return next(iter(records.items()), (None, None))


def status(root):
    record = the_meeting(root)[1]
    return record and record["status"]


def clock(seconds):
    return f"{int(seconds) // 60:02}:{int(seconds) % 60:02}"


def main():
    build, out = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    name = sys.argv[3] if len(sys.argv) > 3 else "slt-rms"
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    dialogue = out / "dialogue"
    subprocess.run([sys.executable, str(DIALOGUE_TOOLS / "make_dialogue.py"), "--name", name, "--out", str(dialogue)],
                   check=True)
    length = json.loads((dialogue / "reference.json").read_text())["duration"]

    root = driver.default_root()
    application = driver.Application(build / "Varnet" / "varnet", log=out / "application.log", environment={
        "VARNET_RUNTIME": str(build / "runtime"), "QT_QUICK_BACKEND": "software"})
    driver.wait_for("the speech engine", driver.engine_ready)
    picture(out / "library-empty.png")

    application.action("toggle-recording")
    driver.wait_for("a live recording", lambda: status(root) == "Recording · live transcript")
    players = [driver.play(dialogue / "microphone.wav", "mic_feed"), driver.play(dialogue / "call.wav", "speakers")]
    print(f"playing {length:.0f} s of dialogue '{name}'", flush=True)
    time.sleep(length * 0.6)  # somebody is in the middle of a sentence
    picture(out / "live.png")
    for player in players:
        assert player.wait(length + 30) == 0, "pw-play failed"
    application.action("toggle-recording")
    driver.wait_for("the finished meeting", lambda: (status(root) or "").startswith("Audio saved"), 60)
    time.sleep(0.5)  # let the window draw
    picture(out / "finished.png")

    folder, record = the_meeting(root)
    print(f"\n{record['title']}: {record['status']}")
    for turn in record["turns"]:
        print(f"  [{clock(turn['start'])}] {turn['speaker']}: {turn.get('editedText') or turn['originalText']}")
    samples = {file: driver.wav_samples(root / folder / file) for file in
               ("meeting.wav", "microphone.wav", "system.wav")}
    print("\n" + ", ".join(f"{file}: {count / 16000:.2f} s" for file, count in samples.items()))
    assert len(set(samples.values())) == 1, "the three files differ in length"
    assert samples["meeting.wav"] / 16000 >= length, "the recording is shorter than the dialogue"

    exit_code = application.quit()
    shutil.copytree(root / folder, out / folder)
    limits = LIMITS.get(name, (15, 85))
    score = subprocess.run([sys.executable, str(DIALOGUE_TOOLS / "score.py"), "--max-wer", str(limits[0]),
                            "--min-speaker-accuracy", str(limits[1]), str(dialogue / "reference.json"),
                            str(out / folder / "meeting.json")])
    print(f"the meeting: {out / folder}")
    if record["status"] != "Audio saved · live transcript" or exit_code != 0:
        print(f"the recording ended as '{record['status']}', the program with {exit_code}")
        return 1
    return score.returncode


sys.exit(main())
