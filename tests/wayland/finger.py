# SPDX-License-Identifier: GPL-3.0-or-later

"""A pointer on a compositor that knows wlroots' virtual pointers, as a device of its own."""

import os
import socket
import struct
import time

# In the order in which they are made, as the protocol wants it.
DISPLAY, REGISTRY, CALLBACK, MANAGER, POINTER = 1, 2, 3, 4, 5
BUTTON_LEFT = 0x110
PARTS = 100  # of a logical pixel that places are told in


class Finger:
    """Touches places of the layout, in logical pixels."""

    def __init__(self, width, height):
        """Of the whole layout."""
        self.extent = (width, height)
        self.line = socket.socket(socket.AF_UNIX)
        self.line.settimeout(10)
        self.line.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], os.environ["WAYLAND_DISPLAY"]))
        self.send(DISPLAY, 1, struct.pack("=I", REGISTRY))
        self.send(DISPLAY, 0, struct.pack("=I", CALLBACK))
        for name, interface, version in self.globals():
            if interface == "zwlr_virtual_pointer_manager_v1":
                text = interface.encode() + b"\0"
                text += b"\0" * (-len(text) % 4)
                self.send(REGISTRY, 0, struct.pack("=II", name, len(interface) + 1) + text
                          + struct.pack("=II", version, MANAGER))
                self.send(MANAGER, 0, struct.pack("=II", 0, POINTER))
                return
        raise RuntimeError("the compositor knows no virtual pointers")

    def globals(self):
        found = []
        waiting = b""
        while True:
            heard = self.line.recv(65536)
            if not heard:
                raise RuntimeError("the compositor has hung up")
            waiting += heard
            while len(waiting) >= 8:
                sender, head = struct.unpack_from("=II", waiting)
                size = head >> 16
                if len(waiting) < size:
                    break
                body, waiting = waiting[8:size], waiting[size:]
                if sender == CALLBACK:
                    return found
                if sender == REGISTRY and head & 0xFFFF == 0:
                    name, length = struct.unpack_from("=II", body)
                    version = struct.unpack_from("=I", body, 8 + (length + 3) // 4 * 4)[0]
                    found.append((name, body[8:8 + length - 1].decode(), version))

    def send(self, target, request, body):
        self.line.sendall(struct.pack("=II", target, (8 + len(body)) << 16 | request) + body)

    def now(self):
        return int(time.monotonic() * 1000) & 0xFFFFFFFF

    def go_to(self, x, y):
        self.send(POINTER, 1, struct.pack("=IIIII", self.now(), round(x * PARTS), round(y * PARTS),
                                          self.extent[0] * PARTS, self.extent[1] * PARTS))
        self.send(POINTER, 4, b"")

    def touch(self, x, y):
        self.go_to(x, y)
        time.sleep(0.05)
        for state in (1, 0):
            self.send(POINTER, 2, struct.pack("=III", self.now(), BUTTON_LEFT, state))
            self.send(POINTER, 4, b"")
            time.sleep(0.05)
