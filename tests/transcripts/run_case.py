"""Runs one session at the prompt and compares all that is written with what the case says.

    run_case.py <folder of the programs> <case.txt> [tolvek | tolvek-exact]
    run_case.py --print <folder of the programs> <case.txt> [tolvek | tolvek-exact]

A case is a text file. Its first line is its reason. Sections follow, each under a line "=== <title>":

    === start-up file           tolvekstart.txt of the working folder; without this section there is none
    === file <name>             another file of the working folder
    === standard error          all that is written there; without this section the line about a start-up file that
                                is missing, when it is
    === exit status             a number, when it is not 0
    === tolvek                  a session in this program,
    === tolvek-exact            in this one,
    === both                    or, word for word the same, in both

A session is what a user sees at a terminal, from behind the line with the date on, where what the user types stands
behind the mark:

    >«2 + 3

    5

    >«&q

     bye

All that stands between two marks, but for the line behind a mark, is what the program writes, to the letter. The
programs read from a pipe, in an empty working folder, under a time limit. Lines that differ from run to run are made
alike by the rules below before they are compared.

--print writes the session as it really goes, for a person to read and judge. Nothing writes into a case.
"""

import argparse
import difflib
import os
import re
import select
import subprocess
import sys
import tempfile

MARK = "«"
PROGRAMS = ("tolvek", "tolvek-exact")
NO_STARTUP = "No tolvekstart.txt file.\n"
TIME_LIMIT = 60.0  # generous: the sanitizers on a busy machine
QUIET = 0.3  # seconds without output after which --print takes it that a line is waited for

BANNER = re.compile(
    r"\A\n Tolvek [^\n]*\n"
    r"Reading initialization data from directory /[^\n]*/BACKWARD/\n"
    r" initializing\.\.\.\n"
    r"(?P<tables>(?:(?!\n [A-Z][a-z]{2} ).*\n)*?)"
    r"\n [A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}\n"
)

# What differs from run to run: (what is written, what stands in a case).
VOLATILE = [
    (re.compile(r" Elapsed (?:real time: [ \d:]*\d\.  )?CPU time: (?:\d+:)?[ \d]\d\.\d{3}$", re.M),
     " Elapsed CPU time: SECONDS"),
    (re.compile(r"^ [A-Z][a-z]{2} [A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d \d{4}$", re.M), " DATE"),
]


class BadCase(Exception):
    pass


class Case:
    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            lines = file.read().split("\n")
        self.reason = lines[0]
        if not self.reason or self.reason.startswith("==="):
            raise BadCase("the first line is the reason of the case")
        self.sections = {}
        body = None
        for line in lines[1:]:
            if line.startswith("=== "):
                body = self.sections.setdefault(line[4:], [])
            elif body is not None:
                body.append(line)
            elif line:
                raise BadCase("text before the first section: " + line)
        self.sections = {title: "\n".join(body) for title, body in self.sections.items()}

    def text(self, title):
        """A section's text: what stands between two sections ends with one newline."""
        body = self.sections.get(title)
        return None if body is None else body.rstrip("\n") + "\n" if body.strip("\n") else ""

    def programs(self):
        return [p for p in PROGRAMS if p in self.sections or "both" in self.sections]

    def session(self, program):
        """What is typed, and what the program writes."""
        body = self.text(program) or self.text("both")
        if not body:
            raise BadCase("no session in " + program)
        typed, written = [], []
        for line in body.splitlines(keepends=True):
            before, mark, behind = line.partition(MARK)
            written.append(before)
            if mark:
                typed.append(behind)
        return "".join(typed), "".join(written)

    def write_files(self, folder):
        for title, body in self.sections.items():
            name = "tolvekstart.txt" if title == "start-up file" else title[5:] if title.startswith("file ") else None
            if name:
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(self.text(title))

    def standard_error(self):
        told = self.text("standard error")
        return told if told is not None else "" if "start-up file" in self.sections else NO_STARTUP

    def exit_status(self):
        return int((self.text("exit status") or "0").strip())


def without_banner(text):
    match = BANNER.match(text)
    if not match:
        raise BadCase("the start is not as it should be:\n" + text[:1000])
    return match.group("tables") + text[match.end():]


def alike(text):
    for pattern, instead in VOLATILE:
        text = pattern.sub(instead, text)
    return text


def start(program, folder):
    return subprocess.Popen([program], cwd=folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE)


def run(program, typed, folder):
    process = start(program, folder)
    try:
        out, err = process.communicate(typed.encode(), timeout=TIME_LIMIT)
    except subprocess.TimeoutExpired:
        process.kill()
        out, err = process.communicate()
        err += b"\n*** stopped: the session did not end within the time limit\n"
    return out.decode(errors="backslashreplace"), err.decode(errors="backslashreplace"), process.returncode


def show_difference(title, expected, actual):
    lines = difflib.unified_diff(expected.splitlines(keepends=True), actual.splitlines(keepends=True),
                                 "in the case: " + title, "written: " + title, n=5)
    for line in lines:
        print(line if line.endswith("\n") else line + "\n\\ no newline\n", end="")


def check(case, folder, name):
    typed, expected = case.session(name)
    with tempfile.TemporaryDirectory(prefix="tolvek_") as working:
        case.write_files(working)
        out, err, status = run(os.path.join(folder, name), typed, working)
    actual = alike(without_banner(out))
    compared = [("session in " + name, expected, actual), ("standard error", case.standard_error(), err),
                ("exit status", f"{case.exit_status()}\n", f"{status}\n")]
    failed = [row for row in compared if row[1] != row[2]]
    if failed:
        print(case.reason)
    for row in failed:
        show_difference(*row)
    return not failed


def read_until_quiet(process):
    text = b""
    while select.select([process.stdout], [], [], QUIET)[0]:
        chunk = os.read(process.stdout.fileno(), 65536)
        if not chunk:
            break
        text += chunk
    return text.decode(errors="backslashreplace")


def print_session(case, folder, name):
    typed, _ = case.session(name)
    with tempfile.TemporaryDirectory(prefix="tolvek_") as working:
        case.write_files(working)
        process = start(os.path.join(folder, name), working)
        session = without_banner(read_until_quiet(process))
        for line in typed.splitlines(keepends=True):
            if process.poll() is None:
                process.stdin.write(line.encode())
                process.stdin.flush()
                session += MARK + line + read_until_quiet(process)
        process.kill()
    print("=== " + name)
    print(alike(session), end="")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--print", action="store_true", dest="show")
    parser.add_argument("programs")
    parser.add_argument("case")
    parser.add_argument("program", nargs="?", choices=PROGRAMS)
    options = parser.parse_args()
    options.programs = os.path.abspath(options.programs)
    try:
        case = Case(options.case)
        names = [options.program] if options.program else case.programs()
        if not names:
            raise BadCase("the case has no session")
        for name in names:
            if options.show:
                print_session(case, options.programs, name)
            elif not check(case, options.programs, name):
                return 1
    except BadCase as what:
        print(f"{options.case}: {what}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
