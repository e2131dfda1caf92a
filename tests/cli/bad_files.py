#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Gives every malformed style, map, geometry and field model to the commands that read them: each
must answer 0 or 1, say one line when it fails and another of what is left out, name the file in it,
and leave no result behind when it fails.

    bad_files.py PROGRAM
"""

import concurrent.futures
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BAD = ROOT / "tests/data/bad"
FOLDERS = ("map", "wkb", "cof", "archive")
SECONDS = 60


def commands(file, picture):
    if file.endswith(".cof"):
        yield ["declination", "10", "20", "--date", "2001-01-01", "--model", file]
        return
    view = ["--bbox", "-180,-90,180,90", "--size", "200x100"]
    yield ["render", file, "-o", picture]
    yield ["render", file, "-o", picture, *view]
    yield ["render", file, "-o", picture, "--projection", "utm:33"]
    yield ["info", file]
    yield ["check", file]
    yield ["wkb", "--from-geojson", file]
    yield ["wkb", file]
    yield ["wkb", file, "--to-geojson"]


def archive_commands(file, other):
    yield ["style", "check", file]
    yield ["style", "convert", file, other]


def is_about(line, arguments):
    """Whether the line names the file, or says that the view cannot show what is in it."""
    named = any(argument.startswith(str(BAD)) and argument in line for argument in arguments)
    return named or "the area" in line


def complaints(program, arguments, picture):
    result = subprocess.run(
        [program, *arguments], capture_output=True, timeout=SECONDS, check=False
    )
    lines = result.stderr.decode(errors="replace").splitlines()
    if result.returncode not in (0, 1):
        yield f"exit {result.returncode}: {lines}"
    warnings = [line for line in lines if " left out, the first being " in line]
    answers = len(lines) - len(warnings)
    if len(warnings) > 1 or answers != result.returncode:
        yield f"{len(lines)} lines: {lines}"
    if lines and not lines[0].startswith("mezalith: "):
        yield f"not ours: {lines}"
    if result.returncode == 1 and not any(is_about(line, arguments) for line in lines):
        yield f"no file named: {lines}"
    if result.returncode == 1 and picture.exists():
        yield "a result was left"


def check(file):
    """All complaints about one file."""
    found = []
    is_archive = "/archive/" in file
    with tempfile.TemporaryDirectory() as folder:
        result = pathlib.Path(folder) / ("style.cbor" if is_archive else "map.png")
        for arguments in (archive_commands if is_archive else commands)(file, str(result)):
            for complaint in complaints(sys.argv[1], arguments, result):
                found.append(f"{' '.join(arguments)}: {complaint}")
            result.unlink(missing_ok=True)
    return found


def main():
    files = sorted(str(file) for folder in FOLDERS for file in (BAD / folder).iterdir())
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        found = [complaint for answers in pool.map(check, files) for complaint in answers]
    print("\n".join(found))
    print(f"{len(files)} files, {len(found)} complaints")
    sys.exit(bool(found) or len(files) < 100)


if __name__ == "__main__":
    main()
