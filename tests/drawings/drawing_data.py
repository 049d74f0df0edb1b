"""Fields in the drawing itself: what kz writes is what another reader finds in dictionaries and xrecords, and
what another writer puts there in that form kz reads, leaving everything else as it was."""
import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode

from judge import FOLDER, audited, expect, finish, objects, run

VERSIONS = ("R2000", "R2004", "R2007", "R2010", "R2013", "R2018")


def plain(tags):
    """Tags with their values as plain tuples and decoded texts."""
    out = []
    for tag in tags:
        value = tag.value
        if isinstance(value, str):
            value = decode_dxf_unicode(value)
        out.append((tag.code, tuple(value) if hasattr(value, "x") else value))
    return out


def records_of(document):
    return [item for item in document.objects if item.dxftype() == "XRECORD"]


# --- written here, read there ---------------------------------------------------------------------

WRITE = (
    '(kz_DwgData_setFldList "PLANT" "Einstellungen" \'(("name" "труба 管 ±") ("at" (1.0 2.0 3.0) "M") '
    '("n" 2.5 7 70000) ("ref" (1005 . "2F")) ("dir" (0.0 0.0 1.0) "O") "open") 1)',
    '(kz_DwgData_setFld "PLANT" "Second" "line" "C" "two\\nlines ^ \\t")',
    '(repeat 50 (kz_DwgData_setFld "PLANT" "Counter" "N" "I" 5 1))',
    '(kz_DwgData_setFldList "PLANT" "Empty" \'("X") 1)',
    '(kz_DwgData_deleteFld "PLANT" "Empty" "X")',
    '(kz_DwgData_setFld "GONE" "A" "X" "I" 1)',
    '(dictremove (namedobjdict) "GONE")',
    '(kz_DwgData_setFld "PLANT" "Erased" "X" "I" 1)',
    '(kz_DwgData_deleteFldList "PLANT" "Erased")',
)


def check_written(version):
    document = ezdxf.new(version)
    document.encoding = "cp1251" if version < "R2007" else "utf8"
    source, saved = FOLDER / f"empty_{version}.dxf", FOLDER / f"written_{version}.dxf"
    document.saveas(source)
    run("eval", "-d", source, "-s", saved, *WRITE)
    document = audited(saved)
    plant = document.rootdict["PLANT"]
    expect(plant.dxftype() == "DICTIONARY", f"{version}: {plant}")
    expect(list(plant.keys()) == ["Einstellungen", "Second", "Counter", "Empty"],
           f"{version}: {list(plant.keys())}")
    expect(plant.dxf.owner == document.rootdict.dxf.handle, f"{version}: owner {plant.dxf.owner}")
    expect(plant["Second"].reactors.get() == [plant.dxf.handle], f"{version}: reactors")
    expect(plain(plant["Einstellungen"].tags) == [
        (2, "{"), (1, "NAME"), (1, "труба 管 ±"), (2, "}"),
        (2, "{"), (1, "AT"), (11, (1.0, 2.0, 3.0)), (2, "}"),
        (2, "{"), (1, "N"), (40, 2.5), (70, 7), (90, 70000), (2, "}"),
        (2, "{"), (1, "REF"), (6, "2F"), (2, "}"),
        (2, "{"), (1, "DIR"), (13, (0.0, 0.0, 1.0)), (2, "}"),
        (2, "{"), (1, "OPEN"), (2, "}")], f"{version}: {plain(plant['Einstellungen'].tags)}")
    expect(plain(plant["Second"].tags)[2] == (1, "two^Jlines ^  ^I"), f"{version}: control characters")
    expect(len(plant["Empty"].tags) == 0, f"{version}: empty record")
    expect(len(records_of(document)) == 4, f"{version}: {len(records_of(document))} records are left")
    out, _ = run("eval", "-d", saved, '(kz_DwgData_getFldList "plant" "SECOND")')
    expect(out == '(("LINE" "two\\nlines ^ \\t"))\n', f"{version}: read back {out!r}")


# --- written there, read here ---------------------------------------------------------------------

def foreign(version, hard_owned):
    document = ezdxf.new(version)
    document.encoding = "cp1251" if version < "R2007" else "utf8"
    line = document.modelspace().add_line((0, 0), (1, 1))
    plant = document.rootdict.add_new_dict("PLANT", hard_owned=hard_owned)
    plant.add_xrecord("Fields").reset([
        (2, "{"), (1, "Name"), (1, "труба 管"), (2, "}"),
        (2, "{"), (1, "Values"), (70, -5), (90, 70000), (40, 1 / 3), (10, (1, 2, 3)),
        (13, (0, 0, 1)), (6, line.dxf.handle), (2, "}"), (2, "{"), (1, "Open"), (2, "}")])
    plant.add_xrecord("Mixed").reset([
        (330, line.dxf.handle), (290, 1), (2, "{"), (1, "Mine"), (70, 1), (2, "}"), (310, b"\x0a\xff"),
        (102, "{GROUP"), (160, 2 ** 40), (102, "}"), (300, "чужое"), (280, 7), (210, (0, 0, 1))])
    plant.add_new_dict("Dictionary", hard_owned=hard_owned).add_xrecord("Inside").reset([(1, "deep")])
    document.rootdict.add_xrecord("RECORD").reset([(1, "no dictionary")])
    path = FOLDER / f"foreign_{version}_{hard_owned}.dxf"
    document.saveas(path)
    return path, line.dxf.handle


def check_read(version, hard_owned):
    path, handle = foreign(version, hard_owned)
    saved = FOLDER / f"{path.stem}_saved.dxf"
    out, _ = run("eval", "-d", path, '(kz_DwgData_getXGroups "plant")',
                 '(kz_DwgData_getFldList "PLANT" "fields")', '(kz_DwgData_getFldList "PLANT" "Mixed")',
                 '(kz_DwgData_getFld "PLANT" "Mixed" "mine")',
                 '(kz_DwgData_getFldList "PLANT" "Dictionary")',
                 '(kz_DwgData_getFldList "RECORD" "Fields")', '(kz_DwgData_getXGroups "RECORD")',
                 '(kz_DwgData_setFld "RECORD" "A" "X" "I" 1)')
    expect(out == '(("Fields" "Mixed" "Dictionary"))\n'
           f'(("NAME" "труба 管") ("VALUES" -5 70000 {1 / 3:.6g} (1.0 2.0 3.0) (0.0 0.0 1.0) "{handle}") '
           '("OPEN"))\nnil\n(("mine" 1))\nnil\nnil\nnil\nnil\n', f"{version}: {out}")

    before = audited(path).rootdict["PLANT"]
    run("eval", "-d", path, "-s", saved, '(kz_DwgData_setFld "PLANT" "Mixed" "mine" "C" "ours" 1)')
    document = audited(saved)
    plant = document.rootdict["PLANT"]
    expect(plant.is_hard_owner == hard_owned, f"{version}: kind of ownership")
    expect(list(plant.keys()) == ["Fields", "Dictionary", "Mixed"], f"{version}: {list(plant.keys())}")
    wanted = plain(before["Mixed"].tags)
    wanted[4] = (1, "ours")
    expect(plain(plant["Mixed"].tags) == wanted, f"{version}: {plain(plant['Mixed'].tags)}")
    kept, known = objects(saved), set(objects(path))
    changed = sorted(part.split(b"\n")[1].strip() for part in kept if part not in known)
    # The dictionary, the new record, and the section that holds the handle seed.
    expect(changed == [b"DICTIONARY", b"SECTION", b"XRECORD"], f"{version}: changed {changed}")

    run("eval", "-d", saved, "-s", saved, '(kz_DwgData_setFld "PLANT" "Dictionary" "X" "I" 1)')
    document = audited(saved)
    expect(document.rootdict["PLANT"]["Dictionary"].dxftype() == "XRECORD", f"{version}: it gave way")
    expect("deep" not in saved.read_text(encoding=document.encoding), f"{version}: with what it held")


# --- limits ---------------------------------------------------------------------------------------

def check_limits():
    saved = FOLDER / "limits.dxf"
    long = FOLDER / "long.lsp"
    long.write_text("""
(defun long (count) (if (= count 0) "" (strcat "x" (long (1- count)))))
(defun say (form) (prin1 (eval form)) (terpri))
(say '(kz_DwgData_setFld "" "A" "X" "I" 1))
(say '(kz_DwgData_setFld (long 256) "A" "X" "I" 1))
(say '(kz_DwgData_setFld "APP" (long 256) "X" "I" 1))
(say '(kz_DwgData_setFld "APP" (long 255) (long 255) "C" (long 600)))
(setq most (entmakex (list '(0 . "XRECORD") '(100 . "AcDbXrecord") (cons 1 (long 2049)))))
(say '(entmakex (list '(0 . "XRECORD") '(100 . "AcDbXrecord") (cons 1 (long 2050)))))
(say '(equal most (dictadd (namedobjdict) "MOST" most)))
(entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "nobody's")))
""", encoding="utf-8")
    out, _ = run("run", "-s", saved, long)
    expect(out == "nil\nnil\nnil\n\nnil\nT\n", f"limits: {out!r}")
    document = audited(saved)
    record = document.rootdict["APP"]["x" * 255]
    expect(plain(record.tags) == [(2, "{"), (1, "x" * 255), (1, "x" * 511), (2, "}")], "limits: field")
    expect(plain(document.rootdict["MOST"].tags) == [(1, "x" * 2049)], "limits: text")
    expect(len(records_of(document)) == 2, "limits: records")


for dxf_version in VERSIONS:
    check_written(dxf_version)
    check_read(dxf_version, hard_owned=dxf_version > "R2007")
check_limits()
finish()
