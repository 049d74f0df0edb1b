#!/usr/bin/env python3
"""The texts of the manual: what stands on the twins, and the examples of all functions.

    lisp_reference.py               writes docs/lisp_reference.md
    lisp_reference.py --check       compares it instead
    lisp_reference.py --table FILE  writes the texts as a C++ table, which the program is built with

A twin carries `/// (name args) -> result` and sentences behind it. Examples stand in tests/lisp/examples, one
file for a family; a line `; NAME` begins those of a function, up to a blank line or the next such line.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TARGET = ROOT / "docs" / "lisp_reference.md"
EXAMPLES = ROOT / "tests" / "lisp" / "examples"
TWIN = re.compile(r"((?:^///[^\n]*\n)+)KZ_TWIN\s+(\w+)_li\(", re.MULTILINE)

HEAD = """# Lisp reference

The library's functions as AutoLISP sees them. This page is made from the comments in the sources
(`scripts/lisp_reference.py`); change those, not this page.

`{ handle | entname }` is an entity, given as its entity name or as a handle string. Items in square
brackets are optional; a missing one and nil are the same. Flags are integers or T.

The Lisp shape of a field list is `(("NAME" value ...) ...)`. A bare string in the list names a field
without a value. A value is a string, an integer, a real, T (1), nil (0), a point, or a typed pair with a
DXF group code: `(1005 . "2F")` is a handle, `(1011 1.0 2.0 3.0)` a world position. A string behind a point
names the point's type by its first letter (M, D, O; any other P).

`drawing` is a drawing id: an entity name that is no entity, so AutoLISP's own functions refuse it. It is good
until its use ends. Where it may be left out, nil is the drawing in the editor. The functions on drawing ids
put a wrong or missing argument on the error list.

`dictName` and `xGroup` are the keys of an application's dictionary in the drawing, and of a record in it.
"""


def twins():
    for path in sorted((ROOT / "SRC").rglob("*.cpp")):
        text = path.read_text(encoding="utf-8")
        for found in TWIN.finditer(text):
            lines = [line[3:].strip() for line in found.group(1).strip().split("\n")]
            first = next((i for i, line in enumerate(lines) if line.startswith("(")), None)
            if first is None:
                sys.exit(f"{path}: {found.group(2)}_li has no usage comment")
            usage = lines[first]
            rest = lines[first + 1:]
            while rest and "->" not in usage:
                usage += " " + rest.pop(0)
            yield path.parent.relative_to(ROOT).as_posix(), found.group(2), usage, " ".join(rest)


def examples():
    """Family, name and lines of each function's examples, in the order of the files."""
    for path in sorted(EXAMPLES.glob("*.lsp")):
        name, lines = None, []
        for line in path.read_text(encoding="utf-8").split("\n") + [""]:
            begins = re.fullmatch(r"; (\S+)", line)
            if name and (begins or not line):
                if not lines:
                    sys.exit(f"{path}: {name} has no example")
                yield path.stem, name, lines
                name = None
            if begins:
                name, lines = begins.group(1), []
            elif name:
                lines.append(line)
            elif line and not line.startswith(";;"):
                sys.exit(f"{path}: no function is named above: {line}")


def literal(text):
    """A text as a C++ string literal."""
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("?", "\\?") + '"'


def table():
    """A row {name, family, usage, result, help, examples} for each twin and each block of examples."""
    shown = {name: (family, "\n".join(lines)) for family, name, lines in examples()}
    rows = []
    for folder, name, usage, text in twins():
        form, _, result = usage.partition("->")
        rows.append((name, folder, form.strip(), result.strip(), text, shown.pop(name, ("", ""))[1]))
    rows += [(name, family, "", "", "", lines) for name, (family, lines) in shown.items()]
    out = ["// Made by scripts/lisp_reference.py.", '#include "lisp_texts.h"', "", "namespace console {", "",
           "std::span<const host::LispText> lispTexts() {", "    static const host::LispText kRows[] = {"]
    out += ["        {" + ", ".join(literal(item) for item in row) + "}," for row in rows]
    out += ["    };", "    return kRows;", "}", "", "}  // namespace console", ""]
    return "\n".join(out)


def write(path, text):
    """Writes a file unless it says so already, so that what is built from it isn't built again."""
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def render():
    folders = {}
    for folder, name, usage, text in twins():
        folders.setdefault(folder, []).append((name, usage, text))
    out = [HEAD]
    for folder, rows in folders.items():
        out.append(f"\n## {folder}\n")
        for name, usage, text in rows:
            form, _, result = usage.partition("->")
            out.append(f"\n### {name}\n\n    {form.strip()}\n\nGives {result.strip()}.")
            if text:
                out.append(f"\n{text}")
            out.append("\n")
    return re.sub(r"\n{3,}", "\n\n", "\n".join(out)).rstrip() + "\n"


def main():
    if "--table" in sys.argv:
        write(pathlib.Path(sys.argv[-1]), table())
        return
    text = render()
    if "--check" in sys.argv:
        if not TARGET.exists() or TARGET.read_text(encoding="utf-8") != text:
            sys.exit("docs/lisp_reference.md is behind the sources: run scripts/lisp_reference.py")
        print("lisp reference: up to date")
        return
    write(TARGET, text)


if __name__ == "__main__":
    main()
