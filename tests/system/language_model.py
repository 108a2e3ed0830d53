"""Statements on polynomials and quotients over a field, as the prompt takes them, computed by the polynomials of
polynomials.py: what a session should show.

A value is a numerator and a denominator without a common factor, the leading number of the denominator being 1: the form
that the programs show. Statements that the programs refuse raise Refused. A function that stands in no table here raises
NotModelled.
"""

import re

from polynomials import VARIABLES, constant, derivative, divided, power, product, total

ONE = constant(1)
LARGEST_EXPONENT = 2**31 - 1
UNKNOWN = None  # a value that a statement without a model has left


class Refused(Exception):
    """The program gives an error."""


class NotModelled(Exception):
    """The name of what is not computed here."""


# ---- polynomials over a field: quotients and common divisors ----


def scaled(ring, p, c):
    return {e: ring.mul(v, c) for e, v in p.items()}


def monic(ring, p):
    return scaled(ring, p, ring.inverse(p[max(p)])) if p else {}


def main_level(*polys):
    """The first variable that one of them holds; None for numbers."""
    levels = [i for p in polys for e in p for i, k in enumerate(e) if k]
    return min(levels, default=None)


def degree(p, level):
    return max((e[level] for e in p), default=0)


def coefficient(p, level, n):
    return {e[:level] + (0,) + e[level + 1:]: c for e, c in p.items() if e[level] == n}


def shifted(p, level, n):
    return {e[:level] + (e[level] + n,) + e[level + 1:]: c for e, c in p.items()}


def exact_quotient(ring, p, q):
    """p / q, or None where it does not come out even."""
    quotient, rest = divided(ring, p, q)
    return None if rest else quotient


def content(ring, p, level):
    result = {}
    for n in {e[level] for e in p}:
        result = common_divisor(ring, result, coefficient(p, level, n))
    return result


def division(ring, p, q, level):
    """Quotient and remainder in one variable; the leading coefficient of q is a number."""
    d = degree(q, level)
    lead = coefficient(q, level, d)
    if main_level(lead) is not None:
        raise NotModelled("divisions by polynomials whose leading coefficient is no number")
    inverse, quotient = scaled(ring, ONE, ring.inverse(max(lead.values()))), {}
    while p and degree(p, level) >= d:
        n = degree(p, level)
        step = product(ring, shifted(coefficient(p, level, n), level, n - d), inverse)
        quotient = total(ring, quotient, step)
        p = total(ring, p, product(ring, step, q), minus=True)
    return quotient, p


def pseudo_remainder(ring, p, q, level):
    lead, d = coefficient(q, level, degree(q, level)), degree(q, level)
    while p and degree(p, level) >= d:
        n = degree(p, level)
        top = shifted(product(ring, coefficient(p, level, n), q), level, n - d)
        p = total(ring, product(ring, p, lead), top, minus=True)
    return p


def common_divisor(ring, p, q):
    """By remainders of primitive parts, in the main variable."""
    if not p or not q:
        return monic(ring, p or q)
    level = main_level(p, q)
    if level is None:
        return ONE
    c, d = content(ring, p, level), content(ring, q, level)
    p, q = exact_quotient(ring, p, c), exact_quotient(ring, q, d)
    while q and degree(q, level):
        rest = pseudo_remainder(ring, p, q, level)
        p, q = q, exact_quotient(ring, rest, content(ring, rest, level)) if rest else {}
    return monic(ring, product(ring, common_divisor(ring, c, d), ONE if q else p))


def cofactors(ring, a, b):
    """g, s, t with s a + t b = g, the monic common divisor, in one variable."""
    old, new = (a, ONE, {}), (b, {}, ONE)
    while new[0]:
        quotient, _ = divided(ring, old[0], new[0])
        step = tuple(total(ring, x, product(ring, quotient, y), minus=True) for x, y in zip(old, new))
        old, new = new, step
    unit = ring.inverse(old[0][max(old[0])]) if old[0] else 1
    return tuple(scaled(ring, x, unit) for x in old)


# ---- values ----


class Fractions:
    """Arithmetic of values over a ring that is a field."""

    def __init__(self, ring):
        self.ring = ring

    def number(self, n):
        return constant(self.ring.of(n)), ONE

    def fraction(self, num, den):
        if not den:
            raise Refused
        if not num:
            return {}, ONE
        g = common_divisor(self.ring, num, den)
        num, den = exact_quotient(self.ring, num, g), exact_quotient(self.ring, den, g)
        unit = self.ring.inverse(den[max(den)])
        return scaled(self.ring, num, unit), scaled(self.ring, den, unit)

    def add(self, a, b, minus=False):
        num = total(self.ring, product(self.ring, a[0], b[1]), product(self.ring, b[0], a[1]), minus)
        return self.fraction(num, product(self.ring, a[1], b[1]))

    def mul(self, a, b):
        return self.fraction(product(self.ring, a[0], b[0]), product(self.ring, a[1], b[1]))

    def div(self, a, b):
        return self.mul(a, self.fraction(b[1], b[0]))

    def power(self, a, n):
        if n < 0:
            a, n = self.fraction(a[1], a[0]), -n
        return power(self.ring, a[0], n), power(self.ring, a[1], n)

    def derivative(self, a, level, times=1):
        for _ in range(times):
            num, den = a
            change = total(self.ring, product(self.ring, derivative(self.ring, num, level), den),
                           product(self.ring, num, derivative(self.ring, den, level)), minus=True)
            a = self.fraction(change, product(self.ring, den, den))
        return a

    def at(self, a, replacements):
        """{level: value}, all at once."""
        parts = []
        for p in a:
            result = {}, ONE
            for e, c in p.items():
                term = {tuple(0 if i in replacements else k for i, k in enumerate(e)): c}, ONE
                for level, v in replacements.items():
                    term = self.mul(term, self.power(v, e[level]))
                result = self.add(result, term)
            parts.append(result)
        return self.div(*parts)


# ---- the language ----

TOKEN = re.compile(r"\s*(\d+\.\d+|\d+|[A-Za-z]\w*|:=|.)")


def statements_of(line):
    """The line at its ";" and ":", but for those of assignments and inside loops."""
    if re.match(r"\s*for\b", line):
        return [line]
    parts = re.split(r";|:(?!=)", line)
    return [part.strip() for part in parts if part.strip()]


class Model:
    def __init__(self, ring):
        self.ring, self.values = ring, Fractions(ring)
        self.names, self.variables = {}, []
        self.last = self.values.number(0)

    # -- variables of polynomials --

    def level(self, name):
        return VARIABLES.index(name) if name in self.variables else None

    def add_variable(self, name):
        if name not in VARIABLES or name in self.variables:
            raise Refused
        self.variables.append(name)

    def cancel_variable(self, name):
        """It is 1 from here on."""
        if name not in self.variables:
            raise Refused
        at_1 = {VARIABLES.index(name): self.values.number(1)}
        self.names = {key: self.values.at(v, at_1) for key, v in self.names.items()}
        self.variables.remove(name)

    # -- statements --

    def run(self, statement):
        """The value that is shown."""
        loop = re.fullmatch(r"for (\w) = (\d+) to (\d+) do (.*) od:?", statement)
        if loop:
            variable, first, last, body = loop.groups()
            for i in range(int(first), int(last) + 1):
                self.names[variable] = self.values.number(i)
                self.run(body)
            return None
        self.tokens = TOKEN.findall(statement.strip())
        self.place = 0
        target = None
        if len(self.tokens) > 1 and self.tokens[1] == ":=":
            target = self.tokens[0]
            if target in self.variables:
                raise Refused
            self.place = 2
        if target:
            self.names.setdefault(target, self.values.number(0))  # what is left of it when the statement is refused
        result = self.sum()
        if self.peek():
            raise Refused
        if target:
            self.names[target] = result
        self.last = result
        return result

    def peek(self):
        return self.tokens[self.place] if self.place < len(self.tokens) else ""

    def take(self, expected=None):
        token = self.peek()
        if expected and token != expected:
            raise Refused
        self.place += 1
        return token

    # -- expressions --

    def sum(self):
        result = self.signed_term()
        while self.peek() in ("+", "-"):
            minus = self.take() == "-"
            result = self.values.add(result, self.signed_term(), minus)
        return result

    def signed_term(self):
        if self.peek() == "-":
            self.take()
            return self.values.add(self.values.number(0), self.signed_term(), minus=True)
        result = self.factor()
        while True:
            token = self.peek()
            if token in ("*", "/", "\\", "|"):
                self.take()
                result = self.operation(token, result, self.factor())
            elif re.match(r"[\w(]", token):
                result = self.values.mul(result, self.factor())
            else:
                return result

    def operation(self, sign, a, b):
        if sign == "*":
            return self.values.mul(a, b)
        if sign == "/":
            return self.values.div(a, b)
        if a[1] != ONE or b[1] != ONE:
            raise NotModelled("remainders of quotients")
        return self.quotient_and_remainder(a[0], b[0])["\\|".index(sign)]

    def quotient_and_remainder(self, a, b):
        if not b:
            raise Refused
        level = main_level(b)
        if level is None:
            raise NotModelled("remainders by numbers")
        quotient, rest = division(self.ring, a, b, level)
        return (quotient, ONE), (rest, ONE)

    @staticmethod
    def levels(p):
        return {i for e in p for i, k in enumerate(e) if k}

    def factor(self):
        result = self.primary()
        while True:
            token = self.peek()
            if token == "^":
                self.take()
                result = self.values.power(result, self.exponent())
            elif token == "#":
                self.take()
                result = self.evaluation(result)
            elif token == '"':
                self.take()
                result = self.values.derivative(result, self.main_of(result))
            else:
                return result

    @staticmethod
    def main_of(a):
        level = main_level(*a)
        return 0 if level is None else level

    def exponent(self):
        if self.peek() == "-":
            self.take()
            return -self.exponent()
        if self.peek() == "(":
            self.take()
            n = self.exponent()
            self.take(")")
            return n
        if not self.peek().isdigit():
            raise NotModelled("exponents that are computed")
        return int(self.take())

    def primary(self):
        token = self.peek()
        if token == "(":
            self.take()
            result = self.sum()
            self.take(")")
            return result
        if token == "<":
            self.take()
            return self.last
        if re.match(r"\d", token):
            return self.literal(self.take())
        if re.match(r"[a-z]", token):
            return self.named(self.take())
        if re.match(r"[A-Z]", token):
            return self.call(self.take())
        raise Refused

    def literal(self, text):
        whole, _, decimals = text.partition(".")
        result = self.values.number(int(whole))
        if decimals and self.ring.add(1, 1) == 0:
            raise NotModelled("decimals where 2 is 0")
        if decimals:
            result = self.values.add(result, self.values.div(self.values.number(int(decimals)),
                                                             self.values.number(10 ** len(decimals))))
        return result

    def named(self, name):
        level = self.level(name)
        if level is not None:
            return {tuple(int(i == level) for i in range(len(VARIABLES))): 1}, ONE
        if name not in self.names:
            raise Refused
        if self.names[name] is UNKNOWN:
            raise NotModelled("unknown values")
        return self.names[name]

    def evaluation(self, a):
        start = self.place
        points = self.listed(")") if self.peek() == "(" else []
        if len(points) < 2:
            self.place = start
            points = [self.factor()]
        if len(points) > len(self.variables):
            raise Refused
        if len(points) == 1 and main_level(*a) is None:
            return a
        return self.values.at(a, dict(enumerate(points)))

    def listed(self, end):
        self.take()
        result = [self.sum()]
        while self.peek() == ",":
            self.take()
            result.append(self.sum())
        self.take(end)
        return result

    # -- functions --

    def call(self, name):
        if name not in FUNCTIONS:
            raise NotModelled(name)
        kinds, routine = FUNCTIONS[name]
        if self.peek() != "(":
            if name not in WITHOUT_PARENTHESES:
                raise Refused
            return routine(self, self.argument(kinds[0]))
        self.take("(")
        arguments = []
        for i, kind in enumerate(kinds):
            if i and kind.endswith("?") and self.peek() == ")":
                break
            if kind == "x*" and self.level("".join(self.tokens[self.place + 1:self.place + 2])) is None:
                arguments.append(None)
                continue
            if i:
                self.take(",")
            arguments.append(self.argument(kind.rstrip("?*")))
        self.take(")")
        return routine(self, *arguments)

    def argument(self, kind):
        """p: a polynomial, v: a value, n: an integer, x: a variable of polynomials or its number, r: a name for a result, R:
        with "^" in front; c: a value, and its name where "^" stands in front, which takes the result of the function.
        Behind a kind, "?" says that it may be missing at the end, "*" in the middle."""
        if kind == "n":
            return self.integer()
        if kind == "x":
            return self.variable()
        if kind in ("r", "R"):
            return self.reference(kind == "R")
        name = None
        if self.peek() == "^":
            self.take()
            name = self.take()
            if name not in self.names or name in self.variables:
                raise Refused
            a = self.names[name]
        else:
            a = self.sum()
        if kind == "c":
            return a, name
        if kind == "p" and a[1] != ONE:
            raise Refused
        return a[0] if kind == "p" else a

    def integer(self):
        sign = -1 if self.peek() == "-" else 1
        if sign < 0:
            self.take()
        if self.peek() in self.names:
            return sign * max(self.names[self.take()][0].values(), default=0)
        if not self.peek().isdigit():
            raise Refused
        n = int(self.take())
        if self.peek() == "^":
            self.take()
            n **= self.integer()
        return sign * n

    def variable(self):
        if self.peek().isdigit():
            n = int(self.take())
            if not 1 <= n <= len(self.variables):
                raise Refused
            return VARIABLES.index(self.variables[n - 1])
        level = self.level(self.take())
        if level is None:
            raise Refused
        return level

    def reference(self, marked):
        if marked or self.peek() == "^":
            self.take("^")
        name = self.take()
        if name not in self.names or name in self.variables:
            raise Refused
        return name

    def whole(self, p):
        return p, ONE

    def count(self, n):
        return self.values.number(n)

    def stored(self, result, name):
        """A function whose argument takes the result gives 0."""
        if name is None:
            return result
        self.names[name] = result
        return self.count(0)

    def level_of(self, p, level=None):
        return self.main_of((p,)) if level is None else level


# ---- built-in functions ----


def whole(routine):
    """A routine that gives a polynomial, as one that gives a value."""
    return lambda m, *arguments: m.whole(routine(m, *arguments))


def counted(routine):
    return lambda m, *arguments: m.count(routine(m, *arguments))


def numerator(a):
    if a[1] != ONE:
        raise Refused
    return a[0]


def leading_term(m, p):
    level = m.level_of(p)
    return shifted(coefficient(p, level, degree(p, level)), level, degree(p, level))


def leading_number(m, p):
    return constant(p[max(p)] if p else 0)


def gcd(m, a, b=None):
    return monic(m.ring, numerator(a)) if b is None else common_divisor(m.ring, a[0], b[0])


def lcm(m, *polys):
    """With the sign that makes the leading residue one of the smaller half."""
    result = polys[0]
    for p in polys[1:]:
        if not p or not result:
            return {}
        result = exact_quotient(m.ring, product(m.ring, result, p), common_divisor(m.ring, result, p))
    negative = result and m.ring.lift(result[max(result)]) < 0
    return total(m.ring, {}, result, minus=True) if negative else result


def content_of(m, p, level=None):
    return ONE if main_level(p) is None else content(m.ring, p, m.level_of(p, level))


def quotient_of(m, p, q):
    if not q:
        raise Refused
    return exact_quotient(m.ring, p, q)


def sdivide(m, p, q, name):
    quotient = quotient_of(m, p, q)
    if quotient is not None:
        m.names[name] = m.whole(quotient)
    return int(quotient is not None)


def remquot(m, p, q, name):
    m.names[name] = UNKNOWN
    m.names[name], rest = m.quotient_and_remainder(p, q)
    return rest


def egcd(m, a, b, s=None, t=None):
    if len(m.levels(a) | m.levels(b)) != 1:
        raise Refused
    g, *factors = cofactors(m.ring, a, b)
    for name, f in zip((s, t), factors):
        if name:
            m.names[name] = m.whole(f)
    return g


def powermod(m, p, n, q):
    level = main_level(q)
    if n < 0 or level is None or coefficient(q, level, degree(q, level)) != ONE:
        raise Refused
    result, square = ONE, p
    while n:
        if n % 2:
            result = division(m.ring, product(m.ring, result, square), q, level)[1]
        square = division(m.ring, product(m.ring, square, square), q, level)[1]
        n //= 2
    return result


def derivative_of(m, a, level, times=1):
    if times < 0:
        raise Refused
    return m.values.derivative(a, level, times)


def lower(m, p, n):
    if any(e[0] < n for e in p):
        raise Refused
    return shifted(p, 0, -n)


def splice(m, a, q, n):
    p, name = numerator(a[0]), a[1]
    if n < 0 or n + degree(q, 0) > LARGEST_EXPONENT:
        raise Refused
    return m.stored(m.whole(total(m.ring, p, shifted(q, 0, n))), name)


def split(m, a, n, name):
    p, source = numerator(a[0]), a[1]
    if main_level(p) is None:
        raise Refused
    m.names[name] = m.whole({e[:0] + (e[0] - n,) + e[1:]: c for e, c in p.items() if e[0] >= n})
    return m.stored(m.whole({e: c for e, c in p.items() if e[0] < n}), source)


def rcoef(m, a, level, n, wanted):
    p, name = numerator(a[0]), a[1]
    if n < 0:
        raise Refused
    change = total(m.ring, wanted, coefficient(p, level, n), minus=True)
    return m.stored(m.whole(total(m.ring, p, shifted(change, level, n))), name)


def variable_number(m, n):
    if not 1 <= n <= len(m.variables):
        raise Refused
    return m.named(m.variables[n - 1])[0]


FUNCTIONS = {
    # name: (arguments, routine)
    "Deg": (("v", "x?"), counted(lambda m, a, level=None: degree(a[0], m.level_of(a[0], level)))),
    "Codeg": (("p", "x?"), counted(lambda m, p, level=None: min((e[m.level_of(p, level)] for e in p), default=0))),
    "Coef": (("p", "x*", "n"), whole(lambda m, p, level, n: coefficient(p, m.level_of(p, level), n))),
    "Lcoef": (("p",), whole(lambda m, p: coefficient(p, m.level_of(p), degree(p, m.level_of(p))))),
    "Lterm": (("p",), whole(leading_term)),
    "Lmon": (("p",), whole(lambda m, p: {max(p): 1} if p else {})),
    "Ncoef": (("p",), whole(leading_number)),
    "Ntcoef": (("p",), whole(lambda m, p: constant(p[min(p)] if p else 0))),
    "Zcoef": (("p",), whole(lambda m, p: {e: c for e, c in p.items() if not any(e)})),
    "Numcontent": (("p",), counted(lambda m, p: 1)),
    "Terms": (("v",), counted(lambda m, a: max(len(a[0]), 1) + (len(a[1]) if a[1] != ONE else 0))),
    "Vars": (("v",), counted(lambda m, a: len(m.levels(a[0]) | m.levels(a[1])))),
    "Level": (("p",), counted(lambda m, p: 0 if main_level(p) is None else main_level(p) + 1)),
    "Raise": (("p", "n"), whole(lambda m, p, n: shifted(p, 0, n))),
    "Lower": (("p", "n"), whole(lower)),
    "Splice": (("c", "p", "n"), splice),
    "Split": (("c", "n", "R"), split),
    "Rcoef": (("c", "x", "n", "p"), rcoef),
    "Var": (("n",), whole(variable_number)),
    "Deriv": (("v", "x", "n?"), derivative_of),
    "GCD": (("v", "v?"), whole(gcd)),
    "LCM": (("p", "p?", "p?"), whole(lcm)),
    "Content": (("p", "x?"), whole(content_of)),
    "Divides": (("p", "p"), counted(lambda m, p, q: int(quotient_of(m, p, q) is not None))),
    "Pdivide": (("p", "p"), whole(lambda m, p, q: quotient_of(m, p, q) or {})),
    "SDivide": (("p", "p", "r"), counted(sdivide)),
    "Remquot": (("p", "p", "r"), remquot),
    "Egcd": (("p", "p", "r?", "r?"), whole(egcd)),
    "Powermod": (("p", "n", "p"), whole(powermod)),
    "Numer": (("v",), whole(lambda m, a: a[0])),
    "Denom": (("v",), whole(lambda m, a: a[1])),
    "Killden": (("c",), lambda m, a: m.stored(m.whole(a[0][0]), a[1])),
}
WITHOUT_PARENTHESES = {"Deg", "Codeg", "Terms", "Var"}
