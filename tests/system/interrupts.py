"""SIGINT at the prompt, while an answer is read and at nested levels, in lock-step with the prompts.

    interrupts.py <program>
"""

import statistics
import sys
import time

from session import PATIENCE, Session, check, run_tests

OPENED = "\n*** New command level.\n"
RESUMED = "*** Resuming earlier command level\n"
LONGEST_ANSWER = 0.1  # seconds from the signal to the prompt of the level: the median of many
TERMINALS = (False, True)

exact = False


def shown(value):
    """A small whole number as the program shows it."""
    return f"\n{value:9d}\n\n" if exact else f"\n{value}\n\n"


def started(program, terminal):
    session = Session(program, terminal=terminal)
    session.wait_for("\n>", 20)
    return session


def say(session, line, answer, prompt=">"):
    session.send(line + "\n")
    session.expect(answer + prompt)


def open_level(session, level):
    """Interrupts; the seconds until the prompt of the level stands."""
    start = time.monotonic()
    session.interrupt()
    session.expect(OPENED + f"{level}>")
    return time.monotonic() - start


def at_the_prompt(program):
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            say(session, "x := 5", shown(5))
            open_level(session, 2)
            say(session, "x + 1", shown(6), "2>")
            session.send("&_p\n")
            session.expect(RESUMED)  # and the read of the prompt goes on
            say(session, "x", shown(5))


def lines_typed_ahead_of_the_way_back(program):
    """What came in one piece with the end of the level is still there behind it."""
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            open_level(session, 2)
            session.send("7\n&_p\n8\n9\n")
            session.expect(shown(7) + "2>" + RESUMED + shown(8) + ">" + shown(9) + ">")


def two_in_a_row(program):
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            open_level(session, 2)
            open_level(session, 3)
            say(session, "1 + 1", shown(2), "3>")
            session.send("&_p\n")
            session.expect(RESUMED)
            say(session, "2 + 2", shown(4), "2>")
            session.send("&_p\n")
            session.expect(RESUMED)
            say(session, "3 + 3", shown(6))


def while_an_answer_is_read(program):
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            say(session, "x := 1; y := 7", shown(1) + ">" + shown(7))
            session.send("?x\n")
            session.expect(">x := ")
            open_level(session, 2)
            say(session, "y := y + 1", shown(8), "2>")
            session.send("&_p\n")
            session.expect(RESUMED)
            say(session, "5 y", shown(40))  # the answer
            say(session, "x", shown(40))


def an_answer_is_given_up(program):
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            say(session, "x := 3", shown(3))
            session.send("?x\n")
            session.expect(">x := ")
            open_level(session, 2)
            session.send("&@\n")
            session.expect("\n*** Panic stop.\n\n>")
            say(session, "x", shown(3))


def behind_a_continuation_mark(program):
    for terminal in TERMINALS:
        with started(program, terminal) as session:
            session.send("x := 2 + `\n")
            time.sleep(0.1)
            open_level(session, 2)
            say(session, "7", shown(7), "2>")
            session.send("&_p\n")
            session.expect(RESUMED)
            say(session, "3", shown(5))
            say(session, "x", shown(5))


def to_the_ninth_level_and_beyond(program):
    with started(program, True) as session:
        say(session, "x := 4", shown(4))
        for level in range(2, 10):
            open_level(session, level)
        session.interrupt()
        session.expect(OPENED + "*** Highest legal command level is 9.\n\n*** Panic stop.\n\n>")
        say(session, "x", shown(4))
        open_level(session, 2)


def the_previous_value_is_kept(program):
    with started(program, False) as session:
        say(session, "6", shown(6))
        open_level(session, 2)
        say(session, "7", shown(7), "2>")
        session.send("&_p\n")
        session.expect(RESUMED)
        say(session, "<", shown(6))


def during_the_start(program):
    """The interrupt waits until the tables stand, and opens a level at the first prompt."""
    with Session(program) as session:
        while not session.text:
            check(session.read_some(20), "the program has ended")
        session.interrupt()
        session.wait_for("\n*** New command level.\n2>", 20)
        say(session, "1 + 1", shown(2), "2>")
        session.send("&_p\n")
        session.expect(RESUMED)
        say(session, "2 + 2", shown(4))


def many_and_quickly(program):
    times = []
    with started(program, True) as session:
        say(session, "x := 11", shown(11))
        for _ in range(25):
            times.append(open_level(session, 2))
            session.send("&_p\n")
            session.expect(RESUMED)
        say(session, "x", shown(11))
    median = statistics.median(times)
    print(f"        from the signal to the prompt: median {median * 1000:.2f} ms, longest {max(times) * 1000:.2f} ms")
    check(median < LONGEST_ANSWER * PATIENCE, f"the level opens after {median:.3f} s")


def a_burst_is_no_harm(program):
    """Signals that come before the first is taken count as one or more; all levels can be left."""
    with started(program, False) as session:
        say(session, "x := 11", shown(11))
        for _ in range(5):
            session.interrupt()
        time.sleep(0.3)
        session.send("&@\n")
        session.wait_for("*** Panic stop.\n\n>")
        say(session, "x", shown(11))


def main():
    global exact
    program = sys.argv[1]
    exact = program.endswith("exact")
    return run_tests([at_the_prompt, lines_typed_ahead_of_the_way_back, two_in_a_row, while_an_answer_is_read,
                      an_answer_is_given_up, behind_a_continuation_mark, to_the_ninth_level_and_beyond,
                      the_previous_value_is_kept, during_the_start, many_and_quickly, a_burst_is_no_harm], program)


if __name__ == "__main__":
    sys.exit(main())
