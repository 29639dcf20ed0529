"""What a screen must be like for people who do not see it or have no mouse: looked at over the accessibility bus, and
walked through with the Tab key."""
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

import driver  # noqa: E402
import window  # noqa: E402

State = Atspi.StateType
OVER = ("dialog", "popup menu")  # come up over the window and have the keyboard for themselves
CONTROLS = ("push button", "toggle button", "menu item", "check menu item", "page tab", "check box", "radio button")
VALUES = ("slider", "spin button")
SHAPELESS = ("unknown", "filler", "panel", "invalid", "layered pane")
BY_ARROWS = ("list item", "menu item", "check menu item")

_arrived = []


def _note(event):
    if event.detail1:
        _arrived.append(event.source)


_listener = Atspi.EventListener.new(_note)
_listener.register("object:state-changed:focused")


def _is(node, state):
    return node.get_state_set().contains(state)


def said(node):
    return f"{node.get_role_name()} “{node.get_name()}”"


def _nodes(node, parent):
    yield node, parent
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child and _is(child, State.SHOWING):
            yield from _nodes(child, node)


def nodes():
    """Everything of the window that can be seen, each with its parent; only what lies on top, if something does."""
    for _ in range(20):
        while GLib.MainContext.default().iteration(False):
            pass
        Atspi.get_desktop(0).clear_cache()
        try:
            found = [pair for frame in window.find("frame") for pair in _nodes(frame, frame.get_parent())]
        except GLib.Error:
            continue  # the window changed meanwhile
        over = [node for node, _ in found if node.get_role_name() in OVER]
        return list(_nodes(over[-1], over[-1].get_parent())) if over else found
    raise AssertionError("the window does not come to rest")


def faults(found):
    """What is wrong with these nodes, in words."""
    for node, parent in found:
        role, state = node.get_role_name(), node.get_state_set()
        if not node.get_name() and role != "separator":
            yield f"{role} in {said(parent)} has no name"
        if role in SHAPELESS and state.contains(State.FOCUSABLE):
            yield f"{said(node)} takes the focus and does not say what it is"
        if role == "label" and parent.get_role_name() in CONTROLS:
            yield f"{said(node)} repeats {said(parent)}"
        if role in VALUES and not Atspi.Value.get_maximum_value(node) > Atspi.Value.get_minimum_value(node):
            yield f"{said(node)} has no range"
        if role == "progress bar" and not node.get_description():  # Qt tells no value of it
            yield f"{said(node)} does not say how far it is"
        if role == "text" and not (state.contains(State.EDITABLE) or state.contains(State.READ_ONLY)):
            yield f"{said(node)} does not say whether it can be edited"


def _listen(seconds, enough=False):
    """Takes in what gets the focus for so long; with `enough` until something does."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline and not (enough and _arrived):
        GLib.MainContext.default().iteration(False)
        time.sleep(0.002)


def tab():
    """Presses Tab and gives what got the focus; nothing if the focus stayed where it was."""
    del _arrived[:]
    window.keys("Tab")
    _listen(3, enough=True)
    return list(_arrived)


def walk(found):
    """Goes round with Tab to where it began: every control must be reached, and each must be in view when it is."""
    no_stop = (*BY_ARROWS, *OVER, "label")  # Qt calls every label focusable
    waiting = {node for node, _ in found if _is(node, State.FOCUSABLE) and node.get_role_name() not in no_stop}
    begin = {node for node, _ in found if _is(node, State.FOCUSED)}
    reached = []
    _listen(0.1)
    for _ in range(2 * len(waiting) + 4):
        arrived = tab()
        for node in arrived:
            assert _is(node, State.SHOWING), f"{said(node)} has the focus out of sight"
            assert node.get_name(), f"a {node.get_role_name()} without a name has the focus"
        if not arrived or arrived[0] in reached[:1]:
            break
        reached += arrived
        if begin.intersection(arrived):
            break  # the focus is where it was
    assert reached or begin or not waiting, "the focus got lost"
    missed = waiting - begin - set(reached) - {node.get_parent() for node in reached}  # a list hands the focus on to its row
    assert not missed, "Tab does not reach " + ", ".join(map(said, missed)) + "; it went to " + ", ".join(map(said, reached))


def check():
    """Fails with everything that is wrong with the screen that is up."""
    found = nodes()
    wrong = list(faults(found))
    assert not wrong, "; ".join(wrong)
    walk(found)


def seen(role, words, *states):
    """Whether something of that role on top shows these words and is in these states."""
    return any(node.get_role_name() == role and words in node.get_name() and all(_is(node, state) for state in states)
               for node, _ in nodes())


def go_to(name):
    """Presses Tab until the control of that name has the focus."""
    _listen(0.1)  # the keys before
    for _ in range(60):
        if any(node.get_name() == name for node in tab()):
            _listen(0.1)
            if _arrived[-1].get_name() == name:  # and stays there
                return
    raise AssertionError(f"Tab does not reach “{name}”")
