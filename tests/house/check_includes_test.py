# SPDX-License-Identifier: MIT
"""The include check must find what it is there for: each case breaks one rule of a small tree."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).parents[2] / "tools" / "check-includes"

TREE = {
    "CMakeLists.txt": "mezalith_library(core)\n"
    "mezalith_library(style DEPENDS core)\n"
    "mezalith_library(cairo DEPENDS core MODULES cairo)\n",
    "mezalith/export.hpp": "",
    "mezalith/geometry/CMakeLists.txt": "mezalith_units(core UNITS primitives wkb)\n",
    "mezalith/geometry/primitives.hpp": "#include <mezalith/export.hpp>\n#include <cmath>\n",
    "mezalith/geometry/wkb.hpp": "#include <mezalith/geometry/primitives.hpp>\n",
    "mezalith/geometry/wkb_test.cpp": "#include <gtest/gtest.h>\n"
    "#include <tests/support/folder.hpp>\n",
    "tests/support/folder.hpp": "#include <string>\n",
    "mezalith/platform/CMakeLists.txt": "mezalith_units(core UNITS port)\n",
    "mezalith/platform/port.hpp": "#include <mezalith/geometry/primitives.hpp>\n",
    "mezalith/platform/cairo/CMakeLists.txt": "mezalith_units(cairo UNITS cairo_port)\n",
    "mezalith/platform/cairo/cairo_port.hpp": "#include <mezalith/platform/port.hpp>\n",
    "mezalith/platform/cairo/cairo_port.cpp": "#include <cairo-svg.h>\n",
    "mezalith/style/CMakeLists.txt": "mezalith_units(style\n  UNITS rule\n"
    "  TEST_LINKS mezalith::cairo\n  HEADERS detail.hpp)\n",
    "mezalith/style/rule.hpp": "#include <mezalith/geometry/wkb.hpp>\n",
    "mezalith/style/rule_test.cpp": "#include <mezalith/platform/cairo/cairo_port.hpp>\n",
    "host/source.hpp": "#include <mezalith/style/rule.hpp>\n#include <ogrsf_frmts.h>\n",
    "apps/mezalith/main.cpp": "#include <host/source.hpp>\n#include <CLI/CLI.hpp>\n",
}


class CheckIncludes(unittest.TestCase):
    def run_on(self, changes):
        with tempfile.TemporaryDirectory() as directory:
            for name, text in (TREE | changes).items():
                path = pathlib.Path(directory, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return subprocess.run(
                [sys.executable, TOOL, directory], capture_output=True, text=True, check=False
            )

    def assert_broken(self, file, text, message):
        result = self.run_on({file: text})
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn(f"{file}:", result.stdout)
        self.assertIn(message, result.stdout)

    def test_accepts_a_tree_in_order(self):
        result = self.run_on({})
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertIn("no layer broken, no circle", result.stdout)

    def test_keeps_the_support_of_tests_apart(self):
        self.assert_broken(
            "tests/support/folder.hpp",
            "#include <host/source.hpp>\n",
            "knows nothing of the project",
        )
        self.assert_broken(
            "mezalith/geometry/wkb.cpp",
            "#include <tests/support/folder.hpp>\n",
            "the library includes nothing above itself",
        )

    def test_finds_a_circle_and_names_it(self):
        self.assert_broken(
            "mezalith/geometry/primitives.hpp",
            "#include <mezalith/geometry/wkb.hpp>\n",
            "circle: mezalith/geometry/primitives.hpp -> mezalith/geometry/wkb.hpp"
            " -> mezalith/geometry/primitives.hpp",
        )

    def test_finds_a_circle_of_quoted_includes(self):
        self.assert_broken("host/source.hpp", '#include "source.hpp"\n', "circle: host/source.hpp")

    def test_platform_stands_on_the_plane_types_only(self):
        self.assert_broken(
            "mezalith/platform/port.hpp",
            "#include <mezalith/geometry/wkb.hpp>\n",
            "the platform stands on the plane types only",
        )

    def test_core_uses_no_style(self):
        self.assert_broken(
            "mezalith/geometry/wkb.hpp",
            "#include <mezalith/style/rule.hpp>\n",
            "mezalith::core does not depend on mezalith::style",
        )

    def test_style_uses_no_backend(self):
        self.assert_broken(
            "mezalith/style/rule.hpp",
            "#include <mezalith/platform/cairo/cairo_port.hpp>\n",
            "mezalith::style does not depend on mezalith::cairo",
        )

    def test_a_test_uses_only_what_its_folder_links(self):
        self.assert_broken(
            "mezalith/geometry/wkb_test.cpp",
            "#include <mezalith/style/rule.hpp>\n",
            "mezalith::core does not depend on mezalith::style",
        )

    def test_library_uses_nothing_above_itself(self):
        self.assert_broken(
            "mezalith/style/rule.hpp",
            "#include <host/source.hpp>\n",
            "the library includes nothing above itself",
        )

    def test_host_uses_no_application(self):
        self.assert_broken(
            "host/source.hpp", "#include <apps/mezalith/main.cpp>\n", "host/ stands below it"
        )

    def test_folders_keep_their_dependencies_to_themselves(self):
        for file, header in [
            ("mezalith/style/rule.hpp", "cairo.h"),
            ("mezalith/geometry/wkb.hpp", "nlohmann/json.hpp"),
            ("mezalith/style/rule.hpp", "gdal_priv.h"),
            ("host/source.hpp", "CLI/CLI.hpp"),
            ("mezalith/platform/port.hpp", "unistd.h"),
        ]:
            with self.subTest(file=file, header=header):
                self.assert_broken(file, f"#include <{header}>\n", "may know")

    def test_test_libraries_stay_in_tests(self):
        self.assert_broken("host/source.hpp", "#include <gtest/gtest.h>\n", "only tests")

    def test_unknown_dependencies_and_missing_files_are_errors(self):
        self.assert_broken("host/source.hpp", "#include <zlib.h>\n", "no rule allows")
        self.assert_broken("host/source.hpp", "#include <host/gone.hpp>\n", "no such file")

    def test_every_folder_of_the_library_lists_its_units(self):
        self.assert_broken("mezalith/loose/thing.hpp", "", "lists no units")


if __name__ == "__main__":
    unittest.main()
