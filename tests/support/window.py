"""Reads and presses what the real window shows, over the accessibility bus, and types into it."""
import os
import subprocess

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

import driver  # noqa: E402

ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_QPA_PLATFORM": "xcb", "QT_QUICK_BACKEND": "software"}


def _showing(node):
    """Everything below `node` that can be seen, in its order."""
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child and child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
            yield from _showing(child)


def find(role, name=None):
    """The accessible objects of that role and name that can be seen."""
    while GLib.MainContext.default().iteration(False):
        pass  # what the program announced since the last look
    try:
        return [node for node in _showing(Atspi.get_desktop(0))
                if node.get_role_name() == role and (name is None or node.get_name() == name)]
    except GLib.Error:
        return []  # the window changed meanwhile


def names(role, state=None):
    """The names of everything of that role that can be seen, such as "list item", and is in that state."""
    try:
        return [node.get_name() for node in find(role) if state is None or node.get_state_set().contains(state)]
    except GLib.Error:
        return []


def written(name):
    """What stands in the text fields of that name."""
    return [Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node)) for node in find("text", name)]


def description(role, name):
    """What is said about the control of that name beyond it."""
    return find(role, name)[-1].get_description()


def point(role, name=None):
    """Puts the mouse on the last control of that name, once it can be seen: the one on top."""
    driver.wait_for(f"the {role} '{name}'", lambda: find(role, name))
    place = Atspi.Component.get_extents(find(role, name)[-1], Atspi.CoordType.SCREEN)
    middle = (place.x + place.width // 2, place.y + place.height // 2)
    subprocess.run(["xdotool", "mousemove", *map(str, middle)], check=True)


def click(name, role="push button", times=1):
    """Clicks the last control of that name with the mouse, once it can be seen."""
    point(role, name)
    subprocess.run(["xdotool", "click", "--repeat", str(times), "--delay", "50", "1"], check=True)


def take_focus(process):
    """Gives the keyboard to the window of that process: there is no window manager that would."""
    search = ["xdotool", "search", "--onlyvisible", "--pid", str(process)]
    driver.wait_for("the window", lambda: subprocess.run(search, capture_output=True, check=False).stdout)
    subprocess.run(["xdotool", "windowfocus", "--sync", subprocess.check_output(search, text=True).split()[-1]], check=True)


def keys(*names_of_keys):
    subprocess.run(["xdotool", "key", "--delay", "50", *names_of_keys], check=True)


def write(text):
    subprocess.run(["xdotool", "type", "--delay", "10", text], check=True)


def picture(path):
    subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-draw_mouse", "0", "-video_size", "1280x820",
                    "-i", os.environ["DISPLAY"], "-frames:v", "1", str(path)], check=True)
