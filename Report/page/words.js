// How amounts and states are put into words.

const numbers = new Intl.NumberFormat("en");

function plural(count, one, many = `${one}s`) {
    return `${numbers.format(count)} ${count === 1 ? one : many}`;
}

// Bytes for people, by thousands as disks are sold: "2.0 TB".
function sizeText(bytes) {
    if (bytes === undefined) return "";
    const units = ["B", "KB", "MB", "GB", "TB", "PB", "EB"];
    let amount = bytes;
    let unit = 0;
    for (; amount >= 999.5 && unit + 1 < units.length; ++unit)
        amount /= 1000;
    return `${amount.toFixed(unit > 0 && amount < 99.95 ? 1 : 0)} ${units[unit]}`;
}

function speedText(bits) {
    return bits === undefined ? "" : `${bits / 1e9} Gb/s`;
}

// Hours under power, from seconds.
function hoursText(seconds) {
    if (seconds === undefined) return "";
    const years = seconds / 31557600;
    return years < 1 ? `${numbers.format(Math.round(seconds / 3600))} h` : `${years.toFixed(1)} years`;
}

// "22 Nov 2026, 01:35 UTC" of a time as reports have it; what is none stays as it is.
function timeText(made) {
    const at = new Date(made);
    if (!made || Number.isNaN(at.getTime())) return made;
    const format =
        {day: "numeric", month: "short", year: "numeric", hour: "2-digit", minute: "2-digit", timeZone: "UTC"};
    return `${at.toLocaleString("en-GB", format)} UTC`;
}

// A sentence that begins with its name: "disk 3" to "Disk 3".
function capital(text) {
    return text.charAt(0).toUpperCase() + text.slice(1);
}

function quoted(kind, object) {
    const id = object.id === undefined ? "" : ` ${object.id}`;
    return object.name ? `${kind}${id} "${object.name}"` : kind + id;
}

// Words of reports are looked up in tables that know no other words: none of those that every object inherits.

// How something is: the shape and the colour (by its tone) that go with the word.
const good = (word, form = "disc") => ({word, shape: form, tone: "good"});
const bad = (word) => ({word, shape: "cross", tone: "bad"});
const warn = (word) => ({word, shape: "triangle", tone: "warn"});
const EMPTY = {
    word: "empty",
    shape: "dash",
    tone: "empty"
};
const UNKNOWN = {
    word: "unknown",
    shape: "question",
    tone: "odd"
};

const VERDICTS = {
    __proto__: null,
    critical: bad("critical"),
    warning: warn("warning"),
    fine: good("fine", "check")
};

// What a problem of a disk makes of it, in a word that fits a bay.
const DISK_COMPLAINTS = {
    __proto__: null,
    "disk-failed": bad("failed"),
    "cipher-mismatch": bad("wrong key"),
    "ssd-worn-out": bad("worn out"),
    "disk-smart": warn("failing"),
    "disk-media-errors": warn("bad sectors"),
    "disk-hot": warn("hot"),
    "disk-link-slow": warn("slow link"),
    "ssd-worn": warn("worn"),
};

function diskState(disk, problems, filling) {
    if (problems.length > 0) return DISK_COMPLAINTS[problems[0].name] ?? warn("problem");
    if (disk.state === "offline") return bad("failed");
    if (disk.state === "foreign") return {word: "foreign", shape: "square", tone: "odd"};
    if (disk.state === undefined) return UNKNOWN;
    if (disk.smartTripped) return warn("failing");
    if (filling) return {word: "rebuilding", shape: "turn", tone: "busy"};
    if (disk.spareInUse) return {word: "stands in", shape: "diamond", tone: "busy"};
    if (disk.spare) return {word: "spare", shape: "diamond", tone: "spare"};
    if (disk.member) return good("in use");
    return {word: "free", shape: "ring", tone: "free"};
}

const VD_STATES = {
    __proto__: null,
    online: good("online"),
    degraded: warn("degraded"),
    "partially optimal": warn("partially optimal"),
    offline: bad("offline")
};

function vdState(vd) {
    if (vd.status === undefined) return UNKNOWN;
    return VD_STATES[vd.status] ?? {word: vd.status, shape: "square", tone: "odd"};
}

function arrayState(array) {
    if (array.status === "functional") return good("functional");
    if (array.status === "disk missing") return warn("disk missing");
    return array.Status === undefined ? UNKNOWN : bad("offline");
}

// Parts of shelves: how each type is called, and what it measures.
const PARTS = {
    __proto__: null,
    pow: ["power supply", "power supplies"],
    fan: ["fan", "fans"],
    tpr: ["temperature sensor", "temperature sensors"],
    dor: ["door", "doors"],
    alm: ["alarm", "alarms"],
    dpl: ["display", "displays"],
    vlt: ["voltage sensor", "voltage sensors"],
};

function partState(part) {
    if (part.status === "ok") return good("ok");
    if (part.status === "critical" || part.status === "unrecoverable") return bad(part.status);
    if (part.status === "non-critical") return warn("warning");
    if (part.status === "not installed") return {...EMPTY, word: part.status};
    return part.status === undefined ? UNKNOWN : {...UNKNOWN, word: part.status};
}
