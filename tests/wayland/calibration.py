#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""calibration.py QUORVEL PICTURES OUTPUT: in Sway, a calibration on that output, by fingers that touch where the
targets are seen: each is exactly where it belongs, and the frame is told of that output, in native pixels.
"""

import os
import re
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../access"))
from compositor import keep, place_of, sway  # noqa: E402
from finger import Finger  # noqa: E402
from picture import centre_of_white, read_ppm  # noqa: E402
from reader import Reader, until  # noqa: E402

TITLE = "Quorvel (simulated touch frame)"
AROUND = 60  # pixels at scale 1 that a target keeps to
TARGETS = ((1, 1), (7, 1), (7, 7), (1, 7))


def picture_of(output):
    return read_ppm(subprocess.run(["grim", "-t", "ppm", "-o", output, "-"], capture_output=True, check=True).stdout)


def main(quorvel, pictures, name):
    outputs = {output["name"]: output for output in sway("-t", "get_outputs")}
    output = outputs[name]
    size = output["current_mode"]
    width, height, scale = size["width"], size["height"], output["scale"]
    rects = [one["rect"] for one in outputs.values()]
    finger = Finger(max(rect["x"] + rect["width"] for rect in rects),
                    max(rect["y"] + rect["height"] for rect in rects))

    reader = Reader(quorvel, "--demo")
    home = reader.window(TITLE)
    reader.told("frame > host  firmware:")
    until("the window on the screen", lambda: place_of(TITLE))
    sway(f'[title="^Quorvel"] move container to output {name}')
    until(f"the window on {name}", lambda: place_of(TITLE) == name)
    keep(pictures, f"{name}-{scale:g}-window", name)
    # The compositor tells the program of it a moment later.
    reader.activate_by_action(home, "Calibration")
    # Its arrow is white too.
    finger.go_to(output["rect"]["x"] + width / scale / 2, output["rect"]["y"] + height / scale * 0.9)
    for step, (x, y) in enumerate(TARGETS, 1):
        x, y = width // 8 * x, height // 8 * y
        reader.told(f"host > frame  calibration: step {step}")

        def is_there():
            centre = centre_of_white(picture_of(name), x, y, round(AROUND * scale))
            return centre and abs(centre[0] - x) <= 1 and abs(centre[1] - y) <= 1
        until(f"target {step} at {x}, {y} of {name}", is_there)
        if step == 1:
            keep(pictures, f"{name}-{scale:g}-target", name)
        finger.touch(output["rect"]["x"] + x / scale, output["rect"]["y"] + y / scale)
        touched = until("the touch", lambda: re.findall(r"touch at (\d+),(\d+)", reader.lines())[step - 1:])[0]
        # Pointers of compositors go by parts of scaled pixels.
        assert abs(int(touched[0]) - x) <= (scale % 1 > 0) and abs(int(touched[1]) - y) <= (scale % 1 > 0), touched
    reader.told(f"host > frame  calibration: check, screen 0,0 {width}x{height} of {width}x{height}")
    question = reader.window("MalvoTools", "Do you want to save the Calibration results ?")
    until(f"the question on {name}", lambda: place_of("MalvoTools") == name)
    keep(pictures, f"{name}-{scale:g}-question", name)
    reader.activate_by_action(question, "Yes")
    reader.told("host > frame  calibration: save")
    reader.end()
    print(f"calibrated {name}, {width}x{height} at {scale:g}")


if len(sys.argv) != 4:
    sys.exit(__doc__)
main(*sys.argv[1:])
