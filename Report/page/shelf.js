// The front of a shelf with its bays in place.

// How many bays stand side by side, and which way: shelves of up to 16 bays take lying disks, larger ones standing.
function layoutOf(shelf) {
    const count = shelf.bays.length;
    if (shelf.kind === "ports") return {columns: Math.min(count, 6), tall: false};
    if (count <= 16) return {columns: Math.min(count, 4), tall: false};
    return {columns: count <= 26 ? count : Math.min(count, 24), tall: true};
}

function emptyBay(bay) {
    return make("div.bay.empty",
                {"aria-label": `${capital(bay.name)}: empty`, role: "img", title: `${capital(bay.name)}: empty`},
                make("span.number", {}, `${bay.number ?? ""}`), make("span.word", {}, "empty"));
}

function bayLabel(bay) {
    const disk = bay.disk;
    return [`${capital(bay.name)}: disk ${disk.id}`, disk.look.word, disk.model, sizeText(disk.size)]
        .filter(Boolean)
        .join(", ");
}

function diskBay(adapter, bay, first) {
    const disk = bay.disk;
    const show = (event) => openInspector(adapter, bay, event.currentTarget);
    const leave = () => inspector.kept || closeInspector();
    const keep = (event) =>
        inspector.kept && inspector.anchor === event.currentTarget ? closeInspector() : keepOpen(event.currentTarget);
    const keepOpen = (anchor) => {
        closeInspector();
        openInspector(adapter, bay, anchor, true);
    };
    return make(
        `button.bay.${disk.look.tone}`, {
            type: "button",
            "aria-label": bayLabel(bay),
            "data-key": keyOf(adapter.id, "disk", disk.id),
            tabindex: first ? 0 : -1,
            on: {pointerenter: show, pointerleave: leave, focus: show, blur: leave, click: keep}
        },
        make("span.number", {}, `${bay.number ?? "?"}`), make("span.grille", {}),
        make("span.kind", {}, [disk.type, sizeText(disk.size)].filter(Boolean).join(" ")),
        make("span.word", {}, disk.look.word), shape(disk.look.shape),
        disk.locateLed && make("span.beacon", {title: "its light blinks"}),
        make("span.degrees", {}, disk.temperature === undefined ? "" : `${Math.round(disk.temperature)}\u00b0`));
}

// A shelf is one stop of the Tab key; arrows go from bay to bay.
function moveAmongBays(event) {
    const steps = {ArrowRight: 1, ArrowLeft: -1, Home: -Infinity, End: Infinity, ArrowDown: "row", ArrowUp: "-row"};
    const step = steps[event.key];
    if (step === undefined) return;
    const bays = [...event.currentTarget.querySelectorAll("button.bay")];
    const at = bays.indexOf(document.activeElement);
    if (at < 0) return;
    event.preventDefault();
    const next = typeof step === "string" ? inNextRow(bays, at, step === "row")
                                          : bays[Math.max(0, Math.min(bays.length - 1, at + step))];
    bays.forEach((bay) => { bay.tabIndex = bay === next ? 0 : -1; });
    next.focus();
}

function inNextRow(bays, at, down) {
    const here = bays[at].getBoundingClientRect();
    const others = bays.filter((bay) => {
        const there = bay.getBoundingClientRect();
        return down ? there.top >= here.bottom : there.bottom <= here.top;
    });
    const distance = (bay) => {
        const there = bay.getBoundingClientRect();
        return Math.abs(there.top - here.top) * 4 + Math.abs(there.left - here.left);
    };
    return others.reduce((best, bay) => (best === null || distance(bay) < distance(best) ? bay : best), null) ??
           bays[at];
}

// "4 fans", those that are well told as one; each that is not by itself.
function partChips(parts) {
    const chips = [];
    for (const [type, same] of groupBy(parts, (part) => part.type)) {
        const [one, many] = PARTS[type];
        const well = same.filter((part) => part.status === "ok");
        const degrees = well.map((part) => part.temperature).filter((value) => value !== undefined);
        const warmest = type === "tpr" && degrees.length > 0 ? `, at most ${Math.max(...degrees)} \u00b0C` : "";
        if (well.length > 0) chips.push(chip(good(plural(well.length, one, many) + warmest)));
        same.filter((part) => part.status !== "ok" && part.status !== "not installed").forEach((part) => {
            const state = partState(part);
            chips.push(chip(state, `${one}${part.text ? ` "${part.text}"` : ""}: ${state.word}`));
        });
    }
    return chips.length > 0 ? make("div.parts", {}, chips) : null;
}

function shelfView(adapter, shelf) {
    const {columns, tall} = layoutOf(shelf);
    const firstDisk = shelf.bays.find((bay) => bay.disk);
    const used = shelf.bays.filter((bay) => bay.disk).length;
    const count = used === shelf.bays.length
                      ? plural(used, "disk")
                      : `${plural(used, "disk")}, ${shelf.bays.length - used} of ${shelf.bays.length} bays empty`;
    const key = shelf.kind === "shelf" ? keyOf(adapter.id, "enclosure", shelf.id) : null;
    return make(
        "section.shelf", {"aria-label": shelf.title, "data-key": key, tabindex: key && -1},
        make("h3", {}, shelf.title, make("small", {}, [shelf.subtitle, count].filter(Boolean).join(" \u00b7 ")),
             shelf.status === "unstable" && chip(warn("unstable"))),
        make(`div.chassis.${shelf.kind}`, {}, make("span.ear", {}),
             make(`div.bays.${tall ? "tall" : "wide"}`, {vars: {columns}, on: {keydown: moveAmongBays}},
                  shelf.bays.map((bay) => (bay.disk ? diskBay(adapter, bay, bay === firstDisk) : emptyBay(bay)))),
             make("span.ear", {})),
        partChips(shelf.parts));
}
