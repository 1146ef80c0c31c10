# What the end-to-end tests of both programs have in common: the build that is tried, what the program
# says, the server, and tests that tell what was there when they fail. SPDX-License-Identifier: MIT
import functools
import os
import pathlib
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "e2e"))

from catalogue import CatalogueServer, port_for_oneself  # noqa: E402  (found through the line above)

TITLE = "Velor Voice Setup"
WAIT_PAGE = "Velor Voice Setup"
VOICES_PAGE = "Downloads"
FAILURE = "Failed to access Velor Software website. Please check your Internet connection."
PROMPT = "You can get more voices at any time by starting Velor Voice Setup again."


class BuildBase:
    """The programs to try and what was built into them; CTest says so in the environment."""

    def __init__(self, suffix=""):
        self.folder = pathlib.Path(os.environ["VELOR_BUILD"]).resolve()
        settings = self._settings()
        host, _, port = settings["VELOR_LOCAL_SERVER"].partition(":")
        if host != "localhost" or not port:
            sys.exit("these tests need VELOR_LOCAL_SERVER to be localhost:<port>")
        self.port = int(port)
        self.authority = pathlib.Path(settings["VELOR_LOCAL_CA"])
        self.program = self.folder / f"VelorVoiceSetupLocal{suffix}"
        self.shipped_program = self.folder / f"VelorVoiceSetup{suffix}"

    def _settings(self):
        lines = (self.folder / "CMakeCache.txt").read_text(encoding="utf-8").splitlines()
        entries = (line.partition("=") for line in lines if line.startswith("VELOR_"))
        return {name.partition(":")[0]: value for name, _, value in entries}


def _with_report(test):
    """The same test, which also looks at how its programs ended, and tells what was there when
    something was not as it should be."""

    @functools.wraps(test)
    def run(self):
        try:
            test(self)
            self.see_good_end()
        except Exception as failure:
            failure.add_note(self.report())
            raise

    return run


class ScenarioBase(unittest.TestCase):
    """A suite has a `build`, and says how a good end is seen and what is reported otherwise."""

    maxDiff = None

    def __init_subclass__(cls):
        super().__init_subclass__()
        for name, test in list(vars(cls).items()):
            if name.startswith("test_"):
                setattr(cls, name, _with_report(test))

    @classmethod
    def setUpClass(cls):
        make_authority = [ROOT / "scripts" / "make-local-ca", cls.build.authority.parent]
        subprocess.run(make_authority, check=True)

    def setUp(self):
        self.enterContext(port_for_oneself(self.build.port))
        self.programs = []

    def serve(self, *arguments, authority=None, **options):
        authority = authority or self.build.authority.parent
        server = CatalogueServer(self.folder, authority, self.build.port, *arguments, **options)
        self.addCleanup(server.stop)
        return server

    def see_end(self, program):
        self.see(lambda: program.ended, "the end of the program")
