"""Makes pow228: powers of the radix in decimal form, factorials and binomial coefficients.

A  2^(28 k) for k from 1 to 130: the count of its decimal figures, then groups of 8 figures
B  the 22 arguments of the factorials
C  the factorials
D  C(n, k) for n = 3, 6, ..., 150 and k from 1 to n / 2: digits only; their count starts at 1 with each n, and a
   -1 says that it grows by one from this entry on
E  the values of D up to n = 30 as plain integers
"""

from math import comb, factorial

from datafile import DECIMAL_RADIX, check, digits, in_rows, number, write

# The arithmetic computes the same table when it is first asked for a factorial; a test compares the two.
ARGUMENTS = list(range(0, 220, 10))


def binomial_rows():
    for n in range(3, 151, 3):
        row, length = [], 1
        for k in range(1, n // 2 + 1):
            chain = digits(comb(n, k))
            if len(chain) > length:
                row.append(-1)
                length += 1
            check(len(chain) == length, f"C({n}, {k}) grows by more than a digit")
            row += chain
        yield row


def main():
    powers = []
    for k in range(1, 131):
        power = 1 << 28 * k
        groups = digits(power, DECIMAL_RADIX)
        figures = len(str(power))
        check(len(groups) == (figures + 7) // 8, f"the groups of 2^{28 * k}")
        powers.append([figures, *groups])
    check(len(ARGUMENTS) == 22 and ARGUMENTS[:2] == [0, 10], "the arguments of the factorials")
    pairs = [(n, k) for n in range(3, 151, 3) for k in range(1, n // 2 + 1)]
    check(len(pairs) == 1900, "the count of the binomial coefficients")
    small = [comb(n, k) for n, k in pairs if n <= 30]
    check(len(small) == 80 and max(small) < 1 << 31, "the small binomial coefficients")
    factorials = [number(factorial(n)) for n in ARGUMENTS]
    write("pow228", powers + [ARGUMENTS] + factorials + list(binomial_rows()) + in_rows(small))


main()
