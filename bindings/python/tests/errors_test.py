"""Every result code is an exception of its own, and nothing but the twelve functions decides which."""

from __future__ import annotations

import pickle

import numpy as np
import pytest

import orvane

BY_CODE = {
    10: orvane.NoFaceError,
    20: orvane.CancelledError,
    -1: orvane.LockError,
    -10: orvane.BadArgumentError,
    -30: orvane.CaptureError,
    -40: orvane.StepError,
    -50: orvane.OutOfMemoryError,
    -60: orvane.NoPictureError,
    -70: orvane.NoClassifierError,
    -80: orvane.NoSessionError,
}

TELL = """
    import orvane
    try:
        {call}
    except orvane.OrvaneError as error:
        print(type(error).__name__, error.code, "|", error)
    else:
        print("no error")
"""


def told(run_played, call, **results):
    printed, calls = run_played(TELL.format(call=call), **results)
    assert calls.count("InitDLL") == calls.count("ReleaseDLL") == 1  # whatever happens the session is closed
    name_and_code, _, message = printed.partition(" | ")
    return name_and_code, message


@pytest.mark.parametrize("code", BY_CODE)
@pytest.mark.parametrize("call", ['orvane.portrait(orvane.Picture(1, 1, b"abc"))', "orvane.live()"])
def test_every_result_of_a_detect_call_is_its_exception(run_played, code, call):
    function = "orv_DetectFaceLive" if "live" in call else "orv_DetectFacePicture"
    # A picture of another size than asked: nobody marked a face.
    name, message = told(run_played, call, ORVANE_PLAYED_SIZE="100x100", **{function: code})
    assert name == f"{BY_CODE[code].__name__} {code}"
    assert str(code) in message


def test_an_unknown_result_is_the_base_class(run_played):
    call = 'orvane.portrait(orvane.Picture(1, 1, b"abc"))'
    assert told(run_played, call, orv_DetectFacePicture=-77)[0] == "OrvaneError -77"


@pytest.mark.parametrize(
    "function, code, call, word",
    [
        ("orv_InitDLL", -80, "orvane.portrait({})", "session"),
        ("orv_InitDLL", -50, "orvane.portrait({})", "session"),
        ("orv_SetVisibleMode", -80, "orvane.portrait({})", "visible"),
        ("orv_SetSizeOutputImage", -80, "orvane.portrait({})", "size"),
        ("orv_SetFaceCropRatio", -10, "orvane.portrait({})", "crop_ratio"),
        ("orv_EnableAction", -10, "orvane.portrait({})", "action"),
        ("orv_SetLanguageFile", -10, "orvane.portrait({}, language='x.txt')", "x.txt"),
        ("orv_SetOwnerWindow", -80, "orvane.portrait({}, owner=5)", "owner"),
        ("orv_GetOutputImage", -50, "orvane.portrait({})", "portrait"),
        ("orv_GetOutputImage", -60, "orvane.portrait({})", "portrait"),
        ("orv_GetOutputImage", -80, "orvane.live()", "portrait"),
    ],
)
def test_every_function_may_fail(run_played, function, code, call, word):
    name, message = told(run_played, call.format('orvane.Picture(1, 1, b"abc")'), **{function: code})
    assert name == f"{BY_CODE[code].__name__} {code}"
    assert word in message


def test_a_portrait_of_another_size_is_a_failed_correction(run_played):
    call = 'orvane.portrait(orvane.Picture(1, 1, b"abc"){})'
    small = {"ORVANE_PLAYED_SIZE": "100x100"}
    assert told(run_played, call.format(""), **small)[0] == "StepError -40"
    assert told(run_played, call.format(""), orv_GetOutputImage=-80)[0] == "StepError -40"
    assert told(run_played, call.format(", actions=()"), **small)[0] == "no error"
    assert told(run_played, call.format(", visible=True"), **small)[0] == "no error"


@pytest.mark.parametrize("size, name", [("480x860", "no error"), ("480x900", "no error"), ("500x900", "StepError -40")])
def test_one_side_may_have_grown(run_played, size, name):
    assert told(run_played, 'orvane.portrait(orvane.Picture(1, 1, b"abc"))', ORVANE_PLAYED_SIZE=size)[0] == name


def test_a_useless_output_is_told(run_played):
    call = 'orvane.portrait(orvane.Picture(1, 1, b"abc"))'
    assert told(run_played, call, ORVANE_PLAYED_BAD_OUTPUT=1)[0] == "NoPictureError -60"


def test_a_face_that_the_operator_marked_gives_a_portrait(run_played):
    # White photo, black output of the asked size: another scene.
    call = 'print(orvane.{}(orvane.Picture(64, 64, b"\\xff" * 12288){}))'
    for function, more in (("review", ""), ("portrait", "")):
        printed, _ = run_played(TELL.format(call=call.format(function, more)), orv_DetectFacePicture=10)
        assert printed == "<orvane.Picture 480x860>\nno error"
    # Of the asked size by chance, but of the same scene: it is the photo.
    same = 'orvane.portrait(orvane.Picture(64, 64, bytes(12288)))'
    assert told(run_played, same, orv_DetectFacePicture=10)[0] == "NoFaceError 10"
    # Without the crop a portrait has the photo's size.
    call = 'orvane.review(orvane.Picture(64, 64, bytes(12288)), actions=["colour"])'
    assert told(run_played, call, orv_DetectFacePicture=10, ORVANE_PLAYED_SIZE="64x64")[0] == "no error"
    assert told(run_played, call, orv_DetectFacePicture=10, ORVANE_PLAYED_SIZE="256x256")[0] == "NoFaceError 10"
    assert told(run_played, call, orv_DetectFacePicture=10, orv_GetOutputImage=-80)[0] == "NoFaceError 10"


def test_the_classes_have_their_codes_and_can_be_pickled():
    for code, kind in BY_CODE.items():
        assert kind.code == code and issubclass(kind, orvane.OrvaneError)
        error = pickle.loads(pickle.dumps(kind("why")))
        assert (type(error), error.code, str(error)) == (kind, code, "why")
    assert issubclass(orvane.OutOfMemoryError, MemoryError)
    assert orvane.LibraryNotFoundError.code is None


# The library itself.


def test_a_picture_without_a_face():
    drawn = np.add.outer(np.arange(400), np.arange(300)).astype(np.uint8)
    with pytest.raises(orvane.NoFaceError) as caught:
        orvane.portrait(drawn)
    assert caught.value.code == 10


def test_a_picture_too_small_for_a_face():
    with pytest.raises(orvane.BadArgumentError):
        orvane.portrait(np.zeros((1, 1, 3), np.uint8))


def test_a_crop_of_less_than_a_pixel(small_photo):
    with pytest.raises(orvane.StepError, match="crop_ratio"):
        orvane.portrait(small_photo, crop_ratio=0.0001)


def test_a_live_session_without_a_window_and_a_camera(capfd):
    with pytest.raises(orvane.CaptureError):
        orvane.live()


def test_a_review_where_no_window_can_be_opened(small_photo):
    assert orvane.review(small_photo).tobytes() == orvane.portrait(small_photo).tobytes()


def test_a_language_file_that_is_not_there(small_photo):
    with pytest.raises(orvane.BadArgumentError, match="nothing.txt"):
        orvane.portrait(small_photo, language="nothing.txt")
