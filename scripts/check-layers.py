#!/usr/bin/env python3
"""Fails when a folder of src/ includes a folder that the layer picture does not put below it.

The order is read from the picture in the Layers section of docs/ARCHITECTURE.md: a folder may
include only folders on a lower row, never one on its own row or above it. The command-line tool
may include only the core folders that the same section says it uses, and nothing includes it.
A folder that the picture leaves out is an error too, so the picture stays complete.

Each source folder (src/core/batch, src/app/shell, ...) is a node; an include of a file in
another folder is an edge. The include is resolved the way the build resolves it: app headers
are named with their "app/" prefix from src/, every other name is looked up under src/core, and
the command-line tool looks under its own folder first. An app header named without the prefix,
or included by the core, is an error as well. Every wrong edge is printed with one include that
makes it, so the offending line is easy to find.
"""
import re
import sys
from pathlib import Path

import architecture_doc

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def roots_for(path, src):
    """Where a name without the app prefix is looked up: the command line's own folder first."""
    top = path.relative_to(src).parts[0]
    return [src / "cli", src / "core"] if top == "cli" else [src / "core"]


def resolve(name, including, src):
    local = including.parent / name
    if local.is_file():
        return local
    if name.startswith(APP_PREFIX):
        candidate = src / name
        return candidate if candidate.is_file() else None
    for root in roots_for(including, src):
        candidate = root / name
        if candidate.is_file():
            return candidate
    return None


APP_PREFIX = "app/"


def prefix_problems(src):
    """App headers are included as "app/...", core headers by their folder alone: an include
    that leaves the prefix out of an app header, or a core file that includes one, is named."""
    problems = []
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".hpp") or not path.is_file():
            continue
        top = path.relative_to(src).parts[0]
        for name in INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace")):
            where = path.relative_to(src)
            if (path.parent / name).is_file():
                continue
            if name.startswith(APP_PREFIX) and top == "core":
                problems.append(f"{where} includes \"{name}\": the core includes no app header")
            elif not name.startswith(APP_PREFIX) and (src / "app" / name).is_file():
                problems.append(f"{where} includes \"{name}\": an app header is included as "
                                f"\"{APP_PREFIX}{name}\"")
    return problems


def folder_graph(src):
    edges = {}
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".hpp") or not path.is_file():
            continue
        here = path.parent.relative_to(src).as_posix()
        edges.setdefault(here, {})
        for name in INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace")):
            target = resolve(name, path, src)
            if target is None:
                continue
            there = target.parent.relative_to(src).as_posix()
            if there != here:
                edges[here].setdefault(there, f"{path.relative_to(src)} includes \"{name}\"")
    return edges


def wrong_edges(edges, rows, cli_uses):
    """Messages for every include against the order, and for folders the picture leaves out."""
    level = {folder: n for n, row in enumerate(rows) for folder in row}
    problems = []
    for folder in sorted(edges):
        if folder != "cli" and folder not in level:
            problems.append(f"{folder} is not in the layer picture")
    for a in sorted(edges):
        for b, why in sorted(edges[a].items()):
            if b == "cli":
                problems.append(f"{a} -> cli: nothing includes the command-line tool: {why}")
            elif a == "cli":
                if b not in cli_uses:
                    problems.append(f"cli -> {b}: not among the folders cli/ uses: {why}")
            elif a in level and b in level and level[b] <= level[a]:
                where = "on the same row as" if level[b] == level[a] else "above"
                problems.append(f"{a} -> {b}: {b} is {where} {a}: {why}")
    return problems


def main():
    src = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "src")
    edges = folder_graph(src.resolve())
    rows = architecture_doc.layer_rows()
    problems = prefix_problems(src.resolve()) + wrong_edges(edges, rows,
                                                            architecture_doc.command_line_uses())
    if problems:
        print("Includes against the layer picture of docs/ARCHITECTURE.md:")
        for problem in problems:
            print("  " + problem)
        return 1
    print(f"{len(edges)} folders, every include goes down the {len(rows)} rows of the picture")
    return 0


if __name__ == "__main__":
    sys.exit(main())
