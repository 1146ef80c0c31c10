# What the network and the server may do to the program, and what it has to make of that: one table, as
# data. tests/e2e/linux/ and tests/e2e/win32/ serve and see each case; docs/reliability.md shows it, and
# scripts/lint/faults holds the two together. SPDX-License-Identifier: MIT
import gzip
import pathlib
import sys
import typing
import zlib

HERE = pathlib.Path(__file__).resolve().parent
sys.path += [str(HERE), str(HERE.parent / "e2e")]

import answers  # noqa: E402  (found through the line above)
from answers import asked, bare, in_chunks, raw, redirect, redirect_to, reply, secured, short  # noqa: E402
from answers import for_ever, slowly, until_the_end  # noqa: E402
from catalogue import Voice, catalogue  # noqa: E402
from connection import http_2_context, middle_aged_context, outdated_context  # noqa: E402

# The window goes, and two messages come.
FAILURE = "failure"
# Under Wine, where 64 MB come 8 KB at a time and take minutes on a busy machine: one such case is enough.
NOT_TRIED = "not tried"

# How long a case may take until its outcome is seen, counted from the program's start. Generous, since
# these run on busy machines.
SECONDS = 60
# The program's own patience with a server that says nothing.
IDLE_SECONDS = 30
SECONDS_OF_IDLENESS = IDLE_SECONDS + SECONDS
# Where tens of megabytes have to come and be looked at.
SECONDS_OF_A_LARGE_ANSWER = 240


class Page(typing.NamedTuple):
    """The voices page with these rows, or with so many of which these are the first."""

    rows: tuple
    count: int

    def __str__(self):
        if self.count == 0:
            return "page without rows"
        shown = ", ".join(name if len(name) < 40 else name[:20] + "…" for name in self.rows)
        more = f" and so on, {self.count:,} rows" if self.count > len(self.rows) else ""
        return "page: " + shown + more


class PageOrFailure(Page):
    """The page where the library that reads the answer takes it for whole, otherwise the failure."""

    def __str__(self):
        return super().__str__() + ", or failure (libsoup of Debian 13)"


def page(*rows, count=None):
    return Page(rows, len(rows) if count is None else count)


class Case(typing.NamedTuple):
    name: str
    serves: str
    answer: typing.Callable
    linux: typing.Any
    windows: typing.Any = None  # the same as on Linux
    # The server falls silent: there is a second case, in which the window is closed meanwhile.
    stalls: bool = False
    # It is waited for what the program makes of the silence.
    waited_out: bool = True
    # The shipped program, whose server nobody knows.
    shipped: bool = False
    # Nobody listens.
    refused: bool = False
    # Comes to the server more than once, and so while no other program does.
    alone: bool = False
    # Looked for in the page's file alone: engine and reader of a page so large would take long, and
    # the boxes of one id share a name.
    in_file: bool = False
    large: bool = False

    def outcome(self, system):
        return self.windows if system == "windows" and self.windows is not None else self.linux

    @property
    def takes_idleness(self):
        return self.stalls and self.waited_out

    @property
    def seconds(self):
        if self.takes_idleness:
            return SECONDS_OF_IDLENESS
        return SECONDS_OF_A_LARGE_ANSWER if self.large else SECONDS


AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
CATALOGUE = catalogue(AGNES)
HALF = CATALOGUE[: len(CATALOGUE) // 2]
GOOD = page("Hungarian Ágnes")
EMPTY = page()
CUT_HEAD = b"HTTP/1.1 200 OK\r\nContent-Type: applica"
HEAD = b"HTTP/1.1 200 OK\r\n"
LONG_NAME = "N" * (10 << 20)


def product(name, language="Hungarian", number="7", size="75000000", kind="Windows Voices"):
    return (
        f"<product><id>{number}</id><producttype>{kind}</producttype><name>{name}</name>"
        f"<language>{language}</language><size>{size}</size></product>"
    )


def document(content, declaration='<?xml version="1.0"?>', root="<products>"):
    return f"{declaration}{root}{content}</products>"


def text(content, encoding="utf-8", mark=b"", **options):
    """A document of one voice as bytes."""
    return mark + document(content, **options).encode(encoding)


def declared(encoding, name, codec=None, language="Hungarian", mark=b""):
    """A voice of this name in an encoding that is said."""
    declaration = f'<?xml version="1.0" encoding="{encoding}"?>'
    return text(product(name, language), codec or encoding, mark, declaration=declaration)


def undeclared(name, codec, mark=b""):
    return text(product(name), codec, mark, declaration="")


def with_bytes(data):
    """The voice's name is these bytes, in a document that says UTF-8."""
    whole = declared("UTF-8", "@", "utf-8")
    return whole.replace(b"@", data)


def nested(depth):
    return document("<a>" * depth + "</a>" * depth + product("Ágnes")).encode()


def doctype(inner, content=""):
    declaration = f'<?xml version="1.0"?><!DOCTYPE products {inner}>'
    return document(content + product("Ágnes"), declaration).encode()


def lead_to_canary(pattern):
    """A body with the address where nobody may go in place of `@`."""
    return lambda server: pattern.replace("@", server.canary()).encode()


def many_voices(count):
    rows = (
        product(f"Number {n:06}", number=str(n), size="1000000") for n in range(count)
    )
    return document("".join(rows)).encode()


def entities():
    """Each of which is ten of the one before."""
    lines = ['<!ENTITY a0 "ha">']
    lines += [f'<!ENTITY a{n} "{f"&a{n - 1};" * 10}">' for n in range(1, 10)]
    return doctype(f"[{''.join(lines)}]", "<x>&a9;</x>")


def head(*fields):
    return HEAD + b"\r\n".join([*fields, b"", b""])


def length(data=CATALOGUE):
    return b"Content-Length: %d" % len(data)


PORTAL = b"<html><head><title>Welcome</title><body><p>Please log in<br><form action=/login></form></html>"
TIDY_PORTAL = b"<html xmlns='http://www.w3.org/1999/xhtml'><body><p>Please log in</p></body></html>"


def answer_elsewhere(connection):
    """What the second port says: /catalogue, /portal, /loop, and /hops/N, of which N are left."""
    connection.secure()
    what, _, rest = connection.request()[1:].partition("/")
    bodies = {"catalogue": (200, CATALOGUE), "portal": (200, PORTAL)}
    if what in bodies:
        status, body = bodies[what]
        connection.send_head(status, f"Content-Length: {len(body)}", "Connection: close")
        connection.send(body)
    else:
        further = {"loop": "/loop", "hops": f"/hops/{int(rest or 0) - 1}"}[what]
        if further == "/hops/0":
            further = "/catalogue"
        location = f"Location: {connection.server.elsewhere(further)}"
        connection.send_head(302, location, "Content-Length: 0", "Connection: close")
    connection.close()


def _statuses():
    for status in (400, 401, 403, 404, 407, 410, 429, 451, 500, 501, 502, 503, 504, 511, 599):
        yield Case(f"status-{status}", f"{status}, with the whole catalogue",
                   reply(CATALOGUE, status), FAILURE)
    for status in (404, 500, 503):
        yield Case(f"status-{status}-empty", f"{status}, without a body", reply(b"", status), FAILURE)
        yield Case(f"status-{status}-html", f"{status}, with a page",
                   reply(PORTAL, status, kind="text/html"), FAILURE)
    for challenge in ("Basic realm=voices", "Negotiate", "NTLM"):
        kind = challenge.split()[0]
        yield Case(f"asks-for-{kind.lower()}-login", f"401, and wants to know who asks ({kind})",
                   reply(CATALOGUE, 401, f"WWW-Authenticate: {challenge}"), FAILURE)


def _redirects():
    for status in (301, 302, 303, 307, 308):
        # Wine follows neither of these two.
        windows = FAILURE if status in (303, 308) else None
        yield Case(f"redirect-{status}", f"{status} to another port over https",
                   redirect(status, "/catalogue"), GOOD, windows)
    for status in (300, 304, 305, 306):
        yield Case(f"redirect-{status}", f"{status}, with the whole catalogue",
                   reply(CATALOGUE, status), FAILURE)


CASES = [
    # -- the network
    Case("in-order", "a catalogue in order", reply(CATALOGUE), GOOD),
    Case("name-not-found", "a name that nobody knows", None, FAILURE, shipped=True),
    Case("refused", "nobody listens", None, FAILURE, refused=True, alone=True),
    Case("closed-at-once", "closes the connection without a word", bare(lambda c: c.close()), FAILURE),
    Case("reset-at-once", "resets the connection without a word", bare(lambda c: c.reset()), FAILURE),
    Case("closed-before-answer", "closes after the request", asked(lambda c: c.close()), FAILURE),
    Case("reset-before-answer", "resets after the request", asked(lambda c: c.reset()), FAILURE),
    Case("reset-in-head", "resets inside the head",
         asked(lambda c: (c.send(CUT_HEAD), c.reset())), FAILURE),
    Case("closed-in-head", "closes inside the head",
         asked(lambda c: (c.send(CUT_HEAD), c.close())), FAILURE),
    Case("reset-in-body", "resets after half of the body", short(HALF, len(HALF), "reset"), FAILURE),
    Case("short-body", "half of the announced body, then a proper end", short(HALF, len(HALF)), FAILURE),
    Case("short-body-well-formed", "a whole catalogue, announced as longer",
         short(CATALOGUE, 100), FAILURE),
    Case("short-body-cut", "the same, and the connection is cut", short(CATALOGUE, 1, "cut"), FAILURE),
    Case("long-body", "more than was announced, which is a whole catalogue",
         reply(CATALOGUE + b"<junk", length=len(CATALOGUE)), GOOD),
    Case("until-the-end", "no length: the end of the connection completes it",
         until_the_end(CATALOGUE), GOOD),
    Case("until-the-end-cut", "a whole catalogue without a length, and the connection is cut",
         until_the_end(CATALOGUE, "cut"), FAILURE, GOOD),
    Case("chunks", "in chunks", in_chunks(HALF, CATALOGUE[len(HALF):]), GOOD),
    Case("trailers", "in chunks, with headers after the last one",
         in_chunks(CATALOGUE, last=b"0\r\nX-Checksum: 1\r\n\r\n"), GOOD),
    Case("cut-chunk", "cut inside a chunk",
         in_chunks(HALF, last=b"%x\r\n%s" % (len(CATALOGUE), CATALOGUE[len(HALF) : -30]), end="cut"),
         FAILURE),
    Case("cut-before-last-chunk", "a whole catalogue, cut before the last chunk",
         in_chunks(CATALOGUE, last=b"", end="cut"), FAILURE, GOOD),
    Case("ended-before-last-chunk", "the same with a proper end of the connection",
         in_chunks(CATALOGUE, last=b""), PageOrFailure(*GOOD), GOOD),
    Case("bad-chunk", "a chunk whose length is no number",
         in_chunks(HALF, last=b"zz\r\nabc\r\n0\r\n\r\n"), FAILURE),
    Case("huge-chunk", "a chunk of 16 exabytes", in_chunks(HALF, last=b"FFFFFFFFFFFFFFFF\r\nabc"), FAILURE),
    # -- silence
    Case("silent-before-tls", "accepts, and says nothing", bare(lambda c: c.stall()), FAILURE, stalls=True),
    Case("silent-after-tls", "falls silent after the hand-shake", secured(lambda c: c.stall()), FAILURE,
         stalls=True, waited_out=False),
    Case("silent-before-answer", "falls silent after the request",
         asked(lambda c: c.stall()), FAILURE, stalls=True),
    Case("silent-in-head", "falls silent inside the head",
         asked(lambda c: (c.send(CUT_HEAD), c.stall())), FAILURE, stalls=True, waited_out=False),
    Case("silent-before-body", "falls silent after the head",
         asked(lambda c: (c.send_head(200, "Content-Length: 100"), c.stall())),
         FAILURE, stalls=True, waited_out=False),
    Case("silent-in-body", "falls silent inside the body",
         short(HALF, len(HALF), "stall"), FAILURE, stalls=True),
    Case("silent-before-last-chunk", "falls silent before the last chunk",
         in_chunks(CATALOGUE, last=b"", end="stall"), FAILURE, stalls=True, waited_out=False),
    Case("head-without-end", "a line of the head every second, without end",
         for_ever(b"X-More: and more\r\n", 1, HEAD), FAILURE, stalls=True),
    Case("slow-drip", "the body in twenty pieces, a tenth of a second apart",
         slowly(CATALOGUE, 20, 0.1), GOOD),
    Case("drip-without-end", "a blank every tenth of a second, without end",
         for_ever(b" ", 0.1, HEAD + b"Connection: close\r\n\r\n<products>"),
         FAILURE, stalls=True, waited_out=False),
    # -- empty, and too much
    Case("empty-body", "200 and nothing", reply(b""), FAILURE),
    Case("status-204", "204", raw(b"HTTP/1.1 204 None\r\n\r\n"), FAILURE),
    Case("status-203", "203, with the whole catalogue", reply(CATALOGUE, 203), GOOD),
    Case("endless-body", "a body without end",
         for_ever(answers.PIECE, 0, HEAD + b"Connection: close\r\n\r\n<products>"), FAILURE, large=True),
    Case("endless-chunks", "chunks without end",
         for_ever(b"10000\r\n" + answers.PIECE + b"\r\n", 0, HEAD + b"Transfer-Encoding: chunked\r\n\r\n"),
         FAILURE, NOT_TRIED, large=True),
    Case("huge-length", "announces a million terabytes, and begins",
         for_ever(answers.PIECE, 0, HEAD + b"Content-Length: 1152921504606846976\r\n\r\n<products>"),
         FAILURE, NOT_TRIED, large=True),
    Case("gzip-bomb", "65 MB of blanks, compressed to 64 KB",
         reply(answers.bomb(65), 200, "Content-Encoding: gzip"), FAILURE, large=True),
    Case("gzip", "compressed, asked or not",
         reply(gzip.compress(CATALOGUE), 200, "Content-Encoding: gzip"),
         GOOD, FAILURE),
    Case("gzip-cut", "compressed and cut off, with a length that fits",
         reply(gzip.compress(CATALOGUE)[:-20], 200, "Content-Encoding: gzip"), FAILURE),
    Case("gzip-untrue", "said to be compressed, and not",
         reply(CATALOGUE, 200, "Content-Encoding: gzip"), GOOD),
    Case("deflate", "compressed with deflate",
         reply(zlib.compress(CATALOGUE), 200, "Content-Encoding: deflate"),
         GOOD, FAILURE),
    Case("unknown-coding", "said to be in a coding that nobody knows",
         reply(CATALOGUE, 200, "Content-Encoding: x-unknown"), GOOD),
    # -- statuses. Wine takes an address that is neither http nor https for a path of the same server.
    *_redirects(),
    Case("redirect-loop", "a redirect to itself", redirect(302, "/loop"), FAILURE),
    Case("redirect-five-times", "five redirects in a row, then the catalogue",
         redirect(302, "/hops/4"), GOOD),
    Case("redirect-too-often", "twelve redirects in a row, then the catalogue",
         redirect(302, "/hops/11"), FAILURE),
    Case("redirect-to-http", "a redirect to http", redirect_to(lambda s: s.canary()), FAILURE),
    Case("redirect-to-other-host", "a redirect to a host that cannot say who it is",
         redirect(302, "/catalogue", host="127.0.0.1"), FAILURE),
    Case("redirect-to-unknown-host", "a redirect to a name that nobody knows",
         redirect_to("https://voices.example/voices.xml"), FAILURE),
    Case("redirect-to-file", "a redirect to a file", redirect_to("file:///etc/hostname"), FAILURE, alone=True),
    Case("redirect-to-data", "a redirect to an address that is a document",
         redirect_to("data:text/xml,<r/>"), FAILURE, alone=True),
    Case("redirect-to-nowhere", "a redirect that does not say where to", redirect_to(None), FAILURE),
    Case("redirect-to-portal", "a redirect to a page of somebody else's",
         redirect(302, "/portal"), FAILURE),
    *_statuses(),
    Case("captive-portal", "200 and a page to log in", reply(PORTAL, kind="text/html"), FAILURE),
    Case("captive-portal-tidy", "the same, well-formed",
         reply(TIDY_PORTAL, kind="application/xhtml+xml"), EMPTY),
    # -- heads
    Case("no-http", "something else than HTTP", raw(b"220 mail.example ready\r\n"), FAILURE),
    Case("old-http", "HTTP/1.0", raw(b"HTTP/1.0 200 OK\r\n" + length() + b"\r\n\r\n" + CATALOGUE), GOOD),
    Case("http-2", "a server that prefers HTTP/2", reply(CATALOGUE, context=http_2_context), GOOD),
    Case("no-head", "the catalogue without a head", raw(CATALOGUE), FAILURE),
    Case("status-no-number", "a status that is no number",
         raw(b"HTTP/1.1 abc OK\r\n" + length() + b"\r\n\r\n" + CATALOGUE), FAILURE),
    Case("status-999", "999, with the whole catalogue", reply(CATALOGUE, 999), FAILURE),
    Case("huge-head", "a megabyte of head",
         raw(head(b"X-A: " + b"a" * (1 << 20), length()) + CATALOGUE), FAILURE, GOOD),
    Case("negative-length", "a length below nothing",
         raw(head(b"Content-Length: -1") + CATALOGUE), FAILURE),
    Case("two-lengths", "two lengths that differ",
         raw(head(length(), b"Content-Length: 5") + CATALOGUE), FAILURE, GOOD),
    Case("early-hints", "103 and 100 before the answer",
         raw(b"HTTP/1.1 103 Hints\r\n\r\nHTTP/1.1 100 Continue\r\n\r\n" + head(length()) + CATALOGUE),
         GOOD, FAILURE),
    Case("wrong-type", "said to be a picture", reply(CATALOGUE, kind="image/png"), GOOD),
    Case("no-type", "no type at all", reply(CATALOGUE, kind=None), GOOD),
    Case("wrong-charset", "said to be in another character set",
         reply(CATALOGUE, kind="text/xml; charset=utf-16"), GOOD),
    # -- encodings
    Case("utf-8-mark", "UTF-8 with mark", reply(declared("UTF-8", "Ágnes", "utf-8-sig")), GOOD),
    Case("utf-8-undeclared", "UTF-8, not declared", reply(undeclared("Ágnes", "utf-8")), GOOD),
    Case("utf-8-undeclared-mark", "UTF-8 with mark, not declared",
         reply(undeclared("Ágnes", "utf-8-sig")), GOOD),
    Case("utf-16le-mark", "UTF-16, little end first, with mark",
         reply(declared("UTF-16", "Ágnes", "utf-16-le", mark=b"\xff\xfe")), GOOD),
    Case("utf-16be-mark", "UTF-16, big end first, with mark",
         reply(declared("UTF-16", "Ágnes", "utf-16-be", mark=b"\xfe\xff")), GOOD),
    Case("utf-16le", "UTF-16, little end first, without mark",
         reply(declared("UTF-16", "Ágnes", "utf-16-le")), GOOD),
    Case("utf-16be", "UTF-16, big end first, without mark",
         reply(declared("UTF-16", "Ágnes", "utf-16-be")), GOOD),
    Case("utf-16-undeclared-mark", "UTF-16 with mark, not declared",
         reply(undeclared("Ágnes", "utf-16-le", b"\xff\xfe")), GOOD),
    Case("utf-16-odd", "UTF-16 with half a character at its end",
         reply(declared("UTF-16", "Ágnes", "utf-16-le", mark=b"\xff\xfe") + b"<"), GOOD),
    Case("utf-32-mark", "UTF-32 with mark",
         reply(declared("UTF-32", "Ágnes", "utf-32-le", mark=b"\xff\xfe\0\0")), FAILURE),
    Case("utf-32", "UTF-32 without mark", reply(declared("UTF-32", "Ágnes", "utf-32-be")), FAILURE),
    Case("utf-7", "UTF-7", reply(declared("UTF-7", "Ágnes", "utf-7")), GOOD, FAILURE),
    Case("iso-8859-1", "ISO-8859-1", reply(declared("ISO-8859-1", "Ágnes")), GOOD),
    Case("iso-8859-15", "ISO-8859-15",
         reply(declared("ISO-8859-15", "Š€", language="Slovak")), page("Slovak Š€")),
    Case("windows-1251", "windows-1251",
         reply(declared("windows-1251", "Ирина", language="Russian")), page("Russian Ирина")),
    Case("koi8-r", "KOI8-R",
         reply(declared("KOI8-R", "Ирина", language="Russian")), page("Russian Ирина"), FAILURE),
    Case("shift-jis", "Shift_JIS",
         reply(declared("Shift_JIS", "花子", language="Japanese")), page("Japanese 花子"), FAILURE),
    Case("gb18030", "GB18030",
         reply(declared("GB18030", "小美", language="Chinese")), page("Chinese 小美"), FAILURE),
    Case("ebcdic", "IBM037, whose every letter is elsewhere",
         reply(declared("IBM037", "Agnes", "cp037")), page("Hungarian Agnes"), FAILURE),
    Case("declared-utf-16", "declared as UTF-16, and UTF-8",
         reply(declared("UTF-16", "Ágnes", "utf-8")), FAILURE),
    Case("declared-utf-8", "declared as UTF-8, and ISO-8859-1",
         reply(declared("UTF-8", "Ágnes", "latin-1")), FAILURE),
    Case("declared-ascii", "declared as ASCII, and UTF-8",
         reply(declared("US-ASCII", "Ágnes", "utf-8")), FAILURE),
    Case("declared-unknown", "declared as an encoding that nobody knows",
         reply(declared("X-UNKNOWN", "Ágnes", "utf-8")), FAILURE),
    Case("mark-against-declaration", "the mark of UTF-16, declared as UTF-8",
         reply(declared("UTF-8", "Ágnes", "utf-16-le", mark=b"\xff\xfe")), GOOD),
    # -- characters
    Case("nul", "a NUL inside", reply(with_bytes(b"a\0b")), FAILURE),
    Case("nul-behind", "a NUL behind the root element", reply(CATALOGUE + b"\0"), FAILURE),
    Case("control", "a control character", reply(with_bytes(b"a\x01b")), FAILURE),
    Case("control-reference", "a reference to a control character", reply(with_bytes(b"a&#1;b")), FAILURE),
    Case("nul-reference", "a reference to NUL", reply(with_bytes(b"a&#0;b")), FAILURE),
    Case("delete", "the control characters that XML allows",
         reply(with_bytes(b"a\x7f\xc2\x85b")), page("Hungarian a\x7f\x85b")),
    Case("not-a-character", "U+FFFF", reply(with_bytes(b"a\xef\xbf\xbfb")), FAILURE),
    Case("lone-surrogate", "half of a pair", reply(with_bytes(b"a\xed\xa0\x80b")), FAILURE),
    Case("overlong", "a slash in two bytes", reply(with_bytes(b"a\xc0\xafb")), FAILURE),
    # -- sizes and shapes
    Case("many-voices", "100,000 voices", reply(many_voices(100_000)),
         page("Hungarian Number 000000", "Hungarian Number 000001", count=100_000), in_file=True, large=True),
    Case("long-name", "a name of 10 MB", reply(document(product(LONG_NAME)).encode()),
         page("Hungarian " + LONG_NAME), in_file=True, large=True),
    Case("deep", "elements 200 deep", reply(nested(200)), GOOD),
    Case("too-deep", "elements 10,000 deep", reply(nested(10_000)), FAILURE),
    Case("two-roots", "two root elements", reply(CATALOGUE + b"<products/>"), FAILURE),
    Case("no-root", "a declaration and nothing more", reply(b'<?xml version="1.0"?>'), FAILURE),
    Case("blank-before", "a blank before the declaration", reply(b" " + CATALOGUE), FAILURE),
    Case("version-1-1", "XML 1.1",
         reply(text(product("Ágnes"), declaration='<?xml version="1.1"?>')), GOOD),
    Case("other-root", "another root element, as the format allows",
         reply(CATALOGUE.replace(b"products", b"catalogue")), GOOD),
    Case("duplicate-ids", "two voices of one id",
         reply(text(product("Ágnes") + product("Milan", "Slovak"))),
         page("Hungarian Ágnes", "Slovak Milan"), in_file=True),
    Case("duplicate-attributes", "an attribute that comes twice",
         reply(text(product("Ágnes"), root="<products a='1' a='2'>")), FAILURE),
    # -- what a document may ask a parser for
    Case("doctype", "a document type, and nothing more", reply(doctype("")), FAILURE),
    Case("doctype-internal", "an internal subset", reply(doctype('[<!ENTITY n "Ágnes">]')), FAILURE),
    Case("doctype-external", "an external subset",
         reply(lead_to_canary('<!DOCTYPE products SYSTEM "@"><products/>')), FAILURE),
    Case("doctype-public", "a public identifier",
         reply(lead_to_canary('<!DOCTYPE products PUBLIC "-//x//y//EN" "@"><products/>')), FAILURE),
    Case("entity-external", "an external entity, used",
         reply(lead_to_canary('<!DOCTYPE products [<!ENTITY n SYSTEM "@">]>' + document(product("&n;"), ""))),
         FAILURE),
    Case("entity-file", "an entity that is a file, used",
         reply(text(product("&n;"), declaration='<!DOCTYPE products [<!ENTITY n SYSTEM "file:///etc/hostname">]>')),
         FAILURE),
    Case("entity-parameter", "a parameter entity, used",
         reply(lead_to_canary('<!DOCTYPE products [<!ENTITY % n SYSTEM "@"> %n;]><products/>')), FAILURE),
    Case("entities-nested", "a billion laughs", reply(entities()), FAILURE),
    Case("entity-undeclared", "an entity that nothing declares", reply(with_bytes(b"a&nbsp;b")), FAILURE),
    Case("namespace-default", "all in a namespace, where nothing is a product",
         reply(text(product("Ágnes"), root="<products xmlns='urn:x'>")), EMPTY),
    Case("namespace-prefix", "a product with a prefix beside one without",
         reply(text("<p:product xmlns:p='urn:x'/>" + product("Ágnes"))), GOOD),
    Case("namespace-undeclared", "a prefix that nothing declares",
         reply(text("<p:product/>" + product("Ágnes"))), FAILURE, GOOD),
    Case("instruction", "instructions, one of which names a style sheet",
         reply(lead_to_canary(document(
             "<?php exit ?>" + product("Ágnes"), '<?xml version="1.0"?><?xml-stylesheet type="text/xsl" href="@"?>'
         ))),
         GOOD),
    Case("instruction-xml", "a second declaration inside",
         reply(text('<?xml version="1.0"?>' + product("Ágnes"))), FAILURE),
    Case("inclusion", "wants something included",
         reply(lead_to_canary(document(
             "<i:include xmlns:i='http://www.w3.org/2001/XInclude' href='@'/>" + product("Ágnes")
         ))),
         GOOD),
    Case("schema", "names a schema",
         reply(lead_to_canary(document(product("Ágnes"), root=(
             "<products xmlns:x='http://www.w3.org/2001/XMLSchema-instance' x:noNamespaceSchemaLocation='@'>"
         )))), GOOD),
    # -- trust
    Case("tls-1-2", "TLS 1.2, and nothing newer", reply(CATALOGUE, context=middle_aged_context), GOOD),
    Case("tls-expired", "a certificate that has expired", reply(CATALOGUE, certificate="expired"), FAILURE),
    Case("tls-early", "a certificate of the future", reply(CATALOGUE, certificate="early"), FAILURE),
    Case("tls-other-name", "a certificate for another name",
         reply(CATALOGUE, certificate="elsewhere"), FAILURE),
    Case("tls-self-signed", "a certificate that vouches for itself",
         reply(CATALOGUE, certificate="alone"), FAILURE),
    Case("tls-stranger", "a certificate of an authority that nobody knows",
         reply(CATALOGUE, certificate="stranger"), FAILURE),
    Case("tls-outdated", "nothing newer than TLS 1.1", reply(CATALOGUE, context=outdated_context), FAILURE),
    Case("tls-cut", "the connection is cut inside the hand-shake",
         bare(lambda c: (c.socket.recv(64), c.cut())), FAILURE),
    Case("tls-reset", "the connection is reset inside the hand-shake",
         bare(lambda c: (c.socket.recv(64), c.reset())), FAILURE),
    Case("tls-half", "the connection is cut after half of the server's first words",
         bare(lambda c: (c.socket.recv(4096), c.send(b"\x16\x03\x03\x00\x7a\x02\x00\x00\x76\x03\x03"), c.cut())),
         FAILURE),
    Case("tls-none", "plain HTTP where TLS is spoken",
         bare(lambda c: (c.socket.recv(4096), c.send(head(length()) + CATALOGUE), c.cut())), FAILURE),
    Case("tls-noise", "noise where TLS is spoken",
         bare(lambda c: (c.socket.recv(4096), c.send(bytes(range(256)) * 9), c.cut())), FAILURE),
]

# Under the sanitizers a program takes several times as long, and the libraries misbehave no
# differently: there one run for each way through our own code is enough. Under Wine it is what the
# program gets; the others go to a document alone.
FEW = (
    "in-order", "closed-at-once", "reset-in-body", "short-body", "cut-chunk", "chunks",
    "silent-before-tls, closed", "silent-before-answer, closed", "silent-in-body, closed",
    "drip-without-end, closed", "empty-body", "endless-body", "gzip", "gzip-bomb", "redirect-301",
    "redirect-loop", "redirect-to-http", "status-404", "captive-portal", "captive-portal-tidy",
    "huge-head", "utf-16le-mark", "declared-utf-8", "nul", "long-name", "too-deep", "duplicate-ids",
    "entities-nested", "entity-external", "namespace-undeclared", "tls-expired", "tls-outdated", "tls-cut",
)
