#!/usr/bin/env python3
"""Checks that every relative link in the Markdown files names a file, and every #anchor a heading."""
import pathlib
import re
import sys

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"```.*?```|`[^`\n]*`", re.DOTALL)


def anchors(text):
    headings = re.findall(r"^#+ +(.*)$", CODE.sub(lambda m: m.group().strip("`"), text), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", h.lower()).strip().replace(" ", "-") for h in headings}


def broken_links(page):
    for target in LINK.findall(CODE.sub("", page.read_text(encoding="utf-8"))):
        if re.match(r"[a-z]+:", target):
            continue
        path, _, anchor = target.partition("#")
        file = page.parent / path if path else page
        if not file.exists():
            yield target
        elif anchor and file.suffix == ".md" and anchor not in anchors(file.read_text(encoding="utf-8")):
            yield target


def main(root):
    pages = [p for p in pathlib.Path(root).rglob("*.md") if "build" not in p.parts]
    broken = [(page, target) for page in pages for target in broken_links(page)]
    for page, target in broken:
        print(f"{page}: broken link {target}", file=sys.stderr)
    print(f"{len(pages)} documents, {len(broken)} broken links")
    return 1 if broken or not pages else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
