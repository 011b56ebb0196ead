// Which machines the wall shows. What is chosen stands in the address, so that "back" and bookmarks work.

const FILTERS = ["problem", "model", "firmware", "search"];

// The models and firmware versions that there are: adapters' and disks', each with the number of machines.
function variantsOf(machines, modelOf) {
    const counts = new Map();
    for (const machine of machines) {
        for (const value of new Set(modelOf(machine)))
            counts.set(value, (counts.get(value) ?? 0) + 1);
    }
    return [...counts].sort(([one], [other]) => one.localeCompare(other, "en", {numeric: true}));
}

// Everything that has a model and a firmware: pairs of both.
function devicesOf(machine) {
    const adapters = machine.adapters.map((adapter) => ({model: adapter.model, firmware: adapter.versions?.firmware}));
    const disks = machine.disks.map((disk) => ({model: disk.model, firmware: disk.firmware, disk}));
    return {adapters, disks};
}

// Whether the device is of the model and of the firmware that are asked for; both have to be true of the same one.
function fitsDevice(device, chosen) {
    return (!chosen.model || device.model === chosen.model) &&
           (!chosen.firmware || device.firmware === chosen.firmware);
}

function fitsMachine(machine, chosen) {
    const {problem} = chosen;
    if (problem in VERDICTS) {
        if (machine.verdict !== problem) return false;
    } else if (problem && !machine.problems.some((one) => one.name === problem)) {
        return false;
    }
    if (chosen.model || chosen.firmware) {
        const {adapters, disks} = devicesOf(machine);
        if (![...adapters, ...disks].some((device) => fitsDevice(device, chosen))) return false;
    }
    return !chosen.search || searchText(machine).includes(chosen.search.toLowerCase());
}

function searchText(machine) {
    machine.text ??=
        [
            machine.name, machine.source, ...machine.adapters.map((adapter) => adapter.serial),
            ...machine.disks.map((disk) => disk.serial), ...machine.problems.map((problem) => problem.text)
        ].filter(Boolean)
            .join("\n")
            .toLowerCase();
    return machine.text;
}

function readAddress() {
    const words = new URLSearchParams(location.hash.slice(1));
    const chosen = Object.fromEntries(FILTERS.map((name) => [name, words.get(name) ?? ""]));
    return {chosen, machine: words.get("machine")};
}

function addressOf(chosen, machine = null) {
    const words = new URLSearchParams();
    for (const name of FILTERS) {
        if (chosen[name]) words.set(name, chosen[name]);
    }
    if (machine !== null) words.set("machine", machine.place);
    return `#${words}`;
}

// Back from a machine to the wall as it was left.
function wallAddress() {
    return addressOf(readAddress().chosen);
}

function choice(name, label, groups, chosen) {
    const option = ([value, text]) => make("option", {value, selected: value === chosen[name]}, text);
    const list = (group) =>
        (group.label ? make("optgroup", {label: group.label}, group.options.map(option)) : group.options.map(option));
    return make("label", {}, make("span", {}, label),
                make("select", {name, on: {change: (event) => choose(name, event.target.value)}},
                     make("option", {value: ""}, `any ${name}`),
                     groups.filter((group) => group.options.length > 0).map(list)));
}

function choose(name, value) {
    location.hash = addressOf({...readAddress().chosen, [name]: value});
}

function counted(variants) {
    return variants.map(([value, count]) => [value, `${value} (${count})`]);
}

// Firmware versions of the chosen model only, so that no choice leaves nothing.
function filterBar(page, chosen) {
    const meaning = ([name, count]) => [name, `${page.meanings[name]} (${count})`];
    const problems = variantsOf(page.machines, (machine) => machine.problems.map((one) => one.name))
                         .sort((one, other) => other[1] - one[1]);
    const pick = (kind, word) => counted(
        variantsOf(page.machines,
                   (machine) => devicesOf(machine)[kind]
                                    .filter((device) => word === "model" || fitsDevice(device, {model: chosen.model}))
                                    .map((device) => device[word])
                                    .filter(Boolean)));
    const both = (word) => [{label: "Adapters", options: pick("adapters", word)},
                            {label: "Disks", options: pick("disks", word)}];
    const verdicts = [["critical", "anything critical"], ["warning", "warnings only"], ["fine", "nothing wrong"]];
    return make(
        "form.filters", {role: "search", on: {submit: (event) => event.preventDefault()}},
        choice("problem", "Problem", [{options: verdicts}, {label: "By name", options: problems.map(meaning)}], chosen),
        choice("model", "Model", both("model"), chosen), choice("firmware", "Firmware", both("firmware"), chosen),
        make("label.search", {}, make("span", {}, "Search"), make("input", {
                 type: "search",
                 name: "search",
                 placeholder: "name, serial number, words",
                 value: chosen.search,
                 autocomplete: "off",
                 on: {input: (event) => searchSoon(event.target.value)}
             })));
}

let searching = 0;

// What is typed does not fill the history with every letter.
function searchSoon(text) {
    clearTimeout(searching);
    searching = setTimeout(() => {
        history.replaceState(null, "", addressOf({...readAddress().chosen, search: text}));
        refreshWall();
    }, 120);
}
