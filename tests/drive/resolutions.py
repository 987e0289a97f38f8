#!/usr/bin/env python3
"""The smallest window in the resolutions that users choose: no control is cut off or covered, every caption is read."""
from driver import TOOLS, Session

for dpi in 120, 144, 192:
    with Session(dpi=dpi) as session:
        session.run("cp", session.path(TOOLS + r"\test_window.exe"), session.folder)  # its settings lie beside it
        said = session.run("wine", r"C:\Qorvenix\test_window.exe", "-tc=in the smallest window*", check=False)
        assert "1 passed, 0 failed" in said, (dpi, said)
