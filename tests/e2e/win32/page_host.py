#!/usr/bin/python3
# The engine behind the stand-in control (control/): WebKitGTK shows the page in a window that is on
# no screen, tells of navigations, and answers what the control is asked. It knows nothing of the
# program. SPDX-License-Identifier: MIT
"""Says "listening on PORT" and ends when its input does.

A control's connection begins with the line "control"; then come lines of fields as page_connection.h
describes. A test's begins with "test"; then each line is a JSON object that is answered with one:

  {"evaluate": "script"}   its value, of the page shown last
  {"journal": true}        what was navigated to, and what the program said: [[what, where, verdict]]
  {"zoom": true}           how many of the window's pixels are one of the page's
"""
import json
import pathlib
import sys
import threading
import urllib.parse

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("WebKit2", "4.1")
from gi.repository import Gio, GLib, Gtk, WebKit2  # noqa: E402  (the versions come first)

# Of the flags by which a program says what a page may do (DISPID_AMBIENT_DLCONTROL).
SHOW_IMAGES = 0x10
NO_SCRIPTS = 0x80
FORCE_OFFLINE = 0x10000000
# A port on which nobody can listen: what goes there goes nowhere.
NOWHERE = "http://127.0.0.1:0"
# Where Wine shows this machine's files.
DRIVE = "file:///Z:/"
NORMAL_DENSITY = 96
SEPARATOR = "\x1f"
FRAME_MILLISECONDS = 40

TAB, ENTER, SPACE = 9, 13, 32

LOOK = """
JSON.stringify(Array.from(%s).filter(Boolean).map(function (element) {
  var found = {};
  Array.from(element.attributes).forEach(function (each) { found[each.name] = 's' + each.value; });
  ['checked', 'disabled'].forEach(function (name) {
    if (name in element) found[name] = element[name] ? 'b1' : 'b0';
  });
  return found;
}))
"""
PRESS = "(function (e) { if (e) { e.focus(); e.click(); } })(document.elementFromPoint(%f, %f)), true"
PLACES = "Array.from(document.querySelectorAll('input:not([disabled]),a[href]'))"
MOVE = """
(function (all, step) {
  var at = all.indexOf(document.activeElement);
  var next = at < 0 ? (step > 0 ? 0 : all.length - 1) : at + step;
  if (next < 0 || next >= all.length) { document.activeElement.blur(); return false; }
  all[next].focus();
  return true;
})(%s, %d)
"""
ENTER_AT = "(function (all) { if (all.length) all[%s].focus(); })(%s), true"
PRESS_FOCUSED = "document.activeElement.click(), true"


class Page:
    """One control's page."""

    def __init__(self, send):
        self._send = send
        self._own = []  # the next navigation is the program's, which has been asked
        self._waiting = {}
        self._fresh = True
        self.journal = []
        context = WebKit2.WebContext.new_ephemeral()
        context.set_sandbox_enabled(False)
        self._context = context
        self._view = WebKit2.WebView.new_with_context(context)
        self._view.connect("decide-policy", self._decide)
        self._view.connect("load-changed", self._load_changed)
        self._view.connect("context-menu", lambda *_: True)
        self._window = Gtk.OffscreenWindow()
        self._window.add(self._view)
        self._window.connect("damage-event", self._painted)
        self._window.show_all()

    def end(self):
        for decision, *_ in self._waiting.values():
            decision.ignore()
        self._window.destroy()

    # -- what the engine does by itself

    def _decide(self, _view, decision, kind):
        if kind == WebKit2.PolicyDecisionType.RESPONSE:
            return False
        address = decision.get_navigation_action().get_request().get_uri()
        if kind == WebKit2.PolicyDecisionType.NAVIGATION_ACTION and address in self._own:
            self._own.remove(address)
            decision.use()
            return True
        what = "navigating" if kind == WebKit2.PolicyDecisionType.NAVIGATION_ACTION else "opening"
        number = len(self.journal)
        self.journal.append([what, address, None])
        self._waiting[number] = (decision, what, address)
        self._send("!", what, number, address)
        return True

    def _load_changed(self, _view, event):
        if event == WebKit2.LoadEvent.FINISHED:
            self._send("!", "complete", self._view.get_uri() or "")

    def _painted(self, *_):
        """Told once for each picture that the control takes."""
        if self._fresh:
            self._fresh = False
            GLib.timeout_add(FRAME_MILLISECONDS, lambda: self._send("!", "painted") and False)

    # -- what the control wants; each answers the fields of its answer, or hands them over later

    def decide(self, answer, number, verdict):
        decision, what, address = self._waiting.pop(int(number))
        self.journal[int(number)][2] = verdict
        # There is no second window here: one that the program lets open is seen in the journal only.
        if verdict == "go" and what == "navigating" and not address.startswith(DRIVE):
            decision.use()
            return
        decision.ignore()
        if verdict == "go" and what == "navigating":
            self._load("file:///" + address.removeprefix(DRIVE))

    def navigate(self, answer, address):
        self.journal.append(["shown", address, "go"])
        path = pathlib.PurePosixPath(address)
        self._load(path.as_uri() if path.is_absolute() else address)
        answer()

    def _load(self, address):
        """Not for the program to decide. Two may be under way."""
        self._own.append(address)
        self._view.load_uri(address)

    def policy(self, answer, flags):
        flags = int(flags)
        settings = self._view.get_settings()
        settings.set_enable_javascript_markup(not flags & NO_SCRIPTS)
        settings.set_auto_load_images(bool(flags & SHOW_IMAGES))
        if flags & FORCE_OFFLINE:
            self._context.get_website_data_manager().set_network_proxy_settings(
                WebKit2.NetworkProxyMode.CUSTOM, WebKit2.NetworkProxySettings.new(NOWHERE, None)
            )
        answer()

    def density(self, answer, dots):
        self._density = int(dots) / NORMAL_DENSITY
        self._view.set_zoom_level(self._density)
        answer()

    def zoom(self, answer, percent):
        self._view.set_zoom_level(self._density * int(percent) / 100)
        answer()

    def size(self, answer, width, height):
        self._view.set_size_request(max(1, int(width)), max(1, int(height)))
        answer()

    @staticmethod
    def _found(by, name):
        quoted = json.dumps(name)
        return {
            "tag": f"document.getElementsByTagName({quoted})",
            "id": f"[document.getElementById({quoted})]",
        }[by]

    def text(self, answer, by, name, index):
        self.evaluate(f"{self._found(by, name)}[{int(index)}].innerText", answer)

    def set(self, answer, by, name, index, attribute, value):
        element = f"{self._found(by, name)}[{int(index)}]"
        change = f"setAttribute({json.dumps(attribute)}, {json.dumps(value)})"
        self.evaluate(f"{element}.{change}, true", lambda _: answer())

    def elements(self, answer, by, name):
        def told(value):
            answer(
                *(
                    SEPARATOR.join(f"{key}={text}" for key, text in element.items())
                    for element in json.loads(value or "[]")
                )
            )

        self.evaluate(LOOK % self._found(by, name), told)

    def click(self, answer, x, y):
        scale = self._view.get_zoom_level()
        self.evaluate(PRESS % (int(x) / scale, int(y) / scale), lambda _: answer())

    def scroll(self, answer, distance):
        self.evaluate(f"scrollBy(0, {int(distance)}), true", lambda _: answer())

    def enter(self, answer, where):
        at = "0" if where == "first" else "all.length - 1"
        self.evaluate(ENTER_AT % (at, PLACES), lambda _: answer())

    def key(self, answer, code, direction):
        script = {
            TAB: MOVE % (PLACES, -1 if direction == "back" else 1),
            SPACE: PRESS_FOCUSED,
            ENTER: PRESS_FOCUSED,
        }.get(int(code), "false")
        self.evaluate(script, lambda value: answer("taken" if value == "true" else "left"))

    def picture(self, answer):
        self._fresh = True
        pixels = self._window.get_pixbuf()
        width, height = pixels.get_width(), pixels.get_height()
        rows, line = pixels.get_pixels(), pixels.get_rowstride()
        data = bytearray(b"".join(rows[at * line : at * line + 4 * width] for at in range(height)))
        data[0::4], data[2::4] = data[2::4], data[0::4]  # red and blue change places
        answer(width, height, len(data), then=bytes(data))

    def evaluate(self, script, told):
        """Tells the value as text; None where the script failed."""

        def finished(view, result):
            try:
                value = view.evaluate_javascript_finish(result).to_string()
            except GLib.Error as error:
                print(f"page_host: {error.message}", file=sys.stderr)
                value = None
            told(value)

        self._view.evaluate_javascript(script, -1, None, None, None, finished)

    def zoom_level(self):
        return self._view.get_zoom_level()


class Host:
    def __init__(self):
        self.pages = []
        self._service = Gio.SocketService()
        _, address = self._service.add_address(
            Gio.InetSocketAddress.new_from_string("127.0.0.1", 0),
            Gio.SocketType.STREAM, Gio.SocketProtocol.TCP, None,
        )
        self.port = address.get_port()
        self._service.connect("incoming", self._incoming)
        self._service.start()

    def _incoming(self, _service, connection, _source):
        Client(self, connection)
        return True


class Client:
    """A connection, of which the first line says whose it is."""

    def __init__(self, host, connection):
        self._host = host
        self._connection = connection
        self._page = None
        self._take = self._introduce
        self._lines = Gio.DataInputStream.new(connection.get_input_stream())
        self._read()

    def _read(self):
        self._lines.read_line_async(GLib.PRIORITY_DEFAULT, None, self._line_came)

    def _line_came(self, lines, result):
        try:
            line, _ = lines.read_line_finish_utf8(result)
        except GLib.Error:
            line = None
        if line is None:
            self._end()
            return
        self._take(line)
        self._read()

    def _end(self):
        if self._page:
            self._host.pages.remove(self._page)
            self._page.end()
        self._connection.close(None)

    def _write(self, data):
        try:
            self._connection.get_output_stream().write_all(data, None)
        except GLib.Error:
            pass  # it has gone, which the next reading tells

    def _introduce(self, line):
        if line == "control":
            self._page = Page(self._send)
            self._host.pages.append(self._page)
            self._take = self._take_control
        else:
            self._take = self._take_test

    # -- a control

    def _send(self, *fields, then=b""):
        encoded = (urllib.parse.quote(str(field), safe=" :/=&,'()\"") for field in fields)
        self._write("\t".join(encoded).encode() + b"\n" + then)

    def _take_control(self, line):
        name, *arguments = map(urllib.parse.unquote, line.split("\t"))
        getattr(self._page, name)(
            lambda *fields, then=b"": self._send("=", *fields, then=then), *arguments
        )

    # -- a test

    def _answer(self, value):
        self._write(json.dumps(value).encode() + b"\n")

    def _take_test(self, line):
        question = json.loads(line)
        if not self._host.pages:
            self._answer(None)
            return
        page = self._host.pages[-1]
        if "evaluate" in question:
            page.evaluate(
                f"JSON.stringify({question['evaluate']})",
                lambda value: self._answer(json.loads(value) if value not in (None, "undefined") else None),
            )
        elif "zoom" in question:
            self._answer(page.zoom_level())
        else:
            self._answer(page.journal)


def end_with_input():
    sys.stdin.read()
    GLib.idle_add(Gtk.main_quit)


def main():
    host = Host()
    threading.Thread(target=end_with_input, daemon=True).start()
    print(f"listening on {host.port}", flush=True)
    Gtk.main()


if __name__ == "__main__":
    main()
