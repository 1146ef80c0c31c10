#!/usr/bin/python3
# Libraries that somebody put beside the program, under names that the system has itself.
# SPDX-License-Identifier: MIT
import shutil

import windows_scenario as scenario
from catalogue import Voice, catalogue
from wine import Probe

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)

# What the program loads itself, what COM loads for it, and what Windows' own libraries are known to
# load. Not among them is what Wine's libraries import, or import on first use past the restricted
# search (bcrypt, imm32, msimg32, msxml3, secur32, shcore, uxtheme, version): there the program has no
# say. What Windows' own libraries do about these is not seen here.
NAMES = (
    "cryptbase", "cryptnet", "cryptsp", "dbghelp", "dnsapi", "dwmapi", "iphlpapi", "msi", "msxml6",
    "oleacc", "profapi", "propsys", "schannel", "sspicli", "userenv", "webio", "winhttp", "winmm",
    "windowscodecs", "wintypes",
)


class PlantedLibraries(scenario.Scenario):
    def setUp(self):
        super().setUp()
        # Wine takes its own before any other; here, as Windows, what it finds first.
        overrides = ",".join(NAMES) + "=n,b"
        self.overrides = f"{self.prefix.environment['WINEDLLOVERRIDES']};{overrides}"

    def plant(self, folder):
        for name in NAMES:
            shutil.copy2(scenario.build.planted, folder / f"{name}.dll")

    def loaded(self, folder):
        return sorted(path.name for path in folder.glob("*.loaded"))

    def test_none_is_loaded_on_the_whole_main_path(self):
        folder = self.prefix.program_folder
        self.plant(folder)
        self.serve(catalogue(AGNES))
        program = self.start(WINEDLLOVERRIDES=self.overrides)
        self.see_page()
        self.tick(AGNES.shown)
        self.see_status("1 voice, 75MB")
        self.press_install()
        self.see_end(program)
        self.see_installer()
        self.assertEqual([], self.loaded(folder))

    def start_probe_among_them(self):
        folder = self.folder / "probe"
        folder.mkdir()
        shutil.copy2(scenario.build.probe, folder)
        self.plant(folder)
        self.prefix.environment["WINEDLLOVERRIDES"] = self.overrides
        probe = Probe(self.prefix, folder / scenario.build.probe.name)
        self.addCleanup(probe.end)
        return probe, folder

    def test_each_would_be_loaded_by_a_program_without_the_guard(self):
        probe, folder = self.start_probe_among_them()
        for name in NAMES:
            self.assertEqual(["1"], probe.ask("load", f"{name}.dll"))
        self.assertEqual(sorted(f"{name}.dll.loaded" for name in NAMES), self.loaded(folder))

    def test_none_is_loaded_by_its_bare_name_behind_the_guard(self):
        probe, folder = self.start_probe_among_them()
        probe.ask("guard")
        for name in NAMES:
            probe.ask("load", f"{name}.dll")
        self.assertEqual([], self.loaded(folder))


if __name__ == "__main__":
    scenario.main()
