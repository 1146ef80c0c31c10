#!/usr/bin/python3
# Voices that Windows Installer knows already. SPDX-License-Identifier: MIT
import scenario
from catalogue import Voice, catalogue

import accessible

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000, "{12345678-9ABC-DEF0-1122-334455667788}")
BERIT = Voice("12", "Berit", "Norwegian", 135_000_000, "{22345678-9ABC-DEF0-1122-334455667788}")
ERIK = Voice("13", "Erik", "Swedish", 90_000_000, "{32345678-9ABC-DEF0-1122-334455667788}")
CATALOGUE = catalogue(ERIK, BERIT, AGNES)


class InstalledVoices(scenario.Scenario):
    def see_page_with_installed(self, *voices):
        self.installation.install(*voices)
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page(program)
        return program

    def close_without_prompt(self, program):
        self.ask_to_close(program)
        # A prompt would keep it.
        self.see_end(program)

    def headings(self, program):
        return [accessible.name(each) for each in accessible.find_all(program.page(), "heading")]

    def page_text(self, program):
        return "\n".join(accessible.text(each) for each in accessible.walk(program.page()))

    def test_they_stand_below_ticked_insensitive_and_uncounted(self):
        program = self.see_page_with_installed(AGNES)
        self.assertEqual(["Available Voices", "Already Installed"], self.headings(program))
        self.assertEqual([BERIT.shown], program.voices())
        *_, last = program.boxes()
        self.assertTrue(accessible.is_checked(last))
        self.assertFalse(accessible.is_enabled(last))
        self.assertIn(AGNES.shown, self.page_text(program))
        self.see_status(program, "")
        self.tick(program, BERIT.shown)
        self.see_status(program, "1 voice, 135MB")
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>12</item></queue>", self.installation.queue.read_bytes())

    def test_with_one_of_them_closing_shows_no_prompt(self):
        self.close_without_prompt(self.see_page_with_installed(AGNES))

    def test_one_that_shares_an_offered_voices_id_is_neither_counted_nor_queued(self):
        program = self.see_page_with_installed(BERIT)
        offered, installed = program.boxes()
        accessible.press(offered)
        self.see_status(program, "1 voice, 75MB")
        self.assertFalse(accessible.is_enabled(installed))
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.installation.queue.read_bytes())

    def test_one_that_is_queued_still_is_not_counted(self):
        self.installation.queue.write_bytes(b"<queue><item>7</item><item>12</item></queue>")
        program = self.see_page_with_installed(AGNES)
        self.see_status(program, "1 voice, 135MB")
        self.assertEqual([BERIT.shown], program.ticked())
        self.close_without_prompt(program)

    def test_where_all_are_installed_nothing_is_offered(self):
        program = self.see_page_with_installed(AGNES, BERIT)
        self.assertEqual([], program.voices())
        self.assertEqual(2, len(program.boxes()))
        self.see_status(program, "")
        self.close_without_prompt(program)

    def test_a_swedish_one_is_listed_in_other_languages_only_when_installed(self):
        program = self.see_page_with_installed(AGNES, BERIT)
        self.assertNotIn(ERIK.shown, self.page_text(program))
        self.close_without_prompt(program)
        self.installation.install(AGNES, BERIT, ERIK)
        program = self.start()
        self.see_page(program)
        self.assertEqual([], program.voices())
        self.assertIn(ERIK.shown, self.page_text(program))
        self.close_without_prompt(program)


if __name__ == "__main__":
    scenario.main()
