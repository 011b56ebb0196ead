"""ktcfg's words, messages and exit statuses, and what it shows on a terminal."""
import os
import re
import subprocess
import unittest

from apply_test import BIN, GROWN, SMALL, WANTED, Machine, read_until

FASTER = {"adapters": [{"config": {"RebuildRate": 80}}]}
OTHERS = ("Left alone, because the file does not mention it: adapter 1 (Tarn S4h, serial KS260101004718).\n"
          "Left alone, because the file does not mention it: adapter 2 (Tarn S4h, serial KS260102004725).\n")
FASTER_PLAN = ("  1. ktsetup 0 set -o hba --rebuildrate 80\n     RebuildRate is 50 %\n     at once\n" + OTHERS +
               "Rehearsed on a twin, one after the other until idle: 1 command, as wanted after 0 s.\n")
DRIVER = "SG driver version 3.5.36.\n"


class Words(unittest.TestCase):
    def test_what_is_said_without_a_change(self):
        machine = Machine()
        file, two = machine.wanted(FASTER), machine.save("two.json", {"adapters": [{}, {}]})
        more = " (--help tells more)\n"
        rows = [  # words, status, standard output, standard error
            (["no\x1bsuch"], 2, "", 'ktcfg: "no?such" is not a command' + more),
            (["-output"], 2, "", 'ktcfg: "-output" is not a command' + more),
            (["-output", os.devnull, "plan"], 2, "", "ktcfg: a command comes first" + more),
            (["255", "plan", "-f", file], 2, "", "ktcfg: no adapter has that index" + more),
            (["300", "apply", "-f", file], 2, "", "ktcfg: no adapter has that index" + more),
            (["254", "plan", "-f", file], 1, file + ": adapters[0]: there is no adapter 254\nNothing is changed.\n", ""),
            (["PLAN"], 2, "PLAN: option -f is required\n", ""),
            (["apply", "-f"], 2, "", "apply: option requires an argument -- 'f'\n"),
            (["a", "-f", ""], 2, "a: the name of a file is empty\n", ""),
            (["plan", "-f", file, "--from", ""], 2, "plan: the name of a file is empty\n", ""),
            (["plan", "-f", file, "--from", "a", "--from", "b"], 2, "Duplicated option specified.\n", ""),
            (["plan", "-f", file, "-f", file], 2, "Duplicated option specified.\n", ""),
            (["plan", "-f", "-", "--from", "-"], 2, "plan: only one of the two files can come from standard input\n", ""),
            (["apply", "-f", file, "mo\x1bre"], 2, "apply: 'mo?re' is one word too many.\n", ""),
            (["plan", "-f", file, "--yes"], 2, "", "plan: unrecognized option '--yes'\n"),
            (["apply", "-f", file, "--from", "x"], 2, "", "apply: unrecognized option '--from'\n"),
            (["plan", "-f", "no\x1bfile"], 1, "", "ktcfg: no?file: No such file or directory\n"),
            (["plan", "-f", file, "--from", file], 1, "", None),
            (["plan", "--check", "-f", f'"{file}"'], 1, "1 command would be carried out.\n", ""),
            (["0", "plan", "--check", "-f", machine.save("more.json", WANTED)], 1, "5 commands would be carried out.\n", ""),
            (["0", "plan", "-f", two], 1, two + ": adapters: are several; the index of one was typed\n" + two +
             ": adapters[1]: is adapter 0 (Tarn R8i, serial KS260100004711) like another one of the file\nNothing is changed.\n", ""),
            (["plan", "-f", file], 0, FASTER_PLAN, ""),
            (["apply", "-f", file], 1, FASTER_PLAN + "Carry this out? (y or n)\nNothing is changed.\n", ""),
        ]
        for words, status, said, complained in rows:
            done = machine.cfg(*words)
            if complained is None:
                complained = done.stderr
                self.assertRegex(complained, r"\Aktcfg: [^\n]*wanted\.json[^\n]*\n\Z")
            self.assertEqual((done.returncode, done.stdout, done.stderr), (status, said, complained), words)
        self.assertEqual(machine.would_change(FASTER), 1)

    def test_help_and_version(self):
        machine = Machine()
        wanted = {(): 2, ("-h",): 0, ("--help",): 0, ("",): 2}
        told = machine.cfg("help").stdout
        for command in ("backup_cfg", "check", "restore_cfg", "plan", "apply"):
            self.assertRegex(told, rf"\n *{command} *:")
        for words, status in wanted.items():
            done = machine.cfg(*words)
            self.assertEqual((done.returncode, DRIVER + done.stdout, done.stderr), (status, told, ""), words)
        self.assertRegex(machine.cfg("--version").stdout, r"\Aktcfg \d+(\.\d+){3}\n\Z")
        self.assertRegex(machine.cfg("300", "VER").stdout, r"\ASG driver [^\n]*\nCLI Version: [^\n]*\n\Z")
        for word, first in (("p", "Tell which commands"), ("a", "Bring the adapters"), ("c", "Tell what restoring"),
                            ("b", "Backup current"), ("r", "Restore HBA")):
            done = machine.cfg(word, "-h")
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertIn("Description:" + first, done.stdout)

    def test_output_goes_where_it_is_told_to(self):
        machine = Machine()
        file = machine.wanted(FASTER)
        for words in (["plan", "-f", file, "-output", machine.path("said")], ["plan", "-OUTPUT", machine.path("said"), "-f", file]):
            done = machine.cfg(*words)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""), words)
        with open(machine.path("said"), encoding="ascii") as said:
            self.assertEqual(said.read(), 2 * FASTER_PLAN)
        for words in (["plan", "-f", file], ["--version"], ["-h"]):
            with open("/dev/full", "w", encoding="ascii") as full:
                done = subprocess.run([os.path.join(BIN, "ktcfg"), *words], env=machine.environment, stdout=full,
                                      stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr),
                             (1, "ktcfg: cannot write the output: No space left on device\n"), words)


class Ends(unittest.TestCase):
    """How an apply ends, and what it says then, behind the plan and what the commands themselves say."""

    def end(self, machine, wanted, *words):
        done = machine.apply(wanted, *words)
        self.assertEqual(done.stderr, "")
        return done.returncode, re.sub(r"(?s)\A.*?(?=\n\nStopped|\nAs wanted|\AStopped|\ANothing)\n*", "", done.stdout)

    def test_as_wanted(self):
        machine = Machine()
        goes_on = 'Something still goes on; "ktreport wait" waits for its end.\n'
        self.assertEqual(self.end(machine, FASTER), (0, "As wanted. 1 command was carried out.\n"))
        self.assertEqual(self.end(machine, FASTER), (0, "Nothing to do: all is as wanted.\n" + OTHERS))
        self.assertEqual(self.end(machine, WANTED), (3, "As wanted. 4 commands were carried out.\n" + goes_on))
        self.assertEqual(self.end(machine, WANTED), (3, "Nothing to do: all is as wanted.\n" + OTHERS + goes_on))
        # What goes on with a disk by itself, or was aborted, is not waited for.
        machine.run("ktsetup", "init", "-l", "0", "-a", "stop")
        machine.run("ktsetup", "init", "-l", "1", "-a", "stop")
        machine.run("ktsetup", "mp", "-d", "7")
        self.assertEqual(self.end(machine, WANTED), (0, "Nothing to do: all is as wanted.\n" + OTHERS))

    def test_stopped(self):
        spare = {"disks": [{"type": "SATA", "size": "2TB", "spare": "global"}]}
        rate = ["ktsetup 0 set -o hba --rebuildrate 80"]
        assign = ["ktsetup 0 assign -d 0"]
        untouched = "Nothing was changed. "
        rows = [  # what is wanted, the fault, why it stopped, what is done and what is not; what stands before the end
            (FASTER, ["KT_Adapter_SetConfig", "9"], "the command failed (status 9)", [], rate, ""),
            (FASTER, ["KT_Adapter_SetConfig", "0"], "the command failed (status 1)", [], rate, ""),
            (FASTER, ["KT_API_Initialize", "1", "--after", "2"], "the command failed (status 1)", [], rate, ""),
            (FASTER, ["KT_API_Initialize", "1", "--after", "1"], "the library does not start: Failed", [], rate, untouched),
            (FASTER, ["KT_API_Initialize", "1", "--after", "3"], "the library does not start: Failed", rate, [], ""),
            (FASTER, ["KT_DG_GetInfo", "2", "--after", "1"],
             'what is there is not known: KT_DG_GetInfo answered "Unknown error" for adapter 0', [], rate, untouched),
            ({"adapters": [spare, *FASTER["adapters"]]}, ["KT_PD_FreeHD2GlobalSpare", "0"],
             "the adapter did not do what the last command asked for", assign, [rate[0].replace("0", "1", 1)], ""),
        ]
        for wanted, fault, why, done, left, before in rows:
            machine = Machine()
            machine.sim("fault", *fault)
            numbered = [f"  {number}. {command}\n" for number, command in enumerate(done + left, 1)]
            told = "".join(["Done:\n"] * bool(done) + numbered[:len(done)] + ["Not done:\n"] * bool(left) + numbered[len(done):])
            self.assertEqual(self.end(machine, wanted), (1, f"Stopped: {why}.\n{told}{before}" +
                             '"ktcfg apply" with the same file goes on from here.\n'), fault)


class Waiting(unittest.TestCase):
    def test_what_is_waited_for_is_paused_or_stops(self):
        for action, why in (("pause", 'the migration of virtual disk 0 "data" is paused; resume it first'),
                            ("stop", "the adapter did not do what the last command asked for")):
            machine = Machine(wanted=SMALL)
            with machine.start(GROWN, "--yes", "--wait") as run:
                read_until(run, "migration 0 %")
                self.assertEqual(machine.run("ktsetup", "migrate", "-l", "0", "-a", action).returncode, 0)
                text = run.communicate(timeout=60)[0]
            # It is said once a minute how far it is.
            self.assertEqual((run.returncode, text.split("\n")[:2]), (1, ["", f"Stopped: {why}."]), text)

    def test_progress_stays_in_its_place_on_a_terminal(self):
        machine = Machine(wanted=SMALL)
        machine.apply(GROWN)
        bar = r'virtual disk 0 "data" on adapter 0  migration  \[[#.]{30}\] .*\n'
        machine.sim("clock", "speed", "4000")
        machine.sim("clock", "start")
        status, shown = machine.on_terminal("ktcfg", "apply", "--yes", "--wait", "-f", machine.wanted(GROWN))
        self.assertIn(status, (0, 3))
        self.assertRegex(shown, rf"(?m)after 7 s\.\n{bar}(\033\[1A\033\[J{bar})+1 of 1: ktsetup 0 create .*\n")
        machine.idle()
        self.assertEqual(machine.would_change(GROWN), 0)
