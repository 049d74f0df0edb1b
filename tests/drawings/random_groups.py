"""Random changes of groups by the library leave nothing for `kz check`; random damages are found, what it
mends stays mended, and the other reader finds the drawing clean."""
import random

from judge import FOLDER, audited, expect, finish, run

START = """
(defun pipe (x) (entmakex (list '(0 . "LINE") (list 10 x 0.0 0.0) (list 11 x 1.0 0.0))))
(defun set-of (all / set) (setq set (ssadd)) (foreach one all (ssadd one set)) set)
(defun lives (n) (not (kz_Group_isErased (nth n groups))))
(setq x 0)
(repeat 40 (setq x (1+ x) lines (cons (pipe x) lines)))
"""
# g and h are groups, e an entity, s the name of a sub-group or nil, f a flag.
CHANGES = ("(kz_Group_add {g} {e} {s})", "(kz_Group_removeMember {g} {e})", "(kz_Group_removeMemberFromGroup {e})",
           "(if (kz_Group_isAMemberOf {e} {g} T) (kz_Group_setMasterObject {g} {e}))",
           "(kz_Group_makeChild {g} {h} {f})", "(kz_Group_makeRootGroup {g} {f})",
           '(kz_Group_createSubGroup {g} (set-of (list {e})) "C")', "(kz_Group_deleteMembers {g} nil {s})")
DAMAGE = """
(setq dictionary (cdr (assoc -1 (dictsearch (namedobjdict) "ACAD_GROUP"))))
(foreach pair (entget dictionary) (if (= (car pair) 3) (setq names (cons (cdr pair) names))))
(setq groups (mapcar '(lambda (name) (cdr (assoc -1 (dictsearch dictionary name)))) names))
(setq entity (entnext))
(while entity (setq lines (cons entity lines) entity (entnext entity)))
(defun any (n all) (nth (rem n (length all)) all))
"""
DAMAGES = ("(entdel {e})", "(dictremove dictionary {name})", '(dictrename dictionary {name} "KZ_0_{number}")',
           '(kz_XData_deleteFldList {g} "KZ_GRP")', '(kz_XData_deleteFldList {e} "KZ_GRP")',
           '(kz_XData_deleteFldList {e} "KZ_SUBGRP")', '(kz_XData_setFld {g} {name} "{field}" "KZ_GRP" {f})',
           '(kz_XData_setFld {e} {name} "{field}" "KZ_GRP" T)')


def made(dice):
    """Eight groups of one to three lines each, some below others."""
    free = list(range(40))
    dice.shuffle(free)
    for number in range(8):
        lines = " ".join(f"(nth {free.pop()} lines)" for _ in range(dice.randint(1, 3)))
        parent = "nil" if not number or dice.random() < 0.4 else f"(nth {dice.randrange(number)} groups)"
        part = dice.choice(("nil", '"A"', '"B"'))
        yield (f'(setq groups (append groups (list (kz_Group_createFromSelSet "T" nil {part} nil '
               f'(set-of (list {lines})) {parent}))))')


def changes(dice):
    for _ in range(60):
        g, h = dice.randrange(8), dice.randrange(8)
        form = dice.choice(CHANGES).format(
            g=f"(nth {g} groups)", h=f"(nth {h} groups)", e=f"(nth {dice.randrange(40)} lines)",
            s=dice.choice(("nil", '"A"', '"B"')), f=dice.choice(("nil", "T")))
        yield f"(if (and (lives {g}) (lives {h})) {form})"


def damages(dice):
    for number in range(dice.randint(1, 5)):
        yield dice.choice(DAMAGES).format(
            g=f"(any {dice.randrange(99)} groups)", e=f"(any {dice.randrange(99)} lines)",
            name=f"(any {dice.randrange(99)} names)", field=dice.choice(("PR", "CH", "CN", "GN", "MN")),
            f=dice.choice(("nil", "T")), number=number)


def run_forms(head, forms, *arguments):
    script = FOLDER / "random.lsp"
    script.write_text(head + "\n".join(forms) + "\n", encoding="utf-8")
    run("run", *arguments, script)


def check(seed):
    dice = random.Random(seed)
    sound, broken, mended = (FOLDER / f"{name}.dxf" for name in ("sound", "broken", "mended"))
    run_forms(START, [*made(dice), *changes(dice)], "-s", sound)
    found, _ = run("check", sound)
    expect(found == "no findings\n", f"seed {seed}: changes\n{found}")
    run_forms(DAMAGE, damages(dice), "-d", sound, "-s", broken)
    plain, _ = run("check", "--repair", "-s", mended, broken, status=None)
    left = sum(line.endswith("; left as it is") for line in plain.splitlines())
    again, _ = run("check", mended, status=1 if left else 0)
    wanted = f"{left} finding{'s' if left > 1 else ''}, 0 that --repair mends" if left else "no findings"
    expect(again.splitlines()[-1] == wanted, f"seed {seed}: repaired\n{plain}again\n{again}")
    audited(mended)
    return plain.count(": ")


told = [check(number_of_seed) for number_of_seed in range(20)]
expect(sum(count > 0 for count in told) > 10, f"damages that were found: {told}")
finish()
