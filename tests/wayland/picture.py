# SPDX-License-Identifier: GPL-3.0-or-later

"""What is seen in a picture."""


def read_ppm(data):
    """Its width, its height and its pixels, three bytes each."""
    head, size, most, pixels = data.split(b"\n", 3)
    assert (head, most) == (b"P6", b"255"), (head, most)
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
