#!/usr/bin/python3
# Names in a catalogue that are more than names: they stand in the page as markup, and must neither
# run, nor lead anywhere, nor change what is queued. SPDX-License-Identifier: MIT
import xml.etree.ElementTree as ElementTree

import scenario
from catalogue import Canary, Voice, catalogue

import accessible
import desktop

GOOD = Voice("7", "Ágnes", "Hungarian", 75_000_000)

# Each tries to tick every box, to give the boxes other ids, and to show that it ran by the title.
HARM = (
    'document.title="harmed";document.querySelectorAll("input")'
    '.forEach(function(box){box.checked=true;box.id="check666"})'
)


class HostilePage(scenario.Scenario):
    def setUp(self):
        super().setUp()
        self.canary = Canary()
        self.addCleanup(self.canary.stop)

    def see_page_with_name(self, name):
        self.serve(catalogue(GOOD, Voice("12", name, "Norwegian", 135_000_000)))
        program = self.start()
        self.see_page(program)
        return program

    def see_that_the_page_still_works(self, program):
        """And that what is ticked is what is counted and queued."""
        self.see_status(program, "")
        self.tick(program, GOOD.shown)
        self.see_status(program, "1 voice, 75MB")
        self.assertEqual([GOOD.shown], program.ticked())
        self.assertIsNotNone(program.page(), "the page keeps its title")
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.installation.queue.read_bytes())
        self.assertFalse(self.canary.knocked(), "somebody was called over the network")

    def link(self, program, name):
        return self.see(lambda: accessible.find(program.page(), "link", name), f"the link {name}")

    def click(self, link):
        place = accessible.place(link)
        desktop.click(place.x + place.width // 2, place.y + place.height // 2)

    def see_that_links_are_dead(self, follow):
        """A link to a file shows that following it this way would lead somewhere."""
        other = self.folder / "other.htm"
        other.write_text("<!DOCTYPE html><title>Somewhere else</title><p>Here.")
        program = self.see_page_with_name(
            f'Berit</label> <a href="{self.canary.address}">web</a>'
            f' <a href="{self.canary.address}" target="_blank">window</a>'
            f' <a href="ftp{self.canary.address[4:]}">ftp</a>'
            f' <a href="{other.as_uri()}">file</a>'
        )
        for name in ("web", "window", "ftp"):
            follow(self.link(program, name))
        follow(self.link(program, "file"))
        self.see(lambda: program.page("Somewhere else"), "the page that the last link leads to")
        self.assertFalse(self.canary.knocked(), "a link led into the web")
        self.assertEqual(1, len(desktop.windows_of(program.process.pid)))
        self.close_with_prompt(program)

    def test_a_link_into_the_web_does_nothing_when_it_is_clicked(self):
        self.see_that_links_are_dead(self.click)

    def test_a_link_into_the_web_does_nothing_when_it_is_followed_otherwise(self):
        self.see_that_links_are_dead(accessible.press)

    def test_a_page_goes_on_after_a_dead_link_was_clicked(self):
        program = self.see_page_with_name(f'Berit</label> <a href="{self.canary.address}">web</a>')
        self.click(self.link(program, "web"))
        self.see_that_the_page_still_works(program)

    def test_a_script_in_a_name_does_not_run(self):
        self.see_that_the_page_still_works(
            self.see_page_with_name(f"Berit<script>{HARM}</script><img src='x' onerror='{HARM}'>")
        )

    def test_a_reference_in_a_name_loads_nothing(self):
        address = self.canary.address
        self.see_that_the_page_still_works(
            self.see_page_with_name(
                f"Berit<img src='{address}a'><link rel='stylesheet' href='{address}b'>"
                f"<link rel='preconnect' href='{address}'><iframe src='{address}c'></iframe>"
                f"<script src='{address}d'></script><meta http-equiv='refresh' content='0;{address}e'>"
                f"<object data='{address}f'></object><style>body{{background:url({address}g)}}</style>"
            )
        )

    def test_an_id_that_would_break_the_queue_leaves_the_earlier_one(self):
        self.installation.queue.write_bytes(b"<queue><item>1</item></queue>")
        bad = Voice("2</item><item>7", "Berit", "Norwegian", 135_000_000)
        self.serve(catalogue(GOOD, bad))
        program = self.start()
        self.see_page(program)
        self.tick(program, bad.shown)
        self.see_status(program, "1 voice, 135MB")
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>1</item></queue>", self.installation.queue.read_bytes())
        self.see(lambda: self.installation.installer.calls, "the installer program")

    def test_what_is_queued_is_what_was_seen_ticked_whatever_boxes_the_names_bring(self):
        """One box too many stands for a voice and is ticked, unseen; one is named as the function
        that finds boxes; and the earlier queue is no list of ids."""
        self.installation.queue.write_text(
            """<queue><item>' or '1'='2</item><item>7<b id='7'/>&lt;</item><i><item>7</item></i>"""
            "<item id='7'>\u202e</item></queue>"
        )
        trap = "<input type='checkbox' id='check7' checked hidden><img name='getElementsByTagName'>"
        line_ends = Voice("40", "Carla\n\u202ealrac", "Spanish", 2_500_000)
        self.serve(
            catalogue(
                GOOD, line_ends, Voice("12", f"Anna{trap}", "Arabic", 60_000_000),
                Voice("x' or '1'='1", "Dora", "Thai", 60_000_000),
            )
        )
        program = self.start()
        self.see_page(program)
        self.assertEqual(["Arabic Anna", GOOD.shown], program.voices()[:2])
        self.see_ticked(program, "Thai Dora")
        self.tick(program, "Thai Dora")
        self.tick(program, program.voices()[2])
        # By number a box belongs to the voice of the same number; one too many is counted too.
        self.see(lambda: (program.status() or "").startswith("2 voices,"), "the count")
        self.press_install(program)
        self.see_end(program)
        self.assertEqual(b"<queue><item>40</item></queue>", self.installation.queue.read_bytes())

    def write_hostile_texts(self):
        """Every text is its key and what would do harm if it were more than a text."""
        file = self.installation.folder / "VelorVoiceSetup.Language.xml"
        document = ElementTree.parse(file)
        harm = f" '\"<b>&amp;</b>\u202e<script>{HARM}</script><img src='{self.canary.address}'>\n%s%n"
        for item in document.iter("item"):
            for content in item.findall("content"):
                content.text = item.findtext("key") + harm
        document.write(file, encoding="utf-8")
        return harm.strip()

    def test_texts_of_a_language_file_are_texts(self):
        harm = self.write_hostile_texts()
        self.serve(catalogue(GOOD))
        program = self.start()
        self.see_page(program)
        self.assertEqual(f"frmSelect.Caption {harm}", accessible.name(program.window()))
        self.see_status(program, "")
        self.tick(program, GOOD.shown)
        self.see_status(program, f"1 voice, {harm} 75MB")
        self.assertEqual([GOOD.shown], program.ticked())
        page = self.installation.page.read_bytes().decode("utf-16")
        self.assertIn(f">Available Voices {harm}</h2>\r\n", page)
        self.ask_to_close(program)
        self.see_message(program, f"Get more voices prompt {harm}")
        self.answer_message(program)
        self.see_end(program)
        self.assertFalse(self.canary.knocked(), "somebody was called over the network")


if __name__ == "__main__":
    scenario.main()
