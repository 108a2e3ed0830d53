"""The sessions that stand in the README and in the manual are held, and go as they say.

    documents.py <folder of the programs> <document.md>...

A session is a block of code whose language is the name of a program. It is what a user sees, from the first prompt on:
what stands behind a prompt at the beginning of a line is typed, and so is the line behind a back-quote that is typed;
all else is what the program writes, to the letter. A block may end at any prompt. A line before the block, "<!-- start-up file: ... -->", is a file to start with.
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile

from session import PATIENCE

PROGRAMS = ("tolvek", "tolvek-exact")
BLOCK = re.compile(r"(?:^<!-- start-up file: (?P<startup>.*?) -->\n+)?^```(?P<language>[a-z-]+)\n(?P<body>.*?)^```$", re.M | re.S)
TYPED = re.compile(r"^(\d?>)([^`\n]*`.*\n.*|.+)\n", re.M)


def parts(body):
    """What is typed in a block, and what is written; the first prompt has been taken off both."""
    typed = "".join(match[2] + "\n" for match in TYPED.finditer(body))
    return typed, TYPED.sub(lambda match: match[1], body)


def session(program, typed, startup):
    with tempfile.TemporaryDirectory(prefix="tolvek_") as folder:
        with open(os.path.join(folder, "tolvekstart.txt"), "w", encoding="utf-8") as file:
            file.write((startup or "").replace("\\n", "\n"))
        result = subprocess.run([program], input=typed + "&q\n", cwd=folder, capture_output=True, text=True,
                                timeout=60 * PATIENCE, check=False)
    return result.stdout.partition("\n\n ")[2].partition("\n")[2]


def written(program, typed, startup):
    """From the first prompt to the last."""
    text = session(program, typed, startup)
    text = text[text.index("\n>") + 1:]
    return re.sub(r"\d?>\n bye\n\Z", "", text)


def check_document(programs, path):
    failed = count = 0
    with open(path, encoding="utf-8") as file:
        text = file.read()
    for block in BLOCK.finditer(text):
        if block["language"] not in PROGRAMS:
            continue
        count += 1
        typed, expected = parts(block["body"])
        quits = typed.endswith("&q\n")
        actual = written(os.path.join(programs, block["language"]), typed, block["startup"])
        if quits:
            actual += ">\n bye\n"
        expected = re.sub(r"\d?>\n?\Z", "", expected)
        if actual.rstrip("\n") != expected.rstrip("\n"):
            failed += 1
            line = text.count("\n", 0, block.start("body")) + 1
            sys.stdout.writelines(difflib.unified_diff(expected.splitlines(keepends=True), actual.splitlines(keepends=True),
                                                       f"{path}:{line}", "written", n=4))
    print(f"{os.path.basename(path)}: {count - failed} of {count} sessions go as they say")
    return failed, count


def main():
    programs, documents = os.path.abspath(sys.argv[1]), sys.argv[2:]
    results = [check_document(programs, path) for path in documents]
    return 0 if not any(failed for failed, _ in results) and all(count for _, count in results) else 1


if __name__ == "__main__":
    sys.exit(main())
