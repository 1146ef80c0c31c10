#!/usr/bin/python3
# One window, however often the program is started. SPDX-License-Identifier: MIT
import signal
import time

import scenario
from catalogue import Voice, catalogue
from installation import Installation

import accessible
import desktop

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))
MANY = 30
KILLED_AFTER_SECONDS = (0, 0.02, 0.05, 0.1, 0.2, 0.4, 0.8)


class OneInstance(scenario.Scenario):
    def start_behind_another_window(self):
        """The first start, with another program's window in front of it."""
        self.serve(CATALOGUE)
        first = self.start()
        self.see_page(first)
        other = desktop.open_other_window()
        self.addCleanup(other.wait)
        self.addCleanup(other.stdin.close)
        cover = self.see(lambda: desktop.windows_of(other.pid), "the other window")[0]
        self.see(lambda: desktop.active_window() == cover, "the other window to be active")
        self.see(lambda: desktop.front_window() == cover, "the other window in front")
        self.other = other
        return first, cover

    def end_other(self):
        self.other.stdin.close()
        self.other.wait()

    def see_silent_end(self, second):
        """Watched from the start to the end, it never showed a window."""
        shown = []
        self.see(
            lambda: shown.extend(desktop.windows_of(second.process.pid)) or second.ended,
            "the end of the second start",
        )
        self.assertEqual([], shown)

    def change_title(self, title):
        texts = self.installation.folder / "VelorVoiceSetup.Language.xml"
        before = texts.read_text(encoding="utf-8")
        key, found, rest = before.partition("<key>frmSelect.Caption</key>")
        self.assertTrue(found)
        item, end, rest = rest.partition("</item>")
        texts.write_text(
            key + found + item.replace(scenario.TITLE, title) + end + rest, encoding="utf-8"
        )

    def test_a_second_start_brings_the_first_to_the_front_and_ends(self):
        first, cover = self.start_behind_another_window()
        number = self.window_number(first)
        second = self.start()
        self.see_silent_end(second)
        self.see(lambda: desktop.active_window() == number, "the first window to be active")
        self.see(lambda: desktop.front_window() == number, "the first window in front")
        self.end_other()
        self.assertIsNotNone(first.page(), "the first goes on as it was")
        self.close_with_prompt(first)

    def test_a_second_start_opens_the_first_window_where_it_is_minimised(self):
        self.serve(CATALOGUE)
        first = self.start()
        self.see_page(first)
        number = self.window_number(first)
        desktop.xdotool("windowminimize", number)
        self.see(lambda: not desktop.windows_of(first.process.pid), "the window to be minimised")
        self.see_silent_end(self.start())
        self.see(lambda: desktop.active_window() == number, "the first window to be active")
        self.assertEqual([number], desktop.windows_of(first.process.pid))
        self.close_with_prompt(first)

    def test_a_second_start_ends_though_the_first_has_another_title(self):
        self.change_title("Stimmen")
        first, cover = self.start_behind_another_window()
        self.assertEqual("Stimmen", accessible.name(first.window()))
        self.change_title_back()
        self.see_silent_end(self.start())
        self.assertEqual(cover, desktop.active_window(), "what cannot be found is not raised")
        self.end_other()
        self.close_with_prompt(first)

    def change_title_back(self):
        texts = scenario.ROOT / "assets" / "VelorVoiceSetup.Language.xml"
        (self.installation.folder / texts.name).write_bytes(texts.read_bytes())

    def test_of_many_starts_at_once_in_any_environment_one_shows_a_window(self):
        """As from the desktop, by su, from cron, by a service."""
        self.serve(CATALOGUE)
        own = str(self.folder)
        environments = [
            {},
            {"XDG_RUNTIME_DIR": None, "HOME": None, "USER": None},
            {"XDG_RUNTIME_DIR": own, "HOME": own, "TMPDIR": own},
            {"XDG_RUNTIME_DIR": "/nonexistent/folder", "USER": "other"},
        ]
        programs = [self.start(**environments[i % len(environments)]) for i in range(MANY)]

        def running():
            return [program for program in programs if not program.ended]

        self.see(lambda: len(running()) == 1, "all starts but one to end", 60)
        [winner] = running()
        self.see_page(winner)
        self.assertEqual(1, len(desktop.windows_of(winner.process.pid)))
        self.close_with_prompt(winner)

    def test_a_program_that_was_killed_at_any_moment_is_in_nobodys_way(self):
        self.serve(CATALOGUE)
        for moment in KILLED_AFTER_SECONDS:
            killed = self.start()
            killed.expected_end = -signal.SIGKILL
            # Not waiting for anything: each moment of the start is as good as any other.
            time.sleep(moment)
            killed.process.kill()
            self.see_end(killed)
        last = self.start()
        self.see_page(last)
        last.expected_end = -signal.SIGKILL
        last.process.kill()
        self.see_end(last)
        program = self.start()
        self.see_page(program)
        self.close_with_prompt(program)

    def test_the_program_in_another_folder_is_another_program(self):
        self.serve(CATALOGUE)
        other = Installation(self.folder / "other", scenario.build.program)
        programs = [self.start(), self.start(installation=other)]
        for program in programs:
            self.see_page(program)
        for program in programs:
            self.close_with_prompt(program)


if __name__ == "__main__":
    scenario.main()
