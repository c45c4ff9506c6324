#!/usr/bin/env python3
"""Prints what a test run came to: what was skipped and why, what failed, and the counts.

    summary.py JUNIT-FILE
"""
import collections
import sys
import xml.etree.ElementTree as ElementTree


def reason(case):
    """What a skipped test said before it gave up."""
    lines = [line.strip() for line in (case.findtext("system-out") or "").splitlines()]
    said = [line for line in lines if line and not line.startswith(("[", "Note:", "Running main"))]
    return said[-1] if said else "no reason given"


def main():
    suite = ElementTree.parse(sys.argv[1]).getroot()
    skipped, failed = collections.defaultdict(list), []
    for case in suite.iter("testcase"):
        if case.find("skipped") is not None:
            skipped[reason(case)].append(case.get("name"))
        elif case.find("failure") is not None or case.get("status") == "fail":
            failed.append(case.get("name"))
    total = int(suite.get("tests"))
    print()
    for why, names in skipped.items():
        print(f"skipped, {why}: {', '.join(names)}")
    for name in failed:
        print(f"failed: {name}")
    missed = sum(len(names) for names in skipped.values())
    print(f"{total - missed - len(failed)} of {total} tests passed, {missed} skipped, "
          f"{len(failed)} failed, in {float(suite.get('time', 0)):.0f} s")


if __name__ == "__main__":
    main()
