# Packages made by scripts/package, of a build folder or of a copy with something else in it.
# SPDX-License-Identifier: MIT
import pathlib
import re
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
ENDINGS = {"tar": "tar.gz", "zip": "zip", "msi": "msi"}


def make_package(kind, build, folder):
    """The .tar.gz, .zip or .msi of the program in the build folder."""
    subprocess.run(
        [ROOT / "scripts" / "package", f"--{kind}", build, folder],
        check=True, stdout=subprocess.DEVNULL,
    )
    [package] = folder.glob(f"*.{ENDINGS[kind]}")
    return package


def build_with(build, folder, program, name, version=None):
    """What scripts/package needs of a build folder, with the file `program` under the name of the shipped
    program, as `version`."""
    folder.mkdir(parents=True)
    shutil.copy2(program, folder / name)
    (folder / "assets").mkdir()
    for icon in build.glob("assets/*.*"):
        if icon.suffix in (".ico", ".png"):
            shutil.copy2(icon, folder / "assets")
    settings = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    if version:
        pattern = r"(?m)^(CMAKE_PROJECT_VERSION:STATIC=).*$"
        settings = re.sub(pattern, rf"\g<1>{version}", settings)
    (folder / "CMakeCache.txt").write_text(settings, encoding="utf-8")
    return folder


def commands(readme):
    """The command lines of a README: those that are indented by six characters."""
    return [line.strip() for line in readme.splitlines() if re.match(r" {6}\S", line)]
