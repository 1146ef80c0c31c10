#!/usr/bin/python3
# The program that is shipped knows nothing of this build's own server and authority.
# SPDX-License-Identifier: MIT
import subprocess

import scenario
from catalogue import Voice, catalogue
from installation import Installation

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))


class ShippedProgram(scenario.Scenario):
    def texts_in(self, program):
        return subprocess.run(
            ["strings", "-n", "4", program], stdout=subprocess.PIPE, text=True, check=True
        ).stdout

    def test_neither_the_local_server_nor_its_authority_is_built_in(self):
        local = (f"localhost:{scenario.build.port}", str(scenario.build.authority))
        for text in local:
            self.assertIn(text, self.texts_in(scenario.build.program))
            self.assertNotIn(text, self.texts_in(scenario.build.shipped_program))

    def test_it_asks_nothing_of_the_local_server_and_fails_without_its_own(self):
        server = self.serve(CATALOGUE)
        installation = Installation(self.folder / "shipped", scenario.build.shipped_program)
        program = self.start(installation=installation)
        self.see_message(program, scenario.FAILURE)
        self.answer_message(program)
        self.see_message(program, scenario.PROMPT)
        self.answer_message(program)
        self.see_end(program)
        self.assertFalse(server.asked.is_set())


if __name__ == "__main__":
    scenario.main()
