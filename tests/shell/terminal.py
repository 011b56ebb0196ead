"""What the tests of the prompt share: simulated adapters of their own, and a terminal to type at."""
import os
import subprocess
import sys
import tempfile
import unittest

# Debian's package belongs to its own interpreter, which need not be the first one found.
sys.path.append("/usr/lib/python3/dist-packages")
import pexpect  # noqa: E402

BIN = os.environ["BIN"]
PROGRAM = os.path.join(BIN, "ktsetup")


class TerminalTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.environment = dict(os.environ, KTRAID_SIM=os.path.join(self.folder.name, "state.db"), TERM="dumb",
                                HOME=self.folder.name, LC_ALL="C", TZ="UTC")
        self.environment.pop("XDG_STATE_HOME", None)

    def spawn(self, *words):
        child = pexpect.spawn(PROGRAM, list(words), env=self.environment, encoding="utf-8", timeout=20, echo=False,
                              dimensions=(50, 200))
        self.addCleanup(child.close, force=True)
        return child

    def shell(self, *words):
        child = self.spawn(*words)
        child.expect_exact("> ")
        return child

    def say(self, child, line, answer):
        child.sendline(line)
        child.expect_exact(answer)
        child.expect_exact("> ")

    def sim(self, *words):
        subprocess.run([os.path.join(BIN, "ktsim"), *words], env=self.environment, check=True, capture_output=True)

    def piped(self, text):
        done = subprocess.run([PROGRAM], input=text, env=self.environment, capture_output=True, text=True, timeout=60)
        return done.returncode, done.stdout
