#!/usr/bin/env python3
"""Draws the example skins into this folder: Ok.bmp (a tick), Cancel.xyz (an arrow back, for Clear) and Contrast.bmp
(a disc half dark, for Color Correction). Each is a 24-bit bitmap of four faces side by side: normal, hover, pressed,
disabled. White is transparent, so a button's edge is hard and only what stands on the button is smoothed."""
import math
import os
import struct

WIDTH, HEIGHT, RADIUS = 108, 28, 9
WHITE = (255, 255, 255)
# Of each face: the button's colour at its top and at its foot, its rim, and its symbol.
FACES = [
    ((88, 138, 196), (56, 104, 164), (36, 72, 120), (250, 252, 254)),
    ((110, 162, 220), (74, 126, 188), (36, 72, 120), (254, 254, 250)),
    ((46, 88, 140), (60, 108, 166), (28, 58, 98), (224, 234, 246)),
    ((204, 208, 214), (192, 196, 202), (168, 172, 178), (150, 154, 160)),
]


def inside(x, y, inset):
    """Whether a point lies in the button's rounded rectangle, `inset` pixels within its edge."""
    radius = RADIUS - inset
    dx = max(inset + radius - x, x - (WIDTH - inset - radius), 0)
    dy = max(inset + radius - y, y - (HEIGHT - inset - radius), 0)
    return dx * dx + dy * dy <= radius * radius and inset <= x <= WIDTH - inset and inset <= y <= HEIGHT - inset


def near_line(x, y, points, half):
    """Whether a point lies within `half` of a line through points."""
    for (ax, ay), (bx, by) in zip(points, points[1:]):
        length = (bx - ax) ** 2 + (by - ay) ** 2
        t = min(1, max(0, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / length))
        if math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay)) <= half:
            return True
    return False


# Symbols around the middle of a face, x to the right and y downwards.
def tick(x, y):
    return near_line(x, y, [(-7, 0), (-2, 5), (7, -5)], 1.6)


def arrow_back(x, y):
    arc = abs(math.hypot(x, y) - 6) <= 1.4 and not (x < 0 and y < 0)
    return arc or (x <= 0 and abs(y + 6) <= (x + 6) * 0.75 and x >= -6)


def half_disc(x, y):
    distance = math.hypot(x, y)
    return distance <= 7 and (x <= 0 or distance >= 5.4)


def pixel(face, symbol, column, row):
    top, foot, rim, ink = FACES[face]
    if not inside(column + 0.5, row + 0.5, 0):
        return WHITE
    if not inside(column + 0.5, row + 0.5, 1):
        return rim
    plain = [a + (b - a) * row / (HEIGHT - 1) for a, b in zip(top, foot)]
    shift = 1 if face == 2 else 0  # a pressed button gives way
    hits = sum(
        symbol(column + (i + 0.5) / 4 - WIDTH / 2 - shift, row + (j + 0.5) / 4 - HEIGHT / 2 - shift)
        for i in range(4)
        for j in range(4)
    )
    return tuple(int(p + (q - p) * hits / 16) for p, q in zip(plain, ink))


def write_strip(path, symbol):
    rows = b''
    for row in reversed(range(HEIGHT)):
        for face in range(4):
            rows += b''.join(struct.pack('BBB', *reversed(pixel(face, symbol, c, row))) for c in range(WIDTH))
    # Four faces of 108 pixels fill their rows to a multiple of 4 bytes.
    header = struct.pack('<IiiHHIIiiII', 40, 4 * WIDTH, HEIGHT, 1, 24, 0, len(rows), 0, 0, 0, 0)
    with open(path, 'wb') as file:
        file.write(b'BM' + struct.pack('<IHHI', 54 + len(rows), 0, 0, 54) + header + rows)


folder = os.path.dirname(os.path.abspath(__file__))
for name, drawn in (('Ok.bmp', tick), ('Cancel.xyz', arrow_back), ('Contrast.bmp', half_disc)):
    write_strip(os.path.join(folder, name), drawn)
