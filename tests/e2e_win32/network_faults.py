#!/usr/bin/python3
# Everything that the network and the server may do, against the Windows program under Wine:
# tests/faults/ says what is served and what has to come of it. SPDX-License-Identifier: MIT
import functools
import sys

import windows_scenario as scenario
from wine import PageHost, Prefix, Probe

sys.path.append(str(scenario.ROOT / "tests" / "faults"))

import fault_suite  # noqa: E402  (found through the line above)

LABELS = "Array.from(document.querySelectorAll('label')).map(function (each) { return each.textContent; })"
# Each has a prefix of its own, which takes a second to make.
SLOTS = 5


class Slot(fault_suite.Slot):
    def __init__(self, server, folder, original):
        build = scenario.build
        self._prefix = Prefix(folder, original)
        super().__init__(server, self._prefix.page)
        self._prefix.trust(build.authority)
        self._prefix.use_control(build.control)
        self._prefix.install_program(build.program)
        settings = self._prefix.program_folder / "VelorVoiceSetup.ini"
        settings.write_bytes(b"[I18N]\r\nLanguage1=en\r\n")
        self._page = PageHost()
        self._prefix.environment["VELOR_PAGE_HOST"] = str(self._page.port)
        self._probe = Probe(self._prefix, build.probe)
        self._program = None

    def leave(self):
        self._prefix.end()
        self._probe.end()
        self._page.end()

    def start(self, case):
        self._case = case
        program = scenario.build.shipped_program if case.shipped else scenario.build.program
        scenario.shutil.copy2(program, self._prefix.program)
        self._program = scenario.Program(self._prefix, (), self._prefix.environment)

    def report(self):
        return "\n".join(
            f"{window.kind} {window.text!r} visible={window.visible}" for window in self._probe.windows()
        )

    def look_for_failure(self):
        [message] = self._probe.messages() or [None]
        if message == (scenario.TITLE, scenario.FAILURE) and not self._probe.form():
            return fault_suite.cases.FAILURE
        return None

    def look_for_page(self):
        if not self.page_file.exists():
            return None
        return self._case.in_file or self._page.title() == scenario.VOICES_PAGE

    def look_for_rows(self):
        """The names on the page; the engine and the page's file have to agree on them."""
        names = fault_suite.names_on(self.page_file)
        if names is None or self._case.in_file:
            return names
        return names if self._page.evaluate(LABELS) == names else None

    def look_for_window(self):
        return self._probe.form()

    def ask_to_close(self, window):
        self._probe.ask("close", window.number)

    def look_for_prompt(self):
        return self._probe.messages() == [(scenario.TITLE, scenario.PROMPT)]

    def answer_message(self):
        self._probe.answer_message()

    def look_for_end(self):
        if not self._program.ended:
            return False
        if self._program.process.returncode:
            raise AssertionError(f"it ended with {self._program.process.returncode}")
        return True

    def end_now(self):
        if self._program and not self._program.ended:
            self._prefix.end()
            self._program.process.wait()
            self._probe.end()
            self._probe = Probe(self._prefix, scenario.build.probe)


class NetworkFaults(fault_suite.Suite, scenario.Scenario):
    system = "windows"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # In the build folder, since files are shared with the original prefix there.
        make_slot = functools.partial(Slot, original=cls.original)
        cls.begin(scenario.build, scenario.build.folder, make_slot, SLOTS)


fault_suite.add_tests(NetworkFaults)

if __name__ == "__main__":
    scenario.main()
