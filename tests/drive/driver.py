"""Drives the real program from outside, as a user does: real keys and a real mouse, the screen, and what another
process can read from its window (tests/helpers/peek.cpp).

    with Session() as session:                  # own display, own Wine desktop, own copy of the program
        with session.start("4") as window:      # the program, opened on its fourth tab
            window.keys("F5")
            until(lambda: window.status().endswith("個の項目"))

Needs what ./test gives to a driver: PREFIX, a throw-away prefix in whose environment this runs, QORVENIX and TOOLS.
"""
import dataclasses
import itertools
import os
import pathlib
import re
import shutil
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
VERSION, HOME_PAGE = re.search(r"project\(Qorvenix VERSION (\S+) HOMEPAGE_URL (\S+)",
                               (ROOT / "CMakeLists.txt").read_text()).groups()
WINE64 = ROOT / "tools/wine64/wine"  # sees the whole registry, whichever edition is driven
IS_64_BIT = os.environ["QORVENIX"].endswith("64.exe")
SETTINGS_KEY = r"HKCU\Software\Wine\AppDefaults\Qorvenix.exe"


def _controls():
    """The ids of the window's controls by their names, as the product's header has them."""
    header = (ROOT / "src/shell/controls.h").read_text()
    first = int(re.search(r"kFirstControlId = (\d+)", header)[1])
    names = re.search(r"enum class Control \{([^}]*)\}", header)[1]
    return {name: first + place for place, name in enumerate(re.findall(r"\w+", names))}


CONTROL = _controls()
LIST_OF_TAB = {
    "プログラムの追加と削除": "ListView1_0", "更新プログラム": "ListView1_1", "スタートアップ": "lvStartUp",
    "サービス": "lvService", "コントロールパネル": "ListView2", "システムの復元": "lvRestore"}


def until(condition, seconds=20, what="what was waited for"):
    """Waits for a condition and returns its value; fails when it stays false for that long."""
    end = time.monotonic() + seconds
    while not (value := condition()):
        assert time.monotonic() < end, f"{what} did not happen"
        time.sleep(0.03)
    return value


def _kind(name, fields):
    """A class of records as peek tells them."""
    others = {"window_class": str, "text": str, "caption": str, "visible": bool, "enabled": bool, "focus": bool}
    return dataclasses.make_dataclass(name, [(field, others.get(field, int)) for field in fields.split()])


Tab = _kind("Tab", "left top right bottom text_width caption")
TopLevel = _kind("TopLevel", "handle window_class process left top width height text")


# The size of the text is what it needs in one go.
class Control(_kind("Control", "handle window_class id visible enabled focus left top width height "
                               "parent text_width text_height text")):
    @property
    def right(self):
        return self.left + self.width

    @property
    def bottom(self):
        return self.top + self.height

    def overlaps(self, other):
        return (self.left < other.right and other.left < self.right
                and self.top < other.bottom and other.top < self.bottom)


@dataclasses.dataclass
class Rows:
    headers: list
    widths: list
    edges: list  # left edge of each header, in the list's own pixels
    selected: int
    rows: list

    def find(self, name, column=0):
        """The row whose cell is that text; -1 when there is none."""
        return next((place for place, row in enumerate(self.rows) if row[column] == name), -1)


def _unescape(text):
    return re.sub(r"\\(.)", lambda match: {"t": "\t", "r": "\r", "n": "\n"}.get(match[1], match[1]), text)


def _record(kind, fields):
    types = [field.type for field in dataclasses.fields(kind)]
    return kind(*(bool(int(text)) if wanted is bool else wanted(text) for wanted, text in zip(types, fields)))


class Session:
    """A display, a Wine desktop on it, and a folder C:\\Qorvenix with the program in the prefix."""

    def __init__(self, size="1280x1024", dpi=96, variables=None):
        self.prefix = pathlib.Path(os.environ["PREFIX"])
        self.folder = self.prefix / "drive_c/Qorvenix"
        self.environment = dict(os.environ, **(variables or {}))
        self.size, self.dpi = size, dpi
        self._display = self._peek = None

    def __enter__(self):
        read, write = os.pipe()
        self._display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{self.size}x24", "-nolisten", "tcp"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()
        # What runs in the prefix already would open its windows on the display it was started on.
        self.end_wine()
        self.registry(r"HKCU\Software\Wine\Explorer", "Desktop", "test")
        self.registry(r"HKCU\Software\Wine\Explorer\Desktops", "test", self.size)
        self.set_dpi(self.dpi)
        self.folder.mkdir(exist_ok=True)
        shutil.copy(self.path(os.environ["QORVENIX"]), self.folder / "Qorvenix.exe")
        return self

    def __exit__(self, *_):
        self.end_wine()
        self._display.terminate()
        self._display.wait()

    def end_wine(self):
        if self._peek:
            self._peek.stdin.close()
            self._peek.wait()
            self._peek = None
        self.run("wineserver", "-k", check=False)
        self.run("wineserver", "-w", check=False)

    def path(self, windows_path):
        """Where a path of the prefix lies on this machine."""
        return self.prefix / "dosdevices" / (windows_path[:2].lower() + windows_path[2:].replace("\\", "/"))

    def run(self, *command, check=True):
        """Runs a command in the prefix to its end and returns what it wrote."""
        done = subprocess.run(command, env=self.environment, check=check, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
        return done.stdout.decode("utf-8", "replace")

    def registry(self, key, value, data, kind="REG_SZ", wine="wine"):
        self.run(wine, "reg", "add", key, "/v", value, "/t", kind, "/d", str(data), "/f")

    def import_registry(self, text):
        """Merges a registry file, given without its first line, by one start of the registry editor."""
        file = self.prefix / "drive_c/import.reg"
        file.write_bytes(("Windows Registry Editor Version 5.00\n\n" + text).encode("utf-16"))
        self.run("wine", "regedit", "/S", r"C:\import.reg")
        file.unlink()

    def set_dpi(self, dpi):
        """The resolution for everything started from now on; ends what runs."""
        self.registry(r"HKCU\Control Panel\Desktop", "LogPixels", dpi, "REG_DWORD")
        self.end_wine()
        self.dpi = dpi

    def set_version(self, name):
        """The Windows that the program sees ("win2k", "winxp", "vista"); None for the prefix's own."""
        if name:
            self.registry(SETTINGS_KEY, "Version", name)
        else:
            self.run("wine", "reg", "delete", SETTINGS_KEY, "/f", check=False)

    def settings(self, **values):
        """Writes setting.ini. Names like 3Col0 are handed over in a dictionary: settings(**{"3Col0": 90})."""
        lines = "".join(f"{name}={value}\r\n" for name, value in values.items())
        (self.folder / "setting.ini").write_bytes(("[Morlet]\r\n" + lines).encode("cp932"))

    def stored_settings(self):
        text = (self.folder / "setting.ini").read_bytes().decode("cp932")
        return dict(line.split("=", 1) for line in text.splitlines() if "=" in line)

    def size_settings(self, width, height, left=0, top=0):
        """Settings of a window of that outer size, in pixels."""
        return {name: pixels * 1440 / self.dpi for name, pixels in
                zip(("X", "Y", "W", "H"), map(round, (left, top, width, height)))} | {"WinState": 0}

    def start(self, *arguments):
        return Window(self, arguments)

    # ---- looking

    def peek(self, *words):
        """The lines that peek answers, each a list of fields; None when it found nothing to look at."""
        if not self._peek:
            self._peek = subprocess.Popen(["wine", os.environ["TOOLS"] + r"\peek.exe", "serve"], env=self.environment,
                                          stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._peek.stdin.write((" ".join(map(str, words)) + "\n").encode())
        self._peek.stdin.flush()
        answer = []
        while (line := self._peek.stdout.readline().decode()) not in ("ok\n", "failed\n"):
            assert line, "peek has ended"
            answer.append([_unescape(field) for field in line.rstrip("\n").split("\t")])
        return answer if line == "ok\n" else None

    def windows(self, window_class=None):
        """The visible top-level windows of all programs, the topmost first."""
        found = [_record(TopLevel, fields) for fields in self.peek("windows") or []]
        return [each for each in found if window_class in (None, each.window_class)]

    def dialog(self, seconds=20):
        """The controls of the message box or dialog that is open, itself first; waits for it."""
        top = until(lambda: self.windows("#32770"), seconds, "a dialog")[0]
        return [_record(Control, fields) for fields in self.peek("tree", top.handle)]

    def menu_items(self):
        """Waits for a pop-up menu and tells of each of its items, separators left out, whether it is enabled. No other
        process can ask a menu: what is read is the black or grey of its texts."""
        place = until(lambda: self.windows("#32768"), 5, "a pop-up menu")[0]
        time.sleep(0.2)  # until it is drawn
        width = place.width - 30
        crop = f"{width}x{place.height - 8}+{place.left + 20}+{place.top + 4}"
        pixels = subprocess.run(["import", "-window", "root", "-crop", crop, "-depth", "8", "gray:-"],
                                env=self.environment, check=True, stdout=subprocess.PIPE).stdout
        lines = [pixels[start:start + width] for start in range(0, len(pixels), width)]
        bands = itertools.groupby(lines, lambda line: line.count(line[0]) == width)
        texts = [[*band] for empty, band in bands if not empty]
        return [min(map(min, band)) < 64 for band in texts if len(band) > 4]  # a separator is thinner

    def picture(self, name, crop=None):
        """Saves the screen, or (left, top, width, height) of it, in build/pictures."""
        file = ROOT / "build/pictures" / f"{name}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        area = ["-crop", "%dx%d+%d+%d" % (crop[2], crop[3], crop[0], crop[1]), "+repage"] if crop else []
        subprocess.run(["import", "-window", "root", *area, file], env=self.environment, check=True)
        return file

    # ---- keys and mouse

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.environment, check=True)

    def keys(self, *names, delay=20):
        """Presses keys by their X names, one after another: "ctrl+Tab", "Down", "alt+f"."""
        self.xdotool("key", "--delay", delay, *names)

    def move(self, x, y):
        self.xdotool("mousemove", x, y)

    def click(self, x, y, button=1, times=1):
        self.xdotool("mousemove", x, y, "click", "--repeat", times, "--delay", 60, button)


class Window:
    """The running program."""

    def __init__(self, session, arguments):
        self.session = session
        self.process = subprocess.Popen(["wine", r"C:\Qorvenix\Qorvenix.exe", *arguments], env=session.environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            until(self._is_painted, 60, "the window")
        except BaseException:
            self.process.kill()
            raise
        self.settle()

    def __enter__(self):
        return self

    def __exit__(self, failed, *_):
        if failed:
            self.session.picture("failed")
            self.process.kill()  # it may be busy, and a close that it refuses would hide what has failed
        else:
            self.close()

    def _is_painted(self):
        assert self.process.poll() is None, "the program has ended"
        tree = self.session.peek("tree")
        return tree and tree[0][3] == "1"

    def _ticks(self):
        """Processor time used so far, in hundredths of a second."""
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return int(fields[11]) + int(fields[12])

    def settle(self, quiet=0.15):
        """Waits until the window answers and the program has not used the processor for a moment."""
        end = time.monotonic() + 30
        while time.monotonic() < end:
            assert self.session.peek("wait") is not None, "the window hangs"
            before = self._ticks()
            time.sleep(quiet)
            if self._ticks() == before:
                return
        raise AssertionError("the program does not come to rest")

    def close(self):
        """Closes the window like its title bar does and waits for the program to end."""
        if self.process.poll() is None:
            self.session.peek("close")
        try:
            return self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise AssertionError("the program does not end") from None

    # ---- looking

    def tree(self, face=""):
        """All child windows by name (or by id, handle as a last resort), the main window itself as "frmMain".
        Text sizes are those of the message font, or of the given face."""
        names = {value: name for name, value in CONTROL.items()}
        records = [_record(Control, fields) for fields in self.session.peek("tree", 0, face)]
        tree = {"frmMain": records[0]}
        for each in records[1:]:
            own = each.parent == records[0].handle
            tree[names[each.id] if own and each.id in names else each.handle] = each
        return tree

    def control(self, name):
        return self.tree()[name]

    def focus(self):
        """The name of the control that has the focus; its handle for a part of a control; None."""
        return next((name for name, each in self.tree().items() if each.focus), None)

    def list(self, name):
        headers, widths, edges, selected, *rows = self.session.peek("list", CONTROL[name])
        return Rows(headers, [*map(int, widths)], [*map(int, edges)], int(selected[0]), rows)

    def shown_list(self):
        """The name of the list that is shown; None where the report is."""
        tree = self.tree()
        return next((name for name in LIST_OF_TAB.values() if tree[name].visible), None)

    def tabs(self):
        """The number of the selected tab, counted from 0, and all tabs."""
        selected, *tabs = self.session.peek("tabs")
        return int(selected[0]), [_record(Tab, fields) for fields in tabs]

    def tab(self):
        return self.tabs()[0]

    def status(self):
        return self.session.peek("status")[0][0]

    def text(self, name):
        return self.session.peek("text", CONTROL[name])[0][0]

    def picture(self, name):
        """Saves a picture of the window with its frame in build/pictures."""
        top = next(each for each in self.session.windows() if each.handle == self.tree()["frmMain"].handle)
        return self.session.picture(name, (top.left, top.top, top.width, top.height))

    # ---- acting

    def keys(self, *names, delay=20):
        self.session.keys(*names, delay=delay)
        self.settle()

    def select(self, name, text, column=0):
        """Walks to a row by arrow keys, in the list that has the focus."""
        place = self.list(name).find(text, column)
        assert place >= 0 and self.focus() == name, (text, self.focus())
        self.keys("Home", *["Down"] * place)
        assert self.list(name).selected == place, text

    def choose(self, letter):
        """Opens the pop-up menu of the selected row and chooses an item by its letter."""
        self.session.keys("Menu")
        self.session.menu_items()
        self.keys(letter)

    def point(self, name, x=None, y=None):
        """Where a pixel of a control lies on the screen; its middle without a pixel."""
        tree = self.tree()
        main, control = tree["frmMain"], tree[name]
        return (main.left + control.left + (control.width // 2 if x is None else x),
                main.top + control.top + (control.height // 2 if y is None else y))

    def click(self, name, x=None, y=None, button=1, times=1):
        """A real click on a control."""
        self.session.click(*self.point(name, x, y), button, times)
        self.settle()

    def click_tab(self, place):
        tab = self.tabs()[1][place]
        self.click("tb", (tab.left + tab.right) // 2, (tab.top + tab.bottom) // 2)

    def right_click_row(self, name, place):
        """Presses the right button on a row's name; the row must be in view."""
        left, top, _, bottom = map(int, self.session.peek("row", CONTROL[name], place)[0])
        self.session.click(*self.point(name, left + 20, (top + bottom) // 2), button=3)

    def click_header(self, name, column):
        rows = self.list(name)
        self.click(name, rows.edges[column] + min(rows.widths[column] // 2, 30), 10)
