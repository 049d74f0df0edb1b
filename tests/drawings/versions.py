"""Drawings saved as other versions are clean for another reader, and say the same. Drawings of other makers
are taken from the folder KZ_DRAWINGS, when there is one."""
import os
import pathlib
import sys

import ezdxf
from ezdxf import colors
from ezdxf.lldxf.encoding import decode_dxf_unicode

from judge import FOLDER, audited, expect, finish, run

VERSIONS = ("R2000", "R2004", "R2007", "R2010", "R2013", "R2018")


def make(version):
    """A drawing with texts of several scripts and with what only later versions know."""
    document = ezdxf.new(version, setup=True)
    document.encoding = "cp1251" if version < "R2007" else "utf8"
    document.header["$DWGCODEPAGE"] = "ANSI_1251"
    document.appids.new("PLANT")
    document.layers.new("Трубы", dxfattribs={"color": 3})
    space = document.modelspace()
    line = space.add_line((0, 0), (5.25, 1 / 3), dxfattribs={"layer": "Трубы"})
    line.set_xdata("PLANT", [(1000, "насос 12"), (1040, 1e-7), (1010, (1, 2, 3)), (1070, 5)])
    space.add_text("Насос ±°", dxfattribs={"height": 2.5})
    space.add_mtext("первая\\Pвторая " + "длинно " * 60)
    space.add_lwpolyline([(0, 0, 0, 0, 0.5), (3, 0), (3, 3)], close=True)
    space.add_circle((1, 2), 0.1)
    hatch = space.add_hatch(color=2)
    hatch.paths.add_polyline_path([(0, 0), (1, 0), (1, 1)])
    block = document.blocks.new("PUMP")
    block.add_attdef("TAG", (0, 1.5), dxfattribs={"height": 0.3})
    space.add_blockref("PUMP", (9, 0)).add_attrib("TAG", "P-1", (9, 1.5))
    document.groups.new("KZ_1").extend([line, space[1]])
    if version >= "R2004":
        line.rgb = (200, 10, 10)
        line.transparency = 0.5
        hatch.set_gradient(colors.RED and (10, 10, 10), (200, 200, 200))
    path = FOLDER / f"{version}.dxf"
    document.saveas(path)
    # The judge writes one code page for all drawings in UTF-8.
    path.write_bytes(path.read_bytes().replace(b"ANSI_1252", b"ANSI_1251"))
    return path


def told(path):
    """What a drawing says: its entities with their places, texts and data."""
    document = audited(path)
    lines = []
    for entity in document.modelspace():
        values = [entity.dxftype(), decode_dxf_unicode(entity.dxf.layer)]
        for name in ("start", "end", "insert", "center", "radius", "text", "height"):
            if entity.dxf.hasattr(name):
                value = entity.dxf.get(name)
                values.append(decode_dxf_unicode(value) if isinstance(value, str) else value)
        if entity.dxftype() == "MTEXT":
            values.append(decode_dxf_unicode(entity.text))
        if entity.has_xdata("PLANT"):
            values += [(tag.code, decode_dxf_unicode(tag.value) if isinstance(tag.value, str) else tag.value)
                       for tag in entity.get_xdata("PLANT")]
        lines.append(values)
    groups = {name: [entity.dxf.handle for entity in group] for name, group in document.groups}
    return lines, groups


def check_made():
    for source in ("R2000", "R2007", "R2018"):
        path = make(source)
        before = told(path)
        for target in VERSIONS:
            out, back = FOLDER / f"{source}_{target}.dxf", FOLDER / f"{source}_{target}_back.dxf"
            run("convert", path, out, "--version", target)
            expect(told(out) == before, f"{source} as {target} says something else")
            expect(ezdxf.readfile(out).acad_release == target, f"{source} as {target}: version")
            run("convert", out, back, "--version", source)
            expect(told(back) == before, f"{source} as {target} and back says something else")
            if source == target:
                expect(out.read_bytes() == path.read_bytes(), f"{source}: not the same bytes")
    _, errors = run("convert", FOLDER / "R2018.dxf", FOLDER / "out.dxf", "--version", "2000")
    for part in ("true colour", "transparency", "gradient"):
        expect(part in errors, f"{part} is not told: {errors}")


def check_others(folder):
    for path in sorted(folder.glob("*.dxf")):
        try:
            auditor = ezdxf.readfile(path).audit()
        except (ezdxf.DXFError, ValueError, LookupError):
            continue
        _, errors = run("convert", path, FOLDER / "same.dxf", status=None)
        if errors or auditor.errors:
            continue
        expect((FOLDER / "same.dxf").read_bytes() == path.read_bytes(), f"{path.name}: not the same bytes")
        for target in VERSIONS:
            out = FOLDER / "other.dxf"
            run("convert", path, out, "--version", target)
            found = ezdxf.readfile(out).audit()
            expect(not found.errors and len(found.fixes) <= len(auditor.fixes),
                   f"{path.name} as {target}: {[error.message for error in found.errors + found.fixes][:3]}")


check_made()
if "KZ_DRAWINGS" in os.environ:
    check_others(pathlib.Path(os.environ["KZ_DRAWINGS"]))
else:
    print("drawings of other makers: skipped, KZ_DRAWINGS names no folder", file=sys.stderr)
finish()
