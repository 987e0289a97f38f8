#!/usr/bin/env python3
"""A real service driven through the pop-up menu of the list, by the context-menu key and by the right button in turn:
the menu offers what the row's cells allow, and after every action the cells and the service manager agree."""
import os
import pathlib
import re

from driver import Session, until

NAME, CAPTION = "QorvenixDriven", "Windows Search"  # a caption that there is advice for
ADVICE = "判断基準：windows searchバーが不要なら「無効」"
LIST = "lvService"
STATE, MODE, SERVICE_NAME = 1, 2, 7
STATE_OF_CELL = {"開始": "RUNNING", "停止": "STOPPED", "一時停止": "PAUSED"}
MODE_OF_CELL = {"自動": 2, "手動": 3, "無効": 4}

# The menu's items by their letters, in order; the refresh, which shares its letter with the pause, as a dash.
ITEMS = "csoumeald-"

# What the menu offers, what is chosen of it, and the cells thereafter. What the service accepts is read by a refresh
# only: the one behind the first step. Wine knows no paused service, so none follows a pause.
STEPS = [
    ("csad-", "s", "開始", "手動"),
    ("couead-", "u", "一時停止", "手動"),
    ("comead-", "m", "開始", "手動"),
    ("couead-", "e", "開始", "手動"),
    ("couead-", "a", "開始", "自動"),
    ("coueld-", "l", "開始", "手動"),
    ("couead-", "d", "開始", "無効"),
    ("coueal-", "o", "停止", "無効"),
    ("coual-", "l", "停止", "手動"),
    ("csouad-", "s", "開始", "手動"),
    ("couead-", "o", "停止", "手動"),
]


class Service:
    """The test service as the service manager sees it."""

    def __init__(self, session):
        self.session = session
        # It takes a moment to stop, for which a restart has to wait.
        command = '"' + os.environ["TOOLS"] + r'\test_service.exe" pause steps=2 step=300 hint=1000'
        session.run("wine", "sc", "create", NAME, "binPath=", command, "start=", "demand", "type=", "own",
                    "DisplayName=", CAPTION)

    def state(self):
        return re.search(r"STATE\s*: \d+\s+(\w+)", self.session.run("wine", "sc", "query", NAME))[1]

    def mode(self):
        key = "HKLM\\System\\CurrentControlSet\\Services\\" + NAME
        return int(re.search(r"0x(\d)", self.session.run("wine", "reg", "query", key, "/v", "Start"))[1])

    def process(self):
        """This machine's number of its process; None while there is none. Wine's own tools do not tell."""
        prefix = b"WINEPREFIX=" + os.fsencode(os.environ["WINEPREFIX"])
        for entry in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (entry / "comm").read_text() == "test_service.ex\n" and prefix in (entry / "environ").read_bytes():
                    return entry.name
            except OSError:
                pass  # a process that has just ended
        return None


def cells(window):
    rows = window.list(LIST)
    return tuple(rows.rows[rows.find(NAME, SERVICE_NAME)][STATE:MODE + 1])


def step(window, service, by_pointer, offered, letter, state, mode):
    before = service.process()
    if by_pointer:
        window.right_click_row(LIST, window.list(LIST).find(NAME, SERVICE_NAME))
    else:
        window.session.keys("Menu")
    enabled = "".join(item for item, on in zip(ITEMS, window.session.menu_items(), strict=True) if on)
    assert enabled == offered, (letter, enabled)
    assert window.status() == ADVICE
    window.keys(letter)
    if letter == "e":
        until(lambda: service.process() not in (None, before), 20, "a new process of the service")
    until(lambda: cells(window) == (state, mode), 20, f"{letter}: {state}, {mode}")
    until(lambda: service.state() == STATE_OF_CELL[state], 20, f"{letter}: the service manager's {state}")
    assert service.mode() == MODE_OF_CELL[mode], letter


with Session() as session:
    service = Service(session)
    session.settings(**session.size_settings(900, 800))  # empty space stays below the last row
    with session.start("4") as window:
        window.select(LIST, NAME, SERVICE_NAME)
        assert (cells(window), window.status()) == (("停止", "手動"), ADVICE)
        window.picture("services-row")
        for x in 40, 41:
            session.move(*window.point(LIST, x, 30))
        until(lambda: session.windows("tooltips_class32"), 5, "the tip of a cell")
        session.keys("Menu")
        session.menu_items()
        assert not session.windows("tooltips_class32"), "a tip lies over the menu"
        window.picture("services-menu")
        window.keys("Escape")
        for number, each in enumerate(STEPS):
            step(window, service, number % 2 == 1, *each)
            if number == 0:
                window.keys("F5")
                window.select(LIST, NAME, SERVICE_NAME)
        # Behind empty space nothing can be done with a service.
        window.session.click(*window.point(LIST, 20, window.control(LIST).height - 30), button=3)
        assert session.menu_items() == [item in "c-" for item in ITEMS]
        assert window.status() == "" and window.text("txtComment") == ""
        window.keys("Escape")
        print("the service was started, paused, resumed, restarted, stopped and set to each mode")
