# A Wine prefix as far as the program looks at one, with the program installed in it under its own
# name; made with the demonstration's parts, in a folder that the test deletes.
# SPDX-License-Identifier: MIT
import importlib.machinery
import importlib.util
import json
import pathlib
import shutil

HERE = pathlib.Path(__file__).resolve().parent
USER = "tester"
MAKER = "Velor Software"
# What a program that ours started has open: its input, output and errors.
NOTHING_INHERITED = ["/dev/null"] * 3


def _demonstration():
    """demo/prepare, which is a command and therefore has no ending."""
    path = str(HERE.parents[2] / "demo" / "prepare")
    loader = importlib.machinery.SourceFileLoader("prepare", path)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("prepare", loader))
    loader.exec_module(module)
    return module


demonstration = _demonstration()


class Recorder:
    """The stand-in for a program at this path; `calls` are those that were made, in their order."""

    def __init__(self, path):
        self.path = path
        path.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(HERE / "recorder", path)

    @property
    def calls(self):
        record = pathlib.Path(f"{self.path}.called")
        if not record.exists():
            return []
        return [json.loads(line) for line in record.read_text().splitlines()]


class Installation:
    """`program` is copied there; without one, a package has installed it."""

    def __init__(self, prefix, program=None):
        self.prefix = prefix
        self.drive = prefix / "drive_c"
        self.folder = self.drive / "Program Files" / MAKER / "Velor Voice Setup"
        self.program = self.folder / "VelorVoiceSetup"
        self.data = self.drive / "ProgramData" / MAKER
        self.queue = self.data / "queue.xml"
        self.products = self.data / "products.xml"
        roaming = self.drive / "users" / USER / "AppData" / "Roaming"
        self.page = roaming / MAKER / "VelorVoiceSetup" / "index.htm"
        if program:
            self.data.mkdir(parents=True)
            demonstration.copy_program(self.folder, program)
        self.installer = Recorder(self.folder / "VelorVoiceInstaller.exe")
        self.choose_language("en")

    def choose_language(self, language):
        """In the program's own settings."""
        (self.folder / "VelorVoiceSetup.ini").write_bytes(
            f"[I18N]\r\nLanguage1={language}\r\n".encode("ascii")
        )

    def install(self, *voices):
        """Windows Installer knows these voices from now on."""
        first, second = demonstration.installed_keys(
            {voice.id: voice.code for voice in voices},
            [voice.id for voice in voices],
            r"Software\\Classes\\Installer\\Products",
            "S-1-5-18",
        )
        head = "WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n"
        (self.prefix / "system.reg").write_text(head + first + second, encoding="ascii")
