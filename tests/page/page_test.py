"""The page as somebody sees it: what is there, what is touched, what it never does."""
import copy
import json
import os
import time
import unittest

from browser import Browser
from frame import Bench

PICTURES = os.environ["PICTURES"]
DISK = {"type": "SAS", "size": "8TB", "on": "expander", "enclosure": 1}
STORE = {"adapters": [{
    "type": "array-based", "battery": {}, "expanders": [{}], "enclosures": [{"id": 1}],
    "disks": [dict(DISK, count=8), dict(DISK, count=5, type="SATA", size="4TB"),
              dict(DISK, type="SATA", size="4TB", spare="global"), dict(DISK, spare="global"),
              dict(DISK, type="SATA SSD", size="480GB")],
    "arrays": [{"name": "data", "level": "RAID6", "disks": list(range(8)), "virtualDisks": [{"name": "data"}]},
               {"name": "archive", "level": "RAID5", "disks": list(range(8, 13)),
                "virtualDisks": [{"name": "archive", "size": "10TB"}, {"name": "scratch"}]}]}]}
SMALL = {"adapters": [{"type": "LD-based", "disks": [{"count": 6, "type": "SATA", "size": "2TB"}], "virtualDisks": [
    {"name": "system", "level": "RAID1", "disks": [0, 1], "size": "200GB"},
    {"name": "home", "level": "RAID5", "disks": [2, 3, 4]}]}]}
TWO_SHELVES = {"adapters": [{
    "type": "array-based", "battery": {}, "expanders": [{}, {}], "enclosures": [{"id": 1}, {"id": 2}],
    "disks": [dict(DISK, count=18), dict(DISK, count=5, spare="global"),
              dict(DISK, count=10, type="SAS SSD", size="1600GB", parent=1, enclosure=2),
              dict(DISK, type="SAS SSD", size="1600GB", parent=1, enclosure=2, spare="global")],
    "arrays": [{"name": "bulk", "level": "RAID60", "disks": list(range(18)), "virtualDisks": [{"name": "bulk"}]},
               {"name": "fast", "level": "RAID10", "disks": list(range(23, 33)), "virtualDisks": [{"name": "mail"}]}]}]}
SCRIPT = "</script><script>window.ran=1</script>"
IMAGE = "<img src=x onerror='window.ran=2'>"


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


class OneMachine(Pages):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bench = Bench(STORE)
        cls.bench.sim("clock", "until", "idle")
        cls.bench.sim("disk", "fail", "3", "--force")
        cls.bench.sim("disk", "trip", "10")
        cls.bench.sim("disk", "age", "15", "wear", "83")
        cls.bench.sim("clock", "advance", "1h")
        cls.report = cls.bench.report()
        cls.adapter = cls.report["adapters"][0]

    def setUp(self):
        super().setUp()
        self.open(self.bench)

    def test_bays_are_in_place_with_a_shape_and_a_word(self):
        labels = self.browser.run("return [...document.querySelectorAll('.shelf:has(.tall) .bay')].map((bay) => bay.ariaLabel)")
        disks = {disk["slot"]: disk for disk in self.adapter["disks"]}
        self.assertEqual([label.split(":")[0] for label in labels], [f"Slot {slot} of enclosure 1" for slot in range(24)])
        for slot, label in enumerate(labels):
            self.assertIn(f"disk {disks[slot]['id']}, " if slot in disks else "empty", label)
        words = [label.split(", ")[1] for label in labels[:16]]
        self.assertEqual(words, ["in use"] * 3 + ["failed"] + ["in use"] * 6 + ["failing"] + ["in use"] * 2 + ["spare", "rebuilding", "worn"])
        lefts = [bay.rect["x"] for bay in self.browser.all(".tall .bay")]
        self.assertEqual(lefts, sorted(lefts))

    def test_what_differs_differs_by_shape_and_word_as_well(self):
        chips = self.browser.run("""return [...document.querySelectorAll(".legend .chip, .bay:not(.empty)")].map((node) =>
            [getComputedStyle(node).getPropertyValue("--tone"), node.querySelector("path").getAttribute("d")])""")
        tones = {}
        for tone, path in chips:
            tones.setdefault(tone, path)
            self.assertEqual(tones[tone], path)
        self.assertEqual((len(tones), len(set(tones.values()))), (7, 7))

    def test_problems_stand_on_top_with_what_to_do(self):
        problems = self.report["problems"]
        self.assertEqual(self.browser.texts(".problem .what"), [problem["text"] for problem in problems])
        self.assertEqual([text.replace('"', "") for text in self.browser.texts(".problem .do")],
                         [problem["action"].replace('"', "") for problem in problems])
        self.assertIn("1 critical", self.browser.one(".verdict p").text)
        self.assertLess(self.browser.one(".problem").location["y"], self.browser.one(".shelf").location["y"])
        self.browser.one('[data-problem="disk-smart"] .show').click()
        self.assertIn("disk 10,", self.browser.run("return document.activeElement.ariaLabel"))
        self.assertIn("Disk 10", self.browser.one(".inspector").text)

    def test_a_touch_tells_of_the_disk(self):
        self.bay("Slot 15").click()
        told = self.browser.one(".inspector.kept").text
        disk = next(one for one in self.adapter["disks"] if one["slot"] == 15)
        for text in (disk["model"], disk["serial"], disk["firmware"], "free", f"{disk['temperature']} \u00b0C", f"{disk['wear']} % used"):
            self.assertIn(text, told)
        self.bay("Slot 9").click()
        self.assertIn('array 1 "archive", virtual disk 1 "archive", virtual disk 2 "scratch"', self.browser.one(".inspector").text)
        lit = self.browser.run("return [...document.querySelectorAll('.bay.lit')].map((bay) => bay.dataset.key)")
        self.assertEqual(sorted(lit), sorted(f"0/disk/{i}" for i in range(8, 13)))
        self.browser.one(".close").click()
        self.assertEqual((self.browser.all(".inspector"), self.browser.all(".lit")), ([], []))

    def test_volumes_are_what_they_are_made_of(self):
        self.assertEqual(self.browser.texts(".volume h4"), ["data", "archive"])
        members = self.browser.run("return [...document.querySelectorAll('.volume')].map((one) => [...one.querySelectorAll('.member')].map((two) => two.dataset.key))")
        arrays = self.adapter["arrays"]
        self.assertEqual(members, [[f"0/disk/{i}" for i in array["disks"] + array["spares"]] for array in arrays])
        self.assertEqual(self.browser.texts(".vd .name b"), ["data", "archive", "scratch"])
        activity = arrays[0]["virtualDisks"][0]["activity"]
        for bar in self.browser.all(".volume [role=progressbar], .going [role=progressbar]"):
            self.assertEqual((bar.get_attribute("aria-valuenow"), bar.get_attribute("aria-label")), (str(activity["percent"]), "rebuild"))
        self.assertEqual(len(self.browser.all("[role=progressbar]")), 2)
        self.browser.one(".volume .member").click()
        self.assertIn("disk 0,", self.browser.run("return document.activeElement.ariaLabel"))

    def test_keys_alone_are_enough(self):
        self.browser.run("document.querySelector('button.bay').focus()")
        self.browser.press("ARROW_RIGHT", "ARROW_RIGHT", "ARROW_RIGHT")
        self.assertIn("Disk 3", self.browser.one(".inspector").text)
        self.browser.press("END")
        self.assertIn("Disk 15", self.browser.one(".inspector").text)
        self.browser.press("ENTER")
        self.assertTrue(self.browser.all(".inspector.kept"))
        self.browser.press("TAB")
        self.assertEqual(self.browser.run("return document.activeElement.ariaLabel"), "Close", "the card is the next stop")
        self.browser.press("ESCAPE")
        self.assertFalse(self.browser.all(".inspector"))
        self.assertIn("disk 15,", self.browser.run("return document.activeElement.ariaLabel"))
        stops = [self.browser.press("TAB") or self.browser.run("return document.activeElement.className") for _ in range(2)]
        self.assertFalse([stop for stop in stops if "bay" in stop], "a shelf is one stop")

    def test_the_policy_forbids_what_the_page_does_not_bring_along(self):
        blocked = self.browser.run("""
            const names = [];
            document.addEventListener("securitypolicyviolation", (event) => names.push(event.effectiveDirective));
            const attempt = (make) => { try { make(); } catch (error) { names.push(error.name); } };
            attempt(() => { document.body.innerHTML = "<b>x</b>"; });
            attempt(() => { const node = document.createElement("script"); node.append("window.ran = 3"); document.body.append(node); });
            attempt(() => { const node = document.createElement("img"); node.src = "http://127.0.0.1:9/x"; document.body.append(node); });
            return new Promise((done) => setTimeout(() => done(names), 300));""")
        self.assertIn("TypeError", blocked)
        self.assertTrue({"require-trusted-types-for", "img-src"} <= set(blocked), blocked)
        self.assertIsNone(self.browser.run("return window.ran ?? null"))
        self.assertTrue(self.browser.complaints(), "the browser tells of each")
        self.browser.requests()

    def test_dark_phone_and_paper(self):
        paper = "return getComputedStyle(document.documentElement).backgroundColor"
        light = self.browser.run(paper)
        self.browser.one(".theme").click()
        self.assertNotEqual(self.browser.run(paper), light)
        self.browser.screen(390, 844, "dark")
        self.open(self.bench)
        self.assertNotEqual(self.browser.run(paper), light)
        self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), 390)
        self.assertGreater(self.bay("Slot 0").rect["width"], 44)
        self.bay("Slot 3").click()
        card, bay = self.browser.one(".inspector").rect, self.bay("Slot 3")
        self.assertGreaterEqual(card["width"], 360)
        self.assertLess(self.browser.run("return arguments[0].getBoundingClientRect().bottom", bay),
                        self.browser.run("return document.querySelector('.inspector').getBoundingClientRect().top"))
        self.browser.run("addEventListener('beforeprint', () => { window.printed = document.querySelector('details.table[open]').textContent; })")
        self.assertGreater(len(self.browser.driver.print_page()), 20000)
        printed = self.browser.run("return window.printed")
        for disk in self.adapter["disks"]:
            self.assertIn(disk["serial"], printed)


class Hostile(Pages):
    def test_names_stay_text(self):
        report = report_of("hostile")
        report["host"] = SCRIPT * 9
        adapter = report["adapters"][0]
        adapter["model"], adapter["arrays"][0]["name"] = IMAGE, SCRIPT
        for disk in adapter["disks"]:
            disk["model"], disk["serial"] = IMAGE, "\u202e\u0007" + SCRIPT
        adapter["arrays"][0]["virtualDisks"][0]["name"] = "<!--<script>"
        bench = Bench("hostile")
        for name, one in (("a.json", report), ("b<script>.json", report)):
            with open(bench.path(name), "w", encoding="ascii") as file:
                json.dump(one, file)
        self.open(bench)
        self.assertEqual(len(self.browser.all("button.bay")), 8)
        self.open(bench, "--from", bench.path("a.json"), bench.path("b<script>.json"))
        self.assertEqual(len(self.browser.all(".tile")), 2)
        self.assertTrue(all(name.startswith(SCRIPT) for name in self.browser.texts(".tile .name")))
        self.browser.one(".tile").click()
        self.browser.soon(lambda: self.browser.all("button.bay"))
        self.browser.one("button.bay").click()
        self.assertIn(IMAGE, self.browser.one(".inspector").text)
        self.assertIn("??" + SCRIPT, self.browser.one(".inspector").text)
        self.assertEqual(self.browser.texts(".volume h4")[0], SCRIPT)
        self.assertEqual(self.browser.all("main script, main img, .inspector b, h1 *"), [])
        self.assertIsNone(self.browser.run("return window.ran ?? null"))
        self.browser.screen(390, 844)
        for _ in ("machine", "wall"):
            self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), 390)
            self.browser.press("ESCAPE", "ESCAPE")
            self.browser.soon(lambda: self.browser.all(".tile"))

    def test_what_is_missing_or_odd_breaks_nothing(self):
        bench = Bench("none")
        self.open(bench)
        self.assertIn("There is no adapter", self.browser.one(".verdict").text)
        odd = {"report": 1, "host": 7, "adapters": [
            {"id": 0}, {"id": 1, "type": "LD-based", "model": {}, "battery": False, "portMultipliers": [{"id": 0, "ports": 4294967296}],
                        "enclosures": [{"id": 9, "elements": [{"slot": 70000}, {"type": "fan", "status": 4}]}],
                        "disks": [{"id": 5, "enclosure": 2, "slot": 1}, {"id": 5, "enclosure": 2, "slot": 1, "size": -1, "wear": 1e300},
                                  {"model": ["x"], "temperature": "hot"}],
                        "arrays": [{"disks": [None, 5, "x", 77], "virtualDisks": [{"disks": [5], "status": 9}, {}]}],
                        "virtualDisks": [{"id": 2, "disks": [5], "activity": {"percent": 1000}}]}]}
        with open(bench.path("odd.json"), "w", encoding="ascii") as file:
            json.dump(odd, file)
        self.open(bench, "--from", bench.path("odd.json"))
        self.assertEqual(len(self.browser.all(".adapter")), 2)
        self.assertEqual(self.browser.texts(".adapter .chip")[:1], ["does not answer"])
        self.assertEqual(len(self.browser.all("button.bay")), 3)
        self.assertEqual(self.browser.texts(".volume .member.missing"), ["missing", "missing"])


class Troubled(Pages):
    def test_every_kind_of_trouble_is_drawn(self):
        bench = Bench("troubled")
        report = bench.report()
        problems = report["problems"]
        self.open(bench)
        self.assertEqual(self.browser.texts(".problem .what"), [problem["text"] for problem in problems])
        self.assertTrue(all(item.is_displayed() for item in self.browser.all(".problem.bad")))
        ways = self.browser.run("return document.querySelectorAll('.problem .show').length")
        for at in range(ways):  # every "Show it" finds what it is about
            self.browser.run("document.activeElement.blur(); document.querySelectorAll('.problem .show')[arguments[0]].click()", at)
            self.assertTrue(self.browser.run("return document.activeElement.dataset.key ?? null"), at)
        self.assertGreaterEqual(ways, len(problems) - 1)
        adapters = report["adapters"]
        arrays = [array for adapter in adapters for array in adapter.get("arrays", [])]
        volumes = [vd for owner in adapters + arrays for vd in owner["virtualDisks"]]
        going = sum("activity" in vd for vd in volumes) + sum("patrol" in disk for one in adapters for disk in one["disks"])
        self.assertEqual(len(self.browser.all(".going li")), going)
        foreign = self.browser.run("return [...document.querySelectorAll('.bay .word')].filter((word) => word.textContent === 'foreign').length")
        self.assertEqual(foreign, sum(disk.get("state") == "foreign" for one in adapters for disk in one["disks"]))


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
        with open(cls.bench.path(f"reports/store{at:03}.json"), "w", encoding="ascii") as file:
            json.dump(report, file)

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
        self.assertIn("old", self.browser.one(f'.tile[href$="machine=0"]').text)
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
        self.assertEqual(len(self.choose("problem", "critical")), 3)
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
        for name, text in (("cut.json", '{"report": 1,'), ("later<b>.json", '{"report": 2}')):
            with open(self.bench.path(name), "w", encoding="ascii") as file:
                file.write(text)
        done = self.bench.run("ktreport", "page", "-o", self.bench.path("page.html"), "--from", self.bench.path("cut.json"),
                              *self.files(3), self.bench.path("later<b>.json"))
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
               report_of(SMALL, idle, ("disk", "fail", "1", "--force")), report_of(TWO_SHELVES, idle, ("disk", "trip", "21")),
               report_of(STORE, idle, ("disk", "age", "15", "wear", "86")), report_of("default")]
        cls.paths = []
        for at in range(48):
            report = dict(ill[at // 9] if at % 9 == 4 and at < 45 else fine[(at * 5) % 7 % 3])
            report["host"] = f"{('ams', 'fra', 'sto')[at % 3]}-store-{at // 3 + 1:02}"
            cls.paths.append(cls.bench.path(report["host"] + ".json"))
            with open(cls.paths[-1], "w", encoding="ascii") as file:
                json.dump(report, file)

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
