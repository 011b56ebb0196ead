#!/usr/bin/env python3
"""What is wrong: each rule on a document that differs from a healthy one in one place, and what check makes of it."""
import copy
import json
import os
import re
import unittest

from frame import Bench

LAB = {"adapters": [
    {"battery": True, "enclosures": [{"id": 1}],
     "disks": [{"count": 4, "type": "SATA", "size": "2TB", "enclosure": 1}, {"type": "SATA SSD", "size": "480GB"}],
     "arrays": [{"name": "data", "level": "RAID5", "disks": [0, 1, 2],
                 "virtualDisks": [{"name": "orders", "size": "1TiB"}, {"name": "mail", "cache": "auto"}]}]},
    {"type": "LD-based", "disks": [{"count": 5, "size": "1TB"}],
     "virtualDisks": [{"name": "six", "level": "RAID6", "disks": [0, 1, 2, 3], "size": "100GiB"}]}]}


def event(kind, code, device, params=(0, 0, 0, 0)):
    return {"Class": kind, "Code": code, "TimeStamp": 1, "DeviceID": device, "SequenceNo": 9, "Params": list(params),
            "time": "2026-01-01T00:00:00Z", "text": "x"}


def disk(document, index):
    return document["adapters"][0]["disks"][index]


def orders(document):
    return document["adapters"][0]["arrays"][0]["virtualDisks"][0]


def six(document):
    return document["adapters"][1]["virtualDisks"][0]


def log(document, *one):
    document["adapters"][0]["events"].append(event(*one))


def element(document, kind, **words):
    for one in document["adapters"][0]["enclosures"][0]["elements"]:
        if one["type"] == kind:
            one.update(words)
            return


def refuse(document, **words):
    document["unread"].append({"call": "KT_LD_GetStatus", "status": 5, "text": "Out of range", **words})


def silence(document):
    document["adapters"][1] = {"id": 1}
    refuse(document, adapter=1)


def fail(document, **words):
    """A disk has failed, and a call was refused then."""
    disk(document, 0).update(state="offline")
    refuse(document, adapter=0, **words)


def lose(document, *slots):
    """Members of the RAID6 that are missing."""
    six(document)["status"] = "degraded"
    for slot in slots:
        six(document)["disks"][slot] = None


def spare(document, **words):
    disk(document, 3).update({"spare": "global", "member": False}, **words)


def offline_array(document):
    array = document["adapters"][0]["arrays"][0]
    array.pop("status")
    array["Status"] = 2


# What is to be done, when that is not what the rule says of others.
ACTIONS = [
    (lambda d: lose(d, 0), "Put the disk back, or rebuild onto another one (ktsetup's rebuild)."),
    (lambda d: (lose(d, 0), six(d).update(status="offline")), "Put the disk back; what is offline cannot be rebuilt."),
    (lambda d: (d["adapters"][0]["arrays"][0]["disks"].append(None), offline_array(d)),
     "Put the disk back; what is offline cannot be rebuilt."),
    (lambda d: (orders(d).update(status="offline"), disk(d, 0).update(state="offline"), log(d, 2, 57, 0)),
     "See to the encryption of its disks' ports (ktsetup's aesport), before anything else is done to it; do not create, "
     "initialise or wipe anything on its disks."),
    (lambda d: (disk(d, 0).update(state="offline"), log(d, 2, 55, 0)),
     "Move the disk to a port that does not encrypt, or switch its port's encryption off (ktsetup's aesport); "
     "forceonline would empty it."),
    (lambda d: (d["adapters"][0]["images"].update(firmware=False), refuse(d, adapter=0, status=20)),
     "Write its damaged images anew (ktsetup's flash) and boot the machine; then run the report again."),
    (lambda d: element(d, "dor", status="non-critical", condition="open"),
     "Look at the enclosure: ktsetup 0 enc -o ele -i 1 -t dor; close it."),
    (lambda d: element(d, "tpr", status="critical", condition=""),
     "Look at the enclosure: ktsetup 0 enc -o ele -i 1 -t tpr; see that fans run and air reaches it."),
    (lambda d: element(d, "tpr", flags=["predicted failure"], condition=""),
     "Look at the enclosure: ktsetup 0 enc -o ele -i 1 -t tpr; replace the part."),
]

# What is done to the healthy document, and the problems that it then has.
RULES = [
    (lambda d: None, set()),
    (silence, {"adapter-unread"}),
    (lambda d: refuse(d, adapter=0), {"unread"}),
    (lambda d: refuse(d), {"unread"}),
    (lambda d: fail(d, call="KT_PD_GET_SMART_INFO", ids=[0]), {"disk-failed"}),
    (lambda d: fail(d, call="KT_PD_GET_SMART_INFO", ids=[0, 1]), {"disk-failed", "unread"}),
    (lambda d: fail(d, ids=[0]), {"disk-failed", "unread"}),
    (lambda d: (six(d).update(status="offline"), refuse(d, adapter=1, call="KT_Tandemix_GetEntriesTableInfo", ids=[0])),
     {"vd-offline"}),
    (lambda d: refuse(d, adapter=1, call="KT_Tandemix_GetEntriesTableInfo", ids=[0]), {"unread"}),
    (lambda d: refuse(d, adapter=0, status=19), set()),
    (lambda d: disk(d, 0).update(state="offline"), {"disk-failed"}),
    (lambda d: (disk(d, 0).update(state="offline"), log(d, 2, 57, 0)), {"cipher-mismatch"}),
    (lambda d: (disk(d, 0).update(state="offline"), log(d, 2, 57, 0), log(d, 2, 1, 0)), {"disk-failed"}),
    (lambda d: disk(d, 0).update(smartTripped=True), {"disk-smart"}),
    (lambda d: disk(d, 0).update(pending=1), {"disk-media-errors"}),
    (lambda d: disk(d, 0).update(uncorrectable=3), {"disk-media-errors"}),
    (lambda d: log(d, 2, 37, 0), set()),  # the drive's own count is better known
    (lambda d: (disk(d, 0).pop("pending"), disk(d, 0).pop("uncorrectable"), log(d, 2, 37, 0)), {"disk-media-errors"}),
    (lambda d: disk(d, 0).update(temperature=60), {"disk-hot"}),
    (lambda d: disk(d, 0).update(temperature=59), set()),
    (lambda d: disk(d, 0).update(linkSpeed=3000000000), {"disk-link-slow"}),
    (lambda d: disk(d, 4).update(wear=79), set()),
    (lambda d: disk(d, 4).update(wear=80), {"ssd-worn"}),
    (lambda d: disk(d, 4).update(wear=95), {"ssd-worn-out"}),
    (lambda d: orders(d).update(status="offline"), {"vd-offline"}),
    (lambda d: orders(d).update(status="degraded"), {"vd-last-redundancy"}),
    (lambda d: lose(d, 0), {"vd-degraded", "disk-missing"}),
    (lambda d: lose(d, 0, 1), {"vd-last-redundancy", "disk-missing"}),
    (lambda d: six(d).update(status="degraded"), {"vd-degraded"}),
    (lambda d: six(d).update(status="partially optimal"), {"vd-degraded"}),
    (lambda d: six(d).update(status="conflicted"), {"vd-conflicted"}),
    (lambda d: six(d).update(status="plugin conflicted"), {"vd-conflicted"}),
    (lambda d: six(d).update(status="foreign"), {"vd-foreign"}),
    (lambda d: six(d).update(status="not importable"), {"vd-foreign"}),
    (lambda d: log(d, 1, 100, 0), {"vd-inconsistent"}),
    (lambda d: (log(d, 1, 100, 0), log(d, 1, 35, 0)), set()),
    (lambda d: log(d, 1, 2, 0), {"vd-not-initialised"}),
    (lambda d: (log(d, 1, 2, 0), log(d, 1, 55, 0)), set()),
    (lambda d: six(d).update(activity={"kind": "background init", "state": "aborted", "percent": 5}),
     {"vd-not-initialised"}),
    (lambda d: six(d).update(activity={"kind": "check", "state": "paused", "percent": 5}), {"activity-stopped"}),
    (lambda d: six(d).update(activity={"kind": "check", "state": "interrupted"}), {"activity-stopped"}),
    (lambda d: six(d).update(activity={"kind": "check", "state": "auto paused"}), set()),
    (lambda d: six(d).update(activity={"kind": "check", "state": "running", "percent": 5}), set()),
    (lambda d: spare(d), set()),
    (lambda d: spare(d, validSize=1000), {"spare-none-fits"}),
    (lambda d: spare(d, type="SAS"), {"spare-none-fits"}),
    (lambda d: log(d, 2, 59, 3), {"spare-none-fits"}),
    (lambda d: (spare(d), disk(d, 0).update(state="offline"), d["adapters"][0]["config"].update(AutoRebuildOn=0)),
     {"disk-failed", "spare-idle"}),
    (lambda d: (spare(d), disk(d, 0).update(state="offline"), d["adapters"][0]["config"].update(AutoRebuildOn=0),
                offline_array(d)), {"disk-failed"}),
    (lambda d: d["adapters"][0].update(battery=False), {"cache-unsafe"}),
    (lambda d: log(d, 9, 28, 0), {"cache-unsafe"}),
    (lambda d: (log(d, 9, 28, 0), log(d, 9, 29, 0)), set()),
    (lambda d: (d["adapters"][0].update(battery=False), orders(d).update(cacheInForce="off"),
                d["adapters"][0]["arrays"][0]["virtualDisks"][1].update(cacheInForce="off")), {"cache-reduced"}),
    (lambda d: (d["adapters"][1].update(battery=False), d["adapters"][1]["events"].append(event(9, 5, 0))),
     {"battery-missing"}),
    (lambda d: d["adapters"][0]["battery"].update(percentage=49), {"battery-weak"}),
    (lambda d: log(d, 9, 3, 0), {"battery-weak"}),
    (lambda d: (log(d, 9, 3, 0), log(d, 9, 4, 0)), set()),
    (lambda d: d["adapters"][0]["battery"].update(temperature=5000), {"battery-hot"}),
    (lambda d: d["adapters"][0]["battery"].update(status=3, percentage=5, minutesToFull=481), {"battery-charging-long"}),
    (lambda d: d["adapters"][0]["battery"].update(status=3, percentage=5, minutesToFull=480), set()),
    (lambda d: d["adapters"][0]["images"].update(firmware=False), {"adapter-image-damaged"}),
    (lambda d: element(d, "fan", status="critical"), {"element-critical"}),
    (lambda d: element(d, "pow", status="not installed"), {"element-warning"}),
    (lambda d: element(d, "tpr", flags=["predicted failure"]), {"element-warning"}),
    (lambda d: element(d, "arydev", status="critical"), set()),
    (lambda d: d["adapters"][0]["enclosures"][0].update(status="unstable"), {"element-warning"}),
    (lambda d: (d["adapters"][0]["enclosures"][0].update(status="unstable"), element(d, "arydev", status="non-critical")), set()),
    (lambda d: d["adapters"][0].update(keys=[{"id": 0, "hasKey": False, "ports": [{"id": 1, "enabled": True}]}]),
     {"port-locked"}),
    (lambda d: d["adapters"][0].update(keys=[{"id": 0, "hasKey": True, "ports": [{"id": 1, "enabled": True}]}]), set()),
    (lambda d: d["adapters"][0].update(unlinkedPorts=[{"id": 1, "enabled": True}]), {"port-locked"}),
    (lambda d: log(d, 0, 65535, 0), {"events-lost"}),
]
BROKEN = [("", "is empty"), ('{"report": 1, "adapters": [{"id"', "is cut short"), ('{"report": 2, "adapters": []}', "version 2"),
          ('{"adapters": []}', 'lacks "report"'), ('{"report": 1}', 'lacks "adapters"'), ("[]", 'lacks "report"'),
          ('{"report": 1, "adap', "is cut short"), ('{"report": tr', "is cut short"),
          ('{"report": 1, "adapters": [7]}', 'lacks its "id"'), ("[" * 1000, "nested"), ("{]", "is no report"),
          ('{"report": 1, "adapters": [{"id": 0, "disks": [3]}]}', "no object")]
# The lists that views walk.
BROKEN += [(json.dumps({"report": 1, "adapters": [], word: {}}), f'"{word}" is no list') for word in ("unread", "problems")]
BROKEN += [(json.dumps({"report": 1, "adapters": [{"id": 0, word: {}}]}), f'"{word}" is no list')
           for word in ("disks", "arrays", "virtualDisks", "blocks", "enclosures", "expanders", "portMultipliers", "events",
                        "keys", "unlinkedPorts")]
BROKEN += [(json.dumps({"report": 1, "adapters": [{"id": 0, owner: [{word: {}}]}]}), f'"{word}" is no list')
           for owner, word in (("arrays", "virtualDisks"), ("arrays", "slots"), ("enclosures", "elements"),
                               ("enclosures", "types"), ("keys", "ports"))]


class Problems(unittest.TestCase):
    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        cls.bench = Bench(LAB)
        cls.healthy = cls.bench.report()

    def problems(self, document, *words):
        done = self.bench.run("ktreport", "json", "--from", "-", *words, text=json.dumps(document))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return json.loads(done.stdout)["problems"]

    def test_rules(self):
        seen, told = set(), []
        for number, (change, expected) in enumerate(RULES):
            document = copy.deepcopy(self.healthy)
            change(document)
            problems = self.problems(document)
            names = {one["name"] for one in problems}
            self.assertEqual(names, expected, f"row {number}")
            seen |= names
            told += [f"{one['name']}: {one['text']} {one['action']}" for one in problems]
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "problems.txt"), encoding="ascii") as file:
            self.assertEqual("\n".join(dict.fromkeys(told)) + "\n", file.read())
        known = {line.split()[0] for line in self.bench.run("ktreport", "check", "--names").stdout.splitlines()}
        self.assertEqual(seen, known)
        with open(os.path.join(os.environ["SOURCE"], "docs", "ktreport.8.scd"), encoding="ascii") as file:
            manual = re.findall(r"^\*([a-z-]+)\*\n\t", file.read().split("# PROBLEMS")[1].split("# THRESHOLDS")[0], re.M)
        self.assertEqual(set(manual), known)

    def test_actions(self):
        for number, (change, action) in enumerate(ACTIONS):
            document = copy.deepcopy(self.healthy)
            change(document)
            self.assertIn(action, [one["action"] for one in self.problems(document)], f"row {number}")
        document = copy.deepcopy(self.healthy)
        offline_array(document)
        shown = self.bench.run("ktreport", "--from", "-", text=json.dumps(document)).stdout
        self.assertRegex(shown, r"data +RAID5 +offline")

    def test_thresholds(self):
        document = copy.deepcopy(self.healthy)
        disk(document, 0)["temperature"] = 45
        path = self.bench.save("thresholds", {"disk-hot": 45})
        self.assertEqual([one["name"] for one in self.problems(document, "--thresholds", path)], ["disk-hot"])
        self.bench.save("thresholds", {"disk-hit": 45})
        done = self.bench.run("ktreport", "--from", "-", "--thresholds", path, text=json.dumps(document))
        self.assertEqual((done.returncode, "no threshold" in done.stderr), (3, True))

    def check(self, document, *words):
        done = self.bench.run("ktreport", "check", "--from", "-", *words, text=json.dumps(document))
        self.assertEqual(done.stdout.count("\n"), 1)
        return done.returncode, done.stdout

    def test_check(self):
        document = copy.deepcopy(self.healthy)
        self.assertEqual(self.check(document)[0], 0)
        disk(document, 0).update(temperature=90, serial="a|b\u001b[2J")
        status, line = self.check(document)
        self.assertEqual((status, line.count("|"), "\033" in line), (1, 1, False))
        self.assertEqual(self.check(document, "--ignore", "disk-hot")[0], 0)
        self.assertEqual(self.check(document, "--only", "disk-failed")[0], 0)
        refuse(document, adapter=0)
        self.assertEqual(self.check(document)[0], 3)
        self.assertEqual([self.check(document, "-a", adapter)[0] for adapter in "01"], [3, 0])
        everywhere = copy.deepcopy(self.healthy)
        refuse(everywhere)
        self.assertEqual(self.check(everywhere, "-a", "1")[0], 3)
        self.assertEqual(self.check(document, "--ignore", "unread")[0], 1)
        disk(document, 0).update(state="offline")
        status, line = self.check(document)
        self.assertEqual(status, 2)
        self.assertRegex(line, r"^RAID CRITICAL - Disk 0 \(slot 0 of enclosure 1, .*serial .*\) on adapter 0 has failed")
        self.assertEqual(self.check({"report": 1, "unread": [], "adapters": []})[0], 3)
        self.assertEqual(self.check({"report": 9})[0], 3)
        self.assertEqual(self.bench.run("ktreport", "check", "--only", "nonsense").returncode, 3)
        self.assertEqual(self.bench.run("ktreport", "check", "-a", "7").returncode, 3)

    def test_unread_that_decides_nothing(self):
        document = copy.deepcopy(self.healthy)
        refuse(document, adapter=0, call="KT_DiskHasOS")
        self.assertEqual(self.check(document)[0], 0)
        fail(document, call="KT_PD_GET_SMART_INFO", ids=[0])
        self.assertEqual(self.check(document, "--ignore", "disk-failed")[0], 0)

    def test_what_is_no_report(self):
        for text, message in BROKEN:
            done = self.bench.run("ktreport", "--from", "-", text=text)
            self.assertEqual((done.returncode, done.stdout), (3, ""), text[:40])
            self.assertIn("standard input: ", done.stderr)
            self.assertIn(message, done.stderr)

    def test_show_of_a_failed_disk(self):
        """The first lines tell which disk, where, what it means and what to do."""
        bench = Bench("full")
        bench.sim("disk", "fail", "3", "--force")
        lines = bench.run("ktreport").stdout.splitlines()
        self.assertRegex(lines[2], r"CRITICAL +Disk 3 \(slot 3 of enclosure 1, .*, serial SG0000003DAA5\) on adapter 0 has "
                                   r"failed; it holds data of virtual disks 0 .* and 1 .*, which are degraded")
        self.assertIn('Replace the disk in slot 3 of enclosure 1', lines[3])
        self.assertIn('"ktsetup 0 locate -o pd -i 3 -a on"', lines[3])
        self.assertLess(len(lines), 60)
        self.assertEqual(bench.run("ktsetup", "0", "locate", "-i", "3", "-a", "on").returncode, 0)


if __name__ == "__main__":
    unittest.main()
