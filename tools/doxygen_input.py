#!/usr/bin/env python3
"""Copies the public headers for Doxygen. In them a comment speaks for all declarations below it, up to the next
comment or blank line, so it is repeated above each of them. What the compiler writes (= default, = delete) needs no
words and is left out."""
import pathlib
import re
import sys

SPECIAL = re.compile(r"= (default|delete);$")
COMMENT = re.compile(r"\s*///(?!<)")
DECLARATION = re.compile(r"\s*(?!(public|private|protected):)[A-Za-z~\[]")


def indent(line):
    return len(line) - len(line.lstrip())


def repeated(lines):
    comment = []  # what speaks for the next declaration
    used = False  # one has it already
    inside = False  # of a declaration of several lines
    for line in lines:
        if SPECIAL.search(line) and not inside:
            continue
        if COMMENT.match(line):
            comment = [line] if used else comment + [line]
            used = False
        elif not line.strip() or (comment and indent(line) < indent(comment[0])):
            comment = []
        elif comment and not inside and DECLARATION.match(line) and indent(line) == indent(comment[0]):
            if used:
                yield from comment
            used = True
        code = line.split("//")[0].rstrip()
        if code:
            inside = not code.endswith((";", "}", "{", ":"))
        yield line


def main():
    source, target = (pathlib.Path(argument) for argument in sys.argv[1:])
    for header in source.rglob("*.h"):
        if "internal" in header.parts:
            continue
        copy = target / header.relative_to(source)
        copy.parent.mkdir(parents=True, exist_ok=True)
        text = header.read_text(encoding="utf-8")
        copy.write_text("\n".join(repeated(text.splitlines())) + "\n", encoding="utf-8")


main()
