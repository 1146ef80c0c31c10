#!/usr/bin/python3
# Where the program lies and what is around it: an odd folder, files that are missing or no such files,
# things planted where it writes. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
CATALOGUE = catalogue(AGNES)
QUEUE = b"<queue><item>7</item></queue>"
LONGEST = 240


class Surroundings(scenario.Scenario):
    def see_install(self):
        program = self.start()
        self.see_page()
        self.tick(AGNES.shown)
        self.press_install()
        self.see_end(program)
        self.see_installer()

    def test_an_odd_and_long_folder_and_what_is_planted_where_files_are_written(self):
        folder = self.prefix.drive / "a b & 100% %20 #1;y=$HOME 'q' [ö] 中文 مجلد"
        room = LONGEST - len(self.prefix.on_drive(folder / "x" / self.prefix.installer.name))
        self.prefix.use_program_folder(folder / ("x" * (room + 1)))
        self.install_program()
        self.assertEqual(LONGEST, len(self.prefix.on_drive(self.prefix.installer)))
        victim = self.folder / "victim"
        victim.write_bytes(b"kept")
        elsewhere = self.folder / "elsewhere"
        elsewhere.mkdir()
        self.prefix.queue.symlink_to(victim)
        # To this system a link to a folder is one, as a junction is.
        self.prefix.products.symlink_to(elsewhere)
        self.prefix.page.parent.mkdir(parents=True)
        self.prefix.page.symlink_to(victim)
        self.serve(CATALOGUE)
        self.see_install()
        self.assertEqual(b"kept", victim.read_bytes())
        self.assertFalse(self.prefix.queue.is_symlink())
        self.assertEqual(QUEUE, self.prefix.queue.read_bytes())
        self.assertTrue(self.prefix.products.is_symlink())
        self.assertEqual([], list(elsewhere.iterdir()))
        self.assertFalse(self.prefix.page.is_symlink())
        self.assertEqual(b"\xff\xfe", self.prefix.page.read_bytes()[:2])
        self.assertEqual([self.prefix.products, self.prefix.queue], sorted(self.prefix.data.iterdir()))

    def test_files_of_the_program_that_are_missing_or_no_such_files_and_what_else_is_planted(self):
        wait, languages, texts = (
            self.prefix.program_folder / name
            for name in ("wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml")
        )
        wait.unlink()
        languages.write_bytes(b"<languages>")
        texts.unlink()
        texts.mkdir()
        self.prefix.queue.symlink_to("nowhere")
        self.prefix.products.mkdir()
        self.serve(CATALOGUE)
        self.see_install()
        self.assertFalse(self.prefix.queue.is_symlink())
        self.assertEqual(QUEUE, self.prefix.queue.read_bytes())
        self.assertEqual([], list(self.prefix.products.iterdir()))
        self.assertEqual([self.prefix.products, self.prefix.queue], sorted(self.prefix.data.iterdir()))


if __name__ == "__main__":
    scenario.main()
