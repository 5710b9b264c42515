#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""on_weston.py QUORVEL PICTURES WxH: in Weston, which has neither keyboard nor pointer without a display, the
window comes up, the calibration covers the output of that size in native pixels with its target where it
belongs, and a second start ends as one that has been served.
"""

import glob
import os
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../access"))
from picture import centre_of_white, read_ppm  # noqa: E402
from reader import Reader, until  # noqa: E402

TITLE = "Quorvel (simulated touch frame)"


def take_picture(path):
    """The whole output."""
    folder = os.environ["TMPDIR"]
    subprocess.run(["weston-screenshooter"], cwd=folder, check=True)
    taken, = glob.glob(os.path.join(folder, "wayland-screenshot-*.png"))
    shutil.move(taken, path)
    return read_ppm(subprocess.run(["convert", path, "-depth", "8", "ppm:-"], capture_output=True, check=True).stdout)


def main(quorvel, pictures, size):
    os.makedirs(pictures, exist_ok=True)
    width, height = map(int, size.split("x"))
    reader = Reader(quorvel, "--demo")
    home = reader.window(TITLE)
    reader.told("frame > host  firmware:")

    def shows_something():
        pixels = take_picture(os.path.join(pictures, f"{size}-window.png"))[2]
        return len(set(pixels[i:i + 3] for i in range(0, len(pixels), 3))) > 300
    until("the window to be seen", shows_something)
    second = subprocess.run([quorvel, "--demo"], timeout=20, check=False)
    assert second.returncode == 0, second.returncode

    reader.activate_by_action(home, "Calibration")
    reader.told("host > frame  calibration: step 1")

    def is_there():
        picture = take_picture(os.path.join(pictures, f"{size}-target.png"))
        assert picture[:2] == (width, height), picture[:2]
        centre = centre_of_white(picture, width // 8, height // 8, width // 16)
        return centre and abs(centre[0] - width // 8) <= 1 and abs(centre[1] - height // 8) <= 1
    until("the first target", is_there)
    reader.end()
    print(f"shown on {size}")


if len(sys.argv) != 4:
    sys.exit(__doc__)
main(*sys.argv[1:])
