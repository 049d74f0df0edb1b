"""A drawing of another maker comes back from "open, set one field on one entity, save" with only that
entity changed, clean in the other's audit, with the field in it."""
import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode

from judge import FOLDER, audited, expect, finish, objects, run


def decoded(value):
    return decode_dxf_unicode(value) if isinstance(value, str) else value


def make(version):
    document = ezdxf.new(version, setup=True)
    document.appids.new("FOREIGN")
    document.layers.new("Трубы", dxfattribs={"color": 3})
    # The judge doesn't decode escapes in layer names, so before R2007 all names are in one code page.
    document.encoding = "cp1251" if version < "R2007" else "utf8"
    pump_layer = "Насосы" if version < "R2007" else "泵"
    document.layers.new(pump_layer, dxfattribs={"color": 5, "linetype": "DASHED"})
    space = document.modelspace()
    block = document.blocks.new("PUMP")
    block.add_circle((0, 0), 1)
    block.add_attdef("TAG", (0, 1.5), dxfattribs={"height": 0.3})
    line = space.add_line((0, 0), (5.25, 1 / 3), dxfattribs={"layer": "Трубы"})
    line.set_xdata("FOREIGN", [(1000, "чужое 外"), (1040, 1e-7), (1010, (1, 2, 3))])
    space.add_circle((1, 2), 0.1, dxfattribs={"layer": pump_layer})
    space.add_lwpolyline([(0, 0, 0, 0, 0.5), (3, 0), (3, 3)], close=True)
    space.add_polyline2d([(0, 0), (1, 1), (2, 0)])
    space.add_polyline3d([(0, 0, 0), (1, 1, 1)])
    space.add_text("Насос 12 泵 ±°", dxfattribs={"height": 2.5})
    space.add_mtext("первая\\Pвторая 第二 " + "длинно " * 60)
    for number in range(3):
        insert = space.add_blockref("PUMP", (number * 10, 0))
        insert.add_attrib("TAG", f"P-{number} 泵", (number * 10, 1.5))
    document.layout("Layout1").add_line((0, 0), (1, 1))
    path = FOLDER / f"{version}.dxf"
    document.saveas(path)
    return path, line.dxf.handle


def check(version):
    path, handle = make(version)
    saved = FOLDER / f"{version}_saved.dxf"
    out, _ = run("eval", "-d", path, "-s", saved,
                 f'(kz_XData_setFld "{handle}" "труба 管 DN50" "size" "PLANT")',
                 f'(kz_XData_setFld "{handle}" 50 "DN" "PLANT")')
    expect(out == "T\nT\n", f"{version}: {out!r}")

    before, after = objects(path), objects(saved)
    known = set(before)
    changed = [part for part in after if part not in known]
    kinds = sorted(part.split(b"\n")[1].strip() for part in changed)
    # The entity, the application's record, and the section that holds the handle seed.
    expect(kinds == [b"APPID", b"LINE", b"SECTION"], f"{version}: changed {kinds}")
    new = next(part for part in changed if part.split(b"\n")[1].strip() == b"LINE")
    old = next(part for part in before if b"\n" + handle.encode() + b"\n330" in part
               and part.split(b"\n")[1].strip() == b"LINE")
    expect(new.startswith(old), f"{version}: the entity's own groups changed")
    header = [part for part in changed if part.split(b"\n")[1].strip() == b"SECTION"][0].split(b"\n")
    old_header = before[0].split(b"\n")
    lines = [at for at, line in enumerate(header) if line.strip() != old_header[at].strip()]
    expect(len(lines) == 1 and header[lines[0] - 2].strip() == b"$HANDSEED",
           f"{version}: the header changed at {lines}")

    document = audited(saved)
    entity = document.entitydb[handle]
    expect([(tag.code, decoded(tag.value)) for tag in entity.get_xdata("PLANT")] == [
        (1002, "{"), (1000, "size"), (1000, "труба 管 DN50"), (1002, "}"),
        (1002, "{"), (1000, "DN"), (1070, 50), (1002, "}")], f"{version}: fields")
    expect(decoded(entity.get_xdata("FOREIGN")[0].value) == "чужое 外", f"{version}: foreign data")

    out, _ = run("eval", "-d", saved, f'(kz_XData_getFldList "{handle}" nil "PLANT")')
    expect(out == '(("SIZE" "труба 管 DN50") ("DN" 50))\n', f"{version}: read back {out!r}")


for dxf_version in ("R2000", "R2004", "R2007", "R2010", "R2013", "R2018"):
    check(dxf_version)
finish()
