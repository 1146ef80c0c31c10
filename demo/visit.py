#!/usr/bin/python3
# Uses the demonstration as a person would, where there is nobody: waits for the page, ticks a voice,
# presses Install, and takes a picture of each step. To be run on a virtual display with a session
# bus (scripts/with-display). SPDX-License-Identifier: MIT
"""Visits a prepared demonstration, and fails unless the two files were really written."""
import argparse
import os
import pathlib
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests" / "support"))

import accessible  # noqa: E402  (found through the line above)
from pictures import Camera  # noqa: E402

TITLE = "Velor Voice Setup"
WAIT_PAGE = "Velor Voice Setup"
VOICES_PAGE = "Downloads"
INSTALLER_TITLE = "Velor Voice Installer (stand-in)"


class Pictures:
    def __init__(self, folder):
        self.folder = folder
        self._camera = Camera()

    def take(self, name, moving=False):
        file = self.folder / f"{name}.png"
        if not self._camera.take(file, moving):
            print(f"visit: {name}: {'nothing moved' if moving else 'never came to rest'}")
        print(f"picture: {file}", flush=True)


class Visit:
    def __init__(self, prefix, pictures, voice):
        self.prefix = prefix
        self.pictures = pictures
        self.voice = voice
        self.data = prefix / "drive_c" / "ProgramData" / "Velor Software"
        self.folder = prefix / "drive_c" / "Program Files" / "Velor Software" / TITLE
        self.process = None
        self.loading = ""

    def start(self):
        environment = dict(os.environ, WINEPREFIX=str(self.prefix), VELOR_DEMO_UNATTENDED="1")
        self.process = subprocess.Popen(
            [str(self.folder / "VelorVoiceSetup")], cwd=self.folder, env=environment
        )

    def window(self):
        if self.process.poll() is not None:
            sys.exit(f"visit: the program has ended by itself, with {self.process.returncode}")
        return accessible.find_window(self.process.pid, TITLE)

    def page(self, title):
        window = self.window()
        return accessible.find(window, "document web", title) if window else None

    def status(self):
        """What the status line says: the window's one label beside the page."""
        label = accessible.find(self.window(), "label", skip=("document web",))
        return accessible.text(label) if label else ""

    def count(self):
        number = self.status().partition(" ")[0]
        return int(number) if number.isdigit() else 0

    def button(self):
        return accessible.find(self.window(), "push button", skip=("document web",))

    def see_wait_page(self):
        accessible.wait_for(lambda: self.page(WAIT_PAGE), "the wait page")
        self.loading = self.status()
        self.pictures.take("1-waiting", moving=True)

    def see_voices_page(self):
        page = accessible.wait_for(lambda: self.page(VOICES_PAGE), "the voices page", 40)
        boxes = accessible.wait_for(lambda: accessible.find_all(page, "check box"), "the voices")
        enabled = [box for box in boxes if accessible.is_enabled(box)]
        print(f"voices: {len(enabled)} offered, {len(boxes) - len(enabled)} installed already")
        ticked = [box for box in enabled if accessible.is_checked(box)]
        accessible.wait_for(
            lambda: self.count() == len(ticked) and self.status() != self.loading,
            "the status line to count the voices that are ticked already",
        )
        self.pictures.take("2-voices")
        return enabled

    def tick(self, boxes):
        wanted = [box for box in boxes if accessible.name(box) == self.voice]
        if not wanted:
            sys.exit(f"visit: no voice is called {self.voice!r}")
        if accessible.is_checked(wanted[0]):
            sys.exit(f"visit: {self.voice!r} is ticked already")
        before = self.count()
        accessible.press(wanted[0])
        accessible.wait_for(lambda: self.count() == before + 1, "one voice more in the status line")
        accessible.wait_for(lambda: accessible.is_enabled(self.button()), "Install to be enabled")
        print(f"status line: {self.status()}")
        self.pictures.take("3-ticked")

    def install(self):
        accessible.press(self.button())
        self.process.wait(timeout=20)
        installer = accessible.wait_for(
            lambda: accessible.find_window(None, INSTALLER_TITLE), "the stand-in installer"
        )
        self.pictures.take("4-installer")
        accessible.press(accessible.find(installer, "push button", "Close"))

    def check_files(self):
        queue, products = self.data / "queue.xml", self.data / "products.xml"
        queued = [item.text for item in ElementTree.parse(queue).getroot().iter("item")]
        offered = {
            product.findtext("id") for product in ElementTree.parse(products).getroot().iter("product")
        }
        if not queued or not offered.issuperset(queued):
            sys.exit(f"visit: {queue} holds {queued}, which is no choice from {products}")
        print(f"queue: {queue.read_text(encoding='utf-8').strip()}")

    def make(self):
        accessible.switch_on()
        self.start()
        try:
            self.see_wait_page()
            self.tick(self.see_voices_page())
            self.install()
        except accessible.NotSeen as failure:
            self.pictures.take("failure")
            for window in accessible.windows():
                print(accessible.outline(window), file=sys.stderr)
            sys.exit(f"visit: {failure}")
        finally:
            if self.process.poll() is None:
                self.process.kill()
                self.process.wait()
        self.check_files()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("prefix", type=pathlib.Path, help="made by demo/prepare")
    parser.add_argument("--pictures", type=pathlib.Path, required=True, help="folder for them")
    parser.add_argument("--voice", default="Danish Søren", help="the one to tick")
    options = parser.parse_args()
    Visit(options.prefix.resolve(), Pictures(options.pictures), options.voice).make()


if __name__ == "__main__":
    main()
