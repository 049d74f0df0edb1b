#!/usr/bin/env python3
"""Drawings of R12 are lifted to R2000 when something in them changes; another reader finds all of them there."""
import math

import ezdxf
from judge import FOLDER, audited, expect, finish, run


def made():
    """An R12 drawing with every kind of entity that the version has."""
    document = ezdxf.new("R12", setup=True)
    document.layers.add("PIPES", color=3, linetype="DASHED")
    block = document.blocks.new("TAG")
    block.add_line((0, 0), (1, 1))
    block.add_attdef("NO", (0, 0), "", dxfattribs={"height": 2.5})
    space = document.modelspace()
    space.add_line((0, 0, 1), (10, 5, 2), dxfattribs={"layer": "PIPES", "thickness": 2})
    space.add_circle((1, 2), 3)
    space.add_arc((1, 2), 3, 10, 200)
    space.add_point((1, 2, 3))
    space.add_text("Rohr Ø50%%d", dxfattribs={"height": 2.5, "halign": 1, "valign": 2, "align_point": (5, 5)})
    space.add_solid([(0, 0), (1, 0), (0, 1), (1, 1)])
    space.add_trace([(0, 0), (1, 0), (0, 1), (1, 1)])
    space.add_3dface([(0, 0, 0), (1, 0, 0), (1, 1, 1), (0, 1, 1)])
    space.add_polyline2d([(0, 0, 0, 0, 1), (10, 0, 0, 0, 0), (10, 10, 0, 0, 0)], format="xyseb")
    space.add_polyline3d([(0, 0, 0), (1, 1, 1), (2, 0, 5)])
    mesh = space.add_polymesh((3, 4))
    mesh.set_mesh_vertex((1, 1), (1, 1, 9))
    face = space.add_polyface()
    face.append_face([(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 1)])
    tag = space.add_blockref("TAG", (5, 5), dxfattribs={"rotation": 30})
    tag.add_auto_attribs({"NO": "P-101"})
    space.add_blockref("TAG", (7, 7), dxfattribs={"row_count": 2, "column_count": 3})
    space.add_linear_dim(base=(0, 12), p1=(0, 0), p2=(10, 0)).render()
    space.add_radius_dim(center=(1, 2), radius=3, angle=45).render()
    space.add_diameter_dim(center=(1, 2), radius=3, angle=45).render()
    space.add_angular_dim_3p(base=(5, 5), center=(0, 0), p1=(5, 0), p2=(0, 5)).render()
    document.layout("Layout1").add_text("paper", dxfattribs={"height": 5})
    document.layout("Layout1").add_viewport((100, 100), (150, 100), (5, 5), 20)
    document.appids.add("PLANT")
    space[0].set_xdata("PLANT", [(1000, "P-101"), (1040, 2.5)])
    return document


def kinds(document):
    """Types of entities with how many there are, by layout and block. Blocks of dimensions may be named anew."""
    counts = {}
    for layout in document.blocks:
        for entity in layout:
            key = layout.name.upper(), entity.dxftype()
            counts[key] = counts.get(key, 0) + 1
    return counts


def without_handles(source, target):
    """The same drawing as a program wrote that gave none."""
    lines = source.read_text(encoding="cp1252", errors="surrogateescape").split("\n")
    kept, section, kind = [], "", ""
    for code, value in zip(lines[0::2], lines[1::2]):
        if code.strip() == "2" and kind == "SECTION":
            section = value
        if code.strip() == "0":
            kind = value
        if not (code.strip() in ("5", "105") and section != "HEADER" and kind != "DIMSTYLE"):
            kept += [code, value]
    target.write_text("\n".join(kept) + "\n", encoding="cp1252", errors="surrogateescape")


def lift(source, original):
    target = FOLDER / (source.stem + "_lifted.dxf")
    run("eval", "-d", source, "-s", target, "(sslength (ssget \"X\"))")
    expect(target.read_bytes() == source.read_bytes(), f"{source.name}: unchanged, but other bytes")
    _, messages = run("eval", "-d", source, "-s", target,
                      '(setq e (ssname (ssget "X" \'((0 . "LINE"))) 0))',
                      '(kz_XData_setFld e "PUMP" "TYPE" "BENCH")',
                      '(kz_Group_createFromSelSet "PUMP" "P1" nil e (ssadd e))')
    expect("lifted to R2000" in messages, f"{source.name}: nobody says that it is lifted: {messages}")
    document = audited(target)
    expect(document.dxfversion == "AC1015", f"{source.name}: saved as {document.dxfversion}")
    expect(kinds(document) == kinds(original), f"{source.name}: {kinds(document)} are not {kinds(original)}")
    line = document.modelspace().query("LINE")[0]
    expect((line.dxf.layer, line.dxf.thickness, line.dxf.end.z) == ("PIPES", 2, 2), "a line changed")
    expect(line.get_xdata("PLANT")[0].value == "P-101", "XDATA got lost")
    expect(line.has_xdata("BENCH"), "the field is not there")
    expect(document.layers.get("PIPES").dxf.linetype == "DASHED", "a layer changed")
    text = document.modelspace().query("TEXT")[0]
    expect((text.dxf.text, text.dxf.valign) == ("Rohr Ø50%%d", 2), f"a text changed: {text.dxf.text}")
    insert = document.modelspace().query("INSERT")[0]
    expect(insert.attribs[0].dxf.text == "P-101", "an attribute changed")
    rows = document.modelspace().query("INSERT")[1]
    expect((rows.dxf.row_count, rows.dxf.column_count) == (2, 3), "an array of insertions changed")
    flags = sorted(p.get_mode() for p in document.modelspace().query("POLYLINE"))
    wanted = sorted(p.get_mode() for p in original.modelspace().query("POLYLINE"))
    expect(flags == wanted, f"polylines became {flags}")
    measured = sorted(round(d.get_measurement() if not isinstance(d.get_measurement(), tuple) else 0, 6)
                      for d in document.modelspace().query("DIMENSION"))
    expect(len(measured) == 4 and all(math.isfinite(m) for m in measured), f"dimensions: {measured}")
    values, _ = run("eval", "-d", target, "(length (layoutlist))", "(kz_XData_getFld (ssname (ssget \"X\" '"
                    "((0 . \"LINE\"))) 0) \"TYPE\" \"BENCH\")")
    expect(values == "1\n\"PUMP\"\n", f"layouts and field: {values}")


original = made()
plain = FOLDER / "old.dxf"
original.saveas(plain)
original = ezdxf.readfile(plain)
lift(plain, original)
bare = FOLDER / "bare.dxf"
without_handles(plain, bare)
lift(bare, original)
finish()
