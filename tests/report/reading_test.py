"""Reading: only calls that change nothing, none of them twice, and a document that fits its schema whatever fails."""
import collections
import json
import os
import re
import unittest

from frame import BIN, LABS, RARE, SCHEMA, Bench, fits_schema

# What may be called, by name; everything else in the header may not even stand in the program.
READING = re.compile(r"KT_(API_(Initialize|Finalize|Version)|Adapter_Get(Count|Info|Config)|SIM_SgVersion|DiskHasOS"
                     r"|(LD|DG|PD|BLK|BBU|ENC|EVT|VDHDD)_Get\w+|PD_GET_SMART_INFO|AES_(Only)?Get\w+|Tandem(ix)?_Get\w+"
                     r"|Flash_Bin)$")
SETTINGS = re.compile(r"KT_Flash_Bin a=\d+ action=240 imageType=0$")
EVERYTHING = object()


def walk(node, document, kind, seen):
    """Adds the words of the document that the schema's node knows, by their kind of object; EVERYTHING has all of them."""
    if "$ref" in node:
        kind = node["$ref"].rsplit("/", 1)[1]
        node = SCHEMA["definitions"][kind]
    for choice in node.get("anyOf", []) + node.get("oneOf", []):
        walk(choice, document, kind, seen)
    words = node.get("properties", {})
    for word in words if document is EVERYTHING else words.keys() & (document if isinstance(document, dict) else {}):
        seen.add((kind, word))
        walk(words[word], EVERYTHING if document is EVERYTHING else document[word], kind + "." + word, seen)
    items = [EVERYTHING] if document is EVERYTHING else document if isinstance(document, list) else []
    for item in items if "items" in node else []:
        walk(node["items"], item, kind, seen)


class Reading(unittest.TestCase):
    def test_binary_has_no_other_calls(self):
        with open(os.path.join(BIN, "ktreport"), "rb") as file:
            words = set(re.findall(rb"[A-Za-z_0-9]+", file.read()))
        with open(os.path.join(os.environ["SOURCE"], "libktraid", "include", "ktraid.h"), encoding="ascii") as file:
            calls = set(re.findall(r"\b(KT_[A-Z]\w+)\(", file.read()))
        there = {call for call in calls if any(call.encode() in word for word in words)}
        self.assertIn("KT_PD_GetHDInfo", there)
        self.assertEqual({call for call in there if not READING.match(call)}, set())

    def test_labs(self):
        """Each word of the schema, but for codes without a word of their own, is given by one lab or another."""
        every, given = set(), set()
        walk(SCHEMA, EVERYTHING, "report", every)
        for lab in [*LABS, RARE]:
            bench = Bench(lab)
            if lab == RARE:
                bench.sim("disk", "fail", "0", "-a", "1", "--force")
                bench.sim("fault", "KT_PD_GetFreeSpaceInfo", "9")
            for words in ([], ["--records"]) if lab != "full" else (["--records"],):
                done = bench.run("ktreport", "json", *words, trace=True)
                self.assertEqual((done.returncode, done.stderr), (0, ""), lab)
                document = json.loads(done.stdout)
                fits_schema(self, document, lab)
                walk(SCHEMA, document, "report", given)
                calls = bench.calls()
                twice = [call for call, count in collections.Counter(calls).items() if count > 1]
                self.assertEqual(twice, [], lab)
                for call in calls:
                    self.assertRegex(call.split()[0], READING)
                    if call.startswith("KT_Flash_Bin"):
                        self.assertTrue(words and SETTINGS.match(call), call)
        codes = {(kind, word) for kind, word in every if word[0].isupper() or "." in word}
        self.assertEqual({f"{kind}.{word}" for kind, word in every - given - codes},
                         {"disk.cipher", "disk.cipherPercent", "port.entry", "target.parity", "target.parts"})

    def test_all_done_is_a_percentage(self):
        whole = {"percent": 100, "state": "paused"}
        adapter = Bench({"adapters": [{
            "type": "LD-based", "disks": [{"count": 2}, {"patrol": whole}],
            "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "activity": {"kind": "check", **whole}}]}]}).report()["adapters"][0]
        self.assertEqual([adapter["disks"][2]["patrol"], adapter["virtualDisks"][0]["activity"]],
                         [{"kind": kind, **whole} for kind in ("media patrol", "check")])

    def test_library_that_does_not_start(self):
        bench = Bench("default")
        bench.save("state.db", "no state")
        done = bench.run("ktreport", "json")
        document = json.loads(done.stdout)
        fits_schema(self, document, "not started")
        self.assertEqual((done.returncode, document["adapters"], document["unread"][0]["call"]), (3, [], "KT_API_Initialize"))
        done = bench.run("ktreport")
        self.assertEqual((done.returncode, done.stdout, "does not start" in done.stderr), (3, "", True))
        self.assertRegex(bench.run("ktreport", "check").stdout, r"^RAID UNKNOWN - the library does not start")
        done = bench.run("ktreport", "metrics")
        self.assertEqual((done.returncode, re.findall("^ktraid_(?:up|adapters).*", done.stdout, re.M)), (3, ["ktraid_up 0"]))

    def test_views_only_read(self):
        """Every command of the help, on every lab but the largest; diff reads the adapters behind a report of them."""
        for lab in [lab for lab in LABS if lab != "full"]:
            bench = Bench(lab)
            report = bench.save("report", bench.run("ktreport", "json").stdout)
            help_text = bench.run("ktreport", "--help").stdout.split("Subcommands:")[1]
            commands = re.findall(r"^  (\w+)", help_text, re.M)
            self.assertLessEqual({"show", "check", "json"}, set(commands))
            for command in [word for word in commands if word != "schema"]:
                more = {"diff": [report], "wait": ["--timeout", "1s"], "show": ["--all"]}.get(command, [])
                done = bench.run("ktreport", command, *more, trace=True)
                self.assertNotIn("\033", done.stdout, command)
                calls = bench.calls()
                self.assertIn("KT_API_Initialize", calls[0], command)
                self.assertEqual([call for call in calls if not READING.match(call.split()[0])], [], command)

    def test_failing_calls(self):
        """Each call failing, with one code or another: valid, and the failure stands in it."""
        bench = Bench("default")
        bench.run("ktreport", "json", "--records", trace=True)
        # What fails as a whole, and the call whose every failure means "not linked".
        silent = {"KT_VDHDD_GetLink", "KT_API_Initialize", "KT_API_Finalize", "KT_API_Version", "KT_Adapter_GetCount", "KT_SIM_SgVersion"}
        for at, name in enumerate(sorted({call.split()[0] for call in bench.calls()} - silent)):
            code = ("1", "19", "9", "200", "255")[at % 5]
            bench.sim("fault", name, code)
            document = bench.report("--records")
            fits_schema(self, document, name)
            self.assertIn((name, int(code)), [(one["call"], one.get("status")) for one in document["unread"]])
            # "Not supported" is an answer; any other status is a refusal.
            refused = {"unread", "adapter-unread"} & {one["name"] for one in document["problems"]}
            self.assertEqual(bool(refused), code != "19", name)
            if name == "KT_BLK_GetInfo":  # where a virtual disk lies is not known then, which is no missing disk
                self.assertNotIn("disks", document["adapters"][0]["arrays"][0]["virtualDisks"][0])
            bench.sim("fault", "clear")

    def test_misbehaving_library(self):
        """Counts that are too large, lists that go round and texts filled to the brim end a walk, not the report."""
        for lab, kind in (("default", "count"), ("troubled", "next"), ("troubled", "text")):
            bench = Bench(lab)
            bench.run("ktreport", "json", trace=True)
            for name in sorted({call.split()[0] for call in bench.calls() if "_Get" in call or "SMART_INFO" in call}):
                bench.run("ktsim", "fault", name, "0", "--kind", kind)
            for words in (["json", "--records"], ["show"], ["check"]):
                done = bench.run("ktreport", *words)
                self.assertNotIn("\033", done.stdout)
                if words[0] == "json":
                    fits_schema(self, json.loads(done.stdout), kind)

    def test_hostile_texts(self):
        bench = Bench("hostile")
        other = bench.save("other", Bench("default").report())
        for words in ([], ["--all"], ["json"], ["check"], ["map"], ["map", "--csv"], ["events"], ["diff", other],
                      ["diff", other, "--json", "--all"]):
            text = bench.run("ktreport", *words).stdout
            self.assertEqual([byte for byte in text if not (" " <= byte <= "~" or byte == "\n")], [], words)
