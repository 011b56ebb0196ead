"""Complete: every value that ktsetup prints of adapters is told by the report, which is asked to tell it here."""
import random
import unittest

import printed
from frame import LABS, RARE, Bench

# What is printed and left out of the report on purpose, by the command and the label, with the reason.
LEFT_OUT = {
    ("info", "Adapter:"): "the adapter stands around it",
    ("enc", "Adapter ID:"): "the adapter stands around it",
    ("enc", "Enclosure ID:"): "the enclosure stands around it",
    ("smart", "SMART STATUS RETURN:"): "asked through a command to the drive, which is more than reading",
    ("info", "Firmware:"): "says that there is none, as its absence does",
    ("info", "Boot loader:"): "says that there is none, as its absence does",
    ("info", "PCIe status:"): "says that it is not known, as its absence does",
}


def pairs(text):
    """The printed lines as labels and values; what is no pair (headlines, totals) is left out."""
    for line in text.splitlines()[1:]:
        line = line.rstrip()
        if line.startswith("Total # of ") or "(error " in line or ":" not in line:
            continue
        label, value = line.split(":", 1)
        yield label.strip() + ":", value.strip()


class Complete(unittest.TestCase):
    known, seen = set(), set()  # labels that could be printed, and those that were

    @classmethod
    def tearDownClass(cls):
        assert cls.known == cls.seen, f"never printed: {cls.known - cls.seen}"

    def told(self, command, label, value, lines, where):
        if (command, label) in LEFT_OUT:
            return
        kind = next(iter(lines))
        self.known.update((command, kind, each) for each in lines)
        self.seen.add((command, kind, label))
        self.assertIn(label, lines, f"{where}: {label} {value}")
        expected = lines[label]
        if isinstance(expected, set):
            self.assertEqual(set(value.split()), expected, f"{where}: {label}")
        elif label in ("Supported port type:", "Supported RAID mode:", "Stripe size supported:"):
            self.assertEqual(value, expected, f"{where}: {label}")
        else:
            self.assertEqual(value, str(expected).strip(), f"{where}: {label}")

    def kt(self, *words):
        """What ktsetup prints of the adapter that is looked at."""
        return self.bench.run("ktsetup", str(self.one["id"]), *words).stdout

    def listing(self, words, first, items, lines_of, text=None):
        """A list whose items begin with the label `first`; items: the objects by that label's value. How many there were."""
        where, lines, seen = f"{self.one['id']} {' '.join(words)}", None, 0
        for label, value in pairs(self.kt(*words) if text is None else text):
            if label == first:
                self.assertIn(value, items, f"{where}: {label} {value}")
                lines = lines_of(items[value])
                seen += 1
            if lines is None:
                self.assertIn((words[0], label), LEFT_OUT, where)
            elif label != first or first in lines:
                self.told(words[0], label, value, lines, where)
        return seen

    def all_of(self, words, first, items, lines_of):
        self.assertEqual(self.listing(words.split(), first, self.by_id(items), lines_of), len(items), words)

    def by_id(self, items):
        return {str(one["id"]): one for one in items}

    def volumes(self):
        return [vd for array in self.one.get("arrays", []) for vd in array["virtualDisks"]] + self.one["virtualDisks"]

    def adapter(self):
        self.all_of(f"info -o hba -i {self.one['id']}", "Adapter ID:", [self.one], printed.adapter)

    def check_lists(self):
        self.adapter()
        for word, first, items, lines_of in (
                ("pd", "PD ID:", self.one["disks"], printed.disk), ("blk", "Block ID:", self.one["blocks"], printed.block),
                ("spare", "PD ID:", [disk for disk in self.one["disks"] if "spare" in disk], printed.spare),
                ("exp", "Expander ID:", self.one.get("expanders", []), printed.expander),
                ("pm", "PM ID:", self.one.get("portMultipliers", []), printed.multiplier)):
            self.all_of("info -o " + word, first, items, lines_of)
        if "arrays" in self.one:
            self.all_of("info -o array", "ID:", self.one["arrays"], printed.array)
        for word in ("vd", "tandem"):
            self.check_volumes(word)
        if isinstance(self.one["battery"], dict):
            status = printed.battery(self.one["battery"])["status:"]
            self.listing(["info", "-o", "bbu"], "status:", {status: self.one["battery"]}, printed.battery)

    def check_volumes(self, word):
        """Virtual disks; behind "target virtual:" stands what the one before it is turning into."""
        vds, lines, current = self.by_id(self.volumes()), {}, None
        target = False
        for label, value in pairs(self.kt("info", "-o", word)):
            if label == "target virtual:":
                target = True
            elif label == "id:":
                current = vds[value]
                lines = printed.virtual_disk(dict(current, **current["target"]) if target else current)
                target_lines, target = target, False
            if label == "target virtual:":
                continue
            if target_lines and label in ("Running OS:", "BGA status:", "status:", "name:", "array id:", "Cache mode:"):
                continue  # the target's are the virtual disk's own, or not there yet
            self.told("info", label, value, lines, f"{self.one['id']} info {word}")

    def check_settings(self):
        self.all_of("get -o pd", "hard disk id:", self.one["disks"], lambda disk: {
            "hard disk id:": disk["id"], "write cache:": printed.on(disk["writeCache"]),
            "drive speed:": printed.GIGABITS.get(disk.get("linkSpeed"), "N/A")})
        self.all_of("get -o vd", "virtual disk id:", self.volumes(), lambda vd: {
            "virtual disk id:": vd["id"], "restore:": printed.on(vd["restore"]),
            "cache mode:": vd.get("cache", "unknown").capitalize()})
        if "arrays" in self.one:
            self.all_of("get -o array", "array id:", self.one["arrays"], lambda array: {
                "array id:": array["id"], "write cache:": printed.on(array["writeCache"])})
        self.all_of("get -o hba", "HBA Index:", [self.one], printed.settings)
        for vd in self.volumes():
            link = f"link to PD {vd['linkedDisk']}" if "linkedDisk" in vd else "is unlinked"
            self.assertIn(f"VD {vd['id']} ATA {link}.", self.kt("get", "-o", "link"))
        self.all_of("status -o pd", "hard disk id:", self.one["disks"], lambda disk: {
            "hard disk id:": disk["id"], "SMART threshold exceeded:": str(disk["smartTripped"]).lower()})

    def check_attributes(self, most):
        for disk in self.one["disks"][:most]:
            text = self.kt("smart", "-p", str(disk["id"]))
            table = [line.split("\t") for line in text.splitlines() if line.count("\t") >= 6][1:]
            words = {"ok": "OK", "failing": "Failing now", "failed before": "In the past"}
            told = [[f"{row['id']:02X}", printed.safe(row["name"]), str(row["current"]), str(row["worst"]), str(row["threshold"]),
                     f"{row['raw']:012X}", words.get(row.get("status"), "Unknown")] for row in disk.get("attributes", [])]
            self.assertEqual([[cell.strip() for cell in row] for row in table], told, f"disk {disk['id']}")

    def check_enclosures(self):
        text = self.kt("enc", "-o", "enc").replace("Adapter ID", "Enclosure of")
        enclosures = self.by_id(self.one["enclosures"])
        self.listing(["enclosures"], "Enclosure ID:", enclosures,
                     lambda found: dict(printed.enclosure(found), **{"Enclosure of:": self.one["id"]}), text)
        for id_, enclosure in list(enclosures.items())[:2]:
            for kind in {row["type"] for row in enclosure["elements"]}:
                elements = {str(row["element"]): row for row in enclosure["elements"] if row["type"] == kind}
                flags = set()
                for label, value in pairs(self.kt("enc", "-o", "ele", "-i", id_, "-t", kind)):
                    if label == "Element ID:":
                        lines, flags = printed.element(elements[value])
                    if value in ("yes", "no") and label[:-1].lower() not in ("enclosure id",):
                        self.assertEqual(value == "yes", label[:-1].lower() in flags, f"{kind}: {label}")
                    elif ("enc", label) not in LEFT_OUT:
                        self.told("enc", label, value, lines, f"{self.one['id']} ele {kind}")
                whole = next(row for row in enclosure["types"] if row["type"] == kind)
                for label, value in pairs(self.kt("enc", "-o", "elecfg", "-i", id_, "-t", kind)):
                    self.told("enc", label, value, printed.element_type(whole), f"{self.one['id']} elecfg {kind}")

    def check_rest(self):
        for word, items in (("pd", self.one["disks"]), ("vd", self.volumes())):
            self.listing(["devmap", "-o", word], "Device ID:", self.by_id(items),
                         lambda item: {"Device ID:": item["id"], "Magic Number:": printed.safe(item["magic"])})
        if "keys" not in self.one:
            return
        entries = self.by_id(self.one["keys"])
        for label, value in pairs(self.kt("aesentry", "-o", "getinfo")):
            if label == "Entry ID:":
                key, linked = entries[value], [str(port["id"]) for port in entries[value]["ports"]]
            self.assertTrue({"Entry ID:": True, "Has Key:": value == ("Yes" if key["hasKey"] else "No"),
                             "Port ID:": value in linked}[label], f"entry {key['id']}: {label} {value}")
        told = {}
        for ports, more in [(key["ports"], {"mount status:": "mounted", "entry id:": key["id"]}) for key in self.one["keys"]] + [
                (self.one["unlinkedPorts"], {"mount status:": "dismounted"})]:
            for port in ports:
                told[str(port["id"])] = {"Port ID:": port["id"], "AES enable:": "Enabled" if port["enabled"] else "Disabled", **more}
        self.listing(["aesport", "-o", "getcfg"], "Port ID:", told, lambda lines: lines)

    def look_at(self, lab):
        """The adapters of a lab one after the other, each as the one that is looked at."""
        self.bench = Bench(lab)
        for self.one in self.bench.report()["adapters"]:
            yield self.one["id"]

    def check(self, lab, adapters=None, disks=None):
        for adapter in self.look_at(lab):
            if adapters is None or adapter in adapters:
                self.check_lists()
                self.check_settings()
                self.check_attributes(disks)
                self.check_enclosures()
                self.check_rest()

    def test_labs(self):
        for lab in LABS:
            with self.subTest(lab=lab):
                # Adapters of the full lab are alike in two kinds.
                self.check(lab, {0, 8} if lab == "full" else None, 3 if lab == "full" else 12)

    def test_random_records(self):
        """Adapters and disks whose records say anything."""
        chance = random.Random(1)
        images = [f"{word}img_health" for word in ("", "autoload_", "boot_loader_", "firmware_", "boot_rom_", "hba_info_")]

        def some(words, *limits):
            return {word: chance.choice([0, limit, chance.randint(0, limit)]) for limit in limits for word in words.split()}
        lab = {"adapters": [{
            "type": chance.choice(["LD-based", "array-based"]), "PortCount": 8, **{word: chance.randint(0, 1) for word in images},
            "AdvancedFeatures": chance.getrandbits(32), "LogicalDriverMode": chance.getrandbits(12), "Features": chance.getrandbits(8),
            **some("PortSupportType MaxSpeed", 7), **some("StripeSizeSupported CurrentSpeed", 6),
            **some("RevisionID MaxLinkWidth CurrentLinkWidth MaxHD_Ext MaxPM", 255),
            "disks": [{"size": "1TB", **some("FeatureSupport", 0xFFF), **some("PIOMode MDMAMode UDMAMode CurrentPIOMode", 255),
                       **some("HD_SSD_Type Media_Rotation_Rate CurrentMDMAMode CurrentUDMAMode LocateLEDStatus", 3)} for _ in range(6)]}
            for _ in range(12)]}
        for _ in self.look_at(lab):
            self.adapter()
            self.all_of("info -o pd", "PD ID:", self.one["disks"], printed.disk)

    def test_random_elements(self):
        """Parts of enclosures whose status is any four bytes."""
        chance = random.Random(1)
        report = Bench("default").report("--records")
        for _ in range(3):
            for shelf in report["adapters"][0]["enclosures"]:
                for at, row in enumerate(shelf["elements"]):
                    known = {word: row[word] for word in ("type", "element", "text", "subEnclosure", "slot") if word in row}
                    status = f"{chance.randrange(16):x}{chance.randint(0, 8)}{chance.randrange(1 << 24):06x}"
                    shelf["elements"][at] = dict(known, Status=status)
            next(self.look_at(report))
            self.check_enclosures()

    def test_what_no_lab_has(self):
        self.check(RARE)
