#!/usr/bin/env python3
"""tools/check_executable.py [--max-bytes N] PROGRAM...   fails on what a program must not be.

Windows 2000 has to load the 32-bit edition, Windows XP Professional x64 the 64-bit one: every imported name stands in
imports-win2000.txt under a version that this Windows has (names of later versions are there only so that the refusal
can say so), none is imported by ordinal, and the header asks for nothing newer. No library that it imports can be
planted beside it. It allows DEP and ASLR, whose relocations are there, 64-bit with all of the address space; manifest,
version and icons are what they should be; and it is small.

Each refusal is tried out first, on a copy of the program that is spoilt in that one place.
"""
import argparse
import dataclasses
import pathlib
import re
import struct
import sys
import xml.etree.ElementTree as xml

# Windows maps these from its list of known libraries and never from the program's folder: they stand on that list
# (KnownDLLs) or are imported by one that does; comctl32 comes from the folder that the manifest's dependency names.
# Others are loaded at run time (win/system_library.h).
KNOWN_LIBRARIES = {name + ".dll" for name in ("advapi32", "comctl32", "gdi32", "kernel32", "msvcrt", "ole32",
                                              "oleaut32", "shell32", "shlwapi", "user32")}
ICON_SIZES = {16, 20, 24, 32, 48, 64, 128, 256}  # pixels
RELOCATIONS_STRIPPED, HIGH_ENTROPY, DYNAMIC_BASE, NX_COMPAT, WINDOW_PROGRAM = 0x1, 0x20, 0x40, 0x100, 2
IMPORT, RESOURCE, RELOCATION, DELAYED_IMPORT, DIRECTORIES = 1, 2, 5, 13, 16  # the last is their number
ICON_GROUP, VERSION, MANIFEST = 14, 16, 24  # resources
JAPANESE = 0x0411


@dataclasses.dataclass
class Edition:
    file: str
    machine: str  # as the manifest names it; with another one there the program does not start
    oldest: str  # Windows
    has: set  # the versions whose functions that Windows has
    version: tuple
    most_bytes: int
    pointer: str  # how struct reads one
    flags: dict  # flag: what is wrong without it
    too_new: tuple  # an import, a name that could stand in its place, and the first Windows that has this one


EVERY_FLAG = {NX_COMPAT: "DEP is not allowed", DYNAMIC_BASE: "ASLR is not allowed"}
EDITIONS = {  # by the magic number of the header
    0x10B: Edition("Qorvenix.exe", "x86", "2000", {"NT4", "2000"}, (5, 0), 300 * 1024, "<I", EVERY_FLAG,
                   ("ShellExecuteExW", "IsUserAnAdmin", "XP")),
    0x20B: Edition("Qorvenix64.exe", "amd64", "XP x64", {"NT4", "2000", "XP", "2003"}, (5, 2), 320 * 1024, "<Q",
                   EVERY_FLAG | {HIGH_ENTROPY: "ASLR is not allowed above 4 GB"},
                   ("GetModuleHandleW", "GetTickCount64", "Vista")),
}


def manifest_facts(edition):
    """element: [(attribute or "" for its text, value)], one list for each time that it stands there"""
    return {
        "dependentAssembly/assemblyIdentity": [[
            ("language", "*"), ("name", "Microsoft.Windows.Common-Controls"),
            ("processorArchitecture", edition.machine), ("publicKeyToken", "6595b64144ccf1df"), ("type", "win32"),
            ("version", "6.0.0.0")]],
        "requestedExecutionLevel": [[("level", "highestAvailable"), ("uiAccess", "false")]],
        "dpiAware": [[("", "true")]],
        "dpiAwareness": [],
        "supportedOS": [],  # Windows 8.1 and later then all report version 6.2
    }


class Program:
    """An executable of either edition. Its parts are looked up where the loader looks."""

    def __init__(self, content):
        self.content = content
        start = self.read("<I", 0x3C)[0]
        self.file_header, self.header = start + 4, start + 24
        sections, optional_size, self.characteristics = self.read("<2xH12xHH", self.file_header)
        self.edition = EDITIONS[self.read("<H", self.header)[0]]
        table = self.header + optional_size
        self.directories = table - 8 * DIRECTORIES
        self.sections = [self.read("<4I", table + 40 * place + 8) for place in range(sections)]
        self.versions = self.read("<HH4xHH", self.header + 40)  # of the system and of the subsystem
        self.subsystem, self.flags = self.read("<HH", self.header + 68)

    def read(self, form, offset):
        return struct.unpack_from(form, self.content, offset)

    def directory(self, number):
        """Address and size."""
        return self.read("<II", self.directories + 8 * number)

    def offset(self, address):
        """Where in the file what is loaded at that address lies."""
        for virtual_size, start, raw_size, raw_start in self.sections:
            if start <= address < start + max(virtual_size, raw_size):
                return address - start + raw_start
        raise ValueError(f"no section holds {address:#x}")

    def text(self, address):
        start = self.offset(address)
        return self.content[start:self.content.index(b"\0", start)].decode("latin-1")

    def imports(self):
        """(library, name) of each, the name None for an ordinal."""
        entry = self.offset(self.directory(IMPORT)[0])
        form, size = self.edition.pointer, struct.calcsize(self.edition.pointer)
        while any(fields := self.read("<5I", entry)):
            names, library = self.offset(fields[0] or fields[4]), self.text(fields[3]).lower()
            while name := self.read(form, names)[0]:
                yield library, None if name >> 8 * size - 1 else self.text(name + 2)
                names += size
            entry += 20

    def resources(self, kind):
        """(language, file offset, bytes) of each resource of that kind."""
        address, size = self.directory(RESOURCE)
        if size == 0:
            return
        root = self.offset(address)

        def entries(table):
            named, numbered = self.read("<12xHH", root + (table & 0x7FFFFFFF))
            for place in range(named + numbered):
                yield self.read("<II", root + (table & 0x7FFFFFFF) + 16 + 8 * place)

        for _, names in (entry for entry in entries(0) if entry[0] == kind):
            for _, languages in entries(names):
                for language, leaf in entries(languages):
                    address, size = self.read("<II", root + leaf)
                    start = self.offset(address)
                    yield language, start, self.content[start:start + size]


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


def wrong_imports(program):
    imports = list(program.imports())
    for library in sorted({library for library, _ in imports} - KNOWN_LIBRARIES):
        yield f"{library} can be planted beside the program; load it at run time"
    for library, name in imports:
        version = KNOWN_NAMES.get((library, name))
        if name is None:
            yield f"{library}: an import by ordinal"
        elif version is None:
            yield f"{library}!{name}: unknown; list it with the version that has it first"
        elif version not in program.edition.has:
            yield f"{library}!{name}: first in Windows {version}; look it up at run time"
    if not imports:
        yield "no imports could be read"
    if program.directory(DELAYED_IMPORT)[1]:
        yield "delayed imports are loaded from anywhere"


def wrong_header(program):
    if program.versions != 2 * program.edition.version:
        yield f"the header asks for another system than Windows {program.edition.oldest}"
    if program.subsystem != WINDOW_PROGRAM:
        yield "no window program"
    for flag, wrong in program.edition.flags.items():
        if not program.flags & flag:
            yield wrong
    if program.characteristics & RELOCATIONS_STRIPPED or not program.directory(RELOCATION)[1]:
        yield "no relocations, so ASLR cannot move it"


def wrong_manifest(program):
    manifests = list(program.resources(MANIFEST))
    if len(manifests) != 1:
        yield f"{len(manifests)} manifests"
        return
    try:
        root = xml.fromstring(manifests[0][2])
    except xml.ParseError as error:
        yield f"manifest: {error}"
        return
    for path, wanted in manifest_facts(program.edition).items():
        found = [sorted([*each.attrib.items()] or [("", each.text)])
                 for each in root.findall(".//{*}" + path.replace("/", "/{*}"))]
        if found != wanted:
            yield f"manifest: {path} is {found}"


def wrong_version_and_icons(program):
    versions = list(program.resources(VERSION))
    parts = ("041104B0", "Translation\0\0\u0411\u04B0", f"OriginalFilename\0{program.edition.file}\0")
    if [language for language, _, _ in versions] != [JAPANESE] or any(
            part.encode("utf-16-le") not in versions[0][2] for part in parts):
        yield "no Japanese version"
    sizes = {content[6 + 14 * place] or 256 for _, _, content in program.resources(ICON_GROUP)
             for place in range(struct.unpack_from("<H", content, 4)[0])}
    if sizes != ICON_SIZES:
        yield f"icons of {sorted(sizes)} pixels"


def problems(content, most_bytes=None):
    program = Program(content)
    for check in (wrong_imports, wrong_header, wrong_manifest, wrong_version_and_icons):
        yield from check(program)
    most_bytes = most_bytes or program.edition.most_bytes
    if len(content) > most_bytes:
        yield f"{len(content)} bytes, more than {most_bytes}"


def prove_it_can_fail(content):
    """Spoils one place after another and sees that refused."""
    program = Program(content)
    imports = program.offset(program.directory(IMPORT)[0])
    icons = next(program.resources(ICON_GROUP))[1]
    directories, optional, edition = program.directories, program.header, program.edition
    name, too_new, version = edition.too_new
    by_ordinal = 1 << 8 * struct.calcsize(edition.pointer) - 1 | 1

    def patched(offset, form, *values):
        new = struct.pack(form, *values)
        return content[:offset] + new + content[offset + len(new):]

    def replaced(old, new, code="ascii"):
        old, new = old.encode(code), new.encode(code)
        assert content.count(old) and len(new) <= len(old), old
        return content.replace(old, new + old[len(new):])

    for wanted, spoilt in [
        ("version.dll can be planted", replaced("SHLWAPI.dll", "VERSION.dll")),
        (f"first in Windows {version}", replaced(name, too_new + "\0")),
        ("unknown", replaced("CreateFileW", "CreateFileQ")),
        ("by ordinal", patched(program.offset(program.read("<I", imports)[0]), edition.pointer, by_ordinal)),
        ("no imports", patched(imports, "<5I", 0, 0, 0, 0, 0)),
        ("delayed", patched(directories + 8 * DELAYED_IMPORT, "<II", 1, 1)),
        ("another system", patched(optional + 40, "<HH", 5, 3)),
        ("another system", patched(optional + 48, "<HH", 6, 0)),
        ("no window program", patched(optional + 68, "<H", 3)),
        *((wrong, patched(optional + 70, "<H", program.flags & ~flag)) for flag, wrong in edition.flags.items()),
        ("no relocations", patched(directories + 8 * RELOCATION, "<II", 0, 0)),
        ("no relocations", patched(program.file_header + 18, "<H", program.characteristics | RELOCATIONS_STRIPPED)),
        ("manifest: mismatched tag", replaced("</assembly>", "</assemblx>")),
        ("assemblyIdentity is", replaced("6595b64144ccf1df", "6595b64144ccf1d0")),
        ("assemblyIdentity is", replaced(f'="{edition.machine}"', f'="{edition.machine[:-1]}?"')),
        ("requestedExecutionLevel is", replaced("highestAvailable", "requireAdministr")),
        ("dpiAware is", replaced("true</dpiAware>", "nope</dpiAware>")),
        ("supportedOS is", replaced("<!-- No list of supported", "<supportedOS/><!-- ")),
        ("no Japanese version", replaced("041104B0", "040904B0", "utf-16-le")),
        ("no Japanese version", replaced(edition.file, "Qorvenix.com", "utf-16-le")),
        ("icons of", patched(icons + 6, "<B", 17)),
        ("bytes, more than", content + bytes(1)),
    ]:
        found = list(problems(spoilt, len(content)))
        assert any(wanted in each for each in found), f"a spoilt copy was not refused: {wanted}: {found}"


arguments = argparse.ArgumentParser()
arguments.add_argument("--max-bytes", type=int, help="instead of the edition's own bound")
arguments.add_argument("program", type=pathlib.Path, nargs="+")
options = arguments.parse_args()

KNOWN_NAMES = read_list(pathlib.Path(__file__).with_name("imports-win2000.txt"))
bad = 0
for path in options.program:
    executable = path.read_bytes()
    if not (found := list(problems(executable, options.max_bytes))):
        prove_it_can_fail(executable)
    bad += bool(found)
    print(f"{path.name}:", "\n".join(found) if found else f"{len(executable)} bytes, as it should be")
sys.exit(bad)
