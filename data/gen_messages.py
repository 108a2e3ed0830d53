"""Makes Qerrs out of messages.txt and builtins.txt: 377 lines of text, the highest code of a built-in, and a line
for each code with a name and the word that a reader of expressions knows it by.
"""

import os

from datafile import check, directory

MESSAGES = 377
LONGEST_TEXT = 65
HIGHEST_CODE = 109
LONGEST_NAME = 10

here = os.path.dirname(os.path.abspath(__file__))


def rows(name):
    """The lines of a hand-written file, split once behind their first word; remarks and empty lines left out."""
    with open(os.path.join(here, name), encoding="ascii") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                first, rest = line.split(None, 1)
                yield first, rest.strip()


def messages():
    texts = {}
    for number, text in rows("messages.txt"):
        check(number not in texts, f"message {number} stands twice")
        check(len(text) <= LONGEST_TEXT, f"message {number} has {len(text)} characters")
        check(number == "rest" or 1 <= int(number) <= MESSAGES, f"there is no message {number}")
        texts[number] = text
    return [texts.get(str(n), texts["rest"]) for n in range(1, MESSAGES + 1)]


def builtins():
    names = []
    for code, rest in rows("builtins.txt"):
        words = rest.split()
        check(int(code) == len(names), f"code {code} is out of order")
        check(len(words) == 2 and all(len(word) <= LONGEST_NAME for word in words), f"code {code}")
        names.append(words)
    check(len(names) == HIGHEST_CODE + 1, f"there are {len(names)} built-ins")
    keys = [name.encode("ascii") for name, _ in names]
    check(all(a < b for a, b in zip(keys, keys[1:])), "the names of the built-ins are not in the order of their bytes")
    return names


def main():
    texts, names = messages(), builtins()
    with open(os.path.join(directory(), "Qerrs"), "w", encoding="ascii", newline="\n") as file:
        file.writelines(text + "\n" for text in texts)
        file.write(f"{HIGHEST_CODE}\n")
        file.writelines(f"{name} {word}\n" for name, word in names)


main()
