"""The example playbook that gathers reports, with three machines."""
import json
import os
import re
import unittest

from frame import Bench, fits_schema
from playbook import Playbook

HOSTILE = {"adapters": [{"type": "array-based", "battery": True, "disks": [{"count": 2, "size": "1TB", "model": "{{ 7 * 7 }}", "serial": "%}{#"}],
                         "arrays": [{"level": "RAID1", "disks": [0, 1], "virtualDisks": [{"name": "{{ 6 * 7 }}"}]}]}]}
FAILED = {"adapters": [{"type": "array-based", "disks": [{"count": 2, "size": "1TB"}]}]}


class Gathering(Playbook):
    def setUp(self):
        self.bench = Bench(FAILED)
        self.machines = {"store1": Bench(HOSTILE), "store2": Bench(FAILED), "store3": Bench(FAILED)}
        self.machines["store2"].sim("disk", "fail", "1", "--force")
        self.machines["store3"].sim("fault", "KT_API_Initialize", "9")
        self.bench.save("inventory", "".join(self.line(name, machine) + f" facts_d={machine.path('facts')}\n"
                                        for name, machine in self.machines.items()))
        self.reports = self.bench.path("reports")

    def play(self, *words):
        return self.run_playbook("gather-reports.yml", "-e", "reports=" + self.reports, *words)

    def test_reports_come_together_and_only_problems_fail(self):
        done = self.play()
        recap = dict(re.findall(r"^(store\d)\s.*failed=(\d)", done.stdout, re.M))
        self.assertEqual((done.returncode, recap), (2, {"store1": "0", "store2": "1", "store3": "1"}), done.stdout + done.stderr)
        self.assertIn("has failed; no virtual disk uses it.", done.stdout)
        self.assertIn("The library does not start", done.stdout)
        self.assertEqual(sorted(os.listdir(self.reports)), ["store1.json", "store2.json", "store3.json"])
        for name, machine in self.machines.items():
            with open(os.path.join(self.reports, name + ".json"), encoding="utf-8") as file:
                report = json.load(file)
            fits_schema(self, report, name)
            expected = json.loads(machine.run("ktreport", "json").stdout)
            del report["made"], expected["made"]
            self.assertEqual(report, expected)
        files = [os.path.join(self.reports, name) for name in os.listdir(self.reports)]
        self.assertEqual(self.bench.run("ktreport", "check", "--from", *files).returncode, 2)
        for words in ([], ["--check"]):
            done = self.play("--limit", "store1", *words)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
