"""The example playbooks under the real Ansible, with machines that are this one and adapters of their own."""
import os
import subprocess
import sys
import unittest

from frame import BIN

EXAMPLES = os.path.join(os.environ["SOURCE"], "docs", "examples")


class Playbook(unittest.TestCase):
    def line(self, name, machine):
        """The inventory's line for a machine, whose Python starts what it starts on the machine's adapters."""
        text = f'#!/bin/sh\nexport KTRAID_SIM={machine.path("state.db")}\nexec {sys.executable} "$@"\n'
        python = machine.save("python", text)
        os.chmod(python, 0o755)
        return f"{name} ansible_connection=local ansible_python_interpreter={python}"

    def run_playbook(self, name, *words):
        self.bench.save("ansible.cfg", "")  # that of this machine plays no part
        environment = dict(os.environ, PATH=BIN + ":" + os.environ["PATH"], HOME=self.bench.folder.name, ANSIBLE_NOCOLOR="1",
                           ANSIBLE_LOCAL_TEMP=self.bench.path("tmp"), ANSIBLE_CONFIG=self.bench.path("ansible.cfg"),
                           LC_ALL="C.UTF-8")
        return subprocess.run(["ansible-playbook", "-i", self.bench.path("inventory"), os.path.join(EXAMPLES, name), *words],
                              env=environment, capture_output=True, text=True, check=False, timeout=250)
