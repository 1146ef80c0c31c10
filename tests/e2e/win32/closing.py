#!/usr/bin/python3
# Closing the window at the different times of its life. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
CATALOGUE = catalogue(AGNES)


class Closing(scenario.Scenario):
    def close_while_waiting(self, server):
        program = self.start()
        self.see_wait_page()
        self.see(server.asked.is_set, "the request for the catalogue")
        self.ask_to_close()
        self.see_message(scenario.PROMPT)
        return program

    def end_without_another_message(self, program):
        self.answer_message()
        # A second message would keep it.
        self.see_end(program)
        self.assertFalse(self.prefix.page.exists())

    def test_closing_while_waiting_shows_the_prompt_and_gives_up_the_download(self):
        server = self.serve(CATALOGUE, hold=True)
        self.end_without_another_message(self.close_while_waiting(server))

    def test_a_failure_that_comes_while_the_prompt_is_shown_changes_nothing(self):
        server = self.serve(CATALOGUE, hold=True, fail="not-found")
        program = self.close_while_waiting(server)
        server.release()
        self.see(server.answered.is_set, "the answer to the request")
        self.assertEqual([(scenario.TITLE, scenario.PROMPT)], self.probe.messages())
        self.end_without_another_message(program)

    def test_closing_the_voices_page_shows_the_prompt_over_it_and_writes_nothing(self):
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page()
        self.tick(AGNES.shown)
        self.see_status("1 voice, 75MB")
        self.ask_to_close()
        self.see_message(scenario.PROMPT)
        form = self.probe.form()
        self.assertFalse(form.enabled, "the message is the window's own, and answered first")
        self.answer_message()
        self.see_end(program)
        self.assertFalse(self.prefix.queue.exists())
        self.assertEqual([], self.calls(self.installer))

    def test_closing_at_the_first_moment_while_the_catalogue_comes_ends_it(self):
        self.serve(CATALOGUE)
        program = self.start()
        self.see(self.probe.form, "the window")
        self.close_with_prompt(program)

    def test_closing_both_messages_of_a_failure_by_their_frames_ends_it(self):
        self.serve(CATALOGUE, fail="cut-short")
        program = self.start()
        self.see_message(scenario.FAILURE)
        self.probe.close_message()
        self.see_message(scenario.PROMPT)
        self.probe.close_message()
        self.see_end(program)


if __name__ == "__main__":
    scenario.main()
