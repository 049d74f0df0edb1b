#!/usr/bin/env python3
"""Writes a drawing of N entities, the measure of loading and saving.

make_drawing.py COUNT OUT.dxf EMPTY.dxf [--mixed]: EMPTY.dxf is an empty drawing of the host (`kz eval -s`);
its text is taken as the frame, so that the drawing has all that readers ask for. The entities are lines with
five XDATA fields each; with --mixed they are what drawings of plants hold: lines, polylines, circles, arcs and
texts, one in ten with fields.
"""
import sys


def fields(number, x):
    return "1001\nBENCH\n" + "".join(
        f"1002\n{{\n1000\n{name}\n{code}\n{value}\n1002\n}}\n"
        for name, code, value in (
            ("TAG", 1000, f"P-{number:06d}"),
            ("SIZE", 1040, f"{x / 3:.10f}"),
            ("CLASS", 1070, number % 1000),
            ("COUNT", 1071, number * 7),
            ("NOTE", 1000, "carbon steel"),
        )
    )


def head(kind, handle, *classes):
    first = f"  0\n{kind}\n  5\n{handle:X}\n330\n1F\n100\nAcDbEntity\n  8\n0\n"
    return first + "".join(f"100\n{name}\n" for name in classes)


def line(number, handle, x):
    return head("LINE", handle, "AcDbLine") + (
        f" 10\n{x:.10f}\n 20\n{x / 2:.10f}\n 30\n0.0\n 11\n{x + 1:.10f}\n 21\n{x / 2 + 1:.10f}\n 31\n0.0\n")


def polyline(number, handle, x):
    points = "".join(f" 10\n{x + i * 1.37:.12f}\n 20\n{x / (i + 1):.12f}\n" for i in range(6))
    return head("LWPOLYLINE", handle, "AcDbPolyline") + f" 90\n6\n 70\n1\n 43\n0.0\n" + points


def circle(number, handle, x):
    return head("CIRCLE", handle, "AcDbCircle") + (
        f" 10\n{x:.12f}\n 20\n{x / 3:.12f}\n 30\n0.0\n 40\n{1 + number % 7 / 3:.12f}\n")


def arc(number, handle, x):
    return circle(number, handle, x).replace("CIRCLE", "ARC") + (
        f"100\nAcDbArc\n 50\n{number % 360:.6f}\n 51\n{(number * 7) % 360:.6f}\n")


def label(number, handle, x):
    return head("TEXT", handle, "AcDbText") + (
        f" 10\n{x:.12f}\n 20\n{x / 2:.12f}\n 30\n0.0\n 40\n2.5\n  1\nPIPE {number:07d} DN {number % 600}\n"
        "100\nAcDbText\n")


KINDS = (line, polyline, line, label, line, circle, polyline, line, arc, label)


def lined(number, handle):
    x = number * 0.7312345
    return line(number, handle, x) + fields(number, x)


def mixed(number, handle):
    x = number % 100003 * 0.7312345
    return KINDS[number % 10](number, handle, x) + (fields(number, x) if number % 10 == 0 else "")


def main():
    count, target, frame = int(sys.argv[1]), sys.argv[2], sys.argv[3]
    entity = mixed if "--mixed" in sys.argv else lined
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
