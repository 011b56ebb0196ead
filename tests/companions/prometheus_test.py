"""Metrics and alerting rules under the real promtool, node-exporter and Prometheus."""
import json
import os
import re
import socket
import subprocess
import time
import unittest
import urllib.parse
import urllib.request

from frame import LABS, Bench

RULES = os.path.join(os.environ["SOURCE"], "packaging", "prometheus", "ktraid.rules.yml")
LAB = {"adapters": [
    {"type": "array-based", "battery": True, "enclosures": [{"id": 1}],
     "disks": [{"count": 3, "size": "1TB", "enclosure": 1}, {"size": "1TB", "enclosure": 1, "spare": "global"}],
     "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "data"}]}]},
    {"type": "LD-based", "disks": [{"size": "1TB"}]}]}
FAILED = ('ktraid_problem{job="node",instance="store1",name="disk-failed",severity="critical",adapter="0",object="disk",'
          'id="3",serial="S3",model="FX",bay="slot 3 of enclosure 1",'
          'title="disk 3 (slot 3 of enclosure 1, FX, serial S3) on adapter 0"}')
FILE = '{job="node",instance="store1",file="/var/lib/prometheus/node-exporter/ktraid.prom"}'


def promtool(*words, text=None):
    return subprocess.run(["promtool", *words], input=text, capture_output=True, text=True, check=False)


def alert_name(problem):
    return "Ktraid" + "".join(word.capitalize() for word in problem.split("-"))


class Rules(unittest.TestCase):
    def setUp(self):
        self.bench = Bench(LAB)

    def test_metrics(self):
        for lab in LABS:
            done = promtool("check", "metrics", text=Bench(lab).run("ktreport", "metrics").stdout)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""), lab)

    def test_rules_are_rules(self):
        done = promtool("check", "rules", "--lint=all", "--lint-fatal", RULES)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def run_tests(self, *tests):
        """Each a dictionary as promtool takes them; series a minute apart from time 0 on."""
        path = self.bench.save("tests.json", {"rule_files": [RULES], "tests": [dict(test, interval="1m") for test in tests]})
        done = promtool("test", "rules", path)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def firing(self, *moments):
        """Tests that at each moment exactly those alerts fire."""
        return [{"expr": 'count by (alertname) (ALERTS{alertstate="firing"})', "eval_time": moment,
                 "exp_samples": [{"labels": f'{{alertname="{name}"}}', "value": 1} for name in names]}
                for moment, names in moments]

    def test_an_alert_tells_what_and_what_to_do(self):
        alert = {"exp_labels": {"severity": "critical", "job": "node", "instance": "store1", "name": "disk-failed",
                                "adapter": "0", "object": "disk", "id": "3", "serial": "S3", "model": "FX",
                                "bay": "slot 3 of enclosure 1",
                                "title": "disk 3 (slot 3 of enclosure 1, FX, serial S3) on adapter 0"},
                 "exp_annotations": {
                     "summary": "store1, disk 3 (slot 3 of enclosure 1, FX, serial S3) on adapter 0: a disk is offline",
                     "action": 'Replace it with one at least as large; "ktsetup 0 locate -o pd -i 3 -a on" lights its LED.'}}
        when = lambda moment, alerts: {"alertname": "KtraidDiskFailed", "eval_time": moment, "exp_alerts": alerts}
        self.run_tests({"input_series": [{"series": FAILED, "values": "1 1 1 1 stale"}],
                        "alert_rule_test": [when("30s", []), when("1m", [alert]), when("3m", [alert]), when("4m", [])]})

    def test_every_problem_has_its_alert(self):
        lines = self.bench.run("ktreport", "check", "--names").stdout.splitlines()
        problems = {line.split()[0]: re.search(r"\((\w+)\):", line)[1] for line in lines}
        self.assertGreater(len(problems), 30)
        critical = [alert_name(name) for name, severity in problems.items() if severity == "critical"]
        series = [{"series": f'ktraid_problem{{name="{name}",severity="{severity}"}}', "values": "1x9 stale"}
                  for name, severity in problems.items()]
        self.run_tests({"input_series": series,
                        "promql_expr_test": self.firing(("2m", critical), ("6m", map(alert_name, problems)), ("10m", []))})

    def test_what_is_gone_raises_an_alert(self):
        up, mtime = 'up{job="node",instance="store1"}', "node_textfile_mtime_seconds" + FILE
        rows = [  # series with their values, and the alert that is there at each moment
            ({"ktraid_up": "1 0 0 0 0 1"}, {"2m": None, "3m": "KtraidDown", "5m": None}),
            ({"ktraid_adapters": "2 2 1 1 1 1 2"}, {"1m": None, "4m": "KtraidAdapterGone", "6m": None}),
            # Never written again since its first minute.
            ({mtime: "0x30"}, {"9m": None, "12m": "KtraidMetricsOld"}),
            ({up: "1x3000", mtime: "0+60x5 stale"}, {"8m": None, "11m": "KtraidMetricsGone"}),
            # A machine that is down is not one whose file is gone.
            ({up: "1x5 0x20", mtime: "0+60x5 stale"}, {"12m": None}),
            ({'ktraid_read_timestamp_seconds{host="store7"}': "0x3000"}, {"47h": None, "48h2m": "KtraidReportOld"}),
            ({'ktraid_report_unreadable{file="a.json"}': "1x9"}, {"6m": "KtraidReportUnreadable"})]
        self.run_tests(*({"input_series": [{"series": name, "values": values} for name, values in series.items()],
                          "promql_expr_test": self.firing(*((moment, [name] if name else []) for moment, name in moments.items()))}
                         for series, moments in rows))


def free_port():
    with socket.socket() as door:
        door.bind(("127.0.0.1", 0))
        return door.getsockname()[1]


class Chain(unittest.TestCase):
    """From the adapters to the alert: ktreport, node-exporter, Prometheus."""

    def setUp(self):
        self.bench = Bench(LAB)
        self.folder = self.bench.path("textfile")
        os.mkdir(self.folder)
        self.file = os.path.join(self.folder, "ktraid.prom")
        self.write()
        exporter = f"127.0.0.1:{free_port()}"
        self.start("prometheus-node-exporter", "--collector.disable-defaults", "--collector.textfile",
                   "--collector.textfile.directory=" + self.folder, "--web.listen-address=" + exporter)
        with open(RULES, encoding="ascii") as file:
            rules = file.read()
        # The rules are loaded as they are but for how long a thing has to be so, which is tested above in their own time.
        rules, count = re.subn(r"^(    for:) \d+m$", r"\1 1s", rules, flags=re.M)
        self.assertEqual(count, rules.count("- alert:"))
        self.bench.save("rules.yml", rules)
        self.bench.save("prometheus.yml", {
            "global": {"scrape_interval": "1s", "scrape_timeout": "1s", "evaluation_interval": "1s"},
            "rule_files": [self.bench.path("rules.yml")],
            "scrape_configs": [{"job_name": "node", "static_configs": [{"targets": [exporter]}]}]})
        self.server = f"127.0.0.1:{free_port()}"
        self.start("prometheus", "--config.file=" + self.bench.path("prometheus.yml"),
                   "--storage.tsdb.path=" + self.bench.path("data"), "--web.listen-address=" + self.server)
        self.wait_until(lambda: self.query("ktraid_up") == [1.0])

    def start(self, *words):
        with open(self.bench.path(words[0] + ".log"), "w", encoding="ascii") as log:
            process = subprocess.Popen(words, stdout=log, stderr=log, cwd=self.bench.folder.name)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)

    def write(self):
        done = self.bench.run("ktreport", "metrics", "-o", self.file)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def ask(self, path, **words):
        url = f"http://{self.server}/api/v1/{path}?{urllib.parse.urlencode(words)}"
        with urllib.request.urlopen(url, timeout=5) as answer:
            return json.load(answer)["data"]

    def query(self, expression):
        return [float(one["value"][1]) for one in self.ask("query", query=expression)["result"]]

    def firing(self):
        return {one["labels"]["alertname"]: one for one in self.ask("alerts")["alerts"] if one["state"] == "firing"}

    def wait_until(self, condition):
        """Waits for what servers come to know a second or two later."""
        deadline = time.monotonic() + 45
        while True:
            try:
                if condition():
                    return
            except OSError:
                pass  # not listening yet
            if time.monotonic() > deadline:
                self.fail(self.tell())
            time.sleep(0.3)

    def tell(self):
        with open(self.bench.path("prometheus.log"), encoding="utf-8") as log:
            return f"fires: {sorted(self.firing())}\n{log.read()[-2000:]}"

    def wait_for_alerts(self, *names):
        self.wait_until(lambda: self.firing().keys() == set(names))

    def test_a_disk_fails_and_heals(self):
        self.wait_for_alerts()
        self.assertEqual(self.query('ktraid_disk_state{state="healthy"} == 1'), [1.0] * 5)
        self.bench.sim("disk", "fail", "1", "--force")
        self.write()
        lasting = {"KtraidDiskFailed", "KtraidSpareNoneFits"}
        self.wait_for_alerts("KtraidVdLastRedundancy", *lasting)
        alert = self.firing()["KtraidDiskFailed"]
        self.assertIn("disk 1 (slot 1 of enclosure 1", alert["annotations"]["summary"])
        self.assertIn('"ktsetup 0 locate -o pd -i 1 -a on"', alert["annotations"]["action"])
        self.bench.sim("clock", "until", "idle")
        self.write()
        self.wait_for_alerts(*lasting)
        self.bench.sim("disk", "replace", "1", "--force")
        self.write()
        self.wait_for_alerts("KtraidSpareNoneFits")

    def test_what_is_gone(self):
        os.utime(self.file, (time.time() - 900, time.time() - 900))
        self.wait_for_alerts("KtraidMetricsOld")
        smaller = self.bench.save("lab.json", {"adapters": LAB["adapters"][:1]})
        self.bench.sim("create", "--lab", smaller, "--at", "2026-01-05 08:00:00", "--force")
        self.write()
        self.wait_for_alerts("KtraidAdapterGone")
        with open(self.file, "a", encoding="ascii") as file:
            file.write("no metric at all\n")
        self.wait_for_alerts("KtraidMetricsGone")
