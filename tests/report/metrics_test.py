"""What Prometheus is told: valid whatever the adapters say, one number a thing, and nothing that vanishes unseen."""
import collections
import copy
import json
import os
import re
import stat
import subprocess
import unittest

from frame import BIN, LABS, Bench

DISKS = [{"count": 3, "size": "1TB", "model": "FX", "state": "healthy"}, {"size": "1TB"}]
LAB = {"adapters": [
    {"type": "array-based", "battery": True, "enclosures": [{"id": 1}], "disks": [{"count": 5, "size": "1TB", "enclosure": 1}],
     "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": 'a "b" \\c'}]}]},
    {"type": "LD-based", "battery": False, "disks": [{"count": 2, "size": "1TB"}]}]}
LINE = re.compile(r'(ktraid_[a-z_]+)(?:\{((?:[a-z_]+="(?:[^"\\\n]|\\[\\"n])*",?)*)\})? (-?[0-9.e+-]+)$')


def series_of(test, text):
    """(name, labels) -> value; fails for what node-exporter would throw away with everything else in the file."""
    series, families = {}, set()
    for line in text.splitlines():
        if line.startswith("# TYPE "):
            test.assertNotIn(line, families)
            families.add(line)
        if line.startswith("#"):
            continue
        match = LINE.match(line)
        test.assertIsNotNone(match, line)
        labels = tuple(re.findall(r'([a-z_]+)="((?:[^"\\]|\\.)*)"', match[2] or ""))
        test.assertNotIn((match[1], labels), series, "twice")
        series[match[1], labels] = float(match[3])
    return series


def of(series, family, **labels):
    return {dict(key[1]).get("id", ""): value for key, value in series.items()
            if key[0] == family and labels.items() <= dict(key[1]).items()}


class Metrics(unittest.TestCase):
    def metrics(self, bench, *words, status=0, text=None):
        done = bench.run("ktreport", "metrics", *words, text=text)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertEqual(status == 0, done.stderr == "")
        return series_of(self, done.stdout)

    def from_document(self, bench, document):
        return self.metrics(bench, "--from", "-", text=json.dumps(document))

    def test_every_lab_makes_valid_text(self):
        for lab in LABS:
            series = self.metrics(Bench(lab))
            self.assertEqual(series["ktraid_up", ()], 1, lab)

    def test_every_family(self):
        """Its help, and its first sample that is not 0; families.txt has them all."""
        families = {}
        for line in Bench("troubled").run("ktreport", "metrics").stdout.splitlines():
            name = line.split(" ")[2] if line.startswith("#") else re.match(r"\w+", line)[0]
            if line.startswith("# HELP "):
                families[name] = [line.split(" ", 3)[3]]
            elif line[0] != "#" and (len(families[name]) == 1 or families[name][1].endswith(" 0")):
                families[name][1:] = [line]
        told = "".join(f"{sample} # {text}\n" for text, sample in families.values())
        told = re.sub(r"^(ktraid_read_(timestamp|duration)_seconds) \S+", r"\1 -", told, flags=re.M)
        told = re.sub('library="[^"]*"', 'library="-"', told)
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "families.txt"), encoding="ascii") as file:
            self.assertEqual(told, file.read())

    def test_an_unreadable_disk_hides_no_other(self):
        bench = Bench(LAB)
        whole = self.metrics(bench)
        # What an adapter does not have at all is no refusal.
        self.assertEqual(whole["ktraid_adapter_unread", (("adapter", "0"),)], 0)
        bench.sim("fault", "KT_PD_GET_SMART_INFO", "9", "--after", "1", "--times", "1", "-a", "0")
        part = self.metrics(bench)
        self.assertEqual(of(part, "ktraid_disk_unread", adapter="0"), {"0": 0, "1": 1, "2": 0, "3": 0, "4": 0})
        gone = {dict(labels)["id"] for name, labels in whole.keys() - part.keys() if name != "ktraid_problem"}
        self.assertLessEqual(gone, {"1"})
        self.assertEqual(of(part, "ktraid_problems", name="unread"), {"": 1})
        self.assertIn((("adapter", "0"), ("call", "KT_PD_GET_SMART_INFO"), ("status", "9")),
                      {labels for name, labels in part if name == "ktraid_unread"})

    def test_fields_that_are_lacking_stop_nothing(self):
        bench = Bench(LAB)
        document = bench.report()
        document["adapters"].append({"id": 7})
        for disk in document["adapters"][0]["disks"][:3]:
            for word in list(disk):
                if word != "id":
                    del disk[word]
        document["adapters"][0]["disks"][3].update(temperature="hot", size="big", serial=7, model=None, state=[])
        series = self.from_document(bench, document)
        self.assertEqual({labels: value for (name, labels), value in series.items() if name == "ktraid_adapter_up"},
                         {(("host", document["host"]), ("adapter", number)): value
                          for number, value in (("0", 1), ("1", 1), ("7", 0))})
        self.assertEqual(of(series, "ktraid_disk_state", adapter="0", state="unknown"),
                         {"0": 1, "1": 1, "2": 1, "3": 1, "4": 0})
        self.assertEqual(of(series, "ktraid_disk_size_bytes", adapter="0").keys(), {"4"})

    def test_equal_labels_are_told_once(self):
        bench = Bench(LAB)
        document = bench.report()
        disks = document["adapters"][0]["disks"]
        disks[0]["serial"] = disks[1]["serial"] = ""
        disks[2]["serial"] = disks[3]["serial"]
        disks.append(copy.deepcopy(disks[4]))
        document["adapters"].append(copy.deepcopy(document["adapters"][1]))
        series = self.from_document(bench, document)
        self.assertEqual(len(of(series, "ktraid_disk_state", adapter="0", state="healthy")), 5)

    def test_no_place_for_a_battery_is_no_broken_one(self):
        bench = Bench(LAB)
        series = self.metrics(bench)
        told = {(name, labels[0][1]) for name, labels in series if name.startswith("ktraid_battery")}
        self.assertEqual({adapter for _, adapter in told}, {"0"})
        self.assertEqual(series["ktraid_battery_present", (("adapter", "0"),)], 1)
        self.assertGreater(len(told), 5)
        bench.sim("battery", "remove", "--force")
        self.assertEqual(self.metrics(bench)["ktraid_battery_present", (("adapter", "0"),)], 0)
        self.assertEqual(of(self.metrics(bench), "ktraid_problems", name="battery-missing"), {"": 1})

    def test_numbers_are_in_base_units(self):
        bench = Bench(LAB)
        document = bench.report()
        document["made"] = "2026-01-05T08:00:00Z"
        adapter = document["adapters"][0]
        adapter["battery"].update(percentage=42, capacity=250, temperature=3150, voltage=3700, minutesToFull=3, rechargeCycle=9,
                                  sensorSupport=7, status=3)
        adapter["disks"][0].update(wear=30, linkSpeed=6000000000, poweredOn=7200, spareInUse=True)
        adapter["images"]["firmware"] = False
        adapter["arrays"][0].update(spares=[4], disks=[0, None, 2], Status=9)
        del adapter["arrays"][0]["status"]
        del next(one for one in adapter["enclosures"][0]["elements"] if one["type"] == "pow" and one["element"] == 0)["status"]
        adapter["arrays"][0]["virtualDisks"][0]["activity"] = {"kind": "rebuild", "state": "paused", "percent": 60}
        series = self.from_document(bench, document)
        for name, labels, value in (
                ("ktraid_read_timestamp_seconds", {}, 1767600000), ("ktraid_battery_charge_ratio", {}, 0.42),
                ("ktraid_battery_capacity_joules", {}, 9000), ("ktraid_battery_temperature_celsius", {}, 31.5),
                ("ktraid_battery_volts", {}, 3.7), ("ktraid_battery_full_seconds", {}, 180),
                ("ktraid_battery_charges_total", {}, 9), ("ktraid_battery_charging", {}, 1),
                ("ktraid_disk_wear_ratio", {"id": "0"}, 0.3), ("ktraid_disk_powered_on_seconds_total", {"id": "0"}, 7200),
                ("ktraid_disk_link_bytes_per_second", {"id": "0"}, 750000000), ("ktraid_disk_spare_in_use", {}, 1),
                ("ktraid_disk_role", {"id": "0", "role": "member"}, 1), ("ktraid_disk_role", {"id": "4", "role": "none"}, 1),
                ("ktraid_adapter_image_sound", {"image": "firmware"}, 0), ("ktraid_array_missing_disks", {}, 1), ("ktraid_array_spares", {}, 1),
                ("ktraid_array_state", {"state": "offline"}, 1), ("ktraid_array_state", {"state": "unknown"}, 0),
                ("ktraid_activity_progress_ratio", {"kind": "rebuild", "object": "virtual disk"}, 0.6),
                ("ktraid_activity_state", {"state": "paused"}, 1), ("ktraid_activity_state", {"state": "running"}, 0),
                ("ktraid_element_state", {"type": "fan", "id": "0", "state": "ok"}, 1),
                ("ktraid_element_state", {"type": "pow", "id": "0", "state": "unknown"}, 1),
                ("ktraid_enclosure_state", {"state": "ok"}, 1)):
            where = {} if name == "ktraid_read_timestamp_seconds" else {"adapter": "0"}
            self.assertEqual(set(of(series, name, **where, **labels).values()), {value}, name)
        self.assertNotIn("ktraid_read_duration_seconds", {name for name, _ in series})
        adapter["battery"]["sensorSupport"] = 0
        told = {name for name, _ in self.from_document(bench, document) if name.startswith("ktraid_battery")}
        self.assertEqual(told, {"ktraid_battery_" + name for name in ("present", "charging", "full_seconds", "charges_total")})
        self.assertLess(self.metrics(bench)["ktraid_read_duration_seconds", ()], 60)

    def test_what_is_there_keeps_its_series(self):
        bench = Bench(LAB)
        healthy = self.metrics(bench)
        bench.sim("disk", "fail", "1", "--force")
        failed = self.metrics(bench)
        # What the disk said of itself has gone, and a number that stays says so.
        gone = {(name, dict(labels)["id"]) for name, labels in healthy.keys() - failed.keys()}
        self.assertEqual({disk for _, disk in gone}, {"1"})
        self.assertNotIn("ktraid_disk_tells_values", {name for name, _ in gone})
        self.assertEqual(of(healthy, "ktraid_disk_tells_values", adapter="0")["1"], 1)
        self.assertEqual(of(failed, "ktraid_disk_tells_values", adapter="0"), {"0": 1, "1": 0, "2": 1, "3": 1, "4": 1})
        self.assertEqual(of(failed, "ktraid_disk_state", state="offline", adapter="0")["1"], 1)
        problems = [dict(labels) for name, labels in failed if name == "ktraid_problem"]
        disk = next(one for one in problems if one["name"] == "disk-failed")
        self.assertEqual((disk["severity"], disk["object"], disk["id"], disk["bay"]),
                         ("critical", "disk", "1", "slot 1 of enclosure 1"))
        counts = {dict(labels)["name"]: value for (name, labels), value in failed.items() if name == "ktraid_problems"}
        self.assertEqual({name: value for name, value in counts.items() if value},
                         collections.Counter(one["name"] for one in problems))
        self.assertEqual(len(counts), len(bench.run("ktreport", "check", "--names").stdout.splitlines()))

    def test_a_library_that_does_not_start(self):
        bench = Bench(LAB)
        bench.sim("fault", "KT_API_Initialize", "9")
        series = self.metrics(bench, status=3)
        self.assertEqual(series["ktraid_up", ()], 0)
        self.assertEqual(of(series, "ktraid_adapters"), {})

    def test_the_file(self):
        bench = Bench(LAB)
        path = bench.save("ktraid.prom", "old")
        os.chmod(path, 0o600)
        inode = os.stat(path).st_ino
        old_mask = os.umask(0o077)
        try:
            self.assertEqual(self.metrics(bench, "-o", path), {})
        finally:
            os.umask(old_mask)
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o644)
        self.assertNotEqual(os.stat(path).st_ino, inode)
        with open(path, encoding="ascii") as file:
            self.assertEqual(series_of(self, file.read())["ktraid_up", ()], 1)
        os.mkfifo(bench.path("pipe"))
        for bad in ("", bench.path("none/ktraid.prom"), bench.path("pipe"), bench.folder.name):
            done = bench.run("ktreport", "metrics", "-o", bad)
            self.assertEqual((done.returncode, done.stdout, len(done.stderr.splitlines())), (3 if bad else 2, "", 1), bad)
        self.assertTrue(stat.S_ISFIFO(os.stat(bench.path("pipe")).st_mode))
        self.assertEqual(sorted(os.listdir(bench.folder.name)), ["ktraid.prom", "lab.json", "pipe", "state.db"])

    def test_files_of_many_machines(self):
        bench = Bench(LAB)
        document = bench.report()
        files = {name: bench.save(name, text) for name, text in (
            ("a", dict(document, host="store1")), ("b", dict(document, host="store2")), ("same", dict(document, host="store1")),
            ("later", '{"report": 2, "adapters": []}'), ("short", json.dumps(document)[:2000]), ("none", "RAID"), ("huge", "1e999"))}
        done = bench.run("ktreport", "metrics", "--from", *files.values())
        series = series_of(self, done.stdout)
        self.assertEqual(done.returncode, 1)
        bad = [files[name] for name in ("later", "short", "none", "huge", "same")]
        self.assertEqual([line.split(": ")[1] for line in done.stderr.splitlines()], bad)
        self.assertEqual({dict(labels)["file"] for name, labels in series if name == "ktraid_report_unreadable"}, set(bad))
        self.assertEqual({dict(labels)["host"] for name, labels in series if name == "ktraid_disk_state"},
                         {"store1", "store2"})
        path = bench.path("ktraid.prom")
        for words in ([files["none"]], [files["none"], files["short"]]):
            done = bench.run("ktreport", "metrics", "-o", path, "--from", *words)
            self.assertEqual((done.returncode, os.path.exists(path)), (3, False))
            self.assertEqual(done.stderr.count("\n"), 1)

    def test_a_file_that_is_none_hides_no_other(self):
        bench = Bench(LAB)
        document = bench.report()
        bench.sim("disk", "fail", "1", "--force")
        good, short = bench.save("good", dict(document, host="store1")), bench.save("short", json.dumps(document)[:2000])
        bad = bench.save("bad", dict(bench.report(), host="store2"))
        for words in ([], ["show"], ["map"], ["map", "--csv"], ["page"], ["metrics"]):
            done = bench.run("ktreport", *words, "--from", short, good, bad)
            self.assertEqual((done.returncode, done.stderr), (1, f"ktreport: {short}: is cut short (left out)\n"), words)
            self.assertIn("store1", done.stdout, words)
            done = bench.run("ktreport", *words, "--from", short)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (3, "", f"ktreport: {short}: is cut short\n"), words)
        for files, status, state in (([good], 0, "OK"), ([short, good], 3, "UNKNOWN"), ([good, short, bad], 2, "CRITICAL")):
            done = bench.run("ktreport", "check", "--from", *files)
            self.assertEqual((done.returncode, done.stdout.split(" - ")[0]), (status, "RAID " + state))
            self.assertEqual(short + ": is cut short" in done.stdout, short in files)

    def test_rules_are_those_of_the_table(self):
        rules = os.path.join(os.environ["SOURCE"], "packaging", "prometheus", "ktraid.rules.yml")
        made = subprocess.run([os.path.join(BIN, "print_rules")], capture_output=True, text=True, check=True).stdout
        with open(rules, encoding="ascii") as file:
            self.assertEqual(file.read(), made, "build the target prometheus-rules")


if __name__ == "__main__":
    unittest.main()
