#!/usr/bin/python3
# A catalogue that cannot be had: the window goes, two messages come, and between them the command
# that was given for this case. SPDX-License-Identifier: MIT
import pathlib
import re
import subprocess
import sys

import scenario
from catalogue import Voice, catalogue
from installation import NOTHING_INHERITED, Recorder

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))


class FailedDownload(scenario.Scenario):
    def see_failure(self, program):
        self.see_message(program, scenario.FAILURE)
        self.assertIsNone(program.window(), "the window is hidden behind the message")
        self.answer_message(program)
        self.see_message(program, scenario.PROMPT)
        self.assertIsNone(program.window(), "the window stays hidden")
        self.answer_message(program)
        self.see_end(program)
        self.assertFalse(self.installation.page.exists())
        self.assertFalse(self.installation.products.exists())
        self.assertEqual([], self.installation.installer.calls)

    def test_without_a_server_both_messages_are_shown(self):
        self.see_failure(self.start())

    def is_connected(self):
        """Whether somebody has a connection with the server."""
        entries = pathlib.Path("/proc/net/tcp").read_text() + pathlib.Path("/proc/net/tcp6").read_text()
        return re.search(rf":{scenario.build.port:04X} \S+ 01 ", entries) is not None

    def test_a_server_that_is_killed_while_it_is_waited_for_is_a_failure_within_two_seconds(self):
        authority = scenario.build.authority.parent
        command = [
            sys.executable, scenario.ROOT / "demo" / "server.py", "--certificate", authority / "server.pem",
            "--key", authority / "server.key", "--port", str(scenario.build.port), "--delay", "60",
        ]
        with subprocess.Popen(command, stdout=subprocess.PIPE) as server:
            self.addCleanup(server.kill)
            server.stdout.readline()  # it listens
            program = self.start()
            self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
            self.see(self.is_connected, "the request for the catalogue")
            server.kill()
        failure = [(scenario.TITLE, scenario.FAILURE)]
        self.see(lambda: program.messages() == failure, "the message", 2)
        self.see_failure(program)

    def test_a_status_of_failure_counts_though_a_catalogue_comes_with_it(self):
        self.serve(CATALOGUE, fail="not-found")
        self.see_failure(self.start())

    def test_a_body_that_is_no_xml_is_a_failure(self):
        self.serve(CATALOGUE, fail="not-xml")
        self.see_failure(self.start())

    def test_a_catalogue_that_is_cut_off_is_a_failure(self):
        self.serve(CATALOGUE, fail="cut-short")
        self.see_failure(self.start())

    def test_a_certificate_of_a_strange_authority_is_a_failure(self):
        stranger = self.folder / "stranger"
        subprocess.run([scenario.ROOT / "scripts" / "make-local-ca", stranger], check=True)
        server = self.serve(CATALOGUE, authority=stranger)
        self.see_failure(self.start())
        self.assertFalse(server.asked.is_set(), "nothing is asked of a server that is not trusted")

    def test_the_fallback_command_runs_once_between_the_messages(self):
        reader = Recorder(self.installation.drive / "Tools" / "My Reader.exe")
        command = r'"C:\Tools\My Reader.exe" /voices "two words" \"quoted\" "" end\\'
        program = self.start("PARVIX###" + command)
        self.see_message(program, scenario.FAILURE)
        self.assertEqual([], reader.calls, "it waits for the answer to the first message")
        self.answer_message(program)
        self.see_message(program, scenario.PROMPT)
        [call] = self.see(lambda: reader.calls, "the fallback command")
        self.assertEqual(str(reader.path), call["program"])
        self.assertEqual(["/voices", "two words", '"quoted"', "", "end\\\\"], call["arguments"])
        self.assertEqual(NOTHING_INHERITED, call["open"])
        self.answer_message(program)
        self.see_end(program)
        self.see_nobody_left()
        self.assertEqual(1, len(reader.calls))

    def test_a_fallback_command_that_does_not_exist_changes_nothing(self):
        self.see_failure(self.start(r"PARVIX###C:\Tools\missing.exe /voices"))

    def test_the_fallback_command_does_not_run_after_a_good_download(self):
        reader = Recorder(self.installation.drive / "Tools" / "reader.exe")
        self.serve(CATALOGUE)
        program = self.start(r"PARVIX###C:\Tools\reader.exe")
        self.see_page(program)
        self.close_with_prompt(program)
        self.assertEqual([], reader.calls)


if __name__ == "__main__":
    scenario.main()
