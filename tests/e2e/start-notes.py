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
CONFIG = pathlib.Path(os.environ["XDG_CONFIG_HOME"])
KEY = driver.data_home() / "Varnet" / "notes-service.key"
NAME = "Qwen3.5-4B-Q4_K_M.gguf"
PLACE = ".runtime/notes/runtime/llama-b11146/llama-server"
EXPECTED = ("--model {model} --alias qwen3.5-4b-q4km --host 127.0.0.1 --port 17864 --ctx-size 8192 --parallel 1 --threads 4 "
            "--batch-size 256 --ubatch-size 128 --jinja --reasoning off --no-context-shift --api-key-file {key}")


def environment(variables):
    return {**os.environ, "PATH": "/usr/bin:/bin", **variables}


def start(*arguments, **variables):
    """One run to its end: the exit code, and everything that it said."""
    run = subprocess.run([SCRIPT, *map(str, arguments)], env=environment(variables), cwd="/", text=True, timeout=20,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return run.returncode, run.stdout


def put(place, content, executable=False):
    place.parent.mkdir(parents=True, exist_ok=True)
    place.write_text(content)
    place.chmod(0o755 if executable else 0o644)
    return place


def engine_folder(name):
    """A folder with a model and a program that notes its arguments, one a line."""
    folder = HOME / name
    put(folder / PLACE, f"#!/bin/sh\nprintf '%s\\n' \"$@\" >'{folder}/arguments'\n", True)
    put(folder / ".runtime/notes" / NAME, "some")
    return folder


def check_start(folder, code, said, model=None):
    assert code == 0, said
    given = (folder / "arguments").read_text().splitlines()
    assert given == EXPECTED.format(model=model or folder / ".runtime/notes" / NAME, key=KEY).split(), given
    assert len(given) == 24
    assert KEY.stat().st_mode & 0o777 == 0o600 and KEY.parent.stat().st_mode & 0o777 == 0o700
    assert re.fullmatch(r"[A-Za-z0-9_-]{43}\n", KEY.read_text()), "the key has another form"
    assert KEY.read_text().strip() not in said + "".join(given), "the key was shown"
    assert [file.name for file in KEY.parent.iterdir()] == [KEY.name]


def places():
    named = engine_folder("named")
    code, said = start(named)
    check_start(named, code, said)
    assert "has 4 bytes instead of 2741986464" in said, said
    key = KEY.read_bytes()
    os.truncate(named / ".runtime/notes" / NAME, 2741986464)  # a file with a hole
    code, said = start(VARNET_RUNTIME=str(named))
    check_start(named, code, said)
    assert "instead of" not in said, said
    stored = engine_folder("a,b")
    put(CONFIG / "Varnet/Varnet.conf", f'[Other]\nRuntimeRoot=/no\n[General]\nA=1\nRuntimeRoot="{stored}"\n')
    check_start(stored, *start())
    code, said = start(VARNET_RUNTIME="", PATH=f"{(named / PLACE).parent}:/usr/bin:/bin")
    assert code == 1 and f"the model file {NAME}" in said and "llama-server is missing" not in said, said
    model = put(HOME / "other.gguf", "some")
    code, said = start("--model", model, VARNET_RUNTIME="", PATH=f"{(named / PLACE).parent}:/usr/bin:/bin")
    check_start(named, code, said, model)
    assert KEY.read_bytes() == key, "the key was replaced"


def what_is_missing():
    empty = HOME / "empty"
    empty.mkdir()
    code, said = start(empty)
    assert code == 1, said
    for words in ("the program llama-server is missing", str(empty / PLACE), f"the model file {NAME}",
                  str(empty / ".runtime/notes" / NAME)):
        assert words in said, f"not said: {words}\n{said}"
    put(empty / PLACE, "#!/bin/sh\n")
    assert "chmod +x" in start(empty)[1]
    assert start(HOME / "nowhere") == (1, f"start-notes: there is no folder {HOME}/nowhere\n")
    assert start("--modle", "x")[0] == 2


def strict_server():
    folder, log = HOME / "strict", HOME / "log"
    (folder / PLACE).parent.mkdir(parents=True)
    (folder / PLACE).symlink_to(SUPPORT / "notes_server.py")
    put(folder / ".runtime/notes" / NAME, "some")
    hear_ctrl_c = lambda: signal.signal(signal.SIGINT, signal.SIG_DFL)  # a session has it ignored
    server = subprocess.Popen([SCRIPT, folder], env=environment({"NOTES_SERVER_FOLDER": str(HOME)}), preexec_fn=hear_ctrl_c)
    driver.wait_for("the notes engine", lambda: driver.engine_ready(17864))
    code, said = start(folder)
    assert code == 1 and "answers /health already" in said, said
    server.send_signal(signal.SIGINT)
    server.wait(10)
    assert not log.exists() or not log.read_text(), log.read_text()
    with socket.create_server(("127.0.0.1", 17864)):
        code, said = start(folder)
    assert code == 1 and "does not answer /health" in said, said


places()
what_is_missing()
strict_server()
