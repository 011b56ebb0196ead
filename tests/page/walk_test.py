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
        ill["adapters"][0]["disks"][0].update(smartTripped=True, linkSpeed=3e9, linkSpeeds=[3e9, 6e9])
        for name in "ab":
            os.mkdir(bench.path(name))
        files = [bench.save(*saved) for saved in (
            ("troubled.json", chosen_of_troubled()), ("a/twin.json", TWIN),
            ("b/twin.json", ill), ("none.json", {"report": 1, "adapters": []}), ("cut.json", "{"))]
        bench.run("ktreport", "page", "-o", bench.path("page.html"), "--from", *files)
        self.browser.open(bench.path("page.html"))
        walk(self, "machines.txt", {bench.folder.name + "/": ""})


if __name__ == "__main__":
    unittest.main()
