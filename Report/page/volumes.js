// Arrays and virtual disks as what they are made of, and what goes on.

// A disk of an array: a button that leads to its bay. null: a missing one.
function memberChip(adapter, id) {
    if (id === null) return make("span.member.missing", {}, shape("cross"), "missing");
    const disk = adapter.disks.find((one) => one.id === id);
    const look = disk?.look ?? UNKNOWN;
    return make(`button.member.${look.tone}`, {
        type: "button",
        "data-key": keyOf(adapter.id, "disk", id),
        title: `Disk ${id}: ${look.word}`,
        "aria-label": `Disk ${id}: ${look.word}`,
        on: {click: () => goTo(adapter.id, "disk", id)}
    },
                shape(look.shape), `${id}`);
}

function members(adapter, disks, spares) {
    return make("div.members", {}, make("span.label", {}, "disks"), disks.map((id) => memberChip(adapter, id)),
                spares.length > 0 && [make("span.label", {}, "spare"), spares.map((id) => memberChip(adapter, id))]);
}

function progressBar(activity) {
    const running = activity.state === "running";
    const percent = activity.percent ?? 0;
    const left = activity.left ? `, about ${activity.left} left` : "";
    const text = `${activity.percent === undefined ? "" : `${percent} %`}${running ? left : ` ${activity.state}`}`;
    return make(`div.activity.${running ? "busy" : "warn"}`, {},
                make("span.what", {}, shape(running ? "turn" : "triangle"), capital(activity.kind)),
                make("span.track", {
                    role: "progressbar",
                    "aria-valuenow": percent,
                    "aria-valuemin": 0,
                    "aria-valuemax": 100,
                    "aria-label": activity.kind,
                    vars: {share: `${percent}%`}
                }),
                make("span.percent", {}, text.trim()));
}

function goingOn(adapter, kind, id) {
    return adapter.going.filter((one) => one.object === kind && one.id === id).map(progressBar);
}

function lightsDisks(adapter, ids) {
    const keys = ids.filter((id) => id !== null).map((id) => keyOf(adapter.id, "disk", id));
    return {pointerenter: () => inspector.kept || lightUp(keys), pointerleave: () => inspector.kept || lightUp([])};
}

// What a migration makes of a virtual disk.
function targetText(target) {
    if (!target) return "";
    const disks = target.disks.filter((id) => id !== null).join(", ");
    return `becomes ${target.level ?? "something else"}${disks ? ` on disks ${disks}` : ""}`;
}

// The words that stand below a virtual disk's name.
function vdWords(kind, vd) {
    const cache = vd.cacheInForce && `write cache ${vd.cacheInForce}`;
    return [`${kind} ${vd.id}`, sizeText(vd.size), cache, vd.os && "in use by this system", targetText(vd.target)]
        .filter(Boolean)
        .join(" \u00b7 ");
}

function vdLine(adapter, vd) {
    return make("li.vd", {"data-key": keyOf(adapter.id, "virtual disk", vd.id), tabindex: -1},
                make("div.name", {}, make("b", {}, vd.name || `virtual disk ${vd.id}`), chip(vdState(vd))),
                make("span.words", {}, vdWords("VD", vd)), goingOn(adapter, "virtual disk", vd.id));
}

// The array's space, divided among its virtual disks.
function spaceBar(array) {
    const parts = array.virtualDisks.map(
        (vd) => make(`span.part.${vdState(vd).tone}`,
                     {vars: {share: Math.max(vd.size ?? 0, 1)}, title: `${vd.name ?? ""} ${sizeText(vd.size)}`},
                     make("span", {}, vd.name ?? "")));
    const free = array.freeSize > 0 &&
                 make("span.part.unused", {vars: {share: array.freeSize}, title: `free ${sizeText(array.freeSize)}`},
                      make("span", {}, `${sizeText(array.freeSize)} free`));
    return parts.length > 0 || free ? make("div.space", {"aria-hidden": "true"}, parts, free) : null;
}

function arrayCard(adapter, array) {
    return make(
        "article.volume", {
            "data-key": keyOf(adapter.id, "array", array.id),
            tabindex: -1,
            on: lightsDisks(adapter, [...array.disks, ...array.spares])
        },
        make("header", {}, make("h4", {}, array.name || `Array ${array.id}`),
             array.level && make("span.level", {}, array.level), chip(arrayState(array))),
        make("p.words", {},
             [`Array ${array.id}`, sizeText(array.size), array.freeSize > 0 && `${sizeText(array.freeSize)} free`]
                 .filter(Boolean)
                 .join(" \u00b7 ")),
        members(adapter, array.disks, array.spares), goingOn(adapter, "array", array.id), spaceBar(array),
        make("ul.vds", {}, array.virtualDisks.map((vd) => vdLine(adapter, vd))));
}

function vdCard(adapter, vd) {
    return make(
        "article.volume",
        {"data-key": keyOf(adapter.id, "virtual disk", vd.id), tabindex: -1, on: lightsDisks(adapter, vd.disks)},
        make("header", {}, make("h4", {}, vd.name || `Virtual disk ${vd.id}`),
             vd.level && make("span.level", {}, vd.level), chip(vdState(vd))),
        make("p.words", {}, vdWords("Virtual disk", vd)), members(adapter, vd.disks, []),
        goingOn(adapter, "virtual disk", vd.id));
}

function volumesView(adapter) {
    const cards = [
        ...adapter.arrays.map((array) => arrayCard(adapter, array)),
        ...adapter.virtualDisks.map((vd) => vdCard(adapter, vd))
    ];
    return cards.length > 0 ? make("div.volumes", {}, cards) : null;
}
