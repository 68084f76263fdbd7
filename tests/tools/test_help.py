#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The help texts of the quiverleaf command, and what has to agree with them: the manual page and the completions."""

import os
import pathlib
import re
import subprocess
import unittest

COMMAND = os.environ["QUIVERLEAF_COMMAND"]
TOP = pathlib.Path(__file__).resolve().parents[2]
BASH_COMPLETION = TOP / "packaging" / "programs" / "completion" / "quiverleaf.bash"
ZSH_COMPLETION = TOP / "packaging" / "programs" / "completion" / "_quiverleaf"
MANUAL = TOP / "docs" / "man" / "quiverleaf.1"


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def rows(text, heading):
    """A list of the help: what stands under a heading, by name, each as the word behind the name and its summary."""
    lines = text.partition(f"{heading}:\n")[2].partition("\n\n")[0].splitlines()
    return {name: (word, line[24:]) for line in lines for name, _, word in [line[2:24].strip().partition(" ")]}


class HelpTest(unittest.TestCase):
    """Options stand with their dashes everywhere."""

    @classmethod
    def setUpClass(cls):
        cls.overview = output(COMMAND, "help")
        cls.commands = rows(cls.overview, "Commands")
        cls.common = rows(cls.overview, "Options")
        cls.options = {name: rows(output(COMMAND, "help", name), "Options") for name in cls.commands}
        cls.own = {name: set(options) - set(cls.common) for name, options in cls.options.items()}

    def test_every_way_to_ask_gives_the_same(self):
        self.assertEqual(len(self.commands), 30)
        for name, options in self.options.items():
            for option, row in self.common.items():
                if option in options:
                    self.assertEqual(options[option], row, name)
                    continue
                done = subprocess.run([COMMAND, name, option, *["1"] * bool(row[0])], capture_output=True, text=True, check=False)
                self.assertEqual((done.returncode, done.stderr.partition(";")[0]),
                                 (1, f"quiverleaf: option '{option}' does nothing for {name}"))  # fmt: skip
            self.assertLessEqual({"--help", "--version"}, set(options))
            self.assertNotRegex(output(COMMAND, "help", name), r"(?m) $")
            for arguments in ((name, "-h"), ("--help", name), (name, "--help", "--pretty", "x")):
                self.assertEqual(output(COMMAND, *arguments), output(COMMAND, "help", name))
            self.assertEqual(output(COMMAND, name, "--version"), output(COMMAND, "version"))
        for argument in ("--help", "-h"):
            self.assertEqual(output(COMMAND, argument), self.overview)
        self.assertRegex(output(COMMAND, "--version"), r"\Aquiverleaf \d+\.\d+\.\d+\n\Z")

    def test_every_command_counts_its_operands(self):
        for name, (operands, _) in self.commands.items():
            is_needed = operands and not operands.startswith("[")
            cases = [([], f"{name} needs {operands}")] if is_needed else []
            if "..." not in operands:
                cases.append((["a"] * bool(operands) + ["b"], f"'b' is too much for {name}"))
            for arguments, message in cases:
                done = subprocess.run([COMMAND, name, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
                self.assertEqual((done.returncode, done.stderr.partition(";")[0]), (1, f"quiverleaf: {message}"))

    def test_the_manual_describes_every_option(self):
        synopsis, page = MANUAL.read_text("utf-8").split(".Sh DESCRIPTION")

        def flags(text):
            return {f"-{flag}" for flag in re.findall(r"\bFl (-[a-z-]+)", text)}

        self.assertEqual(flags(synopsis), set().union(*self.own.values()))
        shown = re.findall(r"^\.Nm\n\.Cm ([a-z0-9 |]+)", synopsis, re.MULTILINE)
        self.assertEqual(sorted(name for names in shown for name in names.split(" | ")), sorted(self.commands))
        blocks = dict(re.findall(r"^\.It Cm ([a-z0-9]+)[^\n]*\n(.*?)(?=^\.It|^\.El)", page, re.MULTILINE | re.DOTALL))
        self.assertEqual({name: flags(block) for name, block in blocks.items()}, self.own)
        self.assertEqual({f"-{flag}" for flag in re.findall(r"^\.It Fl (?:h , )?(-[a-z-]+)", page, re.MULTILINE)}, set(self.common))
        codes = re.findall(r"\b(\d) [a-z]", self.overview.partition("Exit status: ")[2])
        self.assertEqual(re.findall(r"^\.It (\d)$", page, re.MULTILINE), codes)

    def complete(self, *words):
        program = f'cd {TOP}; . {BASH_COMPLETION}; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _quiverleaf; echo "${{COMPREPLY[@]}}"'
        return set(output("bash", "-c", program, "bash", "quiverleaf", *words).split())

    def test_bash_completes_commands_options_and_values(self):
        self.assertEqual(self.complete(""), set(self.commands))
        for name, options in self.options.items():
            self.assertEqual(self.complete(name, "--"), set(options), name)
            for option in options if name == "ping" else self.own[name]:
                word, summary = options[option]
                if word and word not in ("FILE", "OUT.rtfd"):
                    choices = re.findall(r"\w+", summary.partition(":")[2])
                    self.assertEqual(self.complete(name, option, ""), set(choices) - {"or"}, (name, option))
            takes_files = self.commands[name][0].startswith(("FILE", "PATH"))
            self.assertEqual("LICENSE" in self.complete(name, ""), takes_files, name)

    def test_zsh_completes_commands_and_options(self):
        text = ZSH_COMPLETION.read_text("utf-8")
        shown = dict(re.findall(r"""^    ['"]([a-z0-9]+):(.*)['"]$""", text, re.MULTILINE))
        self.assertEqual(shown, {name: summary for name, (_, summary) in self.commands.items()})
        filters = re.findall(r"^        ([a-z0-9 |]+)\) options=.*:#--\(?([a-z|-]+)\)?\*\}", text, re.MULTILINE)
        left_out = {(name, f"--{option}") for names, options in filters for name in names.split(" | ") for option in options.split("|")}
        self.assertEqual(left_out, {(name, option) for name in self.commands for option in set(self.common) - set(self.options[name])})
        text = re.sub(r"^        [a-z0-9 |]+\) options=.*$", "", text, flags=re.MULTILINE)
        branches = {"": text.partition("  options=(")[2].partition("\n  )")[0]}
        for names, branch in re.findall(r"^        ([a-z0-9 |]+)\)(.*?);;", text, re.MULTILINE | re.DOTALL):
            branches.update(dict.fromkeys(names.split(" | "), branch))
        for name in ("", *self.commands):
            expected = {option: self.options[name][option] for option in self.own[name]} if name else self.common
            found = re.findall(r"""(--[a-z-]+)(?:\}'|\*)?\[(.*?)\](:?)""", branches.get(name, ""))
            self.assertEqual({option for option, *_ in found}, set(expected), name)
            for option, summary, takes_value in found:
                self.assertTrue(expected[option][1].startswith(summary), (name, summary))
                self.assertEqual(bool(takes_value), bool(expected[option][0]), (name, option))


if __name__ == "__main__":
    unittest.main()
