"""diff, events and wait: what they say of adapters that change, and what they leave when they are killed."""
import json
import os
import signal
import subprocess
import time
import unittest

from frame import BIN, Bench


class Views(unittest.TestCase):
    def setUp(self):
        self.bench = Bench("default")

    def view(self, *words, result=0):
        done = self.bench.run("ktreport", *words)
        self.assertEqual((done.returncode, done.stderr), (result, ""), words)
        return done.stdout

    def saved(self, name):
        return self.bench.save(name, self.view("json"))

    def test_what_is_not_known_is_not_gone(self):
        old = self.saved("old")
        self.bench.sim("fault", "KT_PD_GetHDInfo", "9")
        done = self.bench.run("ktreport", "diff", old)
        self.assertEqual(done.returncode, 1)
        self.assertIn("the disks of adapter 0 (Tarn R8i, serial KS260100004711) are known only from before", done.stdout)
        self.assertNotIn("gone", done.stdout)

    def test_a_spare_of_another_kind(self):
        old = self.saved("old")
        for words in ("delete -o spare -i 9", "assign -d 9"):
            self.assertEqual(self.bench.run("ktsetup", "0", *words.split(), "--waiveconfirmation").returncode, 0)
        self.assertIn(" on adapter 0 is a global spare now (was dedicated)\n", self.view("diff", old, result=1))

    def test_events_are_told_once(self):
        self.bench.sim("disk", "fail", "1", "--force")
        self.bench.sim("clock", "advance", "1h")
        cursor = self.bench.path("cursor")
        first = self.view("events", "-a", "0", "--cursor", cursor, "--quiet-progress").splitlines()
        self.assertEqual(first[2:4], ["2026-01-05T08:00:00Z adapter 0 #3 [CRITICAL] Physical disk 1 is set down",
                                      "2026-01-05T08:00:00Z adapter 0 #4 [MAJOR] Virtual Disk 2 is degraded"])
        self.assertFalse([line for line in first if line.endswith("% done")])
        self.assertEqual(self.view("events", "-a", "0", "--cursor", cursor), "")
        self.bench.sim("clock", "until", "idle")
        since = json.loads(self.view("events", "-a", "0", "--cursor", cursor, "--json").splitlines()[-1])
        self.assertEqual((since["adapter"], since["text"]), (0, "Virtual Disk 2 is online"))
        self.assertIn("#4 ", self.view("events", "-a", "0", "--since", "4").splitlines()[0])

    def test_lost_events_are_said(self):
        report = json.loads(self.view("json", "-a", "1"))
        cursor = self.bench.path("cursor")
        events = [dict(report["adapters"][0]["events"][0], SequenceNo=i) for i in range(1, 8)]

        def tell(part):
            report["adapters"][0]["events"] = part
            saved = self.bench.save("report", report)
            return [line.split(" [")[0] for line in self.view("events", "--from", saved, "--cursor", cursor).splitlines()]
        tell(events[:2])
        self.assertEqual(tell(events[5:]), ["adapter 1: 3 events were lost: the log has gone on without them",
                                            "2026-01-05T08:00:00Z adapter 1 #6", "2026-01-05T08:00:00Z adapter 1 #7"])
        self.assertEqual(tell(events[:1])[0], "adapter 1: the log has begun anew")
        self.bench.save("cursor", "{")
        done = self.bench.run("ktreport", "events", "--cursor", cursor)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (3, "", f"ktreport: {cursor}: is no cursor\n"))

    def test_killed_followers_tell_all_and_nothing_twice(self):
        cursor, log = self.bench.path("cursor"), self.bench.path("log")
        for _ in range(40):
            self.bench.sim("event", "0", "9", "-a", "0")
        for attempt in range(30):
            with open(log, "ab") as file:
                follower = subprocess.Popen([os.path.join(BIN, "ktreport"), "events", "-a", "0", "--cursor", cursor],
                                            env=self.bench.environment, stdout=file)
                time.sleep(0.0005 * attempt)
                follower.send_signal(signal.SIGKILL)
                follower.wait()
        with open(log, "ab") as file:
            subprocess.run([os.path.join(BIN, "ktreport"), "events", "-a", "0", "--cursor", cursor],
                           env=self.bench.environment, stdout=file, check=True)
        with open(log, encoding="ascii") as file:
            numbers = [int(line.split("#")[1].split()[0]) for line in file]
        told = len(json.loads(self.view("json", "-a", "0"))["adapters"][0]["events"])
        self.assertEqual(numbers, list(range(1, told + 1)))

    def test_wait(self):
        self.assertEqual(self.view("wait", "--vd", "0"), "Nothing is going on.\n")
        self.bench.sim("disk", "fail", "1", "--force")
        self.bench.sim("clock", "advance", "1h")
        moments = [time.monotonic()]
        waiting = self.view("wait", "--vd", "2", "--timeout", "1", result=4)
        moments.append(time.monotonic())
        self.assertRegex(waiting, r'^virtual disk 2 "orders" on adapter 0: rebuild \d+ %, about \d')
        self.assertEqual(self.view("wait", "--array", "1", "--timeout", "0", result=4), waiting)
        moments.append(time.monotonic())
        self.assertAlmostEqual((moments[1] - moments[0]) - (moments[2] - moments[1]), 1, delta=0.8)
        other = self.view("wait", "-a", "1", "--vd", "1", "--timeout", "0", result=4)
        self.assertEqual([self.view("wait", *words, "--timeout", "0", result=4) for words in ([], ["--all"])], [waiting + other] * 2)
        for words in (["--vd", "0"], ["--array", "0"], ["--pd", "0"], ["--vd", "0", "-a", "1"]):
            self.assertEqual(self.view("wait", *words), "Nothing is going on.\n")

    def test_wait_on_a_terminal(self):
        self.bench.sim("disk", "fail", "1", "--force")
        self.bench.sim("clock", "advance", "1h")
        self.assertEqual(self.bench.on_terminal("ktreport", "wait", "--array", "1", "--timeout", "0"), (
            4, 'virtual disk 2 "orders" on adapter 0  rebuild  [########......................]  27 %, about 2 h 39 min left\n'))
        for environment, coloured in (({}, True), ({"NO_COLOR": ""}, True), ({"NO_COLOR": "1"}, False), ({"TERM": "dumb"}, False)):
            self.assertEqual("\033[" in self.bench.on_terminal("ktreport", **environment)[1], coloured, environment)

    def test_wait_for_a_good_and_for_a_bad_end(self):
        for happening, end in (("clock until idle", (0, "rebuild done")), ("disk fail 0 --force", (1, "rebuild failed"))):
            bench = Bench("default")
            bench.sim("disk", "fail", "1", "--force")
            with subprocess.Popen([os.path.join(BIN, "ktreport"), "wait", "--array", "1"], env=bench.environment,
                                  stdout=subprocess.PIPE, text=True) as waiting:
                self.assertIn("rebuild", waiting.stdout.readline())
                bench.sim(*happening.split())
                rest = waiting.communicate(timeout=30)[0]
            self.assertEqual((waiting.returncode, rest.splitlines()[-1].split(": ")[1]), end)
