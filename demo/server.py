#!/usr/bin/python3
# The demonstration's download server: one catalogue, over HTTPS, on loopback only. The standard
# library serves; nothing here is for use beyond the machine. SPDX-License-Identifier: MIT
"""Serves GET /downloads/voices.xml over HTTPS on loopback.

Prints "listening on PORT" in a line of its own when it is ready. It ends when the time given with
--seconds is over, when its standard input closes (--until-input-closes), or on SIGTERM; so nothing
is left behind by a caller that dies.
"""
import argparse
import errno
import http.server
import pathlib
import signal
import socket
import ssl
import sys
import threading

HERE = pathlib.Path(__file__).resolve().parent
CATALOGUE_PATH = "/downloads/voices.xml"
FAILURES = ("not-found", "server-error", "not-xml", "cut-short", "no-answer")


class Handler(http.server.BaseHTTPRequestHandler):
    server_version = "VelorDemonstration"
    protocol_version = "HTTP/1.1"
    # A client that connects and says nothing does not keep its thread for ever.
    timeout = 60

    def do_GET(self):
        options = self.server.options
        if self.path != CATALOGUE_PATH:
            self.send_error(404)
            return
        # Over at once when the server ends meanwhile.
        self.server.ending.wait(options.delay)
        body = pathlib.Path(options.catalogue).read_bytes()
        getattr(self, "answer_" + (options.fail or "well").replace("-", "_"))(body)

    def answer_well(self, body):
        self.send_body(200, "application/xml", body)

    def answer_not_found(self, body):
        # The catalogue comes along: the status alone has to make this a failure.
        self.send_body(404, "application/xml", body)

    def answer_server_error(self, body):
        self.send_body(500, "application/xml", body)

    def answer_not_xml(self, _body):
        self.send_body(200, "text/html", b"<html><p>Down for maintenance<br></html>")

    def answer_cut_short(self, body):
        self.send_response(200)
        self.send_header("Content-Type", "application/xml")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body[: len(body) // 2])
        self.close_connection = True

    def answer_no_answer(self, _body):
        self.server.ending.wait()
        self.close_connection = True

    def send_body(self, status, kind, body):
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *arguments):
        if self.server.options.verbose:
            super().log_message(*arguments)


class Server(http.server.ThreadingHTTPServer):
    # "localhost" may mean either family; a client tries both, so one is enough.
    address_family = socket.AF_INET
    # A second server on the same port has to fail, not to take over half of the requests.
    allow_reuse_port = False

    def __init__(self, options):
        self.options = options
        self.ending = threading.Event()
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.load_cert_chain(options.certificate, options.key)
        super().__init__(("127.0.0.1", options.port), Handler)

    def finish_request(self, request, client_address):
        # The handshake belongs to the connection's own thread, so that a slow client holds up
        # nobody but itself.
        request.settimeout(Handler.timeout)
        with self.context.wrap_socket(request, server_side=True) as connection:
            super().finish_request(connection, client_address)

    def handle_error(self, request, client_address):
        # A client that trusts the certificate not, or that was closed meanwhile, is no fault here.
        if self.options.verbose:
            super().handle_error(request, client_address)

    def end(self):
        self.ending.set()
        self.shutdown()


def end_with_input(server):
    while sys.stdin.buffer.read(4096):
        pass
    server.end()


def end_after(server, seconds):
    server.ending.wait(seconds)
    server.end()


def start(function, *arguments):
    threading.Thread(target=function, args=arguments, daemon=True).start()


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--certificate", required=True, help="PEM file, for DNS:localhost")
    parser.add_argument("--key", required=True, help="its key")
    parser.add_argument("--port", type=int, default=0, help="0: the system chooses")
    parser.add_argument("--catalogue", default=HERE / "voices.xml")
    parser.add_argument("--seconds", type=float, help="ends by itself after that time")
    parser.add_argument("--until-input-closes", action="store_true")
    parser.add_argument("--delay", type=float, default=0, help="seconds before each answer")
    parser.add_argument("--fail", choices=FAILURES, help="answers badly, in this way")
    parser.add_argument("--verbose", action="store_true")
    return parser.parse_args()


def main():
    options = parse_arguments()
    try:
        server = Server(options)
    except OSError as error:
        if error.errno == errno.EADDRINUSE:
            sys.exit(f"server.py: port {options.port} is taken by another program")
        raise
    signal.signal(signal.SIGTERM, lambda *_: start(server.end))
    signal.signal(signal.SIGINT, lambda *_: start(server.end))
    if options.until_input_closes:
        start(end_with_input, server)
    if options.seconds:
        start(end_after, server, options.seconds)
    print(f"listening on {server.server_address[1]}", flush=True)
    server.serve_forever(poll_interval=0.1)
    server.server_close()


if __name__ == "__main__":
    main()
