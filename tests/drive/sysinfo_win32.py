#!/usr/bin/env python3
"""The tests of the system report and the Control Panel list once more, on 32-bit Windows."""
import os
import pathlib
import shutil
import subprocess
import sys

tools = pathlib.Path(__file__).resolve().parents[2] / "tools"
prefix = pathlib.Path(os.environ["PREFIX"] + "-32")


def in_prefix(*command):
    return subprocess.run([tools / "in-prefix", prefix, *command], check=False).returncode


subprocess.run([tools / "prefix", prefix, "win32"], check=True)
try:
    subprocess.run([tools / "own-desktop", prefix], check=True)
    failed = in_prefix("wine", os.environ["TOOLS"] + r"\test_sysinfo.exe")
finally:
    in_prefix("wineserver", "-k")
    in_prefix("wineserver", "-w")
    shutil.rmtree(prefix)
sys.exit(failed)
