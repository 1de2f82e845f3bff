# SPDX-License-Identifier: Apache-2.0
"""Holds help, man page and completions together: each knows the same commands and options.

Usage: DocsTest.py PROGRAM [unittest arguments]
"""

import os
import pathlib
import pty
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

program = None
docs = pathlib.Path(__file__).parent


def help_of(*command):
    return subprocess.run([program, *command, "--help"], check=True, text=True,
                          capture_output=True).stdout


def long_options(text):
    """The options that a help lists, each at the beginning of a line."""
    lines = re.findall(r"^  (-.*?)(?:  |$)", text, flags=re.MULTILINE)
    return {option for line in lines for option in re.findall(r"--[a-z][a-z-]*", line)}


def commands():
    listed = help_of().split("Subcommands:")[1].split("\n\n")[0]
    return re.findall(r"^  ([a-z]+) ", listed, flags=re.MULTILINE)


def options_of(command):
    return long_options(help_of(command)) - {"--help"}


def global_options():
    return long_options(help_of())


class Docs(unittest.TestCase):
    def test_TheHelpOfEachCommandHasExamples(self):
        for command in commands():
            with self.subTest(command):
                self.assertIn(f"\n  ogmprobe {command} ", help_of(command).split("Examples:")[1])

    def test_TheManPageKnowsEachCommandWithItsOptions(self):
        page = (docs / "ogmprobe.1").read_text().replace("\\-", "-")
        section = page.split(".SH COMMANDS")[1].split(".SH OPTIONS")[0]
        described = {}
        for part in section.split("\n.SS ")[1:]:
            title, body = part.split("\n", 1)
            described[title.split()[0]] = options_in_man(body)
        self.assertEqual({command: options_of(command) for command in commands()}, described)

    def test_TheManPageKnowsTheOptionsOfEveryCommand(self):
        page = (docs / "ogmprobe.1").read_text().replace("\\-", "-")
        section = page.split(".SH OPTIONS")[1].split(".SH EXIT STATUS")[0]
        self.assertEqual(global_options(), options_in_man(section))

    def test_TheManPageHasTheExitCodesOfTheHelp(self):
        page = (docs / "ogmprobe.1").read_text()
        section = page.split(".SH EXIT STATUS")[1].split(".SH ENVIRONMENT")[0]
        in_help = help_of().split("Exit codes:")[1].split("With several")[0]
        self.assertEqual(re.findall(r"\b\d\b", in_help),
                         re.findall(r"^\.B (\d)$", section, flags=re.MULTILINE))

    def test_TheManPageHasTheVersionOfTheProgram(self):
        version = subprocess.run([program, "--version"], check=True, text=True,
                                 capture_output=True).stdout.strip()
        self.assertIn(f'"{version}"', (docs / "ogmprobe.1").read_text())

    def test_BashOffersTheCommands(self):
        self.assertEqual(sorted(commands()), sorted(offered_by_bash("ogmprobe", "")))

    def test_BashOffersFilesInPlaceOfACommand(self):
        folder = str(docs / "ogmprobe.")
        self.assertEqual({folder + "1", folder + "bash", folder + "fish"},
                         set(offered_by_bash("ogmprobe", folder)))

    def test_BashOffersFilesAfterOptionsOfACommand(self):
        name = str(docs / "ogmprobe.1")
        self.assertEqual([name], offered_by_bash("ogmprobe", "packets", "--csv", name))

    def test_BashOffersTheOptionsOfEachCommand(self):
        for command in commands():
            with self.subTest(command):
                expected = options_of(command) | global_options() - {"--version"}
                self.assertEqual(expected, set(offered_by_bash("ogmprobe", command, "--")))

    def test_BashOffersTheOptionsOfTheProgram(self):
        self.assertEqual(global_options(), set(offered_by_bash("ogmprobe", "--")))

    def test_ZshKnowsEachCommandWithItsOptions(self):
        text = (docs / "_ogmprobe").read_text()
        described = {name: set(re.findall(r"--[a-z][a-z-]*", body)) for name, body in re.findall(
            r"^ {16}([a-z]+)\)\n(.*?);;", text, flags=re.MULTILINE | re.DOTALL)}
        self.assertEqual({command: options_of(command) for command in commands()}, described)
        listed = text.split("commands=(")[1].split(")")[0]
        self.assertEqual(commands(), re.findall(r"'([a-z]+):", listed))
        every = text.split("every=(")[1].split("\n    )")[0]
        self.assertEqual(global_options() - {"--version"},
                         set(re.findall(r"'(--[a-z-]+)\[", every)))

    def test_ZshOffersTheCommandsAndTheirOptions(self):
        if not shutil.which("zsh"):
            self.skipTest("zsh is not installed")
        if not has_pseudo_terminals():
            self.skipTest("no pseudo-terminal in which zsh could offer completions")
        lines = ["", "--", *(f"{command} --" for command in commands())]
        offered = offered_by_zsh([f"ogmprobe {line}" for line in lines])
        self.assertEqual(set(commands()), offered[0] & set(commands()))
        self.assertEqual(global_options(), offered[1])
        for command, found in zip(commands(), offered[2:]):
            with self.subTest(command):
                self.assertEqual(options_of(command) | global_options() - {"--version"}, found)

    def test_FishOffersTheCommandsAndTheirOptions(self):
        if not shutil.which("fish"):
            self.skipTest("fish is not installed")
        self.assertEqual(set(commands()), offered_by_fish("") & set(commands()))
        self.assertEqual(global_options(), offered_by_fish("--"))
        for command in commands():
            with self.subTest(command):
                self.assertEqual(options_of(command) | global_options() - {"--version"},
                                 offered_by_fish(f"{command} --"))

    def test_FishKnowsEachCommandWithItsOptions(self):
        described = {command: set() for command in commands()}
        everywhere = set()
        offered = []
        for line in (docs / "ogmprobe.fish").read_text().splitlines():
            option = re.search(r"--long-option ([a-z-]+)", line)
            owner = re.search(r'"__fish_seen_subcommand_from ([a-z]+)"', line)
            if option:
                (described[owner[1]] if owner else everywhere).add("--" + option[1])
            elif "--arguments" in line:
                offered.append(re.search(r"--arguments ([a-z]+)", line)[1])
        self.assertEqual({command: options_of(command) for command in commands()}, described)
        self.assertEqual(global_options(), everywhere)
        self.assertEqual(commands(), offered)


def options_in_man(text):
    heads = re.findall(r"^\.TP\n(.*)$", text, flags=re.MULTILINE)
    return {option for head in heads for option in re.findall(r"--[a-z][a-z-]*", head)}


# Types each line into a shell on a terminal, and writes what a tabulator offers, a line each.
ZSH_SCRIPT = r"""
zmodload zsh/zpty zsh/zselect
docs=$1 found=$2
shift 2
zpty shell zsh -f -i || exit
zpty -w shell "PROMPT=; stty -echo; fpath=($docs \$fpath); autoload -Uz compinit; compinit -u -D"
zpty -w shell 'offer() {
    local -a offered
    compadd() {
        local -a hits
        if (( ! ${@[(I)-[OAD]]} )); then
            builtin compadd -O hits "$@"
            offered+=($hits)
        fi
        builtin compadd "$@"
    }
    _main_complete
    unfunction compadd
    print -r -- "$offered" >>'$found'
}; zle -C offer complete-word offer; bindkey "^I" offer; echo REA""DY'
zpty -r shell output '*READY*'
lines=0
for line; do
    zpty -n -w shell "$line"$'\t'
    (( ++lines ))
    for (( tries = 0; tries < 500; tries++ )); do
        [[ $(wc -l <$found) -ge $lines ]] && break
        zselect -t 2
    done
    zpty -n -w shell $'\C-u'
done
zpty -d shell
"""


def has_pseudo_terminals():
    try:
        for end in pty.openpty():
            os.close(end)
    except OSError:
        return False
    return True


def offered_by_zsh(lines):
    with tempfile.NamedTemporaryFile("r") as found:
        subprocess.run(["zsh", "-f", "-c", ZSH_SCRIPT, "zsh", docs.resolve(), found.name, *lines],
                       check=True, timeout=60)
        return [set(line.split()) for line in found.read().splitlines()]


def offered_by_fish(line):
    script = f'source "{docs}/ogmprobe.fish"; complete --do-complete "ogmprobe {line}"'
    result = subprocess.run(["fish", "--no-config", "-c", script], check=True, text=True,
                            capture_output=True)
    return {offer.split("\t")[0] for offer in result.stdout.splitlines()}


def offered_by_bash(*words):
    script = (f'. "{docs}/ogmprobe.bash"\n'
              'COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _ogmprobe; printf "%s\\n" "${COMPREPLY[@]}"')
    result = subprocess.run(["bash", "-c", script, "bash", *words], check=True, text=True,
                            capture_output=True)
    return result.stdout.split()


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
