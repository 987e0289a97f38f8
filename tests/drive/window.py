#!/usr/bin/env python3
"""The window by real keys and a real mouse: tabs by Windows version, focus, the items of the menu bar and of the pop-up
menus with what they do."""
import os
import pathlib
import time

from driver import HOME_PAGE, LISTS, SETTINGS_KEY, TOOLS, VERSION, Session, becomes, until

PROGRAM = '見本 "引用" & 20,5'
UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample"
SEND_TO = r"HKCR\AllFilesystemObjects\shellex\ContextMenuHandlers\Send To"
SERVICE = "QorvenixDriven"
home = pathlib.Path(os.environ["HOME"])
opened = home / "opened"


def tabs_by_windows_version(session):
    for version, count in ("win2k", 6), ("winxp", 7):
        session.registry(SETTINGS_KEY, "Version", version)
        with session.start("6") as window:
            selected, tabs = window.tabs()
            assert (len(tabs), selected) == (count, 5) and window.tree()["txtSys"].visible == (count == 6)
    session.run("wine", "reg", "delete", SETTINGS_KEY, "/f")


def keys_and_focus(window):
    # Ctrl+Tab and Ctrl+PgDn go round and land in what the tab shows.
    for step in range(1, 8):
        window.keys("ctrl+Next" if step % 2 else "ctrl+Tab")
        becomes(lambda: (window.tab(), window.focus()), (step % 7, [*LISTS, "txtSys"][step % 7]))
    window.keys("ctrl+shift+Tab", "ctrl+Prior")
    becomes(window.tab, 5)
    # A click on a tab leads into its list; the arrow keys keep walking the strip, from which Ctrl+Tab leads away.
    window.click_tab(1)
    becomes(window.focus, "ListView1_1")
    window.keys("shift+Tab")
    becomes(window.focus, "tb")
    window.keys("Right", "Right")
    becomes(lambda: (window.tab(), window.focus()), (3, "tb"))
    window.keys("ctrl+Tab")
    becomes(lambda: (window.tab(), window.focus()), (4, "ListView2"))
    # The Tab key never leaves the window or reaches what is hidden, on any kind of tab.
    for place in 0, 3, 4, 5, 6:
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


def hint_and_tip(window):
    """A tab's hint is there for as long as the pointer is over it, and a cell's tip, but none over a menu."""
    session, count = window.session, window.status()
    main, rows = (window.tree()[name] for name in ("frmMain", "lvService"))
    left, top, *_ = window.tabs()[1][4]
    session.xdotool("mousemove", main.left + left + 9, main.top + top + 9)
    until(lambda: window.status() != count, what="the hint")

    def tip_at(x):
        session.xdotool("mousemove", main.left + rows.left + x, main.top + rows.top + 30)
        time.sleep(1)  # it comes when the pointer rests
        return session.windows("tooltips_class32")
    assert any(map(tip_at, range(40, 60))), "no tip"
    window.says(count)
    session.xdotool("click", 3)
    session.menu_items()
    assert not session.windows("tooltips_class32")
    window.keys("Escape")


def letters(window):
    """No letter ever presses "削除(&D)" or "強制削除(&F)"."""
    window.keys("Home")
    window.click("cmdMenu_0", 3, 3, button=3)  # the focus comes nearer to the buttons
    window.keys("Tab", "d", "f", "D")
    assert not window.session.windows("#32770") and window.names("ListView1_0")


def record_addresses(session):
    """From now on xdg-open only writes down what it is asked to open."""
    script = home / "bin/xdg-open"
    script.parent.mkdir(exist_ok=True)
    script.write_text(f'#!/bin/sh\necho "$@" >>"{opened}"\n')
    script.chmod(0o755)
    session.environment["PATH"] = f"{script.parent}:{os.environ['PATH']}"


def popup_menus(window):
    session = window.session
    window.click_tab(0)
    window.select("ListView1_0", PROGRAM)
    window.keys("ctrl+c")
    window.click_tab(6)
    window.click("txtMemPath", 5, 5)
    window.keys("ctrl+a", "ctrl+v")
    becomes(lambda: window.text("txtMemPath"), PROGRAM)
    for tab, name, row, window_class in ((0, "ListView1_0", PROGRAM, "ExplorerWClass"),
                                         (2, "lvStartUp", "見本", "RegEdit_RegEdit"),
                                         (2, "lvStartUp", "startup.txt", "ExplorerWClass")):
        window.click_tab(tab)
        window.select(name, row)
        window.choose("o")
        session.ends_when_closed(window_class)
    window.select("lvStartUp", "startup.txt")
    before = len(session.windows())
    window.choose("p")  # Wine has no property sheets; what must not happen is that the file opens
    assert len(session.windows()) == before


def service_menu(window):
    """It offers what the row's cells allow; behind empty space nothing can be done with a service."""
    session = window.session
    cells = lambda: next(row for row in window.list("lvService").rows if row[7] == SERVICE)[1:3]  # noqa: E731
    offers = lambda letters: [letter in letters for letter in "csoumeald-"]  # noqa: E731
    window.click_tab(3)
    hint_and_tip(window)
    for offered, letter, now in (("csad-", "s", ["開始", "手動"]), ("coeal-", "o", ["停止", "無効"])):
        window.select("lvService", SERVICE, 7)
        session.keys("Menu")
        assert session.menu_items() == offers(offered)
        window.says("判断基準：windows searchバーが不要なら「無効」")
        window.keys(letter)
        becomes(cells, now)
        window.choose("d")
        becomes(cells, [now[0], "無効"])
        window.keys("F5")  # what the service accepts is read by a refresh only
    window.click("lvService", 20, window.tree()["lvService"].height - 30, button=3)
    assert session.menu_items() == offers("c-")
    becomes(lambda: (window.status(), window.text("txtComment")), ("", ""))
    window.keys("Escape")


def file_and_view_menu(window):
    session = window.session
    window.click_tab(2)
    session.keys("alt+f", "s")
    session.dialog()
    session.xdotool("type", "--delay", 20, r"C:\list.csv")
    session.keys("Return")
    window.says("保存が完了しました")
    lines = session.path(r"C:\list.csv").read_bytes().decode("cp932").split("\r\n")
    assert lines[0].startswith("名前,") and lines[1].startswith('"startup.txt",'), lines
    window.click_tab(6)
    before = window.status()
    session.keys("alt+f", "s", "Escape", "Escape")
    window.settle()
    assert window.status() == before and not session.windows("#32770"), "the report shows no list to save"
    window.click_tab(0)
    window.keys("alt+f", "u")
    window.says("2 個の項目")
    for letter in "isc":
        window.keys("alt+v", letter)


def delete_menu(window):
    left_over = window.session.user / "Temp/sub/left over.tmp"
    left_over.parent.mkdir()
    left_over.write_text("x")
    for letter in "tricu":
        window.keys("alt+f", "u")
        window.says("2 個の項目")
        window.keys("alt+d", letter)
        window.says("削除完了")
    assert not left_over.parent.exists()


def registry_menu(window):
    session = window.session
    exists = lambda key: "HKEY_" in session.run("wine", "reg", "query", key, check=False)  # noqa: E731
    session.registry(SEND_TO, "x", "x")
    for status, there in ("削除完了", False), ("復元完了", True):
        window.keys("alt+r", "Return")
        becomes(lambda: (window.status(), exists(SEND_TO)), (status, there))


def help_menu(window):
    session = window.session
    (session.folder / "ReadMe.txt").write_bytes("説明".encode("cp932"))
    (session.folder / "Update.exe").write_bytes(session.path(r"C:\windows\system32\notepad.exe").read_bytes())
    for letter, text in ("r", "ReadMe"), ("u", ""):
        session.keys("alt+h", letter)
        assert text in session.ends_when_closed("Notepad")
    window.keys("alt+h", "h")
    until(opened.exists, 20, "the browser")
    assert opened.read_text().strip() == HOME_PAGE, opened.read_text()
    session.keys("alt+h", "v")
    assert f"Qorvenix Ver{VERSION}\r\nQorvenix contributors" in [each.text for each in session.dialog()]
    window.keys("Return")


with Session() as session:
    record_addresses(session)
    for name, data in (("DisplayName", PROGRAM), ("InstallLocation", r"C:\windows"), ("UninstallString", "C:\\none.exe")):
        session.registry(UNINSTALL, name, data)
    session.registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Run", "見本", r"C:\none.exe")
    startup = session.user / "AppData/Roaming/Microsoft/Windows/Start Menu/Programs/StartUp"
    (startup / "startup.txt").write_text("x")
    session.registry(r"HKCR\.txt", "", "txtfile")  # Wine forgets it
    session.run("wine", "sc", "create", SERVICE, "binPath=", TOOLS + r"\test_service.exe", "start=", "demand", "type=",
                "own", "DisplayName=", "Windows Search")  # there is advice for that name
    tabs_by_windows_version(session)
    session.settings(W=13500, H=12000)  # empty space stays below the last service
    window = session.start()
    for part in (keys_and_focus, letters, popup_menus, service_menu, file_and_view_menu, delete_menu,
                 registry_menu, help_menu):
        part(window)
        print(part.__name__.replace("_", " "), "is right")
    session.keys("alt+f", "x")
    assert window.process.wait(20) == 0
    stored = (session.folder / "setting.ini").read_text("cp932")
    assert all(f"\n{name}=-1" in stored for name in ("Icon", "Stripe", "SysCom")), stored
