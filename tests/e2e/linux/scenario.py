# What every end-to-end test stands on: the program as it was built, installed in a folder of its own,
# started and looked at from outside. A test that ends well has left no process, and none of its
# programs has complained. SPDX-License-Identifier: MIT
"""Run through CTest, or by hand:

    VELOR_BUILD=build/linux-debug scripts/with-display tests/e2e/linux/keyboard.py -v [Class.test]
"""
import ctypes
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[2]
sys.path[:0] = [str(ROOT / "tests" / name) for name in ("support", "e2e")]

import accessible  # noqa: E402  (found through the line above)
import desktop  # noqa: E402
from case_results import main  # noqa: E402,F401  (the scripts of cases call it)
from catalogue import PATIENCE  # noqa: E402
from installation import USER, Installation  # noqa: E402
from scenario_base import (  # noqa: E402,F401  (cases take the words from here)
    FAILURE, PROMPT, TITLE, VOICES_PAGE, WAIT_PAGE, BuildBase, ScenarioBase,
)

# What a sound program never says: GLib's complaints about wrong calls, and the sanitizers' reports.
COMPLAINT = re.compile(
    r"^.*(?:-CRITICAL \*\*|-ERROR \*\*|runtime error:|(?:Address|Leak|UndefinedBehavior)Sanitizer).*$",
    re.MULTILINE,
)
PR_SET_CHILD_SUBREAPER = 36
# A command that the program is started by, such as scripts/valgrind gives.
WRAPPER = os.environ.get("VELOR_WRAPPER", "").split()

build = BuildBase()


def _nobody_left():
    """Whether every process that descends from the test has ended. Orphans come to the test, too."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            pass
        return False
    except ChildProcessError:
        return True


def children(process_id):
    """Of the processes there are, those with this parent, as (number, name)."""
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            name, _, rest = (folder / "stat").read_text().rpartition(")")
        except OSError:
            continue  # it has ended meanwhile
        if int(rest.split()[1]) == process_id:
            yield int(folder.name), name.partition("(")[2]


class Program:
    """The running program, and its window as assistive technology sees it."""

    def __init__(self, installation, arguments, log, changes, through=()):
        self.log = log
        self.expected_end = 0
        environment = dict(
            os.environ, WINEPREFIX=str(installation.prefix), USER=USER, LANGUAGE="en", LC_ALL="C.UTF-8"
        )
        environment.setdefault(
            "LSAN_OPTIONS", f"suppressions={ROOT}/tests/support/lsan.supp:print_suppressions=0"
        )
        # The system's libraries keep no frame pointers; only the slow way sees whose a leak is. A
        # few frames tell it, and with all of them the program would take several times as long. Where
        # a library's thread ends at that moment, the search for leaks may crash in what it was told
        # of that thread's variables; so it is not told.
        asan = environment.get("ASAN_OPTIONS", "detect_leaks=1")
        environment["ASAN_OPTIONS"] = ":".join(
            [asan, "fast_unwind_on_malloc=0", "malloc_context_size=8", "intercept_tls_get_addr=0"]
        )
        environment.update(changes)
        environment = {name: value for name, value in environment.items() if value is not None}
        with open(log, "wb") as output:
            self.process = subprocess.Popen(
                [*through, *WRAPPER, installation.program, *arguments],
                # Not the program's own folder: where it is started from must not matter.
                cwd="/",
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
            )

    @property
    def ended(self):
        return self.process.poll() is not None

    def window(self):
        """The main window, or None. It is the one that is no message."""
        for window in accessible.windows(self.process.pid):
            if accessible.role(window) == "frame" and accessible.is_showing(window):
                return window
        return None

    def _control(self, role):
        """A control beside the page, which stands in the window's panel."""
        window = self.window()
        panel = accessible.find(window, "panel") if window else None
        for control in accessible.children(panel) if panel else ():
            if accessible.role(control) == role:
                return control
        return None

    def button(self):
        return self._control("push button")

    def label(self):
        return self._control("label")

    def logo(self):
        return self._control("image")

    def status(self):
        """What the label says; None without a label."""
        label = self.label()
        return accessible.text(label) if label else None

    def page(self, title=VOICES_PAGE):
        window = self.window()
        return accessible.find(window, "document web", title) if window else None

    def boxes(self):
        """The page's check boxes in their order."""
        page = self.page()
        return accessible.find_all(page, "check box") if page else []

    def voices(self):
        """The names of the voices that can be ticked."""
        return [accessible.name(box) for box in self.boxes() if accessible.is_enabled(box)]

    def ticked(self):
        return [
            accessible.name(box)
            for box in self.boxes()
            if accessible.is_enabled(box) and accessible.is_checked(box)
        ]

    def box(self, name):
        return accessible.find(self.page(), "check box", name)

    def messages(self):
        """The messages on the screen, as (title, text)."""
        return [
            (accessible.name(window), self._text_of(window))
            for window in accessible.windows(self.process.pid)
            if accessible.role(window) == "alert" and accessible.is_showing(window)
        ]

    @staticmethod
    def _text_of(message):
        texts = [accessible.text(label) for label in accessible.find_all(message, "label")]
        return "\n".join(text for text in texts if text)

    def message_buttons(self):
        return [
            button
            for window in accessible.windows(self.process.pid)
            if accessible.role(window) == "alert"
            for button in accessible.find_all(window, "push button")
        ]

    def complaints(self):
        return COMPLAINT.findall(self.log.read_text(encoding="utf-8", errors="replace"))


class Scenario(ScenarioBase):
    build = build

    @classmethod
    def setUpClass(cls):
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
        super().setUpClass()
        accessible.switch_on(PATIENCE)

    def setUp(self):
        super().setUp()
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.installation = Installation(self.folder / "prefix", build.program)
        self.addCleanup(self._end_everything)

    def _end_everything(self):
        """After a failure nothing may stay either."""
        for program in self.programs:
            if not program.ended:
                program.process.kill()
                program.process.wait()
        for process_id, _ in list(children(os.getpid())):
            os.kill(process_id, signal.SIGKILL)
        accessible.wait_for(_nobody_left, "the end of what a failed test left behind")

    # -- the world around the program

    def start(self, *arguments, installation=None, through=(), **environment):
        """With these variables changed, or taken away where they are None; `through` is a command
        that becomes the program."""
        log = self.folder / f"program-{len(self.programs)}.log"
        program = Program(installation or self.installation, arguments, log, environment, through)
        self.programs.append(program)
        return program

    def report(self):
        lines = []
        for program in self.programs:
            state = f"ended with {program.process.returncode}" if program.ended else "runs"
            lines.append(f"process {program.process.pid} {state}; it said:")
            lines.append(program.log.read_text(encoding="utf-8", errors="replace"))
            if not program.ended:
                lines += map(accessible.outline, accessible.windows(program.process.pid))
        lines.append(f"processes of the test: {list(children(os.getpid()))}")
        return "\n".join(lines)

    # -- seeing, each with a deadline, and doing

    def see(self, condition, what, seconds=50):
        return accessible.wait_for(condition, what, seconds * PATIENCE)

    def see_good_end(self):
        """Each test ends its programs itself."""
        for program in self.programs:
            self.see_end(program)
            self.assertEqual([], program.complaints(), "what the program complained about")
            self.assertEqual(program.expected_end, program.process.returncode)
        self.see_nobody_left()

    def see_nobody_left(self):
        self.see(_nobody_left, "the end of every process that the test started")

    def see_page(self, program):
        """The voices page with its boxes, once the program counts what is ticked there."""
        self.see(program.page, "the voices page")
        return self.see(program.boxes, "the voices")

    def see_status(self, program, text):
        self.see(lambda: program.status() == text, f"the status {text!r}")

    def see_ticked(self, program, *names):
        self.see(lambda: program.ticked() == list(names), f"ticks at {names}")

    def tick(self, program, voice):
        """Or takes the tick away. `voice` is the name on the page."""
        accessible.press(self.see(lambda: program.box(voice), f"the voice {voice}"))

    def press_install(self, program):
        self.see(lambda: accessible.is_enabled(program.button()), "Install to be enabled")
        accessible.press(program.button())

    def see_message(self, program, text):
        self.see(lambda: program.messages() == [(TITLE, text)], f"the message {text!r}")

    def answer_message(self, program):
        [button] = program.message_buttons()
        accessible.press(button)

    def window_number(self, program):
        return self.see(lambda: desktop.windows_of(program.process.pid), "the window")[0]

    def ask_to_close(self, program):
        desktop.ask_to_close(self.window_number(program))

    def close_with_prompt(self, program):
        self.ask_to_close(program)
        self.see_message(program, PROMPT)
        self.answer_message(program)
        self.see_end(program)
