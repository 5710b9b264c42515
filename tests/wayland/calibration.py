#!/usr/bin/python3 -B
"""calibration.py QUORVEL PICTURES OUTPUT: in Sway, a calibration on that output, by fingers that touch where the
targets are seen: each is exactly where it belongs, and the frame is told of that output, in native pixels.
"""

import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../access"))
from finger import Finger  # noqa: E402
from reader import Reader, until  # noqa: E402

TITLE = "Quorvel (simulated touch frame)"
AROUND = 60  # pixels at scale 1 that a target keeps to
TARGETS = ((1, 1), (7, 1), (7, 7), (1, 7))


def sway(*words):
    said = subprocess.run(["swaymsg", "-r", *words], capture_output=True, text=True, check=True).stdout
    return json.loads(said)


def place_of(title):
    """The output that shows the window."""
    def look(node, output):
        if node["type"] == "output":
            output = node["name"]
        if node.get("app_id") and node["name"] == title:
            return output
        for child in node["nodes"] + node["floating_nodes"]:
            found = look(child, output)
            if found:
                return found
        return None
    return look(sway("-t", "get_tree"), None)


def picture_of(output):
    """Its width, its height and its pixels, three bytes each."""
    data = subprocess.run(["grim", "-t", "ppm", "-o", output, "-"], capture_output=True, check=True).stdout
    head, size, _, pixels = data.split(b"\n", 3)
    assert head == b"P6", head
    width, height = map(int, size.split())
    return width, height, pixels


def centre_of_white(picture, x, y, reach):
    """Of what is white around there; nothing if there is little."""
    width, height, pixels = picture
    found = [(column, row)
             for row in range(max(0, y - reach), min(height, y + reach + 1))
             for column in range(max(0, x - reach), min(width, x + reach + 1))
             if pixels[(row * width + column) * 3] > 128]
    if len(found) < 100:
        return None
    # A target is as wide to the left as to the right.
    return ((min(c for c, _ in found) + max(c for c, _ in found)) / 2,
            (min(r for _, r in found) + max(r for _, r in found)) / 2)


def main(quorvel, pictures, name):
    os.makedirs(pictures, exist_ok=True)
    outputs = {output["name"]: output for output in sway("-t", "get_outputs")}
    output = outputs[name]
    size = output["current_mode"]
    width, height, scale = size["width"], size["height"], output["scale"]
    rects = [one["rect"] for one in outputs.values()]
    finger = Finger(max(rect["x"] + rect["width"] for rect in rects),
                    max(rect["y"] + rect["height"] for rect in rects))

    def keep(title):
        path = os.path.join(pictures, f"{width}x{height}-{scale:g}-{title}.png")
        subprocess.run(["grim", "-o", name, path], check=True)

    reader = Reader(quorvel, "--demo")
    home = reader.window(TITLE)
    reader.told("frame > host  firmware:")
    until("the window on the screen", lambda: place_of(TITLE))
    sway(f'[title="^Quorvel"] move container to output {name}')
    until(f"the window on {name}", lambda: place_of(TITLE) == name)
    keep("window")
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
            keep("target")
        finger.touch(output["rect"]["x"] + x / scale, output["rect"]["y"] + y / scale)
        reader.told(f"touch at {x},{y}")
    reader.told(f"host > frame  calibration: check, screen 0,0 {width}x{height} of {width}x{height}")
    question = reader.window("MalvoTools", "Do you want to save the Calibration results ?")
    until(f"the question on {name}", lambda: place_of("MalvoTools") == name)
    keep("question")
    reader.activate_by_action(question, "Yes")
    reader.told("host > frame  calibration: save")
    reader.end()
    print(f"calibrated {name}, {width}x{height} at {scale:g}")


if len(sys.argv) != 4:
    sys.exit(__doc__)
main(*sys.argv[1:])
