#!/usr/bin/python3
# The main path on Windows: from the wait page over ticks and status line to the hand-over, and the
# ticks that come back at the second start. SPDX-License-Identifier: MIT
import pathlib

import windows_scenario as scenario
from catalogue import Voice, catalogue

# In the order of the page, which is not that of the catalogue.
AGNES = Voice("7", "Ágnes", "Hungarian", 74_600_000)
BERIT = Voice("a-12", "Berit", "Norwegian", 135_500_000)
CARLA = Voice("40", "Carla", "Spanish", 2_500_000)
CATALOGUE = catalogue(CARLA, BERIT._replace(id="11", kind="Mac Voices"), AGNES, BERIT)


class SelectAndInstall(scenario.Scenario):
    def start_with_voices(self):
        program = self.start()
        self.see_page()
        return program

    def see_hand_over(self, program, queue):
        # Nobody answers a message here: one would keep the program from ending.
        self.see_end(program)
        self.assertEqual(queue, self.prefix.queue.read_bytes())
        self.assertEqual(CATALOGUE, self.prefix.products.read_bytes())
        self.see_installer()

    def test_the_wait_page_is_shown_until_the_catalogue_has_come(self):
        server = self.serve(CATALOGUE, hold=True)
        program = self.start()
        self.see_wait_page()
        self.see(server.asked.is_set, "the request for the catalogue")
        self.assertEqual(scenario.TITLE, self.probe.form().text)
        self.assertEqual("Loading voices…", self.status())
        self.assertFalse(self.can_install())
        server.release()
        self.see_page()
        self.assertEqual([AGNES.shown, BERIT.shown, CARLA.shown], self.page.voices())
        self.see_status("")
        self.assertFalse(self.can_install())
        first, second = self.page.journal()
        self.assertTrue(first[1].endswith("/wait.htm"), first)
        self.assertEqual("shown", second[0])
        self.assertEqual(self.prefix.page.resolve(), pathlib.Path(second[1]).resolve())
        self.close_with_prompt(program)

    def test_ticks_change_the_status_line_and_the_button_and_install_hands_over(self):
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(AGNES.shown)
        self.see_status("1 voice, 75MB")
        self.assertTrue(self.can_install())
        self.tick(AGNES.shown)
        self.see_status("")
        self.see(lambda: not self.can_install(), "Install to be disabled")
        self.tick(CARLA.shown)
        self.tick(BERIT.shown)
        self.see_status("2 voices, 138MB")
        self.press_install()
        self.see_hand_over(program, b"<queue><item>a-12</item><item>40</item></queue>")

    def test_queued_voices_are_ticked_at_the_next_start_and_counted_at_once(self):
        self.prefix.queue.write_bytes(b"<queue><item>7</item><item>40</item></queue>")
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.assertEqual([AGNES.shown, CARLA.shown], self.page.ticked())
        self.see_status("2 voices, 77MB")
        self.assertTrue(self.can_install())
        # One chosen anew, one no more: the old queue is replaced.
        self.tick(BERIT.shown)
        self.tick(CARLA.shown)
        self.see_status("2 voices, 211MB")
        self.press_install()
        self.see_hand_over(program, b"<queue><item>7</item><item>a-12</item></queue>")

    def test_without_the_makers_folder_nothing_is_written_and_the_installer_is_started(self):
        self.prefix.data.rmdir()
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(AGNES.shown)
        self.press_install()
        self.see_end(program)
        self.see_installer()
        self.assertFalse(self.prefix.data.exists())


if __name__ == "__main__":
    scenario.main()
