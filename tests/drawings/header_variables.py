"""System variables that the header keeps are added to it under the codes that another reader knows, and
only in files whose version has them."""
import ezdxf
from ezdxf.sections.headervars import HEADER_VAR_MAP
from judge import FOLDER, audited, expect, finish, run

# Each variable gets the value that it has, so that it is written.
NAMES = " ".join(f'"{name[1:]}"' for name in sorted(HEADER_VAR_MAP))
SCRIPT = f"""
(defun keep (name / value)
  (if (setq value (getvar name))
    (vl-catch-all-apply 'setvar (list name value))))
(foreach name '({NAMES}) (keep name))
(setvar "USERR3" 2.5)
(setvar "LIMMAX" '(100.0 50.0))
(setvar "INSBASE" '(1.0 2.0 3.0))
(setvar "ANGBASE" (/ pi 2))
(setvar "CECOLOR" "red")
(setvar "DIMDSEP" ".")
(setvar "LTSCALE" 0.5)
"""


def header_codes(path):
    """First group code of each variable of a file's header."""
    lines = path.read_text(encoding="utf-8").split("\n")
    codes = {}
    for at in range(0, len(lines) - 3, 2):
        if lines[at].strip() == "0" and lines[at + 1] == "ENDSEC":
            return codes
        if lines[at].strip() == "9":
            codes[lines[at + 1]] = int(lines[at + 2])
    return codes


script = FOLDER / "keep.lsp"
script.write_text(SCRIPT, encoding="utf-8")
saved = FOLDER / "kept.dxf"
run("run", "-s", saved, script)
codes = header_codes(saved)
expect(len(codes) > 170, f"{len(codes)} variables")
for name, code in codes.items():
    # The maintenance version has another code since the version that new drawings have.
    if name in HEADER_VAR_MAP and name != "$ACADMAINTVER":
        expect(code == HEADER_VAR_MAP[name].code, f"{name}: {code}, not {HEADER_VAR_MAP[name].code}")
header = audited(saved).header
expect(header["$USERR3"] == 2.5, "real")
expect(tuple(header["$LIMMAX"]) == (100.0, 50.0), f"flat point {header['$LIMMAX']}")
expect(tuple(header["$INSBASE"]) == (1.0, 2.0, 3.0), f"point {header['$INSBASE']}")
expect(header["$ANGBASE"] == 90.0, f"angle {header['$ANGBASE']}")
expect(header["$CECOLOR"] == 1, f"colour {header['$CECOLOR']}")
expect(header["$DIMDSEP"] == ord("."), f"character {header['$DIMDSEP']}")
expect(header["$LTSCALE"] == 0.5, "scale")

# An older file gets what its version has.
old = FOLDER / "old.dxf"
ezdxf.new("R2000").saveas(old)
before = set(header_codes(old))
later = FOLDER / "later.dxf"
run("run", "-d", old, "-s", later, script)
added = set(header_codes(later)) - before
newer = [name for name in added if HEADER_VAR_MAP[name].mindxf > "AC1015"]
expect(not newer, f"variables of later versions: {newer}")
audited(later)
finish()
