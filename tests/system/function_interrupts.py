"""SIGINT at random moments into running functions, 1,000 in all in the release build: the level opens at once, "&_p"
resumes, and the statement ends in the same bytes as one that was left alone.

    function_interrupts.py <program>
"""

import random
import re
import sys
import time

from random_interrupts import MOMENTS, RESUMED, SEED, TIMES, left_alone, started, wait_for_part
from session import check, run_tests

# What a level says when it opens: the functions that were running, and where.
LEVEL = "\n*** New command level.\n"
OPENED = re.compile(r"\n\*\*\* New command level\.\n(?:\*\*\* The most recent function evaluations were:\n.*?)?2>", re.S)


def interrupted(session, statement, moment, whole):
    """The text of the statement without that of the level."""
    session.send(statement + "\n")
    until = time.monotonic() + moment
    while time.monotonic() < until:
        session.read_some(until - time.monotonic())
    session.interrupt()
    wait_for_part(session, LEVEL, 10)
    wait_for_part(session, "2>", 10)
    session.send("&_p\n")
    wait_for_part(session, RESUMED, 10)
    opened, text = OPENED.search(session.text), session.text
    check(opened, f"no level in {text[-300:]!r}")
    between = text[opened.end(): text.index(RESUMED)]
    if between:  # the interrupt came before the line was read: the level ran it
        check(between == whole[:-1] + "2>", f"the level shows {between!r}")
        session.wait_for(RESUMED, 10)
        return whole
    ended = text[: opened.start()].endswith("\n\n>")
    text, _ = session.wait_for(RESUMED if ended else "\n\n>", 60)
    check(text.count(LEVEL) == 1 and text.count(RESUMED) == 1, f"no single level in {text[-300:]!r}")
    return OPENED.sub("", text).replace(RESUMED, "")


def at_random_moments(program, statement, before):
    moments = random.Random(f"{SEED} {statement}")
    with started(program) as session:
        session.send(before + "\n")
        session.wait_for("\n\n>", 20)
        whole, seconds = left_alone(session, statement)
        for _ in range(MOMENTS * TIMES):
            text = interrupted(session, statement, moments.uniform(0, seconds), whole)
            check(text == whole, f"seed {SEED}: another text behind the interrupt: {text[-300:]!r}, not {whole!r}")
        session.send("1 + 1\n")
        session.expect("\n        2\n\n>")

FIBONACCI = "Func F(n) = if n < 2 then n else F(n - 1) + F(n - 2) fi."


def a_loop_over_a_range(program):
    at_random_moments(program, "F(300000)", "Func F(n) = s := 0; for i = 1, n do s := s + i*i od; s.")


def a_loop_under_a_condition(program):
    at_random_moments(program, "F(200000)", "Func F(n) = i := 0; s := 1; while i < n do i :+; s := (3*s + i) | 65537 od; s.")


def a_recursion(program):
    at_random_moments(program, "F(20)", FIBONACCI)


def parameters_by_reference(program):
    at_random_moments(program, "G(40000)", "Func F(^x, y) = x := (x*y + 1) | 999983;. ; "
                                           "Func G(n) = a := 3; for i = 1 to n do F(a, i) od; a.")


def sums_of_fractions(program):
    at_random_moments(program, "F(30)", "Func F(n) = s := 0; for i = 1 to n do s := s + Sigma<j = 1 to i>[i/j] od; s.")


def long_values(program):
    at_random_moments(program, "F(3000)", "Func F(n) = p := 1; for i = 2 to n do p := p*i od; p.")


def a_compiled_function(program):
    at_random_moments(program, "F(60000)",
                      "Func F(n, s) = Compile; s := 7; for i = 1 to n do s := s*s | 1000003 + i od; s.")


def nested_conditions(program):
    at_random_moments(program, "F(871)", "Func F(n) = c := 0; for i = 2 to n do k := i; while k > 1 do "
                                         "if k | 2 = 0 then k := k \\ 2 else k := 3*k + 1 fi; c :+ od od; c.")


if __name__ == "__main__":
    sys.exit(run_tests([a_loop_over_a_range, a_loop_under_a_condition, a_recursion, parameters_by_reference,
                        sums_of_fractions, long_values, a_compiled_function, nested_conditions], sys.argv[1]))
