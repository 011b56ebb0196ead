"""A twin looks like the adapters that it was made of, byte for byte, and does what they do."""
import json
import os
import re
import unittest

from frame import LABS, RARE, Bench, fits_schema
from programs_test import DEEDS, Past

LISTINGS = ["info -o hba", "info -o vd", "info -o array", "info -o pd", "info -o blk", "info -o exp", "info -o pm",
            "info -o spare", "info -o bbu", "info -o tandem", "get -o vd", "get -o array", "get -o pd", "get -o hba",
            "get -o driver", "get -o link", "status -o pd", "smart -p 1", "smart -p 11", "enc -o enc", "devmap -o vd",
            "devmap -o pd", "event", "aesentry -o getinfo", "aesport -o getinfo", "aesport -o getcfg"] + [
                f"enc -o {what} -i 1 -t {kind}" for what in ("ele", "elecfg")
                for kind in ("dev", "arydev", "pow", "fan", "tpr", "dor", "alm", "dpl", "vlt")]

HISTORIES = int(os.environ["HISTORIES"])


def text_of(bench, *words):
    """The report without the lines that tell when and where it was made."""
    done = bench.run("ktreport", "json", *words)
    assert done.returncode == 0, done.stderr
    return [line for line in done.stdout.splitlines() if not line.startswith((' "made"', ' "host"'))]


def listings(bench, adapters):
    """All listings of all adapters, as the shell prints them."""
    lines = [line for adapter in range(adapters) for line in [f"adapter -i {adapter}", *LISTINGS]]
    return bench.run("ktsetup", text="\n".join(lines + ["exit", ""])).stdout


class Twin(Bench):
    """A state that is made from a report of another one."""

    def __init__(self, original, *words):
        super().__init__(original.save("report.json", original.run("ktreport", "json", *words).stdout), Bench.now(original))


def happening(past):
    """Something that befalls adapters; a clock that is set shows another time than the one that new identities tell."""
    return past.filled(past.chance.choice([deed for deed in DEEDS["happens"] if "clock set" not in deed])), "y\n"


def typed(past):
    """Commands that the adapter may understand."""
    lines = [f"adapter -i {past.adapter}"] + [" ".join(words) for _ in range(4) for words in past.command()]
    return [["ktsetup"]], "\n".join(lines + 5 * ["n", "exit"] + [""])


def places(one, other, path=""):
    """The places at which two documents differ, with what is there."""
    if isinstance(one, dict) and isinstance(other, dict) and one.keys() == other.keys():
        return [place for word in one for place in places(one[word], other[word], f"{path}.{word}")]
    if isinstance(one, list) and isinstance(other, list) and len(one) == len(other):
        return [place for i, pair in enumerate(zip(one, other)) for place in places(*pair, f"{path}[{i}]")]
    return [] if one == other else [f"{path}: {str(one)[:60]} != {str(other)[:60]}"]


# What follows from the rest, so that a lab does not look into it.
UNREAD = "^.(unread|problems)$|(types|attributes|LD_STATUS|HD_BGA_STATUS|HD_SMART_STATUS|HD_FreeSpaceInfo)$"


def objects(value, path=""):
    """All objects of a document, with their places."""
    if isinstance(value, dict):
        yield path, value
    for word, each in value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else []:
        yield from objects(each, f"{path}.{word}" if isinstance(value, dict) else f"{path}[{word}]")


class Fidelity(unittest.TestCase):
    maxDiff = 2000

    def same_reports(self, original, twin, what, *words):
        one, other = text_of(original, *words), text_of(twin, *words)
        if one != other:
            self.fail("\n".join(places(json.loads("\n".join(one)), json.loads("\n".join(other)))[:10]) + "\n" + what)

    def compare(self, original, twin, what, *words):
        self.same_reports(original, twin, what, *words)
        adapters = len(original.report()["adapters"])
        self.assertEqual(listings(original, adapters), listings(twin, adapters), what)

    def test_labs(self):
        """The words alone tell all that ktsetup prints: what is made of them prints it as well."""
        for lab in LABS if HISTORIES > 20 else [lab for lab in LABS if lab != "full"]:
            original = Bench(lab)
            self.compare(original, Twin(original, "--records"), lab, "--records")
            plain = Twin(original)
            self.compare(original, plain, lab + " without records")
            states = [[(adapter["MaxHD"], [shelf["Status"] for shelf in adapter["enclosures"]])
                       for adapter in bench.report("--records")["adapters"]] for bench in (original, plain)]
            self.assertEqual(*states, lab)

    def test_what_no_lab_has(self):
        original = Bench(RARE, "2026-01-05 08:00:59")
        original.sim("disk", "fail", "0", "-a", "1", "--force")
        self.compare(original, Twin(original), "rare")
        told = original.report()
        told["adapters"][1]["events"] = []
        self.assertIn("FAILED", Bench(told).sim("status", "--all"), "which its silence tells, too")

    def test_every_word(self):
        """Each thing that an adapter can be has a word of its own, and no two of its numbers are the same."""
        numbers = [*(f"{which}Version.{part}" for which in ("BIOS", "Firmware", "BootLoader")
                     for part in ("MajorVersion", "MinorVersion", "RevisionNumber", "BuildNumber")),
                   *("DriverVersion.Ver" + part for part in ("Major", "Minor", "OEM", "Build")),
                   *"VenID DevID SubVenID SubDevID RevisionID SlotNumber MaxLinkWidth CurrentLinkWidth PortCount".split(),
                   *("Max" + most for most in "HD_Ext LogicalDrive PDPerVD ParityDisks PDPerDG VDPerDG TotalBlocks_V2 "
                     "BlockPerPD Expander PM AESEntry AESPort TandemHdd SSDPerTandemix SSDSegment BufferSize".split())]
        images = ["", "autoload_", "boot_loader_", "firmware_", "boot_rom_", "hba_info_"]
        original = Bench({"adapters": [{
            "type": ["LD-based", "array-based"][i % 2], "AdvancedFeatures": 1 << i | i % 2 << 10,
            "LogicalDriverMode": 1 << i % 16, "Features": 1 << i % 8, "PortSupportType": 1 << i % 3,
            "StripeSizeSupported": 1 << i % 7, "MaxSpeed": i % 4, "CurrentSpeed": (i + 1) % 4, "AlarmSupport": i // 2 % 2,
            **{word + "img_health": int(i // 2 % 7 == n) for n, word in enumerate(images)},
            **{word: i + 4 * n for n, word in enumerate(numbers)}} for i in range(32)]})
        self.same_reports(original, Twin(original), "words")

    def test_refusals(self):
        """A report of a later version or at odds with itself is refused with the place."""
        original = Bench("default")
        report = original.report("--records")
        text = json.dumps(report)

        def refusal(spoil):
            spoilt = json.loads(text)
            spoil(spoilt)
            done = original.run("ktsim", "--state", original.path("new.db"), "create", "--lab", "-", "--at", original.now(),
                                text=json.dumps(spoilt))
            self.assertEqual((done.returncode, os.path.exists(original.path("new.db"))), (1, False))
            return done.stderr
        cases = [
            (lambda r: r.update(report=2), ": report: is version 2, later than this program knows (1)"),
            (lambda r: r.update(report=0), ": report: should be a version"),
            (lambda r: r["adapters"][0]["disks"][1].update(id=0), "adapters[0].disks[1].id: is another disk's already"),
            (lambda r: r["adapters"][0]["disks"][1].update(validSize=1 << 60),
             "adapters[0].disks[1].validSize: is more than the disk has"),
            (lambda r: r["adapters"][0]["blocks"][0].update(HDID=200), "adapters[0].blocks[0].disk: there is no disk 200"),
            (lambda r: r["adapters"][0]["blocks"].pop(0), "adapters[0].arrays[0].virtualDisks[0].blocks: there is no block"),
            (lambda r: r["adapters"][0].update(type="LD-based"), "adapters[0].type: does not go with"),
            (lambda r: r["adapters"][1]["disks"][0].update(attributes=r["adapters"][1]["disks"][0]["attributes"] * 9),
             "adapters[1].disks[0].attributes: are more than a disk has"),
            (lambda r: r["adapters"][1]["disks"][0]["attributes"][0].update(worst=256),
             "adapters[1].disks[0].attributes: has no such value"),
            (lambda r: r["adapters"][1]["disks"][0].update(cipher=256), "disks[0].cipher: is larger than 255"),
            (lambda r: r["adapters"][0]["arrays"][0].update(slots=[{"slot": i, "size": 1024} for i in range(300)]),
             "slot: is larger than"),
            (lambda r: r["adapters"][1].update(id=0), "adapters[1].id: is another adapter's already"),
            (lambda r: r["adapters"][1].update(keys=[{"id": 0, "hasKey": True, "ports": [{"id": 1}, {"id": 1}]}]),
             "adapters[1].keys[0].ports[1].id: is another port's already"),
            (lambda r: r["adapters"][0]["features"].append("soup"),
             'adapters[0].features: has a word that is not known: "soup"'),
            (lambda r: [disk.update(reallocated=1 << 24) or (disk.pop("attributes"), disk.pop("temperature"))
                        for disk in r["adapters"][1]["disks"][:1]], "not go (16777215 would)"),
            (lambda r: r["adapters"][0]["arrays"][0].update(freeSize=5), "freeSize: is no multiple of 1024 bytes"),
        ]
        for spoil, message in cases:
            self.assertIn(message, refusal(spoil))

    def test_unknown_words(self):
        """Whatever object has a word that nobody knows: it is refused with its place."""
        known = set()
        for original in map(Bench, ("default", "troubled", RARE)):
            report = original.report("--records")
            for path, one in list(objects(report)):
                kind = re.sub(r"\[\d+\]", "", path)
                if kind in known or re.search(UNREAD, kind):
                    continue
                known.add(kind)
                one["temper"] = 1
                done = original.run("ktsim", "--state", original.path("new.db"), "create", "--lab", "-",
                                    text=json.dumps(report))
                self.assertIn(f"{path}.temper: is not a word that labs know here".lstrip("."), done.stderr)
                del one["temper"]

    def test_real_adapters(self):
        """What rules here would not make is shown as it was told: attributes, a battery's minutes, what slots say."""
        report = Bench("default").report("--records")
        adapter = report["adapters"][0]
        disk = next(disk for disk in report["adapters"][1]["disks"] if "attributes" in disk)
        disk["attributes"][0] = {"id": 1, "name": "Odd_Rate", "current": 9, "worst": 9, "threshold": 0, "raw": 77,
                                 "status": "ok"}
        adapter["battery"]["capacity"] -= 100
        slot = next(one for one in adapter["enclosures"][0]["elements"] if one["type"] == "arydev")
        slot.update(Status="01000000", flags=[])
        bench = Bench(report)
        twin = bench.report("--records")
        for one in (report, twin):
            for word in ("made", "host", "unread", "problems"):
                one.pop(word, None)
        self.assertEqual(places(report, twin), [])
        bench.sim("disk", "fail", "0", "--force")
        slot = next(one for one in bench.report()["adapters"][0]["enclosures"][0]["elements"] if one["type"] == "arydev")
        self.assertEqual(slot["status"], "critical")

    def test_what_is_under_way(self):
        """Spares at work, a battery that charges, attributes that were switched off: all goes on from where it was."""
        smart = ("ktsetup", "set", "-o", "pd", "-i", "4", "--waiveconfirmation", "--smart")
        original = Bench("default")
        original.run(*smart, "off")
        original.sim("disk", "fail", "1", "--force")
        original.sim("clock", "until", "idle")
        original.sim("disk", "fail", "3", "--force")
        original.sim("disk", "replace", "1")
        original.sim("battery", "charge", "8")
        original.sim("clock", "advance", "2873s")
        told = original.report()
        for array in told["adapters"][0]["arrays"]:
            for disk in array["virtualDisks"]:
                # Which disk is filled its block tells as well.
                disk.get("activity", {}).pop("disk", None)
        twin = Bench(told, original.now())
        self.same_reports(original, twin, "at once")
        for bench in (original, twin):
            bench.sim("clock", "advance", "10m")
        self.assertEqual(*[bench.report()["adapters"][0]["battery"] for bench in (original, twin)])
        ends = []
        for bench in (original, twin):
            bench.sim("clock", "until", "idle")
            bench.sim("disk", "replace", "3")
            bench.sim("clock", "until", "idle")
            bench.run(*smart, "on")
            # A percentage tells the time of its end to a few minutes.
            ends.append(json.loads(re.sub(r'"(TimeStamp|time|written|capacity)": *[^,}]*', r'"\1": 0',
                                          "\n".join(text_of(bench)))))
        self.assertIn("attributes", ends[0]["adapters"][0]["disks"][4])
        self.assertEqual(places(*ends), [])

    def test_what_was_told(self):
        """A spare that is too small is told of once for each loss; a free disk that goes is none."""
        original = Bench({"adapters": [{
            "type": "LD-based", "disks": [{"count": 5, "size": "500GB"}, {"size": "100GB", "spare": "global"}, {}],
            "virtualDisks": [{"level": "RAID6", "disks": [0, 1, 2, 3, 4]}]}]})
        switch = "ktsetup set -o hba --waiveconfirmation --autorebuild".split()
        for deeds, times in (("fail 0", 1), ("pull 6", 1), ("fail 1", 2)):
            original.sim("disk", *deeds.split(), "--force")
            for code in ("1", "4"):
                original.sim("event", "1", code)
            original.run(*switch, "off")
            twin = Twin(original, "--records")
            for bench in (original, twin):
                bench.run(*switch, "on")
            self.assertEqual(original.run("ktsetup", "event").stdout.count("disk 5 too small"), times)
            self.same_reports(original, twin, deeds, "--records")
            original.run(*switch, "off")

    def test_batteries(self):
        """One whose charger is broken and one that is all but empty are what they seem to be."""
        for deeds in (["relearn 0m", "charge 1", "+105s"], ["charger broken", "charge 60"]):
            original = Bench("default")
            for deed in deeds:
                original.sim(*(("clock", "advance", deed[1:]) if deed[0] == "+" else ("battery", *deed.split())))
            twin = Twin(original, "--records")
            self.same_reports(original, twin, str(deeds), "--records")
        for bench in (original, twin):
            bench.sim("clock", "advance", "5h")
        self.same_reports(original, twin, "no charger", "--records")

    def test_sizes(self):
        """What was made of all that there was grows with its disks on both; what has a size keeps it."""
        original = Bench({"adapters": [
            {"type": "array-based", "disks": [{"count": 5, "size": "500GB"}], "arrays": [{"disks": [0, 1, 2], "virtualDisks": [
                {"name": "stated", "size": "100GiB"}, {"name": "all"}]}]},
            {"type": "LD-based", "disks": [{"count": 6, "size": "500GB"}], "virtualDisks": [
                {"name": "stated", "level": "RAID1", "disks": [0, 1], "size": "100GiB"},
                {"name": "all", "level": "RAID1", "disks": [3, 4]}]},
            {"type": "LD-based", "DevID": 17200, "disks": [{"count": 3, "size": "500GB"}], "virtualDisks": [
                {"name": "stated", "level": "RAID1", "disks": [0, 1], "size": "100GiB"},
                {"name": "all", "level": "RAID1", "disks": [0, 1]}]}]})
        twin = Twin(original, "--records")
        for bench in (original, twin):
            for words in ("0 migrate -l 0 -r 5 -d 0,1,2,3", "1 migrate -l 0 -r 5 -d 0,1,2", "1 migrate -l 1 -r 5 -d 3,4,5",
                          "2 migrate -l 0 -r 5 -d 0,1,2", "2 migrate -l 1 -r 5 -d 0,1,2"):
                self.assertEqual(bench.run("ktsetup", *words.split(), text="y\n").returncode, 0, words)
                bench.sim("clock", "until", "idle")
        self.same_reports(original, twin, "sizes", "--records")

    def test_histories(self):
        """Whatever befell the adapters: the twin is like them, and stays so through the same commands."""
        for seed in range(HISTORIES):
            original = Past(seed)
            what = f"history {seed}:\n"
            for _ in range(original.chance.randrange(3, 10)):
                original.look()
                what += original.step(*(typed(original) if original.chance.randrange(2) else happening(original)))
            twin = Twin(original, "--records")
            self.compare(original, twin, what, "--records")
            for _ in range(3):
                original.look()
                (words,), text = typed(original)
                what += "twin: " + text
                theirs, its = (bench.run(*words, text=text) for bench in (original, twin))
                self.assertEqual((theirs.returncode, theirs.stdout), (its.returncode, its.stdout), what)
                original.now = {}
            self.same_reports(original, twin, what, "--records")
            fits_schema(self, original.report("--records"), what)
