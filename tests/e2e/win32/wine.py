# A Wine prefix of one's own, with the program, the stand-in control and the trusted authority in it,
# and what runs there. Used by the tests and by the demonstration. SPDX-License-Identifier: MIT
import contextlib
import hashlib
import json
import os
import pathlib
import shutil
import socket
import ssl
import subprocess
import sys
import time
import urllib.parse
import uuid

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[2]
MAKER = "Velor Software"
PROGRAM_NAME = "VelorVoiceSetup.exe"
CONTROL_CLASS = "{8856F961-340A-11D0-A96B-00C04FD705A2}"
# States and events for screen readers, of oleacc.h and winuser.h.
UNAVAILABLE = 1
NAME_CHANGED = 0x800C
LIVE_REGION_CHANGED = 0x8019
ASSET_FILES = ("wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml")


def wait_for(condition, what, seconds=50):
    """The first answer of `condition` that is true, asked again and again until the deadline."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() >= deadline:
            raise AssertionError(f"{what}: not seen in {seconds} seconds")
        time.sleep(0.03)


def windows_path(path):
    """Where Wine shows a file of this machine."""
    return "Z:" + str(path).replace("/", "\\")


def _registry_text(text):
    return text.replace("\\", "\\\\")


def _certificate_key(pem):
    """The registry's form of a trusted certificate: named by its SHA-1; a property of the kind 32
    (the certificate itself), then 1, the length and the bytes."""
    der = ssl.PEM_cert_to_DER_cert(pem.read_text())
    blob = b"".join(number.to_bytes(4, "little") for number in (32, 1, len(der))) + der
    path = "Software\\Microsoft\\SystemCertificates\\Root\\Certificates\\"
    name = hashlib.sha1(der).hexdigest().upper()
    return f'[{_registry_text(path + name)}] 1700000000\n"Blob"=hex:{blob.hex(",")}\n\n'


def _control_key(library):
    path = f"Software\\Classes\\CLSID\\{CONTROL_CLASS}\\InprocServer32"
    file = _registry_text(windows_path(library))
    return f'[{_registry_text(path)}] 1700000000\n@="{file}"\n"ThreadingModel"="Apartment"\n\n'


class Prefix:
    """A prefix that is copied from one which is made once for a build folder. Its drive's Windows
    folder shares the files of the original; all that a program writes, it writes anew."""

    def __init__(self, folder, original):
        self.folder = folder
        self.drive = folder / "drive_c"
        self._copy(original)
        [home] = [each for each in (self.drive / "users").iterdir() if each.name != "Public"]
        self.roaming = home / "AppData" / "Roaming"
        self.data = self.drive / "ProgramData" / MAKER
        self.queue = self.data / "queue.xml"
        self.products = self.data / "products.xml"
        self.page = self.roaming / MAKER / "VelorVoiceSetup" / "index.htm"
        self.use_program_folder(self.drive / "Program Files" / MAKER / "Velor Voice Setup")
        self.environment = dict(
            os.environ,
            WINEPREFIX=str(folder),
            WINEARCH="win64",
            WINEDEBUG="-all",
            WINEDLLOVERRIDES="winemenubuilder.exe=d",
            LC_ALL="C.UTF-8",
        )

    def use_program_folder(self, folder):
        self.program_folder = folder
        self.program = folder / PROGRAM_NAME
        self.installer = folder / "VelorVoiceInstaller.exe"

    @staticmethod
    def original(build):
        """The one that is copied; made where it is missing, which takes some seconds."""
        folder = build / "e2e_prefix"
        subprocess.run(
            [ROOT / "scripts" / "with-wine", "cmd", "/c", "exit"],
            env=dict(os.environ, WINEPREFIX=str(folder)),
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=True,
        )
        end_server(folder)
        return folder

    def _copy(self, original):
        self.folder.mkdir(parents=True)
        for name in ("system.reg", "user.reg", "userdef.reg", ".update-timestamp"):
            shutil.copy2(original / name, self.folder)
        shutil.copytree(original / "dosdevices", self.folder / "dosdevices", symlinks=True)
        shutil.copytree(
            original / "drive_c", self.drive, symlinks=True,
            ignore=lambda folder, _: ["windows"] if pathlib.Path(folder).name == "drive_c" else [],
        )
        shutil.copytree(
            original / "drive_c" / "windows", self.drive / "windows",
            symlinks=True, copy_function=os.link,
        )

    def add_to_registry(self, machine="", user=""):
        """Before anything runs there."""
        for name, text in (("system.reg", machine), ("user.reg", user)):
            with open(self.folder / name, "a", encoding="ascii") as file:
                file.write("\n" + text)

    def trust(self, authority):
        self.add_to_registry(user=_certificate_key(authority))

    def use_control(self, library):
        self.add_to_registry(machine=_control_key(library))

    def on_drive(self, path):
        """As programs of the prefix write it."""
        return "C:\\" + str(path.relative_to(self.drive)).replace("/", "\\")

    def use_density(self, dots):
        """How many of the screen's pixels are an inch; 96 is usual."""
        key = "[Control Panel\\\\Desktop] 1700000000\n"
        self.add_to_registry(user=f'{key}"LogPixels"=dword:{dots:08x}\n\n')

    def use_window_manager(self):
        """It draws the frames and says where windows appear, as on a desktop."""
        key = "[Software\\\\Wine\\\\X11 Driver] 1700000000\n"
        self.add_to_registry(user=f'{key}"Managed"="Y"\n\n')

    def install_program(self, program):
        self.data.mkdir(parents=True, exist_ok=True)
        self.program_folder.mkdir(parents=True)
        shutil.copy2(program, self.program)
        for name in ASSET_FILES:
            shutil.copy2(ROOT / "assets" / name, self.program_folder)

    def start(self, *command, **options):
        options.setdefault("env", self.environment)
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        return subprocess.Popen(["wine", *map(str, command)], **options)

    def end(self):
        """Ends everything that runs in this prefix, and nothing else."""
        end_server(self.folder)


def end_server(prefix):
    environment = dict(os.environ, WINEPREFIX=str(prefix))
    # It says "no" where nothing runs any more.
    subprocess.run(["wineserver", "-k"], env=environment, stderr=subprocess.DEVNULL, check=False)
    subprocess.run(["wineserver", "-w"], env=environment, check=True)


class PageHost:
    """The engine, in a process of its own, and what a test asks of the page in it."""

    def __init__(self):
        self._process = subprocess.Popen(
            [sys.executable, HERE / "page_host.py"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            text=True,
        )
        said, _, port = self._process.stdout.readline().rpartition(" ")
        if said != "listening on":
            raise RuntimeError("the page's host did not start")
        self.port = int(port)
        self._lines = socket.create_connection(("127.0.0.1", self.port), 20).makefile("rw")
        self._lines.write("test\n")

    def _ask(self, **question):
        self._lines.write(json.dumps(question) + "\n")
        self._lines.flush()
        return json.loads(self._lines.readline())

    def evaluate(self, script):
        return self._ask(evaluate=script)

    def journal(self):
        return self._ask(journal=True) or []

    def title(self):
        return self.evaluate("document.title") or ""

    def boxes(self):
        """The page's check boxes: name, ticked, enabled."""
        found = self.evaluate(
            "Array.from(document.querySelectorAll('input')).map(function (box) {"
            " var labels = Array.from(box.labels).map(function (each) { return each.textContent; });"
            " return [labels.join(' ') || box.title, box.checked, !box.disabled]; })"
        )
        return [tuple(box) for box in found or []]

    def voices(self):
        return [name for name, _, enabled in self.boxes() if enabled]

    def ticked(self):
        return [name for name, ticked, enabled in self.boxes() if enabled and ticked]

    def place(self, selector, text):
        """The middle of an element that has this text, in pixels of the control's window."""
        place = self.evaluate(
            "(function (found) { if (!found) return null; found.scrollIntoView({block: 'nearest'});"
            " var at = found.getBoundingClientRect();"
            " return [at.left + at.width / 2, at.top + at.height / 2]; })"
            f"(Array.from(document.querySelectorAll({json.dumps(selector)}))"
            f".find(function (each) {{ return each.textContent == {json.dumps(text)}; }}))"
        )
        return place and [round(each * self._ask(zoom=True)) for each in place]

    def end(self):
        self._lines.close()
        self._process.stdin.close()
        self._process.stdout.close()
        self._process.wait()


class Window:
    """A window of the program's as it was when it was looked at, with its controls below it."""

    def __init__(self, fields):
        decoded = ["" if field == "-" else urllib.parse.unquote(field) for field in fields]
        self.number, self.process = int(decoded[0]), int(decoded[1])
        self.kind, self.name = decoded[2:4]
        self.visible, self.enabled = decoded[4] == "1", decoded[5] == "1"
        self.mirrored = bool(int(decoded[6]) & 0x400000)
        self.left, self.top, self.right, self.bottom = map(int, decoded[7:11])
        self.text = decoded[11]
        self.controls = []

    def control(self, name):
        return next((each for each in self.controls if each.name == name), None)

    def of_kind(self, kind):
        return [each for each in self.controls if each.kind == kind]


class Probe:
    """The helper program that looks from inside the prefix."""

    def __init__(self, prefix, program, **options):
        self._process = prefix.start(
            program, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=None, text=True, **options
        )
        # It is the first there, and starts what every program of a prefix needs.
        self.ask("front")

    def ask(self, *command):
        self._process.stdin.write(" ".join(map(str, command)) + "\n")
        self._process.stdin.flush()
        lines = []
        while (line := self._process.stdout.readline()).strip() != ".":
            if not line:
                raise RuntimeError("the probe has ended")
            lines.append(line.strip())
        return lines

    def windows(self):
        found = []
        for line in self.ask("list"):
            depth, *fields = line.split(" ")
            (found[-1].controls if depth == "1" else found).append(Window(fields))
        return found

    def form(self):
        """The main window, if it can be seen."""
        return next((w for w in self.windows() if w.kind != "#32770" and w.visible), None)

    def control(self, name):
        form = self.form()
        return form.control(name) if form else None

    def accessible(self, window):
        """What screen readers are told of it: its name, and whether it can be used."""
        [line] = self.ask("accessible", window.number)
        state, name = line.split(" ")
        return "" if name == "-" else urllib.parse.unquote(name), not int(state) & UNAVAILABLE

    def told(self):
        """What windows have told screen readers so far, as (event, number of the window)."""
        return [tuple(map(int, line.split(" "))) for line in self.ask("told")]

    def messages(self):
        """The messages on the screen, as (title, text)."""
        return [
            (window.text, "\n".join(each.text for each in window.of_kind("Static") if each.text))
            for window in self._message_windows()
        ]

    def _message_windows(self):
        return [w for w in self.windows() if w.kind == "#32770" and w.visible]

    def answer_message(self):
        [message] = self._message_windows()
        [button] = message.of_kind("Button")
        self.ask("press", button.number)

    def close_message(self):
        """By its frame."""
        [message] = self._message_windows()
        self.ask("close", message.number)

    def end(self):
        with contextlib.suppress(BrokenPipeError):
            self._process.stdin.close()
        self._process.wait()
        self._process.stdout.close()


def new_product_code():
    return "{" + str(uuid.uuid4()).upper() + "}"
