"""A drawing made by commands alone is clean for another reader, and holds what was drawn."""
from ezdxf.math import Vec3

from judge import FOLDER, audited, expect, finish, run

SCRIPT = """
(setvar "CMDECHO" 0)
(command "_.layer" "_make" "Трубы" "_color" "green" "" "_new" "A,B" "_lweight" "0.25" "A" "_lock" "A"
         "_off" "B" "_freeze" "B" "_plot" "_no" "B" "")
(command "_.point" '(1 2 3))
(command "_.line" '(0 0) '(10 0) "@0,5" "_close")
(command "_.circle" '(5 5) 2.5)
(command "_.arc" '(1 0) "_center" '(0 0) "_angle" 90)
(command "_.pline" '(0 0) "_width" 0.5 1 '(10 0) "_arc" '(10 5) "_line" '(0 5) "_close")
(command "_.rectang" '(0 0) '(3 4))
(command "_.ellipse" '(-5 0) '(5 0) 2)
(command "_.solid" '(0 0) '(1 0) '(0 1) '(1 1) "")
(command "_.3dface" '(0 0) '(1 0) '(1 1 5) '(0 1 5) "")
(command "_.color" "red" "_.linetype" "_set" "continuous" "" "_.lweight" "0.5" "celtscale" 3)
(command "_.text" '(0 0) 2.5 45 "Насос 1")
(command "_.color" "bylayer" "_.linetype" "_set" "bylayer" "" "_.lweight" "bylayer" "celtscale" 1)
(command "_.text" "_justify" "_mc" '(4 4) 2.5 0 "middle")
(setq body (progn (command "_.circle" '(1 1) 1) (entlast)))
(entmake '((0 . "ATTDEF") (10 1.0 2.0 0.0) (40 . 0.5) (1 . "none") (3 . "Tag?") (2 . "TAG") (70 . 0)))
(command "_.block" "VALVE" '(1 1) body (entlast) "")
(command "_.insert" "VALVE" '(20 0) 2 "" 90 "V-1")
(command "_.insert" "VALVE" '(30 0) 2 1 0 "V-2")
(command "_.copy" (entlast) "" '(0 0) '(0 10))
(command "_.elev" 0 4)
(command "_.ucs" "_x" 90)
(command "_.circle" '(1 2 3) 1 "_.line" '(0 0) '(1 2 3) "")
(command "_.pline" '(0 0 5) '(2 1) '(2 4) "")
(command "_.insert" "VALVE" '(7 8) "" "" 30 "V-3")
(command "_.ucs" "_world" "_.elev" 0 0)
(command "_.mirror" (entlast) "" '(0 0) '(0 1) "_no")
(command "_.line" '(0 0) '(1 1) "" "_.erase" (entlast) "")
"""

script = FOLDER / "make.lsp"
script.write_text(SCRIPT, encoding="utf-8")
saved = FOLDER / "made.dxf"
_, err = run("run", "-s", saved, script)
expect(err == "", f"messages: {err}")
document = audited(saved)
space = list(document.modelspace())

layers = {layer.dxf.name: layer for layer in document.layers}
expect(layers["Трубы"].dxf.color == 3 and document.header["$CLAYER"] == "Трубы", "current layer")
expect(layers["A"].is_locked() and layers["A"].dxf.lineweight == 25, "layer A")
expect(layers["B"].is_frozen() and layers["B"].is_off() and not layers["B"].dxf.plot, "layer B")

kinds = [entity.dxftype() for entity in space]
expect(kinds == ["POINT", "LINE", "LINE", "LINE", "CIRCLE", "ARC", "LWPOLYLINE", "LWPOLYLINE", "ELLIPSE",
                 "SOLID", "3DFACE", "TEXT", "TEXT", "INSERT", "INSERT", "INSERT", "CIRCLE", "LINE",
                 "LWPOLYLINE", "INSERT", "INSERT"], f"entities {kinds}")
expect(all(entity.dxf.layer == "Трубы" for entity in space), "layers of entities")
polyline = list(space[6].get_points("xyseb"))
expect([tuple(round(v, 9) for v in vertex) for vertex in polyline] == [(0, 0, 0.5, 1, 0), (10, 0, 1, 1, 1), (10, 5, 1, 1, 0), (0, 5, 1, 1, 0)],
       f"polyline {polyline}")
text = space[11]
expect((text.dxf.color, text.dxf.lineweight, text.dxf.ltscale) == (1, 50, 3), "settings of a text")
expect(text.dxf.text == "Насос 1" and text.dxf.rotation == 45, "text")
parts = [entity.dxftype() for entity in document.blocks["VALVE"]]
expect(parts == ["CIRCLE", "ATTDEF"], f"block {parts}")
expect(document.blocks["VALVE"].block.dxf.flags == 2, "the block has attributes")

first, second = space[13].attribs[0], space[14].attribs[0]
expect(first.dxf.insert.isclose((18, 0)) and first.dxf.height == 1 and first.dxf.rotation == 90,
       f"attribute {first.dxfattribs()}")
expect(second.dxf.text == "V-2" and second.dxf.height == 0.5 and second.dxf.width == 2
       and second.dxf.insert.isclose((30, 1)), f"attribute {second.dxfattribs()}")
copied = space[15]
expect(copied.dxf.insert.isclose((30, 10)) and copied.attribs[0].dxf.insert.isclose((30, 11)), "copy")

# The coordinate system stands upright: its y is the world's z, its z the world's -y.
circle, line, lifted, insert, mirrored = space[16:]
expect(circle.ocs().to_wcs(circle.dxf.center).isclose((1, -3, 2))
       and circle.dxf.extrusion.isclose((0, -1, 0)) and circle.dxf.thickness == 4, "upright circle")
expect(line.dxf.end.isclose((1, -3, 2)), "upright line")
expect([Vec3(p).round(9) for p in lifted.vertices_in_wcs()] == [(0, -5, 0), (2, -5, 1), (2, -5, 4)],
       "upright polyline")
expect(insert.ocs().to_wcs(insert.dxf.insert).isclose((7, 0, 8)), "upright insert")
tag = insert.attribs[0]
expect(tag.ocs().to_wcs(tag.dxf.insert).isclose((6.5, 0, 8 + 3 ** 0.5 / 2)), "upright attribute")
expect(mirrored.ocs().to_wcs(mirrored.dxf.insert).isclose((-7, 0, 8)) and mirrored.dxf.xscale == -1,
       f"mirrored insert {mirrored.dxfattribs()}")
finish()
