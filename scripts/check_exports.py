#!/usr/bin/env python3
"""Compares the library's dynamic symbol table with the names its headers and twins declare.

check_exports.py LIBRARY: every function marked KZ_EXPORT in include/kz and every KZ_TWIN is exported, and
nothing else is.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def declared():
    names = set()
    for header in (ROOT / "include" / "kz").glob("*.h"):
        if header.name == "kz_platform.h":
            continue
        text = re.sub(r"//[^\n]*", "", header.read_text(encoding="utf-8"))
        names |= set(re.findall(r"KZ_EXPORT[^;{(]*?\b(\w+)\s*\(", text))
        names |= set(re.findall(r"KZ_EXPORT\s+extern[^;(]*?\b(\w+)\s*(?:\[\s*\])?;", text))
    for source in (ROOT / "SRC").rglob("*.cpp"):
        names |= set(re.findall(r"^KZ_TWIN\s+(\w+)\(", source.read_text(encoding="utf-8"), re.M))
    return names


def exported(library):
    out = subprocess.run(["nm", "-D", "--defined-only", library], capture_output=True, text=True,
                         check=True)
    names = {line.split()[-1] for line in out.stdout.splitlines() if line.split()[-2] in "TDBR"}
    return {name for name in names if not name.startswith(("_", "asan", "__"))}


def main():
    wanted, present = declared(), exported(sys.argv[1])
    missing, extra = sorted(wanted - present), sorted(present - wanted)
    for name in missing:
        print(f"not exported: {name}")
    for name in extra:
        print(f"exported but not declared: {name}")
    print(f"{len(wanted & present)} names exported and declared")
    sys.exit(1 if missing or extra else 0)


if __name__ == "__main__":
    main()
