"""The example playbook that brings adapters to what a file says, run by the real ansible-playbook: it reports a change
when there is one, and only then."""
import re
import unittest

from frame import Bench
from playbook import Playbook

WANTED = {"adapters": [{"disks": [{"count": 3, "type": "SATA", "size": "2TB"}],
                        "arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2],
                                    "virtualDisks": [{"name": "data"}]}]}]}


class Applying(Playbook):
    def setUp(self):
        self.bench = Bench("empty")
        self.bench.save("wanted.json", WANTED)
        self.bench.save("inventory", self.line("store", self.bench) + "\n")

    def play(self, *words):
        """The result of a run: exit status, and the numbers of its recap."""
        done = self.run_playbook("set-up-adapters.yml", "-e", "wanted=" + self.bench.path("wanted.json"), *words)
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
        self.bench.save("wanted.json", {"adapters": [{"arrays": [{"name": "a", "disks": [0, 1, 99]}]}]})
        self.assertEqual(self.play("--check"), (2, 0, 1))
        self.assertEqual(self.play(), (2, 0, 1))
