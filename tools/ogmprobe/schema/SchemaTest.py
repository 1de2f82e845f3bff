# SPDX-License-Identifier: Apache-2.0
"""Holds the schemas against what the program writes: SchemaTest.py PROGRAM FAKE_PLUGIN SAMPLES."""

import copy
import functools
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import jsonschema

program = fake_plugin = samples = None
folder = pathlib.Path(__file__).parent

FAKE_VIDEO = {
    "format": {"mime": "video/avc", "width": 64, "height": 48, "esds": "0304"},
    "buffers": [{"time_us": 0, "sync": 1, "hex": "0001"}, {"time_us": 40000, "hex": "02"}],
}


def schemas():
    return {path.stem: json.loads(path.read_text()) for path in folder.glob("*.json")}


def closed(schema):
    """The schema, but no object may have members that it does not list."""
    if isinstance(schema, list):
        return [closed(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    result = {key: closed(value) for key, value in schema.items()}
    if isinstance(schema.get("properties"), dict):
        result["additionalProperties"] = False
    return result


@functools.cache
def validator(name):
    all_schemas = {key: closed(schema) for key, schema in schemas().items()}
    store = {f"{key}.json": schema for key, schema in all_schemas.items()}
    resolver = jsonschema.RefResolver(f"{name}.json", all_schemas[name], store=store)
    return jsonschema.Draft202012Validator(all_schemas[name], resolver=resolver)


def run(*arguments):
    return subprocess.run([program, *map(str, arguments), "--json"], check=False, text=True,
                          capture_output=True).stdout


def fake(*arguments):
    return run("--plugin", fake_plugin, *arguments)


class Schema(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)
        self.path = pathlib.Path(self.temporary.name)

    def files(self):
        """Whole samples, and some of them damaged."""
        whole = sorted(pathlib.Path(samples).glob("*.ogm"))
        data = (pathlib.Path(samples) / "mpeg4_b_mp3.ogm").read_bytes()
        damaged = {"cut": data[:150000], "junk": data[:90000] + bytes(5000) + data[95000:],
                   "headless": data[85:], "refused": data[:3]}
        for name, contents in damaged.items():
            (self.path / name).write_bytes(contents)
        self.assertGreater(len(whole), 5)
        return whole + [self.path / name for name in damaged] + [self.path / "missing"]

    def script(self, name, **members):
        """A file for the plug-in of the tests."""
        script = {"fake": True, "container": {"mime": "video/fake"},
                  "tracks": [FAKE_VIDEO | members]}
        path = self.path / name
        path.write_text(json.dumps(script))
        return path

    def check(self, name, text):
        document = json.loads(text)
        validator(name).validate(document)
        return document

    def test_EachIsASchema(self):
        self.assertEqual({"common", "info", "packets", "seektest", "explain", "sync", "compare",
                          "check", "ogmdump"},
                         set(schemas()))
        for name, schema in schemas().items():
            with self.subTest(name):
                jsonschema.Draft202012Validator.check_schema(schema)

    def test_ThatOfInfoHolds(self):
        self.check("info", run("info", *self.files()))
        self.check("info", fake("info", self.script("broken")))
        self.check("info", run("--plugin", self.path / "missing", "info", "a"))

    def test_ThatOfPacketsHolds(self):
        types = set()
        texts = [run("packets", file, "--count", 3, "--seek", 1) for file in self.files()]
        texts.append(fake("packets", self.script("failing", end=-10007)))
        for text in texts:
            lines = text.splitlines()
            documents = [self.check("packets", line) for line in lines]
            self.assertEqual(["header", "end"], [documents[0]["type"], documents[-1]["type"]])
            types |= {document["type"] for document in documents}
        self.assertEqual({"header", "seek", "buffer", "end"}, types)

    def test_ThatOfOgmdumpHolds(self):
        types = set()
        dump = pathlib.Path(program).parent / "ogmdump"
        for file in self.files():
            text = subprocess.run([dump, file, "--seek", "1", "--count", "3"], check=False,
                                  text=True, capture_output=True).stdout
            documents = [self.check("ogmdump", line) for line in text.splitlines()]
            self.assertEqual(["header", "end"], [documents[0]["type"], documents[-1]["type"]])
            types |= {document["type"] for document in documents}
        self.assertEqual({"header", "track", "seek", "buffer", "end"}, types)

    def test_ThatOfSeektestHolds(self):
        for file in self.files():
            with self.subTest(file.name):
                self.check("seektest", run("seektest", file, "--steps", 3))

    def test_ThatOfExplainHolds(self):
        for file in self.files():
            with self.subTest(file.name):
                self.check("explain", run("explain", file))
                document = self.check("explain", run("explain", file, "--pages"))
                self.assertEqual(file.name == "missing", document["pages"] is None)
        self.check("explain", fake("explain", self.script("dying", end="abort")))

    def test_ThatOfSyncHolds(self):
        for file in self.files():
            with self.subTest(file.name):
                self.check("sync", run("sync", file))
        document = self.check("sync", fake("sync", self.script("dying", end="abort")))
        self.assertEqual(4, document["exit_code"])

    def test_ThatOfCompareHolds(self):
        files = self.files()
        for file in files:
            with self.subTest(file.name):
                self.check("compare", run("compare", files[0], file, "--logs"))
        dump = self.path / "dump"
        dump.write_text('{"type":"header","schema_version":1,"digest":"fnv1a64"}\n')
        self.check("compare", run("compare", files[0], "--device", dump))
        self.check("compare", run("compare", files[0], "--device", files[0]))
        dying = self.script("dying", end="abort")
        document = self.check("compare", fake("compare", dying, self.script("whole"), "--logs"))
        self.assertEqual(["packet", "end", "log"],
                         [found["kind"] for found in document["differences"]])
        failing = self.script("failing", end=-10007)
        document = self.check("compare", fake("compare", failing, self.script("whole")))
        self.assertEqual(["track-end"], [found["kind"] for found in document["differences"]])

    def test_ThatOfCheckHolds(self):
        files = self.files()
        document = self.check("check", run("check", *files))
        self.assertEqual([str(file) for file in files], [file["path"] for file in document["files"]])
        self.assertEqual({"plays with faults", "does not play", "unknown"},
                         {file["verdict"] for file in document["files"]})
        self.check("check", run("check", files[0]))
        self.check("check", fake("check", self.script("dying", end="abort"), self.script("whole")))

    def test_NoneHoldsWithoutWhatIsAlwaysThere(self):
        file = self.files()[0]
        for name, text in {"info": run("info", file), "seektest": run("seektest", file),
                           "explain": run("explain", file), "sync": run("sync", file),
                           "compare": run("compare", file, file),
                           "check": run("check", file)}.items():
            document = json.loads(text)
            for member in ("schema_version", "errors", "warnings"):
                with self.subTest(f"{name} without {member}"):
                    lacking = copy.deepcopy(document)
                    del lacking[member]
                    self.assertFalse(validator(name).is_valid(lacking))
            document["schema_version"] = "1"
            self.assertFalse(validator(name).is_valid(document))


if __name__ == "__main__":
    program, fake_plugin, samples = sys.argv[1:4]
    del sys.argv[1:4]
    unittest.main()
