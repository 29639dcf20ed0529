"""Drives the real program in a private session: starts it, presses its actions over D-Bus, reads what it stores."""
import json
import os
import pathlib
import signal
import struct
import subprocess
import time
import urllib.request

from gi.repository import Gio, GLib

NAME = "org.varnet.Varnet"
PATH = "/org/varnet/Varnet"


def wait_for(what, condition, seconds=20.0):
    deadline = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < deadline, f"{what} did not come true within {seconds} s"
        time.sleep(0.01)


def data_home():
    return pathlib.Path(os.environ["XDG_DATA_HOME"])


def default_root():
    return data_home() / "Varnet" / "meetings"


def meetings(root):
    """The stored records by folder name; a folder without a record is left out."""
    return {record.parent.name: json.loads(record.read_text(encoding="utf-8")) for record in root.glob("*/meeting.json")}


def wav_samples(path):
    """The number of samples that the header declares; fails unless header and size agree to the byte."""
    data = path.read_bytes()
    assert len(data) >= 44, f"{path.name}: {len(data)} bytes"
    size = len(data) - 44
    expected = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", size + 36, b"WAVE", b"fmt ", 16, 1, 1, 16000, 32000, 2, 16,
                           b"data", size)
    assert data[:44] == expected, f"{path.name}: the header is {data[:44]} for {size} bytes of audio"
    return size // 2


class Application:
    """One run of the program."""

    def __init__(self, binary, *arguments, log=None, environment=None):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.log = open(log, "ab") if log else subprocess.DEVNULL
        self.process = subprocess.Popen([str(binary), *map(str, arguments)], stdout=self.log, stderr=self.log,
                                        env={**os.environ, **(environment or {})})
        wait_for("the application on the bus", self.owns_name)

    def owns_name(self):
        assert self.process.poll() is None, f"the application ended at start with {self.process.returncode}"
        try:
            return self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                              "GetConnectionUnixProcessID", GLib.Variant("(s)", (NAME,)))[0] == self.process.pid
        except GLib.Error:
            return False

    def _call(self, *call):
        return self.bus.call_sync(*call, None, Gio.DBusCallFlags.NONE, 5000, None).unpack()

    def action(self, name):
        self._call(NAME, PATH, "org.freedesktop.Application", "ActivateAction",
                   GLib.Variant("(sava{sv})", (name, [], {})))

    def open(self, *files):
        """Hands files over as the desktop's "Open with" does."""
        self._call(NAME, PATH, "org.freedesktop.Application", "Open",
                   GLib.Variant("(asa{sv})", ([file.as_uri() for file in files], {})))

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait(10)

    def quit(self, seconds=60):
        """Ends the program on its own road and gives its exit code."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(seconds)


def engine_ready(port=17863):
    """Whether the engine answers its health check: that of speech, unless another port is given."""
    try:
        return urllib.request.urlopen(f"http://127.0.0.1:{port}/health", timeout=2).status == 200
    except OSError:
        return False


def play(file, target):
    return subprocess.Popen(["pw-play", "--target", target, str(file)], stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL)


def read(record):
    return json.loads(record.read_text(encoding="utf-8"))


def record_dialogue(application, dialogue):
    """Records the dialogue on both tracks with a live transcript, as the only recording of the library, and waits until
    who speaks is named. Gives the file of the record."""
    status = lambda: [meeting["status"] for meeting in meetings(default_root()).values()]
    wait_for("the speech engine", engine_ready, 60)
    application.action("toggle-recording")
    wait_for("a live recording", lambda: status() == ["Recording · live transcript"])
    for player in [play(dialogue / "microphone.wav", "mic_feed"), play(dialogue / "call.wav", "speakers")]:
        assert player.wait(100) == 0, "pw-play failed"
    application.action("toggle-recording")
    wait_for("the stop", lambda: status() == ["Audio saved · live transcript"], 60)
    record, = default_root().glob("*/meeting.json")
    wait_for("names", lambda: read(record).get("speakerNames"))
    return record
