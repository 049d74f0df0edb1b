"""Groups: what kz does with a group that another writer made, and what it makes itself, is clean for another
reader, with the reactors of the entities right."""
import ezdxf

from judge import FOLDER, audited, expect, finish, objects, run

VERSIONS = ("R2000", "R2007", "R2018")


def foreign(version):
    document = ezdxf.new(version)
    space = document.modelspace()
    lines = [space.add_line((n, 0), (n, 1)) for n in range(5)]
    group = document.groups.new("KZ_AB_1", description="PIPE")
    group.extend(lines[:4])
    document.groups.new("OTHER").extend([lines[1], lines[4]])
    path = FOLDER / f"foreign_{version}.dxf"
    document.saveas(path)
    return path, [line.dxf.handle for line in lines]


def members(path, name):
    """Handles of a group's entities in the order of the file, which the other reader doesn't keep."""
    handle = ezdxf.readfile(path).groups.get(name).dxf.handle.encode()
    for part in objects(path):
        pairs = [line.strip() for line in part.split(b"\n")]
        groups = list(zip(pairs[0::2], pairs[1::2]))
        if groups[0][1] == b"GROUP" and (b"5", handle) in groups:
            return [value.decode() for code, value in groups if code == b"340"]
    return []


def reactors(document, handle):
    entity = document.entitydb[handle]
    return set(entity.reactors.get()) if entity.reactors is not None else set()


def check_erased(version):
    path, handles = foreign(version)
    saved = FOLDER / f"erased_{version}.dxf"
    run("eval", "-d", path, "-s", saved, f'(entdel (handent "{handles[1]}"))')
    audited(saved)
    # The other writer has put them in an order of its own.
    before = members(path, "KZ_AB_1")
    found = members(saved, "KZ_AB_1")
    expect(sorted(before) == handles[:4], f"{version}: made {before}")
    expect(found == [handle for handle in before if handle != handles[1]], f"{version}: left {found}")
    expect(b"340\n" + handles[1].encode() not in saved.read_bytes(), f"{version}: erased member")
    run("eval", "-d", path, "-s", saved, f'(entdel (handent "{handles[1]}"))',
        f'(entdel (handent "{handles[1]}"))')
    found = members(saved, "KZ_AB_1")
    expect(found == before, f"{version}: brought back {found}")
    changed = set(objects(saved)) - set(objects(path))
    expect(not any(b"GROUP" in part.split(b"\n")[1] for part in changed), f"{version}: group changed")


def check_changed(version):
    path, handles = foreign(version)
    saved = FOLDER / f"changed_{version}.dxf"
    groups = '(cdr (assoc -1 (dictsearch (namedobjdict) "ACAD_GROUP")))'
    run("eval", "-d", path, "-s", saved,
        f'(setq group (dictsearch {groups} "KZ_AB_1"))',
        '(entmod (append (list (assoc -1 group)) \'((0 . "GROUP") (300 . "VALVE")) '
        f'(list (cons 340 (handent "{handles[4]}")) (cons 340 (handent "{handles[0]}")))))',
        f'(dictadd {groups} "*A1" (entmakex (list \'(0 . "GROUP") \'(100 . "AcDbGroup") \'(300 . "NEW") '
        f'\'(70 . 1) \'(71 . 1) (cons 340 (handent "{handles[2]}")))))',
        f'(dictremove {groups} "OTHER")')
    document = audited(saved)
    changed, new = document.groups.get("KZ_AB_1"), document.groups.get("*A1")
    found = members(saved, "KZ_AB_1")
    expect(found == [handles[4], handles[0]], f"{version}: changed {found}")
    expect(changed.dxf.description == "VALVE", f"{version}: {changed.dxf.description}")
    expect(members(saved, "*A1") == [handles[2]] and new.dxf.unnamed == 1, f"{version}: new group")
    expect("OTHER" not in document.groups, f"{version}: removed group")
    wanted = {handles[0]: {changed.dxf.handle}, handles[1]: set(), handles[2]: {new.dxf.handle},
              handles[3]: set(), handles[4]: {changed.dxf.handle}}
    for handle, groups_of in wanted.items():
        expect(reactors(document, handle) == groups_of,
               f"{version}: reactors of {handle}: {reactors(document, handle)}")


for dxf_version in VERSIONS:
    check_erased(dxf_version)
    check_changed(dxf_version)
finish()
