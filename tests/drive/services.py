#!/usr/bin/env python3
"""A real service driven by keyboard through the menu of the list: the menu offers what the row's cells allow, and after
every action the cells and the service manager agree."""
import re

from driver import TOOLS, Session, becomes

NAME, CAPTION = "QorvenixDriven", "Windows Search"  # a caption that there is advice for
ADVICE = "判断基準：windows searchバーが不要なら「無効」"
LIST = "lvService"
STATE, MODE, SERVICE_NAME = 1, 2, 7
STATES = {"開始": "RUNNING", "停止": "STOPPED"}
MODES = {"自動": 2, "手動": 3, "無効": 4}

# The menu's items by their letters, in order; the refresh, which shares its letter with the pause, as a dash. Then what
# the menu offers, what is chosen of it, and the cells thereafter.
ITEMS = "csoumeald-"
STEPS = [
    ("csad-", "s", "開始", "手動"),
    ("coead-", "a", "開始", "自動"),
    ("coeld-", "e", "開始", "自動"),
    ("coeld-", "d", "開始", "無効"),
    ("coeal-", "o", "停止", "無効"),
    ("coal-", "l", "停止", "手動"),
]


def cells(window):
    row = next(row for row in window.list(LIST).rows if row[SERVICE_NAME] == NAME)
    return tuple(row[STATE:MODE + 1])


def managed(session):
    """State and start type as the service manager has them."""
    query = session.run("wine", "sc", "query", NAME)
    key = session.run("wine", "reg", "query", rf"HKLM\System\CurrentControlSet\Services\{NAME}", "/v", "Start")
    return re.search(r"STATE\s*: \d+\s+(\w+)", query)[1], int(re.search(r"0x(\d)", key)[1])


with Session() as session:
    # It takes a moment to stop, for which a restart has to wait.
    session.run("wine", "sc", "create", NAME, "binPath=", f'"{TOOLS}\\test_service.exe" steps=2 step=300 hint=1000',
                "start=", "demand", "type=", "own", "DisplayName=", CAPTION)
    session.settings(W=13500, H=12000)  # empty space stays below the last row
    with session.start("4") as window:
        window.select(LIST, NAME, SERVICE_NAME)
        for number, (offered, letter, state, mode) in enumerate(STEPS):
            session.keys("Menu")
            enabled = "".join(item for item, on in zip(ITEMS, session.menu_items(), strict=True) if on)
            assert enabled == offered, (letter, enabled)
            window.says(ADVICE)
            window.keys(letter)
            becomes(lambda: (*cells(window), *managed(session)), (state, mode, STATES[state], MODES[mode]))
            if number == 0:  # what the service accepts is read by a refresh only
                window.keys("F5")
                window.select(LIST, NAME, SERVICE_NAME)
        # Behind empty space nothing can be done with a service.
        window.click(LIST, 20, window.tree()[LIST].height - 30, button=3)
        assert session.menu_items() == [item in "c-" for item in ITEMS]
        becomes(lambda: (window.status(), window.text("txtComment")), ("", ""))
        window.keys("Escape")
print("the service was started, set to each mode, restarted and stopped")
