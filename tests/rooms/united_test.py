"""Fails when files that are compiled together would not be the same program alone: when one speaks of a function or a
macro that is another one's own, the compiler might take that one, or prefer it to the one that is meant.

usage: united_test.py BUILD_DIR, with the lists of such files as CMake has written them.
"""
import re
import sys

from rooms_test import FUNCTION, NO_CODE

HIDDEN = re.compile(r"^namespace \{\n(.*?)^\} // namespace$", re.S | re.M)
MACRO = re.compile(r"^#define (\w+)", re.M)


def own(text):
    """The functions and macros that are meant for the file alone."""
    functions = {name for static, name in FUNCTION.findall(text) if static}
    for hidden in HIDDEN.findall(text):
        functions |= {name for _, name in FUNCTION.findall(hidden)}
    return functions | {name for name in MACRO.findall(text) if f"#undef {name}" not in text}


def main():
    # Lists of old remain in the folder.
    with open(sys.argv[1] + "/build.ninja", encoding="utf-8") as file:
        built = set(re.findall(r"\S+/Unity/\w+\.cxx(?=\.o)", file.read()))
    lists = [f"{sys.argv[1]}/{name}" for name in built]
    complaints = [] if lists else ["no lists were found"]
    for path in lists:
        texts = {}
        with open(path, encoding="utf-8") as file:
            sources = re.findall(r'#include "([^"]+)"', file.read())
        for source in sources:
            with open(source, encoding="utf-8") as file:
                texts[source] = NO_CODE.sub("", file.read())
        for source, text in texts.items():
            names = own(text)
            for other in texts.keys() - {source}:
                spoken = set(re.findall(r"(?<![.>:\w])(\w+)\(", texts[other])) | set(re.findall(r"\b[A-Z_]+\b", texts[other]))
                complaints += [f"{other} speaks of {name}, which is {source}'s own" for name in sorted(names & spoken)]
    print("\n".join(complaints) or f"{len(lists)} lists")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
