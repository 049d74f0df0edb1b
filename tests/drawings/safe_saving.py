"""A drawing on disk is the old one or the new one, whole, whatever ends the program that saves it: a kill at
any moment, a full disk, a limit. What is left over goes with the next save."""
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

from judge import FOLDER, expect, finish, run

KILLS = 200
SAVING = ('(progn (setvar "CMDECHO" 0) (while T (setvar "USERI1" (rem (1+ (getvar "USERI1")) 30000))'
          ' (command "_QSAVE")))')


def make(lines):
    """A drawing with some megabytes of lines."""
    folder = FOLDER / "kept"
    folder.mkdir()
    path = folder / "plan.dxf"
    run("eval", "-s", path, '(setvar "USERI1" 1)',
        f'(repeat {lines} (entmake (list (quote (0 . "LINE")) (list 10 1.25 (getvar "MILLISECS") 0.0)'
        ' (list 11 1234.5678 2.5 0.0))))')
    return path


def body(path):
    """The drawing without the number that the runs count."""
    return re.sub(rb"(\$USERI1\r?\n *70\r?\n *)\d+", rb"\1N", path.read_bytes())


def kills(path):
    whole = body(path)
    chance = random.Random(20)
    for number in range(KILLS):
        child = subprocess.Popen([sys.argv[1], "eval", "-d", path, SAVING], stderr=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL)
        time.sleep(chance.uniform(0.02, 0.07))
        child.send_signal(signal.SIGTERM if number % 10 == 9 else signal.SIGKILL)
        child.wait()
        if body(path) != whole:
            expect(False, f"kill {number}: the drawing is torn")
            break
        left = os.listdir(path.parent)
        expect(len(left) <= 2, f"kill {number}: {left}")
    counted = re.search(rb"\$USERI1\r?\n *70\r?\n *(\d+)", path.read_bytes())
    expect(int(counted[1]) > 1, "no run saved anything before it was killed")
    run("eval", "-d", path, '(command "_QSAVE")')
    expect(os.listdir(path.parent) == ["plan.dxf"], f"left: {os.listdir(path.parent)}")


def limits(path):
    """The program can't write as much as it would."""
    before = path.read_bytes()

    def limit():
        resource.setrlimit(resource.RLIMIT_FSIZE, (len(before) // 2, len(before) // 2))
    done = subprocess.run([sys.argv[1], "eval", "-d", path, "-s", path, '(setvar "USERI1" 7)'], check=False,
                          capture_output=True, text=True, preexec_fn=limit)
    expect(done.returncode == 3 and "larger than a file may be here" in done.stderr,
           f"limit: {done.returncode} {done.stderr}")
    expect(path.read_bytes() == before, "limit: the drawing changed")
    expect(os.listdir(path.parent) == ["plan.dxf"], f"limit: {os.listdir(path.parent)}")


def full_disk(path):
    """A small file system of its own, with room for the drawing but not for a second one."""
    mount = FOLDER / "full"
    mount.mkdir()
    size = path.stat().st_size * 3 // 2
    script = (f'mount -t tmpfs -o size={size} none "{mount}" || exit 77; cp "{path}" "{mount}/plan.dxf"; '
              f'"{sys.argv[1]}" eval -d "{mount}/plan.dxf" -s "{mount}/plan.dxf" "(setvar \\"USERI1\\" 7)"; '
              f'echo "status $?"; cmp "{path}" "{mount}/plan.dxf" && ls -A "{mount}"')
    way = ["unshare", "-m"] if os.geteuid() == 0 else ["unshare", "-rm"]
    if shutil.which("unshare") is None:
        print("full disk: skipped, there is no unshare")
        return
    done = subprocess.run([*way, "sh", "-c", script], capture_output=True, text=True, check=False)
    if "status" not in done.stdout:
        print("full disk: skipped, no file system may be mounted here")
        return
    expect("the disk is full" in done.stderr, f"full disk: {done.stderr}")
    expect(done.stdout.endswith("status 3\nplan.dxf\n"), f"full disk: {done.stdout}")


drawing = make(20000)
kills(drawing)
limits(drawing)
full_disk(drawing)
finish()
