#!/usr/bin/env python3
"""Puts entries, as installers write them, under the Uninstall key of a throw-away prefix.

    seed.py COUNT     with PREFIX as ./bench sets it
"""
import os
import pathlib
import subprocess
import sys

UNINSTALL = r"[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\Program "


def seed(count):
    lines = ["Windows Registry Editor Version 5.00", ""]
    for number in range(count):
        lines += [f"{UNINSTALL}{number}]", f'"DisplayName"="日本語のプログラム {number}"',
                  '"Publisher"="株式会社プログラム"', f'"UninstallString"="MsiExec.exe /X{number}"',
                  '"InstallDate"="20100401"', f'"InstallLocation"="C:\\\\Program Files\\\\Program {number}"',
                  f'"EstimatedSize"=dword:{number * 1000:08x}', ""]
    file = pathlib.Path(os.environ["PREFIX"]) / "drive_c/entries.reg"
    file.write_bytes("\r\n".join(lines).encode("utf-16"))
    subprocess.run(["wine", "regedit", "/S", r"C:\entries.reg"], check=True, stderr=subprocess.DEVNULL)


if __name__ == "__main__":
    seed(int(sys.argv[1]))
