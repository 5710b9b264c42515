# SPDX-License-Identifier: GPL-3.0-or-later

"""What somebody has who neither sees the screen nor holds a mouse: what a screen reader hears of a
program, through AT-SPI, and a keyboard. For use on a desktop that with-desktop --screen-reader makes.
"""

import os
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402  the version has to be named first

PATIENCE = 20  # seconds


class Missed(AssertionError):
    """What was waited for did not come."""


def until(what, condition, patience=PATIENCE):
    """Waits until the condition holds, gives what it gives; what comes meanwhile is heard."""
    end = time.monotonic() + patience
    while True:
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            found = condition()
        except GLib.Error:  # it is gone by now
            found = None
        if found:
            return found
        if time.monotonic() > end:
            raise Missed(f"waited {patience} s in vain for {what}")
        time.sleep(0.02)


def has(control, state):
    return control.get_state_set().contains(state)


def states(control):
    return {state.value_nick for state in control.get_state_set().get_states()}


def children(control):
    found = (control.get_child_at_index(i) for i in range(control.get_child_count()))
    return [child for child in found if child is not None]


def walk(control, path=""):
    """Everything that is shown in a window, with its path."""
    path += "/" + (control.get_name() or "(%s)" % control.get_role_name())
    yield path, control
    for child in children(control):
        if has(child, Atspi.StateType.SHOWING) or has(child, Atspi.StateType.VISIBLE):
            yield from walk(child, path)


def labels_of(control):
    for relation in control.get_relation_set():
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            return [relation.get_target(i).get_name() for i in range(relation.get_n_targets())]
    return []


class Reader:
    """A program, heard and typed at."""

    def __init__(self, *command, **environment):
        # The program looks for the bus of the readers once, when it starts.
        Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, -1, None)
        Atspi.init()
        self.heard = []  # announcements
        self.menus = 0  # that are open
        self.at = None  # what the keyboard went to
        self.listener = Atspi.EventListener.new(self.hear)
        for event in ("object:announcement", "object:state-changed:showing", "object:state-changed:focused"):
            self.listener.register(event)
        self.log = tempfile.NamedTemporaryFile("w+", suffix=".log")
        self.errors = tempfile.NamedTemporaryFile("w+", suffix=".log")
        self.program = subprocess.Popen(command, stdout=self.log, stderr=self.errors,
                                        env={**os.environ, **environment})
        self.application = until("the program on the bus of the readers", self.find_application)

    def hear(self, event):
        try:
            self.take(event)
        except GLib.Error:  # it is gone by now
            pass

    def take(self, event):
        if event.type == "object:announcement":
            self.heard.append(event.any_data)
        elif event.type == "object:state-changed:focused":
            if event.detail1 == 1:
                self.at = event.source
        elif event.source.get_role_name() == "popup menu":
            self.menus += 1 if event.detail1 == 1 else -1
        elif event.detail1 == 1 and event.source.get_role_name() == "notification":
            self.heard.append(event.source.get_name())

    def find_application(self):
        for application in children(Atspi.get_desktop(0)):
            if application.get_process_id() == self.program.pid:
                return application
        if self.program.poll() is not None:
            raise Missed(f"the program ended with {self.program.returncode}")
        return None

    def windows(self):
        self.application.clear_cache()
        return [window for window in children(self.application) if has(window, Atspi.StateType.SHOWING)]

    def window(self, name, holding=None):
        """The window of that name, the one with that control if several have it."""
        def find():
            for window in self.windows():
                if window.get_name() == name and (holding is None or self.look(window, holding)):
                    return window
            return None
        return until(f"the window {name!r} with {holding!r}", find)

    def look(self, window, name, role=None):
        window.clear_cache()
        for _, control in walk(window):
            if control.get_name() == name and role in (None, control.get_role_name()):
                return control
        return None

    def control(self, window, name, role=None):
        return until(f"{name!r} in {window.get_name()!r}", lambda: self.look(window, name, role))

    def key(self, name):
        """As a hand does: what is held is down well before the key is. The toolkit shows each key to
        the readers first, and a menu that opens meanwhile takes a late Alt for the wish to close it."""
        *held, last = name.split("+")
        words = ["key", last]
        for modifier in reversed(held):
            words = ["keydown", modifier, "sleep", "0.1", *words, "sleep", "0.1", "keyup", modifier]
        subprocess.run(["xdotool", *words], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", text], check=True)

    def fill_in(self, window, text):
        """The field that the keyboard goes to, anew if a busy desktop has lost a key."""
        self.activate(window)
        field = until(f"the keyboard in {window.get_name()!r}", lambda: self.focused(window))
        for _ in range(4):
            self.key("ctrl+a")
            self.type(text)
            try:
                return until("the text", lambda: Atspi.Text.get_text(field, 0, -1) == text, patience=PATIENCE / 4)
            except Missed:
                pass
        raise Missed(f"{text!r} does not get into {field.get_name()!r}")

    def lines(self):
        with open(self.log.name) as log:
            return log.read()

    def told(self, words, times=1):
        """Waits until the simulated frame says so."""
        until(f"the frame to say {words!r}", lambda: self.lines().count(words) >= times)

    def end(self):
        self.program.terminate()
        self.program.wait(PATIENCE)

    def focused(self, window):
        window.clear_cache()
        for _, control in walk(window):
            if has(control, Atspi.StateType.FOCUSED) and has(control, Atspi.StateType.FOCUSABLE):
                return control
        return None

    def go_to(self, window, name, role=None):
        """By the Tab key alone."""
        self.activate(window)
        for _ in range(60):
            until(f"the keyboard in {window.get_name()!r}", lambda: self.focused(window))
            now = self.focused(window)
            if name in (now.get_name(), *labels_of(now)) and role in (None, now.get_role_name()):
                return now
            before = now
            self.key("Tab")
            until(f"Tab to leave {before.get_name()!r}", lambda: self.focused(window) != before)
        raise Missed(f"the Tab key does not lead to {name!r} in {window.get_name()!r}")

    def press(self, window, name):
        control = self.go_to(window, name)
        self.key("space")
        return control

    def activate(self, window):
        """The keyboard goes to that window."""
        def is_active():
            window.clear_cache()
            return has(window, Atspi.StateType.ACTIVE)
        for turns in range(1, 8):
            try:
                return until("the window", is_active, patience=1)
            except Missed:
                subprocess.run(["xdotool", "keydown", "alt", "sleep", "0.1", *["key", "Tab"] * turns,
                                "sleep", "0.1", "keyup", "alt"], check=True)
        raise Missed(f"no Alt and Tab lead to {window.get_name()!r}")

    def leave(self, window, key="alt+F4"):
        title = window.get_name()
        self.activate(window)
        count = len(self.windows())
        self.key(key)
        until(f"the end of {title!r}", lambda: len(self.windows()) < count)

    def activate_by_action(self, window, name):
        """As an assistive tool presses a button, where there is no keyboard."""
        def usable():
            window.clear_cache()
            return [control for _, control in walk(window)
                    if control.get_name() == name and has(control, Atspi.StateType.ENABLED)
                    and has(control, Atspi.StateType.FOCUSABLE)]
        Atspi.Action.do_action(until(f"{name!r} to be usable", usable)[0], 0)

    def open_menu(self, window):
        # A busy desktop loses a key now and then; who sees no menu presses it again.
        for _ in range(4):
            self.activate(window)
            self.key("alt+m")
            try:
                return until("the menu", lambda: self.menus, patience=PATIENCE / 4)
            except Missed:
                pass
        raise Missed(f"no menu of {window.get_name()!r} comes up")

    def choose(self, window, letter):
        """An entry of the main window's menu."""
        self.open_menu(window)
        self.key(letter)
        until("the end of the menu", lambda: not self.menus)


class SerialFrame:
    """A simulated frame on a serial line, and the finger on it."""

    def __init__(self, simulator):
        self.place = tempfile.mkdtemp()
        self.port = os.path.join(self.place, "frame")
        self.log = os.path.join(self.place, "log")
        self.program = subprocess.Popen([simulator, "serial", "--link", self.port, "--log", self.log],
                                        stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, text=True)
        until("the serial line", lambda: os.path.exists(self.port))

    def told(self, words, times=1):
        def says():
            with open(self.log) as log:
                return log.read().count(words) >= times
        until(f"the frame on the serial line to say {words!r}", says)

    def do(self, words):
        self.program.stdin.write(words + "\n")
        self.program.stdin.flush()
