# SPDX-License-Identifier: MIT
"""What the documents say of the tree is so."""

import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).parents[2]
LICENCE = "// SPDX-License-Identifier: MIT\n"


def tracked():
    command = ["git", "ls-files", "-co", "--exclude-standard"]
    names = subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=True).stdout
    return [pathlib.PurePosixPath(name) for name in names.splitlines()]


class Documents(unittest.TestCase):
    def test_programs_shown_are_the_programs_compiled(self):
        text = (ROOT / "README.md").read_text()
        shown = re.findall(r"<!-- (\S+) -->\n```cpp\n(.*?)```\n", text, re.S)
        self.assertGreater(len(shown), 0)
        for name, code in shown:
            self.assertEqual(LICENCE + code, (ROOT / name).read_text(), name)

    def test_links_lead_somewhere(self):
        for name in tracked():
            if name.suffix == ".md":
                text = (ROOT / name).read_text()
                for link in re.findall(r"\]\((?!https?:|#)([^)#]+)", text):
                    target = ROOT / name.parent / link
                    self.assertTrue(target.exists(), f"{name}: {link}")

    def test_readme_names_every_folder(self):
        text = (ROOT / "README.md").read_text()
        folders = {name.parts[0] for name in tracked() if len(name.parts) > 1}
        for folder in folders:
            if not folder.startswith("."):
                self.assertRegex(text, rf"\| `{folder}/", folder)

    def test_every_row_of_choosing_has_its_tests(self):
        text = (ROOT / "docs/choosing.md").read_text()
        jobs = re.findall(r"^\| ([^|]+) \|", text, re.M)[1:]
        words = [re.findall(r"\w+", job) for job in jobs if not job.startswith("---")]
        rows = ["Choosing" + "".join(word[0].upper() + word[1:] for word in row) for row in words]
        tests = [path.read_text() for path in (ROOT / "tests/choosing").glob("*_test.cpp")]
        suites = set(re.findall(r"^TEST\((\w+),", "".join(tests), re.M))
        self.assertEqual(sorted(rows), sorted(suites))

    def test_the_root_stays_small(self):
        self.assertLessEqual(len({name.parts[0] for name in tracked()}), 21)


if __name__ == "__main__":
    unittest.main()
