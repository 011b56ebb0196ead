"""Random pairs of adapters on the same disks: ktcfg apply brings the one to what the other one's report says, whatever
either has been through, and a second apply does nothing.

usage: pairs_test.py [PAIRS [FIRST]], the pair's number being its seed."""
import os
import random
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "report"))
from frame import Bench  # noqa: E402  (the folder of the tests of reports)

LAB = {"adapters": [
    {"type": "array-based", "battery": True, "expanders": [{}], "enclosures": [{"id": 1}],
     "disks": [{"count": count, "type": kind, "size": size, "on": "expander", "enclosure": 1}
               for count, kind, size in ((7, "SATA", "2TB"), (3, "SATA", "4TB"), (2, "SAS", "2TB"))]},
    {"type": "LD-based", "portMultipliers": [{}, {}],
     "disks": [{"count": 2, "size": "1TB", "on": "HBA", "port": 0}, {"count": 5, "size": "1TB", "on": "PM", "port": 0}]},
    {"type": "LD-based", "DevID": 17200, "disks": [{"count": 4, "size": "1TB"}]}]}
LEVELS = {"0": (2, 4), "1": (2, 2), "5": (3, 5), "6": (4, 6), "10": (4, 4)}
RATES = {"--rebuildrate": "RebuildRate", "--initrate": "InitRate", "--migrationrate": "MigrationRate"}


class Adapters(Bench):
    """Adapters with a history."""

    def __init__(self, seed):
        super().__init__(LAB)
        self.random = random.Random(seed)
        for _ in range(self.random.randrange(2, 14)):
            self.random.choice([self.create, self.create, self.create, self.create_vd, self.create_vd, self.settings,
                                self.delete, self.spare, self.grow, self.mishap])(self.random.randrange(3))
        self.idle()

    def idle(self):
        self.sim("clock", "until", "idle")

    def tool(self, adapter, *words):
        return self.run("ktsetup", str(adapter), *words, text="y\n")

    def free(self, document, adapter):
        disks = document["adapters"][adapter]["disks"]
        free = [disk["id"] for disk in disks
                if disk["state"] == "healthy" and not disk["member"] and "spare" not in disk and disk["type"] == "SATA"]
        return self.random.sample(free, len(free))

    def create(self, adapter):
        free = self.free(self.report(), adapter)
        level = self.random.choice([level for level, (least, _) in LEVELS.items() if least <= len(free)] or [None])
        if level is None:
            return
        least, most = LEVELS[level]
        count = min(self.random.randint(least, most), len(free))
        disks = ",".join(map(str, free[:count - count % 2 if level == "10" else count]))
        name = self.random.choice("abcd")
        what = self.report()["adapters"][adapter]
        if name in [one["name"] for one in what.get("arrays", []) + what["virtualDisks"]]:
            return
        if adapter == 0:
            self.tool(0, "create", "-o", "array", "-r", level, "-d", disks, "-n", name, "-b",
                      self.random.choice(["64", "128"]))
            self.create_vd(0)
        else:
            size = ["-s", str(self.random.randrange(200, 900000)), "--forcesize"]
            self.tool(adapter, "create", "-o", "vd", "-r", level, "-d", disks, "-n", name,
                      *(size if self.random.random() < 0.5 else []))

    def arrays(self):
        return self.report()["adapters"][0]["arrays"]

    def create_vd(self, _):
        for array in self.random.sample(self.arrays(), len(self.arrays()))[:1]:
            name = self.random.choice("uvwx")
            if name in [vd["name"] for vd in array["virtualDisks"]]:
                continue
            size = ["-s", str(self.random.randrange(100, 2000000))] if self.random.random() < 0.7 else []
            self.tool(0, "create", "-o", "vd", "-a", str(array["id"]), "-n", name, "-c",
                      self.random.choice(["on", "off", "auto"]), *size)

    def settings(self, adapter):
        self.tool(adapter, "set", "-o", "hba", self.random.choice(list(RATES)), str(self.random.randrange(20, 100)))
        for array in self.arrays()[:1]:
            self.tool(0, "set", "-o", "array", "-i", str(array["id"]), "-c", self.random.choice(["on", "off"]))
            for vd in array["virtualDisks"][:1]:
                self.tool(0, "set", "-o", "vd", "-i", str(vd["id"]), "-p", self.random.choice(["ra", "none"]))

    def delete(self, adapter):
        what = self.report()["adapters"][adapter]
        for owner in [what, *what.get("arrays", [])[:1]]:
            for vd in owner["virtualDisks"][:1]:
                self.tool(adapter, "delete", "-o", "vd", "-i", str(vd["id"]), "--waiveconfirmation")
            if owner is not what and self.random.random() < 0.5:
                self.tool(adapter, "delete", "-o", "array", "-i", str(owner["id"]), "--waiveconfirmation")

    def spare(self, adapter):
        free = self.free(self.report(), adapter)
        arrays = self.arrays()
        if free and arrays and adapter == 0 and self.random.random() < 0.5:
            self.tool(0, "assign", "-o", "array", "-d", str(free[0]), "-a", str(self.random.choice(arrays)["id"]))
        elif free:
            self.tool(adapter, "assign", "-d", str(free[0]))

    def grow(self, adapter):
        self.idle()
        document = self.report()
        what = document["adapters"][adapter]
        free = self.free(document, adapter)
        for one in (what.get("arrays", []) + what["virtualDisks"])[:1]:
            disks = [disk for disk in one["disks"] if disk is not None] + free[:self.random.randint(1, 2)]
            level = self.random.choice(["5", "6", one["level"][4:]])
            self.tool(adapter, "migrate", "-l", str(one["id"]), "-r", level, "-d", ",".join(map(str, disks)))
        self.idle()

    def mishap(self, adapter):
        disk = str(self.random.randrange(4))
        for words in (["fail", disk, "--force"], ["replace", disk]):
            self.run("ktsim", "disk", *words, "-a", str(adapter))
            self.idle()


def shape(document, there):
    """What the one must have like the other, its disks as `there` counts them: by their serial numbers, else their bays."""
    adapters = []
    for adapter, own in zip(document["adapters"], there["adapters"]):
        by_serial = {disk["serial"]: disk["id"] for disk in own["disks"]}
        ids = {disk["id"]: by_serial.get(disk["serial"], disk["id"]) for disk in adapter["disks"]}

        def vds(owner):
            return {vd["name"]: (vd["cache"], vd["readAhead"], vd["size"]) for vd in owner["virtualDisks"]}

        def laid(owner):
            return owner["level"], owner["stripe"], owner.get("parity"), sorted(str(ids.get(disk)) for disk in owner["disks"])

        adapters.append({
            "arrays": {array["name"]: (laid(array), array["writeCache"], sorted(ids[disk] for disk in array["spares"]),
                                       vds(array))
                       for array in adapter.get("arrays", [])},
            "vds": {vd["name"]: laid(vd) for vd in adapter["virtualDisks"]},
            "sizes": vds(adapter),
            # One that has begun its work at once, for something that was left alone, was made all the same.
            "spares": sorted(ids[disk["id"]] for disk in adapter["disks"] if disk.get("spare") == "global"
                             and (document is there or not disk.get("spareInUse"))),
            "rates": {rate: adapter["config"][rate] for rate in RATES.values()}})
    return adapters


def differs(now, wanted, path=""):
    """The first thing of `wanted` that `now` does not have; sizes may differ by a row of stripes."""
    if isinstance(wanted, dict):
        for word, value in wanted.items():
            if word not in now:
                return f"{path}/{word} is missing"
            found = differs(now[word], value, f"{path}/{word}")
            if found:
                return found
        return None
    if isinstance(wanted, tuple):
        return next(filter(None, (differs(one, other, path) for one, other in zip(now, wanted))), None)
    if isinstance(wanted, int) and not isinstance(wanted, bool) and wanted > 100000000:
        return None if abs(now - wanted) <= 16 * 1024 * 1024 else f"{path} is {now}, not {wanted}"
    if isinstance(wanted, list) and all(isinstance(one, int) for one in wanted):  # spares: further ones may stay
        return None if set(wanted) <= set(now) else f"{path} has the spares {now}, not {wanted}"
    return None if now == wanted else f"{path} is {now}, not {wanted}"


def bring(machine, file):
    """Applies until all is as wanted; answers what was said last, or None."""
    for _ in range(12):
        done = machine.run("ktcfg", "apply", "-f", file, "--delete", "--yes")
        machine.idle()
        if done.returncode in (0, 3):
            return None
        if "what goes on to have ended" not in done.stdout:
            return done.stdout + done.stderr
    return "never done"


def excused(machine, said, there, wanted):
    """Disks that were replaced by others, failed for good or left something broken are no fault of a plan."""
    if "there is no disk with serial number " in said:
        return True
    small = re.search(r"adapters\[(\d)\].disks: disk (\d+) .* is too small to stand by for anything", said)
    if small:  # what stays is too large for it; then the adapter says the same
        return machine.tool(small.group(1), "assign", "-d", small.group(2)).returncode != 0
    broken = [disk for adapter in there["adapters"] for disk in adapter["disks"] if disk["state"] != "healthy"]
    odd = [one for adapter in wanted["adapters"] for one in adapter.get("arrays", []) + adapter["virtualDisks"]
           if None in one["disks"] or one.get("status") in ("offline", "foreign", "conflicted", "not importable")]
    return bool(broken or odd) and ("wanted.json: " in said or "Not reachable: " in said)


def one_pair(seed):
    there, other = Adapters(2 * seed), Adapters(2 * seed + 1)
    wanted = other.report()
    file = there.save("wanted.json", wanted)
    before = there.report()
    said = bring(there, file)
    if said is not None:
        return "excused" if excused(there, said, before, wanted) else said
    now = there.report()
    found = next(filter(None, map(differs, shape(now, now), shape(wanted, now))), None)
    if found:
        return found
    again = there.run("ktcfg", "apply", "-f", file, "--yes")
    if again.returncode != 0 or not again.stdout.startswith("Nothing to do"):
        return again.stdout + again.stderr
    check = there.run("ktsim", "check")
    return "reached" if check.returncode == 0 else check.stdout


def main():
    pairs = int(sys.argv[1]) if len(sys.argv) > 1 else 12
    first = int(sys.argv[2]) if len(sys.argv) > 2 else 0
    ends = {"reached": 0, "excused": 0}
    bad = []
    for seed in range(first, first + pairs):
        end = one_pair(seed)
        ends[end] = ends.get(end, 0) + 1
        if end not in ("reached", "excused"):
            bad.append(seed)
            print(f"pair {seed}:\n{end}", flush=True)
    print(f"{pairs} pairs, {ends['reached']} reached, {ends['excused']} not reachable for their disks; failed: {bad}")
    # With too many excuses nothing would be tested.
    return 1 if bad or ends["excused"] * 3 > pairs else 0


sys.exit(main())
