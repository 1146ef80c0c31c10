#!/usr/bin/python3
# What people meet who hear the window instead of seeing it: everything in the accessibility tree, in
# its order, with its name, role and state, what is told when it changes, and where Tab leads. Each
# case writes what it met as a table. SPDX-License-Identifier: MIT
import typing

import scenario
from catalogue import Voice, catalogue

import accessible
import desktop

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
ERIK = Voice("13", "Erik", "Swedish", 90_000_000)
# Installed, and sorted between the others: the page gives its box the id of the one before.
BERIT = Voice("12", "Berit", "Norwegian", 135_000_000, "{22345678-9ABC-DEF0-1122-334455667788}")

# Told of a page in the making, of one that is there, of a text to be spoken, of a changed name.
TOLD = (
    "object:state-changed:busy", "document:load-complete", *accessible.ANNOUNCEMENTS,
    "object:property-change:accessible-name",
)
# What only groups others. A cell of the page's table may be a text of its own.
GROUPS = ("panel", "redundant object", "filler", "scroll pane")
# What a screen reader speaks; the rest is the rule or about drawing.
SPOKEN = ("active", "busy", "checkable", "checked", "focusable", "indeterminate")


class Words(typing.NamedTuple):
    """What a language says in the window; `offered` are the voices, which Swedish has one more of."""

    loading: str
    available: str
    installed: str
    button: str
    button_tip: str
    status_tip: str
    one: str
    prompt: str
    offered: tuple = (AGNES,)


def words(lines, **more):
    """A line for each text, in their order."""
    return Words(*lines.strip().splitlines(), **more)


ENGLISH = words(f"""
Loading voices…
Available Voices
Already Installed
Install
Install the selected voices
Number and total size of the selected voices
1 voice, 75MB
{scenario.PROMPT}
""")
SWEDISH = words("""
Läser in röster…
Tillgängliga röster
Redan installerade
Installera
Installera de valda rösterna
Antal valda röster och deras sammanlagda storlek
1 röst, 75MB
Du kan skaffa fler röster när du vill genom att starta Velor Voice Setup igen.
""", offered=(AGNES, ERIK))
ARABIC = words("""
جارٍ تحميل الأصوات…
الأصوات المتوفرة
الأصوات المثبتة بالفعل
تثبيت
تثبيت الأصوات المحددة
عدد الأصوات المحددة وحجمها الإجمالي
1 صوت، 75MB
يمكنك الحصول على المزيد من الأصوات في أي وقت بتشغيل Velor Voice Setup مرة أخرى.
""")


class Met(typing.NamedTuple):
    """A thing in the tree, as it is spoken of."""

    role: str
    name: str
    state: str = ""
    tip: str = ""


def is_met(thing):
    role = accessible.role(thing)
    return role not in GROUPS and not (role == "section" and accessible.children(thing))


def look_at(thing):
    spoken = [state for state in accessible.states(thing) if state in SPOKEN]
    # A text that has nothing to do is not "disabled".
    if not accessible.is_enabled(thing):
        spoken.append("disabled")
    name = accessible.name(thing) or accessible.text(thing)
    return Met(
        accessible.role(thing), name, " ".join(spoken), accessible.description(thing).strip()
    )


def tree(program):
    """All that is met in the window, in the order of the tree."""
    window = program.window()
    return [look_at(each) for each in accessible.walk(window) if is_met(each)] if window else []


def table(title, met):
    rows = [Met("ROLE", "NAME", "STATE", "TIP"), *met]
    widths = [max(map(len, column)) for column in zip(*rows, strict=True)]
    lines = ("  ".join(map(str.ljust, row, widths)).rstrip() for row in rows)
    return "\n".join([title, *(f"  {line}" for line in lines)])


class Accessibility(scenario.Scenario):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        desktop.introduce_keyboard()

    def setUp(self):
        super().setUp()
        self.told = accessible.Listener(*TOLD)
        self.addCleanup(self.told.close)
        self.output = []

    def note(self, title, met):
        self.output.append(table(title, met))

    def write_output(self, language):
        self.note("announced", [Met("label", text) for text in self.announced()])
        text = "\n\n".join(self.output) + "\n"
        folder = scenario.build.folder / "accessibility"
        folder.mkdir(exist_ok=True)
        (folder / f"{language}.txt").write_text(text, encoding="utf-8")
        print(f"\n{text}", flush=True)

    # -- seeing and hearing

    def see_tree(self, program, expected, what):
        try:
            self.see(lambda: tree(program) == expected, what)
        except accessible.NotSeen:
            self.assertEqual(expected, tree(program))
        self.note(what, expected)

    def hear(self, *expected):
        try:
            self.see(lambda: expected in self.told.heard(), str(expected))
        except accessible.NotSeen:
            self.assertIn(expected, self.told.heard())

    def announced(self):
        return [text for kind, _, text in self.told.heard() if kind in accessible.ANNOUNCEMENTS]

    def see_announced(self, *texts):
        self.see(lambda: self.announced() == list(texts), f"the announcement of {texts[-1]!r}")

    def see_focus(self, find, what):
        self.see(lambda: accessible.has_focus(find()), f"the focus at {what}")

    # -- what should be met

    @staticmethod
    def frame(*inside):
        return [
            Met("frame", scenario.TITLE, "active"), Met("image", scenario.TITLE), *inside
        ]

    @staticmethod
    def controls(words, status, ready):
        return [
            Met("label", status, "", words.status_tip),
            Met("push button", words.button, "focusable" + ("" if ready else " disabled"), words.button_tip),
        ]

    def wait_page(self, words):
        return self.frame(
            Met("document web", scenario.WAIT_PAGE, "focusable"),
            Met("progress bar", words.loading, "busy indeterminate"),
            *self.controls(words, words.loading, ready=False),
        )

    def voices_page(self, words, status="", ticked=()):
        rows = []
        for voice in words.offered:
            size = f"{voice.size // 1_000_000}MB"
            states = "checkable checked focusable" if voice in ticked else "checkable focusable"
            rows += [
                Met("list item", f"{voice.shown} {size}"),
                Met("check box", voice.shown, states, size),
                Met("label", voice.shown),
            ]
        return self.frame(
            Met("document web", scenario.VOICES_PAGE, "focusable"),
            Met("heading", words.available),
            Met("list", words.available),
            *rows,
            Met("heading", words.installed),
            Met("list", words.installed),
            Met("list item", f"{BERIT.shown} {BERIT.shown}"),
            Met("check box", BERIT.shown, "checkable checked disabled", words.installed),
            Met("label", BERIT.shown),
            *self.controls(words, status, ready=bool(ticked)),
        )

    # -- the way through

    def meet_everything(self, language, words):
        self.installation.choose_language(language)
        self.installation.install(BERIT)
        server = self.serve(catalogue(ERIK, BERIT, AGNES), hold=True)
        program = self.start()
        self.see_tree(program, self.wait_page(words), "while the catalogue is on its way")
        server.release()
        self.see_tree(program, self.voices_page(words), "the voices")
        self.hear("object:state-changed:busy", False, scenario.VOICES_PAGE)
        self.hear("document:load-complete", False, scenario.VOICES_PAGE)
        self.tick_by_keyboard(program, words)
        self.go_round(program, words)
        self.write_output(language)
        desktop.keys("alt+F4")
        self.see_end(program)

    def tick_by_keyboard(self, program, words):
        self.see_focus(lambda: program.box(AGNES.shown), AGNES.shown)
        desktop.keys("space")
        self.see_announced(words.loading, words.one)
        self.hear("object:property-change:accessible-name", False, words.one)
        focused = self.voices_page(words, words.one, ticked=[AGNES])
        self.see_tree(program, focused, "with a voice ticked")

    def go_round(self, program, words):
        """From the first voice to the first voice."""
        stops = [(lambda v=v: program.box(v.shown), v.shown) for v in words.offered]
        stops.append((program.button, words.button))
        met = []
        for find, name in [*stops[1:], stops[0]]:
            desktop.keys("Tab")
            self.see_focus(find, name)
            met.append(Met(accessible.role(find()), accessible.name(find())))
        self.note("Tab, from the first voice on", met)

    def test_english(self):
        self.meet_everything("en", ENGLISH)

    def test_swedish_with_its_own_voices(self):
        self.meet_everything("sv", SWEDISH)

    def test_arabic_from_right_to_left(self):
        self.meet_everything("ar", ARABIC)

    def test_the_message_at_the_end_is_in_the_language_of_the_window(self):
        self.serve(hold=True)
        for language, words in (("sv", SWEDISH), ("ar", ARABIC)):
            with self.subTest(language=language):
                self.installation.choose_language(language)
                program = self.start()
                self.ask_to_close(program)
                self.see_message(program, words.prompt)
                self.answer_message(program)
                self.see_end(program)


if __name__ == "__main__":
    scenario.main()
