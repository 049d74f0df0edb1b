"""What a change doesn't touch comes back byte for byte."""
import random

import ezdxf

from judge import FOLDER, expect, finish, objects, run


def make(version, line_end):
    document = ezdxf.new(version, setup=True)
    document.appids.new("FOREIGN")
    space = document.modelspace()
    for number in range(30):
        entity = (space.add_line((0, 0), (number, 1)), space.add_text(f"^ ±{number}"),
                  space.add_lwpolyline([(0, 0), (number, 3), (5, 5)]))[number % 3]
        entity.set_xdata("FOREIGN", [(1000, "x" * number), (1040, 1e-7), (1002, "{"), (1002, "}")])
    document.groups.new("G").extend(space[:5])
    path = FOLDER / f"made_{version}_{len(line_end)}.dxf"
    document.saveas(path)
    text = path.read_bytes().replace(b"\r\n", b"\n")
    path.write_bytes(text.replace(b"\n", line_end))
    return path


def kind(part):
    return part.split(b"\n")[1].strip()


def handle(part):
    lines = part.split(b"\n")
    return next((lines[i + 1].strip() for i in range(0, len(lines) - 1, 2) if lines[i].strip() in (b"5", b"105")),
                b"")


def check(path, chance):
    same, saved = FOLDER / "same.dxf", FOLDER / "changed.dxf"
    run("eval", "-d", path, "-s", same, "1")
    expect(same.read_bytes() == path.read_bytes(), f"{path.name}: unchanged, but not the same bytes")
    before = objects(path)
    known = {handle(part): part for part in before}
    wanted = chance.sample(sorted(known), min(len(known), 25))
    # Of these some are no objects that take data, as heads of tables; they stay as they are.
    changes = " ".join(f'"{number.decode()}"' for number in wanted if number)
    _, errors = run("eval", "-d", path, "-s", saved, '(regapp "KZ_TEST")',
                    f"(foreach h (list {changes}) (if (and (setq e (handent h)) (setq d (entget e))) (entmod"
                    ' (append d (list (list -3 (list "KZ_TEST" (cons 1070 7))))))))',)
    after = objects(saved)
    added = 0
    found = {handle(part): part for part in after}
    for part in before:
        if handle(part) == b"" or kind(part) == b"SECTION":
            continue
        new = found.get(handle(part), b"")
        if new == part:
            continue
        added += 1
        mark = b"1001\nKZ_TEST\n1070\n7"
        rest = new.replace(b"\r", b"").replace(mark, b"").replace(b"\n", b"")
        expect(handle(part) in wanted and mark in new.replace(b"\r", b"")
               and rest == part.replace(b"\r", b"").replace(b"\n", b""),
               f"{path.name}: {kind(part).decode()} {handle(part).decode()} changed in more than its data")
        expect((b"\r\n" in new) == (b"\r\n" in part), f"{path.name}: line ends")
    expect(added > 0, f"{path.name}: nothing changed")
    expect(len(after) - len(before) == 1, f"{path.name}: {len(before)} objects, {len(after)} saved")


random_numbers = random.Random(7)
for release in ("R2000", "R2007", "R2018"):
    for end in (b"\n", b"\r\n"):
        check(make(release, end), random_numbers)
finish()
