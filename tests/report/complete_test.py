#!/usr/bin/env python3
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
    def told(self, command, label, value, lines, where):
        if (command, label) in LEFT_OUT:
            return
        self.assertIn(label, lines, f"{where}: {label} {value}")
        expected = lines[label]
        if isinstance(expected, set):
            self.assertEqual(set(value.split()), expected, f"{where}: {label}")
        elif label in ("Supported port type:", "Supported RAID mode:", "Stripe size supported:"):
            self.assertEqual(value, expected, f"{where}: {label}")
        else:
            self.assertEqual(value, str(expected).strip(), f"{where}: {label}")

    def listing(self, command, text, first, items, words, where):
        """A list whose items begin with the label `first`; items: the objects by that label's value."""
        lines, seen = None, 0
        for label, value in pairs(text):
            if label == first:
                self.assertIn(value, items, f"{where}: {label} {value}")
                lines = words(items[value])
                seen += 1
            if lines is None:
                self.assertIn((command, label), LEFT_OUT, where)
            elif label != first or first in lines:
                self.told(command, label, value, lines, where)
        return seen

    def by_id(self, items):
        return {str(one["id"]): one for one in items}

    def volumes(self, one):
        return [vd for array in one.get("arrays", []) for vd in array["virtualDisks"]] + one["virtualDisks"]

    def check_lists(self, bench, one):
        index = str(one["id"])
        run = lambda *words: bench.run("ktsetup", index, *words).stdout
        spares = [disk for disk in one["disks"] if "spare" in disk]
        rows = [("pd", "PD ID:", one["disks"], printed.disk), ("array", "ID:", one.get("arrays", []), printed.array),
                ("blk", "Block ID:", one["blocks"], printed.block), ("spare", "PD ID:", spares, printed.spare),
                ("exp", "Expander ID:", one.get("expanders", []), printed.expander),
                ("pm", "PM ID:", one.get("portMultipliers", []), printed.multiplier)]
        for word, first, items, words in rows:
            if word == "array" and "arrays" not in one:
                continue
            text = run("info", "-o", word)
            self.assertEqual(self.listing("info", text, first, self.by_id(items), words, f"{index} info {word}"), len(items))
        for word, first in (("vd", "id:"), ("tandem", "id:")):
            self.check_volumes(run("info", "-o", word), one, f"{index} info {word}")
        self.listing("info", bench.run("ktsetup", "info", "-o", "hba", "-i", index).stdout, "Adapter ID:", {index: one},
                     printed.adapter, f"{index} info hba")
        if isinstance(one["battery"], dict):
            self.listing("info", run("info", "-o", "bbu"), "status:", {printed.battery(one["battery"])["status:"]: one["battery"]},
                         printed.battery, f"{index} bbu")

    def check_volumes(self, text, one, where):
        """Virtual disks; behind "target virtual:" stands what the one before it is turning into."""
        vds, lines, current = self.by_id(self.volumes(one)), {}, None
        target = False
        for label, value in pairs(text):
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
            self.told("info", label, value, lines, where)

    def check_settings(self, bench, one):
        index = str(one["id"])
        run = lambda *words: bench.run("ktsetup", index, *words).stdout
        rows = [("pd", "hard disk id:", one["disks"], lambda disk: {
                    "hard disk id:": disk["id"], "write cache:": printed.on(disk["writeCache"]),
                    "drive speed:": printed.GIGABITS.get(disk.get("linkSpeed"), "N/A")}),
                ("vd", "virtual disk id:", self.volumes(one), lambda vd: {
                    "virtual disk id:": vd["id"], "restore:": printed.on(vd["restore"]),
                    "cache mode:": vd.get("cache", "unknown").capitalize()}),
                ("array", "array id:", one.get("arrays", []), lambda array: {
                    "array id:": array["id"], "write cache:": printed.on(array["writeCache"])}),
                ("hba", "HBA Index:", [one], printed.settings)]
        for word, first, items, words in rows:
            if word == "array" and "arrays" not in one:
                continue
            text = run("get", "-o", word)
            self.assertEqual(self.listing("get", text, first, self.by_id(items), words, f"{index} get {word}"), len(items))
        for vd in self.volumes(one):
            link = f"link to PD {vd['linkedDisk']}" if "linkedDisk" in vd else "is unlinked"
            self.assertIn(f"VD {vd['id']} ATA {link}.", run("get", "-o", "link"))
        text = run("status", "-o", "pd")
        words = lambda disk: {"hard disk id:": disk["id"], "SMART threshold exceeded:": str(disk["smartTripped"]).lower()}
        self.listing("status", text, "hard disk id:", self.by_id(one["disks"]), words, f"{index} status")

    def check_attributes(self, bench, one, most):
        for disk in one["disks"][:most]:
            text = bench.run("ktsetup", str(one["id"]), "smart", "-p", str(disk["id"])).stdout
            table = [line.split("\t") for line in text.splitlines() if line.count("\t") >= 6][1:]
            words = {"ok": "OK", "failing": "Failing now", "failed before": "In the past"}
            told = [[f"{row['id']:02X}", printed.safe(row["name"]), str(row["current"]), str(row["worst"]), str(row["threshold"]),
                     f"{row['raw']:012X}", words.get(row.get("status"), "Unknown")] for row in disk.get("attributes", [])]
            self.assertEqual([[cell.strip() for cell in row] for row in table], told, f"disk {disk['id']}")

    def check_enclosures(self, bench, one):
        index = str(one["id"])
        run = lambda *words: bench.run("ktsetup", index, "enc", *words).stdout
        enclosures = self.by_id(one["enclosures"])
        self.listing("enclosures", run("-o", "enc").replace("Adapter ID", "Enclosure of"), "Enclosure ID:", enclosures,
                     lambda found: dict(printed.enclosure(found), **{"Enclosure of:": one["id"]}), index)
        for id_, enclosure in list(enclosures.items())[:2]:
            for kind in {row["type"] for row in enclosure["elements"]}:
                elements = {str(row["element"]): row for row in enclosure["elements"] if row["type"] == kind}
                flags = set()
                for label, value in pairs(run("-o", "ele", "-i", id_, "-t", kind)):
                    if label == "Element ID:":
                        lines, flags = printed.element(elements[value])
                    if value in ("yes", "no") and label[:-1].lower() not in ("enclosure id",):
                        self.assertEqual(value == "yes", label[:-1].lower() in flags, f"{kind}: {label}")
                    elif ("enc", label) not in LEFT_OUT:
                        self.told("enc", label, value, lines, f"{index} ele {kind}")
                whole = next(row for row in enclosure["types"] if row["type"] == kind)
                for label, value in pairs(run("-o", "elecfg", "-i", id_, "-t", kind)):
                    self.told("enc", label, value, printed.element_type(whole), f"{index} elecfg {kind}")

    def check_rest(self, bench, one):
        index = str(one["id"])
        run = lambda *words: bench.run("ktsetup", index, *words).stdout
        for word, items in (("pd", one["disks"]), ("vd", self.volumes(one))):
            words = lambda item: {"Device ID:": item["id"], "Magic Number:": printed.safe(item["magic"])}
            self.listing("devmap", run("devmap", "-o", word), "Device ID:", self.by_id(items), words, f"{index} devmap {word}")
        if "keys" not in one:
            return
        entries = {str(key["id"]): key for key in one["keys"]}
        for label, value in pairs(run("aesentry", "-o", "getinfo")):
            if label == "Entry ID:":
                key, linked = entries[value], [str(port["id"]) for port in entries[value]["ports"]]
            self.assertTrue({"Entry ID:": True, "Has Key:": value == ("Yes" if key["hasKey"] else "No"),
                             "Port ID:": value in linked}[label], f"{index} entry {key['id']}: {label} {value}")
        told = {str(port["id"]): {"Port ID:": port["id"], "mount status:": "mounted", "entry id:": key["id"],
                                  "AES enable:": "Enabled" if port["enabled"] else "Disabled"}
                for key in one["keys"] for port in key["ports"]}
        told.update({str(port["id"]): {"Port ID:": port["id"], "mount status:": "dismounted",
                                       "AES enable:": "Enabled" if port["enabled"] else "Disabled"}
                     for port in one["unlinkedPorts"]})
        self.listing("aesport", run("aesport", "-o", "getcfg"), "Port ID:", told, lambda lines: lines, f"{index} ports")

    def check(self, bench, adapters=None, disks=None):
        for one in bench.report()["adapters"]:
            if adapters is not None and one["id"] not in adapters:
                continue
            self.check_lists(bench, one)
            self.check_settings(bench, one)
            self.check_attributes(bench, one, disks)
            self.check_enclosures(bench, one)
            self.check_rest(bench, one)

    def test_labs(self):
        for lab in LABS:
            with self.subTest(lab=lab):
                # Adapters of the full lab are alike in two kinds.
                self.check(Bench(lab), {0, 8} if lab == "full" else None, 3 if lab == "full" else 12)

    def test_random_records(self):
        """Adapters and disks whose records say anything."""
        chance = random.Random(1)
        images = [f"{word}img_health" for word in ("", "autoload_", "boot_loader_", "firmware_", "boot_rom_", "hba_info_")]

        def some(words, *limits):
            return {word: chance.choice([0, limit, chance.randint(0, limit)]) for limit in limits for word in words.split()}
        lab = {"adapters": [{
            "type": chance.choice(["LD-based", "array-based"]), **{word: chance.randint(0, 1) for word in images},
            **some("AdvancedFeatures", 0xFFFFFFFF), **some("LogicalDriverMode", 0xFFF), **some("PortSupportType MaxSpeed", 7),
            **some("StripeSizeSupported CurrentSpeed", 6), **some("Features RevisionID MaxLinkWidth CurrentLinkWidth MaxHD_Ext MaxPM", 255),
            "disks": [{"size": "1TB", **some("FeatureSupport", 0xFFF), **some("PIOMode MDMAMode UDMAMode CurrentPIOMode", 255),
                       **some("HD_SSD_Type Media_Rotation_Rate CurrentMDMAMode CurrentUDMAMode LocateLEDStatus", 3)} for _ in range(6)]}
            for _ in range(12)]}
        bench = Bench(lab)
        for one in bench.report()["adapters"]:
            index = str(one["id"])
            for words, first, items, told in ((["info", "-o", "hba", "-i", index], "Adapter ID:", [one], printed.adapter),
                                              ([index, "info", "-o", "pd"], "PD ID:", one["disks"], printed.disk)):
                seen = self.listing("info", bench.run("ktsetup", *words).stdout, first, self.by_id(items), told, index)
                self.assertEqual(seen, len(items))

    def test_random_elements(self):
        """Parts of enclosures whose status is any four bytes."""
        chance = random.Random(1)
        report = Bench("default").report("--records")
        for _ in range(3):
            for shelf in report["adapters"][0]["enclosures"]:
                for at, row in enumerate(shelf["elements"]):
                    if "slot" not in row:
                        known = {word: row[word] for word in ("type", "element", "text", "subEnclosure")}
                        status = f"{chance.randrange(16):x}{chance.randint(0, 8)}{chance.randrange(1 << 24):06x}"
                        shelf["elements"][at] = dict(known, Status=status)
            bench = Bench(report)
            self.check_enclosures(bench, bench.report()["adapters"][0])

    def test_what_no_lab_has(self):
        self.check(Bench(RARE))


if __name__ == "__main__":
    unittest.main()
