# Measures of whole programs for scripts/bench: starting, idling, memory, sizes, the commands. Every
# measure runs program, reference, program, reference, ... on the same display. Nothing in a program
# knows that it is measured. SPDX-License-Identifier: MIT
import contextlib
import dataclasses
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[3]
DEMO = ROOT / "demo"
PROGRAM_FOLDER = "drive_c/Program Files/Velor Software/Velor Voice Setup"
ASSETS = ("wait.htm", "Languages.xml", "VelorVoiceSetup.Language.xml")
# The page stands right of the logo in the program's window and fills the other one. Looked at is
# what the other page leaves blank: the first lines of the voices, the middle of the wait page.
LOGO_WIDTH = 98
VOICES_PLACE = (10, 10, 300, 150)
WAIT_PLACE = (10, 100, 400, 340)
NOTHING = (0, 0, 0, 0)
# Until the engine has put away what it needed for starting: its last timer is one of ten seconds.
SETTLE_SECONDS = 14


@dataclasses.dataclass
class Row:
    """A line of the table. `limit` is what the ratio, or where there is none the value, may be."""

    number: str
    measure: str
    values: list
    unit: str
    reference: list = dataclasses.field(default_factory=list)
    limit: float | None = None
    kind: str = "ratio"  # or "difference", "value"
    note: str = ""

    @property
    def result(self):
        value = statistics.median(self.values)
        if self.kind == "ratio":
            return value / statistics.median(self.reference)
        if self.kind == "difference":
            return value - statistics.median(self.reference)
        return value


def descendants(process_id):
    children = {}
    for file in pathlib.Path("/proc").glob("[0-9]*/stat"):
        with contextlib.suppress(OSError):
            name, _, rest = file.read_text().rpartition(")")
            children.setdefault(int(rest.split()[1]), []).append(int(name.split()[0]))
    found, waiting = [], [process_id]
    while waiting:
        below = children.get(waiting.pop(), [])
        found += below
        waiting += below
    return found


def processor_seconds(process_ids):
    """Of all threads, also those that have ended, exactly: the clock of a process, by its number."""
    total = 0.0
    for process_id in process_ids:
        with contextlib.suppress(OSError):
            total += time.clock_gettime((~process_id) << 3 | 2)
    return total


def proportional_megabytes(process_ids):
    total = 0
    for process_id in process_ids:
        with contextlib.suppress(OSError):
            text = pathlib.Path(f"/proc/{process_id}/smaps_rollup").read_text()
            total += int(re.search(r"^Pss:\s+(\d+)", text, re.MULTILINE)[1])
    return total / 1024


class World:
    """The built programs, a demonstration folder, and the finished page that the program wrote."""

    def __init__(self, build, folder, port, authority):
        self.build, self.folder, self.port, self.authority = build, folder, port, authority
        self.tools = build / "tests" / "bench" / "programs"
        self.prefix = folder / "prefix"
        make = [DEMO / "prepare", self.prefix, "--program", build / "VelorVoiceSetupLocal"]
        subprocess.run(make, check=True)
        self.environment = dict(os.environ, WINEPREFIX=str(self.prefix), LC_ALL="C.UTF-8")
        self.program = [self.prefix / PROGRAM_FOLDER / "VelorVoiceSetup"]
        self.page = folder / "page.htm"
        self.boxes = self._finish_page()
        self.bare = [self.tools / "velor_bench_bare_window", self.page]
        self.bare_waiting = [self.tools / "velor_bench_bare_window", ROOT / "assets" / "wait.htm"]

    def _finish_page(self):
        with self.server(), self.shown(self.program, VOICES_PLACE, LOGO_WIDTH):
            pass
        [written] = self.prefix.rglob("index.htm")
        shutil.copy(written, self.page)
        return self.page.read_text(encoding="utf-16").lower().count("<input")

    @contextlib.contextmanager
    def server(self, *options):
        command = [
            DEMO / "server.py", "--port", str(self.port), "--until-input-closes", *options,
            "--certificate", self.authority / "server.pem", "--key", self.authority / "server.key",
        ]
        with subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        ) as process:
            if not process.stdout.readline().startswith("listening on"):
                sys.exit(f"bench: the server did not start. It needs port {self.port} for itself.")
            try:
                yield
            finally:
                process.stdin.close()

    @contextlib.contextmanager
    def shown(self, command, place, beside=0, boxes=0, environment=None):
        """The program, started and seen; yields what was seen when, and the watching process."""
        x, y, width, height = place
        watch = [self.tools / "velor_bench_watch_start", "--page", f"{x + beside},{y},{width},{height}"]
        if not width:
            watch = watch[:1]
        if boxes:
            watch += ["--boxes", str(boxes)]
        with subprocess.Popen(
            [*watch, *command], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
            stderr=subprocess.DEVNULL, env=environment or self.environment,
        ) as process:
            seen = re.fullmatch(
                r"visible (\S+) painted (\S+) readable (\S+)\n", process.stdout.readline()
            )
            if not seen:
                sys.exit(f"bench: {command[0]} was not seen as it should be")
            try:
                yield tuple(map(float, seen.groups())), process.pid
            finally:
                process.stdin.close()


def start_of_voices(world, runs):
    """Rows 1: the voices page painted, and its boxes readable."""
    ours, bare = [], []
    with world.server():
        for _ in range(runs):
            with world.shown(world.program, VOICES_PLACE, LOGO_WIDTH, world.boxes) as (seen, _):
                ours.append(seen)
            with world.shown(world.bare, VOICES_PLACE, 0, world.boxes) as (seen, _):
                bare.append(seen)
    for number, what, at in (("1a", "painted", 1), ("1b", "painted and boxes readable", 2)):
        yield Row(
            number, f"start to voices page {what}", [each[at] for each in ours], "ms",
            [each[at] for each in bare], 1.15,
        )


def start_of_window(world, runs):
    """Row 1: the window on the screen. The reference has the engine's libraries, and does not start it."""
    ours, bare = [], []
    with world.server("--fail", "no-answer"):
        for _ in range(runs):
            with world.shown(world.program, NOTHING) as (seen, _):
                ours.append(seen[0])
            with world.shown([world.tools / "velor_bench_bare_window"], NOTHING) as (seen, _):
                bare.append(seen[0])
    yield Row("1c", "start to window on the screen", ours, "ms", bare, 1.3)


def start_of_wait_page(world, runs):
    ours, bare = [], []
    with world.server("--fail", "no-answer"):
        for _ in range(runs):
            with world.shown(world.program, WAIT_PLACE, LOGO_WIDTH) as (seen, _):
                ours.append(seen[1])
            with world.shown(world.bare_waiting, WAIT_PLACE) as (seen, _):
                bare.append(seen[1])
    yield Row("2", "start to wait page painted", ours, "ms", bare, 1.10)


def selection_tick(world, rounds):
    tool = world.tools / "velor_bench_selection_tick"
    for boxes in (100, 1000, 10000):
        page = world.folder / f"boxes-{boxes}.htm"
        lines = (
            f'<p><input type="checkbox" id="check{n}"{" checked" if n % 3 == 0 else ""}>'
            f'<label for="check{n}">Voice {n}</label></p>\r\n'
            for n in range(boxes)
        )
        page.write_text("<!DOCTYPE html><html><body>" + "".join(lines), encoding="utf-16")
        said = [
            subprocess.run(
                [tool, page, str(rounds)], check=True, stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL, text=True,
            ).stdout.split()
            for _ in range(3)
        ]
        empty, quiet, changed = ([float(each[at]) for each in said] for at in (3, 5, 7))
        limit = 2 if boxes == 100 else None
        yield Row("4a", f"tick, nothing changed, {boxes:,} boxes", quiet, "µs", empty, limit)
        yield Row("4b", f"tick, something changed, {boxes:,} boxes", changed, "µs", empty, limit)


def rest(world, rounds, seconds):
    """Rows 5 and 6, of the same windows: what they take when they have come to rest."""
    idle, memory = ([], []), ([], [])
    with world.server():
        for _ in range(rounds):
            for at, command in enumerate((world.program, world.bare)):
                beside = 0 if at else LOGO_WIDTH
                with world.shown(command, VOICES_PLACE, beside) as (_, watching):
                    time.sleep(SETTLE_SECONDS)
                    processes = descendants(watching)
                    memory[at].append(proportional_megabytes(processes))
                    begin, used = time.monotonic(), processor_seconds(processes)
                    time.sleep(seconds)
                    used = processor_seconds(processes) - used
                    idle[at].append(used / (time.monotonic() - begin) * 100)
    yield Row("5", "idle, processor time", idle[0], "% of a core", idle[1], 0.2, "difference")
    yield Row("6", "memory (PSS), all processes", memory[0], "MB", memory[1], 10, "difference")


def start_under_wine(world, build, runs):
    prefix = build / "wine"
    environment = dict(
        os.environ, WINEPREFIX=str(prefix), WINEDEBUG="-all", WINEARCH="win64",
        WINEDLLOVERRIDES="winemenubuilder.exe=d",
    )
    trust = dict(os.environ, VELOR_WINE_TRUST=str(world.authority / "ca.pem"))
    bare = ["wine", build / "tests" / "bench" / "programs" / "velor_bench_bare_window.exe"]
    # Makes the prefix, and lets the display be the one that Wine's desktop is on.
    subprocess.run(
        [ROOT / "scripts" / "with-wine", "cmd", "/c", "exit"],
        env=dict(trust, WINEPREFIX=str(prefix)), check=True, stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    ours = ["wine", build / "VelorVoiceSetupLocal.exe"]
    found = ([], [])
    try:
        with world.server("--fail", "no-answer"):
            for each in range(runs + 1):
                for at, command in enumerate((ours, bare)):
                    with world.shown(command, (0, 0, 0, 0), environment=environment) as (seen, _):
                        if each:  # the first finds nothing warm
                            found[at].append(seen[0])
    finally:
        subprocess.run(["wineserver", "-k"], env=environment, check=False)
    yield Row("8", "Windows program under Wine, start to window visible", found[0], "ms", found[1], 1.5)


def sizes(linux, windows):
    with tempfile.TemporaryDirectory() as folder:
        stripped = {}
        for build, name in ((windows, "VelorVoiceSetup.exe"), (linux, "VelorVoiceSetup")):
            tool = "x86_64-w64-mingw32-strip" if name.endswith(".exe") else "strip"
            copy = pathlib.Path(folder) / name
            subprocess.run([tool, "-o", copy, build / name], check=True)
            stripped[name] = copy.stat().st_size / 1e6
    beside = sum((ROOT / "assets" / name).stat().st_size for name in ASSETS) / 1e6
    exe, program = stripped.values()
    yield Row("9", "size of the stripped .exe", [exe], "MB", limit=1.5, kind="value")
    yield Row("9", "size of the stripped Linux program", [program], "MB", limit=1, kind="value")
    yield Row("9", "installed folder, Windows", [exe + beside], "MB", kind="value")
    yield Row("9", "installed folder, Linux", [program + beside], "MB", kind="value")


def seconds_of(command, **options):
    begin = time.monotonic()
    subprocess.run(
        command, check=True, cwd=ROOT, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options
    )
    return time.monotonic() - begin


def commands(folder, with_test):
    clean = folder / "clean"
    compile_all = dict(os.environ, CCACHE_DISABLE="1")
    configure = seconds_of(["cmake", "--preset", "linux-release", "-B", clean], env=compile_all)
    build = seconds_of(["cmake", "--build", clean], env=compile_all)
    yield Row("10", "clean build, Linux, release", [configure + build], "s", kind="value")
    again = seconds_of(["cmake", "--build", clean])
    yield Row("10", "the same again, nothing changed", [again], "s", kind="value")
    seconds_of([ROOT / "run", "--no-display"])
    yield Row(
        "10", "./run --no-display on a prepared machine, whole", [seconds_of([ROOT / "run", "--no-display"])],
        "s", kind="value", note="8 s of it the server holds the catalogue back",
    )
    if with_test:
        yield Row("10", "./test", [seconds_of([ROOT / "test"])], "s", kind="value")
