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


def titles():
    return {record["title"] for record in driver.meetings(driver.default_root()).values()}


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    folder = driver.data_home() / "files"
    folder.mkdir(parents=True)
    os.chdir(folder)
    os.environ["VARNET_NO_ENGINES"] = "1"
    for name in ("first", "secönd #2", "third"):
        pathlib.Path(name + ".wav").write_bytes(b"no audio")

    application = driver.Application(program, "first.wav")
    driver.wait_for("the file of the start", lambda: titles() == {"first"})

    again = subprocess.run([program, "secönd #2.wav"], capture_output=True, text=True, timeout=60, check=False)
    assert (again.returncode, again.stderr) == (0, ""), again
    driver.wait_for("the file of the second start", lambda: titles() == {"first", "secönd #2"})

    third = "file://" + str(folder / "third.wav")
    mixed = subprocess.run([program, "https://example.org/a.mp3", third], capture_output=True, text=True, timeout=60,
                           check=False)
    assert mixed.returncode == 1 and "https://example.org/a.mp3" in mixed.stderr and third not in mixed.stderr, mixed
    driver.wait_for("the good file of the third start", lambda: titles() == {"first", "secönd #2", "third"})
    application.action("quit")
    assert application.process.wait(60) == 0
    print("every file that was handed over is in the library")


main()
