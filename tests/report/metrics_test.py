"""What Prometheus is told: valid whatever the adapters say, one number a thing, and nothing that vanishes unseen."""
import copy
import json
import os
import re
import stat
import subprocess
import unittest

from frame import BIN, LABS, Bench

LAB = {"adapters": [
    {"type": "array-based", "battery": True, "enclosures": [{"id": 1}], "disks": [{"count": 5, "size": "1TB", "enclosure": 1}],
     "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": 'a "b" \\c'}]}]},
    {"type": "LD-based", "battery": False, "disks": [{"count": 2, "size": "1TB"}]}]}
LINE = re.compile(r'(ktraid_[a-z_]+)(?:\{((?:[a-z_]+="(?:[^"\\\n]|\\[\\"n])*",?)*)\})? (-?[0-9.e+-]+)$')


def series_of(test, text):
    """(name, labels) -> value; fails for what node-exporter would throw away with everything else in the file."""
    series, families = {}, set()
    for line in text.splitlines():
        if line.startswith("# TYPE "):
            test.assertNotIn(line, families)
            families.add(line)
        if line.startswith("#"):
            continue
        match = LINE.match(line)
        test.assertIsNotNone(match, line)
        labels = tuple(re.findall(r'([a-z_]+)="((?:[^"\\]|\\.)*)"', match[2] or ""))
        test.assertNotIn((match[1], labels), series, "twice")
        series[match[1], labels] = float(match[3])
    return series


class Metrics(unittest.TestCase):
    def metrics(self, bench, *words, text=None):
        done = bench.run("ktreport", "metrics", *words, text=text)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return series_of(self, done.stdout)

    def test_every_lab_makes_valid_text(self):
        for lab in LABS:
            series = self.metrics(Bench(lab))
            self.assertEqual(series["ktraid_up", ()], 1, lab)

    def test_equal_labels_are_told_once(self):
        bench = Bench(LAB)
        document = bench.report()
        disks = document["adapters"][0]["disks"]
        disks[0]["serial"] = disks[1]["serial"] = ""
        disks[2]["serial"] = disks[3]["serial"]
        disks.append(copy.deepcopy(disks[4]))
        document["adapters"].append(copy.deepcopy(document["adapters"][1]))
        series = self.metrics(bench, "--from", "-", text=json.dumps(document))
        labels = [dict(labels) for name, labels in series if name == "ktraid_disk_state"]
        self.assertEqual([one["adapter"] + one["state"] for one in labels].count("0healthy"), 5)

    def test_the_file(self):
        bench = Bench(LAB)
        path = bench.save("ktraid.prom", "old")
        os.chmod(path, 0o600)
        inode = os.stat(path).st_ino
        old_mask = os.umask(0o077)
        try:
            self.assertEqual(self.metrics(bench, "-o", path), {})
        finally:
            os.umask(old_mask)
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o644)
        self.assertNotEqual(os.stat(path).st_ino, inode)
        with open(path, encoding="ascii") as file:
            self.assertEqual(series_of(self, file.read())["ktraid_up", ()], 1)
        self.assertEqual(sorted(os.listdir(bench.folder.name)), ["ktraid.prom", "lab.json", "state.db"])

    def test_a_file_that_is_none_hides_no_other(self):
        bench = Bench(LAB)
        document = bench.report()
        bench.sim("disk", "fail", "1", "--force")
        good, short = bench.save("good", dict(document, host="store1")), bench.save("short", json.dumps(document)[:2000])
        bad = bench.save("bad", dict(bench.report(), host="store2"))
        for words in ([], ["show"], ["map"], ["map", "--csv"], ["page"], ["metrics"]):
            done = bench.run("ktreport", *words, "--from", short, good, bad)
            self.assertEqual((done.returncode, done.stderr), (1, f"ktreport: {short}: is cut short (left out)\n"), words)
            self.assertIn("store1", done.stdout, words)
            done = bench.run("ktreport", *words, "--from", short)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (3, "", f"ktreport: {short}: is cut short\n"), words)
        for files, status, state in (([good], 0, "OK"), ([short, good], 3, "UNKNOWN"), ([good, short, bad], 2, "CRITICAL")):
            done = bench.run("ktreport", "check", "--from", *files)
            self.assertEqual((done.returncode, done.stdout.split(" - ")[0]), (status, "RAID " + state))
            self.assertEqual(short + ": is cut short" in done.stdout, short in files)

    def test_rules_are_those_of_the_table(self):
        rules = os.path.join(os.environ["SOURCE"], "packaging", "prometheus", "ktraid.rules.yml")
        made = subprocess.run([os.path.join(BIN, "print_rules")], capture_output=True, text=True, check=True).stdout
        with open(rules, encoding="ascii") as file:
            self.assertEqual(file.read(), made, "build the target prometheus-rules")
