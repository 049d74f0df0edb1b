#!/usr/bin/env python3
"""Writes a drawing of N lines with five XDATA fields each, the measure of loading and saving.

make_drawing.py COUNT OUT.dxf [EMPTY.dxf]: EMPTY.dxf is an empty drawing of the host (`kz eval -s`);
its text is taken as the frame, so that the drawing has all that readers ask for.
"""
import sys


def entity(number, handle):
    x = number * 0.7312345
    fields = "".join(
        f"1002\n{{\n1000\n{name}\n{code}\n{value}\n1002\n}}\n"
        for name, code, value in (
            ("TAG", 1000, f"P-{number:06d}"),
            ("SIZE", 1040, f"{x / 3:.10f}"),
            ("CLASS", 1070, number % 1000),
            ("COUNT", 1071, number * 7),
            ("NOTE", 1000, "carbon steel"),
        )
    )
    return (
        f"  0\nLINE\n  5\n{handle:X}\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n"
        f" 10\n{x:.10f}\n 20\n{x / 2:.10f}\n 30\n0.0\n 11\n{x + 1:.10f}\n 21\n{x / 2 + 1:.10f}\n 31\n0.0\n"
        f"1001\nBENCH\n{fields}"
    )


def main():
    count, target, frame = int(sys.argv[1]), sys.argv[2], sys.argv[3]
    with open(frame, encoding="utf-8") as file:
        text = file.read()
    seed = 0x1000
    app = (
        "  0\nAPPID\n  5\nFFF\n330\n9\n100\nAcDbSymbolTableRecord\n100\nAcDbRegAppTableRecord\n"
        "  2\nBENCH\n 70\n0\n"
    )
    text = text.replace("$HANDSEED\n  5\n40\n", f"$HANDSEED\n  5\n{seed + count:X}\n")
    at = text.index("  0\nENDTAB", text.index("AcDbRegAppTableRecord"))
    text = text[:at] + app + text[at:]
    mark = "  2\nENTITIES\n"
    at = text.index(mark) + len(mark)
    with open(target, "w", encoding="utf-8", newline="") as file:
        file.write(text[:at])
        for number in range(count):
            file.write(entity(number, seed + number))
        file.write(text[at:])


if __name__ == "__main__":
    main()
