#!/usr/bin/env python3
"""zip_folder.py FOLDER FILE: packs a folder so that the same contents make the same bytes: in the order
of the names, with one time (SOURCE_DATE_EPOCH), without owners. SPDX-License-Identifier: MIT"""

import os
import pathlib
import sys
import time
import zipfile

folder, archive = map(pathlib.Path, sys.argv[1:])
moment = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
DOS, PLAIN_FILE = 0, 0x20

with zipfile.ZipFile(archive, "w") as packed:
    for file in sorted(path for path in folder.rglob("*") if path.is_file()):
        entry = zipfile.ZipInfo(f"{folder.name}/{file.relative_to(folder).as_posix()}", moment)
        entry.create_system, entry.external_attr = DOS, PLAIN_FILE
        packed.writestr(entry, file.read_bytes(), zipfile.ZIP_DEFLATED, 9)
