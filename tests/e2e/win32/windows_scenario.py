# What every end-to-end test of the Windows program stands on: the program as it was built, installed
# in a Wine prefix of its own, started there and looked at from outside. A test that ends well has
# seen every program end. SPDX-License-Identifier: MIT
"""Run through CTest, or by hand:

    VELOR_BUILD=build/win32-mingw VELOR_HELPERS=build/win32-mingw/tests/e2e/win32 \\
      scripts/with-display tests/e2e/win32/closing.py -v [Class.test]
"""
import os
import pathlib
import shutil
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path += [str(HERE.parent), str(HERE.parents[1] / "support")]

import desktop  # noqa: E402  (found through the line above)
from case_results import main  # noqa: E402,F401  (the scripts of cases call it)
from scenario_base import (  # noqa: E402,F401  (cases take the words from here)
    FAILURE, PROMPT, ROOT, TITLE, VOICES_PAGE, WAIT_PAGE, BuildBase, ScenarioBase,
)
from wine import PageHost, Prefix, Probe, wait_for  # noqa: E402

class Build(BuildBase):
    def __init__(self):
        super().__init__(suffix=".exe")
        self.helpers = pathlib.Path(os.environ["VELOR_HELPERS"]).resolve()
        self.control = self.helpers / "velor_page_control.dll"
        self.probe = self.helpers / "velor_probe.exe"
        self.loader = self.helpers / "velor_loader.exe"
        self.recorder = self.helpers / "velor_recorder.exe"
        self.planted = self.helpers / "velor_planted.dll"


build = Build()


class Program:
    def __init__(self, prefix, words, environment):
        self.process = prefix.start(prefix.on_drive(prefix.program), *words,
                                    # Not the program's own folder: that must not matter.
                                    cwd="/", env=environment)

    @property
    def ended(self):
        return self.process.poll() is not None


class Scenario(ScenarioBase):
    build = build

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.original = Prefix.original(build.folder)

    def setUp(self):
        super().setUp()
        # In the build folder, since files are shared with the original prefix there.
        self.folder = pathlib.Path(
            self.enterContext(
                tempfile.TemporaryDirectory(dir=build.folder, prefix="e2e_", ignore_cleanup_errors=True)
            )
        )
        self.prefix = Prefix(self.folder / "prefix", self.original)
        self.prefix.trust(build.authority)
        self.prefix.use_control(build.control)
        self.install_program()
        self.page = PageHost()
        self.addCleanup(self.page.end)
        self.prefix.environment["VELOR_PAGE_HOST"] = str(self.page.port)
        self.probe = Probe(self.prefix, build.probe)
        self.addCleanup(self.probe.end)
        # First of all, that is: whatever a failed test left behind.
        self.addCleanup(self.prefix.end)

    # -- the world around the program

    def install_program(self):
        self.prefix.install_program(build.program)
        self.installer = self.add_recorder(self.prefix.installer)
        self.choose_language("en")

    def choose_language(self, language):
        """In the program's own settings."""
        (self.prefix.program_folder / "VelorVoiceSetup.ini").write_bytes(
            f"[I18N]\r\nLanguage1={language}\r\n".encode("ascii")
        )

    def add_recorder(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(build.recorder, path)
        return path

    def calls(self, recorder):
        """How the program there was called: (folder, command line)."""
        record = pathlib.Path(f"{recorder}.called")
        if not record.exists():
            return []
        return [tuple(line.split("\t")) for line in record.read_text("utf-8").splitlines()]

    def start(self, *words, **environment):
        program = Program(self.prefix, words, dict(self.prefix.environment, **environment))
        self.programs.append(program)
        return program

    def report(self):
        lines = [
            f"started {at}: " + (f"ended with {p.process.returncode}" if p.ended else "runs")
            for at, p in enumerate(self.programs, start=1)
        ]
        try:
            for window in self.probe.windows():
                lines.append(f"{window.kind} {window.text!r} visible={window.visible}")
                lines += [f"  {c.kind} {c.name} {c.text!r} {c.enabled}" for c in window.controls]
            lines.append(f"page: {self.page.title()!r} {self.page.boxes()} {self.page.journal()}")
        except (OSError, RuntimeError, ValueError) as failure:
            lines.append(f"nothing more can be seen: {failure}")
        return "\n".join(lines)

    # -- seeing, each with a deadline, and doing

    def see(self, condition, what, seconds=50):
        return wait_for(condition, what, seconds)

    def see_good_end(self):
        """Each test ends its programs itself."""
        for program in self.programs:
            self.see_end(program)
            self.assertEqual(0, program.process.returncode)

    def see_wait_page(self):
        self.see(lambda: self.probe.form() and self.page.title() == WAIT_PAGE, "the wait page")

    def see_page(self):
        self.see(lambda: self.page.title() == VOICES_PAGE and self.page.boxes(), "the voices page")

    def status(self):
        label = self.probe.control("lblStatus")
        return label.text if label else None

    def see_status(self, text):
        self.see(lambda: self.status() == text, f"the status {text!r}")

    def can_install(self):
        return self.probe.control("cmdInstall").enabled

    def click_on_page(self, selector, text):
        """With the mouse, in the control's own window."""
        x, y = self.see(lambda: self.page.place(selector, text), f"{text!r} on the page")
        [window] = self.probe.form().of_kind("Internet Explorer_Server")
        self.probe.ask("click", window.number, x, y)

    def tick(self, voice):
        """Or takes the tick away. `voice` is the name on the page."""
        before = voice in self.page.ticked()
        self.click_on_page("label", voice)
        self.see(lambda: (voice in self.page.ticked()) != before, f"the change at {voice}")

    def give_focus(self):
        """As the window manager does, which leaves Wine's unmanaged windows to themselves."""
        search = ("search", "--onlyvisible", "--name", f"^{TITLE}$")
        [window] = self.see(lambda: desktop.xdotool(*search).split(), "the window")
        desktop.xdotool("windowfocus", "--sync", window)

    def press_install(self):
        self.see(self.can_install, "Install to be enabled")
        self.probe.ask("press", self.probe.control("cmdInstall").number)

    def see_message(self, text):
        self.see(lambda: self.probe.messages() == [(TITLE, text)], f"the message {text!r}")

    def answer_message(self):
        self.probe.answer_message()

    def ask_to_close(self):
        self.probe.ask("close", self.probe.form().number)

    def close_with_prompt(self, program):
        self.ask_to_close()
        self.see_message(PROMPT)
        self.answer_message()
        self.see_end(program)

    def see_installer(self):
        """It was started once, in its own folder, without arguments."""
        [(folder, line)] = self.see(lambda: self.calls(self.installer), "the installer program")
        self.assertEqual(self.prefix.on_drive(self.prefix.program_folder), folder.rstrip("\\"))
        self.assertEqual(f'"{self.prefix.on_drive(self.installer)}"', line.strip())
