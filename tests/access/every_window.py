#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""every_window.py QUORVEL: opens every window of the program, by keyboard, and looks at what a
screen reader finds there: each control has a name that no other one beside it has, a role and its
state, and what is told in a window is spoken at once.
"""

import os
import subprocess
import sys
import tempfile

from reader import Atspi, Reader, has, labels_of, states, until, walk

TITLE = "Quorvel (simulated touch frame)"
CHOICES = {"check box", "radio button"}
# What only holds others together has no name where the keyboard does not go there.
HOLDERS = {"filler", "panel", "split pane"}

objections = []
seen = 0


def object_to(path, words):
    objections.append(f"{path} {words}")


def look_at(reader, name, window, least):
    """The window has at least so many controls that the keyboard goes to."""
    global seen
    names = set()
    controls = 0
    for path, control in walk(window):
        role = control.get_role_name()
        place = f"{name}: {path} ({role})"
        reached = has(control, Atspi.StateType.FOCUSABLE)
        controls += reached
        seen += 1
        if role == "unknown" and not reached and control.get_parent().get_role_name() == "split pane":
            continue  # what a mouse moves panes with; the toolkit says nothing of it
        if role in ("unknown", "invalid"):
            object_to(place, "has no role")
        said = control.get_name().strip()
        if not said:
            # A picture says nothing that the words beside it do not say.
            if reached or role not in HOLDERS | {"label", "image"}:
                object_to(place, "has no name")
            elif role == "label" and Atspi.Text.get_character_count(control):
                object_to(place, "shows what it does not say")
        if has(control, Atspi.StateType.ENABLED) != has(control, Atspi.StateType.SENSITIVE):
            object_to(place, "says two things about whether it can be used")
        if reached and (path, role) in names:
            object_to(place, "is called as another one beside it")
        names.add((path, role))
        if role == "slider":
            value = Atspi.Value
            if not value.get_minimum_value(control) <= value.get_current_value(control) <= value.get_maximum_value(control):
                object_to(place, "does not say where it stands")
        if role == "combo box" and not labels_of(control):
            object_to(place, "does not say what is chosen there")
        if role == "text" and "Text" not in control.get_interfaces():
            object_to(place, "does not say what it holds")
        if role in CHOICES and control.get_n_actions() == 0:
            object_to(place, "cannot be chosen")
    if controls < least:
        object_to(name, f"has {controls} controls for the keyboard instead of {least}: {window.get_name()}")


def visit(reader, name, window, least, key="alt+F4"):
    """Looks at a window and leaves it."""
    look_at(reader, name, window, least)
    reader.leave(window, key)


def leave_by_escape(reader, name, screen):
    """A screen without controls."""
    if "ESC" not in screen.get_description():
        object_to(name, "does not say how to leave it")
    reader.leave(screen, "Escape")


def walk_menu(reader, least):
    """What is said on the way through the open menu."""
    entries = []
    for _ in range(30):
        before = reader.at
        reader.key("Down")
        until("the next entry of the menu", lambda: reader.at is not before)
        if reader.at.get_role_name() not in ("menu item", "check menu item"):
            object_to("menu", f"has a {reader.at.get_role_name()}")
        entry = reader.at.get_name()
        if not entry:
            object_to("menu", f"has a nameless entry behind {entries}")
        if entry in entries:
            break
        entries.append(entry)
    if len(entries) < least:
        object_to("menu", f"says only {entries}")


def click(control):
    """With a mouse, as what is tried out is for those who touch."""
    place = Atspi.Component.get_extents(control, Atspi.CoordType.SCREEN)
    x, y = place.x + place.width // 2, place.y + place.height // 2
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "sleep", "0.3", "click", "1"], check=True)


def main(quorvel):
    reader = Reader(quorvel, "--demo")
    home = reader.window(TITLE)

    def by_menu(letter, title, holding):
        reader.choose(home, letter)
        return reader.window(title, holding)

    def by_button(button, title, holding=None):
        reader.press(home, button)
        return reader.window(title, holding)

    look_at(reader, "main window", home, 6)
    reader.control(home, "Already link equipment")
    reader.open_menu(home)
    walk_menu(reader, 4)
    reader.key("Escape")
    until("the end of the menu", lambda: not reader.menus)

    visit(reader, "details", by_button("Details", "Details"), 2, "Escape")

    visit(reader, "smoothing", by_menu("m", "Smoothing", "Smoothing Level"), 6)

    connection = by_menu("c", "Connect", "State of the connection")
    look_at(reader, "connection, by USB", connection, 9)
    reader.go_to(connection, "USB, linked as soon as it is plugged in")
    reader.key("Down")
    until("the other choice", lambda: "checked" in states(reader.control(connection, "UART, a serial port")))
    visit(reader, "connection, serial", connection, 13)

    tried = by_menu("t", "Try out gestures", "Clear")
    look_at(reader, "gestures tried out", tried, 3)
    click(reader.control(tried, "Field for gestures"))
    until("what a click was", lambda: any(words.startswith("Click:") for words in reader.heard))
    reader.leave(tried, "Escape")

    check = by_menu("a", "Calibration check", "Touch the middle of cross 1 of 9.")
    look_at(reader, "calibration check", check, 0)
    click(check)
    until("how far a touch was off and what is next",
          lambda: any("Cross 1:" in words and "cross 2 of 9." in words for words in reader.heard))
    leave_by_escape(reader, "calibration check", check)

    support = by_menu("f", "Support file", "Save...")
    look_at(reader, "support file", support, 4)
    reader.key("alt+s")
    question = reader.window("Save the support file")
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "support.zip")
        reader.fill_in(question, path)
        reader.key("Return")
        until("what became of the support file", lambda: f"Written to {path}." in reader.heard)
    reader.leave(support, "Escape")

    visit(reader, "manual", by_menu("h", "Quorvel manual", "Page of the manual"), 3, "Escape")

    visit(reader, "rotation", by_button("Rotation", "Rotation", "90 degrees"), 5, "Escape")

    visit(reader, "versions", by_button("Quorvel v" + version_of(quorvel), "Versions", "Hardware: 5156 - 0001"), 6, "Escape")

    visit(reader, "reset", by_button("Reset", "Reset"), 1, "Return")

    usage = by_menu("s", "Usage and environment", "Operate")
    look_at(reader, "usage", usage, 12)
    reader.press(usage, "Write")
    reader.press(usage, "Apply")
    until("what became of the usage", lambda: "Kept." in reader.heard)
    reader.press(usage, "Advance")
    gestures = reader.window("Advanced Setting")
    look_at(reader, "gestures", gestures, 22)
    wheel = reader.press(gestures, "Enable Use your finger for wheel")
    until("the wheel to be off", lambda: not has(wheel, Atspi.StateType.CHECKED))
    reader.go_to(gestures, "Sensitivity of the wheel")
    reader.key("Home")
    reader.press(gestures, "Apply")
    until("what became of the gestures", lambda: "Kept, and sent to the touch frame." in reader.heard)
    reader.go_to(gestures, "Spatial tolerance of double-click")
    reader.key("c")
    diagnostics = reader.window("Diagnostics", "Light Setting")
    look_at(reader, "diagnostics", diagnostics, 3)

    reader.press(diagnostics, "Test the signals")
    test = reader.window("Signal test", "All Test")
    look_at(reader, "signal test", test, 12)
    reader.go_to(test, "Lower Limit:")
    reader.key("ctrl+a")
    reader.type("2000")
    reader.press(test, "Once [X]")
    until("what is wrong with a limit", lambda: any("1100" in words for words in reader.heard))
    reader.leave(test)

    reader.press(diagnostics, "Light Setting")
    lights = reader.window("Light Setting", "Set the ADC settings")
    visit(reader, "lights", lights, 10, "Escape")
    reader.leave(diagnostics)
    reader.leave(gestures)
    reader.leave(usage)

    calibration = by_button("Calibration", "Calibration")
    look_at(reader, "calibration", calibration, 0)
    leave_by_escape(reader, "calibration", calibration)
    reader.end()

    if objections:
        print("\n".join(objections))
    print(f"{seen} controls, {len(objections)} objections")
    return bool(objections)


def version_of(quorvel):
    return subprocess.run([quorvel, "--version"], capture_output=True, text=True, check=True).stdout.split()[1]


if len(sys.argv) != 2:
    sys.exit(__doc__)
sys.exit(main(sys.argv[1]))
