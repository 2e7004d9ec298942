#!/usr/bin/env python3
"""make_seeds.py: makes the seeds of those targets whose inputs are files, or nearly so, in fuzz/corpus.

Nothing in them was photographed; pictures are drawn here. Pillow encodes them (python3-pil). The seeds of the other
targets are inputs that the fuzzer found itself.
"""
import io
import random
import re
import struct
from pathlib import Path

from PIL import Image

CORPUS = Path(__file__).resolve().parent / "corpus"


def write(target, name, content):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content)


def drawn(width, height, mode="RGB"):
    picture = Image.new("RGB", (width, height))
    picture.putdata([(x * 255 // width, y * 255 // height, (x * y) % 256) for y in range(height) for x in range(width)])
    return picture.convert(mode)


def encoded(picture, kind, **options):
    out = io.BytesIO()
    picture.save(out, kind, **options)
    return out.getvalue()


def orientation(value):
    exif = Image.Exif()
    exif[0x0112] = value
    return exif


def pictures():
    small, strip = drawn(13, 9), drawn(32, 6)
    alpha = drawn(9, 7).convert("RGBA")
    alpha.putalpha(drawn(9, 7, "L"))
    return {
        "baseline.jpg": encoded(small, "JPEG", quality=60),
        "progressive.jpg": encoded(drawn(24, 17), "JPEG", quality=60, progressive=True),
        "restarts.jpg": encoded(drawn(40, 24), "JPEG", quality=30, restart_marker_blocks=1, subsampling=0),
        "grey.jpg": encoded(drawn(11, 8, "L"), "JPEG"),
        "cmyk.jpg": encoded(drawn(11, 8, "CMYK"), "JPEG"),
        "turned.jpg": encoded(small, "JPEG", exif=orientation(6).tobytes()),
        "colour.png": encoded(small, "PNG"),
        "alpha.png": encoded(alpha, "PNG"),
        "palette.png": encoded(drawn(9, 7).quantize(8), "PNG"),
        "two-levels.png": encoded(drawn(17, 3, "1"), "PNG"),
        "turned.png": encoded(small, "PNG", exif=orientation(8).tobytes()),
        "colour.bmp": encoded(strip, "BMP"),
        "palette.bmp": encoded(strip.quantize(4), "BMP"),
        "runs.bmp": runs_bmp(),
        "colour.tif": encoded(small, "TIFF"),
        "packed.tif": encoded(small, "TIFF", compression="packbits"),
        "turned.tif": encoded(small, "TIFF", tiffinfo={0x0112: 3}),
        "colour.gif": encoded(strip.quantize(16), "GIF"),
        "colour.webp": encoded(small, "WEBP", lossless=True),
        "colour.ppm": encoded(drawn(5, 4), "PPM"),
    }


def runs_bmp():
    """Eight by two pixels of a palette, in runs."""
    palette = b"".join(bytes((level, level, level, 0)) for level in (0, 255))
    rows = b"\x08\x01\x00\x00" + b"\x00\x03\x00\x01\x00\x00\x05\x01" + b"\x00\x01"
    header = struct.pack("<IiiHHIIiiII", 40, 8, 2, 1, 8, 1, len(rows), 0, 0, 2, 0)
    start = 14 + len(header) + len(palette)
    return b"BM" + struct.pack("<IHHI", start + len(rows), 0, 0, start) + header + palette + rows


def languages():
    return {
        "german.txt": b"1 Anhalten\n2 Weiter\n3 Ok\n4 Abbrechen\n13 Bitte klicken Sie auf das Bild\n",
        "crlf.txt": b"3 Gut\r\n\r\n  5\tFarbe\r\n14 Ende",
        "odd.txt": b"-1 none\n99 none\n99999999999999999999 none\n0\n1 next line's\n+2 plus\n\xff\n3 unread\n",
        "long.txt": b"7 " + b"x" * 1100 + b"\n8 y\n",
        "empty.txt": b"",
    }


class Row:
    """A row of choices, as fuzz/support/choices.h reads them."""

    def __init__(self):
        self.bytes = b""

    def int(self, value, low, high):
        count, size = high - low + 1, 0
        while 256**size < count:
            size += 1
        self.bytes += (value - low).to_bytes(size, "big")
        return self

    def byte(self, value):
        self.bytes += bytes([value])
        return self

    def flag(self, value):
        return self.byte(int(value))

    def text(self, text):
        self.bytes += text
        return self

    def scene(self, width, height, most, faces, noise=3):
        self.int(width, 1, most).int(height, 1, most).byte(200).int(8, 1, 32).int(0, 0, 100).int(len(faces), 0, 3)
        for side, left, bottom in faces:
            self.int(side, 8, 80).int(left, -8, most).int(bottom, -8, most)
        return self.byte(1).int(noise, -8, 40)

    # An operator's steps.
    def steps(self, count):
        return self.int(count, 0, 12)

    def press(self, x, y):
        return self.int(1, 0, 15).int(x, -20, 420).int(y, -20, 420)

    def release(self, x, y):
        return self.int(3, 0, 15).int(x, -20, 420).int(y, -20, 420)

    def number(self, rotation, value):
        return self.int(5, 0, 15).flag(not rotation).int(value, 0, 400)

    def slider(self, value):
        return self.int(6, 0, 15).int(value, -5, 105)

    def ok(self):
        return self.int(9, 0, 15)

    def turn(self, button):
        return self.int(10, 0, 15).int(button, 0, 3)

    def pump(self):
        return self.int(8, 0, 15)


def packed_bitmaps():
    def session(slots, visible, kind, faces):
        row = Row().int(0, 0, 15).int(slots, 0, 63).int(120, 60, 260).int(160, 60, 260).flag(0).flag(visible)
        if not visible:
            row.flag(0)
        return row.int(kind, 0, 7).scene(48, 60, 64, faces)

    face = [(24, 12, 20)]
    turned = session(63, True, 0, face).steps(6).pump().ok().slider(70).number(True, 45).turn(2).ok()
    marked = session(15, True, 0, []).steps(6).pump().press(60, 60).release(200, 220).ok().number(False, 20).ok()
    return {
        "hidden": session(63 - 16, False, 0, face).bytes,
        "crop": session(1, False, 0, face).bytes,
        "no-face": session(15, False, 0, []).bytes,
        "top-down": session(15, False, 5, face).bytes,
        "turned": turned.bytes,
        "marked": marked.bytes,
    }


def calls():
    row = Row().flag(1).int(1, 0, 7).int(1, 0, 7).int(1, 0, 7).flag(1).int(1, 0, 3)
    row.int(0, 0, 15).int(0, 0, 15)  # opens, with a small preview
    row.int(2, 0, 15).flag(1).int(1, 0, 7)  # texts
    row.int(5, 0, 15).flag(1).int(120, 70, 200).int(160, 70, 200)
    row.int(7, 0, 15).flag(1).int(-1, -2, 7).byte(100).int(1, -300, 3000)  # all slots
    row.int(11, 0, 15).int(0, 0, 3).int(0, 0, 7).scene(48, 60, 64, [(24, 12, 20)])  # a block
    detect = row.bytes + Row().int(13, 0, 15).int(1, 0, 3).int(2, 0, 15).int(0, 0, 3).bytes
    detect += Row().steps(3).pump().ok().turn(3).flag(0).steps(1).ok().bytes
    live = row.bytes + Row().int(9, 0, 15).flag(1).int(0, -1, 3).int(9, 0, 15).flag(1).int(1, -1, 3).bytes
    return {"detect": detect, "live": live + bytes([1]), "release": row.bytes + bytes([1, 8, 9])}


def live_sessions():
    def begin(slots):
        row = Row().int(100, 70, 160).int(120, 70, 160)
        for _ in range(4):  # a window that opens
            row.int(0, 0, 7)
        return row.int(1, 1, 3).int(slots, 0, 15).int(0, 0, 3).flag(0).int(0, 0, 7).int(0, 0, 7)

    def step(row, kind):
        return row.int(kind, 0, 8)

    def alone(row):  # no operator
        return row.int(0, 0, 3)

    def picture(row, faces, cut=None):
        step(row, 0).byte(200).int(len(faces), 0, 2)
        for left, bottom, side in faces:
            row.int(left, -8, 90).int(bottom, -8, 90).int(side, 8, 70)
        return alone(row.flag(0) if cut is None else row.flag(1).int(cut, 0, 24000))

    def round_of(row, faces):
        alone(step(picture(row, faces), 3))
        return alone(step(row, 5).int(0, 0, 3))

    accepted = begin(15)
    round_of(round_of(accepted, [(30, 20, 30)]), [(40, 24, 30)])
    alone(step(accepted, 3)).int(0, 0, 8).byte(0).int(0, 0, 2).flag(0).int(3, 0, 3)
    accepted.steps(5).ok().slider(60).number(True, 30).turn(1).ok()

    held = round_of(begin(1), [(30, 20, 30)])
    alone(step(held, 7).flag(1))
    alone(step(held, 3))
    alone(step(held, 7).flag(0))
    picture(held, [], 900)
    alone(step(held, 8))
    alone(step(held, 3))
    step(held, 5).int(3, 0, 3).byte(90).int(0, 0, 2).flag(0).flag(1).flag(1)

    lost = round_of(begin(0), [(30, 20, 30)])
    for _ in range(9):
        round_of(lost, [])
    return {"accepted": accepted.bytes, "held": held.bytes, "lost": lost.bytes}


def classifiers():
    row = Row().int(0, 0, 2).int(0, 0, 4).int(0, 0, 2).int(0, 0, 2).scene(60, 60, 96, [(30, 12, 14)])
    built = row.bytes + Row().int(2, 0, 3).bytes + bytes(range(3, 123))
    lying = row.bytes + Row().int(1, 0, 3).int(1, 0, 4).bytes + bytes([5, 200, 0, 0, 0, 9])
    return {"faces": row.bytes + b"\x01", "built": built, "lying": lying}


def primitives():
    """One of each, and some more of those that have many ways to go; what follows the head is any."""
    entries = (CORPUS.parent.parent / "primitives" / "entries.h").read_text(encoding="utf-8")
    names = re.findall(r"X\((prim\w+)\)", entries)
    seeds = {}
    for index, name in enumerate(names):
        for variant in range(6 if "Resize" in name or "Rotate_" in name else 1):
            chance = random.Random(16 * index + variant)
            seeds[f"{name}-{variant}"] = bytes([index, variant, 7, 0, 0]) + chance.randbytes(59)
    return seeds


def journals():
    entry = struct.pack(">IIB", 1, 2, 3) + b"\x02ok" + b"\x04a.jpg"
    lines = bytes([0, 3]) + b"\x02" + entry + b"\x00\x05spoil" + b"\x01\x02" + b"\x01\0\0\0\1" * 3 + b"\x00" + entry
    rows = bytes([1, 1, 1]) + (b"\x05" + b"\x02ab\x09\x01\x00\x01\x01\x05p.png\x00\x00" * 2) * 3
    return {"lines": lines, "table": b"\x01" + rows, "objects": b"\x02" + rows}


def main():
    for name, content in pictures().items():
        write("picture_file", name, content)
        if not name.endswith((".tif", ".ppm")):
            write("skin", name, b"\x00\xff\xff\xff" + content)
    for name, content in languages().items():
        write("language", name, content)
    for target, make in (("packed_bitmap", packed_bitmaps), ("calls", calls), ("live_steps", live_sessions),
                         ("classifier", classifiers), ("journal", journals), ("primitives", primitives)):
        for name, content in make().items():
            write(target, name, content)


main()
