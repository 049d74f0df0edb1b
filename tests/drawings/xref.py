"""XREF attaches drawings of another maker: what is saved is clean for the other's audit, and keeps
attachments, their places and layers when it is opened and saved once more."""
import ezdxf

from judge import FOLDER, audited, expect, finish, run


def make(name, version, attached=None):
    document = ezdxf.new(version, setup=True)
    document.layers.new("PIPES", dxfattribs={"color": 3, "linetype": "DASHED"})
    document.modelspace().add_line((0, 0), (5, 0), dxfattribs={"layer": "PIPES"})
    if attached:
        document.add_xref_def(attached, "DEEP")
        document.modelspace().add_blockref("DEEP", (1, 1))
    document.saveas(FOLDER / name)


def attachments(document):
    return [(block.name, block.block.dxf.xref_path, block.block.dxf.flags & 12)
            for block in document.blocks if block.block.dxf.flags & 12]


make("deep.dxf", "R2010")
make("part.dxf", "R2000", "deep.dxf")
make("plan.dxf", "R2018")
first, second = FOLDER / "first.dxf", FOLDER / "second.dxf"
script = FOLDER / "attach.lsp"
script.write_text("""
(setvar "CMDECHO" 0)
(command "_.xref" "_attach" "P=part.dxf" '(10 20 0) "" "" 90.0)
(command "_.xref" "_overlay" "part.dxf" '(0 0 0) 2.0 3.0 0.0)
(command "_.xref" "_attach" "GOES=deep.dxf" '(0 0 0) "" "" 0.0)
(command "_.layer" "_freeze" "P|PIPES" "")
(command "_.xref" "_unload" "part")
(command "_.xref" "_detach" "GOES")
""", encoding="utf-8")
run("run", "-d", FOLDER / "plan.dxf", "-s", first, script)
again = FOLDER / "again.lsp"
again.write_text('(entmake \'((0 . "POINT") (10 1.0 1.0 0.0)))\n(setvar "CMDECHO" 1)\n(command "_.xref" "?" "")\n')
_, told = run("run", "-d", first, "-s", second, again)
expect('"P": part.dxf, attached, loaded' in told and '"part": part.dxf, overlay, unloaded' in told, told)
for path in (first, second):
    document = audited(path)
    expect(attachments(document) == [("P", "part.dxf", 4), ("part", "part.dxf", 12)],
           f"{path.name}: {attachments(document)}")
    places = [(insert.dxf.name, tuple(insert.dxf.insert), insert.dxf.xscale, insert.dxf.yscale,
               insert.dxf.rotation) for insert in document.modelspace().query("INSERT")]
    expect(places == [("P", (10, 20, 0), 1, 1, 90), ("part", (0, 0, 0), 2, 3, 0)],
           f"{path.name}: {places}")
    layer = document.layers.get("P|PIPES")
    expect(layer.dxf.flags & 17 == 17 and layer.dxf.linetype == "P|DASHED", f"{path.name}: layer")
    expect("GOES" not in document.blocks and "GOES|PIPES" not in document.layers, f"{path.name}: detached")
    expect(document.layers.get("PIPES").dxf.color == 3, f"{path.name}: its own layer")
finish()
