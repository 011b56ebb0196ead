"""The example playbook that brings adapters to what a file says, run by the real ansible-playbook: it reports a change
when there is one, and only then."""
import json
import os
import re
import subprocess
import sys
import unittest

from frame import BIN, Bench

PLAYBOOK = os.path.join(os.environ["SOURCE"], "docs", "examples", "set-up-adapters.yml")
WANTED = {"adapters": [{"disks": [{"count": 3, "type": "SATA", "size": "2TB"}],
                        "arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2],
                                    "virtualDisks": [{"name": "data"}]}]}]}


class Playbook(unittest.TestCase):
    def setUp(self):
        self.bench = Bench("empty")
        self.write("wanted.json", json.dumps(WANTED))
        # What runs on the machine finds the programs and the adapters' state as it would on a real one.
        self.write("python", f'#!/bin/sh\nexport KTRAID_SIM={self.bench.path("state.db")}\nexec {sys.executable} "$@"\n')
        os.chmod(self.bench.path("python"), 0o755)
        self.write("inventory", f"store ansible_connection=local ansible_python_interpreter={self.bench.path('python')}\n")
        self.write("ansible.cfg", "")

    def write(self, name, text):
        with open(self.bench.path(name), "w", encoding="ascii") as file:
            file.write(text)

    def play(self, *words):
        """The result of a run: exit status, and the numbers of its recap."""
        environment = dict(os.environ, PATH=BIN + ":" + os.environ["PATH"], HOME=self.bench.folder.name, ANSIBLE_NOCOLOR="1",
                           ANSIBLE_LOCAL_TEMP=self.bench.path("tmp"), ANSIBLE_CONFIG=self.bench.path("ansible.cfg"),
                           LC_ALL="C.UTF-8")
        done = subprocess.run(["ansible-playbook", "-i", self.bench.path("inventory"), PLAYBOOK, "-e",
                               "wanted=" + self.bench.path("wanted.json"), *words],
                              env=environment, capture_output=True, text=True, check=False, timeout=120)
        recap = re.search(r"^store .*changed=(\d).*failed=(\d)", done.stdout, re.M)
        self.assertTrue(recap, done.stdout + done.stderr)
        return done.returncode, int(recap[1]), int(recap[2])

    def test_changed_is_true(self):
        self.assertEqual(self.play("--check"), (0, 1, 0))
        self.assertEqual(self.bench.report()["adapters"][0]["arrays"], [])
        self.assertEqual(self.play(), (0, 1, 0))
        self.assertEqual(self.bench.report()["adapters"][0]["arrays"][0]["name"], "demo")
        self.assertEqual(self.play(), (0, 0, 0))
        self.assertEqual(self.play("--check"), (0, 0, 0))

    def test_what_cannot_be_had_fails(self):
        self.write("wanted.json", json.dumps({"adapters": [{"arrays": [{"name": "a", "disks": [0, 1, 99]}]}]}))
        self.assertEqual(self.play("--check"), (2, 0, 1))
        self.assertEqual(self.play(), (2, 0, 1))


unittest.main()
