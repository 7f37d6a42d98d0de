#!/usr/bin/env python3
"""Fails when a folder of src/ includes a folder that includes it back.

Each source folder (src/core/batch, src/app/shell, ...) is a node; an include of a file in
another folder is an edge. The include is resolved the way the build resolves it: a file of the
app first looks under src/app, then under src/core; the core and the command-line tool look
under their own folder, then under src/core. Any cycle in that graph is printed with one
include per edge, so the offending line is easy to find.
"""
import re
import sys
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def roots_for(path, src):
    top = path.relative_to(src).parts[0]
    return [src / top, src / "core"] if top != "core" else [src / "core"]


def resolve(name, including, src):
    local = including.parent / name
    if local.is_file():
        return local
    for root in roots_for(including, src):
        candidate = root / name
        if candidate.is_file():
            return candidate
    return None


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


def find_cycles(edges):
    """Strongly connected components of more than one folder (Tarjan)."""
    index, low, stack, on_stack, result = {}, {}, [], set(), []
    counter = [0]

    def visit(node):
        index[node] = low[node] = counter[0]
        counter[0] += 1
        stack.append(node)
        on_stack.add(node)
        for nxt in edges.get(node, {}):
            if nxt not in index:
                visit(nxt)
                low[node] = min(low[node], low[nxt])
            elif nxt in on_stack:
                low[node] = min(low[node], index[nxt])
        if low[node] == index[node]:
            component = []
            while True:
                top = stack.pop()
                on_stack.discard(top)
                component.append(top)
                if top == node:
                    break
            if len(component) > 1:
                result.append(sorted(component))

    for node in sorted(edges):
        if node not in index:
            visit(node)
    return result


def main():
    src = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "src")
    edges = folder_graph(src.resolve())
    cycles = find_cycles(edges)
    for component in cycles:
        print("Folders that include each other: " + ", ".join(component))
        for a in component:
            for b, why in sorted(edges[a].items()):
                if b in component:
                    print(f"  {a} -> {b}: {why}")
    if cycles:
        return 1
    print(f"{len(edges)} folders, no include cycles")
    return 0


if __name__ == "__main__":
    sys.exit(main())
