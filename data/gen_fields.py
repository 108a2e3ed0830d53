"""Makes f256d and f2t16d: the finite fields with 2^8 and 2^16 elements.

Each file holds three integers: the degree n; the polynomial over two elements that products are reduced by, bit i
being its coefficient of x^i; and a generator of the multiplicative group. The polynomials are primitive, so that
the generator is x.
"""

from datafile import check, write

FIELDS = {
    "f256d": (8, 0b1_0001_1101),  # x^8 + x^4 + x^3 + x^2 + 1
    "f2t16d": (16, 0b1_0001_0000_0000_1011),  # x^16 + x^12 + x^3 + x + 1
}
GENERATOR = 2


def order_of_x(degree, polynomial):
    """How many products by x lead from 1 back to 1."""
    element, steps = 1, 0
    while True:
        element <<= 1
        if element >> degree:
            element ^= polynomial
        steps += 1
        if element == 1 or steps >> degree:
            return steps


def main():
    for name, (degree, polynomial) in FIELDS.items():
        check(polynomial.bit_length() == degree + 1, f"the degree of the polynomial of {name}")
        check(order_of_x(degree, polynomial) == (1 << degree) - 1, f"x generates the group of {name}")
        write(name, [[degree, polynomial, GENERATOR]])


main()
