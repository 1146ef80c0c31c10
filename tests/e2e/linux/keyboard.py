#!/usr/bin/python3
# The program without a pointer. SPDX-License-Identifier: MIT
import scenario
from catalogue import Voice, catalogue

import accessible
import desktop

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
BERIT = Voice("12", "Berit", "Norwegian", 135_000_000)


class Keyboard(scenario.Scenario):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        desktop.introduce_keyboard()

    def see_page_with_focus(self):
        self.serve(catalogue(BERIT, AGNES))
        program = self.start()
        self.see_page(program)
        number = self.window_number(program)
        self.see(lambda: desktop.active_window() == number, "the window to be active")
        self.see_focus_at_voice(program, AGNES)
        self.see_status(program, "")
        return program

    def see_focus(self, find, what):
        self.see(lambda: accessible.has_focus(find()), f"the focus at {what}")

    def see_focus_at_voice(self, program, voice):
        self.see_focus(lambda: program.box(voice.shown), voice.shown)

    def go_to_install(self, program):
        """With one voice ticked on the way."""
        desktop.keys("space")
        self.see_status(program, "1 voice, 75MB")
        desktop.keys("Tab")
        self.see_focus_at_voice(program, BERIT)
        desktop.keys("Tab")
        self.see_focus(program.button, "Install")

    def see_queue(self, program, queue):
        self.see_end(program)
        self.assertEqual(queue, self.installation.queue.read_bytes())

    def test_tab_and_space_tick_a_voice_and_press_install(self):
        program = self.see_page_with_focus()
        self.go_to_install(program)
        desktop.keys("space")
        self.see_queue(program, b"<queue><item>7</item></queue>")

    def test_enter_presses_install_where_the_focus_is_there(self):
        program = self.see_page_with_focus()
        self.go_to_install(program)
        desktop.keys("Return")
        self.see_queue(program, b"<queue><item>7</item></queue>")

    def test_shift_tab_comes_back_into_the_page(self):
        program = self.see_page_with_focus()
        self.go_to_install(program)
        desktop.keys("shift+Tab")
        self.see_focus_at_voice(program, BERIT)
        desktop.keys("space")
        self.see_status(program, "2 voices, 210MB")
        desktop.keys("shift+Tab")
        self.see_focus_at_voice(program, AGNES)
        desktop.keys("space")
        self.see_status(program, "1 voice, 135MB")
        self.close_with_prompt(program)

    def test_tab_goes_round(self):
        program = self.see_page_with_focus()
        self.go_to_install(program)
        desktop.keys("Tab")
        self.see_focus_at_voice(program, AGNES)
        # The first key after coming back is for the page, too.
        desktop.keys("space")
        self.see_status(program, "")
        self.close_with_prompt(program)

    def test_the_underlined_letter_presses_install(self):
        program = self.see_page_with_focus()
        self.tick(program, BERIT.shown)
        self.see_status(program, "1 voice, 135MB")
        desktop.keys("alt+i")
        self.see_queue(program, b"<queue><item>12</item></queue>")

    def test_alt_f4_closes_and_enter_answers_the_prompt(self):
        program = self.see_page_with_focus()
        desktop.keys("alt+F4")
        self.see_message(program, scenario.PROMPT)
        self.see_focus(lambda: program.message_buttons()[0], "OK")
        desktop.keys("Return")
        self.see_end(program)

    def test_escape_answers_the_prompt_too(self):
        program = self.see_page_with_focus()
        desktop.keys("alt+F4")
        self.see_message(program, scenario.PROMPT)
        self.see_focus(lambda: program.message_buttons()[0], "OK")
        desktop.keys("Escape")
        self.see_end(program)


if __name__ == "__main__":
    scenario.main()
