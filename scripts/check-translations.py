#!/usr/bin/env python3
"""Fails when a translation in translations/*.ts is unfinished or would change what the program
does: an entry marked unfinished or left empty, a placeholder (%1, %2, ...) lost or added, a
keyboard accelerator (&) lost, or spaces at either end that differ from the source (the code
joins such texts to others). A text whose context is the namespace itself was found in a tr() of
a free function: the program looks it up under another context and never finds it.

With --lupdate, it also runs lupdate over the sources into a scratch copy of each file and lists
the texts of the sources that the file does not hold yet, and the texts it holds that the sources
no longer have. Those are reported, not failed: other branches add texts while the translations
catch up. The exit status is then 77 (shown by ctest as skipped) until
`cmake --build build --target update_translations` and a translator bring the file up to date.

Usage: check-translations.py TRANSLATIONS_DIR [--lupdate LUPDATE --sources SRC]"""
import argparse
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET
from pathlib import Path

PLACEHOLDER = re.compile(r"%(\d+)")
# One & before a character marks the accelerator; && is a literal ampersand.
ACCELERATOR = re.compile(r"&(?!&)\S")
PASSED_OVER = {"vanished", "obsolete"}
NAMESPACES = {"tagmoor"}


def messages(ts_path):
    """(context, source, translation element) of every live message of a .ts file."""
    root = ET.parse(ts_path).getroot()
    for context in root.iter("context"):
        name = context.findtext("name", "")
        for message in context.iter("message"):
            translation = message.find("translation")
            if translation is not None and translation.get("type") in PASSED_OVER:
                continue
            yield name, message.findtext("source", ""), translation


def text_faults(source, text):
    """What makes one translated text unsafe in place of its source."""
    found = []
    if sorted(PLACEHOLDER.findall(source)) != sorted(PLACEHOLDER.findall(text)):
        found.append(f"the placeholders differ in {text!r}")
    if ACCELERATOR.search(source.replace("&&", "")) and not ACCELERATOR.search(
            text.replace("&&", "")):
        found.append(f"the accelerator is lost in {text!r}")
    for end, pattern in (("start", r"^\s*"), ("end", r"\s*$")):
        if re.search(pattern, source).group() != re.search(pattern, text).group():
            found.append(f"the spaces at the {end} differ in {text!r}")
    return found


def faults(ts_path):
    """One line for every translation of the file that is unfinished or unsafe."""
    found = []
    for context, source, translation in messages(ts_path):
        where = f"{ts_path.name}: {context}: {source!r}"
        if context in NAMESPACES:
            found.append(f"{where}: tr() outside a class; write QCoreApplication::translate "
                         "with the context the code looks it up in")
        # A plural text has one form for each count; every form is checked on its own.
        forms = [] if translation is None else translation.findall("numerusform")
        texts = ([form.text or "" for form in forms] if forms else
                 ["" if translation is None else "".join(translation.itertext())])
        if translation is None or translation.get("type") == "unfinished" or not all(texts):
            found.append(f"{where}: not translated")
            continue
        for text in texts:
            found.extend(f"{where}: {fault}" for fault in text_faults(source, text))
    return found


def keys(ts_path):
    return {(context, source) for context, source, _ in messages(ts_path)}


def drift(ts_path, lupdate, sources):
    """Texts of the sources missing from the file, and texts of the file the sources lost."""
    with tempfile.TemporaryDirectory() as scratch:
        fresh = Path(scratch) / ts_path.name
        shutil.copy(ts_path, fresh)
        subprocess.run([lupdate, "-silent", "-no-obsolete", "-locations", "none",
                        "-extensions", "cpp,h", "-I", str(sources), "-I", str(sources / "core"),
                        str(sources / "app"), str(sources / "core"), "-ts", str(fresh)],
                       check=True, capture_output=True)
        now = keys(fresh)
    held = keys(ts_path)
    return sorted(now - held), sorted(held - now)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("translations", type=Path)
    parser.add_argument("--lupdate")
    parser.add_argument("--sources", type=Path)
    args = parser.parse_args()

    files = sorted(args.translations.glob("*.ts"))
    if not files:
        print(f"no .ts files in {args.translations}")
        return 1
    found = [line for ts in files for line in faults(ts)]
    for line in found:
        print(line)
    if found:
        return 1
    if not args.lupdate:
        return 0
    behind = False
    for ts in files:
        missing, stale = drift(ts, args.lupdate, args.sources.resolve())
        for context, source in missing:
            print(f"warning: {ts.name}: {context}: {source!r} is not in the file yet")
        for context, source in stale:
            print(f"warning: {ts.name}: {context}: {source!r} is no longer in the sources")
        behind = behind or bool(missing or stale)
    if behind:
        print("run `cmake --build build --target update_translations` and translate the new texts")
        return 77
    print(f"{len(files)} translation file(s) complete and up to date with the sources")
    return 0


if __name__ == "__main__":
    sys.exit(main())
