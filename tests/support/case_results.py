# Runs the cases of one script, and writes down how each ended. Shared by the end-to-end suites of both
# programs. SPDX-License-Identifier: MIT
import os
import pathlib
import signal
import sys
import unittest
import xml.etree.ElementTree as ElementTree

ENDINGS = (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)


class _Result(unittest.TextTestResult):
    """Writes down each case for scripts/count-tests, in the words of the other tests' files."""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.cases = []

    # Whoever ends a run has its case fail, which cleans up behind it, and no other case begins.
    def _end(self, *_):
        for ending in ENDINGS:
            signal.signal(ending, signal.SIG_IGN)
        self.stop()
        sys.exit(1)

    def startTestRun(self):
        super().startTestRun()
        for ending in ENDINGS:
            signal.signal(ending, self._end)

    def startTest(self, test):
        super().startTest(test)
        self.cases.append(test)

    def stopTestRun(self):
        super().stopTestRun()
        kind, _, path = os.environ.get("GTEST_OUTPUT", "").partition(":")
        if kind != "xml":
            return
        root = ElementTree.Element("testsuites")
        failed = {test.id() for test, _ in self.failures + self.errors}
        skipped = {test.id() for test, _ in self.skipped}
        for test in self.cases:
            result = "skipped" if test.id() in skipped else "completed"
            case = ElementTree.SubElement(root, "testcase", name=test.id(), result=result)
            if test.id() in failed:
                ElementTree.SubElement(case, "failure")
        pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
        ElementTree.ElementTree(root).write(path)


def main():
    unittest.main(verbosity=2, testRunner=unittest.TextTestRunner(resultclass=_Result, verbosity=2))
