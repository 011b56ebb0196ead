"""What the tests of the prompt share: simulated adapters of their own, and a terminal to type at."""
import os
import signal
import subprocess
import tempfile
import unittest

import pexpect

# Who starts the tests may ignore them; the programs that are typed at must not find them ignored.
for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGHUP):
    signal.signal(number, signal.SIG_DFL)
BIN = os.environ["BIN"]
PROGRAM = os.path.join(BIN, "ktsetup")


class TerminalTest(unittest.TestCase):
    prompt = "> "

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.environment = dict(os.environ, KTRAID_SIM=self.path("state.db"), TERM="dumb",
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

    def offered(self, child, line, *expected, missing=()):
        """Two tabs behind the line offer what is expected, in that order."""
        child.send(line + "\t\t")
        for text in expected:
            child.expect_exact(text)
        self.drop_line(child)
        for word in missing:
            self.assertNotIn(word, child.before)
        child.expect_exact(self.prompt)

    def drop_line(self, child):
        child.sendintr()
        child.expect_exact("^C")

    def left(self, child, line=None):
        """How the child ends, behind its last line if there is one."""
        if line is not None:
            child.sendline(line)
        child.expect(pexpect.EOF)
        child.close()
        return child.exitstatus

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def text(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def make(self, name, content=""):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(content)
        return self.path(name)

    def once(self, *words, **options):
        done = subprocess.run(words, env=self.environment, capture_output=True, text=True, **options)
        return done.returncode, done.stdout, done.stderr

    def sim(self, *words):
        self.assertEqual(self.once(os.path.join(BIN, "ktsim"), *words)[0], 0)

    def piped(self, text):
        return self.once(PROGRAM, input=text)[:2]
