"""Random things that befall adapters, and random commands."""

LISTINGS = ["info -o hba", "info -o vd", "info -o array", "info -o pd", "info -o blk", "info -o exp", "info -o pm",
            "info -o spare", "info -o bbu", "info -o tandem", "get -o vd", "get -o array", "get -o pd", "get -o hba",
            "get -o driver", "get -o link", "status -o pd", "smart -p 1", "smart -p 11", "enc -o enc", "devmap -o vd",
            "devmap -o pd", "event", "aesentry -o getinfo", "aesport -o getinfo", "aesport -o getcfg"] + [
                f"enc -o {what} -i 1 -t {kind}" for what in ("ele", "elecfg")
                for kind in ("dev", "arydev", "pow", "fan", "tpr", "dor", "alm", "dpl", "vlt")]


def listings(bench, adapters):
    """All listings of all adapters, as the shell prints them."""
    lines = [line for adapter in range(adapters) for line in [f"adapter -i {adapter}", *LISTINGS]]
    return bench.run("ktsetup", text="\n".join(lines + ["exit", ""])).stdout


def happening(chance):
    """Something that befalls the adapters, in words for ktsim."""
    adapter = ("-a", str(chance.choice([0, 0, 1])))
    pd = str(chance.randrange(16))
    time = ("clock", "advance", chance.choice(["40s", "7m", "50m", "3h"]))
    return chance.choice([
        ("disk", *adapter, "fail", pd, "--force"), ("disk", *adapter, "fail", pd, "--force"),
        ("disk", *adapter, "pull", pd, "--force"), ("disk", *adapter, "insert", pd),
        ("disk", *adapter, "replace", pd, "--force"), ("disk", *adapter, "trip", pd),
        ("disk", *adapter, "age", pd, chance.choice(["reallocated", "uncorrectable", "link-errors", "hours", "warmth"]),
         str(chance.randrange(1, 90))),
        ("battery", chance.choice(["remove", "insert"])), ("battery", "charge", str(chance.randrange(101))),
        ("battery", "temperature", str(chance.randrange(80))),
        ("enclosure", "set", "1", "fan", "1", chance.choice(["failed", "ok"])), time, time,
        ("clock", "until", "idle")])


def command(chance):
    """A command of ktsetup, right now and then."""
    def number(below):
        return str(chance.randrange(below))

    def disks(count):
        first = chance.randrange(14)
        return ",".join(str(first + i) for i in range(count))
    level, count = chance.choice([("0", 2), ("1", 2), ("5", 3), ("6", 4), ("10", 4)])
    steer = ("-a", chance.choice(["pause", "resume", "stop", "restart"]))
    switch = chance.choice(["on", "off"])
    return (number(2), *chance.choice([
        ("delete", "-o", "vd", "-i", number(5), "-f", "--waiveconfirmation"),
        ("delete", "-o", "array", "-i", number(3), "--waiveconfirmation"),
        ("delete", "-o", "spare", "-i", number(14), "--waiveconfirmation"),
        ("create", "-o", "array", "-r", level, "-d", disks(count), "--waiveconfirmation"),
        ("create", "-o", "vd", "-a", number(4), "-n", "more", "-s", "3000", "--waiveconfirmation"),
        ("create", "-o", "vd", "-r", level, "-d", disks(count), "--waiveconfirmation"),
        ("assign", "-d", number(16), "--waiveconfirmation"),
        ("assign", "-o", "array", "-a", number(3), "-d", number(16), "--waiveconfirmation"),
        ("rebuild", "-l", number(4), "-d", number(16)), ("rebuild", "-l", number(4), *steer),
        ("cc", "-l", number(5)), ("cc", "-l", number(5), "-t", "check"), ("cc", "-l", number(5), *steer),
        ("init", "-l", number(5)), ("init", "-l", number(5), *steer),
        ("mp", "-d", number(16)), ("mp", "-d", number(16), *steer),
        ("migrate", "-l", number(3), "-r", "5", "-d", disks(4)), ("migrate", "-l", number(3), *steer),
        ("set", "-o", "vd", "-i", number(5), "-n", "renamed"),
        ("set", "-o", "vd", "-i", number(5), "-c", switch, "--waiveconfirmation"),
        ("set", "-o", "pd", "-i", number(16), "--status", chance.choice(["online", "offline"]), "--waiveconfirmation"),
        ("set", "-o", "pd", "-i", number(16), "-c", switch), ("set", "-o", "array", "-i", number(3), "-n", "called"),
        ("set", "-o", "hba", "--autorebuild", switch), ("set", "-o", "hba", "--rebuildrate", number(100)),
        ("set", "-o", "hba", "--copyback", switch), ("set", "-o", "hba", "--mute"),
        ("locate", "-i", number(16), "-a", switch), ("import", "-i", number(8)), ("rescan",)]))
