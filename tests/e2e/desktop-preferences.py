#!/usr/bin/python3
"""Lets the program's window follow a desktop that changes its mind: the colour scheme, the contrast and the font of a
portal on the private bus, seen in the pixels; and picks files in the portal's dialogs.

usage: desktop-preferences.py PROGRAM
"""
import json
import os
import pathlib
import subprocess
import sys
import threading

from gi.repository import Gio, GLib

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import driver  # noqa: E402
import window  # noqa: E402

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
METHODS = Gio.DBusNodeInfo.new_for_xml("""<node>
  <interface name="org.freedesktop.portal.Settings"><method name="ReadAll">
    <arg type="as" direction="in"/><arg type="a{sa{sv}}" direction="out"/></method></interface>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/></method>
    <method name="SaveFile"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
      <arg type="o" direction="out"/></method><property name="version" type="u" access="read"/></interface></node>""")


class Portal:
    """A portal whose settings are set and whose dialogs are answered by the test."""

    def __init__(self, **settings):
        self.settings = {key: GLib.Variant("u", value) for key, value in settings.items()}
        self.asked = []  # of each dialog the method, the title, the options and where its answer goes
        context = GLib.MainContext.new()
        threading.Thread(target=self._serve, args=[context], daemon=True).start()
        self.ready = threading.Event()
        assert self.ready.wait(20)

    def _serve(self, context):
        context.push_thread_default()
        self.bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"], Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        for interface in METHODS.interfaces:
            self.bus.register_object(PATH, interface, self._answer, lambda *_: GLib.Variant("u", 3), None)
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (NAME, 0)), None, Gio.DBusCallFlags.NONE, -1, None)
        self.ready.set()
        GLib.MainLoop.new(context, False).run()

    def _answer(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "ReadAll":
            invocation.return_value(GLib.Variant("(a{sa{sv}})", ({"org.freedesktop.appearance": self.settings},)))
            return
        _window, title, options = arguments.unpack()
        request = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        self.asked.append((method, title, options, request))

    def change(self, space, key, value):
        self.bus.emit_signal(None, PATH, "org.freedesktop.portal.Settings", "SettingChanged",
                             GLib.Variant("(ssv)", (space, key, value)))

    def dialog(self, count):
        """What the program's last dialog, which is its `count`th, asks for."""
        driver.wait_for(f"dialog {count}", lambda: len(self.asked) == count)
        return self.asked[-1][:3]

    def close(self, *files):
        """The user chooses those files in the last dialog, or cancels it."""
        results = {"uris": GLib.Variant("as", [file.as_uri() for file in files])} if files else {}
        self.bus.emit_signal(None, self.asked[-1][3], "org.freedesktop.portal.Request", "Response",
                             GLib.Variant("(ua{sv})", (0 if files else 1, results)))


def colour(x, y):
    """The colour of one place of the screen, such as "1d1f22"."""
    return subprocess.check_output(["ffmpeg", "-loglevel", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", "1x1", "-i",
                                    f"{os.environ['DISPLAY']}+{x},{y}", "-frames:v", "1", "-f", "rawvideo", "-pix_fmt",
                                    "rgb24", "-"]).hex()


def wait_for_colours(what, **expected):
    places = {"surface": (700, 780), "sidebar": (120, 600), "line": (240, 600)}
    driver.wait_for(what, lambda: all(colour(*places[name]) == value for name, value in expected.items()))


def height():
    return window.Atspi.Component.get_extents(window.find("push button", "All Meetings, 1")[0], 0).height


def main():
    portal = Portal(**{"color-scheme": 1})
    home = pathlib.Path(os.environ["HOME"])
    record = driver.default_root() / "9A1F0C55-33AB-4B0E-8C3B-3B1A8A4D0001" / "meeting.json"
    record.parent.mkdir(parents=True)
    record.write_text(json.dumps({"id": record.parent.name, "title": "Weekly call", "createdAt": 800000000, "turns": [],
                                  "notes": "", "status": "Transcribed"}), encoding="utf-8")
    (home / "picked.wav").write_bytes(b"no audio")
    os.environ.pop("QT_QPA_PLATFORMTHEME", None)  # this test is about the desktop's dialogs
    application = driver.Application(sys.argv[1], environment={**window.ENVIRONMENT, "VARNET_NO_ENGINES": "1",
                                                              "XDG_CURRENT_DESKTOP": "GNOME"})
    window.take_focus(application.process.pid)
    wait_for_colours("dark from the start", surface="1d1f22", sidebar="17181b")
    portal.change("org.freedesktop.appearance", "color-scheme", GLib.Variant("u", 2))
    wait_for_colours("light", surface="ffffff", sidebar="f4f4f2", line="e1e1dd")
    portal.change("org.freedesktop.appearance", "contrast", GLib.Variant("u", 1))
    wait_for_colours("light with high contrast", surface="ffffff", sidebar="ffffff", line="555555")
    portal.change("org.freedesktop.appearance", "color-scheme", GLib.Variant("u", 1))
    wait_for_colours("dark with high contrast", surface="000000", sidebar="000000", line="b0b0b0")

    driver.wait_for("the sidebar", lambda: window.find("push button", "All Meetings, 1"))
    before = height()
    portal.change("org.gnome.desktop.interface", "font-name", GLib.Variant("s", "DejaVu Sans 18"))
    driver.wait_for("a larger font", lambda: height() > before)
    portal.change("org.gnome.desktop.interface", "font-name", GLib.Variant("s", "DejaVu Sans 10"))
    driver.wait_for("the former font", lambda: height() == before)

    window.keys("ctrl+o")
    method, title, options = portal.dialog(1)
    assert (method, title, options["accept_label"]) == ("OpenFile", "Import Audio", "Import"), (method, title, options)
    portal.close()
    driver.wait_for("the end of the dialog", lambda: window.keys("ctrl+o") or len(portal.asked) == 2)
    portal.close(home / "picked.wav")
    titles = lambda: {meeting["title"] for meeting in driver.meetings(driver.default_root()).values()}
    driver.wait_for("the import", lambda: "picked" in titles())
    window.keys("ctrl+1", "Return")
    window.click("Export…")
    method, title, options = portal.dialog(3)
    assert (method, title, options["current_name"]) == ("SaveFile", "Export meeting", "Meeting.md"), (method, title, options)
    portal.close(home / "exported.md")
    driver.wait_for("the export", (home / "exported.md").exists)
    assert application.quit() == 0


main()
