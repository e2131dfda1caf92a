# SPDX-License-Identifier: MIT
"""The word check must find each kind of word, in tracked and in new files, and nothing else."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).parents[2] / "tools" / "check-words"


class CheckWords(unittest.TestCase):
    def run_on(self, name, content):
        with tempfile.TemporaryDirectory() as directory:
            subprocess.run(["git", "init", "-q", directory], check=True)
            path = pathlib.Path(directory, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content.encode())
            return subprocess.run(
                [sys.executable, TOOL, directory], capture_output=True, text=True, check=False
            )

    def test_finds_each_word_with_its_place(self):
        for words in [
            "// TO" + "DO: later",
            "the sp" + "ec says",
            "see the Sp" + "ecification",
            "Part" + " 5.3",
            "as the iss" + "ue wants",
            "as desc" + "ribed in",
            "cd /wo" + "rk/main",
            "written by a sub-" + "agent",
        ]:
            with self.subTest(words=words):
                result = self.run_on("mezalith/a.hpp", f"// fine\n{words}\n")
                self.assertEqual(result.returncode, 1)
                self.assertIn("mezalith/a.hpp:2: ", result.stdout)

    def test_accepts_innocent_text(self):
        text = "special, inspect, species, a part of 5.3, network/main, issue, homework/\n"
        result = self.run_on("a.txt", text)
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)

    def test_leaves_data_and_binary_files_alone(self):
        self.assertEqual(self.run_on("data/a.txt", "TO" + "DO\n").returncode, 0)
        self.assertEqual(self.run_on("a.bin", "\0TO" + "DO\n").returncode, 0)


if __name__ == "__main__":
    unittest.main()
