#!/usr/bin/python3
# Everything that the network and the server may do, against the Windows program under Wine:
# tests/faults/ says what is served and what has to come of it. SPDX-License-Identifier: MIT
import os
import select
import subprocess
import sys
import time
import urllib.parse

import windows_scenario as scenario
from wine import PageHost, Prefix, Probe

sys.path.append(str(scenario.ROOT / "tests" / "faults"))

import fault_suite  # noqa: E402  (found through the line above)

LABELS = "Array.from(document.querySelectorAll('label')).map(function (each) { return each.textContent; })"
# For programs, each in a prefix of its own; and for documents, four of which wait for half a minute.
PROGRAM_SLOTS = 3
DOCUMENT_SLOTS = 5
# A program's start takes a second of work under Wine, so most cases are served to a document alone, which
# is the same code; with VELOR_FAULTS=all every case is served to the program.
EVERYTHING = os.environ.get("VELOR_FAULTS") == "all"


def needs_program(run):
    case = fault_suite.case_of(run)
    return EVERYTHING or run != case.name or run in fault_suite.cases.FEW or case.shipped or case.refused


class DocumentSlot(fault_suite.Slot):
    """Where a document alone is loaded, by loader.cpp."""

    def __init__(self, server, folder, original):
        super().__init__(server, folder / "no page")
        self._prefix = Prefix(folder, original)
        self._prefix.trust(scenario.build.authority)
        # With nothing running there Wine would end its services, and begin with them again each time.
        self._probe = Probe(self._prefix, scenario.build.probe)
        self._loader = None

    @staticmethod
    def takes(run):
        return not needs_program(run)

    def start(self, case):
        self._answer = b""
        address = f"https://localhost:{scenario.build.port}/downloads/voices.xml"
        self._loader = self._prefix.start(scenario.build.loader, address, stdout=subprocess.PIPE)

    def look_for_answer(self):
        """Whether it has said everything."""
        output = self._loader.stdout.fileno()
        while select.select([output], [], [], 0)[0]:
            piece = os.read(output, 1 << 20)
            self._answer += piece
            if not piece:
                self._loader.stdout.close()
                return True
        return False

    def run_through(self, case, started):
        yield from self.wait(self.look_for_answer, "an answer", case.seconds)
        seconds = time.monotonic() - started
        yield from self.wait(lambda: self._loader.poll() is not None, "the loader's end")
        if self._loader.returncode:
            raise AssertionError(f"it ended with {self._loader.returncode}\n{self.report()}")
        what, *names = self._answer.decode("ascii").split()
        if what == "failure":
            return fault_suite.Result(fault_suite.cases.FAILURE, seconds)
        return fault_suite.Result(fault_suite.Rows(map(urllib.parse.unquote, names)), seconds)

    def report(self):
        return repr(self._answer[:200])

    def end_now(self):
        self.leave()
        self._probe = Probe(self._prefix, scenario.build.probe)

    def leave(self):
        self._prefix.end()
        self._probe.end()
        if self._loader:
            self._loader.wait()


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

    @staticmethod
    def takes(run):
        return needs_program(run)

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
        kinds = {Slot: PROGRAM_SLOTS, DocumentSlot: DOCUMENT_SLOTS}
        cls.begin(scenario.build, scenario.build.folder, kinds, cls.original)


fault_suite.add_tests(NetworkFaults)

if __name__ == "__main__":
    scenario.main()
