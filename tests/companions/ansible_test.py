"""The example playbook under the real Ansible, with three machines that are this one and adapters of their own."""
import json
import os
import re
import subprocess
import sys
import unittest

from frame import BIN, Bench, fits_schema

EXAMPLES = os.path.join(os.environ["SOURCE"], "docs", "examples")
HOSTILE = {"adapters": [{"type": "array-based", "battery": True, "disks": [{"count": 2, "size": "1TB", "model": "{{ 7 * 7 }}", "serial": "%}{#"}],
                         "arrays": [{"level": "RAID1", "disks": [0, 1], "virtualDisks": [{"name": "{{ 6 * 7 }}"}]}]}]}
FAILED = {"adapters": [{"type": "array-based", "disks": [{"count": 2, "size": "1TB"}]}]}


class Playbook(unittest.TestCase):
    def setUp(self):
        self.bench = Bench(FAILED)
        self.machines = {"store1": Bench(HOSTILE), "store2": Bench(FAILED), "store3": Bench(FAILED)}
        self.machines["store2"].sim("disk", "fail", "1", "--force")
        self.machines["store3"].sim("fault", "KT_API_Initialize", "9")
        hosts = []
        for name, machine in self.machines.items():
            # What makes them differ: each one's Python starts what it starts on adapters of its own.
            python = machine.path("python")
            with open(python, "w", encoding="ascii") as file:
                file.write(f'#!/bin/sh\nexport KTRAID_SIM={machine.path("state.db")}\nexec {sys.executable} "$@"\n')
            os.chmod(python, 0o755)
            hosts.append(f"{name} ansible_connection=local ansible_python_interpreter={python} facts_d={machine.path('facts')}")
        self.inventory = self.bench.path("inventory")
        with open(self.inventory, "w", encoding="ascii") as file:
            file.write("\n".join(hosts) + "\n")
        with open(self.bench.path("ansible.cfg"), "w", encoding="ascii"):
            pass  # that of this machine plays no part
        self.reports = self.bench.path("reports")

    def play(self, *words):
        environment = dict(os.environ, PATH=BIN + ":" + os.environ["PATH"], HOME=self.bench.folder.name, ANSIBLE_NOCOLOR="1",
                           ANSIBLE_LOCAL_TEMP=self.bench.path("tmp"), ANSIBLE_CONFIG=self.bench.path("ansible.cfg"), LC_ALL="C.UTF-8")
        return subprocess.run(["ansible-playbook", "-i", self.inventory, os.path.join(EXAMPLES, "gather-reports.yml"),
                               "-e", "reports=" + self.reports, *words],
                              env=environment, capture_output=True, text=True, check=False, timeout=250)

    def test_reports_come_together_and_problems_fail(self):
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

    def test_all_is_well(self):
        done = self.play("--limit", "store1")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        again = self.play("--limit", "store1", "--check")
        self.assertEqual(again.returncode, 0, again.stdout + again.stderr)


if __name__ == "__main__":
    unittest.main()
