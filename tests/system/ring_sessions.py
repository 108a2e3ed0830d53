"""Statements on polynomials in modular rings and table fields, from the prompt, beside a second method: polynomials as
dictionaries. Round trips of many values from the exact ring to the others and back.

    ring_sessions.py <tolvek-exact>

TOLVEK_TEST_SEED and TOLVEK_TEST_TIMES (a multiplier) are read from the environment.
"""

import math
import os
import random
import re
import statistics
import subprocess
import sys
import tempfile
import time

from session import PATIENCE, Session, check, run_tests

SEED = int(os.environ.get("TOLVEK_TEST_SEED", "20240229"))
TIMES = int(os.environ.get("TOLVEK_TEST_TIMES", "1"))
MODULI = [2, 3, 6, 256, 65521, 65536, 2**28 + 3, 2147483629, 2147483644]
VARIABLES = "xyz"


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
    for _ in range(k):
        result = product(ring, result, p)
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

TOKEN = re.compile(r"\s*(\d+|[a-z]\w*|[-+()^/])")


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
        while re.match(r"[\da-z(]", self.peek() or " "):
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


# ---- sessions ----


def answers(program, lines, seconds=60):
    """What is shown for each line."""
    with tempfile.TemporaryDirectory() as folder:
        text = subprocess.run([program], input="\n".join(lines + ["&q", ""]), capture_output=True, text=True, cwd=folder,
                              timeout=seconds * PATIENCE, check=True).stdout
    parts = text.split("\n>")[1:]
    check(len(parts) == len(lines) + 1, f"{len(parts) - 1} answers to {len(lines)} lines: {parts[-1][-300:]!r}")
    return [part.strip("\n") for part in parts[:-1]]


ENTER = [f"&(J = {v})" for v in VARIABLES]


def random_poly(rnd, ring, terms=5, degree=4, variables=3, monic=False):
    p = {}
    for _ in range(rnd.randint(1, terms)):
        e = tuple(rnd.randint(0, degree) if i < variables else 0 for i in range(len(VARIABLES)))
        c = rnd.choice([0, 1, ring.n - 1, rnd.randrange(ring.n), rnd.randrange(ring.n)])
        p[e] = c
    p = {e: c for e, c in p.items() if c} or constant(1)
    if monic:
        p[max(p)] = 1
    return p


def expect(statement, text, ring, expected):
    check("***" not in text, f"{statement}: {text!r}")
    num, den = shown_value(text, ring)
    check(den == constant(1) and num == expected, f"modulo {ring.n}, {statement} shows {text!r}")


def expect_ratio(statement, text, ring, num, den):
    check("***" not in text, f"{statement}: {text!r}")
    a, b = shown_value(text, ring)
    check(b, f"{statement}: denominator 0 in {text!r}")
    check(product(ring, a, den) == product(ring, b, num), f"modulo {ring.n}, {statement} shows {text!r}")


def ring_tests(rnd, ring):
    """Pairs of a statement and a check of what it shows."""
    tests = []

    def add(statement, expected):
        tests.append((statement, lambda text: expect(statement, text, ring, expected)))

    for _ in range(12 * TIMES):
        p, q, r = (random_poly(rnd, ring) for _ in range(3))
        monic = random_poly(rnd, ring, terms=3, degree=3, monic=True)
        add(f"({written(p)})*({written(q)})", product(ring, p, q))
        add(f"({written(p)}) + ({written(q)}) - ({written(r)})", total(ring, total(ring, p, q), r, minus=True))
        add(f"({written(p)} - ({written(q)}))*({written(r)})", product(ring, total(ring, p, q, minus=True), r))
        k = rnd.randint(2, 5)
        add(f"({written(q)})^{k}", power(ring, q, k))
        level = rnd.randrange(3)
        add(f"Deriv({written(product(ring, p, q))}, {VARIABLES[level]})", derivative(ring, product(ring, p, q), level))
        point = [rnd.randrange(ring.n) for _ in VARIABLES]
        add(f"({written(p)})#({', '.join(map(str, point))})", constant(value(ring, p, point)))
        full = product(ring, p, monic)
        add(f"Pdivide({written(full)}, {written(monic)})", p)
        add(f"Divides({written(full)}, {written(monic)})", constant(1))
        if ring.is_field:
            full = product(ring, p, q)
            add(f"({written(full)})/({written(q)})", p)
            add(f"Terms({written(full)}) - Terms({written(full)})", {})
        a, b = (random_poly(rnd, ring, terms=8, degree=9, variables=1) for _ in range(2))
        if ring.inverse(b[max(b)]) and max(b)[0]:
            quotient, rest = divided(ring, a, b)
            add(f"({written(a)}) | ({written(b)})", rest)
            add(f"({written(a)}) \\ ({written(b)})", quotient)
        s = random_poly(rnd, ring, terms=2, degree=2, monic=True)
        statement = f"({written(p)})/({written(monic)}) + ({written(q)})/({written(s)})"
        num = total(ring, product(ring, p, s), product(ring, q, monic))
        tests.append((statement, lambda text, t=statement, a=num, b=product(ring, monic, s): expect_ratio(t, text, ring, a, b)))
        if ring.is_field:
            tests.append(gcd_test(rnd, ring))
    return tests


def gcd_test(rnd, ring):
    """The answer divides both operands, and the factor that was planted divides it."""
    g = random_poly(rnd, ring, terms=3, degree=2)
    u, v = (product(ring, g, random_poly(rnd, ring, terms=3, degree=2)) for _ in range(2))
    statement = f"GCD({written(u)}, {written(v)})"

    def examine(text):
        found, den = shown_value(text, ring)
        check(den == constant(1) and found, f"{statement} shows {text!r}")
        for a, b in ((u, found), (v, found), (found, g)):
            check(not divided(ring, a, b)[1], f"modulo {ring.n}, {statement} shows {text!r}")

    return statement, examine


def polynomials_in_every_ring(program):
    for n in MODULI:
        rnd = random.Random(f"{SEED} {n}")
        tests = ring_tests(rnd, ring_of(n))
        lines = ENTER + [f"&(p = {n})"] + [statement for statement, _ in tests]
        found = answers(program, lines)[len(ENTER) + 1:]
        for (_, examine), text in zip(tests, found):
            examine(text)


# ---- zero divisors: clear errors, no wrong answers, never a hang ----


def composite_moduli(program):
    for n in (4, 6, 12, 65534, 2147483644):
        ring = ring_of(n)
        rnd = random.Random(f"{SEED} composite {n}")
        statements, checks = [], []
        for _ in range(40 * TIMES):
            p, q, r, s = (random_poly(rnd, ring, terms=3, degree=2) for _ in range(4))
            kind = rnd.randrange(4)
            if kind == 0:
                statements.append(f"({written(p)})/({written(q)}) + ({written(r)})/({written(s)})")
                checks.append((total(ring, product(ring, p, s), product(ring, r, q)), product(ring, q, s)))
            elif kind == 1:
                statements.append(f"({written(product(ring, p, q))})/({written(q)})")
                checks.append((product(ring, p, q), q))
            else:
                statements.append(f"{('GCD', 'Pdivide')[kind - 2]}({written(product(ring, p, q))}, {written(q)})")
                checks.append(None)
        lines = ENTER + [f"&(p = {n})"]
        for statement in statements:
            lines += [statement, "1 + 1"]
        found = answers(program, lines)[len(ENTER) + 1:]
        for i, statement in enumerate(statements):
            text, sane = found[2 * i], found[2 * i + 1]
            check(sane.strip() == ("2" if n > 4 else "2"), f"modulo {n}, behind {statement}: {sane!r}")
            if "***" in text:
                check(text.count("***") <= 2 and "Tolvek error" not in text, f"modulo {n}, {statement}: {text!r}")
            elif checks[i]:
                expect_ratio(statement, text, ring, *checks[i])


# ---- round trips ----


def random_value(rnd):
    """Numerator and denominator with integers of many sizes, in lowest terms as far as numbers go."""

    def number(digits):
        return rnd.choice([1, -1]) * rnd.randrange(1, 10 ** rnd.randint(1, digits))

    kind = rnd.randrange(5)
    if kind == 0:
        return constant(number(40)), constant(1)
    if kind == 1:
        return constant(number(12)), constant(abs(number(12)))
    num = {tuple(rnd.randint(0, 4) for _ in VARIABLES): number(25) for _ in range(rnd.randint(1, 6))}
    if kind == 2:
        return num, constant(1)
    if kind == 3:
        return num, constant(abs(number(4)))
    return num, {**{tuple(rnd.randint(0, 2) for _ in VARIABLES): number(3) for _ in range(2)}, (3, 0, 0): 1}


def typed(num, den):
    return written(num) if den == constant(1) else f"({written(num)})/({written(den)})"


COUNT = 150


def assignments(values):
    return [f"v{i} := {typed(num, den)}" for i, (num, den) in enumerate(values)]


def all_values(count):
    return [f"v{i}" for i in range(count)]


def temporary_round_trips(program):
    rnd = random.Random(f"{SEED} temporary")
    values = [random_value(rnd) for _ in range(COUNT)]
    # A way there and back settles how many figures rationals are shown with.
    lines = ENTER + ["&(p = 7)", "&p"] + assignments(values) + all_values(COUNT)
    for n in MODULI:
        lines += [f"&(p = {n}:)"] + all_values(COUNT) + [f"&(p = {rnd.choice([101, 256, 10])}:)", "&(p = _i:)"] + all_values(COUNT)
    found = answers(program, lines, 120)
    at = len(ENTER) + 2 + COUNT
    before = found[at: at + COUNT]
    at += COUNT
    exact = [shown_value(text, Exact) for text in before]
    for (num, den), (a, b) in zip(values, exact):
        check(product(Exact, num, b) == product(Exact, a, den), f"{typed(num, den)} was assigned, {a} / {b} is there")
    for n in MODULI:
        ring = ring_of(n)
        for i, text in enumerate(found[at + 1: at + 1 + COUNT]):
            num, den = (reduced(ring, part) for part in exact[i])
            if den and ring.inverse(den[max(den)]):
                expect_ratio(f"v{i}", text, ring, num, den)
            else:
                check(text.strip() == "0", f"modulo {n}, v{i} has no image, but shows {text!r}")
        at += COUNT + 3
        for i, text in enumerate(found[at: at + COUNT]):
            check(text == before[i], f"behind {n}, v{i} was {before[i]!r} and is {text!r}")
        at += COUNT


def has_image(ring, den):
    image = reduced(ring, den)
    return bool(image) and ring.inverse(image[max(image)]) is not None


def permanent_round_trips(program):
    for n in MODULI:
        rnd, ring = random.Random(f"{SEED} permanent {n}"), ring_of(n)
        values = [random_value(rnd) for _ in range(COUNT)]
        exact = [shown_value(text, Exact)
                 for text in answers(program, ENTER + assignments(values) + all_values(COUNT), 120)[-COUNT:]]
        kept = [i for i in range(COUNT) if has_image(ring, exact[i][1])]
        names = [f"v{i}" for i in kept]
        dropped = ["@(" + ", ".join(f"v{i}" for i in range(COUNT) if i not in kept) + ")"] if len(kept) < COUNT else []
        lines = ENTER + assignments(values) + dropped + [f"&(p = {n})"] + names + ["&p"] + names
        found = answers(program, lines, 120)
        there, back = found[-2 * len(names) - 1: -len(names) - 1], found[-len(names):]
        for i, name, text, text_behind in zip(kept, names, there, back):
            num, den = exact[i]
            expect_ratio(name, text, ring, reduced(ring, num), reduced(ring, den))
            a, b = ({e: ring.lift(c) for e, c in part.items()} for part in shown_value(text, ring))
            c, d = shown_value(text_behind, Exact)
            check(product(Exact, c, b) == product(Exact, d, a), f"{name} was {text!r} modulo {n} and is {text_behind!r}")


# ---- interrupts ----

CHANGE_AND_BACK = "Func F = &(p = 7:); &(p = _i:)."
OPENED, RESUMED, WHOLE = "2>", "*** Resuming earlier command level\n", "\n      777\n\n>"
NO_LEVEL = "highest level.\n"  # the interrupt came first: the level has run F, which ends it by an error
INTERRUPTS = 60 if PATIENCE <= 2 else 10


def changes_that_are_interrupted(program):
    """A level opens at once in the middle of a change of ring, and no value is another behind it."""
    rnd = random.Random(f"{SEED} interrupts")
    with Session(program) as session:
        session.wait_for("\n>", 20)
        for line in ENTER[:2] + ["p := (x + 2*y + 3)^150:", "q := p:", CHANGE_AND_BACK]:
            session.send(line + "\n")
            session.wait_for("\n>", 60)
        start = time.monotonic()
        session.send("F\n777 + p - q\n")
        session.wait_for(WHOLE, 60)
        seconds = time.monotonic() - start
        answers_after = []
        for _ in range(INTERRUPTS * TIMES):
            session.send("F\n")
            until = time.monotonic() + rnd.uniform(0, seconds)
            while time.monotonic() < until:
                session.read_some(until - time.monotonic())
            session.interrupt()
            sent = time.monotonic()
            session.wait_for(OPENED, 60)
            answers_after.append(time.monotonic() - sent)
            session.send("&_p\n")
            while RESUMED not in session.text and NO_LEVEL not in session.text:
                check(session.read_some(60 * PATIENCE), f"the session ended: {session.text[-300:]!r}")
            session.send("777 + p - q\n")
            session.wait_for(WHOLE, 60)
        median = statistics.median(answers_after)
        check(median < 0.1 * PATIENCE, f"a level takes {median:.3f} s to open")


if __name__ == "__main__":
    sys.exit(run_tests([polynomials_in_every_ring, composite_moduli, temporary_round_trips, permanent_round_trips,
                        changes_that_are_interrupted],
                       os.path.abspath(sys.argv[1])))
