# SPDX-License-Identifier: Apache-2.0
"""The build of the unchanged sources: its objects, their sources and commands."""

import json
import os
import pathlib
import shlex
import subprocess


class Build:
    """The build of the unchanged sources. All trials use its objects and commands."""

    def __init__(self, folder, root, linked):
        """`root` is the folder of the sources, `linked` the targets that each trial links again."""
        self.folder = folder
        self.root = root
        self.commands = {}
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            arguments = shlex.split(entry["command"])
            output = arguments[arguments.index("-o") + 1]
            self.commands[output] = (arguments, entry["file"])
        self.links = {name: self._ninja("commands", name).splitlines()[-1] for name in linked}
        self.files = self._files()
        # Time limit of each step of tests, after it has been measured.
        self.seconds = {}

    def _ninja(self, tool, *arguments):
        command = ["ninja", "-C", str(self.folder), "-t", tool, *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def _files(self):
        """The source and headers of each object."""
        files = {output: {source} for output, (_, source) in self.commands.items()}
        output = None
        for line in self._ninja("deps").splitlines():
            if line.startswith("    "):
                files.setdefault(output, set()).add(os.path.join(self.folder, line.strip()))
            elif ": #deps" in line:
                output = line.split(":")[0]
        # One include path of the plug-in ends with `/.`.
        return {
            output: {os.path.normpath(path) for path in paths} for output, paths in files.items()
        }

    def objects(self, target):
        """All objects of a target except precompiled headers, which contain no changed source."""
        return [o for o in self.commands if f"/{target}.dir/" in o and o.endswith(".o")]

    def objects_of(self, source, target):
        """The objects of a target that contain a source; the one with its name comes first."""
        path = self.root / source
        own = str(path.with_suffix(".cpp"))
        found = [output for output in self.objects(target) if str(path) in self.files[output]]
        return sorted(found, key=lambda output: own not in self.files[output])

    def holds(self, output, name):
        """Whether an object contains a file of that name. An object may have several sources."""
        return any(os.path.basename(path) == name for path in self.files[output])

    def compile_command(self, output):
        return list(self.commands[output][0])

    def source_of(self, output):
        return pathlib.Path(self.commands[output][1])
