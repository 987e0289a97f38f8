#!/usr/bin/env python3
"""long_run.py [--entries N] [SWITCHES]   The program in use for a long time, and how long it lets a message wait.

SWITCHES tab switches and refreshes (200) by a real mouse and real keys in one process, with menus opened and cancelled,
lists sorted, rows chosen and the window's border dragged in between; N installed programs (30). Fails when the program
holds more at the end than after its first rounds. All the time another process sends it messages; the table tells the
longest time that one has waited during each kind of action. Times are printed and never judged.
"""
import argparse
import collections
import os
import statistics
import subprocess
import time

from driver import CONTROL, Session, until

UNINSTALL = r"HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall"
RUN = r"HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run"
CAPTIONS = ("programs", "updates", "startup", "services", "control panel", "restore points", "report")
SERVICES, RESTORE, REPORT = 3, 5, 6
REFRESHES = {0: 3, 1: 3, 2: 3, SERVICES: 1}  # after a click on a tab
MENU_LETTERS = "fvdrh"
WARM_UP = 2  # rounds until everything that is made once has been made
SPARE_KILOBYTES = 96
KILOBYTES_A_DRAG = 4  # where a bare edit control that wraps its lines anew leaks too, as Wine's does: the report's box

# How and where to, the restore points left out; what else a user does comes after some rounds of them.
STEPS = ([("click", place) for place in (1, 2, 3, 4, 6, 0)] +
         [("ctrl+Tab", place) for place in (1, 2, 3, 4)] +
         [("ctrl+shift+Tab", place) for place in (3, 2, 1, 0, 6)] +
         [("ctrl+Tab", 0)] + [("wheel down", place) for place in (1, 2, 3, 4)] +
         [("wheel up", place) for place in (3, 2, 1, 0)])

Counts = collections.namedtuple("Counts", "handles gdi user kilobytes")


def sample(entries):
    """A registry file with that many installed programs, every tenth an update, and some startup items."""
    lines = []
    for number in range(entries):
        update, publisher = ("の更新 (KB123456)", "Microsoft") if number % 10 == 9 else ("", f"発行元 {number % 17}")
        lines.append(f'[{UNINSTALL}\\Sample{number:05}]\n"DisplayName"="見本 {number * 7919 % entries:05}{update}"\n'
                     f'"Publisher"="{publisher}"\n"EstimatedSize"=dword:{number * 977 % 500000:08x}\n'
                     '"InstallDate"="20090401"\n"InstallLocation"="C:\\\\Program Files\\\\Sample"\n'
                     '"UninstallString"="C:\\\\windows\\\\system32\\\\winver.exe"\n\n')
    lines.append(f"[{RUN}]\n" + "".join(f'"見本 {number}"="C:\\\\windows\\\\system32\\\\winver.exe /{number}"\n'
                                        for number in range(20)))
    return "".join(lines)


class Helper:
    """A program that answers each line with one line."""

    def __init__(self, session, *command):
        self.process = subprocess.Popen(command, env=session.environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def ask(self, line):
        self.process.stdin.write((line + "\n").encode())
        self.process.stdin.flush()
        return self.process.stdout.readline().decode()

    def end(self):
        self.process.stdin.close()
        self.process.wait()


class LongRun:
    def __init__(self, session, window):
        self.session, self.window = session, window
        self.tabs = window.tabs()[1]
        self.tree = window.tree()
        self.hand = Helper(session, "stdbuf", "-oL", "xdotool", "-")
        self.watch = Helper(session, "wine", os.environ["TOOLS"] + r"\watch.exe", str(window.process.pid))
        self.waits = collections.defaultdict(list)
        self.shown = {}  # the count in the status bar, or the report, by tab
        self.done = 0  # switches and refreshes

    def input(self, words):
        """Mouse and keys by one process that lives as long as this run; returns when they are sent."""
        assert self.hand.ask(words + " getdisplaygeometry")

    def number(self, question):
        return [float(each) for each in self.watch.ask(question).split()]

    def counts(self):
        self.window.settle()
        return Counts(*map(int, self.number("counts")))

    def lap(self, kind):
        """Ends an action: what waited until now waited because of it."""
        assert self.session.peek("wait") is not None, "the window hangs"
        self.waits[kind].append(self.number("waits"))

    def settled(self, condition, what):
        end = time.monotonic() + 60
        while not condition():
            assert time.monotonic() < end, f"{what} did not happen"
            time.sleep(0.002)

    # ---- switches and refreshes

    def mark(self, name):
        self.session.peek("type", self.tree[name].handle, "?")

    def written(self, name, expected=None):
        text = self.window.text(name)
        return text != "?" and expected in (None, text)

    def pointer_over(self, place):
        tab, main, strip = self.tabs[place], self.tree["frmMain"], self.tree["tb"]
        self.mark("st")
        self.input(f"mousemove {main.left + strip.left + (tab.left + tab.right) // 2} "
                   f"{main.top + strip.top + (tab.top + tab.bottom) // 2}")
        self.settled(lambda: self.written("st"), "the hint of a tab")

    def pointer_over_list(self):
        """From the tab strip, which tells so a while later; a hint leaves the status bar then."""
        self.mark("st")
        self.input("mousemove %d %d" % self.window.point("ListView1_0"))
        self.settled(lambda: self.written("st"), "the end of a hint")

    def fill(self, kind, place, words):
        """An input that fills the view of a tab: every fill writes its count, or the report."""
        target = "txtSys" if place == REPORT else "st"
        self.mark(target)
        self.input(words)
        self.settled(lambda: self.written(target, self.shown.get(place)), f"{kind} of {CAPTIONS[place]}")
        self.lap(f"{kind}: {CAPTIONS[place]}")
        if place not in self.shown:
            shown = self.window.text(target)
            assert self.window.tab() == place and (place == REPORT or shown.endswith(" 個の項目")), (place, shown)
            assert shown not in self.shown.values(), "every tab needs a count of its own"
            self.shown[place] = shown
        self.done += 1

    def switch(self, how, place):
        if how == "click":
            self.pointer_over(place)
        words = {"click": "click 1", "wheel down": "click 5", "wheel up": "click 4"}.get(how, f"key --delay 0 {how}")
        self.fill("switch", place, words)
        for _ in range(REFRESHES.get(place, 0) if how == "click" else 0):
            self.fill("refresh", place, "key --delay 0 F5")

    # ---- what else a user does

    def menu(self, keys, kind):
        self.input(f"key {keys}")
        self.settled(lambda: self.session.windows("#32768"), kind)
        self.input("key Down key Down key Escape key Escape")
        self.settled(lambda: not self.session.windows("#32768"), f"the end of {kind}")
        self.lap(kind)

    def bar_menus(self):
        for letter in MENU_LETTERS:
            self.menu(f"alt+{letter}", f"menu: {letter}")

    def rows(self, place):
        self.input("key Home key Down key Down key End key Home")
        self.lap(f"rows chosen: {CAPTIONS[place]}")
        self.menu("Menu", f"pop-up menu: {CAPTIONS[place]}")

    def sort(self):
        x, y = self.window.point("ListView1_0", 30, 10)
        self.input(f"mousemove {x} {y} click 1")
        self.lap("sort: programs")

    def drag_border(self):
        """Inwards and to where the corner was at first, if the drag began before the pointer went on."""
        first, main = self.tree["frmMain"], self.window.tree()["frmMain"]
        self.input(f"mousemove {main.left + main.width + 1} {main.top + main.height + 1} mousedown 1 sleep 0.05")
        right, bottom = first.left + first.width + 1, first.top + first.height + 1
        widths = set()
        for away in (40, 80, 120, 160, 200, 150, 100, 50, 0):
            self.input(f"mousemove {right - away} {bottom - away // 2}")
            self.session.peek("wait")
            widths.add(int(self.session.peek("tree")[0][8]))
        self.input("mouseup 1")
        self.lap("border dragged")
        assert len(widths) > 3, widths

    def round(self):
        for how, place in STEPS + STEPS:
            if how == "wheel down" and place == 1:
                self.pointer_over_list()
            self.switch(how, place)
            if how == "click" and place in (0, 2, SERVICES):
                self.rows(place)
        assert self.window.tab() == 0
        self.bar_menus()
        self.sort()
        self.drag_border()

    # ---- the proof

    def hold_on_to_nothing(self, switches):
        print("switches  handles  GDI objects  USER objects  private KB")
        rounds = 0
        while self.done < switches or rounds <= WARM_UP:
            self.round()
            rounds += 1
            if rounds == WARM_UP:
                before = self.counts()
            if rounds % 10 == 0 or rounds <= WARM_UP:
                print("%8d %8d %12d %13d %11d" % (self.done, *self.counts()), flush=True)
        after = self.counts()
        print("%8d %8d %12d %13d %11d" % (self.done, *after))
        assert before.user > 0 and after[:3] == before[:3], (before, after)
        bare = self.number("wrap 100")[0]
        print(f"a bare edit control that wraps its lines 100 times: {bare:.0f} KB more")
        spare = SPARE_KILOBYTES + (KILOBYTES_A_DRAG * (rounds - WARM_UP) if bare > 100 else 0)
        assert after.kilobytes <= before.kilobytes + spare, (before, after)

    def hold_on_to_what_wine_does(self, times):
        """Binding a WMI moniker leaks handles in Wine itself, whoever does it; the restore points add none to them."""
        while self.window.tab() != RESTORE:
            self.window.keys("ctrl+Tab")
        before = self.counts()
        for _ in range(times):
            self.fill("refresh", RESTORE, "key --delay 0 F5")
            self.fill("switch", RESTORE - 1, "key ctrl+shift+Tab")
            self.fill("switch", RESTORE, "key ctrl+Tab")
        after = self.counts()
        bare = int(self.number(f"bind {2 * times}")[0])
        print(f"{2 * times} fills of the restore points: {after.handles - before.handles} handles more, "
              f"{2 * times} bare bindings {bare}; GDI {before.gdi} -> {after.gdi}, USER {before.user} -> {after.user}, "
              f"private KB {before.kilobytes} -> {after.kilobytes}")
        assert after.handles - before.handles == bare and after[1:3] == before[1:3], (before, after, bare)

    def print_waits(self):
        print("\nmilliseconds a message waited            times  median  longest  with the queue for a processor")
        for kind, waits in sorted(self.waits.items()):
            own, everything, _ = zip(*waits)
            print(f"{kind:40} {len(waits):5} {statistics.median(own):7.1f} {max(own):8.1f} {max(everything):8.1f}")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("switches", nargs="?", type=int, default=200)
    parser.add_argument("--entries", type=int, default=30)
    options = parser.parse_args()
    with Session() as session:
        session.import_registry(sample(options.entries))
        session.settings(**session.size_settings(900, 600, 100, 60))
        with session.start() as window:
            run = LongRun(session, window)
            try:
                run.hold_on_to_nothing(options.switches)
                run.hold_on_to_what_wine_does(max(5, options.switches // 100))
            finally:
                run.print_waits()
                run.hand.end()
            run.watch.end()


if __name__ == "__main__":
    main()
