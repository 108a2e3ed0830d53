"""Makes primelist, pprods, bprimes and lrgpmes: the tables of primes.

primelist  the 1,229 primes below 10000, then the 2,466 consecutive primes that end at 42349
pprods     the 599 consecutive primes from 42359 to 48869, then their running products
bprimes    the 1,516 consecutive primes from 48871 to 65521
lrgpmes    the 2,000 greatest primes up to 2147483629, the last but one below 2^31
"""

from datafile import check, digits, in_rows, number, write

LARGE_LAST = 2147483629


def sieve(first, last):
    """The primes from first to last, by the sieve of Eratosthenes on that stretch."""
    prime = bytearray([1]) * (last + 1 - first)
    limit = int(last**0.5) + 1
    small = [True] * (limit + 1)
    for p in range(2, limit + 1):
        if not small[p]:
            continue
        for multiple in range(p * p, limit + 1, p):
            small[multiple] = False
        start = max(p * p, (first + p - 1) // p * p)
        prime[start - first :: p] = bytes(len(range(start, last + 1, p)))
    return [n for n in range(max(first, 2), last + 1) if prime[n - first]]


def main():
    primes = sieve(0, 65521)
    below_10000 = [p for p in primes if p < 10000]
    check(len(below_10000) == 1229 and below_10000[-1] == 9973, "the primes below 10000")
    to_42349 = [p for p in primes if p <= 42349][-2466:]
    check((to_42349[0], to_42349[-1]) == (17021, 42349), "the primes up to 42349")
    write("primelist", in_rows(below_10000) + in_rows(to_42349))

    middle = [p for p in primes if 42359 <= p <= 48869]
    check(len(middle) == 599 and (middle[0], middle[-1]) == (42359, 48869), "the primes from 42359 to 48869")
    products, product = [], 1
    for p in middle:
        product *= p
        products.append(number(product))
    check(len(digits(product)) == 332, "the product of all primes of pprods")
    write("pprods", in_rows(middle) + products)

    upper = [p for p in primes if p >= 48871]
    check(len(upper) == 1516 and (upper[0], upper[-1]) == (48871, 65521), "the primes from 48871 to 65521")
    write("bprimes", in_rows(upper))

    large = sieve(LARGE_LAST - 60000, LARGE_LAST)[-2000:]
    check(len(large) == 2000 and large[-1] == LARGE_LAST, "the large primes")
    write("lrgpmes", in_rows(large, 8))


main()
