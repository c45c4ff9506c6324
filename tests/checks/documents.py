#!/usr/bin/env python3
"""Holds the documents to what the code says.

    documents.py ROOT            prints what differs; exit status 1 when something does
    documents.py ROOT --write    writes the table of keys in docs/privacy.md anew
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1])
# Values in a line, not lines.
KNOWN_ELSEWHERE = {"true", "false", "uuid", "type"}


def code_blocks(document, language):
    text = (ROOT / document).read_text(encoding="utf-8")
    return re.findall(rf"^```{language}\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)


def sources(*tops):
    for top in tops:
        for path in (ROOT / top).rglob("*"):
            if path.suffix in (".h", ".cpp"):
                yield path.read_text(encoding="utf-8")


def readme_shows_the_sample():
    for name, language in (("host/main.cpp", "cpp"), ("host/CMakeLists.txt", "cmake"),
                           ("quick/main.cpp", "cpp"), ("quick/Main.qml", "qml"),
                           ("quick/CMakeLists.txt", "cmake")):
        sample = (ROOT / "samples" / name).read_text(encoding="utf-8")
        if sample not in code_blocks("README.md", language):
            yield f"README.md does not show samples/{name} as it is"


def the_qml_host_stays_short():
    lines = [line for name in ("main.cpp", "Main.qml")
             for line in (ROOT / "samples/quick" / name).read_text(encoding="utf-8").splitlines()]
    if len(lines) > 25:
        yield f"the QML host of README.md has {len(lines)} lines, more than 25"


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
    for text in sources("Kifo_iOS_Common_Kit", "platform", "apps"):
        for line in re.sub(r"^\s*///?.*$|^#define.*$", "", text, flags=re.MULTILINE).split("KIFO_INSPECT(")[1:]:
            told.update(re.findall(r'"(\w+)"', line.split("{")[0]))
    for kind in sorted(told - known):
        yield f"docs/inspector.md does not know the decision {kind}"
    for kind in sorted(known - told):
        yield f"docs/inspector.md knows the decision {kind}, which nobody takes"


def table_of_keys():
    """The keys of payloads with which events carry them and what they tell, from the header."""
    header = (ROOT / "Kifo_iOS_Common_Kit/core/PayloadKeys.h").read_text(encoding="utf-8")
    keys = header.split("class Constants")[1].split("\n\n")[0]
    rows = {}
    for key, carriers, meaning in re.findall(r'=\s*"(\w+)"; *///< ([^:\n]*): ([^\n]*)', keys):
        rows.setdefault(key, []).append((carriers, meaning))
    assert sum(map(len, rows.values())) == keys.count("constexpr"), "a key without a comment"
    lines = ["| key | carried by | tells |", "|---|---|---|"]
    for key, meanings in sorted(rows.items()):
        carriers, telling = ("; ".join(dict.fromkeys(texts)) for texts in zip(*meanings))
        lines.append(f"| `{key}` | {carriers} | {telling} |")
    return "\n".join(lines) + "\n"


KEYS = re.compile(r"(<!-- keys -->\n).*?(<!-- end of keys -->)", re.DOTALL)


def privacy_lists_every_key():
    text = (ROOT / "docs/privacy.md").read_text(encoding="utf-8")
    if KEYS.sub(lambda found: found[1] + table_of_keys() + found[2], text) != text:
        yield "docs/privacy.md has another table of keys: run documents.py with --write"


def write_table_of_keys():
    path = ROOT / "docs/privacy.md"
    text = path.read_text(encoding="utf-8")
    path.write_text(KEYS.sub(lambda found: found[1] + table_of_keys() + found[2], text),
                    encoding="utf-8")


def arguments(text, function):
    """The text between the parentheses of each call of a function whose name fits `function`."""
    for call in re.finditer(rf"\b(?:{function})\(", text):
        depth, end, is_text = 1, call.end(), False
        while depth > 0 and end < len(text):
            if text[end] == '"' and text[end - 1] != "\\":
                is_text = not is_text
            if not is_text:
                depth += {"(": 1, ")": -1}.get(text[end], 0)
            end += 1
        yield text[call.end():end - 1]


def literals(text):
    """The string literals in `text`; those that stand side by side are one."""
    one = r'"((?:[^"\\]|\\.)*)"'
    for group in re.finditer(rf"{one}(?:\s*{one})*", text):
        yield "".join(re.findall(one, group[0])).replace('\\"', '"')


def said(text):
    """What a source says on the console and to the inspector: its lines, outcomes and reasons."""
    for call in arguments(text, r"print|printBare|fatalError|refuse|notShown|sayNotShown"):
        yield from literals(call)
    for line in re.findall(r"\b(?:message|kEmptyTried) = (\"[^;]*);", text):
        yield from literals(line)
    for call in arguments(text, "KIFO_INSPECT"):
        yield from literals(call.split("{")[0])
        yield from literals("".join(re.findall(r'"(?:outcome|reason|gate)",([^}]*)}', call)))
    for call in arguments(text, "inspect"):
        yield from literals(call)


def why_explains_what_is_said():
    """Of a text that is put together each part is looked for."""
    code = list(sources("Kifo_iOS_Common_Kit", "platform"))
    why = (ROOT / "docs/why.md").read_text(encoding="utf-8")
    told = {text.strip() for source in code for text in said(source)}
    told = {text for text in told if len(re.findall(r"[A-Za-z]", text)) > 3}
    for text in sorted(told - KNOWN_ELSEWHERE):
        if text not in why:
            yield f"docs/why.md does not explain \"{text}\""
    written = "\n".join(text for source in code for text in literals(source))
    for cell in re.findall(r"^\| (`.*?) \|", why, re.MULTILINE):
        for text in re.findall(r"`([^`]+)`", cell):
            for part in (part.strip() for part in text.split("…")):
                if len(part) > 3 and part not in written:
                    yield f"docs/why.md explains \"{part}\", which nobody says"


def compatibility_is_said_in_the_code():
    """Each row of docs/compatibility.md names files; each says so as often as rows name it."""
    table = (ROOT / "docs/compatibility.md").read_text(encoding="utf-8")
    named = [name for cell in re.findall(r"\| ([^|]*) \|$", table, re.MULTILINE)
             for name in re.findall(r"`([^`]+)`", cell)]
    for name in sorted(set(named)):
        path = ROOT / "Kifo_iOS_Common_Kit" / name
        text = path.read_text(encoding="utf-8") if path.is_file() else ""
        words = re.sub(r"[\s/<]+", " ", text.lower())
        if words.count("kept for compatibility") < named.count(name):
            yield f"{name} does not say \"kept for compatibility\" at each place of docs/compatibility.md"
    for row in re.findall(r"^\| [^|]*\|[^|`]*\|$", table, re.MULTILINE):
        if "| where |" not in row:
            yield f"docs/compatibility.md names no file: {row}"


def links_lead_somewhere():
    for document in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]:
        for target in re.findall(r"\]\(([^)#:]+)\)", document.read_text(encoding="utf-8")):
            if not (document.parent / target).exists():
                yield f"{document.name} links to {target}, which is not there"


def main():
    if "--write" in sys.argv:
        write_table_of_keys()
    found = [problem for check in (readme_shows_the_sample, the_qml_host_stays_short,
                                   storage_shows_the_statement,
                                   inspector_lists_every_decision, privacy_lists_every_key,
                                   why_explains_what_is_said,
                                   compatibility_is_said_in_the_code, links_lead_somewhere)
             for problem in check()]
    print(*found, sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
