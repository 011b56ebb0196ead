// Building the page. Texts become text nodes and attributes, never markup: names from disks and files stay names.

const SVG = "http://www.w3.org/2000/svg";

// An element: make("button.bay.tall", {title: "..."}, child, ...). Properties: "on" holds listeners by event, "vars"
// custom properties of its style; a value of null, undefined or false leaves the attribute out, true makes it empty.
// Children: nodes, texts, lists of both; null, undefined, false and "" stand for nothing.
function make(form, properties = {}, ...children) {
    const [tag, ...classes] = form.split(".");
    const node = document.createElement(tag);
    if (classes.length > 0) node.className = classes.join(" ");
    return furnish(node, properties, children);
}

function makeSvg(tag, properties = {}, ...children) {
    return furnish(document.createElementNS(SVG, tag), properties, children);
}

function furnish(node, properties, children) {
    for (const [name, value] of Object.entries(properties)) {
        if ((value ?? false) === false) continue;
        if (name === "on") {
            for (const [event, listener] of Object.entries(value))
                node.addEventListener(event, listener);
        } else if (name === "vars") {
            for (const [variable, amount] of Object.entries(value))
                node.style.setProperty(`--${variable}`, amount);
        } else {
            node.setAttribute(name, value === true ? "" : value);
        }
    }
    node.append(...children.flat(Infinity).filter(Boolean));
    return node;
}

// The shapes of states, in a square of 16: each differs from all others without any colour.
const SHAPES = {
    disc: "M8 2.2a5.8 5.8 0 1 0 0 11.6a5.8 5.8 0 1 0 0-11.6z",
    ring: "M8 1.8a6.2 6.2 0 1 0 0 12.4a6.2 6.2 0 1 0 0-12.4zm0 2.3a3.9 3.9 0 1 1 0 7.8a3.9 3.9 0 1 1 0-7.8z",
    cross: "M3.7 1.5L8 5.8l4.3-4.3 2.2 2.2L10.2 8l4.3 4.3-2.2 2.2L8 10.2l-4.3 4.3-2.2-2.2L5.8 8 1.5 3.7z",
    triangle: "M8 1l7.4 13.4H.6zM7 5.6l.3 4.6h1.4L9 5.6zM7.1 11.3v1.6h1.8v-1.6z",
    diamond: "M8 .8L15.2 8 8 15.2.8 8z",
    square: "M2.2 2.2h11.6v11.6H2.2zM4.6 4.6v6.8h6.8V4.6z",
    turn:
        "M8 1.6a6.4 6.4 0 0 1 5.4 3L15.2 3v5.2H10l1.8-1.9A4.1 4.1 0 0 0 4 7.2H1.7A6.4 6.4 0 0 1 8 1.6zm-7.2 6.2H6L4.2 9.7A4.1 4.1 0 0 0 12 8.8h2.3a6.4 6.4 0 0 1-11.7 2.6L.8 13z",
    check: "M6.3 13.6L.9 8.2l2-2 3.4 3.4 6.8-6.8 2 2z",
    question:
        "M8 1.4c2.7 0 4.6 1.6 4.6 3.9 0 1.9-1.2 2.8-2.2 3.5-.9.6-1.2.9-1.2 1.7H6.6c0-2 1.2-2.8 2.2-3.5.7-.5 1.1-.8 1.1-1.5 0-.9-.7-1.6-1.9-1.6-1.3 0-2 .8-2.1 2H3.2C3.3 3.2 5.3 1.4 8 1.400zM6.5 11.800h2.800v2.700H6.500z",
    dash: "M3.5 7h9v2h-9z",
};

function shape(name) {
    return makeSvg("svg", {"class": "shape", viewBox: "0 0 16 16", "aria-hidden": "true"},
                   makeSvg("path", {d: SHAPES[name], "fill-rule": "evenodd"}));
}

// A state as a shape, a word and a colour.
function chip(state, word = state.word) {
    return make(`span.chip.${state.tone}`, {}, shape(state.shape), word);
}

// A label and what it says, for a list of such pairs; nothing for what is not known.
function pair(label, value) {
    return value && make("div", {}, make("dt", {}, label), make("dd", {}, value));
}
