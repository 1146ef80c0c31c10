#!/usr/bin/python3
# One window, however often the program is started. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

CATALOGUE = catalogue(Voice("7", "Ágnes", "Hungarian", 75_000_000))


class OneInstance(scenario.Scenario):
    def test_a_second_start_brings_the_first_to_the_front_and_ends(self):
        self.serve(CATALOGUE)
        first = self.start()
        self.see_page()
        number = self.probe.form().number
        cover = self.prefix.start("winver")
        self.addCleanup(cover.wait)
        self.addCleanup(cover.kill)
        self.see(lambda: self.front() not in (0, number), "another window in front")
        second = self.start()
        self.see_end(second)
        self.see(lambda: self.front() == number, "the first window in front")
        forms = [window for window in self.probe.windows() if window.kind != "#32770"]
        self.assertEqual([number], [form.number for form in forms])
        self.assertEqual(["shown", "shown"], [what for what, _, _ in self.page.journal()],
                         "the first goes on as it was")
        for message in self.probe.windows():
            if message.kind == "#32770":
                self.probe.ask("close", message.number)
        self.close_with_prompt(first)

    def front(self):
        return int(self.probe.ask("front")[0])

    def test_a_program_that_was_killed_is_in_nobodys_way(self):
        self.serve(CATALOGUE)
        first = self.start()
        self.see_page()
        first.process.kill()
        first.process.wait()
        self.programs.remove(first)
        self.see(lambda: not self.probe.windows(), "the window to go")
        second = self.start()
        self.see_page()
        self.close_with_prompt(second)


if __name__ == "__main__":
    scenario.main()
