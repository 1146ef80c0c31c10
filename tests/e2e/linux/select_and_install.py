#!/usr/bin/python3
# The main path: from the wait page over ticks and status line to the hand-over, and the ticks that
# come back at the second start. SPDX-License-Identifier: MIT
import os
import signal

import scenario
from catalogue import Voice, catalogue
from installation import NOTHING_INHERITED

import accessible

# In the order of the page, which is not that of the catalogue.
AGNES = Voice("7", "Ágnes", "Hungarian", 74_600_000)
BERIT = Voice("a-12", "Berit", "Norwegian", 135_500_000)
CARLA = Voice("40", "Carla", "Spanish", 2_500_000)
CATALOGUE = catalogue(
    CARLA,
    BERIT._replace(id="11", kind="Mac Voices"),
    AGNES,
    Voice("9", "Demo Denise", "French", 50_000_000),
    Voice("10", "Tiny", "Danish", 400_000),
    BERIT,
)


class SelectAndInstall(scenario.Scenario):
    def start_with_voices(self):
        program = self.start()
        self.see_page(program)
        return program

    def see_hand_over(self, program, queue):
        # Nobody answers a message here: one would keep the program from ending.
        self.see_end(program)
        self.assertEqual(queue, self.installation.queue.read_bytes())
        self.assertEqual(CATALOGUE, self.installation.products.read_bytes())
        installer = self.installation.installer
        call = {
            "program": str(installer.path),
            "arguments": [],
            "folder": str(self.installation.folder),
            "open": NOTHING_INHERITED,
        }
        # Not the first call alone: whatever was started has ended.
        self.see_nobody_left()
        self.assertEqual([call], installer.calls)

    def test_the_wait_page_is_shown_until_the_catalogue_has_come(self):
        server = self.serve(CATALOGUE, hold=True)
        program = self.start()
        self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
        self.see(server.asked.is_set, "the request for the catalogue")
        self.assertEqual(scenario.TITLE, accessible.name(program.window()))
        self.assertEqual("Loading voices…", program.status())
        self.assertFalse(accessible.is_enabled(program.button()))
        server.release()
        self.see_page(program)
        self.assertEqual([AGNES.shown, BERIT.shown, CARLA.shown], program.voices())
        self.see_status(program, "")
        self.assertFalse(accessible.is_enabled(program.button()))
        self.close_with_prompt(program)

    def test_ticks_change_the_status_line_and_the_button(self):
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(program, AGNES.shown)
        self.see_status(program, "1 voice, 75MB")
        self.assertTrue(accessible.is_enabled(program.button()))
        self.tick(program, BERIT.shown)
        self.see_status(program, "2 voices, 211MB")
        self.see_ticked(program, AGNES.shown, BERIT.shown)
        self.tick(program, AGNES.shown)
        self.see_status(program, "1 voice, 136MB")
        self.tick(program, BERIT.shown)
        self.see_status(program, "")
        self.see(lambda: not accessible.is_enabled(program.button()), "Install to be disabled")
        self.close_with_prompt(program)
        self.assertFalse(self.installation.queue.exists())
        self.assertEqual([], self.installation.installer.calls)

    def test_closing_right_after_install_hands_over_too(self):
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(program, AGNES.shown)
        self.see_status(program, "1 voice, 75MB")
        self.see(lambda: accessible.is_enabled(program.button()), "Install to be enabled")
        button = program.button()
        children = scenario.children(program.process.pid)
        [engine] = [number for number, name in children if name.startswith("WebKitWeb")]
        # The page cannot answer before the request to close has come.
        os.kill(engine, signal.SIGSTOP)
        try:
            accessible.press(button)
            self.ask_to_close(program)
            # Some answers later the program has handled the request.
            program.status()
        finally:
            os.kill(engine, signal.SIGCONT)
        self.see_hand_over(program, b"<queue><item>7</item></queue>")

    def test_install_hands_over_what_is_ticked_in_the_order_of_the_page(self):
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(program, CARLA.shown)
        self.tick(program, BERIT.shown)
        self.see_status(program, "2 voices, 138MB")
        self.press_install(program)
        self.see_hand_over(program, b"<queue><item>a-12</item><item>40</item></queue>")

    def test_queued_voices_are_ticked_at_the_second_start_and_counted_at_once(self):
        self.serve(CATALOGUE)
        first = self.start_with_voices()
        self.tick(first, AGNES.shown)
        self.tick(first, CARLA.shown)
        self.see_status(first, "2 voices, 77MB")
        self.press_install(first)
        self.see_hand_over(first, b"<queue><item>7</item><item>40</item></queue>")
        second = self.start_with_voices()
        self.see_ticked(second, AGNES.shown, CARLA.shown)
        self.see_status(second, "2 voices, 77MB")
        self.assertTrue(accessible.is_enabled(second.button()))
        # One chosen anew, one no more: the old queue is replaced.
        self.tick(second, BERIT.shown)
        self.tick(second, CARLA.shown)
        self.see_status(second, "2 voices, 211MB")
        self.press_install(second)
        self.see_end(second)
        self.assertEqual(
            b"<queue><item>7</item><item>a-12</item></queue>", self.installation.queue.read_bytes()
        )

    def test_a_malformed_queue_gives_a_page_without_ticks(self):
        self.installation.queue.write_bytes(b"<queue><item>7</item>")
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.see_status(program, "")
        self.assertEqual([], program.ticked())
        self.close_with_prompt(program)

    def test_without_the_makers_folder_nothing_is_written_and_the_installer_is_started(self):
        self.installation.data.rmdir()
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        self.tick(program, AGNES.shown)
        self.press_install(program)
        self.see_end(program)
        self.see(lambda: self.installation.installer.calls, "the installer program")
        self.assertFalse(self.installation.data.exists())

    def test_the_page_file_is_utf_16_with_a_mark_and_windows_line_ends(self):
        self.serve(CATALOGUE)
        program = self.start_with_voices()
        page = self.installation.page.read_bytes()
        self.assertEqual(b"\xff\xfe", page[:2])
        text = page[2:].decode("utf-16-le")
        self.assertTrue(text.startswith("<!DOCTYPE html>\r\n<html>\r\n<title>Downloads</title>\r\n"))
        self.assertIn("<label for='check7'>Hungarian Ágnes</label>", text)
        self.assertTrue(text.endswith("</body>\r\n</html>\r\n"))
        self.close_with_prompt(program)


if __name__ == "__main__":
    scenario.main()
