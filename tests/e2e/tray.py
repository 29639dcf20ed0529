#!/usr/bin/python3
"""The item in a tray: a test host reads it and its menu over the bus and presses the rows. It records, stops, brings the
closed window back and quits; the host comes late and is restarted; without a host nothing is missing.

usage: tray.py PROGRAM DIALOGUE
"""
import pathlib
import subprocess
import sys

SUPPORT = pathlib.Path(__file__).resolve().parent.parent / "support"
sys.path.insert(0, str(SUPPORT))
import driver  # noqa: E402
import window  # noqa: E402
from gi.repository import Gio, GLib  # noqa: E402

WATCHER = "org.kde.StatusNotifierWatcher"
INTERFACE = Gio.DBusNodeInfo.new_for_xml(f"""<node><interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg direction="in" type="s"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/></interface></node>""").interfaces[0]


class Host:
    """A tray that keeps what the item last told it, as the ones of desktops do."""

    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.item, self.rows, self.signals = None, {}, []
        self.objects = [self.bus.register_object("/StatusNotifierWatcher", INTERFACE, self.register, self.tell, None)]
        self.name = Gio.bus_own_name_on_connection(self.bus, WATCHER, Gio.BusNameOwnerFlags.NONE, None, None)
        self.listening = self.bus.signal_subscribe(None, None, None, None, None, Gio.DBusSignalFlags.NONE, self.hear)
        self.wait("the item in the tray", lambda: self.item)

    def close(self):
        Gio.bus_unown_name(self.name)
        self.bus.signal_unsubscribe(self.listening)
        self.bus.unregister_object(self.objects[0])

    def register(self, _connection, sender, _path, _interface, _method, arguments, invocation):
        assert arguments.unpack() == (sender,), arguments
        self.item = sender
        invocation.return_value(None)
        layout = self.menu("GetLayout", "(iias)", 0, -1, [])[1]
        self.rows = {row[0]: row[1] for row in layout[2]}

    def tell(self, *_arguments):
        return GLib.Variant("b", True)

    def hear(self, _connection, sender, _path, _interface, signal, arguments):
        if sender != self.item or signal not in ("NewIcon", "NewToolTip", "ItemsPropertiesUpdated", "LayoutUpdated"):
            return
        self.signals.append(signal)
        if signal == "ItemsPropertiesUpdated":
            for row, changed in arguments.unpack()[0]:
                self.rows[row].update(changed)

    def wait(self, what, condition):
        def looked():
            while GLib.MainContext.default().iteration(False):
                pass
            return condition()
        driver.wait_for(what, looked)

    def menu(self, method, kinds, *arguments):
        return self.bus.call_sync(self.item, "/MenuBar", "com.canonical.dbusmenu", method, GLib.Variant(kinds, arguments),
                                  None, Gio.DBusCallFlags.NONE, 5000, None).unpack()

    def get(self, name):
        return self.bus.call_sync(self.item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                  GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", name)), None,
                                  Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]

    def tooltip(self):
        return self.get("ToolTip")[3]

    def labels(self):
        """What stands in the menu now; what cannot be chosen is in brackets."""
        return ["-" if row["type"] == "separator" else row["label"] if row["enabled"] else f"[{row['label']}]"
                for row in self.rows.values() if row["visible"]]

    def token(self, token):
        self.bus.call_sync(self.item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "ProvideXdgActivationToken",
                           GLib.Variant("(s)", (token,)), None, Gio.DBusCallFlags.NONE, 5000, None)

    def press(self, label):
        row, = [row for row, its in self.rows.items() if its["label"].startswith(label) and its["visible"]]
        self.menu("Event", "(isvu)", row, "clicked", GLib.Variant("i", 0), 0)


def inks(pictures):
    """The colours that cover the middle picture's dots wholly, as (red, green, blue)."""
    width, height, data = pictures[2]
    assert len(data) == width * height * 4, (width, height, len(data))
    return {tuple(data[dot + 1:dot + 4]) for dot in range(0, len(data), 4) if data[dot] == 255}


def user_time(application):
    of_process = ["xdotool", "search", "--onlyvisible", "--pid", str(application.process.pid)]
    id_of_window = subprocess.check_output(of_process, text=True).split()[-1]
    told = subprocess.check_output(["xprop", "-id", id_of_window, "_NET_WM_USER_TIME"], text=True)
    return int(told.rsplit(" ", 1)[1])


def shown():
    return bool(window.names("push button"))


def main():
    program = sys.argv[1]
    log = driver.data_home() / "application.log"
    application = driver.Application(program, log=log, environment=window.ENVIRONMENT)
    driver.wait_for("the window without a tray", shown)

    host = Host()  # it comes late
    assert host.labels()[:3] == ["New Recording", "-", "Open Zelvik"], host.labels()
    assert host.labels()[-3:] == ["-", "Settings", "Quit Zelvik"], host.labels()
    assert host.labels()[4].startswith("[Speech engine: ") and host.labels()[5].startswith("[Notes engine: ")
    assert (host.get("Id"), host.get("Title"), host.get("Status")) == ("org.varnet.Varnet", "Zelvik", "Active")
    assert host.tooltip() == "Not recording" and inks(host.get("IconPixmap")) == {(0x75, 0x75, 0x75)}

    host.close()
    host = Host()  # it was restarted
    host.press("New Recording")
    host.wait("the recording", lambda: host.labels()[0].startswith("Stop Recording · 0:0"))
    meeting, = driver.meetings(driver.default_root()).values()
    assert host.labels()[1:4] == [f"[{' '.join(meeting['title'].split())}]", "-", "Open Zelvik"], host.labels()
    assert host.tooltip().startswith("Recording · 0:0") and inks(host.get("IconPixmap")) == {(0xdc, 0x35, 0x45)}
    host.signals.clear()
    host.wait("the clock", lambda: host.labels()[0] == "Stop Recording · 0:03")
    assert set(host.signals) == {"NewToolTip", "ItemsPropertiesUpdated"} and len(host.signals) <= 8, host.signals
    host.press("Stop Recording")
    host.wait("the stop", lambda: host.labels()[0] == "New Recording")
    assert host.tooltip() == "Not recording"

    window.take_focus(application.process.pid)
    window.keys("ctrl+w")
    driver.wait_for("what is said once", lambda: any("in the tray" in name for name in window.names("label")))
    window.click("Close the window")
    driver.wait_for("the closed window", lambda: not shown())
    host.token("panel_TIME4242")  # the moment of the click, as startup ids of X11 have it
    host.press("Open Zelvik")
    driver.wait_for("the window again", shown)
    assert user_time(application) == 4242
    host.press("Quit Zelvik")
    assert application.process.wait(30) == 0
    assert "qt.qpa" not in log.read_text() and "tray" not in log.read_text(), log.read_text()


main()
