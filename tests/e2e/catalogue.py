# The catalogue server of the end-to-end tests: the demonstration's server, in a thread of the test,
# with an answer that can be held back. SPDX-License-Identifier: MIT
import argparse
import contextlib
import os
import pathlib
import socket
import sys
import threading
import time
import typing
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "demo"))

import server  # noqa: E402  (found through the line above)

# How many times as long everything takes with a program that something looks into, such as scripts/valgrind.
PATIENCE = int(os.environ.get("VELOR_PATIENCE", "1"))
HELD_SECONDS = 120 * PATIENCE
LOCK_SECONDS = 240


class Voice(typing.NamedTuple):
    """A product of the catalogue. `shown` is what the page makes of language and name."""

    id: str
    name: str
    language: str
    size: int
    code: str = ""
    kind: str = "Windows Voices"

    @property
    def shown(self):
        return f"{self.language} {self.name}"


def catalogue(*voices):
    """A catalogue of these, as bytes. It has a little of everything that a program which wrote the
    document anew, instead of keeping it as it came, would lose or change."""
    lines = [
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>",
        "<!-- kept: “comments”, <quotes>, line ends -->",
        "<products  version = '1'>",
    ]
    for voice in voices:
        lines += [
            "\t<product>",
            f"<id>{escape(voice.id)}</id>",
            f"<producttype>{voice.kind}</producttype>",
            f"<name>Vocalizer Expressive {escape(voice.name)} Voice</name>",
            f"<language>{escape(voice.language)}</language>",
            f"<size> {voice.size} </size>",
            f"<productcode>{voice.code}</productcode>",
            f"<link><![CDATA[https://localhost/a?b&c={escape(voice.id)}]]></link>",
            "<version/><note></note></product >",
        ]
    return "\r\n".join([*lines, "</products>", "<?end of=file?>"]).encode()


class _Handler(server.Handler):
    def do_GET(self):
        self.server.asked.set()
        if not self.server.released.wait(HELD_SECONDS):
            return
        try:
            super().do_GET()
        finally:
            # Whether or not somebody still listened.
            self.server.answered.set()


class CatalogueServer(server.Server):
    """Serves `body` on `port`; see demo/server.py for the ways to `fail`. With `hold` it answers
    nothing until release()."""

    def __init__(self, folder, authority, port, body=b"", fail=None, hold=False):
        catalogue_file = folder / "served.xml"
        catalogue_file.write_bytes(body)
        super().__init__(
            argparse.Namespace(
                certificate=authority / "server.pem",
                key=authority / "server.key",
                port=port,
                catalogue=catalogue_file,
                fail=fail,
                delay=0,
                verbose=False,
            )
        )
        self.RequestHandlerClass = _Handler
        self.asked = threading.Event()
        self.answered = threading.Event()
        self.released = threading.Event()
        if not hold:
            self.release()
        self._thread = threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True)
        self._thread.start()

    def release(self):
        self.released.set()

    def stop(self):
        self.end()
        self.release()
        self._thread.join()
        self.server_close()


@contextlib.contextmanager
def port_for_oneself(port):
    """The program has its server's port built in, so two builds' tests must not use the same one at
    the same time. A name in the abstract space of sockets is taken for as long as the process that
    took it lives, leaves no file behind, and reaches exactly as far as the port does."""
    lock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    deadline = time.monotonic() + LOCK_SECONDS
    with lock:
        while True:
            try:
                lock.bind(f"\0velor-voice-setup-tests-{port}")
                break
            except OSError:
                if time.monotonic() >= deadline:
                    raise TimeoutError(f"other tests keep port {port} to themselves") from None
                time.sleep(0.1)
        yield


class Canary:
    """Listens on a port that the system chose, where nobody should ever knock."""

    def __init__(self):
        self._socket = socket.create_server(("127.0.0.1", 0))
        self._socket.setblocking(False)
        self.address = f"http://localhost:{self._socket.getsockname()[1]}/"

    def knocked(self):
        """Whether somebody has connected since the last time."""
        try:
            connection, _ = self._socket.accept()
        except BlockingIOError:
            return False
        connection.close()
        return True

    def stop(self):
        self._socket.close()
