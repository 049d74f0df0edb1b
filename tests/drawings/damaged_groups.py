"""Groups that another writer has damaged: it deletes a member, a master and renames a group. Every reading
function still answers, `kz check` names what was broken, and what it repairs is clean for the other reader."""
import ezdxf

from judge import FOLDER, audited, expect, finish, run

MAKE = """
(defun pipe (x) (entmakex (list '(0 . "LINE") (list 10 x 0.0 0.0) (list 11 x 1.0 0.0))))
(defun set-of (all / set) (setq set (ssadd)) (foreach one all (ssadd one set)) set)
(setq unit (kz_Group_createFromSelSet "UNIT" "KZ_0_U" nil nil (set-of (list (pipe 1) (pipe 2)))))
(kz_Group_createFromSelSet "PUMP" "KZ_0_P" "VALVES" nil (set-of (list (pipe 3) (pipe 4) (pipe 5))) unit)
(kz_Group_createFromSelSet "TANK" "KZ_0_T" nil nil (set-of (list (pipe 6) (pipe 7))))
"""

# Each reading function on every group of the walk and every entity; the values come out as text.
READ = """
(defun each (group)
  (list (kz_Group_getName group) (kz_Group_getType group) (kz_Group_getMasterObject group)
    (kz_Group_getMasterHandle group) (kz_Group_getDrawingName group) (kz_Group_getQualifiedName group)
    (kz_Group_getParentGroup group) (kz_Group_getRootGroup group) (kz_Group_getNumChildren group)
    (kz_Group_getNthChild group) (kz_Group_isARootGroup group) (kz_Group_isErased group)
    (kz_Group_isValid group) (kz_Group_isSelectable group) (kz_Group_isTypeOf group "PUMP")
    (kz_Group_isAChildOf group (kz_Group_getId "KZ_0_U")) (length (kz_Group_getMemberList group nil nil nil T))
    (kz_Group_getMemberSelSet group nil "VALVES")))
(defun walk (/ step all)
  (kz_Group_beginGetNext)
  (while (setq step (kz_Group_getNext)) (setq all (cons (car step) all)))
  (kz_Group_endGetNext)
  (reverse all))
(setq groups (walk))
(foreach group groups (print (mapcar 'type (each group))) (princ (kz_Group_getName group)))
(setq e (entnext))
(while e
  (print (list (kz_Group_isAMember e) (kz_Group_getFromMember e) (kz_Group_getFromMember e T)
    (kz_Group_getFromEntityName e) (kz_Group_getMasterFromMember e)
    (kz_Group_getFromPersistObjId (cdr (assoc 5 (entget e))))))
  (setq e (entnext e)))
(print (list 'groups (length groups)))
"""


def script(name, text):
    path = FOLDER / name
    path.write_text(text, encoding="utf-8")
    return path


def handles(document, name):
    return [entity.dxf.handle for entity in document.groups.get(name)]


def damage(version):
    made = FOLDER / f"made_{version}.dxf"
    run("run", "-s", made, script("make.lsp", MAKE))
    document = audited(made)
    space = document.modelspace()
    member = next(e for e in document.groups.get("KZ_0_P")
                  if any(tag.value == "MM" for tag in e.get_xdata("KZ_GRP")))
    master = next(e for e in document.groups.get("KZ_0_T")
                  if any(tag.value == "MS" for tag in e.get_xdata("KZ_GRP")))
    for name, entity in (("KZ_0_P", member), ("KZ_0_T", master)):
        group = document.groups.get(name)
        left = [one for one in group if one is not entity]
        with group.edit_data() as data:
            data[:] = left
        space.delete_entity(entity)
    unit = document.groups.get("KZ_0_U")
    dictionary = document.rootdict["ACAD_GROUP"]
    dictionary.discard("KZ_0_U")
    dictionary["KZ_0_N"] = unit
    path = FOLDER / f"damaged_{version}.dxf"
    document.dxfversion = version
    document.saveas(path)
    return path


def check(version):
    path = damage(version)
    out, _ = run("run", "-d", path, script("read.lsp", READ))
    expect("(GROUPS 3)" in out, f"{version}: walk\n{out}")
    found, _ = run("check", path, status=1)
    for wanted in ("KZ_0_N: bears the name KZ_0_U, which no group has",
                   "KZ_0_P: has a list of the sub-group VALVES that isn't that of its members",
                   "which doesn't exist"):
        expect(wanted in found, f"{version}: {wanted}\n{found}")
    saved = FOLDER / f"repaired_{version}.dxf"
    run("check", "--repair", "-s", saved, path, status=1)
    left, _ = run("check", saved, status=1)
    expect(left.count("\n") == 2 and left.startswith("KZ_0_T: names the master "),
           f"{version}: left\n{left}")
    document = audited(saved)
    expect(len(handles(document, "KZ_0_P")) == 2, f"{version}: members {handles(document, 'KZ_0_P')}")
    parents, _ = run("eval", "-d", saved,
                     '(kz_Group_getName (kz_Group_getParentGroup (kz_Group_getId "KZ_0_P")))')
    expect(parents.strip() == '"KZ_0_N"', f"{version}: parent {parents}")


for dxf_version in ("R2007", "R2018"):
    check(dxf_version)
finish()
