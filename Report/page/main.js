// Which view the address asks for, and the keys and buttons of the page itself.

const page = readPage();

function themeButton() {
    const root = document.documentElement;
    const dark = () => root.dataset.theme === "dark";
    const name = () => (dark() ? "Light" : "Dark");
    const button = make("button.theme", {
        type: "button",
        on: {
            click: () => {
                root.dataset.theme = dark() ? "light" : "dark";
                button.textContent = name();
            }
        }
    });
    const prefers = matchMedia("(prefers-color-scheme: dark)");
    const follow = () => {
        root.dataset.theme = prefers.matches ? "dark" : "light";
        button.textContent = name();
    };
    prefers.addEventListener("change", follow);
    follow();
    return button;
}

const theme = themeButton();

function draw() {
    const {chosen, machine: place} = readAddress();
    const many = page.machines.length > 1 || page.leftOut.length > 0;
    const machine = many ? page.machines.find((one) => `${one.place}` === place) : page.machines[0];
    const view = machine ? machineView(machine, many) : wallView(page, chosen);
    const main = document.getElementById("main");
    closeInspector();
    main.className = machine ? "machine" : "all";
    main.replaceChildren(theme, ...[view].flat(Infinity).filter(Boolean));
    document.title =
        machine ? `${machine.name}: ${verdictText(machine)}` : `${plural(page.machines.length, "machine")}`;
}

// Only the tiles are made anew while somebody types.
function refreshWall() {
    const {chosen} = readAddress();
    document.querySelector(".tiles")?.replaceWith(tilesView(page, chosen));
}

// What was chosen on the wall keeps the focus, though all of it is drawn anew.
function restoreFocus(had) {
    const same = had?.closest(".fleet") ? `.fleet .${had.className}`
                 : had?.name ? `.filters [name="${had.name}"]`
                             : null;
    if (same) document.querySelector(same)?.focus({preventScroll: true});
}

// The tile that a machine was opened from has the focus again when the wall comes back.
function goThere(event) {
    const before = new URLSearchParams(new URL(event.oldURL).hash.slice(1)).get("machine");
    const had = document.activeElement;
    draw();
    restoreFocus(had);
    const tileBefore =
        before === null
            ? null
            : [...document.querySelectorAll(".tile")].find((node) => node.hash.endsWith(`machine=${before}`));
    if (tileBefore) {
        tileBefore.focus();
    } else if (readAddress().machine !== null) {
        window.scrollTo(0, 0);
        document.getElementById("main").focus({preventScroll: true});
    }
}

function pressed(event) {
    if (event.key === "Escape" && inspector.card) {
        dismissInspector();
    } else if (event.key === "Escape" && readAddress().machine !== null && page.machines.length > 1) {
        location.hash = wallAddress();
    } else if (event.key === "/" && !event.target.matches("input, select")) {
        const search = document.querySelector("input[type=search]");
        if (!search) return;
        event.preventDefault();
        search.focus();
    }
}

// Paper has no bays to touch and nothing to open: all of it is there, and the tables say what the bays hold.
function openAll(open) {
    for (const details of document.querySelectorAll("details")) {
        if (open) details.fill?.();
        details.open = open;
    }
}

window.addEventListener("hashchange", goThere);
window.addEventListener("keydown", pressed);
window.addEventListener("resize", () => inspector.card && placeInspector());
window.addEventListener("beforeprint", () => {
    closeInspector();
    openAll(true);
});
window.addEventListener("afterprint", () => openAll(false));
document.addEventListener("pointerdown", (event) => {
    if (inspector.kept && !event.target.closest(".inspector, .bay")) closeInspector();
});
draw();
