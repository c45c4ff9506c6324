#!/usr/bin/env python3
"""Holds the documents to what the code says.

    documents.py ROOT
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1])


def code_blocks(document, language):
    text = (ROOT / document).read_text(encoding="utf-8")
    return re.findall(rf"^```{language}\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)


def sources():
    for top in ("Kifo_iOS_Common_Kit", "platform", "apps"):
        for path in (ROOT / top).rglob("*"):
            if path.suffix in (".h", ".cpp"):
                yield path.read_text(encoding="utf-8")


def readme_shows_the_sample():
    for name, language in (("main.cpp", "cpp"), ("CMakeLists.txt", "cmake")):
        sample = (ROOT / "samples/host" / name).read_text(encoding="utf-8")
        if sample not in code_blocks("README.md", language):
            yield f"README.md does not show samples/host/{name} as it is"


def storage_shows_the_statement():
    header = (ROOT / "Kifo_iOS_Common_Kit/storage/LogTable.h").read_text(encoding="utf-8")
    literal = re.search(r"kCreate =\s*((?:\"[^\"]*\"\s*)+);", header)[1]
    statement = "".join(re.findall(r'"([^"]*)"', literal))
    if statement + "\n" not in code_blocks("docs/storage-format.md", "sql"):
        yield "docs/storage-format.md shows another statement for the table"


def inspector_lists_every_decision():
    listed = re.findall(r"^\| (`.*?) \|", (ROOT / "docs/inspector.md").read_text(encoding="utf-8"),
                        re.MULTILINE)
    known = {kind for cell in listed for kind in re.findall(r"`(\w+)`", cell)}
    told = set()
    for text in sources():
        for line in re.sub(r"^\s*///?.*$|^#define.*$", "", text, flags=re.MULTILINE).split("KIFO_INSPECT(")[1:]:
            told.update(re.findall(r'"(\w+)"', line.split("{")[0]))
    for kind in sorted(told - known):
        yield f"docs/inspector.md does not know the decision {kind}"
    for kind in sorted(known - told):
        yield f"docs/inspector.md knows the decision {kind}, which nobody takes"


def links_lead_somewhere():
    for document in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]:
        for target in re.findall(r"\]\(([^)#:]+)\)", document.read_text(encoding="utf-8")):
            if not (document.parent / target).exists():
                yield f"{document.name} links to {target}, which is not there"


def main():
    found = [problem for check in (readme_shows_the_sample, storage_shows_the_statement,
                                   inspector_lists_every_decision, links_lead_somewhere)
             for problem in check()]
    print(*found, sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
