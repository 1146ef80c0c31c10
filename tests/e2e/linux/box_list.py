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
# The size of a box in pixels, and the least that its border and the ring around it have.
BOX = 28
BORDER = 100
RING = 2 * 4 * 20
LOOKS = {
    "light": "",
    "dark": "gtk-application-prefer-dark-theme=1",
    "high contrast": "gtk-theme-name=HighContrast",
    "dark high contrast": "gtk-theme-name=HighContrastInverse",
}


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
    """The colours of a part of the screen, from left to right and from top to bottom."""
    part = f"{width}x{height}+{x}+{y}"
    command = ["import", "-silent", "-window", "root", "-crop", part, "-depth", "8", "rgb:-"]
    data = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return list(zip(data[0::3], data[1::3], data[2::3], strict=True))


def colours_of_box(box):
    """Without its name, which assistive technology counts with it."""
    place = accessible.place(box)
    return colours(place.x, place.y, BOX, BOX)


def has_two_colours(seen, least):
    """Whether a colour besides the ground has so many pixels, and can be told from it."""
    (ground, _), (other, count), *_ = [*collections.Counter(seen).most_common(2), (None, 0)]
    return count >= least and contrast(ground, other) >= CONTRAST


class BoxList(scenario.Scenario):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        desktop.introduce_keyboard()

    def see_list(self, body):
        self.serve(body)
        return self.see_started(self.start())

    def see_started(self, program):
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

    # -- eyes

    def see_list_with_look(self, settings):
        """On a desktop with these settings of GTK's."""
        folder = self.folder / "configuration" / "gtk-3.0"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "settings.ini").write_text(f"[Settings]\n{settings}\n")
        return self.see_started(self.start(XDG_CONFIG_HOME=str(folder.parent)))

    def see_painted(self, box, what, condition):
        """The colours of the box, once they are as they should be."""
        try:
            self.see(lambda: condition(colours_of_box(box)), what)
        except accessible.NotSeen:
            self.fail(f"{what}: {collections.Counter(colours_of_box(box)).most_common(4)}")

    def see_look(self, settings, dark):
        program = self.see_list_with_look(settings)
        focused, other, *_ = program.boxes()
        self.see_painted(other, "the border of a box without a tick", lambda seen: has_two_colours(seen, BORDER))
        plain = colours_of_box(other)
        ground = collections.Counter(plain).most_common(1)[0][0]
        self.assertEqual(dark, luminance(ground) < 0.2, f"the ground is {ground}")
        # The two boxes look alike but for the ring.
        self.see_painted(focused, "the ring of the focus", lambda seen: sum(
            contrast(ring, ground) >= CONTRAST for ring, none in zip(seen, plain, strict=True) if ring != none
        ) >= RING)
        accessible.press(other)
        self.see_painted(other, "a tick", lambda seen: sum(
            contrast(now, ground) >= CONTRAST for now, before in zip(seen, plain, strict=True) if now != before
        ) >= BORDER)
        self.close(program)
        self.see_nobody_left()

    def test_boxes_and_focus_are_seen_in_every_look_of_the_desktop(self):
        self.serve(LETTERS)
        for look, settings in LOOKS.items():
            with self.subTest(look):
                self.see_look(settings, "dark" in look)

    # -- clicks

    def test_a_click_in_the_cell_of_the_name_or_near_the_box_ticks_it(self):
        program = self.see_list(LETTERS)
        name = "Angus One"
        place, window = accessible.place(program.box(name)), accessible.place(program.window())
        row = place.y + place.height // 2
        # Far behind the name, where its cell ends.
        desktop.click(window.x + window.width - 160, row)
        self.see_ticked(program, name)
        middle, reach = place.x + BOX // 2, TARGET // 2 - 1
        for x in (middle - reach, middle + reach):
            for y in (row - reach, row + reach):
                ticked = program.ticked()
                desktop.click(x, y)
                self.see_ticked(program, *([] if ticked else [name]))
        self.close(program)

    # -- zoom

    def see_box_height(self, program, percent):
        """Of the first box, and its focus in view."""

        def seen():
            box = program.boxes()[0]
            height, wanted = accessible.place(box).height, BOX * percent / 100
            # A long name takes more than one line in large text.
            lines = 2 if percent > 200 else 1
            return wanted - 2 <= height <= lines * wanted + 2 and self.is_in_view(program, box)

        self.see(seen, f"boxes of {percent}%")

    def test_ctrl_with_plus_minus_zero_and_the_wheel_zooms_from_50_to_300_percent(self):
        server = self.serve(LETTERS, hold=True)
        program = self.start()
        self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")
        number = self.window_number(program)
        self.see(lambda: desktop.active_window() == number, "the window to be active")
        desktop.keys("ctrl+plus")
        server.release()
        self.see_page(program)
        self.see_box_height(program, 110)
        desktop.keys(*["ctrl+plus"] * 9)
        self.see_box_height(program, 300)
        desktop.keys("ctrl+0")
        self.see_box_height(program, 100)
        desktop.keys(*["ctrl+minus"] * 9)
        self.see_box_height(program, 50)
        place = accessible.place(program.window())
        desktop.xdotool("mousemove", "--sync", place.x + place.width // 2, place.y + place.height // 2)
        for _ in range(5):
            desktop.xdotool("keydown", "ctrl", "click", 4, "keyup", "ctrl")
        self.see_box_height(program, 110)
        desktop.xdotool("keydown", "ctrl", "click", 5, "keyup", "ctrl")
        self.see_box_height(program, 100)
        self.close(program)

    def test_in_text_of_400_percent_and_640_by_480_pixels_nothing_goes_beyond_the_sides(self):
        change = ["xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER"]
        subprocess.run([*change, "Xft.dpi: 384"], check=True)
        self.addCleanup(subprocess.run, [*change, ""], check=True)
        program = self.see_list(LETTERS)
        desktop.xdotool("windowsize", "--sync", self.window_number(program), 640, 480)
        self.see(lambda: self.is_between_the_sides(program), "all of the page between its sides")
        self.close(program)

    @staticmethod
    def is_between_the_sides(program):
        left = accessible.place(program.logo())
        right = accessible.place(program.button())
        places = [accessible.place(each) for each in accessible.walk(program.page())]
        return right.x + right.width < 700 + left.x and all(
            left.x + left.width - 10 <= place.x and place.x + place.width <= right.x + right.width + 40
            for place in places
        )


if __name__ == "__main__":
    scenario.main()
