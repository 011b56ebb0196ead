// The card that tells of a disk: shown beside its bay while that is pointed at or has the focus, kept by a click.

const inspector = {};

function meter(label, value, limit, text, tone) {
    if (value === undefined) return null;
    const share = Math.max(0, Math.min(100, (value / limit) * 100));
    return make(
        "div", {}, make("dt", {}, label),
        make("dd.metered", {}, make(`span.meter.${tone}`, {vars: {share: `${share}%`}, "aria-hidden": "true"}), text));
}

function wearTone(wear) {
    return wear >= 95 ? "bad" : wear >= 80 ? "warn" : "good";
}

function countText(disk) {
    const counts = [["pending", "waiting"], ["uncorrectable", "unreadable"], ["reallocated", "put elsewhere"]];
    return counts.filter(([word]) => disk[word] > 0)
        .map(([word, meaning]) => `${numbers.format(disk[word])} ${meaning}`)
        .join(", ");
}

function diskFacts(adapter, bay) {
    const disk = bay.disk;
    const hot = disk.problems.some((one) => one.name === "disk-hot");
    return make("dl.facts", {}, pair("Place", capital(bay.name)), pair("Model", disk.model),
                pair("Serial", disk.serial && make("span.serial", {}, disk.serial)), pair("Firmware", disk.firmware),
                pair("Kind", [disk.type, sizeText(disk.size), disk.rotation && `${numbers.format(disk.rotation)} rpm`]
                                 .filter(Boolean)
                                 .join(", ")),
                pair("Role", roleOf(adapter, disk) + (disk.os ? ", holds the running system" : "")),
                meter("Temperature", disk.temperature, 80, `${disk.temperature} \u00b0C`, hot ? "warn" : "good"),
                meter("Wear", disk.wear, 100, `${disk.wear} % used`, wearTone(disk.wear)),
                pair("Powered on", hoursText(disk.poweredOn)), pair("Link", speedText(disk.linkSpeed)),
                pair("Sectors", countText(disk)));
}

function inspectorCard(adapter, bay) {
    const disk = bay.disk;
    const light = `ktsetup ${adapter.id} locate -o pd -i ${disk.id} -a ${disk.locateLed ? "off" : "on"}`;
    return make(
        "aside.inspector", {id: "inspector", "aria-label": `Disk ${disk.id}`},
        make("header", {}, make("h3", {}, `Disk ${disk.id}`), chip(disk.look),
             make("button.close", {type: "button", "aria-label": "Close", on: {click: dismissInspector}},
                  shape("cross"))),
        disk.problems.map((problem) => make("p.complaint", {}, sentence(problem.action))), diskFacts(adapter, bay),
        make("p.hint", {}, disk.locateLed ? "Its light blinks; " : "Makes its light blink: ", make("code", {}, light)));
}

// Below the bay where there is room, else above; within the window on both sides. A phone has it at its lower edge.
function placeInspector() {
    const {card, anchor} = inspector;
    const at = anchor.getBoundingClientRect();
    const own = card.getBoundingClientRect();
    const below = at.bottom + own.height + 16 < window.innerHeight || at.top < own.height + 16;
    const left = Math.max(
        8, Math.min(at.left + at.width / 2 - own.width / 2, document.documentElement.clientWidth - own.width - 8));
    const frame = document.getElementById("main").getBoundingClientRect(); // what the card's place is counted from
    card.style.setProperty("--left", `${left - frame.left}px`);
    card.style.setProperty("--top", `${(below ? at.bottom + 10 : at.top - own.height - 10) - frame.top}px`);
}

function openInspector(adapter, bay, anchor, kept = false) {
    if (inspector.quiet || (inspector.kept && !kept)) return;
    if (inspector.anchor !== anchor) {
        closeInspector();
        inspector.card = inspectorCard(adapter, bay);
        inspector.anchor = anchor;
        anchor.closest(".shelf").append(inspector.card);
        anchor.setAttribute("aria-describedby", "inspector");
        placeInspector();
        if (kept && matchMedia("(max-width: 700px)").matches) anchor.scrollIntoView({block: "start"});
        lightUp(kin(adapter, bay.disk));
    }
    inspector.kept = kept;
    inspector.card.classList.toggle("kept", kept);
}

function closeInspector() {
    inspector.card?.remove();
    inspector.anchor?.removeAttribute("aria-describedby");
    Object.assign(inspector, {card: null, anchor: null, kept: false});
    lightUp([]);
}

// The same by hand: the focus goes back to the bay, whose card stays closed.
function dismissInspector() {
    const anchor = inspector.anchor;
    closeInspector();
    inspector.quiet = true;
    anchor?.focus({preventScroll: true});
    inspector.quiet = false;
}

// The disks that share an array or a virtual disk with this one.
function kin(adapter, disk) {
    const groups = [...adapter.arrays, ...volumesOf(adapter)].map((one) => [...one.disks, ...(one.spares ?? [])]);
    const together = groups.filter((ids) => ids.includes(disk.id)).flat();
    return [disk.id, ...together].map((id) => keyOf(adapter.id, "disk", id));
}

// Lets what belongs together stand out: every element with one of the keys; none: all are as they were.
function lightUp(keys) {
    const wanted = new Set(keys);
    const main = document.getElementById("main");
    main.classList.toggle("lighting", wanted.size > 0);
    for (const node of main.querySelectorAll("[data-key]"))
        node.classList.toggle("lit", wanted.has(node.dataset.key));
}
