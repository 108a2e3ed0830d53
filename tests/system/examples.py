"""Each script of examples/ is run, and what it shows is compared with what Python computes.

    examples.py <folder of the programs> <folder of the examples>
"""

import math
import os
import re
import subprocess
import sys
from fractions import Fraction

from session import PATIENCE, check, run_tests

programs = examples = ""


def values_of(script, program):
    """What a script shows, statement by statement, as fractions: the text behind each prompt."""
    with open(os.path.join(examples, script), encoding="ascii") as file:
        result = subprocess.run([os.path.join(programs, program)], stdin=file, capture_output=True, text=True,
                                timeout=60 * PATIENCE, check=False)
    check(result.returncode == 0 and result.stdout.endswith(">\n bye\n"), repr(result.stdout[-300:]))
    check("***" not in result.stdout, repr(result.stdout))
    shown = [text.strip() for text in result.stdout.split("\n>")[1:-1]]
    shown = [text.replace(" `\n", "") for text in shown if text]
    return shown


def fraction_of(text):
    return Fraction(text.partition(";")[0].replace(" ", ""))


def close(shown, expected, size, what):
    """Floats carry 64 bits; a script of a few steps loses few of them, in proportion to the size of its operands."""
    check(abs(fraction_of(shown) - expected) <= size * Fraction(1, 10**17), f"{what}: {shown}, not {float(expected)}")


def decimals(value):
    """The decimal form of a fraction: forty figures behind the point, cut off."""
    whole, rest = divmod(abs(value), 1)
    return f"{'-' if value < 0 else ''}{whole}.{math.floor(rest * 10**40):040d}"


def newton():
    shown = values_of("newton.tv", "tolvek")
    check(len(shown) == 7, str(shown))
    x = Fraction(2)
    check(shown[0] == "2", shown[0])
    for text in shown[1:6]:
        x = x - (x**3 - 2 * x - 5) / (3 * x**2 - 2)
        x = x.limit_denominator(10**60)  # far beyond what a float tells apart
        close(text, x, 2, "newton.tv")
    root = Fraction(shown[5])
    check(abs(root**3 - 2 * root - 5) < Fraction(1, 10**17), "the last value is a root")
    cube = Fraction(shown[6])
    check(abs(cube**3 - 10) < Fraction(1, 10**16), "the cube root of 10")


def loan():
    shown = values_of("loan.tv", "tolvek")
    check(len(shown) == 13, str(shown))
    owed, rate = Fraction(12000), Fraction(45, 1000) / 12
    payment = owed * rate / (1 - (1 + rate) ** -12)
    close(shown[0], payment, payment, "payment")
    for month, text in enumerate(shown[1:12], 1):
        owed = owed * (1 + rate) - payment
        close(text, owed, 12000, f"month {month}")
    check(abs(fraction_of(shown[12])) < Fraction(1, 10**13), f"nothing is owed at the end: {shown[12]}")


def convergents():
    shown = values_of("convergents.tv", "tolvek-exact")
    expected, x, p, q = [], Fraction("3.14159265358979"), (0, 1), (1, 0)
    for _ in range(7):
        a = math.floor(x)
        p, q = (p[1], a * p[1] + p[0]), (q[1], a * q[1] + q[0])
        expected.append(Fraction(p[1], q[1]))
        x = 1 / (x - a)
    check(Fraction(355, 113) in expected, "the known one")
    check([fraction_of(text) for text in shown] == expected, f"{shown}, not {expected}")
    for text, value in zip(shown[1:], expected[1:]):
        check(text == f"{value.numerator} / {value.denominator};  or  {decimals(value)}", text)


def birthdays():
    shown = values_of("birthdays.tv", "tolvek-exact")
    probability = 1 - Fraction(math.factorial(365), math.factorial(342) * 365**23)
    check(fraction_of(shown[0].replace("\n", "")) == probability, shown[0])
    check(re.sub(r"\s", "", shown[0]).endswith("or" + decimals(probability)), shown[0])
    check([int(re.sub(r"\s", "", text)) for text in shown[1:]] == [math.factorial(52), 2**521 - 1], str(shown[1:]))


def squareforms():
    shown = [int(text.replace(" ", "")) for text in values_of("squareforms.tv", "tolvek-exact") if text != "0"]
    check(len(shown) == 9, str(shown))
    for factors, product in ((shown[0:2], 11111), (shown[2:4], 2**32 + 1), (shown[4:7], 2**29 - 1),
                             (shown[7:9], 1000000007 * 1000000009)):
        check(math.prod(factors) == product and min(factors) > 1, f"{factors} of {product}")


def sturm():
    shown = [text for text in values_of("sturm.tv", "tolvek-exact") if text != "0"]
    check(len(shown) == 10, str(shown))
    counts = [int(shown[i]) for i in (0, 1, 2, 5, 6, 8, 9)]
    check(counts == [9, 8, 4, 4, 1, 3, 2], str(counts))  # members and roots of each polynomial, as known by their forms
    for text, root, width in ((shown[3], -math.cos(math.pi / 16), 2**-29), (shown[4], math.cos(7 * math.pi / 16), 2**-30)):
        check(0 <= fraction_of(text) - Fraction(root) + Fraction(1, 10**15) <= width + 1e-14, f"{text} encloses {root}")
    x = fraction_of(shown[7])
    check((x - Fraction(200, 2**40))**5 - (x - Fraction(200, 2**40)) - 1 <= 0 <= x**5 - x - 1, shown[7])


def resultants():
    shown = [fraction_of(text) for text in values_of("resultants.tv", "tolvek-exact")]
    eliminated = [Fraction(y)**4 - 25 * Fraction(y)**2 + 144 for y in (1, 2, 3, 4, Fraction(1, 2))]
    discriminants = [-4 * Fraction(p)**3 - 27 * Fraction(q)**2
                     for p, q in ((-2, -5), (-3, 2), (Fraction(1, 2), Fraction(1, 3)))]
    differences = math.prod(i - j for i in range(1, 5) for j in range(5, 8))
    expected = [*[0] * 5, *eliminated, 0, *discriminants, differences]  # arrays and functions show 0
    check(shown == expected, f"{shown}, not {expected}")


def every_script_has_its_test():
    scripts = {name for name in os.listdir(examples) if name.endswith(".tv")}
    check(scripts == {test.__name__ + ".tv" for test in TESTS}, str(scripts))


def matrix_of(text):
    """The entries of a matrix that is shown, row by row; the value 0 of the statement stands below it."""
    rows = [row for row in text.partition("\n\n")[0].split(",\n")]
    return [[Fraction(entry.replace(" ", "")) for entry in row.split(",")] for row in rows]


def product(a, b):
    return [[sum(x * y for x, y in zip(row, column)) for column in zip(*b)] for row in a]


def power(a, n):
    result = a
    for _ in range(n - 1):
        result = product(result, a)
    return result


def markov():
    shown = values_of("markov.tv", "tolvek-exact")
    check(len(shown) == 6, str(shown))
    p = [[Fraction(x, 4) for x in row] for row in ((0, 2, 2), (1, 2, 1), (1, 1, 2))]
    w = [[Fraction(1, 5), Fraction(2, 5), Fraction(2, 5)]]
    check(product(w, p) == w, "the row that stays")
    expected = [power(p, 2), power(p, 7), [[1]] * 3, w, [[0] * 3]]
    for text, matrix in zip(shown, expected):
        check(matrix_of(text) == matrix, f"{text}, not {matrix}")
    furthest = max(abs(x - y) for row in power(p, 14) for x, y in zip(row, w[0]))
    check(fraction_of(shown[5]) == furthest, f"{shown[5]}, not {furthest}")


def walks():
    shown = values_of("walks.tv", "tolvek-exact")
    check(len(shown) == 10, str(shown))
    cycle = [[int((i - j) % 6 in (1, 5)) for j in range(6)] for i in range(6)]
    cube = [[int((i ^ j) in (1, 2, 4)) for j in range(8)] for i in range(8)]
    check(matrix_of(shown[0]) == cycle and matrix_of(shown[6]) == cube, "the graphs")
    trace = [sum(power(cycle, n)[i][i] for i in range(6)) for n in (2, 3, 4, 10, 60)]
    check(trace[4] == 2 * 2**60 + 4, "eigenvalues are 2, -2, and twice 1 and -1")
    check([int(text) for text in shown[1:6]] == trace, f"{shown[1:6]}, not {trace}")
    check(int(shown[7]) == 12 and int(shown[8]) == 2 * 3**6 + 6 == 1464, f"{shown[7:9]}")
    check(matrix_of(shown[9]) == [[3]] * 8, shown[9])


TESTS = [newton, loan, convergents, birthdays, squareforms, sturm, resultants, markov, walks]


def main():
    global programs, examples
    programs, examples = (os.path.abspath(path) for path in sys.argv[1:])
    return run_tests([*TESTS, every_script_has_its_test])


if __name__ == "__main__":
    sys.exit(main())
