# SPDX-License-Identifier: MIT
"""The scripts' steps: quiet when all is well, telling when not, and skipped only when nothing changed."""

import pathlib
import subprocess
import tempfile
import unittest

STEPS = pathlib.Path(__file__).parents[2] / "tools" / "steps.bash"


class Steps(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        subprocess.run(["git", "init", "-q", self.root], check=True)
        (self.root / ".gitignore").write_text("/build/\n")
        (self.root / "input").write_text("1")
        (self.root / "other").write_text("1")

    def run_script(self, line):
        script = f"set -euo pipefail; . {STEPS}; {line}; echo end"
        return subprocess.run(
            ["bash", "-c", script], cwd=self.root, capture_output=True, text=True, check=False
        )

    def test_a_step_is_one_line_and_keeps_its_output(self):
        result = self.run_script("step 'say it' echo hello")
        self.assertRegex(result.stdout, r"\Asay it +\d+ s\nend\n\Z")
        self.assertEqual((self.root / "build/log/say-it.log").read_text(), "hello\n")

    def test_a_step_that_fails_shows_the_end_of_its_output_and_ends_the_script(self):
        result = self.run_script("step 'say it' bash -c 'seq 100; exit 3'")
        self.assertEqual(result.returncode, 1)
        self.assertIn("failed after", result.stdout)
        self.assertIn("\n100\n", result.stdout)
        self.assertNotIn("\n1\n", result.stdout)
        self.assertNotIn("end\n", result.stdout)

    def test_a_step_gets_no_input(self):
        self.assertIn("end", self.run_script("step 'read it' cat").stdout)

    def test_what_passed_is_skipped_until_its_inputs_change(self):
        line = "step_if_changed look input -- bash -c 'echo x >>build/runs'"
        runs = self.root / "build/runs"
        self.run_script(line)
        self.assertIn("unchanged", self.run_script(line).stdout)
        (self.root / "other").write_text("2")
        self.assertIn("unchanged", self.run_script(line).stdout)
        self.assertEqual(runs.read_text(), "x\n")
        (self.root / "input").write_text("2")
        self.run_script(line)
        self.assertEqual(runs.read_text(), "x\nx\n")
        self.run_script(line.replace("echo x", "echo y"))
        self.assertEqual(runs.read_text(), "x\nx\ny\n")

    def test_what_failed_is_not_taken_as_passed(self):
        line = "step_if_changed look input -- false"
        self.assertEqual(self.run_script(line).returncode, 1)
        self.assertEqual(self.run_script(line).returncode, 1)


if __name__ == "__main__":
    unittest.main()
