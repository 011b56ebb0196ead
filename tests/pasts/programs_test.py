"""The programs in random pasts: adapters of random labs, and what befalls them, is asked of them and is wanted of them,
right words mostly. A past is its seed. programs.txt has a line for each: a digest of every step, of the words and of all
that was answered.

usage: programs_test.py FIRST COUNT [write]. Programs that do anything else than before make other digests. Where that is
meant, "write" (from 0 on) writes the lines anew. Where it is not, compare the steps that are kept in the folder that
PASTS names with those that a build from before leaves there."""
import json
import os
import random
import re
import shutil
import socket
import sys
import zlib

from frame import BIN, MOMENT, Bench

STEPS = 36
DIGESTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "programs.txt")
LABS = os.path.join(os.environ["SOURCE"], "libktraid", "sim", "labs", "")
# What is done to adapters. A word in capitals is rolled, the same one for the whole line; of what is in brackets one half
# is left out.
DEEDS = {kind: [line.strip() for line in lines.strip().split("\n")] for kind, lines in {
    "happens": """
        ktsim disk fail PD OTHER -a AD [-f]; ktsim clock advance TIME
        ktsim disk pull PD -a AD [-f]; ktsim disk insert PD -a AD
        ktsim disk pull PD OTHER -a AD -f; ktsim clock advance TIME; ktsim disk insert OTHER PD -a AD
        ktsim disk pull PD -a AD -f; ktsim disk insert OTHER --from COPY -a AD; ktsim disk insert PD -a AD
        ktsim --state COPY create --at DATE -f --lab BUILTIN; ktsim disk insert PD OTHER --from COPY [--of FEW] -a AD
        ktsim disk replace PD -a AD [--size SIZE] [--type TYPE] [--sector SECTOR] [--model Gannet] [-f]
        ktsim disk age PD AGE -a AD [NUMBER]; ktsim disk trip PD -a AD [--clear]
        ktsim disk damage PD -a AD [--lba LBA] [--count COUNT] [-f]; ktsetup AD mp -d PD; ktsim clock advance 3h
        ktsim disk corrupt PD -a AD [--lba LBA] [--count COUNT] [-f]; ktsetup AD cc -l VD; ktsim clock until idle
        ktsim battery remove -a AD [-f]; ktsim battery show -a AD; ktsim battery insert -a AD
        ktsim battery charge NUMBER -a AD; ktsim battery temperature DEGREES -a AD; ktsim battery show -a AD
        ktsim battery voltage 3.7 -a AD; ktsim battery charger CHARGER -a AD; ktsim battery show -a AD
        ktsim battery relearn TIME -a AD; ktsim clock advance TIME; ktsim battery show -a AD
        ktsim enclosure pull ENC -a AD [-f]; ktsim cable show -a AD; ktsim enclosure insert ENC -a AD
        ktsim cable pull PORT -a AD [-f]; ktsim cable show -a AD; ktsim status; ktsim cable insert PORT -a AD
        ktsim enclosure set ENC ELEMENT FEW CONDITION -a AD; ktsim enclosure show -a AD
        ktsim enclosure reading ENC tpr FEW NUMBER; ktsim enclosure reading ENC ELEMENT 0 NUMBER -a AD
        ktsim event CLASS CODE -a AD [-d PD] [-s FEW] [-p LBA NUMBER] [--sense HEX] [-n COUNT]; ktreport events -a AD
        ktsim image make -t LABEL [-v VERSION] [--vendor NUMBER] [--size COUNT] [--damage SPOILT] NEW.img
        ktsim image microcode -m Petrel -v VERSION [--size COUNT] [--damage SPOILT] NEW.img
        ktsim image damage -t LABEL [--part PART] -a AD; ktsim power off; ktsim status; ktsim power on; ktreport show
        ktsim power off [--pull]; ktsim disk pull PD -f; ktsim reboot; ktsim power on; ktsim disk insert PD; ktsim reboot
        ktsim clock show; ktsim clock advance TIME; ktsim clock until idle; ktsim clock stop
        ktsim clock set DATE; ktsim clock show
        ktsim --state COPY clock speed SPEED; ktsim --state COPY clock start; ktsim --state COPY clock show
        ktsim fault CALL NUMBER [--after FEW] [--times FEW] [-a AD]; ktsim fault list; VIEW; ktsim status; ktsim fault clear
        ktsim fault CALL 5 --after COUNT; ktreport json [-a AD]; ktsim fault list; ktsim fault clear
        ktsim fault CALL --kind KIND [--after FEW]; ktsim fault list; ktreport show; ktsim fault clear""",
    "asked": """
        ktsim status [--all] [-a AD]; ktsim check; ktsim enclosure show -a AD
        ktsim run -- nothing; ktsim event --list; ktsim fault --list-calls; ktsim create --list; ktreport check --names
        ktsim run -- ktsetup.path AD info -o hba
        ktreport [show] [--all] [-a AD] [--thresholds LIMITS]
        TERMINAL ktreport show [--all]; TERMINAL ktreport wait --timeout 0
        ktreport map [--csv] [-a AD]; TERMINAL ktreport map
        ktreport check [--only PROBLEM] [--ignore PROBLEM] [--long] [-a AD] [--thresholds LIMITS]; ktreport check --long
        ktreport json [--records] [-a AD] [--thresholds LIMITS]
        ktreport metrics [--thresholds LIMITS]; ktreport metrics -o NEW.prom
        ktreport page [-a AD] [--thresholds LIMITS]; ktreport page -o NEW.html
        ktreport events [--since NUMBER] [--json] [--journal] [--quiet-progress] [-a AD]
        ktreport events --cursor CURSOR; ktsim event CLASS CODE -n COUNT; ktreport events --cursor CURSOR [--json]
        ktreport diff KEPT [--all] [--json]; ktreport diff KEPT REPORT [--all]
        ktreport wait [--vd VD] [-a AD] --timeout 0s; ktreport wait --array ARRAY --timeout 0; ktreport wait --pd PD --timeout 0m""",
    "told": """
        ktreport show [--all] [-a FEW] --from REPORT [KEPT]
        ktreport check [--long] --from REPORT [KEPT]
        ktreport json --from REPORT [--thresholds LIMITS]
        ktreport metrics --from REPORT KEPT
        ktreport map [-a FEW] --from REPORT [--csv]; ktreport events --from REPORT [--json]
        ktreport page --from REPORT [KEPT]
        ktreport diff KEPT REPORT [--json]
        ktsim --state COPY create --at DATE --lab FILE [-f]; ktsim --state COPY status --all; ktsim --state COPY check
        ktsim --state COPY create --at DATE --lab FILE -f; ktsim --state COPY run -- ktreport.path json --records
        ktsim --state COPY create --at DATE --lab BUILTIN -f; ktsim --state COPY show""",
    "planned": """
        ktcfg [AD] plan -f WANTED [--delete] [--check]
        ktcfg apply -f WANTED [--delete] [--yes]
        ktcfg apply -f WANTED --delete --yes
        ktcfg plan -f KEPT --delete [--from REPORT]
        ktcfg plan -f FILE [--from KEPT] [--check]
        ktsim rehearse --at DATE [--until SPAN] [--json] -- ktsetup AD TYPED
        ktsim rehearse [--at DATE] --from KEPT [--until SPAN] [--json] -- ktsetup AD TYPED
        ktsim rehearse --from KEPT --script SCRIPT [--until SPAN] --keep NEW.db [--json]; ktsim --state NEW.db status
        ktsim rehearse [--at DATE] --from KEPT [--from FILE] -- ktsetup AD info -o vd
        ktsim rehearse --at DATE -- ktcfg apply -f WANTED --yes""",
    "typed": """
        create -o array -r LAYOUT --waiveconfirmation
        create -o vd -a ARRAY -n NUMBER [-s 3000] --waiveconfirmation
        create -o vd -r LAYOUT [-s 9000] -n NUMBER --waiveconfirmation
        assign -d FREE --waiveconfirmation
        assign -o array -a ARRAY -d FREE --waiveconfirmation
        cc -l VD [-t check] [-a pause]
        init -l VD
        mp -d PD
        rebuild -l VD -d FREE
        migrate GROWN; y
        delete -o vd -i VD -f --waiveconfirmation
        delete -o array -i ARRAY --waiveconfirmation
        set -o vd -i VD -n NUMBER
        set -o array -i ARRAY -n NUMBER -c off --waiveconfirmation
        set -o hba --rebuildrate NUMBER --initrate NUMBER
        set -o pd -i PD --status offline --waiveconfirmation
        import -i VD
        locate -i PD -a on"""}.items()}
DICE = {
    "PORT": range(8), "ENC": "1 1 1 2", "NUMBER": range(100), "COUNT": range(1, 9), "FEW": range(3), "CLASS": range(8),
    "CODE": range(40), "LBA": range(0, 4000000000, 77777777), "DEGREES": "-3.5 21 48.25 77", "SPAN": "idle idle 30m 5h", "SPEED": "1 2.5 1000",
    "TIME": "1s 40s 7m 50m 3h 2h30m 1d 2w", "DATE": ["2026-01-05 09:30:00", "2024-02-29 23:59:59", "2038-01-19 03:14:08"],
    "SIZE": "500GB 1TB 2TB 4TB 1.5TB 0.9GB 1GB 100000TB 100001TB 4XB", "SECTOR": "512 4096 2048", "TYPE": ["SATA", "SAS", "SATA SSD", "SAS SSD", "PATA", "ATAPI"],
    "AGE": "reallocated pending uncorrectable read-errors spin-retries link-errors hours wear warmth",
    "CHARGER": "broken working", "HEX": "00 0102 70000300fF 7G", "ELEMENT": "pow fan tpr dor alm dpl vlt arydev dev",
    "CONDITION": "ok ok ac-fail dc-fail overheated off missing unknown failed open unlocked sounding muted",
    "LABEL": "bios firmware autoload bin raw", "VERSION": "1.2.3.4 10.0.15.2108 1.2.3 1.2.3.4. 1.+2.3.4 65535.1.2.3 1.2.3.65536",
    "PART": "header data both", "SPOILT": "none header data cut", "KIND": "count text next",
    "CALL": "KT_Adapter_GetInfo KT_LD_GetInfo KT_LD_GetStatus KT_LD_GetConfig KT_DG_GetInfo KT_PD_GetHDInfo_Ext "
            "KT_PD_GetHDRaidStatus KT_PD_GetConfig KT_PD_GetBGAStatus KT_PD_GetSmartStatus KT_PD_GetMBRInfo KT_PD_GetSMARTInfo "
            "KT_PD_GetPMInfo KT_PD_GetExpanderInfo KT_BLK_GetInfo KT_ENC_GetEnclosureInfo KT_BBU_GetInfo KT_LD_GetTargetLDInfo",
    "PROBLEM": "vd-degraded array-no-spare disk-offline disk-worn battery-weak unread vd-offline"}
LEVELS = [("0", 2), ("1", 2), ("5", 3), ("5", 4), ("6", 4), ("10", 4)]
# Words that are wrong at most places, and values that often are.
WRONG = ["", "-1", "0", "7", "255", "65535", "99999999999", "1.5", "x", "no\x1bsuch", "--no", "-h", "RAID5", "2026-02-30 00:00:00"]
ODD = [None, True, False, -1, 0, 1, 2, 5, 255, 65535, 1 << 40, 0.5, "", "x", "no\x1bsuch", "1TB", "RAID0", "RAID6", "RAID10",
       "degraded", "offline", "foreign", "rebuild", "paused", "running", "global", "dedicated", "SAS", "ATAPI", "expander",
       "LD-based", [], {}, [0], [1, None], [{}]]


def some(chance, **words):
    """Some of the words, each with one of its values."""
    return {word: chance.choice(values) for word, values in words.items() if chance.randrange(3) == 0}


def changed(chance, document):
    """The document with something in it missing, or with another value."""
    document = json.loads(json.dumps(document))
    here, key = [document], 0
    while isinstance(here[key], (dict, list)) and here[key] and (here == [document] or chance.randrange(9)):
        here = here[key]
        key = chance.choice(list(here) if isinstance(here, dict) else range(len(here)))
    old = here[key]
    if chance.randrange(5) == 0:
        del here[key]
    elif isinstance(old, int) and chance.randrange(3):
        here[key] = max(old + chance.choice([-1, 1, 1, 3, 1000]), 0)
    elif isinstance(old, list) and old and chance.randrange(2):
        old.append(chance.choice(old))
    elif isinstance(old, dict) and chance.randrange(2):
        old["more"] = 1
    else:
        here[key] = chance.choice(ODD)
    return document


def random_vd(chance, ill):
    vd = {"size": chance.choice(["10GiB", "50GB", "60GiB"]),
          **some(chance, name=[f"v{chance.randrange(99)}", "x" * 15], cache=["on", "off", "auto"], os=[True], readAhead=[True],
                 initialized=[False], linkedDisk=[0, 1])}
    if chance.randrange(4) == 0:
        kinds = ["rebuild", "check", "check and fix", "quick init", "foreground init", "background init"]
        vd["activity"] = {"kind": chance.choice(kinds),
                          **some(chance, percent=[5, 50, 99], state=["paused", "aborted", "interrupted", "running"])}
    if ill and chance.randrange(4) == 0:
        vd["status"] = chance.choice(["degraded", "offline", "foreign", "importable", "partially optimal", "conflicted"])
    return vd


def random_disks(chance, adapter, arrays, ill):
    """Disks for it, the first twelve alike, and where they are."""
    place = {}
    if arrays and chance.randrange(3):
        elements = [{"type": "fan", "condition": "failed", "count": 2}, {"type": "tpr", "text": "top"}, {"type": "dev", "count": 4}]
        adapter.update(expanders=[{}] * chance.randrange(1, 3), enclosures=[
            {"id": 1, **some(chance, slots=[24, 30])}, {"id": 2, "elements": elements}])
        place = {"on": "expander", "enclosure": 1}
    disk = {"type": chance.choice(["SATA", "SAS"] if arrays else ["SATA"]), "size": chance.choice(["1TB", "2TB", "500GB"])}
    disks = [{"count": 12, **disk, **place}, {"count": 2, "type": "SATA SSD", "size": "240GB"}]
    for _ in range(chance.randrange(4)):
        disks.append({**disk, **some(
            chance, state=["offline", "foreign"] if ill else ["healthy"], spare=["global"], os=[True], mbr=[True],
            smartTripped=[True], sector=[4096], patrol=[{"percent": 40}, {"percent": 9, "state": "paused"}], badSectors=[[7, 99]],
            firmware=["F1"], size=["3TB", "250GB"], type=["SATA", "SAS SSD" if arrays else "SATA SSD", "ATAPI"], serial=["SERIAL"])})
    return disks


def random_adapter(chance, ill):
    """An adapter as labs describe it."""
    arrays = chance.randrange(3) != 0
    adapter = {"type": "array-based" if arrays else "LD-based", "battery": arrays and chance.choice([True, {"status": 5, "percentage": 40}]),
               **some(chance, ModelNumber=["Tarn R16"], PortCount=[12, 16], config=[{"RebuildRate": 80, "AutoRebuildOn": 0}]),
               "events": [{"Class": chance.choice([0, 0, 1, 2, 10, 12, 13, 16, 34, 35]), "Code": chance.choice([*range(40), 65535]),
                           "DeviceID": chance.randrange(4), "secondsAgo": 90, "Params": [1, 2]} for _ in range(chance.randrange(30))]}
    if not arrays:
        adapter.update(some(chance, portMultipliers=[[{}, {}]], keys=[
            [{"id": 2, "key": "k", "password": "p", "ports": [{"id": 1, "enabled": True}]}]]))
    adapter["disks"] = random_disks(chance, adapter, arrays, ill)
    owners, first = [], 0
    for _ in range(chance.choice([1, 2, 3, 4])):
        level, count = chance.choice(LEVELS + ([("50", 6), ("60", 8)] if arrays else [("1E", 3)]))
        if first + count > 12:
            break
        owner = {"level": "RAID" + level, "disks": list(range(first, first + count)), **some(chance, stripe=[16, 128], name=[f"demo{first}"])}
        if not arrays and chance.randrange(3) == 0:
            owner.update(level=chance.choice(["TANDEM SAFE", "TANDEM CAPACITY", "HYBRID"]), disks=[12, 13, first])
        elif level in "156" and ill and chance.randrange(3) == 0:
            owner["disks"][chance.randrange(count)] = None
        first += count
        if arrays:
            owner["virtualDisks"] = [random_vd(chance, ill) for _ in range(chance.choice([0, 1, 1, 2]))]
            owner.update(some(chance, writeCache=[False], spares=[[12]] if level != "0" and not owners else [[]]))
        else:
            owner.update(random_vd(chance, ill))
        owners.append(owner)
    adapter["arrays" if arrays else "virtualDisks"] = owners
    return adapter


def free_disks(adapter):
    return [disk["id"] for disk in adapter.get("disks", [])
            if disk.get("state") == "healthy" and not disk.get("member") and not disk.get("spare")]


def wish(chance, adapter):
    """Lets something else be wanted of an adapter, as a report tells it."""
    arrays = adapter.get("type") == "array-based"
    owners = adapter.setdefault("arrays" if arrays else "virtualDisks", [])
    free = [disk for disk in free_disks(adapter) if all(disk not in owner["disks"] for owner in owners)]
    chance.shuffle(free)
    owner = chance.choice(owners) if owners else {"disks": []}
    inner = owner.setdefault("virtualDisks", []) if arrays else owners
    way = chance.randrange(12)
    if way < 3:
        level, count = chance.choice(LEVELS)
        owners.append({"name": f"new{len(owners)}", "level": "RAID" + level, "disks": free[:count], **some(chance, stripe=[16, 128])})
        if arrays:
            owners[-1].update(some(chance, spares=[free[count:count + 1]], virtualDisks=[[{"size": "20GiB"}, {"cache": "off"}], [{}]]))
    elif way == 3 and inner:
        inner.remove(chance.choice(inner))
    elif way == 4 and owners:
        owners.remove(chance.choice(owners))
    elif way == 5 and inner:
        chance.choice(inner).update(some(chance, name=["other", "x y"], cache=["on", "off", "auto"], readAhead=[True, False], size=["10GiB"]))
    elif way == 6:
        owner.update(some(chance, name=["called"], writeCache=[True, False], spares=[free[:1], free[:2], []], stripe=[32]))
    elif way == 7:
        owner["disks"] = owner["disks"] + free[:chance.randrange(3)]
        owner.update(some(chance, level=["RAID0", "RAID5", "RAID6", "RAID10"]))
    elif way == 8 and arrays:
        inner.append({"name": "more", **some(chance, size=["5GiB", "3TB"], cache=["off"])})
    elif way == 9:
        adapter.setdefault("config", {}).update(some(chance, RebuildRate=[1, 99], AutoRebuildOn=[0, 1], AlarmOn=[0], InitRate=[7]))
    elif way == 10:
        for disk in adapter.get("disks", []):
            disk.update({"spare": "global"} if disk["id"] in free[:2] else {"spare": None} if chance.randrange(3) == 0 else {})
    elif way == 11:
        adapter.pop(chance.choice(["serial", "disks", "config", "arrays", "virtualDisks"]), None)


def wanted(chance, report):
    """What somebody may want of the adapters that the report tells."""
    told = ("type", "serial", "config", "disks", "arrays", "virtualDisks")
    adapters = [json.loads(json.dumps({word: adapter[word] for word in told if word in adapter})) for adapter in report["adapters"]]
    for adapter in adapters:
        well = {disk["id"] for disk in adapter.get("disks", []) if disk.get("state") == "healthy"}
        for word in ("arrays", "virtualDisks"):
            adapter[word] = [owner for owner in adapter.get(word, []) if well.issuperset(owner["disks"])]
            for owner in adapter[word]:
                for one in [owner, *owner.get("virtualDisks", [])]:
                    one.pop("status", None)
    for _ in range(chance.choice([1, 1, 2, 3, 4, 5]) if adapters else 0):
        wish(chance, chance.choice(adapters[:2]))
    return {"adapters": adapters}


class Past(Bench):
    def __init__(self, seed):
        super().__init__("empty")
        self.chance = chance = random.Random(seed)
        self.seed, self.kept, self.files, self.digests, self.different = seed, [], 0, [], ""
        # Nothing else of whoever runs it decides what is said.
        self.environment = {word: value for word, value in self.environment.items()
                            if word in ("PATH", "LD_LIBRARY_PATH", "TMPDIR", "TZ", "KTRAID_SIM") or "SAN_" in word}
        if seed % 3 == 0:
            with open(LABS + ["default", "troubled", "hostile"][seed // 3 % 3] + ".json", encoding="ascii") as file:
                self.lab = json.load(file)
        else:
            ill = chance.randrange(2)
            self.lab = {"adapters": [random_adapter(chance, ill) for _ in range(chance.choice([1, 2, 2, 3]))]}
            if chance.randrange(3) == 0:
                self.lab["adapters"].append({"count": 3, "type": "LD-based", "disks": [{"count": 19}]})
        self.step([["ktsim", "create", "-f", "--lab", self.save("lab.json", self.lab), "--at", MOMENT]])
        state = json.loads(self.sim("show"))
        for adapter in state["adapters"]:
            for element in adapter.get("enclosureElements", [])[:60]:
                element["status"] = f"{chance.choice([1, 1, 2, 5]):02x}{chance.randrange(1 << 24):06x}"
        self.step([["ktsim", "create", "-f", "--lab", self.save("state.json", state)], ["ktsim", "enclosure", "show"]])

    def report(self, *words):
        """The report, as if it were made at another time and place."""
        if words not in self.now:
            self.now[words] = dict(json.loads(self.run("ktreport", "json", *words).stdout), made="2026-01-05T08:00:00Z", host="here")
        return self.now[words]

    def look(self):
        """Takes the adapter that the next steps are about."""
        adapters = self.report()["adapters"]
        self.adapter = self.chance.choice([0, 0, 0, 1, 1, 2]) % max(len(adapters), 1)
        self.there = dict(adapters[self.adapter]) if adapters else {}
        self.there["virtualDisks"] = self.there.get("virtualDisks", []) + [
            vd for array in self.there.get("arrays", []) for vd in array.get("virtualDisks", [])]

    def free(self):
        """Disks that are free and of one type."""
        types = {disk["id"]: disk.get("type") for disk in self.there.get("disks", [])}
        free = free_disks(self.there)
        first = self.chance.randrange(len(free) or 1)
        return [disk for disk in free[first:] + free[:first] if types[disk] == types[free[first]]] or [0]

    def one(self, of):
        return self.chance.choice([one["id"] for one in self.there.get(of, [])] or [0])

    def new(self, content):
        self.files += 1
        return self.save(f"{self.files}.json", content)

    def document(self, reports):
        """What tells of adapters, whole or with mistakes in it."""
        chance = self.chance
        kind = 2 if reports else chance.randrange(4)
        if kind < 2:
            document = json.loads(self.sim("show")) if kind else self.lab
        else:
            document = self.report(*chance.choice([["--records"], []]))
        clock = {word: value for word, value in document.items() if word == "clock"}
        for _ in range(chance.choice([0, 1, 1, 2])):
            document = {**changed(chance, document), **clock}
        text = json.dumps(document)
        return self.new(text if chance.randrange(20) else text[:chance.randrange(len(text))])

    def copied(self):
        return shutil.copy(self.path("state.db"), self.path("copy.db"))

    def keep(self):
        if not self.kept or self.chance.randrange(3) == 0:
            self.kept.append(self.new(self.report(*self.chance.choice([["--records"], []]))))
        return self.chance.choice(self.kept)

    def grown(self):
        owner = self.chance.choice((self.there.get("arrays") or self.there.get("virtualDisks")) or [{"id": 0, "disks": []}])
        disks = [disk for disk in owner["disks"] if disk is not None] + self.free()[:self.chance.randrange(3)]
        return f"-l {owner['id']} -r {self.chance.choice(['0', '5', '6', '10'])} -d {','.join(map(str, disks))}"

    def layout(self):
        level, count = self.chance.choice(LEVELS)
        return f"{level} -d {','.join(map(str, self.free()[:count]))}"

    def command(self):
        """A command that the adapter may understand, as words."""
        arrays = self.there.get("type") == "array-based"
        fit = [line for line in DEEDS["typed"] if ("vd -r" not in line if arrays else "rray" not in line.lower())]
        return self.filled(self.chance.choice(fit))

    def rolled(self, word):
        chance = self.chance
        if word in DICE:
            values = DICE[word]
            return str(chance.choice(values.split() if isinstance(values, str) else values))
        if word.startswith("NEW."):
            self.files += 1
            return self.path(f"{self.files}{word[3:]}")
        limits = ("disk-hot", "disk-media-errors", "ssd-worn", "ssd-worn-out", "battery-hot", "battery-weak", "battery-charging-long")
        rules = {
            "AD": lambda: self.adapter, "PD": lambda: self.one("disks"), "OTHER": lambda: self.one("disks"),
            "VD": lambda: self.one("virtualDisks"), "ARRAY": lambda: self.one("arrays"), "FREE": lambda: self.free()[0],
            "GROWN": self.grown, "LAYOUT": self.layout, "COPY": self.copied, "KEPT": self.keep,
            "FILE": lambda: self.document(False), "REPORT": lambda: self.document(True),
            "WANTED": lambda: self.new(wanted(chance, self.report()) if chance.randrange(5) else self.lab),
            "LIMITS": lambda: self.new(some(chance, **{name: [0, 30, 45.5, 200] for name in limits})),
            "BUILTIN": lambda: chance.choice(["default", "empty", "troubled", "hostile", "none"]),
            "CURSOR": lambda: self.path("cursor"), "VIEW": lambda: chance.choice(["ktreport show", "ktreport metrics", "ktreport page",
                                                                                 "ktreport check --long", "ktreport events"]),
            "SCRIPT": lambda: self.new("# tried\n\n" + "".join(
                f"ktsetup {self.adapter} {' '.join(self.command()[0])}\n" for _ in range(chance.randrange(1, 4)))),
            "TYPED": lambda: " ".join(self.command()[0])}
        return str(rules[word]()) if word in rules else word.replace("ktsetup.path", os.path.join(BIN, "ktsetup")).replace(
            "ktreport.path", os.path.join(BIN, "ktreport"))

    def filled(self, line):
        """The commands that a line stands for, now and then with something wrong."""
        chance, same, lines = self.chance, {}, []
        line = re.sub(r"\[([^\]]*)\]", lambda part: part[1] if chance.randrange(2) else "", line)
        for words in line.split(";"):
            lines.append([])
            for word in words.split():
                same[word] = same.get(word) or self.rolled(word)
                lines[-1] += same[word].split() if word in ("GROWN", "LAYOUT", "TYPED", "VIEW") else [same[word]]
        if chance.randrange(8) == 0 and "wait" not in line:
            words = chance.choice(lines)
            at = chance.randrange(words.index("--at") + 2 if "--at" in words else 1, len(words) + 1)
            words[at:at + chance.randrange(2)] = [chance.choice(WRONG)] * chance.randrange(3)
        return lines

    def plain(self, text):
        """The text without what is of this run alone, and a page's without what is of every page."""
        for word, instead in ((self.folder.name, "FOLDER"), (os.path.abspath(BIN), "BIN"), (BIN, "BIN")):
            text = text.replace(word, instead)
        host = re.escape(socket.gethostname())
        text = re.sub(rf'(?m)((?: on |^|"){host}(?=[,\n"])|"made": ?"[^"]*"|ktsim-\w{{6}}|[-\d]+ [:\d]+ UTC(?=, running)|'
                      r'(?<=^ktraid_read_)\w+ [-.e\d]+$)', "...", text)
        return re.sub(r'(?s)<!doctype.*?(\n?\{"meanings":.*\]\}).*', r"\1", text, flags=re.I)

    def step(self, lines, text=""):
        told, self.now = "", {}
        for words in lines:
            if words[0] == "TERMINAL":
                status, said = self.on_terminal(*words[1:])
            else:
                done = self.run(*words, text=text)
                status, said = done.returncode, done.stdout + done.stderr
            told += f"> {' '.join(words)}\n{said}status {status}\n"
            if words[-1].endswith(".img") and os.path.exists(words[-1]):
                with open(words[-1], "rb") as file:
                    told += f"{zlib.crc32(file.read())}\n"
        told = self.plain(told)
        if "PASTS" in os.environ:
            with open(os.path.join(os.environ["PASTS"], f"{self.seed}.{len(self.digests)}"), "w", encoding="utf-8") as file:
                file.write(told)
        self.digests.append(f"{zlib.crc32(told.encode()) & 0xFFFF:04x}")
        return told

    def plans(self):
        """What the planner says of many wishes."""
        chance, report, lines = self.chance, self.report(), []
        for _ in range(6):
            wish = wanted(chance, report)
            lines.append(json.dumps({
                "before": chance.choice([None, report]), "report": changed(chance, report) if chance.randrange(4) == 0 else report,
                "delete": chance.randrange(2) == 0, "everything": True, "adapter": chance.choice([-1, -1, -1, 0, 1]),
                "wanted": changed(chance, wish) if chance.randrange(3) == 0 else wish}))
        return [["planner"]], "\n".join(lines) + "\n"

    def deed(self):
        chance = self.chance
        if chance.randrange(3) == 0 or len(self.digests) == 2:
            self.look()
        kind = chance.choice(["happens"] * 8 + ["asked"] * 5 + ["told"] * 4 + ["planned"] * 3 + ["typed"] * 4 + ["plans"] * 2)
        if kind == "plans":
            return self.plans()
        ends = 5 * "n\nexit\n"  # of a shell with open questions perhaps
        if kind == "typed":
            lines = [f"adapter -i {self.adapter}"] + [" ".join(words) for _ in range(4) for words in self.command()]
            return [["ktsetup"]], "\n".join(lines) + "\n" + ends
        # What is wanted first can be had more often than what is wanted of adapters that have been through much.
        lines = self.filled("ktcfg apply -f WANTED --delete --yes" if len(self.digests) in (2, 3) else chance.choice(DEEDS[kind]))
        return lines, chance.choice(["y\n", "y\n", "n\n", ""]) + ends * ("ktsetup" in str(lines))

    def steps(self):
        """Every step, as it is told."""
        for _ in range(STEPS):
            yield self.step(*self.deed())
        yield self.step([["ktsim", "status", "--all"], ["ktsim", "show"], ["ktreport", "json", "--records"], ["ktsim", "--help-all"]])


def main():
    first, count = int(sys.argv[1]), int(sys.argv[2])
    with open(DIGESTS, encoding="ascii") as file:
        known = [line.split() for line in file]
    failed = False
    for seed in range(first, first + count):
        known += [[]] * (seed + 1 - len(known))
        past = Past(seed)
        for told in past.steps():
            at = len(past.digests)
            if past.digests != known[seed][:at] and "write" not in sys.argv:
                print(f"past {seed} is another one in step {at - 1}:\n{told[:3000]}")
                failed = True
                break
        known[seed] = past.digests
    if "write" in sys.argv:
        with open(DIGESTS, "w", encoding="ascii") as file:
            file.write("".join(" ".join(digests) + "\n" for digests in known))
    return failed


if __name__ == "__main__":
    sys.exit(main())
