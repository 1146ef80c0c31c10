"""What the checks share: the project's files, C++ without comments, and how findings are told.

Standard library only, so that a check runs wherever Python does.
"""

import fnmatch
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
CPP = ("*.h", "*.cpp", "*.cpp.in")


def files(*patterns):
    """The project's files, new ones included, whose paths fit one of the patterns."""
    listing = subprocess.run(
        ["git", "-C", str(ROOT), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True, text=True).stdout
    names = sorted(set(filter(None, listing.split("\0"))))
    return [name for name in names
            if (ROOT / name).is_file() and any(fnmatch.fnmatch(name, p) for p in patterns)]


def read(name):
    return (ROOT / name).read_text(encoding="utf-8")


_NOT_CODE = re.compile(
    r"""//[^\n]*
      | /\*.*?\*/
      | R"(?P<mark>[^(\s]{0,16})\(.*?\)(?P=mark)"
      | "(?:\\.|[^"\\\n])*"
      | (?<![0-9A-Za-z_])'(?:\\.|[^'\\\n])*'
    """, re.VERBOSE | re.DOTALL)


def without_comments(text):
    """C++ text with comments blanked and its lines where they were."""
    return _blank(text, lambda piece: piece.startswith("/"))


def code_only(text):
    """C++ text with comments and literals blanked and its lines where they were."""
    return _blank(text, lambda piece: True)


def _blank(text, unwanted):
    def blanked(match):
        piece = match.group(0)
        return re.sub(r"[^\n]", " ", piece) if unwanted(piece) else piece
    return _NOT_CODE.sub(blanked, text)


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def tell(findings, looked_at):
    """Prints the findings and ends the check. One that looked at nothing has not passed."""
    name = pathlib.Path(sys.argv[0]).name
    for finding in findings:
        print(finding)
    if not looked_at:
        print(f"{name}: found nothing to look at")
    sys.exit(1 if findings or not looked_at else 0)
