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

WORKING = {
    "Preparing microphone", "Recording · transcription offline", "Recording · live transcript", "Finishing transcript",
}
INTERRUPTED = "Interrupted · check saved audio and retry"


def snapshot(root):
    """Sizes of all files and the record of each meeting, as they are on disk now."""
    return {
        name: (record, {file.name: file.stat().st_size for file in (root / name).iterdir()})
        for name, record in driver.meetings(root).items()
    }


def check(root, before, after_start):
    """What a start must have made of the meetings that the killed process left behind."""
    problems = []
    for name, (record, sizes) in before.items():
        now = after_start[name]
        expected = INTERRUPTED if record["status"] in WORKING else record["status"]
        if now["status"] != expected:
            problems.append(f"{name}: '{record['status']}' became '{now['status']}'")
        if now["turns"][:len(record["turns"])] != record["turns"]:
            problems.append(f"{name}: a finished turn was lost")
        for file, size in sizes.items():
            path = root / name / file
            if not path.exists():
                if not file.startswith("."):
                    problems.append(f"{name}/{file}: deleted")
                continue
            if path.suffix == ".wav" and expected == INTERRUPTED and not file.startswith("."):
                samples = driver.wav_samples(path)
                if samples != (size - 44) // 2:
                    problems.append(f"{name}/{file}: {samples} samples of {(size - 44) // 2}")
    return problems


def main():
    program, speech = sys.argv[1], sys.argv[2]
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 50
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.SystemRandom().randrange(1 << 32)
    print(f"seed {seed}, {count} kills", flush=True)
    chance = random.Random(seed)
    root = driver.default_root()
    log = pathlib.Path(driver.data_home()) / "application.log"
    problems, turns = [], 0

    player = driver.play(speech, "speakers")
    application = driver.Application(program, log=log)
    for number in range(count):
        if player.poll() is not None:
            player = driver.play(speech, "speakers")
        if number % 5 == 0: # with words in it
            driver.wait_for("the speech engine", driver.engine_ready)
        known = set(driver.meetings(root))
        application.action("toggle-recording")
        longest = 9.0 if number % 5 == 0 else 2.0
        time.sleep(chance.uniform(0, longest))
        if chance.random() < 0.25: # in the middle of a stop
            application.action("toggle-recording")
            time.sleep(chance.uniform(0, 0.4))
        application.kill()

        before = snapshot(root)
        for name in set(before) - known:
            turns += len(before[name][0]["turns"])
        application = driver.Application(program, log=log)
        problems += check(root, before, driver.meetings(root))

    if application.quit() != 0:
        problems.append("the last start did not quit cleanly")
    player.kill()
    print(f"  {turns} turns were on disk at the kills")
    if not turns:
        problems.append("no kill came after audio and words had been stored: nothing was shown")
    for problem in problems:
        print("PROBLEM:", problem)
    return 1 if problems else 0


sys.exit(main())
