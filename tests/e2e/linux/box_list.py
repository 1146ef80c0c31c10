#!/usr/bin/python3
# The voices as a list that is worked by keys and eyes: where the focus goes, what is in view, what a
# click hits, and what can be told apart on the screen. SPDX-License-Identifier: MIT
import collections
import subprocess

import scenario
from catalogue import Voice, catalogue

import accessible
import desktop

DEMONSTRATION = (scenario.ROOT / "demo" / "voices.xml").read_bytes()
# What WCAG 2.2 has for what can be used and for the focus (1.4.11), and for targets (2.5.8).
CONTRAST = 3
TARGET = 24


# Shown as "Ängla One", and so on.
NAMES = ("Ängla", "Angus", "Łucja", "Ludo", "Zoë", "Zola", "Олена", "Йосип", "أمل")
LETTERS = catalogue(*(Voice(str(at), "One", name, 60_000_000) for at, name in enumerate(NAMES)))


def luminance(pixel):
    def linear(value):
        value /= 255
        return value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4

    red, green, blue = map(linear, pixel)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(first, second):
    low, high = sorted(map(luminance, (first, second)))
    return (high + 0.05) / (low + 0.05)


def colours(x, y, width, height):
    """How often each colour is in a part of the screen."""
    command = ["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"]
    data = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return collections.Counter(zip(data[0::3], data[1::3], data[2::3], strict=True))


def colours_of(thing, margin=0):
    place = accessible.place(thing)
    return colours(place.x - margin, place.y - margin, place.width + 2 * margin, place.height + 2 * margin)


class BoxList(scenario.Scenario):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        desktop.introduce_keyboard()

    def see_list(self, body, **environment):
        self.serve(body)
        program = self.start(**environment)
        self.see_page(program)
        number = self.window_number(program)
        self.see(lambda: desktop.active_window() == number, "the window to be active")
        self.see(lambda: accessible.has_focus(self.focused(program)), "the focus in the list")
        return program

    def focused(self, program):
        return next(filter(accessible.has_focus, program.boxes()), None)

    def see_focus(self, program, name):
        """And that the box is in view."""

        def seen():
            box = program.box(name)
            return accessible.has_focus(box) and self.is_in_view(program, box)

        self.see(seen, f"the focus in view at {name}")

    @staticmethod
    def is_in_view(program, thing):
        """Between the window's upper edge and the status line."""
        place, window = accessible.place(thing), accessible.place(program.window())
        return window.y <= place.y and place.y + place.height <= accessible.place(program.label()).y

    def press(self, program, key, name):
        desktop.keys(key)
        self.see_focus(program, name)

    def close(self, program):
        self.ask_to_close(program)
        self.see(lambda: program.ended or program.messages(), "the end or the prompt")
        if program.messages():
            self.answer_message(program)
        self.see_end(program)

    # -- keys

    def test_arrow_home_end_and_page_keys_move_the_focus_and_keep_it_in_view(self):
        program = self.see_list(DEMONSTRATION)
        names = program.voices()
        self.press(program, "Home", names[0])
        self.press(program, "Down", names[1])
        self.press(program, "Up", names[0])
        desktop.keys("Next")
        self.see(lambda: not accessible.has_focus(program.box(names[0])), "the focus to move")
        page = names.index(accessible.name(self.focused(program)))
        self.assertGreater(page, 8)
        self.see_focus(program, names[page])
        self.press(program, "Next", names[2 * page])
        self.press(program, "Prior", names[page])
        self.press(program, "Tab", names[page + 1])
        self.press(program, "End", names[-1])
        self.press(program, "Up", names[-2])
        self.close(program)

    def test_the_first_ticked_voice_has_the_focus_and_the_last_one_takes_two_keys(self):
        program = self.see_list(DEMONSTRATION)
        [ticked] = program.ticked()
        *_, last = names = program.voices()
        self.assertGreater(names.index(ticked), 20, "it would be in view anyway")
        self.see_focus(program, ticked)
        desktop.keys("End", "space")
        self.see_ticked(program, ticked, last)
        self.see_focus(program, last)
        self.close(program)

    def type_to(self, program, letters, name):
        """Letters of one beginning, as fast as the display has them."""
        desktop.xdotool("key", "--delay", "1", *letters)
        self.see_focus(program, f"{name} One")
        # Another key ends the beginning, as a second without one does.
        desktop.keys("Home")
        self.see(lambda: accessible.has_focus(program.boxes()[0]), "the first box")

    def test_typed_letters_go_to_the_next_voice_that_begins_with_them(self):
        program = self.see_list(LETTERS)
        self.type_to(program, "zol", "Zola")
        self.type_to(program, "lu", "Łucja")
        self.type_to(program, "lud", "Ludo")
        self.type_to(program, "zoe", "Zoë")
        self.type_to(program, "zz", "Zola")
        self.type_to(program, ["Shift_L+z", "Shift_L+o", "Shift_L+l"], "Zola")
        desktop.use_layout("ru")
        self.type_to(program, ["Cyrillic_o"], "Олена")
        self.type_to(program, ["Cyrillic_i"], "Йосип")
        desktop.use_layout("ara")
        self.type_to(program, ["Arabic_alef"], "أمل")
        self.close(program)

    def test_shift_tab_from_install_comes_back_to_the_box_that_had_the_focus(self):
        program = self.see_list(LETTERS)
        self.press(program, "Down", "Angus One")
        desktop.keys("space")
        self.see(lambda: accessible.is_enabled(program.button()), "Install to be enabled")
        # Pressed there and released elsewhere, so that it is not clicked.
        place = accessible.place(program.button())
        desktop.xdotool("mousemove", "--sync", place.x + 5, place.y + 5, "mousedown", 1)
        self.see(lambda: accessible.has_focus(program.button()), "the focus at Install")
        desktop.xdotool("mousemove", "--sync", place.x - 50, place.y + 5, "mouseup", 1)
        self.press(program, "shift+Tab", "Angus One")
        self.close(program)

if __name__ == "__main__":
    scenario.main()
