#!/usr/bin/env python3
"""Reads every include of the repository and prints those that point up the layers.

    layering.py ROOT        prints the violations; exit status 1 when there is one

An include points down or stays within its own module. Qt, system headers and conditional compilation
are allowed in some folders only, and no two files include each other in a circle.
"""
import functools
import os
import re
import sys

KIT = "Kifo_iOS_Common_Kit/"

# The layers from the lowest up; a file's module is the longest prefix that fits. Modules of one layer
# do not include each other.
LAYERS = [
    [KIT + "ports/"],
    [KIT + "core/"],
    [KIT + "device/"],
    [KIT + "storage/"],
    [KIT + "inapp/model/"],
    [KIT + "inapp/"],
    [KIT + "inapp/popup/"],
    [KIT + "inapp/views/images/", KIT + "inapp/views/looks/"],
    [KIT + "inapp/views/alertcore/"],
    [KIT + "inapp/views/shared/", KIT + "inapp/quick/"],
    [KIT + "inapp/views/popup/", KIT + "inapp/views/alert/", KIT + "network/"],
    [KIT + "events/"],
    [KIT + "notifications/"],
    [KIT + "core/Kifo."],
    ["platform/qt/"],
    ["platform/qml/"],
    ["apps/"],
]
LAYER = {module: number for number, modules in enumerate(LAYERS) for module in modules}

# Modules beside the layers, and the only modules that they may include.
BESIDE = {
    "platform/linux/": [KIT + "ports/", KIT + "core/"],
    "testing/": [KIT + "ports/", KIT + "core/", KIT + "core/Kifo.", KIT + "inapp/"],
    # Looks inside the SDK.
    "testing/simulation/": [KIT + "ports/", KIT + "core/", KIT + "core/Kifo.", KIT + "inapp/",
                            KIT + "inapp/model/", KIT + "network/", KIT + "events/", "testing/"],
}
OPEN_TO = {"apps/": list(BESIDE), "platform/qt/": ["platform/linux/"]}
# The facade, and the sources that make and end the runtime's parts, know every other module.
FACADE = (KIT + "core/Kifo.", KIT + "core/runtime/Runtime.cpp",
          KIT + "core/runtime/Consent.cpp", KIT + "core/runtime/StartUp.cpp",
          KIT + "core/runtime/Watching.cpp")
MODULES = sorted([*LAYER, *BESIDE], key=len, reverse=True)

# kifo::kit is linked without Qt, so nothing of it includes these folders.
QT_FOLDERS = (KIT + "inapp/views/", KIT + "inapp/quick/", "platform/qt/", "platform/qml/")
# Others that may include Qt. The headless demo is built without it.
QT_USERS = (*QT_FOLDERS, "testing/ui/", "apps/demo/DemoHost.", "apps/demo/shop/",
            "apps/demo/kiosk/", "apps/kifo/")
SYSTEM_FOLDERS = ("platform/", "apps/", "testing/")
# What stands above the ports and yet may include a header of the system's or of a C library, by the
# start of its path.
SYSTEM_HEADERS = {
    KIT + "storage/": {"sqlite3.h"},
    # Names its directories by the process that owns them, which POSIX systems share.
    KIT + "notifications/AttachmentFile.cpp": {"signal.h", "unistd.h"},
}
# Mutex.h: clang's attributes, which other compilers do not know.
CONDITIONAL = ("platform/", KIT + "ports/Mutex.h")

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
CONDITION = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b")
QT = re.compile(r"^(Q[A-Z]\w*|Qt|Qt\w*/.*)$")


def module_of(path):
    if path.startswith(FACADE):
        return KIT + "core/Kifo."
    return next((module for module in MODULES if path.startswith(module)), None)


@functools.cache
def lines_of(path):
    with open(path, encoding="utf-8") as file:
        return file.readlines()


def sources(root):
    for top in ("Kifo_iOS_Common_Kit", "platform", "testing", "apps"):
        for folder, _, names in os.walk(os.path.join(root, top)):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    yield os.path.relpath(os.path.join(folder, name), root)


def climbs(module, target):
    """Why `module` may not include from `target`; None when it may."""
    if module == target:
        return None
    if module in BESIDE:
        return None if target in BESIDE[module] else f"{module} may not include {target}"
    if target in BESIDE:
        return None if target in OPEN_TO.get(module, ()) else f"{module} may not include {target}"
    if target.startswith(QT_FOLDERS) and not module.startswith((*QT_FOLDERS, "apps/")):
        return f"{module} is built without Qt and may not include {target}"
    if LAYER[target] >= LAYER[module]:
        return f"points up from {module} to {target}"
    return None


def check_quoted(root, path, target):
    module, other = module_of(path), module_of(target)
    if other is None or not os.path.exists(os.path.join(root, target)):
        return f'"{target}" is not written from the root, or does not exist'
    return climbs(module, other)


def check_angled(path, header):
    if QT.match(header):
        return None if path.startswith(QT_USERS) else f"Qt's <{header}> outside the folders for Qt"
    if header.endswith(".h") and not path.startswith(SYSTEM_FOLDERS):
        if not any(path.startswith(start) and header in headers
                   for start, headers in SYSTEM_HEADERS.items()):
            return f"system header <{header}> outside platform/"
    return None


def check_lines(root, path, lines, graph):
    graph[path] = []
    for number, line in enumerate(lines, 1):
        problem = None
        include = INCLUDE.match(line)
        if include and include[1]:
            graph[path].append(include[1])
            problem = check_quoted(root, path, include[1])
        elif include:
            problem = check_angled(path, include[2])
        elif CONDITION.match(line) and not path.startswith(CONDITIONAL):
            problem = "conditional compilation outside platform/"
        if problem:
            yield f"{path}:{number}: {problem}"


def circles(graph):
    """One line for each circle of includes that `graph` holds."""
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


def violations(root, planted_path=None, planted_line=None):
    """What the sources of `root` break, with a line added to one of them or to a new file."""
    graph, found = {}, []
    for path in sorted({*sources(root), *filter(None, [planted_path])}):
        lines = lines_of(os.path.join(root, path)) if os.path.exists(os.path.join(root, path)) else []
        if path == planted_path:
            lines = [*lines, planted_line]
        if module_of(path) is None:
            found.append(f"{path}: is in no module")
        else:
            found.extend(check_lines(root, path, lines, graph))
    found.extend(circles(graph))
    return found


def main():
    found = violations(sys.argv[1])
    print(*found, sep="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
