"""The sessions on polynomials once more in modular rings and table fields, statement by statement, beside a model of the
language over polynomials as dictionaries.

    ring_replays.py <tolvek-exact> <folder of the transcripts>

Every value that a model computes is compared with what is shown: the value, its form, and that residues are shown with the
least magnitude. What is refused there is refused here. Nothing is passed over in silence: statements that are not compared
stand in NOT_COMPARED, with the reason.
"""

import glob
import os
import re
import sys
from collections import Counter

from language_model import Model, NotModelled, Refused, statements_of
from polynomials import ring_of, shown_value
from session import answers, check, run_tests

MODULI = [2, 3, 256, 65521, 65536, 2**28 + 3, 2147483629]
FOLDERS = ("polynomials", "rational_functions", "display")
LEAST_COMPARED = 200  # values for each modulus

OTHER_SESSIONS = {
    "dialog_of_variables": "answers to questions, no polynomials",
    "refused_changes": "command levels and functions, no polynomials",
    "decimal_forms": "numbers of the exact ring",
    "lists_of_variables": "lists of names",
}

NOT_COMPARED = {
    # what: why the model leaves it out
    "&": "commands: lists, switches, and changes of ring of the session itself",
    "remainders by numbers": "residues are divided as integers there",
    "decimals where 2 is 0": "a table field has no tenths",
    "unknown values": "left by one of those",
    "remainders of quotients": "of numerators in terms of their own",
    "Monless": "the order of terms as they are kept",
    "Nmon": "the order of terms as they are kept",
    "Mcoef": "the order of terms as they are kept",
    "Mcoefs": "the order of terms as they are kept",
    "Fcoef": "sizes of what is kept",
    "Tcount": "sizes of what is kept",
    "Height": "sizes of what is kept",
    "Logdig": "sizes of what is kept",
    "Pfroot": "roots, which have sessions in modular rings of their own",
}

RANGE_OF_FIELD = {256: 255, 65536: 65535}


# ---- sessions ----


def statements_of_case(path):
    """Of the exact program, or of the other where there is none."""
    with open(path, encoding="utf-8") as file:
        sections = dict(re.findall(r"^=== (tolvek|tolvek-exact|both)$(.*?)(?=^=== |\Z)", file.read(), re.M | re.S))
    text = sections.get("tolvek-exact") or sections.get("both") or sections["tolvek"]
    lines = re.findall(r"^\d?>?.*«(.*)$", text, re.M)
    return [statement for line in lines if line != "&q" for statement in statements_of(line)]


def sessions(folder):
    for name in FOLDERS:
        for path in sorted(glob.glob(os.path.join(folder, name, "*.txt"))):
            case = os.path.basename(path)[:-4]
            if case not in OTHER_SESSIONS:
                yield f"{name}/{case}", statements_of_case(path)


def changes_ring(statement):
    return re.match(r"&p$|&\(p\b", statement)


# ---- one statement ----


def change_variables(model, statement):
    name = re.fullmatch(r"&\(J [=>] (-?)(?:Var\((\d+)\)|(\w+))\)", statement)
    if not name:
        raise Refused
    minus, number, word = name.groups()
    if number:
        if int(number) > len(model.variables):
            raise Refused
        word = model.variables[int(number) - 1]
    (model.cancel_variable if minus else model.add_variable)(word)


def expected(model, statement):
    """The value, None for a statement that shows none; raises what the model raises."""
    if statement.startswith("&(J"):
        return change_variables(model, statement)
    if statement.startswith("&"):
        raise NotModelled("&")
    return model.run(statement)


def without_warnings(text):
    return "\n".join(line for line in text.split("\n") if not re.match(r" *\*?\*?\*? ?Warning\.", line))


def compare(where, n, text, wanted):
    shown = shown_value(without_warnings(text), ring_of(n))
    check(shown == wanted, f"{where} shows {text!r}; the model has {wanted}")
    for digits in re.findall(r"(?<![\w^])\d+", text):
        check(int(digits) <= RANGE_OF_FIELD.get(n, n // 2), f"{where} shows {digits} in {text!r}")


# ---- a session in a ring ----


def replay(program, where, statements, n, counts):
    statements = [s for s in statements if not changes_ring(s)]
    shown = answers(program, [f"&(p = {n})"] + statements)[1:]
    model = Model(ring_of(n))
    for statement, text in zip(statements, shown):
        here = f"{where}, modulo {n}: {statement}"
        refused = "*** " in text.replace("*** Warning", "")
        try:
            wanted = expected(model, statement)
        except Refused:
            check(refused, f"{here} is not refused: {text!r}")
            counts["refused"] += 1
        except NotModelled as what:
            check(str(what) in NOT_COMPARED, f"{here}: the model knows no {what}")
            counts[f"not compared: {what}"] += 1
        else:
            check(not refused, f"{here}: {text!r}; the model has {wanted}")
            if wanted is not None and text.strip():
                compare(here, n, text, wanted)
                counts["compared"] += 1


def test_of(n):
    def replays(program, folder):
        counts = Counter()
        for where, statements in sessions(folder):
            replay(program, where, statements, n, counts)
        print(", ".join(f"{count} {what}" for what, count in sorted(counts.items())))
        check(counts["compared"] >= LEAST_COMPARED, f"only {counts['compared']} values were compared")

    replays.__name__ = f"modulo_{n}"
    return replays


if __name__ == "__main__":
    sys.exit(run_tests([test_of(n) for n in MODULI], os.path.abspath(sys.argv[1]), sys.argv[2]))
