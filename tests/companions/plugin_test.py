"""ktreport check under a real runner of monitoring plug-ins, its performance data read by a real parser of them."""
import os
import subprocess
import unittest

from frame import BIN, Bench

NEGATE = "/usr/lib/nagios/plugins/negate"
PARSE = r"""
my @values = Monitoring::Plugin::Performance->parse_perfstring(do { local $/; <STDIN> });
printf("%s %s %s %s\n", $_->label, $_->value, $_->warning // "", $_->critical // "") for @values;
"""
LAB = {"adapters": [{"type": "array-based", "battery": True, "enclosures": [{"id": 1}],
                     "disks": [{"count": 7, "size": "1TB", "enclosure": 1}, {"size": "1TB", "enclosure": 1, "spare": "global"}],
                     "arrays": [{"level": "RAID6", "disks": [0, 1, 2, 3, 4, 5, 6], "virtualDisks": [{"name": "a|b\n<b>"}]}]}]}
OK, WARNING, CRITICAL, UNKNOWN = range(4)


class Plugin(unittest.TestCase):
    def setUp(self):
        self.bench = Bench(LAB)

    def run_plugin(self, *words):
        """Runs the check under negate, which maps every state to itself."""
        states = [word for state in ("ok", "warning", "critical", "unknown") for word in ("--" + state, state.upper())]
        done = subprocess.run([NEGATE, *states, "-s", os.path.join(BIN, "ktreport"), "check", *words],
                              env=self.bench.environment, capture_output=True, text=True, check=False)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout

    def performance(self, line):
        done = subprocess.run(["perl", "-MMonitoring::Plugin::Performance", "-e", PARSE], input=line.split("|")[1].strip(),
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return {row.split(" ")[0]: row.split(" ")[1:] for row in done.stdout.splitlines()}

    def expect(self, status, state):
        done, text = self.run_plugin()
        self.assertEqual((done, text.split(" - ")[0]), (status, "RAID " + state))
        return text

    def test_states(self):
        text = self.expect(OK, "OK")
        values = self.performance(text)
        self.assertEqual((values["critical"], values["warning"], values["disks"]), (["0", "", "0"], ["0", "0", ""], ["8", "", ""]))
        self.assertRegex(values["hottest"][0], r"^\d+$")
        self.bench.sim("disk", "trip", "7")
        self.expect(WARNING, "WARNING")
        self.bench.sim("disk", "fail", "1", "--force")
        text = self.expect(CRITICAL, "CRITICAL")
        self.assertEqual(self.performance(text)["critical"][0], "1")
        text, long = self.performance(text), self.run_plugin("--long")[1]
        self.assertEqual((long.count("|"), self.performance(long.splitlines()[0])), (1, text))
        self.bench.sim("fault", "KT_API_Initialize", "9")
        self.expect(UNKNOWN, "UNKNOWN")
