"""Fails when a part of the code uses one above it, or when parts use each other in a circle. In the simulated library
every source has a header of its own name.

usage: rooms_test.py SOURCE_DIR. A unit is a source file with its header; it uses another one when it includes that one's
header and speaks of a function that is defined in the source.
"""
import graphlib
import os
import re
import sys

# From the bottom up. Units on one floor may use each other, but in no circle, and one command family never another.
FLOORS = [
    ["libktraid/events/"],
    ["libktraid/sim/state/"],
    ["libktraid/sim/media/"],
    ["libktraid/sim/raid/"],
    ["libktraid/sim/activities/"],
    ["libktraid/sim/changes/"],
    ["libktraid/sim/devices/"],
    ["libktraid/sim/lab/"],
    ["libktraid/sim/frame/"],
    ["libktraid/sim/calls/"],
    ["utcTime/", "commandLine/"],
    ["Public/"],
    ["Functions/", "Report/"],
    ["Plan/"],
    ["ktsetup/", "ktcfg/", "ktreport/", "ktsim/"],
]
# The programs know the simulated library by its interface only, and it knows nothing of them. ktsim is beside both: it
# speaks of the adapters as the programs do. What adapters' events are called and say belongs to the interface.
SIMULATION = "libktraid/sim/"
EXPORTED = "libktraid/sim/calls/"  # declared in the interface
BESIDE = "ktsim/"
INTERFACE = "libktraid/events/"


# Where headers are looked for, beside the folder of the file that includes them.
INCLUDED_FROM = ["", "libktraid/", SIMULATION]
NO_CODE = re.compile(r'//[^\n]*|(?<!#include )"(\\.|[^"\\\n])*"')
# At the margin.
FUNCTION = re.compile(r"^(?!using |#)(static )?[A-Za-z_][\w:<>,&* ]*?[ *&](\w+)\(", re.M)


def read_files(source):
    """Path relative to the repository -> its words without comments and texts, of every file on a floor."""
    texts = {}
    for room in (room for floor in FLOORS for room in floor):
        for folder, _, names in os.walk(os.path.join(source, room)):
            for path in (os.path.join(folder, name) for name in names if name.endswith((".cpp", ".h"))):
                with open(path, encoding="utf-8") as file:
                    texts[os.path.relpath(path, source)] = NO_CODE.sub("", file.read())
    return texts


def included(path, texts):
    """The files on floors that one includes."""
    for name in re.findall(r'^#include "([^"]+)"', texts[path], re.M):
        places = [os.path.join(os.path.dirname(path), name)] + [folder + name for folder in INCLUDED_FROM]
        yield from [place for place in places if place in texts][:1]


def reached(path, texts):
    """The files on floors that one includes, also by way of others."""
    found, new = set(), {path}
    while new:
        new = {other for one in new for other in included(one, texts)} - found
        found |= new
    return found


def functions(unit, texts):
    """What the unit's source defines and its header declares."""
    defined = {name for own, name in FUNCTION.findall(texts.get(unit + ".cpp", "")) if not own}
    return defined & set(re.findall(r"(\w+)\(", texts.get(unit + ".h", "")))


def floor_of(unit):
    for number, prefixes in enumerate(FLOORS):
        if unit.startswith(tuple(prefixes)):
            return number
    return None


def family_of(unit):
    return "/".join(unit.split("/")[:2]) if unit.startswith("Functions/") else None


def wrong(user, used):
    """What is wrong with the arrow, or None."""
    free = user.startswith(BESIDE) or used.startswith(INTERFACE)
    if not free and user.startswith(SIMULATION) != used.startswith(SIMULATION):
        return "crosses the library's interface"
    if floor_of(user) < floor_of(used):
        return "points up"
    if family_of(user) and family_of(used) and family_of(user) != family_of(used):
        return "goes from one command family to another"
    return None


def circle(arrows):
    """Units that use each other in a circle, or nothing."""
    try:
        graphlib.TopologicalSorter(arrows).prepare()
    except graphlib.CycleError as found:
        return found.args[1][::-1]
    return []


def moved(source):
    """What the table of rules in docs/architecture.md names and its files do not have."""
    with open(f"{source}/docs/architecture.md", encoding="utf-8") as file:
        rows = re.findall(r"^\|[^|]+\|([^|]+`[^|]+)\|([^|]+`[^|]+)\|$", file.read(), re.M)
    for files, names in rows:
        text = ""
        for name in re.findall("`([^`]+)`", files):
            below = os.path.join(source, SIMULATION, name)
            with open(below if os.path.exists(below) else os.path.join(source, name), encoding="utf-8") as file:
                text += file.read()
        yield from (name for name in re.findall(r"`(\w+)", names) if not re.search(rf"\b{name}\b", text))
    if len(rows) < 30:
        yield f"only {len(rows)} rows were found"


def main():
    source = sys.argv[1]
    texts = read_files(source)
    defined = {unit: functions(unit, texts) for unit in {os.path.splitext(path)[0] for path in texts}}
    arrows, complaints = {}, []
    for path in sorted(texts):
        unit = os.path.splitext(path)[0]
        words = set(re.findall(r"\w+", texts[path])) - {name for _, name in FUNCTION.findall(texts[path])}
        for header in included(path, texts):
            used = os.path.splitext(header)[0]
            reason = wrong(unit, used)
            if reason:
                complaints.append(f"{path} -> {header} {reason}")
        for used in {os.path.splitext(header)[0] for header in reached(path, texts)} - {unit}:
            if words & defined[used]:
                arrows.setdefault(unit, set()).add(used)
        if path.startswith(SIMULATION) and not path.startswith(EXPORTED) and unit + ".h" not in texts:
            complaints.append(f"{path} has no header of its own")
    complaints += [f"docs/architecture.md: {name} is not where the table says" for name in moved(source)]
    found = circle(arrows)
    if found:
        complaints.append("a circle: " + " -> ".join(found))
    # A search that found no files would find nothing wrong.
    count = sum(len(used) for used in arrows.values())
    if count < 500:
        complaints.append(f"only {count} arrows were found")
    print("\n".join(complaints) or f"{len(texts)} files, {count} arrows")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
