#!/usr/bin/python3
# Closing the window at the different times of its life. SPDX-License-Identifier: MIT
import time

import scenario
from catalogue import Voice, catalogue

import accessible
import desktop

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))
LOADING = "Loading voices…"
LONG_SECONDS = 11
AT_ONCE_SECONDS = 2
CLOSED_AFTER_SECONDS = (0, 0.05, 0.15, 0.3)


class Closing(scenario.Scenario):
    def close_while_waiting(self, server):
        program = self.start()
        self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
        self.see(server.asked.is_set, "the request for the catalogue")
        self.ask_to_close(program)
        self.see_message(program, scenario.PROMPT)
        return program

    def end_without_another_message(self, program):
        self.answer_message(program)
        # A second message would keep it.
        self.see_end(program)
        self.assertFalse(self.installation.page.exists())

    def test_closing_while_waiting_shows_the_prompt_and_gives_up_the_download(self):
        server = self.serve(CATALOGUE, hold=True)
        self.end_without_another_message(self.close_while_waiting(server))

    def test_while_a_catalogue_takes_long_nothing_changes_and_the_window_closes_at_once(self):
        server = self.serve(CATALOGUE, hold=True)
        program = self.start()
        self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
        self.see_status(program, LOADING)
        self.see(server.asked.is_set, "the request for the catalogue")
        begin = time.monotonic()
        while time.monotonic() - begin < LONG_SECONDS:
            self.assertIsNotNone(program.page(scenario.WAIT_PAGE))
            self.assertEqual(LOADING, program.status())
            self.assertEqual([], program.messages())
        self.ask_to_close(program)
        message = [(scenario.TITLE, scenario.PROMPT)]
        self.see(lambda: program.messages() == message, "the prompt", AT_ONCE_SECONDS)
        self.end_without_another_message(program)

    def test_a_catalogue_that_comes_while_the_prompt_is_shown_changes_nothing(self):
        server = self.serve(CATALOGUE, hold=True)
        program = self.close_while_waiting(server)
        server.release()
        self.see(server.answered.is_set, "the answer to the request")
        self.assertIsNotNone(program.page(scenario.WAIT_PAGE))
        self.assertEqual([(scenario.TITLE, scenario.PROMPT)], program.messages())
        self.end_without_another_message(program)

    def test_a_failure_that_comes_while_the_prompt_is_shown_changes_nothing(self):
        server = self.serve(CATALOGUE, hold=True, fail="not-found")
        program = self.close_while_waiting(server)
        server.release()
        self.see(server.answered.is_set, "the answer to the request")
        self.assertEqual([(scenario.TITLE, scenario.PROMPT)], program.messages())
        self.end_without_another_message(program)

    def test_closing_the_voices_page_shows_the_prompt_and_writes_nothing(self):
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page(program)
        self.tick(program, "Hungarian Ágnes")
        self.see_status(program, "1 voice, 75MB")
        self.close_with_prompt(program)
        self.assertFalse(self.installation.queue.exists())
        self.assertEqual([], self.installation.installer.calls)

    def test_the_window_stays_behind_the_prompt_until_that_is_answered(self):
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page(program)
        self.ask_to_close(program)
        self.see_message(program, scenario.PROMPT)
        self.assertTrue(accessible.is_showing(program.window()))
        # Once more, as an impatient person does; it is still the same end.
        self.ask_to_close(program)
        self.see_message(program, scenario.PROMPT)
        self.answer_message(program)
        self.see_end(program)

    def test_closing_at_any_moment_of_the_start_ends_it(self):
        """The catalogue comes meanwhile, or has come, or not yet."""
        self.serve(CATALOGUE)
        for moment in CLOSED_AFTER_SECONDS:
            program = self.start()
            self.window_number(program)
            time.sleep(moment)
            self.close_with_prompt(program)

    def test_closing_at_any_moment_of_a_start_that_fails_ends_it(self):
        """With the window that is there: the program's, or a message."""
        self.serve(CATALOGUE, fail="cut-short")
        for moment in CLOSED_AFTER_SECONDS:
            program = self.start()
            self.window_number(program)
            time.sleep(moment)

            def close():
                for window in desktop.windows_of(program.process.pid):
                    desktop.ask_to_close(window, gone_is_good=True)
                return program.ended

            self.see(close, "the end of the program")


if __name__ == "__main__":
    scenario.main()
