// Many machines: a tile each, worst first.

const MINI_WIDTH = 10; // a bay of a tile's shelf, with the gap beside it
const MINI_HEIGHT = 24;
const MINI_COLUMNS = 24;
const MOST_MINIS = 120; // more disks than a tile has room for are only counted

// A bay of a tile: its colour, and a shape unless all is as it should be; what the filter is not about stands back.
function miniBay(bay, x, y, chosen) {
    const look = bay.disk?.look ?? EMPTY;
    const faded = bay.disk && (chosen.model || chosen.firmware) && !fitsDevice(bay.disk, chosen);
    const mark = look.tone !== "good" && look.tone !== "empty";
    return makeSvg(
        "g", {"class": `${look.tone}${faded ? " faded" : ""}`, transform: `translate(${x} ${y})`},
        makeSvg("rect", {width: MINI_WIDTH - 1.2, height: MINI_HEIGHT - 4, rx: 1.6}),
        mark && makeSvg("path",
                        {d: SHAPES[look.shape], transform: "translate(.8 10.6) scale(.45)", "fill-rule": "evenodd"}));
}

// The shelves of a tile with their disks in place, in rows of 24 bays; small groups of ports share a row.
function miniShelves(machine, chosen) {
    const bays = [];
    let at = 0;
    for (const shelf of machine.adapters.flatMap((adapter) => adapter.shelves)) {
        if (!shelf.bays.some((bay) => bay.disk)) continue;
        const fits = (at % MINI_COLUMNS) + shelf.bays.length <= MINI_COLUMNS;
        if (!fits) at = Math.ceil(at / MINI_COLUMNS) * MINI_COLUMNS;
        for (const bay of shelf.bays) {
            const row = Math.floor(at / MINI_COLUMNS);
            bays.push(miniBay(bay, (at % MINI_COLUMNS) * MINI_WIDTH, row * MINI_HEIGHT, chosen));
            ++at;
        }
        if (at % MINI_COLUMNS !== 0) ++at;
    }
    const rows = Math.max(Math.ceil((at - 1) / MINI_COLUMNS), 1);
    const size = `0 0 ${MINI_COLUMNS * MINI_WIDTH - 1} ${rows * MINI_HEIGHT - 4}`;
    return makeSvg("svg", {"class": "minis", viewBox: size, "aria-hidden": "true"}, bays);
}

// How many disks are how, where there are too many for a tile.
function proportions(machine) {
    const groups = [...groupBy(machine.disks, (disk) => disk.look.tone)];
    return make("span.proportions", {"aria-hidden": "true"},
                groups.map(([tone, disks]) => make(`span.${tone}`, {vars: {share: disks.length}})));
}

function tileText(machine, meanings) {
    if (machine.problems.length === 0) return machine.adapters.length === 0 ? "there is no adapter" : "";
    const [first] = machine.problems;
    const more = new Set(machine.problems.map((one) => one.name)).size - 1;
    return `${meanings[first.name]}${more > 0 ? `, and ${more} more` : ""}`;
}

function tile(machine, page, chosen) {
    const state = VERDICTS[machine.verdict];
    const count = machine.critical > 0 ? `${machine.critical} critical`
                  : machine.warnings > 0 ? plural(machine.warnings, "warning")
                                         : "fine";
    const picture = machine.disks.length > MOST_MINIS ? proportions(machine) : miniShelves(machine, chosen);
    return make("li", {},
                make(`a.tile.${state.tone}`, {href: addressOf(chosen, machine)},
                     make("span.top", {}, make("b.name", {}, machine.name), chip(state, count)), picture,
                     make("span.why", {}, tileText(machine, page.meanings)),
                     make("span.words", {}, `${plural(machine.disks.length, "disk")} \u00b7 ${sizeText(machine.space)}`,
                          machine.older && make("span.old", {}, ` \u00b7 ${machine.older} behind`))));
}

// The share of machines that are critical, warned of and fine; each part chooses its machines, and all again.
function fleetBar(machines, chosen) {
    const count = (verdict) => machines.filter((machine) => machine.verdict === verdict).length;
    const part = ([verdict, state]) => {
        const current = chosen.problem === verdict;
        const href = addressOf({...chosen, problem: current ? "" : verdict});
        const text = [make("b", {}, numbers.format(count(verdict))), ` ${state.word}`];
        return make(`a.${state.tone}`, {href, vars: {share: count(verdict)}, "aria-current": current && "true"},
                    make("span.count", {}, shape(state.shape), text));
    };
    const there = Object.entries(VERDICTS).filter(([verdict]) => count(verdict) > 0);
    return make("nav.fleet", {"aria-label": "Machines by how they are"}, there.map(part));
}

function leftOutView(sentences) {
    if (sentences.length === 0) return null;
    return make("section.leftout", {"aria-label": "Left out"},
                make("h2", {}, shape("triangle"), `${plural(sentences.length, "file")} left out`),
                make("ul", {}, sentences.map((text) => make("li", {}, text))));
}

function wallHead(page, chosen) {
    const disks = page.machines.reduce((sum, machine) => sum + machine.disks.length, 0);
    const space = page.machines.reduce((sum, machine) => sum + machine.space, 0);
    return make("header.wallhead", {}, make("h1", {}, plural(page.machines.length, "machine")),
                make("p", {}, `${plural(disks, "disk")} \u00b7 ${sizeText(space)}`), fleetBar(page.machines, chosen));
}

// The arrow keys go from tile to tile as they lie on the screen.
function moveAmongTiles(event) {
    if (!event.key.startsWith("Arrow") || !event.target.matches(".tile")) return;
    const tiles = [...event.currentTarget.querySelectorAll(".tile")];
    const at = tiles.indexOf(event.target);
    const aside = {ArrowRight: tiles[at + 1], ArrowLeft: tiles[at - 1]};
    const next = event.key in aside ? aside[event.key] : inNextRow(tiles, at, event.key === "ArrowDown");
    event.preventDefault();
    next?.focus();
}

function tilesView(page, chosen) {
    const machines = page.machines.filter((machine) => fitsMachine(machine, chosen));
    const all = machines.length === page.machines.length;
    const count =
        all ? "Worst first" : `${numbers.format(machines.length)} of ${plural(page.machines.length, "machine")}`;
    return make(
        "div.tiles", {}, make("p.found", {role: "status"}, count, !all && make("a", {href: "#"}, "show all")),
        make("ul.wall", {on: {keydown: moveAmongTiles}}, machines.map((machine) => tile(machine, page, chosen))));
}

function wallView(page, chosen) {
    return [wallHead(page, chosen), leftOutView(page.leftOut), filterBar(page, chosen), tilesView(page, chosen)];
}
