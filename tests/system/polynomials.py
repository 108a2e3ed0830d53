"""Polynomials over residues and table fields as dictionaries: a second method beside the programs, and a reader of what
they show."""

import math
import re

from session import check

VARIABLES = "xyza"  # the first one is the main one


# ---- rings ----


class Residues:
    """The integers modulo n, shown with the least magnitude."""

    def __init__(self, n):
        self.n = n
        self.is_field = n > 1 and all(n % d for d in range(2, math.isqrt(n) + 1))

    def of(self, v):
        return v % self.n

    def add(self, a, b):
        return (a + b) % self.n

    def sub(self, a, b):
        return (a - b) % self.n

    def mul(self, a, b):
        return a * b % self.n

    def times(self, e, a):
        return e * a % self.n

    def inverse(self, a):
        return pow(a, -1, self.n) if math.gcd(a, self.n) == 1 else None

    def lift(self, a):
        return a - self.n if a > self.n // 2 else a


class TableField:
    """Polynomials over two elements, bit by bit, modulo an irreducible one."""

    is_field = True

    def __init__(self, n):
        self.n, self.poly = n, {256: 0x11D, 65536: 0x1100B}[n]

    def of(self, v):
        return (abs(v) & (2**28 - 1)) % self.n

    def add(self, a, b):
        return a ^ b

    sub = add

    def mul(self, a, b):
        product = 0
        while b:
            if b & 1:
                product ^= a
            a <<= 1
            if a & self.n:
                a ^= self.poly
            b >>= 1
        return product

    def times(self, e, a):
        return a if e % 2 else 0

    def inverse(self, a):
        if a == 0:
            return None
        result, power, e = 1, a, self.n - 2
        while e:
            if e & 1:
                result = self.mul(result, power)
            power = self.mul(power, power)
            e >>= 1
        return result

    def lift(self, a):
        return a


def ring_of(n):
    return TableField(n) if n in (256, 65536) else Residues(n)


# ---- polynomials: {exponents: coefficient}, without zeros ----


def reduced(ring, p):
    return {e: ring.of(c) for e, c in p.items() if ring.of(c)}


def total(ring, p, q, minus=False):
    result = dict(p)
    for e, c in q.items():
        old = result.pop(e, 0)
        new = ring.sub(old, c) if minus else ring.add(old, c)
        if new:
            result[e] = new
    return result


def product(ring, p, q):
    result = {}
    for e, a in p.items():
        for f, b in q.items():
            key = tuple(i + j for i, j in zip(e, f))
            new = ring.add(result.pop(key, 0), ring.mul(a, b))
            if new:
                result[key] = new
    return result


def power(ring, p, k):
    result = constant(1)
    while k:
        if k % 2:
            result = product(ring, result, p)
        p, k = product(ring, p, p) if k > 1 else p, k // 2
    return result


def constant(c):
    return {(0,) * len(VARIABLES): c} if c else {}


def derivative(ring, p, level):
    result = {}
    for e, c in p.items():
        new = ring.times(e[level], c)
        if new:
            result[tuple(v - (i == level) for i, v in enumerate(e))] = new
    return result


def value(ring, p, point):
    result = 0
    for e, c in p.items():
        for x, k in zip(point, e):
            for _ in range(k):
                c = ring.mul(c, x)
        result = ring.add(result, c)
    return result


def divided(ring, p, q):
    """Quotient and remainder in the order of the exponents; the leading number of q has an inverse."""
    lead = max(q)
    inverse = ring.inverse(q[lead])
    quotient, rest = {}, dict(p)
    while rest:
        top = max(rest)
        shift = tuple(i - j for i, j in zip(top, lead))
        if min(shift) < 0:
            break
        term = {shift: ring.mul(rest[top], inverse)}
        quotient.update(term)
        rest = total(ring, rest, product(ring, term, q), minus=True)
    return quotient, rest


def written(p):
    """As it is typed."""
    terms = []
    for e, c in sorted(p.items(), reverse=True):
        factors = [f"({c})" if c < 0 else str(c)] + [f"{v}^{k}" for v, k in zip(VARIABLES, e) if k]
        terms.append("*".join(factors))
    return " + ".join(terms) or "0"


# ---- what is shown ----

TOKEN = re.compile(r"\s*(\d+|[a-z]\w*|[-+*()^/])")


class Reader:
    """A value as it is shown: coefficients in parentheses in front of their powers, or a quotient of two such."""

    def __init__(self, text, ring):
        text = re.sub(r"\s*`\n\s*", "", text).split(";")[0].strip()
        self.tokens, at = [], 0
        while at < len(text):
            token = TOKEN.match(text, at)
            check(token, f"not a value: {text[:200]!r}")
            self.tokens.append(token.group(1))
            at = token.end()
        self.ring, self.at = ring, 0

    def peek(self):
        return self.tokens[self.at] if self.at < len(self.tokens) else ""

    def take(self):
        self.at += 1
        return self.tokens[self.at - 1]

    def fraction(self):
        num = self.sum()
        if self.peek() != "/":
            check(self.peek() == "", f"left over: {self.tokens[self.at:][:20]}")
            return num, constant(1)
        self.take()
        return num, self.sum()

    def sum(self):
        result, minus = {}, False
        while True:
            if self.peek() in ("+", "-"):
                minus = self.take() == "-"
            result = total(self.ring, result, self.term(), minus)
            if self.peek() not in ("+", "-"):
                return result
            minus = False

    def term(self):
        result = constant(1)
        while re.match(r"[\da-z(*]", self.peek() or " "):
            if self.peek() == "*":
                self.take()
            result = product(self.ring, result, self.factor())
        return result

    def factor(self):
        token = self.take()
        if token == "(":
            inner = self.sum()
            check(self.take() == ")", "no closing parenthesis")
            return inner
        if token.isdigit():
            return reduced(self.ring, constant(int(token)))
        exponent = 1
        if self.peek() == "^":
            self.take()
            exponent = int(self.take())
        return {tuple(exponent * (v == token) for v in VARIABLES): 1}


class Exact:
    """The integers, for reading what the exact ring shows."""

    of = staticmethod(lambda v: v)
    add = staticmethod(lambda a, b: a + b)
    sub = staticmethod(lambda a, b: a - b)
    mul = staticmethod(lambda a, b: a * b)


def shown_value(text, ring):
    num, den = Reader(text, ring).fraction()
    return num, den
