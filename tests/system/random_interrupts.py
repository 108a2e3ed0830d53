"""SIGINT at random moments into long exact statements: the level opens at once, and a resumed statement ends in the
same bytes as one that was left alone.

    random_interrupts.py <program>

TOLVEK_TEST_SEED and TOLVEK_TEST_TIMES (a multiplier) are read from the environment.
"""

import os
import random
import statistics
import sys
import time

from session import PATIENCE, Session, check, run_tests

OPENED = "\n*** New command level.\n2>"
RESUMED = "*** Resuming earlier command level\n"
LONGEST_ANSWER = 0.1  # seconds, for the median; single ones may wait for a busy machine
MOMENTS = 125 if PATIENCE <= 2 else 12  # for each statement; the sanitizers are slow

SEED = int(os.environ.get("TOLVEK_TEST_SEED", "20240229"))
TIMES = int(os.environ.get("TOLVEK_TEST_TIMES", "1"))


def started(program):
    session = Session(program)
    session.wait_for("\n>", 20)
    return session


def wait_for_part(session, part, seconds):
    """Waits until the text since the last wait holds the part."""
    deadline = time.monotonic() + seconds * PATIENCE
    while part not in session.text:
        left = deadline - time.monotonic()
        check(left > 0 and session.read_some(left), f"{part!r} did not come; written: {session.text[-300:]!r}")


def left_alone(session, statement):
    """The text of the statement, and the seconds that it takes."""
    session.send(statement + "\n")
    return session.wait_for("\n\n>", 60)


def given_to_the_level(text, whole):
    """Did the interrupt come before the line was read? The level then ran the statement, and shows its own prompt."""
    between = text[text.index(OPENED) + len(OPENED): text.index(RESUMED)]
    check(between in ("", whole[:-1] + "2>"), f"the level shows {between[:200]!r} ... {between[-200:]!r}")
    return between != ""


def interrupted(session, statement, moment, whole):
    """The text of the statement without that of the level, and the seconds until the level opened."""
    session.send(statement + "\n")
    until = time.monotonic() + moment
    while time.monotonic() < until:
        session.read_some(until - time.monotonic())
    session.interrupt()
    sent = time.monotonic()
    wait_for_part(session, OPENED, 60)
    answer = time.monotonic() - sent
    session.send("&_p\n")
    wait_for_part(session, RESUMED, 60)
    if given_to_the_level(session.text, whole):
        session.wait_for(RESUMED, 60)
        return whole, answer
    text, _ = session.wait_for("\n\n>" if not ended_before(session.text) else RESUMED, 60)
    check(text.count(OPENED) == 1 and text.count(RESUMED) == 1, f"no single level in {text[-300:]!r}")
    return text.replace(OPENED, "").replace(RESUMED, ""), answer


def ended_before(text):
    """Had the statement ended when the interrupt came? Its prompt then stands in front of the level."""
    return text[: text.index(OPENED)].endswith("\n\n>")


def at_random_moments(program, statement, before=None):
    moments = random.Random(f"{SEED} {statement}")
    answers = []
    with started(program) as session:
        if before:
            session.send(before + "\n")
            session.wait_for("\n>", 20)
        whole, seconds = left_alone(session, statement)
        for _ in range(MOMENTS * TIMES):
            text, answer = interrupted(session, statement, moments.uniform(0, seconds), whole)
            check(text == whole, f"seed {SEED}: another text behind the interrupt: {text[:200]!r} ... {text[-200:]!r}")
            answers.append(answer)
        session.send("1 + 1\n")
        session.expect("\n        2\n\n>")
    median = statistics.median(answers)
    check(median < LONGEST_ANSWER * PATIENCE, f"{statement}: the level takes {median:.3f} s to open")


def a_power(program):
    at_random_moments(program, "2^1000000")


def a_factorial(program):
    at_random_moments(program, "20000!")


def a_greatest_common_divisor(program):
    at_random_moments(program, "(3^60000 - 2^60000)/(3^45000 - 2^45000)")


def a_display(program):
    at_random_moments(program, "x", before="x := 7^200000:")


if __name__ == "__main__":
    sys.exit(run_tests([a_power, a_factorial, a_greatest_common_divisor, a_display], sys.argv[1]))
