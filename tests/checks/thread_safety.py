#!/usr/bin/env python3
"""Runs clang's thread-safety analysis over the sources of the kit and its adapters.

    thread_safety.py ROOT BUILD

BUILD holds compile_commands.json. Only sources that include ports/Mutex.h are analysed, directly or
through other headers of the repository: the others have no annotations.
"""
import concurrent.futures
import functools
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

ROOT, BUILD = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
MUTEX = "Kifo_iOS_Common_Kit/ports/Mutex.h"
ANALYSED = ("Kifo_iOS_Common_Kit/", "platform/")
FLAGS = ["-fsyntax-only", "-Wno-everything", "-Wthread-safety", "-Werror=thread-safety"]


@functools.cache
def includes(path):
    text = (ROOT / path).read_text(encoding="utf-8")
    return [name for name in re.findall(r'^#include "([^"]+)"', text, re.MULTILINE)
            if (ROOT / name).is_file()]


def reaches_mutex(path):
    seen, open_ = set(), [path]
    while open_:
        for name in includes(open_.pop()):
            if name not in seen:
                seen.add(name)
                open_.append(name)
    return MUTEX in seen


def analysis_of(entry):
    """The compiler's own command without its name, output and precompiled header."""
    words = shlex.split(entry["command"])
    start = next(i for i, word in enumerate(words) if word.endswith(("g++", "c++", "clang++"))) + 1
    kept, rest = [], iter(words[start:])
    for word in rest:
        if word in ("-o", "-include", "-Xclang"):
            next(rest)
        elif word not in ("-c", "-Winvalid-pch") and not word.startswith(("-flto", "-fno-fat-lto")):
            kept.append(word)
    return ["clang++", *kept, *FLAGS]


def analyse(entry):
    return subprocess.run(analysis_of(entry), cwd=entry["directory"], text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def main():
    chosen = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        path = os.path.relpath(os.path.join(entry["directory"], entry["file"]), ROOT)
        if path.startswith(ANALYSED) and reaches_mutex(path):
            chosen[path] = entry
    if not chosen:
        print("no source includes", MUTEX)
        return 1
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        results = list(pool.map(analyse, chosen.values()))
    failed = [result.stdout for result in results if result.returncode != 0]
    print(*failed, sep="\n")
    print(len(chosen), "sources analysed,", len(failed), "with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
