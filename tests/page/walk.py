"""Walks through a page: keys and touches one by one, and after each all that is drawn, said and chosen."""
import difflib
import json
import os
import re

HERE = os.path.dirname(os.path.abspath(__file__))
WIDTH = 300
TOUCH = """
const [name, selector] = arguments;
const node = document.querySelector(selector);
const send = (kind) => node.dispatchEvent(new PointerEvent("pointer" + kind, {bubbles: kind === "down"}));
if (name === "enter" || name === "leave") return send(name);
if (name === "click") send("down");
node.focus();
if (name === "click") node.click();"""
CHOOSE = """
const list = document.querySelector(`select[name=${arguments[0]}]`);
list.value = arguments[1];
list.dispatchEvent(new Event("change"));"""
SETTLE = "setTimeout(arguments[0], 200)"


def shapes():
    """How the shapes of states are called, by their markup: alone and in a tile's bay."""
    with open(os.path.join(os.environ["SOURCE"], "Report/page/dom.js"), encoding="ascii") as file:
        paths = dict(re.findall(r'(\w+):\s+"(M[^"]+)"', file.read()))
    alone = '<svg class="shape" viewBox="0 0 16 16" aria-hidden="true"><path d="{}" fill-rule="evenodd"></path></svg>'
    small = '<path d="{}" transform="translate(.8 10.6) scale(.45)" fill-rule="evenodd"></path>'
    names = {form.format(path): f"({name})" for name, path in paths.items() for form in (alone, small)}
    return {**names, '<rect width="8.8" height="20" rx="1.6"></rect>': ""}


def flat(tree):
    if isinstance(tree, str):
        return tree
    what, children = tree
    return what + ("{" + " ".join(map(flat, children)) + "}" if children else "")


def lines(tree, indent=0):
    """A tree as text: an element on a line with its children where there is room, else its children below it."""
    text = " " * indent + flat(tree)
    if isinstance(tree, str) or len(text) <= WIDTH:
        return [text]
    rows, room = [" " * indent + tree[0] + ":"], True
    for child in tree[1]:
        part, below = flat(child), lines(child, indent + 1)
        if room and len(rows[-1]) + 1 + len(part) <= WIDTH:
            rows[-1] += " " + part
        elif rows[-1].endswith(":") and len(below) > 1:
            rows[-1:] = [rows[-1] + " " + below[0].strip()] + below[1:]
        else:
            rows += below
        room = len(below) == 1
    return rows


def changes(before, after):
    """The lines that came, each in the place of one that went; of what else went the first line and how many they are."""
    told = []
    for kind, start, end, first, last in difflib.SequenceMatcher(None, before, after, False).get_opcodes():
        if kind != "equal":
            told += [f" + {row.strip()}" for row in after[first:last]]
            start += last - first
            told += [f" - {before[start].strip()} ... {end - start}"] if end > start else []
    return told


class Walk:
    def __init__(self, browser, names):
        """names: what stands for texts that are of this run, such as folders."""
        self.browser, self.names, self.shapes = browser, names, shapes()
        self.page, self.rows, self.steps, self.seen = {}, [], 0, {}  # seen: the step of each main part that there was

    def do(self, words):
        name, _, rest = words.partition(" ")
        if name == "press":
            self.browser.press(*rest.split())
        elif name == "choose":
            self.browser.run(CHOOSE, *rest.split(" ", 1))
        elif name == "screen":
            self.browser.screen(*map(int, rest.split()))
        elif name == "event":
            self.browser.run("window.dispatchEvent(new Event(arguments[0]))", rest)
        elif name == "back":
            self.browser.driver.back()
        elif name == "go":
            self.browser.run("location.hash = arguments[0]", rest)
        elif name == "open":  # from here on the page knows whether a key is taken from the browser
            self.browser.run("addEventListener('keydown', (event) => { window.taken = event.defaultPrevented; })")
        else:
            self.browser.run(TOUCH, name, rest)
        self.browser.driver.execute_async_script(SETTLE)

    def look(self):
        with open(os.path.join(HERE, "state.js"), encoding="ascii") as file:
            state = json.dumps(self.browser.run(file.read(), self.shapes))
        for long, short in self.names.items():
            state = state.replace(long, short)
        page, trees = json.loads(state)
        return page, [row for tree in trees for row in lines(tree)]

    def step(self, words):
        """The step, what it changed of the page as a whole, and its main part as a change of a step before."""
        self.do(words)
        page, rows = self.look()
        facts = "; ".join(f"{name}: {value}" for name, value in page.items() if value != self.page.get(name))
        told, like = min(((changes(before, rows), step) for before, step in self.seen.items()), key=lambda pair: len(pair[0]), default=(rows, 0))
        if len(told) > len(rows) // 2:
            told = [" " + row for row in rows]
        elif rows != self.rows:
            facts += f"; as after step {like}" + (", but" if told else "")
        self.page, self.rows, self.steps = page, rows, self.steps + 1
        self.seen.setdefault(tuple(rows), self.steps)
        return [f"{words} => {facts}"] + told


def walk(test, name, names):
    """Takes the steps of a file, which tells what there is to be seen after each; what there was is kept in PICTURES."""
    with open(os.path.join(HERE, name), encoding="utf-8") as file:
        expected = file.read()
    walker = Walk(test.browser, names)
    told = [row for words in re.findall("^(\\S.*) =>", expected, re.M) for row in walker.step(words)]
    with open(os.path.join(os.environ["PICTURES"], name), "w", encoding="utf-8") as file:
        file.write("\n".join(told) + "\n")
    test.maxDiff = None
    test.assertEqual("\n".join(told) + "\n", expected)
