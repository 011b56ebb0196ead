"""Replaces the line @COMMANDS@ of a manual page's source by a section for every command, made from the programs' own
help texts, so that the manual and `help COMMAND` cannot say different things, and each line @TRANSCRIPT name@ by what the
transcript shows from its heading on.

@VERSION@ becomes the version, which the environment names.

usage: VERSION=... commands.py SOURCE HELP-TEXTS > PAGE.scd"""
import os
import re
import sys


def marks_escaped(text):
    return re.sub(r"([\\*_])", r"\\\1", text)


def escape(text):
    """Text that scdoc takes for nothing but text."""
    text = marks_escaped(text)
    return "\\" + text if text[:1] in "#|[]-.:!;" else text


def read_commands(path):
    """Maps each word to its helps by command set; rows that are the same in both sets come once."""
    commands = {}
    with open(path, encoding="ascii") as file:
        for entry in file.read().split("\n\f\n"):
            if not entry.strip():
                continue
            head, rest = entry.lstrip("\n").split("\n", 1)
            _, table, word = head.split(" ")
            short, long = split_short(rest)
            forms = commands.setdefault(word, {})
            forms.setdefault((short, long), []).append(table)
    return commands


def split_short(text):
    """The short help ends where the long help's empty line begins."""
    short, _, long = text.partition("\n\n")
    return " ".join(short.lstrip(":").split()), long


def title(word, tables):
    marks = []
    if all(table.startswith("ld") for table in tables):
        marks.append("LD-based set")
    if all(table.startswith("array") for table in tables):
        marks.append("array-based set")
    if all(table.endswith("internal") for table in tables):
        marks.append("internal")
    return word + (f" ({', '.join(marks)})" if marks else "")


def blocks(long):
    """Splits a long help into its usage, its options [(line, description lines)] and its examples."""
    parts = re.split(r"^(Options|Examples):.*\n", long, flags=re.M)
    usage = [line for line in parts[0].strip("\n").split("\n") if line.strip()]
    options, examples = [], []
    for name, body in zip(parts[1::2], parts[2::2]):
        lines = body.rstrip("\n").split("\n")
        if name == "Examples":
            examples = lines
            continue
        for line in lines:
            if re.match(r"    \S", line):
                options.append((line.strip(), []))
            elif line.strip() and options:
                options[-1][1].append(line.strip())
    return usage, options, examples


def literal(lines):
    return ["```"] + [line[4:] if line.startswith("    ") else line for line in lines] + ["```", ""]


def section(word, short, long, tables):
    usage, options, examples = blocks(long)
    page = [f"## {title(word, tables)}", "", escape(short.rstrip(".")) + ".", ""]
    if usage:
        page += literal(usage)
    for line, description in options:
        if not description and line.startswith("-h"):
            description = ["Print this command's help."]
        page += [f"*{marks_escaped(line)}*"]
        page += ["\t" + escape(text) for text in description]
        page += [""]
    if examples:
        page += ["Examples:", ""] + literal(examples)
    return page


def answer(path):
    """What the page says of a transcript: everything from its heading on, commands as the reader types them."""
    with open(path, encoding="ascii") as file:
        lines = file.read().split("\n")
    lines = lines[next(i for i, line in enumerate(lines) if line.startswith("## ")):]
    page, shown = [], False
    for line in lines:
        if re.fullmatch(r"  \[\d+\]", line):
            continue
        if line.startswith("  ") != shown:
            shown = not shown
            page.append("```")
        page.append(re.sub(r"^\$ kt ", "$ ktsetup ", line[2:]) if shown else line)
    return "\n".join(page).strip("\n")


def main():
    commands = read_commands(sys.argv[2])
    page = []
    for word, forms in commands.items():
        for (short, long), tables in forms.items():
            page += section(word, short, long, tables)
    with open(sys.argv[1], encoding="ascii") as file:
        source = file.read().replace("@VERSION@", os.environ["VERSION"])
    source = source.replace("@COMMANDS@", "\n".join(page))
    folder = os.path.dirname(sys.argv[1])
    print(re.sub(r"@TRANSCRIPT ([\w/]+)@", lambda found: answer(os.path.join(folder, found[1] + ".t")), source), end="")


if __name__ == "__main__":
    main()
