#!/usr/bin/env python3
"""The package that users download: the same file from the same commit; a placeholder in it is told of on the console; its
program starts and finds its read-me."""
import pathlib
import shutil
import subprocess
import zipfile

from driver import HOME_PAGE, ROOT, Session

made = set()
for _ in range(2):
    done = subprocess.run([ROOT / "tools/package"], check=True, capture_output=True, text=True)
    assert (f"placeholder {HOME_PAGE}" in done.stderr) == (".example" in HOME_PAGE), done.stderr
    package = pathlib.Path(done.stdout.strip())
    made.add(package.read_bytes())
assert len(made) == 1, "two packages of one commit differ"

with Session() as session:
    shutil.rmtree(session.folder)
    with zipfile.ZipFile(package) as archive:
        assert sorted(archive.namelist()) == ["LICENSE.txt", "Qorvenix.exe", "Qorvenix64.exe", "ReadMe.txt"]
        archive.extractall(session.folder)
    text = (session.folder / "ReadMe.txt").read_bytes()
    assert b"\n" not in text.replace(b"\r\n", b"")
    assert text.decode("cp932").startswith("Qorvenix  Ver ") and HOME_PAGE in text.decode("cp932")
    session.import_registry('[HKEY_CLASSES_ROOT\\.txt]\n@="txtfile"\n')  # Wine forgets it
    with session.start():
        session.keys("alt+h", "r")
        assert "ReadMe" in session.ends_when_closed("Notepad")
print(package.name, package.stat().st_size, "bytes: repeatable, starts, finds its read-me")
