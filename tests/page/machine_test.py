"""One machine as somebody sees it: what is there, what is touched, what the page never does."""
import os
import unittest

from frame import Bench
from pages import SMALL, STORE, TWO_SHELVES, Pages, report_of

SCRIPT = "</script><script>window.ran=1</script>"
IMAGE = "<img src=x onerror='window.ran=2'>"


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
        words = [label.split(", ")[1] for label in labels if "disk" in label]
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
        self.bay("Slot 20").click()
        told = self.browser.one(".inspector.kept").text
        disk = next(one for one in self.adapter["disks"] if one["slot"] == 20)
        for text in (disk["model"], disk["serial"], disk["firmware"], "free", f"{disk['temperature']} \u00b0C", f"{disk['wear']} % used"):
            self.assertIn(text, told)
        self.assertNotIn("Sectors", told)
        self.bay("Slot 10").click()
        told = self.browser.one(".inspector").text
        counts = {meaning: next(one for one in self.adapter["disks"] if one["slot"] == 10)[word] for word, meaning in
                  (("pending", "waiting"), ("uncorrectable", "unreadable"), ("reallocated", "put elsewhere"))}
        self.assertIn("Sectors\n" + ", ".join(f"{count} {meaning}" for meaning, count in counts.items() if count), told)
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
        self.browser.media("print")
        self.assertEqual(self.browser.run("return getComputedStyle(document.querySelector('.seal')).color"), "rgb(255, 255, 255)")
        self.browser.media("screen")
        for disk in self.adapter["disks"]:
            self.assertIn(disk["serial"], printed)


class Layout(Pages):
    def test_nothing_in_a_bay_covers_anything_else(self):
        for lab in (STORE, SMALL, TWO_SHELVES, "default", "troubled"):
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
                        return !boxes.every((box) => inside(box, outer)) || boxes.some((one, at) => boxes.slice(at + 1).some((two) => meet(one, two)));
                    }).map((bay) => bay.ariaLabel)"""), [], (lab, width))


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
        self.open(bench)
        self.assertEqual(len(self.browser.all("button.bay")), 8)
        self.open(bench, "--from", *files)
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
                        "enclosures": [{"id": 9, "elements": [{"slot": 70000}, {"type": "fan", "status": 4}, {"type": "constructor"}]}],
                        "disks": [{"id": 5, "enclosure": 2, "slot": 1}, {"id": 5, "enclosure": 2, "slot": 1, "size": -1, "wear": 1e300},
                                  {"model": ["x"], "temperature": "hot"}],
                        "arrays": [{"disks": [None, 5, "x", 77], "virtualDisks": [{"disks": [5], "status": "valueOf"}, {}]}],
                        "virtualDisks": [{"id": 2, "disks": [5], "activity": {"percent": 1000}}]}]}
        self.open(bench, "--from", bench.save("odd.json", odd))
        self.assertEqual(len(self.browser.all(".adapter")), 2)
        self.assertEqual(self.browser.texts(".vd .chip"), ["valueOf", "unknown"])
        self.assertEqual(self.browser.texts(".adapter .chip")[:1], ["does not answer"])
        self.assertEqual(len(self.browser.all("button.bay")), 3)
        self.assertEqual(self.browser.texts(".volume .member.missing"), ["missing", "missing"])


class Troubled(Pages):
    def test_every_word(self):
        """What stands there, piece by piece, but for the problems, which are the report's; troubled.txt has it all."""
        bench = Bench("troubled")
        report = dict(bench.report(), host="store1", made="2026-01-05T08:00:00Z")
        parts = {part["type"]: part for part in report["adapters"][0]["enclosures"][0]["elements"]}  # the last of each type
        for kind, status in (("fan", "non-critical"), ("pow", "not installed"), ("tpr", "unrecoverable"), ("dpl", "unsupported")):
            parts[kind]["status"] = status
        parts["alm"]["type"] = "dor"
        self.open(bench, "--from", bench.save("report.json", report))
        self.browser.run("document.querySelectorAll('details').forEach((one) => { one.open = true; })")
        words = self.browser.run("""
            const pieces = [".hero > *", ".going li", ".legend", ".adapter > header", ".shelf h3", ".bays", ".parts", ".volume",
                            ".adapter:last-of-type tr"];
            return pieces.flatMap((piece) => [...document.querySelectorAll(piece)].map((one) => one.innerText.replace(/\\s+/g, " ")));""")
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "troubled.txt"), encoding="utf-8") as file:
            self.assertEqual("\n".join(words) + "\n", file.read())

    def test_every_kind_of_trouble_is_drawn(self):
        bench = Bench("troubled")
        report = bench.report()
        problems = report["problems"]
        self.open(bench)
        self.assertEqual(self.browser.texts(".problem .what"), [problem["text"] for problem in problems])
        shown = self.browser.run("return [...document.querySelectorAll('.problem.bad')].map((one) => one.checkVisibility())")
        self.assertEqual(shown, [True] * sum(problem["severity"] == "critical" for problem in problems))
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
        self.assertIn("becomes RAID5 on disks 4, 5, 6", self.browser.one(".volume:nth-child(3) .vd").text)
        foreign = self.browser.run("return [...document.querySelectorAll('.bay .word')].filter((word) => word.textContent === 'foreign').length")
        self.assertEqual(foreign, sum(disk.get("state") == "foreign" for one in adapters for disk in one["disks"]))


if __name__ == "__main__":
    unittest.main()
