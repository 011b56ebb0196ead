#!/usr/bin/env python3
"""Whatever befalls adapters, and however the library misbehaves: a valid document, and a view of it."""
import json
import random
import unittest

from frame import Bench, fits_schema


class Histories(unittest.TestCase):
    def test_misbehaving_library(self):
        """Counts that are too large, lists that go round and texts filled to the brim end a walk, not the report."""
        for lab, kind in (("default", "count"), ("troubled", "next"), ("troubled", "text")):
            bench = Bench(lab)
            bench.run("ktreport", "json", trace=True)
            for name in sorted({call.split()[0] for call in bench.calls() if "_Get" in call or "SMART_INFO" in call}):
                bench.run("ktsim", "fault", name, "0", "--kind", kind)
            for words in (["json", "--records"], ["show"], ["check"]):
                done = bench.run("ktreport", *words)
                self.assertNotIn("\033", done.stdout)
                if words[0] == "json":
                    fits_schema(self, json.loads(done.stdout), kind)

    def test_histories(self):
        """Whatever befalls the adapters: valid, and every view of it can be made."""
        chance = random.Random(20261121)
        for lab in ("default", "troubled"):
            bench = Bench(lab)
            for _ in range(20):
                pd = str(chance.randrange(14))
                bench.run("ktsim", *chance.choice([
                    ("disk", "fail", pd, "--force"), ("disk", "pull", pd, "--force"), ("disk", "insert", pd),
                    ("disk", "trip", pd), ("disk", "damage", pd), ("battery", "remove"), ("battery", "insert"),
                    ("clock", "advance", "7m"), ("clock", "advance", "3h"), ("clock", "until", "idle")]))
                bench.run("ktsetup", str(chance.randrange(2)), *chance.choice([
                    ("delete", "-o", "vd", "-i", pd, "--waiveconfirmation"), ("cc", "-l", pd), ("mp", "-i", pd),
                    ("create", "-o", "vd", "-r", "5", "-d", "0,1,2", "--waiveconfirmation"), ("assign", "-d", pd),
                    ("rebuild", "-l", pd, "-d", "12"), ("rebuild", "-i", pd, "-d", "12")]), text="y\ny\ny\n")
                fits_schema(self, bench.report("--records"), lab)
                for words in ([], ["--all"], ["check"]):
                    done = bench.run("ktreport", *words)
                    self.assertIn(done.returncode, (0, 1, 2), done.stderr)
                    self.assertEqual(done.stderr, "")


if __name__ == "__main__":
    unittest.main()
