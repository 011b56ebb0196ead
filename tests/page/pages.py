"""What the tests of the page share: machines to look at, and a look that ends without a complaint or a request."""
import os
import unittest

from browser import Browser
from frame import Bench

PICTURES = os.environ["PICTURES"]
DISK = {"type": "SAS", "size": "8TB", "on": "expander", "enclosure": 1}
STORE = {"adapters": [{
    "type": "array-based", "battery": {}, "expanders": [{}], "enclosures": [{"id": 1}],
    "disks": [dict(DISK, count=8), dict(DISK, count=5, type="SATA", size="4TB"),
              dict(DISK, type="SATA", size="4TB", spare="global"), dict(DISK, spare="global"),
              dict(DISK, type="SATA SSD", size="480GB", port=20)],
    "arrays": [{"name": "data", "level": "RAID6", "disks": list(range(8)), "virtualDisks": [{"name": "data"}]},
               {"name": "archive", "level": "RAID5", "disks": list(range(8, 13)),
                "virtualDisks": [{"name": "archive", "size": "10TB"}, {"name": "scratch"}]}]}]}
SMALL = {"adapters": [{"type": "LD-based", "disks": [{"count": 4, "type": "SATA", "size": "2TB"}], "virtualDisks": [
    {"name": "system", "level": "RAID1", "disks": [0, 1]}, {"name": "home", "level": "RAID1", "disks": [2, 3]}]}]}
TWO_SHELVES = {"adapters": [{
    "type": "array-based", "battery": {}, "expanders": [{}, {}], "enclosures": [{"id": 1}, {"id": 2, "slots": 12}],
    "disks": [dict(DISK, count=18), dict(DISK, count=5, spare="global"),
              dict(DISK, count=10, type="SAS SSD", size="1600GB", parent=1, port=0, enclosure=2),
              dict(DISK, type="SAS SSD", size="1600GB", parent=1, port=10, enclosure=2, spare="global")],
    "arrays": [{"name": "bulk", "level": "RAID60", "disks": list(range(18)), "virtualDisks": [{"name": "bulk"}]},
               {"name": "fast", "level": "RAID10", "disks": list(range(23, 33)), "virtualDisks": [{"name": "mail"}]}]}]}
# What no adapter is: little is told, and that is odd.
ODD = [{"id": 1, "type": "LD-based", "model": {}, "battery": False, "portMultipliers": [{"id": 0, "ports": 2}],
        "enclosures": [{"id": 9, "elements": [{"slot": 70000}, {"type": "fan", "status": 4}, {"type": "constructor"}]}],
        "disks": [{"id": 5, "enclosure": 2, "slot": 1}, {"id": 5, "enclosure": 2, "slot": 1, "size": -1, "wear": 1e300},
                  {"model": ["x"], "temperature": "hot"},
                  {"id": 6, "on": "PM", "parent": 0, "port": 1, "state": "foreign", "temperature": 20.4, "wear": 3}],
        "arrays": [{"disks": [None, 5, "x", 77], "virtualDisks": [{"disks": [5], "status": "valueOf"}, {}]}],
        "virtualDisks": [{"id": 2, "disks": [5], "activity": {"percent": 1000}}]},
       {"id": 2, "battery": {"status": 3, "percentage": 70}}]
# A machine with nothing wrong.
TWIN = {"report": 1, "host": "twin", "made": "2026-01-02T07:00:00Z", "adapters": [
    {"id": 0, "type": "LD-based", "battery": {"status": 1, "percentage": 99}, "disks": [{"id": 0, "state": "healthy", "model": "Gannet GT2000G", "firmware": "GT03A2", "size": 1e12}]}]}


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()

    def setUp(self):
        self.browser.screen()
        self.browser.complaints()
        self.browser.requests()

    def tearDown(self):
        self.assertEqual((self.browser.complaints(), self.browser.requests()), ([], []))

    def open(self, bench, *words):
        done = bench.run("ktreport", "page", "-o", bench.path("page.html"), *words)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.browser.open(bench.path("page.html"))


def report_of(lab, *happenings):
    bench = Bench(lab)
    for words in happenings:
        bench.sim(*words)
    return bench.report()


def chosen_of_troubled():
    """Few of the troubled lab's disks and volumes, of each kind one, with what no simulated disk is together."""
    report = dict(report_of("troubled"), host="store1", made="2026-01-05T08:00:00Z")
    adapter = report["adapters"][0]
    report["adapters"] = [adapter, *ODD]
    shelf = adapter["enclosures"][0]
    shelf["elements"] = [one for one in shelf["elements"] if one.get("slot") in (None, 0, 3, 12, 14, 17, 19)]
    parts = {part["type"]: part for part in shelf["elements"]}  # the last of each type
    for kind, status in (("fan", "non-critical"), ("tpr", "unrecoverable"), ("dpl", "unsupported"), ("alm", "not installed")):
        parts[kind]["status"] = status
    parts["alm"]["type"] = "dor"
    disks = {disk["id"]: disk for disk in adapter["disks"] if disk["id"] in (0, 3, 12, 14, 17, 18)}
    disks[0].update(os=True, temperature=-0.4, locateLed=True, poweredOn=360000)
    disks[12].update(pending=12, uncorrectable=0, reallocated=1500, temperature=88)
    disks[17].update(spareInUse=True)
    adapter["disks"] = list(disks.values())
    arrays = adapter["arrays"] = adapter["arrays"][1:4]
    arrays[0].update(status="disk missing", spares=[17])
    arrays[1]["virtualDisks"].append({"id": 5, "name": "paused", "os": True, "activity": {"kind": "check", "state": "paused", "percent": 5}})
    adapter["events"] = [{"Class": 1, "DeviceID": 1, "Code": 70, "TimeStamp": 0},
                         {"Class": 1, "DeviceID": 1, "Code": 76, "TimeStamp": 4200, "Params": [42]}]
    adapter["battery"]["temperature"] = 3000
    return report
