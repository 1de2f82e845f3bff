# SPDX-License-Identifier: Apache-2.0
"""Checks that the plug-in's sources keep to the layers in docs/design.md.

Usage: LayersTest.py PROJECT_FOLDER [unittest arguments]
"""

import pathlib
import re
import sys
import unittest

PROJECT = pathlib.Path(sys.argv.pop(1))
PLUGIN = PROJECT / "frameworks/av/media/libstagefright/ogm"
DESIGN = (PROJECT / "docs/design.md").read_text()

OWN_INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
# The entry point's interface is the platform's.
WITHOUT_HEADER = {"OgmPlugin.cpp"}


def layers():
    """The folders that each folder may include, by the table in docs/design.md."""
    table = DESIGN.split("## Which folder may include which")[1].split("\n## ")[0]
    bounds = {}
    for names, allowed in re.findall(r"^\| ((?:`\w+/`(?:, )?)+) \| (.*) \|$", table, re.MULTILINE):
        for name in re.findall(r"`(\w+)/`", names):
            bounds[name] = {name, *re.findall(r"`(\w+)/`", allowed)}
    return bounds


def sources(folder):
    return sorted(path for path in (PLUGIN / folder).iterdir() if path.suffix in (".cpp", ".h"))


def own_includes(path):
    return OWN_INCLUDE.findall(path.read_text())


class Layers(unittest.TestCase):
    def test_TheDocumentNamesEveryFolderOfParts(self):
        others = {"fuzz", "include", "tests", "zor"}
        folders = {path.name for path in PLUGIN.iterdir() if path.is_dir()} - others
        self.assertEqual(set(layers()), folders)

    def test_EachFolderIncludesOnlyWhatItMay(self):
        for folder, allowed in layers().items():
            for path in sources(folder):
                for include in own_includes(path):
                    self.assertIn(include.split("/")[0], allowed, f"{path.name} includes {include}")

    def test_EverySourceIncludesItsOwnHeaderFirst(self):
        for folder in ["", *layers()]:
            for path in sources(folder):
                if path.suffix == ".cpp" and path.name not in WITHOUT_HEADER:
                    self.assertEqual(pathlib.Path(own_includes(path)[0]).stem, path.stem, path.name)

    def test_TheDocumentNamesEveryPart(self):
        parts = DESIGN.split("## Parts")[1].split("\n## ")[0]
        # Types in the interface of a part.
        types = {"OgmPage", "PageFormat", "OgmStreamInfo", "OgmPacket", "AccessUnitCutter"}
        for folder in layers():
            for path in sources(folder):
                if path.stem not in types:
                    self.assertIn(f"`{path.stem}`", parts, f"{folder}/{path.name}")


if __name__ == "__main__":
    unittest.main()
