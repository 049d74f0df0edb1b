"""What Lisp makes from nothing is clean for another reader: entities of each simple kind, complex ones, a
block, layers, xrecords in dictionaries, erased things gone."""
from judge import FOLDER, audited, expect, finish, run

SCRIPT = """
(defun make (l) (if (null (entmake l)) (princ (strcat "refused " (cdr (assoc 0 l)) "\\n"))))
(make '((0 . "BLOCK") (2 . "VALVE") (70 . 2) (10 0.0 0.0 0.0)))
(make '((0 . "LINE") (10 0.0 0.0 0.0) (11 1.0 1.0 0.0)))
(make '((0 . "ATTDEF") (10 0.0 0.0 0.0) (40 . 1.0) (1 . "") (2 . "TAG") (3 . "tag?") (70 . 0)))
(make '((0 . "ENDBLK")))
(make '((0 . "LAYER") (100 . "AcDbSymbolTableRecord") (100 . "AcDbLayerTableRecord") (2 . "Вода")
        (70 . 0) (62 . 5) (6 . "Continuous")))
(make '((0 . "LINE") (8 . "Вода") (10 0.0 0.0 0.0) (11 9.5 0.25 0.0)))
(make '((0 . "POINT") (10 1.0 1.0 0.0) (62 . 1)))
(make '((0 . "CIRCLE") (8 . "Made by entmake") (10 5.0 5.0 0.0) (40 . 2.5)))
(make '((0 . "ARC") (10 5.0 5.0 0.0) (40 . 2.5) (50 . 0.0) (51 . 1.5707963267948966)))
(make '((0 . "TEXT") (10 0.0 0.0 0.0) (40 . 2.5) (1 . "Насос 泵 100%") (73 . 0)))
(make '((0 . "SOLID") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0) (12 0.0 1.0 0.0) (13 1.0 1.0 0.0)))
(make '((0 . "3DFACE") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0) (12 0.0 1.0 0.0) (13 1.0 1.0 0.0)))
(make '((0 . "POLYLINE") (66 . 1) (70 . 8)))
(make '((0 . "VERTEX") (10 0.0 0.0 0.0) (70 . 32)))
(make '((0 . "VERTEX") (10 1.0 2.0 3.0) (70 . 32)))
(make '((0 . "SEQEND")))
(make '((0 . "INSERT") (66 . 1) (2 . "VALVE") (10 3.0 3.0 0.0)))
(make '((0 . "ATTRIB") (10 3.0 3.0 0.0) (40 . 1.0) (1 . "V-1") (2 . "TAG") (70 . 0)))
(make '((0 . "SEQEND")))
(make '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 1)
        (10 0.0 0.0) (10 4.0 0.0) (10 4.0 3.0)))
(make '((0 . "MTEXT") (100 . "AcDbEntity") (100 . "AcDbMText") (10 0.0 0.0 0.0) (40 . 2.5)
        (1 . "a line")))
(setq doomed (entmakex '((0 . "CIRCLE") (10 0.0 0.0 0.0) (40 . 99.0))))
(entdel doomed)
(setq x (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (280 . 1) (1 . "текст") (70 . 5)
                    (10 1.0 2.0 3.0))))
(dictadd (namedobjdict) "PLANT_DATA" x)
(kz_XData_setFldList (entlast) '(("TAG" "P-1" "P-2") ("AT" (1.0 2.0 3.0) "M") "EMPTY") "PLANT" 1)
(setq e (entget (entnext)))
(entmod (subst '(11 20.0 20.0 0.0) (assoc 11 e) e))
"""

script = FOLDER / "make.lsp"
script.write_text(SCRIPT, encoding="utf-8")
saved = FOLDER / "made.dxf"
out, err = run("run", "-s", saved, script)
expect("refused" not in out, out)
document = audited(saved)
space = document.modelspace()
kinds = [entity.dxftype() for entity in space]
expect(kinds == ["LINE", "POINT", "CIRCLE", "ARC", "TEXT", "SOLID", "3DFACE", "POLYLINE", "INSERT",
                 "LWPOLYLINE", "MTEXT"], f"entities {kinds}")
expect(tuple(space[0].dxf.end) == (20, 20, 0), f"entmod gave {space[0].dxf.end}")
expect(space[0].dxf.layer == "Вода", "layer by entmake")
expect("Made by entmake" in document.layers, "a layer made on the way")
expect(space[4].dxf.text == "Насос 泵 100%", f"text {space[4].dxf.text}")
expect(len(space[7].vertices) == 2 and space[7].is_3d_polyline, "3D polyline")
expect(space[8].attribs[0].dxf.text == "V-1", "attribute")
expect([entity.dxftype() for entity in document.blocks["VALVE"]] == ["LINE", "ATTDEF"], "block")
expect(len(space[9]) == 3, "LWPOLYLINE")
record = document.rootdict["PLANT_DATA"]
expect([(tag.code) for tag in record.tags] == [1, 70, 10], f"xrecord {record.tags}")
tags = [(tag.code, tag.value) for tag in space[10].get_xdata("PLANT")]
expect((1000, "P-2") in tags and (1002, "}") == tags[-1] and len(tags) == 12, f"fields {tags}")
finish()
