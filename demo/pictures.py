# Pictures of a display, for eyes: taken when everything is painted, and put together. Looking,
# cutting and packing are ImageMagick's. SPDX-License-Identifier: MIT
import subprocess
import time

# Enough for letters on a few grounds; a picture then has a third of its size.
COLOURS = 96
PATIENCE_SECONDS = 15
REST_SECONDS = 0.5
MOVES = 5


def _display():
    """The whole of it as bytes of a PNM picture."""
    command = ["import", "-silent", "-window", "root", "-depth", "8", "ppm:-"]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


class Camera:
    """Takes one picture after the other, no two of them alike, and none like what there was when the
    camera was set up."""

    def __init__(self):
        self._before = _display()

    def take(self, file, moving=False):
        """All windows, once they have looked the same for a moment: then everything is painted. Of
        something that moves, after some looks that differ. Says whether it was so."""
        begin = time.monotonic()
        now, since, changes = _display(), begin, 0
        while True:
            last, now = now, _display()
            if now != last:
                since, changes = time.monotonic(), changes + 1
            rested = time.monotonic() - since >= REST_SECONDS
            as_wanted = now != self._before and (changes >= MOVES if moving else rested)
            if as_wanted or time.monotonic() - begin >= PATIENCE_SECONDS:
                break
        self._before = now
        file.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["convert", "ppm:-", "-trim", "+repage", str(file)], input=now, check=True)
        return as_wanted


def put_together(files, columns, target):
    """Several in one, in lines of `columns`, packed as small as they can be without being unlike."""
    target.parent.mkdir(parents=True, exist_ok=True)
    table = ["-tile", f"{columns}x", "-geometry", "+12+12", "-gravity", "center"]
    arranged = subprocess.run(
        ["montage", "-background", "#8fa3b8", *map(str, files), *table, "ppm:-"],
        check=True, stdout=subprocess.PIPE,
    ).stdout
    pack(arranged, target)


def pack(picture, target):
    """Writes a picture, given as bytes of a PNM or PNG picture, with few colours."""
    packing = ["-dither", "None", "-colors", str(COLOURS), "-strip", "-define", "png:compression-level=9"]
    subprocess.run(["convert", "-", *packing, f"png8:{target}"], input=picture, check=True)
