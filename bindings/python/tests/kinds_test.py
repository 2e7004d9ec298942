"""What is taken, what comes back, and what is refused before the library is asked."""

from __future__ import annotations

import pickle

import numpy as np
import pytest
from PIL import Image

import orvane
from orvane._numpy import array_from_rows, rows_from_array
from orvane._pillow import image_from_rows, rows_from_image
from orvane.picture import picture_from_rows, rows_from_picture

NONE = {"actions": ()}


def test_a_pillow_image_gives_one_and_stays_as_it_is(small_photo, tool_size):
    before = small_photo.tobytes()
    portrait = orvane.portrait(small_photo)
    assert isinstance(portrait, Image.Image) and portrait.mode == "RGB"
    assert portrait.size == tool_size(small_photo)
    assert small_photo.tobytes() == before


def test_an_array_gives_one_that_is_the_callers_own(small_photo, tool_size):
    array = np.asarray(small_photo)
    portrait = orvane.portrait(array)
    width, height = tool_size(small_photo)
    assert portrait.dtype == np.uint8 and portrait.shape == (height, width, 3)
    assert portrait.flags.c_contiguous and portrait.flags.writeable and portrait.flags.owndata


STRIDES = {
    "reversed twice": lambda a: np.ascontiguousarray(a[::-1, ::-1])[::-1, ::-1],
    "columns first": lambda a: np.asfortranarray(a),
    "every second of a double": lambda a: a.repeat(2, 0).repeat(2, 1)[::2, ::2],
    "a window of a larger one": lambda a: np.pad(a, ((3, 5), (7, 2), (0, 0)))[3:-5, 7:-2],
    "channels first, turned": lambda a: np.ascontiguousarray(a.transpose(2, 0, 1)).transpose(1, 2, 0),
    "blue first, turned": lambda a: np.ascontiguousarray(a[:, :, ::-1])[:, :, ::-1],
    "read only": lambda a: np.frombuffer(a.tobytes(), np.uint8).reshape(a.shape),
    "three of four channels": lambda a: np.dstack([a, a[:, :, :1]])[:, :, :3],
}


@pytest.mark.parametrize("name", STRIDES)
def test_arrays_of_all_strides_give_the_same(small_photo, name):
    array = np.asarray(small_photo)
    other = STRIDES[name](array)
    assert np.array_equal(other, array)
    assert np.array_equal(orvane.portrait(other), orvane.portrait(array))


def test_grey_arrays_are_grey_in_all_channels(small_photo):
    grey = np.asarray(small_photo.convert("L"))
    wanted = orvane.portrait(np.dstack([grey] * 3))
    assert np.array_equal(orvane.portrait(grey), wanted)
    assert np.array_equal(orvane.portrait(grey[:, :, np.newaxis]), wanted)


@pytest.mark.parametrize("dtype", [bool, np.int8, np.uint16, np.int32, np.float32, np.float64, object])
def test_arrays_of_other_types_are_refused(dtype):
    with pytest.raises(TypeError, match="uint8"):
        orvane.portrait(np.zeros((100, 100, 3), dtype))


@pytest.mark.parametrize("shape", [(100,), (100, 100, 2), (100, 100, 4), (3, 100, 100), (1, 100, 100, 3), ()])
def test_arrays_of_other_shapes_are_refused(shape):
    with pytest.raises(ValueError, match="height x width"):
        orvane.portrait(np.zeros(shape, np.uint8))


@pytest.mark.parametrize("shape", [(0, 100, 3), (100, 0, 3), (0, 0), (32768, 2), (2, 32768), (20000, 20000)])
def test_arrays_of_absurd_sizes_are_refused(shape):
    array = np.broadcast_to(np.zeros((1,) * len(shape), np.uint8), shape)  # has no pixels of its own
    with pytest.raises(ValueError, match="pixels is"):
        orvane.portrait(array)


@pytest.mark.parametrize("width", range(77, 85))
def test_widths_of_all_paddings_survive_the_way_in_and_out(width):
    rng = np.random.default_rng(7)
    array = rng.integers(0, 256, (61, width, 3), np.uint8)
    image = Image.fromarray(array)
    picture = orvane.Picture(width, 61, array.tobytes())
    rows = rows_from_array(array)
    assert bytes(rows.data) == bytes(rows_from_image(image).data) == bytes(rows_from_picture(picture).data)
    assert np.array_equal(array_from_rows(rows), array)
    assert image_from_rows(rows).tobytes() == array.tobytes()
    assert picture_from_rows(rows) == picture


def test_a_closed_image_is_refused(photo_path, small_photo):
    lazy = Image.open(photo_path)
    lazy.close()
    loaded = small_photo.copy()
    loaded.close()
    for image in (lazy, loaded):
        with pytest.raises(ValueError, match="closed"):
            orvane.portrait(image)


MODES = ["1", "L", "P", "RGB", "RGBA", "RGBX", "CMYK", "YCbCr", "HSV", "LAB", "LA", "PA", "La", "RGBa"]
MODES += ["I", "I;16", "I;16B"]


@pytest.mark.parametrize("mode", MODES)
def test_images_of_all_modes_are_taken(photo, mode):
    through = {"La": "LA", "RGBa": "RGBA", "LA": "L"}.get(mode)
    if mode.startswith("I"):
        levels = np.asarray(photo.convert("L")).astype(np.uint16) * 256 + 99
        image = Image.fromarray(levels.astype(np.int32), "I")
        if mode != "I":
            data = levels.astype(">u2" if mode.endswith("B") else "<u2").tobytes()
            image = Image.frombytes(mode, photo.size, data)
        wanted = photo.convert("L").convert("RGB")
    else:
        image = photo.convert("P" if mode == "PA" else through or "RGB").convert(mode)
        wanted = image.convert(through or "RGB").convert("RGB")
    assert image.mode == mode
    if mode != "1":  # too coarse for a face
        portrait = orvane.portrait(image, **NONE)
        assert portrait.mode == "RGB"
        assert portrait.tobytes() == orvane.portrait(wanted, **NONE).tobytes()
    assert rows_from_image(image) == rows_from_image(wanted)


def test_images_without_a_scale_are_refused():
    with pytest.raises(TypeError, match="mode F"):
        orvane.portrait(Image.new("F", (200, 200)))


def test_what_is_transparent_is_white(photo):
    image = photo.convert("RGBA")
    image.paste((0, 0, 0, 0), (0, 0, 100, 512))
    white = photo.copy()
    white.paste((255, 255, 255), (0, 0, 100, 512))
    assert orvane.portrait(image, **NONE).tobytes() == orvane.portrait(white, **NONE).tobytes()


def test_broken_notes_of_the_camera_are_no_obstacle(small_photo):
    image = small_photo.copy()
    image.info["exif"] = b"Exif\0\0nonsense"
    assert orvane.portrait(image).tobytes() == orvane.portrait(small_photo).tobytes()


@pytest.mark.parametrize("thing", [None, 7, 2.5, [[1, 2]], object(), {"a": 1}, Image])
def test_what_is_no_picture_is_refused(thing):
    with pytest.raises(TypeError, match="a picture is"):
        orvane.portrait(thing)


def test_files_that_are_not_there_or_no_pictures_are_told_by_pillow(tmp_path):
    with pytest.raises(FileNotFoundError):
        orvane.portrait(tmp_path / "nothing.png")
    (tmp_path / "text.png").write_text("no picture")
    with pytest.raises(OSError):
        orvane.portrait(tmp_path / "text.png")
    with pytest.raises(OSError):
        orvane.portrait(b"no picture")


def test_a_picture_takes_what_fits():
    picture = orvane.Picture(2, 1, bytearray(b"abcdef"))
    assert (picture.width, picture.height, picture.pixels) == (2, 1, b"abcdef")
    assert picture == orvane.Picture(2, 1, memoryview(b"abcdef")) != orvane.Picture(1, 2, b"abcdef")
    assert hash(picture) == hash(orvane.Picture(2, 1, b"abcdef"))
    assert pickle.loads(pickle.dumps(picture)) == picture
    assert repr(picture) == "<orvane.Picture 2x1>"
    assert picture != "picture"
    with pytest.raises(AttributeError):
        picture.width = 3


@pytest.mark.parametrize(
    "arguments, error",
    [
        ((2, 1, b"abcde"), ValueError),
        ((2, 1, b"abcdefg"), ValueError),
        ((0, 1, b""), ValueError),
        ((-1, -1, b"abc"), ValueError),
        ((40000, 1, b""), ValueError),
        ((2.0, 1, b"abcdef"), TypeError),
        (("2", 1, b"abcdef"), TypeError),
        ((2, 1, "abcdef"), TypeError),
        ((2, 1, 6), TypeError),
        ((2, 1, None), TypeError),
    ],
)
def test_a_picture_refuses_what_does_not_fit(arguments, error):
    with pytest.raises(error):
        orvane.Picture(*arguments)
