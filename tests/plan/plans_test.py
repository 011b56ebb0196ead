"""Plans of reports and files: plans.txt has machines, what is wanted of them, and below it all that the plan says.

A machine is its adapter, or a list of several, as in labs, but for disks in GiB and slots in bytes. A row may first
change the machine for itself (disk3, array0, vd1, adapter0 with the words that they get; "unread" with a refusal). What
is "wanted" may be reached with "delete", be typed "for" one adapter, or be a "file" as a whole; "tell" tells all of the
plan, and what is left alone, others only the commands. With "then" between changes, what is lost by the later ones is
told before the plan. "adapters[0]." is left out of places."""
import copy
import json
import os
import re
import subprocess
import sys
import unittest

from frame import BIN, check_table, filled, give, value_of

ADAPTER = {
    "serial": "K1", "type": "array-based", "bus": {"device": 18304}, "battery": {"status": 1},
    "levels": ["RAID0", "RAID1", "RAID5", "RAID6", "RAID10"], "stripes": [16, 32, 64, 128],
    "features": ["migration", "only same type hd for create"], "advancedFeatures": ["vd write cache", "vd read cache"],
    "limits": {"virtualDisksPerArray": 8, "disksPerArray": 32, "disksPerVirtualDisk": 16, "parity": 3},
    "config": {"RebuildRate": 50, "BGARate": 40, "InitRate": 0, "AutoRebuildOn": 1, "AlarmOn": 255}}


def report_of(machine):
    """The machine as a report."""
    report = {"report": 1, "unread": [], "adapters": []}
    for number, adapter in enumerate(machine if isinstance(machine, list) else [machine]):
        disks = [dict(disk) for disk in adapter.get("disks", []) for _ in range(disk.pop("count", 1))]
        for at, disk in enumerate(disks):
            given = dict({"id": at, "serial": f"S{at}", "type": "SATA", "enclosure": 1, "slot": at, "state": "healthy"}, **disk)
            disks[at] = dict(given, size=disk.get("size", 1000) << 30)
        report["adapters"].append(copy.deepcopy({**ADAPTER, "id": number, **adapter, "disks": disks}))
    return report


def objects(report):
    """What rows name."""
    named = {f"adapter{adapter['id']}": adapter for adapter in report["adapters"]}
    for adapter in report["adapters"][::-1]:
        named.update({f"disk{disk['id']}": disk for disk in adapter["disks"]})
        for array in adapter.get("arrays", []):
            named[f"array{array['id']}"] = array
            named.update({f"vd{vd['id']}": vd for vd in array.get("virtualDisks", [])})
        named.update({f"vd{vd['id']}": vd for vd in adapter.get("virtualDisks", [])})
    return named


class Plans(unittest.TestCase):
    maxDiff = 4000

    def said(self, row):
        """All that the plan of a row says."""
        if row.startswith("machine "):
            self.machine = row.partition(" ")[2]
            return []
        report = report_of(value_of(self.machine))
        named, before = objects(report), None
        *changes, wish = row.split("; ")
        for change in changes:
            name, _, words = change.partition(" ")
            if name == "then":
                before = copy.deepcopy(report)
            elif name == "unread":
                report["unread"].append(value_of(words))
            else:
                give(named, name, words)
        for adapter in report["adapters"]:
            for owner in adapter.get("arrays", []) + adapter.get("virtualDisks", []):
                for disk in owner["disks"]:
                    if disk is not None and disk < len(adapter["disks"]):
                        adapter["disks"][disk]["member"] = True
        how, wanted = re.match(r"([a-z0-9 ]+) (.*)", wish).groups()
        wanted = value_of(wanted)
        self.planner.stdin.write(json.dumps({
            "before": before, "report": report, "delete": "delete" in how, "everything": "tell" in how,
            "adapter": int(how.partition("for ")[2] or -1),
            "wanted": wanted if how == "file" else {"adapters": wanted if isinstance(wanted, list) else [wanted]}}) + "\n")
        self.planner.stdin.flush()
        return filled(iter(lambda: self.planner.stdout.readline().rstrip("\n"), ""))

    def test_plans(self):
        with subprocess.Popen([os.path.join(BIN, "planner")], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              text=True) as self.planner:
            check_table(self, os.path.join(os.path.dirname(os.path.abspath(__file__)), "plans.txt"), self.said)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
