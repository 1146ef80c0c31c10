#!/usr/bin/python3
# Where the program lies and what is around it: odd folders, files that are missing or no such files,
# things planted where it writes, a disk that is full, an environment that lacks what others have.
# SPDX-License-Identifier: MIT
import os
import resource

import scenario
from catalogue import Voice, catalogue
from installation import Installation

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
CATALOGUE = catalogue(AGNES)
QUEUE = b"<queue><item>7</item></queue>"
LONGEST = 250
# What still fits on a full disk, in bytes. The page and both files of this voice are longer; what the engine
# is asked is shorter, which may go through memory that counts as a file.
ROOM = 8192
LENGTHY = Voice("9" * ROOM, "Zuzana", "Slovak", 60_000_000)


def nothing(path):
    path.unlink()


def malformed(path):
    path.write_bytes(b"<!DOCTYPE a [<!ENTITY b 'c'>]><languages><language id=\"en\"></languages>")


def a_folder(path):
    path.unlink()
    path.mkdir()


def a_pipe(path):
    path.unlink()
    os.mkfifo(path)


class Surroundings(scenario.Scenario):
    def see_install(self, program):
        """The whole main path, which needs no word of the language files."""
        self.see_page(program)
        self.tick(program, AGNES.shown)
        self.press_install(program)
        self.see_end(program)
        self.see_nobody_left()
        self.assertEqual(1, len(self.installation.installer.calls))

    def see_hand_over(self):
        self.assertEqual(QUEUE, self.installation.queue.read_bytes())
        self.assertEqual(CATALOGUE, self.installation.products.read_bytes())

    def test_a_folder_with_every_kind_of_letter_and_a_long_name(self):
        name = "a b & 100% %20 #1?x=y;$HOME 'q' [ö] 中文 مجلد "
        parent = self.folder / name
        parent /= "x" * (LONGEST - len(os.fsencode(parent)) - 1)
        self.assertEqual(LONGEST, len(os.fsencode(parent)))
        self.installation = Installation(parent, scenario.build.program)
        self.serve(CATALOGUE)
        self.see_install(self.start())
        self.see_hand_over()
        self.assertTrue(self.installation.page.exists())

    def test_files_of_the_program_that_are_missing_or_no_such_files(self):
        """Each file is each kind once."""
        self.serve(CATALOGUE)
        names = ("wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml")
        kinds = (nothing, malformed, a_folder, a_pipe)
        for number, _ in enumerate(kinds):
            self.installation = Installation(self.folder / str(number), scenario.build.program)
            for shift, name in enumerate(names):
                kinds[(number + shift) % len(kinds)](self.installation.folder / name)
            with self.subTest(kinds[number].__name__):
                self.see_install(self.start())
                self.see_hand_over()

    def test_what_is_planted_where_files_are_written(self):
        victim = self.folder / "victim"
        victim.write_bytes(b"kept")
        planted = self.installation
        planted.queue.symlink_to(victim)
        planted.products.mkdir()
        planted.page.parent.mkdir(parents=True)
        planted.page.symlink_to(victim)
        self.serve(CATALOGUE)
        self.see_install(self.start())
        self.assertEqual(b"kept", victim.read_bytes())
        self.assertFalse(planted.queue.is_symlink())
        self.assertEqual(QUEUE, planted.queue.read_bytes())
        self.assertEqual([], list(planted.products.iterdir()))
        self.assertFalse(planted.page.is_symlink())
        self.assertEqual(0o600, planted.page.stat().st_mode & 0o777)
        self.assertEqual([planted.products, planted.queue], sorted(planted.data.iterdir()))

    def start_on_a_disk_that_fills(self):
        """It is full from the wait page on. A disk that is takes rights to make; so this is a limit for
        the length of each file, where writing fails half-way, too."""
        server = self.serve(catalogue(LENGTHY), hold=True)
        # A full disk sends no signal.
        program = self.start(through=("env", "--ignore-signal=XFSZ"))
        self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
        _, most = resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE)
        resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, (ROOM, most))
        server.release()
        return program

    def test_on_a_full_disk_what_an_earlier_run_wrote_stays_and_is_gone_on_with(self):
        page = (
            f"<title>{scenario.VOICES_PAGE}</title><input type='checkbox' id='check{LENGTHY.id}'>"
            f"<label for='check{LENGTHY.id}'>Written earlier</label>"
        ).encode("utf-16")
        files = self.installation
        files.page.parent.mkdir(parents=True)
        earlier = {files.page: page, files.queue: b"<queue></queue>", files.products: b"<products/>"}
        for file, content in earlier.items():
            file.write_bytes(content)
        program = self.start_on_a_disk_that_fills()
        self.see_page(program)
        self.tick(program, "Written earlier")
        self.see_status(program, "1 voice, 60MB")
        self.press_install(program)
        self.see_end(program)
        self.see_nobody_left()
        self.assertEqual(1, len(files.installer.calls))
        for file, content in earlier.items():
            self.assertEqual(content, file.read_bytes())
        self.assertEqual([files.page], list(files.page.parent.iterdir()))
        self.assertEqual([files.products, files.queue], sorted(files.data.iterdir()))

    def test_on_a_full_disk_without_an_earlier_page_none_is_shown(self):
        program = self.start_on_a_disk_that_fills()
        self.see(lambda: program.page(""), "what the engine has for a file that is not there")
        self.see_status(program, "")
        self.close_with_prompt(program)
        self.assertEqual([], list(self.installation.page.parent.iterdir()))
        self.assertEqual([], list(self.installation.data.iterdir()))

    def test_without_a_home_and_folders_of_ones_own(self):
        nowhere = "/nonexistent/folder"
        self.serve(CATALOGUE)
        self.see_install(
            self.start(
                HOME=nowhere, XDG_RUNTIME_DIR=nowhere, XDG_CONFIG_HOME=nowhere,
                XDG_DATA_HOME=nowhere, XDG_CACHE_HOME=nowhere,
            )
        )
        self.see_hand_over()

    def test_without_a_session_bus(self):
        """The page is hidden from assistive technology then; the window is found by the display."""
        self.installation.queue.write_bytes(QUEUE)
        self.serve(CATALOGUE)
        program = self.start(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
        self.see_status(program, "1 voice, 75MB")
        self.close_with_prompt(program)

    def test_without_a_display_it_says_so_and_ends(self):
        for display in (None, "", ":12345"):
            program = self.start(DISPLAY=display, WAYLAND_DISPLAY=None)
            program.expected_end = 1
            self.see_end(program)
            self.assertIn("there is no display", program.log.read_text())
        self.assertFalse(self.installation.page.exists())


if __name__ == "__main__":
    scenario.main()
