#!/usr/bin/python3
# What a page must not do, and what the program must not let it do. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Canary, Voice, catalogue

GOOD = Voice("7", "Ágnes", "Hungarian", 75_000_000)

# Tries to tick every box, to give the boxes other ids, and to show that it ran by the title.
HARM = (
    'document.title="harmed";document.querySelectorAll("input")'
    '.forEach(function(box){box.checked=true;box.id="check666"})'
)

# A file of another machine.
FAR = "file://velor.example/share/page.htm"


class PageSafety(scenario.Scenario):
    def setUp(self):
        super().setUp()
        self.canary = Canary()
        self.addCleanup(self.canary.stop)

    def see_page_with_name(self, name):
        self.serve(catalogue(GOOD, Voice("12", name, "Norwegian", 135_000_000)))
        program = self.start()
        self.see_page()
        return program

    def verdicts(self):
        """What the program said of navigations that it did not begin."""
        return [(what, where, said) for what, where, said in self.page.journal() if what != "shown"]

    def see_verdict(self, number):
        self.see(
            lambda: len(self.verdicts()) == number and self.verdicts()[-1][2], f"verdict {number}"
        )

    def test_links_into_the_web_are_dead_and_the_page_goes_on(self):
        web = self.canary.address
        ftp = "ftp" + web[4:]
        program = self.see_page_with_name(
            f'Berit</label> <a href="{web}">web</a> <a href="{web}" target="_blank">window</a>'
            f' <a href="{ftp}">ftp</a> <a href="{FAR}">far</a>'
        )
        for number, name in enumerate(("web", "window", "ftp", "far"), start=1):
            self.click_on_page("a", name)
            self.see_verdict(number)
        self.assertEqual(
            [("navigating", web, "cancel"), ("opening", web, "cancel"),
             ("navigating", ftp, "cancel"), ("navigating", FAR, "cancel")],
            self.verdicts(),
        )
        self.assertEqual(scenario.VOICES_PAGE, self.page.title())
        self.tick(GOOD.shown)
        self.see_status("1 voice, 75MB")
        self.press_install()
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.prefix.queue.read_bytes())
        self.assertFalse(self.canary.knocked(), "a link led into the web")

    def test_a_link_to_a_file_is_followed(self):
        other = self.folder / "other.htm"
        other.write_text("<!DOCTYPE html><title>Somewhere else</title><p>Here.")
        address = other.as_uri().replace("file:///", "file:///Z:/")
        program = self.see_page_with_name(f'Berit</label> <a href="{address}">file</a>')
        self.click_on_page("a", "file")
        self.see(lambda: self.page.title() == "Somewhere else", "the page that the link leads to")
        self.assertEqual([("navigating", address, "go")], self.verdicts())
        self.see_status("")
        self.close_with_prompt(program)

    def test_neither_scripts_nor_references_in_a_name_do_anything(self):
        address = self.canary.address
        program = self.see_page_with_name(
            f"Berit<script>{HARM}</script><img src='x' onerror='{HARM}'><img src='{address}a'>"
            f"<link rel='stylesheet' href='{address}b'><script src='{address}c'></script>"
            f"<style>body{{background:url({address}d)}}</style>"
        )
        self.see_status("")
        self.assertEqual([], self.page.ticked())
        self.tick(GOOD.shown)
        self.see_status("1 voice, 75MB")
        self.assertEqual(scenario.VOICES_PAGE, self.page.title())
        self.press_install()
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.prefix.queue.read_bytes())
        self.assertFalse(self.canary.knocked(), "somebody was called over the network")


if __name__ == "__main__":
    scenario.main()
