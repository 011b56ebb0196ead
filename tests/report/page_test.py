"""page as a file: what it allows itself, that it is whole or not there, what it says of files that are no reports. How it
looks is for the tests with a browser."""
import base64
import hashlib
import html.parser
import json
import os
import stat
import unittest

from frame import Bench


class Parts(html.parser.HTMLParser):
    """The elements of a page with their attributes, and the texts of scripts and styles."""

    def __init__(self, text):
        super().__init__()
        self.elements, self.texts = [], []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, dict(attrs)))

    def handle_data(self, data):
        if self.elements and self.cdata_elem:  # inside of a script or a style
            self.texts.append((self.elements[-1], data))


def digest(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


class Page(unittest.TestCase):
    def setUp(self):
        self.bench = Bench("default")

    def page(self, *words, result=0, text=None):
        done = self.bench.run("ktreport", "page", *words, text=text)
        self.assertEqual(done.returncode, result, done.stderr)
        return done

    def data(self, text):
        return json.loads(next(data for (tag, attrs), data in Parts(text).texts if attrs.get("id") == "data"))

    def test_the_policy_names_what_the_page_holds(self):
        parts = Parts(self.page().stdout)
        policy = next(attrs["content"] for tag, attrs in parts.elements if attrs.get("http-equiv") == "Content-Security-Policy")
        rules = dict(rule.split(" ", 1) for rule in policy.split("; "))
        script = next(text for (tag, attrs), text in parts.texts if attrs.get("type") == "module")
        style = next(text for (tag, attrs), text in parts.texts if tag == "style")
        self.assertEqual((rules["default-src"], rules["script-src"], rules["style-src"]), ("'none'", digest(script), digest(style)))
        self.assertEqual([attrs for tag, attrs in parts.elements if "src" in attrs or attrs.get("href", "data:,") != "data:,"], [])
        self.assertFalse("http" in script.replace("http://www.w3.org/2000/svg", "") or "url(" in style)
        for sink in ("innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval(", "setTimeout(\""):
            self.assertNotIn(sink, script)

    def test_names_cannot_end_their_element(self):
        report = self.bench.report()
        report["host"] = "</script><script>\u202e\u001b\u007fx"
        report["adapters"][0]["disks"][0]["model"] = "\u0000\u0085"
        report["adapters"][0]["disks"][1]["model"] = "\u0085<b>"
        text = self.page("--from", self.bench.save("r.json", report)).stdout
        self.assertEqual(text.count("<script"), 2)
        first, second = self.data(text)["machines"][0]["adapters"][0]["disks"][:2]
        self.assertEqual((first.get("model"), second["model"]), (None, "?<b>"))
        self.assertEqual(self.data(text)["machines"][0]["host"], "</script><script>???x")

    def test_the_same_adapters_make_the_same_page(self):
        path = self.bench.save("r.json", self.bench.report())
        self.assertEqual(self.page("--from", path).stdout, self.page("--from", path).stdout)
        data = self.data(self.page("--from", "-", text=json.dumps(self.bench.report())).stdout)
        self.assertEqual(data["machines"][0]["source"], "standard input")
        self.assertEqual(len(self.data(self.page("-a", "1").stdout)["machines"][0]["adapters"]), 1)

    def test_a_file_is_replaced_as_a_whole_or_kept(self):
        path = self.bench.save("page.html", "old")
        os.chmod(path, 0o640)
        self.page("-o", path, "--from", self.bench.path("missing.json"), result=3)
        with open(path, encoding="ascii") as file:
            self.assertEqual(file.read(), "old")
        self.assertEqual(self.page("-o", path).stdout, "")
        with open(path, encoding="utf-8") as file:
            self.assertTrue(file.read().rstrip().endswith("</html>"))
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o640)
        self.assertEqual([name for name in os.listdir(self.bench.folder.name) if name.startswith(".kt")], [])

    def test_what_is_no_report_is_named_and_left_out(self):
        good = self.bench.save("good.json", self.bench.report())
        cut, large = self.bench.save("cut.json", '{"report": 1, "adapters": ['), self.bench.path("large.json")
        with open(large, "wb") as file:
            file.truncate(100 << 20)
        data = self.data(self.page("--from", good, cut, large, result=1).stdout)
        self.assertEqual(len(data["machines"]), 1)
        self.assertEqual(data["leftOut"], [cut + ": is cut short", large + ": is larger than 64 MB, too large for a report"])
