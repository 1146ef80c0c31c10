#!/usr/bin/python3
# Where things stand in a language that is written from right to left, and what is left where the
# language files are missing. What people hear is in accessibility.py. SPDX-License-Identifier: MIT
import scenario
from catalogue import Voice, catalogue

import accessible

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
ERIK = Voice("13", "Erik", "Swedish", 90_000_000)
CATALOGUE = catalogue(ERIK, AGNES)
LANGUAGE_FILES = ("Languages.xml", "VelorVoiceSetup.Language.xml")


class Languages(scenario.Scenario):
    def see_page_in(self, language):
        self.installation.choose_language(language)
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page(program)
        return program

    def see_prompt_and_end(self, program, prompt):
        self.ask_to_close(program)
        self.see_message(program, prompt)
        self.answer_message(program)
        self.see_end(program)

    def places(self, program):
        """From left to right on the screen."""
        controls = {
            "logo": program.logo(),
            "page": program.page(),
            "button": program.button(),
            "label": program.label(),
        }
        return {name: accessible.place(control) for name, control in controls.items()}

    def test_arabic_is_the_mirror_image_of_english(self):
        english = self.see_page_in("en")
        window = accessible.place(english.window())
        left = self.places(english)
        self.assertLess(left["logo"].x, left["page"].x)
        self.assertLess(left["label"].x, left["button"].x)
        self.close_with_prompt(english)
        self.installation.choose_language("ar")
        arabic = self.start()
        self.see_page(arabic)
        mirrored = self.places(arabic)
        offset = accessible.place(arabic.window())
        for name in ("logo", "button", "label"):
            with self.subTest(control=name):
                from_left = left[name].x - window.x
                from_right = offset.x + offset.width - mirrored[name].x - mirrored[name].width
                self.assertEqual(from_left, from_right)
                self.assertEqual(left[name].y - window.y, mirrored[name].y - offset.y)
                self.assertEqual(left[name].width, mirrored[name].width)
        self.ask_to_close(arabic)
        self.see(arabic.messages, "the prompt")
        self.answer_message(arabic)
        self.see_end(arabic)

    def test_the_failure_message_is_in_the_language_of_the_window(self):
        self.installation.choose_language("de")
        program = self.start()
        self.see_message(
            program,
            "Die Website von Velor Software ist nicht erreichbar. "
            "Bitte überprüfen Sie Ihre Internetverbindung.",
        )
        self.answer_message(program)
        self.see(program.messages, "the prompt")
        self.answer_message(program)
        self.see_end(program)

    def test_the_first_configured_language_is_not_taken_from_the_system(self):
        (self.installation.folder / "VelorVoiceSetup.ini").unlink()
        program = self.start()
        # English of Britain is where everything begins that nobody has configured.
        self.see_message(program, scenario.FAILURE)
        self.answer_message(program)
        self.see_message(program, scenario.PROMPT)
        self.answer_message(program)
        self.see_end(program)

    def test_without_texts_the_window_works_as_it_was_designed(self):
        for file in LANGUAGE_FILES:
            (self.installation.folder / file).unlink()
        program = self.see_page_in("sv")
        self.assertEqual("Install", accessible.name(program.button()))
        self.assertEqual([AGNES.shown, ERIK.shown], program.voices())
        self.tick(program, AGNES.shown)
        self.see_status(program, "1  75MB")
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.installation.queue.read_bytes())

    def test_without_texts_the_prompt_is_empty_and_can_be_answered(self):
        (self.installation.folder / "VelorVoiceSetup.Language.xml").unlink()
        program = self.see_page_in("en")
        self.see_prompt_and_end(program, "")

    def see_english_window_and_end(self, program):
        self.assertEqual(scenario.TITLE, accessible.name(program.window()))
        self.assertEqual("Install", accessible.name(program.button()))
        tips = [accessible.description(each).strip() for each in (program.button(), program.label())]
        self.assertEqual(
            ["Install the selected voices", "Number and total size of the selected voices"], tips
        )
        headings = map(accessible.name, accessible.find_all(program.page(), "heading"))
        self.assertEqual(["Available Voices"], list(headings))
        self.tick(program, AGNES.shown)
        self.see_status(program, "1 voice, 75MB")
        self.close_with_prompt(program)

    def test_a_language_that_no_list_names_is_english(self):
        self.see_english_window_and_end(self.see_page_in("nn"))

    def test_the_messages_of_a_language_that_no_list_names_are_english(self):
        self.installation.choose_language("nn")
        program = self.start()
        self.see_message(program, scenario.FAILURE)
        self.answer_message(program)
        self.see_message(program, scenario.PROMPT)
        self.answer_message(program)
        self.see_end(program)

    def test_without_the_list_of_languages_every_language_is_english(self):
        (self.installation.folder / "Languages.xml").unlink()
        self.see_english_window_and_end(self.see_page_in("sv"))


if __name__ == "__main__":
    scenario.main()
