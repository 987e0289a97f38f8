#!/usr/bin/env python3
"""Libraries with the names of Windows' own, put beside the program: none of them is loaded, whatever it is asked to do.

Left out are those that it imports, and what these import: Windows takes them from its list of known libraries
(tools/check_executable.py holds the program to it), and Wine has no such list. So are those that Wine's own libraries
load by their bare names, before the program's first instruction or without regard to the folders that it allows.
"""
import re
import shutil
import subprocess

from driver import Session, until

# Loaded by the libraries of some Windows, and not there in Wine.
ELSEWHERE = {"cryptbase.dll", "profapi.dll", "ntmarta.dll", "clbcatq.dll", "linkinfo.dll", "ntshrui.dll", "srvcli.dll",
             "cscapi.dll", "apphelp.dll", "edputil.dll", "textshaping.dll", "windowscodecs.dll"}
OF_WINE = {"uxtheme.dll", "msimg32.dll"}
PLANTED = r"Q:\check\bin\planted_dll.dll"


def imported(folder, *programs):
    """The names of all libraries that programs import, directly or through others of that folder."""
    found, waiting = set(), [*programs]
    while waiting:
        text = subprocess.run(["i686-w64-mingw32-objdump", "-p", waiting.pop()], check=True, capture_output=True,
                              text=True).stdout
        new = {name.lower() for name in re.findall(r"DLL Name: (\S+)", text)} - found
        found |= new
        waiting += [folder / name for name in new if (folder / name).exists()]
    return found


def use_everything(window):
    """Every view, with icons; the dialog for files; everything that is cleaned."""
    session = window.session
    window.keys("alt+v", "i")
    session.keys("alt+f", "s")
    session.dialog()
    window.keys("Escape")
    for place in range(7):
        window.click_tab(place)
    for letter in "tricu":
        window.keys("alt+f", "u")
        session.keys("alt+d", letter)
        until(lambda: window.status() == "削除完了", what=letter)


with Session() as session:
    system = session.path(r"C:\windows\syswow64")
    names = {path.name.lower() for path in system.glob("*.dll")} | ELSEWHERE
    names -= OF_WINE | imported(system, session.folder / "Qorvenix.exe", *(system / name for name in OF_WINE))
    for name in names:
        shutil.copy(session.path(PLANTED), session.folder / name)
    # Wine is told to take these before its own. A program that imports one of them gets it.
    session.environment["WINEDLLOVERRIDES"] += ";" + ",".join(name.removesuffix(".dll") for name in names) + "=n,b"
    importing = session.path(r"C:\Importing")
    importing.mkdir()
    shutil.copy(session.path(r"Q:\check\bin\test_tools.exe"), importing)
    shutil.copy(session.path(PLANTED), importing / "wininet.dll")
    session.run("wine", r"C:\Importing\test_tools.exe", "--count")
    session.registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample", "DisplayName", "Sample")
    session.settings()
    with session.start() as window:
        use_everything(window)
    loaded = set(session.path(r"C:\planted.txt").read_text().lower().split("\n")[:-1])
    assert loaded == {r"c:\importing\wininet.dll"}, loaded
print("nothing planted beside the program is loaded,", len(names), "names tried")
