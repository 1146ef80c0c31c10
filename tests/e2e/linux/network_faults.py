#!/usr/bin/python3
# Everything that the network and the server may do, against the program as built: tests/faults/ says
# what is served and what has to come of it. SPDX-License-Identifier: MIT
"""One case by hand:

    VELOR_BUILD=build/linux-debug scripts/with-display \\
      tests/e2e/linux/network_faults.py NetworkFaults.test_gzip_bomb
"""
import sys

import scenario
from installation import Installation

sys.path.append(str(scenario.ROOT / "tests" / "faults"))

import accessible  # noqa: E402  (found by scenario)
import fault_suite  # noqa: E402

# Four of which wait for half a minute at first.
SLOTS = 8


class Slot(fault_suite.Slot):
    def __init__(self, server, folder):
        self._folder = folder
        self._installation = Installation(folder / "prefix", scenario.build.program)
        super().__init__(server, self._installation.page)
        self._shipped = Installation(folder / "shipped", scenario.build.shipped_program)
        self._program = None

    def start(self, case):
        self._case = case
        installation = self._shipped if case.shipped else self._installation
        self._program = scenario.Program(installation, (), self._folder / "program.log", {})

    def report(self):
        windows = map(accessible.outline, accessible.windows(self._program.process.pid))
        return "\n".join([self._program.log.read_text(errors="replace"), *windows])

    def look_for_failure(self):
        [message] = self._program.messages() or [None]
        if message == (scenario.TITLE, scenario.FAILURE) and not self._program.window():
            return fault_suite.cases.FAILURE
        return None

    def look_for_page(self):
        if not self.page_file.exists():
            return None
        return self._case.in_file or self._program.page()

    def look_for_rows(self):
        """The names on the page; the screen and the page's file have to agree on them."""
        names = fault_suite.names_on(self.page_file)
        if names is None or self._case.in_file:
            return names
        return names if self._program.voices() == names else None

    def look_for_window(self):
        return next(iter(scenario.desktop.windows_of(self._program.process.pid)), None)

    def ask_to_close(self, window):
        scenario.desktop.ask_to_close(window)

    def look_for_prompt(self):
        return self._program.messages() == [(scenario.TITLE, scenario.PROMPT)]

    def answer_message(self):
        [button] = self._program.message_buttons()
        accessible.press(button)

    def look_for_end(self):
        if not self._program.ended:
            return False
        if self._program.process.returncode or self._program.complaints():
            raise AssertionError(f"it ended with {self._program.process.returncode}\n{self.report()}")
        return True

    def end_now(self):
        if self._program and not self._program.ended:
            self._program.process.kill()
            self._program.process.wait()

    leave = end_now


class NetworkFaults(fault_suite.Suite, scenario.Scenario):
    system = "linux"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.begin(scenario.build, None, {Slot: SLOTS})


fault_suite.add_tests(NetworkFaults)

if __name__ == "__main__":
    scenario.main()
