"""Whole programs against the clock, beside PARI/GP where it is installed.

    bench/programs.py [--build <folder>] [--runs N] [--check]

Each problem runs in pairs, one run of ours and one of the peer's by turns, so that a busy machine slows both. Shown are
the medians, their ratio, the least and the greatest ratio of a pair, and the greatest memory of a run. The answers are
compared. --check makes a ratio or a memory beyond its limit an error.
"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

MEBIBYTE = 1024  # in kilobytes, the unit in which the system tells peak memory
STATEMENTS = 100000


class Problem:
    """What is typed into each program, and what the last line with an answer must be."""

    def __init__(self, name, ours, peers, answer, most_ratio, most_memory=None, programs=("tolvek", "tolvek-exact")):
        self.name, self.ours, self.peers, self.answer = name, ours, peers, answer
        self.most_ratio, self.most_memory, self.programs = most_ratio, most_memory, programs


PROBLEMS = [
    Problem("start and &q", "&q\n", "", None, 2.0, 64 * MEBIBYTE),
    Problem(f"{STATEMENTS} statements", "x := 0:\n" + "x := x + 1:\n" * STATEMENTS + "x\n&q\n",
            "x = 0;\n" + "x = x + 1;\n" * STATEMENTS + "x\n", str(STATEMENTS), 2.0),
    Problem("a loop by for", "Func F(n) = s := 0; for i = 1, n do s := s + 1 od; s.\nF(3000000)\n&q\n",
            "F(n) = my(s = 0); for (i = 1, n, s = s + 1); s\nF(3000000)\n", "3000000", 1.5, programs=("tolvek-exact",)),
    Problem("a loop by while", "Func F(n) = i := 0; while i < n do i := i + 1 od; i.\nF(3000000)\n&q\n",
            "F(n) = my(i = 0); while (i < n, i = i + 1); i\nF(3000000)\n", "3000000", 1.5, programs=("tolvek-exact",)),
    Problem("Fibonacci of 25", "Func F(n) = if n < 2 then n else F(n - 1) + F(n - 2) fi.\nF(25)\n&q\n",
            "F(n) = if (n < 2, n, F(n - 1) + F(n - 2))\nF(25)\n", "75025", 1.5, programs=("tolvek-exact",)),
    Problem("a sum of floats", "s := 0:\nFunc F(n) = Compile(s); Float; s := 0; "
            "for i = 1, n do s := s + i*i - i/2 od; s.\nF(3000000)\n&q\n",
            "F(n) = my(s = 0.); for (i = 1, n, s = s + (1.*i)*i - i/2.); s\nF(3000000)\n", None, 0.5,
            programs=("tolvek",)),
    Problem("10^7 elements read", "Array a[100]:\nfor i = 1 to 100 do a[i] := i od:\nFunc R(v, n, s, i, j) = Compile; "
            "for i = 1 to n do for j = 1 to 100 do s := s + v[j] od od; s.\nR([a], 100000)\n&q\n",
            "R(v, n) = my(s = 0); for (i = 1, n, for (j = 1, 100, s = s + v[j])); s\nR(vector(100, i, i), 100000)\n",
            "505000000", 2.0, programs=("tolvek-exact",)),
    Problem("a sieve to 10^6", "Func Sieve(v, n, i, j, c) = Compile; Float; for i = 2 to n do v[i] := 1 od; "
            "for i = 2 to 1000 do if v[i] = 1 then for j = i*i to n by i do v[j] := 0 od fi od; "
            "for i = 2 to n do if v[i] = 1 then c :+ fi od; c.\nArray a[1000000]:\nSieve([a], 1000000)\n&q\n",
            "default(parisizemax, 500000000);\nS(n) = my(v = vector(n), c = 0); for (i = 2, n, v[i] = 1); "
            "for (i = 2, 1000, if (v[i] == 1, forstep (j = i*i, n, i, v[j] = 0))); "
            "for (i = 2, n, if (v[i] == 1, c++)); c\nS(1000000)\n", "78498", 2.0, programs=("tolvek",)),
]


def run(command, typed, answer):
    """Seconds and peak kilobytes of one run."""
    with tempfile.TemporaryFile() as stdin, tempfile.TemporaryFile() as stdout, tempfile.TemporaryDirectory() as folder:
        stdin.write(typed.encode())
        stdin.seek(0)
        start = time.perf_counter()
        process = subprocess.Popen(command, stdin=stdin, stdout=stdout, stderr=subprocess.DEVNULL, cwd=folder)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        stdout.seek(0)
        text = stdout.read().decode(errors="replace")
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with status {process.returncode}")
    if answer is not None and answer not in (line.strip(" >") for line in text.split("\n")[-12:]):
        sys.exit(f"{command[0]} gives a wrong answer: {text[-200:]!r}")
    return seconds, usage.ru_maxrss


def compare(problem, ours, peer, runs):
    """Whether the limits hold."""
    pairs, memory = [], 0
    for _ in range(runs):
        seconds, peak = run([ours], problem.ours, problem.answer)
        memory = max(memory, peak)
        pairs.append((seconds, run(peer, problem.peers, problem.answer)[0] if peer else None))
    median = statistics.median(seconds for seconds, _ in pairs)
    line = f"{os.path.basename(ours):13}{problem.name:20}{median * 1000:9.1f} ms{memory / MEBIBYTE:7.1f} MiB"
    holds = problem.most_memory is None or memory <= problem.most_memory
    if peer:
        other = statistics.median(seconds for _, seconds in pairs)
        ratios = [mine / theirs for mine, theirs in pairs]
        line += f"   gp{other * 1000:9.1f} ms   ratio {median / other:5.2f}  ({min(ratios):.2f} to {max(ratios):.2f})"
        holds = holds and median / other <= problem.most_ratio
    print(line + ("" if holds else "   beyond the limit"))
    return holds


def main():
    top = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", default=os.path.join(top, "build/release"))
    parser.add_argument("--runs", type=int, default=11)
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    gp = shutil.which("gp")
    if not gp:
        print("gp is not installed: our own times alone")
    peer = [gp, "-f", "-q"] if gp else None
    held = [compare(problem, os.path.join(os.path.abspath(options.build), "bin", program), peer, options.runs)
            for problem in PROBLEMS for program in problem.programs]
    return 1 if options.check and not all(held) else 0


if __name__ == "__main__":
    sys.exit(main())
