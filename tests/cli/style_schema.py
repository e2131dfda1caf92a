#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The schema of style documents and the program agree: on every style document of the tree, on what
the program writes, and on the malformed ones, but for what a schema cannot say.

    style_schema.py PROGRAM
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = sys.argv.pop(1)
# What a schema or its reader cannot tell: references, lengths that depend on other values, the filter's language.
BEYOND = {
    "dash-bytes-odd",
    "dash-count-huge",
    "dash-count-missing",
    "dash-count-too-large",
    "dash-differs",
    "filter-deep",
    "filter-malformed",
    "id-twice",
    "lone-surrogate",
    "ref-circle",
    "ref-nowhere",
}


def run(*arguments):
    result = subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, check=False)
    return result.returncode, result.stdout


class StyleSchema(unittest.TestCase):
    def setUp(self):
        schema = json.loads((ROOT / "docs/style.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        self.validator = jsonschema.Draft202012Validator(schema)

    def complaints(self, text):
        return [error.message for error in self.validator.iter_errors(json.loads(text))]

    def no_json(self, constant):
        raise ValueError(constant)

    def test_holds_for_the_documents_of_the_tree(self):
        files = list((ROOT / "data/styles").rglob("*.json"))
        self.assertGreater(len(files), 10)
        for file in files:
            self.assertEqual(self.complaints(file.read_text()), [], file)
            self.assertEqual(run("style", "check", str(file))[0], 0, file)

    def test_holds_for_the_document_that_is_explained(self):
        text = (ROOT / "docs/styles.md").read_text().split("```json\n")[1].split("```")[0]
        self.assertEqual(self.complaints(text), [])
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            file.write(text)
            file.flush()
            self.assertEqual(run("style", "check", file.name)[0], 0)

    def test_holds_for_what_the_program_writes(self):
        for kind in ("point", "line", "polygon"):
            code, text = run("style", "default", kind)
            self.assertEqual(code, 0)
            self.assertEqual(self.complaints(text), [], kind)

    def test_agrees_on_malformed_documents(self):
        agreed = 0
        for file in sorted((ROOT / "tests/data/bad/archive").glob("*.json")):
            try:
                document = json.loads(file.read_bytes().decode(), parse_constant=self.no_json)
            except (ValueError, RecursionError):
                continue
            is_style = run("style", "check", str(file))[0] == 0
            is_known = self.validator.is_valid(document)
            self.assertEqual(is_known, is_style or file.stem in BEYOND, file.name)
            agreed += is_known == is_style
        self.assertGreater(agreed, 20)


if __name__ == "__main__":
    unittest.main()
