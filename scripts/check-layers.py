#!/usr/bin/python3
"""Checks what the folders promise: includes run downwards only, MeetingCore knows no Qt, files form no circle."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^\s*#include\s+([<"])([^>"]+)[>"]', re.M)
QT = re.compile(r"(Q[A-Z]|Qt|qt|QCoro|qcoro)")

# Folders of a layer, lowest first; a file may include from its own row and the rows before it.
LAYERS = [
    ["MeetingCore"],
    ["Varnet/platform", "Varnet/async"],
    ["Varnet/capture", "Varnet/speech", "Varnet/notes", "Varnet/engines", "Varnet/calendar", "Varnet/connections"],
    ["Varnet/store", "Varnet/updates"],
    ["Varnet/models", "Varnet/shell"],
    ["Varnet/screens", "Varnet"],
]
CORE = [
    ["MeetingCore/base"],
    ["MeetingCore/records", "MeetingCore/audio", "MeetingCore/updates"],
    ["MeetingCore/speech", "MeetingCore/notes", "MeetingCore/calendar", "MeetingCore/imports"],
]


def rank(name, table):
    return next((number for number, row in enumerate(table) if any(name.startswith(f + "/") for f in row)), None)


def upwards(name, target, table):
    mine, theirs = rank(name, table), rank(target, table)
    return mine is None or theirs is None or theirs > mine


def check_file(name, text):
    """The files of this repository that `name` includes, and what is wrong with its includes."""
    targets, problems = [], []
    for kind, target in INCLUDE.findall(text):
        if name.startswith("MeetingCore/") and QT.match(target):
            problems.append(f"{name}: Qt in MeetingCore: {target}")
        if kind == "<" or target.endswith(".moc"):
            continue
        if not (ROOT / target).exists():
            problems.append(f"{name}: includes are from the root of the repository: {target}")
            continue
        targets.append(target)
        if name.startswith("engine/"):
            if not target.startswith("engine/"):
                problems.append(f"{name}: the engine shares no code with the application: {target}")
        elif upwards(name, target, LAYERS) or (name.startswith("MeetingCore/") and upwards(name, target, CORE)):
            problems.append(f"{name}: include upwards: {target}")
    return targets, problems


def circles(graph):
    done, problems = set(), []

    def visit(node, trail):
        if node in trail:
            problems.append("circle: " + " -> ".join(trail[trail.index(node):] + [node]))
        elif node not in done:
            for target in graph.get(node, []):
                visit(target, trail + [node])
            done.add(node)

    for node in graph:
        visit(node, [])
    return problems


def main():
    graph, problems = {}, []
    for top in ("MeetingCore", "Varnet", "engine"):
        for file in sorted((ROOT / top).rglob("*")):
            if file.suffix in (".h", ".cpp"):
                name = str(file.relative_to(ROOT))
                graph[name], found = check_file(name, file.read_text(encoding="utf-8"))
                problems += found
    problems += circles(graph)
    print("\n".join(problems), file=sys.stderr, end="\n" if problems else "")
    return 1 if problems else 0


sys.exit(main())
