# SPDX-License-Identifier: Apache-2.0
"""What the build of the unchanged sources was made of, and how."""

import json
import os
import pathlib
import shlex
import subprocess


class Build:
    """The build of the unchanged sources: its objects and commands serve all trials."""

    def __init__(self, folder, root, linked):
        """`root` is the folder of the sources, `linked` the targets that are linked again."""
        self.folder = folder
        self.root = root
        self.commands = {}
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            arguments = shlex.split(entry["command"])
            output = arguments[arguments.index("-o") + 1]
            self.commands[output] = (arguments, entry["file"])
        self.links = {name: self._ninja("commands", name).splitlines()[-1] for name in linked}
        self.files = self._files()
        # What the tests of a step may take, once that was measured.
        self.seconds = {}

    def _ninja(self, tool, *arguments):
        command = ["ninja", "-C", str(self.folder), "-t", tool, *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def _files(self):
        """For each object the files it was made of."""
        files = {output: {source} for output, (_, source) in self.commands.items()}
        output = None
        for line in self._ninja("deps").splitlines():
            if line.startswith("    "):
                files.setdefault(output, set()).add(os.path.join(self.folder, line.strip()))
            elif ": #deps" in line:
                output = line.split(":")[0]
        # The plug-in's folder names itself once as an include path.
        return {
            output: {os.path.normpath(path) for path in paths} for output, paths in files.items()
        }

    def objects(self, target):
        """Without the precompiled headers, which hold none of the sources that are changed."""
        return [o for o in self.commands if f"/{target}.dir/" in o and o.endswith(".o")]

    def objects_of(self, source, target):
        """Those of a target that a source is part of, first the one that is named like it."""
        path = self.root / source
        own = str(path.with_suffix(".cpp"))
        found = [output for output in self.objects(target) if str(path) in self.files[output]]
        return sorted(found, key=lambda output: own not in self.files[output])

    def holds(self, output, name):
        """Whether an object was made of a file of that name; several sources make one object."""
        return any(os.path.basename(path) == name for path in self.files[output])

    def compile_command(self, output):
        return list(self.commands[output][0])

    def source_of(self, output):
        return pathlib.Path(self.commands[output][1])
