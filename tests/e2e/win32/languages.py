#!/usr/bin/python3
# The window in a language that is written from right to left, and in one that no list names.
# SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
PROMPT = "يمكنك الحصول على المزيد من الأصوات في أي وقت بتشغيل Velor Voice Setup مرة أخرى."
CONTROLS = ("picLogo", "webOptions", "lblStatus", "cmdInstall")


class Languages(scenario.Scenario):
    def start_in(self, language):
        self.choose_language(language)
        program = self.start()
        self.see_page()
        return program, self.probe.form()

    def end(self, program, prompt):
        self.ask_to_close()
        self.see_message(prompt)
        self.answer_message()
        self.see_end(program)

    def test_arabic_is_the_mirror_image_of_english_with_arabic_texts(self):
        self.serve(catalogue(AGNES))
        program, english = self.start_in("en")
        self.assertFalse(english.mirrored)
        self.end(program, scenario.PROMPT)
        program, arabic = self.start_in("ar")
        self.assertTrue(arabic.mirrored)
        self.assertEqual(english.right - english.left, arabic.right - arabic.left)
        for name in CONTROLS:
            with self.subTest(control=name):
                left, right = english.control(name), arabic.control(name)
                self.assertEqual(left.left - english.left, arabic.right - right.right)
                self.assertEqual(left.right - english.left, arabic.right - right.left)
                self.assertEqual(left.top - english.top, right.top - arabic.top)
        self.assertFalse(arabic.control("webOptions").mirrored, "the page knows its own direction")
        self.assertIn("تثبيت", arabic.control("cmdInstall").text)
        self.tick(AGNES.shown)
        self.see_status("1 صوت، 75MB")
        self.end(program, PROMPT)

    def test_a_language_that_no_list_names_is_english(self):
        # Without a server.
        self.choose_language("nn")
        program = self.start()
        self.see_message(scenario.FAILURE)
        self.answer_message()
        self.see_message(scenario.PROMPT)
        self.answer_message()
        self.see_end(program)
        self.serve(catalogue(AGNES))
        program, form = self.start_in("nn")
        self.assertEqual(scenario.TITLE, form.text)
        self.assertEqual("&Install", form.control("cmdInstall").text)
        headings = "Array.from(document.querySelectorAll('h2')).map(function (h) { return h.textContent; })"
        self.assertEqual(["Available Voices"], self.page.evaluate(headings))
        self.tick(AGNES.shown)
        self.see_status("1 voice, 75MB")
        self.close_with_prompt(program)


if __name__ == "__main__":
    scenario.main()
