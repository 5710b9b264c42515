#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""tray.py QUORVEL with|without PICTURES: in Sway, the window is closed and comes back, on a desktop with a
tray or without one; a second start brings it back too.
"""

import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../access"))
from compositor import is_focused, keep, place_of, sway  # noqa: E402
from reader import Gio, GLib, Reader, until  # noqa: E402

TITLE = "Quorvel (simulated touch frame)"
HERE = os.path.dirname(os.path.abspath(__file__))


class Tray:
    """The tray and the item in it."""

    def __init__(self):
        self.program = subprocess.Popen([os.path.join(HERE, "watcher.py")], stdout=subprocess.PIPE, text=True)
        assert self.program.stdout.readline() == "ready\n"
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def await_item(self):
        self.item = self.program.stdout.readline().strip()

    def call(self, path, interface, method, values=None):
        return self.bus.call_sync(self.item, path, interface, method, values, None, 0, 10000, None).unpack()

    def property(self, name):
        return self.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", name)))[0]

    def activate(self):
        self.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", GLib.Variant("(ii)", (0, 0)))

    def entries(self):
        """Of its menu, by what they say."""
        layout = self.call(self.property("Menu"), "com.canonical.dbusmenu", "GetLayout",
                           GLib.Variant("(iias)", (0, -1, [])))[1]
        return {entry[1].get("label", "").replace("_", ""): entry[0] for entry in layout[2]}

    def choose(self, label):
        self.call(self.property("Menu"), "com.canonical.dbusmenu", "Event",
                  GLib.Variant("(isvu)", (self.entries()[label], "clicked", GLib.Variant("s", ""), 0)))


def close_window():
    sway(f'[title="^Quorvel"] kill')
    until("the window to be gone", lambda: not place_of(TITLE))


def main(quorvel, mode, pictures):
    tray = Tray() if mode == "with" else None
    reader = Reader(quorvel, "--demo")
    until("the window", lambda: place_of(TITLE))
    if tray:
        tray.await_item()
        assert "touch frame" in tray.property("ToolTip")[2], tray.property("ToolTip")
        assert any(picture[0] >= 22 for picture in tray.property("IconPixmap")), "no icon"
        assert {"Show", "Exit"} <= tray.entries().keys(), tray.entries()
        close_window()
        tray.activate()
        until("the window after the tray was clicked", lambda: place_of(TITLE))
        close_window()
        tray.choose("Show")
        until("the window after the tray's menu", lambda: place_of(TITLE))
    else:
        close_window()
        notice = reader.window("Quorvel goes on")
        keep(pictures, "no-tray")
        reader.activate_by_action(notice, "Show the window")
        until("the window after the notice", lambda: place_of(TITLE))

    close_window()
    second = subprocess.run([quorvel, "--demo"], timeout=20, check=False)
    assert second.returncode == 0, second.returncode
    until("the window after a second start", lambda: place_of(TITLE))
    until("the keyboard in that window", lambda: is_focused(TITLE))

    if tray:
        tray.choose("Exit")
        assert reader.program.wait(20) == 0, reader.program.returncode
        tray.program.terminate()
    else:
        ended = subprocess.run([quorvel, "--demo", "-close"], timeout=20, check=False)
        assert ended.returncode == 0, ended.returncode
        assert reader.program.wait(20) == 0, reader.program.returncode
    print(f"came back {mode} a tray")


if len(sys.argv) != 4 or sys.argv[2] not in ("with", "without"):
    sys.exit(__doc__)
main(*sys.argv[1:])
