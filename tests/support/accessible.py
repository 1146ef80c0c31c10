# Drives windows the way assistive technology does: things are found by role and name and told to do
# what they do, never by where they are on the screen. Plain functions over AT-SPI, used by the
# end-to-end tests and the demonstration. Depends on /usr/bin/python3 with python3-gi,
# gir1.2-atspi-2.0 and at-spi2-core, and on a session bus. SPDX-License-Identifier: MIT
"""Call switch_on() once, before the program under test starts; then

    window = wait_for(lambda: find_window(process.pid, "Velor Voice Setup"), "the window")
    box = wait_for(lambda: find(window, "check box", "Swedish Erik"), "the voice")
    press(box)
    wait_for(lambda: is_checked(box), "the tick")

Everything that looks answers what is there at that moment, without waiting; wait_for waits. What has
gone meanwhile counts as not there.
"""
import time

import gi

gi.require_version("Atspi", "2.0")
gi.require_version("Gio", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402  (the versions have to be chosen first)

# How deep a tree may be. The page of a browser stands about twelve levels below its window.
_DEEPEST = 40
_PAUSE_SECONDS = 0.05
# Roles by their numbers, which are the same in every version of AT-SPI. Its names are not: a push button
# has become a button.
_ROLES = {
    2: "alert", 7: "check box", 20: "filler", 23: "frame", 27: "image", 29: "label", 39: "panel",
    42: "progress bar", 43: "push button", 49: "scroll pane", 83: "heading", 85: "section",
    95: "document web",
}


class NotSeen(AssertionError):
    """A condition did not come true in its time."""


def switch_on(patience=1):
    """Says on the session bus that assistive technology is there; without it programs stay mute.
    `patience` is how many times as long as else they may take for an answer."""
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    arguments = GLib.Variant(
        "(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))
    )
    bus.call_sync(
        "org.a11y.Bus",
        "/org/a11y/bus",
        "org.freedesktop.DBus.Properties",
        "Set",
        arguments,
        None,
        Gio.DBusCallFlags.NONE,
        -1,
        None,
    )
    Atspi.init()
    # A program that hangs must not hang whoever looks at it.
    Atspi.set_timeout(2000 * patience, 5000 * patience)


def _refresh():
    """Hands out what the bus has brought, so that nothing is answered from memory."""
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)


def wait_for(condition, what, seconds=50):
    """The first answer of `condition` that is true, asked again and again until the deadline.

    Raises NotSeen, which names `what`, when there is none by then.
    """
    deadline = time.monotonic() + seconds
    while True:
        _refresh()
        answer = condition()
        if answer:
            return answer
        if time.monotonic() >= deadline:
            raise NotSeen(f"{what}: not seen in {seconds} seconds")
        time.sleep(_PAUSE_SECONDS)


def _asked(question, otherwise):
    """The question's answer, or `otherwise` where the thing asked has gone."""
    try:
        return question()
    except GLib.Error:
        return otherwise


def children(accessible):
    """Its children; none where it has gone."""
    count = _asked(accessible.get_child_count, 0)
    found = (_asked(lambda at=at: accessible.get_child_at_index(at), None) for at in range(count))
    return [child for child in found if child]


def walk(accessible, skip=(), deepest=_DEEPEST):
    """It and all below it, parents first; nothing of what has one of the roles `skip`, such as the
    page inside a window."""
    if role(accessible) in skip:
        return
    yield accessible
    if deepest > 0:
        for child in children(accessible):
            yield from walk(child, skip, deepest - 1)


def role(accessible):
    """Such as "frame", "push button", "check box", "label", "document web", "alert"."""
    return _ROLES.get(_asked(accessible.get_role, None)) or _asked(accessible.get_role_name, "")


def name(accessible):
    """What it is called: a caption, a label's text, the label that belongs to a check box."""
    return _asked(accessible.get_name, "") or ""


def description(accessible):
    """What is said about it besides; a tool tip stands here."""
    return _asked(accessible.get_description, "") or ""


def text(accessible):
    """The text it shows, or its name where it is no text."""
    interface = _asked(accessible.get_text_iface, None)
    if not interface:
        return name(accessible)
    length = _asked(lambda: Atspi.Text.get_character_count(interface), 0)
    return _asked(lambda: Atspi.Text.get_text(interface, 0, length), "") or name(accessible)


def find_all(accessible, wanted_role, wanted_name=None, skip=()):
    """Everything of that role, and of exactly that name if one is given, in the tree's order."""
    return list(_matching(accessible, wanted_role, wanted_name, skip))


def find(accessible, wanted_role, wanted_name=None, skip=()):
    """The first of them, or None."""
    return next(_matching(accessible, wanted_role, wanted_name, skip), None)


def _matching(accessible, wanted_role, wanted_name, skip):
    for each in walk(accessible, skip):
        if role(each) == wanted_role and (wanted_name is None or name(each) == wanted_name):
            yield each


def windows(process_id=None):
    """The top-level windows and dialogs of all programs, or of one process."""
    found = []
    for program in children(Atspi.get_desktop(0)):
        if process_id is None or _asked(program.get_process_id, -1) == process_id:
            found += children(program)
    return found


def find_window(process_id, title):
    """The window with exactly this title, or None; `process_id` None means any program's."""
    for window in windows(process_id):
        if name(window) == title and is_showing(window):
            return window
    return None


def _has_state(accessible, state):
    return _asked(lambda: accessible.get_state_set().contains(state), False)


def is_showing(accessible):
    return _has_state(accessible, Atspi.StateType.SHOWING)


def is_enabled(accessible):
    """Whether it can be used: its state is both enabled and sensitive."""
    return _has_state(accessible, Atspi.StateType.ENABLED) and _has_state(
        accessible, Atspi.StateType.SENSITIVE
    )


def is_checked(accessible):
    return _has_state(accessible, Atspi.StateType.CHECKED)


def states(accessible):
    """Their names, such as "busy", "checked", "focusable", in alphabetical order."""
    found = _asked(lambda: accessible.get_state_set().get_states(), [])
    return sorted(state.value_nick for state in found)


def has_focus(accessible):
    """Whether keys go to it; False for None, too."""
    return accessible is not None and _has_state(accessible, Atspi.StateType.FOCUSED)


# The events of a text to be spoken: an accessible of the role notification that is shown, or since ATK
# 2.50 a signal.
ANNOUNCEMENTS = ("object:state-changed:showing", "object:notification")


class Listener:
    """Hears what programs tell by themselves, which is what a screen reader speaks of, from its
    construction to close(). `kinds` are such as "document:load-complete" or one of ANNOUNCEMENTS."""

    def __init__(self, *kinds):
        self._kinds = kinds
        self._heard = []
        self._listener = Atspi.EventListener.new(self._hear)
        for kind in kinds:
            self._listener.register(kind)

    def _hear(self, event):
        if event.type == "object:state-changed:showing" and role(event.source) != "notification":
            return
        # A page tells of itself; the others say what is new.
        of_page = event.type.startswith(("object:state-changed:", "document:"))
        text = name(event.source) if of_page else event.any_data
        self._heard.append((event.type, bool(event.detail1), text))

    def heard(self):
        """All so far, as (kind, whether a state came, text)."""
        _refresh()
        return list(self._heard)

    def close(self):
        for kind in self._kinds:
            self._listener.deregister(kind)


def place(accessible):
    """Where it stands on the screen, in pixels: x, y, width and height."""
    return Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)


def press(accessible):
    """Does the one thing it is for: presses a button, ticks a box, follows a link.

    Raises LookupError for what cannot be pressed, and NotSeen when it refuses.
    """
    interface = _asked(accessible.get_action_iface, None)
    if not interface or Atspi.Action.get_n_actions(interface) < 1:
        raise LookupError(f"{role(accessible)} {name(accessible)!r} has no action")
    if not Atspi.Action.do_action(interface, 0):
        raise NotSeen(f"{role(accessible)} {name(accessible)!r} did not do its action")


def outline(accessible, deepest=_DEEPEST):
    """The tree as indented lines of role and name, for the report of a failure."""

    def lines(each, depth):
        yield f"{'  ' * depth}{role(each)} {name(each)!r}"
        if depth < deepest:
            for child in children(each):
                yield from lines(child, depth + 1)

    return "\n".join(lines(accessible, 0))
