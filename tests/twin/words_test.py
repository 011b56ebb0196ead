"""The manual's table of words, the schema of reports and what labs take are the same."""
import json
import os
import re
import unittest

from frame import Bench

SOURCE = os.environ["SOURCE"]
DISKS = [{"count": 4}]
# Where an object of each kind stands in a lab, and its definition in the schema.
KINDS = {
    "top": (None, lambda one: {"adapters": [], **one}),
    "adapter": ("adapter", lambda one: {"adapters": [one]}),
    "disk": ("disk", lambda one: {"adapters": [{"disks": [one]}]}),
    "patrol": ("patrol", lambda one: {"adapters": [{"disks": [{"patrol": one}]}]}),
    "array": ("array", lambda one: {"adapters": [{"disks": DISKS, "arrays": [{"disks": [0, 1, 2], **one}]}]}),
    "virtual disk": ("virtualDisk", lambda one: {"adapters": [
        {"type": "LD-based", "disks": DISKS, "virtualDisks": [{"disks": [0, 1, 2], **one}]}]}),
    "activity": ("activity", lambda one: {"adapters": [
        {"type": "LD-based", "disks": DISKS, "virtualDisks": [{"disks": [0, 1, 2], "activity": one}]}]}),
    "target": ("target", lambda one: {"adapters": [
        {"type": "LD-based", "disks": DISKS, "virtualDisks": [{"disks": [0, 1, 2], "target": one}]}]}),
    "enclosure": ("enclosure", lambda one: {"adapters": [{"enclosures": [one]}]}),
    "element": ("element", lambda one: {"adapters": [{"enclosures": [{"elements": [{"type": "fan", **one}]}]}]}),
    "expander": ("expander", lambda one: {"adapters": [{"expanders": [one]}]}),
    "port multiplier": ("portMultiplier", lambda one: {"adapters": [{"portMultipliers": [one]}]}),
    "key": ("key", lambda one: {"adapters": [{"type": "LD-based", "keys": [{"key": "k", "password": "p", **one}]}]}),
    "port": ("port", lambda one: {"adapters": [
        {"type": "LD-based", "keys": [{"key": "k", "password": "p", "ports": [one]}]}]}),
    "event": ("event", lambda one: {"adapters": [{"events": [one]}]}),
}


def table():
    """Kind -> word -> (whether labs take it, whether reports give it), as the manual says."""
    with open(os.path.join(SOURCE, "docs", "ktraid-sim.7.scd"), encoding="utf-8") as file:
        text = file.read().split("## All words")[1].split("```")[1]
    kinds = {}
    for line in text.strip().splitlines():
        if not line.startswith(" "):
            kinds[line.rstrip(":")] = words = {}
            continue
        word, unit, lab, report = re.fullmatch(r"  (\w+) +(\S.*?) +(lab|-) +(report|-)", line).groups()
        assert unit
        words[word] = (lab == "lab", report == "report")
    return kinds


class Words(unittest.TestCase):
    def test_table(self):
        with open(os.path.join(SOURCE, "docs", "report.schema.json"), encoding="ascii") as file:
            schema = json.load(file)
        bench = Bench("none")
        kinds = table()
        self.assertEqual(kinds.keys(), KINDS.keys())
        for kind, (definition, place) in KINDS.items():
            properties = schema["definitions"][definition]["properties"] if definition else schema["properties"]
            # Codes without a word stand under the name of the record's field.
            given = {word for word in properties if kind == "event" or (not word[0].isupper() and "." not in word)}
            self.assertEqual({word for word, (_, report) in kinds[kind].items() if report}, given, kind)
            for word, (lab, _) in kinds[kind].items():
                if (kind, word) == ("top", "report"):
                    continue
                # A list in a list is what no word takes: the complaint is about the value, or else about the word.
                done = bench.run("ktsim", "create", "--lab", "-", "--force", text=json.dumps(place({word: [[]]})))
                taken = word + ": is not a word that labs know here" not in done.stderr
                self.assertEqual((done.returncode, taken), (1, lab), f"{kind}: {word}: {done.stderr}")
