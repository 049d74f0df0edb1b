"""INSERT takes a drawing of another maker, version and encoding in as a block: clean for the other's audit,
with layers, line types, styles, nested blocks, dimensions and XDATA."""
import ezdxf

from judge import FOLDER, audited, expect, finish, run


def make(path):
    document = ezdxf.new("R2004", setup=True)
    document.encoding = "cp1251"
    document.appids.new("PLANT")
    document.layers.new("Насосы", dxfattribs={"color": 3, "linetype": "DASHED"})
    document.layers.new("SHARED", dxfattribs={"color": 1})
    document.header["$INSBASE"] = (5, 5, 0)
    space = document.modelspace()
    bolt = document.blocks.new("BOLT")
    bolt.add_circle((0, 0), 1, dxfattribs={"layer": "Насосы"})
    pump = document.blocks.new("NESTED")
    pump.add_blockref("BOLT", (1, 1))
    pump.add_attdef("TAG", (0, 2), dxfattribs={"height": 0.5, "style": "OpenSans"})
    line = space.add_line((0, 0), (5.25, 1 / 3), dxfattribs={"layer": "Насосы", "linetype": "CENTER"})
    line.set_xdata("PLANT", [(1000, "поле"), (1040, 1.5)])
    space.add_text("Насос 12", dxfattribs={"height": 2.5, "style": "OpenSans"})
    space.add_blockref("NESTED", (10, 0)).add_attrib("TAG", "Н-1", (10, 2))
    space.add_lwpolyline([(0, 0, 0, 0, 0.5), (3, 0), (3, 3)], dxfattribs={"layer": "SHARED"})
    space.add_linear_dim((0, 5), (0, 0), (4, 0)).render()
    space.add_polyline3d([(0, 0, 0), (1, 1, 1)])
    image = document.add_image_def("none.png", (10, 10))
    space.add_image(image, (0, 0), (1, 1))
    document.saveas(path)


source = FOLDER / "pump unit.dxf"
make(source)
copied = FOLDER / "pump unit.dwg"
copied.write_bytes(source.read_bytes())
saved = FOLDER / "saved.dxf"
script = FOLDER / "insert.lsp"
script.write_text(f"""
(setvar "CMDECHO" 0)
(command "_.layer" "_n" "SHARED" "_c" 5 "SHARED" "")
(command "._insert" "PUMP={source}" '(100 0) "" "" "")
(command "._insert" "{copied}" '(200 0) 2 "" 0)
(command "_.insert" "PUMP={source}" "_no")
(command "_.insert" "PUMP={source}" "_yes" '(300 0) "" "" "")
(command "_.insert" "NESTED={source}" "_yes")
(command "_.insert" "nowhere.dxf")
""", encoding="utf-8")
_, err = run("run", "-s", saved, script)
expect(err.count("1 IMAGE can't be taken") == 3 and err.count("would contain itself") == 1
       and 'no file "nowhere.dxf"' in err, f"messages {err}")
document = audited(saved)
inserts = [(insert.dxf.name, insert.dxf.insert.x, insert.dxf.xscale)
           for insert in document.modelspace().query("INSERT")]
expect(inserts == [("PUMP", 100, 1), ("pump unit", 200, 2), ("PUMP", 300, 1)], f"{inserts}")
expect(document.layers.get("SHARED").dxf.color == 5, "what is here goes before")
expect(document.layers.get("Насосы").dxf.linetype == "DASHED" and "CENTER" in document.linetypes, "line types")
expect("OpenSans" in document.styles, "text styles")
for name in ("PUMP", "pump unit"):
    block = document.blocks[name]
    expect(block.block.dxf.base_point == (5, 5, 0), f"{name}: base point")
    kinds = [entity.dxftype() for entity in block]
    expect(kinds == ["LINE", "TEXT", "INSERT", "LWPOLYLINE", "DIMENSION", "POLYLINE"], f"{name}: {kinds}")
    line, text, nested, _, dimension, polyline = block
    expect(line.dxf.layer == "Насосы" and line.dxf.end == (5.25, 1 / 3, 0), f"{name}: line")
    expect([tuple(tag) for tag in line.get_xdata("PLANT")] == [(1000, "поле"), (1040, 1.5)],
           f"{name}: XDATA {line.get_xdata('PLANT')}")
    expect(text.dxf.text == "Насос 12", f"{name}: text")
    expect(nested.attribs[0].dxf.text == "Н-1", f"{name}: attribute")
    expect(len(polyline.vertices) == 2, f"{name}: vertices")
    expect(len(document.blocks[dimension.dxf.geometry]) > 3, f"{name}: the dimension's picture")
expect([entity.dxftype() for entity in document.blocks["NESTED"]] == ["INSERT", "ATTDEF"], "nested block")
pictures = {entity.dxf.geometry for name in ("PUMP", "pump unit")
            for entity in document.blocks[name].query("DIMENSION")}
expect(len(pictures) == 2, f"pictures {pictures}")
finish()
