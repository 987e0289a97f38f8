#!/usr/bin/env python3
"""The window as a user meets it: tabs by Windows version, keys, focus, dragged borders, resolutions."""
from driver import CONTROL, LIST_OF_TAB, Session, until

MENU_LETTERS = "fvdrh"


def tabs_by_version(session):
    for version, count in (("win2k", 6), ("winxp", 7), ("vista", 7), (None, 7)):
        session.set_version(version)
        with session.start("6") as window:
            selected, tabs = window.tabs()
            captions = [tab.caption for tab in tabs]
            assert len(tabs) == count and "プロセス" not in captions, captions
            assert captions[selected] == ("システム情報" if version == "win2k" else "システムの復元"), version


def keys_and_focus(window):
    # Ctrl+Tab and Ctrl+PgDn go round and land in what the tab shows.
    for step in range(1, 8):
        window.keys("ctrl+Next" if step % 2 else "ctrl+Tab")
        assert window.tab() == step % 7
        assert window.focus() == (window.shown_list() or "txtSys"), window.focus()
    window.keys("ctrl+shift+Tab", "ctrl+Prior")
    assert window.tab() == 5
    # A click on a tab leads into its list; the arrow keys keep walking the strip.
    window.click_tab(2)
    assert (window.tab(), window.focus()) == (2, "lvStartUp")
    window.keys("shift+Tab")
    assert window.focus() == "tb", window.focus()
    window.keys("Right", "Right")
    assert (window.tab(), window.focus()) == (4, "tb")
    window.keys("Tab")
    assert window.focus() == "ListView2"
    # The Tab key never leaves the window or reaches what is hidden, on any tab.
    for place in range(7):
        window.click_tab(place)
        assert window.tab() == place
        start, seen = window.focus(), []
        for _ in range(12):
            window.keys("Tab")
            tree = window.tree()
            name = next((name for name, each in tree.items() if each.focus), None)
            assert name is not None and tree[name].visible, (place, name)
            seen.append(name)
        assert start in seen and "tb" in seen, (place, start, seen)
    # F5 refreshes, on the tabs where the File menu does.
    window.click_tab(0)
    window.session.peek("type", window.control("st").handle, "x")
    window.keys("F5")
    assert window.status().endswith(" 個の項目"), window.status()


def letters(window):
    """Menus open by Alt and their letter; no letter ever presses "削除(&D)" or "強制削除(&F)"."""
    window.click_tab(0)
    window.keys("Home")
    assert window.list("ListView1_0").selected == 0
    for letter in MENU_LETTERS:
        window.session.keys(f"alt+{letter}")
        until(lambda: window.session.windows("#32768"), 5, f"the menu of {letter}")
        window.keys("Escape", "Escape")
    window.click("cmdMenu_0", 3, 3, button=3)  # the focus comes nearer to the buttons
    window.keys("Tab", "d", "f", "D")
    assert not window.session.windows("#32770")
    assert window.list("ListView1_0").rows, "the program is gone"


def dragged_border(window):
    tree = window.tree()
    right, bottom = tree["frmMain"].left + tree["frmMain"].width, tree["frmMain"].top + tree["frmMain"].height
    session = window.session
    session.xdotool("mousemove", right + 1, bottom + 1, "mousedown", 1)
    for step in range(100):
        away = 200 - abs(step * 4 - 200)
        session.xdotool("mousemove", right + away, bottom - away, "sleep", "0.04")
    session.xdotool("mousemove", right + 120, bottom + 90, "mouseup", 1)
    window.settle()
    after = window.tree()
    assert abs(after["frmMain"].width - tree["frmMain"].width - 120) < 8, after["frmMain"]
    assert after["st"].bottom == after["frmMain"].height and after["tb"].width == after["frmMain"].width
    check_layout(window)


def check_layout(window):
    tree = window.tree()
    main = tree.pop("frmMain")
    shown = {name: each for name, each in tree.items()
             if name in CONTROL and each.visible and each.width and each.height}
    for name, each in shown.items():
        assert each.left >= 0 and each.top >= 0 and each.right <= main.width and each.bottom <= main.height, (name, each)
        # Values may be shortened, captions and buttons never.
        fixed = each.window_class == "Button" or (each.window_class == "Static" and not name.startswith("lblMem_"))
        if fixed and each.text:
            assert each.text_width <= each.width and each.text_height <= each.height, (name, each)
        for other, one in shown.items():
            assert other == name or not each.overlaps(one), (name, other, each, one)
    for tab in window.tabs()[1]:
        assert tab.left >= 0 and tab.right <= main.width and tab.text_width <= tab.right - tab.left, tab


def resolutions(session):
    for dpi, font in ((96, ""), (120, ""), (144, ""), (192, ""), (96, "IPAGothic")):
        session.set_dpi(dpi)
        session.settings(**session.size_settings(480 * dpi // 96, 320 * dpi // 96), Font=font, Stripe=-1)
        with session.start() as window:
            for place in range(7):
                window.click_tab(place)
                assert window.tab() == place
                check_layout(window)
                window.picture(f"small-{dpi}{font}-{place + 1}")
    session.set_dpi(96)


with Session() as session:
    session.registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample", "DisplayName", "見本")
    session.registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample", "UninstallString",
                     r"C:\windows\system32\winver.exe")
    tabs_by_version(session)
    print("tabs are right by version")
    session.settings()
    with session.start() as window:
        keys_and_focus(window)
        letters(window)
        print("keys and focus are right")
        dragged_border(window)
        print("a dragged border leaves everything in its place")
    resolutions(session)
    print("no control is cut off or covered at", len(LIST_OF_TAB) + 1, "tabs and 5 settings")
