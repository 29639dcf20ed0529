#!/usr/bin/python3
"""Drives the real window through the screens that need keys and takes their pictures: `screens_walk.py BINARY FOLDER
VARIANT`, in a private session with PipeWire. Part of scripts/screens.py."""
import ctypes
import os
import pathlib
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests/support"))
import driver  # noqa: E402
import screens  # noqa: E402
import screens_library  # noqa: E402
import window  # noqa: E402
from gi.repository import Atspi  # noqa: E402
from window import keys  # noqa: E402

BINARY, TARGET, NAME = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
VARIANT = screens.VARIANTS[NAME]
SIZE = f"{VARIANT.width * VARIANT.scale}x{VARIANT.height * VARIANT.scale}"
WORK = pathlib.Path(os.environ["VARNET_TEST_SESSION"])
# A desktop whose colours are dark, as its own files say.
DARK = "".join(f"[Colors:{group}]\nBackgroundNormal=32,33,36\nForegroundNormal=230,230,230\n" for group in ("Window", "View", "Button"))


def start_display():
    reading, writing = os.pipe()
    server = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "Xvfb", "-displayfd", str(writing), "-screen", "0", f"{SIZE}x24",
                               "-nolisten", "tcp", "-noreset"], pass_fds=[writing], stderr=subprocess.DEVNULL)
    os.close(writing)
    os.environ["DISPLAY"] = ":" + os.read(reading, 16).decode().strip()
    return server


def start_application():
    configuration = pathlib.Path(os.environ["XDG_CONFIG_HOME"])
    (configuration / "Varnet/Varnet.conf").write_text(VARIANT.settings(CloseNoticeShown="false"), encoding="utf-8")
    desktop = {}
    if VARIANT.dark:
        (configuration / "kdeglobals").write_text(DARK, encoding="utf-8")
        desktop = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}
    environment = {**window.ENVIRONMENT, **VARIANT.environment(), **desktop, "QT_SCALE_FACTOR": str(VARIANT.scale)}
    application = driver.Application(BINARY, "--storage-root", WORK / "meetings", environment=environment, log=WORK / "varnet.log")
    window.take_focus(application.process.pid)
    subprocess.run(["xdotool", "mousemove", *SIZE.split("x")], check=True)
    return application


def grab():
    return subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", SIZE, "-i",
                           os.environ["DISPLAY"], "-frames:v", "1", "-c:v", "png", "-f", "image2pipe", "-"],
                          capture_output=True, check=True).stdout


def shoot(screen):
    """Keeps the picture once it stands still; what never does, such as a clock, is kept as it is after a while."""
    last, deadline = None, time.monotonic() + 3
    while (picture := grab()) != last and time.monotonic() < deadline:
        last = picture
        time.sleep(0.2)
    (TARGET / f"{screen}_{NAME}.png").write_bytes(picture)


def press(name, role="push button"):
    driver.wait_for(f"the {role} '{name}'", lambda: window.find(role, name))
    control = window.find(role, name)[-1]
    actions = [Atspi.Action.get_action_name(control, index) for index in range(Atspi.Action.get_n_actions(control))]
    Atspi.Action.do_action(control, actions.index("Press"))


def library():
    keys("ctrl+f")
    window.write("card")
    shoot("library-search")
    window.write("zzz")
    shoot("library-no-results")
    keys("ctrl+a", "Delete", "Down", "Home", "shift+Down", "shift+Down")
    shoot("library-selection")
    keys("Home", "F2")
    shoot("library-rename")
    keys("Escape", "Menu")
    shoot("library-row-menu")
    keys("Escape")


def meeting():
    keys("Return", "ctrl+shift+f")
    window.write("friday")
    shoot("meeting-find")
    keys("Escape", "Return")
    shoot("meeting-edit-turn")
    keys("Escape", "ctrl+Tab")
    shoot("meeting-notes")
    keys("ctrl+Tab")
    driver.wait_for("the actions", lambda: window.find("push button", "Transcribe again") or window.find("push button", "More actions"))
    if not window.find("push button", "More actions"):
        press("Transcribe again")
    else:  # there is no room for the words
        press("More actions")
        press("Transcribe again", "menu item")
    shoot("question-transcribe-again")
    keys("Escape")


def settings():
    keys("ctrl+comma")
    for tab in ["general", "recording", "engines", "storage"]:
        shoot(f"settings-{tab}")
        keys("ctrl+Tab")
    keys("Escape")


def menu():
    keys("F10")
    shoot("menu")
    press("Keyboard Shortcuts", "menu item")
    shoot("keyboard-shortcuts")
    keys("Escape")


def deleting():
    keys("ctrl+1", "End", "Delete")
    shoot("library-undo")
    keys("ctrl+2", "Down", "Delete")
    shoot("question-erase")
    keys("Escape")


def recording(application):
    status = lambda: {meeting["status"] for meeting in driver.meetings(WORK / "meetings").values()}
    sounds = [driver.play(next(WORK.glob("meetings/*/imported.wav")), device) for device in ("mic_feed", "speakers")]
    keys("ctrl+1", "ctrl+n")
    driver.wait_for("a recording", lambda: "Recording · transcription offline" in status())
    time.sleep(2)  # for the levels and the clock of the picture
    shoot("recording")
    application.action("toggle-recording")
    driver.wait_for("its end", lambda: "Recording · transcription offline" not in status())
    for sound in sounds:
        sound.kill()


class ClientMessage(ctypes.Structure):
    """What Xlib calls XClientMessageEvent, with the room of a whole XEvent."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int), ("display", ctypes.c_void_p),
                ("window", ctypes.c_ulong), ("kind", ctypes.c_ulong), ("format", ctypes.c_int), ("data", ctypes.c_long * 5),
                ("rest", ctypes.c_long * 12)]


def ask_to_close(window_id):
    """Does what the button of a window manager does: there is none here."""
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XInternAtom.restype = ctypes.c_ulong
    display = ctypes.c_void_p(xlib.XOpenDisplay(None))
    atom = lambda name: xlib.XInternAtom(display, name, False)
    message = ClientMessage(33, 0, 1, display, window_id, atom(b"WM_PROTOCOLS"), 32, (atom(b"WM_DELETE_WINDOW"), 0, 0, 0, 0))
    xlib.XSendEvent(display, ctypes.c_ulong(window_id), False, ctypes.c_long(0), ctypes.byref(message))
    xlib.XCloseDisplay(display)


def closing(application):
    search = ["xdotool", "search", "--onlyvisible", "--pid", str(application.process.pid)]
    ask_to_close(int(subprocess.check_output(search, text=True).split()[-1]))
    shoot("question-close")
    keys("Escape")


def saving():
    """The folders of the meetings turn into files, so that nothing can be saved in them."""
    keys("ctrl+1", "Home", "F2")
    for folder in list((WORK / "meetings").iterdir()):
        folder.rename(WORK / f"away-{folder.name}")
        folder.write_text("", encoding="utf-8")
    window.write("Another title")
    keys("Return")
    shoot("library-not-saved")
    keys("ctrl+q")
    shoot("question-not-saved")


def main():
    screens_library.make("few", WORK)
    display = start_display()
    application = start_application()
    try:
        library()
        meeting()
        settings()
        menu()
        deleting()
        recording(application)
        closing(application)
        saving()
    finally:
        application.kill()
        display.kill()
    return 0


if __name__ == "__main__":
    sys.exit(main())
