#!/usr/bin/env python3
"""Fails when a shared library exports a name that is not the SDK's own.

    exports.py LIBRARY
"""
import re
import subprocess
import sys

OWN = re.compile(r"^(typeinfo (name )?for |vtable for |VTT for |guard variable for "
                 r"|(non-virtual|virtual) thunk to |std::optional<kifo::\w+> )?kifo::")


def main():
    listing = subprocess.run(["nm", "-DC", "--defined-only", sys.argv[1]], check=True,
                             capture_output=True, text=True).stdout
    names = [line.split(" ", 2)[2] for line in listing.splitlines()]
    foreign = [name for name in names if not OWN.match(name)]
    print(f"{len(names)} names exported, {len(foreign)} of them foreign", *foreign, sep="\n")
    return 1 if foreign or not names else 0


if __name__ == "__main__":
    sys.exit(main())
