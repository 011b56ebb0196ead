"""What every view says of a machine that differs from a healthy one in one place; views.txt has it all.

There a line at the margin is a change of the healthy machine: names of objects with the words that they get, null for
those that they lose; "log" with a class, a code, a device, a time and values adds an event to the log of adapter 0.
Below it stands what the view says then and does not say of the healthy machine, of which it says all."""
import collections
import copy
import json
import os
import re
import sys
import unittest

from frame import Bench, check_table, filled, give, value_of

PROBLEM = re.compile(r"(critical|warning) ([a-z-]+), ")
VIEWS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "views.txt")
SHELF = [{"type": "SATA", "size": "2TB", "enclosure": 1, "model": "GT", "serial": f"A{number}"} for number in range(4)]
LAB = {"adapters": [
    {"ModelNumber": "R8", "SerialNo": "K0", "battery": True, "enclosures": [{"id": 1}],
     "disks": [*SHELF, {"type": "SATA SSD", "size": "480GB", "model": "PS", "serial": "A4"}],
     "arrays": [{"name": "data", "level": "RAID5", "disks": [0, 1, 2],
                 "virtualDisks": [{"name": "orders", "size": "1TiB"}, {"name": "mail", "cache": "auto"}]}]},
    {"type": "LD-based", "ModelNumber": "S4", "SerialNo": "K1",
     "disks": [{"size": "1TB", "model": "GT", "serial": f"B{number}"} for number in range(8)],
     "virtualDisks": [{"name": "six", "level": "RAID6", "disks": [0, 1, 2, 3], "size": "100GiB"}]}]}
EVENT = {"TimeStamp": 1, "time": "2026-01-01T00:00:00Z", "severity": "info", "text": "half done"}

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


def objects(document):
    """What changes name."""
    first, second = document["adapters"]
    shelf = first["enclosures"][0]
    orders, mail = first["arrays"][0]["virtualDisks"]
    return {"top": document, "adapter0": first, "adapter1": second, "array": first["arrays"][0], "orders": orders,
            "mail": mail, "six": second["virtualDisks"][0], "shelf": shelf,
            **{word: first[word] for word in ("battery", "config", "images", "versions")},
            **{element["type"]: element for element in reversed(shelf["elements"])},
            **{f"disk{disk['id']}": disk for disk in first["disks"]},
            **{f"port{disk['id']}": disk for disk in second["disks"]}, **{f"key{key['id']}": key for key in second["keys"]}}


def changed(healthy, row):
    document = copy.deepcopy(healthy)
    named = objects(document)
    for change in row.split("; "):
        name, _, words = change.partition(" ")
        if name == "log":
            numbers = list(map(int, words.split()))
            one = dict(EVENT, **dict(zip(("Class", "Code", "DeviceID", "TimeStamp"), numbers)), Params=numbers[4:])
            document["adapters"][0]["events"].append(dict(one, SequenceNo=len(document["adapters"][0]["events"]) + 1))
        elif name == "unread":
            refusal = {"call": "KT_LD_GetStatus", "status": 5, "text": "Out of range", **value_of(words)}
            document["unread"].append({word: value for word, value in refusal.items() if value is not None})
        elif name != "healthy":
            give(named, name, words)
    return document


def lines_of(text, words):
    """What a view says, a line a thing: of documents the problems, of numbers neither their help nor what is not so."""
    if words[0] == "json":
        return [f"{one['severity']} {one['name']}, {one['object']} {one.get('id', '')}: {one['text']} {one['action']}"
                for one in json.loads(text)["problems"]]
    if words[:2] == ["diff", "--json"]:
        return [json.dumps(one) for one in json.loads(text)]
    # The healthy machine's disks stand short, each as a whole.
    text = re.sub(r'adapter="0",id="(\d)",serial="A\1",model="(GT|PS)",bay="slot \1 of enclosure 1"', r"disk \1 \2", text)
    text = re.sub(r"(disk (\d)) \(slot \2 of enclosure 1, (GT|PS), serial A\2\) on adapter 0", r"\1 \3", text)
    return [line.replace("ktraid_", "", 1).replace('host="store",', "") for line in text.splitlines()
            if not re.match(r"# |ktraid_problem|ktraid_\w+_(state|role){.* 0$", line)]


def gained(before, after):
    """The lines of `after` that are not in `before`, however wide their columns are."""
    left = collections.Counter(" ".join(line.split()) for line in before)
    for line in after:
        line = " ".join(line.split())
        left[line] -= 1
        if left[line] < 0 and line:
            yield line


class Views(unittest.TestCase):
    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        cls.bench = Bench(LAB)
        cls.healthy = dict(cls.bench.report(), host="store", made="2026-01-05T08:00:00Z", library="4")
        cls.file = cls.bench.save("healthy.json", cls.healthy)

    def view(self, words, document):
        """The lines that a view prints of a document, and its status."""
        words = [self.file if word == "HEALTHY" else word for word in words.split()]
        done = self.bench.run("ktreport", *words, text=json.dumps(document))
        return lines_of(done.stdout, words) + done.stderr.splitlines(), done.returncode

    def said(self, row):
        """What a view says of a row and not of the healthy machine; a row with the words of a view begins its part."""
        if row.startswith("ktreport "):
            self.words = row.partition(" ")[2]
            self.before, self.usual = self.view(self.words, self.healthy)
            return []
        after, status = self.view(self.words, changed(self.healthy, row))
        said = list(gained(self.before if row != "healthy" else [], after))
        if len(after) < len(self.before):
            said.append(f"{len(self.before) - len(after)} lines less")
        if status != self.usual and not self.words.startswith("diff"):
            said.append(f"status {status}")
        return filled(said) if self.words.startswith(("show", "map", "diff", "metrics", "events")) else said

    def test_views(self):
        check_table(self, VIEWS, self.said)

    def test_every_problem_is_there(self):
        """In the table, and in the manual."""
        known = dict(line.split(":")[0].split() for line in self.bench.run("ktreport", "check", "--names").stdout.splitlines())
        with open(VIEWS, encoding="ascii") as file:
            told = dict(reversed(pair) for pair in PROBLEM.findall(file.read()))
        self.assertEqual({name: f"({severity})" for name, severity in told.items()}, known)
        with open(os.path.join(os.environ["SOURCE"], "docs", "ktreport.8.scd"), encoding="ascii") as file:
            manual = re.findall(r"^\*([a-z-]+)\*\n\t", file.read().split("# PROBLEMS")[1].split("# THRESHOLDS")[0], re.M)
        self.assertEqual(set(manual), set(known))

    def test_thresholds(self):
        document = json.dumps(changed(self.healthy, 'disk0 {"temperature": 45}'))
        for words, told in (({"disk-hot": 45}, "RAID WARNING - Disk 0"), ({"disk-hot": 45.5}, "RAID OK"), (7, "should be an object of numbers"),
                            ({"disk-hit": 45}, '"disk-hit" is no threshold'), ({"disk-hot": "45"}, '"disk-hot" should be a number')):
            path = self.bench.save("thresholds", json.dumps(words))
            self.assertIn(told, self.bench.run("ktreport", "check", "--from", "-", "--thresholds", path, text=document).stdout)

    def test_what_is_no_report(self):
        for text, message in BROKEN:
            done = self.bench.run("ktreport", "--from", "-", text=text)
            self.assertEqual((done.returncode, done.stdout), (3, ""), text[:40])
            self.assertRegex(done.stderr, r"\Aktreport: standard input: [^\n]*" + re.escape(message) + r"[^\n]*\n\Z")
        self.assertEqual([self.bench.run("ktreport", "check", *words, text='{"report": 9}').returncode for words in
                          (["--from", "-"], ["--only", "nonsense"], ["-a", "7"])], [3, 3, 3])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
