#!/usr/bin/env python3
"""Rules of the house that no compiler checks; run by the tests.

Columns, blanks and line ends of sources, a comment at the head of each file, includes that point only to
lower floors, documents that name files which exist, sources that are part of the build.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COLUMNS = 100

# What each floor may include, by the first part of the include path.
PLATFORM = {"acad"}
TOOLS = {"kz_tls21an"}
FLOORS = {
    "tools": TOOLS,
    "host": TOOLS | PLATFORM | {"host", "base", "db", "dxf", "edit", "lisp", "rx", "command", "dcl"},
    "include": {"kz"},
    "SRC": {"kz"},
    "suite": TOOLS | PLATFORM | {"kz", "host"},
    "console": TOOLS | PLATFORM | {"kz", "host", "CLI"},
}
# What of the front both halves of the library use: the functions of other modules.
SHARED = {"APP/services.h"}
LEFTOVERS = re.compile(r"\b(TODO|FIXME|HACK)\b")


def tracked():
    out = subprocess.run(["git", "ls-files"], cwd=ROOT, capture_output=True, text=True, check=True)
    return [ROOT / name for name in out.stdout.splitlines()]


def check_source(path, report):
    name = path.relative_to(ROOT)
    text = path.read_text(encoding="utf-8")
    lines = text.split("\n")
    if "\r" in text:
        report(name, 1, "carriage returns")
    if not text.endswith("\n") or text.endswith("\n\n"):
        report(name, len(lines), "the file should end with one line end")
    for number, line in enumerate(lines, 1):
        if len(line) > COLUMNS:
            report(name, number, f"{len(line)} columns (at most {COLUMNS})")
        if line != line.rstrip():
            report(name, number, "blanks at the end")
        if "\t" in line:
            report(name, number, "a tab")
        if LEFTOVERS.search(line):
            report(name, number, "a leftover note")
    if not text.startswith("//"):
        report(name, 1, "a file opens with a sentence on what is here")


def check_includes(path, report):
    name = path.relative_to(ROOT)
    floor = name.parts[0]
    if floor not in FLOORS:
        return
    allowed = FLOORS[floor]
    for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1):
        found = re.match(r'\s*#include "([^"]+)"', line)
        if not found:
            continue
        target = found.group(1)
        first = target.split("/")[0]
        if name.as_posix() == "include/kz/kz_platform.h":
            if first not in TOOLS | PLATFORM:
                report(name, number, f"{target}: only the platform and the tools library")
            continue
        own = (path.parent / target).exists() or (ROOT / floor / target).exists()
        if first not in allowed and not own:
            report(name, number, f"{floor} must not include {target}")
        if floor == "SRC" and "SRC/ACAD" in name.as_posix() and own:
            inside = (ROOT / "SRC" / target)
            front = inside.exists() and len(inside.relative_to(ROOT / "SRC").parts) > 1
            if front and "ACAD" not in target and target not in SHARED:
                report(name, number, f"SRC/ACAD must not include the front ({target})")


def check_documents(paths, report):
    for path in paths:
        if path.suffix != ".md" or path.name == "CHANGELOG.md":
            continue
        name = path.relative_to(ROOT)
        for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1):
            for target in re.findall(r"`((?:[\w.]+/)+[\w.]+\.\w+)`", line):
                if target.startswith("build/") or (ROOT / target).exists():
                    continue
                if any((ROOT / base / target).exists() for base in ("host/include", "host/api",
                                                                    "tools/include", "include")):
                    continue
                report(name, number, f"{target} does not exist")


def main():
    findings = []

    def report(name, line, what):
        findings.append(f"{name}:{line}: {what}")

    paths = [path for path in tracked() if path.exists()]
    for path in paths:
        if path.suffix in (".cpp", ".h"):
            check_source(path, report)
            check_includes(path, report)
    check_documents(paths, report)
    print("\n".join(findings) if findings else "tidy: clean")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
