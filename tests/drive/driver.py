"""Drives the real program from outside, as a user does: real keys and a real mouse, the screen, and what another
process can read from its window (tests/helpers/peek.cpp).

    with Session() as session:                  # a copy of the program in the prefix
        with session.start("4") as window:      # the program, opened on its fourth tab
            window.keys("F5")
            until(lambda: window.status().endswith("個の項目"))

Needs what ./test gives to a driver: a display of 1280x1024 pixels, PREFIX, a throw-away prefix with a desktop of that
size, in whose environment this runs, QORVENIX and TOOLS.
"""
import collections
import itertools
import json
import os
import pathlib
import re
import shutil
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
VERSION, HOME_PAGE = re.search(r"project\(Qorvenix VERSION (\S+) HOMEPAGE_URL (\S+)",
                               (ROOT / "CMakeLists.txt").read_text()).groups()
TOOLS = os.environ["TOOLS"]
WINE64 = ROOT / "tools/wine64/wine"  # sees the whole registry, whichever edition is driven
IS_64_BIT = os.environ["QORVENIX"].endswith("64.exe")
SETTINGS_KEY = r"HKCU\Software\Wine\AppDefaults\Qorvenix.exe"
LISTS = "ListView1_0", "ListView1_1", "lvStartUp", "lvService", "ListView2", "lvRestore"  # by tab

# What peek tells of each.
Control = collections.namedtuple("Control", "handle window_class id visible enabled focus left top width height text")
Rows = collections.namedtuple("Rows", "selected rows")


def _controls():
    """The names of the window's controls by their ids, as the product's header has them."""
    header = (ROOT / "src/shell/controls.h").read_text()
    first = int(re.search(r"kFirstControlId = (\d+)", header)[1])
    return dict(enumerate(re.findall(r"\w+", re.search(r"enum class Control \{([^}]*)\}", header)[1]), first))


NAME_OF = _controls()


def until(condition, seconds=20, what="what was waited for"):
    """Waits for a condition and returns its value; fails when it stays false for that long."""
    end = time.monotonic() + seconds
    while not (value := condition()):
        assert time.monotonic() < end, what() if callable(what) else f"{what} did not happen"
        time.sleep(0.03)
    return value


def becomes(read, expected):
    """Waits until what is read is what is expected; keys and clicks take a moment to arrive."""
    seen = []
    until(lambda: seen.append(read()) or seen[-1] == expected, what=lambda: f"{seen[-1]!r} instead of {expected!r}")


class Session:
    """The prefix at a resolution, and its folder C:\\Qorvenix with the program."""

    def __init__(self, dpi=96):
        self.prefix = pathlib.Path(os.environ["PREFIX"])
        self.folder = self.prefix / "drive_c/Qorvenix"
        self.user = next((self.prefix / "drive_c/users").glob("[!P]*"))  # and not Public
        self.environment = dict(os.environ)
        self.dpi = dpi
        self._peek = None

    def __enter__(self):
        self.registry(r"HKCU\Control Panel\Desktop", "LogPixels", self.dpi, "REG_DWORD")
        self.end_wine()
        self.folder.mkdir(exist_ok=True)
        shutil.copy(self.path(os.environ["QORVENIX"]), self.folder / "Qorvenix.exe")
        return self

    def __exit__(self, *_):
        self.end_wine()

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
        return subprocess.run(command, env=self.environment, check=check, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, encoding="utf-8", errors="replace").stdout

    def registry(self, key, value, data, kind="REG_SZ", wine="wine"):
        self.run(wine, "reg", "add", key, "/v", value, "/t", kind, "/d", str(data), "/f")

    def settings(self, **values):
        """Writes setting.ini."""
        lines = "".join(f"{name}={value}\r\n" for name, value in values.items())
        (self.folder / "setting.ini").write_bytes(("[Morlet]\r\n" + lines).encode("cp932"))

    def start(self, *arguments):
        return Window(self, arguments)

    # ---- looking

    def peek(self, *words):
        """The records that peek answers; None when it found nothing to look at."""
        if not self._peek:
            self._peek = subprocess.Popen(["wine", TOOLS + r"\peek.exe"], env=self.environment, text=True,
                                          stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self._peek.stdin.write(" ".join(map(str, words)) + "\n")
        self._peek.stdin.flush()
        return json.loads(self._peek.stdout.readline())

    def windows(self, window_class=None):
        """The visible top-level windows of all programs, the topmost first."""
        found = itertools.starmap(Control, self.peek("windows") or [])
        return [each for each in found if each.visible and window_class in (None, each.window_class)]

    def dialog(self):
        """The controls of the message box or dialog that is open, itself first; waits for it."""
        top = until(lambda: self.windows("#32770"), what="a dialog")[0]
        return [*itertools.starmap(Control, self.peek("tree", top.handle))]

    def ends_when_closed(self, window_class):
        """Waits for a window of another program and closes it; returns its text."""
        top = until(lambda: self.windows(window_class), what=window_class)[0]
        self.peek("close", top.handle)
        until(lambda: not self.windows(window_class), what="its end")
        return top.text

    def menu_items(self):
        """Waits for a pop-up menu and tells of each of its items, separators left out, whether it is enabled. No other
        process can ask a menu: what is read is the black or grey of its texts."""
        place = until(lambda: self.windows("#32768"), what="a pop-up menu")[0]
        width = place.width - 30
        crop = f"{width}x{place.height - 8}+{place.left + 20}+{place.top + 4}"
        pixels, former = b"", None
        while pixels != former:  # until it is drawn
            time.sleep(0.1)
            former, pixels = pixels, subprocess.run(
                ["import", "-window", "root", "-crop", crop, "-depth", "8", "gray:-"], env=self.environment, check=True,
                stdout=subprocess.PIPE).stdout
        lines = [pixels[start:start + width] for start in range(0, len(pixels), width)]
        bands = itertools.groupby(lines, lambda line: line.count(line[0]) == width)
        texts = [[*band] for empty, band in bands if not empty]
        return [min(map(min, band)) < 64 for band in texts if len(band) > 4]  # a separator is thinner

    # ---- keys and mouse

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.environment, check=True)

    def keys(self, *names):
        """Presses keys by their X names, one after another: "ctrl+Tab", "Down", "alt+f"."""
        self.xdotool("key", "--delay", 20, *names)


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
            self.picture("failed")
            self.process.kill()  # it may be busy, and a close that it refuses would hide what has failed
        else:
            self.session.peek("close")
            self.process.wait(20)

    def _is_painted(self):
        assert self.process.poll() is None, "the program has ended"
        return self.session.peek("tree") and self.tree()["frmMain"].visible

    def _run_time(self):
        """Processor time used so far, in seconds."""
        return time.clock_gettime(~self.process.pid << 3 | 2)  # the clock that clock_getcpuclockid(3) tells

    def settle(self):
        """Waits until the window answers and the program has done next to nothing for a moment."""
        def at_rest():
            assert self.session.peek("wait") is not None, "the window hangs"
            before = self._run_time()
            time.sleep(0.15)
            return self._run_time() - before < 0.002
        until(at_rest, 30, "the program's rest")

    # ---- looking

    def tree(self):
        """All child windows by name (by handle for a part of a control), the main window itself as "frmMain"."""
        main, *others = itertools.starmap(Control, self.session.peek("tree"))
        return {"frmMain": main} | {NAME_OF.get(each.id, each.handle): each for each in others}

    def text(self, name):
        return self.tree()[name].text

    def status(self):
        return self.text("st")

    def says(self, status):
        becomes(self.status, status)

    def focus(self):
        """The name of the control that has the focus; its handle for a part of a control; None."""
        return next((name for name, each in self.tree().items() if each.focus), None)

    def list(self, name):
        number = next(number for number, each in NAME_OF.items() if each == name)
        selected, *rows = self.session.peek("list", number)
        return Rows(selected[0], rows)

    def names(self, name):
        return [row[0] for row in self.list(name).rows]

    def shown_list(self):
        """The name of the list that is shown; None where the report is."""
        tree = self.tree()
        return next((name for name in LISTS if tree[name].visible), None)

    def tabs(self):
        """The number of the selected tab, counted from 0, and where all tabs are: left, top, right, bottom."""
        selected, *tabs = self.session.peek("tabs")
        return selected[0], tabs

    def tab(self):
        return self.tabs()[0]

    def picture(self, name):
        """Saves a picture of the window with its frame in build/pictures."""
        main = self.tree()["frmMain"].handle
        top = next(each for each in self.session.windows() if each.handle == main)
        file = ROOT / "build/pictures" / f"{name}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["import", "-window", "root", "-crop", f"{top.width}x{top.height}+{top.left}+{top.top}",
                        "+repage", file], env=self.session.environment, check=True)
        return file

    # ---- acting

    def keys(self, *names):
        self.session.keys(*names)
        self.settle()

    def select(self, name, text, column=0):
        """Walks to the row with that cell by arrow keys, in the list that has the focus."""
        becomes(self.focus, name)
        place = [row[column] for row in self.list(name).rows].index(text)
        self.keys("Home", *["Down"] * place)
        becomes(lambda: self.list(name).selected, place)

    def choose(self, letter):
        """Opens the pop-up menu of the selected row and chooses an item by its letter."""
        self.session.keys("Menu")
        self.session.menu_items()
        self.keys(letter)

    def click(self, name, x, y, button=1):
        """A real click on a pixel of a control."""
        tree = self.tree()
        main, control = tree["frmMain"], tree[name]
        self.session.xdotool("mousemove", main.left + control.left + x, main.top + control.top + y, "click", button)
        self.settle()

    def click_tab(self, place):
        left, top, right, bottom = self.tabs()[1][place]
        self.click("tb", (left + right) // 2, (top + bottom) // 2)
        becomes(self.tab, place)
