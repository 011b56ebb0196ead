"""The stories of README.md are what happens, word for word."""
import itertools
import os
import re
import subprocess
import tempfile
import unittest

from frame import BIN

with open(os.path.join(os.environ["SOURCE"], "README.md"), encoding="utf-8") as readme:
    SECTIONS = dict(part.split("\n", 1) for part in readme.read().split("\n## ")[1:])


def steps(section):
    """What is typed, and the lines below it; an empty line belongs to them when it is not the last."""
    for part in section.split("\n    $ ")[1:]:
        command, *lines = part.split("\n")
        shown = itertools.takewhile(lambda line: line.startswith("    ") or not line, lines)
        yield command, "\n".join(line[4:] for line in shown).rstrip()


def pattern(shown):
    """"..." stands for lines left out, or for a part of a line."""
    return "".join("(.*\n)*" if line == "..." else re.escape(line).replace(r"\.\.\.", ".*") + "\n" for line in shown.split("\n"))


class Readme(unittest.TestCase):
    maxDiff = 2000

    def test_stories(self):
        for title in ("Five minutes", "What is wrong?", "One file, one command", "Rehearse first"):
            with tempfile.TemporaryDirectory() as folder:
                environment = dict(os.environ, KTRAID_SIM=os.path.join(folder, "state.db"), PATH=BIN + ":" + os.environ["PATH"])
                for command, shown in steps(SECTIONS[title]):
                    if command.startswith("cat "):
                        with open(os.path.join(folder, command[4:]), "w", encoding="ascii") as file:
                            file.write(shown)
                    done = subprocess.run(["bash", "-c", command], env=environment, cwd=folder, input="y\n", text=True,
                                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
                    self.assertRegex(done.stdout.rstrip() + "\n", "^" + pattern(shown) + "$", command)
