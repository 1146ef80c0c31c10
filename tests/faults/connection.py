# One client's connection as a server that may misbehave sees it: from the bare socket on, through TLS
# and the request, to every way of not answering well. Standard library only.
# SPDX-License-Identifier: MIT
import socket
import ssl
import struct
import warnings

# Longer than any client waits.
PATIENCE_SECONDS = 90
HEAD_LIMIT = 64 * 1024


def tls_context(certificate, key):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    return context


def http_2_context(certificate, key):
    """HTTP/2 preferred, and HTTP/1.1. Answers are written in the latter."""
    context = tls_context(certificate, key)
    context.set_alpn_protocols(["h2", "http/1.1"])
    return context


def middle_aged_context(certificate, key):
    """Nothing newer than TLS 1.2, as on older servers."""
    context = tls_context(certificate, key)
    context.maximum_version = ssl.TLSVersion.TLSv1_2
    return context


def outdated_context(certificate, key):
    """Nothing newer than TLS 1.1, which the library gives out only when it is asked to be careless."""
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", DeprecationWarning)
        context.minimum_version = ssl.TLSVersion.TLSv1
        context.maximum_version = ssl.TLSVersion.TLSv1_1
    context.set_ciphers("ALL:@SECLEVEL=0")
    context.load_cert_chain(certificate, key)
    return context


class Connection:
    """`server` is asked for certificates and for the addresses that answers lead to; `visit` is told
    how far things went."""

    def __init__(self, raw, server, visit):
        self.socket = raw
        self.server = server
        self.visit = visit
        self._raw = raw
        raw.settimeout(PATIENCE_SECONDS)

    # -- the beginning

    def secure(self, certificate="server", context=tls_context):
        made = context(self.server.certificate(certificate), self.server.key)
        self.socket = self._raw = made.wrap_socket(self.socket, server_side=True)

    def request(self):
        """Reads the request's head; the path it asks for."""
        head = b""
        while b"\r\n\r\n" not in head and len(head) < HEAD_LIMIT:
            more = self.socket.recv(4096)
            if not more:
                raise ConnectionError("the client has gone")
            head += more
        return head.split(b" ", 2)[1].decode("ascii", "replace")

    # -- answers

    def send(self, data):
        self.socket.sendall(data)

    def send_head(self, status=200, *headers, version="1.1"):
        lines = [f"HTTP/{version} {status} So", *headers, "", ""]
        self.send("\r\n".join(lines).encode("latin-1"))

    def send_chunk(self, data):
        self.send(b"%x\r\n%s\r\n" % (len(data), data))

    # -- the end

    def close(self):
        """As a sound server does: TLS is told, and then the network."""
        try:
            if isinstance(self.socket, ssl.SSLSocket):
                self.socket.settimeout(2)
                self.socket = self.socket.unwrap()
        except OSError:
            pass
        self.cut()

    def cut(self):
        """The network is told alone."""
        try:
            self.socket.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        self.socket.close()

    def reset(self):
        """As when a cable is pulled somewhere and a machine between answers in the server's place."""
        # On, and no time: what is not sent yet is thrown away.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.socket.close()

    def stall(self):
        """Says nothing more until the client goes or the server ends."""
        self.visit.stalled.set()
        self.socket.settimeout(0.5)
        while not self.server.ending.is_set():
            try:
                if not self.socket.recv(4096):
                    break
            except TimeoutError:
                continue
        self.cut()
