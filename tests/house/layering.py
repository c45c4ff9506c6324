#!/usr/bin/env python3
"""Reads every include of the house and prints those that run up its floors.

    layering.py ROOT        prints the violations; exit status 1 when there is one

An include may only point down, or stay on its own floor and in its own room. Qt, system headers and
conditional compilation have rooms of their own, and no two files include each other in a circle.
"""
import os
import re
import sys

KIT = "Kifo_iOS_Common_Kit/"

# The floors from the ground up; a room is named by the longest prefix that fits. Rooms of one floor
# do not see each other.
FLOORS = [
    [KIT + "ports/"],
    [KIT + "core/"],
    [KIT + "device/"],
    [KIT + "storage/"],
    [KIT + "inapp/"],
    [KIT + "network/", KIT + "inapp/views/"],
    [KIT + "events/"],
    [KIT + "notifications/"],
    [KIT + "core/Kifo."],
    ["platform/qt/"],
    ["apps/"],
]
FLOOR = {room: number for number, rooms in enumerate(FLOORS) for room in rooms}

# Rooms beside the floors, and the only rooms that they may include.
BESIDE = {
    "platform/linux/": [KIT + "ports/", KIT + "core/"],
    "testing/": [KIT + "ports/", KIT + "core/"],
}
OPEN_TO = {"apps/": list(BESIDE), "platform/qt/": ["platform/linux/"]}
FACADE = (KIT + "core/Kifo.", KIT + "core/KifoShutDown.")
ROOMS = sorted([*FLOOR, *BESIDE], key=len, reverse=True)

QT_ROOMS = (KIT + "inapp/views/", "platform/qt/", "testing/ui/", "apps/")
NO_QT_ROOMS = ("apps/demo/headless/",)
# The kit is linked without Qt, so nothing of it may reach for the rooms that need it.
UI_ROOMS = (KIT + "inapp/views/", "platform/qt/")
SYSTEM_ROOMS = ("platform/", "apps/", "testing/")
# What stands above the ports and yet may include a header of the system's or of a C library, by the
# start of its path.
SYSTEM_HEADERS = {
    KIT + "storage/": {"sqlite3.h"},
    # Names its directories by the process that owns them, which POSIX systems share.
    KIT + "notifications/AttachmentFile.cpp": {"signal.h", "unistd.h"},
}
CONDITIONAL_ROOMS = ("platform/", KIT + "ports/Mutex.h")

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
CONDITION = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b")
QT = re.compile(r"^(Q[A-Z]\w*|Qt\w*/.*)$")


def room_of(path):
    if path.startswith(FACADE):
        return KIT + "core/Kifo."
    return next((room for room in ROOMS if path.startswith(room)), None)


def sources(root):
    for top in ("Kifo_iOS_Common_Kit", "platform", "testing", "apps"):
        for folder, _, names in os.walk(os.path.join(root, top)):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    yield os.path.relpath(os.path.join(folder, name), root)


def climbs(room, target):
    """Why `room` may not include from `target`; None when it may."""
    if room == target:
        return None
    if room in BESIDE:
        return None if target in BESIDE[room] else f"{room} may not include {target}"
    if target in BESIDE:
        return None if target in OPEN_TO.get(room, ()) else f"{room} may not include {target}"
    if target in UI_ROOMS and room not in UI_ROOMS and room != "apps/":
        return f"{room} is built without Qt and may not include {target}"
    if FLOOR[target] >= FLOOR[room]:
        return f"runs up from {room} to {target}"
    return None


def check_quoted(root, path, target):
    room, other = room_of(path), room_of(target)
    if other is None or not os.path.exists(os.path.join(root, target)):
        return f'"{target}" is not written from the root, or does not exist'
    return climbs(room, other)


def check_angled(path, header):
    if QT.match(header):
        if path.startswith(QT_ROOMS) and not path.startswith(NO_QT_ROOMS):
            return None
        return f"Qt's <{header}> outside the rooms for Qt"
    if header.endswith(".h") and not path.startswith(SYSTEM_ROOMS):
        if not any(path.startswith(start) and header in headers
                   for start, headers in SYSTEM_HEADERS.items()):
            return f"system header <{header}> outside platform/"
    return None


def check_file(root, path, graph):
    graph[path] = []
    with open(os.path.join(root, path), encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            problem = None
            include = INCLUDE.match(line)
            if include and include[1]:
                graph[path].append(include[1])
                problem = check_quoted(root, path, include[1])
            elif include:
                problem = check_angled(path, include[2])
            elif CONDITION.match(line) and not path.startswith(CONDITIONAL_ROOMS):
                problem = "conditional compilation outside platform/"
            if problem:
                yield f"{path}:{number}: {problem}"


def circles(graph):
    """One line for each circle of includes that a walk through `graph` closes."""
    done, way = set(), []

    def walk(path):
        if path in way:
            yield "circle: " + " -> ".join([*way[way.index(path):], path])
            return
        if path in done or path not in graph:
            return
        way.append(path)
        for target in graph[path]:
            yield from walk(target)
        way.pop()
        done.add(path)

    for path in sorted(graph):
        yield from walk(path)


def violations(root):
    graph, found = {}, []
    for path in sources(root):
        if room_of(path) is None:
            found.append(f"{path}: stands in no room")
        else:
            found.extend(check_file(root, path, graph))
    found.extend(circles(graph))
    return found


def main():
    found = violations(sys.argv[1])
    print(*found, sep="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
