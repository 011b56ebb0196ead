// What the page is told, with what it works out: the state and role of every disk, the shelves, who is worst.

// Everything that looks something up by adapter and id.
function keyOf(adapter, kind, id) {
    return `${adapter}/${kind}/${id}`;
}

function volumesOf(adapter) {
    return [...adapter.arrays.flatMap((array) => array.virtualDisks), ...adapter.virtualDisks];
}

function fillingDisks(adapter) {
    return new Set([...volumesOf(adapter), ...adapter.arrays].map((volume) => volume.activity?.disk));
}

function roleOf(adapter, disk) {
    const roles = [];
    if (disk.spare) roles.push(`${disk.spare} spare${disk.spareInUse ? " in use" : ""}`);
    const array = adapter.arrays.find((one) => one.id === disk.array);
    if (array) roles.push(quoted("array", array));
    for (const vd of volumesOf(adapter)) {
        if (vd.disks.includes(disk.id)) roles.push(quoted("virtual disk", vd));
    }
    if (roles.length === 0) roles.push(disk.member ? "member" : disk.state === "healthy" ? "free" : "none");
    return roles.join(", ");
}

// A place for a disk: its number, how it is called, and the disk in it, if any.
function bayOf(number, name, disk) {
    return {number, name, disk};
}

// The bays of a shelf: those that it tells of, and those that disks say they are in.
function baysOf(enclosure, disks) {
    const name = (slot) => `slot ${slot} of enclosure ${enclosure.id}`;
    const bays = disks.map((disk) => bayOf(disk.slot, name(disk.slot), disk));
    const taken = new Set(disks.map((disk) => disk.slot));
    for (const element of enclosure.elements) {
        if (element.slot === undefined || taken.has(element.slot)) continue;
        taken.add(element.slot);
        bays.push(bayOf(element.slot, name(element.slot)));
    }
    return bays.sort((one, other) => (one.number ?? 0) - (other.number ?? 0));
}

function shelfOf(enclosure, disks) {
    const title = [enclosure.vendor, enclosure.product].filter(Boolean).join(" ");
    return {
        kind: "shelf",
        title: `Enclosure ${enclosure.id}`,
        subtitle: title,
        status: enclosure.status,
        bays: baysOf(enclosure, disks),
        parts: enclosure.elements.filter((part) => part.slot === undefined && PARTS[part.type]),
        id: enclosure.id,
    };
}

function groupBy(items, keyFor) {
    const groups = new Map();
    for (const item of items) {
        const key = keyFor(item);
        if (!groups.has(key)) groups.set(key, []);
        groups.get(key).push(item);
    }
    return groups;
}

// What a disk outside shelves is attached to: "PM 0", "expander 1", "" for the adapter itself.
function parentOf(disk) {
    return disk.on === "PM" || disk.on === "expander" ? `${disk.on} ${disk.parent ?? "?"}` : "";
}

// The ports of one parent; a port multiplier's empty ones stand there as well.
function portsOf(adapter, parent, disks) {
    const name = (port) => (port === undefined ? "place unknown" : `port ${port}${parent ? ` of ${parent}` : ""}`);
    const bays = disks.map((disk) => bayOf(disk.port, name(disk.port), disk));
    const taken = new Set(disks.map((disk) => disk.port));
    const multiplier = adapter.portMultipliers.find((one) => `PM ${one.id}` === parent);
    for (let port = 0; port < Math.min(multiplier?.ports ?? 0, MOST_PORTS); ++port) {
        if (!taken.has(port)) bays.push(bayOf(port, name(port)));
    }
    bays.sort((one, other) => (one.number ?? 0) - (other.number ?? 0));
    const title = parent.replace("PM", "Port multiplier").replace("expander", "Expander") || "Ports of the adapter";
    return {kind: "ports", title, subtitle: "", bays, parts: []};
}

const MOST_PORTS = 64; // empty ones that are drawn, whatever a report tells

function portGroups(adapter, disks) {
    const groups = groupBy(disks, parentOf);
    for (const multiplier of adapter.portMultipliers) {
        const parent = `PM ${multiplier.id}`;
        if (!groups.has(parent)) groups.set(parent, []);
    }
    const parents = [...groups.keys()].sort((one, other) => one.localeCompare(other, "en", {numeric: true}));
    return parents.map((parent) => portsOf(adapter, parent, groups.get(parent)));
}

function shelvesOf(adapter) {
    const shelved = groupBy(adapter.disks.filter((disk) => disk.enclosure !== undefined), (disk) => disk.enclosure);
    const enclosures = [...adapter.enclosures];
    for (const id of shelved.keys()) {
        if (!enclosures.some((one) => one.id === id)) enclosures.push({id, elements: []});
    }
    return [
        ...enclosures.map((enclosure) => shelfOf(enclosure, shelved.get(enclosure.id) ?? [])),
        ...portGroups(adapter, adapter.disks.filter((disk) => disk.enclosure === undefined)),
    ];
}

function completeAdapter(adapter, problems) {
    const filling = fillingDisks(adapter);
    const own = groupBy(problems.filter((one) => one.object === "disk" && one.adapter === adapter.id), (one) => one.id);
    for (const disk of adapter.disks) {
        disk.adapter = adapter.id;
        disk.problems = own.get(disk.id) ?? [];
        disk.look = diskState(disk, disk.problems, filling.has(disk.id));
    }
    adapter.shelves = shelvesOf(adapter);
    return adapter;
}

function verdictOf(problems) {
    if (problems.some((one) => one.severity === "critical")) return "critical";
    return problems.length > 0 ? "warning" : "fine";
}

function completeMachine(machine, place) {
    machine.place = place;
    machine.adapters.forEach((adapter) => completeAdapter(adapter, machine.problems));
    machine.disks = machine.adapters.flatMap((adapter) => adapter.disks);
    machine.space = machine.disks.reduce((sum, disk) => sum + (disk.size ?? 0), 0);
    machine.critical = machine.problems.filter((one) => one.severity === "critical").length;
    machine.warnings = machine.problems.length - machine.critical;
    machine.verdict = verdictOf(machine.problems);
    machine.name = machine.host || machine.source;
    return machine;
}

// Older than the newest report by so much that it may no longer be true.
const STALE = 24 * 3600 * 1000;

function markStale(machines) {
    const times = machines.map((machine) => Date.parse(machine.made)).filter((time) => !Number.isNaN(time));
    const newest = times.reduce((most, time) => Math.max(most, time), 0);
    for (const machine of machines) {
        const days = Math.floor((newest - Date.parse(machine.made)) / STALE);
        machine.older = days >= 1 ? plural(days, "day") : "";
    }
}

// Machines of the same name are told apart by their files.
function nameApart(machines) {
    const tell = (sourceName) => {
        for (const same of groupBy(machines, (machine) => machine.name).values()) {
            const [first, ...others] = same;
            if (others.some((machine) => machine.source !== first.source))
                same.forEach((machine) => { machine.name = `${machine.host} (${sourceName(machine.source)})`; });
        }
    };
    tell((source) => source.replace(/.*\//, ""));
    tell((source) => source);
}

function worse(one, other) {
    return other.critical - one.critical || other.warnings - one.warnings ||
           one.name.localeCompare(other.name, "en", {numeric: true});
}

function readPage() {
    const told = JSON.parse(document.getElementById("data").textContent);
    const machines = told.machines.map(completeMachine);
    nameApart(machines);
    markStale(machines);
    machines.sort(worse);
    return {machines, leftOut: told.leftOut, meanings: told.meanings};
}
