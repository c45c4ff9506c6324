#!/usr/bin/env python3
"""Compares what the shared libraries export with what the installed headers declare.

    exports.py PREFIX SOURCES LIBRARY... [--clang COMPILER] [--qt FOLDER:FOLDER…]

Each exported name belongs to a class or a function that an installed header marks KIFO_EXPORT, or
that a header of SOURCES marks KIFO_SHARED, which is for the SDK's other libraries. With clang,
each function that an installed header declares and does not define is exported.
"""
import argparse
import json
import pathlib
import re
import subprocess
import sys

DECORATION = re.compile(r"^(typeinfo (name )?for |vtable for |VTT for |guard variable for "
                        r"|(non-virtual|virtual) thunk to |std::optional<kifo::\w+> )?kifo::")


def marked(text, macro):
    text = re.sub(r"//.*", "", text)
    names = re.findall(rf"\b(?:class|struct)\s+{macro}\s+(\w+)", text)
    return set(names) | set(re.findall(rf"\b{macro}\s+[^;({{]*?(\w+)\(", text))


def exported(library, demangle):
    command = ["nm", "-D", "--defined-only", *(["-C"] if demangle else []), library]
    listing = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return [line.split(" ", 2)[2] for line in listing.splitlines()]


def scopes(name):
    """The classes and functions of namespace kifo that an exported name consists of."""
    start = DECORATION.match(name)
    return set(re.match(r"[\w:~]*", name[start.end():])[0].split("::")) if start else set()


def declarations(node):
    """Functions that are declared, not defined and not templates, by their mangled names."""
    kind = node.get("kind", "")
    if kind in ("FunctionTemplateDecl", "ClassTemplateDecl",
                "ClassTemplatePartialSpecializationDecl"):
        return
    if kind in ("FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl",
                "CXXConversionDecl"):
        yield node
    for child in node.get("inner", ()):
        yield from declarations(child)


def undefined(clang, include, qt, headers):
    """Mangled and readable names of what a host may call and no header defines."""
    source = "".join(f"#include <{header}>\n" for header in headers)
    command = [clang, "-std=c++20", "-fsyntax-only", "-fPIC", f"-I{include}",
               *(word for folder in qt for word in ("-isystem", folder)),
               "-Xclang", "-ast-dump=json", "-Xclang", "-ast-dump-filter=kifo::", "-x", "c++", "-"]
    text = subprocess.run(command, input=source, check=True, stdout=subprocess.PIPE, text=True).stdout
    decoder, position, declared, defined = json.JSONDecoder(), 0, {}, set()
    while (start := text.find("{", position)) >= 0:
        tree, position = decoder.raw_decode(text, start)
        for each in declarations(tree):
            name = each.get("mangledName")
            has_body = any(child["kind"] in ("CompoundStmt", "CXXTryStmt")
                           for child in each.get("inner", ()))
            if not name or each.get("pure") or each.get("explicitlyDeleted"):
                continue
            if each["name"] == "qt_static_metacall":  # Q_OBJECT hides it.
                continue
            if has_body or each.get("explicitlyDefaulted") or each.get("isImplicit"):
                defined.add(name)
            else:
                declared[name] = each["name"]
    return {name: readable for name, readable in declared.items() if name not in defined}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("prefix", type=pathlib.Path)
    parser.add_argument("sources", type=pathlib.Path)
    parser.add_argument("libraries", nargs="+")
    parser.add_argument("--clang")
    parser.add_argument("--qt", default="")
    options = parser.parse_args()
    include = options.prefix / "include/kifo"
    headers = sorted(include.rglob("*.h"))
    public = {name for header in headers
              for name in marked(header.read_text(encoding="utf-8"), "KIFO_EXPORT")}
    shared = {name for folder in ("Kifo_iOS_Common_Kit", "platform")
              for header in (options.sources / folder).rglob("*.h")
              for name in marked(header.read_text(encoding="utf-8"), "KIFO_SHARED")}
    found = []
    for library in options.libraries:
        names = exported(library, demangle=True)
        strange = sorted(name for name in names if not scopes(name) & (public | shared))
        print(f"{pathlib.Path(library).name}: {len(names)} names exported")
        found += [f"{pathlib.Path(library).name} exports {name}" for name in strange]
    if options.clang:
        symbols = {name for library in options.libraries for name in exported(library, False)}
        qt = [folder for folder in options.qt.split(":") if folder not in ("", "/usr/include")]
        callable_names = undefined(options.clang, include, qt,
                                   [header.relative_to(include) for header in headers
                                    if "testing" not in header.relative_to(include).parts])
        print(f"{len(callable_names)} functions are declared and not defined in the headers")
        found += [f"{readable} is declared and not exported: {name}"
                  for name, readable in sorted(callable_names.items()) if name not in symbols]
    print(*found, sep="\n")
    return 1 if found or not headers else 0


if __name__ == "__main__":
    sys.exit(main())
