# The ways to answer, well and badly, of which cases.py is put together. Each makes a function that is
# handed a Connection and answers there. A body is bytes, or a function of the server where it holds an
# address of it. SPDX-License-Identifier: MIT
import time
import zlib

MEGABYTE = 1 << 20
PIECE = b" " * 65536


def _bytes(body, connection):
    return body(connection.server) if callable(body) else body


def bare(behave):
    """From the bare socket on."""
    return behave


def secured(behave, **tls):
    """From the end of the hand-shake on."""

    def answer(connection):
        connection.secure(**tls)
        behave(connection)

    return answer


def asked(behave, **tls):
    """From the end of the request on."""

    def answer(connection):
        connection.request()
        behave(connection)

    return secured(answer, **tls)


def reply(body, status=200, *headers, kind="application/xml", length=None, **tls):
    """A whole answer with these bytes; `length` is what is said of them."""

    def answer(connection):
        data = _bytes(body, connection)
        fields = [f"Content-Type: {kind}"] if kind else []
        said = len(data) if length is None else length
        connection.send_head(status, *fields, f"Content-Length: {said}", *headers)
        connection.send(data)
        connection.close()

    return asked(answer, **tls)


def raw(data):
    """Exactly these bytes, whatever they are."""

    def answer(connection):
        connection.send(data)
        connection.close()

    return asked(answer)


def in_chunks(*pieces, last=b"0\r\n\r\n", end="close"):
    """`pieces` as chunks, then the last one; cut or reset instead of the end where that is asked."""

    def answer(connection):
        connection.send_head(200, "Transfer-Encoding: chunked")
        for piece in pieces:
            connection.send_chunk(piece)
        connection.send(last)
        getattr(connection, end)()

    return asked(answer)


def until_the_end(data, end="close"):
    """Without a length: what the end of the connection completes."""

    def answer(connection):
        connection.send_head(200, "Connection: close")
        connection.send(data)
        getattr(connection, end)()

    return asked(answer)


def short(data, more, end="close"):
    """Announced as longer by `more` bytes."""

    def answer(connection):
        connection.send_head(200, f"Content-Length: {len(data) + more}")
        connection.send(data)
        getattr(connection, end)()

    return asked(answer)


def slowly(data, pieces, pause):
    def answer(connection):
        connection.send_head(200, f"Content-Length: {len(data)}")
        size = -(-len(data) // pieces)
        for start in range(0, len(data), size):
            time.sleep(pause)
            connection.send(data[start : start + size])
        connection.close()

    return asked(answer)


def for_ever(piece, pause=0, head=b""):
    """`piece` again and again until the client has had enough, or the server ends."""

    def answer(connection):
        connection.send(head)
        connection.visit.stalled.set()
        while not connection.server.ending.wait(pause):
            connection.send(piece)

    return asked(answer)


def redirect_to(address, status=302):
    """To an address, or to what a function makes of the server; to nowhere without one."""

    def answer(connection):
        location = address(connection.server) if callable(address) else address
        fields = [f"Location: {location}"] if location else []
        connection.send_head(status, *fields, "Content-Length: 0", "Connection: close")
        connection.close()

    return asked(answer)


def redirect(status, path, **where):
    """To a path of the second port."""
    return redirect_to(lambda server: server.elsewhere(path, **where), status)


def bomb(megabytes, start=b"<products>"):
    """So many blanks, compressed to a thousandth without being held in memory."""
    press = zlib.compressobj(9, zlib.DEFLATED, 31)
    pieces = [press.compress(start)]
    pieces += [press.compress(PIECE) for _ in range(megabytes * MEGABYTE // len(PIECE))]
    return b"".join([*pieces, press.compress(b"</products>"), press.flush()])
