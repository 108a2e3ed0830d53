"""Products, powers and exact quotients of polynomials beside PARI/GP, Singular and FLINT, where these are installed.

    bench/products.py [--build <folder>] [--runs N] [--check] [figure ...]

Every round runs each program once, so that a busy machine slows all; a program that is four times slower than the
quickest peer in the first round is left out of the others. Shown are the medians of the processor seconds of the
computation alone, in a fresh process and, in parentheses, once its tables and records are there, and the median of
the ratios of the rounds to the peer that is quickest in the median. Singular and PARI/GP, whose clocks tick slowly, tell
the mean of several computations where one takes milliseconds. Answers are compared. --check makes a ratio beyond
its limit an error. FLINT runs as the target peer_poly, which has to be built by name.
"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile

GP_BEGIN = """rng_s = 1; rng() = rng_s = rng_s * 16807 %% 2147483647
terms(f) = if(type(f) != "t_POL", f != 0, my(s = 0); foreach(Vec(f), c, s += terms(c)); s)
M = %d; start = gettime();
"""
GP_END = """
spent = gettime();
value(f, v) = f *= Mod(1, M); for(i = 1, #v, f = subst(f, v[i], Mod(prime(i), M))); lift(simplify(f))
print("first ", spent / 1000. / %d); print("terms ", terms(h)); print("value ", value(h, %s)); quit
"""

SINGULAR_BEGIN = """system("--ticks-per-sec", 1000); int i; int j; bigint s = 1;
proc rng() { s = (s * 16807) mod 2147483647; return(s); }
ring r = %d,(%s),lp; poly f; poly g; poly h; int begin = timer;
"""
SINGULAR_END = """
int core = timer - begin; "first " + string(core) + "e-3/%d"; "terms " + string(size(h)); quit;
"""


class Figure:
    """A name that all programs know, the limit, and how it is typed into those that read text."""

    def __init__(self, name, most_ratio, modulus, variables, gp, singular, times=1):
        self.times = times  # that the text computes it: clocks that tick slowly
        self.name, self.most_ratio, self.modulus, self.variables = name, most_ratio, modulus, variables
        self.gp, self.singular = gp, singular

    def gp_text(self):
        names = "[" + ",".join(self.variables) + "]"
        return GP_BEGIN % (self.modulus or 2147483629) + self.gp + GP_END % (self.times, names)

    def singular_text(self):
        return SINGULAR_BEGIN % (self.modulus, ",".join(self.variables)) + self.singular + SINGULAR_END % self.times


def same(name, most_ratio, modulus, variables, text):
    """Both programs read the same statements; Singular's variables have been declared."""
    return Figure(name, most_ratio, modulus, variables, text, text)


SPARSE_POWERS = "f = (1+x+y+2*z^2+3*t^3+5*u^5)^10; g = (1+u+t+2*z^2+3*y^3+5*x^5)^10; "
GP_RANDOM = """p() = sum(i = 1, 2000, my(e = vector(4, k, rng() % 1000)); (rng() % 199 - 99) * x^e[1]*y^e[2]*z^e[3]*t^e[4])
f = p(); g = p(); gettime(); h = f*g;"""
SINGULAR_RANDOM = """proc p() { poly q; intvec e; int k; int n;
for (n = 1; n <= 2000; n++) { for (k = 1; k <= 4; k++) { e[k] = int(rng() mod 1000); }
q = q + (int(rng() mod 199) - 99) * monomial(e); } return(q); }
f = p(); g = p(); begin = timer; h = f*g;"""
GP_LONG = """c() = my(v = rng() % 128); for(k = 1, 3, v = v * 2^31 + rng()); v
p() = Polrev(vector(5001, i, c()))
f = p(); g = p(); gettime(); for(i = 1, 20, h = f*g);"""
SINGULAR_LONG = """proc p() { poly q; bigint v; int e; int k; for (e = 0; e <= 5000; e++) { v = rng() mod 128;
for (k = 1; k <= 3; k++) { v = v * bigint(2)^31 + rng(); } q = q + number(v) * x^e; } return(q); }
f = p(); g = p(); begin = timer; for (i = 1; i <= 20; i++) { h = f*g; }"""
GP_RESIDUES = """p() = Polrev(vector(20001, i, Mod(rng(), M)))
f = p(); g = p(); gettime(); for(i = 1, 20, h = f*g);"""
SINGULAR_RESIDUES = """proc p() { poly q; int e; for (e = 0; e <= 20000; e++) { q = q + number(rng()) * x^e; } return(q); }
f = p(); g = p(); begin = timer; for (i = 1; i <= 20; i++) { h = f*g; }"""

FIGURES = [
    same("dense4", 1.5, 0, "xyzt", "f = (1+x+y+z+t)^20; h = f*(f+1);"),
    same("sparse5", 2.0, 0, "xyztu", SPARSE_POWERS + "h = f*g;"),
    Figure("quotient4", 1.0, 0, "xyzt", "f = (1+x+y+z+t)^20; g = (1+x+y+z+t)^10; gettime(); for(i = 1, 20, h = f/g);",
           "f = (1+x+y+z+t)^20; g = (1+x+y+z+t)^10; begin = timer; for (i = 1; i <= 20; i++) { h = f/g; }", 20),
    Figure("quotient5", 2.0, 0, "xyztu", SPARSE_POWERS + "h = f*g; gettime(); h = h/f;",
           SPARSE_POWERS + "h = f*g; begin = timer; h = h/f;"),
    same("power/Z", 1.5, 0, "xyz", "h = (1+x+y+z)^180;"),
    Figure("power/46337", 1.5, 46337, "xyz", "h = (1+x+y+z+Mod(0,M))^120;", "h = (1+x+y+z)^120;"),
    Figure("random4", 1.5, 0, "xyzt", GP_RANDOM, SINGULAR_RANDOM),
    Figure("univariate/Z", 1.5, 0, "x", GP_LONG, SINGULAR_LONG, 20),
    Figure("univariate/65521", 1.5, 65521, "x", GP_RESIDUES, SINGULAR_RESIDUES, 20),
    Figure("univariate/2147483629", 1.5, 2147483629, "x", GP_RESIDUES, SINGULAR_RESIDUES, 20),
]


class Program:
    """How a figure is asked for: by its name, or by a file with text."""

    def __init__(self, name, command, text=None):
        self.name, self.command, self.text = name, command, text

    def run(self, figure, limit):
        """What the program tells, as words; nothing if it does not end in time."""
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as script:
            arguments = [figure.name]
            if self.text:
                script.write(self.text(figure))
                script.flush()
                arguments = [script.name]
            try:
                told = subprocess.run(self.command + arguments, capture_output=True, text=True, timeout=limit,
                                      stdin=subprocess.DEVNULL)
            except subprocess.TimeoutExpired:
                return None
        found = dict(line.split() for line in told.stdout.splitlines() if len(line.split()) == 2)
        if "/" in found.get("first", ""):
            total, times = found["first"].split("/")
            found["first"] = float(total) / int(times)
        if "first" not in found or "terms" not in found:
            sys.exit(f"{self.name} does not answer for {figure.name}: {told.stdout}{told.stderr}")
        return found


def installed_programs(folder):
    programs = [Program("ours", [os.path.join(folder, "bench_poly"), "--figure"])]
    if os.path.exists(os.path.join(folder, "peer_poly")):
        programs.append(Program("flint", [os.path.join(folder, "peer_poly")]))
    if shutil.which("Singular"):
        programs.append(Program("singular", ["Singular", "-q", "--no-rc"], Figure.singular_text))
    if shutil.which("gp"):
        programs.append(Program("pari", ["gp", "-f", "-q", "-D", "parisizemax=4000000000"], Figure.gp_text))
    return programs


def measure(figure, programs, runs, limit):
    """Program -> the list of what it told; the answers agree."""
    told = {}
    for turn in range(runs):
        for program in programs:
            if turn and program.name not in told:
                continue
            found = program.run(figure, limit)
            if found:
                told.setdefault(program.name, []).append(found)
        if turn == 0:
            for key in ("terms", "value"):
                answers = {name: found[0][key] for name, found in told.items() if key in found[0]}
                if len(set(answers.values())) > 1:
                    sys.exit(f"{figure.name}: the answers differ: {answers}")
            peers = [float(found[0]["first"]) for name, found in told.items() if name != "ours"]
            told = {name: found for name, found in told.items()
                    if name == "ours" or float(found[0]["first"]) <= 4 * min(peers)}
    return told


def compare(figure, programs, runs, limit):
    """Whether the limit holds."""
    told = measure(figure, programs, runs, limit)
    first = {name: [float(f["first"]) for f in found] for name, found in told.items()}
    again = {name: statistics.median(float(f["again"]) for f in found) for name, found in told.items()
             if "again" in found[0]}
    line = f"{figure.name:22}"
    for name in first:
        line += f" {name} {statistics.median(first[name]) * 1000:8.1f}"
        line += f" ({again[name] * 1000:7.1f})" if name in again else ""
    best = min((name for name in first if name != "ours"), key=lambda name: statistics.median(first[name]), default=None)
    if not best:
        print(line)
        return True
    ratio = statistics.median(mine / max(theirs, 1e-9) for mine, theirs in zip(first["ours"], first[best]))
    line += f"   ratio to {best} {ratio:5.2f}"
    if best in again:
        line += f" ({again['ours'] / again[best]:5.2f})"
    holds = ratio <= figure.most_ratio
    print(line + f" of {figure.most_ratio}" + ("" if holds else "   beyond the limit"), flush=True)
    return holds


def main():
    top = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--build", default=os.path.join(top, "build/release"))
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--limit", type=float, default=60, help="seconds of one run")
    parser.add_argument("--check", action="store_true")
    parser.add_argument("figures", nargs="*")
    options = parser.parse_args()
    programs = installed_programs(os.path.join(os.path.abspath(options.build), "bin"))
    print("milliseconds of the first computation in a process (and of one again)")
    held = [compare(figure, programs, options.runs, options.limit) for figure in FIGURES
            if not options.figures or figure.name in options.figures]
    return 1 if options.check and not all(held) else 0


if __name__ == "__main__":
    sys.exit(main())
