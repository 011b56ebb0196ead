"""Completion in bash, typed at a terminal: for all programs, made of the same rows as the shell's own."""
import os
import unittest

from terminal import BIN, TerminalTest, pexpect

COMPLETIONS = os.environ["COMPLETIONS"].split(":")


class BashTest(TerminalTest):
    def setUp(self):
        super().setUp()
        self.environment.update(PATH=BIN + ":" + os.environ["PATH"], PS1="$ ")
        self.bash = pexpect.spawn("bash", ["--norc", "--noprofile", "-i"], env=self.environment, encoding="utf-8",
                                  timeout=10, dimensions=(50, 200), cwd=self.folder.name)
        self.addCleanup(self.bash.close, force=True)
        self.bash.expect_exact("$ ")
        for path in COMPLETIONS:
            self.run_line(f"source '{path}'")
        self.run_line("bind 'set bell-style none'; bind 'set enable-bracketed-paste off'")

    def run_line(self, line):
        self.bash.sendline(line + "; echo DO''NE")
        self.bash.expect_exact("DONE\r\n$ ")
        return self.bash.before

    def offered(self, line, *expected, missing=()):
        self.bash.send(line + "\t\t")
        for text in expected:
            self.bash.expect_exact(text)
        self.bash.send("\x15echo EN''D\r")
        self.bash.expect_exact("END\r\n$ ")
        for text in missing:
            self.assertNotIn(text, self.bash.before)

    def test_ktsetup(self):
        self.offered("ktsetup cre", "ate")
        self.offered("ktsetup cc -t ", "check", "sync")
        self.offered("ktsetup enc --type=", "arydev")
        self.offered("ktsetup info -o vd -i ", "0 (boot)", "3 (archive)")
        self.offered("ktsetup create -d 0,1", "10", "11", "12")
        self.offered("ktsetup 1 locate --id ", "0 (", missing=["Fulmar"])
        self.assertIn("archive", self.run_line("ktsetup info -o vd -i 3\t"))
        self.run_line("touch 'fw one.bin'")
        self.assertNotIn("Can not open", self.run_line("ktsetup flash -a version -t raw -f fw\t"))
        self.run_line("ktsim fault KT_LD_GetInfo 1")
        self.offered("ktsetup init -l ", missing=["boot", "fw one.bin"])

    def test_ktcfg_and_ktsim(self):
        self.run_line("touch saved.txt")
        self.offered("ktcfg backup_cfg --f", "ilename")
        self.offered("ktcfg backup_cfg -f s", "aved.txt")
        self.offered("ktcfg restore_cfg --raid -t ", "phy")
        self.offered("ktcfg plan --ch", "eck")
        self.offered("ktcfg apply -f s", "aved.txt")
        self.offered("ktsim image make --type ", "bios", "firmware")
        self.offered("ktsim disk fail 1", "10", "12")
        self.offered("ktsim fault KT_PD_GetHDI", "nfo")


if __name__ == "__main__":
    unittest.main()
