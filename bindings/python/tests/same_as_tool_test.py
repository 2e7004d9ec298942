"""Portraits are those of the command line tool, to the last byte."""

from __future__ import annotations

import io

import numpy as np
import pytest
from PIL import Image

import orvane

SETTINGS = [
    ({}, ["--size", "480x860"]),
    ({"crop_ratio": 0.75}, ["--size", "480x860", "--crop-ratio", "0.75"]),
    ({"size": (240, 320)}, ["--size", "240x320"]),
    ({"size": (333, 401), "crop_ratio": 0.9}, ["--size", "333x401", "--crop-ratio", "0.9"]),
    ({"actions": ("colour",)}, ["--actions", "colour"]),
    ({"actions": ()}, ["--actions", "none"]),
    (
        {"actions": ["colour", "crop", "background"], "size": (480, 640)},
        ["--actions", "crop,background,colour", "--size", "480x640"],
    ),
    ({"actions": {"crop", "rotation"}}, ["--size", "480x860", "--actions", "crop,rotation"]),
    ({"size": (900, 300), "crop_ratio": 2}, ["--size", "900x300", "--crop-ratio", "2"]),
]


def pixels(file):
    return np.asarray(Image.open(file).convert("RGB"))


@pytest.mark.parametrize("settings, options", SETTINGS, ids=[" ".join(o) or "default" for _, o in SETTINGS])
def test_every_kind_gives_the_portrait_of_the_tool(photo, photo_path, tool_portrait, settings, options):
    wanted = pixels(tool_portrait(photo_path, *options))
    as_picture = orvane.Picture(photo.width, photo.height, photo.tobytes())
    for kind in (photo, np.asarray(photo), as_picture, photo_path, str(photo_path), photo_path.read_bytes()):
        portrait = orvane.portrait(kind, **settings)
        if isinstance(portrait, orvane.Picture):
            assert type(kind) is orvane.Picture
            portrait = np.frombuffer(portrait.pixels, np.uint8).reshape(portrait.height, portrait.width, 3)
        assert np.array_equal(np.asarray(portrait), wanted), type(kind)


def test_the_bitmap_file_of_the_tool_has_the_same_pixels(photo, photo_path, tool_portrait):
    file = tool_portrait(photo_path, "--size", "320x400", extension="bmp").read_bytes()
    portrait = orvane.portrait(photo, size=(320, 400))
    step = (3 * portrait.width + 3) // 4 * 4
    assert file.endswith(portrait.tobytes("raw", "BGR", step, -1))
    assert len(file) == 54 + step * portrait.height


def saved(image, tmp_path, extension, **options):
    path = tmp_path / f"photo.{extension}"
    image.save(path, **options)
    return path


def with_alpha(photo, mode):
    image = photo.convert(mode)
    alpha = Image.linear_gradient("L").resize(photo.size)
    image.putalpha(alpha)
    return image


def with_transparent_colour(photo):
    return photo.quantize(64), {"transparency": 5}


FILES = {
    "jpeg": lambda photo, folder: saved(photo, folder, "jpg", quality=92),
    "grey jpeg": lambda photo, folder: saved(photo.convert("L"), folder, "jpg"),
    "bmp": lambda photo, folder: saved(photo, folder, "bmp"),
    "tiff": lambda photo, folder: saved(photo, folder, "tiff"),
    "grey": lambda photo, folder: saved(photo.convert("L"), folder, "png"),
    "palette": lambda photo, folder: saved(photo.quantize(128), folder, "png"),
    "palette with a transparent colour": lambda photo, folder: saved(
        photo.quantize(64), folder, "png", transparency=5
    ),
    "alpha": lambda photo, folder: saved(with_alpha(photo, "RGBA"), folder, "png"),
    "grey with alpha": lambda photo, folder: saved(with_alpha(photo, "LA"), folder, "png"),
    "a transparent colour": lambda photo, folder: saved(photo, folder, "png", transparency=photo.getpixel((0, 0))),
    "16 bit": lambda photo, folder: saved(
        Image.fromarray(np.asarray(photo.convert("L")).astype(np.uint16) * 250 + 77), folder, "png"
    ),
}


@pytest.mark.parametrize("name", FILES)
def test_picture_files_are_read_as_the_tool_reads_them(photo, tmp_path, tool_portrait, name):
    file = FILES[name](photo, tmp_path)
    wanted = pixels(tool_portrait(file, "--actions", "none"))
    assert np.array_equal(np.asarray(orvane.portrait(file, actions=())), wanted)
    with Image.open(file) as image:
        assert np.array_equal(np.asarray(orvane.portrait(image, actions=())), wanted)


@pytest.mark.parametrize("orientation", range(1, 9))
def test_the_cameras_orientation_is_applied_as_the_tool_does(photo, tmp_path, tool_portrait, orientation):
    # Stored such that the noted orientation brings it upright.
    turned = {
        2: Image.FLIP_LEFT_RIGHT,
        3: Image.ROTATE_180,
        4: Image.FLIP_TOP_BOTTOM,
        5: Image.TRANSPOSE,
        6: Image.ROTATE_90,
        7: Image.TRANSVERSE,
        8: Image.ROTATE_270,
    }.get(orientation)
    narrow = photo.crop((40, 0, 424, 512))
    stored = narrow if turned is None else narrow.transpose(turned)
    exif = Image.Exif()
    exif[0x0112] = orientation
    file = saved(stored, tmp_path, "jpg", quality=95, exif=exif.tobytes())
    wanted = tool_portrait(file, "--size", "480x860")
    with Image.open(file) as image:
        portrait = orvane.portrait(image)
    assert np.array_equal(np.asarray(portrait), pixels(wanted))
    assert portrait.getexif().get(0x0112) is None


def test_a_file_in_bytes_may_be_of_any_buffer(photo, photo_path):
    stream = io.BytesIO()
    photo.save(stream, "png")
    wanted = np.asarray(orvane.portrait(photo))
    for content in (stream.getvalue(), bytearray(stream.getvalue()), stream.getbuffer()):
        assert np.array_equal(np.asarray(orvane.portrait(content)), wanted)
