"""Completion in bash, typed at a terminal: for all programs, made of the same rows as the shell's own."""
import os
import unittest

from terminal import BIN, TerminalTest, pexpect


class BashTest(TerminalTest):
    prompt = "$ "

    def setUp(self):
        super().setUp()
        self.environment.update(PATH=BIN + ":" + os.environ["PATH"], PS1="$ ")
        self.bash = pexpect.spawn("bash", ["--norc", "--noprofile", "-i"], env=self.environment, encoding="utf-8",
                                  timeout=10, dimensions=(50, 200), cwd=self.folder.name)
        self.addCleanup(self.bash.close, force=True)
        self.bash.expect_exact("$ ")
        for path in os.environ["COMPLETIONS"].split(":"):
            self.run_line(f"source '{path}'")
        self.run_line("bind 'set bell-style none'; bind 'set enable-bracketed-paste off'")

    def run_line(self, line):
        self.bash.sendline(line + "; echo DO''NE")
        self.bash.expect_exact("DONE\r\n$ ")
        return self.bash.before

    def drop_line(self, child):
        child.send("\x15echo EN''D\r")
        child.expect_exact("END\r\n")

    def test_ktsetup(self):
        self.offered(self.bash, "ktsetup cre", "ate")
        self.offered(self.bash, "ktsetup enc --type=", "arydev")
        self.offered(self.bash, "ktsetup info -o vd -i ", "0 (boot)", "3 (archive)")
        self.offered(self.bash, "ktsetup create -d 0,1", "10", "11", "12")
        self.offered(self.bash, "ktsetup 1 locate --id ", "0 (", missing=["Fulmar"])
        self.assertIn("archive", self.run_line("ktsetup info -o vd -i 3\t"))
        self.make("fw one.bin")
        self.assertNotIn("Can not open", self.run_line("ktsetup flash -a version -t raw -f fw\t"))
        self.run_line("ktsim fault KT_LD_GetInfo 1")
        self.offered(self.bash, "ktsetup init -l ", missing=["boot", "fw one.bin"])

    def test_ktcfg_and_ktsim(self):
        self.make("saved.txt")
        for line, expected in [("ktcfg backup_cfg --f", ["ilename"]), ("ktcfg backup_cfg -f s", ["aved.txt"]),
                               ("ktcfg restore_cfg --raid -t ", ["phy"]), ("ktcfg plan --ch", ["eck"]),
                               ("ktcfg apply -f s", ["aved.txt"]), ("ktsim image make --type ", ["bios", "firmware"]),
                               ("ktsim disk fail 1", ["10", "12"]), ("ktsim fault KT_PD_GetHDI", ["nfo"])]:
            self.offered(self.bash, line, *expected)


if __name__ == "__main__":
    unittest.main()
