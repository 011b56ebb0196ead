"""Every view, word for word, and what each key and each touch makes of it."""
import os
import unittest

from frame import Bench
from pages import TWIN, Pages, chosen_of_troubled
from walk import walk


class Walks(Pages):
    def test_machines(self):
        bench = Bench("none")
        for name in "ab":
            os.mkdir(bench.path(name))
        files = [bench.save(*saved) for saved in (
            ("troubled.json", chosen_of_troubled()), ("a/twin.json", dict(TWIN, made="2026-01-04T08:00:01Z")),
            ("b/twin.json", TWIN), ("none.json", {"report": 1, "adapters": []}), ("cut.json", "{"))]
        bench.run("ktreport", "page", "-o", bench.path("page.html"), "--from", *files)
        self.browser.open(bench.path("page.html"))
        walk(self, "machines.txt", {bench.folder.name + "/": ""})


if __name__ == "__main__":
    unittest.main()
