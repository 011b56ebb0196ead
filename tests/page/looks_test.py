"""What no walk shows: what the policy forbids, hostile names, layouts, colours and paper, many machines, pictures."""
import os
import time
import unittest

from frame import Bench
from pages import PICTURES, SMALL, STORE, TWO_SHELVES, Pages, report_of

SCRIPT = "</script><script>window.ran=1</script>"
IMAGE = "<img src=x onerror='window.ran=2'>"
IDLE = ("clock", "until", "idle")


class OneMachine(Pages):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bench = Bench(STORE)
        for words in (IDLE, ("disk", "fail", "3", "--force"), ("disk", "trip", "10"), ("clock", "advance", "1h")):
            cls.bench.sim(*words)

    def setUp(self):
        super().setUp()
        self.open(self.bench)

    def test_what_differs_differs_by_shape_and_word_as_well(self):
        chips = self.browser.run("""return [...document.querySelectorAll(".legend .chip, .bay:not(.empty)")].map((node) =>
            [getComputedStyle(node).getPropertyValue("--tone"), node.querySelector("path").getAttribute("d")])""")
        tones = {}
        for tone, path in chips:
            self.assertEqual(tones.setdefault(tone, path), path)
        self.assertEqual((len(tones), len(set(tones.values()))), (7, 7))

    def test_the_policy_forbids_what_the_page_does_not_bring_along(self):
        blocked = self.browser.run("""
            const names = [];
            document.addEventListener("securitypolicyviolation", (event) => names.push(event.effectiveDirective));
            const attempt = (make) => { try { make(); } catch (error) { names.push(error.name); } };
            const add = (tag, words) => document.body.append(Object.assign(document.createElement(tag), words));
            attempt(() => { document.body.innerHTML = "<b>x</b>"; });
            attempt(() => add("script", {textContent: "window.ran = 3"}));
            attempt(() => add("img", {src: "http://127.0.0.1:9/x"}));
            return new Promise((done) => setTimeout(() => done(names), 300));""")
        self.assertLessEqual({"TypeError", "require-trusted-types-for", "img-src"}, set(blocked))
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
        bay = self.browser.one('button.bay[aria-label^="Slot 3 "]')
        bay.click()
        self.assertGreater(bay.rect["width"], 44)
        self.assertGreaterEqual(self.browser.one(".inspector").rect["width"], 360)
        self.assertTrue(self.browser.run("""return document.querySelector('.inspector').getBoundingClientRect().top >
                                            arguments[0].getBoundingClientRect().bottom""", bay))
        self.assertGreater(len(self.browser.driver.print_page()), 20000)
        self.browser.media("print")
        self.assertEqual(self.browser.run("return getComputedStyle(document.querySelector('.seal')).color"), "rgb(255, 255, 255)")
        self.browser.media("screen")


class Layout(Pages):
    def test_nothing_in_a_bay_covers_anything_else(self):
        for lab in (STORE, SMALL, TWO_SHELVES, "troubled"):
            bench = Bench(lab)
            for width in (1280, 1020, 720, 390):
                self.browser.screen(width)
                self.open(bench)
                self.assertEqual(self.browser.run("""
                    const inside = (box, outer) => box.left >= outer.left - 1 && box.right <= outer.right + 1 &&
                        box.top >= outer.top - 1 && box.bottom <= outer.bottom + 1;
                    const meet = (a, b) => Math.min(a.right, b.right) - Math.max(a.left, b.left) > 1 &&
                        Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top) > 1;
                    return [...document.querySelectorAll("button.bay")].filter((bay) => {
                        const outer = bay.getBoundingClientRect();
                        const boxes = [...bay.children].map((child) => child.getBoundingClientRect()).filter((box) => box.width > 0);
                        return !boxes.every((box, at) => inside(box, outer) && !boxes.slice(at + 1).some((two) => meet(box, two)));
                    }).map((bay) => bay.ariaLabel)"""), [], (lab, width))

    def test_shelves_of_every_size(self):
        """How many bays stand side by side, and which way; of a port multiplier's ports only as many as any has."""
        sizes = (3, 4, 5, 16, 17, 26, 27)
        shelves = [{"id": size, "elements": [{"slot": slot} for slot in range(size)]} for size in sizes]
        multipliers = [{"id": 0, "ports": 5}, {"id": 1, "ports": 2 ** 40}]
        bench = Bench("none")
        report = {"report": 1, "adapters": [{"id": 0, "enclosures": shelves, "portMultipliers": multipliers}]}
        self.open(bench, "--from", bench.save("r.json", report))
        rows = self.browser.run("""return [...document.querySelectorAll('.bays')].map((one) =>
            [one.children.length, one.style.cssText, one.className])""")
        self.assertEqual([f"{count} {columns[11:-1]} {name[5:]}" for count, columns, name in rows],
                         ["3 3 wide", "4 4 wide", "5 4 wide", "16 4 wide", "17 17 tall", "26 26 tall", "27 24 tall", "5 5 wide", "64 6 wide"])


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
        files = [bench.save(name, report) for name in ("a.json", "b<script>.json")]
        self.open(bench, "--from", *files)
        self.assertEqual([name.startswith(SCRIPT) for name in self.browser.texts(".tile .name")], [True] * 2)
        self.browser.one(".tile").click()
        self.browser.soon(lambda: self.browser.all("button.bay"))
        self.browser.one("button.bay").click()
        for text in (IMAGE, "??" + SCRIPT):
            self.assertIn(text, self.browser.one(".inspector").text)
        self.assertEqual(self.browser.texts(".volume h4")[0], SCRIPT)
        self.assertEqual(self.browser.all("main script, main img, .inspector b, h1 *"), [])
        self.assertIsNone(self.browser.run("return window.ran ?? null"))
        self.browser.screen(390, 844)
        for _ in ("machine", "wall"):
            self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), 390)
            self.browser.press("ESCAPE", "ESCAPE")
            self.browser.soon(lambda: self.browser.all(".tile"))


class Many(Pages):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.bench = Bench("none")

    def save(self, report, host):
        return self.bench.save(host + ".json", dict(report, host=host))

    def test_a_thousand_reports(self):
        kinds = [report_of(STORE, IDLE, *more) for more in ([], [("disk", "fail", "9", "--force")], [("disk", "trip", "10")])]
        files = [self.save(kinds[max(at % 7 - 4, 0)], f"store{at:03}") for at in range(1000)]
        start = time.monotonic()
        self.open(self.bench, "--from", *files)
        self.assertEqual(len(self.browser.all(".tile")), 1000)
        took = time.monotonic() - start
        print(f"1,000 reports of 16 disks: {took:.1f} s, {os.path.getsize(self.bench.path('page.html')) >> 20} MB")
        self.assertLess(took, 120 if "sanitize" in os.environ["BIN"] else 30)
        self.assertEqual(self.browser.texts(".fleet a"), ["143 critical", "142 warning", "715 fine"])

    def test_sixteen_adapters(self):
        full = Bench("full")
        self.open(full)
        self.assertEqual(len(self.browser.all("button.bay")), 2048)
        self.browser.all(".way")[15].click()
        self.assertEqual(self.browser.run("return document.activeElement.dataset.key"), "15/adapter/15")
        self.open(self.bench, "--from", self.save(full.report(), "full"), self.save({"report": 1, "adapters": []}, "none"))
        self.assertEqual(self.browser.run("return document.querySelector('.proportions').innerHTML"),
                         '<span class="good" style="--share: 2048;"></span>')

    def test_pictures(self):
        """What a person should look at when the page has changed; the first is the README's."""
        fine = [report_of(lab, IDLE) for lab in (STORE, SMALL, TWO_SHELVES)]
        ill = [report_of(lab, IDLE, ("disk", *words.split())) for lab, words in (
            (STORE, "fail 3 --force"), (SMALL, "fail 1 --force"), (TWO_SHELVES, "trip 11"), (STORE, "age 15 wear 86"),
            ("default", "trip 11"))]
        self.open(self.bench, "--from", *(
            self.save(ill[at // 9] if at % 9 == 4 and at < 45 else fine[at * 5 % 7 % 3], f"{('ams', 'fra', 'sto')[at % 3]}-store-{at // 3 + 1:02}")
            for at in range(48)))
        self.assertEqual(self.browser.run("""return [...document.querySelectorAll(".minis")].filter((shelves) => {
            const outer = shelves.getBoundingClientRect();
            return [...shelves.children].map((bay) => bay.getBoundingClientRect()).some((bay) =>
                bay.left < outer.left - 1 || bay.right > outer.right + 1 || bay.top < outer.top - 1 || bay.bottom > outer.bottom + 1);
        }).length"""), 0, "bays stand inside of their tiles")
        self.browser.screen(1280, 720)
        self.browser.picture(os.path.join(PICTURES, "page.png"))
        for name, size in (("light", (1280, 900)), ("dark", (1280, 900, "dark")), ("phone", (390, 844, "light", 2))):
            self.browser.screen(*size)
            self.browser.picture(os.path.join(PICTURES, f"wall-{name}.png"))
        self.assertGreater(min(os.path.getsize(os.path.join(PICTURES, name)) for name in ("page.png", "wall-phone.png")), 20000)
