#!/usr/bin/env python3
"""Programs and start-up items by keyboard alone: real uninstallers run, are waited for and are gone from the list; the
window meanwhile; forced uninstall; deletion of a start-up item; copies of what is deleted. Programs stand in both halves
of the registry, of which the 32-bit edition knows only its own."""
import os
import time

from driver import IS_64_BIT, WINE64, Session, until

CURRENT = r"Microsoft\Windows\CurrentVersion"
# As 64-bit programs see them; the sample installers are 32-bit ones.
OF_64, OF_32, USER = rf"HKLM\SOFTWARE\{CURRENT}", rf"HKLM\SOFTWARE\Wow6432Node\{CURRENT}", rf"HKCU\SOFTWARE\{CURRENT}"
OWN, OTHER = (OF_64, OF_32) if IS_64_BIT else (OF_32, OF_64)
MSI = "{5D6C0E1A-7B1B-4F0B-9E57-2B6F3C1D0A11}"
TOOLS = os.environ["TOOLS"]
WAITING = TOOLS + r"\recorder_gui.exe --wait 60000"  # notes each start of itself in C:\record.txt
PROGRAMS, UPDATES, STARTUP = "ListView1_0", "ListView1_1", "lvStartUp"

# Place, key and shown name of entries that bring nothing to uninstall.
ENTRIES = [(OWN, "Slow", "時間のかかる削除"), (OWN, "Machine", "全ユーザーの見本"), (OTHER, "Machine", "もう一方の見本"),
           (USER, "PerUser", "個別ユーザーの見本"), (OWN, "KB123456", "見本の更新 (KB123456)")]
FURTHER_VALUES = [  # key, value name, data
    (rf"{OWN}\Uninstall\Slow", "UninstallString", WAITING),
    (rf"{OWN}\Uninstall\KB123456", "Publisher", "Microsoft Corporation"),
    (rf"{OWN}\Uninstall\KB123456", "HelpLink", "http://support.example.jp"),
    (rf"{OWN}\Run", "起動時の見本", r"C:\windows\notepad.exe"),
    (rf"{OTHER}\Run", "起動時の見本", "nothing.exe"),
    (rf"{USER}\Run", "残る見本", r"C:\windows\notepad.exe"),
    # The command that Windows stores asks what to do with the program.
    (rf"{OF_32}\Uninstall\{MSI}", "UninstallString", f"MsiExec.exe /X{MSI} /qn")]


def question(session, text, key):
    """Answers the open question, which must have that text, by a key."""
    box, *controls = session.dialog()
    assert box.text == "Qorvenix", box
    assert text in [each.text for each in controls], controls
    assert {each.id for each in controls if each.window_class == "Button"} == {1, 2}, controls
    session.keys(key)
    until(lambda: not session.windows("#32770"), 5, "the end of the question")


def names(window, name=PROGRAMS):
    return [row[0] for row in window.list(name).rows]


def installed_rows(window):
    """What the two sample installers have registered, as the list tells it."""
    rows = {row[6]: row for row in window.list(PROGRAMS).rows}
    assert [row[0] for row in window.list(PROGRAMS).rows if row[6] in ("Machine", "PerUser")] == (
        ["全ユーザーの見本"] + ["もう一方の見本"] * IS_64_BIT + ["個別ユーザーの見本"])
    folder = rows["SampleNotes"][4]
    assert rows["SampleNotes"] == ["小さなメモ帳", "見本工房", "1.50MB", "20100401", folder,
                                   rf'"{folder}\uninstall.exe" /S _?={folder}', "SampleNotes", "00001.50"]
    name, publisher, _, date, folder, *_ = rows[MSI]  # Wine and Windows differ in the size
    assert (name, publisher, date, folder) == ("Sample Dictionary", "Sample Works", time.strftime("%Y%m%d"),
                                               "C:\\Program Files\\SampleDictionary\\"), rows[MSI]


def uninstall(window, row, act):
    """The row goes when its own uninstaller has ended, and the count is right again."""
    count = len(names(window))
    window.select(PROGRAMS, row)
    assert window.status() == row
    act()
    until(lambda: row not in names(window), 30, "the end of " + row)
    until(lambda: window.status() == f"{count - 1} 個の項目", 5, "the new count")
    assert len(names(window)) == count - 1
    assert buttons(window) == [True, True]


def started(session):
    """Every start of the waiting uninstaller: its path, its show command, its command line."""
    record = session.path(r"C:\record.txt")
    return [line.split("\t") for line in record.read_bytes().decode("utf-16-le").splitlines()] if record.exists() else []


def buttons(window):
    return [window.control(name).enabled for name in ("cmdMenu_0", "cmdMenu_1")]


def while_one_runs(window):
    session = window.session
    window.select(PROGRAMS, "時間のかかる削除")
    while window.focus() != "cmdMenu_0":
        window.keys("Tab")
    window.keys("space")
    until(lambda: started(session), 10, "the start of the uninstaller")
    assert started(session)[0][1:] == ["2", WAITING], started(session)  # minimised, with the focus
    assert window.status() == "アンインストーラの実行中です...", window.status()
    assert window.focus() == PROGRAMS and buttons(window) == [False, False]
    # Nothing starts a second one; copying, the folder and the refresh stay.
    session.keys("Menu")
    assert session.menu_items() == [True, False, False, True, True]
    window.picture("programs-busy")
    window.keys("d")
    window.keys("Escape", "Delete")
    assert len(started(session)) == 1 and not session.windows("#32770")
    # The window does not close, and the other tabs work.
    session.peek("close")
    window.settle()
    assert window.process.poll() is None and window.control("frmMain").visible
    assert window.status() == "アンインストールが終わるまで、Qorvenixは終了できません", window.status()
    window.keys("ctrl+Tab")
    assert window.tab() == 1 and buttons(window) == [False, False]
    window.keys("ctrl+Tab")
    assert window.shown_list() == STARTUP and buttons(window) == [True, True]
    window.select(STARTUP, "残る見本")
    shown = window.status()
    session.run("wine", "taskkill", "/f", "/im", "recorder_gui.exe")
    window.settle()
    # The wait's end leaves the other tab alone.
    assert (window.shown_list(), window.status()) == (STARTUP, shown)
    window.keys("ctrl+shift+Tab", "ctrl+shift+Tab")
    until(lambda: buttons(window) == [True, True], 5, "usable buttons")


def stored(window, path):
    return window.session.run(WINE64, "reg", "query", path, check=False)


def forced(window, row, place, name, key, stays):
    text = (f"「{row}」を強制アンインストールしますか？\r\n※注意：本機能はレジストリの削除のみを行い、\r\n"
            "　　　　一覧からプログラム名を削除する機能です")
    window.select(PROGRAMS, row)
    window.choose("f")
    window.session.dialog()
    window.session.picture("programs-question")
    question(window.session, text, key)
    window.settle()
    assert (row in names(window)) == stays, (row, key)
    assert ("UninstallString" in stored(window, rf"{place}\Uninstall\{name}")) == stays, (row, key)
    assert window.status() == (row if key == "Escape" else f"{len(names(window))} 個の項目")


def delete_startup_item(window, index, keys, status):
    window.keys("ctrl+Tab", "ctrl+Tab")
    before = startup_rows(window)
    text = f"「{before[index][0]}」を削除します。\r\nよろしいですか？"
    for key in keys:
        window.keys("Home", *["Down"] * index)
        window.keys("Delete")
        question(window.session, text, key)
        window.settle()
        if key == "Return":
            del before[index]
        assert startup_rows(window) == before
    assert window.status() == (status or f"{len(before)} 個の項目")


def startup_rows(window):
    return [row[:3] for row in window.list(STARTUP).rows]


def check_startup_rows(window):
    """What the machine starts comes first, then the other half's, then the user's."""
    window.keys("ctrl+Tab", "ctrl+Tab")
    machine, other = (rf"(全ユーザー)SOFTWARE\{node}{CURRENT}\Run" for node in ("", "Wow6432Node\\"))
    rows = startup_rows(window)
    assert rows == [["起動時の見本", r"C:\windows\notepad.exe", machine],
                    *[["起動時の見本", "nothing.exe", other]] * IS_64_BIT,
                    ["残る見本", r"C:\windows\notepad.exe", machine.replace("全", "個別", 1)]], rows
    window.keys("ctrl+shift+Tab", "ctrl+shift+Tab")


def copies(session):
    """The names of the copies beside the program, without date and time."""
    return [file.name.split(" ", 1)[1] for file in (session.folder / "backup").iterdir()]


def forbid_copies(session):
    """Files stand where the two folders would be."""
    (session.folder / "backup").rename(session.folder / "kept")
    (session.folder / "backup").touch()
    next((session.prefix / "drive_c/users").glob("*/AppData/Roaming")).joinpath("Qorvenix").touch()


def pictures(window):
    for name, list_name, row, items in (
            ("programs", PROGRAMS, "小さなメモ帳", [True] * 5),
            ("updates", UPDATES, "見本の更新 (KB123456)", [True] * 5),
            ("startup", STARTUP, "起動時の見本", [True, True, True, False, True])):
        window.select(list_name, row)
        window.picture(name + "-row")
        window.session.keys("Menu")
        assert window.session.menu_items() == items, name
        window.picture(name + "-menu")
        window.keys("Escape", "ctrl+Tab")


with Session() as session:
    session.run("wine", TOOLS + r"\sample_nsis.exe", "/S")
    session.run("wine", "msiexec", "/i", TOOLS + r"\sample.msi", "/qn")
    for place, key, name in ENTRIES:
        session.registry(rf"{place}\Uninstall\{key}", "DisplayName", name, wine=WINE64)
        session.registry(rf"{place}\Uninstall\{key}", "UninstallString", "nothing.exe", wine=WINE64)
    for each in FURTHER_VALUES:
        session.registry(*each, wine=WINE64)
    with session.start() as window:
        pictures(window)
        window.keys(*["ctrl+Tab"] * 4)
        installed_rows(window)
        uninstall(window, "小さなメモ帳", lambda: window.choose("d"))
        uninstall(window, "Sample Dictionary", lambda: window.keys("Delete"))
        print("uninstalled programs are gone from the list")
        while_one_runs(window)
        print("the window stays usable while an uninstaller runs")
        if IS_64_BIT:
            forced(window, "もう一方の見本", OTHER, "Machine", "Return", stays=False)
        forced(window, "全ユーザーの見本", OWN, "Machine", "Escape", stays=True)
        forced(window, "全ユーザーの見本", OWN, "Machine", "Return", stays=False)
        assert ("UninstallString" in stored(window, rf"{OTHER}\Uninstall\Machine")) != IS_64_BIT
        forced(window, "個別ユーザーの見本", USER, "PerUser", "Return", stays=True)
        print("forced uninstall removes machine-wide entries, after its question")
        assert sorted(copies(session)) == sorted(["全ユーザーの見本.reg", *["もう一方の見本.reg"] * IS_64_BIT])
        forbid_copies(session)
        check_startup_rows(window)
        # The last of that name: where both halves have it, the other one's.
        delete_startup_item(window, IS_64_BIT * 1, ("Escape", "Return"), "バックアップを保存できませんでした。")
        assert ("nothing.exe" in stored(window, rf"{OTHER}\Run")) != IS_64_BIT
        print("the Delete key deletes a start-up item, after its question")
    session.settings(Backup=0)
    with session.start() as window:
        delete_startup_item(window, IS_64_BIT * 1, ("Return",), None)
    print("copies are kept, missed aloud, and not kept on demand")
