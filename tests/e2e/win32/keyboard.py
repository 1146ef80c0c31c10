#!/usr/bin/python3
# The keyboard's way through the window, by keys that the window gets from the display.
# SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

import desktop

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
BERIT = Voice("12", "Berit", "Norwegian", 135_000_000)


class Keyboard(scenario.Scenario):
    def focused(self):
        """The name of the control with the focus; on the page the id of the element."""
        number = int(self.probe.ask("focus")[0])
        form = self.probe.form()
        found = next((each for each in form.controls if each.number == number), None)
        if found and found.kind == "Internet Explorer_Server":
            return self.page.evaluate("document.activeElement.id") or "page"
        return found.name if found else None

    def press(self, key, focused):
        desktop.keys(key)
        self.see(lambda: self.focused() == focused, f"the focus at {focused} after {key}")

    def test_tab_goes_through_the_page_to_install_and_back_and_enter_installs(self):
        self.serve(catalogue(AGNES, BERIT))
        program = self.start()
        self.see_page()
        self.give_focus()
        self.see(lambda: self.focused() == "page", "the focus on the page")
        self.press("Tab", "check7")
        desktop.keys("space")
        self.see_status("1 voice, 75MB")
        self.press("Tab", "check12")
        self.see(self.can_install, "Install to be enabled")
        self.press("Tab", "cmdInstall")
        self.press("shift+Tab", "check12")
        desktop.keys("space")
        self.see_status("2 voices, 210MB")
        self.press("Tab", "cmdInstall")
        desktop.keys("Return")
        self.see_end(program)
        self.see_installer()
        self.assertEqual(
            b"<queue><item>7</item><item>12</item></queue>", self.prefix.queue.read_bytes()
        )

    def test_the_mnemonic_installs_from_within_the_page(self):
        self.serve(catalogue(AGNES))
        program = self.start()
        self.see_page()
        self.give_focus()
        self.see(lambda: self.focused() == "page", "the focus on the page")
        self.press("Tab", "check7")
        desktop.keys("space")
        self.see(self.can_install, "Install to be enabled")
        desktop.keys("alt+i")
        self.see_end(program)
        self.see_installer()


if __name__ == "__main__":
    scenario.main()
