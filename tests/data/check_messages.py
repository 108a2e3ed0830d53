"""Checks Qerrs against the files written by hand: each text and each name stands in its place."""

import pathlib
import re
import sys

sources, built = map(pathlib.Path, sys.argv[1:])
lines = (built / "Qerrs").read_text(encoding="ascii").splitlines()
assert len(lines) == 377 + 1 + 110

told = {}
for line in (sources / "messages.txt").read_text(encoding="ascii").splitlines():
    if match := re.fullmatch(r"(\d+|rest) {2,}(\S.*)", line):
        told[match[1]] = match[2]
    else:
        assert line == "" or line.startswith("#"), line
assert len(told) == 311
for n in range(1, 378):
    text = lines[n - 1]
    assert 1 <= len(text) <= 65 and not text.startswith(" "), n
    assert text == told.get(str(n), told["rest"]), n

assert lines[377] == "109"
names = [line.split() for line in lines[378:]]
assert all(len(words) == 2 for words in names)
only_names = [name for name, _ in names]
assert only_names == sorted(only_names) and len(set(only_names)) == 110
for code, name in {0: "Array", 12: "Det", 41: "M-", 55: "Ntcoef", 65: "Prime", 82: "Sigma", 109: "Zcoef"}.items():
    assert only_names[code] == name, code
for code, (_, word) in enumerate(names):
    assert word == (f"*{code}" if code in (1, 12, 66, 79, 82, 89, 101) else "-"), code
