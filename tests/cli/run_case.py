#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs one command-line case and compares what came out.

    run_case.py PROGRAM CASE...

A case is a text file of sections, each under a line "== NAME": `command` (for bash, in an empty
folder, with the program on the path as `mezalith`), and, where wanted, `input`, `output`, `errors`
and `exit` (0). $MAPS and $BAD are the folders of map data and of malformed data. A section
`errors matching` holds a regular expression for all of standard error instead of its text.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SECTIONS = {"command", "input", "output", "errors", "errors matching", "exit"}
SECONDS = 60


def parse(text):
    """The sections of a case by name."""
    sections, name = {}, None
    for line in text.splitlines(keepends=True):
        if line.startswith("== "):
            name = line[3:].strip()
            if name not in SECTIONS or name in sections:
                raise ValueError(f"unknown or repeated section: {name}")
            sections[name] = ""
        elif name is not None:
            sections[name] += line
        elif line.strip() and not line.startswith("#"):
            raise ValueError(f"text before the first section: {line}")
    return sections


def run(program, sections):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder)
        (path / "bin").mkdir()
        (path / "bin" / "mezalith").symlink_to(pathlib.Path(program).resolve())
        (path / "work").mkdir()
        environment = dict(
            os.environ,
            PATH=f"{path / 'bin'}:{os.environ['PATH']}",
            MAPS=str(ROOT / "data/map"),
            BAD=str(ROOT / "tests/data/bad"),
            LC_ALL="C.UTF-8",
        )
        return subprocess.run(
            ["bash", "-o", "pipefail", "-c", sections["command"]],
            input=sections.get("input", ""),
            capture_output=True,
            text=True,
            cwd=path / "work",
            env=environment,
            timeout=SECONDS,
            check=False,
        )


def differences(sections, result):
    wanted_exit = int(sections.get("exit", "0"))
    if result.returncode != wanted_exit:
        yield f"exit {result.returncode}, not {wanted_exit}"
    if result.stdout != sections.get("output", ""):
        yield f"output:\n{result.stdout}"
    pattern = sections.get("errors matching")
    if pattern is None:
        if result.stderr != sections.get("errors", ""):
            yield f"errors:\n{result.stderr}"
    elif not re.fullmatch(pattern.rstrip("\n"), result.stderr.rstrip("\n")):
        yield f"errors that do not match:\n{result.stderr}"


def main():
    program, failed = sys.argv[1], False
    for case in sys.argv[2:]:
        sections = parse(pathlib.Path(case).read_text(encoding="utf-8"))
        for difference in differences(sections, run(program, sections)):
            failed = True
            print(f"{case}: {difference}")
    sys.exit(failed)


if __name__ == "__main__":
    main()
