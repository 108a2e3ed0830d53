"""The time that a large state takes to be saved and loaded.

    bench/saved_states.py [--build <folder>] [--check]

The state: 10,000 scalars, 100 functions, a matrix of 300 x 300 polynomials, and a polynomial of 1,000,000 terms with
coefficients of 40 figures: 50 MB. Shown are processor seconds; the second save must be the first one, byte for byte.
--check makes a save above 5 s or a load above 10 s an error.
"""

import argparse
import filecmp
import os
import random
import re
import subprocess
import sys
import tempfile

MOST_SECONDS = {"load": 10, "save": 5}
SIDE = 100  # exponents of each of three variables: SIDE^3 terms
ELAPSED = re.compile(r" Elapsed .*CPU time: (?:(\d+):)?[ \d]*?(\d+\.\d{3})")


def term(coefficient, name, power):
    return f"{coefficient}{name}^{power}" if power else str(coefficient)


def polynomial(rnd, names):
    """Terms with all exponents below SIDE, in nested form, a line for each run of the last variable."""
    if len(names) == 1:
        return " +\n".join(term(rnd.randrange(10**39, 10**40), names[0], e) for e in range(SIDE - 1, -1, -1))
    inner = ((e, polynomial(rnd, names[1:])) for e in range(SIDE - 1, -1, -1))
    return " +\n".join(term(f"({text})", names[0], e) if e else text for e, text in inner)


def write_state(path):
    rnd = random.Random(7)
    with open(path, "w", encoding="ascii") as file:
        file.write("&(J = x);\n&(J = y);\n&(J = z);\n")
        for i in range(100):
            file.write(f"Func F{i}(n) = if n < 2 then 1 else n*F{i}(n-1) + {i} fi.;\n")
        for i in range(10000):
            file.write(f"s{i} := {rnd.randrange(10**12)};\n")
        file.write(f"p := &_n ( {polynomial(rnd, 'xyz')} );\nArray w[300,300];\n")
        for row in range(1, 301):
            for column in range(1, 301):
                a, b, c, d = (rnd.randrange(1, 100) for _ in range(4))
                file.write(f"w[{row},{column}] := &_n ( {a}x^2 + ({b}y + {c})x + {d} );\n")
        file.write("&x;\n")


def timed(program, folder, source, target):
    script = f"&t\n&(R = '{source}'):\n&(S = '{target}'):\n&s\n&q\n"
    text = subprocess.run([program], input=script, cwd=folder, capture_output=True, text=True, check=True).stdout
    seconds = [60 * int(minutes or 0) + float(rest) for minutes, rest in ELAPSED.findall(text)]
    return {"load": seconds[-3], "save": seconds[-1]}


def main():
    top = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", default=os.path.join(top, "build/release"))
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    program = os.path.join(os.path.abspath(options.build), "bin/tolvek-exact")
    with tempfile.TemporaryDirectory(prefix="tolvek_") as folder:
        write_state(os.path.join(folder, "zero"))
        timed(program, folder, "zero", "one")
        seconds = timed(program, folder, "one", "two")
        size = os.path.getsize(os.path.join(folder, "one")) / 1e6
        if not filecmp.cmp(os.path.join(folder, "one"), os.path.join(folder, "two"), shallow=False):
            sys.exit("the second save differs from the first")
    print(f"{size:.1f} MB: save {seconds['save']:.2f} s, load {seconds['load']:.2f} s")
    return 1 if options.check and any(seconds[way] > most for way, most in MOST_SECONDS.items()) else 0


if __name__ == "__main__":
    sys.exit(main())
