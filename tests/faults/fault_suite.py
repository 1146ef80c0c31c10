# Runs the cases of cases.py, several programs at a time: each in a place of its own (Slot), all
# against one server. The two end-to-end suites say how a program is started and looked at.
# SPDX-License-Identifier: MIT
import contextlib
import html.parser
import json
import os
import pathlib
import sys
import tempfile
import time
import typing

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE))

import cases  # noqa: E402  (found through the line above)
from catalogue import PATIENCE, port_for_oneself  # noqa: E402  (found by cases)
from fault_server import FaultServer  # noqa: E402

PAUSE_SECONDS = 0.03
# How long each other step may take; generous, since many programs share the machine.
STEP_SECONDS = 60


class Result(typing.NamedTuple):
    """What came of a case: the outcome, and how long it took from the program's start on. For a case
    in which the window was closed: whether a page was written, and the time from closing on until the
    message that follows."""

    outcome: typing.Any
    seconds: float


class _Labels(html.parser.HTMLParser):
    """The texts of a page's labels."""

    def __init__(self, page):
        super().__init__()
        self.names = []
        self._inside = False
        self.feed(page)
        self.close()

    def handle_starttag(self, tag, _):
        self._inside = tag == "label"
        if self._inside:
            self.names.append("")

    def handle_endtag(self, tag):
        self._inside = self._inside and tag != "label"

    def handle_data(self, data):
        if self._inside:
            self.names[-1] += data


class Rows(list):
    """What was seen counts as seen, though there may be nothing in it."""

    def __bool__(self):
        return True


def names_on(page):
    """Those of all rows in the page's file; None while it is not whole."""
    text = page.read_bytes().decode("utf-16", "replace")
    return Rows(_Labels(text).names) if text.rstrip().endswith("</html>") else None


class Slot:
    """A place for one program at a time. To be made for each system: start(), look_for_failure(),
    look_for_page(), look_for_rows(), ask_to_close(), look_for_prompt(), answer_message(),
    look_for_end(), end_now(), report(), leave(). Those that look answer at once, and nothing where it is
    not there yet."""

    def __init__(self, server, page_file):
        self.server = server
        self.page_file = page_file

    @staticmethod
    def takes(_run):
        """Whether this run belongs to such a place."""
        return True

    # -- each is a generator that pauses where it waits, so that the others get on meanwhile

    def wait(self, look, what, seconds=STEP_SECONDS):
        deadline = time.monotonic() + seconds * PATIENCE
        while not (seen := look()):
            if time.monotonic() >= deadline:
                raise AssertionError(f"{what}: not seen in {seconds} seconds\n{self.report()}")
            yield
        return seen

    def begin(self, case):
        """Starts a program for this case, and waits until it has come to the server."""
        self.page_file.unlink(missing_ok=True)
        visit = None if case.refused or case.shipped else self.server.expect(case)
        self.start(case)
        started = time.monotonic()
        if visit:
            yield from self.wait(visit.arrived.is_set, "the program's connection")
        return visit, started

    def run_through(self, case, started):
        found = yield from self.wait(self._look_for_outcome, "an outcome", case.seconds)
        seconds = time.monotonic() - started
        if found == cases.FAILURE:
            self.answer_message()
        else:
            found = yield from self.wait(self.look_for_rows, "the rows")
            self.ask_to_close((yield from self.wait(self.look_for_window, "the window")))
        yield from self.end()
        if found == cases.FAILURE and self.page_file.exists():
            raise AssertionError("a page was written though there is nothing to show")
        return Result(found, seconds)

    def _look_for_outcome(self):
        return self.look_for_failure() or self.look_for_page()

    def close_meanwhile(self, visit):
        yield from self.wait(visit.stalled.is_set, "the server's silence")
        window = yield from self.wait(self.look_for_window, "the window")
        self.ask_to_close(window)
        asked = time.monotonic()
        yield from self.wait(self.look_for_prompt, "the message that follows closing")
        seconds = time.monotonic() - asked
        # A second message would keep the program.
        yield from self.end()
        return Result(self.page_file.exists(), seconds)

    def end(self):
        yield from self.wait(self.look_for_prompt, "the message that comes last")
        self.answer_message()
        yield from self.wait(self.look_for_end, "the end of the program")


class Runner:
    """`plan` are the names of the wanted runs, such as "gzip-bomb" and "silent-in-body, closed"."""

    def __init__(self, server, slots, plan):
        self._server = server
        self._idle = list(slots)
        # What takes long comes first, and what needs the server for itself before everything.
        self._waiting = sorted(map(_Run, plan), key=_Run.rank)
        self._running = []
        self._beginning = None
        self.results = {}

    def result(self, name):
        """Of this run, when it is over; raises what it failed with."""
        while name not in self.results:
            self._step()
            time.sleep(PAUSE_SECONDS)
        result = self.results[name]
        if isinstance(result, Exception):
            raise result
        return result

    def _step(self):
        self._begin()
        for run, slot in list(self._running):
            if run.advance():
                self._running.remove((run, slot))
                self._idle.append(slot)
                self.results[run.name] = run.result
        if self._beginning and self._beginning.has_begun:
            self._beginning = None
            self._server.listen()

    # One at a time: the server tells its visitors apart by their order.
    def _begin(self):
        fitting = ((r, s) for r in self._waiting for s in self._idle if s.takes(r.name))
        run, slot = (None, None) if self._beginning else next(fitting, (None, None))
        if not run:
            return
        self._waiting.remove(run)
        self._idle.remove(slot)
        if run.case.refused:
            self._server.refuse()
        run.start(slot)
        self._beginning = run
        self._running.append((run, slot))


class _Run:
    def __init__(self, name):
        self.name = name
        self.case = case_of(name)
        self.closed = name != self.case.name
        self.has_begun = False
        self.result = None

    def rank(self):
        return (not self.case.refused, self.closed or not self.case.takes_idleness)

    def start(self, slot):
        self._slot = slot
        self._steps = self._go(slot)

    def _go(self, slot):
        visit, started = yield from slot.begin(self.case)
        self.has_begun = not self.case.alone
        if self.closed:
            return (yield from slot.close_meanwhile(visit))
        return (yield from slot.run_through(self.case, started))

    def advance(self):
        """Whether it is over."""
        try:
            next(self._steps)
            return False
        except StopIteration as end:
            self.result = end.value
        except Exception as failure:
            self.result = failure
            # What cannot be ended shows in the next run there.
            with contextlib.suppress(OSError, RuntimeError):
                self._slot.end_now()
        self.has_begun = True
        return True


def every_run():
    for case in cases.CASES:
        if case.waited_out or not case.stalls:
            yield case.name
        if case.stalls:
            yield case.name + ", closed"


def runs_to_try(system):
    wanted = cases.FEW if os.environ.get("VELOR_FAULTS") == "few" else every_run()
    return [run for run in wanted if case_of(run).outcome(system) != cases.NOT_TRIED]


def case_of(run):
    name = run.partition(", ")[0]
    return next(each for each in cases.CASES if each.name == name)


def test_name(run):
    """"slow-drip" becomes "test_slow_drip"."""
    return "test_" + run.replace(", ", "_").replace("-", "_")


def add_tests(suite):
    """A test for each run. `suite` has `system`, and `runner` once it begins."""

    def test_of(run):
        case = case_of(run)

        def test(self):
            result = self.runner.result(run)
            self.note_time(run, result.seconds)
            self.see_nobody_astray()
            if run != case.name:
                self.assertFalse(result.outcome, "a page was written after closing")
                return
            expected = case.outcome(self.system)
            if isinstance(expected, cases.PageOrFailure) and result.outcome == cases.FAILURE:
                pass
            elif expected == cases.FAILURE or result.outcome == cases.FAILURE:
                self.assertEqual(expected, result.outcome)
            else:
                self.assertEqual(expected.count, len(result.outcome))
                self.assertEqual(expected.rows, tuple(result.outcome[: len(expected.rows)]))
            if case.takes_idleness:
                self.assertGreaterEqual(result.seconds, cases.IDLE_SECONDS)

        return test

    for run in runs_to_try(suite.system):
        setattr(suite, test_name(run), test_of(run))


class Suite:
    """What the two suites share; to be mixed into a TestCase."""

    planned = []  # the methods that are to run: the loader makes them all before the first one runs
    runner = None

    def __init__(self, method="runTest"):
        super().__init__(method)
        self.planned.append(method)

    @classmethod
    def begin(cls, build, parent, kinds, *arguments):
        """Makes the server and the places, each in a folder of its own below `parent`. `kinds` says of
        each kind of Slot how many there are at most; the arguments are theirs."""
        cls.enterClassContext(port_for_oneself(build.port))
        cls.server = FaultServer(build.authority.parent, build.port)
        cls.addClassCleanup(cls.server.stop)
        plan = [run for run in runs_to_try(cls.system) if test_name(run) in cls.planned]
        temporary = tempfile.TemporaryDirectory(dir=parent, prefix="e2e_", ignore_cleanup_errors=True)
        folder = pathlib.Path(cls.enterClassContext(temporary))
        slots = []
        for kind, most in kinds.items():
            for _ in range(min(most, sum(map(kind.takes, plan)))):
                slots.append(kind(cls.server, folder / f"slot-{len(slots)}", *arguments))
                cls.addClassCleanup(slots[-1].leave)
        cls.runner = Runner(cls.server, slots, plan)

    def setUp(self):
        """Of the scenario's world nothing is needed but the programs it looks after: none."""
        self.programs = []

    def see_nobody_astray(self):
        self.assertFalse(self.server.canary_was_touched(), "nobody goes where a document points")
        self.assertEqual(0, self.server.strangers, "nobody comes twice")

    @classmethod
    def note_time(cls, run, seconds):
        """Into the file that VELOR_FAULT_TIMES names, for docs/reliability.md."""
        path = os.environ.get("VELOR_FAULT_TIMES")
        if not path:
            return
        file = pathlib.Path(path)
        times = json.loads(file.read_text()) if file.exists() else {}
        times[run] = round(seconds, 1)
        file.write_text(json.dumps(times))
