#!/usr/bin/python3
"""Kills the program at random moments of a recording and checks what the next start brings back.

usage: kill-recording.py PROGRAM SPEECH.wav [COUNT [SEED]]
"""
import pathlib
import random
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driver  # noqa: E402

WORKING = ("Preparing microphone", "Recording · transcription offline", "Recording · live transcript",
           "Finishing transcript")
ROOT = driver.default_root()


def snapshot():
    """The record and the sizes of all files of each meeting, as they are on disk now; a hidden file is half written."""
    return {name: (record, {file.name: file.stat().st_size for file in (ROOT / name).glob("[!.]*")})
            for name, record in driver.meetings(ROOT).items()}


def check(before, after_start):
    """What a start must have made of the meetings that the killed process left behind."""
    for name, (record, sizes) in before.items():
        now, interrupted = after_start[name], record["status"] in WORKING
        expected = "Interrupted · check saved audio and retry" if interrupted else record["status"]
        assert now["status"] == expected, f"{name}: '{record['status']}' became '{now['status']}'"
        assert now["turns"][:len(record["turns"])] == record["turns"], f"{name}: a finished turn was lost"
        for file, size in sizes.items():
            assert (ROOT / name / file).exists(), f"{name}/{file}: deleted"
            if interrupted and file.endswith(".wav"):
                samples = driver.wav_samples(ROOT / name / file)
                assert samples == (size - 44) // 2, f"{name}/{file}: {samples} samples of {(size - 44) // 2}"


def main():
    program, speech = sys.argv[1], sys.argv[2]
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 50
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.SystemRandom().randrange(1 << 32)
    print(f"seed {seed}, {count} kills", flush=True)
    chance, log = random.Random(seed), driver.data_home() / "application.log"
    turns = 0

    player = driver.play(speech, "speakers")
    application = driver.Application(program, log=log)
    for number in range(count):
        if player.poll() is not None:
            player = driver.play(speech, "speakers")
        with_words = number % 5 == 0
        if with_words:
            driver.wait_for("the speech engine", driver.engine_ready)
        known = set(driver.meetings(ROOT))
        application.action("toggle-recording")
        time.sleep(chance.uniform(0, 9.0 if with_words else 2.0))
        if chance.random() < 0.25:  # in the middle of a stop
            application.action("toggle-recording")
            time.sleep(chance.uniform(0, 0.4))
        application.kill()

        before = snapshot()
        turns += sum(len(record["turns"]) for name, (record, _) in before.items() if name not in known)
        application = driver.Application(program, log=log)
        check(before, driver.meetings(ROOT))

    assert application.quit() == 0
    player.kill()
    assert turns, "no kill came after audio and words had been stored: nothing was shown"


main()
