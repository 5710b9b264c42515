#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""by_keyboard.py QUORVEL QUORVEL-SIM: somebody without a mouse connects a simulated frame on a serial
line, calibrates it, sets a gesture, turns it, reads versions, tests the signals and sets one light.
What came of it is what the frame says.
"""

import os
import re
import sys

from reader import Atspi, Reader, SerialFrame, has, until, walk

WIDTH, HEIGHT = 1280, 800  # of the screen
TITLE = "Quorvel (simulated touch frame)"


def calibrate(reader, home, frame):
    reader.press(home, "Calibration")
    reader.window("Calibration")
    for step, (x, y) in enumerate(((1, 1), (7, 1), (7, 7), (1, 7)), 1):
        frame.told(f"host > frame  calibration: step {step}")
        frame.do(f"touch {WIDTH // 8 * x} {HEIGHT // 8 * y}")
    question = reader.window("MalvoTools", "Do you want to save the Calibration results ?")
    if "accuracy" not in question.get_description():
        raise AssertionError(f"the question says only {question.get_description()!r}")
    reader.press(question, "Yes")
    frame.told("host > frame  calibration: save")
    until("what the calibration came to", lambda: any("accuracy" in words for words in reader.heard))


def connect(reader, home, frame):
    reader.choose(home, "c")
    window = reader.window("Connect")
    reader.go_to(window, "USB, linked as soon as it is plugged in")
    reader.key("Down")
    reader.go_to(window, "Port:")
    reader.key("ctrl+a")
    reader.type(frame.port)
    reader.press(window, "Open the chosen connection")
    frame.told("frame > host  rotation:")
    until("the answer of the frame", lambda: any("A touch frame answers there." in words for words in reader.heard))
    reader.leave(window, "Escape")
    reader.control(home, "Already link equipment")
    until("that a frame is linked", lambda: "Quorvel: a touch frame is linked" in reader.heard)


def set_gesture(reader, home):
    reader.choose(home, "s")
    usage = reader.window("Usage and environment")
    reader.press(usage, "Advance")
    gestures = reader.window("Advanced Setting")
    box = reader.press(gestures, "Enable press and hold for right-button")
    until("the box to be empty", lambda: not has(box, Atspi.StateType.CHECKED))
    reader.go_to(gestures, "Duration of press and hold")
    slider = reader.at
    reader.key("End")
    until("the longest duration", lambda: Atspi.Value.get_current_value(slider) == Atspi.Value.get_maximum_value(slider))
    longest = int(Atspi.Value.get_maximum_value(slider))
    reader.press(gestures, "Apply")
    reader.told(f"host > frame  gestures: all 1, right button 0 after {longest} ms")
    return usage, gestures


def turn(reader, home):
    reader.press(home, "Rotation")
    window = reader.window("Rotation", "90 degrees")
    reader.press(window, "90 degrees")
    reader.told("host > frame  rotation: set 90")
    reader.control(window, "90", "label")
    until("the rotation", lambda: "90" in reader.heard)
    reader.leave(window, "Escape")


def read_versions(reader, home):
    reader.told("frame > host  firmware:")
    told = re.search(r"firmware: revision 0x(\w+), checksum 0x(\w+)", reader.lines())
    versions = [control.get_name() for _, control in walk(home) if control.get_name().startswith("Quorvel v")]
    reader.press(home, versions[0])
    window = reader.window("Versions")
    reader.go_to(window, f"SID: {told[2]} - {told[1]}", "label")
    reader.leave(window, "Escape")


def test_signals(reader, diagnostics):
    reader.press(diagnostics, "Test the signals")
    window = reader.window("Signal test")
    reader.press(window, "Once [X]")
    reader.told("frame > host  scan: X page")
    reader.press(window, "All Test")
    reader.told("frame > host  scan: Y page", 4)
    reader.press(window, "Stop")
    reader.control(window, "All Test")
    reader.leave(window)


def set_light(reader, diagnostics):
    reader.press(diagnostics, "Light Setting")
    window = reader.window("Light Setting", "Set the ADC settings")
    reader.told("frame > host  adc:")
    reader.go_to(window, "Light Num: axis of the chosen light, X or Y")
    reader.type("X")
    reader.go_to(window, "Light Num: number of the chosen light")
    reader.type("41")
    reader.told("frame > host  light X 41:")
    reader.press(window, "+ raises the signal intensity")
    reader.told("host > frame  light X 41: set offset 1")
    reader.leave(window, "Escape")


def main(quorvel, simulator):
    os.makedirs(os.path.expanduser("~/.config"), exist_ok=True)
    frame = SerialFrame(simulator)
    reader = Reader(quorvel)
    home = reader.window("Quorvel")
    until("that no frame is linked", lambda: reader.control(home, "Have not linked equipment"))
    connect(reader, home, frame)
    calibrate(reader, home, frame)
    frame.do("unplug")
    reader.control(home, "Have not linked equipment")
    until("why no frame is linked", lambda: reader.heard[-1] != "Quorvel: a touch frame is linked"
          and reader.heard[-1].startswith("Quorvel: "))
    reader.end()
    frame.program.terminate()
    frame.program.wait()
    print("connected and calibrated")

    reader = Reader(quorvel, "--demo")
    home = reader.window(TITLE)
    read_versions(reader, home)
    turn(reader, home)
    usage, gestures = set_gesture(reader, home)
    print("versions, rotation and a gesture")
    reader.go_to(gestures, "Spatial tolerance of double-click")
    reader.key("c")
    diagnostics = reader.window("Diagnostics")
    test_signals(reader, diagnostics)
    set_light(reader, diagnostics)
    print("signals and a light")
    reader.end()


if len(sys.argv) != 3:
    sys.exit(__doc__)
main(*sys.argv[1:])
