#!/usr/bin/env python3
"""Size, memory and idle processor time of the real program, looked at from outside, beside those of an empty window
with the same timer (empty_window.cpp). Prints what results.h prints.

    program.py [--small]     in a throw-away prefix, with PREFIX, QORVENIX and TOOLS as ./bench sets them
"""
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time

from seed import seed

SMALL = "--small" in sys.argv
ENTRIES = 30 if SMALL else 1000
IDLE_SECONDS = 3 if SMALL else 600
PROGRAM = os.environ["QORVENIX"]
EMPTY = os.environ["TOOLS"] + r"\bench_empty_window.exe"
MOST_BYTES = (320 if PROGRAM.endswith("64.exe") else 300) * 1024


def result(what, entries, unit, measured, bare, kind, goal):
    print("result", what, entries, unit, f"{measured:.3f}", f"{bare:.3f}", "0", kind, goal, sep="\t")


class Running:
    """A program from its start to its forced end."""

    def __init__(self, *command):
        self.process = subprocess.Popen(["wine", *command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.folder = pathlib.Path(f"/proc/{self.process.pid}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def processor_time(self):
        """Seconds, of all threads."""
        return sum(int(each.read_text().split()[0]) for each in self.folder.glob("task/*/schedstat")) / 1e9

    def private_memory(self):
        """Kilobytes that belong to this process alone."""
        return int(re.search(r"RssAnon:\s+(\d+)", (self.folder / "status").read_text()).group(1))

    def peak_memory(self):
        """The most of it until the program has come to rest."""
        most, checked, used = 0, time.monotonic(), 0
        while True:
            assert self.process.poll() is None, "the program has ended"
            most = max(most, self.private_memory())
            time.sleep(0.002)
            if time.monotonic() - checked > 2:
                before, used, checked = used, self.processor_time(), time.monotonic()
                if used - before < 0.05:
                    return most


def measure_memory():
    peaks = {PROGRAM: [], EMPTY: []}
    for _ in range(1 if SMALL else 5):
        for command, found in peaks.items():
            with Running(command) as program:
                found.append(program.peak_memory())
    result("peak private memory", ENTRIES, "KB", statistics.median(peaks[PROGRAM]), statistics.median(peaks[EMPTY]),
           "more", 4096)


def measure_idle():
    with Running(EMPTY) as empty, Running(PROGRAM) as program:
        both = program, empty
        for each in both:
            each.peak_memory()  # until it has come to rest
        before = [each.processor_time() for each in both]
        time.sleep(IDLE_SECONDS)
        used = [each.processor_time() - start for each, start in zip(both, before)]
    result(f"processor time of {IDLE_SECONDS} idle seconds", "", "s", *used, "more", 0.5)


def main():
    file = pathlib.Path(os.environ["PREFIX"]) / "dosdevices" / (PROGRAM[:2].lower() + PROGRAM[2:].replace("\\", "/"))
    result("executable", "", "bytes", file.stat().st_size, 0, "size", MOST_BYTES)
    seed(ENTRIES)
    measure_memory()
    measure_idle()


if __name__ == "__main__":
    main()
