#!/usr/bin/python3
# The window in a language that is written from right to left. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
PROMPT = "يمكنك الحصول على المزيد من الأصوات في أي وقت بتشغيل Velor Voice Setup مرة أخرى."
CONTROLS = ("picLogo", "webOptions", "lblStatus", "cmdInstall")


class RightToLeft(scenario.Scenario):
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


if __name__ == "__main__":
    scenario.main()
