#!/usr/bin/env python3
"""Plants one fault at a time in a copy of translations/tagmoor_de.ts and checks that
check-translations.py fails on it and passes the file as it is; with lupdate given, a text
planted in a copy of the sources is reported as missing (exit 77), not failed.
Usage: test-check-translations.py [LUPDATE]"""
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CHECK = ROOT / "scripts/check-translations.py"
TS = ROOT / "translations/tagmoor_de.ts"

# What is changed in the file, into what, and the words the check must say.
PLANTS = [
    ("<translation>&amp;Datei</translation>",
     '<translation type="unfinished">&amp;Datei</translation>', "not translated"),
    ("<translation>&amp;Datei</translation>", "<translation></translation>", "not translated"),
    ("<translation>&amp;Datei</translation>", "<translation>Datei</translation>",
     "accelerator is lost"),
    ("<translation>Tipp %1 von %2</translation>", "<translation>Tipp %1 von %1</translation>",
     "placeholders differ"),
    ("<translation>Ändern: </translation>", "<translation>Ändern:</translation>",
     "spaces at the end differ"),
    ("<name>RenamePanel</name>", "<name>tagmoor</name>", "tr() outside a class"),
]


def run(*args):
    done = subprocess.run([sys.executable, str(CHECK), *map(str, args)], capture_output=True,
                          text=True)
    return done.returncode, done.stdout + done.stderr


def main():
    lupdate = sys.argv[1] if len(sys.argv) > 1 else None
    failures = []
    original = TS.read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch) / "translations"
        folder.mkdir()
        planted = folder / TS.name

        planted.write_text(original, encoding="utf-8")
        status, output = run(folder)
        if status != 0:
            failures.append(f"the file as it is: exit status {status}\n{output}")

        for needle, replacement, words in PLANTS:
            if needle not in original:
                failures.append(f"{needle} is not in {TS.name}: the plant needs a new target")
                continue
            planted.write_text(original.replace(needle, replacement, 1), encoding="utf-8")
            status, output = run(folder)
            if status != 1 or words not in output:
                failures.append(f"{replacement}: exit status {status}\n{output}")

        if lupdate:
            planted.write_text(original, encoding="utf-8")
            sources = Path(scratch) / "src"
            shutil.copytree(ROOT / "src", sources)
            window = sources / "app/shell/MainWindow.cpp"
            window.write_text(window.read_text(encoding="utf-8").replace(
                'tr("&Help")', 'tr("&Help")); tr("A planted text"', 1), encoding="utf-8")
            status, output = run(folder, "--lupdate", lupdate, "--sources", sources)
            if status != 77 or "'A planted text' is not in the file yet" not in output:
                failures.append(f"a new text in the sources: exit status {status}\n{output}")

    for failure in failures:
        print(failure)
    if failures:
        return 1
    print("the translation check passes the German file and fails on every planted fault")
    return 0


if __name__ == "__main__":
    sys.exit(main())
