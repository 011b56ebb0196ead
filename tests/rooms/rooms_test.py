"""Fails when a part of the code uses one above it, or when parts use each other in a circle. In the simulated library
every source has a header of its own name.

usage: rooms_test.py SOURCE_DIR BUILD_DIR OBJECTS, a file that names the objects. A unit is a source file; it uses
another one when its object needs a symbol that the other's defines.
"""
import graphlib
import os
import re
import subprocess
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


def source_of(path, build):
    """The source of an object, as CMake names it, relative to the repository; None for generated ones."""
    match = re.match(r"(.*)/CMakeFiles/[^/]+\.dir/(.*\.cpp)\.o$", os.path.relpath(path, build))
    if not match:
        return None
    return os.path.normpath(match.group(1) + "/" + match.group(2).replace("__", ".."))


def read_symbols(objects, build):
    """Symbol -> the units that define it, and unit -> the symbols that it needs. Calls of the library's interface are
    left out: whoever makes them does not know who answers."""
    units = {path: source_of(path, build) for path in objects}
    units = {path: unit for path, unit in units.items() if unit and floor_of(unit) is not None}
    defined, needed = {}, {unit: set() for unit in units.values()}
    lines = subprocess.run(["nm", "-A", "-P", *units], check=True, capture_output=True, text=True).stdout.splitlines()
    for path, symbol, kind in (line.split()[:3] for line in lines):
        if symbol.startswith("KT_"):
            continue
        unit = units[path.removesuffix(":")]
        if kind in "TDBR":
            defined.setdefault(symbol, set()).add(unit)
        elif kind == "U":
            needed[unit].add(symbol)
    return defined, needed


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
    source, build, listing = sys.argv[1:4]
    with open(listing, encoding="utf-8") as file:
        objects = file.read().split()
    defined, needed = read_symbols(objects, build)
    arrows, complaints = {}, []
    for user, symbols in sorted(needed.items()):
        for symbol in sorted(symbols):
            # Programs have functions of the same name; each uses its own.
            near = sorted(defined.get(symbol, ()), key=lambda unit: -len(os.path.commonprefix([unit, user])))
            if not near or near[0] == user:
                continue
            used = near[0]
            arrows.setdefault(user, set()).add(used)
            reason = wrong(user, used)
            if reason:
                complaints.append(f"{user} -> {used} {reason}: {symbol}")
    for unit in sorted(needed):
        header = os.path.join(source, unit[: -len("cpp")] + "h")
        if unit.startswith(SIMULATION) and not unit.startswith(EXPORTED) and not os.path.exists(header):
            complaints.append(f"{unit} has no header of its own")
    complaints += [f"docs/architecture.md: {name} is not where the table says" for name in moved(source)]
    found = circle(arrows)
    if found:
        complaints.append("a circle: " + " -> ".join(found))
    # A list of objects that could not be read would find nothing wrong.
    count = sum(len(used) for used in arrows.values())
    if count < 500:
        complaints.append(f"only {count} arrows were found")
    print("\n".join(complaints) or f"{len(needed)} units, {count} arrows")
    return 1 if complaints else 0


sys.exit(main())
