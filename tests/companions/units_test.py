"""The units under the real systemd-analyze, and the programs that they start with the words that they have."""
import glob
import json
import os
import re
import shlex
import subprocess
import time
import unittest

from frame import BIN, Bench

UNITS = os.path.join(os.environ["SOURCE"], "packaging", "systemd")
LAB = {"adapters": [{"type": "array-based", "disks": [{"count": 2, "size": "1TB"}]}]}


def command(unit):
    with open(os.path.join(UNITS, unit), encoding="ascii") as file:
        return shlex.split(re.search(r"^ExecStart=(.*)$", file.read(), re.M)[1])


class Units(unittest.TestCase):
    def setUp(self):
        self.bench = Bench(LAB)

    def analyze(self, *words):
        return subprocess.run(["systemd-analyze", *words], capture_output=True, text=True, check=False)

    def test_they_are_units(self):
        # As they will be found, but for where the program is.
        paths = []
        for unit in glob.glob(os.path.join(UNITS, "*")):
            paths.append(self.bench.path(os.path.basename(unit)))
            with open(unit, encoding="ascii") as file, open(paths[-1], "w", encoding="ascii") as copy:
                copy.write(file.read().replace("/usr/sbin/ktreport", os.path.join(BIN, "ktreport")))
        self.assertEqual(len(paths), 3)
        done = self.analyze("verify", "--man=no", *paths)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_they_are_hardened(self):
        for unit in glob.glob(os.path.join(UNITS, "*.service")):
            done = self.analyze("security", "--offline=true", "--threshold=20", "--json=short", unit)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            exposed = {row["json_field"] for row in json.loads(done.stdout) if row["set"] is False}
            for word in ("NoNewPrivileges", "ProtectSystem", "PrivateNetwork", "MemoryDenyWriteExecute"):
                self.assertNotIn(word, exposed, unit)

    def test_the_metrics_are_written(self):
        words = command("ktreport-metrics.service")
        self.assertEqual(words[-1], "/var/lib/prometheus/node-exporter/ktraid.prom")
        path = self.bench.path("ktraid.prom")
        self.assertEqual(self.bench.run("ktreport", *words[1:-1], path).stderr, "")
        with open(path, encoding="ascii") as file:
            self.assertIn("\nktraid_up 1\n", file.read())

    def test_the_journal_gets_severities(self):
        words = command("ktreport-events.service")
        self.assertEqual(words[-1], "/var/lib/ktreport/events")
        with open(self.bench.path("journal"), "a+", encoding="ascii") as journal:  # reading does not move where it is written
            process = subprocess.Popen([os.path.join(BIN, "ktreport"), *words[1:-1], self.bench.path("cursor"), "--every", "1"],
                                       env=self.bench.environment, stdout=journal)
            time.sleep(0.5)
            self.bench.sim("event", "1", "2", "--severity", "6")
            deadline = time.monotonic() + 20
            lines = [""]
            while "CRITICAL" not in lines[-1] and time.monotonic() < deadline:
                time.sleep(0.1)
                journal.seek(0)
                lines = journal.read().splitlines() or [""]
            process.terminate()
            process.wait()
        cursor = self.bench.save("cursor", {"cursor": 1, "told": {self.bench.report()["adapters"][0]["serial"]: 1000}})
        told = self.bench.run("ktreport", "events", "--journal", "--json", "--cursor", cursor).stdout
        self.assertRegex(told, r'^<4>\{"adapter":0,"restarted":true\}\n<6>\{"adapter":0,.*\n')
        self.assertRegex(lines[-1], r"^<2>2026-01-05T\S+ adapter 0 #\d+ \[CRITICAL\] ")

    def test_what_cannot_be_read_is_said_once(self):
        self.bench.sim("fault", "KT_EVT_GetEvent", "9")
        with open(self.bench.path("journal"), "w+", encoding="ascii") as file:
            process = subprocess.Popen([os.path.join(BIN, "ktreport"), "events", "--follow", "--journal", "--every", "1"],
                                       env=self.bench.environment, stdout=file, stderr=file)
            time.sleep(3.5)
            process.terminate()
            process.wait()
            file.seek(0)
            self.assertRegex(file.read(), r"^<4>ktreport: KT_EVT_GetEvent: .*\n$")
