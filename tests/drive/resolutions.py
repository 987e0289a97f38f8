#!/usr/bin/env python3
"""The smallest window in the resolutions that users choose: no control is cut off or covered, every caption is read."""
from driver import TOOLS, Session

for dpi in 120, 144, 192:
    with Session(dpi=dpi) as session:
        said = session.run("wine", TOOLS + r"\test_window.exe", "-tc=in the smallest window*", check=False)
        assert "1 passed, 0 failed" in said, (dpi, said)
print("nothing is cut off or covered at 120, 144 and 192 dpi")
