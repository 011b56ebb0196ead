"""The interactive shell: prompt, history, completion, quotes, questions and the end of input."""
import resource
import subprocess
import time
import unittest

from terminal import PROGRAM, TerminalTest


class ShellTest(TerminalTest):
    def hide_readline(self):
        self.make("libreadline.so.8")
        self.environment["LD_LIBRARY_PATH"] = self.folder.name + ":" + self.environment["LD_LIBRARY_PATH"]

    def test_lines_are_read_until_exit(self):
        child = self.shell()
        self.assertIn("   RaidAPI Version: ", child.before)
        self.assertIn("Welcome to RAID Command Line Interface.", child.before)
        self.say(child, "", "Type 'exit' to exit CLI.")
        self.say(child, 'create -n "My', "Invalid quoted string.")
        self.say(child, " ver", "Ambiguous command ''!")
        self.say(child, "VER", "   RaidAPI Version: ")
        self.say(child, "adapter", "Current default adapter ID for CLI commands: 0")
        self.assertEqual(self.left(child, "EXIT"), 255)

    def test_history_keeps_no_secrets(self):
        child = self.shell()
        self.say(child, "adapter -i 1", "")
        self.say(child, "aesop -o changePwd -e 0 -p hush -w quiet", "failed")
        self.say(child, "\x1b[A", "aesop: option -w is required")
        self.assertNotIn("quiet", self.text(".local/state/ktsetup/history"))
        with open(f"/proc/{child.pid}/maps", encoding="utf-8") as maps, open(f"/proc/{child.pid}/mem", "rb") as memory:
            for line in maps:
                if "[heap]" in line or "[stack]" in line:
                    start, end = (int(number, 16) for number in line.split()[0].split("-"))
                    memory.seek(start)
                    self.assertNotIn(b"quiet", memory.read(end - start))

    def test_the_command_set_follows_the_adapter(self):
        child = self.shell()
        self.say(child, "message -x", "message: invalid option -- 'x'")
        self.say(child, "adapter -i 1", "")
        self.say(child, "message", "Invalid command 'message'!")
        self.say(child, "adapter -i 9", "Adapter 9 does not exist.")

    def test_the_end_of_input_goes_on_prompting_without_spinning(self):
        child = self.shell()
        child.sendeof()
        child.expect_exact("> ")
        self.say(child, "ver", "CLI Version")
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        process = subprocess.Popen([PROGRAM], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=self.environment)
        time.sleep(3)
        process.kill()
        output = process.communicate()[0]
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertGreater(output.count(b"> "), 2)
        self.assertLess(output.count(b"> "), 100)
        self.assertLess(after.ru_utime - before.ru_utime, 1.5)

    def test_piped_lines_and_answers_are_each_seen_once(self):
        status, output = self.piped("error -c 1\ndelete -o vd -i 3\nx\ny\ninfo -o vd -i 3\nver\nexit\n")
        self.assertEqual(status, 255)
        self.assertEqual(output.count("Please input y or n."), 1)
        self.assertIn("Delete VD 3 successfully.", output)
        self.assertIn("Unable to get info of vd 3", output)
        self.assertEqual(output.count("CLI Version:"), 2)

    def test_a_line_has_no_limit(self):
        status, output = self.piped("x" * 100000 + "\nhelp " + "a " * 3000 + "\nver\nexit\n")
        self.assertEqual(status, 255)
        self.assertIn("Invalid command '" + "x" * 100000 + "'!", output)
        self.assertEqual(output.count("No help available for 'a'"), 3000)

    def test_lines_are_read_without_readline_too(self):
        lines = "error -c 3\ndelete -o vd -i 3\nn\n\nexit\n"
        edited = self.piped(lines)
        self.hide_readline()
        self.assertEqual(self.piped(lines), edited)
        child = self.spawn()
        child.expect_exact("The readline library is not installed")
        child.expect_exact("> ")
        child.send("error -c 1")
        child.sendintr()
        child.expect_exact("> ")
        self.say(child, "error -c 3", "Error code 3: Unknown error.")

    def test_a_line_beyond_the_memory_ends_the_shell_with_a_word(self):
        if "sanitize" in PROGRAM:
            self.skipTest("sanitizers need more memory than there is")
        self.hide_readline()
        line = "head -c 2000000 /dev/zero | tr '\\0' x | (ulimit -v 13000; exec \"$0\")"
        self.assertEqual(self.once("bash", "-c", line, PROGRAM)[::2], (1, "ktsetup: out of memory\n"))

    def test_words_have_the_same_cases_in_every_locale(self):
        if self.once("localedef", "-i", "tr_TR", "-f", "UTF-8", self.path("tr_TR.UTF-8"))[0] != 0:
            self.skipTest("the sources of the Turkish locale are not installed")
        self.environment.update(LOCPATH=self.folder.name, LC_ALL="tr_TR.UTF-8")
        self.assertIn("have been written into nvsram!", self.piped("nvsram -a WRITE\nexit\n")[1])

    def test_closed_streams_are_not_reused_for_files(self):
        for closing in ("2>&-", "<&- 2>&-", "<&- >&- 2>&-"):
            command = f'"{PROGRAM}" info -z -output "{self.path("out.txt")}" {closing}'
            self.assertEqual(self.once("bash", "-c", command)[0], 1)
        self.assertEqual(self.text("out.txt"), "SG driver version 3.5.36.\n" * 3)

    def test_output_is_appended_to_a_file(self):
        for _ in range(2):
            self.assertEqual(self.once(PROGRAM, "1", "error", "-OUTPUT", self.path("out.txt"), "-c", "1"), (0, "", ""))
        text = self.text("out.txt")
        self.assertEqual((text.count("Error code 1: Failed."), text.count("SG driver version")), (2, 2))
        self.assertEqual(self.once(PROGRAM, "-output", self.path("out.txt"))[0], 1)
        self.assertTrue(self.text("out.txt").endswith("Invalid command!\n"))
        # Where no file can be made it is lost.
        self.assertEqual(self.once(PROGRAM, "error", "-c", "1", "-output", "/nonexistent/file")[:2], (0, ""))


if __name__ == "__main__":
    unittest.main()
