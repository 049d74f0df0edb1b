"""The console as it is used: a terminal, keys, what comes back. Usage: terminal.py KZ"""
import os
import pathlib
import pty
import re
import select
import sys
import tempfile
import time

PATIENCE = 20  # seconds for an answer, on a machine that is busy
SUPPRESSED = pathlib.Path(__file__).resolve().parents[1] / "support" / "libedit.supp"
PASTE = "\x1b[200~{}\x1b[201~"


class Terminal:
    """A console at a terminal of its own."""

    def __init__(self, folder, *arguments):
        program = os.path.abspath(sys.argv[1])
        self.process, self.read = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execve(program, [program, *arguments],
                      dict(os.environ, TERM="xterm", HOME=folder, KZ_HISTORY=folder + "/history", LC_ALL="C.UTF-8",
                           LINES="24", COLUMNS="120",
                           LSAN_OPTIONS=f"suppressions={SUPPRESSED}:print_suppressions=0"))
        self.text = ""
        self.expect(r"kz> $")

    def send(self, keys):
        os.write(self.read, keys.encode())

    def expect(self, pattern):
        """Waits until what came since the last match holds the pattern, and gives it."""
        end = time.monotonic() + PATIENCE
        while True:
            plain = re.sub(r"\x1b\[[0-9;?]*[A-Za-z]", "", self.text).replace("\r", "")
            found = re.search(pattern, plain)
            if found:
                self.text = ""
                return plain
            ready, _, _ = select.select([self.read], [], [], max(0, end - time.monotonic()))
            if not ready:
                raise AssertionError(f"{pattern!r} didn't come, but {plain!r}")
            try:
                self.text += os.read(self.read, 65536).decode(errors="replace")
            except OSError:
                raise AssertionError(f"{pattern!r} didn't come before the end, but {plain!r}") from None

    def ask(self, keys, pattern):
        self.send(keys + "\r")
        return self.expect(pattern + r"[^$]*kz> $")

    def leave(self):
        self.send("quit\rquit\r")
        try:
            while True:
                self.text += os.read(self.read, 65536).decode(errors="replace")
        except OSError:
            pass  # the program has left
        _, status = os.waitpid(self.process, 0)
        os.close(self.read)
        return os.waitstatus_to_exitcode(status)


def edits(terminal):
    terminal.ask("(setq a '(1 2\r 3))", r"\(_> .*\n\(1 2 3\)")
    terminal.ask("!a", r"\n\(1 2 3\)")
    terminal.ask('(setq s "two\rlines")', r'"_> .*\n"two\\nlines"')
    terminal.ask("(strlen \"é泵\x7fx\")", r"\n2\n")
    terminal.send("(kz_XData_setH\t")
    terminal.ask('"x" nil)', r"kz_XData_setHandle \"x\" nil\)")
    terminal.send("(vl-string-l\t")
    terminal.ask('" " " b")', r'vl-string-left-trim " " " b"\)\n"b"')
    terminal.send("(vl-remove-i\t\t")
    terminal.expect("vl-remove-if +vl-remove-if-not")
    terminal.ask("\x15", "")


def pastes(terminal):
    terminal.send(PASTE.format('(defun f (x)\r\t(* x 2)) ; doubled )\r(f 21)\r(setq s "a\tb\r;c")\r(f'))
    terminal.expect(r'F\nkz> \(f 21\)\n42\nkz> \(setq s "a\tb\n\("_> ;c"\)\n"a\\tb\\n;c"\n(kz> )+\(f$')
    terminal.ask(" 4)", r"\n8\n")
    terminal.send(PASTE.format("line\r0,0\r1,1\r\r(cdr (assoc 11 (entget (entlast))))\r"))
    terminal.expect(r"\(1.0 1.0 0.0\)\n+kz> $")


def errs(terminal):
    terminal.ask("(car 5)", r"; error: bad argument type: consp 5\n\(CAR 5\)")
    terminal.ask('(strcta "a")', r"near are: strcat")
    terminal.ask("zom", r'Unknown command "zom"(.|\n)*near are: ZOOM')
    terminal.ask("? strcat", r"One text of all")
    terminal.send("(alert \"begun\") (while t)\r")
    terminal.expect(r"\nbegun\n")
    terminal.send("\x03")
    terminal.expect(r"; error: Function cancelled(.|\n)*kz> $")
    # None is lost, however soon it comes behind the prompt.
    for _ in range(50):
        terminal.send("(list 1\r")
        terminal.expect(r"\(_> ")
        terminal.send("\x03")
        terminal.expect(r"\nkz> $")
    terminal.ask("(defun g (n) (1+ (g n)))(g 1)", r"; error: internal stack limit reached")
    terminal.ask("point 5,5", r"")
    terminal.send("\r")
    terminal.expect(r"Specify a point: $")
    terminal.ask("1,1", r"")


def main():
    try:
        for end in pty.openpty():
            os.close(end)
    except OSError as fault:
        print(f"skipped: there are no terminals here: {fault}")
        sys.exit(77)
    with tempfile.TemporaryDirectory(prefix="kz_terminal.") as folder:
        terminal = Terminal(folder)
        edits(terminal)
        pastes(terminal)
        errs(terminal)
        assert terminal.leave() == 0
        terminal = Terminal(folder)
        terminal.send("\x1b[A\x1b[A")
        terminal.expect(r"point 5,5|\(defun g")
        terminal.send("\x15")
        terminal.send("\x12setq s")
        terminal.expect(r"\(setq s \"a\\tb\\n;c\"\)|\(setq s")
        terminal.send("\x07\x15")
        terminal.leave()
        history = pathlib.Path(folder, "history").read_text(encoding="utf-8")
        assert "(defun f (x)" in history and "zom" in history, history
    print("as expected")


main()
