"""A program at work, driven from outside: through pipes or a terminal, in lock-step with what it writes."""

import os
import pty
import select
import signal
import subprocess
import tempfile
import termios
import time

# What every wait is multiplied with: sanitizers and busy machines are slow.
PATIENCE = float(os.environ.get("TOLVEK_TEST_PATIENCE", "1"))


class Failure(Exception):
    pass


def check(true, what):
    if not true:
        raise Failure(what)


def make_raw(descriptor):
    """A terminal that neither echoes nor changes newlines in what is written to it, and reads whole lines."""
    settings = termios.tcgetattr(descriptor)
    settings[1] &= ~termios.OPOST
    settings[3] &= ~(termios.ECHO | termios.ECHONL)
    termios.tcsetattr(descriptor, termios.TCSANOW, settings)


class Session:
    """Used in a with statement: the process and its working folder end with it."""

    def __init__(self, program, arguments=(), terminal=False, folder=None, environment=None, executable=None):
        self.text = ""  # written since the last wait
        self.all = ""
        self.scratch = tempfile.TemporaryDirectory(prefix="tolvek_")
        self.errors = tempfile.TemporaryFile()
        if terminal:
            self.master, slave = pty.openpty()
            make_raw(slave)
            stdin = stdout = slave
        else:
            stdin = stdout = subprocess.PIPE
        self.process = subprocess.Popen([program, *arguments], executable=executable, stdin=stdin, stdout=stdout,
                                        stderr=self.errors, cwd=folder or self.scratch.name, env=environment)
        if terminal:
            os.close(slave)
            self.to, self.out = self.master, self.master
        else:
            self.to, self.out = self.process.stdin.fileno(), self.process.stdout.fileno()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.errors.close()
        self.scratch.cleanup()
        if self.process.stdin:
            try:
                self.process.stdin.close()
            except OSError:
                pass
            self.process.stdout.close()
        elif self.master is not None:
            os.close(self.master)

    def send(self, text):
        data = text if isinstance(text, bytes) else text.encode()
        while data:
            data = data[os.write(self.to, data):]

    def interrupt(self):
        self.process.send_signal(signal.SIGINT)

    def end_input(self):
        self.process.stdin.close()

    def read_some(self, seconds):
        """Adds what is written within the time; False when nothing more can come."""
        if not select.select([self.out], [], [], max(seconds, 0))[0]:
            return True
        try:
            chunk = os.read(self.out, 65536)
        except OSError:  # a terminal that the program has left
            chunk = b""
        text = chunk.decode(errors="replace")
        self.text += text
        self.all += text
        return bool(chunk)

    def wait_for(self, ending, seconds=5.0):
        """Waits until what is written ends so. Gives what was written since the last wait, and the time it took."""
        start = time.monotonic()
        deadline = start + seconds * PATIENCE
        while not self.text.endswith(ending):
            left = deadline - time.monotonic()
            more = self.read_some(left)
            if not self.text.endswith(ending) and (left <= 0 or not more):
                why = "did not come in time" if more else "did not come before the end"
                raise Failure(f"{ending!r} {why}; written instead: {self.text[-1000:]!r}\n{self.error_text()}")
        text, self.text = self.text, ""
        return text, time.monotonic() - start

    def expect(self, text, seconds=5.0):
        """Waits for exactly this text. The time it took."""
        found, took = self.wait_for(text, seconds)
        check(found == text, f"expected {text!r}, written: {found!r}")
        return took

    def wait_for_end(self, seconds=5.0):
        """Waits until the program has ended. Its exit status, and what it wrote since the last wait."""
        deadline = time.monotonic() + seconds * PATIENCE
        while self.read_some(deadline - time.monotonic()):
            check(time.monotonic() < deadline, f"the program did not end; written: {self.text[-1000:]!r}")
        status = self.process.wait(max(deadline - time.monotonic(), 1))
        text, self.text = self.text, ""
        return status, text

    def error_text(self):
        self.errors.seek(0)
        return self.errors.read().decode(errors="replace")

    def processor_seconds(self):
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def peak_kilobytes(self):
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as file:
            for line in file:
                if line.startswith("VmHWM:"):
                    return int(line.split()[1])
        return 0


def answers(program, lines, seconds=60):
    """What is shown for each line."""
    with tempfile.TemporaryDirectory() as folder:
        text = subprocess.run([program], input="\n".join(lines + ["&q", ""]), capture_output=True, text=True, cwd=folder,
                              timeout=seconds * PATIENCE, check=True).stdout
    parts = text.split("\n>")[1:]
    check(len(parts) == len(lines) + 1, f"{len(parts) - 1} answers to {len(lines)} lines: {parts[-1][-300:]!r}")
    return [part.strip("\n") for part in parts[:-1]]


def run_tests(tests, *arguments):
    """Calls each routine; tells which failed. The exit status."""
    failed = 0
    for test in tests:
        try:
            test(*arguments)
            print(f"ok      {test.__name__}")
        except (Failure, OSError, subprocess.TimeoutExpired) as what:
            failed += 1
            print(f"FAILED  {test.__name__}: {what}")
    print(f"{len(tests) - failed} of {len(tests)} passed")
    return 1 if failed else 0
