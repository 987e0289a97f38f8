#!/usr/bin/env python3
"""The window as a user meets it by keys and mouse: tabs by Windows version, keys, focus, menus."""
from driver import LISTS, SETTINGS_KEY, Session, becomes, until

UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample"


def tabs_of_windows_2000(session):
    session.registry(SETTINGS_KEY, "Version", "win2k")
    with session.start("6") as window:
        selected, tabs = window.tabs()
        captions = [tab.caption for tab in tabs]
        assert len(tabs) == 6 and "システムの復元" not in captions and captions[selected] == "システム情報", captions
    session.run("wine", "reg", "delete", SETTINGS_KEY, "/f")


def keys_and_focus(window):
    # Ctrl+Tab and Ctrl+PgDn go round and land in what the tab shows.
    for step in range(1, 8):
        window.keys("ctrl+Next" if step % 2 else "ctrl+Tab")
        becomes(lambda: (window.tab(), window.focus()), (step % 7, [*LISTS, "txtSys"][step % 7]))
    window.keys("ctrl+shift+Tab", "ctrl+Prior")
    becomes(window.tab, 5)
    # A click on a tab leads into its list; the arrow keys keep walking the strip.
    window.click_tab(2)
    becomes(window.focus, "lvStartUp")
    window.keys("shift+Tab")
    becomes(window.focus, "tb")
    window.keys("Right", "Right")
    becomes(lambda: (window.tab(), window.focus()), (4, "tb"))
    window.keys("Tab")
    becomes(window.focus, "ListView2")
    # The Tab key never leaves the window or reaches what is hidden, on any tab.
    for place in range(7):
        window.click_tab(place)
        start, seen = window.focus(), []
        for _ in range(12):
            window.keys("Tab")
            seen.append(window.focus())
            assert window.tree()[seen[-1]].visible, (place, seen)
        assert window.tab() == place and start in seen and "tb" in seen, (place, start, seen)
    # F5 refreshes: a new program is there.
    window.click_tab(0)
    window.session.registry(UNINSTALL + "2", "DisplayName", "二つ目")
    window.session.registry(UNINSTALL + "2", "UninstallString", r"C:\windows\system32\winver.exe")
    window.keys("F5")
    until(lambda: "二つ目" in window.names("ListView1_0"), what="the new program")


def letters(window):
    """No letter ever presses "削除(&D)" or "強制削除(&F)"."""
    window.keys("Home")
    window.click("cmdMenu_0", 3, 3, button=3)  # the focus comes nearer to the buttons
    window.keys("Tab", "d", "f", "D")
    assert not window.session.windows("#32770") and window.names("ListView1_0")


with Session() as session:
    session.registry(UNINSTALL, "DisplayName", "見本")
    session.registry(UNINSTALL, "UninstallString", r"C:\windows\system32\winver.exe")
    tabs_of_windows_2000(session)
    session.settings()
    with session.start() as window:
        for part in keys_and_focus, letters:
            part(window)
            print(part.__name__.replace("_", " "), "are right")
