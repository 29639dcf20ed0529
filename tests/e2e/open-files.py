#!/usr/bin/python3
"""Hands files to the program as a desktop does: when it starts, and with further starts while it runs.

usage: open-files.py PROGRAM
"""
import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driver  # noqa: E402


def wait_for_titles(*titles):
    driver.wait_for(f"{titles}", lambda: titles == tuple(sorted(
        record["title"] for record in driver.meetings(driver.default_root()).values())))


def start_again(*files):
    run = subprocess.run([program, *files], capture_output=True, text=True, timeout=60, check=False)
    return run.returncode, run.stderr


program = pathlib.Path(sys.argv[1]).resolve()
os.chdir(os.environ["HOME"])
for name in ("first", "secönd #2", "third"):
    pathlib.Path(name + ".wav").write_bytes(b"no audio")
application = driver.Application(program, "first.wav", environment={"VARNET_NO_ENGINES": "1"})
wait_for_titles("first")
assert start_again("secönd #2.wav") == (0, "")
wait_for_titles("first", "secönd #2")
code, said = start_again("https://example.org/a.mp3", pathlib.Path("third.wav").resolve().as_uri())
assert code == 1 and "https://example.org/a.mp3" in said and "third" not in said, said
wait_for_titles("first", "secönd #2", "third")
application.action("quit")
assert application.process.wait(60) == 0
