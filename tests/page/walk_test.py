"""Every view, word for word, and what each key and each touch makes of it."""
import copy
import os
import unittest

from frame import Bench
from pages import TWIN, Pages, chosen_of_troubled
from walk import walk


class Walks(Pages):
    def test_machines(self):
        bench = Bench("none")
        ill = copy.deepcopy(TWIN)
        ill["adapters"][0]["disks"] = [{"id": at, "state": "healthy", **words} for at, words in enumerate((
            {"model": "Gannet GT2000G", "firmware": "GT03A2", "smartTripped": True}, {"linkSpeed": 3000000000, "linkSpeeds": [6000000000]},
            {"wear": 81}, {"pending": 60}, {"temperature": 80}, {"state": "offline"}))]
        ill["adapters"][0]["events"] = [{"Class": 2, "DeviceID": 5, "Code": 57, "TimeStamp": 0}]
        for name in "ab":
            os.mkdir(bench.path(name))
        files = [bench.save(*saved) for saved in (
            ("troubled.json", chosen_of_troubled()), ("a/twin.json", TWIN),
            ("b/twin.json", ill), ("none.json", {"report": 1, "adapters": []}), ("cut.json", "{"))]
        bench.run("ktreport", "page", "-o", bench.path("page.html"), "--from", *files)
        self.browser.open(bench.path("page.html"))
        walk(self, "machines.txt", {bench.folder.name + "/": ""})
