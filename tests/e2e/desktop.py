# What a person does with hands, and what the window manager knows: keys, the pointer, closing a
# window, which window is in front. Through xdotool, wmctrl and xprop, on the tests' own display.
# SPDX-License-Identifier: MIT
import subprocess
import sys

# Covers everything, has the focus, says so, and stays until its input ends.
_COVER = """
import sys, threading, gi
gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk
window = Gtk.Window(title="Something else")
window.set_default_size(900, 900)
window.show_all()
end = lambda: (sys.stdin.read(), GLib.idle_add(Gtk.main_quit))
threading.Thread(target=end, daemon=True).start()
Gtk.main()
"""


def xdotool(*arguments):
    """What it says; empty where it finds nothing."""
    result = subprocess.run(
        ["xdotool", *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    )
    return result.stdout.strip()


def _managed_windows():
    """The numbers of the windows that the window manager knows, the front one last: no tool tips."""
    listing = subprocess.run(
        ["xprop", "-root", "-notype", "_NET_CLIENT_LIST_STACKING"],
        stdout=subprocess.PIPE, text=True, check=True,
    ).stdout
    numbers = listing.partition("#")[2].split(",")
    return [str(int(number, 16)) for number in numbers if number.strip()]


def windows_of(process_id):
    """The numbers of the process's visible windows."""
    found = xdotool("search", "--onlyvisible", "--all", "--pid", process_id, "--name", ".*")
    managed = _managed_windows()
    return [number for number in found.split() if number in managed]


def active_window():
    """The number of the window that has the focus."""
    return xdotool("getactivewindow")


def front_window():
    """The number of the window that no other covers; empty where there is none."""
    return next(reversed(_managed_windows()), "")


def keys(*names):
    """Typed one after the other, wherever the focus is."""
    for name in names:
        xdotool("key", "--clearmodifiers", name)


def use_layout(name):
    """Of the keyboard, such as "ru"."""
    subprocess.run(["setxkbmap", name], check=True)


def introduce_keyboard():
    """To be called before the window is opened whose keys matter. At the first key of a keyboard the
    display tells everyone of it, and the window manager asks for its own keys anew; what is typed
    meanwhile may miss it. It manages later windows when that is done."""
    keys("Shift_L")


def click(x, y):
    xdotool("mousemove", "--sync", x, y, "click", 1)


def ask_to_close(window, gone_is_good=False):
    """As the close button of its frame does."""
    command = ["wmctrl", "-i", "-c", hex(int(window))]
    subprocess.run(command, check=not gone_is_good, stderr=subprocess.DEVNULL if gone_is_good else None)


def open_other_window():
    """The process of another program, whose window soon has the focus; it ends with its input."""
    return subprocess.Popen([sys.executable, "-c", _COVER], stdin=subprocess.PIPE)
