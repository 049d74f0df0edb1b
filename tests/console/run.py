"""Runs a transcript of commands and compares what they print, letter by letter.

    run.py PROGRAM TRANSCRIPT...

A transcript holds, for each command:
    $ kz eval '(+ 1 2)'     a command line for the shell; it runs in a folder of its own
    3                       what it prints on standard output
    2| ; error: ...         what it prints on standard error
    ? 1                     its exit status when it is not 0
    @ name.lsp              begins a file for the commands below; its lines follow, each behind "| "
"#" begins a comment, "..." in an expected line stands for anything, "<folder>" for the working folder.
"""
import os
import re
import subprocess
import sys
import tempfile


class Step:
    def __init__(self, command, line):
        self.command, self.line = command, line
        self.out, self.err, self.status = [], [], 0


def read(path):
    """The steps of a transcript: commands, and files to write as (name, lines)."""
    steps = []
    with open(path, encoding="utf-8") as transcript:
        for number, text in enumerate(transcript.read().split("\n"), 1):
            if text.startswith("#"):
                continue
            if text.startswith("$ "):
                steps.append(Step(text[2:], number))
            elif text.startswith("@ "):
                steps.append((text[2:], []))
            elif text == "|" or text.startswith("| "):
                steps[-1][1].append(text[2:])
            elif text.startswith("2| "):
                steps[-1].err.append(text[3:])
            elif text.startswith("? "):
                steps[-1].status = int(text[2:])
            elif text:
                steps[-1].out.append(text)
    return steps


def matches(wanted, got):
    pattern = ".*".join(re.escape(part) for part in "\n".join(wanted).split("..."))
    return re.fullmatch(pattern, "\n".join(got)) is not None


def run(step, folder, environment):
    """Runs one command. Gives what differs, or nothing."""
    done = subprocess.run(step.command, shell=True, cwd=folder, env=environment,
                          capture_output=True, stdin=subprocess.DEVNULL, timeout=120)
    out, err = ([line for line in stream.decode("utf-8", "replace").replace(folder, "<folder>").split("\n")
                 if line] for stream in (done.stdout, done.stderr))
    for what, wanted, got in (("standard output", step.out, out), ("standard error", step.err, err)):
        if not matches(wanted, got):
            return f"{what}:\n  wanted {wanted}\n  got    {got}"
    if done.returncode != step.status:
        return f"status: wanted {step.status}, got {done.returncode}; {err}"
    return None


def main():
    program = os.path.abspath(sys.argv[1])
    failures = commands = 0
    for path in sys.argv[2:]:
        with tempfile.TemporaryDirectory() as folder:
            folder = os.path.realpath(folder)
            environment = dict(os.environ, PATH=os.path.dirname(program) + ":" + os.environ["PATH"],
                               HOME=folder, XDG_STATE_HOME=folder + "/state")
            for step in read(path):
                if isinstance(step, tuple):
                    with open(os.path.join(folder, step[0]), "w", encoding="utf-8") as file:
                        file.write("\n".join(step[1]) + "\n")
                    continue
                commands += 1
                difference = run(step, folder, environment)
                if difference:
                    failures += 1
                    print(f"{path}:{step.line}: {step.command}\n  {difference}")
    print(f"{commands - failures} of {commands} commands as expected")
    return 1 if failures or not commands else 0


if __name__ == "__main__":
    sys.exit(main())
