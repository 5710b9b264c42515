# SPDX-License-Identifier: GPL-3.0-or-later

"""What Sway shows, and where."""

import json
import os
import subprocess


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


def is_focused(title):
    def look(node):
        return node["focused"] and node["name"] == title or any(
            look(child) for child in node["nodes"] + node["floating_nodes"])
    return look(sway("-t", "get_tree"))


def keep(folder, name, output="HEADLESS-1"):
    """A picture of an output."""
    os.makedirs(folder, exist_ok=True)
    subprocess.run(["grim", "-o", output, os.path.join(folder, name + ".png")], check=True)
