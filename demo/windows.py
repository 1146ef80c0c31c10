#!/usr/bin/python3
# The Windows program on the demonstration catalogue, in a Wine prefix made for it: opened for a person,
# or used as a person would where there is nobody. Built on the helpers of the end-to-end tests.
# SPDX-License-Identifier: MIT
"""Called by demo/run-windows."""
import argparse
import pathlib
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
sys.path[:0] = [str(ROOT / "tests" / name) for name in ("e2e/win32", "e2e/linux", "e2e")]

import desktop  # noqa: E402  (found through the lines above)
from catalogue import port_for_oneself  # noqa: E402
from installation import demonstration  # noqa: E402
from pictures import Camera  # noqa: E402
from wine import PageHost, Prefix, Probe, wait_for  # noqa: E402

VOICE = "Danish Søren"


def server_settings(build):
    """The port and the authority that are built into the program."""
    entries = {}
    for line in (build / "CMakeCache.txt").read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition("=")
        entries[name.partition(":")[0]] = value
    return int(entries["VELOR_LOCAL_SERVER"].rpartition(":")[2]), pathlib.Path(entries["VELOR_LOCAL_CA"])


def prepare(options, authority):
    prefix = Prefix(options.folder / "prefix", Prefix.original(options.build))
    helpers = options.build / "tests" / "e2e" / "win32"
    prefix.trust(authority)
    prefix.use_control(helpers / "velor_page_control.dll")
    prefix.install_program(options.build / "VelorVoiceSetupLocal.exe")
    shutil.copy2(HERE / "installer" / "VelorVoiceInstaller.exe", prefix.installer)
    languages = [options.language]
    demonstration.write_sibling(prefix.drive / "Program Files", prefix.roaming, languages)
    if not options.nothing_installed:
        products = demonstration.product_codes(HERE / "voices.xml")
        prefix.add_to_registry(*demonstration.keys_of_installed_voices(products))
    prefix.use_density(options.dpi)
    if not options.visit:
        prefix.use_window_manager()
    return prefix


def start_server(port, authority, delay):
    server = subprocess.Popen(
        [
            sys.executable, HERE / "server.py", "--port", str(port), "--delay", str(delay),
            "--until-input-closes", "--certificate", authority.parent / "server.pem",
            "--key", authority.parent / "server.key",
        ],
        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
    )
    if not server.stdout.readline().startswith("listening on"):
        sys.exit(f"the demonstration's server did not start. It needs port {port} for itself.")
    return server


class Visit:
    """What a person does, one step after the other; fails unless the files were really written."""

    def __init__(self, prefix, page, probe, pictures):
        self.prefix, self.page, self.probe, self.pictures = prefix, page, probe, pictures
        self._camera = Camera()

    def take_picture(self, name):
        """What moves is taken as it is."""
        file = self.pictures / f"{name}.png"
        self._camera.take(file)
        print(f"picture: {file}", flush=True)

    def status(self):
        label = self.probe.control("lblStatus")
        return label.text if label else ""

    def count(self):
        number = self.status().partition(" ")[0]
        return int(number) if number.isdigit() else 0

    def make(self, process):
        wait_for(lambda: self.probe.form() and self.page.title(), "the wait page", 60)
        loading = self.status()
        self.take_picture("1-waiting")
        wait_for(self.page.boxes, "the voices page", 60)
        offered = self.page.voices()
        print(f"voices: {len(offered)} offered, {len(self.page.boxes()) - len(offered)} installed already")
        before = len(self.page.ticked())
        wait_for(
            lambda: self.count() == before and self.status() != loading,
            "the status line to count what is ticked",
        )
        self.take_picture("2-voices")
        x, y = self.page.place("label", VOICE)
        [window] = self.probe.form().of_kind("Internet Explorer_Server")
        self.probe.ask("click", window.number, x, y)
        wait_for(lambda: self.count() == before + 1, "one voice more in the status line")
        print(f"status line: {self.status()}")
        self.take_picture("3-ticked")
        self.probe.ask("press", self.probe.control("cmdInstall").number)
        process.wait(timeout=30)
        report = self.prefix.data / "installer-report.txt"
        wait_for(report.exists, "the stand-in installer's report", 30)
        found = ("search", "--onlyvisible", "--name", "Velor Voice Installer")
        wait_for(lambda: desktop.xdotool(*found), "the stand-in installer's window")
        self.take_picture("4-installer")
        self.check_files()

    def check_files(self):
        queued = [item.text for item in ElementTree.parse(self.prefix.queue).getroot().iter("item")]
        products = ElementTree.parse(self.prefix.products).getroot().iter("product")
        if not queued or not {each.findtext("id") for each in products}.issuperset(queued):
            sys.exit(f"{self.prefix.queue} holds {queued}, which is no choice from the products")
        print(f"queue: {self.prefix.queue.read_text(encoding='utf-8').strip()}")


def tell_files(prefix):
    for file in (prefix.queue, prefix.products, prefix.data / "installer-report.txt"):
        print(f"{'written' if file.is_file() else 'not written'}: {file}")


def show(options, prefix):
    page = PageHost()
    prefix.environment["VELOR_PAGE_HOST"] = str(page.port)
    try:
        if options.visit:
            prefix.environment["VELOR_DEMO_UNATTENDED"] = "1"
            probe = Probe(prefix, options.build / "tests" / "e2e" / "win32" / "velor_probe.exe")
            process = prefix.start(prefix.program)
            Visit(prefix, page, probe, options.folder / "pictures").make(process)
        else:
            print("the program is open; this ends when you close it", flush=True)
            prefix.start(prefix.program).wait()
            # The installer that it may have started has a window, too.
            subprocess.run(["wineserver", "-w"], env=prefix.environment, check=False)
    finally:
        prefix.end()
        page.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--folder", type=pathlib.Path, required=True, help="is made anew")
    parser.add_argument("--language", default="en")
    parser.add_argument("--nothing-installed", action="store_true")
    parser.add_argument("--dpi", type=int, default=96)
    parser.add_argument("--visit", action="store_true", help="use it and take pictures")
    options = parser.parse_args()
    port, authority = server_settings(options.build)
    subprocess.run([ROOT / "scripts" / "make-local-ca", authority.parent], check=True)
    shutil.rmtree(options.folder, ignore_errors=True)
    options.folder.mkdir(parents=True)
    prefix = prepare(options, authority)
    with port_for_oneself(port):
        # Long enough for a picture of the wait page.
        server = start_server(port, authority, 6 if options.visit else 2)
        try:
            show(options, prefix)
        finally:
            server.stdin.close()
            server.wait()
    tell_files(prefix)


if __name__ == "__main__":
    main()
