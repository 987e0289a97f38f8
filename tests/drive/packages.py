#!/usr/bin/env python3
"""The two packages, each the same file from the same commit. That for users is complete. That of the tests proves the
program on a Windows machine, and here: its test.cmd passes for both editions; without /throw-away it leaves the machine
as it was."""
import pathlib
import re
import shutil
import subprocess
import zipfile

from driver import HOME_PAGE, ROOT, WINE64, Session

RUN = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Run"


def unpack(folder, *kind):
    """Makes a package, which a placeholder in it must not go unnoticed in, twice; returns the names in it."""
    contents = set()
    for _ in range(2):
        done = subprocess.run([ROOT / "tools/package", *kind], check=True, capture_output=True, text=True)
        assert (f"placeholder {HOME_PAGE}" in done.stderr) == (".example" in HOME_PAGE), done.stderr
        package = pathlib.Path(done.stdout.strip())
        contents.add(package.read_bytes())
    assert len(contents) == 1, "two packages of one commit differ"
    with zipfile.ZipFile(package) as archive:
        archive.extractall(folder)
        return sorted(archive.namelist())


def test_cmd(session, *arguments):
    """How many passed and how many were skipped, in all programs."""
    done = subprocess.run(["wine", "cmd", "/c", r"C:\tests\test.cmd", *arguments], env=session.environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    said = done.stdout.decode("utf-8", "replace").replace("\r", "")
    counts = re.findall(r"^(\d+) passed, (\d+) failed, (\d+) skipped$", said, re.M)
    wrong = [part for part in said.split("---- ") if re.search(r"[1-9]\d* failed|^failed", part, re.M)]
    assert done.returncode == 0 and counts and not wrong and said.endswith("\nall passed\n"), "\n".join(wrong) or said
    passed, _, skipped = (sum(map(int, column)) for column in zip(*counts))
    assert said.count("skipped, because") == skipped and len(counts) == said.count("---- "), said
    return passed, skipped


def machine(session):
    """The registry of the machine and the user, but for what Wine itself counts and stores all the time."""
    keys = [rf"HKLM\Software{node}\Microsoft\Windows\CurrentVersion" for node in ("", r"\Wow6432Node")]
    return [session.run(WINE64, "reg", "query", key, "/s", check=False) for key in (*keys, RUN)]


with Session() as session:
    unpack(session.prefix / "drive_c/tests", "--tests")
    session.registry(RUN, "stays", r"C:\stays.exe")
    before = machine(session)
    passed, skipped = test_cmd(session)
    assert passed > 0 < skipped and machine(session) == before, (passed, skipped)
    of_two, skipped = test_cmd(session, "/throw-away", "programs")
    assert of_two > 2 and skipped == 0, (of_two, skipped)

    shutil.rmtree(session.folder)
    assert unpack(session.folder) == ["LICENSE.txt", "Qorvenix.exe", "Qorvenix64.exe", "ReadMe.txt"]
    text = (session.folder / "ReadMe.txt").read_bytes()
    assert b"\n" not in text.replace(b"\r\n", b"")
    assert text.decode("cp932").startswith("Qorvenix  Ver ") and HOME_PAGE in text.decode("cp932")
