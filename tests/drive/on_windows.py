#!/usr/bin/env python3
"""What proves the program on a Windows machine, run here: the package of tests is the same file from the same commit, and
its test.cmd passes for both editions; without /throw-away it leaves the machine as it was."""
import pathlib
import re
import subprocess
import zipfile

from driver import ROOT, WINE64, Session

RUN = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"


def make_package():
    package = subprocess.run([ROOT / "tools/package", "--tests"], check=True, capture_output=True, text=True).stdout
    return pathlib.Path(package.strip())


def test_cmd(session, *arguments):
    """What it said in its last line: how many passed, failed and were skipped."""
    done = subprocess.run(["wine", "cmd", "/c", r"C:\tests\test.cmd", *arguments], env=session.environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    said = done.stdout.decode("utf-8", "replace").replace("\r", "")
    counts = re.search(r"^(\d+) passed, (\d+) failed, (\d+) skipped$", said.splitlines()[-1])
    wrong = [part for part in said.split("---- ") if re.search(r"[1-9]\d* failed|did not", part)]
    assert done.returncode == 0 and counts and not wrong, "\n".join(wrong) or said
    assert said.count("skipped, because") == int(counts[3]), said
    return [*map(int, counts.groups())]


def machine(session):
    """The registry of the machine and the user, but for what Wine itself counts and stores all the time."""
    keys = [rf"HKLM\Software{node}\Microsoft\Windows\CurrentVersion" for node in ("", r"\Wow6432Node")]
    return [session.run(WINE64, "reg", "query", key, "/s", check=False) for key in (*keys, RUN)]


with Session() as session:
    package = make_package()
    content = package.read_bytes()
    assert make_package().read_bytes() == content, "two packages of one commit differ"
    with zipfile.ZipFile(package) as archive:
        archive.extractall(session.prefix / "drive_c/tests")
    session.registry(RUN, "stays", r"C:\stays.exe")
    before = machine(session)
    passed, failed, skipped = test_cmd(session)
    assert passed > 0 == failed < skipped and machine(session) == before, (passed, failed, skipped)
    of_two, failed, skipped = test_cmd(session, "/throw-away", "programs")
    assert of_two > 2 and failed == skipped == 0, (of_two, failed, skipped)
print(package.name, len(content), "bytes;", passed, "tests pass anywhere")
