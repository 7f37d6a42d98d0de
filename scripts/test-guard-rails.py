#!/usr/bin/env python3
"""Plants one fault at a time in a copy of the sources and checks that its guard rail fails,
and that the rails pass on the unchanged copy: an include of a folder above the includer, an
Exiv2 include in the app, a function over the limit, an unformatted file, no clang-format, a
notification that nobody posts.
Usage: test-guard-rails.py [CLANG_FORMAT]"""
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FORMATTER = sys.argv[1] if len(sys.argv) > 1 else "clang-format"


def copy_tree(into, sources=True):
    """A copy of what the rails read. Without `sources`, src/ is left empty: a rail that looks
    at each file on its own (the formatting, the length of functions) then reads only the file
    planted in it, instead of formatting every source once more."""
    for name in ("src", "scripts", "docs"):
        if name == "src" and not sources:
            (into / name).mkdir(parents=True)
            continue
        shutil.copytree(ROOT / name, into / name, ignore=shutil.ignore_patterns("*.png"))
    shutil.copy(ROOT / ".clang-format", into / ".clang-format")


def rail(copy, name, env=None):
    """The exit status and output of one rail run on the copy."""
    if name == "format":
        command = ["bash", str(copy / "scripts/check-format.sh")]
    else:
        command = [sys.executable, str(copy / f"scripts/check-{name}.py"), str(copy / "src")]
    environment = {"PATH": "/usr/bin:/bin", "CLANG_FORMAT": FORMATTER, **(env or {})}
    done = subprocess.run(command, capture_output=True, text=True, env=environment)
    return done.returncode, done.stdout + done.stderr


def prepend(path, text):
    path.write_text(text + path.read_text(encoding="utf-8"), encoding="utf-8")


def main():
    failures = []

    def expect(copy, name, fails, what, needle="", env=None):
        status, output = rail(copy, name, env)
        if (status != 0) != fails or needle not in output:
            failures.append(f"{name}: {what}: exit status {status}\n{output}")

    with tempfile.TemporaryDirectory() as scratch:
        clean = Path(scratch) / "clean"
        copy_tree(clean)
        for name in ("layers", "libraries", "function-length", "format", "events"):
            expect(clean, name, False, "the sources as they are")
        expect(clean, "format", True, "without clang-format", "missing",
               {"CLANG_FORMAT": "/nonexistent/clang-format"})

        plants = [
            ("layers", "src/core/geo/CoordinateText.cpp", '#include "batch/BatchDriver.h"\n',
             "core/geo -> core/batch"),
            ("layers", "src/core/dates/DateRule.h", '#include "rename/RenameRule.h"\n',
             "on the same row"),
            ("layers", "src/app/shell/MainWindow.cpp", '#include "workingset/HomeScreen.h"\n',
             'is included as "app/workingset/HomeScreen.h"'),
            ("layers", "src/core/shell/ApplicationShell.cpp",
             '#include "app/widgets/DialogPrompt.h"\n', "the core includes no app header"),
            ("libraries", "src/app/shell/MainWindow.cpp", "#include <exiv2/exiv2.hpp>\n",
             "Exiv2 belongs to core/metadata/"),
            ("libraries", "src/core/model/KeyTable.cpp", "#include <sqlite3.h>\n",
             "SQLite belongs to core/photolibrary/"),
            ("function-length", "src/core/geo/Planted.cpp",
             "int planted() {\n" + "    int x = 0;\n" * 80 + "    return x;\n}\n",
             "core/geo/Planted.cpp:planted (line 1): 83 lines"),
            ("format", "src/core/geo/Planted.h", "inline int  planted( int x ){return x;}\n",
             "src/core/geo/Planted.h"),
        ]
        for n, (name, file, text, needle) in enumerate(plants):
            copy = Path(scratch) / f"plant{n}"
            copy_tree(copy, sources=name not in ("format", "function-length"))
            target = copy / file
            target.parent.mkdir(parents=True, exist_ok=True)
            if target.exists():
                prepend(target, text)
            else:
                target.write_text(text, encoding="utf-8")
            expect(copy, name, True, f"planted in {file}", needle)

        copy = Path(scratch) / "plant-event"
        copy_tree(copy)
        header = copy / "src/core/foundation/AppEvents.h"
        header.write_text(header.read_text(encoding="utf-8").replace(
            "signals:\n", "signals:\n    void PlantedOTM();\n", 1), encoding="utf-8")
        expect(copy, "events", True, "a signal in AppEvents that nobody posts",
               "PlantedOTM is never posted")

    for failure in failures:
        print(failure)
    if failures:
        return 1
    print("every guard rail passes the sources and fails on its planted fault")
    return 0


if __name__ == "__main__":
    sys.exit(main())
