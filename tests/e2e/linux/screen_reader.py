#!/usr/bin/python3
# What the screen reader Orca speaks while the main job is done by keys alone, compared line by line with
# the tables of docs/what-you-hear.md. SPDX-License-Identifier: MIT
import re

import scenario
from catalogue import PATIENCE, Voice, catalogue

import accessible
import desktop
from screen_reader import ScreenReader

DOCUMENT = scenario.ROOT / "docs" / "what-you-hear.md"
AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
CARLA = Voice("8", "Carla", "Italian", 97_000_000)
CATALOGUE = catalogue(CARLA, AGNES)


def golden(title):
    """The rows of the table below the heading `title`, as (what is done, what is heard)."""
    text = DOCUMENT.read_text(encoding="utf-8")
    section = re.search(rf"^### {re.escape(title)}\n(.*?)(?=^#|\Z)", text, re.MULTILINE | re.DOTALL)
    rows = re.findall(r"^\|(.*?)\|(.*?)\|$", section[1] if section else "", re.MULTILINE)
    return [(done.strip(), heard.strip()) for done, heard in rows[2:]]


class Speech(scenario.Scenario):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        desktop.introduce_keyboard()

    def setUp(self):
        super().setUp()
        folder = self.folder / "screen-reader"
        folder.mkdir()
        self.reader = ScreenReader(folder, PATIENCE)
        self.addCleanup(self.reader.stop)
        self.rows = []
        self.heard = 0

    def begin(self, title):
        self.title = title
        self.expected = golden(title)

    def do(self, what, action=None, seconds=60):
        """Does it, then waits for as many utterances as the document has for it. What is too much is
        heard with the next step."""
        (action or (lambda: desktop.keys(what)))()
        at = len(self.rows)
        following = [done for done, _ in self.expected[at + 1 :]]
        rows = next((i for i, done in enumerate(following) if done), len(following)) + 1
        wanted = sum(1 for _, heard in self.expected[at : at + rows] if heard)
        try:
            self.see(lambda: len(self.reader.utterances()) >= self.heard + wanted, what, seconds)
        except accessible.NotSeen:
            self.take(what)
            self.compare()
            raise
        self.take(what)

    def take(self, what):
        heard = self.reader.utterances()[self.heard :]
        self.heard += len(heard)
        self.rows += [(what if at == 0 else "", text) for at, text in enumerate(heard or [""])]

    @staticmethod
    def steps(rows):
        """What is heard at each step, sorted: the page and the window report independently, so that a box's
        state and the status line can come in either order."""
        steps = []
        for done, heard in rows:
            if done:
                steps.append((done, []))
            steps[-1][1].append(heard)
        return [(done, sorted(heard)) for done, heard in steps]

    def compare(self):
        folder = scenario.build.folder / "screen_reader"
        folder.mkdir(exist_ok=True)
        table = [f"### {self.title}", "", "| done | heard |", "|---|---|"]
        table += [f"| {done} | {heard} |" for done, heard in self.rows]
        (folder / f"{self.title}.md").write_text("\n".join(table) + "\n", encoding="utf-8")
        self.assertEqual(self.steps(self.expected), self.steps(self.rows))

    def finish(self, program):
        self.see_end(program)
        self.reader.stop()
        self.take("")
        if self.rows[-1] == ("", ""):
            self.rows.pop()
        self.compare()

    def start_program(self, language, **options):
        self.installation.choose_language(language)
        server = self.serve(CATALOGUE, hold=True, **options)
        programs = []
        self.do("start the program", lambda: programs.append(self.start()))
        return programs[0], server

    def see_voices_arrive(self, program, server):
        def arrive():
            server.release()
            self.see_page(program)

        self.do("wait for the voices", arrive)

    # -- the main job

    def choose_and_install(self, language, title):
        self.begin(title)
        program, server = self.start_program(language)
        self.see_voices_arrive(program, server)
        for key in ("space", "space", "space", "Down", "space", "Up", "space", "Down", "Tab"):
            self.do(key)
        desktop.keys("Return")
        self.finish(program)
        self.assertEqual(b"<queue><item>8</item></queue>", self.installation.queue.read_bytes())

    def test_voices_are_chosen_in_english(self):
        self.choose_and_install("en", "Choosing voices, in English")

    def test_voices_are_chosen_in_swedish(self):
        self.choose_and_install("sv", "Choosing voices, in Swedish")

    def test_voices_are_chosen_in_arabic(self):
        self.choose_and_install("ar", "Choosing voices, in Arabic")

    # -- the messages

    def read_messages(self, language, title):
        self.begin(title)
        program, server = self.start_program(language, fail="not-found")
        self.do("wait for the voices", server.release)
        self.do("Return")
        desktop.keys("Return")
        self.finish(program)

    def test_a_failed_download_in_english(self):
        self.read_messages("en", "A failed download, in English")

    def test_a_failed_download_in_swedish(self):
        self.read_messages("sv", "A failed download, in Swedish")

    def test_a_failed_download_in_arabic(self):
        self.read_messages("ar", "A failed download, in Arabic")


if __name__ == "__main__":
    scenario.main()
