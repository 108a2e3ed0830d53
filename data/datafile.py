"""What the generators of the data files share: digits, checks and the writing of a file.

A data file is plain text, decimal integers between white space; the layout of the lines does not matter to the
reader. A generator is called with the directory to write into, checks what it made, and fails rather than write
a wrong file.
"""

import os
import sys

RADIX = 1 << 28  # of the chains of numbers
DECIMAL_RADIX = 10**8  # of numbers in decimal form


def digits(value, radix=RADIX):
    """The digits of value, most significant first; all carry its sign. 0 has one digit."""
    sign, value = (-1, -value) if value < 0 else (1, value)
    found = []
    while value or not found:
        value, digit = divmod(value, radix)
        found.append(sign * digit)
    return found[::-1]


def number(value):
    """A number as the files hold it: the count of its digits and the digits."""
    chain = digits(value)
    return [len(chain), *chain]


def check(condition, what):
    if not condition:
        sys.exit(f"{os.path.basename(sys.argv[0])}: {what}")


def directory():
    check(len(sys.argv) == 2, "needs the directory to write into")
    os.makedirs(sys.argv[1], exist_ok=True)
    return sys.argv[1]


def write(name, rows):
    """Writes rows of integers, a row a line, each wrapped at about 100 columns."""
    with open(os.path.join(directory(), name), "w", encoding="ascii", newline="\n") as file:
        for row in rows:
            line = ""
            for item in row:
                word = str(item)
                if line and len(line) + 1 + len(word) > 100:
                    file.write(line + "\n")
                    line = word
                else:
                    line = f"{line} {word}" if line else word
            file.write(line + "\n")


def in_rows(values, length=12):
    values = list(values)
    return [values[i : i + length] for i in range(0, len(values), length)]
