#!/usr/bin/python3
# A catalogue that cannot be had: two messages in a row, with the fallback command between them.
# SPDX-License-Identifier: MIT
import subprocess

import windows_scenario as scenario
from catalogue import Voice, catalogue

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))


class FailedDownload(scenario.Scenario):
    def see_failure(self, program):
        self.see_message(scenario.FAILURE)
        self.assertIsNone(self.probe.form(), "the window is hidden behind the message")
        self.answer_message()
        self.see_message(scenario.PROMPT)
        self.assertIsNone(self.probe.form(), "the window stays hidden")
        self.answer_message()
        self.see_end(program)
        self.assertFalse(self.prefix.page.exists())
        self.assertFalse(self.prefix.products.exists())
        self.assertEqual([], self.calls(self.installer))

    def test_without_a_server_both_messages_are_shown(self):
        self.see_failure(self.start())

    def test_a_status_of_failure_counts_though_a_catalogue_comes_with_it(self):
        self.serve(CATALOGUE, fail="not-found")
        self.see_failure(self.start())

    def test_a_certificate_of_a_strange_authority_is_a_failure(self):
        stranger = self.folder / "stranger"
        subprocess.run([scenario.ROOT / "scripts" / "make-local-ca", stranger], check=True)
        server = self.serve(CATALOGUE, authority=stranger)
        self.see_failure(self.start())
        self.assertFalse(server.asked.is_set(), "nothing is asked of a server that is not trusted")

    def test_the_fallback_command_runs_once_between_the_messages(self):
        reader = self.add_recorder(self.prefix.drive / "Tools" / "reader.exe")
        program = self.start(r"PARVIX###C:\Tools\reader.exe", "/voices", "two")
        self.see_message(scenario.FAILURE)
        self.assertEqual([], self.calls(reader), "it waits for the answer to the first message")
        self.answer_message()
        self.see_message(scenario.PROMPT)
        [(_, line)] = self.see(lambda: self.calls(reader), "the fallback command")
        self.assertEqual(r"C:\Tools\reader.exe /voices two", line)
        self.answer_message()
        self.see_end(program)
        self.assertEqual(1, len(self.calls(reader)))

    def test_the_fallback_command_does_not_run_after_a_good_download(self):
        reader = self.add_recorder(self.prefix.drive / "Tools" / "reader.exe")
        self.serve(CATALOGUE)
        program = self.start(r"PARVIX###C:\Tools\reader.exe")
        self.see_page()
        self.close_with_prompt(program)
        self.assertEqual([], self.calls(reader))


if __name__ == "__main__":
    scenario.main()
