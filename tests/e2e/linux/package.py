#!/usr/bin/python3
# The package for Linux: what its script installs into a Wine prefix and removes from it.
# SPDX-License-Identifier: MIT
import os
import pathlib
import shutil
import subprocess
import tarfile
import tempfile
import time
import unittest

import scenario
from catalogue import Voice, catalogue
from gi.repository import Gio, GLib
from installation import Installation
from packages import build_with, commands, make_package

TEXTS = {"wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml"}
PROGRAM = "VelorVoiceSetup"
APPLICATION = "com.velorsoftware.VoiceSetup"
INSTALLER = "VelorVoiceInstaller.exe"
CARLA = Voice("40", "Carla", "Spanish", 2_500_000)
CATALOGUE = catalogue(CARLA)


def unpack(build, folder):
    """The folder that the package unpacks to."""
    with tarfile.open(make_package("tar", build, folder)) as packed:
        packed.extractall(folder)
    [script] = folder.glob("*/install.sh")
    return script.parent


def started_by(entry_file):
    """What a desktop starts from this menu entry, as words."""
    entry = Gio.DesktopAppInfo.new_from_filename(str(entry_file))
    _, words = GLib.shell_parse_argv(entry.get_commandline())
    return [word.replace("%%", "%") for word in words]


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.made = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.unpacked = unpack(scenario.build.folder, cls.made)

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.script = self.unpacked / "install.sh"
        self.share = self.folder / "share"
        self.entry = self.share / "applications" / f"{APPLICATION}.desktop"
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

    def see_menu_entry(self):
        """It starts the program for the prefix that the program is in."""
        self.assertEqual(
            ["env", f"WINEPREFIX={self.prefix}", str(self.program_folder / PROGRAM)],
            started_by(self.entry),
        )

    def test_it_installs_program_texts_data_folder_and_menu_entry(self):
        self.run_well(self.prefix)
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())
        self.assertTrue(os.access(self.program_folder / "VelorVoiceSetup", os.X_OK))
        self.assertEqual([], list(self.data.iterdir()))
        self.see_menu_entry()
        self.assertTrue((self.share / f"icons/hicolor/48x48/apps/{APPLICATION}.png").is_file())

    def test_menu_entry_and_description_are_valid(self):
        self.run_well(self.prefix)
        description = self.share / "metainfo" / f"{APPLICATION}.metainfo.xml"
        for check in (
            ["desktop-file-validate", self.entry],
            ["appstreamcli", "validate", "--no-net", description],
        ):
            done = subprocess.run(check, capture_output=True, text=True, check=False)
            self.assertEqual(0, done.returncode, done.stdout + done.stderr)

    def test_readme_and_licence_are_beside_the_script(self):
        readme = (self.unpacked / "README.txt").read_text(encoding="ascii")
        self.assertNotIn("@", readme)
        self.assertIn(f"\n      cd {self.unpacked.name}\n", readme)
        self.assertEqual(
            (scenario.ROOT / "LICENSE").read_bytes(), (self.unpacked / "LICENSE").read_bytes()
        )

    def test_the_commands_of_the_readme_install_and_remove_it(self):
        shutil.copy2(*self.made.glob("*.tar.gz"), self.folder)
        self.use_prefix(".wine")
        *system, prefix, unpack, enter, install, remove = commands(
            (self.unpacked / "README.txt").read_text()
        )
        for command in system:
            self.assertTrue(command.startswith("apt-get "), command)
        self.assertEqual("wineboot --init", prefix)

        def follow(*lines):
            environment = dict(os.environ, HOME=str(self.folder), XDG_DATA_HOME="", WINEPREFIX="")
            script = "set -e\n" + "\n".join(lines)
            subprocess.run(["bash", "-c", script], env=environment, cwd=self.folder, check=True,
                           stdout=subprocess.DEVNULL)

        self.share = self.folder / ".local" / "share"
        self.entry = self.share / self.entry.relative_to(self.folder / "share")
        follow(unpack, enter, install)
        self.assertEqual({PROGRAM, *TEXTS}, self.program_files())
        self.see_menu_entry()
        follow(enter, remove)
        self.assertFalse(self.program_folder.exists())
        self.assertFalse(self.entry.exists())

    def test_it_says_when_the_voice_installer_is_missing(self):
        self.assertIn(INSTALLER, self.run_script(self.prefix).stdout)
        (self.program_folder / INSTALLER.lower()).touch()
        self.assertNotIn(INSTALLER, self.run_script(self.prefix).stdout)

    def test_it_names_a_library_that_is_missing_and_installs_nothing(self):
        broken = self.folder / "broken"
        shutil.copytree(self.unpacked, broken)
        program = broken / "program" / PROGRAM
        program.write_bytes(program.read_bytes().replace(b"libsoup-3.0.so.0", b"libnone-3.0.so.0"))
        self.script = broken / "install.sh"
        done = self.run_script(self.prefix)
        self.assertEqual(1, done.returncode)
        self.assertIn("libnone-3.0.so.0 => not found", done.stderr)
        self.assertFalse(self.program_folder.exists())

    def test_it_refuses_a_program_for_another_kind_of_system(self):
        broken = self.folder / "broken"
        shutil.copytree(self.unpacked, broken)
        (broken / "program" / PROGRAM).write_text("no program")
        self.script = broken / "install.sh"
        self.assertEqual(1, self.run_script(self.prefix).returncode)
        self.assertFalse(self.program_folder.exists())

    def test_help_is_no_failure(self):
        done = self.run_script("--help")
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        self.assertIn("--remove", done.stdout)
        for wrong in (("--unknown",), ("--remove", "--unknown"), (self.prefix, self.prefix)):
            self.assertEqual(2, self.run_script(*wrong).returncode)

    def test_the_prefix_is_the_one_of_the_environment_or_of_the_home(self):
        self.run_well(WINEPREFIX=str(self.prefix))
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())
        self.use_prefix(".wine")
        self.run_well(WINEPREFIX="")
        self.assertEqual({"VelorVoiceSetup", *TEXTS}, self.program_files())

    def test_the_menu_entry_starts_it_in_a_prefix_with_an_unusual_name(self):
        self.use_prefix("a & 'b' \"c\" $d `e` \\f 100%")
        self.run_well(self.prefix)
        self.see_menu_entry()

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
        self.see_menu_entry()

    def test_removing_it_after_its_prefix_was_deleted_removes_the_menu_entry(self):
        self.run_well(self.prefix)
        shutil.rmtree(self.prefix)
        self.run_well("--remove", self.prefix)
        self.assertEqual([], [path for path in self.share.rglob("*") if path.is_file()])
        self.assertFalse(self.prefix.exists())

    def test_a_folder_that_is_no_prefix_is_refused(self):
        other = self.folder / "other"
        other.mkdir()
        self.assertEqual(1, self.run_script(other).returncode)
        self.assertEqual([], list(other.iterdir()))

    def test_the_package_of_the_same_program_is_the_same(self):
        [first] = self.made.glob("*.tar.gz")
        # In another second, so that a clock shows.
        began = int(time.time())
        scenario.accessible.wait_for(lambda: int(time.time()) > began + 1, "another second")
        second = make_package("tar", scenario.build.folder, self.folder / "second")
        self.assertEqual(first.name, second.name)
        self.assertTrue(first.read_bytes() == second.read_bytes())


class FromInstallationToRemoval(scenario.Scenario):
    """With the test build of the program, which has a server to load from."""

    def run_script(self, version, program, *arguments):
        build = build_with(
            scenario.build.folder, self.folder / f"build-{version}", program, PROGRAM, version
        )
        script = unpack(build, self.folder / f"package-{version}") / "install.sh"
        environment = dict(os.environ, HOME=str(self.folder), XDG_DATA_HOME="")
        subprocess.run([script, *arguments], env=environment, check=True, stdout=subprocess.DEVNULL)
        return script

    def test_it_replaces_an_older_version_is_used_from_its_menu_entry_and_is_removed(self):
        prefix = self.folder / "elsewhere"
        (prefix / "drive_c").mkdir(parents=True)
        self.run_script("0.9.0", "/bin/true", prefix)
        script = self.run_script("1.9.0", scenario.build.program, prefix)
        self.installation = Installation(prefix)
        self.serve(CATALOGUE)
        entry = self.folder / ".local" / "share" / "applications" / f"{APPLICATION}.desktop"
        *through, self.installation.program = started_by(entry)
        program = self.start(through=through, WINEPREFIX=None, HOME=str(self.folder))
        self.see_page(program)
        self.tick(program, CARLA.shown)
        self.press_install(program)
        self.see_end(program)
        self.see_nobody_left()
        self.assertEqual(b"<queue><item>40</item></queue>", self.installation.queue.read_bytes())
        self.assertEqual(CATALOGUE, self.installation.products.read_bytes())
        [call] = self.installation.installer.calls
        self.assertEqual(str(self.installation.folder / INSTALLER), call["program"])
        subprocess.run(
            [script, "--remove", prefix], env=dict(os.environ, HOME=str(self.folder), XDG_DATA_HOME=""),
            check=True, stdout=subprocess.DEVNULL,
        )
        self.assertFalse((self.installation.folder / PROGRAM).exists())
        self.assertFalse(entry.exists())
        self.assertTrue(self.installation.queue.exists())


class InstalledByCMake(unittest.TestCase):
    def test_it_is_installed_in_a_prefix_as_the_script_does_it(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            program_folder = folder / "p/drive_c/Program Files/Velor Software/Velor Voice Setup"
            build = build_with(
                scenario.build.folder, folder / "build", scenario.build.shipped_program, PROGRAM
            )
            (build / "CMakeCache.txt").unlink()
            for command in (
                ["cmake", "-S", scenario.ROOT, "-B", build, "-D", "VELOR_BUILD_TESTS=OFF",
                 "-D", f"VELOR_PROGRAM_FOLDER={program_folder}"],
                ["cmake", "--install", build, "--prefix", folder / "usr"],
            ):
                subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
            self.assertEqual({PROGRAM, *TEXTS}, {file.name for file in program_folder.iterdir()})
            self.assertEqual([], list((folder / "p/drive_c/ProgramData/Velor Software").iterdir()))
            self.assertEqual(
                ["env", f"WINEPREFIX={folder}/p", str(program_folder / PROGRAM)],
                started_by(folder / f"usr/share/applications/{APPLICATION}.desktop"),
            )


if __name__ == "__main__":
    scenario.main()
