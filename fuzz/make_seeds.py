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

from PIL import Image, ImageCms

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
        "restarts.jpg": restarts_jpg(),
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


def told_pictures():
    """Pictures whose files tell more than pixels, and profiles alone."""
    small = drawn(13, 9)
    return {
        "density.jpg": encoded(small, "JPEG", quality=60, dpi=(300, 200), exif=camera().tobytes()),
        "density.png": encoded(small, "PNG", dpi=(300, 300), exif=camera().tobytes()),
        "density.tif": encoded(small, "TIFF", dpi=(72, 72), tiffinfo={0x0110: "camera"}),
        "density.bmp": encoded(small, "BMP", dpi=(96, 96)),
        "srgb.icc": srgb_profile(),
        "wide.icc": wide_profile(),
        "grey.icc": grey_profile(),
        "wide.jpg": encoded(drawn(8, 8), "JPEG", quality=60, icc_profile=wide_profile()),
        "wide.png": encoded(small, "PNG", icc_profile=wide_profile()),
        "wide.tif": encoded(drawn(8, 8), "TIFF", icc_profile=wide_profile()),
        "grey-profile.jpg": encoded(drawn(11, 8, "L"), "JPEG", icc_profile=grey_profile()),
        "grey-profile.png": encoded(drawn(9, 7, "LA"), "PNG", icc_profile=grey_profile()),
        "wrong-profile.jpg": encoded(small, "JPEG", quality=60, icc_profile=grey_profile()),
        "inks.jpg": encoded(drawn(11, 8, "CMYK"), "JPEG", quality=60, icc_profile=ink_profile()),
        "parts.jpg": parted(encoded(drawn(8, 8), "JPEG", quality=60), wide_profile()),
        "frames.png": frames_png(),
        "frames.webp": encoded(small, "WEBP", lossless=True, save_all=True, append_images=[drawn(13, 9, "L")]),
        "spoilt.jpg": spoilt(encoded(drawn(40, 24), "JPEG", quality=30)),
        "contradicting.jpg": contradicting(encoded(drawn(8, 8), "JPEG", quality=60)),
        "junk.jpg": with_junk(encoded(drawn(40, 24), "JPEG", quality=30, dpi=(90, 90), exif=orientation(6))),
    }


def contradicting(jpeg):
    """The second of two parts of a profile, a segment of something else, a part that tells of a gigabyte."""
    for content in (b"ICC_PROFILE\0\1\x55VWXY" + bytes(168), b"x" * 186,
                    b"ICC_PROFILE\0\2\2" + struct.pack(">I", 272) + bytes(168)):
        jpeg = jpeg[:2] + b"\xFF\xE2" + struct.pack(">H", len(content) + 2) + content + jpeg[2:]
    return jpeg


def with_junk(jpeg):
    """Bytes that belong to no segment, before the one that tells how the camera was held."""
    at = jpeg.index(b"\xff\xe1")
    return jpeg[:at] + b"junk\xff\0" + jpeg[at:]


def camera():
    exif = Image.Exif()
    exif[0x010F], exif[0x0110], exif[0x8298] = "maker", "camera", "rights"
    exif.get_ifd(0x8769).update({0x829A: (1, 60), 0x8827: 100, 0x9003: "2026:11:22 10:00:00", 0x9000: b"0230"})
    return exif


def xyz(*values):
    return b"XYZ \0\0\0\0" + struct.pack(">3i", *(round(value * 65536) for value in values))


def curve(power):
    return b"curv\0\0\0\0" + struct.pack(">IHH", 1, round(power * 256), 0)


def profile(space, tags, kind=b"mntr", connection=b"XYZ "):
    names, contents, start = b"", b"", 132 + 12 * len(tags)
    for name, content in tags:
        names += name.encode() + struct.pack(">II", start + len(contents), len(content))
        contents += content + bytes(-len(content) % 4)
    light = struct.pack(">3i", *(round(value * 65536) for value in (0.9642, 1, 0.8249)))
    head = struct.pack(">IIII", start + len(contents), 0, 0x02100000, 0)[:12] + kind + space.encode() + connection
    head += struct.pack(">6H", 2026, 1, 1, 0, 0, 0) + b"acsp" + bytes(28) + light
    return head.ljust(128, b"\0") + struct.pack(">I", len(tags)) + names + contents


def srgb_profile():
    made = ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes()
    return made[:24] + bytes(12) + made[36:]  # without the hour


def wide_profile():
    colours = (0.5151, 0.2412, -0.0011), (0.2920, 0.6922, 0.0419), (0.1571, 0.0666, 0.7841)
    tags = [("wtpt", xyz(0.9642, 1, 0.8249))]
    for letter, colour in zip("rgb", colours):
        tags += (letter + "XYZ", xyz(*colour)), (letter + "TRC", curve(2.2))
    return profile("RGB ", tags)


def grey_profile():
    return profile("GRAY", (("wtpt", xyz(0.9642, 1, 0.8249)), ("kTRC", curve(1.8))))


def ink_profile():
    """Two steps of each of four inks, as lightness and colours."""
    ends = b"".join(struct.pack(">3H", 0xFF00 - 0x3800 * inks.bit_count(), 0x8000, 0x8000) for inks in range(16))
    ramp = b"\0\0\xFF\xFF"
    matrix = struct.pack(">9i", *(65536 if n % 4 == 0 else 0 for n in range(9)))
    table = b"mft2\0\0\0\0" + bytes((4, 3, 2, 0)) + matrix + struct.pack(">HH", 2, 2) + ramp * 4 + ends + ramp * 3
    return profile("CMYK", (("A2B0", table), ("A2B1", table)), b"prtr", b"Lab ")


def parted(jpeg, whole):
    """The profile in two segments, the second one first."""
    half = len(whole) // 2
    for number, part in ((1, whole[:half]), (2, whole[half:])):
        content = b"ICC_PROFILE\0" + bytes((number, 2)) + part
        jpeg = jpeg[:2] + b"\xFF\xE2" + struct.pack(">H", len(content) + 2) + content + jpeg[2:]
    return jpeg


def frames_png():
    return encoded(drawn(9, 7), "PNG", save_all=True, append_images=[drawn(9, 7, "L").convert("RGB")])


def spoilt(jpeg):
    """Without some of its coded bytes."""
    return jpeg[:-60] + jpeg[-20:]


def restarts_jpg():
    """Blocks that begin anew each: the coded bytes of a picture a block are those of a part between two marks."""
    def split(picture):
        jpeg = encoded(picture, "JPEG", quality=30)
        scan = jpeg.index(b"\xFF\xDA")
        return jpeg[:scan], jpeg[scan:scan + 10], jpeg[scan + 10:-2]

    whole = drawn(80, 8, "L")
    parts = [split(whole.crop((x, 0, x + 8, 8)))[2] for x in range(0, 80, 8)]
    coded = parts[0] + b"".join(bytes((0xFF, 0xD0 + n % 8)) + part for n, part in enumerate(parts[1:]))
    head, scan, _ = split(whole)
    return head + b"\xFF\xDD\0\4\0\1" + scan + coded + b"\xFF\xD9"


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
    def session(slots, visible, kind, faces, size=(48, 60, 64)):
        row = Row().int(0, 0, 15).int(slots, 0, 63).int(120, 60, 260).int(160, 60, 260).flag(0).flag(visible)
        if not visible:
            row.flag(0)
        return row.int(kind, 0, 7).scene(*size, faces)

    face = [(24, 12, 20)]
    turned = session(63, True, 0, face).steps(6).pump().ok().slider(70).number(True, 45).turn(2).ok()
    turned_away = session(40, True, 0, face, (48, 48, 64)).steps(4).pump().ok().number(True, 45).ok()
    marked = session(15, True, 0, []).steps(6).pump().press(60, 60).release(200, 220).ok().number(False, 20).ok()
    return {
        "hidden": session(63 - 16, False, 0, face).bytes,
        "crop": session(1, False, 0, face).bytes,
        "no-face": session(15, False, 0, []).bytes,
        "top-down": session(15, False, 5, face).bytes,
        "turned": turned.bytes,
        "turned-away": turned_away.bytes,
        "marked": marked.bytes,
        "medium": session(63 - 16, False, 0, [(70, 120, 130)], (310, 330, 340)).byte(24).bytes,
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


def documents():
    """Two places of a square and how it is filled, then a table as it stands or of choices."""
    def near(left, top):
        return Row().flag(1).int(64, 1, 64).int(16, 1, 64).int(left, -16, 80).int(top, -16, 80).bytes

    far = Row().flag(0).int(2000, 1, 32767).int(20, 1, 64).int(-4, -16, 80).int(50, -16, 80).bytes
    head = near(24, 20) + far

    def given(table, fill=0, ratio=1, places=head):
        return places + Row().int(fill, 0, 1).int(ratio, 0, 7).int(64, 1, 640).flag(0).bytes + table

    shipped = (CORPUS.parent.parent / "data" / "documents.toml").read_bytes()
    rows = [b"[" + row for row in shipped.split(b"\n[")[1:]]
    own = b'[own]\ntitle = "t"\nauthority = "a"\nsource = "s"\nread = 2026-11-22\nwidth = 12\nheight = 15\n'
    every = own + b"resolution = 72\nhead = { from = 9, to = 11 }\nhead-top = \"hair\"\neyes = { from = 6 }\n"
    every += b'above = { to = 3 }\nbackground = "white"\nedits = "forbidden"\nleast-kb = 1\nmost-kb = 9\n'
    every += b'remarks = [ "one", "two" ]\n'
    wrong = {
        "none": b"", "no-toml": b"[own\n", "no-document": b"own = 1\n", "name": b"[Own]\n", "no-title": b"[own]\n",
        "text": b'[own]\ntitle = "a\\nb"\n', "day": own.replace(b"2026", b"1026"),
        "width": own.replace(b"12\n", b"4\n"),
        "key": own + b"hat = 1\n", "band": own + b"head = {}\n", "end": own + b"head = { at = 1 }\n",
        "upside-down": own + b"head = { from = 3, to = 2 }\n", "beyond": own + b"eyes = { from = 3, to = 16 }\n",
        "word": own + b'background = "red"\n', "kilobytes": own + b"least-kb = 1.5\n",
        "remarks": own + b"remarks = 1\n", "floor": own + b"least-kb = 3\nmost-kb = 2\n",
        "mark": b"[#own]\n", "letter": own + "größe = 1\n".encode(), "head": own + b"head = { from = 0, to = 0 }\n",
        "pixels": own.replace(b"12\n", b"999\n") + b"resolution = 2400\n",
    }
    seeds = {f"wrong-{name}": given(table) for name, table in wrong.items()}
    seeds.update({f"shipped-{n}": given(row, n % 2) for n, row in enumerate(rows[:12:3])})
    seeds.update({"one": given(own), "every": given(every, 1), "ratio": given(every, 0, 0)})
    seeds["both"] = given(every + own.replace(b"own", b"other"))
    edges = ((24, 14), (24, 5), (24, 34), (24, 60), (14, 20), (-16, 20), (36, 20), (80, 20))
    edges += (24, 26), (24, 28), (24, 30), (24, 32), (24, 37), (24, 40)
    for n, (one, other) in enumerate(zip(edges[::2], edges[1::2])):
        seeds[f"edge-{n}"] = given(every, n % 2, 1, near(*one) + near(*other))
    chance = random.Random(1)
    seeds.update({f"chosen-{n}": head + bytes((n % 2, 1 + n % 3, 0, 64, 1)) + chance.randbytes(160) for n in range(8)})
    return seeds


def corrections():
    names = b"photograph,x,y,width,height\n"

    def selected(*paths):
        row = Row().int(len(paths), 0, 4)
        for path in paths:
            row.int(path, 0, 4).int(1, 0, 3)
        return row.bytes

    run = selected(0, 1, 2)
    chance = random.Random(2)
    tables = {
        "faces": names + b"~/a,1,2,3,4\n~/./b,-5,6,7,8\n",
        "twice": names + b"~/a,1,2,3,4\n~/link,5,6,7,8\n",
        "stranger": b"\xEF\xBB\xBFx,y,note,width,height,photograph\r\n1,2,,3,4,~/none\r\n\r\n1,2,\"a\"\"\nb\",3,4,~/b",
        "wrong": names + b"~/a,1,2,3\n,1,2,3,4\n~/a,1,2,0,4\n~/a,1,2,3,4\n~/a,1,2,3,4\n\"b",
        "columns": b"photo,x,y\n",
        "empty": b"",
    }
    seeds = {name: run + b"\x00" + table for name, table in tables.items()}
    seeds["third-name"] = selected(0, 2) + b"\x00" + names + b"~/link,1,2,3,4\n~/./a,5,6,7,8\n"
    seeds.update({f"chosen-{n}": run + b"\x01" + chance.randbytes(96) for n in range(4)})
    return seeds


def portrait_files():
    def portrait(kind, quality=None, dpi=None, least=None, most=None, keep=False, size=(24, 30), noise=60):
        row = Row().int(kind, 0, 3).int(size[0], 1, 48).int(size[1], 1, 48).byte(5).byte(3)
        row.flag(1).byte(noise).byte(7)
        row.flag(quality is not None)
        if quality is not None:
            row.int(quality, 1, 100)
        row.flag(0).flag(dpi is not None)
        if dpi is not None:
            row.int(dpi, 36, 2400)
        row.flag(least is not None)
        if least is not None:
            row.int(1, 0, 7).int(least, 1, 6000)
        row.flag(most is not None)
        if most is not None:
            row.int(most - (least or 0), 1, 8000)
        return row.flag(keep).bytes + (camera().tobytes()[6:] if keep else b"")

    jpeg, png, bmp, tiff = range(4)
    return {
        "plain.jpg": portrait(jpeg), "quality.jpg": portrait(jpeg, 40, 300, keep=True),
        "below.jpg": portrait(jpeg, most=1200, noise=255), "far-below.jpg": portrait(jpeg, most=700, noise=255),
        "above.jpg": portrait(jpeg, 20, least=1500, most=4000, noise=255), "padded.jpg": portrait(jpeg, least=5999),
        "too-small.jpg": portrait(jpeg, most=100), "window.jpg": portrait(jpeg, 10, least=1500, most=1502),
        "png": portrait(png, None, 299, 5000, 6000, True), "too-small.png": portrait(png, most=90, noise=255),
        "quality.png": portrait(png, 50), "bmp": portrait(bmp, None, 72), "floor.bmp": portrait(bmp, least=9),
        "tiff": portrait(tiff, None, 600), "metadata.tiff": portrait(tiff, keep=True),
        "one-pixel.jpg": portrait(jpeg, 100, size=(1, 1)),
    }


def main():
    for name, content in pictures().items():
        write("picture_file", name, content)
        if not name.endswith((".tif", ".ppm")):
            write("skin", name, b"\x00\xff\xff\xff" + content)
    for name, content in told_pictures().items():
        write("picture_file", name, content)
    for name, content in languages().items():
        write("language", name, content)
    for target, make in (("packed_bitmap", packed_bitmaps), ("calls", calls), ("live_steps", live_sessions),
                         ("classifier", classifiers), ("journal", journals), ("primitives", primitives),
                         ("documents", documents), ("corrections", corrections), ("portrait_file", portrait_files)):
        for name, content in make().items():
            write(target, name, content)


main()
