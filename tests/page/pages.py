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

    def bay(self, label):
        return self.browser.one(f'button.bay[aria-label^="{label}"]')


def report_of(lab, *happenings):
    bench = Bench(lab)
    for words in happenings:
        bench.sim(*words)
    return bench.report()
