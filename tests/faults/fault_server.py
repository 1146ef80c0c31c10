#!/usr/bin/env python3
# The catalogue's server on a bad day: it serves the cases of cases.py, on loopback only, each to one
# visitor. Standard library only. SPDX-License-Identifier: MIT
"""By hand, with the program that was built for this port:

    tests/faults/fault_server.py CASE --certificates build/linux-debug/local_ca --port 8444

serves that case to everybody who comes, and ends after ten minutes, or when its input closes, or on
Ctrl-C. Without CASE it lists what there is.
"""
import argparse
import pathlib
import socket
import sys
import threading

import cases
from connection import Connection

SECONDS_BY_HAND = 600
HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent / "e2e"))

from catalogue import Canary  # noqa: E402  (found through the line above)


class Visit:
    """What came of one case: the events are set when it got so far."""

    def __init__(self, case):
        self.case = case
        self.arrived = threading.Event()
        self.stalled = threading.Event()


class _Listener:
    """Hands every connection to a thread of its own."""

    def __init__(self, port, serve):
        self._serve = serve
        self._socket = socket.create_server(("127.0.0.1", port), backlog=64)
        self.port = self._socket.getsockname()[1]
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        while True:
            try:
                connection, _ = self._socket.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=(connection,), daemon=True).start()

    def close(self):
        # Closing alone would leave the thread in its call, and the port with it.
        self._socket.shutdown(socket.SHUT_RDWR)
        self._socket.close()


class FaultServer:
    """expect() says what the next visitor gets; who comes unexpectedly is counted as a stranger. A
    second port, `elsewhere`, is where redirects lead; a third one, the canary, is where nobody should
    ever go."""

    def __init__(self, certificates, port):
        self.ending = threading.Event()
        self.key = certificates / "server.key"
        self.strangers = 0
        self._certificates = certificates
        self._port = port
        self._next = []
        self._last = None
        self._lock = threading.Lock()
        self._for_all = None
        self._elsewhere = _Listener(0, self._serve_elsewhere)
        self._canary = Canary()
        self._listener = None
        self.listen()

    def certificate(self, name):
        return self._certificates / f"{name}.pem"

    def elsewhere(self, path="", host="localhost"):
        return f"https://{host}:{self._elsewhere.port}{path}"

    def canary(self):
        return self._canary.address

    def canary_was_touched(self):
        return self._canary.knocked()

    def expect(self, case):
        visit = Visit(case)
        with self._lock:
            self._next.append(visit)
            self._last = case
        return visit

    def serve_everybody(self, case):
        self._for_all = case

    def listen(self):
        if not self._listener:
            self._listener = _Listener(self._port, self._serve)

    def refuse(self):
        """Until listen() is called nobody gets through."""
        if self._listener:
            self._listener.close()
            self._listener = None

    def stop(self):
        self.ending.set()
        self.refuse()
        self._elsewhere.close()
        self._canary.stop()

    def _visit(self):
        if self._for_all:
            return Visit(self._for_all)
        with self._lock:
            if self._next:
                return self._next.pop(0)
            if not self._last or not self._last.alone:
                self.strangers += 1
        return None

    def _serve(self, raw):
        visit = self._visit()
        if not visit:
            raw.close()
            return
        visit.arrived.set()
        self._answer(visit.case.answer, Connection(raw, self, visit))

    def _serve_elsewhere(self, raw):
        self._answer(cases.answer_elsewhere, Connection(raw, self, Visit(None)))

    @staticmethod
    def _answer(answer, connection):
        try:
            answer(connection)
        except (OSError, ConnectionError):
            connection.cut()  # the client has had enough


def end_with_input(server):
    while sys.stdin.buffer.read(4096):
        pass
    server.ending.set()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("case", nargs="?", choices=[case.name for case in cases.CASES], metavar="CASE")
    parser.add_argument("--certificates", type=pathlib.Path, help="a folder of scripts/make-local-ca")
    parser.add_argument("--port", type=int)
    parser.add_argument("--seconds", type=float, default=SECONDS_BY_HAND, help="ends after that time")
    options = parser.parse_args()
    if not options.case:
        for case in cases.CASES:
            print(f"{case.name:32} {case.serves}")
        return
    if not options.certificates or not options.port:
        parser.error("--certificates and --port are needed to serve")
    server = FaultServer(options.certificates, options.port)
    server.serve_everybody(next(case for case in cases.CASES if case.name == options.case))
    threading.Thread(target=end_with_input, args=(server,), daemon=True).start()
    print(f"serving {options.case} on port {options.port}", flush=True)
    try:
        server.ending.wait(options.seconds)
    except KeyboardInterrupt:
        pass
    server.stop()


if __name__ == "__main__":
    main()
