#!/usr/bin/env python3
"""Fails when a function of src/ is longer than the limit, listing each one with its length.

A function's length is counted in lines from its opening brace to its closing brace, both
included. The scanner is a small brace matcher, not a parser: comments, strings, character
literals and preprocessor lines are blanked first, then every brace at namespace or class level
is classed as a scope (namespace, class, struct, union, enum, extern "C"), an initializer
(`= {`, or a braced member initializer after a constructor's `:`), or a function body, whose
lambdas and local classes count towards the function. Usage:

    check-function-length.py [SRC] [--list]

--list prints every function over the limit, exceptions included, longest first.
"""
import re
import sys
from pathlib import Path

LIMIT = 80

# Functions allowed over the limit, as "path:qualified name". Empty now that every function is
# under it, and it stays so: a function that grows past the limit is split, not listed.
KNOWN_EXCEPTIONS: set[str] = set()

SCOPE_WORDS = re.compile(r"\b(namespace|class|struct|union|enum)\b")
NAME_BEFORE_PARAMS = re.compile(r"([~\w:<>,\s*&=!+\-\[\]/%^|]*?)\s*\($")


def blank(text):
    """Replaces comments, string and character literals and preprocessor lines with spaces,
    keeping every newline so that line numbers stay right."""
    out = []
    i, n = 0, len(text)
    at_line_start = True
    while i < n:
        c = text[i]
        if at_line_start and c == "#":
            # A preprocessor line, with its continuations.
            while i < n and text[i] != "\n":
                if text[i] == "\\" and i + 1 < n and text[i + 1] == "\n":
                    out.append(" \n")
                    i += 2
                    continue
                out.append(" ")
                i += 1
            continue
        if c == "\n":
            at_line_start = True
            out.append(c)
            i += 1
            continue
        if not c.isspace():
            at_line_start = False
        if text.startswith("//", i):
            while i < n and text[i] != "\n":
                out.append(" ")
                i += 1
            continue
        if text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            out.append(re.sub(r"[^\n]", " ", text[i:end]))
            i = end
            continue
        raw = re.match(r'R"([^(\s]*)\(', text[i:i + 20])
        if raw and (i == 0 or not (text[i - 1].isalnum() or text[i - 1] == "_")):
            end = text.find(")" + raw.group(1) + '"', i)
            end = n if end < 0 else end + len(raw.group(1)) + 2
            out.append(re.sub(r"[^\n]", " ", text[i:end]))
            i = end
            continue
        if c in "\"'":
            if c == "'" and i > 0 and text[i - 1].isalnum() and text[i + 1:i + 2].isalnum():
                out.append(" ")  # a digit separator: 1'000'000
                i += 1
                continue
            j = i + 1
            while j < n and text[j] != c and text[j] != "\n":
                j += 2 if text[j] == "\\" else 1
            out.append(c + " " * (min(j, n) - i - 1) + c)
            i = j + 1
            continue
        out.append(c)
        i += 1
    return "".join(out)


def matching_brace(code, open_at):
    depth = 0
    for k in range(open_at, len(code)):
        if code[k] == "{":
            depth += 1
        elif code[k] == "}":
            depth -= 1
            if depth == 0:
                return k
    return len(code) - 1


def function_name(header):
    """The qualified name before the parameter list of the function header."""
    depth = 0
    for k, ch in enumerate(header):
        if ch == "(":
            if depth == 0:
                words = re.findall(r"[~\w:]+(?:<[^()]*>)?(?:\s*operator\s*\S+)?", header[:k])
                return words[-1].strip() if words else "?"
            depth += 1
    return "?"


def params_close(header):
    """Index just past the ')' that closes the first top-level parameter list, or -1."""
    depth = 0
    opened = False
    for k, ch in enumerate(header):
        if ch == "(":
            depth += 1
            opened = True
        elif ch == ")":
            depth -= 1
            if opened and depth == 0:
                return k + 1
    return -1


def classify(header):
    """'scope', 'init' or 'function' for the text since the last ';', '{' or '}' of a scope."""
    text = " ".join(header.split())
    if not text:
        return "init"
    stripped = re.sub(r"^template\s*<.*?>\s*", "", text)
    if re.search(r"\b(namespace|class|struct|union|enum)\b[^()]*$", stripped):
        return "scope"  # also after a macro call that takes no semicolon
    if text.startswith('extern "') or SCOPE_WORDS.match(stripped) or (
            SCOPE_WORDS.search(stripped) and "(" not in stripped.split(":")[0]):
        if not re.search(r"\)\s*(const|noexcept|override|final|->|$)", stripped):
            return "scope"
    if "(" not in text:
        return "init"
    before_params = text[:text.index("(")]
    if "=" in before_params.replace("operator=", "").replace("==", "").replace("<=", ""):
        return "init"
    return "function"


def functions_in(code):
    """Yields (name, first line, last line) of each function body in the blanked code."""
    i, n = 0, len(code)
    start = 0  # where the current header begins
    while i < n:
        ch = code[i]
        if ch in ";}":
            start = i + 1
        elif ch == "{":
            header = code[start:i]
            kind = classify(header)
            if kind == "scope":
                start = i + 1
            elif kind == "init":
                i = matching_brace(code, i)
                continue  # the header goes on (a brace initializer inside a declaration)
            else:
                close = params_close(header)
                rest = header[close:] if close >= 0 else ""
                init_list = re.match(r"\s*(const\s*|noexcept\s*)*:(?!:)", rest)
                if init_list and not re.search(r"[)}]\s*$", header):
                    # A braced member initializer, such as  : name{value}  ; skip it.
                    i = matching_brace(code, i) + 1
                    continue
                end = matching_brace(code, i)
                first = code.count("\n", 0, i) + 1
                last = code.count("\n", 0, end) + 1
                yield function_name(header), first, last
                i = end
                start = end + 1
        i += 1


def long_functions(src, limit=LIMIT):
    found = []
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp", ".hpp") or not path.is_file():
            continue
        code = blank(path.read_text(encoding="utf-8", errors="replace"))
        for name, first, last in functions_in(code):
            length = last - first + 1
            if length > limit:
                found.append((length, f"{path.relative_to(src).as_posix()}:{name}", first))
    return sorted(found, key=lambda f: (-f[0], f[1]))


def main():
    args = [a for a in sys.argv[1:] if not a.startswith("--")]
    src = Path(args[0] if args else Path(__file__).resolve().parent.parent / "src").resolve()
    found = long_functions(src)
    if "--list" in sys.argv:
        for length, where, line in found:
            print(f"{length:4} {where} (line {line})")
        return 0
    status = 0
    new = [f for f in found if f[1] not in KNOWN_EXCEPTIONS]
    if new:
        print(f"Functions longer than {LIMIT} lines (split them):")
        for length, where, line in new:
            print(f"  {where} (line {line}): {length} lines")
        status = 1
    present = {f[1] for f in found}
    stale = sorted(KNOWN_EXCEPTIONS - present)
    if stale:
        print("Known exceptions that are now short enough or gone (take them out of the list):")
        for where in stale:
            print(f"  {where}")
        status = 1
    if status == 0:
        print(f"No function over {LIMIT} lines besides {len(KNOWN_EXCEPTIONS)} known exceptions")
    return status


if __name__ == "__main__":
    sys.exit(main())
