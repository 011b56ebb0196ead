// One machine: its verdict, what is wrong and what to do, what goes on, its shelves and what is made of the disks.

// Brings what the key names into sight and lets it stand out; a disk's card opens.
function goTo(adapter, kind, id) {
    const node = document.querySelector(
        `:is(.bay, .volume, .vd, .shelf, .adapter)[data-key="${CSS.escape(keyOf(adapter, kind, id))}"]`);
    if (!node) return;
    node.scrollIntoView(
        {block: "center", behavior: matchMedia("(prefers-reduced-motion: reduce)").matches ? "auto" : "smooth"});
    node.focus({preventScroll: true});
    if (node.matches(".bay")) return;
    node.classList.add("flash");
    setTimeout(() => node.classList.remove("flash"), 1600);
}

// What a command in a sentence is: between quotation marks, beginning with the program's name.
function sentence(text) {
    return text.split(/"(ktsetup [^"]*)"/).map((piece, at) => (at % 2 === 1 ? make("code", {}, piece) : piece));
}

const HAS_A_PLACE = new Set(["disk", "array", "virtual disk", "enclosure", "adapter", "battery"]);

function problemView(problem) {
    const state = VERDICTS[problem.severity];
    const kind = problem.object === "battery" ? "adapter" : problem.object;
    const id = kind === "adapter" ? problem.adapter : problem.id;
    const show = HAS_A_PLACE.has(problem.object) && id !== undefined &&
                 make("button.show", {type: "button", on: {click: () => goTo(problem.adapter, kind, id)}}, "Show it");
    return make(`li.problem.${state.tone}`, {"data-problem": problem.name},
                make("span.mark", {}, shape(state.shape), make("b", {}, state.word)),
                make("div", {}, make("p.what", {}, problem.text), make("p.do", {}, sentence(problem.action))), show);
}

function verdictText(machine) {
    if (machine.adapters.length === 0) return "There is no adapter";
    if (machine.problems.length === 0) return "Nothing is wrong";
    const count = plural(machine.problems.length, "problem");
    return machine.critical === 0 ? count : `${count}, ${machine.critical} critical`;
}

function machineFacts(machine) {
    const warmest =
        machine.disks.reduce((most, disk) => (disk.temperature > (most?.temperature ?? -300) ? disk : most), null);
    return make("dl.summary", {}, pair("Adapters", numbers.format(machine.adapters.length)),
                pair("Disks", numbers.format(machine.disks.length)),
                pair("Space", machine.space > 0 ? sizeText(machine.space) : ""),
                pair("Warmest disk", warmest && `${warmest.temperature} \u00b0C`),
                pair("Read", timeText(machine.made) + (machine.older ? ` (${machine.older} before the newest)` : "")));
}

function hero(machine, many) {
    const state = VERDICTS[machine.verdict];
    return make(`header.hero.${state.tone}`, {}, many && make("a.back", {href: wallAddress()}, "\u2190 All machines"),
                make("div.verdict", {}, make("span.seal", {}, shape(state.shape)),
                     make("div", {}, make("h1", {}, machine.name), make("p", {}, verdictText(machine)))),
                machineFacts(machine));
}

// The battery's state, by the bits of its record.
function batteryChip(battery) {
    if (battery === undefined) return null;
    const [PRESENT, CHARGING, DISCHARGING] = [1, 2, 4];
    if (battery === false || !(battery.status & PRESENT)) return chip({...EMPTY, word: "no battery"});
    const text = `battery ${battery.percentage ?? "?"} %`;
    if (battery.status & CHARGING) return chip(good(`${text}, charging`, "turn"));
    return chip(battery.status & DISCHARGING ? warn(`${text}, discharging`) : good(text));
}

// The same as a table: for paper, and for whoever would rather read.
function diskTable(adapter) {
    const bays = adapter.shelves.flatMap((shelf) => shelf.bays).filter((bay) => bay.disk);
    if (bays.length === 0) return null;
    const heads = ["Place", "Disk", "State", "Role", "Model", "Serial", "Firmware", "Size", "\u00b0C", "Wear"];
    const row =
        ({name,
          disk}) => [capital(name), `${disk.id}`, chip(disk.look), roleOf(adapter, disk), disk.model, disk.serial,
                     disk.firmware, sizeText(disk.size), disk.temperature === undefined ? "" : `${disk.temperature}`,
                     disk.wear === undefined ? "" : `${disk.wear} %`];
    const table = make("details.table", {}, make("summary", {}, `${plural(bays.length, "disk")} as a table`));
    // A table of thousands of rows is made when it is asked for.
    const fill = () =>
        table.querySelector("table") ??
        table.append(make(
            "div.scroll", {},
            make("table", {}, make("thead", {}, make("tr", {}, heads.map((head) => make("th", {scope: "col"}, head)))),
                 make("tbody", {}, bays.map((bay) => make("tr", {}, row(bay).map((cell) => make("td", {}, cell))))))));
    table.addEventListener("toggle", fill);
    table.fill = fill;
    return table;
}

function adapterView(adapter) {
    const told = adapter.type !== undefined;
    const words = [
        adapter.serial && `serial ${adapter.serial}`,
        adapter.versions?.firmware && `firmware ${adapter.versions.firmware}`, adapter.type
    ];
    return make("section.adapter", {"data-key": keyOf(adapter.id, "adapter", adapter.id), tabindex: -1},
                make("header", {}, make("h2", {}, `Adapter ${adapter.id}`, adapter.model && ` \u00b7 ${adapter.model}`),
                     make("span.words", {}, words.filter(Boolean).join(" \u00b7 ")),
                     told ? batteryChip(adapter.battery) : chip(bad("does not answer"))),
                make("div.shelves", {}, adapter.shelves.map((shelf) => shelfView(adapter, shelf))),
                volumesView(adapter), diskTable(adapter));
}

// What runs on all adapters, each with a way to where it runs.
function activitiesView(machine) {
    const all = machine.adapters.flatMap((adapter) => adapter.going.map((one) => ({adapter, one})));
    if (all.length === 0) return null;
    return make(
        "section.going", {"aria-label": "Going on"}, make("h2", {}, "Going on"),
        make("ul", {},
             all.map(({adapter, one}) => make(
                         "li", {},
                         make("button.link", {type: "button", on: {click: () => goTo(adapter.id, one.object, one.id)}},
                              capital(one.name)),
                         progressBar(one)))));
}

function legend() {
    const states = [
        good("in use"), {word: "spare", shape: "diamond", tone: "spare"}, {word: "free", shape: "ring", tone: "free"},
        {word: "rebuilding", shape: "turn", tone: "busy"}, warn("warning"), bad("failed"),
        {word: "foreign", shape: "square", tone: "odd"}
    ];
    return make("p.legend", {"aria-label": "What the shapes mean"}, states.map((state) => chip(state)));
}

// So many stand there at once, and all critical ones.
const PROBLEMS_SHOWN = 7;

function problemsView(machine) {
    if (machine.problems.length === 0) return null;
    const first = Math.max(PROBLEMS_SHOWN, machine.critical);
    const shown = machine.problems.slice(0, first);
    const rest = machine.problems.slice(first);
    return make("section.problems", {"aria-label": "Problems"}, make("ol", {}, shown.map(problemView)),
                rest.length > 0 &&
                    make("details", {}, make("summary", {}, `and ${plural(rest.length, "more warning")}`),
                         make("ol", {start: first + 1}, rest.map(problemView))));
}

// Where there are more adapters than a screen shows: a way to each.
function adapterWays(machine) {
    if (machine.adapters.length < 3) return null;
    const way = (adapter) => {
        const state = VERDICTS[verdictOf(machine.problems.filter((one) => one.adapter === adapter.id))];
        return make(`button.way.${state.tone}`,
                    {type: "button", on: {click: () => goTo(adapter.id, "adapter", adapter.id)}}, shape(state.shape),
                    `Adapter ${adapter.id}`, make("small", {}, state.word));
    };
    return make("nav.ways", {"aria-label": "Adapters"}, machine.adapters.map(way));
}

function machineView(machine, many) {
    return [
        hero(machine, many), problemsView(machine), activitiesView(machine), adapterWays(machine),
        machine.disks.length > 0 && legend(), machine.adapters.map(adapterView)
    ];
}
