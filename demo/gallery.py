#!/usr/bin/python3
# Goes through every state of one program in some languages and takes a picture of each. Built on the
# end-to-end tests' scenarios, which know how to drive both programs. SPDX-License-Identifier: MIT
"""Called by scripts/gallery, on a virtual display of the size that the density needs, with VELOR_BUILD
(and VELOR_HELPERS for the Windows program) saying what to drive."""
import argparse
import contextlib
import os
import pathlib
import struct
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
sys.path[:0] = [str(ROOT / "tests" / name) for name in ("e2e/win32", "e2e/linux", "e2e", "support")]

import desktop  # noqa: E402  (found through the line above)
from installation import demonstration  # noqa: E402
from pictures import Camera  # noqa: E402

CATALOGUE = (HERE / "voices.xml").read_bytes()
PRODUCTS = demonstration.product_codes(HERE / "voices.xml")
# In the first view of every language. Where they stand in the list.
TICKED = (1, 4)
NORMAL_DENSITY = 96
# What stands in for the faces of Windows, and where those look for letters that they lack.
FACES = {"Segoe UI": "DejaVu Sans", "Yu Gothic UI": "WenQuanYi Micro Hei", "Nirmala UI": "Lohit Devanagari"}
LINKED = ("wqy-microhei.ttc,WenQuanYi Micro Hei", "Lohit-Devanagari.ttf,Lohit Devanagari")
SYSTEM_FONTS = ("CaptionFont", "MessageFont", "StatusFont")


# What a desktop's settings write for its programs, the ordinary look aside; and how large letters are.
LOOKS = {"usual": "", "dark": "gtk-application-prefer-dark-theme=1", "contrast": "gtk-theme-name=HighContrast",
         "large": ""}
LARGE_TEXT = "Xft.dpi: 144"


def use_look(look):
    """In the home that the display has brought along, or on the display itself."""
    settings = pathlib.Path(os.environ["HOME"]) / ".config" / "gtk-3.0" / "settings.ini"
    settings.parent.mkdir(parents=True)
    settings.write_text(f"[Settings]\n{LOOKS[look]}\n")
    if look == "large":
        change = ["xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", LARGE_TEXT]
        subprocess.run(change, check=True)


def look_of_windows():
    """The registry's keys for it: (machine, user). Smooth letters in the system's size and face."""
    stamp = "1700000000"
    links = "".join(f"{each}\0" for each in LINKED) + "\0"
    link_key = r"[Software\\Microsoft\\Windows NT\\CurrentVersion\\FontLink\\SystemLink]"
    machine = f"{link_key} {stamp}\n"
    for face in FACES.values():
        machine += f'"{face}"=hex(7):{links.encode("utf-16-le").hex(",")}\n'
    faces = "".join(f'"{theirs}"="{ours}"\n' for theirs, ours in FACES.items())
    font = struct.pack("<5l8B64s", -12, 0, 0, 0, 400, *(0, 0, 0, 1, 0, 0, 0, 0), "Segoe UI".encode("utf-16-le"))
    fonts = "".join(f'"{name}"=hex:{font.hex(",")}\n' for name in SYSTEM_FONTS)
    user = (
        f"[Software\\\\Wine\\\\Fonts\\\\Replacements] {stamp}\n{faces}\n"
        f"[Control Panel\\\\Desktop\\\\WindowMetrics] {stamp}\n{fonts}\n"
        f'[Control Panel\\\\Desktop] {stamp}\n"FontSmoothing"="2"\n"FontSmoothingType"=dword:00000001\n\n'
    )
    return machine + "\n", user


def linux_tour():
    import accessible
    import scenario

    class LinuxTour(scenario.Scenario):
        def choose(self, language):
            self.installation.choose_language(language)

        def install_voices(self):
            demonstration.write_registry(self.installation.prefix, PRODUCTS, nothing_installed=False)

        def see_wait_page(self, program):
            self.see(lambda: program.page(scenario.WAIT_PAGE), "the wait page")

        def voices(self, program):
            return program.voices()

        def status(self, program):
            return program.status()

        def see_any_message(self, program):
            self.see(program.messages, "a message")

        def show_end_of_page(self, _program):
            desktop.keys("End", "End")  # to the last box, and from there to the end

    return LinuxTour()


def windows_tour(dots):
    import windows_scenario as scenario
    from wine import Probe

    class WindowsTour(scenario.Scenario):
        def install_program(self):
            super().install_program()
            self.prefix.use_density(dots)
            self.prefix.use_window_manager()
            self.prefix.add_to_registry(*look_of_windows())

        def choose(self, language):
            self.choose_language(language)

        def install_voices(self):
            """The registry's files can be written while nothing runs in the prefix."""
            self.probe.end()
            self.prefix.end()
            self.prefix.add_to_registry(*demonstration.keys_of_installed_voices(PRODUCTS))
            self.probe = Probe(self.prefix, scenario.build.probe)
            self.addCleanup(self.probe.end)

        def see_wait_page(self, _program):
            super().see_wait_page()

        def see_page(self, _program):
            super().see_page()

        def voices(self, _program):
            return self.page.voices()

        def status(self, _program):
            return super().status()

        def tick(self, _program, voice):
            super().tick(voice)

        def see_any_message(self, _program):
            self.see(self.probe.messages, "a message")

        def answer_message(self, _program):
            super().answer_message()

        def ask_to_close(self, _program):
            super().ask_to_close()

        def show_end_of_page(self, _program):
            self.page.evaluate("scrollTo(0, document.body.scrollHeight)")

    return WindowsTour()


def fail(tour, server, take):
    """Without a catalogue there are two messages."""
    server.options.fail = "not-found"
    server.release()
    program = tour.start()
    tour.see_any_message(program)
    take("failure")
    tour.answer_message(program)
    tour.see_any_message(program)
    tour.answer_message(program)
    tour.see_end(program)
    server.options.fail = None


def close_with_nothing_installed(tour, take):
    program = tour.start()
    tour.see_page(program)
    # Where nothing is installed a default voice is ticked already.
    tour.see(lambda: any(map(str.isdigit, tour.status(program))), "the status line to count it")
    tour.ask_to_close(program)
    tour.see_any_message(program)
    take("prompt")
    tour.answer_message(program)
    tour.see_end(program)


def go_through_the_page(tour, server, take):
    server.released.clear()
    program = tour.start()
    tour.see_wait_page(program)
    tour.see(lambda: tour.status(program), "the status line")
    take("waiting", moving=True)
    server.release()
    tour.see_page(program)
    voices = tour.see(lambda: tour.voices(program), "the voices that can be ticked")
    tour.see(lambda: not tour.status(program), "the status line to follow the page")
    take("nothing-ticked")
    for at in TICKED:
        status = tour.status(program)
        tour.tick(program, voices[at])
        tour.see(lambda before=status: tour.status(program) != before, "the status line to count")
    take("ticked")
    tour.show_end_of_page(program)
    take("installed")
    tour.ask_to_close(program)
    tour.see_end(program)


def go_round(tour, language, folder):
    camera = Camera()

    def take(state, moving=False):
        file = folder / f"{language}-{state}.png"
        if not camera.take(file, moving):
            print(f"gallery: {file}: {'nothing moved' if moving else 'never came to rest'}")

    # In the corner, which is as far as it goes: over the page it would call up a tool tip.
    desktop.xdotool("mousemove", 9999, 9999)
    tour.setUp()
    with contextlib.ExitStack() as at_the_end:
        at_the_end.callback(tour.doCleanups)
        tour.choose(language)
        server = tour.serve(CATALOGUE)
        fail(tour, server, take)
        close_with_nothing_installed(tour, take)
        tour.install_voices()
        go_through_the_page(tour, server, take)
        tour.see_good_end()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", choices=("linux", "windows"))
    parser.add_argument("--dpi", type=int, default=NORMAL_DENSITY)
    parser.add_argument("--language", action="append", required=True)
    parser.add_argument("--look", choices=LOOKS, default="usual", help="of the Linux desktop")
    parser.add_argument("--folder", type=pathlib.Path, required=True)
    options = parser.parse_args()
    if options.program == "linux":
        # What a desktop tells its programs on a screen twice as dense.
        os.environ["GDK_SCALE"] = str(options.dpi // NORMAL_DENSITY)
        use_look(options.look)
        tour = linux_tour()
    else:
        tour = windows_tour(options.dpi)
    tour.setUpClass()
    for language in options.language:
        go_round(tour, language, options.folder)


if __name__ == "__main__":
    main()
