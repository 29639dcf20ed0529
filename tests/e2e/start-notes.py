#!/usr/bin/python3
"""Starts the notes engine by hand: with a program that notes its arguments, and with the strict server.

usage: start-notes.py SCRIPT
"""
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402

SCRIPT = sys.argv[1]
HOME = pathlib.Path(os.environ["HOME"])
KEY = driver.data_home() / "Varnet" / "notes-service.key"
MODEL = ".runtime/notes/Qwen3.5-4B-Q4_K_M.gguf"
PROGRAM = ".runtime/notes/runtime/llama-b11146/llama-server"
EXPECTED = ("--model {} --alias qwen3.5-4b-q4km --host 127.0.0.1 --port 17864 --ctx-size 8192 --parallel 1 --threads 4 "
            "--batch-size 256 --ubatch-size 128 --jinja --reasoning off --no-context-shift --api-key-file {}")


def start(*arguments, **variables):
    """One run to its end: the exit code, and everything that it said."""
    run = subprocess.run([SCRIPT, *map(str, arguments)], env={**os.environ, "PATH": "/usr/bin:/bin", **variables}, cwd="/",
                         text=True, timeout=20, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return run.returncode, run.stdout


def put(place, content, mode=0o644):
    place.parent.mkdir(parents=True, exist_ok=True)
    place.write_text(content)
    place.chmod(mode)
    return place


def engine_folder(name):
    """A folder with a model and a program that notes its arguments, one a line."""
    folder = HOME / name
    put(folder / PROGRAM, f"#!/bin/sh\nprintf '%s\\n' \"$@\" >'{folder}/arguments'\n", 0o755)
    put(folder / MODEL, "some")
    return folder


def check_start(folder, code, said, model=None):
    assert code == 0, said
    given = (folder / "arguments").read_text().splitlines()
    assert given == EXPECTED.format(model or folder / MODEL, KEY).split(), given
    assert KEY.stat().st_mode & 0o777 == 0o600 and KEY.parent.stat().st_mode & 0o777 == 0o700
    assert re.fullmatch(r"[A-Za-z0-9_-]{43}\n", KEY.read_text()), "the key has another form"
    assert KEY.read_text().strip() not in said + "".join(given), "the key was shown"
    assert [file.name for file in KEY.parent.iterdir()] == [KEY.name]
    return KEY.read_bytes()


def places():
    named, stored = engine_folder("named"), engine_folder("a,b")
    code, said = start(VARNET_RUNTIME=str(named))
    key = check_start(named, code, said)
    assert "has 4 bytes instead of 2741986464" in said, said
    put(pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "Varnet/Varnet.conf",
        f'[Other]\nRuntimeRoot=/no\n[General]\nA=1\nRuntimeRoot="{stored}"\n')
    check_start(stored, *start())
    model = put(HOME / "other.gguf", "some")
    path = f"{(named / PROGRAM).parent}:/usr/bin:/bin"
    assert check_start(named, *start("--model", model, VARNET_RUNTIME="", PATH=path), model) == key, "the key was replaced"


def what_is_missing():
    empty = HOME / "empty"
    empty.mkdir()
    code, said = start(empty)
    assert code == 1 and str(empty / PROGRAM) in said and str(empty / MODEL) in said, said


def strict_server():
    folder, log = HOME / "strict", HOME / "log"
    (folder / PROGRAM).parent.mkdir(parents=True)
    (folder / PROGRAM).symlink_to(SUPPORT / "notes_server.py")
    put(folder / MODEL, "some")
    hear_ctrl_c = lambda: signal.signal(signal.SIGINT, signal.SIG_DFL)  # a session has it ignored
    server = subprocess.Popen([SCRIPT, folder], env={**os.environ, "NOTES_SERVER_FOLDER": HOME}, preexec_fn=hear_ctrl_c)
    driver.wait_for("the notes engine", lambda: driver.engine_ready(17864))
    code, said = start(folder)
    assert code == 1 and "answers /health already" in said, said
    server.send_signal(signal.SIGINT)
    server.wait(10)
    assert not log.exists(), log.read_text()
    with socket.create_server(("127.0.0.1", 17864)):
        code, said = start(folder)
    assert code == 1 and "does not answer /health" in said, said


places()
what_is_missing()
strict_server()
