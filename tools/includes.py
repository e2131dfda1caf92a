# SPDX-License-Identifier: MIT
"""The include graph of the project's C++ sources."""

import pathlib
import re

FOLDERS = ("mezalith", "host", "apps", "examples", "tests")
SUFFIXES = (".hpp", ".cpp")
_INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def sources(root):
    """All C++ files below the project's folders, as paths relative to root."""
    return sorted(
        path.relative_to(root).as_posix()
        for folder in FOLDERS
        for path in (root / folder).rglob("*")
        if path.suffix in SUFFIXES
    )


def includes(root, file):
    """(line number, included) for each include of a file; project files relative to root."""
    found = []
    text = (root / file).read_text(encoding="utf-8")
    for number, line in enumerate(text.splitlines(), 1):
        match = _INCLUDE.match(line)
        if match:
            beside = (pathlib.PurePosixPath(file).parent / match[2]).as_posix()
            is_beside = match[1] == '"' and (root / beside).is_file()
            found.append((number, beside if is_beside else match[2]))
    return found


def closure(graph, start):
    """Every file that start reaches, itself included, in a graph {file: [included]}."""
    reached, waiting = set(), [start]
    while waiting:
        file = waiting.pop()
        if file not in reached:
            reached.add(file)
            waiting.extend(graph.get(file, ()))
    return reached
