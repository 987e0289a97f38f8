#!/usr/bin/env python3
"""Programs and start-up items by keyboard alone: real uninstallers run, are waited for and are gone from the list; the
window meanwhile; forced uninstall; deletion of a start-up item; copies of what is deleted. Programs stand in both halves
of the registry, of which the 32-bit edition knows only its own."""
from driver import IS_64_BIT, TOOLS, WINE64, Session, becomes, until

CURRENT = r"Microsoft\Windows\CurrentVersion"
# As 64-bit programs see them; the sample installers are 32-bit ones.
OF_64, OF_32, USER = rf"HKLM\SOFTWARE\{CURRENT}", rf"HKLM\SOFTWARE\Wow6432Node\{CURRENT}", rf"HKCU\SOFTWARE\{CURRENT}"
OWN, OTHER = (OF_64, OF_32) if IS_64_BIT else (OF_32, OF_64)
MSI = "{5D6C0E1A-7B1B-4F0B-9E57-2B6F3C1D0A11}"
WAITING = TOOLS + r"\recorder_gui.exe --wait 60000"  # notes each start of itself in C:\record.txt
PROGRAMS, STARTUP = "ListView1_0", "lvStartUp"

# Below which key, value name, data. The first three bring nothing to uninstall.
VALUES = [
    *((rf"{place}\Uninstall\{key}", value, data)
      for place, key, name in ((OWN, "Slow", "時間のかかる削除"), (OWN, "Machine", "全ユーザーの見本"),
                               (OTHER, "Machine", "もう一方の見本"))
      for value, data in (("DisplayName", name), ("UninstallString", WAITING))),
    (rf"{OWN}\Run", "起動時の見本", r"C:\windows\notepad.exe"),
    (rf"{OTHER}\Run", "起動時の見本", "nothing.exe"),
    (rf"{USER}\Run", "残る見本", r"C:\windows\notepad.exe"),
    # The command that Windows stores asks what to do with the program.
    (rf"{OF_32}\Uninstall\{MSI}", "UninstallString", f"MsiExec.exe /X{MSI} /qn")]


def buttons(window):
    tree = window.tree()
    return [tree[name].enabled for name in ("cmdMenu_0", "cmdMenu_1")]


def uninstall(window, row, act):
    """The row goes when its own uninstaller has ended, and the count is right again."""
    count = len(window.names(PROGRAMS))
    window.select(PROGRAMS, row)
    act()
    until(lambda: row not in window.names(PROGRAMS), 30, "the end of " + row)
    window.says(f"{count - 1} 個の項目")
    assert len(window.names(PROGRAMS)) == count - 1 and buttons(window) == [True, True]


def started(session):
    """Every start of the waiting uninstaller: its path, its show command, its command line."""
    record = session.path(r"C:\record.txt")
    return [line.split("\t") for line in record.read_bytes().decode("utf-16-le").splitlines()] if record.exists() else []


def while_one_runs(window):
    session = window.session
    window.select(PROGRAMS, "時間のかかる削除")
    while window.focus() != "cmdMenu_0":
        window.keys("Tab")
    window.keys("space")
    until(lambda: started(session), what="the start of the uninstaller")
    assert started(session)[0][1:] == ["2", WAITING], started(session)  # minimised, with the focus
    window.says("アンインストーラの実行中です...")
    becomes(lambda: (window.focus(), buttons(window)), (PROGRAMS, [False, False]))
    # Nothing starts a second one; copying, the folder and the refresh stay.
    session.keys("Menu")
    assert session.menu_items() == [True, False, False, True, True]
    window.keys("d")
    window.keys("Escape", "Delete")
    assert len(started(session)) == 1 and not session.windows("#32770")
    # The window does not close, and the other tabs work.
    session.peek("close")
    window.says("アンインストールが終わるまで、Qorvenixは終了できません")
    assert window.process.poll() is None and window.tree()["frmMain"].visible
    window.keys("ctrl+Tab", "ctrl+Tab")
    becomes(lambda: (window.shown_list(), buttons(window)), (STARTUP, [True, True]))
    window.select(STARTUP, "残る見本")
    shown = window.status()
    session.run("wine", "taskkill", "/f", "/im", "recorder_gui.exe")
    window.settle()
    # The wait's end leaves the other tab alone.
    assert (window.shown_list(), window.status()) == (STARTUP, shown)
    window.keys("ctrl+shift+Tab", "ctrl+shift+Tab")
    becomes(lambda: (window.shown_list(), buttons(window)), (PROGRAMS, [True, True]))


def has(window, path, text):
    return text in window.session.run(WINE64, "reg", "query", path, check=False)


def question(session, text, key):
    """Answers the open question, which must have that text, by a key."""
    until(lambda: any(text in each.text for each in session.dialog()), what=text)
    session.keys(key)
    until(lambda: not session.windows("#32770"), what="the end of the question")


def forced(window, row, place):
    window.select(PROGRAMS, row)
    window.choose("f")
    question(window.session, f"「{row}」を強制アンインストールしますか？", "Return")
    becomes(lambda: (row in window.names(PROGRAMS), has(window, rf"{place}\Uninstall\Machine", "Uninst")), (False, False))
    window.says(f"{len(window.names(PROGRAMS))} 個の項目")


def delete_startup_item(window, keys, status):
    """The last of two that have one name, where both halves of the registry have it: the other half's."""
    window.keys("ctrl+Tab", "ctrl+Tab")
    before = window.list(STARTUP).rows
    window.session.keys("Home", "Menu")
    assert window.session.menu_items() == [True, True, True, False, True]  # a value of the registry has no properties
    window.keys("Escape")
    for key in keys:
        window.keys("Home", *["Down"] * IS_64_BIT, "Delete")
        question(window.session, f"「{before[IS_64_BIT][0]}」を削除します。\r\nよろしいですか？", key)
        if key == "Return":
            del before[IS_64_BIT]
        becomes(lambda: window.list(STARTUP).rows, before)
    window.says(status or f"{len(before)} 個の項目")


def forbid_copies(session):
    """Files stand where the two folders would be."""
    (session.folder / "backup").rename(session.folder / "kept")
    for folder in session.folder / "backup", session.user / "AppData/Roaming/Qorvenix":
        folder.touch()


with Session() as session:
    session.run("wine", TOOLS + r"\sample_nsis.exe", "/S")
    session.run("wine", "msiexec", "/i", TOOLS + r"\sample.msi", "/qn")
    for each in VALUES:
        session.registry(*each, wine=WINE64)
    with session.start() as window:
        uninstall(window, "小さなメモ帳", lambda: window.choose("d"))
        uninstall(window, "Sample Dictionary", lambda: window.keys("Delete"))
        print("uninstalled programs are gone from the list")
        while_one_runs(window)
        print("the window stays usable while an uninstaller runs")
        if IS_64_BIT:
            forced(window, "もう一方の見本", OTHER)
        forced(window, "全ユーザーの見本", OWN)
        assert has(window, rf"{OTHER}\Uninstall\Machine", "Uninst") != IS_64_BIT
        copies = sorted(file.name.split(" ", 1)[1] for file in (session.folder / "backup").iterdir())
        assert copies == sorted(["全ユーザーの見本.reg", *["もう一方の見本.reg"] * IS_64_BIT]), copies
        print("forced uninstall removes machine-wide entries, after its question, and keeps copies")
        forbid_copies(session)
        delete_startup_item(window, ("Escape", "Return"), "バックアップを保存できませんでした。")
        assert has(window, rf"{OTHER}\Run", "nothing.exe") != IS_64_BIT
        print("the Delete key deletes a start-up item, after its question; a missed copy is told of, once")
    session.settings(Backup=0)
    with session.start() as window:
        delete_startup_item(window, ("Return",), None)
print("copies are not kept on demand")
