#!/usr/bin/env python3
"""Every item of the menu bar and the rest of the pop-up menus, chosen by keyboard, with what it does; the exported
file of every list."""
import os
import pathlib

from driver import HOME_PAGE, LIST_OF_TAB, VERSION, Session, until

PROGRAM = '見本 "引用" & 20,5'
UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Sample"
SEND_TO = r"HKCR\AllFilesystemObjects\shellex\ContextMenuHandlers\Send To"
ATTACHMENTS = r"HKCU\Software\Microsoft\Windows\Shell\AttachmentExecute\{0002DF01-0000-0000-C000-000000000046}"
home = pathlib.Path(os.environ["HOME"])
opened = home / "opened"
trash = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Trash"


def record_addresses():
    """An xdg-open that only writes down what it is asked to open."""
    script = home / "bin/xdg-open"
    script.parent.mkdir(exist_ok=True)
    script.write_text(f'#!/bin/sh\necho "$@" >>"{opened}"\n')
    script.chmod(0o755)
    return {"PATH": f"{script.parent}:{os.environ['PATH']}"}


def exported(window, name):
    """What the file of a list has to be: headers, then rows; all quoted but numbers behind the first cell."""
    def cell(text, column):
        if column:
            try:
                float(text)
                return text
            except ValueError:
                pass
        return f'"{text}"'

    rows = window.list(name)
    lines = [",".join(rows.headers)] + [",".join(cell(text, column) for column, text in enumerate(row)) for row in rows.rows]
    return "".join(line + "\r\n" for line in lines).encode("cp932", "replace")


def save(window, file):
    window.session.keys("alt+f", "s")
    until(lambda: window.session.windows("#32770"), 10, "the save dialog")
    window.session.xdotool("type", "--delay", 20, f"C:\\{file}")
    window.session.keys("Return")
    # The status bar may still speak of the save before this one; the file comes whole or not at all.
    saved = window.session.prefix / "drive_c" / file
    until(saved.exists, 10, "the save")
    until(lambda: window.status() == "保存が完了しました", 10, "the word of it")
    return saved.read_bytes()


def file_menu(window):
    for place, name in enumerate(list(LIST_OF_TAB.values())[:6]):
        window.click_tab(place)
        for order in "asc", "desc":
            window.click_header(name, 0)
            written = save(window, f"{place}{order}.csv")
            assert written == exported(window, name), (name, written[:200], exported(window, name)[:200])
    window.click_tab(6)
    before = window.status()
    window.session.keys("alt+f", "s", "Escape", "Escape")
    window.settle()
    assert window.status() == before and not window.session.windows("#32770"), "the report shows no list to save"
    window.click_tab(0)
    assert not window.status().startswith("表示中")
    window.keys("alt+f", "u")
    assert window.status() == "1 個の項目"


def view_menu(window):
    for letter in "isc":
        window.keys("alt+v", letter)


def fill_bin():
    """Before the program starts: Wine looks for the bin only once."""
    for folder in "files", "info":
        (trash / folder).mkdir(parents=True, exist_ok=True)
    (trash / "files/old.txt").write_text("x" * 2048)
    (trash / "info/old.txt.trashinfo").write_text("[Trash Info]\nPath=/old.txt\nDeletionDate=2026-01-01T00:00:00\n")


def delete_menu(window):
    window.session.keys("alt+d", "e")
    dialog = window.session.dialog()
    assert dialog[0].text == "ファイル削除の確認"
    texts = [each.text for each in dialog]
    assert "ごみ箱を空にしますか？\r\n\r\nファイル総数 1個 (2.00 KB)" in texts, texts
    window.keys("Return")
    assert window.status() == "削除完了" and not list((trash / "files").iterdir())

    temp = next((window.session.prefix / "drive_c/users").glob("*/Temp"))
    (temp / "sub").mkdir(exist_ok=True)
    (temp / "sub/left over.tmp").write_text("x")
    window.keys("alt+d", "t")
    assert window.status() == "削除完了" and not (temp / "sub").exists() and temp.exists()
    for letter in "ricu":
        window.keys("alt+f", "u")
        window.keys("alt+d", letter)
        assert window.status() == "削除完了", letter


def registry_menu(window):
    session = window.session
    exists = lambda key: "HKEY_" in session.run("wine", "reg", "query", key, check=False)  # noqa: E731
    session.registry(SEND_TO, "x", "x")
    session.registry(ATTACHMENTS, "x", "x")
    window.keys("alt+r", "Return")
    assert window.status() == "削除完了" and not exists(SEND_TO)
    window.keys("alt+r", "Return")
    assert window.status() == "復元完了" and exists(SEND_TO)
    session.keys("alt+r", "Up", "Return")
    texts = [each.text for each in session.dialog()]
    assert any(text.endswith("実行してもよろしいですか？") for text in texts), texts
    window.keys("Escape")  # Cancel repairs as well
    assert window.status() == "完了" and not exists(ATTACHMENTS)


def help_menu(window):
    session = window.session
    (session.folder / "ReadMe.txt").write_bytes("説明".encode("cp932"))
    notepad = session.prefix / "drive_c/windows/system32/notepad.exe"
    (session.folder / "Update.exe").write_bytes(notepad.read_bytes())
    for letter in "r", "u":
        session.keys("alt+h", letter)
        top = until(lambda: session.windows("Notepad"), 20, "the editor")[0]
        session.peek("end", top.handle)
        until(lambda: not session.windows("Notepad"), 20, "the end of the editor")
    window.keys("alt+h", "h")
    until(opened.exists, 20, "the browser")
    assert opened.read_text().strip() == HOME_PAGE, opened.read_text()
    session.keys("alt+h", "v")
    dialog = session.dialog()
    assert dialog[0].text == "Qorvenix"
    assert f"Qorvenix Ver{VERSION}\r\nQorvenix contributors" in [each.text for each in dialog]
    window.keys("Return")


def clipboard(window, tab):
    """What was copied, as the path box of the information panel receives it."""
    window.click_tab(6)
    window.click("txtMemPath")
    window.keys("ctrl+a", "ctrl+v")
    window.click_tab(tab)
    return window.text("txtMemPath")


def opened_window(session, window_class):
    top = until(lambda: session.windows(window_class), 20, window_class)[0]
    session.peek("end", top.handle)
    until(lambda: not session.windows(window_class), 20, "its end")


def popup_menus(window):
    """What the pop-up menus have beside uninstalling, deleting and service control, which have drivers of their own."""
    session = window.session
    for tab, name, row in ((0, "ListView1_0", PROGRAM), (2, "lvStartUp", "見本"), (3, "lvService", "Event Log")):
        window.click_tab(tab)
        session.move(1200, 900)
        window.select(name, row)
        window.keys("ctrl+c") if tab == 0 else window.choose("c")
        assert clipboard(window, tab) == row, (name, window.text("txtMemPath"))
        count = len(window.list(name).rows)
        window.select(name, row)
        session.keys("Menu")
        session.menu_items()
        window.keys("Up", "Return")  # the last item refreshes
        assert window.status() == f"{count} 個の項目" and window.list(name).selected == -1
    window.click_tab(0)
    window.select("ListView1_0", PROGRAM)
    window.choose("o")
    opened_window(session, "ExplorerWClass")
    window.click_tab(2)
    window.select("lvStartUp", "見本")
    window.choose("o")
    opened_window(session, "RegEdit_RegEdit")
    window.select("lvStartUp", "startup.txt")
    window.choose("o")
    opened_window(session, "ExplorerWClass")
    window.select("lvStartUp", "startup.txt")
    before = len(session.windows())
    window.choose("p")  # Wine has no property sheets; what must not happen is that the file opens
    assert len(session.windows()) == before


with Session(variables=record_addresses()) as session:
    session.registry(UNINSTALL, "DisplayName", PROGRAM)
    session.registry(UNINSTALL, "InstallLocation", r"C:\windows")
    session.registry(r"HKLM\Software\Microsoft\Windows\CurrentVersion\Run", "見本", r"C:\none.exe")
    folder = next((session.prefix / "drive_c/users").glob("*/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/StartUp"))
    (folder / "startup.txt").write_text("x")
    session.registry(UNINSTALL, "UninstallString", "C:\\none.exe")
    session.registry(UNINSTALL, "EstimatedSize", 1536, "REG_DWORD")
    session.registry(UNINSTALL, "InstallDate", "20260301")
    session.import_registry('[HKEY_CLASSES_ROOT\\.txt]\n@="txtfile"\n')  # Wine forgets it
    session.settings()
    fill_bin()
    window = session.start()
    for part in (popup_menus, file_menu, view_menu, delete_menu, registry_menu, help_menu):
        part(window)
        print(part.__name__.replace("_", " "), "is right")
    window.session.keys("alt+f", "x")
    assert window.process.wait(20) == 0
    stored = session.stored_settings()
    assert (stored["Icon"], stored["Stripe"], stored["SysCom"]) == ("-1", "-1", "-1"), stored
