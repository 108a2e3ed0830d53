"""Statements on polynomials in modular rings and table fields, from the prompt, beside a second method: polynomials as
dictionaries. Round trips of many values from the exact ring to the others and back.

    ring_sessions.py <tolvek-exact>

TOLVEK_TEST_SEED and TOLVEK_TEST_TIMES (a multiplier) are read from the environment.
"""

import os
import random
import statistics
import sys
import time

from polynomials import (VARIABLES as ALL_VARIABLES, Exact, constant, derivative, divided, power, product, reduced, ring_of,
                         shown_value, total, value, written)
from session import PATIENCE, Session, answers, check, run_tests

SEED = int(os.environ.get("TOLVEK_TEST_SEED", "20240229"))
TIMES = int(os.environ.get("TOLVEK_TEST_TIMES", "1"))
MODULI = [2, 3, 6, 256, 65521, 65536, 2**28 + 3, 2147483629, 2147483644]
VARIABLES = ALL_VARIABLES[:3]


# ---- sessions ----


ENTER = [f"&(J = {v})" for v in VARIABLES]


def exponents(rnd, degree, variables=len(VARIABLES)):
    return tuple(rnd.randint(0, degree) if i < variables else 0 for i in range(len(ALL_VARIABLES)))


def random_poly(rnd, ring, terms=5, degree=4, variables=3, monic=False):
    p = {}
    for _ in range(rnd.randint(1, terms)):
        e = exponents(rnd, degree, variables)
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
    num = {exponents(rnd, 4): number(25) for _ in range(rnd.randint(1, 6))}
    if kind == 2:
        return num, constant(1)
    if kind == 3:
        return num, constant(abs(number(4)))
    return num, {**{exponents(rnd, 2): number(3) for _ in range(2)}, (3, 0, 0, 0): 1}


def typed(num, den):
    return written(num) if den == constant(1) else f"({written(num)})/({written(den)})"


# Plain names, elements of an array, and of a sparse array.
NAMES = [f"v{i}" for i in range(150)] + [f"a[{i},{k}]" for i in range(1, 11) for k in range(1, 11)]
SPARSE_NAMES = [f"s[{i},{7 * i % 50 + 1}]" for i in range(1, 51)]
ARRAYS = ["Array a[10,10], s[50,50] Sparse"]


def assignments(names, values):
    return [f"{name} := {typed(num, den)}" for name, (num, den) in zip(names, values)]


def has_image(ring, den):
    image = reduced(ring, den)
    return bool(image) and ring.inverse(image[max(image)]) is not None


def check_images(ring, names, texts, exact):
    """What has no image is 0; a sparse array has one if all its entries have."""
    whole = all(has_image(ring, den) for name, (_, den) in zip(names, exact) if name in SPARSE_NAMES)
    for name, text, (num, den) in zip(names, texts, exact):
        if has_image(ring, den) and (whole or name not in SPARSE_NAMES):
            expect_ratio(name, text, ring, reduced(ring, num), reduced(ring, den))
        else:
            check(text.strip() == "0", f"modulo {ring.n}, {name} has no image, but shows {text!r}")


def temporary_round_trips(program):
    rnd = random.Random(f"{SEED} temporary")
    names = NAMES + SPARSE_NAMES
    values = [random_value(rnd) for _ in names]
    count = len(names)
    # A way there and back settles how many figures rationals are shown with.
    lines = ENTER + ["&(p = 7)", "&p"] + ARRAYS + assignments(names, values) + names
    for n in MODULI:
        lines += [f"&(p = {n}:)"] + names + [f"&(p = {rnd.choice([101, 256, 10])}:)", "&(p = _i:)"] + names
    found = answers(program, lines, 120)
    at = len(ENTER) + 3 + count
    before = found[at: at + count]
    at += count
    exact = [shown_value(text, Exact) for text in before]
    for (num, den), (a, b) in zip(values, exact):
        check(product(Exact, num, b) == product(Exact, a, den), f"{typed(num, den)} was assigned, {a} / {b} is there")
    for n in MODULI:
        check_images(ring_of(n), names, found[at + 1: at + 1 + count], exact)
        at += count + 3
        for name, text, text_before in zip(names, found[at: at + count], before):
            check(text == text_before, f"behind {n}, {name} was {text_before!r} and is {text!r}")
        at += count


def permanent_round_trips(program):
    for n in MODULI:
        rnd, ring = random.Random(f"{SEED} permanent {n}"), ring_of(n)
        names = NAMES + SPARSE_NAMES
        values = [random_value(rnd) for _ in names]
        exact = [shown_value(text, Exact)
                 for text in answers(program, ENTER + ARRAYS + assignments(names, values) + names, 120)[-len(names):]]
        kept = [i for i in range(len(names)) if has_image(ring, exact[i][1])]
        names, values, exact = ([all_of_them[i] for i in kept] for all_of_them in (names, values, exact))
        lines = ENTER + ARRAYS + assignments(names, values) + [f"&(p = {n})"] + names + ["&p"] + names
        found = answers(program, lines, 120)
        there, back = found[-2 * len(names) - 1: -len(names) - 1], found[-len(names):]
        check_images(ring, names, there, exact)
        for name, text, text_behind in zip(names, there, back):
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
