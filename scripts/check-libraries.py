#!/usr/bin/env python3
"""Fails when a source of src/ includes a header of Exiv2, LibRaw or SQLite outside the folders
that docs/ARCHITECTURE.md gives that library (the table in its Layers section)."""
import re
import sys
from pathlib import Path

import architecture_doc

INCLUDE = re.compile(r'^\s*#\s*include\s+[<"]([^>"]+)[>"]', re.M)


def stray_includes(src, libraries):
    """(path, line number, library, header) of every include outside the library's folders."""
    found = []
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".hpp") or not path.is_file():
            continue
        folder = path.parent.relative_to(src).as_posix()
        text = path.read_text(encoding="utf-8", errors="replace")
        for match in INCLUDE.finditer(text):
            header = match.group(1)
            for library, (prefixes, folders) in libraries.items():
                if any(header.startswith(p) for p in prefixes) and folder not in folders:
                    line = text.count("\n", 0, match.start()) + 1
                    found.append((path.relative_to(src).as_posix(), line, library, header))
    return found


def main():
    src = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "src")
    libraries = architecture_doc.library_folders()
    if not libraries:
        print("docs/ARCHITECTURE.md has no table of libraries in its Layers section")
        return 1
    found = stray_includes(src.resolve(), libraries)
    for path, line, library, header in found:
        allowed = ", ".join(f + "/" for f in libraries[library][1])
        print(f"{path}:{line}: includes <{header}>; {library} belongs to {allowed}")
    if found:
        return 1
    names = ", ".join(sorted(libraries))
    print(f"{names}: every include stays in its folders")
    return 0


if __name__ == "__main__":
    sys.exit(main())
