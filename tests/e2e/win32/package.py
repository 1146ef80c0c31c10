#!/usr/bin/python3
# The Windows Installer package: what it installs, starts and leaves. SPDX-License-Identifier: MIT
import pathlib
import subprocess
import tempfile
import time
import unittest
import zipfile

import windows_scenario as scenario
from catalogue import Voice, catalogue, port_for_oneself
from packages import build_with, commands, make_package
from wine import ASSET_FILES, PROGRAM_NAME, ROOT, PageHost, Prefix, Probe, windows_path

build = scenario.build
FILES = {PROGRAM_NAME, "README.txt", "LICENSE.txt", *ASSET_FILES}
CARLA = Voice("40", "Carla", "Spanish", 2_500_000)
CATALOGUE = catalogue(CARLA)

def windows_text(file):
    return file.read_bytes().replace(b"\n", b"\r\n")


class PackageCase(scenario.Scenario):
    """In a prefix without the program."""

    def setUp(self):
        self.folder = pathlib.Path(
            self.enterContext(
                tempfile.TemporaryDirectory(dir=build.folder, prefix="e2e_", ignore_cleanup_errors=True)
            )
        )
        self.enterContext(port_for_oneself(build.port))
        self.prefix = Prefix(self.folder / "prefix", self.original)
        self.prefix.trust(build.authority)
        self.prefix.use_control(build.control)
        # Wine has the person's own menu here; Windows has everybody's, since the package says so.
        menu = self.prefix.roaming / "Microsoft" / "Windows" / "Start Menu" / "Programs"
        self.entry = menu / "Velor Voice Setup.lnk"
        self.programs = []
        self.page = PageHost()
        self.addCleanup(self.page.end)
        self.prefix.environment["VELOR_PAGE_HOST"] = str(self.page.port)
        self.probe = Probe(self.prefix, build.probe)
        self.addCleanup(self.probe.end)
        self.addCleanup(self.prefix.end)

    def package_of(self, program, kind="msi", version=None):
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        programs = build_with(build.folder, folder / "build", program, PROGRAM_NAME, version)
        return make_package(kind, programs, folder)

    def installer_result(self, action, package):
        return self.prefix.start("msiexec", action, windows_path(package), "/qn").wait(120)

    def run_installer(self, action, package=None):
        self.assertEqual(0, self.installer_result(action, package or self.package))

    def program_files(self):
        folder = self.prefix.program_folder
        return {file.name for file in folder.iterdir()} if folder.exists() else set()

    def follow(self, command):
        """As it is typed in a command prompt, in the package's folder."""
        script = self.folder / "step.cmd"
        script.write_text(f"{command}\n", encoding="ascii")
        folder = self.package.parent
        self.assertEqual(0, self.prefix.start("cmd", "/c", windows_path(script), cwd=folder).wait(120))

    def use_program(self, *command):
        """The main job of the program that this starts, up to the voice installer."""
        self.installer = self.add_recorder(self.prefix.installer)
        self.choose_language("en")
        self.serve(CATALOGUE)
        process = self.prefix.start(*command, cwd="/")
        self.see(self.probe.form, "the window", 60)
        self.see_page()
        self.tick(CARLA.shown)
        self.press_install()
        self.see(lambda: not self.probe.form(), "the end of the program")
        self.assertEqual(0, process.wait(60))
        self.assertEqual(b"<queue><item>40</item></queue>", self.prefix.queue.read_bytes())
        self.assertEqual(CATALOGUE, self.prefix.products.read_bytes())
        self.see_installer()


class Package(PackageCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.package = make_package("msi", build.folder, pathlib.Path(folder))

    def test_it_installs_program_texts_data_folder_and_start_menu_entry(self):
        self.assertFalse(self.prefix.data.exists())
        self.run_installer("/i")
        self.assertEqual(FILES, self.program_files())
        for name in ASSET_FILES:
            self.assertEqual(
                (ROOT / "assets" / name).read_bytes(), (self.prefix.program_folder / name).read_bytes()
            )
        licence = self.prefix.program_folder / "LICENSE.txt"
        self.assertEqual(windows_text(ROOT / "LICENSE"), licence.read_bytes())
        self.assertEqual([], list(self.prefix.data.iterdir()))
        link = self.entry.read_bytes()
        target = r"C:\Program Files\Velor Software\Velor Voice Setup\VelorVoiceSetup.exe"
        self.assertIn(target.encode("ascii"), link)
        self.assertIn("VelorVoiceSetup.ico".encode("utf-16-le"), link)

    def test_the_installed_program_starts(self):
        self.run_installer("/i")
        self.choose_language("en")
        program = self.start()
        # The shipped program's server has a name that nobody has.
        self.see_message(scenario.FAILURE)
        self.answer_message()
        self.see_message(scenario.PROMPT)
        self.answer_message()
        self.see_end(program)

    def test_removing_it_leaves_what_is_not_its_own(self):
        self.run_installer("/i")
        self.choose_language("en")
        self.prefix.queue.write_bytes(b"<queue/>")
        self.run_installer("/x")
        self.assertEqual({"VelorVoiceSetup.ini"}, self.program_files())
        self.assertFalse(self.entry.exists())
        self.assertEqual(b"<queue/>", self.prefix.queue.read_bytes())

    def test_removing_it_leaves_no_folder_where_nothing_was_added(self):
        self.run_installer("/i")
        self.run_installer("/x")
        self.assertFalse(self.prefix.program_folder.exists())
        self.assertFalse(self.prefix.data.exists())

    def test_a_newer_one_replaces_it_and_it_does_not_replace_a_newer_one(self):
        self.run_installer("/i")
        newer = self.package_of(build.shipped_program, version="99.0.0")
        self.run_installer("/i", newer)
        self.assertEqual(FILES, self.program_files())
        self.assertNotEqual(0, self.installer_result("/i", self.package))
        # One product only: with it everything goes.
        self.run_installer("/x", newer)
        self.assertEqual(set(), self.program_files())

    def test_it_replaces_an_older_version_is_used_from_its_menu_entry_and_is_removed(self):
        self.run_installer("/i", self.package_of(build.shipped_program, version="0.9.0"))
        # Newer than what the program's own resources say, which are those of the build.
        package = self.package_of(build.program, version="99.0.0")
        self.run_installer("/i", package)
        self.use_program("start", "/unix", self.entry)
        self.run_installer("/x", package)
        self.assertFalse(self.prefix.program.exists())
        self.assertFalse(self.entry.exists())
        self.assertTrue(self.prefix.queue.exists())

    def test_the_commands_of_the_readme_install_and_remove_it(self):
        self.run_installer("/i")
        readme = (self.prefix.program_folder / "README.txt").read_text(encoding="ascii")
        install, _, remove = commands(readme)
        self.run_installer("/x")
        self.follow(install)
        self.assertEqual(FILES, self.program_files())
        self.follow(remove)
        self.assertEqual(set(), self.program_files())

    def test_an_empty_data_folder_is_made_anew(self):
        """As it removes a junction, which Wine has none of; the folder's old rights go with it."""
        self.prefix.data.mkdir(mode=0o700)
        self.run_installer("/i")
        self.assertNotEqual(0o700, self.prefix.data.stat().st_mode & 0o777)

    def test_a_data_folder_that_is_in_use_stays(self):
        self.prefix.data.mkdir()
        self.prefix.queue.write_bytes(b"<queue/>")
        self.run_installer("/i")
        self.assertEqual(b"<queue/>", self.prefix.queue.read_bytes())

    def table(self, name):
        """The rows without the heading, as texts."""
        command = ["msiinfo", "export", self.package, name]
        lines = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
        return [line.split("\t") for line in lines.splitlines()[3:]]

    def test_its_script_warns_of_a_missing_voice_installer(self):
        """Wine's installer has scripts and no messages of theirs, so this is the entry, and that it hinders
        nothing is seen in the other tests."""
        [script] = [row[1] for row in self.table("Property") if row[0] == "WarningScript"]
        self.assertIn("'VelorVoiceInstaller.exe'", script)
        [condition] = [
            row[1] for row in self.table("InstallExecuteSequence") if row[0] == "WarnOfMissingInstaller"
        ]
        self.assertEqual('NOT REMOVE="ALL"', condition)

    def test_it_sets_the_rights_in_the_data_folder(self):
        """Wine does not obey them, so that only the entry can be seen."""
        [row] = self.table("MsiLockPermissionsEx")
        self.assertEqual(["DATAFOLDER", "CreateFolder"], row[1:3])
        self.assertTrue(row[3].startswith("O:BAG:BAD:P("), row[3])
        users = [entry for entry in row[3].split("(") if entry.endswith(";BU)")]
        self.assertEqual(
            ["A;OICI;0x1200a9;;;BU)", "A;;0x2;;;BU)", "A;OINPIO;0x130116;;;BU)"], users
        )


class SameBytes(unittest.TestCase):
    def make_twice(self, kind):
        """The second in another second, so that a clock shows."""
        with tempfile.TemporaryDirectory() as folder:
            first = make_package(kind, build.folder, pathlib.Path(folder, "first"))
            began = int(time.time())
            scenario.wait_for(lambda: int(time.time()) > began + 1, "another second")
            second = make_package(kind, build.folder, pathlib.Path(folder, "second"))
            self.assertEqual(first.name, second.name)
            return first.read_bytes(), second.read_bytes()

    def test_the_installer_package_of_the_same_program_is_the_same(self):
        first, second = self.make_twice("msi")
        self.assertTrue(first == second)

    def test_the_zip_of_the_same_program_is_the_same(self):
        first, second = self.make_twice("zip")
        self.assertTrue(first == second)


class Zip(PackageCase):
    def test_it_is_installed_and_used_as_the_readme_says(self):
        maker = self.prefix.program_folder.parent
        self.package = self.package_of(build.program, "zip")
        with zipfile.ZipFile(self.package) as packed:
            self.assertEqual(sorted(packed.namelist()), packed.namelist())
            packed.extractall(maker)
        self.assertEqual([self.prefix.program_folder], list(maker.iterdir()))
        self.assertEqual(FILES, self.program_files())
        readme = (self.prefix.program_folder / "README.txt").read_text(encoding="ascii")
        _, make_folder, _ = commands(readme)
        self.follow(make_folder)
        self.assertEqual([], list(self.prefix.data.iterdir()))
        self.use_program(self.prefix.on_drive(self.prefix.program))


if __name__ == "__main__":
    scenario.main()
