"""ktreport's words: what is refused, in which words and with which exit status."""
import unittest

from frame import Bench

HELP = " (--help tells more)"


class Words(unittest.TestCase):
    def test_refusals(self):
        bench = Bench("default")
        bad, good = bench.save("bad.json", "nonsense"), bench.save("good.json", bench.report())
        none, below = bench.path("none"), bad + "/below"
        no_report = bad + ": is no report: parse error at line 1, column 2: syntax error while parsing value - invalid " \
                          "literal; last read: 'no'"
        missing = none + ": No such file or directory"
        rows = [  # words, status, lines on standard error
            (["check", "no\x1bsuch\x7f"], 3, ["The following argument was not expected: no?such?" + HELP]),
            (["show", "-a", "255"], 2, ["--adapter: Value 255 not in range 0 to 254" + HELP]),
            (["check", "--ignore", "nosuch"], 3,
             ['--ignore: "nosuch" is no problem\'s name (ktreport check --names lists them)' + HELP]),
            (["json", "--from", good, good], 2, ["json takes one file: a report is of one machine" + HELP]),
            (["json", "--from", bad], 3, [no_report]),
            (["show", "--thresholds", none], 3, [missing]),
            (["events", "--follow", "--from", good], 2, ["--follow reads the adapters, not files" + HELP]),
            (["events", "--cursor", none, "--from", good, good], 2, ["--cursor goes with the events of one machine" + HELP]),
            (["events", "--every", "5"], 2, ["--every requires --follow" + HELP]),
            (["events", "-f", "--every", "0"], 2, ["--every: Value 0 not in range 1 to 86400" + HELP]),
            (["events", "--since", "2147483648"], 2, ["--since: Value 2147483648 not in range 0 to 2147483647" + HELP]),
            (["diff", "-", "-"], 2, ["only one of the two reports can come from standard input" + HELP]),
            (["diff", good, good, good], 2, ["reports: At Most 2 required but received 3" + HELP]),
            (["page", "-o", ""], 2, ["-o: the file's name is empty" + HELP]),
            (["page", "--from", bad, none], 3, [no_report + " (left out)", missing + " (left out)",
                                                "none of the files is a report: there is no page"]),
            (["metrics", "-o", below], 3, [below + ": cannot be written: Not a directory"]),
            (["wait", "--vd", "7"], 2, ["there is nothing of that id to wait for" + HELP]),
            (["wait", "--vd", "1", "--pd", "1"], 2,
             ["Requires at most 1 options be given from [--vd,--array,--pd,--all]" + HELP]),
            *((["wait", "--timeout", time], 2, [f"--timeout: {time} is no time; 90, 90s, 30m, 2h and 1d are" + HELP])
              for time in ("7x", "s", "1234567", "-1")),
        ]
        for words, status, lines in rows:
            done = bench.run("ktreport", *words)
            self.assertEqual((done.returncode, done.stdout, done.stderr),
                             (status, "", "".join(f"ktreport: {line}\n" for line in lines)), words)
        for path, why in ((bad, no_report), (none, missing)):
            done = bench.run("ktreport", "check", "--from", path)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (3, f"RAID UNKNOWN - {why}\n", ""))
