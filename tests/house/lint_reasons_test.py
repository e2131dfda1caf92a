# SPDX-License-Identifier: MIT
"""Every check that .clang-tidy turns off stands there with its reason, and nothing else does."""

import pathlib
import re
import unittest

FILE = pathlib.Path(__file__).parents[2] / ".clang-tidy"


class LintReasons(unittest.TestCase):
    def test_every_disabled_check_has_its_reason(self):
        text = FILE.read_text()
        explained = re.findall(r"^#   (-[\w.*-]+): \w.{5,}$", text, re.M)
        disabled = re.findall(r"^  (-[\w.*-]+),?$", text, re.M)
        self.assertEqual(explained, disabled)
        self.assertGreater(len(disabled), 1)


if __name__ == "__main__":
    unittest.main()
