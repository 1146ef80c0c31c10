#!/usr/bin/python3
# The package for Linux: what its script installs into a Wine prefix and removes from it.
# SPDX-License-Identifier: MIT
import os
import pathlib
import subprocess
import tarfile
import tempfile
import time
import unittest

import scenario
from gi.repository import Gio, GLib

PACKAGE = scenario.ROOT / "scripts" / "package"
TEXTS = {"wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml"}


def make_package(folder):
    subprocess.run(
        [PACKAGE, "--tar", scenario.build.folder, folder], check=True, stdout=subprocess.DEVNULL
    )
    [package] = folder.glob("*.tar.gz")
    return package


class Package(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        with tarfile.open(make_package(self.folder)) as packed:
            packed.extractall(self.folder)
        [self.script] = self.folder.glob("*/install.sh")
        self.share = self.folder / "share"
        self.entry = self.share / "applications" / "com.velorsoftware.VoiceSetup.desktop"
        self.use_prefix("prefix")

    def use_prefix(self, name):
        self.prefix = self.folder / name
        drive = self.prefix / "drive_c"
        drive.mkdir(parents=True)
        self.program_folder = drive / "Program Files" / "Velor Software" / "Velor Voice Setup"
        self.data = drive / "ProgramData" / "Velor Software"

    def run_script(self, *arguments, **environment):
        environment = dict(
            os.environ, HOME=str(self.folder), XDG_DATA_HOME=str(self.share), **environment
        )
        return subprocess.run(
            [self.script, *arguments], env=environment, capture_output=True, text=True, check=False
        )

    def run_well(self, *arguments, **environment):
        done = self.run_script(*arguments, **environment)
        self.assertEqual((0, ""), (done.returncode, done.stderr))

    def program_files(self):
        return {file.name for file in self.program_folder.iterdir()}

    def started_program(self):
        """What a desktop would start."""
        entry = Gio.DesktopAppInfo.new_from_filename(str(self.entry))
        self.assertIsNotNone(entry, self.entry.read_text())
        _, words = GLib.shell_parse_argv(entry.get_commandline())
        return words

    def test_it_installs_program_texts_data_folder_and_menu_entry(self):
        self.run_well(self.prefix)
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())
        self.assertTrue(os.access(self.program_folder / "VelorVoiceSetup", os.X_OK))
        self.assertEqual([], list(self.data.iterdir()))
        self.assertEqual([str(self.program_folder / "VelorVoiceSetup")], self.started_program())
        icon = "icons/hicolor/48x48/apps/com.velorsoftware.VoiceSetup.png"
        self.assertTrue((self.share / icon).is_file())

    def test_the_prefix_is_the_one_of_the_environment_or_of_the_home(self):
        self.run_well(WINEPREFIX=str(self.prefix))
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())
        self.use_prefix(".wine")
        self.run_well(WINEPREFIX="")
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())

    def test_the_menu_entry_starts_it_in_a_prefix_with_an_unusual_name(self):
        self.use_prefix("a & 'b' \"c\" $d `e` \\f")
        self.run_well(self.prefix)
        self.assertEqual([str(self.program_folder / "VelorVoiceSetup")], self.started_program())

    def test_removing_it_leaves_what_is_not_its_own(self):
        self.run_well(self.prefix)
        (self.data / "queue.xml").write_text("<queue/>")
        (self.program_folder / "VelorVoiceSetup.ini").write_text("[I18N]\n")
        self.run_well("--remove", self.prefix)
        self.assertEqual({"VelorVoiceSetup.ini"}, self.program_files())
        self.assertEqual("<queue/>", (self.data / "queue.xml").read_text())
        self.assertEqual([], [path for path in self.share.rglob("*") if path.is_file()])

    def test_removing_it_leaves_no_folder_where_nothing_was_added(self):
        self.run_well(self.prefix)
        self.run_well("--remove", self.prefix)
        self.assertFalse(self.program_folder.parent.exists())
        self.assertFalse(self.data.exists())

    def test_removing_it_leaves_the_texts_to_the_windows_program(self):
        self.run_well(self.prefix)
        (self.program_folder / "VelorVoiceSetup.exe").write_bytes(b"")
        self.run_well("--remove", self.prefix)
        self.assertEqual({"VelorVoiceSetup.exe", *TEXTS}, self.program_files())

    def test_removing_it_leaves_the_menu_entry_of_another_prefix(self):
        first = self.prefix
        self.run_well(first)
        self.use_prefix("second")
        self.run_well(self.prefix)
        self.run_well("--remove", first)
        self.assertEqual([str(self.program_folder / "VelorVoiceSetup")], self.started_program())

    def test_a_folder_that_is_no_prefix_is_refused(self):
        other = self.folder / "other"
        other.mkdir()
        self.assertEqual(1, self.run_script(other).returncode)
        self.assertEqual([], list(other.iterdir()))

    def test_the_package_of_the_same_program_is_the_same(self):
        first = make_package(self.folder / "first")
        # In another second, so that a clock shows.
        began = int(time.time())
        scenario.accessible.wait_for(lambda: int(time.time()) > began + 1, "another second")
        second = make_package(self.folder / "second")
        self.assertEqual(first.name, second.name)
        self.assertTrue(first.read_bytes() == second.read_bytes())


if __name__ == "__main__":
    scenario.main()
