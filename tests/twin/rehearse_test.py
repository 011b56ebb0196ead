"""A rehearsal foretells what a command does, touches nothing, and leaves nothing behind."""
import json
import os
import shlex
import signal
import subprocess
import tempfile
import time
import unittest

from fidelity_test import places
from frame import BIN, Bench

# Each changing command, where it makes sense; what comes before it by hand, and the program's name when it is not
# ktsetup's.
CHANGES = [
    ("default", ["ktsim image microcode new.bin -m 'Petrel PS480G SSD' -v PS50A", "ktsetup flash -a backup -t firmware -f saved.bin"],
     ["0 create -o array -r 1 -d 11,12", "0 create -o vd -a 0 -n more -s 1000", "0 delete -o vd -i 1 -f",
                "0 delete -o array -i 1", "0 delete -o spare -i 9", "0 assign -d 11", "0 assign -o array -a 1 -d 11",
                "0 set -o vd -i 1 -n renamed", "0 set -o array -i 0 -n called", "0 set -o pd -i 1 --status offline",
                "0 set -o hba --autorebuild off", "0 set -o hba --rebuildrate 90", "0 locate -i 3 -a on", "0 rescan -a scan",
                "0 init -l 1", "0 cc -l 1", "0 cc -l 1 -t check", "0 mp -d 1", "0 migrate -l 1 -r 6 -d 0,1,2,11",
                "1 delete -o vd -i 2 -f", "1 rebuild -a pause -l 1",
                "1 set -o vd -i 0 -c off", "1 aesentry -o setCfg -i 5 -p secret -k key",
                "0 ssd -a start -d 11", "0 ssdop -d 11 -f new.bin", "0 ssdop -d 11 -f new.bin -m later",
                "0 flash -a erase -t autoload", "0 flash -a update -t firmware -f saved.bin", "0 flash -a erase -p pdforce"]),
    ("troubled", [], ["0 rebuild -l 0 -d 18", "0 delete -o vd -i 2 -f", "0 copyback -a pause -l 0",
                 "0 set -o pd -i 2 --status online", "0 migrate -a pause -l 2", "0 set -o bbu --power charge",
                 "1 report -i 2", "1 import -i 3", "1 import -i 4", "1 delete -o vd -i 0 -f"]),
    ("empty", [], ["0 create -o array -r 5 -d 0,1,2", "0 create -o auto -t enable"]),
    ("empty", ["ktsetup 1 create -o vd -r 5 -d 0,1,2 -n old", "ktcfg 1 backup_cfg -f saved.txt",
               "ktsetup 1 delete -o vd -i 0 -f --waiveconfirmation", "ktsetup 1 create -o vd -r 1 -d 1,2 -n new"],
     ["ktcfg 1 restore_cfg -f saved.txt --raid"]),
    ("empty", ["ktsetup 1 aesentry -o setCfg -i 1 -p secret -k key", "ktsetup 1 aesport -o mount -i 0 -e 1 -p secret",
               "ktsetup 1 aesport -o set -i 0 --aeson"], ["1 forceonline -i 0", "1 aesport -o set -i 0 --aesoff"]),
]


def same(report):
    """The report without what tells when and where it was made."""
    return {word: value for word, value in report.items() if word not in ("made", "host")}


class Rehearsals(unittest.TestCase):
    maxDiff = 2000

    def test_commands(self):
        """What a rehearsal foretells is what the command then does. The adapters are only read for it."""
        succeeded = set()
        for lab, past, commands in CHANGES:
            bench = Bench(lab)
            os.chdir(bench.path("."))
            for command in past:
                bench.run(*shlex.split(command))
            made = bench.path("made.db")
            before, moment = same(bench.report("--records")), bench.now()
            os.rename(bench.path("state.db"), made)
            for command in commands:
                with open(made, "rb") as state, open(bench.path("state.db"), "wb") as copy:
                    copy.write(state.read())
                words = command.split()
                program = words.pop(0) if words[0] == "ktcfg" else "ktsetup"
                if words[1] in ("create", "delete", "assign", "set", "ssdop"):
                    words.append("--waiveconfirmation")
                done = bench.run("ktsim", "rehearse", "--at", moment, "--json", "--", program, *words, text="y\n",
                                 trace=True)
                for call in bench.calls():
                    self.assertRegex(call, "Get|GET|^KT_API_|^KT_SIM_Sg|^KT_DiskHasOS|^KT_Flash_Bin a=. action=240")
                told = json.loads(done.stdout)
                self.assertEqual(same(told["before"]), before, command)
                real = bench.run(program, *words, text="y\n", errors=subprocess.STDOUT)
                self.assertEqual((done.returncode, told["commands"][0]["output"]), (real.returncode, real.stdout), command)
                self.assertEqual(places(same(told["after"]), same(bench.report("--records"))), [], lab + ": " + command)
                if real.returncode == 0 or "Restore raid config is returned successfully!\n" in real.stdout:
                    succeeded.add(words[1])
        self.assertLessEqual({"create", "delete", "assign", "set", "locate", "rescan", "cc", "mp", "migrate", "rebuild",
                              "import", "ssd", "ssdop", "flash", "forceonline", "aesport", "restore_cfg"}, succeeded)

    def test_refusals(self):
        """Adapters that cannot be read end it with one line; nothing is left behind."""
        bench = Bench("none")
        bench.environment["KTRAID_SIM"] = "/dev/null"
        done = bench.run("ktsim", "rehearse", "--", "ktsetup", "ver")
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (125, "", "ktsim: there is no report of the adapters: Failed\n"))

    def test_nothing_outlives_it(self):
        """Whatever ends a rehearsal that waits for an answer, its state goes."""
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGKILL, None):
            bench = Bench("default")
            with tempfile.TemporaryDirectory() as folder:
                command = subprocess.Popen(
                    [os.path.join(BIN, "ktsim"), "rehearse", "--", "ktsetup", "0", "delete", "-o", "vd", "-i", "1"],
                    env=dict(bench.environment, TMPDIR=folder), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                    stderr=subprocess.DEVNULL, start_new_session=True)
                seen = b""
                while b"?" not in seen:
                    seen += os.read(command.stdout.fileno(), 4096)
                self.assertEqual(len(os.listdir(folder)), 1)
                self.assertEqual(os.stat(os.path.join(folder, os.listdir(folder)[0])).st_mode & 0o777, 0o700)
                if number == signal.SIGINT:
                    os.killpg(command.pid, number)
                elif number:
                    command.send_signal(number)
                command.stdin.close()
                command.wait(20)
                command.stdout.close()
                for _ in range(100):
                    if not os.listdir(folder):
                        break
                    time.sleep(0.05)
                self.assertEqual(os.listdir(folder), [], number)
