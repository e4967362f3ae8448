#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints every #include "..." under driver/ and simulator/ that climbs; rooms.txt beside this file has the order."""
import pathlib
import re
import sys

KNOWN_CLIMBERS = {("driver/automation/vrl/core/XPrinter.h", "vrl/tracking/XJobStatusThread.h")}

root = pathlib.Path(__file__).resolve().parent.parent
uses = {}  # tree -> what it may include of other trees
rooms = {}  # folder -> (tree, line below the tree)
for number, line in enumerate((root / "scripts/rooms.txt").read_text().splitlines()):
    words = line.split("#")[0].split()
    if words and line[0] != " ":
        tree, uses[words[0]] = words[0], words[1:]
    for room in words if line[:1] == " " else []:
        rooms[tree if room == "." else f"{tree}/{room}"] = (tree, number)


def may_include(folder, included):
    """An include is written from the parent folder of its tree: "vrl/core/XPrinter.h"."""
    parents = [tree.rpartition("/")[0] for tree in uses if tree.endswith("/" + included.split("/")[0])]
    target = f"{parents[0]}/{included}".rpartition("/")[0] if parents else ""
    if folder not in rooms or target not in rooms:
        return False
    (tree, line), (target_tree, target_line) = rooms[folder], rooms[target]
    if target_tree == tree:
        return target == folder or target_line < line
    return target in uses[tree] or target_tree + "/" in uses[tree]


climbs = 0
for file in sorted(file for top in ("driver", "simulator") for file in (root / top).rglob("*") if file.is_file()):
    name, folder = file.relative_to(root).as_posix(), file.parent.relative_to(root).as_posix()
    for number, line in enumerate(file.read_text(errors="replace").splitlines(), 1):
        include = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
        if include and (name, include[1]) not in KNOWN_CLIMBERS and not may_include(folder, include[1]):
            print(f'{name}:{number}: may not include "{include[1]}"')
            climbs += 1
if climbs:
    sys.exit("Repair it: include only from the file's own room and the rooms above it in scripts/rooms.txt.")
