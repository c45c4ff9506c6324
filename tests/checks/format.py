#!/usr/bin/env python3
"""Names the sources that .clang-format would change.

    format.py CLANG_FORMAT ROOT
"""
import pathlib
import subprocess
import sys

FOLDERS = ("Kifo_iOS_Common_Kit", "platform", "apps", "testing", "tests", "bench", "fuzz", "samples")


def main():
    program, root = sys.argv[1], pathlib.Path(sys.argv[2])
    files = sorted(path for folder in FOLDERS for path in (root / folder).rglob("*")
                   if path.suffix in (".h", ".cpp"))
    assert files
    result = subprocess.run([program, "--dry-run", "--Werror", *map(str, files)],
                            capture_output=True, text=True)
    lines = [line for line in result.stderr.splitlines() if "[-Wclang-format-violations]" in line]
    wrong = sorted({line.split(":")[0] for line in lines})
    print(f"{len(files)} sources, {len(wrong)} to be formatted", *wrong, sep="\n")
    return result.returncode


if __name__ == "__main__":
    sys.exit(main())
