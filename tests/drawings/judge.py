"""Help for the tests that let another reader judge written drawings. Imported by them, runs nothing."""
import atexit
import pathlib
import shutil
import subprocess
import sys
import tempfile

import ezdxf

FOLDER = pathlib.Path(tempfile.mkdtemp(prefix="kz_judge."))
atexit.register(shutil.rmtree, FOLDER, ignore_errors=True)

failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)
        print("FAILED:", what)


def run(*arguments, status=0):
    """Runs kz; gives its output as (stdout, stderr). A status of None is any."""
    done = subprocess.run([sys.argv[1], *map(str, arguments)], capture_output=True, text=True,
                          check=False)
    expect(status in (done.returncode, None), f"kz {arguments}: status {done.returncode}\n{done.stderr}")
    return done.stdout, done.stderr


def audited(path):
    """Reads a drawing and expects it to be clean."""
    document = ezdxf.readfile(path)
    auditor = document.audit()
    for finding in auditor.errors + auditor.fixes:
        expect(False, f"{path.name}: {finding.message}")
    return document


def objects(path):
    """The objects of a drawing as bytes: runs of lines from one 0 group to the next."""
    lines = path.read_bytes().split(b"\n")
    parts, current = [], []
    for at in range(0, len(lines) - 1, 2):
        if lines[at].strip() == b"0" and current:
            parts.append(b"\n".join(current))
            current = []
        current += lines[at:at + 2]
    parts.append(b"\n".join(current))
    return parts


def finish():
    print(f"{'no failures' if not failures else str(len(failures)) + ' failures'}")
    sys.exit(1 if failures else 0)
