"""Polynomials as text, one a line, as statements that read them term by term.

    terms.py <file> <variables, the outermost first> <array>

Line i, a sum of products of an integer and powers of variables, becomes the statement "array[i] := &_n ...:". The
statements stand in the scripts of problems that come with data.
"""

import re
import sys
from itertools import groupby

MONOMIAL = re.compile(r"[+-]?[^+-]+")


def parsed(monomial, variables):
    """The exponents and the coefficient."""
    exponents, coefficient = [0] * len(variables), 1
    if monomial[0] in "+-":
        coefficient = -1 if monomial[0] == "-" else 1
        monomial = monomial[1:]
    for factor in monomial.split("*"):
        name, _, power = factor.partition("^")
        if name in variables:
            exponents[variables.index(name)] += int(power or 1)
        else:
            coefficient *= int(factor)
    return exponents, coefficient


def nested(terms, variables):
    """The terms in the order in which the reader wants them, which are sorted, with coefficients in parentheses."""
    if not variables:
        return str(terms[0][1])
    parts = []
    for power, group in groupby(terms, key=lambda term: term[0][0]):
        inner = nested([(exponents[1:], coefficient) for exponents, coefficient in group], variables[1:])
        if power == 0:
            parts.append(inner)
        else:
            is_number = re.fullmatch(r"-?\d+", inner)
            parts.append((inner if is_number else f"({inner})") + variables[0] + (f"^{power}" if power > 1 else ""))
    return "+".join(parts).replace("+-", "-")


def main():
    path, variables, array = sys.argv[1:]
    with open(path, encoding="ascii") as file:
        for number, line in enumerate(file, 1):
            terms = [parsed(monomial, variables) for monomial in MONOMIAL.findall(line.strip())]
            terms.sort(key=lambda term: term[0], reverse=True)
            print(f"{array}[{number}] := &_n {nested(terms, variables)}:")


if __name__ == "__main__":
    main()
