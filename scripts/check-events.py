#!/usr/bin/env python3
"""Checks that every notification of AppEvents is both posted and observed somewhere in the
sources: a signal nobody emits, or one nobody connects to, is a name that does nothing.
Usage: check-events.py SRC_DIR"""
import re
import sys
from pathlib import Path

HEADER = Path("core/foundation/AppEvents.h")
SIGNAL = re.compile(r"^\s*void\s+(\w+)\s*\(", re.MULTILINE)


def signal_names(header_text):
    body = header_text.split("signals:", 1)[1].split("};", 1)[0]
    return SIGNAL.findall(body)


def main():
    src = Path(sys.argv[1] if len(sys.argv) > 1 else "src")
    names = signal_names((src / HEADER).read_text(encoding="utf-8"))
    texts = [p.read_text(encoding="utf-8", errors="replace")
             for p in sorted(src.rglob("*")) if p.suffix in (".cpp", ".h") and p != src / HEADER]
    problems = []
    for name in names:
        posted = any(re.search(rf"\bemit\b[^;]*\b{name}\s*\(", t) for t in texts)
        observed = any(f"&AppEvents::{name}" in t for t in texts)
        if not posted:
            problems.append(f"{name} is never posted")
        if not observed:
            problems.append(f"{name} is never observed")
    if not names:
        problems.append(f"no signals found in {HEADER}")
    for problem in problems:
        print(problem)
    if problems:
        print("Each notification must be posted and observed, or removed from AppEvents.")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
