"""ktcfg plan and apply on simulated adapters: a new machine, changes, and all that can come in between."""
import os
import shutil
import signal
import subprocess
import time
import unittest

from frame import BIN, Bench

WANTED = {"adapters": [{
    "config": {"RebuildRate": 80},
    "disks": [{"count": 3, "type": "SATA", "size": "2TB"}, {"type": "SATA", "size": "2TB", "spare": "global"}],
    "arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2],
                "virtualDisks": [{"name": "data", "size": "500GiB", "cache": "auto"}, {"name": "rest"}]}]}]}
COMMANDS = ["ktsetup 0 set -o hba --rebuildrate 80",
            "ktsetup 0 create -o array -r 5 -d 0,1,2 -n demo",
            "ktsetup 0 create -o vd -a 0 -n data -s 512000 -c auto",
            "ktsetup 0 create -o vd -a 0 -n rest",
            "ktsetup 0 assign -d 3"]


def demo(disks, *vds):
    """A wanted file with one array."""
    return {"adapters": [{"arrays": [{"name": "demo", "level": "RAID5", "disks": disks, "virtualDisks": list(vds)}]}]}


SMALL = demo([0, 1, 2], {"name": "data", "size": "2400GiB"})
# Growth by migration, and a virtual disk that has room only behind it.
GROWN = demo([0, 1, 2, 3], {"name": "data"}, {"name": "more", "size": "1500GiB"})


def planned(text):
    """The commands of a plan."""
    return [line.split(". ", 1)[1] for line in text.splitlines() if line[:5].strip(" .").isdigit() and ". ktsetup" in line]


class Machine(Bench):
    """Adapters, and files that say what is wanted of them."""

    def __init__(self, lab="empty", wanted=None):
        super().__init__(lab)
        self.environment["PATH"] = BIN + ":" + self.environment["PATH"]
        if wanted:
            assert self.apply(wanted).returncode == 3
            self.idle()

    def idle(self):
        self.sim("clock", "until", "idle")

    def wanted(self, wanted):
        return self.save("wanted.json", wanted)

    def cfg(self, *words, text=None, trace=False):
        return self.run("ktcfg", *words, text=text, trace=trace)

    def apply(self, wanted, *words, trace=False):
        return self.cfg("apply", "-f", self.wanted(wanted), "--yes", *words, trace=trace)

    def would_change(self, wanted):
        return self.cfg("plan", "--check", "-f", self.wanted(wanted)).returncode

    def start(self, wanted, *words, **pipes):
        """An apply that the test goes on beside."""
        return subprocess.Popen([os.path.join(BIN, "ktcfg"), "apply", "-f", self.wanted(wanted), *words],
                                env=self.environment, stdout=subprocess.PIPE, text=True, **pipes)


def read_until(run, words):
    shown = ""
    for line in iter(run.stdout.readline, ""):
        shown += line
        if words in shown:
            return
    raise AssertionError(shown)


class Applying(unittest.TestCase):
    def test_its_own_report_and_its_own_lab_are_as_wanted(self):
        for lab in ("default", "empty", "full"):
            machine = Machine(lab)
            machine.idle()
            done = machine.cfg("plan", "-f", machine.wanted(machine.report()))
            self.assertEqual((done.returncode, done.stdout.split("\n")[0]), (0, "Nothing to do: all is as wanted."), lab)

    def test_from_a_report(self):
        machine = Machine()
        report = machine.save("report.json", machine.report("--records"))
        machine.sim("create", "--lab", "none", "--force")
        done = machine.cfg("plan", "-f", machine.wanted(WANTED), "--from", report)
        self.assertEqual((done.returncode, planned(done.stdout)), (0, COMMANDS), done.stdout + done.stderr)

    def test_somebody_else_changes_the_adapter(self):
        machine = Machine()
        with machine.start(WANTED, stdin=subprocess.PIPE) as run:
            read_until(run, "(y or n)\n")
            self.assertEqual(machine.run("ktsetup", "create", "-o", "array", "-r", "1", "-d", "1,2").returncode, 0)
            text = run.communicate("y\n")[0]
        self.assertEqual(run.returncode, 1)
        self.assertIn(f"Stopped: the adapter is no longer as the plan thinks:\n{machine.path('wanted.json')}: adapters[0].", text)
        self.assertIn("Nothing was changed.", text)
        self.assertEqual(machine.report()["adapters"][0]["config"]["RebuildRate"], 50)

    def test_waits_only_when_told(self):
        machine = Machine(wanted=SMALL)
        done = machine.apply(GROWN)
        self.assertEqual(done.returncode, 1)
        self.assertIn("     waits until what goes on before it has ended\n", done.stdout)
        self.assertIn("\nStopped: the next command needs what goes on to have ended; --wait waits for it.\n"
                      "Done:\n  1. ktsetup 0 migrate -l 0 -r 5 -d 0,1,2,3\n"
                      "Not done:\n  2. ktsetup 0 create -o vd -a 0 -n more -s 1536000\n", done.stdout)

    def test_a_signal_ends_it_between_two_commands(self):
        machine = Machine(wanted=SMALL)
        with machine.start(GROWN, "--yes", "--wait") as run:
            read_until(run, "migration 0 %")
            run.send_signal(signal.SIGINT)
            text = run.communicate(timeout=20)[0]
        self.assertEqual(run.returncode, -signal.SIGINT)
        self.assertIn("Stopped: a signal came.\nDone:\n  1. ktsetup 0 migrate", text)

    def test_deletes_only_what_it_names(self):
        machine = Machine(wanted=SMALL)
        machine.run("ktsetup", "create", "-o", "array", "-r", "1", "-d", "4,5", "-n", "other")
        machine.idle()
        less = {"adapters": [{"arrays": [{"name": "demo", "level": "RAID1", "disks": [0, 1], "virtualDisks": [{"name": "data"}]}]}]}
        self.assertEqual([machine.apply(less, *words).returncode for words in ([], ["--delete"])], [1, 3])
        arrays = machine.report()["adapters"][0]["arrays"]
        self.assertEqual([(array["name"], array["level"]) for array in arrays], [("demo", "RAID1"), ("other", "RAID1")])

    def test_several_adapters_and_the_one_that_is_typed(self):
        """All is read once; between the commands neither enclosures' elements nor the drives' tables of health are."""
        machine = Machine("default")
        self.assertIn(machine.apply({"adapters": [{"config": {"RebuildRate": 70}}] * 2}, trace=True).returncode, (0, 3))
        self.assertEqual([adapter["config"]["RebuildRate"] for adapter in machine.report()["adapters"]], [70, 70])
        calls = [call.split(" ")[0] for call in machine.calls()]
        read = len(calls) - calls[::-1].index("KT_Flash_Bin")
        once = {"KT_ENC_GetElementInfo", "KT_ENC_GetElementConfig", "KT_AES_GetEntryInfo", "KT_PD_GET_SMART_INFO"}
        self.assertEqual((once & set(calls[:read]), once & set(calls[read:]), calls[read:].count("KT_Adapter_SetConfig")), (once, set(), 2))
        done = machine.cfg("1", "plan", "-f", machine.wanted({"adapters": [{"config": {"RebuildRate": 30}}]}))
        self.assertEqual(planned(done.stdout), ["ktsetup 1 set -o hba --rebuildrate 30"])

    def test_a_last_command_that_did_nothing(self):
        machine = Machine()
        machine.sim("fault", "KT_PD_FreeHD2GlobalSpare", "0")
        done = machine.apply(WANTED)
        self.assertEqual(done.returncode, 1)
        self.assertIn("\nStopped: all commands were carried out, but the adapters are not as wanted; different is:\n", done.stdout)
        self.assertNotIn("\n.\n", done.stdout, "a list ends in no full stop of its own")


class Refusing(unittest.TestCase):
    def test_files(self):
        machine = Machine()
        for text, said in ((" ", "is empty"), ('{"adapters": [', "is cut short"), ("[" * 100, "nested too deeply"),
                           ("nonsense", "is no lab or report")):
            done = machine.apply(text)
            self.assertEqual((done.returncode, done.stdout), (1, ""), text[:20])
            self.assertRegex(done.stderr, r"\Aktcfg: [^\n]*" + said + r"[^\n]*\n\Z")

    def test_all_reasons_and_no_change(self):
        machine = Machine()
        wrong = {"adapters": [{"disks": [{"serial": "none"}, {"count": 2}], "arrays": [
            {"name": "a", "level": "RAID1", "disks": [0, 1]}, {"name": "b", "level": "RAID6", "disks": [2, 9]}]}]}
        before = dict(machine.report("--records"), made="")
        done = machine.apply(wrong)
        self.assertEqual((done.returncode, done.stderr, done.stdout.count("wanted.json: adapters[0].")), (1, "", 2), done.stdout)
        self.assertTrue(done.stdout.endswith("Nothing is changed.\n"))
        self.assertEqual(before, dict(machine.report("--records"), made=""))
        machine.sim("fault", "KT_DG_GetInfo", "2")
        done = machine.apply(WANTED)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertRegex(done.stderr, r"\Aktcfg: what is there is not known: KT_DG_GetInfo answered [^\n]*\n\Z")


# Beside a copy of ktcfg stands a program that answers as the text says.
FAKE = """#!/usr/bin/python3
import json, sys
with open(sys.argv[sys.argv.index("--from") + 1]) as file:
    report = json.load(file)
sys.stdin.read()
{change}
print(json.dumps({{"commands": [{{"words": [], "status": {status}, "output": "It did not work.\\n"}}], "idleAfter": 5, "after": report}}))
"""


class Rehearsing(unittest.TestCase):
    """No plan is shown that does not lead there on a twin."""

    def test_what_a_twin_says(self):
        machine = Machine()
        shutil.copy(os.path.join(BIN, "ktcfg"), machine.path("ktcfg"))
        environment = dict(machine.environment, PATH="/usr/bin:/bin")
        beside = "Rehearsed on a twin, the plan does not lead to what is wanted, and nothing is changed here. Different is:\n  RebuildRate is 50 %"
        fails = "Rehearsed on a twin, a command fails, and nothing is changed here:\n  1. " + COMMANDS[0] + "\nIt did not work.\n"
        none = "ktcfg: the plan cannot be rehearsed, because no twin of these adapters can be made"
        for change, status, said in (
                (None, 0, "ktcfg: plans are rehearsed on simulated adapters, and ktsim is not there; install the package ktraid-sim\n"),
                ("", 0, beside), ("", 9, fails), ("sys.exit('ktsim: no room\\nat all')", 0, none + ": ktsim: no room\n"),
                ("sys.exit(0)", 0, none + "\n"), ("report = 1", 0, none + "\n"), ("import os; os.kill(os.getpid(), 9)", 0, none + "\n"),
                ("print('{}'); sys.exit(125)", 0, none + "\n")):
            if change is not None:
                os.chmod(machine.save("ktsim", FAKE.format(change=change, status=status)), 0o755)
            done = subprocess.run([machine.path("ktcfg"), "apply", "--yes", "-f", machine.wanted(WANTED)], env=environment,
                                  capture_output=True, text=True, check=False)
            whole = done.stdout + done.stderr
            self.assertEqual((done.returncode, whole[:len(said)]), (1, said), change)
            self.assertTrue(whole == said or said is beside, whole)
        self.assertEqual(machine.would_change(WANTED), 1)


class Failing(unittest.TestCase):
    """Whatever goes wrong in the middle, what was done is told, and the next apply goes on."""

    def calls(self, changing):
        """The calls of an apply in their order, as (name, how many of that name came before)."""
        machine = Machine()
        machine.apply(WANTED, trace=True)
        seen, calls = {}, []
        for call in machine.calls():
            name = call.split(" ")[0]
            seen[name] = seen.get(name, -1) + 1
            if not changing or not any(part in name for part in ("Get", "API", "GET", "DiskHasOS", "SIM")):
                calls.append((name, seen[name]))
        return calls

    def goes_on(self, machine, what):
        machine.idle()
        done = machine.apply(WANTED)
        self.assertIn(done.returncode, (0, 3), (what, done.stdout))
        machine.idle()
        self.assertEqual((machine.would_change(WANTED), machine.run("ktsim", "check").returncode), (0, 0), what)

    def fail_at(self, name, before):
        machine = Machine()
        machine.sim("fault", name, "3", "--after", str(before), "--times", "1")
        done = machine.apply(WANTED)
        machine.sim("fault", "clear")
        stopped = done.stdout.split("\nStopped: ")
        if done.returncode not in (0, 3):
            # What is told as done is what is there, unless the last command did its work and failed to tell.
            self.assertEqual(done.returncode, 1, (name, before))
            self.assertTrue(len(stopped) == 2 or done.stderr or "Nothing is changed" in done.stdout, done.stdout)
        if len(stopped) == 2 and "Done:\n" in stopped[1]:
            told = planned(stopped[1].split("Not done:")[0])
            self.assertEqual(told, COMMANDS[:len(told)], (name, before))
        self.goes_on(machine, (name, before))

    def test_every_call_that_changes_something(self):
        calls = self.calls(changing=True)
        self.assertGreaterEqual(len(calls), 6)
        for name, before in calls:
            self.fail_at(name, before)

    def test_killed_at_every_step(self):
        for steps in range(len(COMMANDS)):
            machine = Machine()
            with machine.start(WANTED, "--yes") as run:
                for line in run.stdout:
                    if line.startswith(f"{steps + 1} of {len(COMMANDS)}: "):
                        break
                time.sleep(0.003 * (steps % 3))
                run.kill()
            self.goes_on(machine, steps)


class Everywhere(Failing):
    """The same at calls that only read; of those that are made again and again, every ninth. Takes long."""

    def test_every_call_that_changes_something(self):
        calls = self.calls(changing=False)
        self.assertGreaterEqual(len(calls), 200)
        for name, before in calls:
            # What is not an adapter's call has no status to fail with.
            if not name.startswith(("KT_SIM", "KT_API_Finalize", "KT_API_Version")) and (before < 2 or before % 9 == 0):
                self.fail_at(name, before)
