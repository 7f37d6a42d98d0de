"""Reads what docs/ARCHITECTURE.md promises about the sources, for the guard-rail scripts."""
import re
from pathlib import Path

DOC = Path(__file__).resolve().parent.parent / "docs" / "ARCHITECTURE.md"


def section(text, title):
    """The text of the '## title' section."""
    match = re.search(rf"^## {re.escape(title)}\n(.*?)(?=^## |\Z)", text, re.M | re.S)
    if not match:
        raise SystemExit(f"{DOC.name} has no section '{title}'")
    return match.group(1)


def blocks(text):
    return re.findall(r"^```\n(.*?)^```", text, re.M | re.S)


def layer_rows(doc=DOC):
    """The folders of the layer picture, top row first, each row a list of folders under src/.

    A row names its folders in columns set apart by two or more spaces; the first column of a
    line that continues a description names no folder. Rows above the 'tagmoor_core' rule are
    folders of src/app, the ones below it folders of src/core; 'app' alone is src/app itself."""
    text = section(doc.read_text(encoding="utf-8"), "Layers")
    picture = blocks(text)[0]
    src = doc.parent.parent / "src"
    rows, top = [], "app"
    for line in picture.splitlines():
        if re.match(r"\s*-{3,}", line):
            top = "core"
            continue
        row = []
        for column in re.split(r"\s{2,}", line.strip()):
            if column == "app" and top == "app":
                row.append("app")
            elif re.fullmatch(r"[\w/]+", column):
                name = column if column.startswith(top + "/") else f"{top}/{column}"
                if (src / name).is_dir():
                    row.append(name)
        if row:
            rows.append(row)
    return rows


def command_line_uses(doc=DOC):
    """The core folders that the paragraph on cli/ says the command line uses."""
    text = section(doc.read_text(encoding="utf-8"), "Layers")
    match = re.search(r"`cli/` sits beside the app and uses (.*?)\.", text, re.S)
    if not match:
        raise SystemExit(f"{DOC.name} does not say which folders cli/ uses")
    return {f"core/{name}" for name in re.findall(r"`(\w+)`", match.group(1))}


def library_folders(doc=DOC):
    """Library -> the folders of src/ that may include its headers, from the 'Libraries' table
    of the Layers section: rows of '| library | include prefix | folders |'."""
    text = section(doc.read_text(encoding="utf-8"), "Layers")
    result = {}
    for line in text.splitlines():
        cells = [c.strip() for c in line.strip().strip("|").split("|")]
        if len(cells) != 3 or not line.lstrip().startswith("|") or set(cells[0]) <= set("-: "):
            continue
        if cells[0] == "Library":
            continue
        prefixes = re.findall(r"`([^`]+)`", cells[1])
        folders = re.findall(r"`([^`]+)/`", cells[2])
        result[cells[0]] = (prefixes, folders)
    return result
