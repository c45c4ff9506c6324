#!/usr/bin/env python3
"""Holds the installed headers to what a host may expect of them.

    headers.py PREFIX [--qt FOLDER:FOLDER…] COMPILER...

Each header compiles alone and without a warning with each compiler, and includes only other
installed headers and the standard library; the ones for Qt may include Qt as well.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
STANDARD = re.compile(r"^[a-z_]+$")
SYSTEM = {"testing/ChildProgram.h": {"sys/types.h"}}
QT = re.compile(r"^(Q[A-Z]\w*|Qt|Qt\w+/.*)$")
QT_FOLDERS = ("Kifo_iOS_Common_Kit/inapp/views/", "Kifo_iOS_Common_Kit/inapp/quick/", "platform/qt/",
              "testing/ui/")
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror"]


def foreign_includes(include, header):
    text = (include / header).read_text(encoding="utf-8")
    for quoted, angled in INCLUDE.findall(text):
        if quoted and not (include / quoted).exists():
            yield f'{header} includes "{quoted}", which is not installed'
        if angled and not STANDARD.match(angled) and angled not in SYSTEM.get(header, ()):
            if not (QT.match(angled) and header.startswith(QT_FOLDERS)):
                yield f"{header} includes <{angled}>, which is not the standard library's"


def compile_alone(compiler, include, qt, header):
    """None, or what the compiler says. Included twice: the second time must add nothing."""
    command = [compiler, "-std=c++20", "-fsyntax-only", "-fPIC", *WARNINGS, f"-I{include}"]
    if header.startswith(QT_FOLDERS):
        command += [word for folder in qt for word in ("-isystem", folder)]
    source = f"#include <{header}>\n" * 2
    result = subprocess.run([*command, "-x", "c++", "-"], input=source, capture_output=True,
                            text=True)
    return f"{compiler}: {header}\n{result.stderr}" if result.returncode else None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("prefix", type=pathlib.Path)
    parser.add_argument("--qt", default="")
    parser.add_argument("compilers", nargs="+")
    options = parser.parse_args()
    include = options.prefix / "include/kifo"
    qt = [folder for folder in options.qt.split(":") if folder not in ("", "/usr/include")]
    headers = sorted(str(path.relative_to(include)) for path in include.rglob("*.h"))
    found = [problem for header in headers for problem in foreign_includes(include, header)]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = [pool.submit(compile_alone, compiler, include, qt, header)
                for compiler in options.compilers for header in headers]
    found += [run.result() for run in runs if run.result()]
    print(f"{len(headers)} headers are installed", *found, sep="\n")
    return 1 if found or not headers else 0


if __name__ == "__main__":
    sys.exit(main())
