#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""surfaces.py QUORVEL WORDS: what the program tells of the link on each surface of its main window,
once the status line has those words in its description. Prints a JSON object.
"""

import json
import subprocess
import sys

from reader import Atspi, Reader, until, walk

# Emulated machines are slow.
PATIENCE = 90


def labels(window):
    window.clear_cache()
    return [control for _, control in walk(window) if control.get_role_name() == "label"]


def main():
    reader = Reader(sys.argv[1])
    window = reader.window("Quorvel")

    def status_line():
        return next((label for label in labels(window) if sys.argv[2] in label.get_description()), None)
    line = until(f"{sys.argv[2]!r} in the status line", status_line, PATIENCE)
    told = {"status": line.get_name(), "description": line.get_description()}

    place = Atspi.Component.get_extents(line, Atspi.CoordType.SCREEN)

    def tip():
        # The pointer has to come to rest there once the window is.
        subprocess.run(["xdotool", "mousemove_relative", "--sync", "1", "0", "mousemove",
                        str(place.x + place.width // 2), str(place.y + place.height // 2),
                        "sleep", "2"], check=True)
        return [shown.get_name() for shown in reader.windows() if shown.get_role_name() == "tool tip"]
    told["tip"] = until("the tool tip", tip, PATIENCE)[0]

    title = "Details" if reader.look(window, "Details") else "What to do next"
    reader.activate_by_action(window, title)
    box = reader.window(title)
    told["window"] = until("words in the window", lambda: [text.get_name() for text in labels(box) if text.get_name()])[0]

    reader.end()
    with open(reader.errors.name) as errors:
        told["errors"] = errors.read()
    print(json.dumps(told))


main()
