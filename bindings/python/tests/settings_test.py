"""Settings: what is refused before the library is asked, and what it is told."""

from __future__ import annotations

import numpy as np
import pytest

import orvane

SMALL = np.zeros((100, 100, 3), np.uint8)

TYPE_ERRORS = [
    {"size": 480},
    {"size": None},
    {"size": (480.0, 860)},
    {"size": ("480", "860")},
    {"size": (True, 860)},
    {"actions": "crop"},
    {"actions": b"crop"},
    {"actions": None},
    {"actions": 3},
    {"actions": [0]},
    {"crop_ratio": "1"},
    {"crop_ratio": None},
    {"crop_ratio": True},
    {"crop_ratio": 1j},
    {"language": 3},
    {"language": b"german.txt"},
    {"owner": "window"},
    {"owner": 1.5},
]

VALUE_ERRORS = [
    {"size": (74, 860)},
    {"size": (480, 74)},
    {"size": (0, 0)},
    {"size": (-480, 860)},
    {"size": (32768, 860)},
    {"size": (2**40, 860)},
    {"size": (20000, 20000)},
    {"size": (480, 860, 3)},
    {"size": ()},
    {"size": "480x860"},
    {"actions": ["crop", "shine"]},
    {"actions": ["Crop"]},
    {"crop_ratio": 0},
    {"crop_ratio": -1},
    {"crop_ratio": 10.5},
    {"crop_ratio": 1e-60},
    {"crop_ratio": float("nan")},
    {"crop_ratio": float("inf")},
    {"language": ""},
    {"language": "a\0b"},
    {"owner": 0},
    {"owner": -3},
    {"owner": 2**64},
]


def ident(value):
    return repr(value)[:40]


@pytest.mark.parametrize("settings", TYPE_ERRORS, ids=ident)
def test_settings_of_a_wrong_type_are_refused(settings):
    with pytest.raises(TypeError):
        orvane.portrait(SMALL, **settings)


@pytest.mark.parametrize("settings", VALUE_ERRORS, ids=ident)
def test_absurd_settings_are_refused(settings):
    with pytest.raises(ValueError):
        orvane.portrait(SMALL, **settings)


@pytest.mark.parametrize("device, error", [(-1, ValueError), (2**31, ValueError), ("0", TypeError), (0.0, TypeError)])
def test_absurd_devices_are_refused(device, error):
    with pytest.raises(error):
        orvane.live(device)


def test_nothing_of_it_reaches_the_library(run_played):
    _, calls = run_played(
        """
        import orvane
        picture = orvane.Picture(1, 1, b"abc")
        for settings in ({"size": (1, 1)}, {"size": 3}, {"actions": ["shine"]}, {"crop_ratio": 0}, {"owner": 0}):
            try:
                orvane.portrait(picture, **settings)
            except (TypeError, ValueError):
                continue
            raise SystemExit("taken")
        """
    )
    assert calls == []


def test_numbers_of_numpy_are_numbers(small_photo, tool_size):
    portrait = orvane.portrait(small_photo, size=(np.int64(240), np.uint16(430)), crop_ratio=np.float32(1))
    assert portrait.size == tool_size(small_photo, "240x430")
    assert portrait.tobytes() == orvane.portrait(small_photo, size=[240, 430]).tobytes()


def test_the_width_is_brought_down_to_a_multiple_of_four(small_photo, tool_size):
    assert orvane.portrait(small_photo, size=(243, 430)).size == tool_size(small_photo, "240x430")


def test_a_call_is_a_session_of_its_own(run_played):
    _, calls = run_played(
        """
        import orvane
        picture = orvane.Picture(3, 2, bytes(range(18)))
        orvane.portrait(picture, size=(480, 860), actions=("rotation", "crop"), crop_ratio=0.5, language="a/b.txt",
                        owner=0x1234)
        orvane.portrait(picture, actions=[], visible=True)
        """
    )
    header = "28000000 03000000 02000000 0100 1800 00000000 18000000 " + "00000000" * 4
    rows = "0b0a09 0e0d0c 11100f 000000 020100 050403 080706 000000"
    packed = bytes.fromhex(header + rows).hex(" ")
    assert calls == [
        "InitDLL",
        "SetVisibleMode 0",
        "SetSizeOutputImage 480 860",
        "SetFaceCropRatio 0.5",
        "EnableAction 0 1",
        "EnableAction 1 0",
        "EnableAction 2 0",
        "EnableAction 3 1",
        "SetLanguageFile a/b.txt",
        "SetOwnerWindow 0x1234",
        f"DetectFacePicture 64 {packed}",
        "GetOutputImage",
        "ReleaseDLL",
        "InitDLL",
        "SetVisibleMode 1",
        "SetSizeOutputImage 480 860",
        "SetFaceCropRatio 1",
        "EnableAction 0 0",
        "EnableAction 1 0",
        "EnableAction 2 0",
        "EnableAction 3 0",
        f"DetectFacePicture 64 {packed}",
        "GetOutputImage",
        "ReleaseDLL",
    ]


def test_a_language_file_may_lie_anywhere(run_played, tmp_path):
    (tmp_path / "texts").mkdir()
    language = tmp_path / "texts" / "german.txt"
    language.write_text("3 Gut\n")
    printed, calls = run_played(
        f"""
        import os, orvane
        orvane.review(orvane.Picture(1, 1, b"abc"), language={str(language)!r})
        print(orvane.info().library.parent)
        """
    )
    (path,) = [call.split(" ", 1)[1] for call in calls if call.startswith("SetLanguageFile")]
    assert not path.startswith("/")
    assert (tmp_path.__class__(printed) / path).resolve() == language.resolve()


def test_no_call_leaves_anything_to_the_next(small_photo):
    array = np.asarray(small_photo)
    plain = orvane.portrait(array)
    for other in (
        {"actions": ("crop", "background", "colour")},
        {"size": (76, 80)},
        {"crop_ratio": 3},
        {"visible": True},
        {"actions": ()},
    ):
        orvane.portrait(array, **other)
        assert np.array_equal(orvane.portrait(array), plain), other
    with pytest.raises(orvane.NoFaceError):
        orvane.portrait(np.zeros((300, 300), np.uint8), size=(100, 100), actions=["crop", "colour"])
    assert np.array_equal(orvane.portrait(array), plain)
