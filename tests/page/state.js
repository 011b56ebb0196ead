// All that is drawn, said and chosen: what the page as a whole is like, by name, and the elements of its main part as
// trees of texts and pairs (what the element is, its children). Told: how shapes are called, by their markup.
const [shapes] = arguments;
const USUAL = [
    "class", "href", "aria-describedby", "style", "tabindex=0", "tabindex=-1", "type=button", "aria-hidden=true",
    "aria-valuemin=0", "aria-valuemax=100"
];
const main = document.getElementById("main");
const focus = document.activeElement;
const nameOf = (node) =>
    node.dataset.key ?? node.ariaLabel ?? (node.name || node.id || (node.querySelector(".name") ?? node).textContent);

// What a link changes of the address.
function wayOf(link) {
    const [here, there] = [location, link].map(({hash}) => new URLSearchParams(hash.slice(1)));
    const names = [...new Set([...there.keys(), ...here.keys()])].filter((name) => there.get(name) !== here.get(name));
    return "to=" + names.map((name) => `${name}:${there.get(name) ?? ""}`).join(",");
}

function attributesOf(node) {
    const told =
        [...node.attributes].map(({name, value}) => [name, name === "title" && value === node.ariaLabel ? "titled"
                                                           : value ? `${name.replace("data-", "")}=${value}`
                                                                   : name]);
    const way = node.hash === undefined ? [] : [wayOf(node)];
    const variables = [...node.style].filter((name) => !["--left", "--top"].includes(name));
    return [
        ...way, ...told.filter((pair) => !pair.some((word) => USUAL.includes(word))).map(([, text]) => text),
        ...variables.map((name) => name + ":" + node.style.getPropertyValue(name))
    ].join(" ");
}

function treeOf(node) {
    if (node.nodeType === Node.TEXT_NODE) {
        const long = node.parentNode.matches(".what, .do") && node.length > 36;
        return JSON.stringify(long ? `${node.data.slice(0, 16)}\u2026${node.data.slice(-10)}` : node.data);
    }
    if (node.matches("dl > div")) {
        const [word, value] = node.children;
        return [[word.textContent, ...value.classList].join("."), [...value.childNodes].map(treeOf)];
    }
    if (node.outerHTML in shapes) return shapes[node.outerHTML];
    const classes = [...node.classList].filter((name) => !["lit", "flash"].includes(name)).map((name) => "." + name);
    const tag = ["SPAN", "DIV"].includes(node.tagName) && classes.length ? "" : node.tagName.toLowerCase();
    const attributes = attributesOf(node);
    return [
        tag + classes.join("") + (attributes && `[${attributes}]`), [...node.childNodes].map(treeOf).filter(Boolean)
    ];
}

function whereIs(node) {
    const at = node.getBoundingClientRect();
    if (Math.abs(at.top + at.bottom - innerHeight) < 80) return "in the middle";
    return at.top >= 0 && at.bottom <= innerHeight ? "in sight" : "not in sight";
}

// Where the card is: so far off its bay, with its middle beside the bay's unless the window's edge keeps it from there.
function cardPlace() {
    const [bay] = document.querySelectorAll("[aria-describedby=inspector]");
    const [card, at] = [document.querySelector(".inspector"), bay].map((node) => node.getBoundingClientRect());
    const away =
        card.top > at.top ? `${Math.round(card.top - at.bottom)} below` : `${Math.round(at.top - card.bottom)} above`;
    const aside = Math.round(card.left + card.width / 2 - at.left - at.width / 2);
    const edges = `${Math.round(card.left)} from the left, ${
        Math.round(document.documentElement.clientWidth - card.right)} from the right`;
    return `${nameOf(bay)}: ${away}, ${aside ? edges : "centred"}`;
}

return [
    {
        title: document.title,
        address: decodeURIComponent(location.hash),
        theme: document.documentElement.dataset.theme,
        view: main.className,
        focus: focus === document.body
                   ? ""
                   : `${nameOf(focus)} ${whereIs(focus)}${focus.matches(".flash") ? ", flashing" : ""}`,
        stops: [...document.querySelectorAll(".bay[tabindex='0']")].map((bay) => bay.dataset.key).join(" "),
        lit: [...document.querySelectorAll(".lit")].map((node) => node.dataset.key).join(" "),
        card: document.querySelector(".inspector") ? cardPlace() : "",
        taken: window.taken ?? "",
    },
    [...main.childNodes].map(treeOf),
];
