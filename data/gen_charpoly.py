"""Makes chdat: the Lagrange basis polynomials on the points 1 to r + 1, for r from 1 to 37.

Row r, column c (0 to r) is the polynomial of degree r that is 1 at the point c + 1 and 0 at the other points: the
product of the (x - p) over the other points p, divided by c! (r - c)! and by (-1)^(r - c). It is written in lowest
terms with a positive denominator: the denominator as a number, the degree, then the coefficients as numbers from
the leading one down. The numerator is monic or minus a monic polynomial, so that its content is 1.
"""

from fractions import Fraction
from math import factorial

from datafile import check, number, write

ROWS = 37


def times_linear(polynomial, point):
    """polynomial times (x - point); coefficients from the leading one down."""
    return [a - point * b for a, b in zip([*polynomial, 0], [0, *polynomial])]


def without_root(polynomial, point):
    """polynomial divided by (x - point), a factor of it: Horner's scheme."""
    quotient, carry = [], 0
    for coefficient in polynomial:
        carry = carry * point + coefficient
        quotient.append(carry)
    check(quotient[-1] == 0, f"{point} is a root")
    return quotient[:-1]


def value(polynomial, point):
    result = 0
    for coefficient in polynomial:
        result = result * point + coefficient
    return result


def main():
    records = []
    product = [1, -1]
    for r in range(1, ROWS + 1):
        product = times_linear(product, r + 1)
        for c in range(r + 1):
            denominator = factorial(c) * factorial(r - c)
            sign = (-1) ** (r - c)
            numerator = [sign * a for a in without_root(product, c + 1)]
            check(len(numerator) == r + 1 and all(numerator), f"row {r}, column {c} has no gaps")
            check(Fraction(value(numerator, c + 1), denominator) == 1, f"row {r}, column {c} at its own point")
            record = [*number(denominator), r]
            for coefficient in numerator:
                record += number(coefficient)
            records.append(record)
    check(len(records) == ROWS * (ROWS + 3) // 2, "the count of the polynomials")
    write("chdat", records)


main()
