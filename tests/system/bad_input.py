"""Malformed statements: each ends in a value or a message in time, a statement behind it answers, and variables that it
does not name keep their values.

    bad_input.py <program>

Statements come from a fixed seed, TOLVEK_TEST_SEED, and by hand. TOLVEK_TEST_TIMES makes the generated ones more.
"""

import os
import random
import sys
import time

from session import Failure, PATIENCE, Session, check, run_tests

TIME_LIMIT = 1.0  # seconds for one statement
GENERATED = 400
IN_ONE_SESSION = 50
DEEP = 100000
KEPT = "keep := 8191:\n"
STACK = "*** The stack is nearly used up: the computation is nested too deeply.\n"

exact = False

WORDS = ["x", "y", "zz", "undefined", "abcdefghijklmno", "F", "Foo", "AA", "M", "or", "and", "if", "for", "while", "Det",
         "0", "1", "7", "12", "1.5", ".5", "1e+3", "1e", "2e5", "'", "'a'", "''", '"', "`"]
SIGNS = ["+", "-", "*", "/", "//", "\\", "|", "^", "!", "#", "$", "(", ")", "[", "]", "<", ">", "<<", "{", "}", ",", ":", ":=",
         ":+", ":-", "=", "@", "?", "%", "_", "_sqrt", "~", ";", " ", "  ", "\t", "\r"]
STATEMENTS = ["x := (3 + 4)*5^2", "y := |x - 7|/2", "x :+ 2", "2x y + 'a'", "_sqrt(2)*x", "x := 1.5e+3 - y!", "@(x, y)",
              "*x + $(y/3)", "a[1, 2] := 5", "((2 + 3)*(4 - x))^2", "<[1] + <", "[a] := [1, 2; 3, 4]", "F(x, y) = x + y;."]

BY_HAND = [
    "(", ")", "((", "))", "()", "(()", "[", "]", "[]", "[[", "]]", "{", "}", "{}", "<>", "<<", "><", "|", "||", "|||",
    "||||", "+", "-", "*", "/", "\\", "^", "!", "#", "$", "%", "&", "&&", "@", "@@", "?", "??", "_", "__", "~", "~~", "=",
    "==", ":=", ":", "::", ":::", ",", ",,", ".", "..", "...", "1..2", "1.2.3", "'", "''", "'''", "''''", "'a", "'ab'",
    '"', '""', '"text', "`", "``", "1 +", "1 + + 1", "1 * * 1", "1 // // 1", "1 ^ ^ 1", "2 ^", "^ 2", "! 3", "3 ! !",
    "x y z", "x := ", "x := := 3", "x :=: 3", "x = 3", ":= 3", "3 := x", "x + 1 := 2", "x :+ :+", "x :* 3", "x : 3",
    "x::", "*", "**x", "* 5", "$", "$$", "-", "---", "--+1", "|x", "x|", "|x|y|", "_foo", "_foo(", "_foo(2", "_(2)",
    "_sqrt", "_sqrt()", "_sqrt(-1)", "_ln(0)", "_asin(7)", "%", "%1", "%[", "%[1", "%[1]", "%[1][1]", "<[", "<[1",
    "<[1]", "<F", "<F<F", "[a", "[a]", "[a] := ", "[a] := [1", "[a] := [b]", "a[", "a[1", "a[1,", "a[1,2", "a[1]]",
    "a[[1]]", "a[1] := 2", "? ", "?5", "?F", "?[", "?[a", "?[a]", "?a[1]", "?a[", "@", "@5", "@F", "@(", "@(x", "@(x,",
    "@(,)", "@[", "@[a", "@[a]", "@[a*]", "@<", "@<F", "@<F>", "@<[", "@<[a", "@<[a]", "@<[a]>", "!", "! x", "!(x",
    "!5", "&5", "& ", "&(", "&()", "&(x", "&(x=", "&_", "&__", "&_5", "&_m", "&_m(", "&_m()", "&_m(2", "&_m(2) 3", "&xy",
    "&(5=", "F", "F(", "F()", "F(x", "F(x,", "F(x)", "F =", "F(x) =", "Det", "Det(", "Det[", "MPowermod", "Adjoint",
    "Diag", "Trans", "Diag[", "if", "if x", "if x then", "for", "for i", "while", "fi", "od", "else", "then", "do",
    "1e", "1e+", "1e-", "1e*", "1e++5", "1e+999999", "1e-999999", "1e+99999999999999999999", "0.0000000001e", "12 34 .. 5",
    "0^0", "0^-1", "1/0", "1\\0", "1|0", "0/0", "(-1)^(1/2)", "2^(1/2)", "2^10000000000000000000000", "(1/2)!", "-5!",
    "(-5)!", "10000000000000000000000!", "\t", "\r", "\r\r", " ; ; ; ", ";;;;;;;;", "quit", "exit", "help", "end",
]
BINARY = [bytes([c]) * 3 for c in list(range(0, 10)) + list(range(11, 32)) + [127, 128, 161, 173, 178, 179, 194, 208, 209,
                                                                              210, 211, 212, 213, 255]]
BINARY += [b"\xc2\xa5", b"x := \xc2\xa5", b"1 +\xc2\xa5 2", b"\xc2", b"\xa5", b"x\x00y", b"\x00", b"1\x001", b"'\x00'",
           b"\xef\xbb\xbf2 + 2", "ü := 3".encode(), "2 × 3".encode(), b"x := 5\x00 + 1", b"&\x00", b"&_\x00", b"@\x00"]
LONG = ["a" * 10000, "A" * 10000, "1" * 10000, "0" * 10000, "0." + "3" * 10000, "1" * 10000 + "." + "1" * 10000,
        "a_" * 5000, "'" + "a" * 10000, "x := " + "7" * 10000 + " +", "&" + "a" * 10000, "_" + "a" * 10000 + "(2)",
        "@" + "a" * 10000, "?" + "A" * 10000, "2^" + "9" * 10000, "1e+" + "9" * 10000, "+" * 10000, ";" * 300,
        " " * 10000 + ")", "1+" * 10000, "x," * 10000, "1 " * 10000 + ")", "[" * 10000, "<" * 10000, "." * 10000]
FACTORIALS = ["1" * 10000 + "!"]


def damaged(rnd):
    """A statement that was well formed, with a few random faults."""
    text = rnd.choice(STATEMENTS)
    for _ in range(rnd.randint(1, 4)):
        at = rnd.randint(0, len(text))
        kind = rnd.randint(0, 4)
        if kind == 0:
            text = text[:at]
        elif kind == 1:
            text = text[:at] + rnd.choice(SIGNS) + text[at:]
        elif kind == 2:
            text = text[:at] + text[at:at + 1] * 2 + text[at + 1:]
        elif kind == 3:
            text = text[:at] + text[at + 1:]
        else:
            text = text[:at] + rnd.choice(WORDS) + text[at:]
    return text


def random_words(rnd):
    return "".join(rnd.choice(WORDS if rnd.random() < 0.5 else SIGNS) + rnd.choice(["", " "])
                   for _ in range(rnd.randint(1, 14)))


def random_bytes(rnd):
    return bytes(rnd.choice([c for c in range(256) if c not in (10, ord("&"), ord("!"))]) for _ in range(rnd.randint(1, 40)))


def statements():
    seed = int(os.environ.get("TOLVEK_TEST_SEED", "20250711"))
    times = int(os.environ.get("TOLVEK_TEST_TIMES", "1"))
    print(f"        seed {seed}")
    rnd = random.Random(seed)
    made = [rnd.choice([damaged, damaged, random_words, random_bytes])(rnd) for _ in range(GENERATED * times)]
    every = BY_HAND + BINARY + LONG + FACTORIALS + made
    return [text if isinstance(text, bytes) else text.encode() for text in every]


def shown(value):
    return f"\n{value:9d}\n\n>" if exact else f"\n{value}\n\n>"


def expect_answer(session, text):
    """Sends text, the empty lines that end a definition it may have begun, and a statement that must answer."""
    session.send(text + b"\n" * 21 + b"1000003 + 1\n")
    session.wait_for(shown(1000004), TIME_LIMIT)


def try_statement(session, text):
    """A literal that a definition has left open goes on over the lines, and the system says so: then it is closed."""
    start = time.monotonic()
    for closing in (b"", b"'", b'"'):
        try:
            expect_answer(session, text + closing)
            break
        except Failure:
            if "End of line encountered inside a literal." not in session.text or closing == b'"':
                raise
            text = b""
    took = time.monotonic() - start
    session.send("keep - 1\n")
    session.expect(shown(8190))
    return took


def session_of(program, texts):
    """What went wrong with each of these statements; the longest time one took."""
    wrong, longest = [], 0.0
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send(KEPT)
        session.wait_for("\n>")
        for text in texts:
            try:
                longest = max(longest, try_statement(session, text))
            except (Failure, OSError) as what:
                wrong.append(f"{text[:100]!r}: {what}")
                break
        else:
            session.send("&q\n")
            status, _ = session.wait_for_end(20)
            errors = session.error_text().replace("No tolvekstart.txt file.\n", "")
            if status or errors:
                wrong.append(f"exit status {status}: {errors[-3000:]}")
    return wrong, longest


def every_statement_ends_in_a_value_or_a_message(program):
    texts = statements()
    check(len(texts) >= 500, "there are 500 statements at least")
    wrong, longest = [], 0.0
    for at in range(0, len(texts), IN_ONE_SESSION):
        group = texts[at:at + IN_ONE_SESSION]
        failed, took = session_of(program, group)
        longest = max(longest, took)
        wrong += failed
    print(f"        {len(texts)} statements; the longest took {longest * 1000:.0f} ms")
    check(not wrong, f"{len(wrong)} statements:\n" + "\n".join(wrong))


def deep_nesting_ends_in_a_panic_stop(program):
    """Recursion is bounded by the stack alone: its end is a line of text and the prompt."""
    deeper = 10 * DEEP
    forms = ["(" * DEEP, "(" * DEEP + "1" + ")" * DEEP, "-" * DEEP + "1", "2^" * DEEP + "1", "$" * DEEP + "1",
             "|(" * DEEP, "x := " + "(1+" * DEEP, "_sqrt(" * DEEP if not exact else "(2*" * DEEP, "&_m(" * deeper,
             "(" * deeper]
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send(KEPT)
        session.wait_for("\n>")
        for form in forms:
            session.send(form + "\n1000003 + 1\n")
            text, _ = session.wait_for(shown(1000004), 10)
            stopped = STACK in text and "*** Panic stop.\n" in text
            answered = "*** Inappropriate symbol" in text or form.endswith(("1", ")"))
            check(stopped or (answered and len(form) < deeper), f"{form[:20]!r}...: {text[-300:]!r}")
            session.send("keep - 1\n")
            session.expect(shown(8190))
        session.send("&q\n")
        status, _ = session.wait_for_end(20)
        check(status == 0, f"exit status {status}: {session.error_text()[-3000:]}")


def main():
    global exact
    program = sys.argv[1]
    exact = program.endswith("exact")
    return run_tests([every_statement_ends_in_a_value_or_a_message, deep_nesting_ends_in_a_panic_stop], program)


if __name__ == "__main__":
    sys.exit(main())
