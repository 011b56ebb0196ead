"""What the tests of ktreport share: adapters of a lab in a state of their own, and running programs on them."""
import functools
import importlib
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import textwrap

BIN = os.environ["BIN"]
LABS = ["default", "empty", "full", "troubled", "hostile", "none"]
# What none of the labs has.
RARE = {"adapters": [
    {"type": "LD-based", "disks": [{"count": 12, "size": "1TB", "patrol": {"percent": 40, "state": "paused"}}],
     "keys": [{"id": 2, "key": "k", "password": "p", "ports": [{"id": 1, "enabled": True}]}],
     "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB", "linkedDisk": 2},
                      {"level": "RAID60", "disks": [4, 5, 6, 7, 8, 9, 10, 11], "size": "10GiB"}]},
    {"type": "array-based", "disks": [{"count": 8, "size": "1TB"}, {"size": "1TB", "spare": "global"}],
     "arrays": [{"level": "RAID60", "disks": [0, 1, 2, 3, 4, 5, 6, 7], "virtualDisks": [{"name": "parts"}]}]}]}
MOMENT = "2026-01-05 08:00:00"
with open(os.path.join(os.environ["SOURCE"], "docs", "report.schema.json"), encoding="ascii") as schema:
    SCHEMA = json.load(schema)


@functools.cache
def schema_check():
    """A function that refuses what does not fit the schema. It takes longer to make than most tests run."""
    fastjsonschema = importlib.import_module("fastjsonschema")
    return fastjsonschema.compile(SCHEMA, use_default=False), fastjsonschema.JsonSchemaException


def fits_schema(test, document, what):
    check, misfit = schema_check()
    try:
        check(document)
    except misfit as fault:
        test.fail(f"{what}: {fault.message[:200]}")


def filled(items):
    """Short things in one paragraph."""
    return textwrap.wrap(" | ".join(items), 146, break_long_words=False, break_on_hyphens=False)


def check_table(test, path, said):
    """Compares a file of rows at the margin, each with what said(row) answers below it, indented; a row that ends in the
    middle goes on in the next line. The word "write" behind the test's name writes the file anew: then look at every
    line that changes."""
    with open(path, encoding="ascii") as file:
        lines = file.read().splitlines()
    told, row = [], ""
    for line in lines:
        if line.startswith(" ") and not row:
            continue  # what was said before
        told.append(line)
        row += line.strip() + " "
        if not line.endswith((";", ",", ":", "wanted")):
            told += ["    " + one for one in ([] if row.startswith("#") else said(row.strip()))]
            row = ""
    if sys.argv[-1] == "write":
        with open(path, "w", encoding="ascii") as file:
            file.write("\n".join(told) + "\n")
    test.assertEqual("\n".join(told), "\n".join(lines))


def value_of(text):
    """A value in JSON whose simple words need no quotes: {name: demo, disks: [0, 1]}."""
    return json.loads(re.sub(r'"(\\.|[^"\\])*"|\b[A-Za-z_]\w*\b',
                             lambda word: word[0] if word[0][0] == '"' or word[0] in ("true", "false", "null") else f'"{word[0]}"', text))


def give(named, name, words):
    """Gives the object of the name what the words say, and takes away what is null there."""
    named[name].update(value_of(words))
    for word in [word for word, value in named[name].items() if value is None]:
        del named[name][word]


class Bench:
    """A state in a folder of its own, made from a lab (a name, or a lab as a dictionary) with its clock stopped."""

    def __init__(self, lab, moment=MOMENT):
        self.folder = tempfile.TemporaryDirectory()
        self.environment = dict(os.environ, KTRAID_SIM=self.path("state.db"))
        if isinstance(lab, dict):
            lab = self.save("lab.json", lab)
        self.sim("create", "--lab", lab, "--at", moment)

    def __del__(self):
        self.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def save(self, name, content):
        """Writes a file and answers its path; what is no text becomes JSON."""
        with open(self.path(name), "w", encoding="ascii") as file:
            file.write(content if isinstance(content, str) else json.dumps(content))
        return self.path(name)

    def run(self, program, *words, trace=False, text=None, errors=subprocess.PIPE):
        environment = self.environment
        if trace:
            environment = dict(environment, KTRAID_SIM_TRACE=self.path("trace"))
            if os.path.exists(self.path("trace")):
                os.remove(self.path("trace"))
        return subprocess.run([os.path.join(BIN, program), *words], env=environment, input=text or "",
                              stdout=subprocess.PIPE, stderr=errors, text=True, check=False)

    def on_terminal(self, program, *words, **environment):
        """The status of a program and what it shows on a terminal of 120 columns."""
        command = f"stty cols 120; exec {shlex.join([os.path.join(BIN, program), *words])}"
        done = subprocess.run(["script", "-qec", command, "/dev/null"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              env={**self.environment, "TERM": "xterm", **environment}, text=True, check=False)
        return done.returncode, done.stdout.replace("\r", "")

    def sim(self, *words):
        done = self.run("ktsim", *words)
        assert done.returncode == 0, done.stderr
        return done.stdout

    def now(self):
        """The time of the adapters' clock, as create --at takes it."""
        return self.sim("clock", "show")[:len(MOMENT)]

    def report(self, *words):
        done = self.run("ktreport", "json", *words)
        assert done.returncode == 0, done.stderr
        return json.loads(done.stdout)

    def calls(self):
        """The calls of the last traced run: name and arguments."""
        with open(self.path("trace"), encoding="ascii") as file:
            return [line.split(" -> ")[0] for line in file]
