"""Drives the real program in a private session: starts it, presses its actions over D-Bus, reads what it stores."""
import json
import os
import pathlib
import signal
import struct
import subprocess
import time

from gi.repository import Gio, GLib

NAME = "org.varnet.Varnet"
PATH = "/org/varnet/Varnet"


class Timeout(AssertionError):
    pass


def wait_for(what, condition, seconds=20.0):
    """Polls until `condition()` is truthy and returns its value."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Timeout(f"{what} did not come true within {seconds} s")
        time.sleep(0.01)


def data_home():
    return pathlib.Path(os.environ["XDG_DATA_HOME"])


def default_root():
    return data_home() / "Varnet" / "meetings"


def meetings(root):
    """The stored records by folder name; a folder without a record is left out."""
    records = {}
    if root.is_dir():
        for folder in root.iterdir():
            try:
                records[folder.name] = json.loads((folder / "meeting.json").read_text(encoding="utf-8"))
            except FileNotFoundError:
                continue
    return records


def wav_samples(path):
    """The number of samples that the header declares; fails unless header and size agree to the byte."""
    data = path.read_bytes()
    assert len(data) >= 44, f"{path.name}: {len(data)} bytes"
    riff, total, wave, fmt, fmt_size, kind, channels, rate, _, align, bits, tag, size = struct.unpack(
        "<4sI4s4sIHHIIHH4sI", data[:44])
    assert (riff, wave, fmt, tag) == (b"RIFF", b"WAVE", b"fmt ", b"data"), path.name
    assert (fmt_size, kind, channels, rate, align, bits) == (16, 1, 1, 16000, 2, 16), path.name
    assert size == len(data) - 44 and total == size + 36, f"{path.name}: declares {size} of {len(data) - 44} bytes"
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
        if self.process.poll() is not None:
            raise AssertionError(f"the application ended at start with {self.process.returncode}")
        try:
            pid = self._call_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (NAME,)))
        except GLib.Error:
            return False
        return pid == self.process.pid

    def _call_bus(self, method, arguments):
        return self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                  arguments, None, Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]

    def action(self, name):
        self.bus.call_sync(NAME, PATH, "org.freedesktop.Application", "ActivateAction",
                           GLib.Variant("(sava{sv})", (name, [], {})), None, Gio.DBusCallFlags.NONE, 5000, None)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait(10)

    def quit(self, seconds=60):
        """Ends the program on its own road and gives its exit code."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(seconds)


def engine_ready():
    """Whether the speech engine answers its health check."""
    import urllib.error
    import urllib.request
    try:
        return urllib.request.urlopen("http://127.0.0.1:17863/health", timeout=2).status == 200
    except (urllib.error.URLError, OSError):
        return False


def play(file, target):
    return subprocess.Popen(["pw-play", "--target", target, str(file)], stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL)
