#!/usr/bin/env python3
# A server on loopback that answers well, badly or not at all, as the path of the request says. It
# takes a free port, says it on its first line of output, and ends when its input does.
#
#   https_server.py --folder FOLDER --log FILE [--certificate PEM --key PEM]
#
# Without a certificate it speaks plain http; over TLS it offers HTTP/2 as well and prefers it, but has
# no answer in it. FOLDER holds the bodies. FILE gets a line of JSON for every connection and every
# request. `file` below names a file of the folder:
#
#   /file/NAME                   the file
#   /status/CODE?file=           the file with another status
#   /redirect?to=ADDRESS&status= a redirect
#   /loop                        a redirect to itself
#   /gzip?file=                  the file compressed
#   /gzip-cut?file=              the beginning of that, with a length that fits it
#   /blanks?megabytes=           so many blanks behind an element
#   /bomb?megabytes=             the same compressed
#   /unannounced?file=           the file without a length, up to the connection's end
#   /cut-unannounced?file=       the same, and the connection is cut
#   /cut?file=                   the file, announced as longer, and the connection is cut
#   /cut-chunks?file=            the file in a chunk that is not the last, and the connection is cut
#   /silent                      nothing
#   /stall?file=                 the file, announced as longer, then nothing
#   /drip?file=&pieces=&pause=   the file in pieces with a pause (seconds) before each
#   /cookie?to=ADDRESS           a redirect that sets a cookie
import argparse
import gzip
import http.server
import json
import os
import ssl
import sys
import threading
import time
import urllib.parse

arguments = argparse.ArgumentParser()
arguments.add_argument("--folder", required=True)
arguments.add_argument("--log", required=True)
arguments.add_argument("--certificate")
arguments.add_argument("--key")
options = arguments.parse_args()
log_lock = threading.Lock()


def log(entry):
    with log_lock, open(options.log, "a", encoding="utf-8") as file:
        file.write(json.dumps(entry) + "\n")


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        protocol = self.connection.selected_alpn_protocol() if context else None
        log({"request": self.path, "headers": dict(self.headers), "protocol": protocol})
        address = urllib.parse.urlsplit(self.path)
        self.query = {key: values[0] for key, values in urllib.parse.parse_qs(address.query).items()}
        _, what, *rest = address.path.split("/")
        self.rest = rest
        try:
            getattr(self, "answer_" + what.replace("-", "_"))()
        except (BrokenPipeError, ConnectionResetError, ssl.SSLError):
            self.close_connection = True

    def body(self):
        with open(os.path.join(options.folder, os.path.basename(self.query["file"])), "rb") as file:
            return file.read()

    def send(self, body, status=200, length=None, **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)
        self.wfile.flush()

    def end_here(self):
        self.close_connection = True

    # Without the word that TLS has for it.
    def cut(self):
        self.wfile.flush()
        self.connection.cut = True
        self.end_here()

    def wait_for_the_end(self):
        self.connection.settimeout(60)
        try:
            self.rfile.read(1)
        except OSError:
            pass
        self.end_here()

    def answer_file(self):
        self.query["file"] = self.rest[0]
        self.send(self.body())

    def answer_status(self):
        self.send(self.body() if "file" in self.query else b"", int(self.rest[0]))

    def answer_redirect(self):
        self.send(b"", int(self.query.get("status", 302)), Location=self.query["to"])

    def answer_loop(self):
        self.send(b"", 302, Location="/loop")

    def answer_cookie(self):
        self.send(b"", 302, Location=self.query["to"], Set_Cookie="seen=1; Path=/")

    def answer_gzip(self):
        self.send(gzip.compress(self.body()), Content_Encoding="gzip")

    def answer_gzip_cut(self):
        compressed = gzip.compress(self.body())
        self.send(compressed[: len(compressed) - 12], Content_Encoding="gzip")

    def blanks(self):
        return b"<a/>" + b" " * (int(self.query["megabytes"]) << 20)

    def answer_blanks(self):
        self.send(self.blanks())

    def answer_bomb(self):
        self.send(gzip.compress(self.blanks()), Content_Encoding="gzip")

    def answer_cut(self):
        body = self.body()
        self.send(body, length=2 * len(body))
        self.cut()

    def answer_cut_chunks(self):
        self.send_response(200)
        self.send_header("Transfer-Encoding", "chunked")
        self.end_headers()
        body = self.body()
        self.wfile.write(b"%x\r\n%s\r\n" % (len(body), body))
        self.cut()

    def answer_unannounced(self):
        self.send_response(200)
        self.send_header("Connection", "close")
        self.end_headers()
        self.wfile.write(self.body())
        self.end_here()

    def answer_cut_unannounced(self):
        self.answer_unannounced()
        self.cut()

    def answer_silent(self):
        self.wait_for_the_end()

    def answer_stall(self):
        body = self.body()
        self.send(body, length=2 * len(body))
        self.wait_for_the_end()

    def answer_drip(self):
        body, pieces = self.body(), int(self.query["pieces"])
        size = -(-len(body) // pieces)
        self.send(b"", length=len(body))
        for start in range(0, len(body), size):
            time.sleep(float(self.query["pause"]))
            self.wfile.write(body[start : start + size])
            self.wfile.flush()


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def verify_request(self, request, client_address):
        log({"connection": client_address[1]})
        return True

    # The hand-shake belongs to the connection's thread: a client that breaks it off stops nobody else.
    def finish_request(self, request, client_address):
        try:
            if context:
                request = context.wrap_socket(request, server_side=True)
            super().finish_request(request, client_address)
            if context:
                if not hasattr(request, "cut"):
                    request.unwrap()
                request.close()
        except OSError:
            pass

    def handle_error(self, *_):
        pass


context = None
if options.certificate:
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(options.certificate, options.key)
    context.set_alpn_protocols(["h2", "http/1.1"])
open(options.log, "a", encoding="utf-8").close()
server = Server(("127.0.0.1", 0), Handler)
threading.Thread(target=server.serve_forever, daemon=True).start()
print(server.server_address[1], flush=True)
sys.stdin.read()
