#!/usr/bin/env python3
"""Prints what it costs a host's file to include Kifo.h, beside the standard headers that it needs.

    scripts/header_cost.py [COMPILER]
"""
import pathlib
import re
import resource
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADER = "Kifo_iOS_Common_Kit/core/Kifo.h"
RUNS = 7
INCLUDE = re.compile(r'^#include (?:"([^"]+)"|<([a-z_]+)>)', re.MULTILINE)


def standard_headers(header, seen, found):
    seen.add(header)
    for ours, standard in INCLUDE.findall((ROOT / header).read_text(encoding="utf-8")):
        if standard:
            found.add(standard)
        elif ours not in seen:
            standard_headers(ours, seen, found)
    return found


def seconds(compiler, source):
    """The processor time of one compilation."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run([compiler, "-std=c++20", "-fsyntax-only", f"-I{ROOT}", "-x", "c++", "-"],
                   input=source, check=True, text=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def main():
    compiler = sys.argv[1] if len(sys.argv) > 1 else "c++"
    needed = sorted(standard_headers(HEADER, set(), set()))
    standard = "".join(f"#include <{name}>\n" for name in needed)
    kifo = f'#include "{HEADER}"\n'
    # The quickest of some runs, taken in turn: the machine may be busy.
    runs = [(seconds(compiler, standard), seconds(compiler, kifo)) for _ in range(RUNS)]
    alone, ours = (min(times) for times in zip(*runs))
    print(f"a file that includes Kifo.h: {ours:.2f} s; with the {len(needed)} standard headers only: "
          f"{alone:.2f} s; {ours / alone:.2f} x, wanted at most 1.60")


if __name__ == "__main__":
    main()
