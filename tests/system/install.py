"""The programs as they are installed, and their start without data files.

    install.py <build folder> <cmake>
"""

import os
import shutil
import subprocess
import sys
import tempfile

from session import PATIENCE, Session, check, run_tests

PROGRAMS = ("tolvek", "tolvek-exact")
BANNER = "Reading initialization data from directory "


class Installed:
    """The tree below a temporary prefix, in use by all tests."""

    def __init__(self, build, cmake):
        self.scratch = tempfile.TemporaryDirectory(prefix="tolvek_install_")
        self.prefix = os.path.realpath(os.path.join(self.scratch.name, "prefix"))
        subprocess.run([cmake, "--install", build, "--prefix", self.prefix], check=True, capture_output=True, text=True)
        self.bin = os.path.join(self.prefix, "bin")
        self.lib = os.path.dirname(os.path.realpath(os.path.join(self.bin, "tolvek")))

    def path(self, name):
        return os.path.join(self.scratch.name, name)


def starts(program, data, **how):
    """The program, started in this way, reads its data from this folder, computes and ends."""
    with Session(program, **how) as session:
        start, _ = session.wait_for("\n>", 20)
        used = start.partition(BANNER)[2].partition("\n")[0]
        check(os.path.realpath(used) == os.path.realpath(data), f"data from {used!r}, not from {data!r}")
        session.send("2 + 3\n&q\n")
        status, text = session.wait_for_end()
        check(status == 0 and text.strip().startswith("5") and text.endswith(" bye\n"), repr((status, text)))


def data_of(tree):
    return os.path.join(tree.lib, "BACKWARD")


def one_folder_and_two_links(tree):
    check(sorted(os.listdir(tree.bin)) == sorted(PROGRAMS), str(os.listdir(tree.bin)))
    check(sorted(os.listdir(tree.lib)) == sorted((*PROGRAMS, "BACKWARD")), str(os.listdir(tree.lib)))
    check(len(os.listdir(data_of(tree))) == 9, "nine data files")
    for name in PROGRAMS:
        target = os.readlink(os.path.join(tree.bin, name))
        check(not os.path.isabs(target), f"{target} names a place: the tree could not be moved")


def through_the_links(tree):
    for name in PROGRAMS:
        starts(os.path.join(tree.bin, name), data_of(tree))


def by_a_relative_path(tree):
    for name in PROGRAMS:
        starts("./" + name, data_of(tree), folder=tree.bin)
        starts("../bin/" + name, data_of(tree), folder=tree.bin)
        starts("bin/" + name, data_of(tree), folder=tree.prefix)


def from_the_search_path(tree):
    environment = dict(os.environ, PATH="/nowhere:" + tree.bin + ":" + os.environ["PATH"])
    for name in PROGRAMS:
        starts(name, data_of(tree), environment=environment, executable=os.path.join(tree.bin, name))
    environment["PATH"] = "bin:" + os.environ["PATH"]
    starts("tolvek", data_of(tree), folder=tree.prefix, environment=environment,
           executable=os.path.join(tree.bin, "tolvek"))


def through_links_to_links(tree):
    os.symlink(os.path.join(tree.bin, "tolvek"), tree.path("from_root"))
    os.symlink("from_root", tree.path("relative"))
    os.makedirs(tree.path("deep/er"))
    os.symlink("../../relative", tree.path("deep/er/third"))
    for name in ("from_root", "relative", "deep/er/third"):
        starts(tree.path(name), data_of(tree))
    starts("er/third", data_of(tree), folder=tree.path("deep"))


def in_a_folder_with_blanks(tree):
    folder = tree.path("a folder with blanks")
    shutil.copytree(tree.lib, folder)
    starts(os.path.join(folder, "tolvek"), os.path.join(folder, "BACKWARD"))


def the_start_up_file_may_stand_beside_the_data(tree):
    moved = tree.path("with_start_up_file")
    shutil.copytree(tree.lib, moved)
    with open(os.path.join(moved, "BACKWARD/tolvekstart.txt"), "w", encoding="ascii") as file:
        file.write("16\nx := 42;\n")
    with Session(os.path.join(moved, "tolvek")) as session:
        start, _ = session.wait_for("\n>", 20)
        check(" Amount of RAM you specified (mbytes): 16.\n" in start, repr(start))
        session.send("x\n")
        session.expect("\n42\n\n>")
    with Session(os.path.join(moved, "tolvek")) as session:
        # One in the working folder goes first; the programs start before it can be written there, so start again.
        path = os.path.join(session.scratch.name, "tolvekstart.txt")
        with open(path, "w", encoding="ascii") as file:
            file.write("16\nx := 43;\n")
        starts_with = subprocess.run([os.path.join(moved, "tolvek")], input="x\n&q\n", cwd=session.scratch.name,
                                     capture_output=True, text=True, timeout=20 * PATIENCE, check=False)
        check("\n43\n" in starts_with.stdout, repr(starts_with.stdout))


def a_missing_data_file_stops_the_start(tree):
    folder = tree.path("without_data")
    shutil.copytree(tree.lib, folder)
    for name, text in (("lrgpmes", "can't find lrgpmes"), ("Qerrs", "can't find Qerrs"), ("chdat", "can't find chdat.")):
        os.remove(os.path.join(folder, "BACKWARD", name))
        result = subprocess.run([os.path.join(folder, "tolvek")], input="1\n&q\n", capture_output=True, text=True,
                                timeout=20 * PATIENCE, check=False)
        check(result.returncode == 1 and result.stdout.endswith("\n*** Tolvek error. " + text + "\n"),
              repr((result.returncode, result.stdout[-200:])))


def a_low_stack_limit_is_raised(tree):
    """The soft limit is raised to 32 MiB where the hard one allows; where it does not, the start says so and goes on."""
    program = os.path.join(tree.bin, "tolvek")
    # Behind a deeper stack than 64 MiB the sanitizers go wrong themselves: without a limit the nesting stays flat.
    for limits, depth, stops, complaint in (("-S 1024", 1000000, True, ""), ("-S unlimited", 1000, False, ""),
                                            ("8192", 1000000, True, "setrlimit returned result = -1\n")):
        result = subprocess.run(["sh", "-c", f"ulimit -s {limits}; exec {program}"], text=True, capture_output=True,
                                input="(" * depth + "\n1 + 1\n&q\n", timeout=30 * PATIENCE, check=False)
        check(result.returncode == 0 and "\n2\n" in result.stdout and ("Panic stop" in result.stdout) == stops,
              f"ulimit -s {limits}: {result.returncode}, {result.stdout[-300:]!r}")
        check(result.stderr.replace("No tolvekstart.txt file.\n", "") == complaint, f"{limits}: {result.stderr!r}")


def main():
    tree = Installed(sys.argv[1], sys.argv[2])
    with tree.scratch:
        return run_tests([one_folder_and_two_links, through_the_links, by_a_relative_path, from_the_search_path,
                          through_links_to_links, in_a_folder_with_blanks, the_start_up_file_may_stand_beside_the_data,
                          a_missing_data_file_stops_the_start, a_low_stack_limit_is_raised], tree)


if __name__ == "__main__":
    sys.exit(main())
