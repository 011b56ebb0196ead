"""Many machines as somebody sees them: worst first, what filters leave, a click away."""
import copy
import os
import time
import unittest

from frame import Bench
from pages import PICTURES, SMALL, STORE, TWO_SHELVES, Pages, report_of


class Wall(Pages):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bench = Bench("none")
        fine = report_of(STORE, ("clock", "until", "idle"))
        failed = report_of(STORE, ("clock", "until", "idle"), ("disk", "fail", "9", "--force"), ("disk", "fail", "14", "--force"))
        worn = report_of(STORE, ("disk", "trip", "10"), ("disk", "trip", "11"))
        cls.kinds = [fine] * 5 + [failed, worn]
        os.mkdir(cls.bench.path("reports"))
        for at in range(1000):
            cls.save(at, copy.copy(cls.kinds[at % 7]))
        old = copy.deepcopy(fine)
        old["made"] = "2020-01-01T00:00:00Z"
        old["adapters"][0]["versions"]["firmware"] = old["adapters"][0]["disks"][0]["firmware"] = "9.9.9"
        cls.save(0, old)

    @classmethod
    def save(cls, at, report):
        report["host"] = f"store{at:03}"
        cls.bench.save(f"reports/store{at:03}.json", report)

    def files(self, count):
        return [self.bench.path(f"reports/store{at:03}.json") for at in range(count)]

    def names(self):
        return self.browser.texts(".tile .name")

    def choose(self, name, value):
        before = self.names()
        self.browser.run("""const list = document.querySelector(`select[name=${arguments[0]}]`); list.value = arguments[1];
                            list.dispatchEvent(new Event("change"))""", name, value)
        self.browser.soon(lambda: self.names() != before)
        return self.names()

    def test_worst_first_and_a_click_away(self):
        self.open(self.bench, "--from", *self.files(21))
        names = self.names()
        self.assertEqual(names[:6], ["store005", "store012", "store019", "store006", "store013", "store020"])
        self.assertEqual(names[6:], sorted(names[6:]))
        self.assertIn("days behind", self.browser.one(f'.tile[href$="machine=0"]').text)
        pieces = self.browser.run("""return ["header", ".tile", "li:nth-child(4) .tile"].map(
            (piece) => document.querySelector(piece).innerText.replace(/\\s+/g, " "))""")
        self.assertEqual(pieces, ["21 machines 336 disks \u00b7 2.0 PB 3 critical 3 warning 15 fine",
                                  "store005 4 critical a disk is offline, and 2 more 16 disks \u00b7 96.5 TB",
                                  "store006 2 warnings a disk foretells its failure 16 disks \u00b7 96.5 TB"])
        self.assertEqual(self.browser.run("""return [...document.querySelectorAll(".minis")].filter((shelves) => {
            const outer = shelves.getBoundingClientRect();
            return [...shelves.children].map((bay) => bay.getBoundingClientRect()).some((bay) =>
                bay.left < outer.left - 1 || bay.right > outer.right + 1 || bay.top < outer.top - 1 || bay.bottom > outer.bottom + 1);
        }).length"""), 0, "bays stand inside of their tiles")
        self.browser.one(".tile").click()
        self.assertTrue(self.browser.soon(lambda: self.browser.texts("h1") == ["store005"]))
        self.browser.press("ESCAPE")
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 21))
        self.assertIn("store005", self.browser.run("return document.activeElement.textContent"), "the focus is where it was")
        self.browser.press("ARROW_RIGHT", "ENTER")
        self.assertTrue(self.browser.soon(lambda: self.browser.texts("h1") == ["store012"]))
        self.browser.driver.back()
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 21))

    def test_filters(self):
        self.open(self.bench, "--from", *self.files(21))
        self.assertEqual(self.choose("problem", "disk-smart"), ["store006", "store013", "store020"])
        self.browser.one("select[name=problem]").send_keys("anything c")
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 3 and self.names()[0] == "store005"))
        self.assertEqual(self.browser.run("return document.activeElement.name"), "problem", "the focus stays")
        self.browser.one(".fleet .warn").click()
        self.assertTrue(self.browser.soon(lambda: self.names() == ["store006", "store013", "store020"]))
        self.browser.press("ENTER")
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 21), "chosen again it is given up")
        self.choose("problem", "critical")
        self.assertEqual(len(self.choose("problem", "")), 21)
        disk = self.kinds[0]["adapters"][0]["disks"][0]
        self.assertEqual(self.choose("firmware", "9.9.9"), ["store000"])
        self.assertEqual(self.choose("model", disk["model"]), ["store000"])
        self.assertEqual(self.browser.run("return document.querySelectorAll('.minis .faded').length"), 15)
        other = next(one["model"] for one in self.kinds[0]["adapters"][0]["disks"] if one["model"] != disk["model"])
        self.browser.run("location.hash = '#' + new URLSearchParams({firmware: '9.9.9', model: arguments[0]})", other)
        self.assertTrue(self.browser.soon(lambda: not self.names()), "model and firmware are of one device")
        self.browser.one(".found a").click()
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 21))
        self.browser.press("/", *"store01")
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 10))
        self.browser.one(".tile").click()
        self.browser.soon(lambda: self.browser.all(".back"))
        self.browser.one(".back").click()
        self.assertTrue(self.browser.soon(lambda: len(self.names()) == 10), "the filter is still there")

    def test_files_left_out_are_named(self):
        cut, later = self.bench.save("cut.json", '{"report": 1,'), self.bench.save("later<b>.json", {"report": 2})
        done = self.bench.run("ktreport", "page", "-o", self.bench.path("page.html"), "--from", cut, *self.files(3), later)
        self.assertEqual(done.returncode, 1)
        self.browser.open(self.bench.path("page.html"))
        left = self.browser.texts(".leftout li")
        self.assertEqual((len(left), len(self.names())), (2, 3))
        self.assertTrue("cut.json: is cut short" in left[0] and "later<b>.json: is a report of version 2" in left[1])

    def test_a_thousand_reports(self):
        start = time.monotonic()
        self.open(self.bench, "--from", *self.files(1000))
        self.assertEqual(len(self.browser.all(".tile")), 1000)
        took = time.monotonic() - start
        print(f"1,000 reports of 16 disks: {took:.1f} s, {os.path.getsize(self.bench.path('page.html')) >> 20} MB")
        self.assertLess(took, 10)
        self.assertEqual(self.browser.texts(".fleet a"), ["143 critical", "142 warning", "715 fine"])

    def test_sixteen_adapters(self):
        self.open(Bench("full"))
        self.assertEqual(len(self.browser.all("button.bay")), 2048)
        self.browser.all(".way")[15].click()
        self.assertEqual(self.browser.run("return document.activeElement.dataset.key"), "15/adapter/15")


class Pictures(Pages):
    """What a person should look at when the page has changed; the first is the README's."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bench = Bench("none")
        idle = ("clock", "until", "idle")
        fine = [report_of(lab, idle) for lab in (STORE, SMALL, TWO_SHELVES)]
        ill = [report_of(STORE, idle, ("disk", "fail", "3", "--force"), ("clock", "advance", "4h")),
               report_of(SMALL, idle, ("disk", "fail", "1", "--force")), report_of(TWO_SHELVES, idle, ("disk", "trip", "11")),
               report_of(STORE, idle, ("disk", "age", "15", "wear", "86")), report_of("default")]
        cls.paths = []
        for at in range(48):
            report = dict(ill[at // 9] if at % 9 == 4 and at < 45 else fine[(at * 5) % 7 % 3])
            report["host"] = f"{('ams', 'fra', 'sto')[at % 3]}-store-{at // 3 + 1:02}"
            cls.paths.append(cls.bench.save(report["host"] + ".json", report))

    def test_pictures(self):
        self.open(self.bench, "--from", *self.paths)
        self.browser.screen(1280, 720)
        self.browser.picture(os.path.join(PICTURES, "page.png"))
        for name, size in (("light", (1280, 900)), ("dark", (1280, 900, "dark")), ("phone", (390, 844, "light", 2))):
            self.browser.screen(*size)
            self.browser.picture(os.path.join(PICTURES, f"wall-{name}.png"))
            self.browser.one(".tile").click()
            self.browser.soon(lambda: self.browser.all("button.bay"))
            self.browser.run("document.querySelector('.shelf').scrollIntoView({block: 'center'})")
            self.browser.one("button.bay.bad, button.bay.busy").click()
            self.browser.picture(os.path.join(PICTURES, f"machine-{name}.png"))
            self.browser.press("ESCAPE", "ESCAPE")
            self.browser.soon(lambda: self.browser.all(".tile"))
        self.assertTrue(all(os.path.getsize(os.path.join(PICTURES, name)) > 20000
                            for name in ("page.png", "wall-phone.png", "machine-dark.png")))


if __name__ == "__main__":
    unittest.main()
