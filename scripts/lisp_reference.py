#!/usr/bin/env python3
"""The manual: docs/lisp_reference.md of the library's functions, docs/lisp_manual.md of the language.

    lisp_reference.py [KZ]          writes both pages; KZ is the program, build/release/kz when it isn't named
    lisp_reference.py --check [KZ]  compares them instead, and looks whether each twin has a test
    lisp_reference.py --table FILE  writes the texts as a C++ table, which the program is built with

The functions of the language and the commands are those that the program has, with the texts in its tables.

A twin carries `/// (name args) -> result` and sentences behind it. Examples stand in tests/lisp/examples, one
file for a family; a line `; NAME` begins those of a function, up to a blank line or the next such line.
"""
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
REFERENCE = ROOT / "docs" / "lisp_reference.md"
MANUAL = ROOT / "docs" / "lisp_manual.md"
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

MANUAL_HEAD = """# Lisp manual

The functions of the language and the commands, as the program has them. This page is made from the tables in
`host/lisp` and `host/command` and from the examples in `tests/lisp/examples` (`scripts/lisp_reference.py`);
change those, not this page. The library's functions stand in `docs/lisp_reference.md`. In the console,
`(kz_help 'name)`, `? name` and `kz help name` show the same.

Items in square brackets are optional. An example shows behind `; =>` the value as the console prints it, behind
`; prints` what it prints, behind `; error:` the error that it ends in; `...` stands for anything, and
`;<` shows what the user answers. The lines of a function share a new drawing.
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


def code(lines):
    return "\n" + "\n".join("    " + line for line in lines) + "\n" if lines else ""


def reference():
    """The page of the library's functions."""
    shown = {name: lines for _, name, lines in examples()}
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
            out.append(code(shown.get(name)) + "\n")
    return finished(out)


def introduction(family):
    """What the first line of a file of examples says that they are of."""
    path = EXAMPLES / f"{family}.lsp"
    found = path.exists() and re.match(r";; Examples of (.*)", path.read_text(encoding="utf-8"))
    return found.group(1)[0].upper() + found.group(1)[1:] if found else ""


def manual(program):
    """The page of the language and the commands."""
    told = subprocess.run([program, "help", "--json"], capture_output=True, text=True, check=True)
    known = json.loads(told.stdout)
    families = {}
    for function in known["functions"]:
        if function["kind"] == "language":
            families.setdefault(function["family"], []).append(function)
    out = [MANUAL_HEAD, "\n## Families\n"]
    out += [f"- [{family}](#{family}): " + " ".join(f"`{row['name']}`" for row in rows)
            for family, rows in sorted(families.items())]
    out.append("- [Commands](#commands)\n")
    for family, rows in sorted(families.items()):
        out.append(f"\n## {family}\n\n{introduction(family)}\n")
        for row in rows:
            lines = row["examples"].split("\n") if row["examples"] else []
            out.append(f"\n### `{row['name']}`\n\n    {row['usage']}\n\n{row['help']}\n{code(lines)}")
    out.append("\n## Commands\n\n| command | short | does |\n|---|---|---|")
    out += [f"| {row['name']} | {row['alias']} | {row['help']} |" for row in known["commands"]]
    return finished(out)


def finished(parts):
    return re.sub(r"\n{3,}", "\n\n", "\n".join(parts)).rstrip() + "\n"


def untested():
    """Twins that no test names."""
    tests = [path for kind in ("*.lsp", "*.cpp") for path in (ROOT / "tests").rglob(kind)]
    words = set()
    for path in tests:
        words.update(re.findall(r"\w+", path.read_text(encoding="utf-8")))
    return [name for _, name, _, _ in twins() if name not in words and name + "_li" not in words]


def main():
    if "--table" in sys.argv:
        write(pathlib.Path(sys.argv[-1]), table())
        return
    named = [word for word in sys.argv[1:] if not word.startswith("--")]
    pages = {REFERENCE: reference(), MANUAL: manual(named[0] if named else ROOT / "build/release/kz")}
    if "--check" not in sys.argv:
        for path, text in pages.items():
            write(path, text)
        return
    behind = [f"{path.relative_to(ROOT)} is behind: run scripts/lisp_reference.py" for path, text in pages.items()
              if not path.exists() or path.read_text(encoding="utf-8") != text]
    behind += [f"{name} is named in no test" for name in untested()]
    if behind:
        sys.exit("\n".join(behind))
    print("the manual is up to date")


if __name__ == "__main__":
    main()
