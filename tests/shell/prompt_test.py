"""What makes typing pleasant: Ctrl-C, history, completion and slips of the pen."""
import glob
import json
import os
import re
import signal
import stat
import subprocess
import time
import unittest

from terminal import PROGRAM, TerminalTest

UP = "\x1b[A"
FIRST = "\x1b<"
HISTORY = ".local/state/ktsetup/history"


class CtrlCTest(TerminalTest):
    def test_at_the_prompt_it_drops_the_line(self):
        child = self.shell()
        child.send("error -c 1")
        child.sendintr()
        child.expect_exact("> ")
        self.say(child, "error -c 9", "Error code 9: Invalid physical disk id.")
        self.assertNotIn("Error code 1", child.before)
        # The dropped line is not among the lines that come back.
        self.say(child, UP + UP, "Error code 9")
        child.sendintr()
        self.assertEqual(self.left(child, "exit"), 255)

    def test_at_a_question_it_declines(self):
        child = self.shell()
        child.sendline("delete -o vd -i 3")
        child.expect_exact("(y or n)")
        child.sendintr()
        child.expect_exact("> ")
        self.say(child, "info -o vd -i 3", "archive")
        alone = self.spawn("delete", "-o", "vd", "-i", "3")
        alone.expect_exact("(y or n)")
        # Before it waits for the answer, Ctrl-C would end the program.
        while not int(re.search(r"SigCgt:\s*(\w+)", open(f"/proc/{alone.pid}/status").read())[1], 16) & 1 << signal.SIGINT - 1:
            time.sleep(0.01)
        alone.sendintr()
        self.assertEqual(self.left(alone), 0)
        self.say(child, "info -o vd -i 3", "archive")

    def test_a_listing_ends_behind_the_call_under_way(self):
        lab = {"adapters": [{"type": "array-based", "disks": [{"count": 3000, "size": "2TB"}]}]}
        self.sim("create", "--lab", self.make("many.json", json.dumps(lab)), "--force")
        child = self.shell()
        child.sendline("info -o pd")
        child.expect_exact("PD ID:")
        child.sendintr()
        child.expect_exact("\n> ")
        self.assertLess(child.before.count("PD ID:"), 2900)
        self.assertNotIn("error", child.before)
        self.assertNotIn("Total", child.before)
        self.say(child, "ver", "CLI Version")

    def test_a_change_runs_to_its_end_and_the_prompt_comes_back(self):
        child = self.shell()
        child.sendline("flash -a update -t raw -f " + self.make("raw.bin", "x" * 4000000))
        child.expect_exact("page 1 write to device.")
        child.sendintr()
        child.expect_exact("> ")
        self.assertIn("page 20 write to device.", child.before)
        self.say(child, "ver", "CLI Version")

    def test_a_script_ends_by_it(self):
        process = subprocess.Popen([PROGRAM], stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=self.environment)
        process.stdin.write(b"delete -o vd -i 3\n")
        process.stdin.flush()
        while b"(y or n)" not in process.stdout.readline():
            pass
        process.send_signal(2)
        process.communicate()
        self.assertEqual(process.returncode, -2)


class HistoryTest(TerminalTest):
    def lines(self):
        return self.text(HISTORY).splitlines()

    def test_lines_outlive_the_shell(self):
        child = self.shell()
        self.say(child, "error -c 9", "Error code 9")
        self.say(child, "", "Type 'exit'")
        self.left(child, "exit")
        self.assertEqual(self.lines(), ["error -c 9", "exit"])
        self.assertEqual(stat.S_IMODE(os.stat(self.path(HISTORY)).st_mode), 0o600)
        self.say(self.shell(), UP + UP, "Error code 9")
        self.environment["XDG_STATE_HOME"] = self.path("elsewhere")
        self.say(self.shell(), "ver", "CLI Version")
        self.assertEqual(self.text("elsewhere/ktsetup/history"), "ver\n")
        self.piped("error -c 5\nexit\n")
        self.assertNotIn("error -c 5", self.lines())

    def test_a_thousand_are_kept(self):
        os.makedirs(os.path.dirname(self.path(HISTORY)))
        self.make(HISTORY, "".join(f"error -c {i}\n" for i in range(1000)))
        one, other = self.shell(), self.shell()
        self.say(one, "ver", "CLI Version")
        self.assertEqual((len(self.lines()), self.lines()[0], self.lines()[-1]), (1000, "error -c 1", "ver"))
        # The other shell finds what has taken the place of the file that it knows.
        self.say(other, "error -c 5", "Error code 5")
        self.assertEqual((len(self.lines()), self.lines()[-2:]), (1000, ["ver", "error -c 5"]))
        self.say(other, UP + UP, "CLI Version")
        # No shorter than before, and yet another file.
        self.say(one, "error -c 0000000007", "Error code 7")
        self.say(other, "", "Type 'exit'")
        self.say(other, UP, "Error code 7")
        self.say(one, FIRST, "Error code 4")
        self.assertEqual(glob.glob(self.path(HISTORY) + ".*"), [])

    def test_a_file_that_cannot_be_used_is_done_without(self):
        os.makedirs(self.path(HISTORY))
        child = self.shell()
        self.say(child, "error -c 9", "Error code 9")
        self.say(child, UP, "Error code 9")
        os.rmdir(self.path(HISTORY))
        os.symlink(self.path("target"), self.path(HISTORY))
        self.say(child, "error -c 9", "Error code 9")
        self.assertFalse(os.path.exists(self.path("target")))


class CompletionTest(TerminalTest):
    def test_words_of_options_and_commands(self):
        child = self.shell()
        self.offered(child, "cc -t ", "sync")
        self.offered(child, "create -r ", "1E")
        self.offered(child, "enc --type=", "arydev")
        self.offered(child, "info -o", missing=["README"])
        self.say(child, "help rescan err\t", "Translate error code")
        self.say(child, "rescan -h", "Rescan the adapters")
        self.say(child, "eve\t-h", "Get the current events.")
        self.say(child, "info --obj\t ar\t", "Array Information")
        self.say(child, "info -o hb\t", "Adapter ID:")
        # A file name is no virtual disk's name.
        self.make("sizes")
        self.offered(child, "create -n " + self.path("si"), missing=["sizes"])

    def test_ids_with_their_names(self):
        child = self.shell()
        self.offered(child, "init -l ", "2 (orders)")
        self.offered(child, "info -o vd -i ", "3 (archive)")
        self.offered(child, "info -i 1 -o pd --id ", "11 (Petrel PS480G SSD)")
        self.offered(child, "locate --id=1", "12 (Gannet GT1000G)", missing=["2 (Fulmar"])
        self.offered(child, "create -o array -r 0 -d 0,10,", "11 (Petrel PS480G SSD)", missing=["10 (Gannet", "0 (Fulmar"])
        self.offered(child, "assign -o array -a ", "(system)")
        self.offered(child, "adapter -i ", "0", "1", missing=["2"])
        self.say(child, "info -o vd -i 3\t", "archive")
        self.sim("fault", "KT_PD_GetHDInfo", "1")
        self.offered(child, "locate -i ", missing=["Fulmar"])
        self.sim("fault", "clear")
        self.offered(child, "locate -i ", "Fulmar")

    def test_only_reading_calls_are_made(self):
        self.environment["KTRAID_SIM_TRACE"] = self.path("trace")
        child = self.shell()
        for line in ("delete -o vd -i ", "wipe -d ", "assign -a ", "enc -o enc -i ", "adapter -i ", "aesport -i "):
            child.send(line + "\t\t\x15")
        self.say(child, "ver", "CLI Version")
        calls = {word for word in self.text("trace").split() if word.startswith("KT_")}
        starting = {"KT_API_Initialize", "KT_API_Version", "KT_SIM_SgVersion", "KT_Adapter_GetCount", "KT_Adapter_GetInfo"}
        self.assertEqual(calls - starting,
                         {"KT_LD_GetInfo", "KT_PD_GetHDInfo", "KT_DG_GetInfo", "KT_ENC_GetEnclosureInfo"})

    def test_file_names_where_a_file_is_meant_and_as_one_word(self):
        for name in ("fw one.bin", "plain.bin", 'odd"quote.bin'):
            self.make(name, "x" * 64)
        child = self.shell()
        self.offered(child, "flash -f " + self.path(""), "plain.bin", missing=["odd"])
        for option in ("-f ", "--file="):
            self.say(child, f"flash -a version -t raw {option}{self.path('fw')}\t", "/fw one.bin', error 166")


class SlipTest(TerminalTest):
    def test_what_is_near_is_named_on_a_terminal(self):
        child = self.shell()
        self.say(child, "inof", "Invalid command 'inof'!")
        self.assertIn("did you mean info?", child.before)
        self.say(child, "craete", "did you mean create?")
        # The nearest alone are named: import, which stands before report, is one step farther.
        other = self.shell("1")
        self.say(other, "eport", "did you mean report?")
        self.say(other, "crlete", "did you mean create or delete?")
        for far in ("xyzzy", "migrxxx"):
            self.say(child, far, f"Invalid command '{far}'!")
            self.assertNotIn("did you mean", child.before)
        alone = self.spawn("delte")
        alone.expect_exact("Invalid command 'delte'!")
        alone.expect_exact("did you mean delete?")
        status, output, error = self.once(PROGRAM, "inof")
        self.assertEqual((status, error), (1, ""))
        self.assertTrue(output.endswith("Invalid command 'inof'!\n"))


if __name__ == "__main__":
    unittest.main()
