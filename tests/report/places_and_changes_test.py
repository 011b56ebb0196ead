#!/usr/bin/env python3
"""map, diff, events and wait: what they say of adapters that change, and what they leave when they are killed."""
import csv
import io
import json
import os
import signal
import subprocess
import time
import unittest

from frame import BIN, Bench

DISK_1 = "disk 1 (slot 1 of enclosure 1, Fulmar FX2000G-SAS, serial SG00000019E37) on adapter 0"


class Views(unittest.TestCase):
    def setUp(self):
        self.bench = Bench("default")

    def view(self, *words, result=0):
        done = self.bench.run("ktreport", *words)
        self.assertEqual((done.returncode, done.stderr), (result, ""), words)
        return done.stdout

    def saved(self, name):
        return self.bench.save(name, self.view("json"))

    # map

    def test_every_disk_and_empty_bay_has_a_line(self):
        self.bench.sim("disk", "fail", "1", "--force")
        rows = list(csv.DictReader(io.StringIO(self.view("map", "--csv", "-a", "0"), newline="")))
        self.assertEqual([row["disk"] for row in rows if row["disk"]], [str(i) for i in range(13)])
        by_place = {row["place"]: row for row in rows}
        self.assertEqual((by_place["slot 11 of enclosure 1"]["state"], by_place["slot 1 of enclosure 1"]["state"],
                          by_place["slot 1 of enclosure 1"]["use"]), ("empty", "offline", ""))
        self.assertEqual(by_place["slot 9 of enclosure 1"]["use"],
                         'dedicated spare in use, array 1 "databases", virtual disk 2 "orders"')
        self.assertEqual(by_place["slot 2 of enclosure 1"]["size"], "2000398934016")
        shown = self.view("map")
        self.assertIn("slot 10 of enclosure 1    10  SATA      4.0 TB", shown)
        self.assertIn("ktsetup <adapter> locate -i <disk> -a on", shown)

    def test_ports_come_by_what_they_are_of(self):
        places = [row["place"] for row in csv.DictReader(io.StringIO(self.view("map", "--csv", "-a", "1"), newline=""))]
        self.assertEqual(places[:4], ["port 0", "port 1", "port 0 of PM 0", "port 1 of PM 0"])

    def test_hostile_names_stay_cells(self):
        self.bench = Bench({"adapters": [{"type": "LD-based", "disks": [
            {"size": "1TB", "model": '=cmd|"x",1', "serial": "\u001b[31m"}]}]})
        row = list(csv.DictReader(io.StringIO(self.view("map", "--csv"), newline="")))[0]
        self.assertEqual((row["model"], row["serial"]), ('\'=cmd|"x",1', "?[31m"))
        self.assertNotIn("\033", self.view("map"))

    # diff

    def test_nothing_changed(self):
        old = self.saved("old")
        self.bench.sim("clock", "advance", "10s")
        self.assertEqual(self.view("diff", old), "")
        self.assertIn("temperature", self.view("diff", "--all", old, self.later(old), result=1))
        self.bench.run("ktsetup", "0", "set", "-o", "hba", "--rebuildrate", "80")
        self.assertEqual(self.view("diff", old, result=1),
                         "adapter 0 (Tarn R8i, serial KS260100004711): config rebuild rate is 80 now (was 50)\n")

    def later(self, old):
        """The same report with another temperature of disk 0."""
        with open(old, encoding="ascii") as file:
            text = file.read()
        return self.bench.save("later", text.replace('"temperature":31', '"temperature":30', 1))

    def test_failure_and_rebuild(self):
        old = self.saved("old")
        self.bench.sim("disk", "fail", "1", "--force")
        self.assertEqual(self.view("diff", old, result=1).splitlines()[:7], [
            'virtual disk 2 "orders" on adapter 0 is degraded now (was online)',
            'virtual disk 2 "orders" on adapter 0: rebuild began',
            'virtual disk 2 "orders" on adapter 0 is on disks 0, 9, 2 now (was on 0, 1, 2)',
            'array 1 "databases" on adapter 0: rebuild began',
            'array 1 "databases" on adapter 0 is on disks 0, 9, 2 now (was on 0, 1, 2)',
            DISK_1 + " is offline now (was healthy)",
            DISK_1 + " has left array 1"])
        changes = json.loads(self.view("diff", "--json", old, result=1))
        self.assertIn({"change": "changed", "adapter": 0, "object": "disk", "id": 1, "word": "state",
                       "before": "healthy", "after": "offline", "text": DISK_1 + " is offline now (was healthy)"},
                      changes)
        running = self.saved("running")
        self.bench.run("ktsetup", "0", "rebuild", "-a", "pause", "-l", "1")
        self.assertIn('virtual disk 2 "orders" on adapter 0: rebuild is paused now (was running)',
                      self.view("diff", running, result=1).splitlines())

    def test_what_is_the_same_thing(self):
        """A name that was given anew is another virtual disk; a disk is known by its serial number in another bay."""
        self.bench = Bench({"adapters": [{"disks": [{"count": 2, "size": "1TB"}, {"size": "1TB", "serial": "OLD"}],
                                          "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1],
                                                      "virtualDisks": [{"name": "data", "size": "100GB"}]}]}]})
        old = self.saved("old")
        self.bench.run("ktsetup", "delete", "-o", "vd", "-i", "0", "--waiveconfirmation")
        self.bench.run("ktsetup", "create", "-o", "vd", "-a", "0", "-n", "data", "-s", "50000")
        self.bench.sim("disk", "replace", "2", "--force")
        lines = self.view("diff", old, result=1).splitlines()
        self.assertEqual(lines[0], 'virtual disk 0 "data" (RAID1, 100 GB) is gone')
        self.assertEqual([line for line in lines if "serial OLD" in line][0].split(") ")[-1], "is gone")
        self.assertEqual(len([line for line in lines if line.endswith("appeared")]), 2)

    def test_what_is_not_known_is_not_gone(self):
        old = self.saved("old")
        self.bench.sim("fault", "KT_PD_GetHDInfo", "9")
        done = self.bench.run("ktreport", "diff", old)
        self.assertEqual(done.returncode, 1)
        self.assertIn("the disks of adapter 0 (Tarn R8i, serial KS260100004711) are known only from before", done.stdout)
        self.assertNotIn("gone", done.stdout)

    # events

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

    # wait

    def test_wait(self):
        self.assertEqual(self.view("wait", "--vd", "0"), "Nothing is going on.\n")
        self.bench.sim("disk", "fail", "1", "--force")
        self.bench.sim("clock", "advance", "1h")
        waiting = self.view("wait", "--vd", "2", "--timeout", "1s", result=4)
        self.assertRegex(waiting, r'^virtual disk 2 "orders" on adapter 0: rebuild \d+ %, about \d')
        self.assertEqual(self.view("wait", "--array", "1", "--timeout", "0", result=4), waiting)
        for words in (["--vd", "7"], ["--pd", "99"], ["--timeout", "soon"], ["--vd", "1", "--array", "1"]):
            self.assertEqual(self.bench.run("ktreport", "wait", *words).returncode, 2, words)

    def awaited(self, *disturb):
        """The result of a wait for a rebuild during which something happens."""
        self.bench.sim("disk", "fail", "1", "--force")
        waiting = subprocess.Popen([os.path.join(BIN, "ktreport"), "wait", "--array", "1"], env=self.bench.environment,
                                   stdout=subprocess.PIPE, text=True)
        self.assertIn("rebuild", waiting.stdout.readline())
        self.bench.sim(*disturb)
        rest = waiting.communicate(timeout=30)[0]
        return waiting.returncode, rest

    def test_wait_for_a_good_end(self):
        result, rest = self.awaited("clock", "until", "idle")
        self.assertEqual((result, rest.splitlines()[-1]), (0, 'virtual disk 2 "orders" on adapter 0: rebuild done'))

    def test_wait_for_a_bad_end(self):
        result, rest = self.awaited("disk", "fail", "0", "--force")
        self.assertEqual((result, rest.splitlines()[-1]), (1, 'virtual disk 2 "orders" on adapter 0: rebuild failed'))


if __name__ == "__main__":
    unittest.main()
