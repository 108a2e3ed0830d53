"""Checks the numeric data files against other ways to the same values, from the layout that the loader reads."""

import math
import pathlib
import sys
from fractions import Fraction

directory = pathlib.Path(sys.argv[1])


class Tokens:
    """The integers of a file, in order."""

    def __init__(self, name):
        self.left = iter([int(word) for word in (directory / name).read_text().split()])

    def take(self, count=1):
        values = [next(self.left) for _ in range(count)]
        return values if count != 1 else values[0]

    def digits(self, count, radix):
        value = 0
        for _ in range(count):
            digit = self.take()
            assert abs(digit) < radix and value * digit >= 0, f"digit {digit}"
            value = value * radix + digit
        return value

    def number(self):
        count = self.take()
        value = self.digits(count, 2**28)
        assert count == 1 or abs(value) >= 2 ** (28 * (count - 1)), "a leading digit 0"
        return value

    def ended(self):
        return next(self.left, None) is None


def is_prime(n):
    """Miller and Rabin with the bases 2, 3, 5, 7: no exception below 3,215,031,751."""
    if n < 2 or any(n % p == 0 and n != p for p in (2, 3, 5, 7)):
        return False
    odd, twos = n - 1, 0
    while odd % 2 == 0:
        odd, twos = odd // 2, twos + 1
    for base in (2, 3, 5, 7):
        power = pow(base, odd, n)
        if n in (2, 3, 5, 7) or power in (1, n - 1):
            continue
        for _ in range(twos - 1):
            power = power * power % n
            if power == n - 1:
                break
        else:
            return False
    return True


def consecutive_primes(values, first, last):
    assert values[0] == first and values[-1] == last and values == sorted(set(values))
    table = set(values)
    for n in range(first, last + 1):
        assert is_prime(n) == (n in table), n


def check_primes():
    file = Tokens("primelist")
    consecutive_primes(file.take(1229), 2, 9973)
    consecutive_primes(file.take(2466), 17021, 42349)
    assert file.ended()

    file = Tokens("pprods")
    primes = file.take(599)
    consecutive_primes(primes, 42359, 48869)
    for i in range(599):
        product = file.number()
        if i < 3 or i % 50 == 0:
            assert product == math.prod(primes[: i + 1]), i
        else:
            assert product == previous * primes[i], i
        previous = product
    assert file.ended()
    assert 2 ** (28 * 331) <= previous < 2 ** (28 * 332)

    file = Tokens("bprimes")
    consecutive_primes(file.take(1516), 48871, 65521)
    assert file.ended()

    file = Tokens("lrgpmes")
    large = file.take(2000)
    consecutive_primes(large, large[0], 2147483629)
    assert file.ended()


def check_powers():
    file = Tokens("pow228")
    for i in range(130):
        figures = file.take()
        power = file.digits((figures + 7) // 8, 10**8)
        assert power == 2 ** (28 * (i + 1)) and figures == len(str(power)), i
    arguments = file.take(22)
    assert arguments[:2] == [0, 10] and arguments == sorted(set(arguments))
    for n in arguments:
        assert file.number() == math.factorial(n), n
    binomials = []
    for n in range(3, 151, 3):
        count = 1
        for k in range(1, n // 2 + 1):
            first = file.take()
            if first < 0:
                count, first = count + 1, file.take()
            value = first
            for digit in file.take(count - 1) if count > 2 else [file.take()] if count == 2 else []:
                value = value * 2**28 + digit
            binomials.append(value)
            assert value == math.comb(n, k), (n, k)
    assert len(binomials) == 1900
    assert file.take(80) == binomials[:80]
    assert file.ended()


def check_lagrange():
    file = Tokens("chdat")
    for r in range(1, 38):
        for c in range(r + 1):
            denominator = file.number()
            degree = file.take()
            numerator = [file.number() for _ in range(degree + 1)]
            assert degree == r and denominator > 0
            assert math.gcd(denominator, *numerator) == 1, (r, c)
            for point in range(1, r + 2):
                value = 0
                for coefficient in numerator:
                    value = value * point + coefficient
                assert Fraction(value, denominator) == (point == c + 1), (r, c, point)
    assert file.ended()


def check_fields():
    """Each polynomial has no factor of lower degree, and the generator no lower order: a field, and all of it."""

    def times(a, b, degree, polynomial):
        product = 0
        for bit in range(degree):
            if b >> bit & 1:
                product ^= a << bit
        for bit in range(2 * degree, degree - 1, -1):
            if product >> bit & 1:
                product ^= polynomial << bit - degree
        return product

    def power(a, n, *field):
        result = 1
        for bit in bin(n)[2:]:
            result = times(result, result, *field)
            if bit == "1":
                result = times(result, a, *field)
        return result

    for name, n, factors in (("f256d", 8, (3, 5, 17)), ("f2t16d", 16, (3, 5, 17, 257))):
        file = Tokens(name)
        degree, polynomial, generator = file.take(3)
        assert file.ended() and degree == n and polynomial >> n == 1
        order = 2**n - 1
        assert math.prod(factors) == order
        assert power(generator, order, degree, polynomial) == 1
        assert all(power(generator, order // p, degree, polynomial) != 1 for p in factors)


check_primes()
check_powers()
check_lagrange()
check_fields()
