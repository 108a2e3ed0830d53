"""What the programs do when their input ends, or can no longer be read.

    end_of_input.py <program>
"""

import os
import pty
import subprocess
import sys
import time

from session import PATIENCE, Session, check, make_raw, run_tests

FREE_PASSES = 100  # prompts without a pause
PAUSE = 0.1  # seconds before each one behind them

exact = False


def shown(value):
    return f"\n{value:9d}\n\n" if exact else f"\n{value}\n\n"


def watch(session, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        session.read_some(end - time.monotonic())


def keeps_prompting_with_a_pause(program, first_lines="", prompt=">"):
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send(first_lines)
        session.end_input()
        watch(session, 0.5)
        before = session.text.count(prompt), session.processor_seconds(), time.monotonic()
        watch(session, 1.5)
        check(session.process.poll() is None, "the program has ended")
        now = session.text.count(prompt), session.processor_seconds(), time.monotonic()
        check(before[0] >= FREE_PASSES, f"only {before[0]} prompts at once")
        most = (now[2] - before[2]) / PAUSE + 2
        check(2 <= now[0] - before[0] <= most, f"{now[0] - before[0]} prompts in {now[2] - before[2]:.1f} s")
        check(now[1] - before[1] < 0.3 * PATIENCE, f"{now[1] - before[1]:.2f} s of processor time while it waits")


def the_float_program_keeps_prompting(program):
    keeps_prompting_with_a_pause(program)


def at_a_level_too(program):
    keeps_prompting_with_a_pause(program, "&_P\n", "2>")


def behind_a_statement_that_is_cut_off(program):
    keeps_prompting_with_a_pause(program, "x := (2 + ", ">")


def a_terminal_may_go_on(program):
    with Session(program, terminal=True) as session:
        session.wait_for("\n>", 20)
        session.send("\x04")
        session.expect("\n\n>")  # the empty statement
        session.send("2 + 3\n")
        session.expect(shown(5) + ">")


def the_exact_program_ends(program):
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send("2 + 3\n")
        session.end_input()
        status, text = session.wait_for_end()
        check(text == shown(5) + ">\n bye\n", repr(text))
        check(status == 0, f"exit status {status}")


def the_exact_program_ends_at_a_level(program):
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send("&_P\n7\n")
        session.end_input()
        status, text = session.wait_for_end()
        check(text.endswith("2>" + shown(7) + "2>\n bye\n") and status == 0, repr((text, status)))


def the_exact_program_ends_behind_an_error(program):
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.send("x := (2 + ")
        session.end_input()
        status, text = session.wait_for_end()
        check("*** Inappropriate symbol: ;\n" in text and text.endswith(">\n bye\n") and status == 0, repr(text))


def the_exact_program_ends_with_its_terminal(program):
    with Session(program, terminal=True) as session:
        session.wait_for("\n>", 20)
        session.send("\x04")
        status, text = session.wait_for_end()
        check(text == "\n bye\n" and status == 0, repr((text, status)))


def a_terminal_that_goes_away_ends_the_program(program):
    master, slave = pty.openpty()
    make_raw(slave)
    process = subprocess.Popen([program], stdin=slave, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    os.close(slave)
    os.write(master, b"2 + 3\n")
    time.sleep(0.3)
    os.close(master)
    try:
        text, _ = process.communicate(timeout=5 * PATIENCE)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        check(False, "the program did not end")
    check(text.decode().endswith(shown(5) + ">\n bye\n") and process.returncode == 0, repr(text[-100:]))


def an_input_that_cannot_be_read_ends_the_program(program):
    folder = os.open("/", os.O_RDONLY)
    process = subprocess.run([program], stdin=folder, capture_output=True, timeout=20 * PATIENCE)
    os.close(folder)
    check(process.stdout.decode().endswith("\n>\n bye\n") and process.returncode == 0, repr(process.stdout[-100:]))


def a_script_goes_on_behind_an_error(program):
    """A script given by redirection is neither read again from its start nor given up."""
    with Session(program) as session:
        path = os.path.join(session.scratch.name, "script")
        with open(path, "w", encoding="ascii") as file:
            file.write("x := 0:\nx :+ 1:\n2) ; x :+ 10:\nx :+ 100:\nx\n&q\n")
        with open(path, "rb") as script:
            result = subprocess.run([program], stdin=script, capture_output=True, timeout=20 * PATIENCE)
        text = result.stdout.decode()
        check(text.endswith(shown(101) + ">\n bye\n"), repr(text[-200:]))
        check(text.count("Inappropriate symbol") == 1, "the error comes once")


def output_that_nobody_reads_ends_no_session(program):
    """A reader that goes away: the text is lost, and &q ends the program."""
    with Session(program) as session:
        session.wait_for("\n>", 20)
        session.process.stdout.close()
        session.send("1 + 1\n2)\n&q\n")
        status = session.process.wait(10 * PATIENCE)
        session.process.stdout = open(os.devnull, "rb")  # noqa: SIM115: closed with the session
        check(status in (0, -13), f"exit status {status}")


def main():
    global exact
    program = sys.argv[1]
    exact = program.endswith("exact")
    both = [a_terminal_that_goes_away_ends_the_program, an_input_that_cannot_be_read_ends_the_program,
            a_script_goes_on_behind_an_error, output_that_nobody_reads_ends_no_session]
    floats = [the_float_program_keeps_prompting, at_a_level_too, behind_a_statement_that_is_cut_off,
              a_terminal_may_go_on]
    integers = [the_exact_program_ends, the_exact_program_ends_at_a_level, the_exact_program_ends_behind_an_error,
                the_exact_program_ends_with_its_terminal]
    return run_tests((integers if exact else floats) + both, program)


if __name__ == "__main__":
    sys.exit(main())
