"""Drawings of other makers: unchanged they are saved as the same bytes, a field on one entity changes that entity
alone, and another reader finds no more fault with them than before. Those that are damaged are recovered.

They aren't kept here: they are looked for in the folder KZ_DRAWINGS, and without it in shared/drawings beside
the checkout. Without drawings the test is skipped."""
import os
import pathlib
import sys

import ezdxf
from ezdxf.lldxf.tagwriter import TagCollector

from judge import FOLDER, expect, finish, objects, run

SKIPPED = 77
BESIDE = pathlib.Path(__file__).resolve().parents[3] / "shared" / "drawings"
# The handle of the first entity whose layer isn't locked.
FIRST = """(progn (setq e (entnext))
  (while (and e (setq layer (tblsearch "LAYER" (cdr (assoc 8 (entget e))))) (= 4 (logand 4 (cdr (assoc 70 layer)))))
    (setq e (entnext e)))
  (if e (cdr (assoc 5 (entget e)))))"""
DATA = b"1001\nKZ_TEST\n1002\n{\n1000\nsize\n1000\nDN50\n1002\n}"


def judged(path):
    """What the other reader says of a drawing: the document and its findings; None for a refusal."""
    try:
        document = ezdxf.readfile(path)
        auditor = document.audit()
        return document, sorted(finding.message for finding in auditor.errors + auditor.fixes)
    except Exception:  # pylint: disable=broad-except  # it throws many kinds
        return None


def tags_of(entity, version):
    try:
        return [tag for tag in TagCollector.dxftags(entity, version) if tag != (1001, "KZ_TEST")]
    except Exception:  # pylint: disable=broad-except  # there are drawings that it reads and can't write
        return repr(sorted(entity.dxfattribs().items()))


def tags_by_handle(document):
    return {entity.dxf.handle: tags_of(entity, document.dxfversion) for entity in document.entitydb.values()}


def kind(part):
    return part.split(b"\n")[1].strip()


def lines_of(part):
    return b"\n".join(line.strip() for line in part.replace(b"\r", b"").split(b"\n"))


def check_bytes(path, saved, handle):
    before, after = objects(path), objects(saved)
    known = set(map(lines_of, before))
    changed = [part for part in after if lines_of(part) not in known]
    kinds = sorted(kind(part) for part in changed)
    entities = [part for part in changed if DATA in lines_of(part)]
    expect(len(entities) == 1 and b"\n5\n" + handle.encode() + b"\n" in lines_of(entities[0]),
           f"{path.name}: the field is on {len(entities)} entities")
    rest = lines_of(entities[0]).replace(DATA + b"\n", b"").replace(b"\n" + DATA, b"") if entities else b""
    expect(rest in known, f"{path.name}: the entity lost something")
    others = [one for one in kinds if one not in (b"SECTION", b"APPID", b"TABLE", kind(entities[0]))]
    expect(not others and len(changed) <= 4, f"{path.name}: changed {kinds}")
    expect(len(after) - len(before) in (1, 2), f"{path.name}: {len(before)} objects, {len(after)} saved")


def check(path):
    _, errors = run("info", path, status=None)
    sound = judged(path)
    if errors:
        expect("--recover" in errors, f"{path.name}: {errors}")
        return recover(path, sound)
    same = FOLDER / "same.dxf"
    run("eval", "-d", path, "-s", same, "1")
    expect(same.read_bytes() == path.read_bytes(), f"{path.name}: unchanged, but not the same bytes")
    if sound is None:
        return
    out, _ = run("eval", "-d", path, FIRST)
    if out == "nil\n":
        return
    handle = out.strip().strip('"')
    saved = FOLDER / "changed.dxf"
    out, _ = run("eval", "-d", path, "-s", saved, f'(kz_XData_setFld "{handle}" "DN50" "size" "KZ_TEST")',
                 f'(kz_XData_getFld "{handle}" "size" "KZ_TEST")')
    expect(out.split() == ["T", '"DN50"'], f"{path.name}: {out}")
    out, _ = run("eval", "-d", saved, f'(kz_XData_getFld "{handle}" "size" "KZ_TEST")')
    expect(out == '"DN50"\n', f"{path.name}: read back {out}")
    found = judged(saved)
    expect(found is not None, f"{path.name}: the other reader refuses what was saved")
    if found is None:
        return
    new = [finding for finding in found[1] if finding not in sound[1]]
    expect(not new, f"{path.name}: new findings {new[:5]}")
    expect([tuple(tag) for tag in found[0].entitydb[handle].get_xdata("KZ_TEST")]
           == [(1002, "{"), (1000, "size"), (1000, "DN50"), (1002, "}")], f"{path.name}: the field for the other reader")
    if path.read_bytes().startswith(b"AutoCAD Binary"):
        compare(path, sound[0], found[0], handle)
    elif sound[0].dxfversion > "AC1009":
        check_bytes(path, saved, handle)


def compare(path, before, after, handle):
    """All that the other reader knows of both is the same, but for the entity."""
    old, new = tags_by_handle(before), tags_by_handle(after)
    # It adds ends of sequences of its own.
    changed = [one for one in old if one in new and one != handle and old[one] != new[one]
               and before.entitydb[one].dxftype() != "SEQEND"]
    for one in changed[:3]: print(one, old[one],"\n",new.get(one))
    expect(not changed, f"{path.name}: other to the other reader: {changed[:10]}")


def recover(path, sound):
    saved = FOLDER / "recovered.dxf"
    _, report = run("convert", "--recover", path, saved)
    expect("mended" in report or "dropped" in report, f"{path.name}: no report")
    found = judged(saved)
    expect(found is not None, f"{path.name}: the other reader refuses what was recovered")
    if found is not None and sound is not None:
        expect(len(found[1]) <= len(sound[1]), f"{path.name}: more findings than in the damaged file")
        expect(len(found[0].modelspace()) >= len(sound[0].modelspace()), f"{path.name}: entities were lost")
    _, errors = run("eval", "-d", saved, "1")
    expect(not errors, f"{path.name}: {errors}")


folder = pathlib.Path(os.environ.get("KZ_DRAWINGS", BESIDE))
drawings = sorted(folder.glob("*.dxf"))
if not drawings:
    print(f"skipped: no drawings in {folder}; KZ_DRAWINGS names another folder")
    sys.exit(SKIPPED)
for drawing in drawings:
    check(drawing)
print(f"{len(drawings)} drawings")
finish()
