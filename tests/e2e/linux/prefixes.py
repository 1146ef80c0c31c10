#!/usr/bin/python3
# The package in two prefixes: each menu entry starts the program for its own one.
# SPDX-License-Identifier: MIT
import pathlib
import shutil
import subprocess
import types

import package
import scenario
from catalogue import Voice, catalogue
from installation import MAKER, USER, Installation, Recorder

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000, "{00000000-0000-0000-0000-000000000007}")
BERIT = Voice("8", "Berit", "Norwegian", 60_000_000, "{00000000-0000-0000-0000-000000000008}")
CATALOGUE = catalogue(AGNES, BERIT)


class Prefixes(scenario.Scenario):
    def setUp(self):
        super().setUp()
        self.home = self.folder / "home"
        self.home.mkdir()
        self.script = package.unpack(scenario.build.folder, self.folder) / "install.sh"

    def install_package(self, name, installed):
        """Into a new prefix, where Windows Installer knows one voice; what the menu entry starts."""
        prefix = self.folder / name
        drive = prefix / "drive_c"
        drive.mkdir(parents=True)
        share = self.folder / "share"
        environment = {"PATH": "/usr/bin:/bin", "HOME": str(self.home), "XDG_DATA_HOME": str(share)}
        subprocess.run([self.script, prefix], env=environment, check=True, stdout=subprocess.DEVNULL)
        data = drive / "ProgramData" / MAKER
        made = types.SimpleNamespace(
            prefix=prefix,
            folder=drive / "Program Files" / MAKER / "Velor Voice Setup",
            queue=data / "queue.xml",
            page=drive / "users" / USER / "AppData" / "Roaming" / MAKER / "VelorVoiceSetup" / "index.htm",
        )
        made.program = made.folder / "VelorVoiceSetup"
        # The one that was built for the server of this test.
        shutil.copy2(scenario.build.program, made.program)
        made.installer = Recorder(made.folder / "VelorVoiceInstaller.exe")
        Installation.choose_language(made, "en")
        Installation.install(made, installed)
        made.command = package.started_by(share / "applications" / f"{package.APPLICATION}.desktop")
        self.assertEqual(str(made.program), made.command[-1])
        return made

    def see_its_own(self, made, offered, through=()):
        """It counts as installed what its prefix has, and hands over there."""
        program = self.start(installation=made, through=through, WINEPREFIX=None, HOME=str(self.home))
        self.see_page(program)
        self.assertEqual([offered.shown], program.voices())
        self.tick(program, offered.shown)
        self.press_install(program)
        self.see_end(program)
        self.see_nobody_left()
        queue = f"<queue><item>{offered.id}</item></queue>"
        self.assertEqual(queue, made.queue.read_text(encoding="utf-8"))
        self.assertTrue(made.page.exists())
        self.assertEqual(1, len(made.installer.calls))

    def test_each_menu_entry_starts_the_program_for_its_own_prefix(self):
        first = self.install_package("first prefix", AGNES)
        second = self.install_package("100% \"second\" $prefix", BERIT)
        self.serve(CATALOGUE)
        for made, offered in ((first, BERIT), (second, AGNES)):
            with self.subTest(made.prefix.name):
                self.assertIn(f"WINEPREFIX={made.prefix}", made.command)
                self.see_its_own(made, offered, through=made.command[:-1])

    def test_without_an_entry_the_prefix_is_the_one_that_the_program_is_in(self):
        made = self.install_package("only prefix", AGNES)
        self.serve(CATALOGUE)
        self.assertEqual([], list(self.home.iterdir()))
        self.see_its_own(made, BERIT)
        shutil.rmtree(made.queue.parent)
        made.queue.parent.mkdir()
        pathlib.Path(f"{made.installer.path}.called").unlink()
        other = self.home / ".wine" / "drive_c"
        other.mkdir(parents=True)
        self.see_its_own(made, BERIT)
        self.assertEqual([], list(other.iterdir()))


if __name__ == "__main__":
    scenario.main()
