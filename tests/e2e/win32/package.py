#!/usr/bin/python3
# The Windows Installer package: what it installs, starts and leaves. SPDX-License-Identifier: MIT
import pathlib
import re
import shutil
import subprocess
import tempfile
import time
import unittest
import zipfile

import windows_scenario as scenario
from wine import ASSET_FILES, PROGRAM_NAME, ROOT, PageHost, Prefix, Probe, windows_path

build = scenario.build


def make_package(kind, folder, programs=build.folder):
    """The .msi or .zip of the program in the build folder."""
    subprocess.run(
        [ROOT / "scripts" / "package", f"--{kind}", programs, folder],
        check=True, stdout=subprocess.DEVNULL,
    )
    [package] = folder.glob(f"*.{kind}")
    return package


class Package(scenario.Scenario):
    def setUp(self):
        self.folder = pathlib.Path(
            self.enterContext(
                tempfile.TemporaryDirectory(dir=build.folder, prefix="e2e_", ignore_cleanup_errors=True)
            )
        )
        self.package = make_package("msi", self.folder)
        self.prefix = Prefix(self.folder / "prefix", self.original)
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

    def installer_result(self, action, package):
        return self.prefix.start("msiexec", action, windows_path(package), "/qn").wait(120)

    def run_installer(self, action):
        self.assertEqual(0, self.installer_result(action, self.package))

    def newer_package(self):
        """The same program as version 99."""
        programs = self.folder / "newer"
        (programs / "assets").mkdir(parents=True)
        for name in (PROGRAM_NAME, "assets/VelorVoiceSetup.ico"):
            shutil.copy2(build.folder / name, programs / name)
        settings = (build.folder / "CMakeCache.txt").read_text(encoding="utf-8")
        version = r"(?m)^(CMAKE_PROJECT_VERSION:STATIC=).*$"
        (programs / "CMakeCache.txt").write_text(re.sub(version, r"\g<1>99.0.0", settings), "utf-8")
        return make_package("msi", self.folder / "newer packages", programs)

    def program_files(self):
        folder = self.prefix.program_folder
        return {file.name for file in folder.iterdir()} if folder.exists() else set()

    def test_it_installs_program_texts_data_folder_and_start_menu_entry(self):
        self.assertFalse(self.prefix.data.exists())
        self.run_installer("/i")
        self.assertEqual({PROGRAM_NAME, *ASSET_FILES}, self.program_files())
        for name in ASSET_FILES:
            self.assertEqual(
                (ROOT / "assets" / name).read_bytes(), (self.prefix.program_folder / name).read_bytes()
            )
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
        newer = self.newer_package()
        self.assertEqual(0, self.installer_result("/i", newer))
        self.assertEqual({PROGRAM_NAME, *ASSET_FILES}, self.program_files())
        self.assertNotEqual(0, self.installer_result("/i", self.package))
        # One product only: with it everything goes.
        self.assertEqual(0, self.installer_result("/x", newer))
        self.assertEqual(set(), self.program_files())

    def test_it_sets_the_rights_in_the_data_folder(self):
        """Wine does not obey them, so that only the entry can be seen."""
        table = subprocess.run(
            ["msiinfo", "export", self.package, "MsiLockPermissionsEx"],
            check=True, stdout=subprocess.PIPE, text=True,
        ).stdout.splitlines()
        [row] = [line.split("\t") for line in table[3:]]
        self.assertEqual(["DATAFOLDER", "CreateFolder"], row[1:3])
        users = [entry for entry in row[3].split("(") if entry.endswith(";BU)")]
        self.assertEqual(
            ["A;OICI;0x1200a9;;;BU)", "A;;0x2;;;BU)", "A;OINPIO;0x130116;;;BU)"], users
        )


class SameBytes(unittest.TestCase):
    def make_twice(self, kind):
        """The second in another second, so that a clock shows."""
        with tempfile.TemporaryDirectory() as folder:
            first = make_package(kind, pathlib.Path(folder, "first"))
            began = int(time.time())
            scenario.wait_for(lambda: int(time.time()) > began + 1, "another second")
            second = make_package(kind, pathlib.Path(folder, "second"))
            self.assertEqual(first.name, second.name)
            return first.read_bytes(), second.read_bytes()

    def test_the_installer_package_of_the_same_program_is_the_same(self):
        first, second = self.make_twice("msi")
        self.assertTrue(first == second)

    def test_the_zip_of_the_same_program_is_the_same(self):
        first, second = self.make_twice("zip")
        self.assertTrue(first == second)


class Zip(unittest.TestCase):
    def test_it_holds_one_folder_with_program_and_texts(self):
        with tempfile.TemporaryDirectory() as folder:
            with zipfile.ZipFile(make_package("zip", pathlib.Path(folder))) as packed:
                names = packed.namelist()
                self.assertEqual(sorted(names), names)
                self.assertEqual({"Velor Voice Setup"}, {name.partition("/")[0] for name in names})
                for name in (PROGRAM_NAME, *ASSET_FILES):
                    self.assertIn(f"Velor Voice Setup/{name}", names)


if __name__ == "__main__":
    scenario.main()
