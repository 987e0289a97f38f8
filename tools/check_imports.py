#!/usr/bin/env python3
"""tools/check_imports.py [--max-bytes N] PROGRAM   fails on what keeps Windows 2000 from loading the program.

Every imported name must stand in imports-win2000.txt under a version that Windows 2000 has; names of later versions
are listed there only so that the refusal can say so. Also refused: imports by ordinal, a header that asks for a newer
system, a missing ASLR or DEP flag, and a program that is too large.
"""
import argparse
import pathlib
import re
import subprocess
import sys

OLD_ENOUGH = {"NT4", "2000"}


def read_list(path):
    known, library, version = {}, None, None
    for line in path.read_text().splitlines():
        line = line.split("#")[0].strip()
        if heading := re.fullmatch(r"\[(\S+) (\S+)\]", line):
            library, version = heading.groups()
        else:
            for name in line.split():
                known[library.lower(), name] = version
    return known


def problems(dump, known):
    library = None
    for line in dump.splitlines():
        if found := re.search(r"DLL Name: (\S+)", line):
            library = found.group(1).lower()
        elif found := re.fullmatch(r"\s+[0-9a-f]+\s+(\d+)\s+(\S+)", line):
            name = found.group(2)
            version = known.get((library, name))
            if version is None:
                yield f"{library}!{name}: unknown; list it with the version that has it first"
            elif version not in OLD_ENOUGH:
                yield f"{library}!{name}: first in Windows {version}; look it up at run time"
        elif library and "<none>" in line:
            yield f"{library}: an import by ordinal"
    for field in ("MajorOSystemVersion", "MajorSubsystemVersion"):
        found = re.search(field + r"\s+(\d+)", dump)
        if not found or int(found.group(1)) > 5:
            yield f"{field} is above 5"
    for flag in ("DYNAMIC_BASE", "NX_COMPAT"):
        if flag not in dump:
            yield f"{flag} is not set"


arguments = argparse.ArgumentParser()
arguments.add_argument("--max-bytes", type=int, default=0)
arguments.add_argument("program", type=pathlib.Path)
options = arguments.parse_args()

known = read_list(pathlib.Path(__file__).with_name("imports-win2000.txt"))
dump = subprocess.run(["i686-w64-mingw32-objdump", "-p", options.program], capture_output=True, text=True,
                      check=True).stdout
found = list(problems(dump, known))
if "kernel32.dll" not in dump.lower():
    found.append("no imports could be read")
size = options.program.stat().st_size
if options.max_bytes and size > options.max_bytes:
    found.append(f"{size} bytes, more than {options.max_bytes}")
print("\n".join(found) if found else f"{size} bytes, Windows 2000 has every import")
sys.exit(bool(found))
